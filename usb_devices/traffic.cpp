#include <usb_devices/traffic.h>

#include <algorithm>
#include <bit>
#include <optional>
#include <utility>

#include <usb_devices/characters.h>
#include <usb_devices/read_error.h>

namespace usb_devices {

// libpcap gives the headers of usbmon in the order of the machine that it runs on.
static_assert(std::endian::native == std::endian::little);

struct detail::TransferEvent {
  enum class Kind : std::uint8_t { kAsk, kFinish, kFinishIfOpen };

  Kind kind = Kind::kAsk;
  std::uint32_t bus = 0;
  std::uint16_t address = 0;
  std::uint64_t transfer = 0;
  usb_devices::Speed speed = usb_devices::Speed::kUnknown;
  ByteSpan setup;                        // of kAsk
  Outcome outcome = Outcome::kAnswered;  // of the others
  std::uint32_t status = 0;              // the system's number of a failure
  ByteSpan data;
  std::uint64_t dataLength = 0;  // before the capture cut it
};

namespace {

using Event = detail::TransferEvent;

constexpr std::uint8_t kControl = 2;
constexpr std::size_t kSetupSize = 8;

// A bus has 127 devices, and a host asks each for far less than 64 KiB.
constexpr std::size_t kMostKept = std::size_t{64} << 20;
constexpr std::size_t kOverhead = 256;
constexpr std::size_t kMostAsked = 65536;

// Microsoft OS 1.0 descriptors have their length, version and request; a 2.0 set begins with its
// header (Microsoft OS 2.0 descriptors, table 10); a WebUSB URL has its type
// (WebUSB API, 4.3.1). Other reads of a vendor are not of descriptors.
bool IsVendorDescriptor(Request const& request, ByteSpan data) {
  ByteCursor at(data);
  switch (request.index) {
    case 2:
      return data.size() >= 3 && at.Peek() <= data.size() && at.Peek(1) == kStringType;
    case 4:
    case 5:
      at.Skip(4);
      return at.Little16() == 0x0100 && at.Little16() == request.index && !at.IsPastEnd();
    case 7:
      return at.Little16() == 10 && at.Little16() == 0 && data.size() >= 10;
    default:
      return false;
  }
}

bool IsVendorRead(Request const& request) {
  return request.requestType == 0xC0 || request.requestType == 0xC1;
}

// How good an answer is: more bytes are better than fewer, a stall than a failure.
std::pair<int, std::size_t> Worth(Answer const& answer) {
  int const kind = answer.outcome == Outcome::kAnswered  ? 2
                   : answer.outcome == Outcome::kStalled ? 1
                                                         : 0;
  return {kind, answer.bytes.size()};
}

// Bytes that a descriptor says it has, where the host may have asked for fewer.
std::size_t AnnouncedLength(Request const& request, ByteSpan bytes) {
  ByteCursor at(bytes);
  bool const isCompound = request.IsStandard() && (request.Type() == kConfigurationType ||
                                                   request.Type() == kOtherSpeedConfigurationType ||
                                                   request.Type() == kBosType);
  if (isCompound && bytes.size() >= 4) {
    at.Skip(2);
    return at.Little16();
  }
  return request.IsStandard() ? at.Peek() : 0;
}

// Reads a packet of a kind; nothing when it is not of the control pipe, or is cut off in its
// header, which sets `isShort`.
std::optional<Event> ReadUsbmon(ByteCursor at, std::size_t headerSize, bool& isShort) {
  constexpr auto kStall = static_cast<std::uint32_t>(-32);
  constexpr auto kShortRead = static_cast<std::uint32_t>(-121);
  if (at.Left() < headerSize) {
    isShort = true;
    return std::nullopt;
  }
  Event event;
  event.transfer = at.Little64();
  char const type = static_cast<char>(at.Byte());
  bool const isControl = at.Byte() == kControl;
  at.Skip(1);
  event.address = at.Byte();
  event.bus = at.Little16();
  bool const hasSetup = at.Byte() == 0;
  bool const hasData = at.Byte() == 0;
  at.Skip(12);
  event.status = at.Little32();
  event.dataLength = at.Little32();
  std::uint32_t const captured = at.Little32();
  ByteSpan const setup = at.Take(kSetupSize);
  at.Skip(headerSize - 48);
  if (!isControl || (type != 'S' && type != 'C' && type != 'E')) {
    return std::nullopt;
  }
  if (type == 'S') {
    event.kind = Event::Kind::kAsk;
    event.setup = hasSetup ? setup : ByteSpan();
    return event;
  }
  event.kind = Event::Kind::kFinish;
  event.outcome = type == 'C' && (event.status == 0 || event.status == kShortRead)
                      ? Outcome::kAnswered
                  : type == 'C' && event.status == kStall ? Outcome::kStalled
                                                          : Outcome::kFailed;
  event.data = hasData ? at.Take(captured) : ByteSpan();
  return event;
}

std::optional<Event> ReadUsbPcap(ByteCursor at, bool& isShort) {
  constexpr std::uint32_t kStall = 0xC0000004;
  constexpr std::uint32_t kHalted = 0xC0000030;
  constexpr std::uint32_t kShortRead = 0xC0000009;
  constexpr std::uint16_t kControlHeaderSize = 28;
  enum Stage : std::uint8_t { kSetup, kData, kStatus, kComplete };
  std::size_t const size = at.Left();
  std::uint16_t const headerSize = at.Little16();
  Event event;
  event.transfer = at.Little64();
  event.status = at.Little32();
  at.Skip(2);
  bool const isFromDevice = (at.Byte() & 1) != 0;
  event.bus = at.Little16();
  event.address = at.Little16();
  at.Skip(1);
  std::uint8_t const transferType = at.Byte();
  event.dataLength = at.Little32();
  if (!at.IsPastEnd() && transferType != kControl) {
    return std::nullopt;
  }
  std::uint8_t const stage = at.Byte();
  if (at.IsPastEnd() || headerSize < kControlHeaderSize || headerSize > size) {
    isShort = true;
    return std::nullopt;
  }
  at.Skip(headerSize - kControlHeaderSize);
  if (stage == kSetup) {
    event.kind = Event::Kind::kAsk;
    event.setup = at.Take(kSetupSize);
    return event;
  }
  // The data comes in a packet before the status, or with the end of the transfer.
  bool const isEnd = stage == kStatus || stage == kComplete;
  if (!isFromDevice || (stage != kData && !isEnd)) {
    return std::nullopt;
  }
  event.kind = stage == kStatus ? Event::Kind::kFinishIfOpen : Event::Kind::kFinish;
  event.outcome = event.status == 0 || event.status == kShortRead     ? Outcome::kAnswered
                  : event.status == kStall || event.status == kHalted ? Outcome::kStalled
                                                                      : Outcome::kFailed;
  event.data = at.Take(static_cast<std::size_t>(event.dataLength));
  return event;
}

std::optional<Event> ReadDarwin(ByteCursor at, bool& isShort) {
  constexpr std::uint32_t kStalls[] = {0xE000404F, 0xE0005000};
  constexpr std::uint32_t kShortRead = 0xE00002E7;
  constexpr std::uint8_t kHeaderSize = 32;
  constexpr usb_devices::Speed kSpeeds[] = {usb_devices::Speed::kLow, usb_devices::Speed::kFull,
                                            usb_devices::Speed::kHigh, usb_devices::Speed::kSuper,
                                            usb_devices::Speed::kSuperPlus};
  std::size_t const size = at.Left();
  at.Skip(2);
  std::uint8_t const headerSize = at.Byte();
  bool const isCompletion = at.Byte() != 0;
  Event event;
  event.dataLength = at.Little32();
  event.status = at.Little32();
  at.Skip(4);
  event.transfer = at.Little64();
  event.bus = at.Little32() >> 24;
  std::uint8_t const speed = at.Byte();
  event.speed = speed < std::size(kSpeeds) ? kSpeeds[speed] : usb_devices::Speed::kUnknown;
  event.address = at.Byte();
  at.Skip(1);
  bool const isControl = at.Byte() == 0;
  if (at.IsPastEnd() || headerSize < kHeaderSize || headerSize > size) {
    isShort = true;
    return std::nullopt;
  }
  at.Skip(headerSize - kHeaderSize);
  if (!isControl) {
    return std::nullopt;
  }
  if (!isCompletion) {
    event.kind = Event::Kind::kAsk;
    event.setup = at.Take(kSetupSize);
    return event;
  }
  event.kind = Event::Kind::kFinish;
  bool const isStall =
      std::find(std::begin(kStalls), std::end(kStalls), event.status) != std::end(kStalls);
  event.outcome = event.status == 0 || event.status == kShortRead ? Outcome::kAnswered
                  : isStall                                       ? Outcome::kStalled
                                                                  : Outcome::kFailed;
  event.data = at.Take(static_cast<std::size_t>(event.dataLength));
  return event;
}

}  // namespace

void TrafficReader::Add(PacketKind kind, ByteSpan packet) {
  ++packet_;
  bool isShort = false;
  ByteCursor const at(packet);
  std::optional<Event> const event = kind == PacketKind::kUsbmon       ? ReadUsbmon(at, 48, isShort)
                                     : kind == PacketKind::kUsbmonLong ? ReadUsbmon(at, 64, isShort)
                                     : kind == PacketKind::kUsbPcap    ? ReadUsbPcap(at, isShort)
                                                                       : ReadDarwin(at, isShort);
  short_ += isShort ? 1u : 0u;
  if (!event || event->address == 0) {
    return;
  }
  if (event->kind == Event::Kind::kAsk) {
    Ask(*event);
  } else {
    Finish(*event);
  }
}

void TrafficReader::Ask(Event const& event) {
  TransferKey const key{event.bus, event.address, event.transfer};
  // A transfer that was under way got no answer; its number is used anew.
  asked_.erase(key);
  if (event.setup.size() < kSetupSize) {
    short_ += event.setup.empty() ? 0u : 1u;
    return;
  }
  ByteCursor at(event.setup);
  Asked asked;
  asked.request.requestType = at.Byte();
  asked.request.request = at.Byte();
  asked.request.value = at.Little16();
  asked.request.index = at.Little16();
  asked.length = at.Little16();
  asked.packet = packet_;
  if (asked_.size() == kMostAsked) {
    // Their answers are not in the capture, or so late that nobody waited for them.
    asked_.clear();
  }
  asked_.emplace(key, asked);
}

void TrafficReader::Finish(Event const& event) {
  auto const found = asked_.find({event.bus, event.address, event.transfer});
  if (found == asked_.end()) {
    lost_ += event.kind == Event::Kind::kFinish ? 1u : 0u;
    return;
  }
  Asked const asked = found->second;
  asked_.erase(found);
  bool const isVendor = IsVendorRead(asked.request) && event.outcome == Outcome::kAnswered &&
                        IsVendorDescriptor(asked.request, event.data);
  if (asked.request.IsGetDescriptor() || isVendor) {
    Keep(event, asked);
  }
}

void TrafficReader::Keep(Event const& event, Asked const& asked) {
  Answer answer;
  answer.request = asked.request;
  answer.outcome = event.outcome;
  answer.source = {name_, 0, 0, packet_};
  if (event.outcome == Outcome::kFailed) {
    answer.note = "status " + std::to_string(static_cast<std::int32_t>(event.status)) + " (" +
                  Hexadecimal(event.status, 8) + "h)";
  } else if (event.outcome == Outcome::kAnswered) {
    // A device that sends more than it was asked for is cut off by the host.
    ByteSpan const data = ByteCursor(event.data).Take(asked.length);
    answer.bytes.assign(data.begin(), data.end());
    if (data.size() < std::min<std::uint64_t>(event.dataLength, asked.length)) {
      answer.note = "the capture holds " + std::to_string(data.size()) + " of " +
                    std::to_string(event.dataLength) + " bytes";
    } else if (data.size() == asked.length && AnnouncedLength(asked.request, data) > data.size()) {
      answer.note = "the host asked for no more than " + std::to_string(asked.length) + " bytes";
    }
  }
  Seen& device = DeviceOf(event, answer);
  if (event.speed != Speed::kUnknown) {
    device.speed = event.speed;
  }
  auto const [place, isNew] = device.answers.try_emplace(answer.request);
  if (!isNew && Worth(answer) <= Worth(place->second)) {
    return;
  }
  if (isNew) {
    device.order.push_back(answer.request);
  }
  kept_ += answer.bytes.size() + (isNew ? kOverhead : 0) - place->second.bytes.size();
  if (kept_ > kMostKept) {
    throw ReadError(name_, "packet " + std::to_string(packet_) +
                               ": more than 64 MiB of descriptors, expected those of one bus");
  }
  place->second = std::move(answer);
}

// The device at an address: another one when the device descriptor is another.
TrafficReader::Seen& TrafficReader::DeviceOf(Event const& event, Answer const& answer) {
  constexpr std::size_t kDeviceSize = 18;
  std::pair const key{event.bus, event.address};
  auto const [place, isNew] = current_.try_emplace(key, devices_.size());
  bool isOther = false;
  if (!isNew && answer.request == Request::Descriptor(kDeviceType) &&
      answer.bytes.size() >= kDeviceSize) {
    auto const& answers = devices_[place->second].answers;
    auto const known = answers.find(answer.request);
    isOther = known != answers.end() && known->second.bytes.size() >= kDeviceSize &&
              known->second.bytes != answer.bytes;
  }
  if (isNew || isOther) {
    place->second = devices_.size();
    unsigned const count = ++counts_[key];
    Seen& device = devices_.emplace_back();
    device.name = std::to_string(event.bus) + '.' + std::to_string(event.address) +
                  (count == 1 ? "" : '-' + std::to_string(count));
    kept_ += kOverhead;
  }
  return devices_[place->second];
}

Traffic TrafficReader::Take() {
  Traffic traffic;
  for (Seen& seen : devices_) {
    DeviceBuilder device;
    device.SetName(seen.name);
    device.SetSpeed(seen.speed);
    for (Request const& request : seen.order) {
      device.Add(std::move(seen.answers[request]));
    }
    traffic.devices.push_back(device.Build());
  }
  if (short_ != 0) {
    traffic.notes.push_back(std::to_string(short_) + (short_ == 1 ? " packet is" : " packets are") +
                            " too short for a header and passed over");
  }
  if (lost_ != 0) {
    traffic.notes.push_back(std::to_string(lost_) + (lost_ == 1 ? " answer is" : " answers are") +
                            " passed over, as the capture does not have the question");
  }
  *this = TrafficReader(std::move(name_));
  return traffic;
}

bool LooksLikeTraffic(std::string_view begin) noexcept {
  using namespace std::string_view_literals;
  constexpr std::string_view kMagics[] = {
      "\xA1\xB2\xC3\xD4"sv, "\xD4\xC3\xB2\xA1"sv,  // microseconds
      "\xA1\xB2\x3C\x4D"sv, "\x4D\x3C\xB2\xA1"sv,  // nanoseconds
  };
  if (std::any_of(std::begin(kMagics), std::end(kMagics),
                  [begin](std::string_view magic) { return begin.starts_with(magic); })) {
    return true;
  }
  // The first four bytes of pcapng may also be line ends of a text; its byte-order magic may not.
  std::string_view const order = begin.size() < kTrafficMagicSize ? ""sv : begin.substr(8, 4);
  return begin.starts_with("\x0A\x0D\x0D\x0A"sv) &&
         (order == "\x1A\x2B\x3C\x4D"sv || order == "\x4D\x3C\x2B\x1A"sv);
}

}  // namespace usb_devices

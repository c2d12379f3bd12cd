#include <usb_devices/runs.h>

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include <usb_devices/read_error.h>

namespace usb_devices {
namespace {

constexpr std::uint8_t kPartTypes[] = {kDeviceType, kQualifierType, kConfigurationType,
                                       kOtherSpeedConfigurationType, kBosType};

constexpr std::uint8_t kMostIndex = 254;

// True when the descriptor at the cursor has a length that does not reach past the end.
bool IsWhole(ByteCursor const& at) {
  return at.Peek() != 0 && at.Peek() <= at.Left();
}

// The type of the part that the descriptor begins; 0 when it begins none. A descriptor of one byte
// has no type, whatever follows it.
std::uint8_t PartTypeOf(ByteCursor const& at) {
  bool const begins =
      IsWhole(at) && at.Peek() >= 2 &&
      std::find(std::begin(kPartTypes), std::end(kPartTypes), at.Peek(1)) != std::end(kPartTypes);
  return begins ? at.Peek(1) : std::uint8_t{0};
}

// The length that a configuration or a BOS announces; both have the field in the same place (USB
// 3.2, tables 9-12 and 9-22).
std::size_t TotalLength(ByteCursor at) {
  std::uint8_t const type = PartTypeOf(at);
  if (type != kConfigurationType && type != kOtherSpeedConfigurationType && type != kBosType) {
    return 0;
  }
  at.Skip(2);
  return at.Little16();
}

// The beginnings of the parts of a run; the first is 0.
std::vector<std::size_t> PartOffsets(ByteSpan run) {
  std::vector<std::size_t> offsets;
  std::size_t announcedEnd = 0;
  ByteCursor at(run);
  while (at.Left() != 0) {
    if (PartTypeOf(at) != 0) {
      offsets.push_back(at.Offset());
      announcedEnd = at.Offset() + TotalLength(at);
    } else if (offsets.empty()) {
      offsets.push_back(0);
    }
    if (IsWhole(at)) {
      at.Skip(at.Peek());
    } else if (announcedEnd > at.Offset() && announcedEnd < run.size()) {
      at.Skip(announcedEnd - at.Offset());
      // The bytes there are a separate part.
      offsets.push_back(at.Offset());
      announcedEnd = 0;
    } else {
      break;
    }
  }
  // A beginning that was found by place and by type counts once.
  offsets.erase(std::unique(offsets.begin(), offsets.end()), offsets.end());
  return offsets;
}

void AddParts(DeviceBuilder& device, std::span<Part const> parts, Source const& source) {
  std::array<unsigned, 256> next{};
  for (Part const& part : parts) {
    if (part.bytes.size() > kMaxAnswerSize) {
      throw ReadError(source.name, "offset " + std::to_string(source.offset + part.offset) +
                                       ": found " + std::to_string(part.bytes.size()) +
                                       " bytes without a new descriptor set, expected at most "
                                       "65,535, the most that one request can read");
    }
    Bytes bytes(part.bytes.begin(), part.bytes.end());
    Source place = source;
    place.offset += part.offset;
    unsigned& index = next[part.type];
    while (part.type != 0 && index <= kMostIndex &&
           device.Has(Request::Descriptor(part.type, static_cast<std::uint8_t>(index)))) {
      ++index;
    }
    bool isAdded = false;
    if (part.type == 0 || index > kMostIndex) {
      isAdded = device.AddUnknown(std::move(bytes), std::move(place));
    } else {
      isAdded = device.Add({Request::Descriptor(part.type, static_cast<std::uint8_t>(index)),
                            Outcome::kAnswered,
                            std::move(bytes),
                            std::move(place),
                            {}});
    }
    if (!isAdded) {
      throw ReadError(source.name, "offset " + std::to_string(source.offset + part.offset) +
                                       ": more than 65,536 parts that no request reads");
    }
  }
}

}  // namespace

std::vector<Part> SplitRun(ByteSpan run) {
  std::vector<std::size_t> const offsets = PartOffsets(run);
  std::vector<Part> parts;
  ByteCursor at(run);
  for (std::size_t i = 0; i < offsets.size(); ++i) {
    std::size_t const end = i + 1 < offsets.size() ? offsets[i + 1] : run.size();
    ByteSpan const bytes = at.Take(end - offsets[i]);
    parts.push_back({PartTypeOf(ByteCursor(bytes)), offsets[i], bytes});
  }
  return parts;
}

void AddRun(DeviceBuilder& device, ByteSpan run, Source const& source) {
  AddParts(device, SplitRun(run), source);
}

std::vector<Device> DevicesOf(ByteSpan run, Source const& source) {
  std::vector<Part> const parts = SplitRun(run);
  std::vector<Device> devices;
  auto const isDevice = [](Part const& part) { return part.type == kDeviceType; };
  for (auto first = parts.begin(); first != parts.end();) {
    // Bytes before the first device descriptor belong to its device.
    auto const own = std::find_if(first, parts.end(), isDevice);
    auto const end = own == parts.end() ? own : std::find_if(own + 1, parts.end(), isDevice);
    DeviceBuilder device;
    AddParts(device, {first, end}, source);
    devices.push_back(device.Build());
    first = end;
  }
  return devices;
}

std::optional<Bytes> RunOf(Device const& device) {
  Bytes run;
  for (Answer const& answer : device.Answers()) {
    run.insert(run.end(), answer.bytes.begin(), answer.bytes.end());
    if (run.size() > kMaxRunSize) {
      return std::nullopt;
    }
  }
  try {
    std::vector<Device> const read = DevicesOf(run, Source{});
    bool const isSame = read.empty() ? device.HasSameAnswers(Device())
                                     : read.size() == 1 && read.front().HasSameAnswers(device);
    return isSame ? std::optional(std::move(run)) : std::nullopt;
  } catch (ReadError const&) {
    return std::nullopt;  // parts that belong to no request
  }
}

}  // namespace usb_devices

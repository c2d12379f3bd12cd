#include <usb_devices/device.h>

#include <algorithm>
#include <cassert>
#include <utility>

#include <usb_devices/characters.h>

namespace usb_devices {
namespace {

constexpr std::string_view kSpeedNames[] = {"unknown", "low",   "full",
                                            "high",    "super", "super-plus"};
constexpr std::string_view kOutcomeNames[] = {"answered", "stalled", "failed"};

std::string Indexed(std::string_view name, Request const& request) {
  return std::string(name) + ' ' + std::to_string(request.Index());
}

std::string OfTypeAndIndex(Request const& request) {
  return "descriptor of type " + Hexadecimal(request.Type(), 2) + "h, index " +
         std::to_string(request.Index());
}

std::string NameOfStandard(Request const& request) {
  switch (request.Type()) {
    case kDeviceType:
      return request.Index() == 0 ? "device" : Indexed("device", request);
    case kConfigurationType:
      return Indexed("configuration", request);
    case kStringType:
      return request == Request::String(0, 0) ? "languages of the strings"
             : request == Request::MicrosoftString()
                 ? "Microsoft OS 1.0 string"
                 : Indexed("string", request) + ", language " + Hexadecimal(request.index, 4) + 'h';
    case kQualifierType:
      return request.Index() == 0 ? "device qualifier" : Indexed("device qualifier", request);
    case kOtherSpeedConfigurationType:
      return Indexed("other-speed configuration", request);
    case kBosType:
      return request.Index() == 0 ? "BOS" : Indexed("BOS", request);
    default:
      return OfTypeAndIndex(request);
  }
}

}  // namespace

std::string_view NameOf(Speed speed) noexcept {
  return kSpeedNames[static_cast<std::size_t>(speed)];
}

std::optional<Speed> SpeedOf(std::string_view name) noexcept {
  auto const found = std::find(std::begin(kSpeedNames), std::end(kSpeedNames), name);
  return found == std::end(kSpeedNames) ? std::nullopt
                                        : std::optional(static_cast<Speed>(found - kSpeedNames));
}

std::string_view NameOf(Outcome outcome) noexcept {
  return kOutcomeNames[static_cast<std::size_t>(outcome)];
}

std::string NameOf(Request const& request) {
  if (!request.IsKnown()) {
    return "bytes without a request " + std::to_string(request.value);
  }
  if (request.IsStandard()) {
    return NameOfStandard(request);
  }
  if (request.IsOfInterface()) {
    bool const isReport = request.Type() == kHidReportType && request.Index() == 0;
    return (isReport ? "HID report" : OfTypeAndIndex(request)) + " of interface " +
           std::to_string(request.index);
  }
  if (request == Request::Hub(kHubType)) {
    return "hub";
  }
  if (request == Request::Hub(kSuperSpeedHubType)) {
    return "SuperSpeed hub";
  }
  return "request " + Hexadecimal(request.request, 2) + "h of type " +
         Hexadecimal(request.requestType, 2) + "h, value " + Hexadecimal(request.value, 4) +
         "h, index " + Hexadecimal(request.index, 4) + 'h';
}

Answer const* Device::Find(Request const& request) const noexcept {
  auto const found = places_.find(request);
  return found == places_.end() ? nullptr : &answers_[found->second];
}

std::optional<ByteSpan> Device::Bytes(Request const& request) const noexcept {
  Answer const* const answer = Find(request);
  if (answer == nullptr || answer->outcome != Outcome::kAnswered) {
    return std::nullopt;
  }
  return ByteSpan(answer->bytes);
}

std::optional<ByteSpan> Device::Bytes(Request const& request, std::uint16_t length) const noexcept {
  std::optional<ByteSpan> const bytes = Bytes(request);
  return bytes ? std::optional(ByteCursor(*bytes).Take(length)) : std::nullopt;
}

std::vector<Answer const*> Device::OfType(std::uint8_t type) const {
  std::vector<Answer const*> answers;
  for (auto place = places_.lower_bound(Request::Descriptor(type));
       place != places_.end() && place->first.IsStandard() && place->first.Type() == type;
       ++place) {
    answers.push_back(&answers_[place->second]);
  }
  return answers;
}

bool Device::HasSameAnswers(Device const& other) const noexcept {
  return speed_ == other.speed_ &&
         std::equal(places_.begin(), places_.end(), other.places_.begin(), other.places_.end(),
                    [&](auto const& mine, auto const& theirs) {
                      Answer const& a = answers_[mine.second];
                      Answer const& b = other.answers_[theirs.second];
                      return mine.first == theirs.first && a.outcome == b.outcome &&
                             a.bytes == b.bytes;
                    });
}

bool DeviceBuilder::Add(Answer answer) {
  assert(answer.bytes.size() <= kMaxAnswerSize);
  assert(answer.outcome == Outcome::kAnswered || answer.bytes.empty());
  if (!device_.places_.emplace(answer.request, device_.answers_.size()).second) {
    return false;
  }
  device_.answers_.push_back(std::move(answer));
  return true;
}

bool DeviceBuilder::AddUnknown(Bytes bytes, Source source) {
  if (unknown_ > 0xFFFF) {
    return false;
  }
  return Add({Request::Unknown(static_cast<std::uint16_t>(unknown_++)),
              Outcome::kAnswered,
              std::move(bytes),
              std::move(source),
              {}});
}

Device DeviceBuilder::Build() {
  unknown_ = 0;
  return std::exchange(device_, Device());
}

}  // namespace usb_devices

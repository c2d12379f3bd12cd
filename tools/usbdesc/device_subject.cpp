#include <tools/usbdesc/device_subject.h>

#include <algorithm>
#include <cstdint>
#include <optional>

namespace usb_support::usbdesc {
namespace {

using usb_devices::Answer;
using usb_devices::Device;
using usb_devices::Request;
using usb_rules::Finding;
using usb_rules::Presence;
using usb_rules::Run;
using usb_rules::Source;

// MIDI 2.0, 5.4: GET_DESCRIPTOR to the interface, with the alternate setting as index.
constexpr std::uint8_t kGroupTerminalBlockType = 0x26;
constexpr std::size_t kConfigurationsOfDevice = 17;    // the offset of bNumConfigurations
constexpr std::size_t kConfigurationsOfQualifier = 8;  // the same in a device qualifier

static_assert(static_cast<int>(usb_devices::Speed::kLow) ==
              static_cast<int>(usb_rules::Speed::kLow));
static_assert(static_cast<int>(usb_devices::Speed::kSuperPlus) ==
              static_cast<int>(usb_rules::Speed::kSuperPlus));

Run RunOf(Answer const* answer) {
  if (answer == nullptr || answer->outcome == usb_devices::Outcome::kFailed) {
    return {};
  }
  bool const isGiven = answer->outcome == usb_devices::Outcome::kAnswered;
  return {.bytes = answer->bytes,
          .presence = isGiven ? Presence::kGiven : Presence::kRefused,
          .fileOffset = static_cast<std::size_t>(answer->source.offset),
          .origin = answer->source.name};
}

Answer const* FindHub(Device const& device) {
  Answer const* const hub = device.Find(Request::Hub(usb_devices::kHubType));
  return hub != nullptr ? hub : device.Find(Request::Hub(usb_devices::kSuperSpeedHubType));
}

bool IsOf(Answer const& answer, std::uint8_t type) {
  return answer.request.IsOfInterface() && answer.request.Type() == type &&
         answer.outcome == usb_devices::Outcome::kAnswered;
}

}  // namespace

DeviceSubject::DeviceSubject(Device const& device, usb_rules::Speed speed) {
  auto const run = [&](std::uint8_t type) { return RunOf(device.Find(Request::Descriptor(type))); };
  subject_.device = run(usb_devices::kDeviceType);
  subject_.qualifier = run(usb_devices::kQualifierType);
  subject_.bos = run(usb_devices::kBosType);
  subject_.hub = RunOf(FindHub(device));
  subject_.configurationsPresence =
      Configurations(device, usb_devices::kConfigurationType, subject_.device, configurations_);
  subject_.otherSpeed = Configurations(device, usb_devices::kOtherSpeedConfigurationType,
                                       subject_.qualifier, otherSpeed_);
  for (Answer const& answer : device.Answers()) {
    auto const interfaceNumber = static_cast<std::uint8_t>(answer.request.index);
    if (answer.request.IsString()) {
      strings_.push_back({answer.request.Index(), answer.request.index, RunOf(&answer)});
    } else if (IsOf(answer, usb_devices::kHidReportType)) {
      reports_.push_back({interfaceNumber, RunOf(&answer)});
    } else if (IsOf(answer, kGroupTerminalBlockType)) {
      blocks_.push_back({interfaceNumber, RunOf(&answer)});
    }
  }
  subject_.configurations = configurations_;
  subject_.otherSpeedConfigurations = otherSpeed_;
  subject_.strings = strings_;
  subject_.reports = reports_;
  subject_.groupTerminalBlocks = blocks_;
  subject_.speed =
      speed != usb_rules::Speed::kUnknown ? speed : static_cast<usb_rules::Speed>(device.Speed());
}

Presence DeviceSubject::Configurations(Device const& device, std::uint8_t type, Run const& header,
                                       std::vector<Run>& runs) {
  bool isRefused = false;
  for (Answer const* const answer : device.OfType(type)) {
    Run const run = RunOf(answer);
    isRefused = isRefused || run.presence == Presence::kRefused;
    if (run.presence == Presence::kGiven) {
      runs.push_back(run);
    }
  }
  if (runs.empty()) {
    return isRefused ? Presence::kRefused : Presence::kNotCaptured;
  }
  std::size_t const place = type == usb_devices::kConfigurationType ? kConfigurationsOfDevice
                                                                    : kConfigurationsOfQualifier;
  bool const areAll = header.bytes.size() > place && runs.size() >= header.bytes[place];
  return isRefused || areAll ? Presence::kGiven : Presence::kNotCaptured;
}

Answer const* AnswerOf(Device const& device, Finding const& finding) {
  auto const nth = [&](std::uint8_t type) -> Answer const* {
    std::size_t left = finding.index;
    for (Answer const* const answer : device.OfType(type)) {
      if (answer->outcome == usb_devices::Outcome::kAnswered && left-- == 0) {
        return answer;
      }
    }
    return nullptr;
  };
  auto const first = [&](auto const& isIt) -> Answer const* {
    auto const found = std::ranges::find_if(device.Answers(), isIt);
    return found != device.Answers().end() ? &*found : nullptr;
  };
  auto const ofInterface = [&](std::uint8_t type) {
    return first([&](Answer const& answer) {
      return IsOf(answer, type) && answer.request.index == finding.index;
    });
  };
  switch (finding.source) {
    case Source::kConfiguration:
      return nth(usb_devices::kConfigurationType);
    case Source::kOtherSpeedConfiguration:
      return nth(usb_devices::kOtherSpeedConfigurationType);
    case Source::kQualifier:
      return device.Find(Request::Descriptor(usb_devices::kQualifierType));
    case Source::kBos:
      return device.Find(Request::Descriptor(usb_devices::kBosType));
    case Source::kHub:
      return FindHub(device);
    case Source::kString:
      return first([&](Answer const& answer) {
        return answer.request.IsString() && answer.request.Index() == finding.index &&
               !answer.bytes.empty();
      });
    case Source::kReport:
      return ofInterface(usb_devices::kHidReportType);
    case Source::kGroupTerminalBlocks:
      return ofInterface(kGroupTerminalBlockType);
    default:
      return device.Find(Request::Descriptor(usb_devices::kDeviceType));
  }
}

}  // namespace usb_support::usbdesc

#include <tools/usbdesc/decoded.h>

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include <tools/usbdesc/device.h>

namespace usb_support::usbdesc {
namespace {

// The context of an answer's fields. The vendor's own code is in the BOS, but wIndex distinguishes
// the requests as well.
usb_fields::Request KindOf(usb_devices::Request const& request) noexcept {
  using usb_fields::Request;
  constexpr std::uint8_t kHidPhysicalType = 0x23;
  constexpr std::uint8_t kGroupTerminalBlockType = 0x26;
  if (request.IsOfInterface()) {
    return request.Type() == kHidPhysicalType          ? Request::kHidPhysical
           : request.Type() == kGroupTerminalBlockType ? Request::kGroupTerminalBlocks
                                                       : Request::kDescriptor;
  }
  if ((request.requestType & 0xE0) != 0xC0) {
    return Request::kDescriptor;
  }
  switch (request.index) {
    case 2:
      return Request::kWebUsb;
    case 4:
    case 5:
      return Request::kMsOs10;
    default:
      return Request::kMsOs20;
  }
}

DecodedRun RunOf(usb_devices::Answer const& answer) {
  usb_devices::Request const& request = answer.request;
  DecodedRun run;
  if (request.IsGetDescriptor()) {
    run.type = request.Type();
    run.index = request.Index();
  }
  if (request.IsString()) {
    run.language = request.index;
  } else if (request.IsOfInterface()) {
    run.interfaceNumber = request.index;
  }
  run.request = KindOf(request);
  run.file = answer.source.name;
  run.offset = static_cast<std::size_t>(answer.source.offset);
  run.bytes = answer.bytes;
  run.answer = &answer;
  return run;
}

usb_fields::SpeedGuess Given(usb_fields::Speed speed) {
  return {.speed = speed, .reason = {}, .readAs = speed};
}

}  // namespace

std::string_view NameOf(usb_fields::Speed speed) noexcept {
  return usb_devices::NameOf(static_cast<usb_devices::Speed>(speed));
}

bool DecodedRun::IsHidReport() const noexcept {
  return interfaceNumber && type == usb_devices::kHidReportType;
}

usb_fields::SpeedGuess SpeedOf(usb_devices::Device const& device) {
  if (device.Speed() != usb_devices::Speed::kUnknown) {
    return Given(static_cast<usb_fields::Speed>(device.Speed()));
  }
  std::vector<std::span<std::uint8_t const>> runs;
  for (usb_devices::Answer const& answer : device.Answers()) {
    if (IsPart(answer)) {
      runs.emplace_back(answer.bytes);
    }
  }
  return usb_fields::GuessSpeed(runs);
}

std::string SpeedText(usb_fields::Speed speed, std::string_view reason) {
  std::string text(NameOf(speed));
  if (!reason.empty()) {
    text.append(", because ").append(reason);
  }
  return text;
}

std::string SpeedText(usb_fields::SpeedGuess const& speed) {
  std::string text = SpeedText(speed.speed, speed.reason);
  if (speed.speed == usb_fields::Speed::kUnknown) {
    text.append("; fields are read as at ").append(NameOf(speed.readAs)).append(" speed");
  }
  return text;
}

DecodedDevice Decode(usb_devices::Device const& device, usb_fields::Speed speed) {
  DecodedDevice decoded;
  decoded.name = device.Name();
  decoded.speed = speed == usb_fields::Speed::kUnknown ? SpeedOf(device) : Given(speed);
  decoded.strings = StringsOf(device);
  for (usb_devices::Answer const& answer : device.Answers()) {
    decoded.runs.push_back(RunOf(answer));
  }
  return decoded;
}

}  // namespace usb_support::usbdesc

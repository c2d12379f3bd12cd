#include <usb_fields/speed.h>

#include <algorithm>
#include <cstddef>

#include <usb_fields/byte_view.h>
#include <usb_fields/codes.h>

namespace usb_fields {
namespace {

// What the descriptors show of the speed.
class Signs {
 public:
  void Read(std::span<std::uint8_t const> run) noexcept {
    while (run.size() >= 2 && run[0] >= 2) {
      std::size_t const length = std::min<std::size_t>(run[0], run.size());
      ReadDescriptor(ByteView(run.first(length)));
      run = run.subspan(length);
    }
  }

  SpeedGuess Guess() const noexcept {
    auto const shows = [](Speed speed, std::string_view reason) {
      return SpeedGuess{speed, reason, speed};
    };
    if (isSuperDevice_) {
      return shows(Speed::kSuper, "bcdUSB is 0300h or more and bMaxPacketSize0 is 9");
    }
    if (hasCompanion_) {
      return shows(Speed::kSuper, "there are SuperSpeed endpoint companions");
    }
    if (isHighHub_) {
      return shows(Speed::kHigh, "bDeviceProtocol of the hub is used only at high speed");
    }
    if (hasHighEndpoint_) {
      return shows(Speed::kHigh, "an endpoint has a high-speed packet size");
    }
    bool const isNotHigh = isBeforeRelease2_ || hasSmallEndpoint0_;
    if (isNotHigh && !isFullDevice_ && !hasFasterEndpoint_) {
      return {Speed::kUnknown, "the descriptors fit full speed and low speed", Speed::kFull};
    }
    if (isBeforeRelease2_) {
      return shows(Speed::kFull, "bcdUSB is less than 0200h");
    }
    if (hasSmallEndpoint0_) {
      return shows(Speed::kFull, "bMaxPacketSize0 is less than 64");
    }
    if (hasFullEndpoint_) {
      return shows(Speed::kFull, "a bulk endpoint has a full-speed packet size");
    }
    if (hasLongInterrupt_) {
      return shows(Speed::kHigh, "an interrupt endpoint has more than 64 bytes");
    }
    return {Speed::kUnknown, "the descriptors do not show the speed", Speed::kHigh};
  }

 private:
  void ReadDescriptor(ByteView bytes) noexcept {
    switch (bytes.At(1)) {
      case codes::kDeviceType:
        return ReadDevice(bytes);
      case codes::kConfigurationType:
      case codes::kOtherSpeedConfigurationType:
        isOtherSpeed_ = bytes.At(1) == codes::kOtherSpeedConfigurationType;
        return;
      case codes::kInterfaceType:
        isHealthcare_ = bytes.At(5) == codes::kHealthcareClass;
        return;
      case codes::kEndpointType:
        isHealthcare_ = false;
        return ReadEndpoint(bytes);
      case codes::kCompanionType:
        // PHDC uses the type for descriptors before the endpoints.
        hasCompanion_ = hasCompanion_ || !(isHealthcare_ || isOtherSpeed_);
        return;
      default:
        return;
    }
  }

  // Releases before 2.00 have no high speed. Endpoint 0 has 8 bytes at low speed, 8, 16, 32 or 64
  // at full speed, and 64 at high speed (USB 2.0, 5.5.3). Protocols 1 and 2 are those of a hub at high speed (USB 2.0, 11.23.1).
  void ReadDevice(ByteView device) noexcept {
    if (device.Size() < 8) {
      return;
    }
    std::uint64_t const release = device.Number(2, 2);
    std::uint8_t const protocol = device.At(6);
    isSuperDevice_ = release >= 0x0300 && device.At(7) == 9;
    isHighHub_ = device.At(4) == codes::kHubClass && (protocol == 1 || protocol == 2);
    isBeforeRelease2_ = release < 0x0200;
    std::uint8_t const size = device.At(7);
    hasSmallEndpoint0_ = size == 8 || size == 16 || size == 32;
    isFullDevice_ = size == 16 || size == 32 || size == 64;
  }

  // The sizes that the speeds allow (USB 2.0, 5.6.3, 5.7.3 and 5.8.3). The high-speed ones include
  // the number of further transactions. At low speed there are only interrupt endpoints of up to 8
  // bytes.
  void ReadEndpoint(ByteView endpoint) noexcept {
    if (endpoint.Size() < 6 || isOtherSpeed_) {
      return;
    }
    std::uint64_t const size = endpoint.Number(4, 2);
    hasFasterEndpoint_ = hasFasterEndpoint_ || (endpoint.At(3) & 3U) != 3 || size > 8;
    switch (endpoint.At(3) & 3U) {
      case 1:
        hasHighEndpoint_ = hasHighEndpoint_ || size > 1023;
        return;
      case 2:
        hasHighEndpoint_ = hasHighEndpoint_ || size == 512;
        hasFullEndpoint_ = hasFullEndpoint_ || (size >= 8 && size <= 64);
        return;
      case 3:
        hasHighEndpoint_ = hasHighEndpoint_ || size > 1023;
        hasLongInterrupt_ = hasLongInterrupt_ || size > 64;
        return;
      default:
        return;
    }
  }

  bool isSuperDevice_ = false;
  bool hasCompanion_ = false;
  bool isHighHub_ = false;
  bool hasHighEndpoint_ = false;
  bool isBeforeRelease2_ = false;
  bool hasSmallEndpoint0_ = false;
  bool hasFullEndpoint_ = false;
  bool isFullDevice_ = false;  // or of a higher speed
  bool hasFasterEndpoint_ = false;
  bool hasLongInterrupt_ = false;
  bool isOtherSpeed_ = false;  // in a configuration of another speed
  bool isHealthcare_ = false;  // between a PHDC interface and its first endpoint
};

}  // namespace

SpeedGuess GuessSpeed(std::span<std::span<std::uint8_t const> const> runs) noexcept {
  Signs signs;
  for (std::span<std::uint8_t const> const run : runs) {
    signs.Read(run);
  }
  return signs.Guess();
}

}  // namespace usb_fields

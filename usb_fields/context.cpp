#include <usb_fields/context.h>

#include <usb_fields/byte_view.h>
#include <usb_fields/cdc_header.h>

namespace usb_fields {
namespace {

constexpr std::uint8_t kDeviceType = 0x01;
constexpr std::uint8_t kConfigurationType = 0x02;
constexpr std::uint8_t kInterfaceType = 0x04;
constexpr std::uint8_t kEndpointType = 0x05;
constexpr std::uint8_t kOtherSpeedConfigurationType = 0x07;
constexpr std::uint8_t kBosType = 0x0F;
constexpr std::uint8_t kClassSpecificInterfaceType = 0x24;
constexpr std::uint8_t kVideoClass = 0x0E;
constexpr std::uint8_t kVideoControlSubclass = 0x01;
constexpr std::uint8_t kVideoHeaderSubtype = 0x01;

}  // namespace

void Context::Follow(std::span<std::uint8_t const> bytes) noexcept {
  ByteView const view(bytes);
  switch (view.At(1)) {
    case kDeviceType:
    case kConfigurationType:
    case kOtherSpeedConfigurationType:
    case kBosType:
      *this = {.speed = speed,
               .request = request,
               .index = index,
               .parent = parent,
               .isOtherSpeed = view.At(1) == kOtherSpeedConfigurationType};
      break;
    case kInterfaceType:
      hasInterface = true;
      hasEndpoint = false;
      interfaceClass = view.At(5);
      interfaceSubclass = view.At(6);
      interfaceProtocol = view.At(7);
      endpointAttributes = 0;
      cdc = CdcGuess::kNotSeen;
      break;
    case kEndpointType:
      hasEndpoint = true;
      endpointAttributes = view.At(3);
      break;
    case kClassSpecificInterfaceType:
      if (cdc == CdcGuess::kNotSeen) {
        cdc = detail::IsCdcHeader(view) ? CdcGuess::kYes : CdcGuess::kNo;
      }
      if (hasInterface && interfaceClass == kVideoClass &&
          interfaceSubclass == kVideoControlSubclass && view.At(2) == kVideoHeaderSubtype) {
        videoRelease = static_cast<std::uint16_t>(view.Number(3, 2));
      }
      break;
    default:
      break;
  }
}

}  // namespace usb_fields

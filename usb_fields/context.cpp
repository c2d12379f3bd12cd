#include <usb_fields/context.h>

#include <usb_fields/byte_view.h>
#include <usb_fields/cdc_header.h>
#include <usb_fields/codes.h>

namespace usb_fields {
namespace {

constexpr std::uint8_t kVideoControlSubclass = 0x01;
constexpr std::uint8_t kVideoHeaderSubtype = 0x01;

}  // namespace

void Context::Follow(std::span<std::uint8_t const> bytes) noexcept {
  ByteView const view(bytes);
  switch (view.At(1)) {
    case codes::kDeviceType:
    case codes::kConfigurationType:
    case codes::kOtherSpeedConfigurationType:
    case codes::kBosType:
      *this = {.speed = speed,
               .request = request,
               .index = index,
               .parent = parent,
               .isOtherSpeed = view.At(1) == codes::kOtherSpeedConfigurationType};
      break;
    case codes::kInterfaceType:
      hasInterface = true;
      hasEndpoint = false;
      interfaceClass = view.At(5);
      interfaceSubclass = view.At(6);
      interfaceProtocol = view.At(7);
      endpointAttributes = 0;
      cdc = CdcGuess::kNotSeen;
      break;
    case codes::kEndpointType:
      hasEndpoint = true;
      endpointAttributes = view.At(3);
      break;
    case codes::kClassSpecificInterfaceType:
      if (cdc == CdcGuess::kNotSeen) {
        cdc = detail::IsCdcHeader(view) ? CdcGuess::kYes : CdcGuess::kNo;
      }
      if (hasInterface && interfaceClass == codes::kVideoClass &&
          interfaceSubclass == kVideoControlSubclass && view.At(2) == kVideoHeaderSubtype) {
        videoRelease = static_cast<std::uint16_t>(view.Number(3, 2));
      }
      break;
    default:
      break;
  }
}

}  // namespace usb_fields

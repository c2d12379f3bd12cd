// The labels of descriptors: static members of CUsbHelper.
#include <array>
#include <cstddef>
#include <cstdint>

#include <usb_support/helper/formatting.h>
#include <usb_support/helper/usb_helper.h>

namespace {

using usb_support::FormatText;
using usb_support::kDefaultIndentation;

constexpr char const* kUnknownDescriptor = "<UNKNOWN DESCRIPTOR>";

constexpr std::uint8_t kAudioClass = 0x01;
constexpr std::uint8_t kHidClass = 0x03;
constexpr std::uint8_t kVideoClass = 0x0E;
constexpr std::uint8_t kVendorSpecificClass = 0xFF;

// Texts by code; a code without an entry has a null pointer or lies behind the table.
template <std::size_t Size>
constexpr char const* Lookup(std::array<char const*, Size> const& table, std::size_t code,
                             char const* unknown) {
  return code < Size && table[code] != nullptr ? table[code] : unknown;
}

// Descriptors whose label is their name alone, by bDescriptorType.
constexpr auto kPlainLabels = [] {
  std::array<char const*, 50> labels{};
  labels[usb_support::kDeviceType] = "Device";
  labels[usb_support::kConfigurationType] = "Configuration";
  labels[usb_support::kDeviceQualifierType] = "Device Qualifier";
  labels[usb_support::kOtherSpeedConfigurationType] = "Other Speed Configuration";
  labels[usb_support::kBosType] = "BOS";
  labels[usb_support::kEusb2IsochEndpointCompanionType] = "eUSB2 Isochronous Endpoint Companion";
  labels[usb_support::kSuperSpeedEndpointCompanionType] = "SuperSpeed Endpoint Companion";
  labels[usb_support::kSuperSpeedPlusIsochEndpointCompanionType] =
      "SuperSpeedPlus Isochronous Endpoint Companion";
  return labels;
}();

// By bDevCapabilityType.
constexpr std::array<char const*, 18> kCapabilityNames = {
    nullptr,
    "WUSB",
    "USB 2 Extension",
    "SuperSpeed",
    "Container ID",
    "Platform",
    "Power Delivery",
    "Battery Info",
    "PD Consumer",
    "PD Provider",
    "SuperSpeed Plus",
    "Precision Time Measurement (PTM)",
    nullptr,
    "Billboard",
    nullptr,
    nullptr,
    "Configuration Summary",
    "Firmware Status",
};

// By bDescriptorSubtype (USB Video Class 1.5, A.5 and A.6).
constexpr std::array<char const*, 8> kVideoControlSubtypes = {
    nullptr,           ": Header",          ": Input Term",     ": Output Term",
    ": Selector Unit", ": Processing Unit", ": Extension Unit", ": Encoding Unit",
};

constexpr std::array<char const*, 25> kVideoStreamingSubtypes = {
    nullptr,
    ": Input Header",
    ": Output Header",
    ": Still Image Frame",
    ": Uncompressed Format",
    ": Uncompressed Frame",
    ": MJPEG Format",
    ": MJPEG Frame",
    ": MPEG1 Format",
    ": MPEG2-PS Format",
    ": MPEG2-TS Format",
    ": MPEG4SL Format",
    ": DV Frame",
    ": Color Format",
    ": Vendor Format",
    ": Vendor Frame",
    ": Frame-based Format",
    ": Frame-based Frame",
    ": Stream-based Format",
    ": H264 Format",
    ": H264 Frame",
    ": H264 Simulcast Format",
    ": VP8 Format",
    ": VP8 Frame",
    ": VP8 Simulcast Format",
};

constexpr std::array<char const*, 4> kTransferTypes = {"Control", "Isoch", "Bulk", "Interrupt"};

// By bInterfaceSubClass of an audio 3.0 interface.
constexpr std::array<char const*, 4> kAudio3Subclasses = {"<undefined>", "control", "streaming",
                                                          "MIDI"};

// How the class-specific descriptors of one video subclass are called.
struct VideoTexts {
  char const* interfaceLabel;
  char const* endpointLabel;
  char const* otherLabel;
};

constexpr VideoTexts kVideoControl = {"UVC Control Interface", "UVC Control Endpoint",
                                      "<Unknown UVC Control Descriptor>"};
constexpr VideoTexts kVideoStreaming = {"UVC Streaming Interface", "UVC Streaming Endpoint",
                                        "<Unknown UVC Streaming Descriptor>"};

// The caller vouches for the record (see GenerateDescriptorLabel).
template <typename Record>
Record const& As(TQ_USB_COMMON_DESCRIPTOR const& descriptor) {
  static_assert(usb_support::kIsWireRecord<Record>);
  return reinterpret_cast<Record const&>(descriptor);
}

std::string AudioDescription(TQ_USB_INTERFACE_DESCRIPTOR const& interface) {
  switch (interface.bInterfaceProtocol) {
    case 0x10:
      return "USB Audio 1";
    case 0x20:
      return "USB Audio 2";
    case 0x30:
      // The closing angle bracket is missing on purpose: log filters know the text as it is.
      return std::string("USB Audio 3 - ") +
             Lookup(kAudio3Subclasses, interface.bInterfaceSubClass, "<UNKNOWN AUDIO 3 SUBCLASS");
    default:
      return "USB Audio <unknown>";
  }
}

std::string ClassDescription(TQ_USB_INTERFACE_DESCRIPTOR const& interface) {
  switch (interface.bInterfaceClass) {
    case kAudioClass:
      return AudioDescription(interface);
    case kHidClass:
      return "HID";
    case kVideoClass:
      switch (interface.bInterfaceSubClass) {
        case 1:
          return "Video Control";
        case 2:
          return "Video Streaming";
        default:
          return {};
      }
    case kVendorSpecificClass:
      return "Vendor Specific";
    default:
      return {};
  }
}

std::string InterfaceLabel(TQ_USB_INTERFACE_DESCRIPTOR const& interface) {
  std::string label = FormatText(kDefaultIndentation, "Interface: Num=%u, Alt=%u",
                                 interface.bInterfaceNumber, interface.bAlternateSetting);
  if (std::string const description = ClassDescription(interface); !description.empty()) {
    label.append(" (").append(description).append(")");
  }
  return label;
}

std::string EndpointLabel(TQ_USB_ENDPOINT_DESCRIPTOR const& endpoint, TQE_USB_DEVICE_SPEED speed) {
  CSafeString const interval = CUsbHelper::GetEpIntervalString(endpoint, speed);
  return FormatText(
      kDefaultIndentation,
      "%s Endpoint: Address=0x%02X (%s), wMaxPacketSize=%u (0x%04X), bInterval=%u "
      "(%s)",
      CUsbHelper::GetEpTypeString(endpoint, speed), endpoint.bEndpointAddress,
      CUsbHelper::GetEpDirString(endpoint), static_cast<unsigned int>(endpoint.wMaxPacketSize),
      static_cast<unsigned int>(endpoint.wMaxPacketSize), endpoint.bInterval, interval.c_str());
}

std::string AssociationLabel(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR const& association) {
  return FormatText(kDefaultIndentation, "Interface Association: Initial=%u, Count=%u",
                    association.bFirstInterface, association.bInterfaceCount);
}

std::string ClassSpecificLabel(TQ_USB_COMMON_DESCRIPTOR const& descriptor,
                               TQ_USB_INTERFACE_DESCRIPTOR const* currentInterface) {
  std::pair<bool, std::string> answer;
  if (currentInterface != nullptr && currentInterface->bInterfaceClass == kVideoClass) {
    answer =
        CUsbHelper::GenerateUVCDescriptorLabel(descriptor, currentInterface->bInterfaceSubClass);
  }
  if (currentInterface != nullptr && currentInterface->bInterfaceClass == kAudioClass) {
    answer = CUsbHelper::GenerateUACDescriptorLabel(
        descriptor, currentInterface->bInterfaceSubClass, currentInterface->bInterfaceProtocol);
  }
  return answer.first ? answer.second : kUnknownDescriptor;
}

}  // namespace

char const* const CUsbHelper::DESCRIPTION_SEPARATOR_TEXT = " : ";
char const* const CUsbHelper::DESCRIPTION_SEPARATOR_C = " // ";

std::string CUsbHelper::GenerateDescriptorLabel(TQ_USB_COMMON_DESCRIPTOR const& descriptor,
                                                TQ_USB_INTERFACE_DESCRIPTOR* const currentInterface,
                                                TQE_USB_DEVICE_SPEED speed) {
  switch (descriptor.bDescriptorType) {
    case usb_support::kInterfaceType:
      return InterfaceLabel(As<TQ_USB_INTERFACE_DESCRIPTOR>(descriptor));
    case usb_support::kEndpointType:
      return EndpointLabel(As<TQ_USB_ENDPOINT_DESCRIPTOR>(descriptor), speed);
    case usb_support::kInterfaceAssociationType:
      return AssociationLabel(As<TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR>(descriptor));
    case usb_support::kDeviceCapabilityType:
      return GenerateBOSCapabilityDescriptorLabel(descriptor).second;
    default:
      break;
  }
  if (char const* const label = Lookup(kPlainLabels, descriptor.bDescriptorType, nullptr)) {
    return label;
  }
  return ClassSpecificLabel(descriptor, currentInterface);
}

std::pair<bool, std::string> CUsbHelper::GenerateBOSCapabilityDescriptorLabel(
    TQ_USB_COMMON_DESCRIPTOR const& descriptor) {
  auto const& capability = As<TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR>(descriptor);
  return {true, FormatText(kDefaultIndentation, "BOS Capability (%s)",
                           Lookup(kCapabilityNames, capability.bDevCapabilityType,
                                  "<unknown capability descriptor>"))};
}

std::pair<bool, std::string> CUsbHelper::GenerateUVCDescriptorLabel(
    TQ_USB_COMMON_DESCRIPTOR const& descriptor, unsigned char interfaceSubClass) {
  if (interfaceSubClass != 1 && interfaceSubClass != 2) {
    return {false, {}};
  }
  bool const isControl = interfaceSubClass == 1;
  VideoTexts const& texts = isControl ? kVideoControl : kVideoStreaming;
  switch (descriptor.bDescriptorType) {
    case usb_support::kClassSpecificInterfaceType: {
      std::uint8_t const subtype =
          As<TQ_USB_CLASS_SPECIFIC_DESCRIPTOR>(descriptor).bDescriptorSubtype;
      return {
          true,
          std::string(texts.interfaceLabel) +
              (isControl
                   ? Lookup(kVideoControlSubtypes, subtype, ": <unknown control interface>")
                   : Lookup(kVideoStreamingSubtypes, subtype, ": <unknown streaming interface>"))};
    }
    case usb_support::kClassSpecificEndpointType:
      return {true, texts.endpointLabel};
    default:
      return {true, texts.otherLabel};
  }
}

std::pair<bool, std::string> CUsbHelper::GenerateUACDescriptorLabel(
    TQ_USB_COMMON_DESCRIPTOR const& /*descriptor*/, unsigned char /*interfaceSubClass*/,
    unsigned char /*interfaceProtocol*/) {
  return {false, {}};
}

char const* CUsbHelper::GetEpDirString(TQ_USB_ENDPOINT_DESCRIPTOR const& endpoint) {
  return (endpoint.bEndpointAddress & 0x80) != 0 ? "IN" : "OUT";
}

char const* CUsbHelper::GetEpTypeString(TQ_USB_ENDPOINT_DESCRIPTOR const& endpoint,
                                        TQE_USB_DEVICE_SPEED /*speed*/) {
  return Lookup(kTransferTypes, endpoint.bmAttributes & 0x03u, "<unknown>");
}

CSafeString CUsbHelper::GetEpIntervalString(TQ_USB_ENDPOINT_DESCRIPTOR const& endpoint,
                                            TQE_USB_DEVICE_SPEED /*speed*/) {
  return FormatText(kDefaultIndentation, "0x%02X", static_cast<unsigned int>(endpoint.bInterval));
}

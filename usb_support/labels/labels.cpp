// The labels of descriptors: static members of CUsbHelper.
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include <usb_support/descriptors/class_codes.h>
#include <usb_support/helper/usb_helper.h>
#include <usb_support/labels/dump_form.h>
#include <usb_support/labels/label_text.h>
#include <usb_support/text/text_writer.h>

namespace {

using usb_support::kMostLabelCharacters;
using usb_support::TextWriter;

constexpr std::string_view kUnknownDescriptor = "<UNKNOWN DESCRIPTOR>";

// Texts by code; a code without an entry has an empty text or is beyond the table.
template <std::size_t Size>
constexpr std::string_view Lookup(std::array<std::string_view, Size> const& table, std::size_t code,
                                  std::string_view unknown) {
  return code < Size && !table[code].empty() ? table[code] : unknown;
}

// Descriptors whose label is their name alone, by bDescriptorType.
constexpr auto kPlainLabels = [] {
  std::array<std::string_view, 256> labels{};
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
constexpr auto kCapabilityNames = std::to_array<std::string_view>({
    "",
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
    "",
    "Billboard",
    "",
    "",
    "Configuration Summary",
    "Firmware Status",
});

// By bDescriptorSubtype (USB Video Class 1.5, A.5 and A.6).
constexpr auto kVideoControlSubtypes = std::to_array<std::string_view>({
    "",
    ": Header",
    ": Input Term",
    ": Output Term",
    ": Selector Unit",
    ": Processing Unit",
    ": Extension Unit",
    ": Encoding Unit",
});

constexpr auto kVideoStreamingSubtypes = std::to_array<std::string_view>({
    "",
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
});

constexpr auto kTransferTypes =
    std::to_array<std::string_view>({"Control", "Isoch", "Bulk", "Interrupt"});

// By bInterfaceSubClass of an audio 3.0 interface.
constexpr auto kAudio3Subclasses =
    std::to_array<std::string_view>({"<undefined>", "control", "streaming", "MIDI"});

// The names of the class-specific descriptors of one video subclass.
struct VideoTexts {
  std::string_view interfaceLabel;
  std::string_view endpointLabel;
  std::string_view otherLabel;
};

constexpr VideoTexts kVideoControl = {"UVC Control Interface", "UVC Control Endpoint",
                                      "<Unknown UVC Control Descriptor>"};
constexpr VideoTexts kVideoStreaming = {"UVC Streaming Interface", "UVC Streaming Endpoint",
                                        "<Unknown UVC Streaming Descriptor>"};

// The caller guarantees the record (see GenerateDescriptorLabel).
template <typename Record>
Record const& As(TQ_USB_COMMON_DESCRIPTOR const& descriptor) {
  static_assert(usb_support::kIsWireRecord<Record>);
  return reinterpret_cast<Record const&>(descriptor);
}

std::string_view TransferType(TQ_USB_ENDPOINT_DESCRIPTOR const& endpoint) {
  return kTransferTypes[endpoint.bmAttributes & 0x03u];
}

std::string_view Direction(TQ_USB_ENDPOINT_DESCRIPTOR const& endpoint) {
  return (endpoint.bEndpointAddress & 0x80) != 0 ? "IN" : "OUT";
}

void WriteAudioDescription(TextWriter& out, TQ_USB_INTERFACE_DESCRIPTOR const& interface) {
  switch (interface.bInterfaceProtocol) {
    case 0x10:
      return out.Text(" (USB Audio 1)");
    case 0x20:
      return out.Text(" (USB Audio 2)");
    case 0x30:
      out.Text(" (USB Audio 3 - ");
      // The closing angle bracket is deliberately missing: log filters know the text without it.
      out.Text(
          Lookup(kAudio3Subclasses, interface.bInterfaceSubClass, "<UNKNOWN AUDIO 3 SUBCLASS"));
      return out.Text(")");
    default:
      return out.Text(" (USB Audio <unknown>)");
  }
}

void WriteClassDescription(TextWriter& out, TQ_USB_INTERFACE_DESCRIPTOR const& interface) {
  switch (interface.bInterfaceClass) {
    case usb_support::kAudioClass:
      return WriteAudioDescription(out, interface);
    case usb_support::kHidClass:
      return out.Text(" (HID)");
    case usb_support::kVideoClass:
      if (interface.bInterfaceSubClass == 1) {
        out.Text(" (Video Control)");
      } else if (interface.bInterfaceSubClass == 2) {
        out.Text(" (Video Streaming)");
      }
      return;
    case usb_support::kVendorSpecificClass:
      return out.Text(" (Vendor Specific)");
    default:
      return;
  }
}

void WriteInterfaceLabel(TextWriter& out, TQ_USB_INTERFACE_DESCRIPTOR const& interface) {
  out.Text("Interface: Num=");
  out.Decimal(interface.bInterfaceNumber);
  out.Text(", Alt=");
  out.Decimal(interface.bAlternateSetting);
  WriteClassDescription(out, interface);
}

void WriteIntervalText(TextWriter& out, TQ_USB_ENDPOINT_DESCRIPTOR const& endpoint) {
  out.Text("0x");
  out.HexByte(endpoint.bInterval);
}

void WriteEndpointLabel(TextWriter& out, TQ_USB_ENDPOINT_DESCRIPTOR const& endpoint) {
  std::uint16_t const maxPacketSize = endpoint.wMaxPacketSize;
  out.Text(TransferType(endpoint));
  out.Text(" Endpoint: Address=0x");
  out.HexByte(endpoint.bEndpointAddress);
  out.Text(" (");
  out.Text(Direction(endpoint));
  out.Text("), wMaxPacketSize=");
  out.Decimal(maxPacketSize);
  out.Text(" (0x");
  out.HexWord(maxPacketSize);
  out.Text("), bInterval=");
  out.Decimal(endpoint.bInterval);
  out.Text(" (");
  WriteIntervalText(out, endpoint);
  out.Text(")");
}

void WriteAssociationLabel(TextWriter& out,
                           TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR const& association) {
  out.Text("Interface Association: Initial=");
  out.Decimal(association.bFirstInterface);
  out.Text(", Count=");
  out.Decimal(association.bInterfaceCount);
}

void WriteCapabilityLabel(TextWriter& out, TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR const& capability) {
  out.Text("BOS Capability (");
  out.Text(
      Lookup(kCapabilityNames, capability.bDevCapabilityType, "<unknown capability descriptor>"));
  out.Text(")");
}

// False, with nothing written, when the subclass is not one of the video class.
bool WriteVideoLabel(TextWriter& out, TQ_USB_COMMON_DESCRIPTOR const& descriptor,
                     std::uint8_t interfaceSubClass) {
  if (interfaceSubClass != 1 && interfaceSubClass != 2) {
    return false;
  }
  bool const isControl = interfaceSubClass == 1;
  VideoTexts const& texts = isControl ? kVideoControl : kVideoStreaming;
  switch (descriptor.bDescriptorType) {
    case usb_support::kClassSpecificInterfaceType: {
      std::uint8_t const subtype =
          As<TQ_USB_CLASS_SPECIFIC_DESCRIPTOR>(descriptor).bDescriptorSubtype;
      out.Text(texts.interfaceLabel);
      out.Text(isControl
                   ? Lookup(kVideoControlSubtypes, subtype, ": <unknown control interface>")
                   : Lookup(kVideoStreamingSubtypes, subtype, ": <unknown streaming interface>"));
      return true;
    }
    case usb_support::kClassSpecificEndpointType:
      out.Text(texts.endpointLabel);
      return true;
    default:
      out.Text(texts.otherLabel);
      return true;
  }
}

// No audio descriptor has its own label.
void WriteClassSpecificLabel(TextWriter& out, TQ_USB_COMMON_DESCRIPTOR const& descriptor,
                             TQ_USB_INTERFACE_DESCRIPTOR const* currentInterface) {
  bool const isVideo =
      currentInterface != nullptr && currentInterface->bInterfaceClass == usb_support::kVideoClass;
  if (!isVideo || !WriteVideoLabel(out, descriptor, currentInterface->bInterfaceSubClass)) {
    out.Text(kUnknownDescriptor);
  }
}

// The text that `write` writes, as a string.
template <typename Write>
std::string Written(Write const& write) {
  std::array<char, kMostLabelCharacters> text;
  TextWriter out(text.data(), text.size());
  write(out);
  return {text.data(), out.Position()};
}

}  // namespace

// By value, so that the position stays in a register.
usb_support::TextWriter usb_support::WriteDescriptorLabel(
    TextWriter out, TQ_USB_COMMON_DESCRIPTOR const& descriptor,
    TQ_USB_INTERFACE_DESCRIPTOR const* currentInterface) noexcept {
  switch (descriptor.bDescriptorType) {
    case kInterfaceType:
      WriteInterfaceLabel(out, As<TQ_USB_INTERFACE_DESCRIPTOR>(descriptor));
      return out;
    case kEndpointType:
      WriteEndpointLabel(out, As<TQ_USB_ENDPOINT_DESCRIPTOR>(descriptor));
      return out;
    case kInterfaceAssociationType:
      WriteAssociationLabel(out, As<TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR>(descriptor));
      return out;
    case kDeviceCapabilityType:
      WriteCapabilityLabel(out, As<TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR>(descriptor));
      return out;
    default:
      break;
  }
  std::string_view const label = Lookup(kPlainLabels, descriptor.bDescriptorType, {});
  if (!label.empty()) {
    out.Text(label);
  } else {
    WriteClassSpecificLabel(out, descriptor, currentInterface);
  }
  return out;
}

char const* const CUsbHelper::DESCRIPTION_SEPARATOR_TEXT =
    usb_support::kListingForm.separator.data();
char const* const CUsbHelper::DESCRIPTION_SEPARATOR_C = usb_support::kCodeForm.separator.data();

std::string CUsbHelper::GenerateDescriptorLabel(TQ_USB_COMMON_DESCRIPTOR const& descriptor,
                                                TQ_USB_INTERFACE_DESCRIPTOR* const currentInterface,
                                                TQE_USB_DEVICE_SPEED /*speed*/) {
  return Written([&](TextWriter& out) {
    out = usb_support::WriteDescriptorLabel(out, descriptor, currentInterface);
  });
}

std::pair<bool, std::string> CUsbHelper::GenerateBOSCapabilityDescriptorLabel(
    TQ_USB_COMMON_DESCRIPTOR const& descriptor) {
  return {true, Written([&](TextWriter& out) {
            WriteCapabilityLabel(out, As<TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR>(descriptor));
          })};
}

std::pair<bool, std::string> CUsbHelper::GenerateUVCDescriptorLabel(
    TQ_USB_COMMON_DESCRIPTOR const& descriptor, unsigned char interfaceSubClass) {
  bool handled = false;
  std::string label = Written(
      [&](TextWriter& out) { handled = WriteVideoLabel(out, descriptor, interfaceSubClass); });
  return {handled, std::move(label)};
}

std::pair<bool, std::string> CUsbHelper::GenerateUACDescriptorLabel(
    TQ_USB_COMMON_DESCRIPTOR const& /*descriptor*/, unsigned char /*interfaceSubClass*/,
    unsigned char /*interfaceProtocol*/) {
  return {false, {}};
}

char const* CUsbHelper::GetEpDirString(TQ_USB_ENDPOINT_DESCRIPTOR const& endpoint) {
  return Direction(endpoint).data();
}

char const* CUsbHelper::GetEpTypeString(TQ_USB_ENDPOINT_DESCRIPTOR const& endpoint,
                                        TQE_USB_DEVICE_SPEED /*speed*/) {
  return TransferType(endpoint).data();
}

CSafeString CUsbHelper::GetEpIntervalString(TQ_USB_ENDPOINT_DESCRIPTOR const& endpoint,
                                            TQE_USB_DEVICE_SPEED /*speed*/) {
  return CSafeString(Written([&](TextWriter& out) { WriteIntervalText(out, endpoint); }));
}

// Class, subclass and protocol codes: usb.org, Defined Class Codes, and the class standards.
#include <algorithm>
#include <tuple>

#include <usb_fields/tables/names.h>

namespace usb_fields::detail {
namespace {

constexpr std::int16_t kAny = ClassRow::kAny;

constexpr ClassRow kClasses[] = {
    // usb.org, Defined Class Codes
    {0x00, kAny, kAny, "Use class information in the Interface Descriptors"},
    // usb.org, Defined Class Codes
    {0x01, kAny, kAny, "Audio"},
    {0x01, kAny, 0x00, "Audio 1.0"},
    {0x01, kAny, 0x20, "Audio 2.0"},
    {0x01, kAny, 0x30, "Audio 3.0"},
    {0x01, 0x00, kAny, "Subclass undefined"},
    {0x01, 0x01, kAny, "Audio Control"},
    {0x01, 0x02, kAny, "Audio Streaming"},
    {0x01, 0x03, kAny, "MIDI Streaming"},
    {0x01, 0x20, kAny, "BADD function: Generic I/O"},
    {0x01, 0x21, kAny, "BADD function: Headphone"},
    {0x01, 0x22, kAny, "BADD function: Speaker"},
    {0x01, 0x23, kAny, "BADD function: Microphone"},
    {0x01, 0x24, kAny, "BADD function: Headset"},
    {0x01, 0x25, kAny, "BADD function: Headset Adapter"},
    {0x01, 0x26, kAny, "BADD function: Speakerphone"},
    // usb.org, Defined Class Codes
    {0x02, kAny, kAny, "Communications and CDC Control"},
    {0x02, kAny, 0x00, "No class specific protocol"},
    {0x02, kAny, 0x01, "AT Commands: V.250"},
    {0x02, kAny, 0x02, "AT Commands: PCCA-101"},
    {0x02, kAny, 0x03, "AT Commands: PCCA-101 and Annex O"},
    {0x02, kAny, 0x04, "AT Commands: GSM 07.07"},
    {0x02, kAny, 0x05, "AT Commands: 3GPP 27.007"},
    {0x02, kAny, 0x06, "AT Commands: TIA for CDMA"},
    {0x02, kAny, 0x07, "Ethernet Emulation Model"},
    {0x02, kAny, 0xFE, "External protocol: commands defined by Command Set Functional Descriptor"},
    {0x02, kAny, 0xFF, "Vendor-specific"},
    {0x02, 0x01, kAny, "Direct Line Control Model"},
    {0x02, 0x02, kAny, "Abstract Control Model"},
    {0x02, 0x03, kAny, "Telephone Control Model"},
    {0x02, 0x04, kAny, "Multi-Channel Control Model"},
    {0x02, 0x05, kAny, "CAPI Control Model"},
    {0x02, 0x06, kAny, "Ethernet Networking Control Model"},
    {0x02, 0x07, kAny, "ATM Networking Control Model"},
    {0x02, 0x08, kAny, "Wireless Handset Control Model"},
    {0x02, 0x09, kAny, "Device Management"},
    {0x02, 0x0A, kAny, "Mobile Direct Line Model"},
    {0x02, 0x0B, kAny, "OBEX"},
    {0x02, 0x0C, kAny, "Ethernet Emulation Model"},
    {0x02, 0x0D, kAny, "Network Control Model"},
    {0x02, 0x0E, kAny, "Mobile Broadband Interface Model"},
    // usb.org, Defined Class Codes
    {0x03, kAny, kAny, "HID (Human Interface Device)"},
    {0x03, kAny, 0x00, "None"},
    {0x03, 0x00, kAny, "No Subclass"},
    {0x03, 0x01, kAny, "Boot Interface Subclass"},
    {0x03, 0x01, 0x01, "Keyboard"},
    {0x03, 0x01, 0x02, "Mouse"},
    // usb.org, Defined Class Codes
    {0x05, kAny, kAny, "Physical"},
    // usb.org, Defined Class Codes
    {0x06, kAny, kAny, "Image"},
    {0x06, 0x01, kAny, "Still Image Capture"},
    {0x06, 0x01, 0x01, "PIMA 15740 (PTP)"},
    // usb.org, Defined Class Codes
    {0x07, kAny, kAny, "Printer"},
    {0x07, 0x01, kAny, "Printers"},
    {0x07, 0x01, 0x01, "Unidirectional"},
    {0x07, 0x01, 0x02, "Bidirectional"},
    {0x07, 0x01, 0x03, "IEEE 1284.4 compatible bidirectional"},
    {0x07, 0x01, 0x04, "IPP over USB"},
    {0x07, 0x01, 0xFF, "Vendor-specific"},
    // usb.org, Defined Class Codes
    {0x08, kAny, kAny, "Mass Storage"},
    {0x08, kAny, 0x00, "CBI with command completion interrupt"},
    {0x08, kAny, 0x01, "CBI without command completion interrupt"},
    {0x08, kAny, 0x02, "Obsolete"},
    {0x08, kAny, 0x50, "Bulk-Only Transport (BBB)"},
    {0x08, kAny, 0x62, "UAS"},
    {0x08, kAny, 0xFF, "Specific to device vendor"},
    {0x08, 0x00, kAny, "SCSI command set not reported"},
    {0x08, 0x01, kAny, "RBC"},
    {0x08, 0x02, kAny, "MMC-5 (ATAPI)"},
    {0x08, 0x03, kAny, "Obsolete (was QIC-157)"},
    {0x08, 0x04, kAny, "UFI"},
    {0x08, 0x05, kAny, "Obsolete (was SFF-8070i)"},
    {0x08, 0x06, kAny, "SCSI transparent command set"},
    {0x08, 0x07, kAny, "LSD FS"},
    {0x08, 0x08, kAny, "IEEE 1667"},
    {0x08, 0xFF, kAny, "Specific to device vendor"},
    // usb.org, Defined Class Codes
    {0x09, kAny, kAny, "Hub"},
    {0x09, 0x00, kAny, "Hub"},
    {0x09, 0x00, 0x00, "Full-speed hub, or no TT"},
    {0x09, 0x00, 0x01, "Hi-speed hub with single TT"},
    {0x09, 0x00, 0x02, "Hi-speed hub with multiple TTs"},
    {0x09, 0x00, 0x03, "SuperSpeed hub"},
    // usb.org, Defined Class Codes
    {0x0A, kAny, kAny, "CDC-Data"},
    {0x0A, kAny, 0x00, "No class specific protocol"},
    {0x0A, kAny, 0x01, "Network Transfer Block"},
    {0x0A, kAny, 0x02, "Network Transfer Block (IP + DSS)"},
    {0x0A, kAny, 0x30, "ISDN BRI (I.430)"},
    {0x0A, kAny, 0x31, "HDLC"},
    {0x0A, kAny, 0x32, "Transparent"},
    {0x0A, kAny, 0x50, "Q.921 management"},
    {0x0A, kAny, 0x51, "Q.921 data link"},
    {0x0A, kAny, 0x52, "Q.921 TEI-multiplexor"},
    {0x0A, kAny, 0x90, "V.42bis data compression"},
    {0x0A, kAny, 0x91, "Euro-ISDN (Q.931)"},
    {0x0A, kAny, 0x92, "V.120 rate adaptation to ISDN"},
    {0x0A, kAny, 0x93, "CAPI 2.0 commands"},
    {0x0A, kAny, 0xFD, "Host based driver"},
    {0x0A, kAny, 0xFE, "Protocol Unit Functional Descriptors"},
    {0x0A, kAny, 0xFF, "Vendor-specific"},
    // usb.org, Defined Class Codes
    {0x0B, kAny, kAny, "Smart Card"},
    {0x0B, 0x00, kAny, "Smart Card"},
    {0x0B, 0x00, 0x00, "CCID (bulk)"},
    {0x0B, 0x00, 0x01, "ICCD Version A"},
    {0x0B, 0x00, 0x02, "ICCD Version B"},
    // usb.org, Defined Class Codes
    {0x0D, kAny, kAny, "Content Security"},
    {0x0D, 0x00, 0x00, "Content Security"},
    // usb.org, Defined Class Codes
    {0x0E, kAny, kAny, "Video"},
    {0x0E, kAny, 0x00, "Protocol undefined"},
    {0x0E, kAny, 0x01, "Video 1.5"},
    {0x0E, 0x00, kAny, "Subclass undefined"},
    {0x0E, 0x01, kAny, "Video Control"},
    {0x0E, 0x02, kAny, "Video Streaming"},
    {0x0E, 0x03, kAny, "Video Interface Collection"},
    // usb.org, Defined Class Codes
    {0x0F, kAny, kAny, "Personal Healthcare"},
    // usb.org, Defined Class Codes
    {0x10, kAny, kAny, "Audio/Video Devices"},
    {0x10, 0x01, kAny, "AVControl"},
    {0x10, 0x01, 0x00, "AVControl Interface"},
    {0x10, 0x01, 0x10, "AVControl Interface, version 1.0"},
    {0x10, 0x02, kAny, "AVData Video Streaming"},
    {0x10, 0x02, 0x00, "AVData Video Streaming Interface"},
    {0x10, 0x02, 0x10, "AVData Video Streaming Interface, version 1.0"},
    {0x10, 0x03, kAny, "AVData Audio Streaming"},
    {0x10, 0x03, 0x00, "AVData Audio Streaming Interface"},
    {0x10, 0x03, 0x10, "AVData Audio Streaming Interface, version 1.0"},
    // usb.org, Defined Class Codes
    {0x11, kAny, kAny, "Billboard"},
    {0x11, 0x00, 0x00, "Billboard"},
    // usb.org, Defined Class Codes
    {0x12, kAny, kAny, "USB Type-C Bridge"},
    {0x12, 0x00, 0x00, "USB Type-C Bridge"},
    // usb.org, Defined Class Codes
    {0x13, kAny, kAny, "USB Bulk Display Protocol"},
    {0x13, 0x00, 0x00, "USB Bulk Display Protocol"},
    // usb.org, Defined Class Codes
    {0x14, kAny, kAny, "MCTP over USB"},
    {0x14, 0x00, kAny, "MCTP Management-controller and Managed-Device endpoints"},
    {0x14, 0x00, 0x01, "MCTP 1.x"},
    {0x14, 0x00, 0x02, "MCTP 2.x"},
    {0x14, 0x01, kAny, "MCTP Host Interface endpoint"},
    {0x14, 0x01, 0x01, "MCTP 1.x"},
    {0x14, 0x01, 0x02, "MCTP 2.x"},
    // usb.org, Defined Class Codes
    {0x3C, kAny, kAny, "I3C"},
    {0x3C, 0x00, 0x00, "I3C"},
    // usb.org, Defined Class Codes
    {0xDC, kAny, kAny, "Diagnostic"},
    {0xDC, 0x01, kAny, "Reprogrammable diagnostics"},
    {0xDC, 0x01, 0x01, "USB2 Compliance Device"},
    {0xDC, 0x02, kAny, "Debug Target"},
    {0xDC, 0x02, 0x00, "Debug Target, vendor defined"},
    {0xDC, 0x02, 0x01, "GNU Remote Debug Command Set"},
    {0xDC, 0x03, 0x00, "Undefined"},
    {0xDC, 0x03, 0x01, "Trace on DbC, vendor defined"},
    {0xDC, 0x04, 0x00, "Undefined"},
    {0xDC, 0x04, 0x01, "Dfx on DbC, vendor defined"},
    {0xDC, 0x05, 0x00, "Trace over GP endpoint on DvC, vendor defined"},
    {0xDC, 0x05, 0x01, "GNU protocol over GP endpoint on DvC"},
    {0xDC, 0x06, 0x00, "Undefined"},
    {0xDC, 0x06, 0x01, "Dfx on DvC, vendor defined"},
    {0xDC, 0x07, 0x00, "Undefined"},
    {0xDC, 0x07, 0x01, "Trace on DvC, vendor defined"},
    {0xDC, 0x08, 0x00, "Undefined"},
    // usb.org, Defined Class Codes
    {0xE0, kAny, kAny, "Wireless Controller"},
    {0xE0, 0x01, kAny, "Radio Frequency"},
    {0xE0, 0x01, 0x01, "Bluetooth Programming Interface"},
    {0xE0, 0x01, 0x02, "UWB Radio Control Interface"},
    {0xE0, 0x01, 0x03, "Remote NDIS"},
    {0xE0, 0x01, 0x04, "Bluetooth AMP Controller"},
    {0xE0, 0x02, kAny, "Wireless USB Wire Adapter"},
    {0xE0, 0x02, 0x01, "Host Wire Adapter Control/Data interface"},
    {0xE0, 0x02, 0x02, "Device Wire Adapter Control/Data interface"},
    {0xE0, 0x02, 0x03, "Device Wire Adapter Isochronous interface"},
    // usb.org, Defined Class Codes
    {0xEF, kAny, kAny, "Miscellaneous"},
    {0xEF, 0x01, 0x01, "ActiveSync"},
    {0xEF, 0x01, 0x02, "Palm Sync"},
    {0xEF, 0x02, kAny, "Common Class"},
    {0xEF, 0x02, 0x01, "Interface Association Descriptor"},
    {0xEF, 0x02, 0x02, "Wire Adapter Multifunction Peripheral"},
    {0xEF, 0x03, kAny, "Cable Based Association Framework"},
    {0xEF, 0x03, 0x01, "Cable Based Association Framework"},
    {0xEF, 0x04, kAny, "RNDIS"},
    {0xEF, 0x04, 0x01, "RNDIS over Ethernet"},
    {0xEF, 0x04, 0x02, "RNDIS over WiFi"},
    {0xEF, 0x04, 0x03, "RNDIS over WiMAX"},
    {0xEF, 0x04, 0x04, "RNDIS over WWAN"},
    {0xEF, 0x04, 0x05, "RNDIS for Raw IPv4"},
    {0xEF, 0x04, 0x06, "RNDIS for Raw IPv6"},
    {0xEF, 0x04, 0x07, "RNDIS for GPRS"},
    {0xEF, 0x05, kAny, "USB3 Vision"},
    {0xEF, 0x05, 0x00, "USB3 Vision Control Interface"},
    {0xEF, 0x05, 0x01, "USB3 Vision Event Interface"},
    {0xEF, 0x05, 0x02, "USB3 Vision Streaming Interface"},
    {0xEF, 0x06, kAny, "STEP (Stream Transport Efficient Protocol)"},
    {0xEF, 0x06, 0x01, "STEP"},
    {0xEF, 0x06, 0x02, "STEP RAW"},
    {0xEF, 0x07, kAny, "DVB-CI"},
    {0xEF, 0x07, 0x01, "DVB-CI Command Interface"},
    {0xEF, 0x07, 0x02, "DVB-CI Media Interface"},
    {0xEF, 0x08, 0x01, "OCP Secure Firmware Recovery"},
    {0xEF, 0x09, 0x01, "OCP OBMF-ICP"},
    // usb.org, Defined Class Codes
    {0xFE, kAny, kAny, "Application Specific"},
    {0xFE, 0x01, kAny, "Device Firmware Upgrade"},
    {0xFE, 0x01, 0x00, "DFU 1.0"},
    {0xFE, 0x01, 0x01, "DFU, run-time"},
    {0xFE, 0x01, 0x02, "DFU mode"},
    {0xFE, 0x02, kAny, "IrDA Bridge"},
    {0xFE, 0x02, 0x00, "IrDA Bridge"},
    {0xFE, 0x03, kAny, "Test and Measurement"},
    {0xFE, 0x03, 0x00, "USBTMC"},
    {0xFE, 0x03, 0x01, "USBTMC USB488"},
    // usb.org, Defined Class Codes
    {0xFF, kAny, kAny, "Vendor Specific"},
    {0xFF, 0x42, 0x01, "Android Debug Bridge (ADB)"},
    {0xFF, 0x42, 0x03, "Android fastboot"},
    {0xFF, 0x47, 0xD0, "Xbox One controller (GIP)"},
    {0xFF, 0x5D, 0x01, "Xbox 360 controller"},
    {0xFF, 0x5D, 0x81, "Xbox 360 wireless receiver"},
    {0xFF, 0xFE, 0x02, "Apple mobile device (usbmux)"},
};

constexpr bool ComesBefore(ClassRow const& a, ClassRow const& b) noexcept {
  return std::tuple(a.classCode, a.subclass, a.protocol) <
         std::tuple(b.classCode, b.subclass, b.protocol);
}

constexpr bool IsInOrder() noexcept {
  return std::adjacent_find(std::begin(kClasses), std::end(kClasses),
                            [](ClassRow const& a, ClassRow const& b) {
                              return !ComesBefore(a, b);
                            }) == std::end(kClasses);
}
static_assert(IsInOrder());

}  // namespace

std::span<ClassRow const> ClassRows() noexcept {
  return kClasses;
}

}  // namespace usb_fields::detail

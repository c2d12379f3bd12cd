// The labels of descriptors.
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include <tests/support/exact_bytes.h>
#include <tests/support/suite_test.h>
#include <usb_support/helper/usb_helper.h>

namespace usb_support {
namespace {

using testing_support::Bytes;
using testing_support::ExactBytes;

using Answer = std::pair<bool, std::string>;

constexpr char const* kUnknown = "<UNKNOWN DESCRIPTOR>";

unsigned char Byte(unsigned value) {
  return static_cast<unsigned char>(value);
}

TQE_USB_DEVICE_SPEED Speed(unsigned value) {
  return static_cast<TQE_USB_DEVICE_SPEED>(value);
}

std::string Text(unsigned number) {
  return std::to_string(number);
}

// Two digits, upper case.
std::string Hex2(unsigned value) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  return {kDigits[(value >> 4) & 0xF], kDigits[value & 0xF]};
}

std::string Hex4(unsigned value) {
  return Hex2(value >> 8) + Hex2(value);
}

// The part of an interface's record that the labels read.
struct Interface {
  unsigned interfaceClass = 0;
  unsigned subclass = 0;
  unsigned protocol = 0;
  unsigned number = 0;
  unsigned alternate = 0;
};

Bytes InterfaceBytes(Interface const& interface) {
  return {0x09,
          0x04,
          Byte(interface.number),
          Byte(interface.alternate),
          0xEE,
          Byte(interface.interfaceClass),
          Byte(interface.subclass),
          Byte(interface.protocol),
          0xEE};
}

Bytes EndpointBytes(unsigned address, unsigned attributes, unsigned packetSize, unsigned interval) {
  return {0x07,
          0x05,
          Byte(address),
          Byte(attributes),
          Byte(packetSize & 0xFF),
          Byte(packetSize >> 8),
          Byte(interval)};
}

// The label of the descriptor in a block that ends where the descriptor does.
std::string Label(Bytes const& descriptor, std::optional<Interface> const& current = {},
                  TQE_USB_DEVICE_SPEED speed = TQE_USB_DEVICE_SPEED_UNKNOWN) {
  ExactBytes const block(descriptor);
  if (!current) {
    return CUsbHelper::GenerateDescriptorLabel(*block.Descriptor(), nullptr, speed);
  }
  ExactBytes const interface(InterfaceBytes(*current));
  return CUsbHelper::GenerateDescriptorLabel(
      *block.Descriptor(), reinterpret_cast<TQ_USB_INTERFACE_DESCRIPTOR*>(interface.data()), speed);
}

std::string InterfaceLabel(Interface const& interface) {
  return Label(InterfaceBytes(interface));
}

Answer CapabilityAnswer(unsigned capability) {
  ExactBytes const block({0x03, 0x10, Byte(capability)});
  return CUsbHelper::GenerateBOSCapabilityDescriptorLabel(*block.Descriptor());
}

Answer VideoAnswer(Bytes const& descriptor, unsigned subclass) {
  ExactBytes const block(descriptor);
  return CUsbHelper::GenerateUVCDescriptorLabel(*block.Descriptor(), Byte(subclass));
}

// As short as the labels allow for the type: all that they may read.
Bytes ShortestDescriptor(unsigned type) {
  switch (type) {
    case 0x04:
      return {0x09, 0x04, 0x07, 0x02, 0x00, 0x08, 0x06, 0x50, 0x00};
    case 0x05:
      return {0x07, 0x05, 0x02, 0x02, 0x00, 0x02, 0x00};
    case 0x0B:
      return {0x08, 0x0B, 0x01, 0x02, 0x0E, 0x03, 0x00, 0x00};
    case 0x10:
      return {0x03, 0x10, 0x02};
    case 0x24:
      return {0x03, 0x24, 0x01};
    default:
      return {0x02, Byte(type)};
  }
}

// The label of a descriptor of ShortestDescriptor in any interface; for the other types it depends
// on the interface.
std::map<unsigned, std::string> const kStandardLabels = {
    {1, "Device"},
    {2, "Configuration"},
    {4, "Interface: Num=7, Alt=2"},
    {5, "Bulk Endpoint: Address=0x02 (OUT), wMaxPacketSize=512 (0x0200), bInterval=0 (0x00)"},
    {6, "Device Qualifier"},
    {7, "Other Speed Configuration"},
    {11, "Interface Association: Initial=1, Count=2"},
    {15, "BOS"},
    {16, "BOS Capability (USB 2 Extension)"},
    {18, "eUSB2 Isochronous Endpoint Companion"},
    {48, "SuperSpeed Endpoint Companion"},
    {49, "SuperSpeedPlus Isochronous Endpoint Companion"},
};

std::map<unsigned, std::string> const kCapabilityNames = {
    {1, "WUSB"},
    {2, "USB 2 Extension"},
    {3, "SuperSpeed"},
    {4, "Container ID"},
    {5, "Platform"},
    {6, "Power Delivery"},
    {7, "Battery Info"},
    {8, "PD Consumer"},
    {9, "PD Provider"},
    {10, "SuperSpeed Plus"},
    {11, "Precision Time Measurement (PTM)"},
    {13, "Billboard"},
    {16, "Configuration Summary"},
    {17, "Firmware Status"},
};

std::map<unsigned, std::string> const kVideoControlSubtypes = {
    {1, ": Header"},        {2, ": Input Term"},      {3, ": Output Term"},
    {4, ": Selector Unit"}, {5, ": Processing Unit"}, {6, ": Extension Unit"},
    {7, ": Encoding Unit"},
};

std::map<unsigned, std::string> const kVideoStreamingSubtypes = {
    {1, ": Input Header"},        {2, ": Output Header"},      {3, ": Still Image Frame"},
    {4, ": Uncompressed Format"}, {5, ": Uncompressed Frame"}, {6, ": MJPEG Format"},
    {7, ": MJPEG Frame"},         {8, ": MPEG1 Format"},       {9, ": MPEG2-PS Format"},
    {10, ": MPEG2-TS Format"},    {11, ": MPEG4SL Format"},    {12, ": DV Frame"},
    {13, ": Color Format"},       {14, ": Vendor Format"},     {15, ": Vendor Frame"},
    {16, ": Frame-based Format"}, {17, ": Frame-based Frame"}, {18, ": Stream-based Format"},
    {19, ": H264 Format"},        {20, ": H264 Frame"},        {21, ": H264 Simulcast Format"},
    {22, ": VP8 Format"},         {23, ": VP8 Frame"},         {24, ": VP8 Simulcast Format"},
};

std::string Find(std::map<unsigned, std::string> const& table, unsigned code,
                 std::string const& unknown) {
  auto const found = table.find(code);
  return found == table.end() ? unknown : found->second;
}

// No helper is registered: the labels need none. They only go to the caller.
class DescriptorLabels : public testing_support::SuiteTest {
 protected:
  ~DescriptorLabels() override { EXPECT_TRUE(TakeCalls().empty()); }
};

TEST_F(DescriptorLabels, SeparatorsAreExported) {
  EXPECT_STREQ(CUsbHelper::DESCRIPTION_SEPARATOR_TEXT, " : ");
  EXPECT_STREQ(CUsbHelper::DESCRIPTION_SEPARATOR_C, " // ");
}

TEST_F(DescriptorLabels, EveryTypeWithoutAnInterface) {
  for (unsigned type = 0; type < 256; ++type) {
    EXPECT_EQ(Label(ShortestDescriptor(type)), Find(kStandardLabels, type, kUnknown)) << type;
  }
}

TEST_F(DescriptorLabels, EveryTypeInEveryInterface) {
  for (unsigned interfaceClass = 0; interfaceClass < 256; ++interfaceClass) {
    for (unsigned const subclass : {1u, 2u, 255u}) {
      bool const isControl = interfaceClass == 0x0E && subclass == 1;
      bool const isVideo = isControl || (interfaceClass == 0x0E && subclass == 2);
      std::string const video = isControl ? "UVC Control" : "UVC Streaming";
      for (unsigned type = 0; type < 256; ++type) {
        std::string own = "<Unknown " + video + " Descriptor>";
        if (type == 0x24) {
          own = video + (isControl ? " Interface: Header" : " Interface: Input Header");
        } else if (type == 0x25) {
          own = video + " Endpoint";
        }
        Bytes const descriptor = ShortestDescriptor(type);
        ASSERT_EQ(Label(descriptor, Interface{interfaceClass, subclass, type % 4 * 16}),
                  Find(kStandardLabels, type, isVideo ? own : kUnknown))
            << interfaceClass << ' ' << subclass << ' ' << type;
        if (interfaceClass == 0x0E) {
          ASSERT_EQ(VideoAnswer(descriptor, subclass), Answer(isVideo, isVideo ? own : ""));
        }
      }
    }
  }
}

TEST_F(DescriptorLabels, EveryVideoSubtype) {
  for (unsigned subtype = 0; subtype < 256; ++subtype) {
    Bytes const descriptor = {0x03, 0x24, Byte(subtype)};
    std::string const control = "UVC Control Interface" + Find(kVideoControlSubtypes, subtype,
                                                               ": <unknown control interface>");
    std::string const streaming =
        "UVC Streaming Interface" +
        Find(kVideoStreamingSubtypes, subtype, ": <unknown streaming interface>");
    EXPECT_EQ(VideoAnswer(descriptor, 1), Answer(true, control));
    EXPECT_EQ(VideoAnswer(descriptor, 2), Answer(true, streaming));
    EXPECT_EQ(Label(descriptor, Interface{0x0E, 1, 0}), control);
    EXPECT_EQ(Label(descriptor, Interface{0x0E, 2, 0}), streaming);
  }
}

TEST_F(DescriptorLabels, SpeedPlaysNoPart) {
  for (unsigned speed = 0; speed < 256; ++speed) {
    for (unsigned const type : {0x01u, 0x04u, 0x05u, 0x0Bu, 0x10u, 0x30u}) {
      ASSERT_EQ(Label(ShortestDescriptor(type), {}, Speed(speed)), kStandardLabels.at(type))
          << speed << ' ' << type;
    }
  }
}

TEST_F(DescriptorLabels, LengthFieldPlaysNoPart) {
  for (unsigned const length : {0u, 1u, 2u, 255u}) {
    Bytes endpoint = EndpointBytes(0x81, 0x03, 64, 10);
    endpoint[0] = Byte(length);
    EXPECT_EQ(Label(endpoint),
              "Interrupt Endpoint: Address=0x81 (IN), wMaxPacketSize=64 (0x0040), bInterval=10 "
              "(0x0A)");
    EXPECT_EQ(Label({Byte(length), 0x01}), "Device");
  }
}

TEST_F(DescriptorLabels, InterfaceNumbersAreDecimal) {
  EXPECT_EQ(InterfaceLabel({0x0E, 2, 0, 0, 1}), "Interface: Num=0, Alt=1 (Video Streaming)");
  EXPECT_EQ(InterfaceLabel({0x08, 6, 0x50, 2, 0}), "Interface: Num=2, Alt=0");
  for (unsigned value = 0; value < 256; ++value) {
    EXPECT_EQ(InterfaceLabel({0x00, 0, 0, value, 255 - value}),
              "Interface: Num=" + Text(value) + ", Alt=" + Text(255 - value));
  }
}

TEST_F(DescriptorLabels, InterfaceSuffixByClassAndSubclass) {
  for (unsigned interfaceClass = 0; interfaceClass < 256; ++interfaceClass) {
    for (unsigned subclass = 0; subclass < 256; ++subclass) {
      std::string suffix;
      if (interfaceClass == 0x01) {
        suffix = " (USB Audio <unknown>)";
      } else if (interfaceClass == 0x03) {
        suffix = " (HID)";
      } else if (interfaceClass == 0x0E && subclass == 1) {
        suffix = " (Video Control)";
      } else if (interfaceClass == 0x0E && subclass == 2) {
        suffix = " (Video Streaming)";
      } else if (interfaceClass == 0xFF) {
        suffix = " (Vendor Specific)";
      }
      ASSERT_EQ(InterfaceLabel({interfaceClass, subclass, 0}), "Interface: Num=0, Alt=0" + suffix)
          << interfaceClass << ' ' << subclass;
    }
  }
}

TEST_F(DescriptorLabels, AudioSuffixByProtocolAndSubclass) {
  for (unsigned protocol = 0; protocol < 256; ++protocol) {
    for (unsigned subclass = 0; subclass < 256; ++subclass) {
      std::string version = "<unknown>";
      if (protocol == 0x10) {
        version = "1";
      } else if (protocol == 0x20) {
        version = "2";
      } else if (protocol == 0x30) {
        version = subclass == 0   ? "3 - <undefined>"
                  : subclass == 1 ? "3 - control"
                  : subclass == 2 ? "3 - streaming"
                  : subclass == 3 ? "3 - MIDI"
                                  : "3 - <UNKNOWN AUDIO 3 SUBCLASS";
      }
      ASSERT_EQ(InterfaceLabel({0x01, subclass, protocol}),
                "Interface: Num=0, Alt=0 (USB Audio " + version + ")")
          << protocol << ' ' << subclass;
    }
  }
}

TEST_F(DescriptorLabels, InterfaceIsLabelledFromItsOwnFields) {
  EXPECT_EQ(Label(InterfaceBytes({0x03, 1, 1, 3, 0}), Interface{0x0E, 2, 0, 9, 9}),
            "Interface: Num=3, Alt=0 (HID)");
}

TEST_F(DescriptorLabels, AssociationNumbersAreDecimal) {
  for (unsigned value = 0; value < 256; ++value) {
    EXPECT_EQ(Label({0x08, 0x0B, Byte(value), Byte(255 - value), 0x0E, 0x03, 0x00, 0x00}),
              "Interface Association: Initial=" + Text(value) + ", Count=" + Text(255 - value));
  }
}

TEST_F(DescriptorLabels, EndpointPacketSizes) {
  for (unsigned size = 0; size < 0x10000; size += 0x101) {
    ASSERT_EQ(Label(EndpointBytes(0x00, 0x00, size, 0)),
              "Control Endpoint: Address=0x00 (OUT), wMaxPacketSize=" + Text(size) + " (0x" +
                  Hex4(size) + "), bInterval=0 (0x00)");
  }
  EXPECT_EQ(Label(EndpointBytes(0x00, 0x00, 0xFFFF, 0)),
            "Control Endpoint: Address=0x00 (OUT), wMaxPacketSize=65535 (0xFFFF), bInterval=0 "
            "(0x00)");
}

// The other seven bits never change the texts.
TEST_F(DescriptorLabels, EndpointTypeByAttributes) {
  constexpr char const* kTypes[] = {"Control", "Isoch", "Bulk", "Interrupt"};
  for (unsigned attributes = 0; attributes < 256; ++attributes) {
    ExactBytes const block(EndpointBytes(0x81, attributes, 64, 1));
    auto const& endpoint = reinterpret_cast<TQ_USB_ENDPOINT_DESCRIPTOR const&>(*block.data());
    std::string const type = kTypes[attributes & 3];
    for (unsigned const speed : {0u, 1u, 2u, 3u, 4u, 0xFFu}) {
      EXPECT_EQ(CUsbHelper::GetEpTypeString(endpoint, Speed(speed)), type) << attributes;
    }
    EXPECT_EQ(
        Label(EndpointBytes(0x81, attributes, 64, 1)),
        type + " Endpoint: Address=0x81 (IN), wMaxPacketSize=64 (0x0040), bInterval=1 (0x01)");
  }
}

TEST_F(DescriptorLabels, EndpointDirectionByAddress) {
  for (unsigned address = 0; address < 256; ++address) {
    ExactBytes const block(EndpointBytes(address, 2, 64, 1));
    auto const& endpoint = reinterpret_cast<TQ_USB_ENDPOINT_DESCRIPTOR const&>(*block.data());
    std::string const direction = address >= 0x80 ? "IN" : "OUT";
    EXPECT_EQ(CUsbHelper::GetEpDirString(endpoint), direction) << address;
    EXPECT_EQ(Label(EndpointBytes(address, 2, 64, 1)),
              "Bulk Endpoint: Address=0x" + Hex2(address) + " (" + direction +
                  "), wMaxPacketSize=64 (0x0040), bInterval=1 (0x01)");
  }
}

TEST_F(DescriptorLabels, EndpointIntervalIsNotConverted) {
  for (unsigned interval = 0; interval < 256; ++interval) {
    std::string const expected = "0x" + Hex2(interval);
    for (unsigned attributes = 0; attributes < 4; ++attributes) {
      ExactBytes const block(EndpointBytes(0x81, attributes, 64, interval));
      auto const& endpoint = reinterpret_cast<TQ_USB_ENDPOINT_DESCRIPTOR const&>(*block.data());
      for (unsigned const speed : {0u, 1u, 2u, 3u, 4u, 0xFFu}) {
        ASSERT_STREQ(CUsbHelper::GetEpIntervalString(endpoint, Speed(speed)).c_str(),
                     expected.c_str());
      }
    }
    EXPECT_EQ(Label(EndpointBytes(0x81, 3, 64, interval)),
              "Interrupt Endpoint: Address=0x81 (IN), wMaxPacketSize=64 (0x0040), bInterval=" +
                  Text(interval) + " (" + expected + ")");
  }
}

TEST_F(DescriptorLabels, EveryCapability) {
  for (unsigned capability = 0; capability < 256; ++capability) {
    std::string const expected =
        "BOS Capability (" + Find(kCapabilityNames, capability, "<unknown capability descriptor>") +
        ")";
    EXPECT_EQ(CapabilityAnswer(capability), Answer(true, expected)) << capability;
    EXPECT_EQ(Label({0x03, 0x10, Byte(capability)}), expected) << capability;
    EXPECT_EQ(Label({0x03, 0x10, Byte(capability)}, Interface{0x0E, 1, 0}), expected) << capability;
  }
}

TEST_F(DescriptorLabels, AudioLabellerHandlesNothing) {
  for (unsigned value = 0; value < 256; ++value) {
    for (unsigned const type : {0x24u, 0x25u, value}) {
      ExactBytes const block({0x03, Byte(type), Byte(value)});
      EXPECT_EQ(CUsbHelper::GenerateUACDescriptorLabel(*block.Descriptor(), Byte(value), 0x30),
                Answer(false, ""));
      EXPECT_EQ(CUsbHelper::GenerateUACDescriptorLabel(*block.Descriptor(), 1, Byte(value)),
                Answer(false, ""));
    }
  }
}

}  // namespace
}  // namespace usb_support

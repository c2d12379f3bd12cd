#include <usb_fields/text.h>

#include <array>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <usb_fields/names.h>
#include <usb_fields/samples.h>
#include <usb_fields/usb_ids.h>

namespace usb_fields {
namespace {

using testing::ElementsAre;
using testing_support::FromHex;
using testing_support::In;

// "number: text" of the field with this name; if it repeats, of the first one.
std::string Shown(std::string_view hex, Context const& context, std::string_view name) {
  std::string shown;
  ReadFields(FromHex(hex), context, [&](FieldValue const& field) {
    if (field.field->name == name && shown.empty()) {
      std::vector<char> number(kMostText);
      std::vector<char> text(kMostText);
      shown = std::string(NumberOf(field, number)) + ": " + std::string(TextOf(field, text));
    }
  });
  return shown;
}

Context At(Speed speed) {
  return {.speed = speed};
}

struct Row {
  char const* hex;
  Context context;
  char const* field;
  char const* shown;
};

TEST(TextTest, OfFields) {
  Context audio = In(1, 1, 0x20);
  Context video = In(0x0E, 2, 0);
  video.videoRelease = 0x0110;
  Row const rows[] = {
      // Device, USB 2.0, table 9-8
      {"12 01 00 02 ef 02 01 40 6d 04 25 08 0a 01 00 02 03 01", At(Speed::kHigh), "bcdUSB",
       "0x0200: 2.00"},
      {"12 01 00 02 ef 02 01 40 6d 04 25 08 0a 01 00 02 03 01", At(Speed::kHigh), "bcdDevice",
       "0x010A: 1.0A (not BCD)"},
      {"12 01 00 02 ef 02 01 40 6d 04 25 08 0a 01 00 02 03 01", At(Speed::kHigh), "idVendor",
       "0x046D: "},
      {"12 01 00 02 ef 02 01 40 6d 04 25 08 0a 01 00 02 03 01", At(Speed::kHigh), "bDeviceClass",
       "0xEF: Miscellaneous"},
      {"12 01 00 02 ef 02 01 40 6d 04 25 08 0a 01 00 02 03 01", At(Speed::kHigh), "bDeviceSubClass",
       "0x02: Common Class"},
      {"12 01 00 02 ef 02 01 40 6d 04 25 08 0a 01 00 02 03 01", At(Speed::kHigh), "bDeviceProtocol",
       "0x01: Interface Association Descriptor"},
      {"12 01 00 02 ef 02 01 40 6d 04 25 08 0a 01 00 02 03 01", At(Speed::kHigh), "iManufacturer",
       "0: No string"},
      {"12 01 00 02 ef 02 01 40 6d 04 25 08 0a 01 00 02 03 01", At(Speed::kHigh), "iProduct",
       "2: "},
      {"12 01 00 02 ef 02 01 40 6d 04 25 08 0a 01 00 02 03 01", At(Speed::kHigh), "bMaxPacketSize0",
       "64: 64 bytes"},
      {"12 01 20 03 00 00 00 09 6d 04 25 08 0a 01 00 02 03 01", At(Speed::kSuper),
       "bMaxPacketSize0", "9: 512 bytes"},
      // Configuration, USB 2.0, table 9-10
      {"09 02 20 00 01 01 00 e0 fa", At(Speed::kHigh), "bmAttributes",
       "0xE0: Self-powered, Remote Wakeup"},
      {"09 02 20 00 01 01 00 80 fa", At(Speed::kHigh), "bmAttributes", "0x80: None"},
      {"09 02 20 00 01 01 00 41 fa", At(Speed::kHigh), "bmAttributes",
       "0x41: reserved bit 7 not set, Self-powered, reserved bits 4..0 not zero"},
      {"09 02 20 00 01 01 00 e0 fa", At(Speed::kHigh), "bMaxPower", "250: 500 mA"},
      // Endpoint, USB 2.0, table 9-13
      {"07 05 81 05 fc 13 01", At(Speed::kHigh), "bEndpointAddress", "0x81: Endpoint 1 IN"},
      {"07 05 81 05 fc 13 01", At(Speed::kHigh), "bmAttributes",
       "0x05: Isochronous, Asynchronous, Data endpoint"},
      {"07 05 81 05 fc 13 01", At(Speed::kHigh), "wMaxPacketSize",
       "0x13FC: 3 x 1020 bytes a microframe"},
      {"07 05 81 05 fc 13 01", At(Speed::kHigh), "bInterval", "1: 125 us"},
      {"07 05 81 03 08 00 06", At(Speed::kHigh), "bInterval", "6: 4 ms"},
      {"07 05 81 03 08 00 00", At(Speed::kHigh), "bInterval", "0: "},
      {"07 05 81 03 08 00 11", At(Speed::kHigh), "bInterval", "17: "},
      {"07 05 81 03 08 00 0a", At(Speed::kFull), "bInterval", "10: 10 ms"},
      {"07 05 81 05 08 00 04", At(Speed::kFull), "bInterval", "4: 8 ms"},
      // Hub, USB 2.0, table 11-13
      {"09 29 04 e9 00 32 64 00 ff", At(Speed::kHigh), "bPwrOn2PwrGood", "50: 100 ms"},
      {"09 29 04 e9 00 32 64 00 ff", At(Speed::kHigh), "bHubContrCurrent", "100: 100 mA"},
      {"04 03 09 04", Context{.index = 0}, "wLANGID", "0x0409: English (United States)"},
      // UAC 2.0, table 4-7
      {"08 24 0a 29 01 07 00 00", audio, "bmControls",
       "0x07: Clock Frequency Control: Present, host programmable, Clock Validity Control: "
       "Present, "
       "read-only"},
      // Uncompressed frame 1, UVC Uncompressed Payload 1.1, table 3-2
      {"1e 24 05 01 00 80 02 e0 01 00 00 ca 08 00 00 ca 08 00 60 09 00 15 16 05 00 01 15 16 05 00",
       video, "dwDefaultFrameInterval", "333333: 33.3333 ms"},
      {"1e 24 05 01 00 80 02 e0 01 00 00 ca 08 00 00 ca 08 00 60 09 00 15 16 05 00 01 15 16 05 00",
       video, "wWidth", "640: 640 pixels"},
      {"1e 24 05 01 00 80 02 e0 01 00 00 ca 08 00 00 ca 08 00 60 09 00 15 16 05 00 01 15 16 05 00",
       video, "dwMinBitRate", "147456000: 147.456 Mbit/s"},
  };
  for (Row const& row : rows) {
    EXPECT_EQ(Shown(row.hex, row.context, row.field), row.shown) << row.hex << ", " << row.field;
  }
}

TEST(TextTest, UuidsHaveTheirNames) {
  EXPECT_EQ(Shown("1c 10 05 00 df 60 dd d8 89 45 c7 4c 9c d2 65 9d 9e 64 8a 9f 00 00 03 06 b2 00 "
                  "01 00",
                  {}, "MS_OS_20_Platform_Capability_ID"),
            "DF 60 DD D8 89 45 C7 4C 9C D2 65 9D 9E 64 8A 9F: "
            "d8dd60df-4589-4cc7-9cd2-659d9e648a9f (Microsoft OS 2.0)");
}

TEST(TextTest, Utf16IsHarmless) {
  EXPECT_EQ(Shown("0a 03 55 00 e9 00 ac 20 42 00", {}, "bString"),
            "55 00 E9 00 AC 20 42 00: U\u00E9\u20ACB");
  EXPECT_EQ(Shown("06 03 3d d8 00 de", {}, "bString"), "3D D8 00 DE: \U0001F600");
  EXPECT_EQ(Shown("08 03 1b 00 00 d8 41 00", {}, "bString"), "1B 00 00 D8 41 00: \\u001B\\uD800A");
  EXPECT_EQ(Shown("06 03 2e 20 00 dc", {}, "bString"), "2E 20 00 DC: \\u202E\\uDC00");
  EXPECT_EQ(Shown("06 03 41 00 00 00", {}, "bString"), "41 00 00 00: A");
  EXPECT_EQ(Shown("05 03 41 00 42", {}, "bString"), "41 00 42: A\\x42");
}

TEST(TextTest, AsciiIsHarmless) {
  Context const msos{.request = Request::kMsOs20};
  EXPECT_EQ(
      Shown("14 00 03 00 57 49 4e 55 53 42 00 00 00 00 00 00 00 00 00 00", msos, "CompatibleID"),
      "57 49 4E 55 53 42 00 00: WINUSB");
  EXPECT_EQ(
      Shown("14 00 03 00 57 07 ff 55 53 42 00 00 00 00 00 00 00 00 00 00", msos, "CompatibleID"),
      "57 07 FF 55 53 42 00 00: W\\x07\\xFFUSB");
}

TEST(TextTest, AFieldThatIsCutHasBytesOnly) {
  EXPECT_EQ(Shown("05 02 20 00 01", {}, "wTotalLength"), "32: 32 bytes");
  EXPECT_EQ(Shown("03 02 20", {}, "wTotalLength"), "20: ");
}

TEST(TextTest, EndsWithDotsWhereTheBufferIsTooSmall) {
  ReadFields(FromHex("0a 03 ac 20 ac 20 ac 20 ac 20"), {}, [](FieldValue const& field) {
    if (field.field->name == "bString") {
      std::array<char, 8> buffer{};
      EXPECT_EQ(TextOf(field, buffer), "\u20AC...");
      EXPECT_EQ(TextOf(field, std::span(buffer).first(2)), "");
      EXPECT_EQ(NumberOf(field, buffer), "AC 20...");
    }
  });
}

std::vector<std::string> BitsOf(std::string_view hex, Context const& context, std::string_view name,
                                std::uint16_t index = 0) {
  std::vector<std::string> shown;
  ReadFields(FromHex(hex), context, [&](FieldValue const& field) {
    if (field.field->name == name && field.index == index) {
      for (BitsReader bits(field); bits.Next();) {
        BitsValue const& value = bits.Value();
        shown.push_back(std::string(value.name) + " = " + std::to_string(value.value) + " " +
                        std::string(value.text));
      }
    }
  });
  return shown;
}

TEST(BitsTest, ReservedOnesAreShownWhenTheyAreWrong) {
  EXPECT_THAT(BitsOf("09 02 20 00 01 01 00 c0 fa", {}, "bmAttributes"),
              ElementsAre("Self-powered = 1 ", "Remote Wakeup = 0 "));
  EXPECT_THAT(BitsOf("09 02 20 00 01 01 00 03 fa", {}, "bmAttributes"),
              ElementsAre("Reserved (set to one) = 0 ", "Self-powered = 0 ", "Remote Wakeup = 0 ",
                          "Reserved = 3 "));
}

TEST(BitsTest, NamesCountRepetitions) {
  EXPECT_THAT(BitsOf("0b 29 08 e9 00 32 64 00 02 ff ff", {}, "DeviceRemovable", 1),
              testing::Contains("Port 9: device is non-removable = 1 "));
}

TEST(BitsTest, ValuesHaveNamesAndUnits) {
  EXPECT_THAT(BitsOf("07 05 81 03 40 00 06", At(Speed::kFull), "wMaxPacketSize"),
              ElementsAre("Maximum packet size = 64 64 bytes"));
  EXPECT_THAT(BitsOf("07 05 81 03 40 00 06", At(Speed::kFull), "bEndpointAddress"),
              ElementsAre("Endpoint number = 1 ", "Direction = 1 IN"));
}

TEST(NamesTest, OfTriples) {
  std::array<char, 256> buffer{};
  EXPECT_EQ(TripleName(3, 1, 2, buffer),
            "HID (Human Interface Device), Boot Interface Subclass, "
            "Mouse");
  EXPECT_EQ(TripleName(1, 2, 0x20, buffer), "Audio, Audio Streaming, Audio 2.0");
  EXPECT_EQ(TripleName(0x77, 1, 1, buffer), "");
  EXPECT_EQ(ProtocolName(8, 6, 0x62), "UAS");
  EXPECT_EQ(SubclassName(0x0E, 2), "Video Streaming");
}

TEST(NamesTest, OfLanguagesAndUsages) {
  std::array<char, 64> buffer{};
  EXPECT_EQ(LanguageName(0x0407), "German (Standard)");
  EXPECT_EQ(LanguageName(0x0001), "");
  EXPECT_EQ(UsagePageName(1), "Generic Desktop");
  EXPECT_EQ(UsagePageName(0xFF12), "Vendor-defined");
  EXPECT_EQ(UsageName(1, 2, buffer), "Mouse");
  EXPECT_EQ(UsageName(9, 3, buffer), "Button 3");
  EXPECT_EQ(UsageName(0x10, 0x20AC, buffer), "Unicode Character U+20AC");
  EXPECT_EQ(UsageName(1, 0xFFFF, buffer), "");
}

TEST(UsbIdsTest, ReadsVendorsAndProducts) {
  UsbIds ids;
  ASSERT_TRUE(
      ids.ReadText("# a comment\n046d  Logitech, Inc.\n\tc077  Mouse\n\t\t01  ignored\n"
                   "1d6b  Linux Foundation\r\n\t0002  2.0 root hub\r\n"
                   "C 03  Human Interface Device\n\t0001  Boot\n"));
  EXPECT_EQ(ids.Vendor(0x046D), "Logitech, Inc.");
  EXPECT_EQ(ids.Product(0x046D, 0xC077), "Mouse");
  EXPECT_EQ(ids.Product(0x1D6B, 2), "2.0 root hub");
  EXPECT_EQ(ids.Product(0x1D6B, 1), "");
  EXPECT_EQ(ids.Vendor(1), "");
}

TEST(UsbIdsTest, NamesAreHarmless) {
  UsbIds ids;
  ASSERT_TRUE(ids.ReadText("0001  A\x1B\xFF\xC3\xA9\xED\xA0\x80\n"));
  EXPECT_EQ(ids.Vendor(1), "A??\xC3\xA9???");
}

TEST(UsbIdsTest, NeedsNoFile) {
  UsbIds ids;
  EXPECT_FALSE(ids.Read("no such file"));
  EXPECT_FALSE(ids.ReadText("046d\n"));
  EXPECT_EQ(ids.Vendor(0x046D), "");
}

TEST(NamesTest, AreThoseOfTheUsbIf) {
  EXPECT_EQ(ClassName(0x0E), "Video");
  EXPECT_EQ(SubclassName(0x01, 0x02), "Audio Streaming");
  EXPECT_EQ(ProtocolName(0x01, 0x02, 0x20), "Audio 2.0");
  EXPECT_EQ(ClassName(0x77), "");
  EXPECT_EQ(LanguageName(0x0409), "English (United States)");
  EXPECT_EQ(UsagePageName(0x0001), "Generic Desktop");
  char buffer[64];
  EXPECT_EQ(UsageName(0x0001, 0x0002, buffer), "Mouse");
  EXPECT_EQ(UsageName(0x0009, 3, buffer), "Button 3");
}

}  // namespace
}  // namespace usb_fields

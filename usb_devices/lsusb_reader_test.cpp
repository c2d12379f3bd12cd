// The samples are what lsusb of usbutils 014 prints of simulated devices.
#include <usb_devices/lsusb_reader.h>

#include <gmock/gmock.h>

#include <standalone_suite/test_support/temp_folder.h>
#include <usb_devices/files.h>
#include <usb_devices/input.h>
#include <usb_devices/read_error.h>
#include <usb_devices/test_bytes.h>
#include <usb_devices/text_reader.h>

namespace usb_devices {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing_support::FromHex;

constexpr Request kListedDevice = Request::Descriptor(kDeviceType);
constexpr Request kListedConfiguration = Request::Descriptor(kConfigurationType);
constexpr Request kListedBos = Request::Descriptor(kBosType);

std::string ListingSample(std::string const& name) {
  return ReadFile(std::string(USB_SUPPORT_SOURCE_DIR) + "/usb_devices/samples/" + name,
                  {std::size_t{1} << 20, "1 MiB"});
}

std::string ListingErrorOf(std::string_view text) {
  try {
    ReadLsusb(text, "a");
  } catch (ReadError const& error) {
    return error.what();
  }
  return "no error";
}

// The notes of a configuration of 9 bytes and the lines, which are `size` bytes.
std::vector<std::string> ListingNotesOf(std::string const& lines, std::size_t size) {
  std::string const device =
      "bLength 18\nbDescriptorType 1\nbcdUSB 2.00\nbDeviceClass 0\nbDeviceSubClass 0\n"
      "bDeviceProtocol 0\nbMaxPacketSize0 64\nidVendor 0xffff\nidProduct 0x0001\nbcdDevice 1.00\n"
      "iManufacturer 0\niProduct 0\niSerial 0\nbNumConfigurations 1\n";
  std::string const configuration =
      "bLength 9\nbDescriptorType 2\nwTotalLength " + std::to_string(9 + size) +
      "\nbNumInterfaces 1\nbConfigurationValue 1\niConfiguration 0\nbmAttributes 0x80\n"
      "MaxPower 100mA\n";
  return ReadLsusb(device + configuration + lines).notes;
}

TEST(LsusbReader, ReadsADeviceWithItsReport) {
  LsusbReading const reading = ReadLsusb(ListingSample("mouse.lsusb.txt"));
  EXPECT_THAT(reading.notes, IsEmpty());
  ASSERT_EQ(reading.devices.size(), 1u);
  Device const& mouse = reading.devices[0];
  EXPECT_EQ(mouse.Name(), "1.2");
  EXPECT_TRUE(AreEqual(*mouse.Bytes(kListedDevice),
                       FromHex("12 01 10 01 00 00 00 08 FF FF 02 00 10 00 01 02 03 01")));
  EXPECT_TRUE(
      AreEqual(*mouse.Bytes(kListedConfiguration), FromHex(testing_support::kMouseConfiguration)));
  EXPECT_TRUE(
      AreEqual(*mouse.Bytes(Request::HidReport(0)), FromHex(testing_support::kMouseReport)));
  EXPECT_EQ(mouse.Find(kListedDevice)->source.line, 4u);
  EXPECT_EQ(mouse.Answers().size(), 3u);
}

TEST(LsusbReader, ReadsAHub) {
  LsusbReading const reading = ReadLsusb(ListingSample("hub.lsusb.txt"));
  ASSERT_EQ(reading.devices.size(), 1u);
  EXPECT_TRUE(AreEqual(*reading.devices[0].Bytes(Request::Hub(kHubType)),
                       FromHex("09 29 04 A9 00 32 64 00 FF")));
  EXPECT_EQ(reading.devices[0].Find(Request::Descriptor(kQualifierType)), nullptr);
  ASSERT_EQ(reading.notes.size(), 1u);
  EXPECT_THAT(reading.notes[0], HasSubstr("the listing has 9 of its 10 bytes"));
}

TEST(LsusbReader, IsRecognised) {
  EXPECT_EQ(RecogniseText(ListingSample("mouse.lsusb.txt")), TextForm::kLsusb);
  EXPECT_EQ(RecogniseText("# a comment\nDevice Descriptor:\n"), TextForm::kLsusb);
  usb_support::standalone::TempFolder const folder;
  std::string const text = ListingSample("mouse.lsusb.txt") + ListingSample("hub.lsusb.txt");
  InputReading const reading = ReadInput(NameOf(folder.Write("a", text)));
  EXPECT_EQ(reading.form, "lsusb");
  EXPECT_EQ(reading.devices.size(), 2u);
  EXPECT_EQ(reading.notes.size(), 1u);
}

TEST(LsusbReader, ReadsTextsOfEverySystem) {
  std::string text = ListingSample("mouse.lsusb.txt");
  Device const mouse = ReadLsusb(text).devices.at(0);
  for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) {
    text.insert(at, 1, '\r');
  }
  EXPECT_TRUE(ReadLsusb(text).devices.at(0).HasSameAnswers(mouse));
}

// Fields that are not numbers of their size.
TEST(LsusbReader, ReadsEveryKindOfField) {
  struct Case {
    char const* lines;
    std::size_t size;
  };
  Case const cases[] = {
      {"INVALID CDC (ACM):  05 24 02 00 01", 5},
      {"** UNRECOGNIZED:  03 24 00", 3},
      {"CDC Header:\nbcdCDC 1.10\nCDC Union:\nbMasterInterface 0\nbSlaveInterface 1", 10},
      {"CDC Ethernet:\niMacAddress 3 (error)\nbmEthernetStatistics 0x00000000\n"
       "wMaxSegmentSize 1514\nwNumberMCFilters 0x0000\nbNumberPowerFilters 0",
       13},
      {"bLength 8\nbDescriptorType 36\nbDescriptorSubtype 1 (HEADER)\ndwClockFrequency "
       "48.000000MHz\nbInCollection 1",
       8},
      {"bLength 18\nbDescriptorType 36\nguidFormat {59555932-0000-1000-8000-00aa00389b71}", 18},
      {"bLength 6\nbDescriptorType 36\nbNumDataRatesSupp. 0\ntSamFreq[ 0]  8000", 6},
      {"bLength 6\nbDescriptorType 36\nbControlSize 2\nbmControls( 0) 0x3f\nbmControls( 1) 0x03\n"
       "iExtension 0",
       6},
      {"bLength 5\nbDescriptorType 36\nbControlSize 2\nbmControls 0x0000177f", 5},
      {"bLength 7\nbDescriptorType 16\nbDevCapabilityType 2\nbmAttributes 0x0000a21e\n"
       "BESL value 512 us",
       7},
      {"bLength 5\nbDescriptorType 36\nbA 1\nWarning: Descriptor too short\nbB 2\nwC 3", 5},
  };
  for (Case const& each : cases) {
    EXPECT_THAT(ListingNotesOf(each.lines, each.size), IsEmpty()) << each.lines;
  }
}

TEST(LsusbReader, RefusesDescriptorsThatAreNotWhole) {
  struct Case {
    char const* lines;
    std::size_t size;
    std::vector<std::string> notes;
  };
  std::string const refused = "line 15: configuration 0 is refused with the descriptors in it";
  Case const cases[] = {
      {"Endpoint Descriptor:\nbLength 7\nbDescriptorType 5",
       7,
       {"line 24: Endpoint Descriptor is refused: the listing has 2 of its 7 bytes", refused}},
      {"Interface Descriptor:\nbLength 2\nbDescriptorType 4\nbInterfaceClass 5",
       2,
       {"line 24: Interface Descriptor is refused: the listing has 3 of its 2 bytes", refused}},
      {"bLength 3\nbDescriptorType 36\nbClassGetResponse echo",
       3,
       {"line 23: descriptor is refused: line 25 has no value that fits bClassGetResponse",
        refused}},
      {"bLength 3\nbDescriptorType 36\nbA 256",
       3,
       {"line 23: descriptor is refused: line 25 has no value that fits bA", refused}},
      {"bLength 7\nbDescriptorType 5\nbEndpointAddress 0x81\nbmAttributes 2\n"
       "wMaxPacketSize 0x0400\nbInterval 0\nbMaxBurst 1",
       7,
       {"line 29: SuperSpeed endpoint companion is refused: the listing has not all fields",
        refused}},
      {"bLength 2\nbDescriptorType 11",
       3,
       {"line 15: configuration 0 is refused: the listing has 11 bytes, and it announces 12"}},
      {"Report Descriptor: (length is 3)\nItem(Main  ): Input, data= [ 0x02 ] 2",
       0,
       {"line 23: the HID report descriptor is refused: its items are not the 3 bytes that it "
        "has"}},
      {"Report Descriptor: (length is 2)\nItem(Main  ): \x1B, data= [ 0x02 ] 2",
       0,
       {"line 23: the HID report descriptor is refused: its items are not the 2 bytes that it "
        "has"}},
      {"\x1B[1m Descriptor:\nbLength 3\nbDescriptorType 36",
       3,
       {"line 24: \\x1B[1m Descriptor is refused: the listing has 2 of its 3 bytes", refused}},
  };
  for (Case const& each : cases) {
    EXPECT_EQ(ListingNotesOf(each.lines, each.size), each.notes) << each.lines;
  }
}

TEST(LsusbReader, KeepsWhatIsWholeBesideWhatIsNot) {
  std::string text = ListingSample("mouse.lsusb.txt");
  text.erase(text.find("bInterval"), 9);
  LsusbReading const reading = ReadLsusb(text);
  ASSERT_EQ(reading.devices.size(), 1u);
  EXPECT_TRUE(reading.devices[0].Bytes(kListedDevice));
  EXPECT_TRUE(reading.devices[0].Bytes(Request::HidReport(0)));
  EXPECT_FALSE(reading.devices[0].Find(kListedConfiguration));
  EXPECT_EQ(reading.notes.size(), 2u);
}

TEST(LsusbReader, CountsEightMilliamperesAUnitSinceUsb3) {
  std::string text = ListingSample("mouse.lsusb.txt");
  text.replace(text.find("bcdUSB               1.10"), 25, "bcdUSB               3.00");
  text.replace(text.find(" 100mA"), 6, " 800mA");
  EXPECT_EQ(ByteCursor(*ReadLsusb(text).devices.at(0).Bytes(kListedConfiguration)).Peek(8), 100u);
}

TEST(LsusbReader, ReadsUuidsInBothOrders) {
  std::string const bos =
      "bLength 5\nbDescriptorType 15\nwTotalLength 25\nbNumDeviceCaps 1\nbLength 20\n"
      "bDescriptorType 16\nbDevCapabilityType 4\nbReserved 0\nContainerID ";
  std::string const uuid = "{32595559-0000-0010-8000-00aa00389b71}";
  Bytes const bytes = FromHex("59 55 59 32 00 00 10 00 80 00 00 AA 00 38 9B 71");
  auto const last = [&](std::string const& text) {
    Device const device = ReadLsusb(text).devices.at(0);
    ByteCursor at(*device.Bytes(kListedBos));
    at.Skip(9);
    ByteSpan const found = at.Take(16);
    return Bytes(found.begin(), found.end());
  };
  EXPECT_EQ(last(bos + uuid), bytes);
  EXPECT_EQ(last(bos + "{59555932-0000-1000-8000-00aa00389b71}"), bytes);
  LsusbReading const doubtful = ReadLsusb(bos + "{00000000-0000-0000-0000-000000000001}");
  ASSERT_EQ(doubtful.notes.size(), 1u);
  EXPECT_THAT(doubtful.notes[0], HasSubstr("another order"));
  EXPECT_THAT(ListingErrorOf(bos + "{32595559-0000-0010-8000-00aa00389b7}"),
              HasSubstr("ContainerID"));
  EXPECT_THAT(ListingErrorOf(bos + "{32595559+0000-0010-8000-00aa00389b71}"),
              HasSubstr("ContainerID"));
}

TEST(LsusbReader, RefusesWhatHoldsNoDescriptors) {
  EXPECT_EQ(ListingErrorOf(""), R"(a: holds no descriptors, expected those of "lsusb -v")");
  EXPECT_EQ(ListingErrorOf("Bus 001 Device 002: ID ffff:0001 A mouse\n"),
            R"(a: holds no descriptors, expected those of "lsusb -v")");
  EXPECT_THAT(ListingErrorOf("bLength 9\nbDescriptorType 4\n"), HasSubstr("2 of its 9 bytes"));
  EXPECT_THAT(ListingErrorOf("bLength 2\nbDescriptorType 4\n"),
              HasSubstr("outside of a configuration"));
}

TEST(LsusbReader, TakesTextsThatAreCutAnywhere) {
  std::string const text = ListingSample("mouse.lsusb.txt");
  std::vector<Device> const whole = ReadLsusb(text).devices;
  for (std::size_t size = 0; size < text.size(); ++size) {
    try {
      std::vector<Device> const devices = ReadLsusb(std::string_view(text).substr(0, size)).devices;
      for (std::size_t i = 0; i < devices.size(); ++i) {
        for (Answer const& answer : devices[i].Answers()) {
          // A number whose last digits are cut off is another one.
          EXPECT_EQ(whole[i].Bytes(answer.request)->size(), answer.bytes.size()) << size;
        }
      }
    } catch (ReadError const& error) {
      EXPECT_NE(error.what(), std::string());
    }
  }
}

}  // namespace
}  // namespace usb_devices

#include <usb_devices/traffic.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <utility>

#include <standalone_suite/test_support/temp_folder.h>
#include <usb_devices/files.h>
#include <usb_devices/read_error.h>
#include <usb_devices/test_bytes.h>
#include <usb_devices/test_traffic.h>

namespace usb_devices {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing_support::FileForm;
using testing_support::FileOf;
using testing_support::FromHex;
using testing_support::Packets;
using testing_support::SetupOf;

constexpr std::uint32_t kUsbmonStall = static_cast<std::uint32_t>(-32);

Bytes const kDevice = FromHex(testing_support::kMouseDevice);
Bytes const kConfiguration = FromHex(testing_support::kMouseConfiguration);

// Feeds a reader with questions and answers to one device.
class TrafficTest : public testing::TestWithParam<PacketKind> {
 protected:
  std::uint32_t Stall() const {
    return GetParam() == PacketKind::kUsbPcap  ? 0xC0000004
           : GetParam() == PacketKind::kDarwin ? 0xE0005000
                                               : kUsbmonStall;
  }
  void Ask(Request const& request, std::uint16_t length, std::uint64_t transfer = 1,
           unsigned address = 7) {
    reader_.Add(GetParam(), packets_.Ask(1, address, transfer, SetupOf(request, length)));
  }
  void Tell(ByteSpan data, std::uint32_t status = 0, std::uint64_t transfer = 1,
            unsigned address = 7) {
    reader_.Add(GetParam(), packets_.Answer(1, address, transfer, status, data));
  }
  void Transfer(Request const& request, std::uint16_t length, ByteSpan data,
                std::uint32_t status = 0, unsigned address = 7) {
    Ask(request, length, 1, address);
    Tell(data, status, 1, address);
  }
  Device One() {
    Traffic const traffic = reader_.Take();
    EXPECT_EQ(traffic.devices.size(), 1u);
    EXPECT_THAT(traffic.notes, IsEmpty());
    return traffic.devices.empty() ? Device() : traffic.devices.front();
  }

  Packets packets_{GetParam()};
  TrafficReader reader_{"a.pcap"};
};

TEST_P(TrafficTest, PutsADeviceTogether) {
  Transfer(Request::Descriptor(kDeviceType), 8, ByteSpan(kDevice).first(8));
  Transfer(Request::Descriptor(kDeviceType), 18, kDevice);
  Transfer(Request::Descriptor(kConfigurationType), 9, ByteSpan(kConfiguration).first(9));
  Transfer(Request::Descriptor(kConfigurationType), 34, kConfiguration);
  Transfer(Request::Descriptor(kConfigurationType), 9, ByteSpan(kConfiguration).first(9));
  Transfer(Request::String(0, 0), 255, FromHex("04 03 09 04"));
  Transfer(Request::String(4, 0x0409), 255, FromHex("04 03 41 00"));
  Transfer(Request::HidReport(0), 50, FromHex(testing_support::kMouseReport));
  Transfer(Request::HidReport(1), 1, Bytes{7});
  Transfer(Request::Hub(kHubType), 9, Bytes{9, 0x29});
  Transfer(Request::Descriptor(kQualifierType), 10, {}, Stall());
  Transfer(Request::Descriptor(kBosType), 5, {}, 0x12345678);
  Device const device = One();
  EXPECT_EQ(device.Name(), "1.7");
  EXPECT_EQ(device.Speed(), GetParam() == PacketKind::kDarwin ? Speed::kHigh : Speed::kUnknown);
  EXPECT_EQ(device.Answers().size(), 9u);
  EXPECT_EQ(device.Find(Request::Descriptor(kDeviceType))->bytes, kDevice);
  EXPECT_EQ(device.Find(Request::Descriptor(kDeviceType))->source.name, "a.pcap");
  EXPECT_EQ(device.Find(Request::Descriptor(kDeviceType))->source.packet, 4u);
  EXPECT_EQ(device.Find(Request::Descriptor(kConfigurationType))->bytes, kConfiguration);
  EXPECT_EQ(device.Find(Request::Descriptor(kConfigurationType))->note, "");
  EXPECT_EQ(device.Bytes(Request::String(4, 0x0409))->size(), 4u);
  EXPECT_EQ(device.Bytes(Request::HidReport(0))->size(), 50u);
  EXPECT_THAT(*device.Bytes(Request::HidReport(1)), ElementsAre(7));
  EXPECT_EQ(device.Find(Request::Descriptor(kQualifierType))->outcome, Outcome::kStalled);
  EXPECT_EQ(device.Find(Request::Descriptor(kBosType))->outcome, Outcome::kFailed);
  EXPECT_EQ(device.Find(Request::Descriptor(kBosType))->note, "status 305419896 (12345678h)");
}

TEST_P(TrafficTest, PrefersAnAnswerToAStallAndAStallToAFailure) {
  Request const bos = Request::Descriptor(kBosType);
  Transfer(bos, 5, {}, 0x12345678);
  Transfer(bos, 5, {}, Stall());
  Transfer(bos, 5, {}, 0x12345678);
  EXPECT_EQ(One().Find(bos)->outcome, Outcome::kStalled);
  Transfer(bos, 5, {}, Stall());
  Transfer(bos, 5, Bytes{5, 15});
  Transfer(bos, 5, {}, Stall());
  EXPECT_THAT(*One().Bytes(bos), ElementsAre(5, 15));
}

TEST_P(TrafficTest, KeepsTransfersApart) {
  Ask(Request::Descriptor(kDeviceType), 18, 1, 7);
  Ask(Request::Descriptor(kDeviceType), 18, 2, 8);
  Ask(Request::Descriptor(kBosType), 5, 3, 7);
  Tell(Bytes{3}, 0, 3, 7);
  Tell(Bytes{2}, 0, 2, 8);
  Tell(Bytes{1}, 0, 1, 7);
  Traffic const traffic = reader_.Take();
  ASSERT_EQ(traffic.devices.size(), 2u);
  EXPECT_EQ(traffic.devices[0].Name(), "1.7");
  EXPECT_THAT(*traffic.devices[0].Bytes(Request::Descriptor(kDeviceType)), ElementsAre(1));
  EXPECT_THAT(*traffic.devices[0].Bytes(Request::Descriptor(kBosType)), ElementsAre(3));
  EXPECT_THAT(*traffic.devices[1].Bytes(Request::Descriptor(kDeviceType)), ElementsAre(2));
}

TEST_P(TrafficTest, LivesWithLostPackets) {
  Tell(Bytes{1});                         // no question
  Ask(Request::Descriptor(kBosType), 5);  // no answer; the number is used anew
  Transfer(Request::Descriptor(kDeviceType), 18, kDevice);
  Traffic const traffic = reader_.Take();
  ASSERT_EQ(traffic.devices.size(), 1u);
  EXPECT_EQ(traffic.devices[0].Answers().size(), 1u);
  EXPECT_THAT(traffic.notes,
              ElementsAre("1 answer is passed over, as the capture does not have the question"));
}

TEST_P(TrafficTest, SaysWhenTheHostAskedForTooLittle) {
  Request const configuration = Request::Descriptor(kConfigurationType);
  Transfer(configuration, 9, ByteSpan(kConfiguration).first(9));
  EXPECT_EQ(One().Find(configuration)->note, "the host asked for no more than 9 bytes");
}

TEST_P(TrafficTest, TakesNoMoreThanTheHostAskedFor) {
  Transfer(Request::Descriptor(kBosType), 2, Bytes{5, 15, 5});
  EXPECT_EQ(One().Bytes(Request::Descriptor(kBosType))->size(), 2u);
}

TEST_P(TrafficTest, TellsDevicesOfOneAddressApart) {
  Bytes other = kDevice;
  other[8] = 1;
  Transfer(Request::Descriptor(kDeviceType), 18, kDevice);
  Transfer(Request::Descriptor(kDeviceType), 8, ByteSpan(other).first(8));
  Transfer(Request::Descriptor(kDeviceType), 18, other);
  Transfer(Request::Descriptor(kConfigurationType), 34, kConfiguration);
  Traffic const traffic = reader_.Take();
  ASSERT_EQ(traffic.devices.size(), 2u);
  EXPECT_EQ(traffic.devices[0].Answers().size(), 1u);
  EXPECT_EQ(traffic.devices[1].Name(), "1.7-2");
  EXPECT_EQ(traffic.devices[1].Answers().size(), 2u);
}

TEST_P(TrafficTest, TakesDescriptorsOfVendorsOnly) {
  Bytes const set = FromHex("0A 00 00 00 00 00 03 06 0A 00");
  Bytes const compatibleId = FromHex("10 00 00 00 00 01 04 00");
  Transfer(Request::Vendor(0x20, 0, 7), 10, set);
  Transfer(Request::Vendor(0x20, 0, 4), 16, compatibleId);
  Transfer(Request::Vendor(0x21, 1, 2), 5, FromHex("05 03 01 61 62"));
  Transfer(Request::Vendor(0x22, 0, 7), 10, Bytes(10, 1));
  Transfer(Request::Vendor(0x22, 0, 5), 16, compatibleId);
  Transfer(Request::Vendor(0x22, 0, 0), 10, set);
  Transfer(Request{0x80, 0, 0, 0}, 2, Bytes{1, 0});
  Device const device = One();
  EXPECT_EQ(device.Answers().size(), 3u);
  EXPECT_EQ(device.Find(Request::Vendor(0x20, 0, 7))->bytes, set);
}

TEST_P(TrafficTest, LeavesOutAddress0) {
  Transfer(Request::Descriptor(kDeviceType), 18, kDevice, 0, 0);
  EXPECT_THAT(reader_.Take().devices, IsEmpty());
}

TEST_P(TrafficTest, PassesOverPacketsThatAreCutInTheHeader) {
  Bytes const ask = packets_.Ask(1, 7, 1, SetupOf(Request::Descriptor(kDeviceType), 18));
  Bytes const answer = packets_.Answer(1, 7, 1, 0, kDevice);
  for (std::size_t length = 0; length < ask.size(); ++length) {
    TrafficReader reader("a.pcap");
    Bytes const cut(ask.begin(), ask.begin() + static_cast<std::ptrdiff_t>(length));
    reader.Add(GetParam(), cut);
    reader.Add(GetParam(), answer);
    Traffic const traffic = reader.Take();
    EXPECT_THAT(traffic.devices, IsEmpty()) << length;
    EXPECT_FALSE(traffic.notes.empty()) << length;
  }
  for (std::size_t length = 0; length < answer.size(); ++length) {
    TrafficReader reader("a.pcap");
    Bytes const cut(answer.begin(), answer.begin() + static_cast<std::ptrdiff_t>(length));
    reader.Add(GetParam(), ask);
    reader.Add(GetParam(), cut);
    Traffic const traffic = reader.Take();
    if (!traffic.devices.empty()) {
      Answer const* const kept = traffic.devices[0].Find(Request::Descriptor(kDeviceType));
      EXPECT_EQ(kept->note,
                "the capture holds " + std::to_string(kept->bytes.size()) + " of 18 bytes");
      EXPECT_TRUE(std::equal(kept->bytes.begin(), kept->bytes.end(), kDevice.begin()));
    }
  }
}

TEST_P(TrafficTest, RefusesMoreThanABusHas) {
  Bytes const data(65535, 1);
  auto const feed = [&] {
    for (unsigned i = 0; i < 2000; ++i) {
      Transfer(Request::String(static_cast<std::uint8_t>(i), static_cast<std::uint16_t>(i)), 65535,
               data);
    }
  };
  try {
    feed();
    ADD_FAILURE();
  } catch (ReadError const& error) {
    EXPECT_THAT(error.what(),
                testing::EndsWith("more than 64 MiB of descriptors, expected those of one bus"));
  }
}

std::string NameOfKind(testing::TestParamInfo<PacketKind> const& one) {
  constexpr char const* kNames[] = {"Usbmon", "UsbmonLong", "UsbPcap", "Darwin"};
  return kNames[static_cast<std::size_t>(one.param)];
}

INSTANTIATE_TEST_SUITE_P(Kinds, TrafficTest,
                         testing::Values(PacketKind::kUsbmon, PacketKind::kUsbmonLong,
                                         PacketKind::kUsbPcap, PacketKind::kDarwin),
                         NameOfKind);

TEST(Usbmon, TakesShortReadsAndFailedSubmissions) {
  constexpr PacketKind kKind = PacketKind::kUsbmonLong;
  Packets const packets(kKind);
  TrafficReader reader("a.pcap");
  reader.Add(kKind, packets.Ask(1, 7, 1, SetupOf(Request::Descriptor(kDeviceType), 64)));
  reader.Add(kKind, packets.Answer(1, 7, 1, static_cast<std::uint32_t>(-121), kDevice));
  reader.Add(kKind, packets.Ask(1, 7, 1, SetupOf(Request::Descriptor(kBosType), 5)));
  reader.Add(kKind, packets.Usbmon('E', 1, 7, 1, static_cast<std::uint32_t>(-19), {}, {}, 0));
  Device const device = reader.Take().devices.front();
  EXPECT_EQ(device.Find(Request::Descriptor(kDeviceType))->bytes, kDevice);
  EXPECT_EQ(device.Find(Request::Descriptor(kBosType))->note, "status -19 (FFFFFFEDh)");
}

TEST(UsbPcap, TakesDataBeforeTheStatus) {
  constexpr PacketKind kKind = PacketKind::kUsbPcap;
  TrafficReader reader("a.pcap");
  Bytes const setup = SetupOf(Request::Descriptor(kDeviceType), 18);
  reader.Add(kKind, Packets::UsbPcap(2, 300, 1, 0, 0, 0, setup));
  reader.Add(kKind, Packets::UsbPcap(2, 300, 1, 1, 1, 0, kDevice));
  reader.Add(kKind, Packets::UsbPcap(2, 300, 1, 2, 1, 0, {}));
  reader.Add(kKind, Packets::UsbPcap(2, 300, 1, 0, 0, 0,
                                     SetupOf(Request::Descriptor(kQualifierType), 10)));
  reader.Add(kKind, Packets::UsbPcap(2, 300, 1, 2, 1, 0xC0000004, {}));
  Traffic const traffic = reader.Take();
  EXPECT_THAT(traffic.notes, IsEmpty());
  ASSERT_EQ(traffic.devices.size(), 1u);
  EXPECT_EQ(traffic.devices[0].Name(), "2.300");
  EXPECT_EQ(traffic.devices[0].Find(Request::Descriptor(kDeviceType))->bytes, kDevice);
  EXPECT_EQ(traffic.devices[0].Find(Request::Descriptor(kQualifierType))->outcome,
            Outcome::kStalled);
}

class TrafficFileTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!CanReadTraffic()) {
      GTEST_SKIP() << "This build has no libpcap.";
    }
  }
  std::string Write(Bytes const& content) const {
    return NameOf(folder_.Write("a.pcap", TextOf(content)));
  }
  static std::string ErrorOf(std::string const& name) {
    try {
      ReadTraffic(name);
    } catch (ReadError const& error) {
      return error.Detail();
    }
    return "no error";
  }

  usb_support::standalone::TempFolder folder_;
};

std::vector<Bytes> Dialogue(Packets const& packets) {
  return {packets.Ask(1, 7, 1, SetupOf(Request::Descriptor(kDeviceType), 18)),
          packets.Answer(1, 7, 1, 0, kDevice),
          packets.Ask(1, 7, 2, SetupOf(Request::Descriptor(kConfigurationType), 34)),
          packets.Answer(1, 7, 2, 0, kConfiguration)};
}

constexpr std::pair<PacketKind, unsigned> kLinkTypes[] = {{PacketKind::kUsbmon, 189},
                                                          {PacketKind::kUsbmonLong, 220},
                                                          {PacketKind::kUsbPcap, 249},
                                                          {PacketKind::kDarwin, 266}};

TEST_F(TrafficFileTest, ReadsEveryFormOfFile) {
  for (auto const& [kind, linkType] : kLinkTypes) {
    for (unsigned bits = 0; bits < 8; ++bits) {
      FileForm const form{(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0};
      Bytes const file = FileOf(form, linkType, Dialogue(Packets(kind, form.isBig)));
      EXPECT_TRUE(LooksLikeTraffic(TextOf(file)));
      Traffic const traffic = ReadTraffic(Write(file));
      ASSERT_EQ(traffic.devices.size(), 1u) << linkType << ' ' << bits;
      EXPECT_THAT(traffic.notes, IsEmpty());
      EXPECT_EQ(traffic.devices[0].Find(Request::Descriptor(kDeviceType))->bytes, kDevice);
      EXPECT_EQ(traffic.devices[0].Find(Request::Descriptor(kConfigurationType))->bytes,
                kConfiguration);
      EXPECT_EQ(traffic.devices[0].Answers()[1].source.packet, 4u);
    }
  }
}

TEST_F(TrafficFileTest, ReadsWhatIsBeforeTheEndOfAFileThatIsCut) {
  for (bool const isNew : {false, true}) {
    Bytes const file =
        FileOf({isNew, false, false}, 220, Dialogue(Packets(PacketKind::kUsbmonLong)));
    bool hasDevice = false;
    for (std::size_t length = 0; length < file.size(); ++length) {
      Bytes const cut(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length));
      try {
        Traffic const traffic = ReadTraffic(Write(cut));
        EXPECT_TRUE(traffic.devices.size() == 1 || !hasDevice);
        hasDevice = hasDevice || !traffic.devices.empty();
      } catch (ReadError const& error) {
        EXPECT_FALSE(hasDevice) << length;
        EXPECT_FALSE(error.Detail().empty());
      }
    }
    EXPECT_TRUE(hasDevice);
  }
}

TEST_F(TrafficFileTest, SaysWhereAFileBreaksOff) {
  Bytes file = FileOf({false, false, false}, 220, Dialogue(Packets(PacketKind::kUsbmonLong)));
  file.pop_back();
  Traffic const traffic = ReadTraffic(Write(file));
  ASSERT_EQ(traffic.notes.size(), 1u);
  EXPECT_THAT(traffic.notes[0], testing::StartsWith("after packet 3: truncated dump file"));
}

TEST_F(TrafficFileTest, RefusesOtherFiles) {
  EXPECT_THAT(ErrorOf(Write({})), HasSubstr("is not a traffic capture: "));
  EXPECT_THAT(ErrorOf(Write(Bytes(100, 7))), HasSubstr("is not a traffic capture: "));
  EXPECT_EQ(ErrorOf(Write(FileOf({false, false, false}, 1, {}))),
            "holds packets of link type 1 (Ethernet), expected USB packets of Linux, USBPcap or "
            "macOS");
  EXPECT_EQ(ErrorOf(NameOf(folder_.Path())), "is not a regular file, as a traffic capture must be");
  EXPECT_THAT(ErrorOf(NameOf(folder_.Path() / "missing")), testing::StartsWith("cannot be opened"));
}

TEST_F(TrafficFileTest, RefusesMoreThan1GiB) {
  std::string const name = Write({});
  std::filesystem::resize_file(PathOf(name), (std::uintmax_t{1} << 30) + 1);
  EXPECT_EQ(ErrorOf(name), "holds more than 1 GiB of traffic");
}

TEST(TrafficFile, IsToldByItsFirstBytes) {
  EXPECT_FALSE(LooksLikeTraffic(""));
  EXPECT_FALSE(LooksLikeTraffic("\x0A\x0D\x0D"));
  EXPECT_FALSE(LooksLikeTraffic("\n\r\r\n"));
  EXPECT_FALSE(LooksLikeTraffic("\n\r\r\n12 01 00 02"));
  EXPECT_FALSE(LooksLikeTraffic(TextOf(kDevice)));
}

TEST(TrafficFile, NamesWhatIsMissing) {
  if (CanReadTraffic()) {
    GTEST_SKIP() << "This build has libpcap.";
  }
  try {
    ReadTraffic("a.pcap");
    ADD_FAILURE();
  } catch (ReadError const& error) {
    EXPECT_STREQ(error.what(),
                 "a.pcap: is a traffic capture, and this build has no libpcap to read it");
  }
}

}  // namespace
}  // namespace usb_devices

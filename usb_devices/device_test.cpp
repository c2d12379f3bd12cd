#include <usb_devices/device.h>

#include <gmock/gmock.h>

#include <type_traits>
#include <utility>

#include <usb_devices/characters.h>
#include <usb_devices/test_bytes.h>

namespace usb_devices {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

static_assert(std::is_nothrow_move_constructible_v<Device>);
static_assert(std::is_nothrow_move_assignable_v<Device>);

Answer Answered(Request const& request, Bytes bytes) {
  return {request, Outcome::kAnswered, std::move(bytes), {"file", 3, 0, 0}, {}};
}

TEST(ByteCursor, ReadsInOrder) {
  Bytes const bytes = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
  ByteCursor at(bytes);
  EXPECT_EQ(at.Peek(), 1);
  EXPECT_EQ(at.Peek(15), 16);
  EXPECT_EQ(at.Byte(), 1);
  EXPECT_EQ(at.Little16(), 0x0302);
  EXPECT_EQ(at.Little32(), 0x07060504u);
  EXPECT_EQ(at.Little64(), 0x0F0E0D0C0B0A0908u);
  EXPECT_EQ(at.Left(), 1u);
  EXPECT_EQ(at.Offset(), 15u);
  EXPECT_FALSE(at.IsPastEnd());
}

TEST(ByteCursor, StopsAtTheEnd) {
  Bytes const bytes = {1, 2, 3};
  ByteCursor at(bytes);
  EXPECT_EQ(at.Peek(3), 0);
  EXPECT_EQ(at.Little32(), 0x00030201u);
  EXPECT_TRUE(at.IsPastEnd());
  EXPECT_EQ(at.Left(), 0u);
  EXPECT_THAT(at.Take(1), IsEmpty());
  EXPECT_EQ(at.Byte(), 0);

  ByteCursor other(bytes);
  EXPECT_THAT(other.Take(3), ElementsAre(1, 2, 3));
  EXPECT_FALSE(other.IsPastEnd());
  EXPECT_THAT(ByteCursor(bytes).Take(~std::size_t{0}), ElementsAre(1, 2, 3));
}

TEST(Device, TellsMissingFromEmptyStalledAndFailed) {
  DeviceBuilder builder;
  builder.Add(Answered(Request::Descriptor(kBosType), {}));
  builder.Add({Request::Descriptor(kQualifierType), Outcome::kStalled, {}, {}, {}});
  builder.Add({Request::String(1, 0x0409), Outcome::kFailed, {}, {}, "timed out"});
  Device const device = builder.Build();

  EXPECT_EQ(device.Find(Request::Descriptor(kDeviceType)), nullptr);
  EXPECT_EQ(device.Bytes(Request::Descriptor(kDeviceType)), std::nullopt);
  ASSERT_TRUE(device.Bytes(Request::Descriptor(kBosType)));
  EXPECT_THAT(*device.Bytes(Request::Descriptor(kBosType)), IsEmpty());
  EXPECT_EQ(device.Bytes(Request::Descriptor(kQualifierType)), std::nullopt);
  EXPECT_EQ(device.Find(Request::Descriptor(kQualifierType))->outcome, Outcome::kStalled);
  EXPECT_EQ(device.Find(Request::String(1, 0x0409))->outcome, Outcome::kFailed);
  EXPECT_EQ(device.Find(Request::String(1, 0x0409))->note, "timed out");
}

TEST(Device, TellsRequestsApartByAllThatTheySay) {
  Request const requests[] = {Request::Descriptor(kStringType, 2),
                              Request::String(2, 0x0409),
                              Request::String(2, 0x0407),
                              Request::String(3, 0x0409),
                              Request::HidReport(0),
                              Request::HidReport(1),
                              Request::Hub(kHubType),
                              Request::Vendor(0x20, 0, 7),
                              Request::Unknown(0),
                              Request::Unknown(1),
                              Request::Descriptor(kHubType)};
  DeviceBuilder builder;
  for (Request const& request : requests) {
    EXPECT_TRUE(builder.Add(Answered(request, {static_cast<std::uint8_t>(&request - requests)})));
  }
  Device const device = builder.Build();
  for (Request const& request : requests) {
    EXPECT_THAT(*device.Bytes(request), ElementsAre(&request - requests)) << NameOf(request);
  }
  EXPECT_EQ(device.Answers().size(), std::size(requests));
}

TEST(Device, SendsNoMoreThanItIsAskedFor) {
  DeviceBuilder builder;
  builder.Add(Answered(Request::Descriptor(kDeviceType), {1, 2, 3}));
  Device const device = builder.Build();
  EXPECT_THAT(*device.Bytes(Request::Descriptor(kDeviceType), 2), ElementsAre(1, 2));
  EXPECT_THAT(*device.Bytes(Request::Descriptor(kDeviceType), 0), IsEmpty());
  EXPECT_THAT(*device.Bytes(Request::Descriptor(kDeviceType), 0xFFFF), ElementsAre(1, 2, 3));
  EXPECT_EQ(device.Bytes(Request::Descriptor(kBosType), 2), std::nullopt);
}

TEST(Device, ListsTheAnswersOfAType) {
  DeviceBuilder builder;
  for (std::uint8_t const index : {std::uint8_t{3}, std::uint8_t{0}, std::uint8_t{255}}) {
    builder.Add(Answered(Request::Descriptor(kConfigurationType, index), {index}));
  }
  builder.Add(Answered(Request::Descriptor(kDeviceType), {}));
  builder.Add(Answered(Request::String(0, 0), {}));
  builder.Add(Answered(Request::OfInterface(kConfigurationType, 0), {}));
  Device const device = builder.Build();
  std::vector<int> indexes;
  for (Answer const* const answer : device.OfType(kConfigurationType)) {
    indexes.push_back(answer->request.Index());
  }
  EXPECT_THAT(indexes, ElementsAre(0, 3, 255));
  EXPECT_THAT(device.OfType(kBosType), IsEmpty());
}

TEST(Device, KeepsTheFirstOfTwoAnswers) {
  DeviceBuilder builder;
  EXPECT_TRUE(builder.Add(Answered(Request::Descriptor(kBosType), {1})));
  EXPECT_FALSE(builder.Add(Answered(Request::Descriptor(kBosType), {2})));
  EXPECT_TRUE(builder.Has(Request::Descriptor(kBosType)));
  EXPECT_THAT(*builder.Build().Bytes(Request::Descriptor(kBosType)), ElementsAre(1));
  EXPECT_TRUE(builder.IsEmpty()) << "it begins anew";
}

TEST(Device, ComparesSpeedsRequestsOutcomesAndBytes) {
  auto const make = [](Speed speed, Request const& request, Outcome outcome, Bytes bytes) {
    DeviceBuilder builder;
    builder.SetName("name" + std::to_string(bytes.size()));
    builder.SetSpeed(speed);
    builder.Add({request, outcome, std::move(bytes), {}, {}});
    return builder.Build();
  };
  Request const bos = Request::Descriptor(kBosType);
  Device const device = make(Speed::kHigh, bos, Outcome::kAnswered, {});
  EXPECT_TRUE(device.HasSameAnswers(make(Speed::kHigh, bos, Outcome::kAnswered, {})));
  EXPECT_FALSE(device.HasSameAnswers(make(Speed::kFull, bos, Outcome::kAnswered, {})));
  EXPECT_FALSE(device.HasSameAnswers(make(Speed::kHigh, bos, Outcome::kStalled, {})));
  EXPECT_FALSE(device.HasSameAnswers(make(Speed::kHigh, bos, Outcome::kAnswered, {1})));
  EXPECT_FALSE(
      device.HasSameAnswers(make(Speed::kHigh, Request::Hub(kHubType), Outcome::kAnswered, {})));
  EXPECT_FALSE(device.HasSameAnswers(Device()));
}

TEST(Device, ComparesWithoutOrder) {
  DeviceBuilder one;
  DeviceBuilder other;
  one.Add(Answered(Request::Hub(kHubType), {1}));
  one.Add(Answered(Request::Descriptor(kBosType), {2}));
  other.Add(Answered(Request::Descriptor(kBosType), {2}));
  other.Add(Answered(Request::Hub(kHubType), {1}));
  EXPECT_TRUE(one.Build().HasSameAnswers(other.Build()));
}

TEST(DeviceBuilder, NumbersBytesWithoutARequest) {
  DeviceBuilder builder;
  for (unsigned i = 0; i < 65536; ++i) {
    ASSERT_TRUE(builder.AddUnknown({7}, {})) << i;
  }
  EXPECT_FALSE(builder.AddUnknown({7}, {}));
  EXPECT_EQ(builder.Build().Answers().back().request, Request::Unknown(65535));
  EXPECT_TRUE(builder.AddUnknown({8}, {}));
  EXPECT_THAT(*builder.Build().Bytes(Request::Unknown(0)), ElementsAre(8));
}

TEST(Request, HasAName) {
  std::pair<Request, char const*> const names[] = {
      {Request::Descriptor(kDeviceType), "device"},
      {Request::Descriptor(kDeviceType, 1), "device 1"},
      {Request::Descriptor(kConfigurationType, 1), "configuration 1"},
      {Request::Descriptor(kOtherSpeedConfigurationType), "other-speed configuration 0"},
      {Request::Descriptor(kQualifierType), "device qualifier"},
      {Request::Descriptor(kBosType), "BOS"},
      {Request::String(0, 0), "languages of the strings"},
      {Request::MicrosoftString(), "Microsoft OS 1.0 string"},
      {Request::String(2, 0x0409), "string 2, language 0409h"},
      {Request::HidReport(1), "HID report of interface 1"},
      {Request::OfInterface(kHidType, 1), "descriptor of type 21h, index 0 of interface 1"},
      {Request::Hub(kHubType), "hub"},
      {Request::Hub(kSuperSpeedHubType), "SuperSpeed hub"},
      {Request::Descriptor(0x30, 4), "descriptor of type 30h, index 4"},
      {Request::Vendor(0x20, 1, 7), "request 20h of type C0h, value 0001h, index 0007h"},
      {Request::Unknown(3), "bytes without a request 3"},
  };
  for (auto const& [request, name] : names) {
    EXPECT_EQ(NameOf(request), name);
  }
}

TEST(Request, SaysWhatKindItIs) {
  EXPECT_TRUE(Request::String(0xEE, 0).IsString());
  EXPECT_TRUE(Request::HidReport(0).IsGetDescriptor());
  EXPECT_TRUE(Request::HidReport(0).IsOfInterface());
  EXPECT_FALSE(Request::HidReport(0).IsStandard());
  EXPECT_TRUE(Request::Hub(kHubType).IsGetDescriptor());
  EXPECT_FALSE(Request::Vendor(6, 0, 7).IsGetDescriptor());
  EXPECT_FALSE(Request::Unknown(0).IsKnown());
  EXPECT_TRUE(Request::Descriptor(0).IsKnown());
}

TEST(Speed, HasANameThatReadsBack) {
  for (int i = 0; i <= static_cast<int>(Speed::kSuperPlus); ++i) {
    EXPECT_EQ(SpeedOf(NameOf(static_cast<Speed>(i))), static_cast<Speed>(i));
  }
  EXPECT_EQ(NameOf(Speed::kSuperPlus), "super-plus");
  EXPECT_EQ(SpeedOf("fast"), std::nullopt);
}

TEST(NumberOf, TakesDigitsUpToItsLimit) {
  EXPECT_EQ(NumberOf("ff", 16, 255), 255u);
  EXPECT_EQ(NumberOf("100", 16, 255), std::nullopt);
  EXPECT_EQ(NumberOf("256", 10, 255), std::nullopt);
  EXPECT_EQ(NumberOf("8", 8, 255), std::nullopt);
  EXPECT_EQ(NumberOf("", 10, 255), std::nullopt);
  EXPECT_EQ(NumberOf("9", 10, 3), std::nullopt);
  EXPECT_EQ(NumberOf("FFFFFFFFFFFFFFFF", 16, ~0ULL), ~0ULL);
  EXPECT_EQ(NumberOf("10000000000000000", 16, ~0ULL), std::nullopt);
}

TEST(Harmless, EscapesWhatATerminalActsOn) {
  EXPECT_EQ(Harmless("plain \xC3\xA9\xE2\x82\xAC"), "plain \xC3\xA9\xE2\x82\xAC");
  EXPECT_EQ(Harmless("\x1B[31m\n\x7F"), "\\x1B[31m\\x0A\\x7F");
  EXPECT_EQ(Harmless("\xC2\x9B"
                     "1m"),
            "\\xC2\\x9B"
            "1m")
      << "a control sequence in one character";
  EXPECT_EQ(Harmless("\xFF\xC3"), "\\xFF\\xC3");
}

}  // namespace
}  // namespace usb_devices

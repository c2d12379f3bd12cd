#include <usb_devices/runs.h>

#include <gmock/gmock.h>

#include <string>
#include <utility>

#include <usb_devices/read_error.h>
#include <usb_devices/test_bytes.h>

namespace usb_devices {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::Header;
using testing_support::Joined;
using testing_support::MakeDescriptor;

// "type@offset+length" of each part.
std::vector<std::string> PartsOf(Bytes const& run) {
  std::vector<std::string> texts;
  std::size_t end = 0;
  for (Part const& part : SplitRun(run)) {
    EXPECT_EQ(part.offset, end) << "parts are one after the other";
    EXPECT_EQ(part.bytes.data(), run.data() + part.offset);
    end = part.offset + part.bytes.size();
    texts.push_back(std::to_string(part.type) + "@" + std::to_string(part.offset) + "+" +
                    std::to_string(part.bytes.size()));
  }
  EXPECT_EQ(end, run.size());
  return texts;
}

TEST(SplitRun, GivesNoPartForNothing) {
  EXPECT_THAT(PartsOf({}), IsEmpty());
}

TEST(SplitRun, BeginsAPartAtEveryDescriptorOfItsTypes) {
  EXPECT_THAT(PartsOf(Joined({MakeDescriptor(18, 1), Header(2, 9), MakeDescriptor(10, 6),
                              Header(7, 9), MakeDescriptor(5, 0x0F)})),
              ElementsAre("1@0+18", "2@18+9", "6@27+10", "7@37+9", "15@46+5"));
}

TEST(SplitRun, TakesEverythingElseToThePartBefore) {
  EXPECT_THAT(PartsOf(Joined({Header(2, 12), {3, 0x24, 1}, {2, 3}, Header(2, 9)})),
              ElementsAre("2@0+14", "2@14+9"));
}

TEST(SplitRun, KeepsWhatIsBeforeTheFirst) {
  EXPECT_THAT(PartsOf(Joined({{3, 0x24, 1}, {2, 5}, Header(2, 9)})), ElementsAre("0@0+5", "2@5+9"));
  EXPECT_THAT(PartsOf({3, 0x24, 1}), ElementsAre("0@0+3"));
  EXPECT_THAT(PartsOf({0, 2, 1}), ElementsAre("0@0+3"));
}

TEST(SplitRun, EndsAPartAtTheNextWhateverItsTotalLength) {
  EXPECT_THAT(PartsOf(Joined({Header(2, 200), Header(2, 9)})), ElementsAre("2@0+9", "2@9+9"));
}

TEST(SplitRun, FindsItsWayBackByTheTotalLength) {
  EXPECT_THAT(PartsOf(Joined({Header(2, 13), {0, 0x24, 1, 1}, Header(2, 9)})),
              ElementsAre("2@0+13", "2@13+9"));
  EXPECT_THAT(PartsOf(Joined({Header(7, 12), {4, 0x24, 1}, Header(2, 9)})), ElementsAre("7@0+21"))
      << "the chain is whole, and leads past the next header";
  EXPECT_THAT(PartsOf(Joined({{5, 0x0F, 8, 0, 0}, {0, 0x10, 1}, Header(2, 9)})),
              ElementsAre("15@0+8", "2@8+9"));
}

TEST(SplitRun, KeepsWhatIsAfterTheTotalLengthApart) {
  EXPECT_THAT(PartsOf(Joined({Header(2, 11), {0, 0x24}, {3, 0x24, 1}, Header(2, 9)})),
              ElementsAre("2@0+11", "0@11+3", "2@14+9"));
  EXPECT_THAT(PartsOf(Joined({Header(2, 11), {0, 0x24}, {0, 0x24, 1}})),
              ElementsAre("2@0+11", "0@11+3"));
}

TEST(SplitRun, GoesToTheEndWhereNothingLeadsBack) {
  for (unsigned const total : {0U, 9U, 10U, 22U, 200U}) {
    EXPECT_THAT(PartsOf(Joined({Header(2, total), {2, 0x24}, {0, 0x24}, Header(2, 9)})),
                ElementsAre("2@0+22"))
        << total;
  }
  EXPECT_THAT(PartsOf(Joined({MakeDescriptor(18, 1), {0, 0x24}, Header(2, 9)})),
              ElementsAre("1@0+29"));
}

TEST(SplitRun, TakesATotalLengthOnlyForItsOwnPart) {
  EXPECT_THAT(
      PartsOf(Joined({Header(2, 40), MakeDescriptor(18, 1), {0, 0x24}, MakeDescriptor(20, 3)})),
      ElementsAre("2@0+9", "1@9+40"));
}

TEST(SplitRun, TakesADescriptorOfOneByteForNone) {
  EXPECT_THAT(PartsOf({1, 1, 2, 0x24}), ElementsAre("0@0+4"));
}

TEST(SplitRun, IsFastOnTheLargestRun) {
  Bytes run;
  while (run.size() < kMaxRunSize / 4) {
    run.insert(run.end(), {2, 2});
  }
  EXPECT_EQ(SplitRun(run).size(), kMaxRunSize / 8);
}

TEST(DevicesOf, GivesNoneForNothing) {
  EXPECT_THAT(DevicesOf(Bytes(), Source{}), IsEmpty());
}

TEST(DevicesOf, BeginsADeviceAtEveryDeviceDescriptorButTheFirst) {
  std::vector<Device> const devices =
      DevicesOf(Joined({Header(2, 9), MakeDescriptor(18, 1), Header(2, 9), Header(7, 9),
                        MakeDescriptor(18, 1), MakeDescriptor(5, 0x0F)}),
                Source{});
  ASSERT_EQ(devices.size(), 2u);
  EXPECT_EQ(devices[0].Answers().size(), 4u);
  EXPECT_EQ(devices[0].OfType(kConfigurationType).size(), 2u);
  EXPECT_EQ(devices[0].OfType(kOtherSpeedConfigurationType).size(), 1u);
  EXPECT_EQ(devices[1].Answers().size(), 2u);
  EXPECT_TRUE(devices[1].Bytes(Request::Descriptor(kBosType)));
}

TEST(DevicesOf, KeepsADescriptorWithAllThatIsAfterItAndSaysWhereItWas) {
  Bytes const first = Joined({Header(2, 12), {3, 0x24, 1}, {2, 3}});
  Device const device =
      DevicesOf(Joined({first, Header(2, 200)}), Source{"a.bin", 100, 0, 0}).front();
  Answer const* const answer = device.Find(Request::Descriptor(kConfigurationType, 1));
  EXPECT_EQ(device.Find(Request::Descriptor(kConfigurationType))->bytes, first);
  EXPECT_EQ(answer->bytes, Header(2, 200));
  EXPECT_EQ(answer->source.name, "a.bin");
  EXPECT_EQ(answer->source.offset, 114u);
}

TEST(DevicesOf, KeepsEveryByteWhereverARunIsCut) {
  Bytes const run = Joined({testing_support::FromHex(testing_support::kMouseDevice),
                            testing_support::FromHex(testing_support::kMouseConfiguration),
                            MakeDescriptor(10, 6), Header(7, 9), MakeDescriptor(5, 0x0F)});
  for (std::size_t size = 0; size <= run.size(); ++size) {
    Bytes const cut(run.begin(), run.begin() + static_cast<std::ptrdiff_t>(size));
    Bytes read;
    for (Device const& device : DevicesOf(cut, Source{})) {
      for (Answer const& answer : device.Answers()) {
        EXPECT_EQ(answer.source.offset, read.size());
        read.insert(read.end(), answer.bytes.begin(), answer.bytes.end());
      }
    }
    EXPECT_EQ(read, cut);
  }
}

TEST(DevicesOf, KeepsWhatNoIndexReaches) {
  Bytes run;
  for (int i = 0; i < 300; ++i) {
    run.insert(run.end(), {2, 2});
  }
  Device const device = DevicesOf(run, Source{}).front();
  EXPECT_EQ(device.Answers().size(), 300u);
  EXPECT_EQ(device.OfType(kConfigurationType).size(), 255u);
  EXPECT_TRUE(device.Find(Request::Unknown(44)));
}

TEST(DevicesOf, RefusesAPartThatNoRequestCanRead) {
  Bytes run = MakeDescriptor(18, 1);
  run.resize(18 + 65535 - 18, 1);
  EXPECT_EQ(DevicesOf(run, Source{}).size(), 1u);
  run.resize(65536, 1);
  try {
    DevicesOf(run, Source{"a.bin", 0, 0, 0});
    ADD_FAILURE();
  } catch (ReadError const& error) {
    EXPECT_STREQ(error.what(),
                 "a.bin: offset 0: found 65536 bytes without a new descriptor set, expected at "
                 "most 65,535, the most that one request can read");
    EXPECT_EQ(error.Name(), "a.bin");
  }
}

TEST(DevicesOf, RefusesMorePartsThanItCanNumber) {
  Bytes run;
  for (int i = 0; i < 65536 + 256; ++i) {
    run.insert(run.end(), {2, 2});
  }
  EXPECT_THROW(DevicesOf(run, Source{}), ReadError);
}

TEST(AddRun, CountsOnAfterWhatTheDeviceHas) {
  DeviceBuilder device;
  AddRun(device, Header(2, 9), Source{});
  AddRun(device, Header(2, 10), Source{});
  EXPECT_EQ(*device.Build().Bytes(Request::Descriptor(kConfigurationType, 1), 3)->rbegin(), 10);
}

TEST(RunOf, HoldsWhatARunCanHold) {
  Bytes const run = Joined({MakeDescriptor(18, 1), Header(2, 9), Header(2, 9), Header(7, 9),
                            MakeDescriptor(10, 6), MakeDescriptor(5, 15)});
  EXPECT_EQ(RunOf(DevicesOf(run, Source{}).front()), run);
  EXPECT_EQ(RunOf(Device()), Bytes());
}

TEST(RunOf, GivesNothingForAnythingElse) {
  std::pair<Request, Bytes> const answers[] = {
      {Request::String(1, 0x0409), MakeDescriptor(4, 3)},
      {Request::Descriptor(kConfigurationType, 1), Header(2, 9)},
      {Request::Descriptor(kConfigurationType), Joined({Header(2, 9), Header(2, 9)})},
      {Request::Descriptor(kBosType), {}},
  };
  for (auto const& [request, bytes] : answers) {
    DeviceBuilder builder;
    builder.Add({request, Outcome::kAnswered, bytes, {}, {}});
    EXPECT_EQ(RunOf(builder.Build()), std::nullopt) << NameOf(request);
  }
  DeviceBuilder fast;
  fast.SetSpeed(Speed::kHigh);
  fast.Add({Request::Descriptor(kConfigurationType), Outcome::kAnswered, Header(2, 9), {}, {}});
  EXPECT_EQ(RunOf(fast.Build()), std::nullopt);
  DeviceBuilder silent;
  silent.Add({Request::Descriptor(kConfigurationType), Outcome::kStalled, {}, {}, {}});
  EXPECT_EQ(RunOf(silent.Build()), std::nullopt);
}

}  // namespace
}  // namespace usb_devices

#include <tools/usbdesc/device.h>

#include <gmock/gmock.h>

#include <tests/support/exact_bytes.h>

namespace usb_support::usbdesc {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::Bytes;
using testing_support::ExactBytes;
using testing_support::Joined;
using testing_support::MakeDescriptor;

// "type@offset+length" of each part.
std::vector<std::string> PartsOf(Bytes const& run) {
  ExactBytes const bytes(run);
  std::vector<std::string> texts;
  std::size_t end = 0;
  for (Part const& part : SplitRun(bytes.Range())) {
    EXPECT_EQ(part.offset, end) << "parts lie one after the other";
    EXPECT_EQ(part.bytes.Bytes(), bytes.data() + part.offset);
    end = std::size_t{part.offset} + part.bytes.Length();
    texts.push_back(std::to_string(part.type) + "@" + std::to_string(part.offset) + "+" +
                    std::to_string(part.bytes.Length()));
  }
  EXPECT_EQ(end, run.size());
  return texts;
}

Bytes Header(unsigned char type, unsigned total) {
  return {9,
          type,
          static_cast<unsigned char>(total),
          static_cast<unsigned char>(total >> 8),
          0,
          1,
          0,
          0x80,
          50};
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

TEST(SplitRun, TakesTheLargestRun) {
  Bytes run(65535, 1);
  run[0] = 9;
  run[1] = 2;
  run[2] = 0xFF;
  run[3] = 0xFF;
  run.back() = 200;
  EXPECT_THAT(PartsOf(run), ElementsAre("2@0+65535"));
}

TEST(DevicesOf, GivesOneDeviceForNothing) {
  EXPECT_THAT(DevicesOf({}, "name"), testing::SizeIs(1));
}

TEST(DevicesOf, BeginsADeviceAtEveryDeviceDescriptorButTheFirst) {
  ExactBytes const run(Joined({Header(2, 9), MakeDescriptor(18, 1), Header(2, 9), Header(7, 9),
                               MakeDescriptor(17, 1), MakeDescriptor(5, 0x0F)}));
  std::vector<Device> const devices = DevicesOf(run.Range(), "name");
  ASSERT_EQ(devices.size(), 2u);
  EXPECT_EQ(devices[0].parts.size(), 4u);
  EXPECT_EQ(devices[0].name, "name, device 1");
  EXPECT_TRUE(devices[0].descriptor.has_value());
  EXPECT_EQ(devices[1].parts.size(), 2u);
  EXPECT_EQ(devices[1].name, "name, device 2");
  EXPECT_FALSE(devices[1].descriptor.has_value()) << "it is short";
  EXPECT_EQ(DevicesOf({}, "name").front().name, "name");
}

// "set + after, valid" of the only part of a run, in bytes.
std::string LengthsOf(Bytes const& run) {
  ExactBytes const bytes(run);
  std::vector<Part> const parts = SplitRun(bytes.Range());
  EXPECT_EQ(parts.size(), 1u);
  Part const& part = parts.front();
  EXPECT_EQ(part.set.Length() + part.after.Length(), part.bytes.Length());
  return std::to_string(part.set.Length()) + " + " + std::to_string(part.after.Length()) + ", " +
         std::to_string(part.valid.Length());
}

TEST(Part, HasASetOfItsTotalLengthAtMost) {
  EXPECT_EQ(LengthsOf(Joined({Header(2, 12), {3, 0x24, 1}, {2, 3}})), "12 + 2, 12");
  EXPECT_EQ(LengthsOf(Joined({Header(2, 200), {3, 0x24, 1}})), "12 + 0, 12") << "less is there";
  EXPECT_EQ(LengthsOf(Joined({Header(7, 0), {3, 0x24, 1}})), "9 + 3, 9") << "the header is";
  EXPECT_EQ(LengthsOf({5, 0x0F, 8, 0, 1, 3, 0x10, 2, 3, 0x10, 2}), "8 + 3, 8");
  EXPECT_EQ(LengthsOf(Joined({Header(2, 12), {4, 0x24, 1}})), "12 + 0, 9") << "broken";
  EXPECT_EQ(LengthsOf(Joined({MakeDescriptor(18, 1), {4, 3, 9, 4}})), "18 + 4, 18");
  EXPECT_EQ(LengthsOf({3, 0x24, 1}), "0 + 3, 0");
}

TEST(Part, HasAName) {
  Bytes header = Header(2, 9);
  header[5] = 3;
  EXPECT_EQ(SplitRun(ExactBytes(header).Range()).front().Name(), "configuration 3");
  header[1] = 7;
  EXPECT_EQ(SplitRun(ExactBytes(header).Range()).front().Name(), "other-speed configuration 3");
}

}  // namespace
}  // namespace usb_support::usbdesc

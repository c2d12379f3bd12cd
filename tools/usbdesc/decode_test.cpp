// The listing and the JSON of `decode`, apart from the golden files.
#include <algorithm>

#include <gmock/gmock.h>

#include <tools/usbdesc/usbdesc_test.h>

namespace usb_support::usbdesc {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr char kDevice[] = "12 01 00 02 00 00 00 40 09 12 03 00 00 01 01 02 03 01 ";
constexpr char kEndpoint[] = "09 04 00 00 01 FF 00 00 00 07 05 81 03 08 00 0A";

class DecodeTest : public UsbdescTest {
 protected:
  std::string Decode(std::vector<std::string> arguments, std::string const& input) {
    arguments.insert(arguments.begin(), "decode");
    arguments.emplace_back("-");
    return RunProgram(arguments, input).out;
  }
};

TEST_F(DecodeTest, ReadsFieldsAtTheSpeedThatIsNamed) {
  EXPECT_THAT(Decode({}, kEndpoint),
              HasSubstr("// speed: unknown, because the descriptors do not show the speed; "
                        "fields are read as at high speed\n"));
  EXPECT_THAT(Decode({}, kEndpoint), HasSubstr("8 bytes every 64 ms"));
  EXPECT_THAT(Decode({"--speed", "full"}, kEndpoint), HasSubstr("8 bytes every 10 ms"));
  EXPECT_THAT(Decode({"--speed", "low", "--format=json"}, kEndpoint),
              HasSubstr(R"("speed":"low")"));
  EXPECT_EQ(RunProgram({"decode", "--speed", "fast", "-"}, kEndpoint).status, kExitUnusable);
}

TEST_F(DecodeTest, ShowsWhatIsNotDescribed) {
  std::string const out = Decode({}, "04 FF 01 02 08 0A 01 02");
  EXPECT_THAT(out, HasSubstr("0000h  Unknown descriptor, type FFh: 4 bytes\n"));
  EXPECT_THAT(out, HasSubstr("        not described  01 02\n"));
  EXPECT_THAT(out, HasSubstr("1 descriptor not known, 2 bytes not described\n"));
  EXPECT_THAT(out, HasSubstr("Lengths bad: past the end at 0004h, 4 bytes left\n"));
}

TEST_F(DecodeTest, NamesVendorsAndProductsFromAFile) {
  std::string const list = Write("usb.ids", "1209  Some Vendor\n\t0003  Some Product\n");
  std::string const out = Decode({"--ids", list}, kDevice);
  EXPECT_THAT(out, HasSubstr("0x1209       Some Vendor\n"));
  EXPECT_THAT(out, HasSubstr("0x0003       Some Product\n"));
  EXPECT_THAT(Decode({}, kDevice), Not(HasSubstr("Some")));
  Outcome const outcome = RunProgram({"decode", "--ids", Write("none", "x"), "-"}, kDevice);
  EXPECT_EQ(outcome.status, kExitUnusable);
  EXPECT_THAT(outcome.err, HasSubstr("is not a list of vendors and products"));
}

TEST_F(DecodeTest, WritesOneJsonDocumentForAllInputs) {
  std::string const one = Write("one.txt", kDevice);
  Outcome const outcome = RunProgram({"decode", "--format", "json", one, one, "missing.bin"});
  EXPECT_EQ(outcome.status, kExitUnusable);
  EXPECT_THAT(outcome.out, testing::StartsWith("{\"usbdesc\":1,\"inputs\":[\n{\"name\":"));
  EXPECT_THAT(outcome.out, testing::EndsWith("}\n]}\n"));
  EXPECT_THAT(outcome.out, HasSubstr("},\n{\"name\":"));
  EXPECT_THAT(outcome.err, HasSubstr("missing.bin"));
}

TEST_F(DecodeTest, GivesTheTypeOfADescriptorThatNamesOtherTypes) {
  EXPECT_THAT(Decode({"--format=json"}, "09 04 00 00 01 03 00 00 00 09 21 11 01 00 01 22 3F 00"),
              HasSubstr(R"("length":9,"type":33,"layout":"hid.hid")"));
}

TEST_F(DecodeTest, HasLinesOfAtMost100Columns) {
  // A feature unit of audio 2.0 with every control.
  std::string const out = Decode(
      {}, "09 04 00 00 00 01 01 20 00 12 24 06 02 01 FF FF FF FF FF FF FF FF FF FF FF FF 00");
  std::size_t longest = 0;
  for (std::size_t at = 0; at < out.size();) {
    std::size_t const end = out.find('\n', at);
    longest = std::max(longest, end - at);
    at = end + 1;
  }
  EXPECT_LE(longest, 100u);
  EXPECT_GT(longest, 80u);
}

}  // namespace
}  // namespace usb_support::usbdesc

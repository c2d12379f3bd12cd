#include <usb_devices/json.h>

#include <gmock/gmock.h>

#include <usb_devices/read_error.h>
#include <usb_devices/test_bytes.h>
#include <usb_devices/text_forms.h>

namespace usb_devices {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::string ErrorOf(std::string_view text) {
  try {
    ReadJson(text, "file");
  } catch (ReadError const& error) {
    EXPECT_EQ(error.Name(), "file");
    return error.Detail();
  }
  return "no error";
}

// A text with one run of the given members.
std::string WithRun(std::string const& members) {
  return R"({"usbdesc": 1, "inputs": [{"name": "a", "devices": [{"speed": "high", "runs": [{)" +
         members + "}]}]}]}";
}

Device Read(std::string const& members) {
  return ReadJson(WithRun(members)).front().devices.front();
}

Device MakeDevice() {
  DeviceBuilder builder;
  builder.SetName("1.7");
  builder.SetSpeed(Speed::kFull);
  builder.Add({Request::Descriptor(kDeviceType),
               Outcome::kAnswered,
               testing_support::FromHex(testing_support::kMouseDevice),
               {"a \xFF.pcap", 1, 2, 3},
               {}});
  builder.Add({Request::String(2, 0x0409), Outcome::kAnswered, {}, {}, {}});
  builder.Add({Request::HidReport(3), Outcome::kFailed, {}, {}, "timed \x1B out"});
  builder.Add({Request::Descriptor(kBosType), Outcome::kStalled, {}, {}, {}});
  builder.Add({Request::Vendor(0x20, 0, 7), Outcome::kAnswered, {1}, {}, {}});
  builder.Add({Request::Unknown(9), Outcome::kAnswered, {2}, {}, {}});
  return builder.Build();
}

// Who reads the descriptors again infers the speed again.
TEST(Json, ReadsASpeedUnlessItWasInferred) {
  auto const speedOf = [](std::string const& members) {
    return ReadJson(R"({"usbdesc": 1, "inputs": [{"devices": [{"runs": [], )" + members + "}]}]}")
        .front()
        .devices.front()
        .Speed();
  };
  EXPECT_EQ(speedOf(R"("speed": "full")"), Speed::kFull);
  EXPECT_EQ(speedOf(R"("speed": "full", "speed_reason": "bcdUSB is less than 0200h")"),
            Speed::kUnknown);
}

TEST(Json, ReadsWhatItWrote) {
  Device const device = MakeDevice();
  std::vector<Input> inputs(2);
  inputs[0].name = "a";
  inputs[0].devices = {device, Device()};
  inputs[1].name = "b";
  std::vector<Input> const read = ReadJson(WriteJson(inputs));
  ASSERT_EQ(read.size(), 2u);
  EXPECT_EQ(read[0].name, "a");
  EXPECT_EQ(read[1].name, "b");
  ASSERT_EQ(read[0].devices.size(), 2u);
  EXPECT_TRUE(read[1].devices.empty());
  EXPECT_TRUE(read[0].devices[0].HasSameAnswers(device));
  EXPECT_TRUE(read[0].devices[1].HasSameAnswers(Device()));
  EXPECT_EQ(read[0].devices[0].Name(), "1.7");
  Answer const& answer = read[0].devices[0].Answers().front();
  EXPECT_EQ(answer.source.name, "a \\xFF.pcap");
  EXPECT_EQ(answer.source.offset, 1u);
  EXPECT_EQ(answer.source.line, 2u);
  EXPECT_EQ(answer.source.packet, 3u);
  EXPECT_EQ(read[0].devices[0].Answers()[2].note, "timed \\x1B out");
}

TEST(Json, WritesTheMembersOfEachRequest) {
  std::string const text = WriteJson({{"a", {MakeDevice()}}});
  EXPECT_THAT(text, HasSubstr("\"type\": 3,\n       \"index\": 2,\n       \"language\": 1033,\n"
                              "       \"request\": \"800602030904\""));
  EXPECT_THAT(text, HasSubstr("\"interface\": 3,\n       \"request\": \"810600220300\""));
  EXPECT_THAT(text, HasSubstr("\"hex\": \"12 01 10 01 "));
  EXPECT_THAT(text, HasSubstr("{\n       \"request\": \"C02000000700\",\n"));
}

TEST(Json, ReadsRequestsByTheirTypes) {
  EXPECT_TRUE(Read(R"("type": 15, "hex": "05 0f")").Bytes(Request::Descriptor(kBosType)));
  EXPECT_TRUE(Read(R"("type": 2, "index": 1, "language": null, "hex": "")")
                  .Bytes(Request::Descriptor(kConfigurationType, 1)));
  EXPECT_TRUE(Read(R"("type": 3, "index": 2, "language": 1033, "hex": "")")
                  .Bytes(Request::String(2, 0x0409)));
  EXPECT_TRUE(Read(R"("type": 34, "interface": 4, "hex": "")").Bytes(Request::HidReport(4)));
}

TEST(Json, SplitsARunWithoutARequest) {
  Device const device = Read(R"("hex": "0201 0202 0202", "descriptors": [{"offset": 0}])");
  EXPECT_EQ(device.Answers().size(), 3u);
  EXPECT_EQ(device.Speed(), Speed::kHigh);
}

TEST(Json, RefusesOtherShapes) {
  EXPECT_EQ(ErrorOf("[]"), "the text: expected an object");
  EXPECT_EQ(ErrorOf("{}"), "the text: expected \"usbdesc\": 1");
  EXPECT_EQ(ErrorOf(R"({"usbdesc": 2})"), "the text: expected \"usbdesc\", a number from 0 to 1");
  EXPECT_EQ(ErrorOf(R"({"usbdesc": 1})"), "the text: expected \"inputs\", an array");
  EXPECT_EQ(ErrorOf(R"({"usbdesc": 1, "inputs": [7]})"), "inputs[0]: expected an object");
  EXPECT_EQ(ErrorOf(R"({"usbdesc": 1, "inputs": [{"devices": [{}, 1]}]})"),
            "inputs[0].devices[0]: expected \"runs\", an array");
  EXPECT_EQ(ErrorOf(R"({"usbdesc": 1, "inputs": [{"devices": [{"speed": "fast"}]}]})"),
            "inputs[0].devices[0]: expected a speed that is low, full, high, super, super-plus or "
            "unknown");
  std::pair<char const*, char const*> const runs[] = {
      {"", "\"hex\", the bytes of the answer"},
      {R"("hex": 1)", "\"hex\", a string"},
      {R"("hex": "1")", "bytes of two hexadecimal digits each"},
      {R"("hex": "12 0g")", "bytes of two hexadecimal digits each"},
      {R"("hex": "", "request": "80")", "\"request\" of six bytes"},
      {R"("hex": "", "type": 256)", "\"type\", a number from 0 to 255"},
      {R"("hex": "", "type": -1)", "\"type\", a number from 0 to 255"},
      {R"("hex": "", "outcome": "lost")", "an outcome that is answered, stalled or failed"},
      {R"("hex": "", "source": [])", "an object"},
  };
  for (auto const& [members, expected] : runs) {
    EXPECT_THAT(ErrorOf(WithRun(members)), StartsWith("inputs[0].devices[0].runs[0]")) << members;
    EXPECT_THAT(ErrorOf(WithRun(members)), testing::EndsWith(expected)) << members;
  }
  EXPECT_EQ(ErrorOf(WithRun(R"("type": 15, "hex": ""}, {"type": 15, "hex": "")")),
            "inputs[0].devices[0].runs[1]: expected another request, as the device has an answer "
            "for BOS");
}

TEST(Json, RefusesWhatIsTooLong) {
  std::string hex;
  for (int i = 0; i < 65535; ++i) {
    hex += "00";
  }
  EXPECT_EQ(ErrorOf(WithRun("\"type\": 15, \"hex\": \"" + hex + '"')), "no error");
  EXPECT_THAT(ErrorOf(WithRun("\"type\": 15, \"hex\": \"" + hex + "00\"")),
              testing::EndsWith("at most 65,535 bytes of an answer"));
}

TEST(Json, RefusesWhatIsNotJson) {
  EXPECT_THAT(ErrorOf("{\"usbdesc\": 1,\n x}"),
              StartsWith("line 2, column 2: found \"x\", expected "
                         "JSON: "));
  EXPECT_THAT(ErrorOf(""), StartsWith("line 1, column 1: found the end of the text"));
  EXPECT_THAT(ErrorOf(std::string(1 << 20, '[')), HasSubstr("expected JSON: "));
  EXPECT_THAT(ErrorOf("{\"name\": \"\xFF\"}"), HasSubstr("expected JSON: "));
}

TEST(Json, IsReadOrRefusedWhereverItIsCut) {
  std::string const text = WriteJson({{"a", {MakeDevice()}}});
  for (std::size_t length = 0; length + 2 < text.size(); ++length) {
    EXPECT_NE(ErrorOf(text.substr(0, length)), "no error") << length;
  }
}

}  // namespace
}  // namespace usb_devices

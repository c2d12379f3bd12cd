// Devices that answer in every possible way, simulated transfer by transfer.
#include <usb_devices/control_reader.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include <usb_devices/test_bytes.h>

namespace usb_devices {
namespace {

using testing::HasSubstr;
using testing_support::FromHex;
using testing_support::Joined;

constexpr Request kDeviceRequest = Request::Descriptor(kDeviceType);
constexpr Request kConfigurationRequest = Request::Descriptor(kConfigurationType);
constexpr Request kBosRequest = Request::Descriptor(kBosType);

// Answers the requests that it knows, and stalls all others.
class Simulated {
 public:
  void Set(Request const& request, std::string_view bytes) { answers_[request] = FromHex(bytes); }
  void Set(Request const& request, Bytes bytes) { answers_[request] = std::move(bytes); }

  /// Makes the transfer with this number, from 0, end in this way, whatever the request is.
  void At(std::size_t number, ControlTransfer transfer) { special_[number] = std::move(transfer); }
  void From(std::size_t number, ControlTransfer transfer) {
    lastFrom_ = number;
    last_ = std::move(transfer);
  }

  Device Read(bool asksInterfaces = false) {
    DeviceBuilder device;
    ReadThrough(
        {"usb:1-7",
         [this](Request const& request, std::uint16_t length) { return Answer(request, length); },
         asksInterfaces},
        device);
    return device.Build();
  }

  std::vector<std::pair<Request, std::uint16_t>> asked;

 private:
  ControlTransfer Answer(Request const& request, std::uint16_t length) {
    std::size_t const number = asked.size();
    asked.emplace_back(request, length);
    if (number >= lastFrom_) {
      return last_;
    }
    if (auto const special = special_.find(number); special != special_.end()) {
      return special->second;
    }
    auto const answer = answers_.find(request);
    if (answer == answers_.end()) {
      return {Outcome::kStalled, {}, {}, false};
    }
    Bytes bytes = answer->second;
    bytes.resize(std::min<std::size_t>(bytes.size(), length));
    return {Outcome::kAnswered, bytes, {}, false};
  }

  std::map<Request, Bytes> answers_;
  std::map<std::size_t, ControlTransfer> special_;
  std::size_t lastFrom_ = static_cast<std::size_t>(-1);
  ControlTransfer last_;
};

// A mouse of USB 1.1, with its strings.
constexpr std::uint8_t kMouseStrings[] = {0x04, 0x0E, 0x30};
Simulated SimulatedMouse() {
  Simulated mouse;
  mouse.Set(kDeviceRequest, testing_support::kMouseDevice);
  mouse.Set(kConfigurationRequest, testing_support::kMouseConfiguration);
  mouse.Set(Request::HidReport(0), testing_support::kMouseReport);
  mouse.Set(Request::String(0, 0), "06 03 09 04 07 04");
  for (std::uint8_t const index : kMouseStrings) {
    mouse.Set(Request::String(index, 0x0409), "04 03 41 00");
    mouse.Set(Request::String(index, 0x0407), "04 03 42 00");
  }
  return mouse;
}

ControlTransfer FailedTransfer(std::string note) {
  return {Outcome::kFailed, {}, std::move(note), false};
}
ControlTransfer AnsweredTransfer(std::string_view bytes) {
  return {Outcome::kAnswered, FromHex(bytes), {}, false};
}

std::string NoteOf(Device const& device, Request const& request) {
  Answer const* const answer = device.Find(request);
  return answer == nullptr ? "missing" : answer->note;
}

TEST(ControlReader, ReadsADevice) {
  Simulated mouse = SimulatedMouse();
  Device const device = mouse.Read();
  EXPECT_TRUE(AreEqual(*device.Bytes(kDeviceRequest), FromHex(testing_support::kMouseDevice)));
  EXPECT_TRUE(AreEqual(*device.Bytes(kConfigurationRequest),
                       FromHex(testing_support::kMouseConfiguration)));
  EXPECT_TRUE(AreEqual(*device.Bytes(Request::String(0x0E, 0x0407)), FromHex("04 03 42 00")));
  EXPECT_EQ(device.OfType(kStringType).size(), 1u + 2 * 3);
  EXPECT_EQ(device.Find(kDeviceRequest)->source.name, "usb:1-7");
  EXPECT_EQ(device.Find(Request::HidReport(0))->outcome, Outcome::kFailed);
  EXPECT_THAT(NoteOf(device, Request::HidReport(0)), HasSubstr("from its driver"));
  for (auto const& [request, length] : mouse.asked) {
    EXPECT_TRUE(request.IsStandard()) << NameOf(request);
  }
  EXPECT_EQ(mouse.asked[1], std::pair(kConfigurationRequest, std::uint16_t{9}));
  EXPECT_EQ(mouse.asked[2], std::pair(kConfigurationRequest, std::uint16_t{34}));
}

TEST(ControlReader, AsksInterfacesWhenItMay) {
  Device const device = SimulatedMouse().Read(true);
  EXPECT_TRUE(
      AreEqual(*device.Bytes(Request::HidReport(0)), FromHex(testing_support::kMouseReport)));
}

TEST(ControlReader, ReadsTheOtherSpeedAndTheBos) {
  Simulated simulated;
  simulated.Set(kDeviceRequest, "12 01 10 02 09 00 01 40 6D 04 25 08 12 00 00 00 00 02");
  simulated.Set(kConfigurationRequest, "09 02 09 00 00 01 00 80 32");
  simulated.Set(Request::Descriptor(kQualifierType), "0A 06 10 02 09 00 00 40 02 00");
  simulated.Set(Request::Descriptor(kOtherSpeedConfigurationType, 1), "09 07 09 00 00 01 00 80 32");
  simulated.Set(Request::Hub(kHubType), "09 29 04 00 00 32 64 00 FF");
  Bytes const bos = FromHex(
      "05 0F 39 00 02 "
      "1C 10 05 00 DF 60 DD D8 89 45 C7 4C 9C D2 65 9D 9E 64 8A 9F 00 00 03 06 0A 00 20 00 "
      "18 10 05 00 38 B6 08 34 A9 09 A0 47 8B FD A0 76 88 15 B6 65 00 01 21 01");
  simulated.Set(kBosRequest, bos);
  simulated.Set(Request::Vendor(0x20, 0, 7), "0A 00 00 00 00 00 03 06 0A 00");
  simulated.Set(Request::Vendor(0x21, 1, 2), "05 03 01 61 62");
  Device const device = simulated.Read();
  EXPECT_TRUE(AreEqual(*device.Bytes(kBosRequest), bos));
  EXPECT_EQ(device.Bytes(Request::Vendor(0x20, 0, 7))->size(), 10u);
  EXPECT_EQ(device.Bytes(Request::Vendor(0x21, 1, 2))->size(), 5u);
  EXPECT_EQ(device.Bytes(Request::Hub(kHubType))->size(), 9u);
  EXPECT_EQ(device.Find(Request::Descriptor(kConfigurationType, 1))->outcome, Outcome::kStalled);
  EXPECT_EQ(device.Find(Request::Descriptor(kOtherSpeedConfigurationType, 0))->outcome,
            Outcome::kStalled);
  EXPECT_TRUE(device.Bytes(Request::Descriptor(kOtherSpeedConfigurationType, 1)));
  EXPECT_EQ(device.Find(Request::String(0, 0)), nullptr) << "no descriptor names a string";
}

TEST(ControlReader, ReadsTheStringsThatDescriptorsName) {
  Simulated simulated;
  simulated.Set(kDeviceRequest, "12 01 00 01 00 00 00 40 6D 04 25 08 12 00 00 02 02 01");
  simulated.Set(kConfigurationRequest,
                "09 02 28 00 01 01 03 80 32 08 0B 00 01 02 06 00 05 "
                "09 04 00 00 00 02 06 00 06 0D 24 0F 07 00 00 00 00 00 00 00 00 00");
  Device const device = simulated.Read();
  EXPECT_EQ(device.Find(Request::String(0, 0))->outcome, Outcome::kStalled);
  std::vector<unsigned> indexes;
  for (auto const& [request, length] : simulated.asked) {
    if (request.IsString() && request.index == 0x0409) {
      indexes.push_back(request.Index());
    }
  }
  EXPECT_THAT(indexes, testing::ElementsAre(2, 3, 5, 6, 7)) << "English, as no language is listed";
}

TEST(ControlReader, AsksForACompatIdWhereTheMicrosoftStringIsOne) {
  constexpr Request kCompatId = Request::Vendor(0x21, 0, 4);
  std::string const good = "12 03 4D 00 53 00 46 00 54 00 31 00 30 00 30 00 21 00";
  std::string const compatId =
      "28 00 00 00 00 01 04 00 01 00 00 00 00 00 00 00 00 01 57 49 4E 55 53 42 00 00 00 00 00 00 "
      "00 00 00 00 00 00 00 00 00 00";
  struct Case {
    std::string device;
    std::string string;
    bool isAsked;
    bool isFollowed;
  };
  std::string const device20 = "12 01 00 02 00 00 00 40 6D 04 25 08 12 00 00 00 00 00";
  for (Case const& each :
       {Case{device20, good, true, true},
        {device20, "12 03 4D 00 53 00 46 00 54 00 31 00 30 00 31 00 21 00", true, false},
        {device20, "10 03 4D 00 53 00 46 00 54 00 31 00 30 00 30 00 21 00", true, false},
        {device20, good.substr(0, 16 * 3), true, false},
        {device20, "", true, false},
        {"12 01 10 01 00 00 00 40 6D 04 25 08 12 00 00 00 00 00", good, false, false}}) {
    SCOPED_TRACE(each.device + " / " + each.string);
    Simulated simulated;
    simulated.Set(kDeviceRequest, each.device);
    simulated.Set(Request::MicrosoftString(), each.string);
    simulated.Set(kCompatId, compatId);
    Device const device = simulated.Read();
    EXPECT_EQ(device.Find(Request::MicrosoftString()) != nullptr, each.isAsked);
    EXPECT_EQ(device.Bytes(kCompatId).has_value(), each.isFollowed);
    if (each.isFollowed) {
      EXPECT_TRUE(AreEqual(*device.Bytes(kCompatId), FromHex(compatId)));
      EXPECT_EQ(simulated.asked.back(), std::pair(kCompatId, std::uint16_t{40}));
    } else if (each.isAsked) {
      EXPECT_EQ(simulated.asked.back(), std::pair(Request::MicrosoftString(), std::uint16_t{18}));
    }
  }
}

TEST(ControlReader, RecordsStallsAndFailures) {
  Simulated mouse = SimulatedMouse();
  mouse.At(4, FailedTransfer("no answer within a second"));
  mouse.At(5, {Outcome::kStalled, {}, {}, false});
  Device const device = mouse.Read();
  EXPECT_EQ(device.Find(Request::String(0x04, 0x0407))->outcome, Outcome::kFailed);
  EXPECT_EQ(NoteOf(device, Request::String(0x04, 0x0407)), "no answer within a second");
  EXPECT_EQ(device.Find(Request::String(0x0E, 0x0407))->outcome, Outcome::kStalled);
  EXPECT_EQ(device.Find(Request::String(0x30, 0x0407))->outcome, Outcome::kAnswered);
}

TEST(ControlReader, StopsWhenTheDeviceIsUnplugged) {
  std::size_t const whole = [] {
    Simulated mouse = SimulatedMouse();
    mouse.Read();
    return mouse.asked.size();
  }();
  for (std::size_t at = 0; at < whole; ++at) {
    SCOPED_TRACE(at);
    Simulated mouse = SimulatedMouse();
    mouse.From(at, {Outcome::kFailed, {}, "the device was unplugged", true});
    Device const device = mouse.Read();
    EXPECT_EQ(mouse.asked.size(), at + 1);
    std::size_t answered = 0;
    for (Answer const& answer : device.Answers()) {
      answered += answer.outcome == Outcome::kAnswered ? 1u : 0u;
      if (answer.outcome != Outcome::kAnswered && !answer.request.IsOfInterface()) {
        EXPECT_EQ(answer.note, "the device was unplugged");
      }
    }
    // The configuration takes two transfers; the first one alone already gives an answer.
    EXPECT_EQ(answered, at < 2 ? at : at == 2 ? 2 : at - 1);
  }
}

TEST(ControlReader, GivesUpAfterEightFailures) {
  Simulated simulated;
  simulated.Set(kDeviceRequest, "12 01 00 01 00 00 00 40 6D 04 25 08 12 00 00 00 00 FF");
  simulated.From(1, FailedTransfer("no answer within a second"));
  Device const device = simulated.Read();
  EXPECT_EQ(simulated.asked.size(), 9u);
  EXPECT_EQ(device.OfType(kConfigurationType).size(), 255u);
  EXPECT_EQ(NoteOf(device, Request::Descriptor(kConfigurationType, 7)),
            "no answer within a second");
  EXPECT_EQ(NoteOf(device, Request::Descriptor(kConfigurationType, 8)),
            "not asked for after 8 failures");
}

TEST(ControlReader, KeepsTheLongerAnswerWhenTwoReadsDisagree) {
  struct Case {
    char const* first;
    ControlTransfer second;
    std::size_t kept;
    char const* note;
  };
  char const* const header = "09 02 22 00 01 01 00 A0 32";
  Case const cases[] = {
      {"09 02 22", AnsweredTransfer(""), 3, "announces 34 bytes, and this read gave 3 bytes"},
      {"", AnsweredTransfer(""), 0, ""},
      {"09 02 05 00 01 01 00 A0 32", AnsweredTransfer(""), 9,
       "announces 5 bytes, and this read gave 9 bytes"},
      {header, AnsweredTransfer("09 02 22 00 01 01 00 A0 32 09"), 10,
       "announces 34 bytes, and the read of all gave 10 bytes"},
      {header, AnsweredTransfer("09 02"), 9,
       "announces 34 bytes, and the read of all gave 2 bytes"},
      {"09 02 0B 00 01 01 00 A0 32", AnsweredTransfer("09 02 0C 00 01 01 00 A0 32 02 30"), 11,
       "announced 11 bytes at first and 12 bytes when all were read"},
      {"09 02 0B 00 01 01 00 A0 32", AnsweredTransfer("09 02 0B 00 01 01 00 A0 32 03 30 00"), 11,
       "gave 12 bytes when 11 bytes were asked for"},
      {header,
       {Outcome::kStalled, {}, {}, false},
       9,
       "the first 9 bytes only; the read of all 34 bytes was stalled"},
      {header, FailedTransfer("it broke"), 9,
       "the first 9 bytes only; the read of all 34 bytes was failed: it broke"},
      {"09 02 FF FF 01 01 00 A0 32", AnsweredTransfer(testing_support::kMouseConfiguration), 34,
       "announces 65535 bytes, and the read of all gave 34 bytes; announced 65535 bytes at first "
       "and 34 bytes when all were read"},
  };
  for (Case const& each : cases) {
    SCOPED_TRACE(each.note);
    Simulated mouse = SimulatedMouse();
    mouse.At(1, AnsweredTransfer(each.first));
    mouse.At(2, each.second);
    Device const device = mouse.Read();
    Answer const* const answer = device.Find(kConfigurationRequest);
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer->bytes.size(), each.kept);
    if (*each.first != '\0') {
      EXPECT_EQ(answer->note, each.note);
    }
  }
}

TEST(ControlReader, TakesShortAnswersOfEveryLength) {
  Bytes const device = FromHex(testing_support::kMouseDevice);
  Bytes const configuration = FromHex(testing_support::kMouseConfiguration);
  for (std::size_t size = 0; size <= configuration.size(); ++size) {
    Simulated mouse = SimulatedMouse();
    mouse.Set(kDeviceRequest,
              Bytes(device.begin(),
                    device.begin() + static_cast<std::ptrdiff_t>(std::min(size, device.size()))));
    mouse.Set(
        kConfigurationRequest,
        Bytes(configuration.begin(), configuration.begin() + static_cast<std::ptrdiff_t>(size)));
    Device const read = mouse.Read();
    EXPECT_EQ(read.Bytes(kDeviceRequest)->size(), std::min(size, device.size()));
    if (size >= device.size()) {
      EXPECT_EQ(read.Bytes(kConfigurationRequest)->size(), size);
    }
  }
}

}  // namespace
}  // namespace usb_devices

// Devices that umockdev shows to libusb and that answer from a usbmon capture. A test first starts
// this program under umockdev-run, and then runs in the started program.
#include <usb_devices/live.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <standalone_suite/test_support/temp_folder.h>
#include <usb_devices/characters.h>
#include <usb_devices/control_reader.h>
#include <usb_devices/files.h>
#include <usb_devices/input.h>
#include <usb_devices/read_error.h>
#include <usb_devices/test_bytes.h>
#include <usb_devices/test_traffic.h>

#if defined(__linux__)
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace usb_devices {
namespace {

using testing::HasSubstr;

std::string LiveErrorOf(std::string const& name) {
  try {
    ReadLive(name);
  } catch (ReadError const& error) {
    return error.what();
  }
  return "no error";
}

TEST(Live, KnowsItsNames) {
  EXPECT_TRUE(IsLiveName("usb:1-7"));
  EXPECT_TRUE(IsLiveName("usb:"));
  EXPECT_FALSE(IsLiveName("usb"));
  EXPECT_FALSE(IsLiveName("./usb:1-7"));
}

TEST(Live, ReportsWhatItCannotRead) {
  if (!CanReadLive()) {
    EXPECT_THAT(LiveErrorOf("usb:1-7"), HasSubstr("no libusb"));
    EXPECT_THROW(ListLiveDevices(), ReadError);
    return;
  }
  for (char const* const name : {"usb:", "usb:1", "usb:046d", "usb:046d:082", "usb:046d:082g",
                                 "usb:046d:08255", "usb:a-b"}) {
    EXPECT_EQ(LiveErrorOf(name), std::string(name) +
                                     ": is not a name of a device, expected one such "
                                     "as usb:046d:0825 or usb:1-7");
  }
}

#if defined(__linux__)

constexpr std::size_t kDevices = 127;  // the most that a bus can have
constexpr std::uint16_t kMostOfLibusb = 4096;

Bytes MouseRun() {
  return testing_support::Joined({testing_support::FromHex(testing_support::kMouseDevice),
                                  testing_support::FromHex(testing_support::kMouseConfiguration)});
}

// A device as the kernel shows it, and its answer to each control transfer.
struct Mock {
  Bytes descriptors = MouseRun();
  std::string speed = "1.5";
  std::vector<std::pair<unsigned, Bytes>> reports;
  ControlRead answers;    // without it every transfer fails
  bool isSilent = false;  // it never answers: the capture has only the first request
};

std::string DigitsOf(ByteSpan bytes) {
  std::string text;
  for (std::uint8_t const byte : bytes) {
    text += Hexadecimal(byte, 2);
  }
  return text;
}

std::string PathOfMock(std::size_t address) {
  return "/devices/pci0000:00/0000:00:14.0/usb1/1-" + std::to_string(address);
}

// A device as umockdev-record describes it; device 1 is on port 1.
std::string DescriptionOf(Mock const& mock, std::size_t address) {
  std::string const hexadecimal = DigitsOf(mock.descriptors);
  std::string const decimal = std::to_string(address);
  std::string const number = std::string(3 - decimal.size(), '0') + decimal;
  std::string const path = PathOfMock(address);
  std::string text =
      "P: " + path + "\nN: bus/usb/001/" + number + "=" + hexadecimal +
      "\nE: DEVTYPE=usb_device\nE: SUBSYSTEM=usb\nE: BUSNUM=001\nE: DEVNUM=" + number +
      "\nE: DEVNAME=/dev/bus/usb/001/" + number + "\nA: busnum=1\nA: devnum=" + decimal +
      "\nA: devpath=" + decimal + "\nA: speed=" + mock.speed +
      "\nA: bConfigurationValue=1\nH: descriptors=" + hexadecimal + "\n\n";
  for (auto const& [interfaceNumber, report] : mock.reports) {
    std::string const interface = path + "/1-" + decimal + ":1." + std::to_string(interfaceNumber);
    text += "P: " + interface + "\nE: DEVTYPE=usb_interface\nE: SUBSYSTEM=usb\n" +
            "A: bInterfaceNumber=" + Hexadecimal(interfaceNumber, 2) + "\n\nP: " + interface +
            "/0003:" + Hexadecimal(address, 4) + '.' + std::to_string(interfaceNumber) +
            "\nE: SUBSYSTEM=hid\nH: report_descriptor=" + DigitsOf(report) + "\n\n";
  }
  return text;
}

// Reads a mock and returns the device that its answers give. Adds the packets of the traffic.
Device Record(Mock const& mock, std::size_t address, std::vector<Bytes>& packets) {
  constexpr auto kStall = static_cast<std::uint32_t>(-32);
  constexpr auto kProtocol = static_cast<std::uint32_t>(-71);
  constexpr auto kShutdown = static_cast<std::uint32_t>(-108);
  testing_support::Packets const writer(PacketKind::kUsbmonLong);
  unsigned const number = static_cast<unsigned>(address);
  DeviceBuilder builder;
  for (auto const& [interfaceNumber, report] : mock.reports) {
    builder.Add({Request::HidReport(static_cast<std::uint8_t>(interfaceNumber)),
                 Outcome::kAnswered,
                 report,
                 {},
                 {}});
  }
  std::uint64_t transfer = 0;
  auto const read = [&](Request const& request, std::uint16_t length) {
    ControlTransfer answer = mock.answers(request, length);
    packets.push_back(writer.Ask(
        1, number, ++transfer, testing_support::SetupOf(request, std::min(length, kMostOfLibusb))));
    std::uint32_t const status = answer.outcome == Outcome::kAnswered  ? 0
                                 : answer.outcome == Outcome::kStalled ? kStall
                                 : answer.isGone                       ? kShutdown
                                                                       : kProtocol;
    packets.push_back(
        writer.Answer(1, number, transfer, status, ByteCursor(answer.bytes).Take(kMostOfLibusb)));
    return answer;
  };
  ReadThrough({{}, read, false}, builder);
  return builder.Build();
}

// True under umockdev-run, where the devices exist and the test continues. Otherwise runs the test
// with the devices under umockdev-run and returns false.
bool HasDevices(std::vector<Mock> const& mocks) {
  if (std::getenv("UMOCKDEV_DIR") != nullptr) {
    return true;
  }
  usb_support::standalone::TempFolder const folder;
  std::string description;
  std::string pcaps;
  std::vector<Bytes> packets;
  for (std::size_t address = 1; address <= mocks.size(); ++address) {
    Mock const& mock = mocks[address - 1];
    description += DescriptionOf(mock, address);
    if (mock.answers) {
      Record(mock, address, packets);
      packets.resize(mock.isSilent ? 1 : packets.size());
      pcaps += " --pcap='/sys" + PathOfMock(address) + "=" + NameOf(folder.Path() / "a.pcap") + "'";
    }
  }
  folder.Write("a.pcap", TextOf(testing_support::FileOf({false, false, false}, 220, packets)));
  std::string const file = NameOf(folder.Write("a.umockdev", description));
  std::string const program = NameOf(std::filesystem::read_symlink("/proc/self/exe"));
  testing::TestInfo const& test = *testing::UnitTest::GetInstance()->current_test_info();
  // umockdev creates a dozen files for each device, which is slow on a disk.
  std::string const command =
      "TMPDIR=$(test -w /dev/shm && echo /dev/shm) umockdev-run --device '" + file + "'" + pcaps +
      " -- '" + program + "' --gtest_filter=" + test.test_suite_name() + '.' + test.name() +
      " > '" + file + ".log' 2>&1";
  int const status = std::system(command.c_str());
  std::string const log = ReadFile(file + ".log", {std::size_t{1} << 20, "1 MiB"});
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0 &&
              log.find("[  PASSED  ] 1 test.") != std::string::npos)
      << log;
  return false;
}

class LiveMock : public testing::Test {
 protected:
  void SetUp() override {
    if (!CanReadLive()) {
      GTEST_SKIP() << "This build has no libusb.";
    }
    if (std::system("umockdev-run --version > /dev/null 2>&1") != 0) {
      GTEST_SKIP() << "umockdev-run is not installed.";
    }
  }
};

TEST_F(LiveMock, ListsAndReads) {
  if (!HasDevices({Mock{}, Mock{}, Mock{MouseRun(), "77", {}, {}}})) {
    return;
  }
  std::vector<LiveDevice> const devices = ListLiveDevices();
  ASSERT_EQ(devices.size(), 3u);
  EXPECT_EQ(devices[0].name, "usb:1-1");
  EXPECT_EQ(devices[0].address, 1u);
  EXPECT_EQ(devices[0].vendor, 0xFFFF);
  EXPECT_EQ(devices[0].product, 0x0002);
  EXPECT_EQ(devices[0].speed, Speed::kLow);
  EXPECT_EQ(devices[1].name, "usb:1-2");
  EXPECT_EQ(LiveErrorOf("usb:1-4"), "usb:1-4: is not plugged in");
  EXPECT_EQ(LiveErrorOf("usb:046d:0825"), "usb:046d:0825: is not plugged in");
  // The mocks have no answers to control transfers: each transfer fails with a reason.
  LiveReading const reading = ReadLive("usb:1-2");
  ASSERT_EQ(reading.devices.size(), 1u);
  Answer const* const answer = reading.devices[0].Find(Request::Descriptor(kDeviceType));
  ASSERT_NE(answer, nullptr);
  EXPECT_EQ(answer->outcome, Outcome::kFailed);
  EXPECT_NE(answer->note, "");
  EXPECT_THAT(ReadLive("usb:1-3").notes,
              testing::ElementsAre(HasSubstr("speed: found \"77\", expected 1.5, 12, ")));
}

// Gives the answers of a device, and stalls every other request.
ControlRead AnswersOf(Device device) {
  return [device = std::move(device)](Request const& request,
                                      std::uint16_t length) -> ControlTransfer {
    if (std::optional<ByteSpan> const bytes = device.Bytes(request, length)) {
      return {Outcome::kAnswered, {bytes->begin(), bytes->end()}, {}, false};
    }
    return {Outcome::kStalled, {}, {}, false};
  };
}

class MockMaker {
 public:
  void Add(Request const& request, Bytes bytes) {
    bool const isInSysfs = request == Request::Descriptor(kDeviceType) ||
                           (request.IsStandard() && request.Type() == kConfigurationType);
    if (isInSysfs) {
      mock_.descriptors.insert(mock_.descriptors.end(), bytes.begin(), bytes.end());
    } else if (request.IsOfInterface()) {
      mock_.reports.emplace_back(request.index, bytes);
      return;
    }
    device_.Add({request, Outcome::kAnswered, std::move(bytes), {}, {}});
  }
  void SetSpeed(std::string speed) { mock_.speed = std::move(speed); }
  Mock Make() {
    mock_.answers = AnswersOf(device_.Build());
    return std::exchange(mock_, Mock{{}, "480", {}, {}});
  }

 private:
  DeviceBuilder device_;
  Mock mock_{{}, "480", {}, {}};
};

// A device of usb_rules: lines with a keyword and its argument, and lines of hexadecimal bytes.
Mock SampleOfRules(std::filesystem::path const& path) {
  std::ifstream file(path);
  std::map<std::string, std::uint8_t> counts;
  MockMaker maker;
  std::optional<Request> request;
  Bytes bytes;
  auto const finish = [&] {
    if (request) {
      maker.Add(*request, std::exchange(bytes, {}));
    }
    request.reset();
  };
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line.substr(0, line.find('#')));
    std::string word;
    std::string rest;
    words >> word >> rest;
    if (word.size() <= 2) {
      Bytes const more = testing_support::FromHex(line.substr(0, line.find('#')));
      bytes.insert(bytes.end(), more.begin(), more.end());
      continue;
    }
    finish();
    std::uint8_t const index = counts[word]++;
    if (word == "speed") {
      maker.SetSpeed(rest == "low"     ? "1.5"
                     : rest == "full"  ? "12"
                     : rest == "high"  ? "480"
                     : rest == "super" ? "5000"
                                       : "10000");
    } else if (word == "string") {
      bytes = {4, 3, static_cast<std::uint8_t>('A' + index), 0};
      request = Request::String(static_cast<std::uint8_t>(std::stoi(rest, nullptr, 16)), 0x0409);
    } else if (word == "languages") {
      bytes = {4, 3, 0x09, 0x04};
      request = Request::String(0, 0);
    } else if (word == "report") {
      request = Request::HidReport(static_cast<std::uint8_t>(std::stoi(rest, nullptr, 16)));
    } else {
      request = word == "device"          ? Request::Descriptor(kDeviceType)
                : word == "configuration" ? Request::Descriptor(kConfigurationType, index)
                : word == "qualifier"     ? Request::Descriptor(kQualifierType)
                : word == "other"         ? Request::Descriptor(kOtherSpeedConfigurationType, index)
                : word == "bos"           ? Request::Descriptor(kBosType)
                                          : Request::Hub(kHubType);
    }
  }
  finish();
  return maker.Make();
}

// One device whose configuration contains the samples of usb_fields twice, so that it is longer
// than libusb reads at once.
Mock SamplesOfFields() {
  std::ifstream file(std::string(USB_SUPPORT_SOURCE_DIR) + "/usb_fields/samples.txt");
  Bytes descriptors;
  for (std::string line; std::getline(file, line);) {
    constexpr std::uint8_t kBegin[] = {kDeviceType, kConfigurationType, kQualifierType,
                                       kOtherSpeedConfigurationType, kBosType};
    std::istringstream cells(line);
    std::string cell;
    for (int i = 0; i < 3; ++i) {
      std::getline(cells, cell, '|');
    }
    Bytes const bytes = line.starts_with('#') ? Bytes() : testing_support::FromHex(cell);
    if (bytes.size() >= 2 && bytes[0] == bytes.size() &&
        std::find(std::begin(kBegin), std::end(kBegin), bytes[1]) == std::end(kBegin)) {
      descriptors.insert(descriptors.end(), bytes.begin(), bytes.end());
    }
  }
  Bytes configuration = testing_support::Joined(
      {testing_support::Header(kConfigurationType, 0), descriptors, descriptors});
  configuration[2] = static_cast<std::uint8_t>(configuration.size());
  configuration[3] = static_cast<std::uint8_t>(configuration.size() >> 8);
  EXPECT_GT(configuration.size(), std::size_t{kMostOfLibusb});
  MockMaker maker;
  maker.Add(Request::Descriptor(kDeviceType),
            testing_support::FromHex("12 01 00 02 00 00 00 40 34 12 03 00 00 01 01 02 03 01"));
  maker.Add(Request::Descriptor(kConfigurationType), configuration);
  return maker.Make();
}

// The samples of each library and of the program.
std::vector<Mock> Samples() {
  std::filesystem::path const source = USB_SUPPORT_SOURCE_DIR;
  std::vector<Mock> mocks = {SamplesOfFields()};
  std::set<std::filesystem::path> paths;
  for (char const* const folder : {"usb_rules/samples", "examples/captures"}) {
    for (auto const& entry : std::filesystem::directory_iterator(source / folder)) {
      paths.insert(entry.path());
    }
  }
  for (std::filesystem::path const& path : paths) {
    if (path.extension() == ".dev") {
      mocks.push_back(SampleOfRules(path));
    } else if (path.parent_path().filename() == "captures" && path.extension() == ".txt" &&
               !path.stem().string().starts_with("malformed")) {
      MockMaker maker;
      Device const device = ReadInput(NameOf(path)).devices.at(0);
      for (Answer const& answer : device.Answers()) {
        maker.Add(answer.request, answer.bytes);
      }
      // libusb does not list a device without a configuration.
      if (device.Find(Request::Descriptor(kDeviceType)) != nullptr &&
          device.Find(Request::Descriptor(kConfigurationType)) != nullptr) {
        mocks.push_back(maker.Make());
      }
    }
  }
  return mocks;
}

// All devices that are plugged in, by name. A recording can be replayed only once.
std::map<std::string, Device> ReadAllLive() {
  std::map<std::string, Device> all;
  std::set<std::string> products;
  for (LiveDevice const& live : ListLiveDevices()) {
    std::string const product =
        "usb:" + Hexadecimal(live.vendor, 4) + ':' + Hexadecimal(live.product, 4);
    if (products.insert(product).second) {
      LiveReading reading = ReadLive(product);
      EXPECT_THAT(reading.notes, testing::IsEmpty());
      for (Device& device : reading.devices) {
        all.emplace(device.Name(), std::move(device));
      }
    }
  }
  return all;
}

// Expects that each device has the answers that were recorded from its mock.
void ExpectEachAsRecorded(std::vector<Mock> const& mocks) {
  std::map<std::string, Device> const all = ReadAllLive();
  EXPECT_EQ(all.size(), mocks.size());
  for (std::size_t address = 1; address <= mocks.size(); ++address) {
    std::string const name = "usb:1-" + std::to_string(address);
    SCOPED_TRACE(name);
    std::vector<Bytes> ignored;
    Device const recorded = Record(mocks[address - 1], address, ignored);
    ASSERT_TRUE(all.contains(name));
    Device const& device = all.at(name);
    EXPECT_EQ(device.Answers().size(), recorded.Answers().size());
    EXPECT_NE(device.Speed(), Speed::kUnknown);
    for (Answer const& answer : recorded.Answers()) {
      SCOPED_TRACE(NameOf(answer.request));
      Answer const* const read = device.Find(answer.request);
      ASSERT_NE(read, nullptr);
      EXPECT_EQ(read->outcome, answer.outcome);
      EXPECT_EQ(read->bytes, answer.bytes);
      EXPECT_EQ(read->note,
                answer.bytes.size() <= kMostOfLibusb
                    ? answer.note
                    : "the kernel's from byte 4,096 on, as libusb reads no more at once");
    }
  }
}

TEST_F(LiveMock, ReadsTheSamples) {
  std::vector<Mock> const mocks = Samples();
  EXPECT_GE(mocks.size(), 50u);
  if (!HasDevices(mocks)) {
    return;
  }
  ExpectEachAsRecorded(mocks);
}

Device MouseWithStrings() {
  DeviceBuilder mouse;
  auto const add = [&mouse](Request const& request, std::string_view bytes) {
    mouse.Add({request, Outcome::kAnswered, testing_support::FromHex(bytes), {}, {}});
  };
  add(Request::Descriptor(kDeviceType), testing_support::kMouseDevice);
  add(Request::Descriptor(kConfigurationType), testing_support::kMouseConfiguration);
  add(Request::String(0, 0), "04 03 09 04");
  for (std::uint8_t const index : std::initializer_list<std::uint8_t>{0x04, 0x0E, 0x30}) {
    add(Request::String(index, 0x0409), "04 03 41 00");
  }
  return mouse.Build();
}
constexpr std::size_t kMouseTransfers = 7;

// A mouse with strings that gives a special answer to one transfer, counted from 0.
Mock MouseThat(std::size_t number, ControlTransfer special) {
  ControlRead const mouse = AnswersOf(MouseWithStrings());
  // Each recording begins with the request for the device descriptor.
  return {MouseRun(),
          "1.5",
          {},
          [=, at = std::size_t{0}](Request const& request, std::uint16_t length) mutable {
            at = request == Request::Descriptor(kDeviceType) ? 0 : at + 1;
            ControlTransfer answer = at == number ? special : mouse(request, length);
            answer.bytes.resize(std::min<std::size_t>(answer.bytes.size(), length));
            return answer;
          }};
}

// A stall, a failure and unplugging at each transfer, and a short answer of every length.
std::vector<Mock> Misbehaving() {
  std::vector<Mock> mocks;
  for (std::size_t number = 0; number < kMouseTransfers; ++number) {
    mocks.push_back(MouseThat(number, {Outcome::kStalled, {}, {}, false}));
    mocks.push_back(MouseThat(number, {Outcome::kFailed, {}, "Input/Output Error", false}));
    mocks.push_back(MouseThat(number, {Outcome::kFailed, {}, "the device was unplugged", true}));
  }
  Bytes const configuration = testing_support::FromHex(testing_support::kMouseConfiguration);
  for (std::size_t size = 0; size < configuration.size(); ++size) {
    Bytes const cut(configuration.begin(),
                    configuration.begin() + static_cast<std::ptrdiff_t>(size));
    mocks.push_back(MouseThat(size <= 9 ? 1 : 2, {Outcome::kAnswered, cut, {}, false}));
  }
  return mocks;
}

TEST_F(LiveMock, ReadsDevicesThatMisbehave) {
  std::vector<Mock> const mocks = Misbehaving();
  if (!HasDevices(mocks)) {
    return;
  }
  ExpectEachAsRecorded(mocks);
}

// Devices that announce wrong lengths.
TEST_F(LiveMock, ReadsDevicesThatLie) {
  Bytes const configuration = testing_support::FromHex(testing_support::kMouseConfiguration);
  Bytes more = configuration;
  more[2] = 39;
  Bytes most = configuration;
  most[2] = most[3] = 0xFF;
  DeviceBuilder endless;
  endless.Add({Request::Descriptor(kDeviceType),
               Outcome::kAnswered,
               testing_support::FromHex(testing_support::kMouseDevice),
               {},
               {}});
  Bytes whole = most;
  whole.resize(65535, 0xAA);
  endless.Add({Request::Descriptor(kConfigurationType), Outcome::kAnswered, whole, {}, {}});
  std::vector<Mock> const mocks = {MouseThat(2, {Outcome::kAnswered, more, {}, false}),
                                   MouseThat(1, {Outcome::kAnswered, more, {}, false}),
                                   MouseThat(1, {Outcome::kAnswered, most, {}, false}),
                                   {MouseRun(), "1.5", {}, AnswersOf(endless.Build())}};
  if (!HasDevices(mocks)) {
    return;
  }
  std::pair<char const*, char const*> const notes[] = {
      {"usb:1-1", "announced 34 bytes at first and 39 bytes when all were read"},
      {"usb:1-2",
       "announces 39 bytes, and the read of all gave 34 bytes; announced 39 bytes at first and 34 "
       "bytes when all were read"},
      {"usb:1-3",
       "announces 65535 bytes, and the read of all gave 34 bytes; announced 65535 bytes at first "
       "and 34 bytes when all were read"},
      {"usb:1-4",
       "cut off at 4,096 bytes, as libusb reads no more at once; announces 65535 bytes, and the "
       "read of all gave 4096 bytes"}};
  for (auto const& [name, note] : notes) {
    LiveReading const reading = ReadLive(name);
    Answer const* const answer =
        reading.devices.at(0).Find(Request::Descriptor(kConfigurationType));
    ASSERT_NE(answer, nullptr) << name;
    EXPECT_EQ(answer->note, note) << name;
    EXPECT_EQ(answer->bytes.size(), name == std::string("usb:1-4") ? 4096u : 34u);
  }
}

TEST_F(LiveMock, WaitsASecondForAnAnswer) {
  Mock silent = MouseThat(0, {Outcome::kFailed, {}, {}, true});
  silent.isSilent = true;
  if (!HasDevices({silent})) {
    return;
  }
  LiveReading const reading = ReadLive("usb:1-1");
  EXPECT_EQ(reading.devices.at(0).Find(Request::Descriptor(kDeviceType))->note,
            "no answer within a second");
}

TEST_F(LiveMock, ReadsTheMostDevicesOfABus) {
  std::vector<Mock> const mocks(kDevices, {MouseRun(), "1.5", {}, AnswersOf(MouseWithStrings())});
  if (!HasDevices(mocks)) {
    return;
  }
  EXPECT_EQ(ListLiveDevices().size(), kDevices);
  InputReading const reading = ReadInput("usb:ffff:0002");
  EXPECT_EQ(reading.form, "live");
  ASSERT_EQ(reading.devices.size(), kDevices);
  for (Device const& device : reading.devices) {
    EXPECT_TRUE(device.Bytes(Request::String(0x30, 0x0409))) << device.Name();
  }
}

TEST_F(LiveMock, TellsWhatToDoWithoutPermission) {
  if (!HasDevices({Mock{}})) {
    return;
  }
  std::string const root = std::getenv("UMOCKDEV_DIR");
  if (getuid() == 0) {
    std::filesystem::permissions(root, std::filesystem::perms::all);
    for (auto const& entry : std::filesystem::recursive_directory_iterator(root)) {
      if (!entry.is_symlink()) {
        std::filesystem::permissions(entry.path(), std::filesystem::perms::all);
      }
    }
  }
  ASSERT_EQ(chmod((root + "/dev/bus/usb/001/001").c_str(), 0), 0);
  ASSERT_TRUE(getuid() != 0 || setuid(65534) == 0);
  LiveReading const reading = ReadLive("usb:1-1");
  ASSERT_EQ(reading.notes.size(), 1u);
  EXPECT_THAT(reading.notes[0],
              HasSubstr(R"(ATTR{idVendor}=="ffff", ATTR{idProduct}=="0002", TAG+="uaccess")"));
  ASSERT_EQ(reading.devices.size(), 1u);
  Device const& device = reading.devices[0];
  EXPECT_TRUE(AreEqual(*device.Bytes(Request::Descriptor(kConfigurationType)),
                       testing_support::FromHex(testing_support::kMouseConfiguration)));
  EXPECT_EQ(device.Find(Request::String(0, 0))->outcome, Outcome::kFailed);
  EXPECT_EQ(device.Find(Request::String(0, 0))->note, "the device cannot be opened");
}

#endif

}  // namespace
}  // namespace usb_devices

// Devices that umockdev shows to libusb: a test starts this program under umockdev-run, where it
// runs itself again.
#include <usb_devices/live.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include <standalone_suite/test_support/temp_folder.h>
#include <usb_devices/characters.h>
#include <usb_devices/files.h>
#include <usb_devices/input.h>
#include <usb_devices/read_error.h>
#include <usb_devices/test_bytes.h>

#if defined(__linux__)
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

struct libusb_device_handle;

namespace {

// What libusb makes of a control transfer: the number of bytes read, or an error below 0.
using Transfer = std::function<int(usb_devices::Request const& request, std::span<std::uint8_t>)>;

constexpr int kIoError = -1;
constexpr int kNoDevice = -4;
constexpr int kTimeout = -7;
constexpr int kPipe = -9;

Transfer transfer = [](usb_devices::Request const&, std::span<std::uint8_t>) { return kIoError; };

}  // namespace

// Instead of libusb's, because umockdev answers no control transfers.
extern "C" __attribute__((visibility("default"))) int libusb_control_transfer(
    libusb_device_handle* /*handle*/, std::uint8_t requestType, std::uint8_t request,
    std::uint16_t value, std::uint16_t index, unsigned char* data, std::uint16_t length,
    unsigned int /*timeout*/) {
  return transfer({requestType, request, value, index}, {data, length});
}
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

constexpr int kDevices = 127;

// A device as umockdev-record describes it; device 1 is on port 1.
std::string MockOf(int address, std::string_view vendor, std::string_view speed = "1.5") {
  std::string const hexadecimal = [] {
    Bytes const bytes =
        testing_support::Joined({testing_support::FromHex(testing_support::kMouseDevice),
                                 testing_support::FromHex(testing_support::kMouseConfiguration)});
    std::string text;
    for (std::uint8_t const byte : bytes) {
      text += Hexadecimal(byte, 2);
    }
    return text;
  }();
  std::string number = std::to_string(address);
  number.insert(0, 3 - number.size(), '0');
  std::string const path = "/devices/pci0000:00/0000:00:14.0/usb1/1-" + std::to_string(address);
  return "P: " + path + "\nN: bus/usb/001/" + number + "=" + hexadecimal +
         "\nE: DEVTYPE=usb_device\nE: SUBSYSTEM=usb\nE: BUSNUM=001\nE: DEVNUM=" + number +
         "\nE: DEVNAME=/dev/bus/usb/001/" + number +
         "\nA: busnum=1\nA: devnum=" + std::to_string(address) +
         "\nA: devpath=" + std::to_string(address) + "\nA: speed=" + std::string(speed) +
         "\nA: bConfigurationValue=1\nA: idVendor=" + std::string(vendor) +
         "\nA: idProduct=0002\nA: bNumConfigurations=1\nH: descriptors=" + hexadecimal + "\n\n";
}

// True when the test continues, with these devices. Otherwise it runs itself with them, under
// umockdev-run.
bool HasDevices(std::string const& devices) {
  if (std::getenv("UMOCKDEV_DIR") != nullptr) {
    return true;
  }
  usb_support::standalone::TempFolder const folder;
  std::string const file = NameOf(folder.Write("a.umockdev", devices));
  std::string const program = NameOf(std::filesystem::read_symlink("/proc/self/exe"));
  testing::TestInfo const& test = *testing::UnitTest::GetInstance()->current_test_info();
  std::string const command = "umockdev-run --device '" + file + "' -- '" + program +
                              "' --gtest_filter=" + test.test_suite_name() + '.' + test.name() +
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
  if (!HasDevices(MockOf(1, "ffff") + MockOf(2, "fffe") + MockOf(3, "fffd", "77"))) {
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
  // The mock has no answers to control transfers: each of them is a failure with a reason.
  LiveReading const reading = ReadLive("usb:1-2");
  ASSERT_EQ(reading.devices.size(), 1u);
  Answer const* const answer = reading.devices[0].Find(Request::Descriptor(kDeviceType));
  ASSERT_NE(answer, nullptr);
  EXPECT_NE(answer->outcome, Outcome::kAnswered);
  EXPECT_THAT(ReadLive("usb:1-3").notes,
              testing::ElementsAre(HasSubstr("speed: found \"77\", expected 1.5, 12, ")));
}

// A mouse that gives `string0` for the list of its languages.
Transfer MouseWith(int string0) {
  return [string0](Request const& request, std::span<std::uint8_t> room) {
    auto const answer = [room](std::string_view text) {
      Bytes const bytes = testing_support::FromHex(text);
      std::size_t const size = std::min(bytes.size(), room.size());
      std::copy_n(bytes.begin(), size, room.begin());
      return static_cast<int>(size);
    };
    if (request == Request::Descriptor(kDeviceType)) {
      return answer(testing_support::kMouseDevice);
    }
    if (request == Request::Descriptor(kConfigurationType)) {
      return answer(testing_support::kMouseConfiguration);
    }
    return string0;
  };
}

TEST_F(LiveMock, KeepsAnswersStallsAndFailuresApart) {
  if (!HasDevices(MockOf(1, "ffff"))) {
    return;
  }
  struct Row {
    int result;
    Outcome outcome;
    std::string note;
  };
  for (Row const& row : {Row{kPipe, Outcome::kStalled, ""},
                         Row{kTimeout, Outcome::kFailed, "no answer within a second"},
                         Row{kNoDevice, Outcome::kFailed, "the device was unplugged"},
                         Row{kIoError, Outcome::kFailed, "Input/Output Error"}}) {
    SCOPED_TRACE(row.result);
    transfer = MouseWith(row.result);
    LiveReading const reading = ReadLive("usb:1-1");
    ASSERT_EQ(reading.devices.size(), 1u);
    Device const& device = reading.devices[0];
    EXPECT_TRUE(AreEqual(*device.Bytes(Request::Descriptor(kDeviceType)),
                         testing_support::FromHex(testing_support::kMouseDevice)));
    EXPECT_TRUE(AreEqual(*device.Bytes(Request::Descriptor(kConfigurationType)),
                         testing_support::FromHex(testing_support::kMouseConfiguration)));
    Answer const* const languages = device.Find(Request::String(0, 0));
    ASSERT_NE(languages, nullptr);
    EXPECT_EQ(languages->outcome, row.outcome);
    EXPECT_EQ(languages->note, row.note);
  }
}

TEST_F(LiveMock, ListsTheMostDevicesOfABus) {
  std::string mocks;
  for (int address = 1; address <= kDevices; ++address) {
    mocks += MockOf(address, "ffff");
  }
  if (!HasDevices(mocks)) {
    return;
  }
  EXPECT_EQ(ListLiveDevices().size(), std::size_t{kDevices});
  InputReading const reading = ReadInput("usb:ffff:0002");
  EXPECT_EQ(reading.form, "live");
  EXPECT_EQ(reading.devices.size(), std::size_t{kDevices});
}

TEST_F(LiveMock, TellsWhatToDoWithoutPermission) {
  if (!HasDevices(MockOf(1, "ffff"))) {
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

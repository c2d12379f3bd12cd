#include <standalone_suite/platform/host.h>

#include <fcntl.h>
#include <pwd.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

#include <standalone_suite/base_support/vendor_list_folder.h>
#include <standalone_suite/platform/scoped_environment_variable.h>
#include <standalone_suite/suite_runtime/log_sinks.h>
#include <standalone_suite/suite_runtime/settings.h>
#include <standalone_suite/test_support/pseudo_terminal.h>
#include <standalone_suite/test_support/temp_folder.h>
#include <usb_support/suite_interfaces/system.h>

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using usb_support::standalone::CloseFile;
using usb_support::standalone::ColourPolicy;
using usb_support::standalone::ConsoleSink;
using usb_support::standalone::FileSink;
using usb_support::standalone::LoadSettings;
using usb_support::standalone::LogCall;
using usb_support::standalone::LogOperation;
using usb_support::standalone::PseudoTerminal;
using usb_support::standalone::ReadFileBytes;
using usb_support::standalone::ScopedEnvironmentVariable;
using usb_support::standalone::SettingsError;
using usb_support::standalone::SetVendorListFolder;
using usb_support::standalone::TempFolder;

class UserDataFolder : public testing::Test {
 protected:
  UserDataFolder() { SetVendorListFolder(std::nullopt); }

  /// The folder is made, so it is in one of the test's own.
  TempFolder folder_;
  std::string path_ = folder_.Path().string();
  ScopedEnvironmentVariable noFolder_{"USBIF_JSON_FOLDER", std::nullopt};
  ScopedEnvironmentVariable home_{"HOME", path_ + "/home of/user"};
};

TEST_F(UserDataFolder, FollowsXdgDataHome) {
  ScopedEnvironmentVariable const data("XDG_DATA_HOME", path_ + "/data of/user");
  EXPECT_EQ(GetUsbifJsonFolderPathName().get(), path_ + "/data of/user/usb_support");
}

TEST_F(UserDataFolder, IsInTheHomeFolder) {
  ScopedEnvironmentVariable const data("XDG_DATA_HOME", std::nullopt);
  EXPECT_EQ(GetUsbifJsonFolderPathName().get(), path_ + "/home of/user/.local/share/usb_support");
}

TEST_F(UserDataFolder, IgnoresAnEmptyOrRelativeXdgDataHome) {
  for (char const* const value : {"", "data", "./data"}) {
    ScopedEnvironmentVariable const data("XDG_DATA_HOME", value);
    EXPECT_EQ(GetUsbifJsonFolderPathName().get(), path_ + "/home of/user/.local/share/usb_support");
  }
}

TEST_F(UserDataFolder, AsksTheUserDatabaseWithoutHome) {
  ScopedEnvironmentVariable const data("XDG_DATA_HOME", std::nullopt);
  passwd const* const entry = getpwuid(getuid());
  std::string const expected =
      entry == nullptr ? "" : std::string(entry->pw_dir) + "/.local/share/usb_support";
  bool const wasThere = std::filesystem::exists(expected);
  for (std::optional<std::string> const& value : {std::optional<std::string>(), {""}}) {
    ScopedEnvironmentVariable const home("HOME", value);
    EXPECT_EQ(GetUsbifJsonFolderPathName().get(), expected);
  }
  if (!wasThere) {
    std::filesystem::remove(expected);
  }
}

void ExpectNoSettings(std::filesystem::path const& file, std::string const& reason) {
  try {
    LoadSettings(file);
    ADD_FAILURE() << "The file was loaded without an error.";
  } catch (SettingsError const& error) {
    EXPECT_EQ(error.what(), file.string() + ": " + reason);
  }
}

// Nobody writes to the pipe, so opening it would never return.
TEST(SettingsFileOnPosix, IsNeitherAPipeNorADevice) {
  TempFolder const folder;
  std::filesystem::path const pipe = folder.Path() / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  ExpectNoSettings(pipe, "is not a regular file");
  ExpectNoSettings("/dev/zero", "is not a regular file");
}

// A red line on a terminal.
std::string RedLineOnTerminal(ColourPolicy policy) {
  PseudoTerminal terminal;
  CFormatInfo const red({255, 0, 0, 255}, TEXT_STRENGTH_NORMAL);
  LogCall call;
  call.format = &red;
  call.text = "line";
  LogCall flush;
  flush.operation = LogOperation::kFlushOutput;
  {
    ConsoleSink sink(terminal.Stream(), policy);
    sink.Take(call);
    sink.Take(flush);
  }
  return terminal.Shown();
}

constexpr char kRedLine[] = "\x1b[38;2;255;0;0mline\x1b[0m\n";

class ConsoleColour : public testing::Test {
 protected:
  void SetUp() override {
    try {
      PseudoTerminal const probe;
    } catch (std::runtime_error const& error) {
      GTEST_SKIP() << error.what();  // as in a chroot without /dev/pts
    }
  }
};

TEST_F(ConsoleColour, FollowsPolicyAndEnvironment) {
  std::string const coloured = kRedLine;
  std::string const plain = "line\n";
  for (std::optional<std::string> const& value :
       {std::optional<std::string>(), {""}, {"1"}, {"0"}, {"false"}}) {
    ScopedEnvironmentVariable const noColor("NO_COLOR", value);
    bool const isOff = value.has_value() && !value->empty();
    EXPECT_EQ(RedLineOnTerminal(ColourPolicy::kAuto), isOff ? plain : coloured);
    EXPECT_EQ(RedLineOnTerminal(ColourPolicy::kAlways), coloured);
    EXPECT_EQ(RedLineOnTerminal(ColourPolicy::kNever), plain);
  }
}

// A device on which every write fails, as on a full disk.
constexpr char kFullDevice[] = "/dev/full";

std::string FlushFailure(usb_support::standalone::LogSink& sink) {
  LogCall call;
  call.text = "line";
  LogCall flush;
  flush.operation = LogOperation::kFlushOutput;
  try {
    sink.Take(call);
    sink.Take(flush);
  } catch (std::runtime_error const& error) {
    return error.what();
  }
  return {};
}

TEST(FullDisk, IsToldByAFileSinkEveryTime) {
  if (access(kFullDevice, W_OK) != 0) {
    GTEST_SKIP() << "There is no " << kFullDevice << ".";
  }
  FileSink sink(kFullDevice);
  EXPECT_THAT(FlushFailure(sink), HasSubstr("/dev/full: the log file cannot be written"));
  EXPECT_THAT(FlushFailure(sink), HasSubstr("/dev/full: the log file cannot be written"));
}

// Lets no file of this process grow.
class NoRoomForFiles {
 public:
  NoRoomForFiles() : onSignal_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    rlimit none = before_;
    none.rlim_cur = 0;
    setrlimit(RLIMIT_FSIZE, &none);
  }
  NoRoomForFiles(NoRoomForFiles const&) = delete;
  NoRoomForFiles& operator=(NoRoomForFiles const&) = delete;
  ~NoRoomForFiles() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, onSignal_);
  }

 private:
  void (*onSignal_)(int);
  rlimit before_{};
};

TEST(FullDisk, IsNoReasonToGiveTheFileUp) {
  TempFolder const folder;
  FileSink sink(folder.Path() / "log.txt");
  std::string failure;
  {
    NoRoomForFiles const noRoom;
    failure = FlushFailure(sink);
  }
  EXPECT_THAT(failure, HasSubstr("log.txt: the log file cannot be written"));
  EXPECT_EQ(FlushFailure(sink), "");
  EXPECT_THAT(ReadFileBytes(folder.Path() / "log.txt"), EndsWith("line\n"));
}

TEST(FullDisk, IsToldByAConsoleSink) {
  if (access(kFullDevice, W_OK) != 0) {
    GTEST_SKIP() << "There is no " << kFullDevice << ".";
  }
  std::unique_ptr<std::FILE, CloseFile> const stream(std::fopen(kFullDevice, "w"));
  ConsoleSink sink(stream.get(), ColourPolicy::kNever);
  EXPECT_THAT(FlushFailure(sink), HasSubstr("The log's stream cannot be flushed"));
}

}  // namespace

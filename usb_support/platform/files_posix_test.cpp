// What only this kind of system has: unusual vendor lists, and moves between volumes.
#if !defined(_WIN32)

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <tests/support/vendor_list_test.h>
#include <usb_support/platform/files.h>

namespace usb_support {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class UnusualVendorList : public testing_support::VendorListTest {
 protected:
  void ExpectMessage(std::string const& part) {
    std::vector<standalone::RecordedCall> const calls = TakeCalls();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_THAT(calls[0].text, HasSubstr(part));
  }
};

TEST_F(UnusualVendorList, ThatCannotBeOpenedIsReported) {
  int const endpoint = ::socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_GE(endpoint, 0);
  // The whole path of a socket must be short.
  std::filesystem::current_path(List().parent_path());
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strcpy(address.sun_path, "usbif.json");
  int const bound = ::bind(endpoint, reinterpret_cast<sockaddr const*>(&address), sizeof address);
  ::close(endpoint);
  ASSERT_EQ(bound, 0);
  ExpectFailure(4660);
  ExpectMessage("Couldn't open vendor name file: usbif.json\n");
}

TEST_F(UnusualVendorList, ThatCannotBeReadFails) {
  std::filesystem::path const unreadable = "/proc/self/mem";  // its first page is never mapped
  if (!std::filesystem::exists(unreadable)) {
    GTEST_SKIP() << "There is no " << unreadable;
  }
  std::filesystem::create_symlink(unreadable, List());
  ExpectFailure(4660);
}

TEST_F(UnusualVendorList, BehindALinkToNothingIsReplacedByTheMisplacedOne) {
  std::filesystem::create_symlink("nothing", List());
  SaveListInCurrentDirectory(R"([{"name":"Acme","field_vid":"4660"}])");
  ExpectName(4660, "Acme");
  EXPECT_THAT(TakeCalls(), ElementsAre(Message("Moving usbif.json to new location: " + Folder())));
  EXPECT_FALSE(std::filesystem::is_symlink(List()));
}

TEST_F(UnusualVendorList, BehindALinkToItselfFails) {
  std::filesystem::create_symlink("usbif.json", List());
  ExpectFailure(4660);
  ExpectMessage(" vendor name file: usbif.json\n");
}

/// Takes the rights of the system's administrator away while it is alive.
class OrdinaryUser {
 public:
  OrdinaryUser() {
    if (user_ == 0) {
      EXPECT_EQ(::seteuid(65534), 0);
    }
  }
  OrdinaryUser(OrdinaryUser const&) = delete;
  OrdinaryUser& operator=(OrdinaryUser const&) = delete;
  ~OrdinaryUser() {
    if (user_ == 0) {
      EXPECT_EQ(::seteuid(user_), 0);
    }
  }

 private:
  uid_t user_ = ::geteuid();
};

TEST_F(UnusualVendorList, ThatMayNotBeReadIsReported) {
  SaveList(R"([{"name":"Acme","field_vid":"4660"}])");
  std::filesystem::permissions(List(), std::filesystem::perms::none);
  {
    OrdinaryUser const user;
    ExpectFailure(4660);
  }
  ExpectMessage("Couldn't open vendor name file: usbif.json\n");
}

TEST_F(UnusualVendorList, ThatMayNotBeMovedStaysWhereItIs) {
  std::string const text = R"([{"name":"Acme","field_vid":"4660"}])";
  SaveListInCurrentDirectory(text);
  std::filesystem::path const folder = List().parent_path();
  std::filesystem::permissions(
      folder, std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec |
                  std::filesystem::perms::others_read | std::filesystem::perms::others_exec);
  std::error_code error;
  {
    OrdinaryUser const user;
    try {
      testing_support::Look(4660);
    } catch (std::filesystem::filesystem_error const& raised) {
      error = raised.code();
    }
  }
  std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
  EXPECT_EQ(error, std::errc::permission_denied);
  EXPECT_THAT(TakeCalls(), ElementsAre(Message("Moving usbif.json to new location: " + Folder())));
  EXPECT_EQ(standalone::ReadFileBytes(ListInCurrentDirectory()), text);
  EXPECT_FALSE(std::filesystem::exists(List()));
}

// With a folder on another volume than the system's temporary folder, where the host has one.
class MoveFileToAnotherVolume : public testing::Test {
 protected:
  void SetUp() override {
    std::error_code error;
    std::filesystem::create_directory(there_, error);
    if (!error) {
      std::filesystem::rename(here_.Write("probe", ""), there_ / "probe", error);
    }
    if (error != std::errc::cross_device_link) {
      GTEST_SKIP() << "There is no second volume.";
    }
  }

  void TearDown() override {
    std::error_code ignored;
    std::filesystem::remove_all(there_, ignored);
  }

  static void ExpectFailedMove(std::filesystem::path const& from, std::filesystem::path const& to) {
    try {
      platform::MoveFileReplacing(from, to);
      ADD_FAILURE() << "The move raised nothing.";
    } catch (std::filesystem::filesystem_error const& raised) {
      EXPECT_EQ(raised.path1(), from);
      EXPECT_EQ(raised.path2(), to);
      EXPECT_TRUE(raised.code());
      EXPECT_THAT(raised.what(), HasSubstr("rename"));
    }
  }

  standalone::TempFolder here_;
  std::filesystem::path there_ = std::filesystem::path("/dev/shm") / here_.Path().filename();
};

TEST_F(MoveFileToAnotherVolume, MovesAFile) {
  std::filesystem::path const from = here_.Write("from", "new");
  std::filesystem::path const to = there_ / "to";
  platform::MoveFileReplacing(from, to);
  EXPECT_FALSE(std::filesystem::exists(from));
  EXPECT_EQ(standalone::ReadFileBytes(to), "new");
}

TEST_F(MoveFileToAnotherVolume, ReplacesAFile) {
  std::filesystem::path const from = here_.Write("from", "new");
  std::filesystem::path const to = there_ / "to";
  platform::MoveFileReplacing(here_.Write("before", "the old content is longer"), to);
  platform::MoveFileReplacing(from, to);
  EXPECT_FALSE(std::filesystem::exists(from));
  EXPECT_EQ(standalone::ReadFileBytes(to), "new");
}

TEST_F(MoveFileToAnotherVolume, RaisesForAMissingFolder) {
  std::filesystem::path const from = here_.Write("from", "new");
  ExpectFailedMove(from, there_ / "missing" / "to");
  EXPECT_EQ(standalone::ReadFileBytes(from), "new");
}

TEST_F(MoveFileToAnotherVolume, RaisesWhenTheTargetIsAFolder) {
  std::filesystem::path const from = here_.Write("from", "new");
  std::filesystem::create_directory(there_ / "to");
  ExpectFailedMove(from, there_ / "to");
  EXPECT_EQ(standalone::ReadFileBytes(from), "new");
}

TEST_F(MoveFileToAnotherVolume, RaisesForAFolder) {
  std::filesystem::path const from = here_.Path() / "from";
  std::filesystem::create_directory(from);
  ExpectFailedMove(from, there_ / "to");
  EXPECT_TRUE(std::filesystem::is_directory(from));
  EXPECT_FALSE(std::filesystem::exists(there_ / "to"));
}

/// Lets no file of this process grow beyond `bytes` while it is alive.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &before_), 0);
    rlimit limited = before_;
    limited.rlim_cur = bytes;
    EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limited), 0);
  }
  FileSizeLimit(FileSizeLimit const&) = delete;
  FileSizeLimit& operator=(FileSizeLimit const&) = delete;
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }

 private:
  void (*handler_)(int);
  rlimit before_{};
};

TEST_F(MoveFileToAnotherVolume, LeavesTheFileAndNoPartOfItWhenTheVolumeIsFull) {
  std::string const content(1'000'000, 'x');
  std::filesystem::path const from = here_.Write("from", content);
  {
    FileSizeLimit const limit(100'000);
    ExpectFailedMove(from, there_ / "to");
  }
  EXPECT_EQ(standalone::ReadFileBytes(from), content);
  std::filesystem::remove(there_ / "probe");
  EXPECT_TRUE(std::filesystem::is_empty(there_));
}

}  // namespace
}  // namespace usb_support

#endif

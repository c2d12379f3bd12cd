// Features of this kind of system: unusual vendor lists, and moves between volumes.
#if !defined(_WIN32)

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

#include <tests/support/vendor_list_test.h>
#include <usb_support/platform/another_volume_test.h>
#include <usb_support/platform/files.h>

namespace usb_support {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing_support::ExpectFailedMove;

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
  std::filesystem::path const unreadable = "/sys/class/net/lo/speed";  // a loopback has none
  std::ifstream file(unreadable);
  if (!file.is_open() || (file.get(), !file.bad())) {
    GTEST_SKIP() << "There is no " << unreadable << " that fails to be read";
  }
  std::filesystem::create_symlink(unreadable, List());
  ExpectFailure(4660);
  ExpectMessage("Couldn't open vendor name file: usbif.json\n");
}

TEST_F(UnusualVendorList, ALinkToNothingIsReplaced) {
  std::filesystem::create_symlink("nothing", List());
  SaveListInCurrentDirectory(R"([{"name":"Acme","field_vid":"4660"}])");
  ExpectName(4660, "Acme");
  EXPECT_THAT(TakeCalls(), ElementsAre(Message("Moving usbif.json to new location: " + Folder())));
  EXPECT_FALSE(std::filesystem::is_symlink(List()));
}

// The link itself is moved, to a folder that does not have its target.
TEST_F(UnusualVendorList, ALinkThatLeadsNowhereFromItsNewPlaceIsNotFound) {
  std::filesystem::path const link = ListInCurrentDirectory();
  std::ofstream(link.parent_path() / "list") << R"([{"name":"Acme","field_vid":"4660"}])";
  std::filesystem::create_symlink("list", link);
  ExpectFailure(4660);
  std::vector<standalone::RecordedCall> const calls = TakeCalls();
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(calls[0].text, "Moving usbif.json to new location: " + Folder());
  EXPECT_THAT(calls[1].text, HasSubstr("Couldn't find vendor name file: usbif.json\n"));
}

TEST_F(UnusualVendorList, ALinkToItselfFails) {
  std::filesystem::create_symlink("usbif.json", List());
  ExpectFailure(4660);
  ExpectMessage(" vendor name file: usbif.json\n");
}

/// Drops the rights of the system's administrator while it exists.
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

TEST_F(UnusualVendorList, ThatMayNotBeMovedStays) {
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

using MoveFileToAnotherVolume = testing_support::AnotherVolumeTest;

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

TEST_F(MoveFileToAnotherVolume, FullVolumeLeavesBothFiles) {
  std::string const content(1'000'000, 'x');
  std::filesystem::path const from = here_.Write("from", content);
  SaveThere("to", "old");
  {
    FileSizeLimit const limit(100'000);
    ExpectFailedMove(from, there_ / "to");
  }
  EXPECT_EQ(standalone::ReadFileBytes(from), content);
  EXPECT_EQ(standalone::ReadFileBytes(there_ / "to"), "old");
  EXPECT_THAT(NamesThere(), ElementsAre("to"));
}

TEST_F(MoveFileToAnotherVolume, StoppedInTheMiddleLeavesBothFiles) {
  std::string const content(1'000'000, 'x');
  std::filesystem::path const from = here_.Write("from", content);
  SaveThere("to", "old");
  pid_t const child = ::fork();
  if (child == 0) {
    // The system kills it at the first byte beyond the limit.
    rlimit const limit{100'000, 100'000};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    platform::MoveFileReplacing(from, there_ / "to");
    ::_exit(0);
  }
  ASSERT_GT(child, 0);
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status)) << status;
  EXPECT_EQ(WTERMSIG(status), SIGXFSZ);
  EXPECT_EQ(standalone::ReadFileBytes(from), content);
  EXPECT_EQ(standalone::ReadFileBytes(there_ / "to"), "old");
  platform::MoveFileReplacing(from, there_ / "to");
  EXPECT_EQ(standalone::ReadFileBytes(there_ / "to"), content);
}

TEST_F(MoveFileToAnotherVolume, FollowsNoLinkThatSomeonePlanted) {
  std::filesystem::path const victim = here_.Write("victim", "precious");
  std::filesystem::path const from = here_.Write("from", "new");
  std::filesystem::create_symlink(victim, there_ / "to.part");
  std::filesystem::create_symlink(victim, there_ / "to");
  platform::MoveFileReplacing(from, there_ / "to");
  EXPECT_EQ(standalone::ReadFileBytes(victim), "precious");
  EXPECT_TRUE(std::filesystem::is_symlink(there_ / "to.part"));
  EXPECT_FALSE(std::filesystem::is_symlink(there_ / "to"));
  EXPECT_EQ(standalone::ReadFileBytes(there_ / "to"), "new");
}

TEST_F(MoveFileToAnotherVolume, LeavesASourceThatCannotBeRemoved) {
  std::filesystem::path const from = here_.Write("from", "new");
  std::filesystem::permissions(there_, std::filesystem::perms::all);
  using Perms = std::filesystem::perms;
  std::filesystem::permissions(here_.Path(), Perms::owner_read | Perms::owner_exec |
                                                 Perms::group_read | Perms::group_exec |
                                                 Perms::others_read | Perms::others_exec);
  {
    OrdinaryUser const user;
    EXPECT_NO_THROW(platform::MoveFileReplacing(from, there_ / "to"));
  }
  std::filesystem::permissions(here_.Path(), Perms::owner_all);
  EXPECT_EQ(standalone::ReadFileBytes(from), "new");
  EXPECT_EQ(standalone::ReadFileBytes(there_ / "to"), "new");
  EXPECT_THAT(NamesThere(), ElementsAre("to"));
}

TEST_F(MoveFileToAnotherVolume, KeepsThePermissions) {
  using Perms = std::filesystem::perms;
  std::filesystem::path const from = here_.Write("from", "new");
  Perms const perms = Perms::owner_read | Perms::owner_write | Perms::group_read;
  std::filesystem::permissions(from, perms);
  platform::MoveFileReplacing(from, there_ / "to");
  EXPECT_EQ(std::filesystem::status(there_ / "to").permissions(), perms);
}

// The exception is examined without the limit, because the sanitizers open files of their own for
// that.
TEST_F(MoveFileToAnotherVolume, FailsWhenNoFileCanBeOpened) {
  std::filesystem::path const from = here_.Write("from", "new");
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  rlimit const none{0, before.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
  std::exception_ptr thrown;
  try {
    platform::MoveFileReplacing(from, there_ / "to");
  } catch (...) {
    thrown = std::current_exception();
  }
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
  ASSERT_TRUE(thrown);
  EXPECT_THROW(std::rethrow_exception(thrown), std::filesystem::filesystem_error);
  EXPECT_EQ(standalone::ReadFileBytes(from), "new");
  EXPECT_THAT(NamesThere(), testing::IsEmpty());
}

TEST_F(MoveFileToAnotherVolume, ClosesItsFilesWhateverTheirNumbers) {
  std::filesystem::path const from = here_.Write("from", "new");
  int const input = ::dup(STDIN_FILENO);
  ::close(STDIN_FILENO);  // its number, 0, is now free for the next file
  EXPECT_NO_THROW(platform::MoveFileReplacing(from, there_ / "to"));
  EXPECT_EQ(::fcntl(STDIN_FILENO, F_GETFD), -1);
  if (input != -1) {
    ::dup2(input, STDIN_FILENO);
    ::close(input);
  }
  EXPECT_EQ(standalone::ReadFileBytes(there_ / "to"), "new");
}

// A pipe would wait for a writer for ever.
TEST_F(MoveFileToAnotherVolume, RefusesAPipe) {
  std::filesystem::path const from = here_.Path() / "from";
  ASSERT_EQ(::mkfifo(from.c_str(), 0600), 0);
  ExpectFailedMove(from, there_ / "to");
  EXPECT_TRUE(std::filesystem::is_fifo(from));
  EXPECT_THAT(NamesThere(), testing::IsEmpty());
}

}  // namespace
}  // namespace usb_support

#endif

// Files in the place of the list that are not a list to read, and the memory that a list takes.
#if !defined(_WIN32)

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include <tests/support/allocation_counter.h>
#include <tests/support/vendor_list_test.h>

namespace usb_support {
namespace {

using testing::HasSubstr;

class VendorNameOnPosix : public testing_support::VendorListTest {
 protected:
  /// Expects a failure, and the message that the list cannot be opened.
  void ExpectNotOpened() {
    ExpectFailure(4660);
    std::vector<standalone::RecordedCall> const calls = TakeCalls();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_THAT(calls[0].text, HasSubstr("Couldn't open vendor name file: usbif.json\n"));
  }
};

// Nobody writes to the pipe, so opening it would never return.
TEST_F(VendorNameOnPosix, IsReadFromARegularFileOnly) {
  ASSERT_EQ(::mkfifo(List().c_str(), 0600), 0);
  ExpectNotOpened();
  std::filesystem::remove(List());
  std::filesystem::create_symlink("/dev/zero", List());
  ExpectNotOpened();
  std::filesystem::remove(List());
  SaveList("[]");
  std::filesystem::resize_file(List(), (128 << 20) + 1);
  ExpectNotOpened();
}

// Between two checks of the place, another thread may put a list there. Its path is long, so that
// there is time.
TEST_F(VendorNameOnPosix, IsNeverMovedToWhereItIs) {
  std::filesystem::path const list = ListInCurrentDirectory().parent_path() / "list";
  std::string way;
  while (way.size() < 2'000) {
    way += "./";
  }
  std::filesystem::create_symlink(way + "list", ListInCurrentDirectory());
  standalone::SetVendorListFolder("");
  std::atomic<bool> isOver = false;
  std::jthread const other([&] {
    while (!isOver) {
      std::ofstream(list) << "[]";
      std::filesystem::remove(list);
    }
  });
  for (int turn = 0; turn < 1000; ++turn) {
    ExpectFailure(4660);
  }
  isOver = true;
  for (standalone::RecordedCall const& call : TakeCalls()) {
    ASSERT_THAT(call.text, testing::Not(HasSubstr("Moving")));
  }
}

#if !defined(USB_SUPPORT_TEST_ADDRESS_SANITIZER)

/// The bytes of this process's address space; 0 when the system does not say.
std::size_t AddressSpace() {
  std::size_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  return pages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

// In a separate process, which ends when it requests more memory.
TEST_F(VendorNameOnPosix, TakesTheMemoryOfTwoLists) {
  if (AddressSpace() == 0) {
    GTEST_SKIP() << "The system does not say how much memory a process has.";
  }
  std::string list = "[";
  while (list.size() < 1'000'000) {
    list += "0,";
  }
  list += R"({"name":"Acme","field_vid":"4660"}])";
  SaveList(list);
  pid_t const child = ::fork();
  if (child == 0) {
    standalone::RemoveAllLogSinks();
    std::size_t const most = AddressSpace() + 2 * list.size() + 1'000'000;
    rlimit const limit{most, most};
    ::setrlimit(RLIMIT_AS, &limit);
    try {
      char name[16];
      ::_exit(GetVendorName(4660, name, sizeof name) == RC_SUCCESS ? 0 : 1);
    } catch (std::bad_alloc const&) {
      ::_exit(2);
    }
  }
  ASSERT_GT(child, 0);
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status)) << status;
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

#endif

}  // namespace
}  // namespace usb_support

#endif

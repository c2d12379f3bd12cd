// A vendor list whose size the system does not know beforehand.
#if !defined(_WIN32)

#include <sys/stat.h>

#include <fstream>
#include <string>
#include <thread>

#include <gmock/gmock.h>

#include <tests/support/vendor_list_test.h>

namespace usb_support {
namespace {

using VendorNameOnPosix = testing_support::VendorListTest;

// A list of more than `size` bytes with vendor 4660, "Acme", at its end.
std::string ListOf(std::size_t size) {
  std::string list = "[";
  while (list.size() < size) {
    list += R"({"name":"Someone else","field_vid":"1"},)";
  }
  return list + R"({"name":"Acme","field_vid":"4660"}])";
}

TEST_F(VendorNameOnPosix, IsReadFromAPipe) {
  ASSERT_EQ(::mkfifo(List().c_str(), 0600), 0);
  for (std::size_t const size : {std::size_t{0}, std::size_t{65'000}, std::size_t{300'000}}) {
    SCOPED_TRACE(size);
    std::thread writer([&] { std::ofstream(List(), std::ios::binary) << ListOf(size); });
    ExpectName(4660, "Acme");
    writer.join();
  }
  EXPECT_THAT(TakeCalls(), testing::IsEmpty());
}

}  // namespace
}  // namespace usb_support

#endif

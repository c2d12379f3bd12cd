// A vendor list that another program holds open.
#if defined(_WIN32)

#include <vector>

#include <tests/support/vendor_list_test.h>
#include <usb_support/platform/overlapped.h>

namespace usb_support {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// An open file that others may use only as `sharing` says.
class OpenFile {
 public:
  OpenFile(std::filesystem::path const& file, DWORD access, DWORD sharing)
      : handle_(::CreateFileW(file.c_str(), access, sharing, nullptr, OPEN_EXISTING, 0, nullptr)) {}
  OpenFile(OpenFile const&) = delete;
  OpenFile& operator=(OpenFile const&) = delete;
  ~OpenFile() { ::CloseHandle(handle_); }

  bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }

 private:
  HANDLE handle_;
};

class VendorListInUse : public testing_support::VendorListTest {
 protected:
  static constexpr char const* kAcme = R"([{"name":"Acme","field_vid":"4660"}])";
};

TEST_F(VendorListInUse, ThatMayNotBeSharedIsReported) {
  SaveList(kAcme);
  OpenFile const other(List(), GENERIC_READ, 0);
  ASSERT_TRUE(other.IsOpen());
  ExpectFailure(4660);
  std::vector<standalone::RecordedCall> const calls = TakeCalls();
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_THAT(calls[0].text, HasSubstr("Couldn't open vendor name file: usbif.json\n"));
}

TEST_F(VendorListInUse, ByAReaderIsRead) {
  SaveList(kAcme);
  OpenFile const other(List(), GENERIC_READ, FILE_SHARE_READ);
  ASSERT_TRUE(other.IsOpen());
  ExpectName(4660, "Acme");
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(VendorListInUse, ByAWriterThatSharesIsRead) {
  SaveList(kAcme);
  OpenFile const other(List(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
  ASSERT_TRUE(other.IsOpen());
  ExpectName(4660, "Acme");
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(VendorListInUse, IsNotMoved) {
  SaveListInCurrentDirectory(kAcme);
  {
    OpenFile const other(ListInCurrentDirectory(), GENERIC_READ, 0);
    ASSERT_TRUE(other.IsOpen());
    EXPECT_THROW(testing_support::Look(4660), std::filesystem::filesystem_error);
    EXPECT_THAT(TakeCalls(),
                ElementsAre(Message("Moving usbif.json to new location: " + Folder())));
  }
  EXPECT_EQ(standalone::ReadFileBytes(ListInCurrentDirectory()), kAcme);
  EXPECT_FALSE(std::filesystem::exists(List()));
}

}  // namespace
}  // namespace usb_support

#endif

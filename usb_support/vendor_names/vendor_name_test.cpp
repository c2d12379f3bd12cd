// Finding the list, moving it, reading it, and copying the name out.
#include <array>
#include <atomic>
#include <climits>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <thread>
#include <type_traits>
#include <vector>

#include <tests/support/vendor_list_test.h>
#include <usb_support/vendor_names/vendor_name.h>

namespace usb_support {
namespace {

using standalone::RecordedCall;
using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::kUntouched;
using testing_support::Look;
using testing_support::Lookup;
using testing_support::Utf8;

static_assert(std::is_same_v<decltype(&GetVendorName), RETURN_CODE (*)(int, char*, int)>);

constexpr char const* kAcme = R"([{"name":"Acme","field_vid":"4660"}])";
constexpr char const* kOther = R"([{"name":"Other","field_vid":"4660"}])";

class VendorName : public testing_support::VendorListTest {
 protected:
  /// The message for a list that is not there or cannot be opened.
  static RecordedCall HowToGetTheList(std::string const& verb, std::string const& folder) {
    return Message("Couldn't " + verb +
                   " vendor name file: usbif.json\n"
                   "Open the link https://www.usb.org/jsonlist in a browser. Once the page has "
                   "fully loaded, copy full content of the page into the text file usbif.json, and "
                   "place it in the directory \"" +
                   folder + "\"");
  }

  static RecordedCall Moving(std::string const& folder) {
    return Message("Moving usbif.json to new location: " + folder);
  }

  /// Expects the file-system error of a failed move; the log gets the line that announces it.
  void ExpectFailedMove(std::filesystem::path const& target) {
    std::string buffer(16, kUntouched);
    try {
      GetVendorName(4660, buffer.data(), 16);
      ADD_FAILURE() << "The move threw nothing.";
    } catch (std::filesystem::filesystem_error const& thrown) {
      EXPECT_EQ(thrown.path1(), std::filesystem::path("usbif.json"));
      EXPECT_EQ(thrown.path2(), target);
      EXPECT_TRUE(thrown.code());
      EXPECT_THAT(thrown.what(), testing::HasSubstr("rename"));
    }
    EXPECT_EQ(buffer, std::string(16, kUntouched));
  }
};

TEST_F(VendorName, IsCutToTheBuffer) {
  SaveList(R"([{"name":"ABCDEFGHIJKLMNOPQRST","field_vid":"4660"}])");
  struct Case {
    int size;
    std::string buffer;
  };
  for (auto const& [size, buffer] : {
           Case{1, std::string(1, '\0')},
           Case{2, std::string("A\0", 2)},
           Case{8, std::string("ABCDEFG\0", 8)},
           Case{20, std::string("ABCDEFGHIJKLMNOPQRS\0", 20)},
           Case{21, std::string("ABCDEFGHIJKLMNOPQRST\0", 21)},
           Case{22, std::string("ABCDEFGHIJKLMNOPQRST\0\0", 22)},
       }) {
    Lookup const lookup = Look(4660, size);
    EXPECT_EQ(lookup.code, 0u) << size;
    EXPECT_EQ(lookup.buffer, buffer) << size;
  }
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(VendorName, KeepsTheBytesOfTheList) {
  SaveList("[{\"name\":\"\xC3\x9C\xE6\x97\xA5\\u00e9 \xFF\x80 100%s%n\",\"field_vid\":\"4660\"}]");
  ExpectName(4660, "\xC3\x9C\xE6\x97\xA5\xC3\xA9 \xFF\x80 100%s%n");
  EXPECT_EQ(Look(4660, 2).buffer, std::string("\xC3\0", 2));
}

TEST_F(VendorName, OfTheFirstElementWithTheIdCounts) {
  SaveList(R"([{"name":"Before","field_vid":"4659"},
               {"name":"First","field_vid":"4660"},
               {"name":"Second","field_vid":"4660"},
               {"name":"","field_vid":"4660"}, 17, {}])");
  ExpectName(4660, "First");
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(VendorName, IsComparedWithTheWholeId) {
  SaveList(R"([{"name":"Highest","field_vid":"65535"},{"name":"Lowest","field_vid":"0"},
               {"name":"Acme","field_vid":"4660"},{"name":"Low bits","field_vid":"4464"}])");
  for (int const vid : {-1, 70000, 65536, 65536 + 4660, 4660 - 65536, -4660, INT_MIN, INT_MAX}) {
    SCOPED_TRACE(vid);
    ExpectFailure(vid);
  }
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(VendorName, ReportsHowToGetAMissingList) {
  // A name that Windows cannot create, and one that is too long for any system.
  for (std::string const& folder :
       {std::string(), Folder(), Folder() + "/missing", Folder() + "/100%s %n \"quoted\"",
        std::string(5'000, 'f'), std::string("\xFF\xFE\x80")}) {
    standalone::SetVendorListFolder(folder);
    ExpectFailure(4660);
    EXPECT_THAT(TakeCalls(), ElementsAre(HowToGetTheList("find", folder)));
  }
  std::filesystem::create_directory(List());
  standalone::SetVendorListFolder(Folder());
  ExpectFailure(4660);
  EXPECT_THAT(TakeCalls(), ElementsAre(HowToGetTheList("open", Folder())));
}

TEST_F(VendorName, MovesAListToAFolderWithAnyName) {
  std::filesystem::path const folder =
      std::filesystem::path(List()).replace_filename(u8"l\u00EDsta \u65E5\u672C");
  std::filesystem::create_directory(folder);
  standalone::SetVendorListFolder(Utf8(folder));
  SaveListInCurrentDirectory(kAcme);
  for (auto const& calls : {std::vector{Moving(Utf8(folder))}, std::vector<RecordedCall>{}}) {
    ExpectName(4660, "Acme");
    EXPECT_EQ(TakeCalls(), calls);
    EXPECT_FALSE(std::filesystem::exists(ListInCurrentDirectory()));
    EXPECT_EQ(standalone::ReadFileBytes(folder / "usbif.json"), kAcme);
  }
}

TEST_F(VendorName, ThrowsWhenTheFolderIsMissing) {
  SaveList(kOther);
  SaveListInCurrentDirectory(kAcme);
  for (std::string const& folder : {Folder() + "/missing", Utf8(List())}) {
    standalone::SetVendorListFolder(folder);
    ExpectFailedMove(std::filesystem::path(folder) / "usbif.json");
    EXPECT_THAT(TakeCalls(), ElementsAre(Moving(folder)));
    EXPECT_EQ(standalone::ReadFileBytes(ListInCurrentDirectory()), kAcme);
  }
  EXPECT_EQ(standalone::ReadFileBytes(List()), kOther);
}

TEST_F(VendorName, ComesFromTheFileAsItIsNow) {
  SaveList(kAcme);
  ExpectName(4660, "Acme");
  SaveList(kOther);
  ExpectName(4660, "Other");
  SaveList("[]");
  ExpectFailure(4660);
  EXPECT_THAT(TakeCalls(), IsEmpty());
  std::filesystem::remove(List());
  ExpectFailure(4660);
  EXPECT_THAT(TakeCalls(), ElementsAre(HowToGetTheList("find", Folder())));
  SaveList(kAcme);
  ExpectName(4660, "Acme");
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(VendorName, MovesAListBeforeItReadsIt) {
  SaveListInCurrentDirectory("{}");
  ExpectFailure(4660);
  EXPECT_THAT(TakeCalls(),
              ElementsAre(Moving(Folder()),
                          Message("Unexpected format: usbif.json should be a JSON array.")));
  EXPECT_FALSE(std::filesystem::exists(ListInCurrentDirectory()));
  EXPECT_EQ(standalone::ReadFileBytes(List()), "{}");
}

TEST_F(VendorName, LeavesAMisplacedList) {
  SaveList(kAcme);
  SaveListInCurrentDirectory(kOther);
  ExpectName(4660, "Acme");
  EXPECT_THAT(TakeCalls(), IsEmpty());
  EXPECT_EQ(standalone::ReadFileBytes(ListInCurrentDirectory()), kOther);
  EXPECT_EQ(standalone::ReadFileBytes(List()), kAcme);
}

TEST_F(VendorName, IsReadInTheCurrentDirectory) {
  standalone::SetVendorListFolder("");
  SaveListInCurrentDirectory(kAcme);
  ExpectName(4660, "Acme");
  EXPECT_THAT(TakeCalls(), IsEmpty());
  EXPECT_EQ(standalone::ReadFileBytes(ListInCurrentDirectory()), kAcme);
}

TEST_F(VendorName, MovesAFolderOfTheListsName) {
  std::filesystem::create_directory(ListInCurrentDirectory());
  ExpectFailure(4660);
  EXPECT_THAT(TakeCalls(), ElementsAre(Moving(Folder()), HowToGetTheList("open", Folder())));
  EXPECT_TRUE(std::filesystem::is_directory(List()));
  EXPECT_FALSE(std::filesystem::exists(ListInCurrentDirectory()));
}

TEST_F(VendorName, IsFoundByManyThreadsAtATime) {
  SaveList(R"([{"name":"A","field_vid":"0"},{"name":"BB","field_vid":"1"},
               {"name":"CCC","field_vid":"2"},{"name":"DDDD","field_vid":"3"}])");
  constexpr int kThreads = 4;
  std::array<std::string, kThreads> const names = {"A", "BB", "CCC", "DDDD"};
  std::atomic<int> found = 0;
  std::vector<std::jthread> threads;
  threads.reserve(kThreads);
  for (int vid = 0; vid < kThreads; ++vid) {
    threads.emplace_back([&, vid] {
      for (int turn = 0; turn < 50; ++turn) {
        Lookup const lookup = Look(vid, 5);
        std::string expected = names[static_cast<std::size_t>(vid)];
        expected.resize(5, '\0');
        if (lookup.code == RC_SUCCESS && lookup.buffer == expected) {
          ++found;
        }
      }
    });
  }
  threads.clear();
  EXPECT_EQ(found, kThreads * 50);
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

}  // namespace
}  // namespace usb_support

#include <usb_support/platform/files.h>

#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include <standalone_suite/test_support/temp_folder.h>
#include <usb_support/platform/another_volume_test.h>

namespace usb_support::platform {
namespace {

using standalone::ReadFileBytes;
using standalone::TempFolder;
using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::ExpectFailedMove;

TEST(MoveFileReplacing, MovesAndReplacesAFile) {
  TempFolder const folder;
  std::filesystem::path const to = folder.Path() / "to";
  for (char const* const content : {"the first is longer", "new", ""}) {
    std::filesystem::path const from = folder.Write("from", content);
    MoveFileReplacing(from, to);
    EXPECT_FALSE(std::filesystem::exists(from));
    EXPECT_EQ(ReadFileBytes(to), content);
  }
}

TEST(MoveFileReplacing, MovesAFileWithAnyName) {
  TempFolder const folder;
  std::filesystem::path const from = folder.Write(u8"\u00FCber \u65E5\u672C", "new");
  std::filesystem::path const to = folder.Path() / u8"l\u00EDsta \u0416";
  MoveFileReplacing(from, to);
  EXPECT_FALSE(std::filesystem::exists(from));
  EXPECT_EQ(ReadFileBytes(to), "new");
}

TEST(MoveFileReplacing, ThrowsForAMissingFile) {
  TempFolder const folder;
  std::filesystem::path const to = folder.Write("to", "old");
  ExpectFailedMove(folder.Path() / "missing", to);
  EXPECT_EQ(ReadFileBytes(to), "old");
}

TEST(MoveFileReplacing, ThrowsForAMissingFolder) {
  TempFolder const folder;
  std::filesystem::path const from = folder.Write("from", "new");
  ExpectFailedMove(from, folder.Path() / "missing" / "to");
  EXPECT_EQ(ReadFileBytes(from), "new");
  EXPECT_FALSE(std::filesystem::exists(folder.Path() / "missing"));
}

TEST(MoveFileReplacing, ThrowsWhenTheTargetIsAFolder) {
  TempFolder const folder;
  std::filesystem::path const from = folder.Write("from", "new");
  std::filesystem::path const to = folder.Path() / "to";
  std::filesystem::create_directory(to);
  ExpectFailedMove(from, to);
  EXPECT_EQ(ReadFileBytes(from), "new");
  EXPECT_TRUE(std::filesystem::is_directory(to));
}

using MoveFileToAnotherVolume = testing_support::AnotherVolumeTest;

TEST_F(MoveFileToAnotherVolume, MovesAFile) {
  // Of one block, of several, of one byte more than a block, and empty.
  for (std::size_t const size : {3u, 65'536u, 65'537u, 200'000u, 0u}) {
    std::string const content(size, 'n');
    std::filesystem::path const from = here_.Write("from", content);
    MoveFileReplacing(from, there_ / "to");
    EXPECT_FALSE(std::filesystem::exists(from));
    EXPECT_EQ(ReadFileBytes(there_ / "to"), content);
    EXPECT_THAT(NamesThere(), ElementsAre("to"));
  }
}

TEST_F(MoveFileToAnotherVolume, LeavesOtherFilesAlone) {
  std::filesystem::path const from = here_.Write("from", "new");
  SaveThere("to.part", "precious");
  MoveFileReplacing(from, there_ / "to");
  EXPECT_EQ(ReadFileBytes(there_ / "to.part"), "precious");
  EXPECT_THAT(NamesThere(), ElementsAre("to", "to.part"));
}

TEST_F(MoveFileToAnotherVolume, SeveralMovesLeaveAWholeFile) {
  constexpr std::size_t kSize = 1'000'000;
  for (int round = 0; round < 20 && !HasFailure(); ++round) {
    std::filesystem::path const sources[] = {here_.Write("a", std::string(kSize, 'a')),
                                             here_.Write("b", std::string(kSize, 'b')),
                                             here_.Write("c", std::string(kSize, 'c'))};
    std::vector<std::jthread> threads;
    threads.reserve(std::size(sources));
    for (std::filesystem::path const& source : sources) {
      threads.emplace_back(
          [&] { EXPECT_NO_THROW(MoveFileReplacing(source, there_ / "to")) << round; });
    }
    threads.clear();
    std::string const content = ReadFileBytes(there_ / "to");
    ASSERT_EQ(content.size(), kSize);
    EXPECT_EQ(content.find_first_not_of(content[0]), std::string::npos);
    EXPECT_THAT(NamesThere(), ElementsAre("to"));
  }
}

TEST_F(MoveFileToAnotherVolume, ThrowsWhenTheTargetIsNoFile) {
  std::filesystem::path const from = here_.Write("from", "new");
  ExpectFailedMove(from, there_ / "missing" / "to");
  std::filesystem::create_directory(there_ / "to");
  ExpectFailedMove(from, there_ / "to");
  EXPECT_EQ(ReadFileBytes(from), "new");
  EXPECT_THAT(NamesThere(), ElementsAre("to"));
}

TEST_F(MoveFileToAnotherVolume, ThrowsForAFolder) {
  std::filesystem::path const from = here_.Path() / "from";
  std::filesystem::create_directory(from);
  ExpectFailedMove(from, there_ / "to");
  EXPECT_TRUE(std::filesystem::is_directory(from));
  EXPECT_THAT(NamesThere(), IsEmpty());
}

}  // namespace
}  // namespace usb_support::platform

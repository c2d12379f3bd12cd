#include <usb_support/platform/files.h>

#include <filesystem>
#include <string>
#include <system_error>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <standalone_suite/test_support/temp_folder.h>

namespace usb_support::platform {
namespace {

using standalone::ReadFileBytes;
using standalone::TempFolder;

void ExpectFailedMove(std::filesystem::path const& from, std::filesystem::path const& to) {
  try {
    MoveFileReplacing(from, to);
    ADD_FAILURE() << "The move raised nothing.";
  } catch (std::filesystem::filesystem_error const& raised) {
    EXPECT_EQ(raised.path1(), from);
    EXPECT_EQ(raised.path2(), to);
    EXPECT_TRUE(raised.code());
    EXPECT_THAT(raised.what(), testing::HasSubstr("rename"));
  }
}

TEST(MoveFileReplacing, MovesAFile) {
  TempFolder const folder;
  std::filesystem::path const from = folder.Write("from", "new");
  std::filesystem::path const to = folder.Path() / "to";
  MoveFileReplacing(from, to);
  EXPECT_FALSE(std::filesystem::exists(from));
  EXPECT_EQ(ReadFileBytes(to), "new");
}

TEST(MoveFileReplacing, ReplacesAFile) {
  TempFolder const folder;
  std::filesystem::path const from = folder.Write("from", "new");
  std::filesystem::path const to = folder.Write("to", "the old content is longer");
  MoveFileReplacing(from, to);
  EXPECT_FALSE(std::filesystem::exists(from));
  EXPECT_EQ(ReadFileBytes(to), "new");
}

TEST(MoveFileReplacing, MovesAnEmptyFile) {
  TempFolder const folder;
  std::filesystem::path const from = folder.Write("from", "");
  std::filesystem::path const to = folder.Write("to", "old");
  MoveFileReplacing(from, to);
  EXPECT_FALSE(std::filesystem::exists(from));
  EXPECT_EQ(ReadFileBytes(to), "");
}

TEST(MoveFileReplacing, MovesAFileWithAnyName) {
  TempFolder const folder;
  std::filesystem::path const from = folder.Write(u8"\u00FCber \u65E5\u672C", "new");
  std::filesystem::path const to = folder.Path() / u8"l\u00EDsta \u0416";
  MoveFileReplacing(from, to);
  EXPECT_FALSE(std::filesystem::exists(from));
  EXPECT_EQ(ReadFileBytes(to), "new");
}

TEST(MoveFileReplacing, RaisesForAMissingFile) {
  TempFolder const folder;
  std::filesystem::path const to = folder.Write("to", "old");
  ExpectFailedMove(folder.Path() / "missing", to);
  EXPECT_EQ(ReadFileBytes(to), "old");
}

TEST(MoveFileReplacing, RaisesForAMissingFolder) {
  TempFolder const folder;
  std::filesystem::path const from = folder.Write("from", "new");
  ExpectFailedMove(from, folder.Path() / "missing" / "to");
  EXPECT_EQ(ReadFileBytes(from), "new");
  EXPECT_FALSE(std::filesystem::exists(folder.Path() / "missing"));
}

TEST(MoveFileReplacing, RaisesWhenTheTargetIsAFolder) {
  TempFolder const folder;
  std::filesystem::path const from = folder.Write("from", "new");
  std::filesystem::path const to = folder.Path() / "to";
  std::filesystem::create_directory(to);
  ExpectFailedMove(from, to);
  EXPECT_EQ(ReadFileBytes(from), "new");
  EXPECT_TRUE(std::filesystem::is_directory(to));
}

}  // namespace
}  // namespace usb_support::platform

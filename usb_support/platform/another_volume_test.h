// The fixture of the tests that move a file to another volume: it has a folder on another volume,
// where the host has one. Under Wine that is the host's too.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <standalone_suite/test_support/temp_folder.h>
#include <usb_support/platform/files.h>

namespace usb_support::testing_support {

/// Expects the move to fail with the error of a move that is impossible.
inline void ExpectFailedMove(std::filesystem::path const& from, std::filesystem::path const& to) {
  try {
    platform::MoveFileReplacing(from, to);
    ADD_FAILURE() << "The move threw nothing.";
  } catch (std::filesystem::filesystem_error const& thrown) {
    EXPECT_EQ(thrown.path1(), from);
    EXPECT_EQ(thrown.path2(), to);
    EXPECT_TRUE(thrown.code());
    EXPECT_THAT(thrown.what(), testing::HasSubstr("rename"));
  }
}

/// Has a folder `here_`, and a folder `there_` on another volume; both empty at first.
class AnotherVolumeTest : public testing::Test {
 protected:
  void SetUp() override {
    std::error_code error;
    std::filesystem::create_directory(there_, error);
    if (!std::filesystem::is_directory(there_) || !IsAnotherVolume()) {
      GTEST_SKIP() << "There is no second volume.";
    }
  }

  void TearDown() override {
    std::error_code ignored;
    std::filesystem::remove_all(there_, ignored);
  }

  void SaveThere(char const* name, std::string_view text) const {
    std::ofstream(there_ / name, std::ios::binary) << text;
  }

  /// The names of everything in the folder on the other volume, sorted.
  std::vector<std::string> NamesThere() const {
    std::vector<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(there_)) {
      names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
  }

  standalone::TempFolder here_;
#if defined(_WIN32)
  std::filesystem::path there_ = std::filesystem::path("Z:/dev/shm") / here_.Path().filename();
#else
  std::filesystem::path there_ = std::filesystem::path("/dev/shm") / here_.Path().filename();
#endif

 private:
  bool IsAnotherVolume() const {
#if defined(_WIN32)
    return here_.Path().root_name() != there_.root_name();
#else
    // A plain rename works within a volume only.
    std::filesystem::path const probe = here_.Write("probe", "");
    std::error_code error;
    std::filesystem::rename(probe, there_ / "probe", error);
    std::filesystem::remove(error ? probe : there_ / "probe");
    return error == std::errc::cross_device_link;
#endif
  }
};

}  // namespace usb_support::testing_support

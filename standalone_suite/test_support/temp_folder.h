// A folder for one test, with short functions to write and read the files in it.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace usb_support::standalone {

/// Makes a new empty folder under the system's temporary folder, and removes it with everything in
/// it when it is destroyed.
class TempFolder {
 public:
  TempFolder() {
    std::random_device random;
    do {
      path_ =
          std::filesystem::temp_directory_path() / ("usb_support_test_" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  TempFolder(TempFolder const&) = delete;
  TempFolder& operator=(TempFolder const&) = delete;
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  std::filesystem::path const& Path() const { return path_; }

  /// Writes a file in the folder, byte for byte, and returns its path.
  std::filesystem::path Write(std::filesystem::path const& name, std::string_view content) const {
    std::ofstream out(path_ / name, std::ios::binary);
    out.write(content.data(), static_cast<std::streamsize>(content.size()));
    out.close();
    if (!out) {
      throw std::runtime_error("A test file cannot be written.");
    }
    return path_ / name;
  }

 private:
  std::filesystem::path path_;
};

/// A path as the suite takes it.
inline std::string Utf8(std::filesystem::path const& path) {
  std::u8string const text = path.u8string();
  return {text.begin(), text.end()};
}

/// The bytes of a file.
inline std::string ReadFileBytes(std::filesystem::path const& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) {
    throw std::runtime_error("A test file cannot be read.");
  }
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace usb_support::standalone

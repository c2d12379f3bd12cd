// Runs the whole program in the test's process.
#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <standalone_suite/test_support/temp_folder.h>
#include <tests/support/exact_bytes.h>
#include <tools/usbdesc/input.h>
#include <tools/usbdesc/run.h>

namespace usb_support::usbdesc {

/// The root of the source tree.
inline std::filesystem::path SourceFolder() {
  return USB_SUPPORT_SOURCE_DIR;
}

/// A path as the command line has it.
inline std::string NameOf(std::filesystem::path const& path) {
  std::u8string const name = path.u8string();
  return std::string(name.begin(), name.end());
}

inline std::string AsText(Bytes const& bytes) {
  return std::string(bytes.begin(), bytes.end());
}

using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

inline Stream OpenStream(std::filesystem::path const& path, char const* mode) {
  Stream stream(std::fopen(path.string().c_str(), mode), std::fclose);
  if (stream == nullptr) {
    throw std::runtime_error("A test file cannot be opened.");
  }
  return stream;
}

struct Outcome {
  int status;
  std::string out;
  std::string err;
};

class UsbdescTest : public testing::Test {
 protected:
  /// A new file; its path as the command line has it.
  std::string Write(std::string_view name, std::string_view content) const {
    return NameOf(folder_.Write(name, content));
  }
  std::string Write(std::string_view name, Bytes const& content) const {
    return Write(name, AsText(content));
  }

  Outcome RunProgram(std::vector<std::string> const& arguments, std::string_view input = {}) const {
    Stream in = OpenStream(folder_.Write("stdin", input), "rb");
    Stream out = OpenStream(Path("stdout"), "wb");
    Stream err = OpenStream(Path("stderr"), "wb");
    int const status = usbdesc::Run(arguments, in.get(), out.get(), err.get());
    out.reset();
    err.reset();
    return {status, standalone::ReadFileBytes(Path("stdout")),
            standalone::ReadFileBytes(Path("stderr"))};
  }

  std::filesystem::path Path(std::string_view name) const { return folder_.Path() / name; }

 private:
  standalone::TempFolder folder_;
};

}  // namespace usb_support::usbdesc

// Runs the whole program in the test's process.
#pragma once

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <standalone_suite/test_support/temp_folder.h>
#include <tests/support/exact_bytes.h>
#include <tools/usbdesc/device.h>
#include <tools/usbdesc/run.h>
#include <usb_devices/runs.h>
#include <usb_devices/text_reader.h>

namespace usb_support::usbdesc {

using usb_devices::Bytes;

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

/// All bytes of the devices in a text, one after the other.
inline Bytes ReadText(std::string_view text) {
  Bytes bytes;
  for (usb_devices::Device const& device :
       usb_devices::DevicesOf(usb_devices::ReadText(text), "")) {
    for (usb_devices::Answer const& answer : device.Answers()) {
      bytes.insert(bytes.end(), answer.bytes.begin(), answer.bytes.end());
    }
  }
  return bytes;
}

/// An input of one run. The bytes of an answer are in a block of exactly their length, so that a
/// sanitizer sees every read outside.
inline Input InputOf(Bytes const& run, std::string name = "name") {
  Input input{std::move(name), "", usb_devices::DevicesOf(run, {})};
  input.devices.resize(std::max<std::size_t>(input.devices.size(), 1));
  return input;
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

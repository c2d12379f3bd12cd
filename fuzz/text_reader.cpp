// The bytes as a text for usbdesc: the devices read from it, that the program's output reads back
// to the same devices, and the place in a refusal.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include <fuzz/oracle.h>
#include <fuzz/targets.h>
#include <standalone_suite/test_support/temp_folder.h>
#include <tools/usbdesc/run.h>
#include <usb_devices/devices.h>
#include <usb_devices/files.h>
#include <usb_support/text/utf8.h>

namespace usb_support::fuzz {
namespace {

using usb_devices::Bytes;
using usb_devices::Device;

// The result of reading: the devices, or the reason why there are none.
struct ReadOutcome {
  std::vector<Device> devices;
  std::string error;
};

template <typename Work>
ReadOutcome OutcomeOf(Work const& work) {
  try {
    return {work(), {}};
  } catch (usb_devices::ReadError const& error) {
    Require(!error.Detail().empty(), "a refusal tells why");
    return {{}, error.Detail()};
  }
}

std::vector<Device> ReadText(std::string const& text) {
  return usb_devices::DevicesOf(usb_devices::ReadText(text), {});
}

void RequireSame(std::vector<Device> const& a, std::vector<Device> const& b, char const* what) {
  Require(
      std::equal(a.begin(), a.end(), b.begin(), b.end(),
                 [](Device const& one, Device const& other) { return one.HasSameAnswers(other); }),
      what);
}

// A line ends in "\n", "\r\n" or "\r"; a continuation byte of a character counts no column.
std::vector<std::size_t> ColumnsOfLines(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) {
    text.remove_prefix(kByteOrderMark.size());
  }
  std::vector<std::size_t> columns(1);
  for (std::size_t at = 0; at < text.size(); ++at) {
    auto const byte = static_cast<unsigned char>(text[at]);
    if (byte == '\n' || byte == '\r') {
      at += text.substr(at, 2) == "\r\n" ? 1u : 0u;
      columns.push_back(0);
    } else if (byte < 0x80 || byte > 0xBF) {
      ++columns.back();
    }
  }
  return columns;
}

void CheckPlace(std::string const& text) {
  try {
    static_cast<void>(usb_devices::ReadText(text));
  } catch (usb_devices::TextError const& error) {
    std::vector<std::size_t> const columns = ColumnsOfLines(text);
    Require(error.Line() >= 1 && error.Line() <= columns.size(), "the line is in the text");
    // No word can be between "\r" and "\n", and after the end of a line only at the end of the
    // text.
    Require(error.Column() >= 1 && error.Column() <= columns[error.Line() - 1] + 1,
            "the column is in the line");
    std::string const what = error.what();
    Require(what.starts_with("line " + std::to_string(error.Line()) + ", column " +
                             std::to_string(error.Column()) + ": found "),
            "the message begins with the place");
    for (char const c : what) {
      Require(c >= ' ' && c <= '~', "the message is one printable line");
    }
  } catch (usb_devices::ReadError const&) {
  }
}

std::string WithWindowsLineEnds(std::string const& text) {
  std::string windows(text.starts_with(kByteOrderMark) ? "" : kByteOrderMark);
  for (char const c : text) {
    windows += c == '\n' ? "\r\n" : std::string(1, c);
  }
  return windows;
}

using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

Stream Open(std::filesystem::path const& path, char const* mode) {
  Stream stream(std::fopen(path.string().c_str(), mode), std::fclose);
  Require(stream != nullptr, "a file of the target itself opens");
  return stream;
}

// The output of the whole program for an input.
std::string Written(standalone::TempFolder const& folder, std::string const& content,
                    char const* form) {
  int status = usbdesc::kExitUnusable;
  {
    Stream const in = Open(folder.Write("in", content), "rb");
    Stream const out = Open(folder.Path() / "out", "wb");
    Stream const err = Open(folder.Path() / "err", "wb");
    status = usbdesc::Run({form, "-"}, in.get(), out.get(), err.get());
  }
  RequireEqual(standalone::ReadFileBytes(folder.Path() / "err"), std::string(), "errors");
  std::string written = standalone::ReadFileBytes(folder.Path() / "out");
  // After good lengths a wTotalLength may be wrong.
  RequireEqual(status,
               written.ends_with(", lengths good\n") ? usbdesc::kExitGood : usbdesc::kExitFaulty,
               "exit status");
  return written;
}

}  // namespace

void TextReader(Input input) {
  static standalone::TempFolder const folder;
  std::string const text = TextOf(input);
  if (!usb_devices::LooksLikeText(text) ||
      usb_devices::RecogniseText(text) == usb_devices::TextForm::kJson) {
    return;
  }
  ReadOutcome const asText = OutcomeOf([&] { return ReadText(text); });
  std::string const file = usb_devices::NameOf(folder.Write("file", text));
  ReadOutcome const asFile = OutcomeOf([&] { return usb_devices::ReadInput(file).devices; });
  RequireSame(asFile.devices, asText.devices, "devices from a file");
  RequireEqual(asFile.error, asText.error, "refusal of a file");

  ReadOutcome const asWindowsText = OutcomeOf([&] { return ReadText(WithWindowsLineEnds(text)); });
  RequireSame(asWindowsText.devices, asText.devices, "devices of the text with other line ends");
  RequireEqual(asWindowsText.error.empty(), asText.error.empty(),
               "refusal of the text with other line ends");
  if (!asText.error.empty()) {
    CheckPlace(text);
    return;
  }
  for (char const* const form : {"--verbosity=3", "--code"}) {
    std::string const written = Written(folder, text, form);
    Require(usb_devices::LooksLikeText(written), "what was written looks like text");
    RequireSame(ReadText(written), asText.devices, "devices read back");
  }
}

}  // namespace usb_support::fuzz

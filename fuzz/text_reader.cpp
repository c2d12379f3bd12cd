// The bytes as an input of usbdesc: what is read from it, that what the program writes about that
// reads back to the same bytes, and where a refusal says the fault lies.
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include <fuzz/oracle.h>
#include <fuzz/targets.h>
#include <standalone_suite/test_support/temp_folder.h>
#include <tools/usbdesc/input.h>
#include <tools/usbdesc/run.h>
#include <tools/usbdesc/text_reader.h>

namespace usb_support::fuzz {
namespace {

using usbdesc::Bytes;
using usbdesc::InputKind;

// What came of reading: the run, or why there is none.
struct Outcome {
  Bytes run;
  std::string error;
};

template <typename Work>
Outcome OutcomeOf(Work const& work) {
  try {
    return {work(), {}};
  } catch (usbdesc::InputError const& error) {
    Require(*error.what() != '\0', "a refusal says why");
    return {{}, error.what()};
  }
}

// A line ends in "\n", "\r\n" or "\r"; a byte that goes on with a character counts no column.
std::vector<std::size_t> ColumnsOfLines(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) {
    text.remove_prefix(3);
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
    static_cast<void>(usbdesc::ReadText(text));
  } catch (usbdesc::TextError const& error) {
    std::vector<std::size_t> const columns = ColumnsOfLines(text);
    Require(error.Line() >= 1 && error.Line() <= columns.size(), "the line lies in the text");
    // Between "\r" and "\n" no word can be, and after a line's end only the text's.
    Require(error.Column() >= 1 && error.Column() <= columns[error.Line() - 1] + 1,
            "the column lies in the line");
    std::string const what = error.what();
    Require(what.starts_with("line " + std::to_string(error.Line()) + ", column " +
                             std::to_string(error.Column()) + ": found "),
            "the message begins with the place");
    for (char const c : what) {
      Require(c >= ' ' && c <= '~', "the message is one printable line");
    }
  } catch (usbdesc::InputError const&) {
  }
}

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

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

// What the whole program writes for a raw input.
std::string Written(standalone::TempFolder const& folder, Bytes const& run, char const* form) {
  std::string const raw(run.begin(), run.end());
  int status = usbdesc::kExitUnusable;
  {
    Stream const in = Open(folder.Write("in", raw), "rb");
    Stream const out = Open(folder.Path() / "out", "wb");
    Stream const err = Open(folder.Path() / "err", "wb");
    status = usbdesc::Run({"--input", "raw", form, "-"}, in.get(), out.get(), err.get());
  }
  RequireEqual(standalone::ReadFileBytes(folder.Path() / "err"), std::string(), "errors");
  std::string written = standalone::ReadFileBytes(folder.Path() / "out");
  bool const isChain = !run.empty() && model::ChainOf(run).end == model::End::kComplete;
  RequireEqual(written.find(" bytes, lengths good") != std::string::npos ||
                   written.find(" byte, lengths good") != std::string::npos,
               isChain, "verdict on the lengths");
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
  Outcome const asText = OutcomeOf([&] { return usbdesc::ReadText(text); });
  Outcome const asRaw =
      text.size() <= 0xFFFF ? Outcome{fuzz::BytesOf(input), {}} : Outcome{{}, usbdesc::kRunTooLong};

  // From a file, told apart by what it looks like.
  std::filesystem::path const file = folder.Write("file", text);
  struct Case {
    InputKind kind;
    Outcome const& expected;
  };
  for (Case const& one :
       {Case{InputKind::kText, asText}, Case{InputKind::kRaw, asRaw},
        Case{InputKind::kRecognise, usbdesc::LooksLikeText(text) ? asText : asRaw}}) {
    Outcome const outcome = OutcomeOf([&] { return usbdesc::ReadFile(file.string(), one.kind); });
    RequireEqual(outcome.run, one.expected.run, "run from a file");
    RequireEqual(outcome.error, one.expected.error, "refusal of a file");
  }

  Require(asText.run.size() <= text.size(), "a byte takes at least one character");
  Outcome const asWindowsText =
      OutcomeOf([&] { return usbdesc::ReadText(WithWindowsLineEnds(text)); });
  RequireEqual(asWindowsText.run, asText.run, "run of the text with other line ends");
  RequireEqual(asWindowsText.error.empty(), asText.error.empty(),
               "refusal of the text with other line ends");
  if (!asText.error.empty()) {
    CheckPlace(text);
    return;
  }

  for (char const* const form : {"--verbosity=3", "--code"}) {
    std::string const written = Written(folder, asText.run, form);
    Require(usbdesc::LooksLikeText(written), "what was written looks like text");
    RequireEqual(usbdesc::ReadText(written), asText.run, "run read back");
  }
}

}  // namespace usb_support::fuzz

// OutputString compared with a formatter written by hand, which is given the labels: a table of
// hexadecimal digits and one buffer.
#include <array>
#include <cstddef>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <benchmarks/inputs.h>
#include <benchmarks/rows.h>
#include <benchmarks/side_by_side.h>
#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/helper/usb_helper.h>

namespace usb_support::benchmarks {
namespace {

// The labels are given to the baseline, which the library has to make.
constexpr double kGoal = 2.50;

using Byte = unsigned char;

constexpr char kDigits[] = "0123456789ABCDEF";

constexpr auto kHexPairs = [] {
  std::array<char, 512> pairs{};
  for (std::size_t value = 0; value < 256; ++value) {
    pairs[2 * value] = kDigits[value >> 4];
    pairs[2 * value + 1] = kDigits[value & 0xF];
  }
  return pairs;
}();

// Writes into one block that is large enough for any line of the run.
class Writer {
 public:
  explicit Writer(char* out) : begin_(out), out_(out) {}

  void Text(std::string_view text) {
    std::memcpy(out_, text.data(), text.size());
    out_ += text.size();
  }

  void Letter(char letter) { *out_++ = letter; }

  void Hex2(unsigned value) {
    std::memcpy(out_, &kHexPairs[2 * std::size_t{value}], 2);
    out_ += 2;
  }

  // Right-aligned in four columns.
  void Offset(unsigned value) {
    for (int shift = 12; shift >= 0; shift -= 4) {
      Letter(value >> shift != 0 || shift == 0 ? kDigits[(value >> shift) & 0xF] : ' ');
    }
  }

  std::size_t Size() const { return static_cast<std::size_t>(out_ - begin_); }

 private:
  char* begin_;
  char* out_;
};

// The longest label and the text around it.
constexpr std::size_t kMostAround = 160;

// For a run that is valid.
class BareFormatter {
 public:
  BareFormatter(BareRun run, std::vector<std::string> const& labels, bool asCode)
      : run_(run),
        labels_(labels),
        asCode_(asCode) {}

  std::string Text() {
    Byte const* const end = run_.bytes + run_.length;
    std::size_t lines = 1;
    for (Byte const* p = run_.bytes; p != end; p += p[0]) {
      ++lines;
    }
    buffer_.resize(lines * kMostAround + run_.length * 6);
    Writer out(buffer_.data());
    auto label = labels_.begin();
    for (Byte const* p = run_.bytes; p != end; p += p[0]) {
      if (p != run_.bytes) {
        out.Letter('\n');
      }
      Prefix(out, p);
      if (asCode_) {
        Code(out, p, p[0]);
        out.Letter(',');
      } else {
        Listing(out, p, p[0]);
      }
      out.Text(asCode_ ? " // " : " : ");
      out.Text(*label++);
    }
    return {buffer_.data(), out.Size()};
  }

 private:
  void Prefix(Writer& out, Byte const* p) const {
    out.Text(asCode_ ? "/* " : "");
    out.Offset(static_cast<unsigned>(p - run_.bytes));
    out.Text(asCode_ ? "h */  " : "h:  ");
  }

  static void Listing(Writer& out, Byte const* p, std::size_t count) {
    out.Hex2(p[0]);
    for (std::size_t at = 1; at < count; ++at) {
      out.Letter(' ');
      out.Hex2(p[at]);
    }
  }

  static void Code(Writer& out, Byte const* p, std::size_t count) {
    out.Text("0x");
    out.Hex2(p[0]);
    for (std::size_t at = 1; at < count; ++at) {
      out.Text(", 0x");
      out.Hex2(p[at]);
    }
  }

  BareRun run_;
  std::vector<std::string> const& labels_;
  bool asCode_;
  std::string buffer_;
};

// A run with the labels that the library gives its descriptors.
struct LabelledRun {
  BareRun run;
  std::vector<std::string> labels;
};

LabelledRun Labelled(CDescriptorRange const& range) {
  LabelledRun labelled{{range.Bytes(), range.Length()}, {}};
  std::istringstream lines(*range.OutputString(false));
  for (std::string line; std::getline(lines, line);) {
    labelled.labels.push_back(line.substr(line.find(" : ") + 3));
  }
  return labelled;
}

void AddRow(Input const& input, bool asCode) {
  std::vector<LabelledRun> bare;
  double bytes = 0;
  for (CDescriptorRange const& range : input.Ranges()) {
    bare.push_back(Labelled(range));
    std::string const text = *range.OutputString(asCode);
    if (text != BareFormatter(bare.back().run, bare.back().labels, asCode).Text()) {
      throw std::logic_error("The baseline of OutputString makes another text.");
    }
    bytes += static_cast<double>(text.size());
  }
  auto const sizeOf = [](std::string const& text) {
    benchmark::DoNotOptimize(text.data());
    return text.size();
  };
  Compare(
      {.operation = asCode ? "OutputString(true)" : "OutputString(false)",
       .input = input.name,
       .mostRatio = kGoal,
       .bytes = bytes},
      SumOver(input.Ranges(),
              [=](CDescriptorRange const& range) { return sizeOf(*range.OutputString(asCode)); }),
      SumOver(bare, [=](LabelledRun const& run) {
        return sizeOf(BareFormatter(run.run, run.labels, asCode).Text());
      }));
}

}  // namespace

void AddRenderingRows() {
  static UsbTqPointers pointers;
  InitUsbHelper(&pointers);
  for (Input const& input : TableInputs()) {
    AddRow(input, false);
    AddRow(input, true);
  }
}

}  // namespace usb_support::benchmarks

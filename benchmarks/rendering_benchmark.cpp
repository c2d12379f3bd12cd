// OutputString beside a formatter written by hand: a table of hexadecimal digits and one buffer.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
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

constexpr double kGoal = 1.50;

using Byte = unsigned char;

struct BareRun {
  Byte const* bytes;
  std::size_t length;
};

constexpr char kDigits[] = "0123456789ABCDEF";

constexpr auto kHexPairs = [] {
  std::array<char, 512> pairs{};
  for (std::size_t value = 0; value < 256; ++value) {
    pairs[2 * value] = kDigits[value >> 4];
    pairs[2 * value + 1] = kDigits[value & 0xF];
  }
  return pairs;
}();

constexpr std::array<std::string_view, 18> kCapabilities = {"<unknown capability descriptor>",
                                                            "WUSB",
                                                            "USB 2 Extension",
                                                            "SuperSpeed",
                                                            "Container ID",
                                                            "Platform",
                                                            "Power Delivery",
                                                            "Battery Info",
                                                            "PD Consumer",
                                                            "PD Provider",
                                                            "SuperSpeed Plus",
                                                            "Precision Time Measurement (PTM)",
                                                            "<unknown capability descriptor>",
                                                            "Billboard",
                                                            "<unknown capability descriptor>",
                                                            "<unknown capability descriptor>",
                                                            "Configuration Summary",
                                                            "Firmware Status"};

constexpr std::array<std::string_view, 8> kVideoControl = {
    "UVC Control Interface: <unknown control interface>",
    "UVC Control Interface: Header",
    "UVC Control Interface: Input Term",
    "UVC Control Interface: Output Term",
    "UVC Control Interface: Selector Unit",
    "UVC Control Interface: Processing Unit",
    "UVC Control Interface: Extension Unit",
    "UVC Control Interface: Encoding Unit"};

constexpr std::array<std::string_view, 25> kVideoStreaming = {
    "UVC Streaming Interface: <unknown streaming interface>",
    "UVC Streaming Interface: Input Header",
    "UVC Streaming Interface: Output Header",
    "UVC Streaming Interface: Still Image Frame",
    "UVC Streaming Interface: Uncompressed Format",
    "UVC Streaming Interface: Uncompressed Frame",
    "UVC Streaming Interface: MJPEG Format",
    "UVC Streaming Interface: MJPEG Frame",
    "UVC Streaming Interface: MPEG1 Format",
    "UVC Streaming Interface: MPEG2-PS Format",
    "UVC Streaming Interface: MPEG2-TS Format",
    "UVC Streaming Interface: MPEG4SL Format",
    "UVC Streaming Interface: DV Frame",
    "UVC Streaming Interface: Color Format",
    "UVC Streaming Interface: Vendor Format",
    "UVC Streaming Interface: Vendor Frame",
    "UVC Streaming Interface: Frame-based Format",
    "UVC Streaming Interface: Frame-based Frame",
    "UVC Streaming Interface: Stream-based Format",
    "UVC Streaming Interface: H264 Format",
    "UVC Streaming Interface: H264 Frame",
    "UVC Streaming Interface: H264 Simulcast Format",
    "UVC Streaming Interface: VP8 Format",
    "UVC Streaming Interface: VP8 Frame",
    "UVC Streaming Interface: VP8 Simulcast Format"};

template <std::size_t Size>
std::string_view TextOf(std::array<std::string_view, Size> const& table, std::size_t code) {
  return table[code < Size ? code : 0];
}

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

  void Decimal(unsigned value) {
    char digits[10];
    char* first = digits + sizeof(digits);
    do {
      *--first = static_cast<char>('0' + value % 10);
      value /= 10;
    } while (value != 0);
    Text({first, static_cast<std::size_t>(digits + sizeof(digits) - first)});
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

// The longest label and what stands around it.
constexpr std::size_t kMostAround = 160;

class BareFormatter {
 public:
  BareFormatter(BareRun run, bool asCode) : run_(run), asCode_(asCode) {}

  std::string Text() {
    Byte const* const end = run_.bytes + run_.length;
    std::size_t lines = 1;
    Byte const* validEnd = run_.bytes;
    for (; validEnd != end; validEnd += validEnd[0]) {
      if (validEnd[0] == 0 || validEnd[0] > static_cast<std::size_t>(end - validEnd)) {
        break;
      }
      ++lines;
    }
    buffer_.resize(lines * kMostAround + run_.length * 6);
    Writer out(buffer_.data());
    for (Byte const* p = run_.bytes; p != validEnd; p += p[0]) {
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
      Label(out, p, static_cast<std::size_t>(end - p));
    }
    if (validEnd != end) {
      Prefix(out, validEnd);
      out.Letter('\n');
      Listing(out, validEnd, static_cast<std::size_t>(end - validEnd));
      out.Text(" (incomplete)");
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

  void Label(Writer& out, Byte const* p, std::size_t left) {
    // Fields behind the run read as 0.
    std::array<Byte, 9> field{};
    std::memcpy(field.data(), p, left < field.size() ? left : field.size());
    switch (field[1]) {
      case 0x01:
        return out.Text("Device");
      case 0x02:
        return out.Text("Configuration");
      case 0x04:
        class_ = field[5];
        subclass_ = field[6];
        return Interface(out, field);
      case 0x05:
        return Endpoint(out, field);
      case 0x06:
        return out.Text("Device Qualifier");
      case 0x07:
        return out.Text("Other Speed Configuration");
      case 0x0B:
        out.Text("Interface Association: Initial=");
        out.Decimal(field[2]);
        out.Text(", Count=");
        return out.Decimal(field[3]);
      case 0x0F:
        return out.Text("BOS");
      case 0x10:
        out.Text("BOS Capability (");
        out.Text(TextOf(kCapabilities, field[2]));
        return out.Letter(')');
      case 0x12:
        return out.Text("eUSB2 Isochronous Endpoint Companion");
      case 0x30:
        return out.Text("SuperSpeed Endpoint Companion");
      case 0x31:
        return out.Text("SuperSpeedPlus Isochronous Endpoint Companion");
      default:
        return ClassSpecific(out, field);
    }
  }

  static void Interface(Writer& out, std::array<Byte, 9> const& field) {
    out.Text("Interface: Num=");
    out.Decimal(field[2]);
    out.Text(", Alt=");
    out.Decimal(field[3]);
    switch (field[5]) {
      case 0x01: {
        constexpr std::array<std::string_view, 5> kAudio3 = {"<UNKNOWN AUDIO 3 SUBCLASS", "control",
                                                             "streaming", "MIDI"};
        out.Text(" (USB Audio ");
        if (field[7] == 0x10) {
          out.Letter('1');
        } else if (field[7] == 0x20) {
          out.Letter('2');
        } else if (field[7] == 0x30) {
          out.Text("3 - ");
          out.Text(field[6] == 0 ? "<undefined>" : TextOf(kAudio3, field[6] < 4 ? field[6] : 0));
        } else {
          out.Text("<unknown>");
        }
        return out.Letter(')');
      }
      case 0x03:
        return out.Text(" (HID)");
      case 0x0E:
        if (field[6] == 1) {
          out.Text(" (Video Control)");
        } else if (field[6] == 2) {
          out.Text(" (Video Streaming)");
        }
        return;
      case 0xFF:
        return out.Text(" (Vendor Specific)");
      default:
        return;
    }
  }

  static void Endpoint(Writer& out, std::array<Byte, 9> const& field) {
    constexpr std::array<std::string_view, 4> kTypes = {"Control", "Isoch", "Bulk", "Interrupt"};
    out.Text(kTypes[field[3] & 3u]);
    out.Text(" Endpoint: Address=0x");
    out.Hex2(field[2]);
    out.Text((field[2] & 0x80u) != 0 ? " (IN), wMaxPacketSize=" : " (OUT), wMaxPacketSize=");
    out.Decimal(field[4] + 256u * field[5]);
    out.Text(" (0x");
    out.Hex2(field[5]);
    out.Hex2(field[4]);
    out.Text("), bInterval=");
    out.Decimal(field[6]);
    out.Text(" (0x");
    out.Hex2(field[6]);
    out.Letter(')');
  }

  void ClassSpecific(Writer& out, std::array<Byte, 9> const& field) const {
    if (class_ == 0x0E && (subclass_ == 1 || subclass_ == 2)) {
      bool const isControl = subclass_ == 1;
      if (field[1] == 0x24) {
        return out.Text(isControl ? TextOf(kVideoControl, field[2])
                                  : TextOf(kVideoStreaming, field[2]));
      }
      if (field[1] == 0x25) {
        return out.Text(isControl ? "UVC Control Endpoint" : "UVC Streaming Endpoint");
      }
      return out.Text(isControl ? "<Unknown UVC Control Descriptor>"
                                : "<Unknown UVC Streaming Descriptor>");
    }
    out.Text("<UNKNOWN DESCRIPTOR>");
  }

  BareRun run_;
  bool asCode_;
  std::string buffer_;
  unsigned class_ = 0;
  unsigned subclass_ = 0;
};

std::string BareOutputString(BareRun run, bool asCode) {
  return BareFormatter(run, asCode).Text();
}

void AddRows(Input const& input, bool asCode, Row row) {
  std::vector<BareRun> bare;
  double bytes = 0;
  for (auto const& run : input.runs) {
    bare.push_back({run.data(), run.size()});
    std::string const text = *RangeOver(run).OutputString(asCode);
    if (text != BareOutputString(bare.back(), asCode)) {
      throw std::logic_error("The baseline of OutputString makes another text.");
    }
    bytes += static_cast<double>(text.size());
  }
  row.operation = asCode ? "OutputString(true)" : "OutputString(false)";
  row.input = input.name;
  row.mostRatio = kGoal;
  row.bytes = bytes;
  Compare(
      std::move(row),
      [ranges = input.Ranges(), asCode] {
        std::size_t sum = 0;
        for (CDescriptorRange const& range : ranges) {
          auto const text = range.OutputString(asCode);
          benchmark::DoNotOptimize(text->data());
          sum += text->size();
        }
        return sum;
      },
      [bare, asCode] {
        std::size_t sum = 0;
        for (BareRun const& run : bare) {
          std::string const text = BareOutputString(run, asCode);
          benchmark::DoNotOptimize(text.data());
          sum += text.size();
        }
        return sum;
      });
}

}  // namespace

void AddRenderingRows() {
  static UsbTqPointers pointers;
  InitUsbHelper(&pointers);
  for (Input const& input : TableInputs()) {
    AddRows(input, false, {});
    AddRows(input, true, {});
  }
  for (Input const& input : GrowthInputs()) {
    Row form;
    form.descriptors = input.Descriptors();
    AddRows(input, false, form);
  }
}

}  // namespace usb_support::benchmarks

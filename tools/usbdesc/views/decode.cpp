#include <tools/usbdesc/views/decode.h>

#include <algorithm>
#include <array>
#include <map>
#include <string_view>
#include <utility>

#include <tools/usbdesc/json_writer.h>
#include <tools/usbdesc/log_text.h>
#include <tools/usbdesc/views/field_texts.h>
#include <usb_devices/characters.h>
#include <usb_fields/fields.h>

namespace usb_support::usbdesc {
namespace {

using usb_fields::BitsReader;
using usb_fields::BitsValue;
using usb_fields::Context;
using usb_fields::FieldValue;
using usb_fields::Reading;
using usb_fields::Speed;

using ByteSpan = std::span<std::uint8_t const>;

constexpr std::size_t kMostColumns = 100;
constexpr std::size_t kLeastColumns = 72;         // that the columns of the listing need
constexpr std::size_t kBytesOfLine = 3 * 16 - 1;  // 16 bytes

// Lines of columns, none of which is longer than `columns`.
class Lines {
 public:
  explicit Lines(std::size_t columns) : columns_(columns) {}

  void Add(std::string_view line, Piece piece = Piece::kPlain) {
    line_.Add(line_.Text().empty() ? "" : "\n").Add(line, piece);
  }

  // A long text continues on the next line, broken at a space if there is one.
  void AddWrapped(std::string const& head, std::string_view text, Piece headPiece = Piece::kPlain,
                  Piece textPiece = Piece::kPlain) {
    std::size_t const left = columns_ - std::min(columns_, head.size());
    Add(head, text, std::max(left, kLeastRoom), headPiece, textPiece);
  }

  // At most 16 bytes per line.
  void AddBytes(std::string const& head, std::string_view bytes) {
    std::size_t const left = columns_ - std::min(columns_, head.size());
    Add(head, bytes, std::max(std::min(left, kBytesOfLine), kLeastRoom), Piece::kPlain,
        Piece::kPlain);
  }

  Line Take() { return std::move(line_); }

 private:
  static constexpr std::size_t kLeastRoom = 12;

  void Add(std::string const& head, std::string_view text, std::size_t room, Piece headPiece,
           Piece textPiece) {
    std::string before = head;
    while (true) {
      std::size_t end = text.size();
      if (end > room) {
        std::size_t const space = text.rfind(' ', room);
        end = space != std::string_view::npos && space != 0 ? space : WholeCharacters(text, room);
      }
      if (end == 0) {
        before.resize(before.find_last_not_of(' ') + 1);
      }
      Add(before, headPiece);
      line_.Add(text.substr(0, end), textPiece);
      text.remove_prefix(end);
      text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
      if (text.empty()) {
        return;
      }
      before.assign(head.size(), ' ');
    }
  }

  static std::size_t WholeCharacters(std::string_view text, std::size_t most) {
    while (most > 1 && (static_cast<unsigned char>(text[most]) & 0xC0) == 0x80) {
      --most;
    }
    return most;
  }

  std::size_t columns_;
  Line line_;
};

std::string Padded(std::string_view text, std::size_t width) {
  std::string padded(text);
  padded.resize(std::max(width, padded.size()), ' ');
  return padded;
}

class DeviceListing {
 public:
  DeviceListing(usb_fields::UsbIds const& names, std::size_t columns)
      : lines_(columns),
        texts_(names) {}

  Line Of(DecodedDevice const& device) {
    lines_.AddWrapped("// ", "speed: " + SpeedText(device.speed));
    texts_.Use(device.strings);
    bool const isOneRun = IsOneRun(device);
    for (DecodedRun const& run : device.runs) {
      if (!isOneRun) {
        lines_.AddWrapped("// ", TitleOf(run));
      }
      if (run.IsHidReport()) {
        HidReport(run);
      } else {
        Chain(run, device.speed.readAs);
      }
    }
    Totals();
    return lines_.Take();
  }

 private:
  static constexpr std::size_t kNameColumn = 8;
  static constexpr std::size_t kBytesColumn = 33;  // 16 of them end in column 80
  static constexpr std::size_t kValueColumn = 34;
  static constexpr std::size_t kTextColumn = 47;

  // True when the runs follow one another in the same source, so that their offsets distinguish
  // them.
  static bool IsOneRun(DecodedDevice const& device) {
    std::size_t end = device.runs.empty() ? 0 : device.runs.front().offset;
    return std::all_of(device.runs.begin(), device.runs.end(), [&](DecodedRun const& run) {
      bool const follows = run.offset == end && run.file == device.runs.front().file &&
                           run.answer->outcome == usb_devices::Outcome::kAnswered;
      end = run.offset + run.bytes.size();
      return follows;
    });
  }

  // "string 2, language 0409h (trace.pcapng, packet 17)", "BOS: stalled (trace.pcapng, packet 9)".
  static std::string TitleOf(DecodedRun const& run) {
    usb_devices::Answer const& answer = *run.answer;
    usb_devices::Source const& source = answer.source;
    std::string title = NameOf(answer.request);
    if (answer.outcome != usb_devices::Outcome::kAnswered) {
      title.append(": ").append(NameOf(answer.outcome)).append(answer.note.empty() ? "" : ", ");
      title += usb_devices::Harmless(answer.note);
    }
    title.append(" (").append(usb_devices::Harmless(source.name));
    title.append(source.packet != 0 ? ", packet " + std::to_string(source.packet)
                 : source.line != 0 ? ", line " + std::to_string(source.line)
                                    : "");
    return title.append(")");
  }

  void Chain(DecodedRun const& run, Speed speed) {
    ChainEnd const end = ForEachDescriptor(
        run, speed, [&](std::size_t offset, ByteSpan bytes, Context const& context) {
          Descriptor(run.offset + offset, bytes, context);
        });
    if (end.left != 0) {
      lines_.Add("Lengths bad: " + std::string(end.reason) + " at " +
                     Hex(run.offset + end.offset, 4) + "h, " + Counted(end.left, "byte") + " left",
                 Piece::kFault);
    }
  }

  // A line for each item, indented by the collections around it, and the sizes of the reports.
  void HidReport(DecodedRun const& run) {
    std::size_t depth = 0;
    for (usb_fields::HidItemReader items(run.bytes); items.Next();) {
      usb_fields::HidItem const& item = items.Item();
      depth -= item.name == "End Collection" && depth != 0 ? 1U : 0U;
      std::string line = "  " + std::to_string(item.offset);
      line = Padded(line, kNameColumn) + Padded(Spaced(item.bytes), 16) + "  " +
             std::string(2 * std::min<std::size_t>(depth, 10), ' ');
      std::string text(item.name.empty() ? "not described" : item.name);
      std::string_view const meaning = texts_.Text(item);
      text.append(meaning.empty() ? "" : ": ").append(meaning);
      lines_.AddWrapped(Fitting(line), text.append(item.isCut ? " (cut off)" : ""));
      depth += item.name == "Collection" ? 1U : 0U;
      ++items_;
    }
    usb_fields::HidReports const reports = usb_fields::ReadHidReports(run.bytes);
    constexpr std::string_view kTypes[] = {"Input", "Output", "Feature"};
    for (usb_fields::HidReport const& report : reports.reports) {
      std::string line = Padded("", kNameColumn);
      line.append(kTypes[static_cast<std::size_t>(report.type)]).append(" report");
      line.append(report.id == 0 ? "" : " " + std::to_string(report.id));
      lines_.Add(line.append(": " + Counted(report.Bytes(), "byte")));
    }
    for (usb_fields::HidProblem const& problem : reports.problems) {
      lines_.AddWrapped(Padded("", kNameColumn),
                        std::string(problem.text) + " at " + Hex(problem.offset, 4) + 'h',
                        Piece::kPlain, Piece::kFault);
    }
  }

  // The beginning of a line that leaves space for its text; long items have more bytes.
  static std::string Fitting(std::string const& head) {
    constexpr std::size_t kMost = 60;
    return head.size() <= kMost ? head : head.substr(0, kMost - 4) + "... ";
  }

  void Descriptor(std::size_t offset, ByteSpan bytes, Context const& context) {
    std::array<char, usb_fields::kMostSummary> summary;
    lines_.AddWrapped(Hex(offset, 4) + "h  ", usb_fields::SummaryOf(bytes, context, summary),
                      Piece::kOffset, Piece::kLabel);
    Reading const reading =
        usb_fields::ReadFields(bytes, context, [this](FieldValue const& field) { Field(field); });
    ++descriptors_;
    std::size_t const rest = reading.NotDescribed();
    if (rest != 0) {
      lines_.AddBytes(Padded("", kNameColumn) + "not described  ",
                      Spaced(bytes.subspan(reading.described, rest)));
    }
    notDescribed_ += rest;
    unknown_ += reading.layout == nullptr ? 1U : 0U;
  }

  void Field(FieldValue const& field) {
    ++fields_;
    std::string line = "  " + std::to_string(field.offset);
    line = Padded(line, kNameColumn) + NameOf(field);
    if (field.Bytes().empty()) {
      lines_.Add(Padded(line, kValueColumn - 1) + " missing");
      return;
    }
    std::string_view number = texts_.Number(field);
    std::string text(texts_.Text(field));
    bool const isWide = number.size() > kTextColumn - kValueColumn - 1;
    if (isWide && text.empty()) {
      lines_.AddBytes(Padded(line, kBytesColumn - 1) + " ", number);
      return;
    }
    line = Padded(line, kValueColumn - 1) + " ";
    if (isWide) {
      lines_.AddWrapped(line, text);
    } else {
      line.append(number);
      line = Padded(line, kTextColumn - 1) + " ";
      lines_.AddWrapped(line, text.append(field.IsCut() ? "(cut off)" : ""));
    }
    for (BitsReader bits(field); bits.Next();) {
      Bits(bits.Value());
    }
  }

  void Bits(BitsValue const& bits) {
    std::string line = Padded("", kNameColumn) + "  " + std::to_string(bits.high);
    if (bits.low != bits.high) {
      line.append("..").append(std::to_string(bits.low));
    }
    line = Padded(line, kNameColumn + 9) + std::string(bits.name);
    line = Padded(line, kTextColumn - 1) + " " + std::to_string(bits.value);
    lines_.AddWrapped(bits.text.empty() ? line : Padded(line, kTextColumn + 3) + " ", bits.text);
  }

  static std::string Spaced(ByteSpan bytes) {
    std::string text;
    for (std::uint8_t const byte : bytes) {
      text.append(text.empty() ? "" : " ").append(Hex(byte, 2));
    }
    return text;
  }

  void Totals() {
    std::string line =
        "// " + Counted(descriptors_, "descriptor") + ", " + Counted(fields_, "field") + ", ";
    line.append(unknown_ == 0 ? "every descriptor is known"
                              : Counted(unknown_, "descriptor") + " not known");
    line.append(notDescribed_ == 0 ? "" : ", " + Counted(notDescribed_, "byte") + " not described");
    line.append(items_ == 0 ? "" : ", " + Counted(items_, "item") + " of HID reports");
    lines_.Add(line);
  }

  Lines lines_;
  FieldTexts texts_;
  std::size_t descriptors_ = 0;
  std::size_t fields_ = 0;
  std::size_t items_ = 0;  // of HID report descriptors
  std::size_t unknown_ = 0;
  std::size_t notDescribed_ = 0;
};

class JsonListing {
 public:
  explicit JsonListing(usb_fields::UsbIds const& names) : texts_(names) {}

  std::string Of(DecodedInput const& input) {
    Input(input);
    return writer_.Text();
  }

 private:
  void Input(DecodedInput const& input) {
    writer_.StartObject();
    writer_.String("name", input.name);
    writer_.Key("devices");
    writer_.StartArray();
    for (DecodedDevice const& device : input.devices) {
      writer_.StartObject();
      texts_.Use(device.strings);
      writer_.String("name", usb_devices::Harmless(device.name));
      writer_.String("speed", NameOf(device.speed.speed));
      if (!device.speed.reason.empty()) {
        writer_.String("speed_reason", device.speed.reason);
      }
      writer_.Key("runs");
      writer_.StartArray();
      for (DecodedRun const& run : device.runs) {
        Run(run, device.speed.readAs);
      }
      writer_.EndArray();
      writer_.EndObject();
    }
    writer_.EndArray();
    writer_.EndObject();
  }

  void Run(DecodedRun const& run, Speed speed) {
    writer_.StartObject();
    if (run.type != 0) {
      writer_.Number("type", run.type);
    }
    if (run.index) {
      writer_.Number("index", *run.index);
    }
    if (run.language) {
      writer_.Number("language", *run.language);
    }
    if (run.interfaceNumber) {
      writer_.Number("interface", *run.interfaceNumber);
    }
    usb_devices::Answer const& answer = *run.answer;
    writer_.String("request", RequestOf(answer.request));
    writer_.String("outcome", NameOf(answer.outcome));
    if (!answer.note.empty()) {
      writer_.String("note", usb_devices::Harmless(answer.note));
    }
    Source(answer.source);
    writer_.String("hex", HexOf(run.bytes));
    if (run.IsHidReport()) {
      HidReport(run.bytes);
      writer_.EndObject();
      return;
    }
    writer_.Key("descriptors");
    writer_.StartArray();
    ChainEnd const end = ForEachDescriptor(
        run, speed, [this](std::size_t offset, ByteSpan bytes, Context const& context) {
          Descriptor(offset, bytes, context);
        });
    writer_.EndArray();
    writer_.Key("end");
    writer_.StartObject();
    writer_.String("reason", end.reason);
    writer_.Number("offset", end.offset);
    writer_.Number("left", end.left);
    writer_.EndObject();
    writer_.EndObject();
  }

  // The SETUP packet without its length.
  static std::string RequestOf(usb_devices::Request const& request) {
    return Hex(request.requestType, 2) + Hex(request.request, 2) + Hex(request.Index(), 2) +
           Hex(request.Type(), 2) + Hex(request.index & 0xFFU, 2) + Hex(request.index >> 8U, 2);
  }

  void Source(usb_devices::Source const& source) {
    writer_.Key("source");
    writer_.StartObject();
    writer_.String("file", usb_devices::Harmless(source.name));
    writer_.Number("offset", source.offset);
    if (source.line != 0) {
      writer_.Number("line", source.line);
    }
    if (source.packet != 0) {
      writer_.Number("packet", source.packet);
    }
    writer_.EndObject();
  }

  void HidReport(ByteSpan bytes) {
    writer_.Key("items");
    writer_.StartArray();
    for (usb_fields::HidItemReader items(bytes); items.Next();) {
      usb_fields::HidItem const& item = items.Item();
      writer_.StartObject();
      writer_.Number("offset", item.offset);
      writer_.Number("length", item.bytes.size());
      writer_.String("name", item.name);
      writer_.String("text", texts_.Text(item));
      writer_.EndObject();
    }
    writer_.EndArray();
    writer_.Key("reports");
    writer_.StartArray();
    constexpr std::string_view kTypes[] = {"input", "output", "feature"};
    usb_fields::HidReports const reports = usb_fields::ReadHidReports(bytes);
    for (usb_fields::HidReport const& report : reports.reports) {
      writer_.StartObject();
      writer_.String("type", kTypes[static_cast<std::size_t>(report.type)]);
      writer_.Number("id", report.id);
      writer_.Number("bytes", report.Bytes());
      writer_.EndObject();
    }
    writer_.EndArray();
  }

  void Descriptor(std::size_t offset, ByteSpan bytes, Context const& context) {
    writer_.StartObject();
    writer_.Number("offset", offset);
    writer_.Key("fields");
    writer_.StartArray();
    std::uint64_t type = 0;
    Reading const reading =
        usb_fields::ReadFields(bytes, context, [this, &type](FieldValue const& field) {
          bool const isType = field.field->name.ends_with("DescriptorType");
          type = isType && type == 0 ? field.value : type;
          Field(field);
        });
    writer_.EndArray();
    writer_.Number("length", reading.length);
    writer_.Number("type", type);
    if (reading.layout != nullptr) {
      writer_.String("layout", reading.layout->id);
      writer_.String("name", reading.layout->name);
    }
    if (reading.isGuessed) {
      writer_.Key("guessed");
      writer_.Bool(true);
    }
    writer_.Number("not_described", reading.NotDescribed());
    writer_.EndObject();
  }

  void Field(FieldValue const& field) {
    writer_.StartObject();
    writer_.String("name", field.field->name);
    writer_.Number("offset", field.offset);
    writer_.Number("size", field.size);
    if (!field.field->extra.repeat.empty()) {
      writer_.Number("index", field.index);
    }
    Value(field);
    writer_.String("text", texts_.Text(field));
    BitsReader bits(field);
    if (bits.Next()) {
      writer_.Key("bits");
      writer_.StartArray();
      do {
        Bits(bits.Value());
      } while (bits.Next());
      writer_.EndArray();
    }
    writer_.EndObject();
  }

  // A number, or hexadecimal text for bytes and for numbers that a double does not hold.
  void Value(FieldValue const& field) {
    constexpr std::uint64_t kMostOfDouble = std::uint64_t{1} << 53;
    using usb_fields::Form;
    Form const form = field.field->meaning.form;
    bool const isBytes = form == Form::kUuid || form == Form::kUuidBigEndian ||
                         form == Form::kUtf16 || form == Form::kAscii || form == Form::kBytes;
    if (isBytes || field.size > 8 || field.IsCut() || field.value >= kMostOfDouble) {
      writer_.String("value", HexOf(field.Bytes()));
    } else if (form == Form::kSigned) {
      unsigned const unused = 64 - 8u * field.size;
      writer_.Key("value");
      writer_.Signed(static_cast<std::int64_t>(field.value << unused) >> unused);
    } else {
      writer_.Number("value", field.value);
    }
  }

  void Bits(BitsValue const& bits) {
    writer_.StartObject();
    writer_.String("name", bits.name);
    writer_.Number("high", bits.high);
    writer_.Number("low", bits.low);
    writer_.Number("value", bits.value);
    writer_.String("text", bits.text);
    writer_.EndObject();
  }

  JsonWriter writer_;
  FieldTexts texts_;
};

}  // namespace

Line DecodedText(DecodedDevice const& device, usb_fields::UsbIds const& names,
                 std::size_t columns) {
  std::size_t const wanted = columns == 0 ? kMostColumns : columns;
  return DeviceListing(names, std::clamp(wanted, kLeastColumns, kMostColumns)).Of(device);
}

std::string DecodedJson(DecodedInput const& input, usb_fields::UsbIds const& names) {
  return JsonListing(names).Of(input);
}

}  // namespace usb_support::usbdesc

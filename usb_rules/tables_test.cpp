// Rules judge every requirement of the tables of usb_fields, in every layout that a judged answer
// may contain: the test breaks each reserved bit, each reserved code, the digits of each release
// number and each length of a sample (usb_fields/samples.txt) in turn, and a rule must report the
// place. The test thus fails when a row, a family or a form of rules is removed or weakened.
#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <usb_fields/reader.h>
#include <usb_rules/judge.h>
#include <usb_rules/test_support/sample.h>

namespace usb_rules::test {
namespace {

// A descriptor and where it is.
struct Placed {
  std::string layout;
  std::string words;
  Bytes bytes;

  unsigned Word(std::string_view name) const {
    std::size_t const at = words.find(std::string(name) + "=");
    return at == std::string::npos
               ? 0
               : static_cast<unsigned>(std::stoul(words.substr(at + name.size() + 1), nullptr, 16));
  }
  bool Has(std::string_view word) const { return words.find(word) != std::string::npos; }
};

// The descriptors that an answer of a Subject may contain.
std::vector<Placed> const& AllPlaced() {
  static std::vector<Placed> const all = [] {
    std::vector<Placed> rows;
    std::ifstream file(USB_RULES_SAMPLES "/../../usb_fields/samples.txt");
    for (std::string line; std::getline(file, line);) {
      std::istringstream cells(line);
      Placed row;
      std::string hex;
      std::getline(cells, row.layout, '|');
      std::getline(cells, row.words, '|');
      std::getline(cells, hex, '|');
      std::erase(row.layout, ' ');
      bool const isElsewhere = row.Has("request=") && !row.Has("midi2_gtb");
      if (!line.starts_with('#') && !isElsewhere && !row.Has("guessed") && !row.Has("parent")) {
        row.bytes = BytesOf(hex);
        rows.push_back(row);
      }
    }
    return rows;
  }();
  return all;
}

// A device that returns a descriptor; its other descriptors may break rules.
class Answer {
 public:
  explicit Answer(Placed const& placed) : placed_(&placed) {
    std::string_view const id = placed.layout;
    if (id == "usb2.device") {
      Single(subject_.device);
    } else if (id == "usb2.device_qualifier") {
      Single(subject_.qualifier);
    } else if (id.starts_with("hub.")) {
      Single(subject_.hub);
    } else if (id.starts_with("bos.")) {
      before_ = id == "bos.header" ? Bytes{} : BytesOf("05 0F 00 00 01");
      Single(subject_.bos);
    } else if (id.starts_with("usb2.string") || id == "msos10.string") {
      text_.index = static_cast<std::uint8_t>(id == "usb2.string" ? 1 : placed.Word("index"));
      Single(text_.run);
      subject_.strings = {&text_, 1};
      subject_.stringsPresence = Presence::kGiven;
    } else if (placed.Has("midi2_gtb")) {
      before_ = id.ends_with("header") ? Bytes{} : BytesOf("05 26 01 12 00");
      Single(blocks_.run);
      subject_.groupTerminalBlocks = {&blocks_, 1};
    } else {
      Configuration(id == "usb2.configuration" || id == "usb2.other_speed_configuration");
    }
    subject_.speed = placed.Has("speed=super")  ? Speed::kSuper
                     : placed.Has("speed=full") ? Speed::kFull
                                                : Speed::kHigh;
  }

  std::size_t Offset() const { return before_.size(); }
  usb_fields::Context const& GetContext() const { return context_; }

  // True when a rule finds a fault in the field after these bytes replace those of the sample.
  bool IsNoticed(Bytes const& changed, std::string_view field) {
    bytes_ = before_;
    bytes_.insert(bytes_.end(), changed.begin(), changed.end());
    target_->bytes = bytes_;
    target_->presence = Presence::kGiven;
    for (Verdict const& verdict : Judge(subject_).verdicts) {
      for (Finding const& finding : verdict.findings) {
        if (finding.offset == Offset() && finding.field.starts_with(field)) {
          return true;
        }
      }
    }
    return false;
  }

 private:
  void Single(Run& run) {
    target_ = &run;
    context_.speed = Speed::kHigh;
    context_.index = text_.index;
    if (&run == &blocks_.run) {
      context_.request = usb_fields::Request::kGroupTerminalBlocks;
      context_.hasInterface = true;
      context_.interfaceClass = 1;
      context_.interfaceSubclass = 3;
    }
  }

  // A configuration with the interface and the endpoint that come before the descriptor.
  void Configuration(bool isItself) {
    auto const add = [this](Bytes const& bytes) {
      before_.insert(before_.end(), bytes.begin(), bytes.end());
      context_.Follow(bytes);
    };
    context_.speed = placed_->Has("speed=super")  ? Speed::kSuper
                     : placed_->Has("speed=full") ? Speed::kFull
                                                  : Speed::kHigh;
    if (!isItself) {
      add(BytesOf("09 02 00 00 01 01 00 80 32"));
    }
    if (placed_->Has("interface=")) {
      Bytes interface = BytesOf("09 04 00 00 01 00 00 00 00");
      std::istringstream codes(placed_->words.substr(placed_->words.find("interface=") + 10));
      for (std::size_t i = 5; i < 8; ++i) {
        std::string code;
        std::getline(codes, code, i < 7 ? '/' : ' ');
        interface[i] = static_cast<std::uint8_t>(std::stoul(code, nullptr, 16));
      }
      add(interface);
    }
    if (unsigned const release = placed_->Word("bcdUVC"); release != 0) {
      Bytes header = BytesOf("0D 24 01 00 00 0D 00 00 00 00 00 01 01");
      header[3] = static_cast<std::uint8_t>(release & 0xFFU);
      header[4] = static_cast<std::uint8_t>(release >> 8U);
      bool const isStreaming = before_[before_.size() - 3] == 2;
      if (isStreaming) {
        before_[before_.size() - 3] = 1;
        context_.Follow(std::span(before_).last(9));
      }
      add(header);
      if (isStreaming) {
        add(BytesOf("09 04 01 00 01 0E 02 00 00"));
      }
    }
    if (placed_->Has("endpoint=")) {
      Bytes endpoint = BytesOf("07 05 81 00 00 02 01");
      endpoint[3] = static_cast<std::uint8_t>(placed_->Word("endpoint"));
      add(endpoint);
    }
    bool const isOther = placed_->layout == "usb2.other_speed_configuration";
    (isOther ? subject_.otherSpeedConfigurations : subject_.configurations) = {&run_, 1};
    (isOther ? subject_.otherSpeed : subject_.configurationsPresence) = Presence::kGiven;
    target_ = &run_;
  }

  Placed const* placed_;
  usb_fields::Context context_;
  Bytes before_;
  Bytes bytes_;
  usb_rules::Run run_;
  StringRun text_;
  InterfaceRun blocks_{1, {}};
  Subject subject_;
  usb_rules::Run* target_ = nullptr;
};

// The layout of the bytes in that place, and the rows of their fields.
std::pair<usb_fields::Layout const*, std::vector<usb_fields::FieldValue>> Read(
    Bytes const& bytes, usb_fields::Context const& context) {
  std::vector<usb_fields::FieldValue> fields;
  usb_fields::Reading const reading = usb_fields::ReadFields(
      bytes, context, [&](usb_fields::FieldValue const& field) { fields.push_back(field); });
  return {reading.layout, fields};
}

Bytes With(Bytes bytes, usb_fields::FieldValue const& field, std::uint64_t value) {
  for (std::size_t i = 0; i < field.size && i < 8; ++i) {
    bytes[field.offset + i] = static_cast<std::uint8_t>(value >> 8 * i);
  }
  return bytes;
}

// Values of a field that its table does not allow.
std::vector<std::uint64_t> WrongValues(usb_fields::FieldValue const& field) {
  std::vector<std::uint64_t> values;
  usb_fields::Meaning const& meaning = field.field->meaning;
  for (usb_fields::Bit const& bit : meaning.bits) {
    if (bit.IsReserved() && bit.low < 8U * field.size) {
      values.push_back(field.value ^ std::uint64_t{1} << bit.low);
      values.push_back(field.value ^ std::uint64_t{1}
                                         << std::min(bit.high + 0U, 8U * field.size - 1));
    } else if (bit.isValue && bit.name == "Reserved") {
      std::uint64_t const mask = (std::uint64_t{2} << (bit.high - bit.low)) - 1;
      values.push_back((field.value & ~(mask << bit.low)) | std::uint64_t{bit.value} << bit.low);
    }
  }
  for (usb_fields::Code const& code : meaning.codes) {
    if (code.name == "Reserved") {
      values.insert(values.end(), {code.first, code.last});
    }
  }
  if (meaning.form == usb_fields::Form::kBcd) {
    values.push_back(field.value | 0xAU);
    values.push_back(field.value | 0xA0U);
  }
  if (field.field->name.find("eserved") != std::string_view::npos) {
    values.push_back(1);
  }
  return values;
}

TEST(Tables, HaveEveryReservedBitCodeAndDigitJudged) {
  std::size_t count = 0;
  for (Placed const& placed : AllPlaced()) {
    Answer answer(placed);
    auto const [layout, fields] = Read(placed.bytes, answer.GetContext());
    ASSERT_NE(layout, nullptr) << placed.layout;
    ASSERT_EQ(layout->id, placed.layout);
    for (std::size_t i = 0; i < fields.size(); ++i) {
      for (std::uint64_t const value : WrongValues(fields[i])) {
        Bytes const changed = With(placed.bytes, fields[i], value);
        auto const [other, read] = Read(changed, answer.GetContext());
        if (other != layout || read.size() <= i || read[i].field != fields[i].field) {
          continue;  // it is another descriptor now, or another form of it
        }
        ++count;
        EXPECT_TRUE(answer.IsNoticed(changed, fields[i].field->name))
            << placed.layout << ": " << fields[i].field->name << " " << std::hex << value;
      }
    }
  }
  EXPECT_GT(count, 500u);
}

TEST(Tables, HaveEveryLengthJudged) {
  std::size_t count = 0;
  for (Placed const& placed : AllPlaced()) {
    Answer answer(placed);
    auto const [layout, fields] = Read(placed.bytes, answer.GetContext());
    bool const isLength = fields[0].field->name == "bLength" ||
                          fields[0].field->name == "bFunctionLength" ||
                          fields[0].field->name == "bDescLen";
    if (layout == nullptr || !isLength) {
      continue;
    }
    std::size_t const size = placed.bytes.size();
    for (std::size_t const length : {std::size_t{layout->least} - 1, size + 1}) {
      Bytes changed = placed.bytes;
      changed.resize(length);
      changed[0] = static_cast<std::uint8_t>(length);
      auto const [other, read] = Read(changed, answer.GetContext());
      bool const isWrong = length < layout->least || !layout->length.empty();
      if (other == layout && isWrong && length > 2) {
        ++count;
        EXPECT_TRUE(answer.IsNoticed(changed, "bLength")) << placed.layout << " of " << length;
      }
    }
  }
  EXPECT_GT(count, 200u);
}

}  // namespace
}  // namespace usb_rules::test

#include <usb_rules/test_support/sample.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include <usb_fields/reader.h>

namespace usb_rules::test {
namespace {

[[noreturn]] void Fail(std::string_view what, std::string_view text) {
  throw std::runtime_error(std::string(what).append(": '").append(text).append("'"));
}

std::string_view Trim(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\r')) {
    text.remove_prefix(1);
  }
  while (!text.empty() && (text.back() == ' ' || text.back() == '\r')) {
    text.remove_suffix(1);
  }
  return text;
}

std::string_view TakeWord(std::string_view& text) {
  text = Trim(text);
  std::string_view const word = text.substr(0, text.find(' '));
  text = Trim(text.substr(word.size()));
  return word;
}

std::uint64_t Hex(std::string_view text) {
  std::uint64_t value = 0;
  auto const result = std::from_chars(text.data(), text.data() + text.size(), value, 16);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) {
    Fail("not a hexadecimal number", text);
  }
  return value;
}

Speed SpeedOf(std::string_view name) {
  constexpr std::string_view kNames[] = {"unknown", "low", "full", "high", "super", "superplus"};
  auto const found = std::ranges::find(kNames, name);
  if (found == std::end(kNames)) {
    Fail("not a speed", name);
  }
  return static_cast<Speed>(found - std::begin(kNames));
}

Bytes StringBytes(std::string_view text) {
  Bytes bytes = {static_cast<std::uint8_t>(2 + 2 * text.size()), 3};
  for (char const c : text) {
    bytes.push_back(static_cast<std::uint8_t>(c));
    bytes.push_back(0);
  }
  return bytes;
}

Bytes LanguageBytes(std::string_view text) {
  Bytes bytes = {0, 3};
  while (!Trim(text).empty()) {
    std::uint64_t const language = Hex(TakeWord(text));
    bytes.push_back(static_cast<std::uint8_t>(language & 0xFF));
    bytes.push_back(static_cast<std::uint8_t>(language >> 8));
  }
  bytes[0] = static_cast<std::uint8_t>(bytes.size());
  return bytes;
}

std::string_view Unquote(std::string_view text) {
  if (text.size() < 2 || text.front() != '"' || text.back() != '"') {
    Fail("a text in quotes is missing", text);
  }
  return text.substr(1, text.size() - 2);
}

bool IsWalked(Part const& part) {
  return part.kind == "configuration" || part.kind == "other" || part.kind == "bos" ||
         part.kind == "blocks";
}

usb_fields::Context ContextOf(Part const& part, Speed speed) {
  usb_fields::Context context{.speed = speed};
  if (part.kind == "string") {
    context.index = static_cast<std::int16_t>(part.index);
  } else if (part.kind == "blocks") {
    context.request = usb_fields::Request::kGroupTerminalBlocks;
    context.hasInterface = true;
    context.interfaceClass = 1;
    context.interfaceSubclass = 3;
  }
  return context;
}

}  // namespace

Bytes BytesOf(std::string_view hex) {
  Bytes bytes;
  while (!Trim(hex).empty()) {
    bytes.push_back(static_cast<std::uint8_t>(Hex(TakeWord(hex))));
  }
  return bytes;
}

Sample Sample::Read(std::string const& path) {
  std::ifstream file(path);
  Sample sample;
  sample.name_ = std::filesystem::path(path).stem().string();
  std::string line;
  for (int number = 1; std::getline(file, line); ++number) {
    try {
      sample.ReadLine(Trim(std::string_view(line).substr(0, line.find('#'))));
    } catch (std::runtime_error const& error) {
      throw std::runtime_error(path + ":" + std::to_string(number) + ": " + error.what());
    }
  }
  return sample;
}

void Sample::ReadLine(std::string_view line) {
  if (line.empty()) {
    return;
  }
  std::string_view rest = line;
  std::string_view const word = TakeWord(rest);
  if (word == "speed") {
    speed_ = SpeedOf(rest);
  } else if (word == "languages") {
    parts_.push_back({"string", 0, LanguageBytes(rest)});
  } else if (word == "string") {
    auto const index = static_cast<unsigned>(Hex(TakeWord(rest)));
    parts_.push_back({"string", index, StringBytes(Unquote(rest))});
  } else if (word == "report") {
    parts_.push_back({"report", static_cast<unsigned>(Hex(rest)), {}});
  } else if (word.size() > 2) {
    auto const same = std::ranges::count(parts_, word, &Part::kind);
    parts_.push_back({std::string(word), static_cast<unsigned>(same), {}});
  } else if (parts_.empty()) {
    Fail("bytes without a section", line);
  } else {
    std::ranges::copy(BytesOf(line), std::back_inserter(parts_.back().bytes));
  }
}

Part& Sample::PartOf(std::string_view kind, unsigned index) {
  for (Part& part : parts_) {
    if (part.kind == kind && part.index == index) {
      return part;
    }
  }
  Fail("there is no such section", kind);
}

Sample::Place Sample::Find(std::string_view where) {
  bool const isOther = where.starts_with("other:");
  std::string_view id = isOther ? where.substr(6) : where;
  std::size_t const mark = id.find('#');
  std::uint64_t skip = mark == std::string_view::npos ? 0 : Hex(id.substr(mark + 1));
  id = id.substr(0, mark);
  for (Part& part : parts_) {
    if ((part.kind == "other") != isOther && id != "usb2.other_speed_configuration") {
      continue;
    }
    usb_fields::Context context = ContextOf(part, speed_);
    for (std::size_t offset = 0; offset < part.bytes.size();) {
      std::span<std::uint8_t const> const rest = std::span(part.bytes).subspan(offset);
      usb_fields::Layout const* const layout = usb_fields::FindLayout(rest, context).Get();
      std::size_t const length = usb_fields::DescriptorLength(rest, context);
      bool const isType =
          id.starts_with("type=") && rest.size() > 1 && Hex(id.substr(5)) == rest[1];
      if ((isType || (layout != nullptr && layout->id == id)) && skip-- == 0) {
        return {&part, offset, std::min(length, rest.size())};
      }
      if (length < 2 || !IsWalked(part)) {
        break;
      }
      context.Follow(rest);
      offset += length;
    }
  }
  Fail("no such descriptor", where);
}

void Sample::Resize(Part& part, std::ptrdiff_t by) {
  if (IsWalked(part) && part.kind != "blocks" && part.bytes.size() >= 4) {
    std::ptrdiff_t const total = part.bytes[2] + part.bytes[3] * 256 + by;
    part.bytes[2] = static_cast<std::uint8_t>(total & 0xFF);
    part.bytes[3] = static_cast<std::uint8_t>(total >> 8 & 0xFF);
  }
}

void Sample::SetField(Place const& place, std::string_view field, std::uint64_t value) {
  std::size_t at = 0;
  std::size_t size = 0;
  if (field.starts_with("@")) {
    at = static_cast<std::size_t>(Hex(field.substr(1)));
    size = 1;
  } else {
    std::size_t const mark = field.find('(');
    std::string_view const name = field.substr(0, mark);
    std::uint64_t const wanted =
        mark == std::string_view::npos ? 0 : Hex(field.substr(mark + 1, field.size() - mark - 2));
    usb_fields::Context context = ContextOf(*place.part, speed_);
    for (std::size_t offset = 0; IsWalked(*place.part) && offset < place.offset;) {
      std::span<std::uint8_t const> const rest = std::span(place.part->bytes).subspan(offset);
      context.Follow(rest);
      offset += usb_fields::DescriptorLength(rest, context);
    }
    usb_fields::ReadFields(std::span(place.part->bytes).subspan(place.offset), context,
                           [&](usb_fields::FieldValue const& read) {
                             if (read.field->name == name && read.index == wanted) {
                               at = read.offset;
                               size = read.size;
                             }
                           });
  }
  if (size == 0 || place.offset + at + size > place.part->bytes.size()) {
    Fail("no such field", field);
  }
  for (std::size_t i = 0; i < size; ++i) {
    place.part->bytes[place.offset + at + i] =
        static_cast<std::uint8_t>(i < 8 ? value >> 8 * i & 0xFF : 0);
  }
}

void Sample::Change(std::string_view change) {
  while (!Trim(change).empty()) {
    std::string_view const one = change.substr(0, change.find(';'));
    ChangeOne(Trim(one));
    change.remove_prefix(std::min(change.size(), one.size() + 1));
  }
}

void Sample::ChangeOne(std::string_view change) {
  std::string_view rest = change;
  std::string_view const verb = TakeWord(rest);
  auto const assigned = [&] {
    std::size_t const mark = rest.find('=', rest.starts_with("type=") ? 5 : 0);
    if (mark == std::string_view::npos) {
      Fail("'=' is missing", change);
    }
    std::string_view const value = Trim(rest.substr(mark + 1));
    rest = Trim(rest.substr(0, mark));
    return value;
  };
  auto const iterator = [](Place const& place, std::size_t at) {
    return place.part->bytes.begin() + static_cast<std::ptrdiff_t>(place.offset + at);
  };
  if (verb == "speed") {
    speed_ = SpeedOf(rest);
  } else if (verb == "set") {
    std::string_view const value = assigned();
    std::string_view const where = TakeWord(rest);
    SetField(Find(where), rest, Hex(value));
  } else if (verb == "remove") {
    Place const place = Find(rest);
    place.part->bytes.erase(iterator(place, 0), iterator(place, place.length));
    Resize(*place.part, -static_cast<std::ptrdiff_t>(place.length));
  } else if (verb == "copy" || verb == "after") {
    std::size_t const mark = rest.find(": ");
    Place const place = Find(Trim(rest.substr(0, mark)));
    Bytes const bytes = verb == "after" ? BytesOf(rest.substr(mark + 1))
                                        : Bytes(iterator(place, 0), iterator(place, place.length));
    place.part->bytes.insert(iterator(place, place.length), bytes.begin(), bytes.end());
    Resize(*place.part, static_cast<std::ptrdiff_t>(bytes.size()));
  } else if (verb == "swap") {
    Place const place = Find(rest);
    if (place.offset + place.length >= place.part->bytes.size()) {
      Fail("nothing comes after it", rest);
    }
    std::size_t const next = place.part->bytes[place.offset + place.length];
    if (place.offset + place.length + next > place.part->bytes.size()) {
      Fail("what comes after it is not whole", rest);
    }
    std::rotate(iterator(place, 0), iterator(place, place.length),
                iterator(place, place.length + next));
  } else if (verb == "drop") {
    std::string_view const kind = TakeWord(rest);
    unsigned const index = rest.empty() ? 0 : static_cast<unsigned>(Hex(rest));
    PartOf(kind, index);
    std::erase_if(parts_,
                  [&](Part const& part) { return part.kind == kind && part.index == index; });
  } else if (verb == "string") {
    std::string_view const value = assigned();
    auto const index = static_cast<unsigned>(Hex(rest));
    PartOf("string", index).bytes = StringBytes(Unquote(value));
  } else if (verb == "languages") {
    PartOf("string", 0).bytes = LanguageBytes(assigned());
  } else if (verb == "report") {
    std::string_view const value = assigned();
    PartOf("report", static_cast<unsigned>(Hex(rest))).bytes = BytesOf(value);
  } else if (verb == "bytes") {
    std::string_view const value = assigned();
    std::string_view const kind = TakeWord(rest);
    unsigned const index = rest.empty() ? 0 : static_cast<unsigned>(Hex(rest));
    PartOf(kind, index).bytes = BytesOf(value);
  } else if (verb == "add") {
    std::string_view const value = assigned();
    auto const same = std::ranges::count(parts_, rest, &Part::kind);
    parts_.push_back({std::string(rest), static_cast<unsigned>(same), BytesOf(value)});
  } else {
    Fail("not a change", change);
  }
}

Subject const& Sample::Get() {
  subject_ = {};
  configurations_.clear();
  others_.clear();
  strings_.clear();
  reports_.clear();
  blocks_.clear();
  Run* const runs[] = {&subject_.device, &subject_.qualifier, &subject_.bos, &subject_.hub};
  for (Run* const run : runs) {
    run->presence = Presence::kRefused;
  }
  for (Part const& part : parts_) {
    Run const run{.bytes = part.bytes, .presence = Presence::kGiven, .origin = name_};
    if (part.kind == "device") {
      subject_.device = run;
    } else if (part.kind == "qualifier") {
      subject_.qualifier = run;
    } else if (part.kind == "bos") {
      subject_.bos = run;
    } else if (part.kind == "hub") {
      subject_.hub = run;
    } else if (part.kind == "configuration") {
      configurations_.push_back(run);
    } else if (part.kind == "other") {
      others_.push_back(run);
    } else if (part.kind == "string") {
      strings_.push_back({static_cast<std::uint8_t>(part.index), 0x0409, run});
    } else if (part.kind == "blocks") {
      blocks_.push_back({1, run});
    } else if (part.kind == "report") {
      reports_.push_back({static_cast<std::uint8_t>(part.index), run});
    } else {
      Fail("not a section", part.kind);
    }
  }
  subject_.configurations = configurations_;
  subject_.configurationsPresence = Presence::kGiven;
  subject_.otherSpeedConfigurations = others_;
  subject_.otherSpeed = others_.empty() ? Presence::kRefused : Presence::kGiven;
  subject_.strings = strings_;
  subject_.stringsPresence = strings_.empty() ? Presence::kRefused : Presence::kGiven;
  subject_.reports = reports_;
  subject_.groupTerminalBlocks = blocks_;
  subject_.speed = speed_;
  return subject_;
}

std::vector<Sample> const& AllSamples() {
  static std::vector<Sample> const samples = [] {
    std::vector<std::string> paths;
    for (auto const& entry : std::filesystem::directory_iterator(USB_RULES_SAMPLES)) {
      if (entry.path().extension() == ".dev") {
        paths.push_back(entry.path().string());
      }
    }
    std::ranges::sort(paths);
    std::vector<Sample> read;
    read.reserve(paths.size());
    for (std::string const& path : paths) {
      read.push_back(Sample::Read(path));
    }
    return read;
  }();
  return samples;
}

Sample const& SampleOf(std::string_view name) {
  for (Sample const& sample : AllSamples()) {
    if (sample.Name() == name) {
      return sample;
    }
  }
  Fail("no such sample", name);
}

}  // namespace usb_rules::test

#include <usb_devices/lsusb_reader.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <utility>

#include <usb_devices/characters.h>
#include <usb_devices/read_error.h>

namespace usb_devices {
namespace {

constexpr std::size_t kMostNotes = 1000;
constexpr std::size_t kMostDevices = 10000;
constexpr std::string_view kSpaces = " \t";

std::string_view Trimmed(std::string_view text) {
  std::size_t const first = std::min(text.find_first_not_of(kSpaces), text.size());
  return text.substr(first, text.find_last_not_of(kSpaces) + 1 - first);
}

std::string_view FirstWord(std::string_view text) {
  return text.substr(0, text.find_first_of(kSpaces));
}

bool IsUpper(char c) {
  return c >= 'A' && c <= 'Z';
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsWordCharacter(char c) {
  return IsDigit(c) || IsUpper(c) || (c >= 'a' && c <= 'z');
}

// "bLength   9", "baSourceID( 0)   1", "bmControls( 1)   0x00": a name and the text after it.
struct FieldLine {
  std::string_view name;
  std::string_view text;
  bool isIndexed = false;
};

FieldLine Split(std::string_view line) {
  auto const end = std::find_if_not(line.begin(), line.end(), IsWordCharacter);
  auto size = static_cast<std::size_t>(end - line.begin());
  FieldLine field{line.substr(0, size), {}, false};
  if (size < line.size() && line[size] == '.') {
    ++size;  // "bNumDataRatesSupp."
  }
  if (size < line.size() && (line[size] == '(' || line[size] == '[')) {
    size = std::min(line.find_first_of(")]", size), line.size() - 1) + 1;
    field.isIndexed = true;
  }
  field.text = Trimmed(line.substr(size));
  return field;
}

// The number of bytes of a field by its name: 0 when it depends on the printed value, -1 when it is
// not a field.
struct NamedSize {
  std::string_view name;
  int size;
};
constexpr NamedSize kSizes[] = {
    {"bU2DevExitLat", 2},  // wU2DevExitLat
    {"ContainerID", 16},    {"PlatformCapabilityUUID", 16}, {"CapabilityData", 1},
    {"DeviceRemovable", 0}, {"PortPwrCtrlMask", 0},
};
// The prefixes of the standards' names; a capital letter follows them.
constexpr NamedSize kPrefixes[] = {
    {"bcd", 2}, {"bma", 0}, {"bm", 0}, {"ba", 1}, {"Ba", 1}, {"b", 1},     {"id", 2},
    {"i", 1},   {"dw", 4},  {"d", 4},  {"w", 2},  {"t", 3},  {"guid", 16}, {"n", 1},
};

int SizeOf(std::string_view name) {
  for (NamedSize const& known : kSizes) {
    if (known.name == name) {
      return known.size;
    }
  }
  for (NamedSize const& prefix : kPrefixes) {
    if (name.size() > prefix.name.size() && name.starts_with(prefix.name) &&
        IsUpper(name[prefix.name.size()])) {
      return prefix.size;
    }
  }
  return -1;
}

Bytes LittleEndian(std::uint64_t number, std::size_t size) {
  Bytes bytes;
  for (std::size_t i = 0; i < size; ++i) {
    bytes.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
  }
  return bytes;
}

// A number within `size` bytes.
std::optional<Bytes> Fitting(std::optional<std::uint64_t> number, std::size_t size) {
  if (!number || size == 0 || size > 8 || (size < 8 && *number >> (8 * size) != 0)) {
    return std::nullopt;
  }
  return LittleEndian(*number, size);
}

// "2.10", as lsusb prints two bytes in hexadecimal.
std::optional<Bytes> Release(std::string_view text) {
  std::size_t const dot = text.find('.');
  if (dot == std::string_view::npos || text.size() != dot + 3) {
    return std::nullopt;
  }
  std::optional<std::uint64_t> const high = NumberOf(text.substr(0, dot), 16, 0xFF);
  std::optional<std::uint64_t> const low = NumberOf(text.substr(dot + 1), 16, 0xFF);
  return high && low ? std::optional(LittleEndian(*high << 8 | *low, 2)) : std::nullopt;
}

// "48.000000MHz" in hertz.
std::optional<std::uint64_t> Megahertz(std::string_view text) {
  std::size_t const dot = text.find('.');
  if (dot == std::string_view::npos || text.substr(std::min(dot + 7, text.size())) != "MHz") {
    return std::nullopt;
  }
  std::string const digits =
      std::string(text.substr(0, dot)) + std::string(text.substr(dot + 1, 6));
  return NumberOf(digits, 10, 0xFFFFFFFF);
}

// "{32595559-0000-0010-8000-00aa00389b71}": usbutils 014 prints the first three groups as numbers,
// whose lowest byte is first; earlier ones print byte by byte.
std::optional<Bytes> Guid(std::string_view text, bool isSwapped) {
  if (text.size() != 38 || text.front() != '{' || text.back() != '}') {
    return std::nullopt;
  }
  Bytes bytes;
  for (std::size_t at = 1; at + 2 < text.size();) {
    if (at == 9 || at == 14 || at == 19 || at == 24) {
      if (text[at++] != '-') {
        return std::nullopt;
      }
    }
    std::optional<std::uint64_t> const byte = NumberOf(text.substr(at, 2), 16, 0xFF);
    if (!byte) {
      return std::nullopt;
    }
    bytes.push_back(static_cast<std::uint8_t>(*byte));
    at += 2;
  }
  if (isSwapped) {
    std::reverse(bytes.begin(), bytes.begin() + 4);
    std::reverse(bytes.begin() + 4, bytes.begin() + 6);
    std::reverse(bytes.begin() + 6, bytes.begin() + 8);
  }
  return bytes;
}

// "05 24 00", "0x05 0x24".
std::optional<Bytes> ListOf(std::string_view text) {
  Bytes bytes;
  while (!text.empty()) {
    std::string_view word = FirstWord(text);
    text = Trimmed(text.substr(word.size()));
    word.remove_prefix(word.starts_with("0x") ? 2 : 0);
    std::optional<std::uint64_t> const byte = NumberOf(word, 16, 0xFF);
    if (!byte) {
      return std::nullopt;
    }
    bytes.push_back(static_cast<std::uint8_t>(*byte));
  }
  return bytes;
}

// The bytes of a field; `size` 0 means as many as the printed digits.
std::optional<Bytes> ValueOf(std::string_view text, std::size_t size) {
  std::string_view const word = FirstWord(text);
  bool const isPrefixed = word.starts_with("0x");
  // usbutils prints some bit maps as digits only, and those with leading zeros.
  if (isPrefixed || (word.size() > 1 && word.starts_with('0'))) {
    std::string_view const digits = word.substr(isPrefixed ? 2 : 0);
    return Fitting(NumberOf(digits, 16, ~std::uint64_t{0}),
                   size != 0 ? size : (digits.size() + 1) / 2);
  }
  auto const end = std::find_if_not(word.begin(), word.end(), IsDigit);
  std::string_view const unit = word.substr(static_cast<std::size_t>(end - word.begin()));
  if (unit.find_first_of(".-") != std::string_view::npos) {
    return Fitting(Megahertz(word), size);
  }
  return Fitting(NumberOf(word.substr(0, word.size() - unit.size()), 10, ~std::uint64_t{0}),
                 size != 0 ? size : 1);
}

// Functional descriptors of communications devices, whose first three bytes are not listed: their
// subtypes (CDC 1.2, table 13, and the subclasses' own).
struct FunctionName {
  std::string_view title;
  std::uint8_t subtype;
};
constexpr FunctionName kFunctions[] = {
    {"CDC Header", 0x00},        {"CDC Call Management", 0x01},
    {"CDC ACM", 0x02},           {"CDC Union", 0x06},
    {"CDC Ethernet", 0x0F},      {"CDC WHCM", 0x11},
    {"CDC MDLM", 0x12},          {"CDC OBEX", 0x15},
    {"CDC NCM", 0x1A},           {"CDC MBIM", 0x1B},
    {"CDC MBIM Extended", 0x1C},
};

// Names of HID items and the prefix byte without the size (HID 1.11, 6.2.2).
struct ItemName {
  std::string_view name;
  std::uint8_t prefix;
};
constexpr ItemName kItems[] = {
    {"Input", 0x80},
    {"Output", 0x90},
    {"Feature", 0xB0},
    {"Collection", 0xA0},
    {"End Collection", 0xC0},
    {"Usage Page", 0x04},
    {"Logical Minimum", 0x14},
    {"Logical Maximum", 0x24},
    {"Physical Minimum", 0x34},
    {"Physical Maximum", 0x44},
    {"Unit Exponent", 0x54},
    {"Unit", 0x64},
    {"Report Size", 0x74},
    {"Report ID", 0x84},
    {"Report Count", 0x94},
    {"Push", 0xA4},
    {"Pop", 0xB4},
    {"Usage", 0x08},
    {"Usage Minimum", 0x18},
    {"Usage Maximum", 0x28},
    {"Designator Index", 0x38},
    {"Designator Minimum", 0x48},
    {"Designator Maximum", 0x58},
    {"String Index", 0x78},
    {"String Minimum", 0x88},
    {"String Maximum", 0x98},
    {"Set Delimiter", 0xA8},
    {"Delimiter", 0xA8},
};

// "Item(Global): Usage Page, data= [ 0x01 ] 1"
std::optional<Bytes> ItemOf(std::string_view line) {
  std::size_t const name = line.find("): ");
  std::size_t const data = line.find(", data=");
  if (name == std::string_view::npos || data == std::string_view::npos || name + 3 > data) {
    return std::nullopt;
  }
  auto const item = std::find_if(std::begin(kItems), std::end(kItems), [&](ItemName const& known) {
    return known.name == line.substr(name + 3, data - name - 3);
  });
  std::optional<Bytes> bytes = Bytes();
  std::size_t const open = line.find('[', data);
  if (open != std::string_view::npos) {
    std::size_t const close = std::min(line.find(']', open), line.size());
    bytes = ListOf(Trimmed(line.substr(open + 1, close - open - 1)));
  }
  if (item == std::end(kItems) || !bytes || bytes->size() == 3 || bytes->size() > 4) {
    return std::nullopt;
  }
  std::size_t const code = bytes->size() == 4 ? 3 : bytes->size();
  bytes->insert(bytes->begin(), static_cast<std::uint8_t>(item->prefix | code));
  return bytes;
}

// The two forms of the last groups of a UUID that media formats share.
constexpr std::string_view kSwappedEnd = "-0010-8000-00aa00389b71}";
constexpr std::string_view kPlainEnd = "-1000-8000-00aa00389b71}";

class LsusbReader {
 public:
  LsusbReader(std::string_view text, std::string name)
      : text_(text),
        name_(std::move(name)),
        isSwapped_(text.find(kPlainEnd) == std::string_view::npos),
        isOrderKnown_(!isSwapped_ || text.find(kSwappedEnd) != std::string_view::npos) {}

  LsusbReading Read() {
    while (!text_.empty()) {
      std::string_view const line = text_.substr(0, text_.find_first_of("\r\n"));
      ++line_;
      ReadLine(Trimmed(line));
      text_.remove_prefix(line.size());
      text_.remove_prefix(text_.starts_with("\r\n") ? 2 : text_.empty() ? 0 : 1);
    }
    EndDevice();
    if (reading_.devices.empty()) {
      throw ReadError(name_, reading_.notes.empty()
                                 ? R"(holds no descriptors, expected those of "lsusb -v")"
                                 : reading_.notes.front());
    }
    return std::move(reading_);
  }

 private:
  struct Descriptor {
    std::uint64_t line = 0;
    std::string title;
    Bytes bytes;
    std::size_t length = 0;
    std::size_t controlSize = 0;
    std::string fault;
    bool isWarned = false;  // lsusb has read past its end
  };
  // A requested descriptor, with those that come with it.
  struct Set {
    std::uint64_t line = 0;
    Request request;
    Bytes bytes;
    bool isFaulty = false;
  };
  struct Report {
    std::uint64_t line = 0;
    std::size_t length = 0;
    Bytes bytes;
    bool isFaulty = false;
  };

  void ReadLine(std::string_view line) {
    FieldLine const field = Split(line);
    if (BeginsDevice(line)) {
      EndDevice();
      deviceName_ = NameOf(line);
    } else if (field.name == "bLength") {
      EndDescriptor();
      descriptor_ = Descriptor{line_, title_, {}, 0, 0, {}, false};
      AddField(field, 1);
      descriptor_->length = ByteCursor(descriptor_->bytes).Peek();
    } else if (line == "Warning: Descriptor too short" && descriptor_) {
      descriptor_->isWarned = true;
    } else if (field.name == "bMaxBurst" && IsEndpoint()) {
      EndDescriptor();
      AddNote(line_, "SuperSpeed endpoint companion is refused: the listing has not all fields");
      FailSet();
    } else if (line.starts_with("Item(")) {
      AddItem(line);
    } else if (line.starts_with("Report Descriptor:")) {
      EndReport();
      std::size_t const number = line.find("length is ");
      std::string_view const digits =
          number == std::string_view::npos ? "" : line.substr(number + 10);
      report_ = Report{line_,
                       NumberOf(digits.substr(0, digits.find(')')), 10, kMaxAnswerSize).value_or(0),
                       {},
                       false};
    } else if (line.starts_with("** UNRECOGNIZED") || line.starts_with("UNRECOGNIZED CDC") ||
               line.starts_with("INVALID CDC")) {
      AddUnrecognised(line);
    } else if (line.starts_with("junk at descriptor end:")) {
      AddBytes(ListOf(Trimmed(line.substr(line.find(':') + 1))), line);
    } else if (int const size = SizeOf(field.name); size >= 0) {
      AddField(field, static_cast<std::size_t>(size));
    } else if (field.name == "MaxPower") {
      AddPower(field);
    } else if (line.ends_with(':')) {
      title_ = line.substr(0, line.size() - 1);
      BeginFunction();
    }
  }

  void BeginFunction() {
    auto const function =
        std::find_if(std::begin(kFunctions), std::end(kFunctions),
                     [this](FunctionName const& known) { return known.title == title_; });
    if (function != std::end(kFunctions) || title_.ends_with("Descriptor")) {
      EndDescriptor();
    }
    if (function != std::end(kFunctions)) {
      descriptor_ =
          Descriptor{line_, title_, {0, kClassInterfaceType, function->subtype}, 0, 0, {}, false};
    }
  }

  // lsusb shows the companion of an endpoint without a header.
  bool IsEndpoint() const {
    return descriptor_ && ByteCursor(descriptor_->bytes).Peek(1) == kEndpointType;
  }

  void FailSet() {
    if (set_) {
      set_->isFaulty = true;
    }
  }

  static bool BeginsDevice(std::string_view line) {
    return line.starts_with("Bus ") && line.find(": ID ") != std::string_view::npos;
  }

  // "Bus 001 Device 002: ID 046d:0825 Logitech" is "1.2".
  static std::string NameOf(std::string_view line) {
    std::string_view const bus = FirstWord(line.substr(4));
    std::size_t const device = line.find("Device ");
    if (device == std::string_view::npos) {
      return {};
    }
    std::string_view const address = line.substr(device + 7, line.find(':') - device - 7);
    std::optional<std::uint64_t> const busNumber = NumberOf(bus, 10, 999);
    std::optional<std::uint64_t> const addressNumber = NumberOf(address, 10, 999);
    return busNumber && addressNumber
               ? std::to_string(*busNumber) + '.' + std::to_string(*addressNumber)
               : std::string();
  }

  void AddField(FieldLine const& field, std::size_t size) {
    if (!descriptor_) {
      return;
    }
    if (field.name == "DeviceRemovable" || field.name == "PortPwrCtrlMask") {
      AddBytes(ListOf(field.text), field.name);
    } else if (field.text.starts_with('{')) {
      AddGuid(field);
    } else if (field.name.starts_with("bcd")) {
      AddBytes(Release(FirstWord(field.text)), field.name);
    } else {
      // Their width is in an earlier field, whatever is printed; the list of video has one byte per
      // line.
      bool const isControls =
          (field.name == "bmControls" && !field.isIndexed) || field.name == "bmaControls";
      std::size_t const width =
          isControls && descriptor_->controlSize != 0 ? descriptor_->controlSize : size;
      AddBytes(ValueOf(field.text, width), field.name);
    }
    if (field.name == "bControlSize") {
      descriptor_->controlSize = ByteCursor(descriptor_->bytes).Peek(descriptor_->bytes.size() - 1);
    }
  }

  void AddGuid(FieldLine const& field) {
    AddBytes(Guid(FirstWord(field.text), isSwapped_), field.name);
    if (!isOrderKnown_) {
      AddNote(
          line_,
          std::string(field.name) +
              ": taken as usbutils 014 prints it; earlier ones print its bytes in another order");
    }
  }

  // Shown in milliamperes: units of 2, and of 8 since USB 3.0 (USB 3.2, table 9-24).
  void AddPower(FieldLine const& field) {
    std::uint64_t const unit = release_ >= 0x0300 ? 8 : 2;
    std::string_view const word = FirstWord(field.text);
    std::optional<std::uint64_t> const power =
        word.ends_with("mA") ? NumberOf(word.substr(0, word.size() - 2), 10, 255 * unit)
                             : std::nullopt;
    AddBytes(power && *power % unit == 0 ? Fitting(*power / unit, 1) : std::nullopt, field.name);
  }

  // "** UNRECOGNIZED:  05 24 00 10 01" is a whole descriptor.
  void AddUnrecognised(std::string_view line) {
    EndDescriptor();
    descriptor_ = Descriptor{line_, "unrecognised descriptor", {}, 0, 0, {}, false};
    std::size_t const colon = std::min(line.find(':'), line.size() - 1);
    AddBytes(ListOf(Trimmed(line.substr(colon + 1))), line.substr(0, colon));
    descriptor_->length = descriptor_->bytes.size();
  }

  void AddBytes(std::optional<Bytes> const& bytes, std::string_view field) {
    if (!descriptor_) {
      return;
    }
    if (!bytes && descriptor_->fault.empty()) {
      descriptor_->fault =
          "line " + std::to_string(line_) + " has no value that fits " + std::string(field);
    } else if (bytes && descriptor_->bytes.size() <= kMaxAnswerSize) {
      descriptor_->bytes.insert(descriptor_->bytes.end(), bytes->begin(), bytes->end());
    }
  }

  void AddItem(std::string_view line) {
    if (!report_) {
      return;
    }
    std::optional<Bytes> const item = ItemOf(line);
    report_->isFaulty = report_->isFaulty || !item || report_->bytes.size() > kMaxAnswerSize;
    if (!report_->isFaulty) {
      report_->bytes.insert(report_->bytes.end(), item->begin(), item->end());
    }
  }

  void EndReport() {
    std::optional<Report> const report = std::exchange(report_, std::nullopt);
    if (!report || report->length == 0 || (report->bytes.empty() && !report->isFaulty)) {
      return;
    }
    if (report->isFaulty || report->bytes.size() != report->length) {
      AddNote(report->line, "the HID report descriptor is refused: its items are not the " +
                                std::to_string(report->length) + " bytes that it has");
    } else {
      device_.Add({Request::HidReport(interfaceNumber_),
                   Outcome::kAnswered,
                   report->bytes,
                   {name_, 0, report->line, 0},
                   {}});
    }
  }

  void EndDescriptor() {
    EndReport();
    std::optional<Descriptor> descriptor = std::exchange(descriptor_, std::nullopt);
    if (!descriptor) {
      return;
    }
    if (descriptor->length == 0 && !descriptor->bytes.empty() && descriptor->bytes.size() < 256) {
      // Its length is not listed. The length of the configuration shows whether it is right.
      descriptor->length = descriptor->bytes.size();
      descriptor->bytes.front() = static_cast<std::uint8_t>(descriptor->length);
    }
    ByteCursor at(descriptor->bytes);
    std::uint8_t const type = at.Peek(1);
    if (std::optional<Request> const request = RequestOf(type)) {
      EndSet();
      set_ = Set{descriptor->line, *request, {}, false};
    }
    if (descriptor->isWarned && descriptor->bytes.size() > descriptor->length) {
      descriptor->bytes.resize(descriptor->length);
    }
    std::string fault = descriptor->fault;
    if (fault.empty() && descriptor->bytes.size() != descriptor->length) {
      fault = "the listing has " + std::to_string(descriptor->bytes.size()) + " of its " +
              std::to_string(descriptor->length) + " bytes";
    }
    if (fault.empty() && !set_) {
      fault = "it is outside of a configuration or BOS";
    }
    if (!fault.empty()) {
      AddNote(descriptor->line, (descriptor->title.empty() ? "descriptor" : descriptor->title) +
                                    " is refused: " + fault);
      FailSet();
      return;
    }
    if (type == kDeviceType) {
      at.Skip(2);
      release_ = at.Little16();
    } else if (type == kInterfaceType) {
      interfaceNumber_ = at.Peek(2);
    }
    set_->isFaulty = set_->isFaulty || set_->bytes.size() > kMaxAnswerSize;
    if (!set_->isFaulty) {
      set_->bytes.insert(set_->bytes.end(), descriptor->bytes.begin(), descriptor->bytes.end());
    }
    if (!IsChain(set_->request.Type())) {
      EndSet();
    }
  }

  // The request for a descriptor that does not come with another.
  std::optional<Request> RequestOf(std::uint8_t type) const {
    switch (type) {
      case kDeviceType:
      case kQualifierType:
      case kBosType:
        return Request::Descriptor(type);
      case kHubType:
      case kSuperSpeedHubType:
        return Request::Hub(type);
      case kConfigurationType:
      case kOtherSpeedConfigurationType:
        return Request::Descriptor(
            type, type == kConfigurationType ? configurations_ : otherSpeedConfigurations_);
      default:
        return std::nullopt;
    }
  }

  static bool IsChain(std::uint8_t type) {
    return type == kConfigurationType || type == kOtherSpeedConfigurationType || type == kBosType;
  }

  void EndSet() {
    std::optional<Set> set = std::exchange(set_, std::nullopt);
    if (!set) {
      return;
    }
    std::uint8_t const type = set->request.Type();
    std::uint8_t& next = type == kConfigurationType ? configurations_ : otherSpeedConfigurations_;
    if (IsChain(type) && type != kBosType && next < 255) {
      ++next;
    }
    ByteCursor at(set->bytes);
    at.Skip(2);
    std::uint16_t const announced = at.Little16();
    if (set->isFaulty) {
      if (IsChain(type)) {
        AddNote(set->line,
                usb_devices::NameOf(set->request) + " is refused with the descriptors in it");
      }
    } else if (IsChain(type) && announced != set->bytes.size()) {
      AddNote(set->line, usb_devices::NameOf(set->request) + " is refused: the listing has " +
                             std::to_string(set->bytes.size()) + " bytes, and it announces " +
                             std::to_string(announced));
    } else {
      device_.Add(
          {set->request, Outcome::kAnswered, std::move(set->bytes), {name_, 0, set->line, 0}, {}});
    }
  }

  void EndDevice() {
    EndDescriptor();
    EndSet();
    if (!device_.IsEmpty()) {
      if (reading_.devices.size() == kMostDevices) {
        throw ReadError(name_, "line " + std::to_string(line_) + ": more than 10,000 devices");
      }
      device_.SetName(deviceName_);
      reading_.devices.push_back(device_.Build());
    }
    deviceName_.clear();
    release_ = 0;
    configurations_ = 0;
    otherSpeedConfigurations_ = 0;
  }

  void AddNote(std::uint64_t line, std::string const& note) {
    if (reading_.notes.size() < kMostNotes) {
      reading_.notes.push_back(Harmless("line " + std::to_string(line) + ": " + note));
    }
  }

  std::string_view text_;
  std::string name_;
  bool isSwapped_;
  bool isOrderKnown_;
  std::uint64_t line_ = 0;
  std::string title_;
  std::optional<Descriptor> descriptor_;
  std::optional<Set> set_;
  std::optional<Report> report_;
  DeviceBuilder device_;
  std::string deviceName_;
  std::uint16_t release_ = 0;
  std::uint8_t interfaceNumber_ = 0;
  std::uint8_t configurations_ = 0;
  std::uint8_t otherSpeedConfigurations_ = 0;
  LsusbReading reading_;
};

}  // namespace

bool LooksLikeLsusb(std::string_view line) noexcept {
  std::string_view const text = Trimmed(line);
  return text == "Device Descriptor:" || text == "Configuration Descriptor:" ||
         text == "Binary Object Store Descriptor:" ||
         (text.starts_with("Bus ") && text.find(": ID ") != std::string_view::npos);
}

LsusbReading ReadLsusb(std::string_view text, std::string const& name) {
  return LsusbReader(text, name).Read();
}

}  // namespace usb_devices

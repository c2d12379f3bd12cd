#include <usb_devices/folder.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <system_error>
#include <utility>

#include <usb_devices/files.h>
#include <usb_devices/listing_writer.h>
#include <usb_devices/read_error.h>
#include <usb_devices/runs.h>
#include <usb_devices/text_reader.h>

namespace usb_devices {
namespace {

namespace fs = std::filesystem;

// Enough for the strings of 126 languages with 255 indexes each.
constexpr std::size_t kMostFiles = 40000;
constexpr SizeLimit kRunLimit{kMaxRunSize, "1 MiB of descriptors"};
constexpr SizeLimit kAnswerLimit{kMaxAnswerSize, "65,535 bytes, the most of one answer"};
constexpr SizeLimit kValueLimit{256, "256 bytes, the most of a value"};
constexpr SizeLimit kOutcomeFileLimit{std::size_t{16} << 20, "16 MiB of text"};

constexpr std::string_view kBin = ".bin";
constexpr std::string_view kStrings = "strings/";
constexpr std::string_view kOutcomeFile = "device.txt";

// Files with the parts of a run (runs.h).
constexpr std::string_view kRunFiles[] = {"descriptors", "config", "other_speed_config"};

struct NamedRequest {
  std::string_view name;
  Request request;
};
constexpr NamedRequest kFiles[] = {
    {"device", Request::Descriptor(kDeviceType)},
    {"qualifier", Request::Descriptor(kQualifierType)},
    {"bos", Request::Descriptor(kBosType)},
    {"hub", Request::Hub(kHubType)},
    {"superspeed_hub", Request::Hub(kSuperSpeedHubType)},
};

// A request whose file name ends in a number, up to `most`.
struct NumberedRequest {
  std::string_view name;
  std::uint64_t most;
  Request (*request)(std::uint16_t number);
};
constexpr NumberedRequest kNumberedFiles[] = {
    {"config_", 255,
     [](std::uint16_t number) {
       return Request::Descriptor(kConfigurationType, static_cast<std::uint8_t>(number));
     }},
    {"other_speed_config_", 255,
     [](std::uint16_t number) {
       return Request::Descriptor(kOtherSpeedConfigurationType, static_cast<std::uint8_t>(number));
     }},
    {"hid_report_", 255,
     [](std::uint16_t number) { return Request::HidReport(static_cast<std::uint8_t>(number)); }},
    {"other_", 65535, [](std::uint16_t number) { return Request::Unknown(number); }},
};

// A number as the layout writes it, so that two names never mean the same request.
std::optional<std::uint16_t> PlainNumber(std::string_view digits, std::uint64_t most) {
  std::optional<std::uint64_t> const number = NumberOf(digits, 10, most);
  bool const isPlain = digits == "0" || !digits.starts_with('0');
  return number && isPlain ? std::optional(static_cast<std::uint16_t>(*number)) : std::nullopt;
}

std::optional<Request> StringOf(std::string_view name) {
  std::size_t const dash = name.find('-');
  if (dash == std::string_view::npos || name.size() != dash + 5) {
    return std::nullopt;
  }
  std::optional<std::uint16_t> const index = PlainNumber(name.substr(0, dash), 255);
  std::optional<std::uint64_t> const language = NumberOf(name.substr(dash + 1), 16, 0xFFFF);
  if (!index || !language) {
    return std::nullopt;
  }
  return Request::String(static_cast<std::uint8_t>(*index), static_cast<std::uint16_t>(*language));
}

// "request_8006000F0000": the SETUP packet without its length, byte by byte.
std::optional<Request> SetupOf(std::string_view name) {
  constexpr std::string_view kPrefix = "request_";
  if (!name.starts_with(kPrefix) || name.size() != kPrefix.size() + 12) {
    return std::nullopt;
  }
  std::optional<std::uint64_t> const setup = NumberOf(name.substr(kPrefix.size()), 16, ~0ULL);
  if (!setup) {
    return std::nullopt;
  }
  auto const byte = [&setup](int at) {
    return static_cast<std::uint8_t>(*setup >> (8 * (5 - at)));
  };
  return Request{byte(0), byte(1), static_cast<std::uint16_t>(byte(2) | byte(3) << 8),
                 static_cast<std::uint16_t>(byte(4) | byte(5) << 8)};
}

// The request that a file of the layout answers; `name` is without its ending.
std::optional<Request> RequestOf(std::string_view name) {
  if (name.starts_with(kStrings)) {
    return StringOf(name.substr(kStrings.size()));
  }
  for (NamedRequest const& file : kFiles) {
    if (file.name == name) {
      return file.request;
    }
  }
  for (NumberedRequest const& file : kNumberedFiles) {
    if (name.starts_with(file.name)) {
      std::optional<std::uint16_t> const number =
          PlainNumber(name.substr(file.name.size()), file.most);
      return number ? std::optional(file.request(*number)) : std::nullopt;
    }
  }
  return SetupOf(name);
}

// The name of the file for a request, without its ending.
std::string FileNameOf(Request const& request) {
  for (NamedRequest const& file : kFiles) {
    if (file.request == request) {
      return std::string(file.name);
    }
  }
  if (request.IsString()) {
    return std::string(kStrings) + std::to_string(request.Index()) + '-' +
           Hexadecimal(request.index, 4);
  }
  for (NumberedRequest const& file : kNumberedFiles) {
    std::uint16_t const number = request.IsOfInterface() ? request.index
                                 : request.IsKnown()     ? request.Index()
                                                         : request.value;
    if (number <= file.most && file.request(number) == request) {
      return std::string(file.name) + std::to_string(number);
    }
  }
  return "request_" + Hexadecimal(request.requestType, 2) + Hexadecimal(request.request, 2) +
         Hexadecimal(request.Index(), 2) + Hexadecimal(request.Type(), 2) +
         Hexadecimal(request.index & 0xFF, 2) + Hexadecimal(request.index >> 8, 2);
}

[[noreturn]] void Fail(fs::path const& path, std::string const& what,
                       std::error_code const& error = {}) {
  throw ReadError(NameOf(path), error ? what + ": " + error.message() : what);
}

// The contents of a folder, sorted by name.
std::map<std::string, fs::directory_entry> EntriesOf(fs::path const& folder) {
  std::map<std::string, fs::directory_entry> entries;
  std::error_code error;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    entries.emplace(NameOf(it->path().filename()), *it);
    if (entries.size() > kMostFiles) {
      Fail(folder, "holds more than 40,000 files, expected the folder of one device");
    }
  }
  if (error) {
    Fail(folder, "cannot be read", error);
  }
  return entries;
}

bool IsFile(fs::path const& path) {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored);
}

// The content of a file that may be missing.
std::optional<std::string> ContentOf(fs::path const& path, SizeLimit const& limit) {
  std::error_code error;
  fs::file_status const status = fs::status(path, error);
  if (status.type() == fs::file_type::not_found) {
    return std::nullopt;
  }
  // A pipe would block the reader, and a device file may never end.
  if (status.type() != fs::file_type::regular) {
    Fail(path, "is not a regular file", error);
  }
  return ReadFile(NameOf(path), limit);
}

class FolderReader {
 public:
  explicit FolderReader(std::string const& name) : folder_(PathOf(name)) {}

  Device Read() {
    std::map<std::string, fs::directory_entry> const entries = EntriesOf(folder_);
    device_.SetName(
        NameOf(fs::absolute(folder_ / ".").lexically_normal().parent_path().filename()));
    if (entries.contains("descriptors")) {
      ReadSysfs(entries);
    } else {
      ReadLayout(entries);
    }
    if (device_.IsEmpty()) {
      Fail(folder_, "holds no descriptors, expected a file such as descriptors.bin or bos.bin");
    }
    return device_.Build();
  }

 private:
  void ReadLayout(std::map<std::string, fs::directory_entry> const& entries) {
    for (std::string_view const name : kRunFiles) {
      AddRunFile(std::string(name) + std::string(kBin));
    }
    for (auto const& [name, entry] : entries) {
      AddFile(name);
    }
    if (entries.contains("strings")) {
      for (auto const& [name, entry] : EntriesOf(folder_ / "strings")) {
        AddFile(std::string(kStrings) + name);
      }
    }
    AddOutcomes();
  }

  void AddRunFile(std::string const& name) {
    if (std::optional<std::string> const content = ContentOf(folder_ / name, kRunLimit)) {
      AddRun(device_, BytesOf(*content), SourceOf(folder_ / name));
    }
  }

  void AddFile(std::string_view name) {
    if (!name.ends_with(kBin)) {
      return;
    }
    std::string_view const stem = name.substr(0, name.size() - kBin.size());
    if (std::find(std::begin(kRunFiles), std::end(kRunFiles), stem) != std::end(kRunFiles)) {
      return;
    }
    fs::path const path = folder_ / PathOf(name);
    std::optional<Request> const request = RequestOf(stem);
    if (!request) {
      Fail(path,
           "is not a name of a device's folder, expected one such as bos.bin, "
           "hid_report_0.bin or strings/2-0409.bin");
    }
    AddAnswer(*request, path);
  }

  void AddAnswer(Request const& request, fs::path const& path) {
    std::optional<std::string> const content = ContentOf(path, kAnswerLimit);
    if (content &&
        !device_.Add({request, Outcome::kAnswered, BytesOf(*content), SourceOf(path), {}})) {
      Fail(path,
           "is a second answer for " + NameOf(request) + ", which another file of the folder has");
    }
  }

  // Reads the speed and the requests that were not answered.
  void AddOutcomes() {
    fs::path const path = folder_ / kOutcomeFile;
    std::optional<std::string> const content = ContentOf(path, kOutcomeFileLimit);
    if (!content) {
      return;
    }
    std::string const name = NameOf(path);
    for (TextRun const& run : ReadText(*content, name, TextForm::kListing).runs) {
      if (run.beginsDevice) {
        device_.SetSpeed(*run.beginsDevice);
      } else if (!run.request || run.outcome == Outcome::kAnswered) {
        Fail(path, "line " + std::to_string(run.line) +
                       ": found bytes, expected a request that was not answered");
      } else if (!device_.Add({*run.request, run.outcome, {}, {name, 0, run.line, 0}, run.note})) {
        Fail(path,
             "line " + std::to_string(run.line) + ": a second answer for " + NameOf(*run.request));
      }
    }
  }

  void ReadSysfs(std::map<std::string, fs::directory_entry> const& entries) {
    AddRunFile("descriptors");
    AddAnswer(Request::Descriptor(kBosType), folder_ / "bos_descriptors");
    device_.SetSpeed(SysfsSpeed());
    for (auto const& [name, entry] : entries) {
      // "1-7:1.0" is an interface of the current configuration; a link leads elsewhere.
      std::error_code ignored;
      if (name.find(':') != std::string::npos && entry.is_directory(ignored) &&
          !entry.is_symlink(ignored)) {
        ReadSysfsInterface(entry.path());
      }
    }
  }

  void ReadSysfsInterface(fs::path const& folder) {
    std::optional<std::string> const text = ContentOf(folder / "bInterfaceNumber", kValueLimit);
    if (!text) {
      return;
    }
    std::optional<std::uint64_t> const number = NumberOf(Trimmed(*text), 16, 255);
    if (!number) {
      Fail(folder / "bInterfaceNumber",
           "found \"" + Trimmed(*text) + "\", expected two hexadecimal digits");
    }
    for (auto const& [name, entry] : EntriesOf(folder)) {
      std::error_code ignored;
      if (entry.is_directory(ignored) && !entry.is_symlink(ignored)) {
        fs::path const path = entry.path() / "report_descriptor";
        if (IsFile(path)) {
          AddAnswer(Request::HidReport(static_cast<std::uint8_t>(*number)), path);
        }
      }
    }
  }

  Speed SysfsSpeed() {
    constexpr std::pair<std::string_view, Speed> kSpeeds[] = {
        {"1.5", Speed::kLow},        {"12", Speed::kFull},         {"480", Speed::kHigh},
        {"5000", Speed::kSuper},     {"10000", Speed::kSuperPlus}, {"20000", Speed::kSuperPlus},
        {"unknown", Speed::kUnknown}};
    std::optional<std::string> const text = ContentOf(folder_ / "speed", kValueLimit);
    if (!text) {
      return Speed::kUnknown;
    }
    auto const found = std::find_if(std::begin(kSpeeds), std::end(kSpeeds), [&](auto const& speed) {
      return speed.first == Trimmed(*text);
    });
    if (found == std::end(kSpeeds)) {
      Fail(folder_ / "speed",
           "found \"" + Trimmed(*text) + "\", expected 1.5, 12, 480, 5000, 10000 or 20000");
    }
    return found->second;
  }

  static std::string Trimmed(std::string const& text) {
    return text.substr(0, text.find_last_not_of(" \r\n") + 1);
  }

  static Source SourceOf(fs::path const& path) { return {NameOf(path), 0, 0, 0}; }

  fs::path folder_;
  DeviceBuilder device_;
};

class FolderWriter {
 public:
  FolderWriter(Device const& device, std::string const& name)
      : device_(device),
        folder_(PathOf(name)) {}

  void Write() {
    std::error_code error;
    fs::create_directories(folder_, error);
    if (error) {
      Fail(folder_, "cannot be made", error);
    }
    if (!EntriesOf(folder_).empty()) {
      Fail(folder_, "holds something already, expected an empty or missing folder");
    }
    WriteRun();
    for (Answer const& answer : device_.Answers()) {
      if (answer.outcome == Outcome::kAnswered && !written_.contains(answer.request)) {
        WriteAnswer(answer);
      }
    }
    std::string const outcomes = WriteOutcomes(device_);
    if (!outcomes.empty()) {
      WriteFile(NameOf(folder_ / kOutcomeFile), outcomes);
    }
  }

 private:
  // Writes the device descriptor and the configurations as one file, if that file reads back as the
  // same answers.
  void WriteRun() {
    Bytes run;
    std::vector<Request> requests;
    for (std::uint8_t const type : {kDeviceType, kConfigurationType}) {
      for (Answer const* const answer : device_.OfType(type)) {
        if (answer->outcome == Outcome::kAnswered) {
          run.insert(run.end(), answer->bytes.begin(), answer->bytes.end());
          requests.push_back(answer->request);
        }
      }
    }
    std::vector<Part> const parts = SplitRun(run);
    bool isSame = !requests.empty() && parts.size() == requests.size() && run.size() <= kMaxRunSize;
    std::map<std::uint8_t, unsigned> next;
    for (std::size_t i = 0; isSame && i < parts.size(); ++i) {
      Request const& request = requests[i];
      isSame = parts[i].type == request.Type() && next[parts[i].type]++ == request.Index() &&
               request.index == 0 && AreEqual(parts[i].bytes, *device_.Bytes(request)) &&
               (i == 0) == (request.Type() == kDeviceType);
    }
    if (isSame) {
      WriteFile(NameOf(folder_ / "descriptors.bin"), TextOf(run));
      written_.insert(requests.begin(), requests.end());
    }
  }

  void WriteAnswer(Answer const& answer) {
    fs::path const path = folder_ / PathOf(FileNameOf(answer.request) + std::string(kBin));
    std::error_code error;
    fs::create_directories(path.parent_path(), error);
    if (error) {
      Fail(path.parent_path(), "cannot be made", error);
    }
    WriteFile(NameOf(path), TextOf(answer.bytes));
  }

  Device const& device_;
  fs::path folder_;
  std::set<Request> written_;
};

}  // namespace

Device ReadFolder(std::string const& name) {
  return FolderReader(name).Read();
}

void WriteFolder(Device const& device, std::string const& name) {
  FolderWriter(device, name).Write();
}

}  // namespace usb_devices

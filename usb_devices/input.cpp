#include <usb_devices/input.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <optional>
#include <system_error>
#include <utility>

#include <usb_devices/files.h>
#include <usb_devices/folder.h>
#include <usb_devices/json.h>
#include <usb_devices/read_error.h>
#include <usb_devices/runs.h>
#include <usb_devices/text_reader.h>
#include <usb_devices/traffic.h>

namespace usb_devices {
namespace {

constexpr std::string_view kRaw = "raw";
constexpr std::string_view kText = "text";
constexpr std::string_view kFolder = "folder";
constexpr std::string_view kTraffic = "traffic";

constexpr SizeLimit kRawLimit{kMaxRunSize, "1 MiB of descriptors"};
constexpr SizeLimit kTextLimit{std::size_t{16} << 20, "16 MiB of text"};

bool IsText(std::string_view content, std::string_view form) {
  return form != kRaw && (!form.empty() || LooksLikeText(content));
}

InputReading ReadTextOf(std::string const& content, std::string const& name,
                        std::string_view form) {
  std::optional<TextForm> const wanted = TextFormOf(form);
  TextForm const textForm = wanted ? *wanted : RecogniseText(content);
  InputReading reading;
  reading.form = NameOf(textForm);
  if (textForm != TextForm::kJson) {
    reading.devices = DevicesOf(ReadText(content, name, textForm), name);
    return reading;
  }
  for (Input& input : ReadJson(content, name)) {
    std::move(input.devices.begin(), input.devices.end(), std::back_inserter(reading.devices));
  }
  return reading;
}

InputReading ReadFolderOrTraffic(std::string const& name, bool isFolder) {
  InputReading reading;
  reading.form = isFolder ? kFolder : kTraffic;
  if (isFolder) {
    reading.devices.push_back(ReadFolder(name));
  } else {
    Traffic traffic = ReadTraffic(name);
    reading.devices = std::move(traffic.devices);
    reading.notes = std::move(traffic.notes);
  }
  return reading;
}

InputReading ReadWhole(std::string const& name, std::string_view form) {
  std::error_code ignored;
  bool const isFolder = std::filesystem::is_directory(PathOf(name), ignored);
  if (form == kFolder || (form.empty() && isFolder)) {
    return ReadFolderOrTraffic(name, true);
  }
  if (isFolder) {
    throw ReadError(name, "is a folder, expected a file");
  }
  if (form == kTraffic) {
    return ReadFolderOrTraffic(name, false);
  }
  OpenFile file = OpenForReading(name);
  if (form.empty() && std::filesystem::is_regular_file(PathOf(name), ignored)) {
    char begin[4];
    std::size_t const size = std::fread(begin, 1, sizeof begin, file.get());
    if (LooksLikeTraffic({begin, size})) {
      file.reset();
      return ReadFolderOrTraffic(name, false);
    }
    std::rewind(file.get());
  }
  return ReadInput(file.get(), name, form);
}

InputReading Only(InputReading reading, std::string const& name, std::string_view wanted) {
  std::erase_if(reading.devices,
                [wanted](Device const& device) { return device.Name() != wanted; });
  if (reading.devices.empty()) {
    throw ReadError(name, "holds no device \"" + std::string(wanted) + '"');
  }
  return reading;
}

}  // namespace

std::vector<std::string> InputForms() {
  std::vector<std::string> forms;
  for (std::string_view const form : {kRaw, kText, kFolder, kTraffic}) {
    forms.emplace_back(form);
  }
  for (std::size_t i = 0; i < kTextForms; ++i) {
    forms.emplace_back(NameOf(static_cast<TextForm>(i)));
  }
  return forms;
}

InputReading ReadInput(std::string const& name, std::string_view form) {
  std::size_t const hash = name.rfind('#');
  std::error_code ignored;
  if (hash == std::string::npos || std::filesystem::exists(PathOf(name), ignored)) {
    return ReadWhole(name, form);
  }
  std::string const file = name.substr(0, hash);
  return Only(ReadWhole(file, form), file, std::string_view(name).substr(hash + 1));
}

InputReading ReadInput(std::FILE* stream, std::string const& name, std::string_view form) {
  if (form == kFolder || form == kTraffic) {
    throw ReadError(name, "is a stream, expected the name of a " +
                              std::string(form == kFolder ? "folder" : "file"));
  }
  std::string const content = ReadStream(stream, name, [&](std::string_view begin) {
    if (form.empty() && LooksLikeTraffic(begin)) {
      throw ReadError(name, "is a traffic capture in a stream, expected one in a file");
    }
    return IsText(begin, form) ? kTextLimit : kRawLimit;
  });
  if (IsText(content, form)) {
    return ReadTextOf(content, name, form);
  }
  if (content.size() > kRawLimit.bytes) {
    throw ReadError(name, "holds more than " + std::string(kRawLimit.what));
  }
  return {std::string(kRaw), DevicesOf(BytesOf(content), Source{name, 0, 0, 0}), {}};
}

}  // namespace usb_devices

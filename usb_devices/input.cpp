#include <usb_devices/input.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <iterator>
#include <optional>
#include <system_error>
#include <utility>

#include <usb_devices/files.h>
#include <usb_devices/folder.h>
#include <usb_devices/json.h>
#include <usb_devices/live.h>
#include <usb_devices/lsusb_reader.h>
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
constexpr std::string_view kLive = "live";

constexpr SizeLimit kRawLimit{kMaxRunSize, "1 MiB of descriptors"};
constexpr SizeLimit kTextLimit{std::size_t{16} << 20, "16 MiB of text"};
constexpr SizeLimit kTrafficLimit{std::size_t{64} << 20, "64 MiB of traffic in a stream"};

bool IsText(std::string_view content, std::string_view form) {
  return form != kRaw && (!form.empty() || LooksLikeText(content));
}

InputReading ReadTextOf(std::string const& content, std::string const& name,
                        std::string_view form) {
  std::optional<TextForm> const wanted = TextFormOf(form);
  TextForm const textForm = wanted ? *wanted : RecogniseText(content);
  InputReading reading;
  reading.form = NameOf(textForm);
  if (textForm == TextForm::kLsusb) {
    LsusbReading lsusb = ReadLsusb(content, name);
    return {reading.form, std::move(lsusb.devices), std::move(lsusb.notes)};
  }
  if (textForm != TextForm::kJson) {
    reading.devices = DevicesOf(ReadText(content, name, textForm), name);
    return reading;
  }
  for (Input& input : ReadJson(content, name)) {
    std::move(input.devices.begin(), input.devices.end(), std::back_inserter(reading.devices));
  }
  return reading;
}

bool IsTraffic(std::string_view begin, std::string_view form) {
  return form == kTraffic || (form.empty() && LooksLikeTraffic(begin));
}

InputReading ReadingOf(Traffic traffic) {
  return {std::string(kTraffic), std::move(traffic.devices), std::move(traffic.notes)};
}

InputReading ReadWhole(std::string const& name, std::string_view form) {
  std::error_code ignored;
  bool const isFolder = std::filesystem::is_directory(PathOf(name), ignored);
  if (form == kFolder || (form.empty() && isFolder)) {
    InputReading reading;
    reading.form = kFolder;
    reading.devices.push_back(ReadFolder(name));
    return reading;
  }
  if (isFolder) {
    throw ReadError(name, "is a folder, expected a file");
  }
  OpenFile file = OpenForReading(name);
  if (std::filesystem::is_regular_file(PathOf(name), ignored)) {
    char begin[kTrafficMagicSize];
    std::size_t const size = std::fread(begin, 1, sizeof begin, file.get());
    if (IsTraffic({begin, size}, form)) {
      file.reset();
      return ReadingOf(ReadTraffic(name));
    }
    std::rewind(file.get());
  }
  return ReadInput(file.get(), name, form);
}

InputReading ReadLiveDevices(std::string const& name) {
  LiveReading live = ReadLive(name);
  return {std::string(kLive), std::move(live.devices), std::move(live.notes)};
}

// The devices with the wanted name or, when there are none, the one with that number.
InputReading Only(InputReading reading, std::string const& name, std::string_view wanted) {
  std::vector<Device> devices = std::move(reading.devices);
  reading.devices.clear();
  std::copy_if(devices.begin(), devices.end(), std::back_inserter(reading.devices),
               [wanted](Device const& device) { return device.Name() == wanted; });
  if (!reading.devices.empty()) {
    return reading;
  }
  std::size_t number = 0;
  auto const [end, error] = std::from_chars(wanted.data(), wanted.data() + wanted.size(), number);
  bool const isNumber = error == std::errc() && end == wanted.data() + wanted.size();
  if (!isNumber || number == 0 || number > devices.size()) {
    throw ReadError(name, "holds no device \"" + std::string(wanted) + '"');
  }
  reading.devices.push_back(std::move(devices[number - 1]));
  return reading;
}

}  // namespace

std::vector<std::string> InputForms() {
  std::vector<std::string> forms;
  for (std::string_view const form : {kRaw, kText, kFolder, kTraffic, kLive}) {
    forms.emplace_back(form);
  }
  for (std::size_t i = 0; i < kTextForms; ++i) {
    forms.emplace_back(NameOf(static_cast<TextForm>(i)));
  }
  return forms;
}

InputReading ReadInput(std::string const& name, std::string_view form) {
  if (form == kLive || (form.empty() && IsLiveName(name))) {
    return ReadLiveDevices(name);
  }
  std::size_t const hash = name.rfind('#');
  std::error_code ignored;
  if (hash == std::string::npos || std::filesystem::exists(PathOf(name), ignored)) {
    return ReadWhole(name, form);
  }
  std::string const file = name.substr(0, hash);
  return Only(ReadWhole(file, form), file, std::string_view(name).substr(hash + 1));
}

InputReading ReadInput(std::FILE* stream, std::string const& name, std::string_view form) {
  if (form == kFolder || form == kLive) {
    throw ReadError(name, "is a stream, expected the name of a " +
                              std::string(form == kFolder ? "folder" : "device"));
  }
  std::string const content = ReadStream(stream, name, [&](std::string_view begin) {
    return IsTraffic(begin, form) ? kTrafficLimit : IsText(begin, form) ? kTextLimit : kRawLimit;
  });
  if (IsTraffic(content, form)) {
    return ReadingOf(ReadTraffic(BytesOf(content), name));
  }
  if (IsText(content, form)) {
    return ReadTextOf(content, name, form);
  }
  if (content.size() > kRawLimit.bytes) {
    throw ReadError(name, "holds more than " + std::string(kRawLimit.what));
  }
  return {std::string(kRaw), DevicesOf(BytesOf(content), Source{name, 0, 0, 0}), {}};
}

}  // namespace usb_devices

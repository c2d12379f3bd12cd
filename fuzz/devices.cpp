// Reads the bytes as an input of usb_devices in each of its forms. Checks that the devices read
// back the same from every form that is written, and that the text of a refusal is harmless. Also
// reads the bytes as a run whose descriptors are listed in the way of lsusb, and as the files of a
// folder.
#include <algorithm>
#include <filesystem>
#include <iterator>
#include <map>
#include <string>
#include <system_error>
#include <vector>

#include <fuzz/oracle.h>
#include <fuzz/targets.h>
#include <standalone_suite/test_support/temp_folder.h>
#include <usb_devices/devices.h>
#include <usb_devices/files.h>

namespace usb_support::fuzz {
namespace {

using usb_devices::Device;
using usb_devices::ReadError;
using usb_devices::TextForm;

constexpr unsigned char kFolder = 0xFF;

void RequireHarmless(std::string_view text) {
  Require(!text.empty(), "a message has a text");
  RequireEqual(usb_devices::Harmless(text), std::string(text), "a message is one harmless line");
}

std::vector<Device> ReadForm(std::string const& text, TextForm form) {
  std::vector<Device> devices;
  if (form == TextForm::kJson) {
    for (usb_devices::Input& input : usb_devices::ReadJson(text, "a")) {
      std::move(input.devices.begin(), input.devices.end(), std::back_inserter(devices));
    }
  } else if (form == TextForm::kLsusb) {
    usb_devices::LsusbReading reading = usb_devices::ReadLsusb(text, "a");
    std::for_each(reading.notes.begin(), reading.notes.end(), RequireHarmless);
    devices = std::move(reading.devices);
  } else {
    devices = usb_devices::DevicesOf(usb_devices::ReadText(text, "a", form), "a");
  }
  return devices;
}

void RequireSame(std::vector<Device> const& read, Device const& device, char const* form) {
  Require(read.size() == 1 && read.front().HasSameAnswers(device), form);
}

void CheckForms(Device const& device) {
  std::size_t size = 0;
  for (usb_devices::Answer const& answer : device.Answers()) {
    Require(answer.bytes.size() <= usb_devices::kMaxAnswerSize, "an answer is one");
    Require(answer.outcome == usb_devices::Outcome::kAnswered || answer.bytes.empty(),
            "what is not answered has no bytes");
    Require(device.Find(answer.request) == &answer, "an answer is found by its request");
    size += answer.bytes.size();
  }
  if (size > usb_devices::kMaxAnswerSize) {
    return;  // too slow for a fuzzer
  }
  RequireSame(ReadForm(usb_devices::WriteListing(device), TextForm::kListing), device, "a listing");
  RequireSame(ReadForm(usb_devices::WriteCode(device), TextForm::kCode), device, "code");
  RequireSame(ReadForm(usb_devices::WriteJson({{"a", {device}}}), TextForm::kJson), device, "JSON");
  if (std::optional<usb_devices::Bytes> const run = usb_devices::RunOf(device)) {
    std::vector<Device> const read = usb_devices::DevicesOf(*run, usb_devices::Source{});
    Require(run->empty() || (read.size() == 1 && read.front().HasSameAnswers(device)), "a run");
  }
}

// Lists a configuration with the descriptors of a chain in the way of lsusb, and reads the listing.
void CheckLsusb(Input input) {
  usb_devices::Bytes configuration = {9, 2, 0, 0, 1, 1, 0, 0x80, 50};
  std::string text =
      "    bNumInterfaces 1\n    bConfigurationValue 1\n    iConfiguration 0\n"
      "    bmAttributes 0x80\n      (Bus Powered)\n    MaxPower 100mA\n";
  while (input.size() >= 2 && input[0] >= 2 && input[0] <= input.size() &&
         configuration.size() < 0xFF00) {
    constexpr unsigned char kBegin[] = {1, 2, 6, 7, 0x0F, 0x29, 0x2A};
    Input const descriptor = input.subspan(0, input[0]);
    input = input.subspan(descriptor.size());
    if (std::find(std::begin(kBegin), std::end(kBegin), descriptor[1]) != std::end(kBegin)) {
      continue;
    }
    text += "Some Descriptor:\n  bLength " + std::to_string(descriptor[0]) +
            "\n  bDescriptorType  " + std::to_string(descriptor[1]) + " text\n";
    std::size_t at = 2;
    for (; at + 4 <= descriptor.size() && descriptor[at] % 4 == 1; at += 4) {
      text += "    bmControls( 1) 0x";
      for (std::size_t i = 4; i-- != 0;) {
        text += usb_devices::Hexadecimal(descriptor[at + i], 2);
      }
      text += " more\n";
    }
    for (; at < descriptor.size(); ++at) {
      text += "  iField  " + std::to_string(descriptor[at]) + " bLength 7\n      Text: words\n";
    }
    configuration.insert(configuration.end(), descriptor.begin(), descriptor.end());
  }
  configuration[2] = static_cast<unsigned char>(configuration.size());
  configuration[3] = static_cast<unsigned char>(configuration.size() >> 8);
  text = "Configuration Descriptor:\r\n    bLength 9\n    bDescriptorType 2\n    wTotalLength " +
         std::to_string(configuration.size()) + '\n' + text;
  Require(usb_devices::RecogniseText(text) == TextForm::kLsusb, "a listing of lsusb is recognised");
  usb_devices::LsusbReading const reading = usb_devices::ReadLsusb(text);
  RequireEqual(reading.notes, std::vector<std::string>(), "notes");
  RequireEqual(reading.devices.size(), std::size_t{1}, "devices of a listing");
  std::optional<usb_devices::ByteSpan> const read = reading.devices.front().Bytes(
      usb_devices::Request::Descriptor(usb_devices::kConfigurationType));
  Require(read && usb_devices::AreEqual(*read, configuration), "the listed configuration");
}

// The name of a file in a folder. If there is a second part, a number is between the two parts.
// `request` is set when the file contains exactly one answer.
struct FileName {
  char const* begin;
  char const* end;
  usb_devices::Request (*request)(std::uint8_t number);
};
constexpr FileName kFileNames[] = {
    {"descriptors.bin", "", nullptr},
    {"config.bin", "", nullptr},
    {"other_speed_config.bin", "", nullptr},
    {"device.txt", "", nullptr},
    {"bos.bin", "", [](std::uint8_t) { return usb_devices::Request::Descriptor(15); }},
    {"qualifier.bin", "", [](std::uint8_t) { return usb_devices::Request::Descriptor(6); }},
    {"hub.bin", "", [](std::uint8_t) { return usb_devices::Request::Hub(0x29); }},
    {"config_", ".bin",
     [](std::uint8_t number) { return usb_devices::Request::Descriptor(2, number); }},
    {"hid_report_", ".bin",
     [](std::uint8_t number) { return usb_devices::Request::HidReport(number); }},
    {"strings/", "-0409.bin",
     [](std::uint8_t number) { return usb_devices::Request::String(number, 0x0409); }},
    {"other_", ".bin", [](std::uint8_t number) { return usb_devices::Request::Unknown(number); }},
    {"request_C0200000070", ".bin", nullptr},
    // The files of sysfs.
    {"descriptors", "", nullptr},
    {"bos_descriptors", "", nullptr},
    {"speed", "", nullptr},
    {"1-7:1.0/bInterfaceNumber", "", nullptr},
    {"1-7:1.0/0003.1/report_descriptor", "", nullptr},
    // Names that are ignored, refused, or used for another kind of file.
    {"notes.txt", "", nullptr},
    {"notes.bin", "", nullptr},
    {"strings", "", nullptr},
    {"device.txt/a", "", nullptr},
};

std::size_t CountIn(std::filesystem::path const& folder) {
  return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder),
                                                std::filesystem::directory_iterator()));
}

// The bytes are, for each file: a name, a number, the size and the content.
void CheckFolder(Input input) {
  standalone::TempFolder const temporary;
  std::filesystem::path const folder = temporary.Path() / "in";
  std::filesystem::create_directory(folder);
  std::map<std::string, usb_devices::Bytes> contents;
  std::map<usb_devices::Request, std::string> requests;
  while (input.size() >= 3 && contents.size() < 50) {
    FileName const& file = kFileNames[input[0] % std::size(kFileNames)];
    std::string const number = *file.end == '\0' ? "" : std::to_string(input[1]);
    std::string const name = file.begin + number + file.end;
    Input const content = input.subspan(3, std::min<std::size_t>(input[2], input.size() - 3));
    try {
      std::error_code ignored;
      std::filesystem::create_directories((folder / name).parent_path(), ignored);
      usb_devices::WriteFile((folder / name).string(), TextOf(content));
      contents[name] = BytesOf(content);
      if (file.request != nullptr) {
        requests[file.request(input[1])] = name;
      }
    } catch (ReadError const&) {
      // Another file is in its place, or the system does not allow the name.
    }
    input = input.subspan(3 + content.size());
  }
  try {
    Device const device = usb_devices::ReadFolder(folder.string());
    CheckForms(device);
    for (auto const& [request, name] : requests) {
      Require(contents.contains("descriptors") ||
                  (device.Bytes(request) &&
                   usb_devices::AreEqual(*device.Bytes(request), contents[name])),
              "a file is an answer");
    }
    std::string const written = (temporary.Path() / "out").string();
    usb_devices::WriteFolder(device, written);
    Require(usb_devices::ReadFolder(written).HasSameAnswers(device), "a folder");
  } catch (ReadError const& error) {
    RequireHarmless(error.what());
    Require(error.Name().starts_with(usb_devices::NameOf(folder)), "a message names the file");
  }
  Require(CountIn(temporary.Path()) <= 2, "nothing is written beside the folder");
}

}  // namespace

// The first byte is FFh for a folder, the number of a text form, or one of the three numbers after
// these: raw bytes, a text whose form is recognised, a run to be listed in the way of lsusb. The
// content follows.
void Devices(Input input) {
  if (input.empty() || input.size() > 0x10000) {
    return;
  }
  if (input[0] == kFolder) {
    CheckFolder(input.subspan(1));
    return;
  }
  std::size_t const form = input[0] % (usb_devices::kTextForms + 3);
  input = input.subspan(1);
  if (form == usb_devices::kTextForms + 2) {
    CheckLsusb(input);
    return;
  }
  std::string const text = TextOf(input);
  try {
    std::vector<Device> const devices =
        form < usb_devices::kTextForms ? ReadForm(text, static_cast<TextForm>(form))
        : form == usb_devices::kTextForms
            ? usb_devices::DevicesOf(BytesOf(input), usb_devices::Source{})
            : ReadForm(text, usb_devices::RecogniseText(text));
    std::for_each(devices.begin(), devices.end(), CheckForms);
  } catch (ReadError const& error) {
    RequireHarmless(error.what());
  }
}

}  // namespace usb_support::fuzz

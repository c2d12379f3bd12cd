// The bytes as an input of usb_devices in each of its forms: the devices read from them, that these
// read back from every written form, and the text of a refusal. And the bytes as a run whose
// descriptors are listed as lsusb lists them.
#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include <fuzz/oracle.h>
#include <fuzz/targets.h>
#include <usb_devices/devices.h>
#include <usb_devices/files.h>

namespace usb_support::fuzz {
namespace {

using usb_devices::Device;
using usb_devices::ReadError;
using usb_devices::TextForm;

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

// A configuration of the descriptors of a chain, and the text that lsusb has for it.
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

}  // namespace

// Bytes: a form, or one beyond them: raw bytes, the form that is recognised, a run that is listed as
// lsusb does; the content.
void Devices(Input input) {
  if (input.empty() || input.size() > 0x10000) {
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

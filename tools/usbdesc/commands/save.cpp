#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>

#include <tools/usbdesc/colours.h>
#include <tools/usbdesc/commands.h>
#include <tools/usbdesc/inputs.h>
#include <tools/usbdesc/platform.h>
#include <usb_devices/devices.h>

namespace usb_support::usbdesc {
namespace {

enum class SaveForm { kFolder, kRaw, kListing, kCode, kJson };

struct SaveOptions {
  InputOptions input;
  std::optional<std::string> output;
  SaveForm form = SaveForm::kFolder;
};

usb_devices::Device const& OnlyDeviceOf(Input const& input) {
  if (input.devices.size() > 1) {
    throw std::runtime_error(input.name + ": holds " + std::to_string(input.devices.size()) +
                             " devices, expected one; name it, as in " + NameOf(input, 0));
  }
  if (input.devices.front().Answers().empty()) {
    throw std::runtime_error(input.name + ": holds no device");
  }
  return input.devices.front();
}

std::string ContentOf(Input const& input, usb_devices::Device const& device, SaveForm form) {
  if (form == SaveForm::kListing) {
    return usb_devices::WriteListing(device);
  }
  if (form == SaveForm::kCode) {
    return usb_devices::WriteCode(device);
  }
  if (form == SaveForm::kJson) {
    return usb_devices::WriteJson({{input.name, {device}}});
  }
  std::optional<usb_devices::Bytes> const run = usb_devices::RunOf(device);
  if (!run) {
    throw std::runtime_error(input.name +
                             ": raw bytes cannot hold its speed, strings and other answers; "
                             "save it as folder, listing, code or json");
  }
  return usb_devices::TextOf(*run);
}

int Save(Console const& console, Input const& input, SaveOptions const& options) {
  usb_devices::Device const& device = OnlyDeviceOf(input);
  std::string const& output = *options.output;
  if (options.form == SaveForm::kFolder) {
    usb_devices::WriteFolder(device, output);
    return kExitGood;
  }
  std::string const content = ContentOf(input, device, options.form);
  std::error_code ignored;
  if (output == kStandardInput) {
    Print(content, console.out);
  } else if (std::filesystem::exists(PathOf(output), ignored)) {
    throw std::runtime_error(output + ": exists already, expected the name of a new file");
  } else {
    usb_devices::WriteFile(output, content);
  }
  return kExitGood;
}

}  // namespace

Action DefineSave(Options& parser) {
  auto const options = std::make_shared<SaveOptions>();
  parser.Arguments("INPUT", options->input.files,
                   "The device to save, and then the folder or file to write it to");
  parser.Choice<SaveForm>("--as", options->form, "The form of a saved device (default folder)",
                          {{"folder", SaveForm::kFolder},
                           {"raw", SaveForm::kRaw},
                           {"listing", SaveForm::kListing},
                           {"code", SaveForm::kCode},
                           {"json", SaveForm::kJson}});
  AddFormOption(parser, options->input);
  return [options](Console const& console) {
    if (options->input.files.size() != 2) {
      throw UsageError("save takes a device, and a folder or file to write it to (see --help)");
    }
    options->output = options->input.files.back();
    options->input.files.pop_back();
    return ReadInputs(console, options->input,
                      [&](Input const& input) { return Save(console, input, *options); });
  };
}

}  // namespace usb_support::usbdesc

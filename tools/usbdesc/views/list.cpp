#include <tools/usbdesc/views/list.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <map>
#include <string_view>

#include <tools/usbdesc/json_writer.h>
#include <tools/usbdesc/log_text.h>
#include <usb_devices/characters.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

std::string IdsOf(TQ_USB_DEVICE_DESCRIPTOR const& descriptor) {
  std::array<char, 10> text;
  std::snprintf(text.data(), text.size(), "%04x:%04x", unsigned{descriptor.idVendor},
                unsigned{descriptor.idProduct});
  return text.data();
}

// The text of a string that the device descriptor points to; empty when it is not known.
std::string StringAt(std::map<std::uint8_t, std::string> const& strings, std::uint8_t index) {
  auto const found = strings.find(index);
  return index == 0 || found == strings.end() ? "" : found->second;
}

void AddTo(std::string& list, std::string const& text) {
  list.append(list.empty() || text.empty() ? "" : ", ").append(text);
}

std::string AnswersOf(usb_devices::Device const& device) {
  std::string answers;
  std::size_t strings = 0;
  for (usb_devices::Answer const& answer : device.Answers()) {
    bool const isAnswered = answer.outcome == usb_devices::Outcome::kAnswered;
    if (isAnswered && answer.request.IsString()) {
      ++strings;
    } else {
      std::string name = NameOf(answer.request);
      AddTo(answers, isAnswered ? name : name.append(" (").append(NameOf(answer.outcome)) + ')');
    }
  }
  AddTo(answers, strings == 0 ? "" : Counted(strings, "string"));
  return answers.empty() ? "nothing is known of it" : answers;
}

class JsonList {
 public:
  std::string Of(Input const& input) {
    ShownInput const shown = Show(input);
    writer_.StartObject();
    writer_.String("name", input.name);
    writer_.String("form", input.form);
    StartArray("devices");
    for (ShownDevice const& device : shown.devices) {
      Add(device);
    }
    writer_.EndArray();
    writer_.EndObject();
    return writer_.Text();
  }

 private:
  void Add(ShownDevice const& device) {
    writer_.StartObject();
    writer_.String("name", device.name);
    writer_.String("speed", NameOf(device.source->Speed()));
    if (device.descriptor) {
      std::map<std::uint8_t, std::string> const strings = StringsOf(*device.source);
      writer_.Number("idVendor", device.descriptor->idVendor);
      writer_.Number("idProduct", device.descriptor->idProduct);
      Text("manufacturer", StringAt(strings, device.descriptor->iManufacturer));
      Text("product", StringAt(strings, device.descriptor->iProduct));
      Text("serial", StringAt(strings, device.descriptor->iSerialNumber));
    }
    StartArray("answers");
    for (usb_devices::Answer const& answer : device.source->Answers()) {
      writer_.StartObject();
      writer_.String("name", NameOf(answer.request));
      writer_.String("outcome", NameOf(answer.outcome));
      Text("note", usb_devices::Harmless(answer.note));
      writer_.Number("length", answer.bytes.size());
      writer_.EndObject();
    }
    writer_.EndArray();
    writer_.EndObject();
  }

  void StartArray(char const* name) {
    writer_.Key(name);
    writer_.StartArray();
  }
  void Text(char const* name, std::string_view value) {
    if (!value.empty()) {
      writer_.String(name, value);
    }
  }

  JsonWriter writer_;
};

}  // namespace

void LogList(Input const& input) {
  for (ShownDevice const& device : Show(input).devices) {
    Line line(device.name, Piece::kTitle);
    if (device.descriptor) {
      line.Add("  " + IdsOf(*device.descriptor));
    }
    if (device.source->Speed() != usb_devices::Speed::kUnknown) {
      line.Add("  " + std::string(NameOf(device.source->Speed())) + " speed");
    }
    if (device.descriptor) {
      std::map<std::uint8_t, std::string> const strings = StringsOf(*device.source);
      std::string names = StringAt(strings, device.descriptor->iManufacturer);
      AddTo(names, StringAt(strings, device.descriptor->iProduct));
      line.Add(names.empty() ? "" : "  " + names, Piece::kLabel);
    }
    Log(line.Add("\n  " + AnswersOf(*device.source)));
  }
}

std::string ListJson(Input const& input) {
  return JsonList().Of(input);
}

}  // namespace usb_support::usbdesc

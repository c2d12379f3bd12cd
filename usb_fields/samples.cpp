#include <usb_fields/samples.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include <usb_fields/text.h>

namespace usb_fields::testing_support {
namespace {

int Number(std::string_view text) {
  int value = 0;
  if (std::from_chars(text.data(), text.data() + text.size(), value, 16).ec != std::errc{}) {
    throw std::runtime_error("samples.txt: no number: " + std::string(text));
  }
  return value;
}

template <typename T>
T Pick(std::string_view text, std::initializer_list<std::pair<std::string_view, T>> names) {
  for (auto const& [name, value] : names) {
    if (name == text) {
      return value;
    }
  }
  throw std::runtime_error("samples.txt: not known: " + std::string(text));
}

void Apply(Sample& sample, std::string const& word) {
  Context& context = sample.context;
  std::string const name = word.substr(0, word.find('='));
  std::string const value = word.substr(std::min(name.size() + 1, word.size()));
  if (name == "speed") {
    context.speed = Pick<Speed>(value, {{"low", Speed::kLow},
                                        {"full", Speed::kFull},
                                        {"high", Speed::kHigh},
                                        {"super", Speed::kSuper}});
  } else if (name == "interface") {
    context.hasInterface = true;
    context.interfaceClass = static_cast<std::uint8_t>(Number(value.substr(0, 2)));
    context.interfaceSubclass = static_cast<std::uint8_t>(Number(value.substr(3, 2)));
    context.interfaceProtocol = static_cast<std::uint8_t>(Number(value.substr(6, 2)));
  } else if (name == "endpoint") {
    context.hasEndpoint = true;
    context.endpointAttributes = static_cast<std::uint8_t>(Number(value));
  } else if (name == "bcdUVC") {
    context.videoRelease = static_cast<std::uint16_t>(Number(value));
  } else if (name == "index") {
    context.index = static_cast<std::int16_t>(Number(value));
  } else if (name == "parent") {
    sample.parent = value;
  } else if (name == "request") {
    context.request = Pick<Request>(value, {{"msos10", Request::kMsOs10},
                                            {"msos20", Request::kMsOs20},
                                            {"webusb", Request::kWebUsb},
                                            {"physical", Request::kHidPhysical},
                                            {"uac3_hc", Request::kAudioHighCapability},
                                            {"uac3_string", Request::kAudioString},
                                            {"midi2_gtb", Request::kGroupTerminalBlocks}});
  } else if (word == "cdc") {
    context.cdc = CdcGuess::kYes;
  } else if (word == "guessed") {
    sample.isGuessed = true;
  } else {
    throw std::runtime_error("samples.txt: not known: " + word);
  }
}

std::vector<Sample> Load() {
  std::vector<Sample> samples;
  std::ifstream file(std::filesystem::path(USB_SUPPORT_SOURCE_DIR) / "usb_fields/samples.txt");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with('#')) {
      continue;
    }
    std::vector<std::string> parts;
    for (std::size_t at = 0; at != std::string::npos;) {
      std::size_t const end = line.find(" | ", at);
      parts.push_back(line.substr(at, end - at));
      at = end == std::string::npos ? end : end + 3;
    }
    Sample sample;
    sample.layout = parts.at(0);
    std::istringstream words(parts.at(1));
    for (std::string word; words >> word;) {
      Apply(sample, word);
    }
    sample.bytes = FromHex(parts.at(2));
    sample.origin = parts.at(3);
    samples.push_back(std::move(sample));
  }
  return samples;
}

}  // namespace

Bytes FromHex(std::string_view text) {
  Bytes bytes;
  std::istringstream words{std::string(text)};
  for (std::string word; words >> word;) {
    bytes.push_back(static_cast<std::uint8_t>(Number(word)));
  }
  return bytes;
}

std::vector<Sample> const& Samples() {
  static std::vector<Sample> const samples = Load();
  return samples;
}

Sample const& SampleOf(std::string_view layout) {
  for (Sample const& sample : Samples()) {
    if (sample.layout == layout) {
      return sample;
    }
  }
  throw std::runtime_error("no sample of " + std::string(layout));
}

Context ContextOf(Sample const& sample) {
  Context context = sample.context;
  context.parent = sample.parent;
  return context;
}

Context In(int interfaceClass, int subclass, int protocol) {
  return {.speed = Speed::kHigh,
          .hasInterface = true,
          .interfaceClass = static_cast<std::uint8_t>(interfaceClass),
          .interfaceSubclass = static_cast<std::uint8_t>(subclass),
          .interfaceProtocol = static_cast<std::uint8_t>(protocol)};
}

std::string Listing(std::span<std::uint8_t const> bytes, Context const& context) {
  std::ostringstream out;
  Reading const reading = ReadFields(bytes, context, [&out](FieldValue const& field) {
    std::vector<char> buffer(kMostText);
    out << field.offset << ' ' << field.size << ' ' << field.field->name;
    if (!field.field->extra.repeat.empty()) {
      out << '[' << field.index << ']';
    }
    out << ' ' << NumberOf(field, buffer);
    std::string_view const text = TextOf(field, buffer);
    out << (text.empty() ? "" : ": ") << text << (field.IsCut() ? " (cut)" : "") << '\n';
    for (BitsReader bits(field); bits.Next();) {
      BitsValue const& value = bits.Value();
      out << "    " << unsigned{value.high} << ".." << unsigned{value.low} << ' ' << value.name
          << ' ' << value.value << (value.text.empty() ? "" : ": ") << value.text << '\n';
    }
  });
  if (reading.NotDescribed() != 0) {
    out << reading.NotDescribed() << " bytes not described\n";
  }
  return out.str();
}

}  // namespace usb_fields::testing_support

#include <usb_devices/json.h>

#include <algorithm>
#include <optional>
#include <utility>

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <usb_devices/read_error.h>
#include <usb_devices/runs.h>
#include <usb_devices/text_scanner.h>

namespace usb_devices {
namespace {

using rapidjson::Value;

std::string HexOf(ByteSpan bytes) {
  std::string text;
  for (std::uint8_t const byte : bytes) {
    if (!text.empty()) {
      text += ' ';
    }
    text += Hexadecimal(byte, 2);
  }
  return text;
}

Bytes SetupOf(Request const& request) {
  auto const low = [](std::uint16_t word) { return static_cast<std::uint8_t>(word); };
  auto const high = [](std::uint16_t word) { return static_cast<std::uint8_t>(word >> 8); };
  return {request.requestType, request.request,    low(request.value),
          high(request.value), low(request.index), high(request.index)};
}

class JsonWriter {
 public:
  JsonWriter() : writer_(buffer_) { writer_.SetIndent(' ', 1); }

  std::string Write(std::vector<Input> const& inputs) {
    writer_.StartObject();
    Member("usbdesc", 1);
    StartArray("inputs");
    for (Input const& input : inputs) {
      writer_.StartObject();
      Member("name", input.name);
      StartArray("devices");
      for (Device const& device : input.devices) {
        Write(device);
      }
      writer_.EndArray();
      writer_.EndObject();
    }
    writer_.EndArray();
    writer_.EndObject();
    return std::string(buffer_.GetString(), buffer_.GetSize()) + '\n';
  }

 private:
  void Write(Device const& device) {
    writer_.StartObject();
    Member("name", device.Name());
    Member("speed", NameOf(device.Speed()));
    StartArray("runs");
    for (Answer const& answer : device.Answers()) {
      Write(answer);
    }
    writer_.EndArray();
    writer_.EndObject();
  }

  void Write(Answer const& answer) {
    Request const& request = answer.request;
    writer_.StartObject();
    if (request.IsGetDescriptor()) {
      Member("type", request.Type());
      Member("index", request.Index());
    }
    if (request.IsString()) {
      Member("language", request.index);
    } else if (request.IsOfInterface()) {
      Member("interface", request.index);
    }
    std::string setup = HexOf(SetupOf(request));
    std::erase(setup, ' ');
    Member("request", setup);
    Write(answer.source);
    Member("outcome", NameOf(answer.outcome));
    if (answer.outcome == Outcome::kAnswered) {
      Member("hex", HexOf(answer.bytes));
    } else {
      Member("note", answer.note);
    }
    writer_.EndObject();
  }

  void Write(Source const& source) {
    Key("source");
    writer_.StartObject();
    Member("file", source.name);
    Member("offset", source.offset);
    if (source.line != 0) {
      Member("line", source.line);
    }
    if (source.packet != 0) {
      Member("packet", source.packet);
    }
    writer_.EndObject();
  }

  void Key(std::string_view name) {
    writer_.Key(name.data(), static_cast<rapidjson::SizeType>(name.size()));
  }
  void StartArray(std::string_view name) {
    Key(name);
    writer_.StartArray();
  }
  void Member(std::string_view name, std::uint64_t value) {
    Key(name);
    writer_.Uint64(value);
  }
  void Member(std::string_view name, std::string_view value) {
    Key(name);
    std::string const text = Harmless(value);
    writer_.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
  }

  rapidjson::StringBuffer buffer_;
  rapidjson::PrettyWriter<rapidjson::StringBuffer> writer_;
};

// A value with its path, for messages.
struct Place {
  Value const& value;
  std::string path;
};

class JsonReader {
 public:
  explicit JsonReader(std::string const& name) : name_(name) {}

  std::vector<Input> Read(std::string_view text) {
    rapidjson::Document document;
    // Not recursive: the nesting of a text is limited only by its length.
    document.Parse<rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag |
                   rapidjson::kParseFullPrecisionFlag>(text.data(), text.size());
    if (document.HasParseError()) {
      std::size_t const at = std::min(document.GetErrorOffset(), text.size());
      detail::Fail({text, name_}, {text.substr(at, 1), at},
                   std::string("JSON: ") + rapidjson::GetParseError_En(document.GetParseError()));
    }
    Place const root{document, "the text"};
    Require(document.IsObject(), root, "an object");
    Require(NumberIn(root, "usbdesc", 1) == 1, root, "\"usbdesc\": 1");
    std::vector<Input> inputs;
    for (Place const& input : ElementsOf(root, "inputs")) {
      inputs.push_back(ReadInput(input));
    }
    return inputs;
  }

 private:
  Input ReadInput(Place const& place) {
    Require(place.value.IsObject(), place, "an object");
    Input input;
    input.name = TextIn(place, "name").value_or("");
    for (Place const& device : ElementsOf(place, "devices")) {
      input.devices.push_back(ReadDevice(device));
    }
    return input;
  }

  Device ReadDevice(Place const& place) {
    Require(place.value.IsObject(), place, "an object");
    DeviceBuilder device;
    device.SetName(TextIn(place, "name").value_or(""));
    std::optional<Speed> const speed =
        SpeedOf(TextIn(place, "speed").value_or(std::string(NameOf(Speed::kUnknown))));
    Require(speed.has_value(), place,
            "a speed that is low, full, high, super, super-plus or unknown");
    // A speed with a reason was inferred from the descriptors, which are read here too.
    if (!TextIn(place, "speed_reason")) {
      device.SetSpeed(*speed);
    }
    for (Place const& run : ElementsOf(place, "runs")) {
      ReadRun(device, run);
    }
    return device.Build();
  }

  void ReadRun(DeviceBuilder& device, Place const& place) {
    Require(place.value.IsObject(), place, "an object");
    Answer answer;
    answer.source = SourceOf(place);
    answer.outcome = OutcomeOf(place);
    answer.note = TextIn(place, "note").value_or("");
    std::optional<std::string> const hex = TextIn(place, "hex");
    if (answer.outcome == Outcome::kAnswered) {
      Require(hex.has_value(), place, "\"hex\", the bytes of the answer");
      answer.bytes = BytesIn(place, *hex);
    }
    std::optional<Request> const request = RequestOf(place);
    if (!request) {
      Require(answer.bytes.size() <= kMaxRunSize, place, "at most 1 MiB of bytes");
      AddRun(device, answer.bytes, answer.source);
      return;
    }
    Require(answer.bytes.size() <= kMaxAnswerSize, place, "at most 65,535 bytes of an answer");
    answer.request = *request;
    Require(device.Add(std::move(answer)), place,
            "another request, as the device has an answer for " + NameOf(*request));
  }

  std::optional<Request> RequestOf(Place const& place) {
    if (std::optional<std::string> const text = TextIn(place, "request")) {
      Bytes const setup = BytesIn(place, *text);
      Require(setup.size() == 6, place, "\"request\" of six bytes");
      ByteCursor at(setup);
      Request request;
      request.requestType = at.Byte();
      request.request = at.Byte();
      request.value = at.Little16();
      request.index = at.Little16();
      return request;
    }
    std::optional<std::uint64_t> const type = NumberIn(place, "type", 0xFF);
    if (!type) {
      return std::nullopt;
    }
    auto const index = static_cast<std::uint8_t>(NumberIn(place, "index", 0xFF).value_or(0));
    std::optional<std::uint64_t> const interface = NumberIn(place, "interface", 0xFF);
    if (interface) {
      return Request::OfInterface(static_cast<std::uint8_t>(*type),
                                  static_cast<std::uint8_t>(*interface), index);
    }
    Request request = Request::Descriptor(static_cast<std::uint8_t>(*type), index);
    request.index = static_cast<std::uint16_t>(NumberIn(place, "language", 0xFFFF).value_or(0));
    return request;
  }

  Outcome OutcomeOf(Place const& place) {
    std::optional<std::string> const name = TextIn(place, "outcome");
    for (Outcome const outcome : {Outcome::kStalled, Outcome::kFailed}) {
      if (name && *name == NameOf(outcome)) {
        return outcome;
      }
    }
    Require(!name || *name == NameOf(Outcome::kAnswered), place,
            "an outcome that is answered, stalled or failed");
    return Outcome::kAnswered;
  }

  Source SourceOf(Place const& place) {
    auto const found = place.value.FindMember("source");
    if (found == place.value.MemberEnd()) {
      return {name_, 0, 0, 0};
    }
    Place const source{found->value, place.path + ".source"};
    Require(source.value.IsObject(), source, "an object");
    return {TextIn(source, "file").value_or(name_), NumberIn(source, "offset", ~0ULL).value_or(0),
            NumberIn(source, "line", ~0ULL).value_or(0),
            NumberIn(source, "packet", ~0ULL).value_or(0)};
  }

  Bytes BytesIn(Place const& place, std::string_view hex) {
    Bytes bytes;
    for (std::size_t at = 0; at < hex.size();) {
      if (hex[at] == ' ') {
        ++at;
        continue;
      }
      std::optional<std::uint64_t> const byte = NumberOf(hex.substr(at, 2), 16, 0xFF);
      Require(byte && hex.size() - at >= 2, place, "bytes of two hexadecimal digits each");
      bytes.push_back(static_cast<std::uint8_t>(*byte));
      at += 2;
    }
    return bytes;
  }

  std::vector<Place> ElementsOf(Place const& place, char const* member) {
    auto const found = place.value.FindMember(member);
    Require(found != place.value.MemberEnd() && found->value.IsArray(), place,
            '"' + std::string(member) + "\", an array");
    std::vector<Place> elements;
    for (Value const& element : found->value.GetArray()) {
      elements.push_back({element, (place.value.HasMember("usbdesc") ? "" : place.path + '.') +
                                       member + '[' + std::to_string(elements.size()) + ']'});
    }
    return elements;
  }

  std::optional<std::string> TextIn(Place const& place, char const* member) {
    auto const found = place.value.FindMember(member);
    if (found == place.value.MemberEnd() || found->value.IsNull()) {
      return std::nullopt;
    }
    Require(found->value.IsString(), place, '"' + std::string(member) + "\", a string");
    return std::string(found->value.GetString(), found->value.GetStringLength());
  }

  std::optional<std::uint64_t> NumberIn(Place const& place, char const* member,
                                        std::uint64_t most) {
    auto const found = place.value.FindMember(member);
    if (found == place.value.MemberEnd() || found->value.IsNull()) {
      return std::nullopt;
    }
    Require(found->value.IsUint64() && found->value.GetUint64() <= most, place,
            '"' + std::string(member) + "\", a number from 0 to " + std::to_string(most));
    return found->value.GetUint64();
  }

  void Require(bool holds, Place const& place, std::string const& expected) const {
    if (!holds) {
      throw ReadError(name_, place.path + ": expected " + expected);
    }
  }

  std::string const& name_;
};

}  // namespace

std::string WriteJson(std::vector<Input> const& inputs) {
  return JsonWriter().Write(inputs);
}

std::vector<Input> ReadJson(std::string_view text, std::string const& name) {
  if (text.starts_with(kByteOrderMark)) {
    text.remove_prefix(kByteOrderMark.size());
  }
  return JsonReader(name).Read(text);
}

}  // namespace usb_devices

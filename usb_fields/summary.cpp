#include <usb_fields/summary.h>

#include <algorithm>
#include <array>

#include <usb_fields/codes.h>
#include <usb_fields/names.h>
#include <usb_fields/reader.h>
#include <usb_fields/text.h>
#include <usb_fields/text_writer.h>

namespace usb_fields {
namespace {

using detail::TextWriter;

// A number with at most two digits after the point, from hundredths.
void AddHundredths(TextWriter& out, std::uint64_t hundredths) noexcept {
  out.AddNumber(hundredths / 100);
  std::uint64_t const rest = hundredths % 100;
  if (rest != 0) {
    out.Add('.');
    out.AddNumber(rest / 10);
    if (rest % 10 != 0) {
      out.AddNumber(rest % 10);
    }
  }
}

// Four digits, the usual form of vendor and product IDs.
void AddLowerHex(TextWriter& out, std::uint64_t number) noexcept {
  for (int shift = 12; shift >= 0; shift -= 4) {
    out.Add("0123456789abcdef"[number >> shift & 0xF]);
  }
}

void AddCount(TextWriter& out, std::uint64_t count, std::string_view what) noexcept {
  out.AddNumber(count);
  out.Add(' ');
  out.Add(what);
  out.Add(count == 1 ? "" : "s");
}

// "24.48 MB/s"
void AddRate(TextWriter& out, std::uint64_t bytesPerSecond) noexcept {
  struct Scale {
    std::uint64_t factor;
    std::string_view name;
  };
  constexpr Scale kScales[] = {{1'000'000'000, " GB/s"}, {1'000'000, " MB/s"}, {1'000, " kB/s"}};
  for (Scale const& scale : kScales) {
    if (bytesPerSecond >= scale.factor) {
      AddHundredths(out, (bytesPerSecond * 100 + scale.factor / 2) / scale.factor);
      out.Add(scale.name);
      return;
    }
  }
  out.AddNumber(bytesPerSecond);
  out.Add(" B/s");
}

// "125 us", "4 ms", "4.1 s"
void AddMicroseconds(TextWriter& out, std::uint64_t microseconds) noexcept {
  if (microseconds < 1000) {
    out.AddNumber(microseconds);
    out.Add(" us");
  } else if (microseconds < 1'000'000) {
    AddHundredths(out, microseconds / 10);
    out.Add(" ms");
  } else {
    AddHundredths(out, microseconds / 10'000);
    out.Add(" s");
  }
}

// A name in lower case, except for abbreviations: "H.264 frame".
void AddLowered(TextWriter& out, std::string_view name) noexcept {
  for (std::size_t i = 0; i < name.size(); ++i) {
    bool const isFirst = i == 0 || name[i - 1] == ' ';
    bool const isWord = isFirst && i + 1 < name.size() && name[i + 1] >= 'a' && name[i + 1] <= 'z';
    char const c = name[i];
    out.Add(isWord && c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c);
  }
}

// Writes the line for one descriptor.
class Speaker {
 public:
  Speaker(std::span<std::uint8_t const> bytes, Context const& context, TextWriter& out) noexcept
      : bytes_(bytes),
        context_(context),
        out_(out) {
    reading_ = ReadFields(bytes, context, [this](FieldValue const& field) {
      if (count_ < fields_.size()) {
        fields_[count_++] = field;
      }
    });
  }

  void Speak() noexcept {
    if (reading_.layout == nullptr) {
      Unknown();
      return;
    }
    Topic const* const topic = std::ranges::find_if(
        kTopics, [this](Topic const& t) { return t.id == reading_.layout->id; });
    if (reading_.isCut || topic == std::end(kTopics)) {
      Name();
    } else {
      (this->*topic->speak)();
    }
    if (reading_.isCut) {
      out_.Add(" (cut off)");
    } else if (reading_.isGuessed) {
      out_.Add(" (guessed)");
    }
  }

 private:
  struct Topic {
    std::string_view id;
    void (Speaker::*speak)() noexcept;
  };
  static Topic const kTopics[37];

  FieldValue const* Find(std::string_view name) const noexcept {
    for (std::size_t i = 0; i < count_; ++i) {
      if (fields_[i].field->name == name) {
        return &fields_[i];
      }
    }
    return nullptr;
  }

  std::uint64_t Value(std::string_view name) const noexcept {
    FieldValue const* const field = Find(name);
    return field != nullptr ? field->value : 0;
  }

  void AddText(std::string_view name) noexcept {
    if (FieldValue const* const field = Find(name)) {
      std::array<char, 256> buffer;
      out_.Add(TextOf(*field, buffer));
    }
  }

  // Adds the text of a value or, if it has none, the number.
  void AddMeaning(std::string_view name) noexcept {
    if (FieldValue const* const field = Find(name)) {
      std::array<char, 256> buffer;
      std::string_view const text = TextOf(*field, buffer);
      out_.Add(text.empty() ? NumberOf(*field, buffer) : text);
    }
  }

  void AddTriple(std::string_view before, std::uint64_t classCode, std::uint64_t subclass,
                 std::uint64_t protocol) noexcept {
    std::array<char, 256> buffer;
    std::string_view const name =
        TripleName(static_cast<std::uint8_t>(classCode), static_cast<std::uint8_t>(subclass),
                   static_cast<std::uint8_t>(protocol), buffer);
    out_.Add(before);
    if (!name.empty()) {
      out_.Add(name);
      return;
    }
    out_.Add("class ");
    out_.AddHex(classCode, 2);
    out_.Add("h, ");
    out_.AddHex(subclass, 2);
    out_.Add("h, ");
    out_.AddHex(protocol, 2);
    out_.Add('h');
  }

  // The layout's name, with the number by which other descriptors refer to this one.
  void Name() noexcept {
    std::string_view const name = reading_.layout->name;
    std::size_t const colon = name.find(": ");
    if (colon == std::string_view::npos || reading_.layout->id.starts_with("bos.")) {
      out_.Add(name);
    } else {
      out_.Add(name.substr(0, colon));
      out_.Add(", ");
      AddLowered(out_, name.substr(colon + 2));
    }
    for (std::string_view const id : {"bFrameIndex", "bFormatIndex", "bUnitID", "bTerminalID",
                                      "bClockID", "bJackID", "bElementID"}) {
      if (FieldValue const* const field = Find(id); field != nullptr && !field->IsCut()) {
        out_.Add(' ');
        out_.AddNumber(field->value);
        return;
      }
    }
  }

  void Unknown() noexcept {
    constexpr std::string_view kOrigins[] = {"Unknown descriptor", "Class-specific descriptor",
                                             "Vendor-specific descriptor", "Unknown descriptor"};
    std::uint64_t const type = Value("bDescriptorType");
    bool const isVendors = context_.hasInterface && context_.interfaceClass == 0xFF;
    out_.Add(isVendors ? kOrigins[2] : kOrigins[type >> 5 & 3]);
    if (reading_.length >= 2) {
      out_.Add(", type ");
      out_.AddHex(type, 2);
      out_.Add('h');
    }
    out_.Add(": ");
    AddCount(out_, reading_.length, "byte");
  }

  void Device() noexcept {
    out_.Add("Device ");
    AddLowerHex(out_, Value("idVendor"));
    out_.Add(':');
    AddLowerHex(out_, Value("idProduct"));
    out_.Add(": USB ");
    AddText("bcdUSB");
    if (Value("bDeviceClass") == 0) {
      out_.Add(", class by interface");
    } else {
      AddTriple(", ", Value("bDeviceClass"), Value("bDeviceSubClass"), Value("bDeviceProtocol"));
    }
    out_.Add(", release ");
    AddText("bcdDevice");
  }

  void Configuration() noexcept {
    Name();
    out_.Add(' ');
    out_.AddNumber(Value("bConfigurationValue"));
    out_.Add(": ");
    AddCount(out_, Value("bNumInterfaces"), "interface");
    std::uint64_t const attributes = Value("bmAttributes");
    out_.Add((attributes & 0x40) != 0 ? ", self-powered" : ", bus-powered");
    out_.Add((attributes & 0x20) != 0 ? ", remote wakeup" : "");
    out_.Add(", ");
    AddText("bMaxPower");
  }

  void Association() noexcept {
    std::uint64_t const first = Value("bFirstInterface");
    std::uint64_t const count = Value("bInterfaceCount");
    out_.Add(count > 1 ? "Interface Association, interfaces "
                       : "Interface Association, interface ");
    out_.AddNumber(first);
    if (count > 1) {
      out_.Add(count == 2 ? " and " : " to ");
      out_.AddNumber(first + count - 1);
    }
    AddTriple(": ", Value("bFunctionClass"), Value("bFunctionSubClass"),
              Value("bFunctionProtocol"));
  }

  void Interface() noexcept {
    out_.Add("Interface ");
    out_.AddNumber(Value("bInterfaceNumber"));
    if (Value("bAlternateSetting") != 0) {
      out_.Add(", alternate setting ");
      out_.AddNumber(Value("bAlternateSetting"));
    }
    AddTriple(": ", Value("bInterfaceClass"), Value("bInterfaceSubClass"),
              Value("bInterfaceProtocol"));
    out_.Add(", ");
    AddCount(out_, Value("bNumEndpoints"), "endpoint");
  }

  void Endpoint() noexcept {
    constexpr std::string_view kTypes[] = {"control", "isochronous", "bulk", "interrupt"};
    constexpr std::string_view kSynchronization[] = {"", ", asynchronous", ", adaptive",
                                                     ", synchronous"};
    constexpr std::string_view kUsages[] = {"", ", feedback", ", implicit feedback", ""};
    std::uint64_t const address = Value("bEndpointAddress");
    std::uint64_t const attributes = Value("bmAttributes");
    std::uint64_t const type = attributes & 3;
    out_.Add("Endpoint ");
    out_.AddHex(address, 2);
    out_.Add('h');
    out_.Add(type == 0 ? "" : address < 0x80 ? " OUT" : " IN");
    out_.Add(": ");
    out_.Add(kTypes[type]);
    if (type == 1) {
      out_.Add(kSynchronization[attributes >> 2 & 3]);
      out_.Add(kUsages[attributes >> 4 & 3]);
    }
    out_.Add(", ");
    Packets(type);
  }

  void Packets(std::uint64_t type) noexcept {
    bool const isPeriodic = type % 2 == 1;
    bool const isSuper = context_.SpeedHere() >= Speed::kSuper;
    bool const isHigh = context_.SpeedHere() == Speed::kHigh;
    std::uint64_t const field = Value("wMaxPacketSize");
    std::uint64_t const size = isSuper ? field : field & 0x7FF;
    std::uint64_t const packets = isHigh && isPeriodic ? (field >> 11 & 3) + 1 : 1;
    std::uint64_t each = size * packets;
    if (packets > 1) {
      out_.AddNumber(packets);
      out_.Add(" x ");
    }
    AddCount(out_, size, "byte");
    if (isSuper) {
      each = std::max(each, Companion(type));
    }
    if (isPeriodic) {
      Period(type, each);
    }
  }

  // Adds the bursts of the following companion; returns its bytes per interval.
  std::uint64_t Companion(std::uint64_t type) noexcept {
    ByteView const next(ByteView(bytes_).Slice(reading_.length, bytes_.size()));
    if (next.At(1) != codes::kCompanionType || next.At(0) < 6) {
      return 0;
    }
    if (next.At(2) != 0) {
      out_.Add(", bursts of ");
      out_.AddNumber(next.At(2) + 1u);
    }
    std::uint64_t bytes = next.Number(4, 2);
    if (type == 1 && (next.At(3) & 3) != 0) {
      out_.Add(", mult ");
      out_.AddNumber((next.At(3) & 3) + 1u);
    }
    if (type == 1 && (next.At(3) & 0x80) != 0) {
      ByteView const plus(next.Slice(next.At(0), next.Size()));
      bytes = plus.At(1) == codes::kPlusCompanionType ? plus.Number(4, 4) : bytes;
    }
    if (type % 2 == 1) {
      out_.Add(", ");
      AddCount(out_, bytes, "byte");
    }
    return type % 2 == 1 ? bytes : 0;
  }

  void Period(std::uint64_t type, std::uint64_t bytes) noexcept {
    bool const isFull = context_.SpeedHere() <= Speed::kFull;
    std::uint64_t const interval = Value("bInterval");
    bool const isPower = type == 1 || !isFull;
    if (interval == 0 || (isPower && interval > 16)) {
      out_.Add(", interval ");
      out_.AddNumber(interval);
      out_.Add(" is out of range");
      return;
    }
    std::uint64_t const unit = isFull ? 1000 : 125;
    std::uint64_t const period = isPower ? unit << (interval - 1) : unit * interval;
    out_.Add(" every ");
    AddMicroseconds(out_, period);
    out_.Add(" (");
    AddRate(out_, bytes * 1'000'000 / period);
    out_.Add(')');
  }

  void Companion() noexcept {
    Name();
    std::uint64_t const burst = Value("bMaxBurst");
    out_.Add(": bursts of ");
    out_.AddNumber(burst + 1);
    if (FieldValue const* const bytes = Find("wBytesPerInterval");
        bytes != nullptr && bytes->value != 0) {
      out_.Add(", ");
      AddCount(out_, bytes->value, "byte");
      out_.Add(" an interval");
    }
  }

  void Hid() noexcept {
    Name();
    out_.Add(' ');
    AddText("bcdHID");
    FieldValue const* const length = Find("wDescriptorLength");
    if (length != nullptr) {
      out_.Add(": report descriptor of ");
      AddCount(out_, length->value, "byte");
    }
  }

  void Bos() noexcept {
    out_.Add("BOS: ");
    std::uint64_t const count = Value("bNumDeviceCaps");
    out_.AddNumber(count);
    out_.Add(count == 1 ? " device capability" : " device capabilities");
  }

  void Container() noexcept {
    Name();
    out_.Add(": ");
    AddText("ContainerID");
  }

  void Hub() noexcept {
    Name();
    out_.Add(": ");
    AddCount(out_, Value("bNbrPorts"), "port");
  }

  void VideoFormat() noexcept {
    Name();
    out_.Add(": ");
    if (FieldValue const* const guid = Find("guidFormat")) {
      std::array<char, 128> buffer;
      std::string_view text = TextOf(*guid, buffer);
      std::size_t const open = text.find(" (");
      if (open != std::string_view::npos) {
        text = text.substr(open + 2, text.size() - open - 3);
      }
      out_.Add(text);
      out_.Add(", ");
    }
    if (FieldValue const* const bits = Find("bBitsPerPixel"); bits != nullptr && bits->value != 0) {
      AddCount(out_, bits->value, "bit");
      out_.Add(" a pixel, ");
    }
    AddCount(out_, Value("bNumFrameDescriptors"), "frame");
  }

  void VideoFrame() noexcept {
    Name();
    out_.Add(": ");
    out_.AddNumber(Value("wWidth"));
    out_.Add(" x ");
    out_.AddNumber(Value("wHeight"));
    std::uint64_t least = ~std::uint64_t{0};
    std::uint64_t most = 0;
    for (std::size_t i = 0; i < count_; ++i) {
      std::string_view const name = fields_[i].field->name;
      if ((name == "dwFrameInterval" || name == "dwMinFrameInterval" ||
           name == "dwMaxFrameInterval") &&
          fields_[i].value != 0) {
        least = std::min(least, fields_[i].value);
        most = std::max(most, fields_[i].value);
      }
    }
    if (most == 0) {
      return;
    }
    auto const rate = [](std::uint64_t interval) {  // in 100 ns
      constexpr std::uint64_t kIntervals = 10'000'000;
      return (kIntervals * 100 + interval / 2) / interval;
    };
    out_.Add(", ");
    if (rate(most) != rate(least)) {
      AddHundredths(out_, rate(most));
      out_.Add(" to ");
    }
    AddHundredths(out_, rate(least));
    out_.Add(" frames a second");
  }

  void AudioGeneral() noexcept {
    Name();
    out_.Add(": ");
    AddMeaning(Find("wFormatTag") != nullptr ? "wFormatTag" : "bmFormats");
    if (FieldValue const* const channels = Find("bNrChannels")) {
      out_.Add(", ");
      AddCount(out_, channels->value, "channel");
    }
    out_.Add(", terminal ");
    out_.AddNumber(Value("bTerminalLink"));
  }

  void AudioFormat() noexcept {
    Name();
    out_.Add(": ");
    if (FieldValue const* const channels = Find("bNrChannels")) {
      AddCount(out_, channels->value, "channel");
      out_.Add(", ");
    }
    AddCount(out_, Value("bBitResolution"), "bit");
    out_.Add(" in ");
    AddCount(out_, Value(Find("bSubslotSize") != nullptr ? "bSubslotSize" : "bSubframeSize"),
             "byte");
    std::string_view separator = ", ";
    for (std::size_t i = 0; i < count_; ++i) {
      std::string_view const name = fields_[i].field->name;
      if (name.find("SamFreq") == std::string_view::npos || name.starts_with('b')) {
        continue;
      }
      out_.Add(separator);
      out_.AddNumber(fields_[i].value);
      separator = name == "tLowerSamFreq" ? " to " : ", ";
    }
    out_.Add(Find("tSamFreq") != nullptr || Find("tLowerSamFreq") != nullptr ? " Hz" : "");
  }

  void Terminal() noexcept {
    Name();
    out_.Add(": ");
    AddMeaning("wTerminalType");
    if (FieldValue const* const channels = Find("bNrChannels"); channels != nullptr) {
      out_.Add(", ");
      AddCount(out_, channels->value, "channel");
    }
  }

  std::span<std::uint8_t const> bytes_;
  Context const& context_;
  TextWriter& out_;
  Reading reading_;
  std::array<FieldValue, 64> fields_;
  std::size_t count_ = 0;
};

constexpr Speaker::Topic Speaker::kTopics[37] = {
    {"usb2.device", &Speaker::Device},
    {"usb2.configuration", &Speaker::Configuration},
    {"usb2.other_speed_configuration", &Speaker::Configuration},
    {"usb2.interface_association", &Speaker::Association},
    {"usb2.interface", &Speaker::Interface},
    {"usb2.endpoint", &Speaker::Endpoint},
    {"usb2.endpoint.audio1", &Speaker::Endpoint},
    {"uac1.as_isoc_endpoint", &Speaker::Endpoint},
    {"uac2.as_isoc_endpoint", &Speaker::Endpoint},
    {"uac3.as_isoc_endpoint", &Speaker::Endpoint},
    {"uac1.ac_interrupt_endpoint", &Speaker::Endpoint},
    {"uac2.ac_interrupt_endpoint", &Speaker::Endpoint},
    {"uac3.ac_interrupt_endpoint", &Speaker::Endpoint},
    {"midi.endpoint", &Speaker::Endpoint},
    {"usb3.endpoint_companion", &Speaker::Companion},
    {"hid.hid", &Speaker::Hid},
    {"bos.header", &Speaker::Bos},
    {"bos.container_id", &Speaker::Container},
    {"hub.usb2", &Speaker::Hub},
    {"hub.usb3", &Speaker::Hub},
    {"video.format_uncompressed", &Speaker::VideoFormat},
    {"video.format_mjpeg", &Speaker::VideoFormat},
    {"video.format_frame_based", &Speaker::VideoFormat},
    {"video.frame_uncompressed", &Speaker::VideoFrame},
    {"video.frame_mjpeg", &Speaker::VideoFrame},
    {"video.frame_frame_based", &Speaker::VideoFrame},
    {"uac1.as_general", &Speaker::AudioGeneral},
    {"uac2.as_general", &Speaker::AudioGeneral},
    {"uac1.format_type_i", &Speaker::AudioFormat},
    {"uac1.format_type_i_continuous", &Speaker::AudioFormat},
    {"uac2.format_type_i", &Speaker::AudioFormat},
    {"uac1.input_terminal", &Speaker::Terminal},
    {"uac2.input_terminal", &Speaker::Terminal},
    {"uac1.output_terminal", &Speaker::Terminal},
    {"uac2.output_terminal", &Speaker::Terminal},
    {"video.input_terminal", &Speaker::Terminal},
    {"video.output_terminal", &Speaker::Terminal},
};

}  // namespace

std::string_view SummaryOf(std::span<std::uint8_t const> bytes, Context const& context,
                           std::span<char> buffer) noexcept {
  TextWriter out(buffer);
  Speaker(bytes, context, out).Speak();
  return out.Text();
}

}  // namespace usb_fields

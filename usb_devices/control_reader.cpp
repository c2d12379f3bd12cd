#include <usb_devices/control_reader.h>

#include <map>
#include <set>
#include <utility>
#include <vector>

namespace usb_devices {
namespace {

constexpr unsigned kMostFailures = 8;

// USB 3.2, tables 9-11, 9-22 and 9-12; USB 2.0, table 9-9.
constexpr std::uint16_t kDeviceSize = 18;
constexpr std::uint16_t kQualifierSize = 10;
constexpr std::uint16_t kBosSize = 5;
constexpr std::uint16_t kConfigurationSize = 9;
constexpr std::uint16_t kMostOfOneByteLength = 255;

constexpr std::uint8_t kAssociationType = 0x0B;
constexpr std::uint8_t kCapabilityType = 0x10;
constexpr std::uint8_t kPlatformCapability = 0x05;
constexpr std::uint8_t kEthernetSubtype = 0x0F;
constexpr std::uint8_t kCommunicationsClass = 0x02;
constexpr std::uint8_t kHidClass = 0x03;
constexpr std::uint8_t kHubClass = 0x09;
constexpr std::uint16_t kEnglish = 0x0409;

// D8DD60DF-4589-4CC7-9CD2-659D9E648A9F (Microsoft OS 2.0 descriptors, table 3) and
// 3408B638-09A9-47A0-8BFD-A0768815B665 (WebUSB), as they are in the descriptor.
constexpr std::uint8_t kMicrosoftUuid[] = {0xDF, 0x60, 0xDD, 0xD8, 0x89, 0x45, 0xC7, 0x4C,
                                           0x9C, 0xD2, 0x65, 0x9D, 0x9E, 0x64, 0x8A, 0x9F};
constexpr std::uint8_t kWebUsbUuid[] = {0x38, 0xB6, 0x08, 0x34, 0xA9, 0x09, 0xA0, 0x47,
                                        0x8B, 0xFD, 0xA0, 0x76, 0x88, 0x15, 0xB6, 0x65};
constexpr std::uint16_t kMicrosoftSetIndex = 7;
constexpr std::uint16_t kWebUsbUrlIndex = 2;

// String EEh of a device with Microsoft OS 1.0 descriptors: "MSFT100", then the code of the vendor
// request and one more byte.
constexpr std::uint16_t kOsStringSize = 18;
constexpr std::uint8_t kOsStringBegin[] = {kOsStringSize, kStringType, 'M', 0, 'S', 0, 'F', 0,
                                           'T',           0,           '1', 0, '0', 0, '0', 0};
constexpr std::uint16_t kCompatIdHeaderSize = 16;
constexpr std::uint16_t kCompatIdIndex = 4;

std::uint8_t ByteAt(ByteSpan bytes, std::size_t at) {
  return ByteCursor(bytes).Peek(at);
}

std::uint16_t WordAt(ByteSpan bytes, std::size_t at) {
  ByteCursor cursor(bytes);
  cursor.Skip(at);
  return cursor.Little16();
}

// Calls `take` for each descriptor of a chain, until one has an invalid length.
template <typename Take>
void ForEachDescriptor(ByteSpan chain, Take take) {
  ByteCursor at(chain);
  while (at.Peek() >= 2 && at.Peek() <= at.Left()) {
    take(at.Take(at.Peek()));
  }
}

std::string Count(std::size_t bytes) {
  return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
}

class ControlReader {
 public:
  ControlReader(ControlPipe const& pipe, DeviceBuilder& device) : pipe_(pipe), device_(device) {}

  void Read() {
    Bytes const device = Ask(Request::Descriptor(kDeviceType), kDeviceSize);
    std::uint16_t const release = WordAt(device, 2);
    AddStrings(device, {14, 15, 16});
    for (unsigned index = 0; index < ByteAt(device, 17); ++index) {
      ReadConfiguration(kConfigurationType, index);
    }
    // Earlier releases define neither a qualifier nor a BOS (USB 2.0, 9.6.2; USB 3.2, 9.6.2).
    if (release >= 0x0200 && release < 0x0300) {
      ReadOtherSpeed();
    }
    if (release >= 0x0201) {
      ReadBos();
    }
    if (ByteAt(device, 4) == kHubClass) {
      Ask(Request::Hub(release >= 0x0300 ? kSuperSpeedHubType : kHubType), kMostOfOneByteLength);
    }
    ReadReports();
    ReadStrings();
    // Last, because some devices stop answering after a request for an unknown string.
    if (release >= 0x0200) {
      ReadMicrosoftString();
    }
  }

 private:
  Bytes ReadConfiguration(std::uint8_t type, unsigned index) {
    Bytes bytes =
        AskWhole(Request::Descriptor(type, static_cast<std::uint8_t>(index)), kConfigurationSize);
    std::uint8_t interfaceNumber = 0;
    std::uint8_t interfaceClass = 0;
    ForEachDescriptor(bytes, [&](ByteSpan descriptor) {
      switch (ByteAt(descriptor, 1)) {
        case kConfigurationType:
        case kOtherSpeedConfigurationType:
          AddStrings(descriptor, {6});
          break;
        case kInterfaceType:
          AddStrings(descriptor, {8});
          interfaceNumber = ByteAt(descriptor, 2);
          interfaceClass = ByteAt(descriptor, 5);
          break;
        case kAssociationType:
          AddStrings(descriptor, {7});
          break;
        case kClassInterfaceType:
          if (interfaceClass == kCommunicationsClass && ByteAt(descriptor, 2) == kEthernetSubtype) {
            AddStrings(descriptor, {3});
          }
          break;
        case kHidType:
          if (interfaceClass == kHidClass) {
            reports_.emplace(interfaceNumber, WordAt(descriptor, 7));
          }
          break;
        default:
          break;
      }
    });
    return bytes;
  }

  void ReadOtherSpeed() {
    Bytes const qualifier = Ask(Request::Descriptor(kQualifierType), kQualifierSize);
    for (unsigned index = 0; index < ByteAt(qualifier, 8); ++index) {
      ReadConfiguration(kOtherSpeedConfigurationType, index);
    }
  }

  void ReadBos() {
    Bytes const bos = AskWhole(Request::Descriptor(kBosType), kBosSize);
    ForEachDescriptor(bos, [this](ByteSpan capability) {
      ByteCursor at(capability);
      at.Skip(2);
      if (ByteAt(capability, 1) != kCapabilityType || at.Byte() != kPlatformCapability) {
        return;
      }
      at.Skip(1);
      ByteSpan const uuid = at.Take(sizeof kMicrosoftUuid);
      if (AreEqual(uuid, kMicrosoftUuid)) {
        ReadMicrosoftSets(at);
      } else if (AreEqual(uuid, kWebUsbUuid)) {
        at.Skip(2);
        std::uint8_t const code = at.Byte();
        if (std::uint8_t const page = at.Byte(); page != 0) {
          Ask(Request::Vendor(code, page, kWebUsbUrlIndex), kMostOfOneByteLength);
        }
      }
    });
  }

  // There is one set for each Windows release that needs its own.
  void ReadMicrosoftSets(ByteCursor at) {
    while (at.Left() >= 8) {
      at.Skip(4);
      std::uint16_t const length = at.Little16();
      std::uint8_t const code = at.Byte();
      at.Skip(1);
      Ask(Request::Vendor(code, 0, kMicrosoftSetIndex), length);
    }
  }

  void ReadMicrosoftString() {
    Bytes const string = Ask(Request::MicrosoftString(), kOsStringSize);
    ByteCursor at(string);
    if (AreEqual(at.Take(sizeof kOsStringBegin), kOsStringBegin) && at.Left() != 0) {
      AskWhole(Request::Vendor(at.Byte(), 0, kCompatIdIndex), kCompatIdHeaderSize);
    }
  }

  void ReadReports() {
    for (auto const& [interfaceNumber, length] : reports_) {
      Request const request = Request::HidReport(interfaceNumber);
      if (pipe_.asksInterfaces) {
        Ask(request, length);
      } else {
        device_.Add({request,
                     Outcome::kFailed,
                     {},
                     SourceOf(),
                     "not asked for, as that would take the interface from its driver"});
      }
    }
  }

  void ReadStrings() {
    if (strings_.empty()) {
      return;
    }
    Bytes const list = Ask(Request::String(0, 0), kMostOfOneByteLength);
    std::set<std::uint16_t> languages;
    ByteCursor at(list);
    at.Skip(2);
    while (at.Left() >= 2) {
      languages.insert(at.Little16());
    }
    if (languages.empty()) {
      languages.insert(kEnglish);
    }
    for (std::uint16_t const language : languages) {
      for (std::uint8_t const index : strings_) {
        Ask(Request::String(index, language), kMostOfOneByteLength);
      }
    }
  }

  void AddStrings(ByteSpan descriptor, std::initializer_list<std::size_t> places) {
    for (std::size_t const place : places) {
      if (std::uint8_t const index = ByteAt(descriptor, place); index != 0) {
        strings_.insert(index);
      }
    }
  }

  Bytes Ask(Request const& request, std::uint16_t length) {
    return device_.Has(request) ? Bytes() : Add(Get(request, length));
  }

  // Reads an answer whose header announces its length: first the header, then the whole answer.
  Bytes AskWhole(Request const& request, std::uint16_t headerSize) {
    Answer answer = Get(request, headerSize);
    std::uint16_t const announced = AnnouncedBy(answer);
    if (answer.bytes.size() < headerSize || announced <= headerSize) {
      if (answer.outcome == Outcome::kAnswered && announced != answer.bytes.size()) {
        AddNote(answer, "announces " + Count(announced) + ", and this read gave " +
                            Count(answer.bytes.size()));
      }
      return Add(std::move(answer));
    }
    Answer whole = Get(request, announced);
    if (whole.outcome != Outcome::kAnswered) {
      AddNote(answer, "the first " + Count(headerSize) + " only; the read of all " +
                          Count(announced) + " was " + std::string(NameOf(whole.outcome)) +
                          (whole.note.empty() ? "" : ": " + whole.note));
      return Add(std::move(answer));
    }
    if (whole.bytes.size() < announced) {
      AddNote(whole, "announces " + Count(announced) + ", and the read of all gave " +
                         Count(whole.bytes.size()));
    }
    if (whole.bytes.size() < answer.bytes.size()) {
      answer.note = whole.note;
      return Add(std::move(answer));
    }
    if (AnnouncedBy(whole) != announced) {
      AddNote(whole, "announced " + Count(announced) + " at first and " +
                         Count(AnnouncedBy(whole)) + " when all were read");
    }
    return Add(std::move(whole));
  }

  // The length is in the third and fourth byte. In an extended compat ID it is in the first four
  // bytes, of which two are always enough.
  static std::uint16_t AnnouncedBy(Answer const& answer) {
    return WordAt(answer.bytes, answer.request.IsStandard() ? 2 : 0);
  }

  Answer Get(Request const& request, std::uint16_t length) {
    Answer answer{request, Outcome::kFailed, {}, SourceOf(), reasonToStop_};
    if (!reasonToStop_.empty()) {
      return answer;
    }
    ControlTransfer transfer = pipe_.read(request, length);
    answer.outcome = transfer.outcome;
    answer.note = std::move(transfer.note);
    if (transfer.outcome == Outcome::kAnswered) {
      answer.bytes = std::move(transfer.bytes);
      if (answer.bytes.size() > length) {
        AddNote(answer, "gave " + Count(answer.bytes.size()) + " when " + Count(length) +
                            " were asked for");
        answer.bytes.resize(length);
      }
    } else if (transfer.outcome == Outcome::kFailed) {
      ++failures_;
      if (transfer.isGone) {
        reasonToStop_ = answer.note.empty() ? "the device is gone" : answer.note;
      } else if (failures_ == kMostFailures) {
        reasonToStop_ = "not asked for after " + std::to_string(kMostFailures) + " failures";
      }
    }
    return answer;
  }

  static void AddNote(Answer& answer, std::string const& note) {
    answer.note += (answer.note.empty() ? "" : "; ") + note;
  }

  Bytes Add(Answer answer) {
    Bytes bytes = answer.bytes;
    device_.Add(std::move(answer));
    return bytes;
  }

  Source SourceOf() const { return {pipe_.name, 0, 0, 0}; }

  ControlPipe const& pipe_;
  DeviceBuilder& device_;
  std::set<std::uint8_t> strings_;
  std::map<std::uint8_t, std::uint16_t> reports_;
  unsigned failures_ = 0;
  std::string reasonToStop_;
};

}  // namespace

void ReadThrough(ControlPipe const& pipe, DeviceBuilder& device) {
  ControlReader(pipe, device).Read();
}

}  // namespace usb_devices

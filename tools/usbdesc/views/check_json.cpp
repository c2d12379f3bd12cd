#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <tools/usbdesc/views/check.h>

namespace usb_support::usbdesc {
namespace {

using usb_rules::Outcome;

class CheckListing {
 public:
  std::string Of(std::string_view input, std::span<CheckedDevice const> devices, bool showsAll) {
    writer_.StartObject();
    String("name", input);
    Key("devices");
    writer_.StartArray();
    for (CheckedDevice const& device : devices) {
      Device(device, showsAll);
    }
    writer_.EndArray();
    writer_.EndObject();
    return {buffer_.GetString(), buffer_.GetSize()};
  }

 private:
  using Writer = rapidjson::Writer<rapidjson::StringBuffer>;

  void Key(std::string_view key) {
    writer_.Key(key.data(), static_cast<rapidjson::SizeType>(key.size()));
  }
  void String(std::string_view key, std::string_view value) {
    Key(key);
    writer_.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
  }
  void Number(std::string_view key, std::uint64_t value) {
    Key(key);
    writer_.Uint64(value);
  }

  void Device(CheckedDevice const& device, bool showsAll) {
    writer_.StartObject();
    String("name", device.name);
    String("speed", usb_devices::NameOf(static_cast<usb_devices::Speed>(device.judgement.speed)));
    if (!device.judgement.speedReason.empty()) {
      String("speed_reason", device.judgement.speedReason);
    }
    Number("pass", device.passed);
    Number("fail", device.failed);
    Number("accepted", device.accepted);
    Number("not_applicable", device.notApplicable);
    Number("not_run", device.notRun);
    Key("rules");
    writer_.StartArray();
    for (CheckedRule const& rule : device.rules) {
      if (showsAll || rule.verdict->outcome == Outcome::kFail) {
        Rule(rule);
      }
    }
    writer_.EndArray();
    writer_.EndObject();
  }

  void Rule(CheckedRule const& rule) {
    constexpr std::string_view kOutcomes[] = {"pass", "fail", "not applicable", "not run"};
    usb_rules::Rule const& row = *rule.verdict->rule;
    writer_.StartObject();
    String("id", row.id);
    String("standard", rule.citation.standard);
    String("section", rule.citation.section);
    String("level", row.level == usb_rules::Level::kMust ? "must" : "should");
    String("sentence", row.sentence);
    String("outcome", rule.isAccepted ? "accepted"
                                      : kOutcomes[static_cast<std::size_t>(rule.verdict->outcome)]);
    if (!rule.verdict->reason.empty()) {
      String("reason", rule.verdict->reason);
    }
    if (!rule.findings.empty()) {
      Number("failures", rule.verdict->failures);
      Key("findings");
      writer_.StartArray();
      for (CheckedFinding const& finding : rule.findings) {
        Finding(finding);
      }
      writer_.EndArray();
    }
    writer_.EndObject();
  }

  void Finding(CheckedFinding const& checked) {
    usb_rules::Finding const& finding = *checked.finding;
    writer_.StartObject();
    String("place", checked.place);
    Number("offset", finding.offset);
    String("file", checked.file);
    if (checked.line != 0) {
      Number("line", checked.line);
    } else {
      Number("file_offset", finding.fileOffset);
    }
    if (!finding.descriptor.empty()) {
      String("descriptor", finding.descriptor);
    }
    if (!finding.field.empty()) {
      String("field", finding.field);
      // Numbers from 2^53 on are not exact in every reader; as text they are.
      if (finding.value < std::uint64_t{1} << 53U) {
        Number("value", finding.value);
      } else {
        String("value", std::to_string(finding.value));
      }
    }
    String("expected", finding.expected);
    String("text", usb_rules::TextOf(finding));
    std::string hex;
    for (std::uint8_t const byte : checked.bytes) {
      hex += Hex(byte, 2);
    }
    String("hex", hex);
    if (!checked.accepted.empty()) {
      String("accepted", checked.accepted);
    }
    writer_.EndObject();
  }

  rapidjson::StringBuffer buffer_;
  Writer writer_{buffer_};
};

}  // namespace

std::string CheckJson(std::string_view input, std::span<CheckedDevice const> devices,
                      bool showsAll) {
  return CheckListing().Of(input, devices, showsAll);
}

}  // namespace usb_support::usbdesc

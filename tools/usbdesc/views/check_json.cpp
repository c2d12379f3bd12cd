#include <tools/usbdesc/decoded.h>
#include <tools/usbdesc/json_writer.h>
#include <tools/usbdesc/views/check.h>

namespace usb_support::usbdesc {
namespace {

using usb_rules::Outcome;

class CheckListing {
 public:
  std::string Of(std::string_view input, std::span<CheckedDevice const> devices, bool showsAll) {
    writer_.StartObject();
    writer_.String("name", input);
    writer_.Key("devices");
    writer_.StartArray();
    for (CheckedDevice const& device : devices) {
      Device(device, showsAll);
    }
    writer_.EndArray();
    writer_.EndObject();
    return writer_.Text();
  }

 private:
  void Device(CheckedDevice const& device, bool showsAll) {
    writer_.StartObject();
    writer_.String("name", device.name);
    writer_.String("speed", NameOf(device.judgement.speed));
    if (!device.judgement.speedReason.empty()) {
      writer_.String("speed_reason", device.judgement.speedReason);
    }
    writer_.Number("pass", device.passed);
    writer_.Number("fail", device.failed);
    writer_.Number("accepted", device.accepted);
    writer_.Number("not_applicable", device.notApplicable);
    writer_.Number("not_run", device.notRun);
    if (!device.lacking.empty()) {
      writer_.Key("lacks");
      writer_.StartArray();
      for (std::string_view const what : device.lacking) {
        writer_.String(what);
      }
      writer_.EndArray();
    }
    writer_.Key("rules");
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
    writer_.String("id", row.id);
    writer_.String("standard", rule.citation.standard);
    writer_.String("section", rule.citation.section);
    writer_.String("level", row.level == usb_rules::Level::kMust ? "must" : "should");
    writer_.String("sentence", row.sentence);
    writer_.String("outcome", rule.isAccepted
                                  ? "accepted"
                                  : kOutcomes[static_cast<std::size_t>(rule.verdict->outcome)]);
    if (!rule.verdict->reason.empty()) {
      writer_.String("reason", rule.verdict->reason);
    }
    if (!rule.findings.empty()) {
      writer_.Number("failures", rule.verdict->failures);
      writer_.Key("findings");
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
    writer_.String("place", checked.place);
    writer_.Number("offset", finding.offset);
    writer_.String("file", checked.file);
    if (checked.line != 0) {
      writer_.Number("line", checked.line);
    } else {
      writer_.Number("file_offset", finding.fileOffset);
    }
    if (!finding.descriptor.empty()) {
      writer_.String("descriptor", finding.descriptor);
    }
    if (!finding.field.empty()) {
      writer_.String("field", finding.field);
      // Numbers from 2^53 on are not exact in every reader; as text they are.
      if (finding.value < std::uint64_t{1} << 53U) {
        writer_.Number("value", finding.value);
      } else {
        writer_.String("value", std::to_string(finding.value));
      }
    }
    writer_.String("expected", finding.expected);
    writer_.String("text", usb_rules::TextOf(finding));
    std::string hex;
    for (std::uint8_t const byte : checked.bytes) {
      hex += Hex(byte, 2);
    }
    writer_.String("hex", hex);
    if (!checked.accepted.empty()) {
      writer_.String("accepted", checked.accepted);
    }
    writer_.EndObject();
  }

  JsonWriter writer_;
};

}  // namespace

std::string CheckJson(std::string_view input, std::span<CheckedDevice const> devices,
                      bool showsAll) {
  return CheckListing().Of(input, devices, showsAll);
}

}  // namespace usb_support::usbdesc

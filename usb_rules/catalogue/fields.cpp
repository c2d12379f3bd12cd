// Rules that follow directly from the tables of usb_fields: lengths, reserved bits and fields,
// reserved codes, decimal digits. Each row below is one standard and gives a rule for each of these
// checks. A finding names the descriptor, the field and the table; a specific rule for a field takes
// precedence (judge.cpp). tables_test.cpp fails when no rule judges a requirement of a table.
#include <deque>
#include <string>
#include <vector>

#include <usb_rules/catalogue/tables.h>
#include <usb_rules/field_checks.h>

namespace usb_rules::detail {
namespace {

// The checks of a row are those that specific rules do not cover completely.
constexpr unsigned kLength = BitOf(Check::kLength);
constexpr unsigned kReserved = BitOf(Check::kReserved);
constexpr unsigned kCodes = BitOf(Check::kCodes);
constexpr unsigned kDigits = BitOf(Check::kDigits);

struct Family {
  std::string_view id;  // the start of the rule ids: "uac1" gives "uac1.fields.length"
  std::string_view standard;
  std::string_view section;
  std::string_view scope;
  unsigned checks;
};

constexpr Family kFamilies[] = {
    {"usb2", "USB 2.0", "9.6", "usb2.*", kReserved},
    {"usb3.bos", "USB 3.2", "9.6.2", "bos.*", kLength | kReserved | kCodes | kDigits},
    {"wusb", "Wireless USB 1.0", "7.4", "wusb.*", kLength | kReserved | kCodes | kDigits},
    {"cdc", "CDC 1.2", "5.2.3", "cdc.*", kLength | kReserved | kDigits},
    {"uvc", "UVC 1.5", "3.7 to 3.9", "video.*", kLength | kReserved},
    {"uac1", "UAC 1.0", "4.3 to 4.6", "uac1.*", kLength | kReserved | kCodes},
    {"uac2", "UAC 2.0", "4.7 to 4.10", "uac2.*", kLength | kReserved | kCodes},
    {"uac3", "UAC 3.0", "4.5 to 4.8", "uac3.*", kLength | kReserved | kCodes},
    {"ccid", "CCID 1.1", "5.1", "ccid.*", kReserved},
    {"printer", "IPP over USB 1.0", "4.3", "printer.*", kLength | kReserved | kCodes},
    {"phdc", "PHDC 1.0", "5.2", "phdc.*", kLength | kReserved},
    {"irda", "IrDA Bridge 1.0", "7.2", "irda.*", kReserved | kDigits},
    {"av", "AV 1.0", "8.4", "av.*", kLength | kReserved | kCodes | kDigits},
};

struct Form {
  Check check;
  std::string_view id;
  std::string_view holds;
  std::string_view before;  // the part of the sentence before the name of the standard
  std::string_view after;
};

constexpr Form kForms[] = {
    {Check::kLength, ".fields.length", "tableLength", "Descriptors of ",
     " have the lengths that their tables give."},
    {Check::kReserved, ".fields.reserved", "tableReserved",
     "Reserved bits and fields in descriptors of ",
     " are zero, or one where their tables require one."},
    {Check::kCodes, ".fields.codes", "tableCodes", "No field in descriptors of ",
     " has a code that its table marks as reserved."},
    {Check::kDigits, ".fields.digits", "tableDigits", "Release numbers in descriptors of ",
     " contain only decimal digits."},
};

struct Made {
  std::deque<std::string> texts;  // the rules refer to these
  std::vector<Rule> rules;
};

Made MakeRules() {
  Made made;
  auto const keep = [&](auto const&... parts) -> std::string_view {
    std::string& text = made.texts.emplace_back();
    (text.append(parts), ...);
    return text;
  };
  for (Family const& family : kFamilies) {
    for (Form const& form : kForms) {
      if ((family.checks & BitOf(form.check)) != 0) {
        made.rules.push_back({keep(family.id, form.id), family.standard, family.section,
                              family.scope, Level::kMust,
                              keep(form.before, family.standard, form.after), "", form.holds});
      }
    }
  }
  return made;
}

}  // namespace

std::span<Rule const> FieldRules() noexcept {
  static Made const made = MakeRules();
  return made.rules;
}

}  // namespace usb_rules::detail

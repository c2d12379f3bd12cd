#include <usb_rules/vocabulary.h>

#include <array>
#include <span>

#include <usb_rules/field_checks.h>

namespace usb_rules::detail {
namespace {

// One name for fields with different names in different descriptors.
struct Alias {
  std::string_view name;
  std::array<std::string_view, 4> fields;
};

constexpr Alias kAliases[] = {
    {"entity", {"bUnitID", "bTerminalID", "bClockID", "bPowerDomainID"}},
    {"jack", {"bJackID", "bElementID"}},
    {"source", {"baSourceID", "bSourceID"}},
    {"clock", {"bCSourceID", "baCSourceID", "bCSourceInID"}},
    {"VCONNPower", {"VCONN Power"}},
    {"subformat", {"bDescriptorSubType", "bDescriptorSubtype"}},
    {"Signature", {"MS_OS_20_Platform_Capability_ID", "PlatformCapabilityUUID"}},
    {"iText", {"iTerminal", "iSelector", "iFeature", "iMixer"}},
    {"iUnit", {"iProcessing", "iExtension", "iEncoding", "iEffects"}},
    {"iClock", {"iClockSource", "iClockSelector", "iClockMultiplier", "iSRC"}},
};

// The repeated field, where a descriptor has the name once and again in a repeated group.
constexpr std::string_view kListedType = "listed_bDescriptorType";

constexpr std::string_view kTextFields[] = {
    "index",     "language",       "units",    "wellFormed",  "lastUnit",
    "hexDigits", "upperHexDigits", "returned", "firstDigits",
};

// In the order of ReportFacts::values and ReportItem::values.
constexpr std::string_view kReportFields[] = {
    "interfaceNumber", "size",           "listedLength", "openCollections",
    "openPushes",      "openDelimiters", "dataItems",    "sharedIds",
    "topsWithData",    "oddReports",     "cutBytes",
};

constexpr std::string_view kReportItemFields[] = {
    "kind",        "tag",        "data",        "isLong",     "depth",      "usages",
    "required",    "reportSize", "reportCount", "logicalMin", "logicalMax", "physicalMin",
    "physicalMax", "reportId",   "idsUsed",     "pushes",     "openPairs",  "usageMin",
    "usageMax",    "pairFault",  "bitOffset",
};

struct PseudoLayout {
  std::string_view id;
  std::string_view title;
  std::span<std::string_view const> fields;
};

constexpr PseudoLayout kPseudo[] = {
    {"text", "String", kTextFields},
    {"report", "HID report descriptor", kReportFields},
    {"report_item.data", "HID report item", kReportItemFields},
    {"report_item.main", "HID report item", kReportItemFields},
    {"report_item.global", "HID report item", kReportItemFields},
    {"report_item.local", "HID report item", kReportItemFields},
    {"report_item.reserved", "HID report item", kReportItemFields},
};
static_assert(std::size(kPseudo) == static_cast<std::size_t>(Pseudo::kCount));

}  // namespace

std::span<std::string_view const> FieldsOf(Pseudo pseudo) noexcept {
  return kPseudo[static_cast<std::size_t>(pseudo)].fields;
}

Vocabulary const& Vocabulary::Get() {
  static Vocabulary const vocabulary;
  return vocabulary;
}

Vocabulary::Vocabulary() {
  AddLayouts();
  for (Alias const& alias : kAliases) {
    AddName(alias.name);
  }
  AddName(kListedType);
  slots_.resize(ids_.size() * names_.size());
  slotOfRow_.resize(ids_.size());
  checksOfRow_.resize(ids_.size());
  checks_.resize(ids_.size());
  for (std::size_t layout = 1; layout < ids_.size(); ++layout) {
    AddSlots(static_cast<std::uint16_t>(layout));
  }
}

std::uint16_t Vocabulary::AddName(std::string_view name) {
  auto const [found, isNew] = names_.emplace(name, static_cast<std::uint16_t>(names_.size()));
  if (isNew) {
    texts_.push_back(name);
  }
  return found->second;
}

void Vocabulary::AddLayouts() {
  ids_.emplace_back();
  titles_.emplace_back();
  layouts_.push_back(nullptr);
  for (usb_fields::detail::Compiled const* const compiled : usb_fields::AllLayouts()) {
    layoutOf_.emplace(compiled, static_cast<std::uint16_t>(ids_.size()));
    ids_.push_back(compiled->layout->id);
    titles_.push_back(compiled->layout->name);
    layouts_.push_back(compiled->layout);
    for (usb_fields::Field const& field : compiled->layout->fields) {
      AddName(field.name);
    }
  }
  for (PseudoLayout const& pseudo : kPseudo) {
    ids_.push_back(pseudo.id);
    titles_.push_back(pseudo.title);
    layouts_.push_back(nullptr);
    for (std::string_view const name : pseudo.fields) {
      AddName(name);
    }
  }
}

void Vocabulary::AddSlots(std::uint16_t layout) {
  auto const slot = [&](std::string_view name) -> Slot& {
    return slots_[layout * names_.size() + names_.at(name)];
  };
  if (layouts_[layout] == nullptr) {
    auto const& pseudo = kPseudo[layout - (ids_.size() - std::size(kPseudo))];
    for (std::size_t row = 0; row < pseudo.fields.size(); ++row) {
      slot(pseudo.fields[row]) = {static_cast<std::uint8_t>(row), false};
      slotOfRow_[layout].push_back(static_cast<std::uint8_t>(row));
    }
    return;
  }
  std::span<usb_fields::Field const> const fields = layouts_[layout]->fields;
  auto const rows = static_cast<std::uint8_t>(fields.size());
  checks_[layout] = BitOf(Check::kLength);
  for (usb_fields::Field const& field : fields) {
    checksOfRow_[layout].push_back(static_cast<std::uint8_t>(ChecksOf(field)));
    checks_[layout] |= checksOfRow_[layout].back();
  }
  for (std::uint8_t row = 0; row < rows; ++row) {
    std::uint8_t first = 0;
    while (fields[first].name != fields[row].name ||
           Repeats(fields[first]) != Repeats(fields[row])) {
      ++first;
    }
    slotOfRow_[layout].push_back(first);
    Slot& named = slot(fields[row].name);
    if (!named.IsThere()) {
      named = {first, Repeats(fields[row])};
    } else if (Repeats(fields[row]) && fields[row].name == "bDescriptorType") {
      slot(kListedType) = {first, true};
    }
  }
  for (Alias const& alias : kAliases) {
    for (std::string_view const name : alias.fields) {
      if (!name.empty() && names_.contains(name) && slot(name).IsThere() &&
          !slot(alias.name).IsThere()) {
        slot(alias.name) = slot(name);
      }
    }
  }
}

std::uint16_t Vocabulary::LayoutOf(usb_fields::detail::Compiled const* compiled) const noexcept {
  auto const found = layoutOf_.find(compiled);
  return found != layoutOf_.end() ? found->second : kNoLayout;
}

std::uint16_t Vocabulary::LayoutOf(Pseudo pseudo) const noexcept {
  return static_cast<std::uint16_t>(ids_.size() - std::size(kPseudo) +
                                    static_cast<std::size_t>(pseudo));
}

std::uint16_t Vocabulary::NameOf(std::string_view name) const noexcept {
  auto const found = names_.find(name);
  return found != names_.end() ? found->second : kNoName;
}

usb_fields::Field const* Vocabulary::Field(std::uint16_t layout, std::uint8_t row) const noexcept {
  return layouts_[layout] != nullptr ? &layouts_[layout]->fields[row] : nullptr;
}

}  // namespace usb_rules::detail

#include <usb_fields/hid_report.h>

#include <algorithm>
#include <optional>

#include <usb_fields/names.h>
#include <usb_fields/tables/hid_items.h>
#include <usb_fields/text.h>
#include <usb_fields/text_writer.h>

namespace usb_fields {
namespace {

using detail::ItemData;
using detail::ItemRow;

constexpr std::uint8_t kLongItem = 0xFE;

// The prefixes of the items, without the bits for the data size.
enum Prefix : std::uint8_t {
  kInput = 0x80,
  kOutput = 0x90,
  kFeature = 0xB0,
  kCollection = 0xA0,
  kEndCollection = 0xC0,
  kUsagePage = 0x04,
  kLogicalMinimum = 0x14,
  kLogicalMaximum = 0x24,
  kPhysicalMinimum = 0x34,
  kPhysicalMaximum = 0x44,
  kUnitExponent = 0x54,
  kUnit = 0x64,
  kReportSize = 0x74,
  kReportId = 0x84,
  kReportCount = 0x94,
  kPush = 0xA4,
  kPop = 0xB4,
  kUsage = 0x08,
  kUsageMinimum = 0x18,
  kUsageMaximum = 0x28,
  kDelimiter = 0xA8,
};

ItemRow const* RowOf(std::uint8_t prefix) noexcept {
  std::span<ItemRow const> const rows = detail::ItemRows();
  auto const row =
      std::ranges::find_if(rows, [&](ItemRow const& item) { return item.prefix == prefix; });
  return row == rows.end() ? nullptr : &*row;
}

std::int64_t Signed(std::uint32_t value, std::size_t size) noexcept {
  switch (size) {
    case 1:
      return static_cast<std::int8_t>(value);
    case 2:
      return static_cast<std::int16_t>(value);
    default:
      return static_cast<std::int32_t>(value);
  }
}

std::int64_t Nibble(std::uint32_t value) noexcept {
  std::int64_t const nibble = value & 0xF;
  return nibble < 8 ? nibble : nibble - 16;
}

}  // namespace

bool HidItemReader::Next() noexcept {
  if (next_ >= bytes_.size()) {
    return false;
  }
  ByteView const view(bytes_);
  std::uint8_t const first = view.At(next_);
  item_ = {};
  item_.offset = next_;
  if (first == kLongItem) {
    ReadLong();
    return true;
  }
  std::size_t const size = (first & 3) == 3 ? 4 : first & 3;
  item_.prefix = first & 0xFC;
  item_.type = static_cast<HidItemType>(first >> 2 & 3);
  item_.tag = first >> 4;
  item_.bytes = view.Slice(next_, 1 + size);
  item_.data = view.Slice(next_ + 1, size);
  item_.isCut = item_.data.size() < size;
  item_.value = static_cast<std::uint32_t>(ByteView(item_.data).Number(0, item_.data.size()));
  next_ += item_.bytes.size();
  Understand();
  return true;
}

void HidItemReader::ReadLong() noexcept {
  ByteView const view(bytes_);
  std::size_t const size = view.At(next_ + 1);
  item_.name = "Long item";
  item_.type = HidItemType::kLong;
  item_.prefix = kLongItem;
  item_.tag = view.At(next_ + 2);
  item_.bytes = view.Slice(next_, 3 + size);
  item_.data = view.Slice(next_ + 3, size);
  item_.isCut = item_.bytes.size() < 3 + size;
  item_.usagePage = state_.usagePage;
  next_ += item_.bytes.size();
}

void HidItemReader::Understand() noexcept {
  ItemRow const* const row = RowOf(item_.prefix);
  item_.number = item_.value;
  if (row != nullptr) {
    item_.field = &row->field;
    item_.name = row->field.name;
    bool const isLogical = item_.prefix == kLogicalMaximum;
    bool const hasNegative = isLogical ? state_.hasNegativeLogical : state_.hasNegativePhysical;
    if (row->data == ItemData::kSigned || (row->data == ItemData::kMaximum && hasNegative)) {
      item_.number = Signed(item_.value, item_.data.size());
    } else if (row->data == ItemData::kExponent) {
      item_.number = Nibble(item_.value);
    }
  }
  switch (item_.prefix) {
    case kUsagePage:
      state_.usagePage = static_cast<std::uint16_t>(item_.value);
      break;
    case kLogicalMinimum:
      state_.hasNegativeLogical = item_.number < 0;
      break;
    case kPhysicalMinimum:
      state_.hasNegativePhysical = item_.number < 0;
      break;
    case kPush:
      if (depth_ < pushed_.size()) {
        pushed_[depth_++] = state_;
      }
      break;
    case kPop:
      if (depth_ != 0) {
        state_ = pushed_[--depth_];
      }
      break;
    default:
      break;
  }
  item_.usagePage = state_.usagePage;
}

namespace {

// "cm^2 s^-1"; only the name of the system where no unit applies.
void AddUnit(detail::TextWriter& writer, std::uint32_t unit) noexcept {
  std::uint32_t const system = unit & 0xF;
  if (system == 0 || system > 4) {
    writer.Add(detail::NameOf(detail::UnitSystems(), system));
    return;
  }
  for (detail::UnitRow const& row : detail::UnitRows()) {
    std::int64_t const power = Nibble(unit >> row.low);
    if (power == 0) {
      continue;
    }
    writer.Add(writer.IsEmpty() ? "" : " ");
    writer.Add(row.names[system]);
    if (power != 1) {
      writer.Add(power < 0 ? "^-" : "^");
      writer.AddNumber(static_cast<std::uint64_t>(power < 0 ? -power : power));
    }
  }
  if (writer.IsEmpty()) {
    writer.Add(detail::NameOf(detail::UnitSystems(), system));
  }
}

}  // namespace

std::string_view HidItemText(HidItem const& item, std::span<char> buffer) noexcept {
  ItemRow const* const row = RowOf(item.prefix);
  if (row == nullptr || item.isCut) {
    return {};
  }
  detail::TextWriter writer(buffer);
  switch (row->data) {
    case ItemData::kNone:
      return {};
    case ItemData::kMeaning:
      return TextOf(item.Value(), buffer);
    case ItemData::kUnsigned:
    case ItemData::kSigned:
    case ItemData::kMaximum:
    case ItemData::kExponent:
      writer.Add(item.number < 0 ? "-" : "");
      writer.AddNumber(static_cast<std::uint64_t>(item.number < 0 ? -item.number : item.number));
      return writer.Text();
    case ItemData::kUnit:
      AddUnit(writer, item.value);
      return writer.Text();
    case ItemData::kUsagePage:
      return UsagePageName(static_cast<std::uint16_t>(item.value));
    case ItemData::kUsage:
      return UsageName(
          item.data.size() == 4 ? static_cast<std::uint16_t>(item.value >> 16) : item.usagePage,
          static_cast<std::uint16_t>(item.value), buffer);
  }
  return {};
}

namespace {

// Reads the items one by one (HID 1.11, 5.4).
class ReportParser {
 public:
  explicit ReportParser(HidReports& out) noexcept : out_(out) {}

  void Take(HidItem const& item) {
    item_ = &item;
    if (item.isCut) {
      Problem("The item is cut off");
      return;
    }
    switch (item.type) {
      case HidItemType::kMain:
        Main();
        break;
      case HidItemType::kGlobal:
        Global();
        break;
      case HidItemType::kLocal:
        Local();
        break;
      case HidItemType::kReserved:
        Problem("The item's type is reserved");
        break;
      case HidItemType::kLong:
        break;
    }
  }

  void Finish(std::size_t size) {
    if (collection_ >= 0) {
      out_.problems.push_back({size, "A collection is not ended"});
    }
    if (!pushed_.empty()) {
      out_.problems.push_back({size, "Push without Pop"});
    }
  }

 private:
  struct GlobalState {
    std::uint16_t usagePage = 0;
    std::int64_t logicalMinimum = 0;
    std::int64_t logicalMaximum = 0;
    std::int64_t physicalMinimum = 0;
    std::int64_t physicalMaximum = 0;
    std::int8_t unitExponent = 0;
    std::uint32_t unit = 0;
    std::uint32_t reportSize = 0;
    std::uint32_t reportCount = 0;
    std::uint8_t reportId = 0;
  };

  // A usage with less than four bytes of data takes its page from the state at the main item.
  struct LocalUsage {
    HidUsages usages;
    bool hasPage = false;
  };

  void Problem(std::string_view text) { out_.problems.push_back({item_->offset, text}); }

  void Main() {
    switch (item_->prefix) {
      case kInput:
        AddField(HidReportType::kInput);
        break;
      case kOutput:
        AddField(HidReportType::kOutput);
        break;
      case kFeature:
        AddField(HidReportType::kFeature);
        break;
      case kCollection:
        BeginCollection();
        break;
      case kEndCollection:
        if (collection_ < 0) {
          Problem("End Collection without Collection");
        } else {
          collection_ = out_.collections[static_cast<std::size_t>(collection_)].parent;
        }
        break;
      default:
        Problem("The main item is not known");
        break;
    }
    if (minimum_ || maximum_) {
      Problem("Usage Minimum and Usage Maximum come in pairs");
    }
    usages_.clear();
    minimum_.reset();
    maximum_.reset();
    delimiter_ = Delimiter::kNone;
  }

  HidUsages WithPage(LocalUsage const& usage) const noexcept {
    HidUsages result = usage.usages;
    if (!usage.hasPage) {
      result.page = global_.usagePage;
    }
    return result;
  }

  void BeginCollection() {
    HidCollection collection;
    collection.type = static_cast<std::uint8_t>(item_->value);
    collection.parent = collection_;
    if (!usages_.empty()) {
      collection.usage = WithPage(usages_.front());
    }
    collection_ = static_cast<std::int32_t>(out_.collections.size());
    out_.collections.push_back(collection);
  }

  HidReport& ReportOf(HidReportType type) {
    auto const found = std::ranges::find_if(out_.reports, [&](HidReport const& report) {
      return report.type == type && report.id == global_.reportId;
    });
    if (found != out_.reports.end()) {
      return *found;
    }
    constexpr std::uint64_t kBitsOfId = 8;
    return out_.reports.emplace_back(
        HidReport{type, global_.reportId, global_.reportId != 0 ? kBitsOfId : 0});
  }

  void AddField(HidReportType type) {
    constexpr std::uint64_t kMostBits = std::uint64_t{8} * 0xFFFF;
    HidReport& report = ReportOf(type);
    HidField field;
    field.type = type;
    field.reportId = global_.reportId;
    field.flags = item_->value;
    field.bitOffset = report.bits;
    field.bits = global_.reportSize;
    field.count = global_.reportCount;
    field.logicalMinimum = global_.logicalMinimum;
    field.logicalMaximum = global_.logicalMaximum;
    field.physicalMinimum = global_.physicalMinimum;
    field.physicalMaximum = global_.physicalMaximum;
    field.unitExponent = global_.unitExponent;
    field.unit = global_.unit;
    field.firstUsage = static_cast<std::uint32_t>(out_.usages.size());
    field.usageEntries = static_cast<std::uint32_t>(usages_.size());
    field.collection = collection_;
    for (LocalUsage const& usage : usages_) {
      out_.usages.push_back(WithPage(usage));
    }
    out_.fields.push_back(field);
    std::uint64_t const bits = std::uint64_t{field.bits} * field.count;
    if (bits > kMostBits - std::min(report.bits, kMostBits)) {
      Problem("The report is longer than 65535 bytes");
      report.bits = kMostBits;
    } else {
      report.bits += bits;
    }
    if (collection_ < 0) {
      Problem("The field is not in a collection");
    }
  }

  void Global() {
    std::uint32_t const value = item_->value;
    switch (item_->prefix) {
      case kUsagePage:
        global_.usagePage = static_cast<std::uint16_t>(value);
        break;
      case kLogicalMinimum:
        global_.logicalMinimum = item_->number;
        break;
      case kLogicalMaximum:
        global_.logicalMaximum = item_->number;
        break;
      case kPhysicalMinimum:
        global_.physicalMinimum = item_->number;
        break;
      case kPhysicalMaximum:
        global_.physicalMaximum = item_->number;
        break;
      case kUnitExponent:
        global_.unitExponent = static_cast<std::int8_t>(item_->number);
        break;
      case kUnit:
        global_.unit = value;
        break;
      case kReportSize:
        global_.reportSize = value;
        break;
      case kReportCount:
        global_.reportCount = value;
        break;
      case kReportId:
        SetReportId();
        break;
      case kPush:
        if (pushed_.size() == kMostPushes) {
          Problem("Push is nested too deep");
        } else {
          pushed_.push_back(global_);
        }
        break;
      case kPop:
        if (pushed_.empty()) {
          Problem("Pop without Push");
        } else {
          global_ = pushed_.back();
          pushed_.pop_back();
        }
        break;
      default:
        Problem("The global item is not known");
        break;
    }
  }

  void SetReportId() {
    if (item_->value == 0 || item_->value > 0xFF) {
      Problem("A report ID is 1 to 255");
    }
    bool const hasOther =
        std::ranges::any_of(out_.reports, [](HidReport const& report) { return report.id == 0; });
    if (hasOther) {
      Problem("A report ID comes after fields without one");
    }
    global_.reportId = static_cast<std::uint8_t>(item_->value);
  }

  void Local() {
    switch (item_->prefix) {
      case kUsage:
        AddUsage(item_->value, item_->value);
        break;
      case kUsageMinimum:
        minimum_ = item_->value;
        AddUsageRange();
        break;
      case kUsageMaximum:
        maximum_ = item_->value;
        AddUsageRange();
        break;
      case kDelimiter:
        delimiter_ = item_->value == 1 ? Delimiter::kOpen : Delimiter::kNone;
        break;
      default:
        if (item_->field == nullptr) {
          Problem("The local item is not known");
        }
        break;
    }
  }

  // Minimum and maximum may come in either order.
  void AddUsageRange() {
    if (!minimum_ || !maximum_) {
      return;
    }
    if ((*maximum_ & 0xFFFF) < (*minimum_ & 0xFFFF)) {
      Problem("Usage Maximum is below Usage Minimum");
    } else {
      AddUsage(*minimum_, *maximum_);
    }
    minimum_.reset();
    maximum_.reset();
  }

  // The first usage of a delimited set is the preferred one.
  void AddUsage(std::uint32_t first, std::uint32_t last) {
    if (delimiter_ == Delimiter::kTaken) {
      return;
    }
    delimiter_ = delimiter_ == Delimiter::kOpen ? Delimiter::kTaken : delimiter_;
    usages_.push_back({{static_cast<std::uint16_t>(last >> 16), static_cast<std::uint16_t>(first),
                        static_cast<std::uint16_t>(last)},
                       item_->data.size() == 4});
  }

  enum class Delimiter : std::uint8_t { kNone, kOpen, kTaken };
  static constexpr std::size_t kMostPushes = 16;

  HidReports& out_;
  HidItem const* item_ = nullptr;
  GlobalState global_;
  std::vector<GlobalState> pushed_;
  std::vector<LocalUsage> usages_;
  std::optional<std::uint32_t> minimum_;
  std::optional<std::uint32_t> maximum_;
  Delimiter delimiter_ = Delimiter::kNone;
  std::int32_t collection_ = -1;
};

}  // namespace

HidUsages HidReports::UsageOf(HidField const& field, std::uint32_t index) const noexcept {
  HidUsages usage;
  for (std::uint32_t i = 0; i < field.usageEntries; ++i) {
    HidUsages const& entry = usages[field.firstUsage + i];
    std::uint32_t const count = entry.last - entry.first + 1u;
    if (index < count) {
      auto const number = static_cast<std::uint16_t>(entry.first + index);
      return {entry.page, number, number};
    }
    index -= count;
    usage = {entry.page, entry.last, entry.last};
  }
  return usage;
}

HidReports ReadHidReports(std::span<std::uint8_t const> bytes) {
  HidReports reports;
  ReportParser parser(reports);
  for (HidItemReader items(bytes); items.Next();) {
    parser.Take(items.Item());
  }
  parser.Finish(bytes.size());
  return reports;
}

}  // namespace usb_fields

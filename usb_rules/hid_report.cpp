#include <usb_rules/hid_report.h>

#include <algorithm>
#include <bitset>
#include <span>
#include <vector>

#include <usb_fields/hid_report.h>

namespace usb_rules::detail {
namespace {

using usb_fields::ByteView;
using usb_fields::HidItem;
using usb_fields::HidItemReader;
using usb_fields::HidItemType;

enum Kind : std::uint8_t { kMain, kGlobal, kLocal, kReserved };

// Tags, by kind (HID 1.11, 6.2.2.4 to 6.2.2.8).
constexpr unsigned kInput = 8;
constexpr unsigned kOutput = 9;
constexpr unsigned kCollection = 10;
constexpr unsigned kFeature = 11;
constexpr unsigned kEndCollection = 12;
constexpr unsigned kUsagePage = 0;
constexpr unsigned kLogicalMinimum = 1;
constexpr unsigned kLogicalMaximum = 2;
constexpr unsigned kPhysicalMinimum = 3;
constexpr unsigned kPhysicalMaximum = 4;
constexpr unsigned kReportSize = 7;
constexpr unsigned kReportId = 8;
constexpr unsigned kReportCount = 9;
constexpr unsigned kPush = 10;
constexpr unsigned kPop = 11;
constexpr unsigned kUsage = 0;
constexpr unsigned kUsageMinimum = 1;
constexpr unsigned kUsageMaximum = 2;
constexpr unsigned kDelimiter = 10;

// The global items that must precede a data item: HID 1.11, 6.2.2.
constexpr unsigned kRequired[] = {kUsagePage, kLogicalMinimum, kLogicalMaximum, kReportSize,
                                  kReportCount};

struct Item {
  std::uint8_t kind = 0;
  unsigned tag = 0;
  bool isLong = false;
  std::uint64_t data = 0;
  std::int64_t sign = 0;  // the data as a signed number
};

struct Globals {
  std::uint16_t seen = 0;  // one bit for each tag
  Item items[12];
};

struct Locals {
  std::uint64_t usages = 0;
  std::uint64_t minimum = 0;
  std::uint64_t maximum = 0;
  int open[3] = {};  // minima without a maximum: of usages, designators and strings
  bool isWrong = false;
};

// An item in the form that the rules use.
Item ItemOf(HidItem const& read) {
  Item item;
  item.isLong = read.type == HidItemType::kLong;
  item.kind = item.isLong ? std::uint8_t{kReserved} : static_cast<std::uint8_t>(read.type);
  item.tag = read.prefix >> 4U;
  item.data = read.value;
  item.sign = read.value;
  std::size_t const bits = 8 * read.data.size();
  if (!item.isLong && bits != 0 && (item.data >> (bits - 1) & 1U) != 0) {
    item.sign -= std::int64_t{1} << bits;
  }
  return item;
}

bool IsData(Item const& item) {
  return !item.isLong && item.kind == kMain &&
         (item.tag == kInput || item.tag == kOutput || item.tag == kFeature);
}

class Reader {
 public:
  Reader(ByteView bytes, std::function<void(ReportItem const&)> const& visit)
      : bytes_(bytes),
        visit_(visit) {}

  ReportFacts Read() {
    std::span<std::uint8_t const> const read = bytes_.Slice(0, kMostReportBytes);
    usesIds_ = FindIds(read);
    std::size_t offset = 0;
    for (HidItemReader items(read); items.Next() && !items.Item().isCut;) {
      HidItem const& current = items.Item();
      Item const item = ItemOf(current);
      Visit(item, offset, current.bytes.size());
      Take(item);
      offset += current.bytes.size();
    }
    return Facts(offset);
  }

 private:
  static bool FindIds(std::span<std::uint8_t const> bytes) {
    for (HidItemReader items(bytes); items.Next() && !items.Item().isCut;) {
      Item const item = ItemOf(items.Item());
      if (!item.isLong && item.kind == kGlobal && item.tag == kReportId) {
        return true;
      }
    }
    return false;
  }

  std::uint64_t Id() const { return globals_.items[kReportId].data & 0xFFU; }

  std::uint64_t& BitsOf(unsigned tag) {
    unsigned const kind = tag == kInput ? 0 : tag == kOutput ? 1 : 2;
    return bits_[std::size_t{kind} * 256 + Id()];
  }

  // A maximum is unsigned when its minimum is not negative: HID 1.11, 6.2.2.7.
  static std::int64_t Maximum(Item const& minimum, Item const& maximum) {
    return minimum.sign < 0 ? maximum.sign : static_cast<std::int64_t>(maximum.data);
  }

  void Visit(Item const& item, std::size_t offset, std::size_t length) {
    bool hasRequired = true;
    for (unsigned const tag : kRequired) {
      hasRequired = hasRequired && (globals_.seen >> tag & 1U) != 0;
    }
    Item const* const g = globals_.items;
    bool const isMaximum = !item.isLong && item.kind == kLocal && item.tag == kUsageMaximum;
    auto const number = [](std::int64_t value) { return static_cast<std::uint64_t>(value); };
    bool const pairFault =
        locals_.isWrong || locals_.open[0] + locals_.open[1] + locals_.open[2] != 0;
    visit_({offset,
            length,
            {item.kind,
             item.tag,
             item.data,
             item.isLong,
             depth_,
             locals_.usages,
             hasRequired,
             g[kReportSize].data,
             g[kReportCount].data,
             number(g[kLogicalMinimum].sign),
             number(Maximum(g[kLogicalMinimum], g[kLogicalMaximum])),
             number(g[kPhysicalMinimum].sign),
             number(Maximum(g[kPhysicalMinimum], g[kPhysicalMaximum])),
             g[kReportId].data,
             usesIds_,
             stack_.size(),
             openDelimiters_,
             locals_.minimum,
             isMaximum ? item.data & 0xFFFFU : locals_.maximum,
             pairFault,
             IsData(item) ? BitsOf(item.tag) : 0},
            item.isLong,
            IsData(item)});
  }

  void Take(Item const& item) {
    if (item.isLong) {
      return;
    }
    if (item.kind == kMain) {
      TakeMain(item);
      locals_ = {};
    } else if (item.kind == kGlobal) {
      TakeGlobal(item);
    } else if (item.kind == kLocal) {
      TakeLocal(item);
    }
  }

  void TakeMain(Item const& item) {
    if (item.tag == kCollection) {
      tops_ += depth_ == 0 ? 1U : 0U;
      ++depth_;
    } else if (item.tag == kEndCollection) {
      depth_ -= depth_ != 0 ? 1U : 0U;
    } else if (IsData(item)) {
      ++dataItems_;
      BitsOf(item.tag) += std::min<std::uint64_t>(globals_.items[kReportSize].data, 0xFFFF) *
                          std::min<std::uint64_t>(globals_.items[kReportCount].data, 0xFFFF);
      std::uint64_t& top = topOfId_[Id()];
      isShared_[Id()] = isShared_[Id()] || (top != 0 && top != tops_);
      top = tops_;
      unsigned const kind = item.tag == kInput ? 0 : item.tag == kOutput ? 1 : 2;
      topsWithData_[kind] += topOfKind_[kind] != tops_ ? 1U : 0U;
      topOfKind_[kind] = tops_;
    }
  }

  void TakeGlobal(Item const& item) {
    if (item.tag == kPush) {
      if (stack_.size() < kMostPushes) {
        stack_.push_back(globals_);
      }
    } else if (item.tag == kPop) {
      if (!stack_.empty()) {
        globals_ = stack_.back();
        stack_.pop_back();
      }
    } else if (item.tag < kPush) {
      globals_.items[item.tag] = item;
      globals_.seen = static_cast<std::uint16_t>(globals_.seen | 1U << item.tag);
    }
  }

  void TakeLocal(Item const& item) {
    if (item.tag == kUsage) {
      ++locals_.usages;
    } else if (item.tag == kDelimiter) {
      openDelimiters_ = item.data == 1 ? 1 : 0;
    }
    // Minimum and maximum come in pairs: usages 1 and 2, designators 4 and 5, strings 8 and 9.
    constexpr unsigned kMinima[] = {1, 4, 8};
    for (std::size_t i = 0; i < std::size(kMinima); ++i) {
      if (item.tag == kMinima[i]) {
        ++locals_.open[i];
      } else if (item.tag == kMinima[i] + 1) {
        --locals_.open[i];
      }
    }
    if (item.tag == kUsageMinimum) {
      locals_.minimum = item.data & 0xFFFFU;
    } else if (item.tag == kUsageMaximum) {
      locals_.maximum = item.data & 0xFFFFU;
    }
    if ((item.tag == kUsageMinimum || item.tag == kUsageMaximum) && locals_.open[0] == 0) {
      locals_.usages +=
          locals_.maximum >= locals_.minimum ? locals_.maximum - locals_.minimum + 1 : 1;
    }
  }

  ReportFacts Facts(std::size_t offset) const {
    std::uint64_t odd = 0;
    for (std::uint64_t const bits : bits_) {
      odd += bits % 8 != 0 ? 1U : 0U;
    }
    return {{0, bytes_.Size(), 0, depth_, stack_.size(), openDelimiters_, dataItems_,
             usesIds_ ? isShared_.count() : 0,
             usesIds_ ? 0 : *std::ranges::max_element(topsWithData_), odd,
             std::min(bytes_.Size(), kMostReportBytes) - offset}};
  }

  static constexpr std::size_t kMostPushes = 64;

  ByteView bytes_;
  std::function<void(ReportItem const&)> const& visit_;
  Globals globals_;
  Locals locals_;
  std::vector<Globals> stack_;
  bool usesIds_ = false;
  std::uint64_t depth_ = 0;
  std::uint64_t openDelimiters_ = 0;
  std::uint64_t tops_ = 0;
  std::uint64_t dataItems_ = 0;
  std::array<std::uint64_t, 768> bits_{};
  std::array<std::uint64_t, 256> topOfId_{};
  std::bitset<256> isShared_;
  std::array<std::uint64_t, 3> topOfKind_{};
  std::array<std::uint64_t, 3> topsWithData_{};
};

}  // namespace

ReportFacts ReadReport(ByteView bytes, std::function<void(ReportItem const&)> const& visit) {
  return Reader(bytes, visit).Read();
}

}  // namespace usb_rules::detail

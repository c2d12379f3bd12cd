#include <usb_rules/model.h>

#include <algorithm>

#include <usb_fields/codes.h>
#include <usb_fields/reader.h>
#include <usb_rules/hid_report.h>
#include <usb_rules/vocabulary.h>

namespace usb_rules::detail {
namespace {

namespace codes = usb_fields::codes;
using usb_fields::ByteView;

// Items of report descriptors are stored up to this number of cells: 24 MB.
constexpr std::size_t kMostReportCells = std::size_t{1} << 20U;
constexpr std::uint8_t kControlSubclass = 0x01;
constexpr std::uint8_t kMidiSubclass = 0x03;

// Calls visit(the bytes from the descriptor to the end) for each complete descriptor.
template <typename Visit>
bool Walk(ByteView run, usb_fields::Context context, Visit&& visit) {
  std::size_t offset = 0;
  while (offset < run.Size()) {
    std::span<std::uint8_t const> const rest = run.Slice(offset, run.Size());
    std::size_t const length = usb_fields::DescriptorLength(rest, context);
    if (length < 2 || length > rest.size()) {
      return false;
    }
    visit(rest.first(length), static_cast<std::uint32_t>(offset), context);
    context.Follow(rest.first(length));
    offset += length;
  }
  return true;
}

// Each kind of item is a separate layout, so that a rule applies to only one kind.
Pseudo PseudoOf(ReportItem const& item) {
  constexpr std::array kKinds = {Pseudo::kReportMain, Pseudo::kReportGlobal, Pseudo::kReportLocal,
                                 Pseudo::kReportReserved};
  return item.isData   ? Pseudo::kReportData
         : item.isLong ? Pseudo::kReportReserved
                       : kKinds[item.values[0] & 3U];
}

Cell TextCell(std::uint8_t row, std::uint64_t value) {
  return {.row = row, .slot = row, .value = value};
}

// The facts about the text of a string descriptor that rules use.
struct TextFacts {
  std::size_t units = 0;
  bool isWellFormed = true;
  std::uint16_t last = 0;
  std::size_t hexDigits = 0;
  std::size_t upperHexDigits = 0;
  std::uint64_t firstDigits = 0;  // a MAC address as a number
};

TextFacts FactsOf(ByteView text) {
  TextFacts facts;
  bool wantsLow = false;
  for (std::size_t i = 2; i + 1 < text.Size(); i += 2) {
    auto const unit = static_cast<std::uint16_t>(text.Number(i, 2));
    bool const isLow = unit >= 0xDC00 && unit <= 0xDFFF;
    bool const isHigh = unit >= 0xD800 && unit <= 0xDBFF;
    facts.isWellFormed = facts.isWellFormed && isLow == wantsLow;
    wantsLow = isHigh;
    facts.last = unit;
    ++facts.units;
    bool const isDigit = unit >= '0' && unit <= '9';
    bool const isUpper = unit >= 'A' && unit <= 'F';
    bool const isLower = unit >= 'a' && unit <= 'f';
    facts.upperHexDigits += isDigit || isUpper ? 1U : 0U;
    facts.hexDigits += isDigit || isUpper || isLower ? 1U : 0U;
    if (facts.units <= 12) {
      int const digit = isDigit   ? unit - '0'
                        : isUpper ? unit - 'A' + 10
                        : isLower ? unit - 'a' + 10
                                  : 0;
      facts.firstDigits = facts.firstDigits * 16 + static_cast<std::uint64_t>(digit);
    }
  }
  facts.isWellFormed = facts.isWellFormed && !wantsLow;
  return facts;
}

}  // namespace

Model::Model(Subject const& subject, Speed speed) : subject_(subject), speed_(speed) {
  heads_.fill(kNone);
  Add(Source::kDevice, 0, subject.device, false);
  Add(Source::kQualifier, 0, subject.qualifier, false);
  Add(Source::kBos, 0, subject.bos, true);
  std::uint16_t index = 0;
  for (Run const& run : subject.configurations) {
    Add(Source::kConfiguration, index++, run, true);
  }
  index = 0;
  for (Run const& run : subject.otherSpeedConfigurations) {
    Add(Source::kOtherSpeedConfiguration, index++, run, true);
  }
  Add(Source::kHub, 0, subject.hub, false);
  index = 0;
  for (StringRun const& text : subject.strings) {
    AddText(text, index++);
  }
  for (InterfaceRun const& report : subject.reports) {
    AddReport(report);
  }
  for (InterfaceRun const& blocks : subject.groupTerminalBlocks) {
    Add(Source::kGroupTerminalBlocks, blocks.interfaceNumber, blocks.run, true);
  }
  settings_.resize(items_.size());
  for (RunOfItems const& run : runs_) {
    Connect(run);
    ConnectInterfaces(run);
  }
}

Speed Model::SpeedOf(std::int32_t item) const noexcept {
  if (RunOf(item).source != Source::kOtherSpeedConfiguration) {
    return speed_;
  }
  return speed_ == Speed::kHigh   ? Speed::kFull
         : speed_ == Speed::kFull ? Speed::kHigh
                                  : Speed::kUnknown;
}

void Model::Add(Source source, std::uint16_t index, Run const& run, bool walks) {
  if (run.bytes.empty()) {
    return;
  }
  auto const first = static_cast<std::int32_t>(items_.size());
  runs_.push_back({.source = source, .index = index, .run = &run, .first = first});
  usb_fields::Context context{.speed = speed_};
  if (source == Source::kGroupTerminalBlocks) {
    context.request = usb_fields::Request::kGroupTerminalBlocks;
    context.hasInterface = true;
    context.interfaceClass = codes::kAudioClass;
    context.interfaceSubclass = kMidiSubclass;
  }
  ByteView const bytes(run.bytes);
  if (walks) {
    runs_.back().isWhole =
        Walk(bytes, context,
             [&](std::span<std::uint8_t const> descriptor, std::uint32_t offset,
                 usb_fields::Context const& here) { AddItem(descriptor, offset, here); });
  } else {
    AddItem(run.bytes, 0, context);
  }
  runs_.back().last = static_cast<std::int32_t>(items_.size());
  std::int32_t& head = heads_[static_cast<std::size_t>(source)];
  head = head == kNone && runs_.back().last != first ? first : head;
}

void Model::AddItem(std::span<std::uint8_t const> bytes, std::uint32_t offset,
                    usb_fields::Context const& context) {
  ByteView const view(bytes);
  Vocabulary const& words = Vocabulary::Get();
  usb_fields::LayoutMatch match = usb_fields::FindLayout(bytes, context);
  if (match.isGuessed) {
    match = {};  // its class is not that of the interface: no rule judges it
  }
  Item item;
  item.run = static_cast<std::uint16_t>(runs_.size() - 1);
  item.layout = words.LayoutOf(match.compiled);
  item.type = view.At(1);
  item.subtype = view.At(2);
  item.declared = static_cast<std::uint16_t>(
      std::min<std::size_t>(usb_fields::DescriptorLength(bytes, context), 0xFFFF));
  item.bytes = ByteView(view.Slice(0, item.declared));
  item.offset = offset;
  item.firstCell = static_cast<std::uint32_t>(cells_.size());
  if (item.layout != Vocabulary::kNoLayout) {
    item.least = match.Get()->least;
    usb_fields::Field const* const fields = match.Get()->fields.data();
    usb_fields::Reading const reading =
        usb_fields::ReadFields(bytes, match, context, [&](usb_fields::FieldValue const& field) {
          auto const row = static_cast<std::uint8_t>(field.field - fields);
          cells_.push_back({row, words.SlotOfRow(item.layout, row), field.index, field.offset,
                            field.size, field.IsCut(), field.value});
        });
    item.isCut = reading.isCut;
    item.exact = reading.exactLength;
    item.described = reading.described;
  }
  FinishItem(item);
}

// The item must own the last cells.
void Model::FinishItem(Item& item) {
  item.cellCount = static_cast<std::uint32_t>(cells_.size()) - item.firstCell;
  item.firstSlot = static_cast<std::uint32_t>(firstCells_.size());
  firstCells_.resize(item.firstSlot + Vocabulary::Get().RowCount(item.layout), kNone);
  for (std::size_t i = cells_.size(); i-- > item.firstCell;) {
    firstCells_[item.firstSlot + cells_[i].slot] = static_cast<std::int32_t>(i);
  }
  items_.push_back(item);
}

int Model::Repetitions(std::int32_t item, Slot slot) const noexcept {
  if (FirstCell(item, slot) == nullptr) {
    return 0;
  }
  std::span<Cell const> const cells = CellsOf(item);
  auto const last = std::find_if(cells.rbegin(), cells.rend(),
                                 [&](Cell const& cell) { return cell.slot == slot.row; });
  return last->index + 1;
}

Cell const* Model::LaterCell(std::int32_t item, Cell const& first,
                             std::uint16_t index) const noexcept {
  std::span<Cell const> const cells = CellsOf(item);
  auto const start = static_cast<std::size_t>(&first - cells.data());
  auto const isIt = [&](Cell const& cell) {
    return cell.slot == first.slot && cell.index == index;
  };
  // Most repeated rows are at equal distances.
  std::size_t step = 1;
  while (start + step < cells.size() && cells[start + step].slot != first.slot) {
    ++step;
  }
  std::size_t const guess = start + step * index;
  if (guess < cells.size() && isIt(cells[guess])) {
    return &cells[guess];
  }
  auto const found =
      std::find_if(cells.begin() + static_cast<std::ptrdiff_t>(start), cells.end(), isIt);
  return found != cells.end() ? &*found : nullptr;
}

void Model::AddText(StringRun const& text, std::uint16_t index) {
  if (text.run.bytes.empty()) {
    return;
  }
  auto const first = static_cast<std::int32_t>(items_.size());
  runs_.push_back(
      {.source = Source::kString, .index = text.index, .run = &text.run, .first = first});
  usb_fields::Context context;
  context.index = text.index;
  AddItem(text.run.bytes, 0, context);
  if (text.index != 0) {
    // The text in the form that rules use: a separate item over the same bytes.
    Item facts = items_.back();
    facts.layout = Vocabulary::Get().LayoutOf(Pseudo::kText);
    facts.firstCell = static_cast<std::uint32_t>(cells_.size());
    TextFacts const read = FactsOf(facts.bytes);
    std::uint64_t const values[] = {
        text.index,      text.language,  read.units,          read.isWellFormed,
        read.last,       read.hexDigits, read.upperHexDigits, text.run.bytes.size(),
        read.firstDigits};
    for (std::size_t row = 0; row < std::size(values); ++row) {
      cells_.push_back(TextCell(static_cast<std::uint8_t>(row), values[row]));
    }
    facts.exact = -1;
    FinishItem(facts);
  }
  runs_.back().last = static_cast<std::int32_t>(items_.size());
  std::int32_t& head = heads_[static_cast<std::size_t>(Source::kString)];
  head = head == kNone ? first : head;
  static_cast<void>(index);
}

// A report descriptor becomes one item with the facts about all of it, and one for each of its
// items.
void Model::AddReport(InterfaceRun const& report) {
  if (report.run.bytes.empty()) {
    return;
  }
  auto const first = static_cast<std::int32_t>(items_.size());
  runs_.push_back({.source = Source::kReport,
                   .index = report.interfaceNumber,
                   .run = &report.run,
                   .first = first});
  ByteView const bytes(report.run.bytes);
  auto const add = [&](Pseudo pseudo, ByteView own, std::size_t offset,
                       std::span<std::uint64_t const> values) {
    Item item;
    item.run = static_cast<std::uint16_t>(runs_.size() - 1);
    item.layout = Vocabulary::Get().LayoutOf(pseudo);
    item.bytes = own;
    item.offset = static_cast<std::uint32_t>(offset);
    item.firstCell = static_cast<std::uint32_t>(cells_.size());
    for (std::size_t row = 0; row < values.size(); ++row) {
      cells_.push_back(TextCell(static_cast<std::uint8_t>(row), values[row]));
    }
    FinishItem(item);
  };
  ReportFacts const facts = ReadReport(bytes, [&](ReportItem const& item) {
    if (cells_.size() >= kMostReportCells) {
      return;
    }
    add(PseudoOf(item), ByteView(bytes.Slice(item.offset, item.length)), item.offset, item.values);
  });
  runs_.back().isWhole = facts.values[1] <= kMostReportBytes && cells_.size() < kMostReportCells;
  std::uint64_t values[kReportValues];
  std::ranges::copy(facts.values, values);
  values[0] = report.interfaceNumber;
  values[2] = ListedLength(report.interfaceNumber);
  add(Pseudo::kReport, bytes, 0, values);
  runs_.back().last = static_cast<std::int32_t>(items_.size());
  std::int32_t& head = heads_[static_cast<std::size_t>(Source::kReport)];
  head = head == kNone ? first : head;
}

// The length of the report descriptor that the HID descriptor of an interface lists.
std::uint64_t Model::ListedLength(std::uint8_t interfaceNumber) const noexcept {
  bool isOwn = false;
  for (Item const& item : items_) {
    if (item.type == codes::kInterfaceType) {
      isOwn = item.bytes.At(2) == interfaceNumber;
    } else if (isOwn && item.type == codes::kHidType && item.bytes.At(6) == codes::kReportType) {
      return item.bytes.Number(7, 2);
    }
  }
  return 0;
}

void Model::Connect(RunOfItems const& run) {
  std::int32_t setting = kNone;
  std::int32_t endpoint = kNone;
  std::int32_t heading = kNone;
  Vocabulary const& words = Vocabulary::Get();
  for (std::int32_t i = run.first; i < run.last; ++i) {
    Item& item = items_[static_cast<std::size_t>(i)];
    if (item.type == codes::kInterfaceType || item.type == codes::kAssociationType) {
      if (setting != kNone) {
        settings_[static_cast<std::size_t>(setting)].end = i;
      }
      setting = item.type == codes::kInterfaceType ? i : kNone;
      endpoint = kNone;
      heading = kNone;
    } else if (item.type == codes::kEndpointType) {
      endpoint = i;
      heading = kNone;
    } else if (words.LayoutId(item.layout).starts_with("video.format_")) {
      heading = i;
    }
    item.setting = setting;
    item.endpoint = endpoint;
    item.heading = heading;
  }
  if (setting != kNone) {
    settings_[static_cast<std::size_t>(setting)].end = run.last;
  }
}

// Groups the settings of an interface and the interfaces of a function.
void Model::ConnectInterfaces(RunOfItems const& run) {
  std::array<std::int32_t, 256> head;
  std::array<std::int32_t, 256> tail;
  std::array<std::int32_t, 256> listed;  // the control setting whose header lists the interface
  std::array<std::int32_t, 256> owner;   // the setting whose union lists it
  std::array<std::int32_t, 256> association;
  std::array<std::int32_t, 256> lastControl;  // the last control setting of a class
  for (auto* const table : {&head, &tail, &listed, &owner, &association, &lastControl}) {
    table->fill(kNone);
  }
  Vocabulary const& words = Vocabulary::Get();
  auto const at = [&](std::int32_t item) -> Setting& {
    return settings_[static_cast<std::size_t>(item)];
  };
  auto const list = [&](std::int32_t item, std::uint8_t from, auto& table, std::int32_t by) {
    ByteView const bytes = items_[static_cast<std::size_t>(item)].bytes;
    for (std::size_t n = from; n < bytes.Size(); ++n) {
      std::int32_t& entry = table[bytes.At(n)];
      entry = entry == kNone ? by : entry;
    }
  };
  for (std::int32_t i = run.first; i < run.last; ++i) {
    Item const& item = items_[static_cast<std::size_t>(i)];
    std::string_view const id = words.LayoutId(item.layout);
    if (item.type == codes::kInterfaceType) {
      std::uint8_t const number = item.bytes.At(2);
      if (tail[number] != kNone) {
        at(tail[number]).next = i;
      } else {
        head[number] = i;
      }
      tail[number] = i;
      hasHid_ = hasHid_ || item.bytes.At(5) == codes::kHidClass;
      at(i).head = head[number];
    } else if (item.type == codes::kAssociationType) {
      std::size_t const first = item.bytes.At(2);
      for (std::size_t n = first; n < std::min<std::size_t>(first + item.bytes.At(3), 256); ++n) {
        association[n] = association[n] == kNone ? i : association[n];
      }
    } else if (item.setting == kNone) {
      continue;
    } else if (id == "midi2.endpoint_general") {
      hasBlocks_ = true;
    } else if (id == "cdc.union") {
      list(i, 4, owner, item.setting);
    } else if (id == "uac1.ac_header") {
      list(i, 8, listed, item.setting);
    } else if (id == "video.vc_header") {
      list(i, 12, listed, item.setting);
    }
  }
  std::vector<std::int32_t> lastOfFunction(settings_.empty() ? 0 : settings_.size(), kNone);
  for (std::int32_t i = run.first; i < run.last; ++i) {
    Item const& item = items_[static_cast<std::size_t>(i)];
    if (item.type != codes::kInterfaceType) {
      continue;
    }
    Setting& setting = at(i);
    std::uint8_t const number = item.bytes.At(2);
    std::uint8_t const interfaceClass = item.bytes.At(5);
    setting.association = association[number];
    setting.owner = owner[number];
    if (interfaceClass != codes::kAudioClass && interfaceClass != codes::kVideoClass) {
      continue;
    }
    if (item.bytes.At(6) == kControlSubclass) {
      setting.function = i;
      lastControl[interfaceClass] = i;
    } else {
      // The header that lists the interface decides; if the releases differ, the association does.
      setting.function = listed[number];
      bool const isSame =
          setting.function != kNone &&
          items_[static_cast<std::size_t>(setting.function)].bytes.At(7) == item.bytes.At(7);
      if (!isSame && setting.association != kNone) {
        std::int32_t const first =
            head[items_[static_cast<std::size_t>(setting.association)].bytes.At(2)];
        if (first != kNone &&
            items_[static_cast<std::size_t>(first)].bytes.At(5) == interfaceClass &&
            items_[static_cast<std::size_t>(first)].bytes.At(6) == kControlSubclass) {
          setting.function = first;
        }
      }
      if (setting.function == kNone) {
        setting.function = lastControl[interfaceClass];
      }
    }
    if (setting.function != kNone && setting.function != i) {
      std::int32_t& last = lastOfFunction[static_cast<std::size_t>(setting.function)];
      std::int32_t const before = last == kNone ? setting.function : last;
      at(before).inFunction = i;
      last = i;
    }
  }
}

}  // namespace usb_rules::detail

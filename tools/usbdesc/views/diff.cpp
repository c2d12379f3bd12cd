#include <tools/usbdesc/views/diff.h>

#include <algorithm>
#include <array>
#include <tuple>
#include <unordered_map>
#include <utility>

#include <tools/usbdesc/json_writer.h>
#include <tools/usbdesc/views/field_texts.h>
#include <usb_fields/fields.h>

namespace usb_support::usbdesc {
namespace {

using usb_fields::FieldValue;

constexpr std::size_t kMostBytes = 16;  // bytes in one line

std::string BytesText(ByteSpan bytes) {
  std::string text;
  for (std::uint8_t const byte : bytes.first(std::min(bytes.size(), kMostBytes))) {
    text.append(text.empty() ? "" : " ").append(Hex(byte, 2));
  }
  if (bytes.size() > kMostBytes) {
    text.append(" ... (" + Counted(bytes.size(), "byte") + ")");
  }
  return text.empty() ? "nothing" : text;
}

bool AreEqual(ByteSpan a, ByteSpan b) noexcept {
  return usb_devices::AreEqual(a, b);
}

// A field for the comparison.
struct ReadField {
  std::string name;
  FieldValue value;
};

struct ReadDescriptor {
  std::vector<ReadField> fields;
  ByteSpan rest;  // that no field describes
};

ReadDescriptor Read(OutlineItem const& item) {
  ReadDescriptor read;
  std::unordered_map<std::string, std::size_t> twins;
  usb_fields::Reading const reading =
      usb_fields::ReadFields(item.rest, item.context, [&](FieldValue const& field) {
        std::string name = NameOf(field);
        if (std::size_t const twin = ++twins[name]; twin > 1) {
          name.append(" #").append(std::to_string(twin));
        }
        read.fields.push_back({std::move(name), field});
      });
  read.rest = item.bytes.subspan(std::min<std::size_t>(reading.described, item.bytes.size()));
  return read;
}

// The texts of a value on both sides: its meaning, or the number if the meanings are the same.
std::pair<std::string, std::string> TextsOf(FieldValue const& a, FieldValue const& b) {
  std::array<char, usb_fields::kMostText> buffer;
  std::string textA(usb_fields::TextOf(a, buffer));
  std::string textB(usb_fields::TextOf(b, buffer));
  std::string const numberA(usb_fields::NumberOf(a, buffer));
  std::string const numberB(usb_fields::NumberOf(b, buffer));
  if (textA == textB || textA.empty() || textB.empty()) {
    auto const both = [](std::string const& number, std::string const& text) {
      return text.empty() || text == number ? number : number + " (" + text + ")";
    };
    return {both(numberA, textA), both(numberB, textB)};
  }
  return {std::move(textA), std::move(textB)};
}

std::string TextOf(FieldValue const& field) {
  std::array<char, usb_fields::kMostText> buffer;
  std::string text(usb_fields::TextOf(field, buffer));
  return text.empty() ? std::string(usb_fields::NumberOf(field, buffer)) : text;
}

// The items below one place on one side.
using Children = std::vector<std::size_t>;

class Comparison {
 public:
  Comparison(Outline const& a, Outline const& b) : sides_{Side(a), Side(b)} {}

  std::vector<Change> All() {
    Speeds();
    Runs();
    Lone();
    return std::move(changes_);
  }

 private:
  struct Side {
    explicit Side(Outline const& whole) : outline(&whole) {
      children.resize(whole.Items().size());
      for (std::size_t i = 0; i < whole.Items().size(); ++i) {
        if (std::size_t const parent = whole.Items()[i].parent; parent != kNone) {
          children[parent].push_back(i);
        }
      }
    }

    OutlineItem const& Item(std::size_t i) const { return outline->Items()[i]; }

    Children ChildrenOfRun(OutlineRun const& run) const {
      Children top;
      for (std::size_t i = run.first; i < run.first + run.count; ++i) {
        if (Item(i).parent == kNone) {
          top.push_back(i);
        }
      }
      return top;
    }

    Outline const* outline;
    std::vector<Children> children;
  };

  static constexpr std::size_t kA = 0;
  static constexpr std::size_t kB = 1;

  void Speeds() {
    usb_fields::Speed const a = sides_[kA].outline->Speed().speed;
    usb_fields::Speed const b = sides_[kB].outline->Speed().speed;
    if (a != b) {
      Change change;
      change.place = "device";
      change.field = "speed";
      change.before.text = NameOf(a);
      change.after.text = NameOf(b);
      changes_.push_back(std::move(change));
    }
  }

  void Runs() {
    auto const& runsA = sides_[kA].outline->Runs();
    auto const& runsB = sides_[kB].outline->Runs();
    std::vector<std::size_t> const matchOfA = MatchRuns(runsA, runsB);
    std::vector<bool> isMatched(runsB.size());
    for (std::size_t i = 0; i < runsA.size(); ++i) {
      if (matchOfA[i] == kNone) {
        OneSidedRun(kA, runsA[i]);
      } else {
        isMatched[matchOfA[i]] = true;
        Run(runsA[i], runsB[matchOfA[i]]);
      }
    }
    for (std::size_t i = 0; i < runsB.size(); ++i) {
      if (!isMatched[i]) {
        OneSidedRun(kB, runsB[i]);
      }
    }
    std::vector<std::string> namesA;
    std::vector<std::pair<std::size_t, std::string>> namesB;
    for (std::size_t i = 0; i < runsA.size(); ++i) {
      if (matchOfA[i] != kNone) {
        namesA.push_back(runsA[i].name);
        namesB.emplace_back(matchOfA[i], runsA[i].name);
      }
    }
    Order("device", namesA, std::move(namesB));
  }

  // The answer of the second device that each answer of the first is compared with.
  static std::vector<std::size_t> MatchRuns(std::vector<OutlineRun> const& a,
                                            std::vector<OutlineRun> const& b) {
    std::unordered_map<std::string_view, std::size_t> places;
    for (std::size_t i = 0; i < b.size(); ++i) {
      places.emplace(b[i].key, i);
    }
    std::vector<std::size_t> matches(a.size(), kNone);
    std::vector<bool> isTaken(b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
      if (auto const found = places.find(a[i].key); found != places.end()) {
        matches[i] = found->second;
        isTaken[found->second] = true;
      }
    }
    // A configuration whose number has changed still answers the same request.
    std::unordered_map<std::uint16_t, std::size_t> others;
    for (std::size_t i = 0; i < b.size(); ++i) {
      if (!isTaken[i] && b[i].answer->request.IsStandard()) {
        others.emplace(b[i].answer->request.value, i);
      }
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
      usb_devices::Request const& request = a[i].answer->request;
      if (auto const found = others.find(request.value);
          matches[i] == kNone && found != others.end() &&
          request == b[found->second].answer->request) {
        matches[i] = found->second;
      }
    }
    return matches;
  }

  void OneSidedRun(std::size_t side, OutlineRun const& run) {
    std::size_t const first = changes_.size();
    Children const top = sides_[side].ChildrenOfRun(run);
    bool const isOne = top.size() == 1 && run.breakReason.empty();
    if (!isOne) {
      Change change;
      change.kind = side == kA ? ChangeKind::kRemoved : ChangeKind::kAdded;
      change.place = run.name;
      ChangeSide& of = side == kA ? change.before : change.after;
      of.text = OutcomeText(run);
      of.bytes = run.answer->bytes;
      of.offset = static_cast<std::size_t>(run.answer->source.offset);
      changes_.push_back(std::move(change));
    }
    for (std::size_t const item : top) {
      OneSided(side, item, !isOne);
    }
    if (!isOne) {
      changes_[first].below = changes_.size() - first - 1;
    }
  }

  static std::string OutcomeText(OutlineRun const& run) {
    return run.answer->outcome == usb_devices::Outcome::kAnswered
               ? Counted(run.answer->bytes.size(), "byte")
               : std::string(usb_devices::NameOf(run.answer->outcome));
  }

  void OneSided(std::size_t side, std::size_t index, bool isWithin) {
    OutlineItem const& item = sides_[side].Item(index);
    std::size_t const place = changes_.size();
    Change change;
    change.kind = side == kA ? ChangeKind::kRemoved : ChangeKind::kAdded;
    change.place = sides_[side].outline->PlaceOf(item);
    change.isWithin = isWithin;
    (side == kA ? change.before : change.after) = SideOf(side, index);
    changes_.push_back(std::move(change));
    for (std::size_t const child : sides_[side].children[index]) {
      OneSided(side, child, true);
    }
    changes_[place].below = changes_.size() - place - 1;
  }

  ChangeSide SideOf(std::size_t side, std::size_t index) const {
    OutlineItem const& item = sides_[side].Item(index);
    return {DetailOf(item), item.bytes, index, sides_[side].outline->FileOffset(item)};
  }

  void Run(OutlineRun const& a, OutlineRun const& b) {
    if (a.answer->outcome != b.answer->outcome) {
      Change change;
      change.place = a.name;
      change.field = "answer";
      change.before.text = OutcomeText(a);
      change.after.text = OutcomeText(b);
      changes_.push_back(std::move(change));
    }
    Below(a.name, sides_[kA].ChildrenOfRun(a), sides_[kB].ChildrenOfRun(b));
    if (!AreEqual(a.tail, b.tail) || a.breakReason != b.breakReason) {
      auto const sideOf = [](OutlineRun const& run) {
        ChangeSide side;
        side.bytes = run.tail;
        side.offset = static_cast<std::size_t>(run.answer->source.offset) + run.breakOffset;
        side.text = run.breakReason.empty()
                        ? "lengths good"
                        : "lengths bad: " + std::string(run.breakReason) +
                              (side.bytes.empty() ? "" : ", " + BytesText(side.bytes));
        return side;
      };
      Change change;
      change.place = a.name;
      change.field = "end";
      change.before = sideOf(a);
      change.after = sideOf(b);
      changes_.push_back(std::move(change));
    }
  }

  // The items that match, and those that have no partner yet.
  struct Matching {
    std::vector<std::pair<std::size_t, std::size_t>> pairs;  // in the order of the first device
    std::vector<std::size_t> onlyA;
    std::vector<std::size_t> onlyB;
  };

  Matching Match(Children const& a, Children const& b) const {
    std::unordered_map<std::string_view, std::size_t> places;
    for (std::size_t const i : b) {
      places.emplace(sides_[kB].Item(i).key, i);
    }
    Matching matching;
    std::unordered_map<std::size_t, bool> isMatched;
    for (std::size_t const i : a) {
      auto const found = places.find(sides_[kA].Item(i).key);
      if (found == places.end()) {
        matching.onlyA.push_back(i);
      } else {
        matching.pairs.emplace_back(i, found->second);
        isMatched[found->second] = true;
      }
    }
    for (std::size_t const i : b) {
      if (isMatched.find(i) == isMatched.end()) {
        matching.onlyB.push_back(i);
      }
    }
    return matching;
  }

  // A first descriptor that is the only one on both sides is the same, whatever its number.
  static void MatchHeads(Matching& matching, Children const& a, Children const& b,
                         std::array<Side, 2> const& sides) {
    auto const isHead = [](OutlineItem const& item) { return item.offset == 0; };
    if (!a.empty() && !b.empty() && !matching.onlyA.empty() && !matching.onlyB.empty() &&
        matching.onlyA.front() == a.front() && matching.onlyB.front() == b.front() &&
        isHead(sides[kA].Item(a.front())) && isHead(sides[kB].Item(b.front()))) {
      matching.pairs.insert(matching.pairs.begin(), {a.front(), b.front()});
      matching.onlyA.erase(matching.onlyA.begin());
      matching.onlyB.erase(matching.onlyB.begin());
    }
  }

  void Below(std::string const& place, Children const& a, Children const& b) {
    Matching matching = Match(a, b);
    MatchHeads(matching, a, b, sides_);
    for (auto const& [i, j] : matching.pairs) {
      Pair(i, j);
    }
    lone_[kA].insert(lone_[kA].end(), matching.onlyA.begin(), matching.onlyA.end());
    lone_[kB].insert(lone_[kB].end(), matching.onlyB.begin(), matching.onlyB.end());
    std::vector<std::string> namesA;
    std::vector<std::pair<std::size_t, std::string>> namesB;
    for (auto const& [i, j] : matching.pairs) {
      namesA.push_back(sides_[kA].Item(i).name);
      namesB.emplace_back(j, sides_[kA].Item(i).name);
    }
    Order(place, namesA, std::move(namesB));
  }

  // Among the descriptors without a partner below their own parent, one whose kind and number are
  // unique on both sides has moved.
  void Lone() {
    while (!lone_[kA].empty() || !lone_[kB].empty()) {
      std::array<Children, 2> const lone = std::exchange(lone_, {});
      struct Places {
        std::array<std::size_t, 2> counts{};
        std::size_t last = kNone;
      };
      std::unordered_map<std::string, Places> kinds;
      for (std::size_t const side : {kA, kB}) {
        for (std::size_t const i : lone[side]) {
          Places& places = kinds[KindOf(side, i)];
          ++places.counts[side];
          places.last = i;
        }
      }
      auto const isMoved = [](Places const& places) {
        return places.counts[kA] == 1 && places.counts[kB] == 1;
      };
      for (std::size_t const side : {kA, kB}) {
        for (std::size_t const i : lone[side]) {
          Places const& places = kinds[KindOf(side, i)];
          if (!isMoved(places)) {
            OneSided(side, i, false);
          } else if (side == kA) {
            Moved(i, places.last);
          }
        }
      }
    }
  }

  std::string KindOf(std::size_t side, std::size_t index) const {
    OutlineItem const& item = sides_[side].Item(index);
    return sides_[side].outline->Runs()[item.run].key + "/" + item.key;
  }

  void Moved(std::size_t i, std::size_t j) {
    Change change;
    change.kind = ChangeKind::kMoved;
    change.place = sides_[kA].outline->PlaceOf(sides_[kA].Item(i));
    auto const sideOf = [this](std::size_t side, std::size_t index) {
      ChangeSide of = SideOf(side, index);
      std::size_t const parent = sides_[side].Item(index).parent;
      of.text = parent == kNone ? "top" : sides_[side].outline->PlaceOf(sides_[side].Item(parent));
      return of;
    };
    change.before = sideOf(kA, i);
    change.after = sideOf(kB, j);
    changes_.push_back(std::move(change));
    Pair(i, j);
  }

  // Adds the change of order of the items that both sides have, from the first that differs to the
  // last.
  void Order(std::string const& place, std::vector<std::string> const& before,
             std::vector<std::pair<std::size_t, std::string>> after) {
    if (std::is_sorted(after.begin(), after.end(),
                       [](auto const& x, auto const& y) { return x.first < y.first; })) {
      return;
    }
    std::stable_sort(after.begin(), after.end(),
                     [](auto const& x, auto const& y) { return x.first < y.first; });
    std::size_t first = 0;
    std::size_t last = before.size();
    while (before[first] == after[first].second) {
      ++first;
    }
    while (before[last - 1] == after[last - 1].second) {
      --last;
    }
    Change change;
    change.kind = ChangeKind::kReordered;
    change.place = place;
    for (std::size_t i = first; i < last; ++i) {
      change.before.text += (i == first ? "" : "; ") + before[i];
      change.after.text += (i == first ? "" : "; ") + after[i].second;
    }
    changes_.push_back(std::move(change));
  }

  void Pair(std::size_t i, std::size_t j) {
    OutlineItem const& a = sides_[kA].Item(i);
    std::string const place = sides_[kA].outline->PlaceOf(a);
    if (a.isHidReport) {
      HidReport(place, i, j);
    } else {
      Fields(place, i, j);
    }
    Below(place, sides_[kA].children[i], sides_[kB].children[j]);
  }

  void Fields(std::string const& place, std::size_t i, std::size_t j) {
    OutlineItem const& a = sides_[kA].Item(i);
    OutlineItem const& b = sides_[kB].Item(j);
    ReadDescriptor const readA = Read(a);
    ReadDescriptor const readB = Read(b);
    std::unordered_map<std::string_view, ReadField const*> inB;
    for (ReadField const& field : readB.fields) {
      inB.emplace(field.name, &field);
    }
    for (ReadField const& field : readA.fields) {
      auto const found = inB.find(field.name);
      if (found == inB.end()) {
        FieldChange(place, field.name, &field.value, nullptr, i, j);
        continue;
      }
      FieldValue const& other = found->second->value;
      inB.erase(found);
      if (!AreEqual(field.value.Bytes(), other.Bytes())) {
        FieldChange(place, field.name, &field.value, &other, i, j);
      }
    }
    for (ReadField const& field : readB.fields) {
      if (inB.find(field.name) != inB.end()) {
        FieldChange(place, field.name, nullptr, &field.value, i, j);
      }
    }
    if (!AreEqual(readA.rest, readB.rest)) {
      Change change;
      change.place = place;
      change.before = RestSide(kA, i, readA.rest);
      change.after = RestSide(kB, j, readB.rest);
      changes_.push_back(std::move(change));
    }
  }

  ChangeSide RestSide(std::size_t side, std::size_t index, ByteSpan rest) const {
    OutlineItem const& item = sides_[side].Item(index);
    return {BytesText(rest), rest, index,
            sides_[side].outline->FileOffset(item, item.bytes.size() - rest.size())};
  }

  void FieldChange(std::string const& place, std::string const& name, FieldValue const* a,
                   FieldValue const* b, std::size_t i, std::size_t j) {
    Change change;
    change.place = place;
    change.field = name;
    change.before.text = a == nullptr ? "missing" : TextOf(*a);
    change.after.text = b == nullptr ? "missing" : TextOf(*b);
    if (a != nullptr && b != nullptr) {
      std::tie(change.before.text, change.after.text) = TextsOf(*a, *b);
    }
    auto const set = [this](ChangeSide& of, std::size_t side, std::size_t index,
                            FieldValue const* value) {
      of.item = index;
      if (value != nullptr) {
        of.bytes = value->Bytes();
        of.offset = sides_[side].outline->FileOffset(sides_[side].Item(index), value->offset);
      }
    };
    set(change.before, kA, i, a);
    set(change.after, kB, j, b);
    changes_.push_back(std::move(change));
  }

  struct HidItems {
    std::vector<ByteSpan> bytes;
    std::vector<std::string> texts;
  };

  static HidItems ItemsOf(ByteSpan report) {
    HidItems items;
    std::array<char, usb_fields::kMostText> buffer;
    for (usb_fields::HidItemReader reader(report); reader.Next();) {
      usb_fields::HidItem const& item = reader.Item();
      std::string text(item.name.empty() ? "Reserved item" : item.name);
      std::string_view const value = usb_fields::HidItemText(item, buffer);
      items.texts.push_back(value.empty() ? text : text + " (" + std::string(value) + ")");
      items.bytes.push_back(item.bytes);
    }
    return items;
  }

  // The items between the common beginning and the common end of both reports.
  void HidReport(std::string const& place, std::size_t i, std::size_t j) {
    ByteSpan const reportA = sides_[kA].Item(i).bytes;
    ByteSpan const reportB = sides_[kB].Item(j).bytes;
    if (AreEqual(reportA, reportB)) {
      return;
    }
    HidItems const a = ItemsOf(reportA);
    HidItems const b = ItemsOf(reportB);
    std::size_t const least = std::min(a.bytes.size(), b.bytes.size());
    std::size_t first = 0;
    while (first < least && AreEqual(a.bytes[first], b.bytes[first])) {
      ++first;
    }
    std::size_t last = 0;
    while (last < least - first &&
           AreEqual(a.bytes[a.bytes.size() - 1 - last], b.bytes[b.bytes.size() - 1 - last])) {
      ++last;
    }
    std::size_t start = 0;
    for (std::size_t k = 0; k < first; ++k) {
      start += a.bytes[k].size();
    }
    std::size_t end = 0;
    for (std::size_t k = 0; k < last; ++k) {
      end += a.bytes[a.bytes.size() - 1 - k].size();
    }
    auto const sideOf = [&](std::size_t side, std::size_t index, HidItems const& items,
                            ByteSpan report) {
      ChangeSide of;
      of.item = index;
      of.bytes = report.subspan(start, report.size() - start - end);
      of.offset = sides_[side].outline->FileOffset(sides_[side].Item(index), start);
      for (std::size_t k = first; k < items.texts.size() - last; ++k) {
        of.text += (of.text.empty() ? "" : ", ") + items.texts[k];
      }
      of.text = of.text.empty() ? "nothing" : of.text;
      return of;
    };
    Change change;
    change.place = place;
    change.field = "items";
    change.before = sideOf(kA, i, a, reportA);
    change.after = sideOf(kB, j, b, reportB);
    changes_.push_back(std::move(change));
  }

  std::array<Side, 2> sides_;
  std::array<Children, 2> lone_;  // items without a partner below their own parent
  std::vector<Change> changes_;
};

// The place of the bytes of a change: "1Ah", or "1Ah, now 2Bh" when they are at another place.
std::string OffsetsOf(Change const& change) {
  auto const text = [](ChangeSide const& side) { return Hex(side.offset, 2) + "h"; };
  bool const isBefore = !change.before.bytes.empty();
  bool const isAfter = !change.after.bytes.empty();
  if (isBefore && isAfter && change.before.offset != change.after.offset) {
    return text(change.before) + ", now " + text(change.after);
  }
  return isBefore ? text(change.before) : isAfter ? text(change.after) : "";
}

void AddOneSided(Line& line, Change const& change) {
  bool const isAdded = change.kind == ChangeKind::kAdded;
  std::string const& detail = (isAdded ? change.after : change.before).text;
  line.Add(isAdded ? "+ " : "- ", isAdded ? Piece::kLabel : Piece::kFault);
  line.Add(change.place, Piece::kTitle);
  line.Add(detail.empty() ? "" : " (" + detail + ")");
  line.Add(change.below == 0 ? "" : ", with " + Counted(change.below, "descriptor") + " in it");
}

void AddTwoSided(Line& line, Change const& change) {
  line.Add("~ ", Piece::kNote).Add(change.place, Piece::kTitle);
  switch (change.kind) {
    case ChangeKind::kMoved:
      line.Add(" moved");
      break;
    case ChangeKind::kReordered:
      line.Add(" reordered");
      break;
    default:
      line.Add(change.field.empty() ? ", bytes that no field describes" : ", " + change.field);
      break;
  }
  line.Add(": ").Add(change.before.text, Piece::kFault).Add(" -> ");
  line.Add(change.after.text, Piece::kLabel);
  std::string const offsets = OffsetsOf(change);
  if (!offsets.empty()) {
    line.Add(" (").Add(offsets, Piece::kOffset).Add(")");
  }
}

void WriteSide(JsonWriter& writer, std::string_view key, ChangeSide const& side) {
  writer.Key(key);
  writer.StartObject();
  writer.String("text", side.text);
  if (!side.bytes.empty()) {
    writer.String("hex", HexOf(side.bytes));
    writer.Number("offset", side.offset);
  }
  writer.EndObject();
}

void Write(JsonWriter& writer, Change const& change) {
  writer.StartObject();
  writer.String("kind", NameOf(change.kind));
  writer.String("place", change.place);
  if (change.kind == ChangeKind::kChanged) {
    writer.String("field", change.field);
  }
  if (change.isWithin) {
    writer.Key("within");
    writer.Bool(true);
  }
  if (change.kind != ChangeKind::kAdded) {
    WriteSide(writer, "before", change.before);
  }
  if (change.kind != ChangeKind::kRemoved) {
    WriteSide(writer, "after", change.after);
  }
  writer.EndObject();
}

}  // namespace

std::string_view NameOf(ChangeKind kind) noexcept {
  constexpr std::string_view kNames[] = {"changed", "added", "removed", "moved", "reordered"};
  return kNames[static_cast<std::size_t>(kind)];
}

std::vector<Change> Compare(Outline const& before, Outline const& after) {
  return Comparison(before, after).All();
}

Line DiffText(std::vector<Change> const& changes, std::vector<RuleChange> const& rules) {
  Line line;
  if (changes.empty()) {
    line.Add("no difference");
  }
  for (Change const& change : changes) {
    if (change.isWithin) {
      continue;
    }
    line.Add(line.Text().empty() ? "" : "\n");
    bool const isOneSided =
        change.kind == ChangeKind::kAdded || change.kind == ChangeKind::kRemoved;
    isOneSided ? AddOneSided(line, change) : AddTwoSided(line, change);
  }
  for (RuleChange const& rule : rules) {
    line.Add("\n! ", Piece::kNote).Add(rule.rule, Piece::kLabel).Add(": ");
    line.Add(rule.isBroken ? "kept -> broken" : "broken -> kept",
             rule.isBroken ? Piece::kFault : Piece::kLabel);
    line.Add(" (" + rule.sentence + ")");
  }
  return line;
}

std::string DiffJson(std::string const& nameBefore, std::string const& nameAfter,
                     std::vector<Change> const& changes,
                     std::optional<std::vector<RuleChange>> const& rules) {
  JsonWriter writer;
  writer.StartObject();
  writer.Number("usbdesc", 1);
  writer.String("before", nameBefore);
  writer.String("after", nameAfter);
  writer.Key("changes");
  writer.StartArray();
  for (Change const& change : changes) {
    Write(writer, change);
  }
  writer.EndArray();
  if (rules) {
    writer.Key("rules");
    writer.StartArray();
    for (RuleChange const& rule : *rules) {
      writer.StartObject();
      writer.String("rule", rule.rule);
      writer.String("before", rule.isBroken ? "keeps" : "breaks");
      writer.String("after", rule.isBroken ? "breaks" : "keeps");
      writer.String("text", rule.sentence);
      writer.EndObject();
    }
    writer.EndArray();
  }
  writer.EndObject();
  return writer.Text();
}

}  // namespace usb_support::usbdesc

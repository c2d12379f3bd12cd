#include <tools/usbdesc/views/diff.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <tools/usbdesc/usbdesc_test.h>
#include <usb_devices/input.h>
#include <usb_fields/fields.h>

namespace usb_support::usbdesc {
namespace {

using testing::ElementsAre;
using usb_devices::Answer;
using usb_devices::DeviceBuilder;
using usb_devices::Request;

using Octets = std::vector<std::uint8_t>;
using usb_fields::Speed;

Request const kConfiguration = Request::Descriptor(usb_devices::kConfigurationType);

usb_devices::Device Sample(std::string const& name) {
  std::filesystem::path const path = SourceFolder() / "examples" / "captures" / name;
  return usb_devices::ReadInput(NameOf(path)).devices.at(0);
}

usb_devices::Device With(usb_devices::Device const& device, Request const& request,
                         Octets const& bytes) {
  DeviceBuilder builder;
  builder.Add({.request = request,
               .outcome = usb_devices::Outcome::kAnswered,
               .bytes = bytes,
               .source = {},
               .note = {}});
  for (Answer const& answer : device.Answers()) {
    builder.Add(answer);
  }
  return builder.Build();
}

Octets Configuration(usb_devices::Device const& device) {
  auto const bytes = device.Bytes(kConfiguration);
  return {bytes->begin(), bytes->end()};
}

std::vector<Change> Compare(usb_devices::Device const& a, usb_devices::Device const& b) {
  Outline const outlineA(Decode(a, Speed::kHigh));
  Outline const outlineB(Decode(b, Speed::kHigh));
  return usbdesc::Compare(outlineA, outlineB);
}

// The lines of the difference when the configuration becomes `bytes`.
std::vector<std::string> LinesOf(usb_devices::Device const& device, Octets const& bytes) {
  usb_devices::Device const other = With(device, kConfiguration, bytes);
  Outline const before(Decode(device, Speed::kHigh));
  Outline const after(Decode(other, Speed::kHigh));
  std::string const text = DiffText(usbdesc::Compare(before, after)).Text();
  std::vector<std::string> lines;
  for (std::size_t at = 0; at <= text.size();) {
    std::size_t const end = std::min(text.find('\n', at), text.size());
    lines.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return lines;
}

TEST(Diff, NamesTheFieldAndWhereItIs) {
  usb_devices::Device const device = Sample("hid-keyboard.txt");
  Octets bytes = Configuration(device);
  bytes[8] = 250;  // bMaxPower
  EXPECT_THAT(LinesOf(device, bytes),
              ElementsAre("~ configuration 1, bMaxPower: 100 mA -> 500 mA (1Ah, now 08h)"));
}

TEST(Diff, MatchesByWhatADescriptorIs) {
  usb_devices::Device const device = Sample("hid-keyboard.txt");
  Octets bytes = Configuration(device);
  Octets const more = {9, 4, 7, 0, 0, 3, 1, 2, 0};  // another interface before the first
  bytes.insert(bytes.begin() + 9, more.begin(), more.end());
  EXPECT_THAT(LinesOf(device, bytes),
              ElementsAre("+ configuration 1, interface 7 (HID (Human Interface Device), Boot "
                          "Interface Subclass, Mouse)"));
}

TEST(Diff, CountsWhatIsUnderWhatIsGone) {
  usb_devices::Device const device = Sample("hid-keyboard.txt");
  Octets bytes = Configuration(device);
  bytes.resize(9);
  EXPECT_THAT(LinesOf(device, bytes),
              ElementsAre("- configuration 1, interface 0 (HID (Human Interface Device), Boot "
                          "Interface Subclass, Keyboard), with 2 descriptors in it"));
}

TEST(Diff, ShowsWhatHasMoved) {
  usb_devices::Device const device = Sample("hid-keyboard.txt");
  Octets const before = Configuration(device);
  Octets const more = {9, 4, 7, 0, 0, 3, 1, 2, 0};
  Octets atEnd = before;
  atEnd.insert(atEnd.end(), more.begin(), more.end());
  Octets beforeEndpoint = before;
  beforeEndpoint.insert(beforeEndpoint.end() - 7, more.begin(), more.end());
  EXPECT_THAT(LinesOf(With(device, kConfiguration, atEnd), beforeEndpoint),
              ElementsAre("~ configuration 1, interface 0, endpoint 81h IN moved: configuration 1, "
                          "interface 0 -> configuration 1, interface 7 (1Bh, now 24h)"));
}

TEST(Diff, ShowsAnotherOrder) {
  usb_devices::Device const device = Sample("hid-keyboard.txt");
  Octets bytes = Configuration(device);
  std::rotate(bytes.begin() + 18, bytes.begin() + 27, bytes.end());  // the endpoint before HID
  EXPECT_THAT(LinesOf(device, bytes),
              ElementsAre("~ configuration 1, interface 0 reordered: HID 1.11; endpoint 81h IN -> "
                          "endpoint 81h IN; HID 1.11"));
}

TEST(Diff, ShowsBytesThatNoFieldDescribes) {
  usb_devices::Device const device = Sample("hid-keyboard.txt");
  Octets bytes = Configuration(device);
  bytes[27] = 9;
  Octets longer = bytes;
  longer.insert(longer.end(), {1, 2});
  bytes.insert(bytes.end(), {1, 3});
  EXPECT_THAT(
      LinesOf(With(device, kConfiguration, longer), bytes),
      ElementsAre("~ configuration 1, interface 0, endpoint 81h IN, bytes that no field describes: "
                  "01 02 -> 01 03 (22h)"));
}

TEST(Diff, KeepsAConfigurationWhoseNumberChanges) {
  usb_devices::Device const device = Sample("hid-keyboard.txt");
  Octets bytes = Configuration(device);
  bytes[5] = 2;
  EXPECT_THAT(LinesOf(device, bytes),
              ElementsAre("~ configuration 1, bConfigurationValue: 1 -> 2 (17h, now 05h)"));
}

TEST(Diff, ShowsTheItemsOfAHidReport) {
  usb_devices::Device const device = Sample("hid-keyboard.txt");
  Request const report = Request::HidReport(0);
  usb_devices::Device const a = With(device, report, {0x05, 0x01, 0x09, 0x06, 0xA1, 0x01, 0xC0});
  usb_devices::Device const b = With(device, report, {0x05, 0x01, 0x09, 0x02, 0xA1, 0x01, 0xC0});
  EXPECT_EQ(DiffText(Compare(a, b)).Text(),
            "~ HID report of interface 0, items: Usage (Keyboard) -> Usage (Mouse) (02h)");
}

TEST(Diff, ShowsAnswersThatAreNotThere) {
  usb_devices::Device const device = Sample("hid-keyboard.txt");
  usb_devices::Device const other = With(device, Request::String(2, 0x0409), {4, 3, 'A', 0});
  EXPECT_EQ(DiffText(Compare(device, other)).Text(), "+ string 2, language 0409h (A)");
  EXPECT_EQ(DiffText(Compare(other, device)).Text(), "- string 2, language 0409h (A)");
  EXPECT_EQ(DiffText(Compare(device, device)).Text(), "no difference");
}

// Devices that differ in some of the possible ways.
class Generator {
 public:
  explicit Generator(std::uint32_t seed) : random_(seed) {}

  std::size_t Below(std::size_t count) { return random_() % count; }

  usb_devices::Device Changed(usb_devices::Device const& device) {
    std::vector<Answer> answers(device.Answers().begin(), device.Answers().end());
    for (std::size_t i = 1 + Below(6); i-- != 0 && !answers.empty();) {
      Change(answers);
    }
    DeviceBuilder builder;
    for (Answer& answer : answers) {
      builder.Add(std::move(answer));
    }
    return builder.Build();
  }

 private:
  void Change(std::vector<Answer>& answers) {
    std::size_t const which = Below(answers.size());
    Octets& bytes = answers[which].bytes;
    switch (Below(12)) {
      case 0:
        answers.erase(answers.begin() + static_cast<std::ptrdiff_t>(which));
        return;
      case 1: {
        Answer string;
        string.request = Request::String(static_cast<std::uint8_t>(Below(4)), 0x0409);
        string.bytes = {4, 3, static_cast<std::uint8_t>(Below(256)), 0};
        answers.push_back(string);
        return;
      }
      case 2:
        answers[which].outcome = usb_devices::Outcome::kStalled;
        bytes.clear();
        return;
      case 3:
        bytes.resize(bytes.size() - std::min<std::size_t>(bytes.size(), Below(20)));
        return;
      case 4:
      case 5:
        SwapOrDrop(bytes);
        return;
      default:
        if (!bytes.empty()) {
          bytes[Below(bytes.size())] = static_cast<std::uint8_t>(Below(256));
        }
        return;
    }
  }

  // Removes a descriptor, and inserts it again at another place, or not at all, or twice.
  void SwapOrDrop(Octets& bytes) {
    std::vector<Octets> pieces;
    for (std::size_t at = 0; at < bytes.size();) {
      std::size_t const length =
          std::min<std::size_t>(std::max<std::size_t>(bytes[at], 2), bytes.size() - at);
      pieces.emplace_back(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                          bytes.begin() + static_cast<std::ptrdiff_t>(at + length));
      at += length;
    }
    if (pieces.size() < 2) {
      return;
    }
    std::size_t const which = Below(pieces.size());
    Octets const piece = pieces[which];
    pieces.erase(pieces.begin() + static_cast<std::ptrdiff_t>(which));
    for (std::size_t i = Below(3); i-- != 0;) {
      pieces.insert(pieces.begin() + static_cast<std::ptrdiff_t>(Below(pieces.size() + 1)), piece);
    }
    bytes.clear();
    for (Octets const& one : pieces) {
      bytes.insert(bytes.end(), one.begin(), one.end());
    }
  }

  std::mt19937 random_;
};

// The values of a descriptor by the names of its fields; "" has what no field describes.
using Values = std::map<std::string, Octets>;

Octets Owned(ByteSpan bytes) {
  return {bytes.begin(), bytes.end()};
}

Values ValuesOf(OutlineItem const& item) {
  Values values;
  if (item.isHidReport) {
    values["items"] = Owned(item.bytes);
    return values;
  }
  std::map<std::string, int> twins;
  usb_fields::Reading const reading =
      usb_fields::ReadFields(item.rest, item.context, [&](usb_fields::FieldValue const& field) {
        std::string name(field.field->name);
        if (!field.field->extra.repeat.empty()) {
          name += "[" + std::to_string(field.index) + "]";
        }
        if (int const twin = ++twins[name]; twin > 1) {
          name += " #" + std::to_string(twin);
        }
        values[name] = Owned(field.Bytes());
      });
  values[""] =
      Owned(item.bytes.subspan(std::min<std::size_t>(reading.described, item.bytes.size())));
  return values;
}

using Places = std::map<std::string, Values>;

Places PlacesOf(Outline const& outline) {
  Places places;
  for (OutlineRun const& run : outline.Runs()) {
    if (!run.tail.empty()) {
      places[run.name + "!"]["end"] = Owned(run.tail);
    }
  }
  for (OutlineItem const& item : outline.Items()) {
    EXPECT_TRUE(places.emplace(outline.PlaceOf(item), ValuesOf(item)).second)
        << outline.PlaceOf(item);
  }
  return places;
}

void ApplyField(Places& places, Outline const& before, Change const& change) {
  if (change.field == "speed" || change.field == "answer") {
    return;
  }
  if (change.field == "end") {
    places[change.place + "!"]["end"] = Owned(change.after.bytes);
    return;
  }
  Octets& value = places.at(change.place)[change.field];
  if (change.field == "items") {
    OutlineItem const& item = before.Items()[change.before.item];
    auto const at =
        value.begin() + static_cast<std::ptrdiff_t>(change.before.offset - before.FileOffset(item));
    auto const rest = value.erase(at, at + static_cast<std::ptrdiff_t>(change.before.bytes.size()));
    value.insert(rest, change.after.bytes.begin(), change.after.bytes.end());
  } else if (change.after.text == "missing") {
    places.at(change.place).erase(change.field);
  } else {
    value = Owned(change.after.bytes);
  }
}

Places Applied(Outline const& before, Outline const& after, std::vector<Change> const& changes) {
  Places places = PlacesOf(before);
  Places added;  // under places of the second device
  for (Change const& change : changes) {
    if (change.kind == ChangeKind::kChanged) {
      ApplyField(places, before, change);
    } else if (change.kind == ChangeKind::kRemoved) {
      places.erase(change.before.item == kNone ? change.place + "!" : change.place);
    } else if (change.kind == ChangeKind::kAdded && change.after.item != kNone) {
      added["+" + change.place] = ValuesOf(after.Items()[change.after.item]);
    } else if (change.kind == ChangeKind::kAdded) {
      for (OutlineRun const& run : after.Runs()) {
        if (run.name == change.place) {
          added["+" + run.name + "!"]["end"] = Owned(run.tail);
        }
      }
    }
  }
  places.merge(added);
  return places;
}

std::multiset<Values> ValuesIn(Places const& places) {
  std::multiset<Values> values;
  for (auto const& [place, of] : places) {
    bool const isEmptyEnd =
        of.size() == 1 && of.begin()->first == "end" && of.begin()->second.empty();
    if (!isEmptyEnd) {
      values.insert(of);
    }
  }
  return values;
}

// A change without its place, which is one of the first device.
std::string Essence(Change const& change, bool isExchanged) {
  ChangeSide const& a = isExchanged ? change.after : change.before;
  ChangeSide const& b = isExchanged ? change.before : change.after;
  std::string kind(NameOf(change.kind));
  if (isExchanged && change.kind == ChangeKind::kAdded) {
    kind = NameOf(ChangeKind::kRemoved);
  } else if (isExchanged && change.kind == ChangeKind::kRemoved) {
    kind = NameOf(ChangeKind::kAdded);
  }
  auto const side = [](ChangeSide const& of) {
    return std::to_string(of.item) + "@" + std::to_string(of.offset) + ":" +
           std::to_string(of.bytes.size());
  };
  bool const isReordered = change.kind == ChangeKind::kReordered;
  return kind + " " + change.field + " " + (isReordered ? "" : side(a) + " -> " + side(b));
}

std::multiset<std::string> Essences(std::vector<Change> const& changes, bool isExchanged) {
  std::multiset<std::string> essences;
  for (Change const& change : changes) {
    essences.insert(Essence(change, isExchanged));
  }
  return essences;
}

TEST(DiffProperty, OfGeneratedDevices) {
  std::vector<usb_devices::Device> samples;
  for (char const* const name :
       {"uvc-camera.txt", "audio-2.txt", "hid-keyboard-mouse-composite.txt",
        "mass-storage-superspeed-bos.txt", "malformed-truncated.txt"}) {
    samples.push_back(Sample(name));
  }
  samples.push_back(With(samples[2], Request::HidReport(0),
                         {0x05, 0x01, 0x09, 0x06, 0xA1, 0x01, 0x19, 0x00, 0x29, 0x65, 0xC0}));
  for (std::uint32_t seed = 0; seed < 600; ++seed) {
    SCOPED_TRACE(seed);
    Generator generator(seed);
    usb_devices::Device const a = generator.Changed(samples[seed % samples.size()]);
    usb_devices::Device const b = generator.Changed(a);
    Outline const outlineA(Decode(a, Speed::kHigh));
    Outline const outlineB(Decode(b, Speed::kHigh));
    std::vector<Change> const changes = usbdesc::Compare(outlineA, outlineB);
    EXPECT_EQ(changes.empty(), a.HasSameAnswers(b));
    EXPECT_TRUE(usbdesc::Compare(outlineB, outlineB).empty());
    EXPECT_EQ(ValuesIn(Applied(outlineA, outlineB, changes)), ValuesIn(PlacesOf(outlineB)));
    EXPECT_EQ(Essences(changes, false), Essences(usbdesc::Compare(outlineB, outlineA), true));
    if (HasFailure()) {
      ADD_FAILURE() << DiffText(changes).Text();
      return;
    }
  }
}

}  // namespace
}  // namespace usb_support::usbdesc

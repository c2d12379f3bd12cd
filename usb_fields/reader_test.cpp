#include <usb_fields/reader.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tests/support/allocation_counter.h>
#include <tests/support/heap_bytes.h>
#include <usb_fields/samples.h>
#include <usb_fields/text.h>

namespace usb_fields {
namespace {

using testing_support::Bytes;
using testing_support::ContextOf;
using testing_support::FromHex;
using testing_support::HeapBytes;
using testing_support::In;
using testing_support::Sample;
using testing_support::SampleOf;
using testing_support::Samples;

std::vector<std::string> NamesOf(std::span<std::uint8_t const> bytes, Context const& context) {
  std::vector<std::string> names;
  ReadFields(bytes, context,
             [&names](FieldValue const& field) { names.emplace_back(field.field->name); });
  return names;
}

std::string LayoutOf(std::span<std::uint8_t const> bytes, Context const& context) {
  LayoutMatch const match = FindLayout(bytes, context);
  return match.compiled != nullptr ? std::string(match.Get()->id) : "none";
}

TEST(SamplesTest, ReachEveryLayout) {
  std::set<std::string> reached;
  for (Sample const& sample : Samples()) {
    reached.insert(sample.layout);
  }
  for (detail::Compiled const* const layout : AllLayouts()) {
    EXPECT_TRUE(reached.contains(std::string(layout->layout->id)))
        << layout->layout->id << " has no sample";
  }
}

TEST(SamplesTest, TellWhereTheyAreFrom) {
  for (Sample const& sample : Samples()) {
    SCOPED_TRACE(sample.layout);
    LayoutMatch const match = FindLayout(sample.bytes, ContextOf(sample));
    ASSERT_NE(match.Get(), nullptr);
    if (sample.origin.starts_with("table: ")) {
      EXPECT_EQ(sample.origin, "table: " + std::string(match.Get()->source));
    } else {
      EXPECT_THAT(sample.origin, testing::AnyOf(testing::MatchesRegex("real: .+"),
                                                testing::MatchesRegex("standard: .+")));
    }
  }
}

TEST(SamplesTest, AreReadWholeByTheirLayout) {
  ASSERT_GT(Samples().size(), 250u);
  for (Sample const& sample : Samples()) {
    SCOPED_TRACE(sample.layout + ", " + sample.origin);
    Reading const reading = ReadFields(sample.bytes, ContextOf(sample), [](FieldValue const&) {});
    ASSERT_NE(reading.layout, nullptr);
    EXPECT_EQ(reading.layout->id, sample.layout);
    EXPECT_EQ(reading.isGuessed, sample.isGuessed);
    EXPECT_EQ(reading.length, sample.bytes.size());
    EXPECT_EQ(reading.NotDescribed(), 0u);
    EXPECT_FALSE(reading.isCut);
    EXPECT_GE(reading.length, reading.layout->least);
    EXPECT_THAT(reading.exactLength, testing::AnyOf(-1, reading.length));
  }
}

bool IsPrintable(std::string_view text) {
  return std::ranges::none_of(
      text, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
}

// Checks what every reading must fulfil: the fields are in order and without gaps, and none of
// their bytes is outside the descriptor.
void CheckReading(std::span<std::uint8_t const> bytes, Context const& context) {
  std::size_t next = 0;
  bool hasCut = false;
  std::vector<char> buffer(kMostText);
  Reading const reading = ReadFields(bytes, context, [&](FieldValue const& field) {
    EXPECT_EQ(field.offset, next);
    EXPECT_FALSE(hasCut) << "a field comes after one that is cut";
    next += field.Bytes().size();
    hasCut = field.IsCut();
    EXPECT_LE(next, bytes.size());
    EXPECT_TRUE(IsPrintable(TextOf(field, buffer)));
    EXPECT_TRUE(IsPrintable(NumberOf(field, buffer)));
    for (BitsReader bits(field); bits.Next();) {
      EXPECT_TRUE(IsPrintable(bits.Value().name));
      EXPECT_TRUE(IsPrintable(bits.Value().text));
    }
  });
  EXPECT_EQ(reading.isCut, hasCut);
  EXPECT_EQ(reading.described, next);
  EXPECT_LE(reading.length, bytes.size());
}

TEST(SamplesTest, AreReadAtEveryLength) {
  for (Sample const& sample : Samples()) {
    SCOPED_TRACE(sample.layout);
    for (std::size_t size = 0; size <= sample.bytes.size(); ++size) {
      HeapBytes const bytes(std::span<std::uint8_t const>(sample.bytes).first(size));
      CheckReading(bytes.Span(), ContextOf(sample));
    }
  }
}

TEST(SamplesTest, AreReadWithEveryByteChanged) {
  for (Sample const& sample : Samples()) {
    SCOPED_TRACE(sample.layout);
    for (std::size_t i = 0; i < std::min<std::size_t>(sample.bytes.size(), 64); ++i) {
      for (std::uint8_t const value : Bytes{0x00, 0x01, 0x7F, 0x80, 0xFF}) {
        Bytes changed = sample.bytes;
        changed[i] = value;
        CheckReading(HeapBytes(changed).Span(), ContextOf(sample));
      }
    }
  }
}

#if defined(USB_SUPPORT_TEST_COUNTS_ALLOCATIONS)
TEST(SamplesTest, AreReadWithoutAllocation) {
  std::vector<Context> contexts;
  for (Sample const& sample : Samples()) {
    contexts.push_back(ContextOf(sample));
  }
  std::vector<char> buffer(kMostText);
  EXPECT_EQ(usb_support::testing_support::SteadyAllocationsOf([&] {
              for (std::size_t i = 0; i < contexts.size(); ++i) {
                ReadFields(Samples()[i].bytes, contexts[i], [&buffer](FieldValue const& field) {
                  TextOf(field, buffer);
                  NumberOf(field, buffer);
                  for (BitsReader bits(field); bits.Next();) {
                  }
                });
                contexts[i].Follow(Samples()[i].bytes);
              }
            }),
            0u);
}
#endif

TEST(ReaderTest, HandsOutLengthAndTypeOfADescriptorThatNobodyKnows) {
  Bytes const bytes = FromHex("05 41 01 02 03");
  Reading const reading = ReadFields(bytes, In(0xFF, 0, 0), [](FieldValue const&) {});
  EXPECT_EQ(reading.layout, nullptr);
  EXPECT_EQ(reading.described, 2u);
  EXPECT_EQ(reading.NotDescribed(), 3u);
  EXPECT_THAT(NamesOf(bytes, In(0xFF, 0, 0)), testing::ElementsAre("bLength", "bDescriptorType"));
}

TEST(ReaderTest, EndsAtTheLesserOfLengthAndRun) {
  Bytes const interface = FromHex("09 04 00 00 01 03 01 01 00 07 05 81 03 08 00 05");
  EXPECT_EQ(ReadFields(interface, {}, [](FieldValue const&) {}).length, 9u);
  Reading const cut = ReadFields(std::span(interface).first(7), {}, [](FieldValue const&) {});
  EXPECT_EQ(cut.length, 7u);
  EXPECT_TRUE(cut.isCut);
}

TEST(ReaderTest, HandsOutTheFirstMissingFieldOnce) {
  Bytes const bytes = FromHex("04 01 00 02");
  EXPECT_THAT(NamesOf(bytes, {}),
              testing::ElementsAre("bLength", "bDescriptorType", "bcdUSB", "bDeviceClass"));
}

TEST(ReaderTest, CountsBytesThatNoFieldHas) {
  Bytes const bytes = FromHex("08 0a 01 02 aa bb cc dd");
  Reading const reading = ReadFields(bytes, {}, [](FieldValue const&) {});
  EXPECT_EQ(reading.NotDescribed(), 4u);
  EXPECT_EQ(reading.exactLength, 4);
}

TEST(ReaderTest, RepeatsAGroupByACount) {
  std::vector<std::pair<std::string, int>> seen;
  ReadFields(
      FromHex("0c 21 11 01 00 02 22 3f 00 23 10 00"), In(3, 0, 0),
      [&seen](FieldValue const& field) { seen.emplace_back(field.field->name, field.index); });
  ASSERT_EQ(seen.size(), 9u);
  EXPECT_EQ(seen[5], (std::pair<std::string, int>("bDescriptorType", 0)));
  EXPECT_EQ(seen[8], (std::pair<std::string, int>("wDescriptorLength", 1)));
}

TEST(ReaderTest, TakesTheAlternativeWhoseConditionHolds) {
  Bytes const control = FromHex("09 02 20 00 01 01 00 c0 fa");
  std::vector<char> buffer(kMostText);
  for (auto const& [speed, wanted] :
       {std::pair(Speed::kFull, "500 mA"), std::pair(Speed::kUnknown, "500 mA"),
        std::pair(Speed::kSuper, "2000 mA")}) {
    std::string text;
    ReadFields(control, Context{.speed = speed},
               [&](FieldValue const& field) { text = TextOf(field, buffer); });
    EXPECT_EQ(text, wanted);
  }
}

TEST(ReaderTest, DividesByZeroWithoutHarm) {
  // A feature unit (UAC 1.0, table 4-7) whose bControlSize is 0.
  Bytes const bytes = FromHex("0a 24 06 02 01 00 01 02 03 00");
  CheckReading(bytes, In(1, 1, 0));
  EXPECT_EQ(LayoutOf(bytes, In(1, 1, 0)), "uac1.feature_unit");
}

TEST(FindLayoutTest, PrefersTheMostConditions) {
  EXPECT_EQ(LayoutOf(FromHex("07 05 81 03 08 00 05"), In(1, 2, 0)), "usb2.endpoint");
  EXPECT_EQ(LayoutOf(FromHex("09 05 81 05 08 00 05 00 00"), In(1, 2, 0)), "uac1.as_isoc_endpoint");
  EXPECT_EQ(LayoutOf(FromHex("09 05 81 02 40 00 00 00 00"), In(1, 3, 0)), "midi.endpoint");
  EXPECT_EQ(LayoutOf(FromHex("09 05 81 05 08 00 05 00 00"), In(3, 0, 0)), "usb2.endpoint");
}

TEST(FindLayoutTest, TellsApartWhatClassesUseForThemselves) {
  EXPECT_EQ(LayoutOf(FromHex("09 21 11 01 00 01 22 3f 00"), In(3, 1, 1)), "hid.hid");
  EXPECT_EQ(LayoutOf(FromHex("09 21 0b ff 00 00 10 10 01"), In(0xFE, 1, 1)), "dfu.functional");
  EXPECT_EQ(LayoutOf(FromHex("09 21 11 01 00 01 22 3f 00"), In(8, 6, 0x50)), "none");
}

TEST(FindLayoutTest, TakesTheHealthcareExtensionBeforeAnEndpointOnly) {
  Context context = In(0x0F, 0, 0);
  Bytes const bytes = FromHex("06 30 00 01 07 10");
  EXPECT_EQ(LayoutOf(bytes, context), "phdc.function_11073");
  context.Follow(FromHex("07 05 81 02 00 04 00"));
  EXPECT_EQ(LayoutOf(bytes, context), "usb3.endpoint_companion");
}

TEST(GuessTest, CdcInAVendorSpecificInterfaceNeedsAHeaderFirst) {
  Bytes const header = FromHex("05 24 00 10 01");
  Bytes const acm = FromHex("04 24 02 02");
  Context context = In(0xFF, 0, 0);
  EXPECT_EQ(LayoutOf(acm, context), "none");
  EXPECT_EQ(LayoutOf(header, context), "cdc.header");
  EXPECT_TRUE(FindLayout(header, context).isGuessed);
  context.Follow(header);
  EXPECT_EQ(LayoutOf(acm, context), "cdc.abstract_control_management");
  EXPECT_TRUE(FindLayout(acm, context).isGuessed);
  context.Follow(FromHex("09 04 01 00 00 ff 00 00 00"));
  EXPECT_EQ(LayoutOf(acm, context), "none") << "the next interface begins anew";
}

TEST(GuessTest, AnotherFirstDescriptorRulesCdcOut) {
  Context context = In(0xFF, 0, 0);
  context.Follow(FromHex("04 24 09 01"));
  EXPECT_EQ(LayoutOf(FromHex("05 24 00 10 01"), context), "none");
  EXPECT_EQ(LayoutOf(FromHex("05 24 00 99 01"), In(0xFF, 0, 0)), "none") << "no release of CDC";
}

TEST(GuessTest, CdcOfRndisAndOfDataInterfaces) {
  Bytes const header = FromHex("05 24 00 10 01");
  EXPECT_TRUE(FindLayout(header, In(0xE0, 1, 3)).isGuessed);
  EXPECT_TRUE(FindLayout(header, In(0xEF, 4, 1)).isGuessed);
  EXPECT_EQ(LayoutOf(header, In(0xE0, 1, 1)), "none");
  EXPECT_EQ(LayoutOf(FromHex("05 24 06 00 01"), In(0x0A, 0, 0)), "cdc.union");
  EXPECT_FALSE(FindLayout(header, In(0x0A, 0, 0)).isGuessed);
}

TEST(GuessTest, HidDescriptorsThatFit) {
  Bytes const hid = FromHex("09 21 11 01 00 01 22 3f 00");
  EXPECT_TRUE(FindLayout(hid, In(0x05, 0, 0)).isGuessed);
  EXPECT_EQ(LayoutOf(hid, In(0xFF, 0, 0)), "hid.hid");
  EXPECT_EQ(LayoutOf(FromHex("09 21 11 01 00 01 23 3f 00"), In(0xFF, 0, 0)), "none");
  EXPECT_EQ(LayoutOf(FromHex("0a 21 11 01 00 01 22 3f 00 00"), In(0xFF, 0, 0)), "none");
}

TEST(UnknownTest, DescriptorsOfOtherRequestsHaveTheirOwnLength) {
  Context context{.request = Request::kMsOs20};
  Bytes const bytes = FromHex("06 00 77 00 01 02 ff ff");
  EXPECT_EQ(LayoutOf(bytes, context), "none");
  EXPECT_EQ(DescriptorLength(bytes, context), 6u);
  EXPECT_THAT(NamesOf(bytes, context), testing::ElementsAre("wLength", "wDescriptorType"));
  context.request = Request::kMsOs10;
  EXPECT_EQ(DescriptorLength(bytes, context), 0x00770006u);
}

// Expressions of the tables, in a layout for this test only.
constexpr Field kProbe[] = {
    {"bLength", 1, Dec()},
    {"bType", 1, Hex()},
    {"a", 1, Dec()},
    {"b", 1, Dec()},
    {"c", "a[7..4] + 2 * b - 1", usb_fields::Bytes()},
    {"d", 1, Dec(), {.repeat = "(a[3..0] == 2) * 3 + (b != 1) + (a < 0x10) + (b >= 2) + (b > 2)"}},
    {"e", "(bLength - 4) / b", usb_fields::Bytes(), {.when = "b <= 1 && a[0..0] == 0"}},
};
constexpr Layout kProbeLayouts[] = {{"probe", "Probe", "type=99", 4, "a + b", kProbe, "test"}};
constexpr auto kProbeCompiled = detail::CompileAll<kProbeLayouts>();

std::map<std::string, std::size_t> SizesOf(Bytes const& bytes) {
  std::map<std::string, std::size_t> sizes;
  ReadFields(
      bytes, LayoutMatch{kProbeCompiled.data(), false}, {},
      [&sizes](FieldValue const& field) { sizes[std::string(field.field->name)] += field.size; });
  return sizes;
}

TEST(ExpressionTest, IsEvaluated) {
  Bytes bytes(64, 0);
  bytes[0] = 64;
  bytes[2] = 0x32;
  bytes[3] = 1;
  auto const sizes = SizesOf(bytes);
  EXPECT_EQ(sizes.at("c"), 3u + 2 - 1);
  EXPECT_EQ(sizes.at("d"), 3u);
  EXPECT_EQ(sizes.at("e"), 60u);
  bytes[2] = 0x03;
  bytes[3] = 3;
  auto const others = SizesOf(bytes);
  EXPECT_EQ(others.at("c"), 0u + 6 - 1);
  EXPECT_EQ(others.at("d"), 4u);
  EXPECT_FALSE(others.contains("e"));
}

TEST(ExpressionTest, BelowZeroIsNoBytes) {
  Bytes const bytes = FromHex("04 99 00 00");
  auto const sizes = SizesOf(bytes);
  EXPECT_FALSE(sizes.contains("c"));
}

TEST(ContextTest, FollowsInterfacesEndpointsAndConfigurations) {
  Context context{.speed = Speed::kSuper, .index = 1};
  context.Follow(FromHex("09 04 00 00 02 0e 01 00 00"));
  EXPECT_TRUE(context.hasInterface);
  EXPECT_EQ(context.interfaceClass, 0x0E);
  EXPECT_EQ(context.interfaceSubclass, 0x01);
  context.Follow(FromHex("0d 24 01 10 01 4d 00 80 8d 5b 00 01 01"));
  EXPECT_EQ(context.videoRelease, 0x0110);
  context.Follow(FromHex("07 05 81 03 08 00 05"));
  EXPECT_TRUE(context.hasEndpoint);
  EXPECT_EQ(context.endpointAttributes, 3);
  context.Follow(FromHex("09 04 01 00 00 0e 02 00 00"));
  EXPECT_FALSE(context.hasEndpoint);
  EXPECT_EQ(context.endpointAttributes, 0);
  EXPECT_EQ(context.videoRelease, 0x0110) << "the streaming interfaces of the function follow";
  context.Follow(FromHex("09 02 20 00 01 01 00 c0 32"));
  EXPECT_FALSE(context.hasInterface);
  EXPECT_EQ(context.videoRelease, 0);
  EXPECT_EQ(context.speed, Speed::kSuper);
  EXPECT_EQ(context.index, 1);
}

TEST(ContextTest, AShortDescriptorCountsWithZeros) {
  Context context;
  context.Follow(HeapBytes(FromHex("09 04 00")).Span());
  EXPECT_TRUE(context.hasInterface);
  EXPECT_EQ(context.interfaceClass, 0);
  context.Follow({});
}

TEST(ReaderTest, IsSoundForEveryLayoutWithAnyBytes) {
  std::mt19937 random(1);
  for (detail::Compiled const* const layout : AllLayouts()) {
    for (int round = 0; round < 40; ++round) {
      Bytes bytes(random() % 64 + 2);
      for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(random() % (round % 2 == 0 ? 8 : 256));
      }
      bytes[0] = static_cast<std::uint8_t>(bytes.size() + random() % 3 - 1);
      HeapBytes const block(bytes);
      Context const context = In(static_cast<std::uint8_t>(random()), 1, 0);
      std::size_t end = 0;
      Reading const reading =
          ReadFields(block.Span(), LayoutMatch{layout}, context, [&](FieldValue const& field) {
            EXPECT_EQ(field.offset, end) << layout->layout->id;
            end += field.Bytes().size();
          });
      EXPECT_EQ(reading.described, end);
      EXPECT_LE(end, bytes.size());
    }
  }
}

// Within a table the compiler checks this.
TEST(LayoutsTest, HaveIdsAndKeysThatAreUnique) {
  std::set<std::string_view> ids;
  std::set<std::string_view> keys;
  for (detail::Compiled const* const layout : AllLayouts()) {
    EXPECT_TRUE(ids.insert(layout->layout->id).second) << layout->layout->id;
    EXPECT_TRUE(keys.insert(layout->layout->key).second) << layout->layout->id;
  }
  EXPECT_EQ(ids.size(), AllLayouts().size());
  EXPECT_GE(ids.size(), 270u);
}

// Every captured descriptor has a layout, except those that no standard defines.
TEST(CapturesTest, HaveLayouts) {
  char const* const folder = std::getenv("USB_SUPPORT_CAPTURES_DIR");
  if (folder == nullptr) {
    GTEST_SKIP() << "USB_SUPPORT_CAPTURES_DIR names no folder of captures";
  }
  // Class, subclass and protocol of the interface, and the descriptor's type.
  std::set<std::string> const vendorSpecific = {
      "ff/5d/01 21",  // game controllers
      "ff/5d/02 21",
      "ff/5d/03 21",
      "ff/fd/13 41",
  };
  std::size_t count = 0;
  for (auto const& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.path().extension() != ".bin") {
      continue;
    }
    std::ifstream file(entry.path(), std::ios::binary);
    Bytes const bytes{std::istreambuf_iterator<char>(file), {}};
    Context context{.speed = Speed::kHigh};
    std::span<std::uint8_t const> rest(bytes);
    while (rest.size() >= 2 && rest[0] >= 2) {
      ++count;
      CheckReading(rest, context);
      char place[32];
      std::snprintf(place, sizeof(place), "%02x/%02x/%02x %02x", context.interfaceClass,
                    context.interfaceSubclass, context.interfaceProtocol, rest[1]);
      EXPECT_NE(LayoutOf(rest, context) == "none", !vendorSpecific.contains(place))
          << entry.path() << ": " << place;
      context.Follow(rest);
      rest = rest.subspan(std::min<std::size_t>(rest[0], rest.size()));
    }
  }
  EXPECT_GT(count, 0u);
}

}  // namespace
}  // namespace usb_fields

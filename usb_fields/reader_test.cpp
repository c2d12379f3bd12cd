#include <usb_fields/reader.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <usb_fields/names.h>
#include <usb_fields/text.h>

namespace usb_fields {
namespace {

using testing::ElementsAre;
using testing::Pair;

using Bytes = std::vector<std::uint8_t>;

// A block of exactly these bytes, so that a sanitizer sees a read beyond them.
class Block {
 public:
  explicit Block(Bytes const& bytes) : bytes_(new std::uint8_t[bytes.size()]), size_(bytes.size()) {
    std::ranges::copy(bytes, bytes_.get());
  }

  std::span<std::uint8_t const> Span() const { return {bytes_.get(), size_}; }

 private:
  std::unique_ptr<std::uint8_t[]> bytes_;
  std::size_t size_;
};

using Texts = std::vector<std::pair<std::string, std::string>>;

// Name and text of every field, the number where there is no text.
Texts TextsOf(Bytes const& bytes, Context const& context) {
  Block const block(bytes);
  Texts texts;
  ReadFields(block.Span(), context, [&](FieldValue const& field) {
    char buffer[kMostText];
    std::string_view text = TextOf(field, buffer);
    texts.emplace_back(field.field->name, text.empty() ? NumberOf(field, buffer) : text);
  });
  return texts;
}

std::string TextOfField(Bytes const& bytes, Context const& context, std::string_view name) {
  for (auto const& [field, text] : TextsOf(bytes, context)) {
    if (field == name) {
      return text;
    }
  }
  return "(none)";
}

Context InInterface(std::uint8_t interfaceClass, std::uint8_t subclass, std::uint8_t protocol) {
  Context context{.speed = Speed::kHigh};
  context.Follow(Bytes{9, 4, 0, 0, 1, interfaceClass, subclass, protocol, 0});
  return context;
}

// The configuration of a webcam and, after it, some of its descriptors.
Bytes const kConfiguration = {0x09, 0x02, 0xA2, 0x09, 0x04, 0x01, 0x00, 0xA0, 0xFA};
Bytes const kVideoEndpoint = {0x07, 0x05, 0x81, 0x05, 0x00, 0x14, 0x01};
Bytes const kFrame = {0x1E, 0x24, 0x05, 0x01, 0x00, 0x80, 0x02, 0xE0, 0x01, 0x00,
                      0x00, 0x77, 0x01, 0x00, 0x00, 0xCA, 0x08, 0x00, 0x60, 0x09,
                      0x00, 0x15, 0x16, 0x05, 0x00, 0x01, 0x15, 0x16, 0x05, 0x00};
Bytes const kContainer = {0x14, 0x10, 0x04, 0x00, 0x5C, 0xF3, 0xEE, 0x30, 0xD5, 0x07,
                          0x49, 0x25, 0xB0, 0x01, 0x80, 0x2D, 0x79, 0x43, 0x4C, 0x30};
Bytes const kHid = {0x09, 0x21, 0x11, 0x01, 0x00, 0x01, 0x22, 0x3F, 0x00};

TEST(ReadFields, ReadsAConfigurationInTheOrderOfTheStandard) {
  EXPECT_THAT(TextsOf(kConfiguration, {.speed = Speed::kHigh}),
              ElementsAre(Pair("bLength", "9"), Pair("bDescriptorType", "Configuration"),
                          Pair("wTotalLength", "2466 bytes"), Pair("bNumInterfaces", "4"),
                          Pair("bConfigurationValue", "1"), Pair("iConfiguration", "No string"),
                          Pair("bmAttributes", "Remote Wakeup"), Pair("bMaxPower", "500 mA")));
}

TEST(ReadFields, ReadsAFieldByTheSpeed) {
  EXPECT_EQ(TextOfField(kConfiguration, {.speed = Speed::kSuper}, "bMaxPower"), "2000 mA");
  EXPECT_EQ(TextOfField(kConfiguration, {}, "bMaxPower"), "500 mA") << "unknown counts as high";
}

TEST(ReadFields, ReadsAnEndpointByItsTransferType) {
  Context const context = InInterface(0x0E, 0x02, 0x00);
  EXPECT_THAT(TextOfField(kVideoEndpoint, context, "bmAttributes"),
              testing::HasSubstr("Isochronous"));
  EXPECT_THAT(TextOfField(kVideoEndpoint, context, "bmAttributes"),
              testing::HasSubstr("Asynchronous"));
  EXPECT_EQ(TextOfField(kVideoEndpoint, context, "bInterval"), "125 us");
}

TEST(ReadFields, ReadsClassSpecificDescriptorsByTheInterface) {
  Context const context = InInterface(0x0E, 0x02, 0x00);
  Block const block(kFrame);
  Reading const reading = ReadFields(block.Span(), context, [](FieldValue const&) {});
  ASSERT_NE(reading.layout, nullptr);
  EXPECT_EQ(reading.layout->id, "video.frame_uncompressed");
  EXPECT_EQ(reading.exactLength, 30);
  EXPECT_EQ(reading.NotDescribed(), 0u);
  EXPECT_FALSE(reading.isCut);
  EXPECT_EQ(TextOfField(kFrame, context, "wWidth"), "640 pixels");
  EXPECT_EQ(TextOfField(kFrame, context, "dwFrameInterval"), "33.3333 ms");
  EXPECT_EQ(FindLayout(block.Span(), {}).Get(), nullptr) << "no interface came before";
}

TEST(ReadFields, ReadsAUuidInItsUsualForm) {
  EXPECT_THAT(TextOfField(kContainer, {}, "ContainerID"),
              testing::HasSubstr("30eef35c-07d5-2549-b001-802d79434c30"));
}

TEST(ReadFields, RepeatsFieldsAsOftenAsAnEarlierOneSays) {
  Bytes twice = kHid;
  twice[5] = 2;
  twice[0] = 12;
  twice.insert(twice.end(), {0x23, 0x10, 0x00});
  Block const block(twice);
  std::vector<unsigned> indexes;
  ReadFields(block.Span(), InInterface(3, 0, 0), [&](FieldValue const& field) {
    if (field.field->name == "wDescriptorLength") {
      indexes.push_back(field.index);
    }
  });
  EXPECT_THAT(indexes, ElementsAre(0, 1));
}

// What holds for any bytes.
void ExpectSoundReading(Bytes const& bytes, Context const& context) {
  Block const block(bytes);
  std::size_t end = 0;
  bool wasCut = false;
  Reading const reading = ReadFields(block.Span(), context, [&](FieldValue const& field) {
    EXPECT_FALSE(wasCut);
    EXPECT_EQ(field.offset, end);
    end += field.Bytes().size();
    wasCut = field.IsCut();
    char buffer[kMostText];
    for (std::string_view const text : {TextOf(field, buffer), NumberOf(field, buffer)}) {
      EXPECT_TRUE(std::ranges::all_of(text, [](char c) {
        return static_cast<unsigned char>(c) >= 0x20 && c != 0x7F;
      })) << field.field->name;
    }
    for (BitsReader bits(field); bits.Next();) {
      EXPECT_GE(bits.Value().high, bits.Value().low);
    }
  });
  EXPECT_EQ(reading.described, end);
  EXPECT_EQ(reading.isCut, wasCut);
  EXPECT_LE(reading.described, reading.length);
  EXPECT_LE(reading.length, bytes.size());
}

TEST(ReadFields, KeepsToTheBytesHoweverTheyAreCut) {
  for (Bytes const& sample : {kConfiguration, kVideoEndpoint, kFrame, kContainer, kHid}) {
    for (std::size_t length = 0; length <= sample.size(); ++length) {
      Bytes const cut(sample.begin(), sample.begin() + static_cast<std::ptrdiff_t>(length));
      for (unsigned const interfaceClass : {0x01u, 0x03u, 0x0Eu, 0xFFu}) {
        ExpectSoundReading(cut, InInterface(static_cast<std::uint8_t>(interfaceClass), 2, 0));
      }
    }
  }
}

TEST(ReadFields, IsSoundForEveryLayoutWithAnyBytes) {
  std::mt19937 random(1);
  for (detail::Compiled const* const layout : AllLayouts()) {
    for (int round = 0; round < 40; ++round) {
      Bytes bytes(random() % 64 + 2);
      for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(random() % (round % 2 == 0 ? 8 : 256));
      }
      bytes[0] = static_cast<std::uint8_t>(bytes.size() + random() % 3 - 1);
      Block const block(bytes);
      Context const context = InInterface(static_cast<std::uint8_t>(random()), 1, 0);
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

TEST(Layouts, HaveIdsThatAreUnique) {
  std::set<std::string_view> ids;
  for (detail::Compiled const* const layout : AllLayouts()) {
    EXPECT_TRUE(ids.insert(layout->layout->id).second) << layout->layout->id;
    EXPECT_LE(layout->rows.size(), 96u);
  }
  EXPECT_EQ(ids.size(), AllLayouts().size());
  EXPECT_GE(ids.size(), 270u);
}

TEST(Names, AreThoseOfTheUsbIf) {
  EXPECT_EQ(ClassName(0x0E), "Video");
  EXPECT_EQ(SubclassName(0x01, 0x02), "Audio Streaming");
  EXPECT_EQ(ProtocolName(0x01, 0x02, 0x20), "Audio 2.0");
  EXPECT_EQ(ClassName(0x77), "");
  EXPECT_EQ(LanguageName(0x0409), "English (United States)");
  EXPECT_EQ(UsagePageName(0x0001), "Generic Desktop");
  char buffer[64];
  EXPECT_EQ(UsageName(0x0001, 0x0002, buffer), "Mouse");
  EXPECT_EQ(UsageName(0x0009, 3, buffer), "Button 3");
}

}  // namespace
}  // namespace usb_fields

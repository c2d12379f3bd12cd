#include <tools/usbdesc/device.h>

#include <tools/usbdesc/usbdesc_test.h>

namespace usb_support::usbdesc {
namespace {

using testing::ElementsAre;
using testing::Pair;
using testing_support::Joined;
using testing_support::MakeDescriptor;
using usb_devices::Request;

Bytes Header(unsigned char type, unsigned total) {
  return {9,
          type,
          static_cast<unsigned char>(total),
          static_cast<unsigned char>(total >> 8),
          0,
          1,
          0,
          0x80,
          50};
}

usb_devices::Device DeviceOf(std::string name, std::vector<usb_devices::Answer> answers) {
  usb_devices::DeviceBuilder builder;
  builder.SetName(std::move(name));
  for (usb_devices::Answer& answer : answers) {
    builder.Add(std::move(answer));
  }
  return builder.Build();
}

TEST(Show, TellsDevicesOfOneRunApart) {
  Input const input =
      InputOf(Joined({Header(2, 9), MakeDescriptor(18, 1), Header(2, 9), Header(7, 9),
                      MakeDescriptor(17, 1), MakeDescriptor(5, 0x0F)}));
  ShownInput const shown = Show(input);
  ASSERT_EQ(shown.devices.size(), 2u);
  EXPECT_EQ(shown.devices[0].parts.size(), 4u);
  EXPECT_EQ(shown.devices[0].name, "name#1");
  EXPECT_TRUE(shown.devices[0].descriptor.has_value());
  EXPECT_EQ(shown.devices[1].parts.size(), 2u);
  EXPECT_EQ(shown.devices[1].name, "name#2");
  EXPECT_FALSE(shown.devices[1].descriptor.has_value()) << "it is short";
  EXPECT_EQ(shown.devices[1].parts[1].offset, 9u + 18 + 9 + 9 + 17);
  EXPECT_EQ(shown.run->size(), 9u + 18 + 9 + 9 + 17 + 5);
}

TEST(Show, TakesWhatNoRunHoldsForAnswers) {
  Input const input{"name",
                    "json",
                    {DeviceOf("1.7", {{Request::Descriptor(2), {}, Header(2, 9), {}, {}},
                                      {Request::String(1, 0x409), {}, {4, 3, 'a', 0}, {}, {}},
                                      {Request::HidReport(0), {}, {5, 1}, {}, {}}})}};
  ShownInput const shown = Show(input);
  EXPECT_FALSE(shown.run.has_value());
  EXPECT_EQ(shown.devices.front().parts.size(), 1u);
  EXPECT_EQ(shown.devices.front().name, "name");
}

TEST(Show, HasNoRunThatARangeCannotSpan) {
  EXPECT_TRUE(Show(InputOf(Joined({Header(2, 9), Bytes(65526, 1)}))).run.has_value());
  Input const input = InputOf(Joined({Header(2, 9), Bytes(65518, 1), MakeDescriptor(9, 2)}));
  EXPECT_FALSE(Show(input).run.has_value());
}

TEST(NameOfADevice, CanBeUsedToReadIt) {
  Input input{"a.pcap", "traffic", {DeviceOf("1.7", {}), DeviceOf("1.8", {}), DeviceOf("", {})}};
  EXPECT_EQ(NameOf(input, 0), "a.pcap#1.7");
  EXPECT_EQ(NameOf(input, 1), "a.pcap#1.8");
  EXPECT_EQ(NameOf(input, 2), "a.pcap#3");
  input.devices.push_back(DeviceOf("1.7", {}));
  EXPECT_EQ(NameOf(input, 0), "a.pcap#1") << "two have the name";
  input.devices.resize(1);
  EXPECT_EQ(NameOf(input, 0), "a.pcap");
}

TEST(StringsOf, AreTextsInTheFirstLanguage) {
  usb_devices::Device const device =
      DeviceOf("", {{Request::String(0, 0), {}, {4, 3, 9, 4}, {}, {}},
                    {Request::String(1, 0x809), {}, {4, 3, 'b', 0}, {}, {}},
                    {Request::String(1, 0x409), {}, {4, 3, 'a', 0}, {}, {}},
                    {Request::String(2, 0x409), {}, {6, 3, 0xAC, 0x20, 0x1B, 0}, {}, {}},
                    {Request::String(3, 0x409), usb_devices::Outcome::kStalled, {}, {}, {}}});
  EXPECT_THAT(StringsOf(device),
              ElementsAre(Pair(1, "a"), Pair(2, testing::StartsWith("\xE2\x82\xAC"))));
  EXPECT_EQ(StringsOf(device).at(2).find('\x1B'), std::string::npos) << "fit to be shown";
}

// "set + after, valid" of the only part of a run, in bytes.
std::string LengthsOf(Bytes const& run) {
  Input const input = InputOf(run);
  std::vector<Part> const parts = Show(input).devices.front().parts;
  EXPECT_EQ(parts.size(), 1u);
  Part const& part = parts.front();
  EXPECT_EQ(part.set.Length() + part.after.Length(), part.bytes.Length());
  return std::to_string(part.set.Length()) + " + " + std::to_string(part.after.Length()) + ", " +
         std::to_string(part.valid.Length());
}

TEST(Part, HasASetOfItsTotalLengthAtMost) {
  EXPECT_EQ(LengthsOf(Joined({Header(2, 12), {3, 0x24, 1}, {2, 3}})), "12 + 2, 12");
  EXPECT_EQ(LengthsOf(Joined({Header(2, 200), {3, 0x24, 1}})), "12 + 0, 12") << "less is there";
  EXPECT_EQ(LengthsOf(Joined({Header(7, 0), {3, 0x24, 1}})), "9 + 3, 9") << "the header is";
  EXPECT_EQ(LengthsOf({5, 0x0F, 8, 0, 1, 3, 0x10, 2, 3, 0x10, 2}), "8 + 3, 8");
  EXPECT_EQ(LengthsOf(Joined({Header(2, 12), {4, 0x24, 1}})), "12 + 0, 9") << "broken";
  EXPECT_EQ(LengthsOf(Joined({MakeDescriptor(18, 1), {4, 3, 9, 4}})), "18 + 4, 18");
  EXPECT_EQ(LengthsOf({3, 0x24, 1}), "0 + 3, 0");
}

TEST(Part, HasAName) {
  Input const input = InputOf(Joined({Header(2, 9), Header(7, 9), {5, 0x0F, 5, 0, 0}}));
  std::vector<Part> const parts = Show(input).devices.front().parts;
  ASSERT_EQ(parts.size(), 3u);
  EXPECT_EQ(parts[0].Name(), "configuration 1");
  EXPECT_EQ(parts[1].Name(), "other-speed configuration 1");
  EXPECT_EQ(parts[2].Name(), "BOS");
}

}  // namespace
}  // namespace usb_support::usbdesc

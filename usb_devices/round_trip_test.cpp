// Devices of random answers, written in every form that holds a whole device and read back.
#include <gmock/gmock.h>

#include <filesystem>
#include <random>
#include <utility>

#include <standalone_suite/test_support/temp_folder.h>
#include <usb_devices/device.h>
#include <usb_devices/files.h>
#include <usb_devices/folder.h>
#include <usb_devices/input.h>
#include <usb_devices/json.h>
#include <usb_devices/listing_writer.h>
#include <usb_devices/test_bytes.h>

namespace usb_devices {
namespace {

class Generator {
 public:
  explicit Generator(unsigned seed) : random_(seed) {}

  Device Make() {
    DeviceBuilder builder;
    builder.SetName(Text());
    builder.SetSpeed(static_cast<Speed>(Below(6)));
    for (unsigned count = 1 + Below(12); count != 0; --count) {
      Answer answer{
          MakeRequest(), static_cast<Outcome>(Below(8) < 6 ? 0 : 1 + Below(2)), {}, {}, {}};
      if (answer.outcome == Outcome::kAnswered) {
        answer.bytes = MakeBytes();
      } else {
        answer.note = Text();
      }
      builder.Add(std::move(answer));
    }
    return builder.Build();
  }

 private:
  unsigned Below(unsigned count) { return static_cast<unsigned>(random_()) % count; }
  std::uint8_t Byte() { return static_cast<std::uint8_t>(Below(256)); }

  Request MakeRequest() {
    constexpr std::uint8_t kTypes[] = {1, 2, 3, 6, 7, 15, 0x21, 0x22, 0x29, 0x30};
    std::uint8_t const type = kTypes[Below(std::size(kTypes))];
    std::uint8_t const index = Below(3) == 0 ? Byte() : static_cast<std::uint8_t>(Below(2));
    switch (Below(6)) {
      case 0:
        return Request::String(index, static_cast<std::uint16_t>(Below(65536)));
      case 1:
        return Request::OfInterface(type, Byte(), index);
      case 2:
        return Request::Hub(Below(2) == 0 ? kHubType : kSuperSpeedHubType);
      case 3:
        return {static_cast<std::uint8_t>(Below(4) * 0x40 + Below(4)), Byte(),
                static_cast<std::uint16_t>(Below(65536)), static_cast<std::uint16_t>(Below(65536))};
      default:
        return Request::Descriptor(type, index);
    }
  }

  // Chains of descriptors that may break, as a device may send them.
  Bytes MakeBytes() {
    Bytes bytes;
    for (unsigned count = Below(5); count != 0; --count) {
      Bytes const next = Below(4) == 0 ? testing_support::Header(Below(2) == 0 ? 2 : 7, Below(40))
                                       : testing_support::MakeDescriptor(
                                             static_cast<std::uint8_t>(Below(20)), Byte());
      bytes.insert(bytes.end(), next.begin(), next.end());
    }
    for (unsigned count = Below(3); count != 0; --count) {
      bytes.push_back(Byte());
    }
    return bytes;
  }

  // Texts that look like parts of the forms, and bytes that every form must escape.
  std::string Text() {
    constexpr char const* kWords[] = {"1.7",
                                      ":",
                                      ", speed high:",
                                      "\n",
                                      "// request 80",
                                      "\x1B",
                                      "\xFF",
                                      "\xC3\xA9",
                                      "stalled",
                                      "*/",
                                      "{",
                                      "#",
                                      " ",
                                      "0h:",
                                      ", ",
                                      "\"",
                                      "(incomplete)"};
    std::string text;
    for (unsigned count = Below(4); count != 0; --count) {
      text += kWords[Below(std::size(kWords))];
    }
    return text;
  }

  std::mt19937 random_;
};

TEST(RoundTrip, GivesTheSameDeviceInEveryForm) {
  usb_support::standalone::TempFolder const folder;
  std::string const file = NameOf(folder.Path() / "file");
  std::string const saved = NameOf(folder.Path() / "saved");
  for (unsigned seed = 0; seed < 400; ++seed) {
    SCOPED_TRACE(seed);
    Device const device = Generator(seed).Make();
    for (std::string const& text :
         {WriteListing(device), WriteCode(device), WriteJson({{"a", {device}}})}) {
      SCOPED_TRACE(text);
      WriteFile(file, text);
      std::vector<Device> const read = ReadInput(file).devices;
      ASSERT_EQ(read.size(), 1u);
      ASSERT_TRUE(read.front().HasSameAnswers(device));
    }
    if (seed % 8 == 0) {
      WriteFolder(device, saved);
      ASSERT_TRUE(ReadFolder(saved).HasSameAnswers(device));
      std::filesystem::remove_all(PathOf(saved));
    }
  }
}

TEST(RoundTrip, GivesEveryDeviceOfAText) {
  std::vector<Device> devices;
  std::string text;
  for (unsigned seed = 1000; seed < 1127; ++seed) {
    devices.push_back(Generator(seed).Make());
    text += WriteListing(devices.back());
  }
  usb_support::standalone::TempFolder const folder;
  std::vector<Device> const read = ReadInput(NameOf(folder.Write("file", text))).devices;
  ASSERT_EQ(read.size(), devices.size());
  for (std::size_t i = 0; i < devices.size(); ++i) {
    EXPECT_TRUE(read[i].HasSameAnswers(devices[i])) << i;
  }
}

}  // namespace
}  // namespace usb_devices

#include <usb_fields/speed.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <tests/support/heap_bytes.h>
#include <usb_fields/samples.h>

namespace usb_fields {
namespace {

using testing_support::FromHex;
using testing_support::HeapBytes;

SpeedGuess Guess(std::string const& hex) {
  HeapBytes const bytes(FromHex(hex));
  std::span<std::uint8_t const> const runs[] = {bytes.Span()};
  return GuessSpeed(runs);
}

// Whole up to bMaxPacketSize0.
std::string Device(std::string const& release, std::string const& triple, std::string const& size) {
  return "12 01 " + release + " " + triple + " " + size + " 6d 04 25 08 12 00 00 00 00 01 ";
}

TEST(GuessSpeedTest, IsWhatTheDescriptorsShow) {
  std::string const device2 = Device("00 02", "00 00 00", "40");
  std::string const device1 = Device("10 01", "00 00 00", "40");
  std::string const hub = Device("00 02", "09 00 01", "40");
  std::string const bulk512 = "07 05 02 02 00 02 00 ";
  std::string const bulk64 = "07 05 02 02 40 00 00 ";
  std::string const bulk1024 = "07 05 02 02 00 04 00 ";
  std::string const companion = "06 30 00 00 00 00 ";
  std::string const healthcare = "09 04 00 00 01 0f 00 00 00 06 30 01 01 07 10 ";
  std::string const otherSpeed = "09 07 19 00 01 01 00 80 32 ";
  std::string const configuration = "09 02 19 00 01 01 00 80 32 ";
  struct Row {
    std::string hex;
    Speed speed;
    std::string_view reason;  // words of it
  };
  for (Row const& row : {
           Row{"", Speed::kUnknown, "do not show"},
           Row{device2, Speed::kUnknown, "do not show"},
           Row{Device("00 03", "00 00 00", "09"), Speed::kSuper, "is 9"},
           Row{Device("ff 02", "00 00 00", "09"), Speed::kUnknown, "do not show"},
           Row{Device("00 03", "00 00 00", "08") + bulk64, Speed::kFull, "bMaxPacketSize0"},
           Row{device2 + bulk1024 + companion, Speed::kSuper, "companions"},
           Row{device2 + bulk512 + companion, Speed::kSuper, "companions"},
           Row{hub, Speed::kHigh, "of the hub"},
           Row{Device("00 02", "09 00 02", "40"), Speed::kHigh, "of the hub"},
           Row{Device("00 02", "09 00 00", "40"), Speed::kUnknown, "do not show"},
           Row{Device("00 02", "09 00 03", "40"), Speed::kUnknown, "do not show"},
           Row{Device("00 02", "08 00 01", "40"), Speed::kUnknown, "do not show"},
           Row{device2 + bulk512, Speed::kHigh, "high-speed packet size"},
           Row{device2 + bulk64 + bulk512, Speed::kHigh, "high-speed packet size"},
           Row{device1 + bulk512, Speed::kHigh, "high-speed packet size"},
           Row{device2 + "07 05 81 05 00 04 01", Speed::kHigh, "high-speed packet size"},
           Row{device2 + "07 05 81 05 ff 03 01", Speed::kUnknown, "do not show"},
           Row{device2 + "07 05 81 03 00 04 01", Speed::kHigh, "high-speed packet size"},
           Row{device1, Speed::kFull, "bcdUSB"},
           Row{Device("ff 01", "00 00 00", "40"), Speed::kFull, "bcdUSB"},
           Row{Device("00 02", "00 00 00", "10"), Speed::kFull, "bMaxPacketSize0"},
           Row{Device("00 02", "00 00 00", "20"), Speed::kFull, "bMaxPacketSize0"},
           Row{Device("00 02", "00 00 00", "07"), Speed::kUnknown, "do not show"},
           Row{device2 + bulk64, Speed::kFull, "bulk endpoint"},
           Row{device2 + "07 05 02 02 08 00 00 ", Speed::kFull, "bulk endpoint"},
           Row{device2 + "07 05 02 02 07 00 00 ", Speed::kUnknown, "do not show"},
           Row{device2 + "07 05 02 02 41 00 00 ", Speed::kUnknown, "do not show"},
           Row{device2 + bulk1024, Speed::kUnknown, "do not show"},
           Row{device2 + "07 05 81 03 41 00 01", Speed::kHigh, "interrupt endpoint"},
           Row{device2 + bulk64 + "07 05 81 03 41 00 01", Speed::kFull, "bulk endpoint"},
           Row{device2 + "07 05 81 03 40 00 01", Speed::kUnknown, "do not show"},
           Row{device2 + "07 05 00 00 00 04 00", Speed::kUnknown, "do not show"},
           Row{healthcare + bulk512, Speed::kHigh, "high-speed packet size"},
           Row{healthcare + bulk1024 + companion, Speed::kSuper, "companions"},
           Row{healthcare + "09 04 01 00 00 ff 00 00 00 " + companion, Speed::kSuper, "companions"},
           Row{otherSpeed + bulk512 + companion, Speed::kUnknown, "do not show"},
           Row{otherSpeed + bulk512 + configuration + bulk64, Speed::kFull, "bulk endpoint"},
       }) {
    SpeedGuess const guess = Guess(row.hex);
    EXPECT_EQ(guess.speed, row.speed) << row.hex;
    EXPECT_EQ(guess.readAs, row.speed == Speed::kUnknown ? Speed::kHigh : row.speed) << row.hex;
    EXPECT_NE(guess.reason.find(row.reason), std::string_view::npos) << row.hex << guess.reason;
  }
}

TEST(GuessSpeedTest, SaysWhenLowSpeedIsPossible) {
  std::string const device = Device("10 01", "00 00 00", "08");
  struct Row {
    std::string hex;
    bool mayBeLow;
  };
  for (Row const& row : {
           Row{device, true},
           Row{device + "07 05 81 03 08 00 0a", true},
           Row{device + "07 05 81 03 09 00 0a", false},
           Row{device + "07 05 81 01 08 00 01", false},
           Row{device + "07 05 81 02 08 00 00", false},
           Row{Device("00 02", "00 00 00", "08"), true},
           Row{Device("10 01", "00 00 00", "07"), true},
           Row{Device("10 01", "00 00 00", "10"), false},
           Row{Device("10 01", "00 00 00", "20"), false},
           Row{Device("10 01", "00 00 00", "40"), false},
       }) {
    SpeedGuess const guess = Guess(row.hex);
    EXPECT_EQ(guess.speed, row.mayBeLow ? Speed::kUnknown : Speed::kFull) << row.hex;
    EXPECT_EQ(guess.readAs, Speed::kFull) << row.hex;
  }
}

TEST(GuessSpeedTest, ReadsEveryRun) {
  HeapBytes const device(FromHex(Device("00 02", "00 00 00", "40")));
  HeapBytes const first(FromHex("07 05 02 02 40 00 00"));
  HeapBytes const second(FromHex("07 05 02 02 00 02 00"));
  std::span<std::uint8_t const> const runs[] = {device.Span(), first.Span(), second.Span()};
  EXPECT_EQ(GuessSpeed(runs).speed, Speed::kHigh);
  EXPECT_EQ(GuessSpeed(std::span(runs).first(2)).speed, Speed::kFull);
  EXPECT_EQ(GuessSpeed({}).speed, Speed::kUnknown);
}

TEST(GuessSpeedTest, ReadsDescriptorsThatAreCut) {
  std::string const hex = Device("10 01", "00 00 00", "08") + "07 05 02 02 00 02 00 00 01";
  auto const bytes = FromHex(hex);
  for (std::size_t size = 0; size <= bytes.size(); ++size) {
    HeapBytes const cut({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)});
    std::span<std::uint8_t const> const runs[] = {cut.Span()};
    Speed const speed = size < 8 || size >= 24 ? Speed::kHigh : Speed::kFull;
    EXPECT_EQ(GuessSpeed(runs).readAs, speed) << size;
  }
}

TEST(SpeedHereTest, IsTheOtherInAnOtherSpeedConfiguration) {
  auto const own = FromHex("09 02 10 00 01 01 00 80 32");
  auto const other = FromHex("09 07 10 00 01 01 00 80 32");
  struct Row {
    Speed speed;
    Speed here;
    Speed inOther;
  };
  for (Row const& row :
       {Row{Speed::kUnknown, Speed::kHigh, Speed::kFull},
        Row{Speed::kLow, Speed::kLow, Speed::kHigh}, Row{Speed::kFull, Speed::kFull, Speed::kHigh},
        Row{Speed::kHigh, Speed::kHigh, Speed::kFull},
        Row{Speed::kSuper, Speed::kSuper, Speed::kFull},
        Row{Speed::kSuperPlus, Speed::kSuperPlus, Speed::kFull}}) {
    Context context{.speed = row.speed};
    EXPECT_EQ(context.SpeedHere(), row.here);
    context.Follow(other);
    EXPECT_EQ(context.SpeedHere(), row.inOther);
    context.Follow(own);
    EXPECT_EQ(context.SpeedHere(), row.here);
    EXPECT_EQ(context.speed, row.speed);
  }
}

}  // namespace
}  // namespace usb_fields

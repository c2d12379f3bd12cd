#include <usb_support/text/text_writer.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace usb_support {
namespace {

// The result of `write` in a buffer of ten characters that were all '#'.
std::string Written(std::function<void(TextWriter&)> const& write) {
  std::string room(10, '#');
  TextWriter out(room.data(), room.size());
  write(out);
  EXPECT_EQ(out.Position() - room.data(), static_cast<std::ptrdiff_t>(room.find('#')));
  EXPECT_EQ(out.Room(), room.size() - room.find('#'));
  return room;
}

TEST(TextWriter, WritesTheTextAlone) {
  EXPECT_EQ(Written([](TextWriter& out) { out.Text("literal"); }), "literal###");
  EXPECT_EQ(Written([](TextWriter& out) { out.Text(std::string_view("view")); }), "view######");
  EXPECT_EQ(Written([](TextWriter& out) { out.Text(std::string_view()); }), "##########");
  EXPECT_EQ(Written([](TextWriter& out) { out.HexByte(0xA9); }), "A9########");
  EXPECT_EQ(Written([](TextWriter& out) { out.HexWord(0xFE0C); }), "FE0C######");
  EXPECT_EQ(Written([](TextWriter& out) { out.Decimal(0); }), "0#########");
  EXPECT_EQ(Written([](TextWriter& out) { out.Decimal(9); }), "9#########");
  EXPECT_EQ(Written([](TextWriter& out) { out.Decimal(10); }), "10########");
  EXPECT_EQ(Written([](TextWriter& out) { out.Decimal(65535); }), "65535#####");
}

TEST(TextWriter, WritesUpToTheEndOfItsRoom) {
  std::string room(10, '#');
  TextWriter out(room.data(), room.size());
  out.Decimal(std::numeric_limits<std::uint32_t>::max());
  EXPECT_EQ(room, "4294967295");
  EXPECT_EQ(out.Room(), 0u);
  out.Text("");
  EXPECT_EQ(out.Room(), 0u);
}

}  // namespace
}  // namespace usb_support

#include <tools/usbdesc/input.h>

#include <tools/usbdesc/usbdesc_test.h>

namespace usb_support::usbdesc {
namespace {

TEST(LooksLikeText, TakesPrintableAsciiAndWhiteSpace) {
  EXPECT_TRUE(LooksLikeText("12 01"));
  EXPECT_TRUE(LooksLikeText(" \t\r\n\f\v!~"));
  EXPECT_TRUE(
      LooksLikeText("\xEF\xBB\xBF"
                    "12"));
  EXPECT_TRUE(LooksLikeText("\xEF\xBB\xBF"));
}

TEST(LooksLikeText, RefusesNothingAtAllAndControlCharacters) {
  EXPECT_FALSE(LooksLikeText(""));
  for (int c = 0; c < 256; ++c) {
    bool const isText = (c >= 0x20 && c <= 0x7E) || (c >= 0x09 && c <= 0x0D);
    EXPECT_EQ(LooksLikeText(std::string(1, static_cast<char>(c))), isText) << c;
    EXPECT_EQ(LooksLikeText("12 " + std::string(1, static_cast<char>(c)) + " 13"), isText) << c;
  }
  EXPECT_FALSE(LooksLikeText("# comment\x01"));
}

TEST(LooksLikeText, TakesUtf8InComments) {
  EXPECT_TRUE(LooksLikeText("# \xC3\xA9\n12"));
  EXPECT_TRUE(LooksLikeText("12 // \xE2\x82\xAC"));
  EXPECT_TRUE(LooksLikeText("/* \xF0\x9F\x94\x8C\n \xC3\xA9 */ 12"));
  EXPECT_TRUE(LooksLikeText("/* // */ 12 /*/ \xC3\xA9 */"));
  EXPECT_TRUE(LooksLikeText("# \xC3")) << "cut off at the end";
}

TEST(LooksLikeText, RefusesUtf8OutsideOfComments) {
  EXPECT_FALSE(LooksLikeText("\xC3\xA9"));
  EXPECT_FALSE(LooksLikeText("# a\n\xC3\xA9"));
  EXPECT_FALSE(LooksLikeText("// a\r\xC3\xA9"));
  EXPECT_FALSE(LooksLikeText("/* a */ \xC3\xA9"));
  EXPECT_FALSE(LooksLikeText("/ / \xC3\xA9"));
  EXPECT_FALSE(LooksLikeText("12 \xEF\xBB\xBF")) << "a byte order mark begins a text";
}

TEST(LooksLikeText, RefusesOtherBytesInComments) {
  EXPECT_FALSE(LooksLikeText("# \xE9 \n"));
  EXPECT_FALSE(LooksLikeText("// \xC0\x80"));
  EXPECT_FALSE(LooksLikeText("/* \xFF */"));
}

class InputTest : public UsbdescTest {
 protected:
  // The message of the error that reading the file throws; else the bytes.
  std::string Read(std::string_view content, InputKind kind) const {
    try {
      return "bytes: " + AsText(ReadFile(Write("input", content), kind));
    } catch (InputError const& error) {
      return error.what();
    }
  }
};

TEST_F(InputTest, RecognisesTheKind) {
  EXPECT_EQ(Read("61 62", InputKind::kRecognise), "bytes: ab");
  EXPECT_EQ(Read("61 62\x01", InputKind::kRecognise), "bytes: 61 62\x01");
  EXPECT_EQ(Read("", InputKind::kRecognise), "bytes: ");
}

TEST_F(InputTest, TakesTheKindThatItIsTold) {
  EXPECT_EQ(Read("61 62", InputKind::kRaw), "bytes: 61 62");
  EXPECT_EQ(Read("61 62", InputKind::kText), "bytes: ab");
  EXPECT_EQ(Read("", InputKind::kRaw), "bytes: ");
  EXPECT_EQ(Read("", InputKind::kText), "bytes: ");
  EXPECT_EQ(Read("61 \x01", InputKind::kText),
            "line 1, column 4: found byte 1h, expected a byte of two hexadecimal digits");
}

TEST_F(InputTest, TakesRawRunsOfUpTo65535Bytes) {
  std::string const longest(65535, '\x02');
  EXPECT_EQ(Read(longest, InputKind::kRecognise), "bytes: " + longest);
  EXPECT_EQ(Read(longest, InputKind::kRaw), "bytes: " + longest);
  for (std::size_t const size : {65536u, 65537u, 131072u, 200000u}) {
    std::string const tooLong(size, '\x02');
    EXPECT_EQ(Read(tooLong, InputKind::kRecognise),
              "holds more than 65,535 bytes, which no range can span");
    EXPECT_EQ(Read(tooLong, InputKind::kRaw),
              "holds more than 65,535 bytes, which no range can span");
  }
}

TEST_F(InputTest, TakesTextsOfUpTo65535Bytes) {
  std::string text;
  for (int i = 0; i < 65535; ++i) {
    text += "61 ";
  }
  EXPECT_EQ(Read(text, InputKind::kRecognise), "bytes: " + std::string(65535, 'a'));
  EXPECT_EQ(Read(text + "# " + std::string(100000, '-'), InputKind::kText),
            "bytes: " + std::string(65535, 'a'));
  EXPECT_EQ(Read(text + "61", InputKind::kRecognise),
            "holds more than 65,535 bytes, which no range can span");
}

TEST_F(InputTest, DoesNotTakeACharacterOnTheBlockBoundaryForRaw) {
  // The first block of 65,536 bytes ends inside the character.
  for (std::size_t const size : {65533u, 65534u, 65535u}) {
    EXPECT_EQ(Read("#" + std::string(size - 1, ' ') + "\xE2\x82\xAC\n61", InputKind::kRecognise),
              "bytes: a")
        << size;
  }
}

TEST_F(InputTest, RefusesTextsOfMoreThan16MiB) {
  std::string text(std::size_t{16} << 20, ' ');
  text.replace(0, 2, "61");
  EXPECT_EQ(Read(text, InputKind::kRecognise), "bytes: a");
  EXPECT_EQ(Read(text + ' ', InputKind::kRecognise), "holds more than 16 MiB of text");
  EXPECT_EQ(Read(text + ' ', InputKind::kText), "holds more than 16 MiB of text");
}

TEST_F(InputTest, LeavesAStreamThatIsTooLong) {
  Stream const stream = OpenStream(Write("endless", std::string(std::size_t{1} << 20, '\0')), "rb");
  EXPECT_THROW(ReadStream(stream.get(), InputKind::kRecognise), InputError);
  EXPECT_LE(std::ftell(stream.get()), 65536 + 65536);
}

TEST_F(InputTest, ReportsWhyAFileCannotBeRead) {
  auto const messageOf = [](std::string const& name) -> std::string {
    try {
      ReadFile(name, InputKind::kRecognise);
    } catch (InputError const& error) {
      return error.what();
    }
    return "";
  };
  EXPECT_EQ(messageOf(NameOf(Path("missing"))), "cannot be opened: No such file or directory");
  EXPECT_EQ(messageOf(NameOf(Path(""))), "is a directory; it has no files");
  EXPECT_EQ(messageOf(""), "cannot be opened: No such file or directory");
}

TEST_F(InputTest, ReportsThatAStreamCannotBeRead) {
  Stream const stream = OpenStream(Path("write-only"), "wb");
  try {
    ReadStream(stream.get(), InputKind::kRecognise);
    ADD_FAILURE();
  } catch (InputError const& error) {
    EXPECT_THAT(error.what(), testing::StartsWith("cannot be read"));
  }
}

}  // namespace
}  // namespace usb_support::usbdesc

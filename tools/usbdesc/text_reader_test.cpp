#include <tools/usbdesc/text_reader.h>

#include <algorithm>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace usb_support::usbdesc {
namespace {

constexpr char kListing[] =
    "\n// two bytes \xC3\xA9:\n"
    "   0h:  02 FF : <UNKNOWN DESCRIPTOR>\n"
    "   2h:  09 04 00 00 00 09 00 01 00 : Interface: Num=0, Alt=0\n"
    "   Bh:  07 05 81 03 40 00 04 : Interrupt Endpoint: Address=0x81 (IN), wMaxPacketSize=64 "
    "(0x0040), bInterval=4 (0x04)  12h:  \n"
    "09 02 19 (incomplete)\n"
    "// 3 descriptors, 0 configurations, 1 interface, 21 bytes, not valid: past the end at offset "
    "18 (12h), 3 bytes left\n";

constexpr char kCode[] =
    "\n// two bytes:\n"
    "/*    0h */  0x02, 0xFF, // <UNKNOWN DESCRIPTOR>\n"
    "/*    2h */  0x09, 0x04, 0x00, 0x00, 0x00, 0x09, 0x00, 0x01, 0x00, // Interface: Num=0, "
    "Alt=0\n"
    "/*    Bh */  0x07, 0x05, 0x81, 0x03, 0x40, 0x00, 0x04, // Interrupt Endpoint: Address=0x81 "
    "(IN), wMaxPacketSize=64 (0x0040), bInterval=4 (0x04)/*   12h */  \n"
    "09 02 19 (incomplete)\n"
    "// 3 descriptors\n";

Bytes const kDumped = {0x02, 0xFF, 0x09, 0x04, 0x00, 0x00, 0x00, 0x09, 0x00, 0x01, 0x00,
                       0x07, 0x05, 0x81, 0x03, 0x40, 0x00, 0x04, 0x09, 0x02, 0x19};

std::string Replaced(std::string text, std::string_view what, std::string_view by) {
  for (std::size_t at = text.find(what); at != std::string::npos;
       at = text.find(what, at + by.size())) {
    text.replace(at, what.size(), by);
  }
  return text;
}

// The message of the error that a text gives.
std::string ErrorOf(std::string_view text) {
  try {
    ReadText(text);
  } catch (TextError const& error) {
    std::string const place = "line " + std::to_string(error.Line()) + ", column " +
                              std::to_string(error.Column()) + ": ";
    EXPECT_THAT(error.what(), testing::StartsWith(place));
    return error.what();
  }
  return "no error";
}

TEST(TextReader, ReadsHexadecimalBytes) {
  EXPECT_EQ(ReadText("12 01 aB Cd fF 00"), (Bytes{0x12, 0x01, 0xAB, 0xCD, 0xFF, 0x00}));
  EXPECT_EQ(ReadText("\t12\n\n01\r\n02\f03\v04\r05 "), (Bytes{0x12, 1, 2, 3, 4, 5}));
  EXPECT_EQ(ReadText("12"), Bytes{0x12});
}

TEST(TextReader, TakesTextsWithoutBytes) {
  EXPECT_EQ(ReadText(""), Bytes());
  EXPECT_EQ(ReadText("\xEF\xBB\xBF"), Bytes());
  EXPECT_EQ(ReadText(" \n\t"), Bytes());
  EXPECT_EQ(ReadText("# nothing"), Bytes());
  EXPECT_EQ(ReadText("// nothing\n/* at all */"), Bytes());
  EXPECT_EQ(ReadText("{}"), Bytes());
  EXPECT_EQ(ReadText("unsigned char none[] = { /* none */ };"), Bytes());
}

TEST(TextReader, SkipsComments) {
  EXPECT_EQ(ReadText("# 01\n02 # 03\n04// 05\n06 /* 07\n 08 */ 09/**/0A#\n// {\n0B"),
            (Bytes{2, 4, 6, 9, 0x0A, 0x0B}));
  EXPECT_EQ(ReadText("# one\r02 // two\r\n03"), (Bytes{2, 3})) << "each kind of line end";
  EXPECT_EQ(ReadText("# /*\n02 # */\n// \xC3\xA9\n03"), (Bytes{2, 3}));
  EXPECT_EQ(ReadText("{0x01,//2\n/*3*/0x04#5\n}"), (Bytes{1, 4}));
}

TEST(TextReader, SkipsAByteOrderMark) {
  EXPECT_EQ(ReadText("\xEF\xBB\xBF"
                     "12 01"),
            (Bytes{0x12, 0x01}));
  EXPECT_EQ(ReadText("\xEF\xBB\xBF"
                     "{1}"),
            Bytes{1});
}

TEST(TextReader, ReadsArrays) {
  EXPECT_EQ(ReadText("{0x12, 0X1, 0xaB, 255, 0}"), (Bytes{0x12, 1, 0xAB, 255, 0}));
  EXPECT_EQ(ReadText("0x12,0x01,"), (Bytes{0x12, 1}));
  EXPECT_EQ(ReadText("18, 1"), (Bytes{18, 1}));
  EXPECT_EQ(ReadText("5,"), Bytes{5});
  EXPECT_EQ(ReadText("0xFF"), Bytes{0xFF});
  EXPECT_EQ(ReadText("10 /* ten */ ,\n11"), (Bytes{10, 11}));
  EXPECT_EQ(ReadText("{9}"), Bytes{9});
  EXPECT_EQ(ReadText("{ 9 ,\n 8 , }\n;\n// end\n"), (Bytes{9, 8}));
}

TEST(TextReader, SkipsTheDeclarationOfAnArray) {
  for (char const* const declaration :
       {"unsigned char const device[] =", "static const uint8_t d[18]=", "uint8_t x[]",
        "constexpr std::array<std::uint8_t, 2> kDevice =", "[[maybe_unused]] auto const x[2] =",
        "#include <stdint.h>\r\nuint8_t d[] =", "/* { */ uint8_t d[2] = // {\n",
        "__attribute__((aligned(4))) uint8_t ab[] =", "ab_t cd[] ="}) {
    EXPECT_EQ(ReadText(std::string(declaration) + "{ 0x12, 1 };"), (Bytes{0x12, 1})) << declaration;
    EXPECT_EQ(ReadText(std::string(declaration) + " {0x12,\n1,}"), (Bytes{0x12, 1})) << declaration;
  }
}

TEST(TextReader, ReadsItsOwnProgramsListing) {
  EXPECT_EQ(ReadText(kListing), kDumped);
  EXPECT_EQ(ReadText("   0h:  02 FF"), (Bytes{2, 0xFF})) << "no label";
  EXPECT_EQ(ReadText("   0h:  02 FF   2h:  \n01 (incomplete)"), (Bytes{2, 0xFF, 1}));
  EXPECT_EQ(ReadText("   0h:  \n09 02 (incomplete)"), (Bytes{9, 2}));
  EXPECT_EQ(ReadText("   0h:  01 : a # b // c /* d {\n   1h:  01 : , ;"), (Bytes{1, 1}));
}

TEST(TextReader, ReadsItsOwnProgramsCode) {
  EXPECT_EQ(ReadText(kCode), kDumped);
  EXPECT_EQ(ReadText("/*    0h */  0x02, 0xFF,"), (Bytes{2, 0xFF})) << "no label";
  EXPECT_EQ(ReadText("/*    0h */  0x02, 0xFF,/*    2h */  \n01 (incomplete)"),
            (Bytes{2, 0xFF, 1}));
  EXPECT_EQ(ReadText("/*    0h */  \n09 02 (incomplete)"), (Bytes{9, 2}));
  EXPECT_EQ(ReadText("/*    0h */  \n09 (incomplete)"), Bytes{9});
  EXPECT_EQ(ReadText("unsigned char const run[] = {\n" + std::string(kCode) + "};\n"), kDumped);
}

TEST(TextReader, ReadsDumpsWithOtherLineEnds) {
  for (char const* const lineEnd : {"\r\n", "\r"}) {
    EXPECT_EQ(ReadText("\xEF\xBB\xBF" + Replaced(kListing, "\n", lineEnd)), kDumped);
    EXPECT_EQ(ReadText("\xEF\xBB\xBF" + Replaced(kCode, "\n", lineEnd)), kDumped);
  }
}

TEST(TextReader, ReadsDumpsWithoutTheBlanksAtLineEnds) {
  EXPECT_EQ(ReadText(Replaced(kListing, "  \n", "\n")), kDumped);
  EXPECT_EQ(ReadText(Replaced(kCode, "  \n", "\n")), kDumped);
}

TEST(TextReader, ChecksOffsets) {
  EXPECT_EQ(ErrorOf("   0h:  01 : A\n   2h:  01 : B"),
            "line 2, column 4: found \"2h:\", expected the offset 1h, as a text holds one run");
  EXPECT_EQ(ErrorOf("   1Bh:  01 : A"),
            "line 1, column 4: found \"1Bh:\", expected the offset 0h, as a text holds one run");
  EXPECT_EQ(ErrorOf("/*    0h */  0x01,\n/*   1Fh */  0x01,"),
            "line 2, column 1: found \"/*   1Fh */\", expected the offset 1h, as a text holds one "
            "run");
}

TEST(TextReader, RefusesSeveralDumpsInOneText) {
  constexpr char kFirst[] = "\n// a:\n   0h:  02 FF : A\n// 1 descriptor\n";
  EXPECT_EQ(ErrorOf(std::string(kFirst) + kFirst),
            "line 7, column 4: found \"0h:\", expected the offset 2h, as a text holds one run");
  EXPECT_EQ(ErrorOf(std::string(kListing) + kFirst),
            "line 10, column 4: found \"0h:\", expected the offset 15h, as a text holds one run");
  EXPECT_EQ(
      ErrorOf(std::string(kCode) + kCode),
      "line 10, column 1: found \"/*    0h */\", expected the offset 15h, as a text holds one "
      "run");
  EXPECT_EQ(
      ErrorOf("{" + std::string(kCode) + kCode + "}"),
      "line 10, column 1: found \"/*    0h */\", expected the offset 15h, as a text holds one "
      "run");
}

TEST(TextReader, TakesOtherCommentsThatLookLikeOffsets) {
  EXPECT_EQ(ReadText("{0x12, /*   12h */ 0x01}"), (Bytes{0x12, 1})) << "not at the line's start";
  EXPECT_EQ(ReadText("{\n/* 12h */ 0x01}"), Bytes{1}) << "not four columns wide";
  EXPECT_EQ(ReadText("{\n/*   1G h */ 0x01}"), Bytes{1});
  EXPECT_EQ(ReadText("{\n/*     h */ 0x01}"), Bytes{1});
}

TEST(TextReader, RefusesWhatIsNoHexadecimalByte) {
  constexpr char kExpected[] = ", expected a byte of two hexadecimal digits";
  EXPECT_EQ(ErrorOf("12 1"), std::string("line 1, column 4: found \"1\"") + kExpected);
  EXPECT_EQ(ErrorOf("12\n 01 123"), std::string("line 2, column 5: found \"123\"") + kExpected);
  EXPECT_EQ(ErrorOf("12\r\n01\r\nG1"), std::string("line 3, column 1: found \"G1\"") + kExpected);
  EXPECT_EQ(ErrorOf("12 0x01"), std::string("line 1, column 4: found \"0x01\"") + kExpected);
  EXPECT_EQ(ErrorOf("hello, world"),
            "line 1, column 1: found \"hello\", expected 0x00 to 0xFF or 0 to 255 without leading "
            "zeros");
  EXPECT_EQ(ErrorOf("hello world"), std::string("line 1, column 1: found \"hello\"") + kExpected);
  EXPECT_EQ(ErrorOf("12 01 {"), std::string("line 1, column 7: found \"{\"") + kExpected);
  EXPECT_EQ(ErrorOf("12 01;"), std::string("line 1, column 6: found \";\"") + kExpected);
  EXPECT_EQ(ErrorOf("120100020000004009120300"),
            std::string("line 1, column 1: found \"120100020000004009120300\"") + kExpected);
  EXPECT_EQ(ErrorOf("1201000200000040091203000"),
            std::string("line 1, column 1: found \"120100020000004009120300\"...") + kExpected);
}

TEST(TextReader, RefusesOtherBytes) {
  constexpr char kExpected[] = ", expected a byte of two hexadecimal digits";
  EXPECT_EQ(ErrorOf(std::string_view("12\0", 3)),
            std::string("line 1, column 3: found byte 0h") + kExpected);
  EXPECT_EQ(ErrorOf("\x7F"), std::string("line 1, column 1: found byte 7Fh") + kExpected);
  EXPECT_EQ(ErrorOf("12 \xC3\xA9"), std::string("line 1, column 4: found byte C3h") + kExpected);
  EXPECT_EQ(ErrorOf("/* \xC3\xA9\xE2\x82\xAC */ x"),
            std::string("line 1, column 10: found \"x\"") + kExpected)
      << "a column is a character";
}

TEST(TextReader, RefusesLabelsWithoutOffset) {
  EXPECT_EQ(ErrorOf("12 01 : Device"),
            "line 1, column 7: found \":\", expected a byte of two hexadecimal digits");
  EXPECT_EQ(ErrorOf("   0h:  01\n01 : Device"),
            "line 2, column 4: found \":\", expected a byte of two hexadecimal digits");
}

TEST(TextReader, RefusesBytesAfterTheIncompleteLine) {
  constexpr char kExpected[] = ", expected the end of the run after \"(incomplete)\"";
  EXPECT_EQ(ErrorOf("09 (incomplete)\n01"),
            std::string("line 2, column 1: found \"01\"") + kExpected);
  EXPECT_EQ(ErrorOf("09 (incomplete) 01"),
            std::string("line 1, column 17: found \"01\"") + kExpected);
  EXPECT_EQ(ErrorOf("0x01,\n09 (incomplete)\n0x01"),
            std::string("line 3, column 1: found \"0x01\"") + kExpected);
}

TEST(TextReader, RefusesAnIncompleteLineWithoutHexadecimalBytes) {
  constexpr char kExpected[] = ", expected a byte of two hexadecimal digits";
  EXPECT_EQ(ErrorOf("(incomplete)"),
            std::string("line 1, column 1: found \"(incomplete)\"") + kExpected);
  EXPECT_EQ(ErrorOf("   0h:  01\n(incomplete)"),
            std::string("line 2, column 1: found \"(incomplete)\"") + kExpected);
  EXPECT_EQ(ErrorOf("0x01,\n0x02 (incomplete)"),
            std::string("line 2, column 1: found \"0x02\"") + kExpected);
}

TEST(TextReader, RefusesWhatIsNoByteOfAnArray) {
  constexpr char kBraced[] = ", expected 0x00 to 0xFF or 0 to 255 without leading zeros or \"}\"";
  constexpr char kPlain[] = ", expected 0x00 to 0xFF or 0 to 255 without leading zeros";
  EXPECT_EQ(ErrorOf("{0x100}"), std::string("line 1, column 2: found \"0x100\"") + kBraced);
  EXPECT_EQ(ErrorOf("{0x}"), std::string("line 1, column 2: found \"0x\"") + kBraced);
  EXPECT_EQ(ErrorOf("{0xG1}"), std::string("line 1, column 2: found \"0xG1\"") + kBraced);
  EXPECT_EQ(ErrorOf("{256}"), std::string("line 1, column 2: found \"256\"") + kBraced);
  EXPECT_EQ(ErrorOf("{99999999999999999999999}"),
            std::string("line 1, column 2: found \"99999999999999999999999\"") + kBraced);
  EXPECT_EQ(ErrorOf("{-1}"), std::string("line 1, column 2: found \"-1\"") + kBraced);
  EXPECT_EQ(ErrorOf("{012}"), std::string("line 1, column 2: found \"012\"") + kBraced) << "octal";
  EXPECT_EQ(ErrorOf("{00}"), std::string("line 1, column 2: found \"00\"") + kBraced);
  EXPECT_EQ(ErrorOf("{1,,2}"), std::string("line 1, column 4: found \",\"") + kBraced);
  EXPECT_EQ(ErrorOf("{,}"), std::string("line 1, column 2: found \",\"") + kBraced);
  EXPECT_EQ(ErrorOf("{1,;}"), std::string("line 1, column 4: found \";\"") + kBraced);
  EXPECT_EQ(ErrorOf("{{1}}"), std::string("line 1, column 2: found \"{\"") + kBraced);
  EXPECT_EQ(ErrorOf("1, x"), std::string("line 1, column 4: found \"x\"") + kPlain);
  EXPECT_EQ(ErrorOf("1, }"), std::string("line 1, column 4: found \"}\"") + kPlain);
  EXPECT_EQ(ErrorOf("12, 01"), std::string("line 1, column 5: found \"01\"") + kPlain);
}

TEST(TextReader, RefusesMissingCommasAndBraces) {
  EXPECT_EQ(ErrorOf("{1 2}"), "line 1, column 4: found \"2\", expected \",\" or \"}\"");
  EXPECT_EQ(ErrorOf("0x01 0x02"), "line 1, column 6: found \"0x02\", expected \",\"");
  EXPECT_EQ(ErrorOf("{1"), "line 1, column 3: found the end of the text, expected \",\" or \"}\"");
  EXPECT_EQ(
      ErrorOf("{1,\n"),
      "line 2, column 1: found the end of the text, expected 0x00 to 0xFF or 0 to 255 without "
      "leading zeros or \"}\"");
}

TEST(TextReader, RefusesWhatFollowsAnArray) {
  constexpr char kExpected[] = ", expected the end of the text, which holds one array";
  EXPECT_EQ(ErrorOf("{1}; x"), std::string("line 1, column 6: found \"x\"") + kExpected);
  EXPECT_EQ(ErrorOf("{1};;"), std::string("line 1, column 5: found \";\"") + kExpected);
  EXPECT_EQ(ErrorOf("{1}}"), std::string("line 1, column 4: found \"}\"") + kExpected);
  EXPECT_EQ(ErrorOf("a[] = {1};\nb[] = {2};"),
            std::string("line 2, column 1: found \"b[]\"") + kExpected);
}

TEST(TextReader, RefusesOtherDeclarations) {
  EXPECT_EQ(ErrorOf("namespace x {1}"),
            "line 1, column 13: found \"{\", expected \"=\" or \"]\" before it");
  EXPECT_EQ(ErrorOf("int x; char y[] = {1}"),
            "line 1, column 6: found \";\", expected the declaration of one array");
  EXPECT_EQ(ErrorOf("x } = {1}"),
            "line 1, column 3: found \"}\", expected the declaration of one array");
}

TEST(TextReader, RefusesAnUnfinishedComment) {
  EXPECT_EQ(ErrorOf("12\n 01 /* 02"), "line 2, column 5: found \"/*\", expected \"*/\" after it");
  EXPECT_EQ(ErrorOf("{1 /*/"), "line 1, column 4: found \"/*\", expected \"*/\" after it");
}

TEST(TextReader, TakesUpTo65535Bytes) {
  std::string array = "{";
  std::string listing;
  for (int i = 0; i < 65535; ++i) {
    array += "1,";
    listing += "01 ";
  }
  EXPECT_EQ(ReadText(array + "}"), Bytes(65535, 1));
  EXPECT_EQ(ReadText(listing), Bytes(65535, 1));
  for (std::string const& tooLong : {array + "1}", listing + "01"}) {
    try {
      ReadText(tooLong);
      ADD_FAILURE();
    } catch (InputError const& error) {
      EXPECT_STREQ(error.what(), "holds more than 65,535 bytes, which no range can span");
    }
  }
}

// Every text either gives bytes or an error at a place in it.
class DamagedText : public testing::TestWithParam<std::string> {
 protected:
  static void Check(std::string const& text) {
    try {
      EXPECT_LE(ReadText(text).size(), text.size());
    } catch (TextError const& error) {
      auto const lines =
          static_cast<std::size_t>(1 + std::count_if(text.begin(), text.end(), [](char c) {
                                     return c == '\n' || c == '\r';
                                   }));
      EXPECT_GE(error.Line(), 1u);
      EXPECT_LE(error.Line(), lines) << text;
      EXPECT_GE(error.Column(), 1u);
      EXPECT_LE(error.Column(), text.size() + 1) << text;
    }
  }
};

TEST_P(DamagedText, CutAtEveryLength) {
  for (std::size_t length = 0; length <= GetParam().size(); ++length) {
    Check(GetParam().substr(0, length));
  }
}

TEST_P(DamagedText, WithEachByteReplaced) {
  for (std::size_t at = 0; at < GetParam().size(); ++at) {
    for (int value = 0; value < 256; ++value) {
      std::string text = GetParam();
      text[at] = static_cast<char>(value);
      Check(text);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Forms, DamagedText,
    testing::Values("\xEF\xBB\xBF# one \xC3\xA9\r\n12 01 /* two */ aB // three\n\t00",
                    "uint8_t const x[4] = {\n  0x12, 1, /* \xC3\xA9 */\n  255, // end\n};\n",
                    kListing, kCode));

}  // namespace
}  // namespace usb_support::usbdesc

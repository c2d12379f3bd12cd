#include <usb_devices/text_reader.h>

#include <algorithm>
#include <string>

#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <usb_devices/listing_writer.h>

namespace usb_devices {
namespace {

using testing::ElementsAre;

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

// The bytes of the one run of a text; none when it has none.
Bytes Read(std::string_view text) {
  std::vector<TextRun> const runs = ReadText(text).runs;
  EXPECT_LE(runs.size(), 1u);
  return runs.empty() ? Bytes() : runs.front().bytes;
}

// The bytes of every run.
std::vector<Bytes> ReadAll(std::string_view text, std::optional<TextForm> form = std::nullopt) {
  std::vector<Bytes> runs;
  for (TextRun const& run : ReadText(text, {}, form).runs) {
    runs.push_back(run.bytes);
  }
  return runs;
}

std::string Replaced(std::string text, std::string_view what, std::string_view by) {
  for (std::size_t at = text.find(what); at != std::string::npos;
       at = text.find(what, at + by.size())) {
    text.replace(at, what.size(), by);
  }
  return text;
}

// The message of the error that a text gives.
std::string ErrorOf(std::string_view text, std::optional<TextForm> form = std::nullopt) {
  try {
    ReadText(text, {}, form);
  } catch (TextError const& error) {
    std::string const place = "line " + std::to_string(error.Line()) + ", column " +
                              std::to_string(error.Column()) + ": ";
    EXPECT_THAT(error.what(), testing::StartsWith(place));
    return error.what();
  } catch (ReadError const& error) {
    return error.what();
  }
  return "no error";
}

TEST(TextReader, ReadsHexadecimalBytes) {
  EXPECT_EQ(Read("12 01 aB Cd fF 00"), (Bytes{0x12, 0x01, 0xAB, 0xCD, 0xFF, 0x00}));
  EXPECT_EQ(Read("\t12\n\n01\r\n02\f03\v04\r05 "), (Bytes{0x12, 1, 2, 3, 4, 5}));
  EXPECT_EQ(Read("12"), Bytes{0x12});
}

TEST(TextReader, TakesTextsWithoutBytes) {
  EXPECT_EQ(Read(""), Bytes());
  EXPECT_EQ(Read("\xEF\xBB\xBF"), Bytes());
  EXPECT_EQ(Read(" \n\t"), Bytes());
  EXPECT_EQ(Read("# nothing"), Bytes());
  EXPECT_EQ(Read("// nothing\n/* at all */"), Bytes());
  EXPECT_EQ(Read("{}"), Bytes());
  EXPECT_EQ(Read("unsigned char none[] = { /* none */ };"), Bytes());
}

TEST(TextReader, SkipsComments) {
  EXPECT_EQ(Read("# 01\n02 # 03\n04// 05\n06 /* 07\n 08 */ 09/**/0A#\n// {\n0B"),
            (Bytes{2, 4, 6, 9, 0x0A, 0x0B}));
  EXPECT_EQ(Read("# one\r02 // two\r\n03"), (Bytes{2, 3})) << "each kind of line end";
  EXPECT_EQ(Read("# /*\n02 # */\n// \xC3\xA9\n03"), (Bytes{2, 3}));
  EXPECT_EQ(Read("{0x01,//2\n/*3*/0x04#5\n}"), (Bytes{1, 4}));
}

TEST(TextReader, SkipsAByteOrderMark) {
  EXPECT_EQ(Read("\xEF\xBB\xBF"
                 "12 01"),
            (Bytes{0x12, 0x01}));
  EXPECT_EQ(Read("\xEF\xBB\xBF"
                 "{1}"),
            Bytes{1});
}

TEST(TextReader, ReadsArrays) {
  EXPECT_EQ(Read("{0x12, 0X1, 0xaB, 255, 0}"), (Bytes{0x12, 1, 0xAB, 255, 0}));
  EXPECT_EQ(Read("0x12,0x01,"), (Bytes{0x12, 1}));
  EXPECT_EQ(Read("18, 1"), (Bytes{18, 1}));
  EXPECT_EQ(Read("5,"), Bytes{5});
  EXPECT_EQ(Read("0xFF"), Bytes{0xFF});
  EXPECT_EQ(Read("10 /* ten */ ,\n11"), (Bytes{10, 11}));
  EXPECT_EQ(Read("{9}"), Bytes{9});
  EXPECT_EQ(Read("{ 9 ,\n 8 , }\n;\n// end\n"), (Bytes{9, 8}));
}

TEST(TextReader, SkipsTheDeclarationOfAnArray) {
  for (char const* const declaration :
       {"unsigned char const device[] =", "static const uint8_t d[18]=", "uint8_t x[]",
        "constexpr std::array<std::uint8_t, 2> kDevice =", "[[maybe_unused]] auto const x[2] =",
        "#include <stdint.h>\r\nuint8_t d[] =", "/* { */ uint8_t d[2] = // {\n",
        "__attribute__((aligned(4))) uint8_t ab[] =", "ab_t cd[] ="}) {
    EXPECT_EQ(Read(std::string(declaration) + "{ 0x12, 1 };"), (Bytes{0x12, 1})) << declaration;
    EXPECT_EQ(Read(std::string(declaration) + " {0x12,\n1,}"), (Bytes{0x12, 1})) << declaration;
  }
}

TEST(TextReader, ReadsItsOwnProgramsListing) {
  EXPECT_EQ(Read(kListing), kDumped);
  EXPECT_EQ(Read("   0h:  02 FF"), (Bytes{2, 0xFF})) << "no label";
  EXPECT_EQ(Read("   0h:  02 FF   2h:  \n01 (incomplete)"), (Bytes{2, 0xFF, 1}));
  EXPECT_EQ(Read("   0h:  \n09 02 (incomplete)"), (Bytes{9, 2}));
  EXPECT_EQ(Read("   0h:  01 : a # b // c /* d {\n   1h:  01 : , ;"), (Bytes{1, 1}));
}

TEST(TextReader, ReadsItsOwnProgramsCode) {
  EXPECT_EQ(Read(kCode), kDumped);
  EXPECT_EQ(Read("/*    0h */  0x02, 0xFF,"), (Bytes{2, 0xFF})) << "no label";
  EXPECT_EQ(Read("/*    0h */  0x02, 0xFF,/*    2h */  \n01 (incomplete)"), (Bytes{2, 0xFF, 1}));
  EXPECT_EQ(Read("/*    0h */  \n09 02 (incomplete)"), (Bytes{9, 2}));
  EXPECT_EQ(Read("/*    0h */  \n09 (incomplete)"), Bytes{9});
  EXPECT_EQ(Read("unsigned char const run[] = {\n" + std::string(kCode) + "};\n"), kDumped);
}

TEST(TextReader, ReadsDumpsWithOtherLineEnds) {
  for (char const* const lineEnd : {"\r\n", "\r"}) {
    EXPECT_EQ(Read("\xEF\xBB\xBF" + Replaced(kListing, "\n", lineEnd)), kDumped);
    EXPECT_EQ(Read("\xEF\xBB\xBF" + Replaced(kCode, "\n", lineEnd)), kDumped);
  }
}

TEST(TextReader, ReadsDumpsWithoutTheSpacesAtLineEnds) {
  EXPECT_EQ(Read(Replaced(kListing, "  \n", "\n")), kDumped);
  EXPECT_EQ(Read(Replaced(kCode, "  \n", "\n")), kDumped);
}

TEST(TextReader, ChecksOffsets) {
  EXPECT_EQ(
      ErrorOf("   0h:  01 : A\n   2h:  01 : B"),
      "line 2, column 4: found \"2h:\", expected the offset 1h, or 0h at the start of another run");
  EXPECT_EQ(ErrorOf("   1Bh:  01 : A"),
            "line 1, column 4: found \"1Bh:\", expected the offset 0h, or 0h at the start of "
            "another run");
  EXPECT_EQ(ErrorOf("/*    0h */  0x01,\n/*   1Fh */  0x01,"),
            "line 2, column 1: found \"/*   1Fh */\", expected the offset 1h, or 0h at the "
            "start of another run");
}

TEST(TextReader, TakesSeveralDumpsInOneText) {
  constexpr char kFirst[] = "\n// a:\n   0h:  02 FF : A\n// 1 descriptor\n";
  Bytes const first = {2, 0xFF};
  EXPECT_THAT(ReadAll(std::string(kFirst) + kFirst), ElementsAre(first, first));
  EXPECT_THAT(ReadAll(std::string(kListing) + kFirst), ElementsAre(kDumped, first));
  EXPECT_THAT(ReadAll(std::string(kCode) + kCode), ElementsAre(kDumped, kDumped));
  std::vector<TextRun> const runs = ReadText(std::string(kListing) + kFirst).runs;
  EXPECT_EQ(runs[0].title, "two bytes \xC3\xA9");
  EXPECT_EQ(runs[0].line, 3u);
  EXPECT_EQ(runs[1].title, "a");
  EXPECT_EQ(runs[1].line, 10u);
}

TEST(TextReader, TakesOtherCommentsThatLookLikeOffsets) {
  EXPECT_EQ(Read("{0x12, /*   12h */ 0x01}"), (Bytes{0x12, 1})) << "not at the line's start";
  EXPECT_EQ(Read("{\n/* 12h */ 0x01}"), Bytes{1}) << "not four columns wide";
  EXPECT_EQ(Read("{\n/*   1G h */ 0x01}"), Bytes{1});
  EXPECT_EQ(Read("{\n/*     h */ 0x01}"), Bytes{1});
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
  EXPECT_EQ(ErrorOf("12 120100020000004009120300"),
            std::string("line 1, column 4: found \"120100020000004009120300\"") + kExpected);
  EXPECT_EQ(ErrorOf("12 1201000200000040091203000"),
            std::string("line 1, column 4: found \"120100020000004009120300\"...") + kExpected);
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
  EXPECT_EQ(ErrorOf("0x01, 0x02 0x03"), "line 1, column 12: found \"0x03\", expected \",\"");
  EXPECT_EQ(ErrorOf("{1"), "line 1, column 3: found the end of the text, expected \",\" or \"}\"");
  EXPECT_EQ(
      ErrorOf("{1,\n"),
      "line 2, column 1: found the end of the text, expected 0x00 to 0xFF or 0 to 255 without "
      "leading zeros or \"}\"");
}

TEST(TextReader, RefusesWhatFollowsAnArray) {
  constexpr char kExpected[] = ", expected the declaration of an array";
  EXPECT_EQ(ErrorOf("{1}; x"),
            std::string("line 1, column 7: found the end of the text") + kExpected);
  EXPECT_EQ(ErrorOf("{1};;"), std::string("line 1, column 5: found \";\"") + kExpected);
  EXPECT_EQ(ErrorOf("{1}}"), std::string("line 1, column 4: found \"}\"") + kExpected);
  EXPECT_EQ(ErrorOf("{1} {2}"),
            "line 1, column 5: found \"{\", expected the end of the text or the declaration of "
            "another array");
}

TEST(TextReader, ReadsSeveralArrays) {
  EXPECT_THAT(ReadAll("a[] = {1};\nb[] = {2, 3}"), ElementsAre(Bytes{1}, Bytes{2, 3}));
  EXPECT_THAT(ReadAll("unsigned char a_bin[] = {\n  0x12, 0x01\n};\nunsigned int a_bin_len = 2;\n"
                      "unsigned char b_bin[] = {\n  0x05\n};\nunsigned int b_bin_len = 1;\n"),
              ElementsAre(Bytes{0x12, 1}, Bytes{5}))
      << "as xxd -i writes it";
}

TEST(TextReader, ChecksTheLengthOfAnArray) {
  EXPECT_EQ(ErrorOf("unsigned char a[] = {1, 2};\nunsigned int a_len = 3;"),
            "line 2, column 23: found \";\", expected 2, the length of the array, before it");
}

TEST(TextReader, RefusesOtherDeclarations) {
  EXPECT_EQ(ErrorOf("namespace x {1}"),
            "line 1, column 13: found \"{\", expected \"=\" or \"]\" before it");
  EXPECT_EQ(ErrorOf("int x; char y[] = {1}"),
            "line 1, column 6: found \";\", expected the declaration of an array");
  EXPECT_EQ(ErrorOf("x } = {1}"),
            "line 1, column 3: found \"}\", expected the declaration of an array");
}

TEST(TextReader, RefusesAnUnfinishedComment) {
  EXPECT_EQ(ErrorOf("12\n 01 /* 02"), "line 2, column 5: found \"/*\", expected \"*/\" after it");
  EXPECT_EQ(ErrorOf("{1 /*/"), "line 1, column 4: found \"/*\", expected \"*/\" after it");
}

TEST(TextReader, TakesRunsOfUpTo1MiB) {
  std::string const most(std::size_t{2} << 20, '1');
  EXPECT_EQ(Read(most).size(), std::size_t{1} << 20);
  EXPECT_EQ(ErrorOf(most + "11"), "line 1: a run of more than 1 MiB");
}

constexpr char kSetup[] = "// request 80 06 00 0F 00 00, BOS:";

TEST(TextReader, TakesAnswersOfUpTo65535Bytes) {
  std::string text = std::string(kSetup) + "\n";
  for (int i = 0; i < 65535; ++i) {
    text += "01 ";
  }
  EXPECT_EQ(Read(text).size(), 65535u);
  EXPECT_EQ(ErrorOf(text + "01"), "line 2: an answer of more than 65,535 bytes");
}

TEST(TextReader, ReadsStreamsOfDigits) {
  EXPECT_EQ(Read("12010002"), (Bytes{0x12, 1, 0, 2}));
  EXPECT_EQ(Read("1201 0002\nfF\n"), (Bytes{0x12, 1, 0, 2, 0xFF}));
  EXPECT_EQ(ErrorOf("12010"),
            "line 1, column 5: found \"0\", expected a byte of two hexadecimal digits");
  EXPECT_EQ(ErrorOf("1201 0G"),
            "line 1, column 6: found \"0G\", expected a byte of two hexadecimal digits");
}

TEST(TextReader, ReadsColons) {
  EXPECT_EQ(Read("12:01:00:02"), (Bytes{0x12, 1, 0, 2}));
  EXPECT_EQ(Read("12:01:\n00:02\n"), (Bytes{0x12, 1, 0, 2}));
  EXPECT_EQ(ErrorOf("12:01-00"), "line 1, column 6: found \"-00\", expected \":\" or a space");
  EXPECT_EQ(ErrorOf("12:01:0"),
            "line 1, column 7: found \"0\", expected a byte of two hexadecimal digits");
}

TEST(TextReader, ReadsPrefixesWithoutCommas) {
  EXPECT_EQ(Read("0x12 0X1\n0xFF"), (Bytes{0x12, 1, 0xFF}));
  EXPECT_EQ(ErrorOf("0x12 01"), "line 1, column 6: found \"01\", expected 0x00 to 0xFF");
  EXPECT_EQ(ErrorOf("0x12 0x100"), "line 1, column 6: found \"0x100\", expected 0x00 to 0xFF");
}

TEST(TextReader, ReadsEscapes) {
  Bytes const expected = {0x12, 1, 0, 0x40, 0x5C};
  EXPECT_EQ(Read(R"(\x12\x01\x00\x40\x5c)"), expected);
  EXPECT_EQ(Read(R"("\x12\x01\x00@\\")"), expected);
  EXPECT_EQ(Read(R"(b'\x12\x01\x00@\\')"), expected) << "Python";
  EXPECT_EQ(Read("data = b\"\\x12\\x01\\x00@\\\\\"\n"), expected);
  EXPECT_EQ(Read("char const d[] =\n \"\\x12\\x01\"\n \"\\0@\\\\\";\n"), expected);
  EXPECT_EQ(Read("\"\\x12\\x01\" \\\n\"\\x00\\x40\\x5c\""), expected) << "Wireshark";
  EXPECT_EQ(Read(R"("\n\r\t\a\b\f\v\'")"), (Bytes{10, 13, 9, 7, 8, 12, 11, 39}));
  EXPECT_EQ(Read(R"('')"), Bytes());
  EXPECT_EQ(Read("# it's\n\"\\x12\\x01\" // isn't\n\"\\x00@\\\\\""), expected);
  EXPECT_EQ(Read(R"(b'{1};,/*#[')"), Read("7B 31 7D 3B 2C 2F 2A 23 5B")) << "looks like others";
  EXPECT_EQ(Read(R"(x = b"{1};,/*#['")"), Read("7B 31 7D 3B 2C 2F 2A 23 5B 27"));
}

TEST(TextReader, RefusesOtherEscapes) {
  constexpr char kExpected[] = ", expected \"\\x\" with two hexadecimal digits";
  EXPECT_EQ(ErrorOf(R"(\x12\x1)"), std::string("line 1, column 5: found \"\\x1\"") + kExpected);
  EXPECT_EQ(ErrorOf(R"("\q")"), std::string("line 1, column 2: found \"\\q\"\"") + kExpected);
  EXPECT_EQ(ErrorOf("\"\\x12"),
            "line 1, column 6: found the end of the text, expected the closing \"");
  EXPECT_EQ(ErrorOf("\"a\nb\""),
            "line 1, column 3: found the end of the line, expected the closing \"");
  EXPECT_EQ(ErrorOf(R"(\x12 01)"),
            "line 1, column 6: found \"0\", expected \"\\x\", a quote or the end of the text");
  EXPECT_EQ(ErrorOf(R"(note "x")"),
            "line 1, column 6: found \"\"\", expected \"=\" or \"(\" before it");
}

TEST(TextReader, ReadsPythonLists) {
  EXPECT_EQ(Read("[0x12, 1]"), (Bytes{0x12, 1}));
  EXPECT_EQ(Read("device = bytes([\n  0x12, 1,  # two\n])\n"), (Bytes{0x12, 1}));
  EXPECT_THAT(ReadAll("a = [1]\nb = bytearray([2, 3])"), ElementsAre(Bytes{1}, Bytes{2, 3}));
  EXPECT_EQ(Read("[]"), Bytes());
  EXPECT_EQ(ErrorOf("[1, 256]"),
            "line 1, column 5: found \"256\", expected 0x00 to 0xFF or 0 to 255 without leading "
            "zeros or \"]\"");
  EXPECT_EQ(ErrorOf("[1"), "line 1, column 3: found the end of the text, expected \",\" or \"]\"");
  EXPECT_EQ(ErrorOf("[1] x"),
            "line 1, column 6: found the end of the text, expected \"[\" of a list");
}

constexpr char kXxd[] =
    "00000000: 1201 0002 0000 0040 0912 0300 0001 0102  .......@........\n"
    "00000010: 0301 2020                                ..  \n";
constexpr char kHexdump[] =
    "00000000  12 01 00 02 00 00 00 40  09 12 03 00 00 01 01 02  |.......@........|\n"
    "00000010  03 01 20 20                                       |..  |\n"
    "00000014\n";
constexpr char kOd[] =
    "000000 12 01 00 02 00 00 00 40 09 12 03 00 00 01 01 02\n"
    "000010 03 01 20 20\n"
    "000014\n";
constexpr char kOdOctal[] =
    "0000000 12 01 00 02 00 00 00 40 09 12 03 00 00 01 01 02\n"
    "0000020 03 01 20 20\n"
    "0000024\n";
constexpr char kWireshark[] =
    "0000   12 01 00 02 00 00 00 40 09 12 03 00 00 01 01 02   .......@........\n"
    "0010   03 01 20 20                                       ..  \n";
constexpr char kEarlyWireshark[] =
    "0000  12 01 00 02 00 00 00 40  09 12 03 00 00 01 01 02   .......@ ........\n"
    "0010  03 01 20 20                                        ..  \n";
Bytes const kTwoLines = {0x12, 1, 0, 2, 0, 0, 0, 0x40, 9, 0x12, 3, 0, 0, 1, 1, 2, 3, 1, 0x20, 0x20};

TEST(TextReader, ReadsTheDumpsOfOtherPrograms) {
  std::pair<char const*, TextForm> const dumps[] = {{kXxd, TextForm::kXxd},
                                                    {kHexdump, TextForm::kHexdump},
                                                    {kOd, TextForm::kOd},
                                                    {kOdOctal, TextForm::kOd},
                                                    {kWireshark, TextForm::kWireshark},
                                                    {kEarlyWireshark, TextForm::kWireshark}};
  for (auto const& [text, form] : dumps) {
    EXPECT_EQ(ReadText(text).form, form) << text;
    EXPECT_EQ(Read(text), kTwoLines) << text;
    EXPECT_EQ(Read(Replaced(text, "\n", "\r\n")), kTwoLines) << text;
    EXPECT_EQ(Read(Replaced(text, "  \n", "\n")), kTwoLines) << "trimmed: " << text;
    EXPECT_EQ(Read("# a comment\n\n" + std::string(text)), kTwoLines) << text;
    EXPECT_THAT(ReadAll(std::string(text) + text), ElementsAre(kTwoLines, kTwoLines)) << text;
  }
  EXPECT_EQ(Read(Replaced(Replaced(kWireshark, "   .......@........", ""), "..", "")), kTwoLines)
      << "no characters";
  EXPECT_EQ(Read("00000000: 12 01                                            ..\n"),
            (Bytes{0x12, 1}))
      << "xxd -g1";
  EXPECT_EQ(Read("0000  30 31 32 33 34 35 36 37  38   01234567 8\n").size(), 9u);
  EXPECT_EQ(Read("0000  30 31 32 33 34 35 36 37                            01234567\n").size(), 8u);
  EXPECT_THAT(ErrorOf("0000  30 31 32 33 34 35 36 37  38   012345678\n"),
              testing::EndsWith("the characters of the bytes, \"01234567 8\""));
}

TEST(TextReader, RepeatsLinesOfADump) {
  Bytes expected(48, 0);
  expected.push_back(7);
  EXPECT_EQ(Read("000000 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00\n*\n000030 07\n000031\n"),
            expected);
  EXPECT_EQ(Read("00000000  00 00 00 00 00 00 00 00  00 00 00 00 00 00 00 00  |................|\n"
                 "*\n00000030  07                                                |.|\n00000031\n"),
            expected);
  constexpr char kExpected[] = "an offset that is whole lines after 1h, at most 1 MiB";
  EXPECT_THAT(ErrorOf("000000 00\n*\n000001 07"), testing::EndsWith(kExpected));
  EXPECT_THAT(ErrorOf("00000000  00  |.|\n*\n00100001\n"), testing::EndsWith(kExpected));
  EXPECT_THAT(ErrorOf("000000 00\n*\n"), testing::EndsWith("the offset after the repeated lines"));
  EXPECT_THAT(ErrorOf("*\n000000 00", TextForm::kOd),
              testing::EndsWith("a line of bytes before the one that repeats it"));
}

TEST(TextReader, ChecksOffsetsOfADump) {
  EXPECT_EQ(
      ErrorOf(Replaced(kXxd, "00000010:", "00000011:")),
      "line 2, column 1: found \"00000011:\", expected the offset 10h (in digits of the dump), "
      "or 0 at the start of another run");
  EXPECT_EQ(
      ErrorOf(Replaced(kHexdump, "00000014", "00000015")),
      "line 3, column 1: found \"00000015\", expected the offset 14h (in digits of the dump), "
      "or 0 at the start of another run");
  EXPECT_EQ(
      ErrorOf(Replaced(kOd, "000010", "hello")),
      "line 2, column 1: found \"hello\", expected an offset of 6 to 7 digits at the start of "
      "the line");
  EXPECT_EQ(ErrorOf(Replaced(kXxd, "00000010: ", "00000010 ")),
            "line 2, column 9: found \" \", expected \":\" after the offset");
}

TEST(TextReader, ChecksTheCharactersOfADump) {
  EXPECT_EQ(ErrorOf(Replaced(kXxd, "......@", "......A")),
            "line 1, column 52: found \".......A........\", expected the characters of the bytes, "
            "\".......@........\"");
  EXPECT_EQ(ErrorOf(Replaced(kHexdump, "|..  |", "|..  ")),
            "line 2, column 61: found \"|..\", expected the characters of the bytes, \"..  \"");
  EXPECT_THAT(ErrorOf(Replaced(kWireshark, "@", "A")),
              testing::EndsWith("the characters of the bytes, \".......@........\""));
  EXPECT_THAT(ErrorOf("00000000: 1201\n00000002: 3132  12\n"),
              testing::EndsWith("the end of the line, as the lines before have no characters"));
}

TEST(TextReader, RefusesOtherBytesOfADump) {
  EXPECT_THAT(ErrorOf("00000000: 120  ..\n"),
              testing::EndsWith("bytes of two hexadecimal digits each"));
  EXPECT_THAT(ErrorOf("000000 12 0\n"), testing::EndsWith("a byte of two hexadecimal digits"));
  EXPECT_THAT(ErrorOf("000000 12 1201\n"), testing::EndsWith("a byte of two hexadecimal digits"));
  EXPECT_THAT(ErrorOf("00000000  12 0g  |..|"),
              testing::EndsWith("a byte of two hexadecimal digits"));
}

TEST(TextReader, ReadsAForcedForm) {
  EXPECT_THAT(ReadAll("12 01", TextForm::kHexadecimal), ElementsAre(Bytes{0x12, 1}));
  EXPECT_THAT(ReadAll("1201", TextForm::kStream), ElementsAre(Bytes{0x12, 1}));
  EXPECT_THAT(ReadAll("12 01", TextForm::kStream), ElementsAre(Bytes{0x12, 1}));
  EXPECT_THAT(ReadAll("12", TextForm::kColons), ElementsAre(Bytes{0x12}));
  EXPECT_THAT(ReadAll("12", TextForm::kArrays), ElementsAre(Bytes{12}));
  EXPECT_EQ(ErrorOf("12 01", TextForm::kListing),
            "line 1, column 1: found \"12\", expected an offset such as \"0h:\"");
  EXPECT_EQ(
      ErrorOf(kOd, TextForm::kXxd),
      "line 1, column 1: found \"000000\", expected an offset of 8 digits at the start of the "
      "line");
}

TEST(TextReader, NamesItsForms) {
  for (std::size_t i = 0; i < kTextForms; ++i) {
    auto const form = static_cast<TextForm>(i);
    EXPECT_EQ(TextFormOf(NameOf(form)), form);
  }
  EXPECT_EQ(NameOf(TextForm::kStream), "hex-stream");
  EXPECT_EQ(TextFormOf("html"), std::nullopt);
}

TEST(TextReader, RecognisesForms) {
  std::pair<char const*, TextForm> const texts[] = {
      {"12 01", TextForm::kHexadecimal},     {"", TextForm::kHexadecimal},
      {"1201", TextForm::kStream},           {"12:01", TextForm::kColons},
      {"0x12 0x01", TextForm::kPrefixes},    {"0x12, 0x01", TextForm::kArrays},
      {"x[] = {1}", TextForm::kArrays},      {"18, 1", TextForm::kArrays},
      {"[18, 1]", TextForm::kPython},        {"x = [1]", TextForm::kPython},
      {"\\x12", TextForm::kEscapes},         {"x = b'a'", TextForm::kEscapes},
      {kListing, TextForm::kListing},        {kCode, TextForm::kCode},
      {"{\"usbdesc\": 1}", TextForm::kJson}, {"hello", TextForm::kHexadecimal},
      {kSetup, TextForm::kHexadecimal}};
  for (auto const& [text, form] : texts) {
    EXPECT_EQ(RecogniseText(text), form) << text;
    EXPECT_EQ(RecogniseText("\xEF\xBB\xBF" + std::string(text)), form) << text;
  }
}

TEST(TextReader, ReadsRequests) {
  std::vector<TextRun> const runs =
      ReadText(
          "// device a \xC3\xA9, speed high:\n"
          "// request 80 06 00 01 00 00, device:\n   0h:  02 01\n   2h:  \n09 (incomplete)\n"
          "// request 80 06 03 03 09 04, string 3, language 0409h: stalled\n"
          "// request 81 06 00 22 02 00, HID report of interface 2: failed, timed out: 7\n"
          "// request c0 20 00 00 07 00, x:\n"
          "// request 80 06 00 0F 00 00, BOS:\n   0h:  05 0F 05 00 00 : BOS\n")
          .runs;
  ASSERT_EQ(runs.size(), 6u);
  EXPECT_EQ(runs[0].beginsDevice, Speed::kHigh);
  EXPECT_EQ(runs[0].title, "a \xC3\xA9");
  EXPECT_EQ(runs[1].request, Request::Descriptor(kDeviceType));
  EXPECT_EQ(runs[1].bytes, (Bytes{2, 1, 9}));
  EXPECT_EQ(runs[1].line, 2u);
  EXPECT_EQ(runs[2].request, Request::String(3, 0x0409));
  EXPECT_EQ(runs[2].outcome, Outcome::kStalled);
  EXPECT_EQ(runs[3].request, Request::HidReport(2));
  EXPECT_EQ(runs[3].outcome, Outcome::kFailed);
  EXPECT_EQ(runs[3].note, "timed out: 7");
  EXPECT_EQ(runs[4].request, Request::Vendor(0x20, 0, 7));
  EXPECT_EQ(runs[4].bytes, Bytes()) << "answered with nothing";
  EXPECT_EQ(runs[5].bytes.size(), 5u);
}

TEST(TextReader, RefusesOtherRequests) {
  constexpr char kSix[] = ", expected six bytes of two hexadecimal digits after \"request\"";
  EXPECT_THAT(ErrorOf("// request 80 06 00 01 00, device:"), testing::EndsWith(kSix));
  EXPECT_THAT(ErrorOf("// request 80 06 00 01 00"), testing::EndsWith(kSix));
  EXPECT_THAT(ErrorOf("// request 80 06 00 01 0000, device:"), testing::EndsWith(kSix));
  EXPECT_THAT(ErrorOf("// request 80 06 00 01 00 00"),
              testing::EndsWith("after the six bytes of the request"));
  EXPECT_THAT(ErrorOf("// request 80 06 00 01 00 00x:"),
              testing::EndsWith("after the six bytes of the request"));
  EXPECT_THAT(ErrorOf("// request 80 06 00 01 00 00, device: gone"),
              testing::EndsWith("nothing, \"stalled\" or \"failed\" after the request"));
  EXPECT_THAT(ErrorOf("// request 80 06 00 01 00 00, device: stalled\n12"),
              testing::EndsWith("no bytes, as the request was not answered"));
  EXPECT_EQ(Read("// request for help:\n12"), Bytes{0x12}) << "a comment";
  EXPECT_EQ(Read("// device x, speed of light:\n12"), Bytes{0x12}) << "a comment";
}

TEST(TextReader, MakesDevicesOfTitledRuns) {
  std::vector<Device> const devices =
      DevicesOf(ReadText("// device a, speed low:\n// request 80 06 00 0F 00 00, BOS: stalled\n"
                         "// device b, speed high:\n// request 80 06 00 0F 00 00, BOS:\n"
                         "   0h:  05 0F 05 00 00\n"
                         "// c.bin:\n   0h:  02 01\n   2h:  02 02\n   4h:  02 01\n",
                         "file"),
                "file");
  ASSERT_EQ(devices.size(), 4u);
  EXPECT_EQ(devices[0].Name(), "a");
  EXPECT_EQ(devices[0].Speed(), Speed::kLow);
  EXPECT_EQ(devices[0].Find(Request::Descriptor(kBosType))->outcome, Outcome::kStalled);
  EXPECT_EQ(devices[1].Name(), "b");
  EXPECT_EQ(devices[1].Bytes(Request::Descriptor(kBosType))->size(), 5u);
  EXPECT_EQ(devices[1].Answers().front().source.line, 4u);
  EXPECT_EQ(devices[1].Answers().front().source.name, "file");
  EXPECT_EQ(devices[2].Answers().size(), 2u);
  EXPECT_EQ(devices[3].Answers().size(), 1u);
}

TEST(TextReader, TakesTheArraysOfATextForOneDevice) {
  std::vector<Device> const devices =
      DevicesOf(ReadText("a[] = {2, 1};\nb[] = {2, 2};\nc[] = {2, 2};\nd[] = {2, 1};\n"), "file");
  ASSERT_EQ(devices.size(), 2u);
  EXPECT_EQ(devices[0].Answers().size(), 3u);
  EXPECT_TRUE(devices[0].Bytes(Request::Descriptor(kConfigurationType, 1)));
  EXPECT_EQ(devices[0].Answers()[2].source.line, 3u);
}

TEST(TextReader, RefusesASecondAnswer) {
  try {
    DevicesOf(ReadText(std::string(kSetup) + "\n" + kSetup), "file");
    ADD_FAILURE();
  } catch (ReadError const& error) {
    EXPECT_STREQ(error.what(), "file: line 2: a second answer for BOS of one device");
  }
}

TEST(TextReader, NamesTheFile) {
  try {
    ReadText("1\x1B", "a\x1B.txt");
    ADD_FAILURE();
  } catch (TextError const& error) {
    EXPECT_STREQ(error.what(),
                 "a\\x1B.txt: line 1, column 1: found \"1\", expected a byte of two hexadecimal "
                 "digits");
  }
}

TEST(LooksLikeText, TakesPrintableCharactersAndWhiteSpace) {
  EXPECT_TRUE(LooksLikeText("12 01"));
  EXPECT_TRUE(LooksLikeText(" \t\r\n\f\v!~"));
  EXPECT_TRUE(LooksLikeText("\xEF\xBB\xBF"));
  EXPECT_TRUE(LooksLikeText("\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x94\x8C"));
  EXPECT_TRUE(LooksLikeText("\xE2\x82")) << "cut off at the end";
}

TEST(LooksLikeText, RefusesNothingAtAllAndOtherBytes) {
  EXPECT_FALSE(LooksLikeText(""));
  for (int c = 0; c < 0x80; ++c) {
    bool const isText = (c >= 0x20 && c <= 0x7E) || (c >= 0x09 && c <= 0x0D);
    EXPECT_EQ(LooksLikeText("12 " + std::string(1, static_cast<char>(c)) + " 13"), isText) << c;
  }
  EXPECT_FALSE(LooksLikeText("\xE9 \n"));
  EXPECT_FALSE(LooksLikeText("\xC0\x80"));
  EXPECT_FALSE(LooksLikeText("\xFF"));
}

// Every text either gives devices, which a listing holds, or an error at a place in it.
class DamagedText : public testing::TestWithParam<std::string> {
 protected:
  static void Check(std::string const& text) {
    try {
      for (Device const& device : DevicesOf(ReadText(text), {})) {
        std::vector<Device> const again = DevicesOf(ReadText(WriteListing(device)), {});
        ASSERT_EQ(again.size(), 1u) << text;
        EXPECT_TRUE(again.front().HasSameAnswers(device)) << text;
      }
    } catch (TextError const& error) {
      EXPECT_TRUE(LooksLikeText(error.what()));
      auto const lines =
          static_cast<std::size_t>(1 + std::count_if(text.begin(), text.end(), [](char c) {
                                     return c == '\n' || c == '\r';
                                   }));
      EXPECT_GE(error.Line(), 1u);
      EXPECT_LE(error.Line(), lines) << text;
      EXPECT_GE(error.Column(), 1u);
      EXPECT_LE(error.Column(), text.size() + 1) << text;
    } catch (ReadError const& error) {
      EXPECT_THAT(error.what(), testing::HasSubstr("a second answer for")) << text;
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
    for (char const value : std::string_view("\0\n\r 09afgxF:,{}[]\"'\\/*#;|\x80\xC3", 28)) {
      std::string text = GetParam();
      text[at] = value;
      Check(text);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Forms, DamagedText,
    testing::Values("\xEF\xBB\xBF# one \xC3\xA9\r\n12 01 /* two */ aB // three\n\t00",
                    "uint8_t const x[4] = {\n  0x12, 1, /* \xC3\xA9 */\n  255, // end\n};\n",
                    kListing, kCode, kXxd, kHexdump, kOd, kOdOctal, kWireshark, "0x12 0x01\n",
                    "12:01:00\n", "1201\n0002\n", "x = [0x12, 1]\n", "x = b'\\x12\\x01@'\n",
                    "a[] = {1};\nunsigned a_len = 1;\nb[] = {2};\n",
                    "// device a, speed high:\n// request 80 06 00 01 00 00, device:\n   0h:  02 "
                    "01\n// request 80 06 00 0F 00 00, BOS: failed, why\n"));

}  // namespace
}  // namespace usb_devices

// The contents of a list's text and its faults, all through the look-up.
#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Not the document: the newest Clang refuses it. It is filled by this reader with these flags.
#include <rapidjson/reader.h>
#include <rapidjson/stream.h>

#include <tests/support/vendor_list_test.h>

namespace usb_support {
namespace {

using standalone::RecordedCall;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr std::string_view kGoodElement = R"({"name":"Good","field_vid":"4660"})";

struct ParseResult {
  unsigned code;
  std::size_t offset;
};

ParseResult ParsedWithDefaultFlags(std::string_view text) {
  std::string bytes(text);
  rapidjson::InsituStringStream stream(bytes.data());
  if (text.starts_with("\xEF\xBB\xBF")) {
    stream.src_ += 3;
  }
  rapidjson::BaseReaderHandler<> handler;
  rapidjson::Reader reader;
  // In place, since otherwise RapidJSON 1.1.0 adds to a null pointer on the first use of its stack.
  rapidjson::ParseResult const result = reader.Parse<rapidjson::kParseInsituFlag>(stream, handler);
  return {static_cast<unsigned>(result.Code()), result.Offset()};
}

class VendorList : public testing_support::VendorListTest {
 protected:
  /// Expects that an element is skipped with this one message, wherever it is.
  void ExpectFault(std::string_view element, std::string const& message) {
    SCOPED_TRACE(element);
    std::string const text(element);
    SaveList("[" + text + "," + std::string(kGoodElement) + "]");
    ExpectName(4660, "Good");
    EXPECT_THAT(TakeCalls(), ElementsAre(ElementMessage(message)));
    SaveList("[" + std::string(kGoodElement) + "," + text + "]");
    ExpectFailure(4661);
    EXPECT_THAT(TakeCalls(), ElementsAre(ElementMessage(message)));
  }

  /// Expects that the text is refused with this error of the parser.
  void ExpectParseError(std::string_view text, unsigned code, std::size_t offset) {
    SCOPED_TRACE(text.substr(0, 100));
    SaveList(text);
    ExpectFailure(4660);
    EXPECT_THAT(TakeCalls(), ElementsAreArray(ParseErrorMessages(code, offset)));
  }

  /// Expects that a text in it has no closing quotation mark. Where that is reported depends on
  /// RapidJSON's release.
  void ExpectUnendedText(std::string_view text) {
    ParseResult const expected = ParsedWithDefaultFlags(text);
    ASSERT_EQ(expected.code, 11u);
    ExpectParseError(text, 11, expected.offset);
  }

  /// Expects that the text is a list with the ID 4660 for "Acme", and nothing is wrong with it.
  void ExpectAcme(std::string_view text) {
    SCOPED_TRACE(text.substr(0, 100));
    SaveList(text);
    ExpectName(4660, "Acme");
    EXPECT_THAT(TakeCalls(), IsEmpty());
  }
};

std::string Repeated(std::string_view text, std::size_t times) {
  std::string all;
  all.reserve(text.size() * times);
  for (std::size_t i = 0; i < times; ++i) {
    all += text;
  }
  return all;
}

// The parts of a text between its strokes.
std::vector<std::string> Split(std::string const& text) {
  std::vector<std::string> parts(1);
  for (char const character : text) {
    if (character == '|') {
      parts.emplace_back();
    } else {
      parts.back() += character;
    }
  }
  return parts;
}

TEST_F(VendorList, ReadsAnIdOfDecimalDigits) {
  for (char const* const text :
       {"0", "000", "00000000000000000000000000000000", "1", "9", "10", "4660", "04660",
        "00000000000000000000000000004660", "65534", "65535", "065535"}) {
    SCOPED_TRACE(text);
    SaveList(R"([{"name":"Acme","field_vid":")" + std::string(text) + R"("}])");
    ExpectName(std::stoi(text), "Acme");
    ExpectFailure(std::stoi(text) + 1);
    EXPECT_THAT(TakeCalls(), IsEmpty());
  }
}

TEST_F(VendorList, SkipsAnElementWithAnyOtherId) {
  // Some numbers beyond 65535 are 4660 in their low 16 bits.
  for (std::string const& id :
       Split("0x1234|0X1234|1234h|+4660|-4660|-0|+0| 4660|4660 |46 60| |65536|65537|70196|99999|"
             "100000|4660.0|4660.|.|4,660|4660a|a4660|466O|1e3|+|-|0x|4660_0|#4660|4660;|four|"
             "65535 |4294971956|18446744073709556276|99999999999999999999999999999999999999999|"
             "\xD9\xA4\xD9\xA6\xD9\xA6\xD9\xA0|4660\xFF|%d%n")) {
    ExpectFault(R"({"name":"Bad","field_vid":")" + id + R"("})",
                "Invalid field_vid: " + id + " for vendor Bad.");
  }
  ExpectFault(R"({"name":"Bad","field_vid":"\t4660\n"})",
              "Invalid field_vid: \t4660\n for vendor Bad.");
}

TEST_F(VendorList, SkipsAnElementThatIsFaulty) {
  std::pair<char const*, char const*> const rows[] = {
      {R"(null|true|false|0|-1|4660|1.5|-2e-3|""|"4660"|"name"|[]|[[]]|[[[[]]]]|)"
       R"([{"name":"Bad","field_vid":"4660"}]|["name","Bad","field_vid","4660"]|)"
       R"([{"name":7},{},null])",
       "JSON Array value is not an object."},
      {R"({}|{"field_vid":"4660"}|{"Name":"Bad","field_vid":"4660"}|{"field_vid":7}|)"
       R"({"NAME":"Bad","field_vid":"4660"}|{"name ":"Bad","field_vid":"4660"}|)"
       R"({" name":"Bad","field_vid":"4660"}|{"nam":"Bad","field_vid":"4660"}|)"
       R"({"names":"Bad","field_vid":"4660"}|{"":"Bad","field_vid":"4660"}|)"
       R"({"x":{"name":"Bad"},"field_vid":"4660"}|{"x":"name","field_vid":"4660"}|)"
       R"({"x":[{"name":"Bad"},"name"],"field_vid":"4660"}|{"field_vid":""}|)"
       R"({"name\u0000":"Bad","field_vid":"4660"}|{"\u0000name":"Bad","field_vid":"4660"}|)"
       R"({"name\u0000name":"Bad","field_vid":"4660"})",
       "Couldn't find object member: name."},
      {R"({"name":"Bad"}|{"name":"Bad","Field_vid":"4660"}|{"name":"Bad","FIELD_VID":"4660"}|)"
       R"({"name":"Bad","field_vid ":"4660"}|{"name":"Bad","field vid":"4660"}|)"
       R"({"name":"Bad","vid":"4660"}|{"name":"Bad","x":{"field_vid":"4660"}}|)"
       R"({"name":"Bad","x":"field_vid"}|{"name":"Bad","x":[{"field_vid":"4660"}]}|)"
       R"({"name":"Bad","field_vid\u0000":"4660"})",
       "Couldn't find object member: field_vid for vendor Bad."},
      {R"({"name":"","field_vid":"4660"}|{"name":"\u0000","field_vid":"4660"}|)"
       R"({"name":"\u0000Bad","field_vid":"4660"}|{"field_vid":7,"name":""})",
       "Member name is empty."},
      {R"({"name":"Bad","field_vid":""}|{"name":"Bad","field_vid":"\u00004660"})",
       "field_vid is empty for vendor Bad."},
  };
  for (auto const& [elements, message] : rows) {
    for (std::string const& element : Split(elements)) {
      ExpectFault(element, message);
    }
  }
}

TEST_F(VendorList, SkipsAMemberThatIsNotAString) {
  for (std::string const& value : Split(
           R"(null|true|false|0|4660|-1|1.5|1e-400|[]|{}|["4660"]|[[],{}]|[{"field_vid":"4660"}]|)"
           R"({"name":"Bad","field_vid":"4660"})")) {
    ExpectFault(R"({"name":)" + value + R"(,"field_vid":"0x1"})", "Member name is not a string.");
    ExpectFault(R"({"field_vid":"4660","name":)" + value + "}", "Member name is not a string.");
    ExpectFault(R"({"name":"Bad","field_vid":)" + value + "}",
                "Member field_vid for vendor Bad is not a string.");
    ExpectFault(R"({"field_vid":)" + value + R"(,"name":"Bad"})",
                "Member field_vid for vendor Bad is not a string.");
  }
}

TEST_F(VendorList, ComplainsInTheOrderOfTheElements) {
  SaveList(R"([
      {"name":"Bad 1","field_vid":"0x1234"},
      null,
      {"name":"Other","field_vid":"1"},
      {"field_vid":"4660"},
      {"name":7},
      {"name":""},
      {"name":"Bad 2"},
      [{"name":"Bad 3","field_vid":"4660"}],
      {"name":"Bad 4","field_vid":4660},
      {"name":"Bad 5","field_vid":""},
      {"name":"Acme","field_vid":"4660"},
      {"name":"Bad 6","field_vid":"+4660"},
      null
  ])");
  ExpectName(4660, "Acme");
  std::vector<RecordedCall> const expected = {
      ElementMessage("Invalid field_vid: 0x1234 for vendor Bad 1."),
      ElementMessage("JSON Array value is not an object."),
      ElementMessage("Couldn't find object member: name."),
      ElementMessage("Member name is not a string."),
      ElementMessage("Member name is empty."),
      ElementMessage("Couldn't find object member: field_vid for vendor Bad 2."),
      ElementMessage("JSON Array value is not an object."),
      ElementMessage("Member field_vid for vendor Bad 4 is not a string."),
      ElementMessage("field_vid is empty for vendor Bad 5."),
  };
  EXPECT_EQ(TakeCalls(), expected);
  ExpectFailure(2);
  std::vector<RecordedCall> all = expected;
  all.push_back(ElementMessage("Invalid field_vid: +4660 for vendor Bad 6."));
  all.push_back(ElementMessage("JSON Array value is not an object."));
  EXPECT_EQ(TakeCalls(), all);
}

TEST_F(VendorList, QuotesANameOfAnyLengthAndContent) {
  std::string const name = "100%s%n " + std::string(100'000, 'x') + " \xFF\xC3";
  ExpectFault(R"({"name":")" + name + R"("})",
              "Couldn't find object member: field_vid for vendor " + name + ".");
  std::string const id(100'000, '9');
  ExpectFault(R"({"name":"Bad","field_vid":")" + id + R"("})",
              "Invalid field_vid: " + id + " for vendor Bad.");
}

TEST_F(VendorList, IgnoresOtherMembersAndTheirOrder) {
  ExpectAcme(R"([{"field_vid":"4660","name":"Acme"}])");
  ExpectAcme(R"([{"a":null,"field_vid":"4660","b":[{"name":"Bad","field_vid":"1"}],
                  "name":"Acme","c":{"name":"Bad","field_vid":"1"},"d":"name","e":1.5,"f":true}])");
  ExpectAcme(R"([{"na\u006de":"\u0041cme","field\u005fvid":"\u0034660"}])");
}

TEST_F(VendorList, TakesTheFirstMemberOfAName) {
  ExpectAcme(R"([{"name":"Acme","name":"Bad","field_vid":"4660","field_vid":"1"}])");
  ExpectAcme(R"([{"name":"Acme","name":7,"field_vid":"4660","field_vid":null}])");
  ExpectAcme(R"([{"name":"Acme","name":"","field_vid":"4660","field_vid":[]}])");
  ExpectFault(R"({"name":7,"name":"Bad","field_vid":"4660"})", "Member name is not a string.");
  ExpectFault(R"({"name":{},"name":"Bad","field_vid":"4660"})", "Member name is not a string.");
  ExpectFault(R"({"name":"","name":"Bad","field_vid":"4660"})", "Member name is empty.");
  ExpectFault(R"({"name":"Bad","field_vid":4660,"field_vid":"4660"})",
              "Member field_vid for vendor Bad is not a string.");
  ExpectFault(R"({"name":"Bad","field_vid":"","field_vid":"4660"})",
              "field_vid is empty for vendor Bad.");
  ExpectFault(R"({"name":"Bad","field_vid":"4660 ","field_vid":"4660"})",
              "Invalid field_vid: 4660  for vendor Bad.");
}

TEST_F(VendorList, ReadsATextUpToItsFirstZero) {
  ExpectAcme(R"([{"name":"Acme\u0000Bad","field_vid":"4660"}])");
  ExpectAcme(R"([{"name":"Acme\u0000","field_vid":"4660\u0000"}])");
  ExpectAcme(R"([{"name":"Acme","field_vid":"4660\u0000Bad"}])");
  ExpectFault(R"({"name":"Bad\u0000Worse"})",
              "Couldn't find object member: field_vid for vendor Bad.");
  ExpectFault(R"({"name":"Bad\u0000Worse","field_vid":"x\u0000y"})",
              "Invalid field_vid: x for vendor Bad.");
}

TEST_F(VendorList, MustBeAnArray) {
  for (char const* const text :
       {"{}", R"({"name":"Bad","field_vid":"4660"})",
        R"({"vendors":[{"name":"Bad","field_vid":"4660"}]})", R"({"a":1,"b":[null],"c":{}})", "1",
        "-1.5", "\"\"", R"("[]")", "null", "true", "false", " {} ", "\n\t \"x\" \n"}) {
    SCOPED_TRACE(text);
    SaveList(text);
    ExpectFailure(4660);
    EXPECT_THAT(TakeCalls(),
                ElementsAre(Message("Unexpected format: usbif.json should be a JSON array.")));
  }
}

TEST_F(VendorList, MayHaveWhiteSpaceAndAByteOrderMark) {
  ExpectAcme("\n \t [ { \"name\" : \"Acme\" , \"field_vid\" : \"4660\" } ] \n\t ");
  ExpectAcme("\r\n[\r\n{\"name\":\"Acme\",\r\n\"field_vid\":\"4660\"}\r\n]\r\n");
  ExpectAcme("\r[\r{\"name\":\"Acme\",\r\"field_vid\":\"4660\"}\r]\r");
  ExpectAcme("\xEF\xBB\xBF[{\"name\":\"Acme\",\"field_vid\":\"4660\"}]");
}

TEST_F(VendorList, ReportsTheParsersError) {
  struct Case {
    std::string_view text;
    unsigned code;
    std::size_t offset;
  };
  for (auto const& [text, code, offset] : {Case{"", 1, 0},
                                           Case{" \n\t ", 1, 4},
                                           Case{"[] []", 2, 3},
                                           Case{"[],", 2, 2},
                                           Case{"[]]", 2, 2},
                                           Case{"1 2", 2, 2},
                                           Case{"nul", 3, 3},
                                           Case{"[tru]", 3, 4},
                                           Case{"[faLse]", 3, 3},
                                           Case{"[nan]", 3, 2},
                                           Case{"[Infinity]", 3, 1},
                                           Case{"[1,]", 3, 3},
                                           Case{"[,1]", 3, 1},
                                           Case{"[-]", 3, 2},
                                           Case{"[+1]", 3, 1},
                                           Case{"[.5]", 3, 1},
                                           Case{"['x']", 3, 1},
                                           Case{"[/**/]", 3, 1},
                                           Case{"[{name:1}]", 4, 2},
                                           Case{R"([{"a":1,}])", 4, 8},
                                           Case{"[{1:1}]", 4, 2},
                                           Case{R"([{"a"}])", 5, 5},
                                           Case{R"([{"a" 1}])", 5, 6},
                                           Case{R"([{"a":1 "b":2}])", 6, 8},
                                           Case{R"([{"a":1])", 6, 7},
                                           Case{"[1 2]", 7, 3},
                                           Case{"[1", 7, 2},
                                           Case{"[01]", 7, 2},
                                           Case{"[0x10]", 7, 2},
                                           Case{R"(["\u12G4"])", 8, 2},
                                           Case{R"(["\u"])", 8, 2},
                                           Case{R"(["\uD800"])", 9, 2},
                                           Case{R"(["\uD800x"])", 9, 2},
                                           Case{R"(["\uD800\n"])", 9, 2},
                                           Case{R"(["\uDBFF\u0041"])", 9, 2},
                                           Case{R"(["\uD800\uD800"])", 9, 2},
                                           Case{R"([{"\uD83D":1}])", 9, 3},
                                           Case{R"(["\x"])", 10, 2},
                                           Case{R"(["\'"])", 10, 2},
                                           Case{"[1e309]", 13, 1},
                                           Case{"[-1e309]", 13, 1},
                                           Case{"[1.]", 14, 3},
                                           Case{"[1.e5]", 14, 3},
                                           Case{"[1e]", 15, 3},
                                           Case{"[1e+]", 15, 4},
                                           Case{"[1E-x]", 15, 4}}) {
    ExpectParseError(text, code, offset);
  }
}

TEST_F(VendorList, IsOpenedAsText) {
  // Where a line end is two characters, text that is read has one.
  bool const lineEndIsTwo = std::filesystem::path::preferred_separator == '\\';
  ExpectParseError("[\r\n1,\r\nx]", 3, lineEndIsTwo ? 5 : 7);
}

TEST_F(VendorList, IsRefusedForAnErrorAfterTheMatch) {
  std::string const text = "[null," + std::string(kGoodElement) + R"(,{"name":"Acme" )";
  ExpectParseError(text, 6, text.size());
}

TEST_F(VendorList, IsParsedWithDefaultFlags) {
  using namespace std::string_view_literals;
  // No carriage returns and no 0x1A here: opening as text may change them.
  for (
      std::string_view const whole : {
          R"([{"name":"Acme","field_vid":"1"},{"name":"\u00dcber\n\"\\\/\b\f\r\t","field_vid":"2"}])"sv,
          R"( [ { "name" : "Acme" , "field_vid" : "00001" , "x" : [ 1 , 2.5 , -3e+4 , null ] } ] )"sv,
          R"({"name":"Acme","field_vid":"1","x":{"y":[true,false,null]}})"sv,
          R"("text \ud83d\ude00 \u0000 end")"sv,
          R"(["\ud83d\u0041"])"sv,
          R"(["\udc00\udc00"])"sv,
          R"(["\ud83d)"sv,
          R"(-12.5e-3)"sv,
          R"([0,-0,1,-1,2147483647,2147483648,-2147483648,-2147483649,4294967295,4294967296])"sv,
          R"([9223372036854775807,-9223372036854775808,-9223372036854775809,18446744073709551615])"sv,
          R"([18446744073709551616,123456789012345678901234567890,0.1234567890123456789012345])"sv,
          R"([1e308,1.7976931348623157e308,1E-308,4.9e-324,1e-400,0e999,0.0e-999,0e99999])"sv,
          R"([1e309])"sv,
          R"([17976931348623157e300])"sv,
          R"([0.00000000000000000000000000000000000001e340])"sv,
          R"([truefalse,nulltrue])"sv,
          R"([1 2])"sv,
          R"({"a" "b"})"sv,
          R"({"a":1,,"b":2})"sv,
          R"({,})"sv,
          R"([[[[[[[[]]]]]]],[{}]]])"sv,
          R"(// a comment)"sv,
          "[\"a\0b\"]"sv,
          "[1]\0[2]"sv,
          "[1\0]"sv,
          "\0[]"sv,
          "[\"\x7F\xC3\xBC\xFF\xC0\x80\xED\xA0\x80\xF4\x90\x80\x80\"]"sv,
          "[\xC3\xBC]"sv,
          "\xEF\xBB\xBF[1]"sv,
          "\xEF\xBB[1]"sv,
          "\xFE\xFF[1]"sv,
      }) {
    for (std::size_t length = 0; length <= whole.size(); ++length) {
      std::string_view const text = whole.substr(0, length);
      SCOPED_TRACE(testing::Message() << "the first " << length << " bytes of " << whole);
      SaveList(text);
      ExpectFailure(4660);
      std::vector<RecordedCall> const calls = TakeCalls();
      ParseResult const expected = ParsedWithDefaultFlags(text);
      if (expected.code != 0) {
        EXPECT_EQ(calls, ParseErrorMessages(expected.code, expected.offset));
        continue;
      }
      for (RecordedCall const& call : calls) {
        EXPECT_THAT(call.text, testing::AnyOf(testing::StartsWith("Unexpected format"),
                                              testing::StartsWith("JSON Array value")));
      }
    }
  }
}

TEST_F(VendorList, OfAMillionOpenBracketsIsRefused) {
  struct Case {
    std::string_view opening;
    std::size_t times;
    std::size_t offset;
  };
  // Nesting ends after the bracket that opens level 257.
  for (auto const& [opening, times, offset] : {
           Case{"[", 1'000'000, 257},
           Case{R"({"a":)", 1'000'000, 256 * 5 + 1},
           Case{R"([{"a":)", 500'000, 128 * 6 + 1},
           Case{R"([[{"a":{"a":)", 250'000, 64 * 12 + 1},
       }) {
    ExpectParseError(Repeated(opening, times), 16, offset);
  }
}

TEST_F(VendorList, IsReadToLevel256) {
  std::string const deepest = Repeated("[", 254) + Repeated("]", 254);
  ExpectAcme(R"([{"x":)" + deepest + R"(,"name":"Acme","field_vid":"4660"}])");
  ExpectFault("[" + deepest + "]", "JSON Array value is not an object.");
  std::string const start = R"([{"x":)";
  ExpectParseError(start + "[" + deepest + R"(],"name":"Acme","field_vid":"4660"}])", 16,
                   start.size() + 255);
}

TEST_F(VendorList, WithAMillionNeighboursIsRead) {
  ExpectAcme(R"([{"x":[)" + Repeated("[],", 500'000) + Repeated("{},", 500'000) +
             R"([]],"name":"Acme","field_vid":"4660"}])");
}

TEST_F(VendorList, WithTinyNumbersIsRead) {
  std::string const zeros(400, '0');
  for (std::string const& number :
       {std::string("0.00000000001e-2147483639"), std::string("1e-2147483647"),
        std::string("1e-2147483648"), std::string("-1e-2147483649"), std::string("0.1e-4294967296"),
        std::string("1e-18446744073709551616"),
        std::string("1e-99999999999999999999999999999999999999"), "0." + zeros + "1",
        "0." + zeros + "1e-2147483639", "0." + zeros + "1e400", "1e-" + zeros + "1",
        "1e" + zeros + "1", "0." + std::string(1'000'000, '0') + "1",
        "1." + std::string(1'000'000, '9') + "e-999999999"}) {
    ExpectAcme(R"([{"n":)" + number + R"(,"name":"Acme","field_vid":"4660"}])");
    std::string list = R"([{"name":"Bad","field_vid":)";
    list.append(number).append(R"(},{"name":)").append(number).append("}]");
    SaveList(list);
    ExpectFailure(0);
    EXPECT_THAT(TakeCalls(),
                ElementsAre(ElementMessage("Member field_vid for vendor Bad is not a string."),
                            ElementMessage("Member name is not a string.")))
        << number.substr(0, 100);
  }
}

TEST_F(VendorList, WithHugeNumbersIsRefused) {
  for (std::string const& number :
       {std::string("1e999999999"), std::string("-1e999999999"), std::string("1e2147483648"),
        std::string("1e99999999999999999999999999999999999999"), std::string("0.1e4294967296"),
        std::string("1E+2147483647"), std::string(400, '9'), "-" + std::string(400, '9'),
        "1" + std::string(1'000'000, '0'), std::string(400, '9') + ".5e-999999999"}) {
    ExpectParseError(R"([{"name":"Acme","field_vid":"4660"},)" + number + "]", 13, 36);
  }
}

TEST_F(VendorList, WithManyDigitsIsRead) {
  ExpectAcme("[{\"n\":" + std::string(300, '9') + ",\"m\":0." + std::string(1'000'000, '9') +
             R"(,"name":"Acme","field_vid":"4660"}])");
}

TEST_F(VendorList, EndsAtARawZero) {
  using namespace std::string_view_literals;
  ExpectAcme("[{\"name\":\"Acme\",\"field_vid\":\"4660\"}]\0 and more"sv);
  ExpectParseError("\0\0\0\0"sv, 1, 0);
  ExpectParseError(std::string(1'000'000, '\0'), 1, 0);
  ExpectParseError("[{\"name\":\"Acme\",\0\"field_vid\":\"4660\"}]"sv, 4, 16);
  ExpectUnendedText("[{\"na\0me\":\"Acme\"}]"sv);
  ExpectUnendedText("[{\"name\":\"Ac\0me\",\"field_vid\":\"4660\"}]"sv);
}

TEST_F(VendorList, OfTheGreatestSizeIsSearched) {
  std::string const other = R"({"name":")" + std::string(900'000, 'x') +
                            R"(","field_vid":"1","other":")" + std::string(100'000, 'y') + "\"},";
  std::string list = "[" + Repeated(other, 100) + R"({"name":"Acme","field_vid":"4660"}])";
  list.resize(128 << 20, ' ');
  SaveList(list);
  ExpectName(4660, "Acme");
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

}  // namespace
}  // namespace usb_support

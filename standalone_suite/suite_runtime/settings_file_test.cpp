#include <cstddef>
#include <filesystem>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>

#include <standalone_suite/suite_runtime/settings.h>
#include <standalone_suite/test_support/temp_folder.h>
#include <usb_support/suite_interfaces/app_state.h>

namespace {

using testing::EndsWith;
using testing::StartsWith;
using usb_support::standalone::ClearSettings;
using usb_support::standalone::LoadSettings;
using usb_support::standalone::SetSetting;
using usb_support::standalone::SettingsError;
using usb_support::standalone::TempFolder;

std::string Utf8(std::filesystem::path const& path) {
  std::u8string const text = path.u8string();
  return {text.begin(), text.end()};
}

std::optional<unsigned long long> Read(std::string_view key, int base = 10) {
  unsigned long long value = 0;
  return CAppState::AppSettings().GetAppSetting(key, value, SCOPE_DEFAULT, base)
             ? std::optional(value)
             : std::nullopt;
}

std::optional<bool> ReadBool(std::string_view key) {
  bool value = false;
  return CAppState::AppSettings().GetAppSetting(key, value, SCOPE_DEFAULT) ? std::optional(value)
                                                                           : std::nullopt;
}

class SettingsFile : public testing::Test {
 protected:
  SettingsFile() { ClearSettings(); }
  ~SettingsFile() override { ClearSettings(); }

  void Load(std::string_view text) { LoadSettings(folder_.Write("settings.json", text)); }

  // The error of a file that must fail; that it changes no setting is checked here.
  SettingsError LoadFault(std::filesystem::path const& file) {
    SetSetting("Kept", 42);
    SetSetting("A", "11");
    try {
      LoadSettings(file);
    } catch (SettingsError const& error) {
      EXPECT_EQ(Read("Kept"), 42U);
      EXPECT_EQ(Read("A", 2), 3U);
      EXPECT_EQ(Read("B"), std::nullopt);
      EXPECT_EQ(error.File(), file);
      EXPECT_THAT(error.what(), StartsWith(Utf8(file) + ": "));
      return error;
    }
    ADD_FAILURE() << "The file was loaded without an error.";
    return {file, "no error"};
  }

  TempFolder folder_;
};

TEST_F(SettingsFile, HoldsBooleansIntegersAndTexts) {
  Load(R"({
    "Yes": true, "No": false, "Zero": 0, "Small": 7, "Negative": -7, "Text": "1F",
    "Largest": 18446744073709551615, "Lowest": -9223372036854775808, "MinusZero": -0
  })");
  EXPECT_EQ(ReadBool("Yes"), true);
  EXPECT_EQ(ReadBool("No"), false);
  EXPECT_EQ(Read("Zero"), 0U);
  EXPECT_EQ(Read("Small"), 7U);
  EXPECT_EQ(Read("Negative"), 0xFFFFFFFFFFFFFFF9U);
  EXPECT_EQ(Read("Text", 16), 0x1FU);
  EXPECT_EQ(Read("Text", 10), std::nullopt);
  EXPECT_EQ(Read("Largest"), 0xFFFFFFFFFFFFFFFFU);
  EXPECT_EQ(Read("Lowest"), 0x8000000000000000U);
  EXPECT_EQ(Read("MinusZero"), 0U);
}

TEST_F(SettingsFile, MayBeAnEmptyObject) {
  SetSetting("Other", 1);
  Load(" {\t}\r\n");
  EXPECT_EQ(Read("Other"), 1U);
}

TEST_F(SettingsFile, ReplacesWhatItNamesAndKeepsTheRest) {
  SetSetting("Other", 1);
  SetSetting("A", "text");
  Load(R"({"A": 2, "B": 3})");
  EXPECT_EQ(Read("Other"), 1U);
  EXPECT_EQ(Read("A"), 2U);
  EXPECT_EQ(Read("B"), 3U);
}

TEST_F(SettingsFile, LetsTheLastValueOfAKeyCount) {
  Load(R"({"A": 1, "B": 2, "A": "3", "A": true})");
  EXPECT_EQ(Read("A"), 1U);
  EXPECT_EQ(ReadBool("A"), true);
  Load(R"({"A": true, "A": 5})");
  EXPECT_EQ(Read("A"), 5U);
}

TEST_F(SettingsFile, KeepsKeysAndTextsInUtf8) {
  Load("{\"gr\xC3\xBC\xC3\x9F\": 1, \"\\u20AC\": 2, \"\\uD83D\\uDE00\": 3, \"\": 4}");
  EXPECT_EQ(Read("gr\xC3\xBC\xC3\x9F"), 1U);
  EXPECT_EQ(Read("\xE2\x82\xAC"), 2U);
  EXPECT_EQ(Read("\xF0\x9F\x98\x80"), 3U);
  EXPECT_EQ(Read(""), 4U);
}

TEST_F(SettingsFile, MayBeginWithAByteOrderMark) {
  Load("\xEF\xBB\xBF{\"A\": 1}");
  EXPECT_EQ(Read("A"), 1U);
}

TEST_F(SettingsFile, MayBeLongerThanOneBlockOfReading) {
  std::string text = "{";
  for (int i = 0; i < 2000; ++i) {
    text += "\"Key" + std::to_string(i) + "\": " + std::to_string(i) + ",\n";
  }
  text += "\"Last\": 1}";
  Load(text);
  EXPECT_EQ(Read("Key1999"), 1999U);
  EXPECT_EQ(Read("Last"), 1U);
}

TEST_F(SettingsFile, MayHaveANameBeyondAscii) {
  LoadSettings(folder_.Write(std::filesystem::path(u8"gr\u00FC\u00DF.json"), R"({"A": 1})"));
  EXPECT_EQ(Read("A"), 1U);
}

TEST_F(SettingsFile, ThatIsMissingIsAnError) {
  SettingsError const error = LoadFault(folder_.Path() / "missing.json");
  EXPECT_EQ(error.Key(), "");
  EXPECT_EQ(error.Offset(), 0U);
  EXPECT_THAT(error.what(),
              StartsWith(Utf8(folder_.Path() / "missing.json") + ": cannot be opened"));
}

TEST_F(SettingsFile, ThatIsAFolderIsAnError) {
  SettingsError const error = LoadFault(folder_.Path());
  EXPECT_EQ(error.Key(), "");
  EXPECT_EQ(error.Offset(), 0U);
  EXPECT_EQ(error.what(), Utf8(folder_.Path()) + ": is not a regular file");
}

TEST_F(SettingsFile, HasAtMostSixteenMebibytes) {
  constexpr std::size_t kMost = std::size_t{16} << 20;
  std::string text = R"({"Small": 7})";
  text.resize(kMost, ' ');
  Load(text);
  EXPECT_EQ(Read("Small"), 7U);
  text += ' ';
  SettingsError const error = LoadFault(folder_.Write("settings.json", text));
  EXPECT_EQ(error.Offset(), 0U);
  EXPECT_EQ(error.what(), Utf8(error.File()) + ": has more than 16 MiB");
}

TEST_F(SettingsFile, ErrorIsCaughtAsAStandardOneAndCopied) {
  std::string message;
  std::optional<SettingsError> kept;
  try {
    Load(R"({"A": null})");
  } catch (std::runtime_error const& error) {
    message = error.what();
    kept.emplace(dynamic_cast<SettingsError const&>(error));
  }
  ASSERT_TRUE(kept);
  SettingsError other("other", "another error");
  other = *kept;
  EXPECT_EQ(other.what(), message);
  EXPECT_EQ(other.Key(), "A");
  EXPECT_EQ(other.Offset(), 6U);
  EXPECT_EQ(other.File(), folder_.Path() / "settings.json");
}

TEST_F(SettingsFile, ErrorShowsWhatATerminalWouldObey) {
  SettingsError const error =
      LoadFault(folder_.Write("settings.json", R"({"a\u001B[2J\u009B\u202E": null})"));
  EXPECT_THAT(error.what(), testing::HasSubstr("key \"a\\x1B[2J\\u009B\\u202E\" at offset"));
}

TEST_F(SettingsFile, ErrorStaysOnOneLineWhateverTheKeyHolds) {
  SettingsError const error =
      LoadFault(folder_.Write("settings.json", R"({"a\nb\u0000\u007F": null})"));
  EXPECT_EQ(error.Key(), std::string("a\nb\0\x7F", 5));
  EXPECT_THAT(error.what(),
              EndsWith("key \"a\\x0Ab\\x00\\x7F\" at offset 21: expected a boolean, an "
                       "integer or a text, found null"));
}

TEST_F(SettingsFile, CutAnywhereIsAnError) {
  std::string const text = "{\"A\": true, \"B\": -12, \"C\": \"x\\u00E9\xC3\xA9\", \"D\": 0}";
  for (std::size_t length = 0; length < text.size(); ++length) {
    SettingsError const error =
        LoadFault(folder_.Write("settings.json", std::string_view(text).substr(0, length)));
    EXPECT_LE(error.Offset(), length) << length;
  }
  Load(text);
  EXPECT_EQ(Read("A"), 1U);
}

TEST_F(SettingsFile, WithALineBreakInATextIsAnError) {
  // The parser's releases give different reasons.
  SettingsError const error = LoadFault(folder_.Write("settings.json", "{\"A\": \"\n\"}"));
  EXPECT_EQ(error.Key(), "A");
  EXPECT_EQ(error.Offset(), 7U);
}

TEST_F(SettingsFile, NestedAsDeepAsMayBeIsRefusedAtOnce) {
  std::string const manyArrays(1'000'000, '[');
  EXPECT_EQ(LoadFault(folder_.Write("settings.json", manyArrays)).Offset(), 0U);
  EXPECT_EQ(LoadFault(folder_.Write("settings.json", "{\"A\": " + manyArrays)).Offset(), 6U);
}

struct Fault {
  std::string name;
  std::string text;
  std::string key;
  std::size_t offset;
  std::string message;

  friend void PrintTo(Fault const& fault, std::ostream* out) { *out << fault.name; }
};

class FaultySettingsFile : public SettingsFile, public testing::WithParamInterface<Fault> {};

TEST_P(FaultySettingsFile, IsToldWithKeyAndOffset) {
  Fault const& fault = GetParam();
  std::filesystem::path const file = folder_.Write("settings.json", fault.text);
  SettingsError const error = LoadFault(file);
  EXPECT_EQ(error.Key(), fault.key);
  EXPECT_EQ(error.Offset(), fault.offset);
  EXPECT_EQ(error.what(), Utf8(file) + ": " + fault.message);
}

std::vector<Fault> RootFaults() {
  std::string const expected = ": expected an object, found ";
  return {
      {"array", "[1]", "", 0, "at offset 0" + expected + "an array"},
      {"boolean", " true", "", 1, "at offset 1" + expected + "a boolean"},
      {"null", "\n\nnull", "", 2, "at offset 2" + expected + "null"},
      {"integer", "7", "", 0, "at offset 0" + expected + "an integer"},
      {"fraction", "7.5", "", 0,
       "at offset 0" + expected + "a number that is not a 64-bit integer"},
      {"text", "\"A\"", "", 0, "at offset 0" + expected + "a text"},
      {"array_after_mark", "\xEF\xBB\xBF []", "", 4, "at offset 4" + expected + "an array"},
  };
}

std::vector<Fault> ValueFaults() {
  std::string const expected = ": expected a boolean, an integer or a text, found ";
  std::string const number = "a number that is not a 64-bit integer";
  return {
      {"null", R"({"B": 1, "A": null})", "A", 14, "key \"A\" at offset 14" + expected + "null"},
      {"null_far_off", "{\"A\" \t:\r\n null }", "A", 10,
       "key \"A\" at offset 10" + expected + "null"},
      {"null_before_good", R"({"A":null, "B": 1})", "A", 5,
       "key \"A\" at offset 5" + expected + "null"},
      {"null_of_escaped_key", R"({"\u0041\"": null})", R"(A")", 13,
       R"(key "A"" at offset 13)" + expected + "null"},
      {"null_of_empty_key", R"({"": null})", "", 5, "key \"\" at offset 5" + expected + "null"},
      {"null_after_mark", "\xEF\xBB\xBF{\"A\": null}", "A", 9,
       "key \"A\" at offset 9" + expected + "null"},
      {"fraction", R"({"A": 1.5})", "A", 6, "key \"A\" at offset 6" + expected + number},
      {"whole_fraction", R"({"A": 1.0})", "A", 6, "key \"A\" at offset 6" + expected + number},
      {"exponent", R"({"A": 1e3})", "A", 6, "key \"A\" at offset 6" + expected + number},
      {"too_large", R"({"A": 18446744073709551616})", "A", 6,
       "key \"A\" at offset 6" + expected + number},
      {"too_low", R"({"A": -9223372036854775809})", "A", 6,
       "key \"A\" at offset 6" + expected + number},
      {"array", R"({"A": []})", "A", 6, "key \"A\" at offset 6" + expected + "an array"},
      {"object", R"({"A": {"B": 1}})", "A", 6, "key \"A\" at offset 6" + expected + "an object"},
  };
}

std::vector<Fault> SyntaxFaults() {
  return {
      {"empty", "", "", 0, "at offset 0: The document is empty."},
      {"blank", " \n ", "", 3, "at offset 3: The document is empty."},
      {"junk", "A: 1", "", 0, "at offset 0: Invalid value."},
      {"unquoted_key", "{A: 1}", "", 1, "at offset 1: Missing a name for object member."},
      {"number_as_key", "{1: 1}", "", 1, "at offset 1: Missing a name for object member."},
      {"single_quotes", "{'A': 1}", "", 1, "at offset 1: Missing a name for object member."},
      {"no_colon", "{\"A\" 1}", "A", 5,
       "key \"A\" at offset 5: Missing a colon after a name of object member."},
      {"no_value", "{\"A\": }", "A", 6, "key \"A\" at offset 6: Invalid value."},
      {"no_comma", R"({"A": 1 "B": 2})", "", 8,
       "at offset 8: Missing a comma or '}' after an object member."},
      {"wrong_bracket", "{\"A\": 1]", "", 7,
       "at offset 7: Missing a comma or '}' after an object member."},
      {"trailing_comma", "{\"A\": 1,}", "", 8, "at offset 8: Missing a name for object member."},
      {"comment", "{\"A\": 1 /* one */}", "", 8,
       "at offset 8: Missing a comma or '}' after an object member."},
      {"capital_word", "{\"A\": True}", "A", 6, "key \"A\" at offset 6: Invalid value."},
      {"nan", "{\"A\": NaN}", "A", 6, "key \"A\" at offset 6: Invalid value."},
      {"leading_plus", "{\"A\": +1}", "A", 6, "key \"A\" at offset 6: Invalid value."},
      {"hexadecimal", "{\"A\": 0x1}", "", 7,
       "at offset 7: Missing a comma or '}' after an object member."},
      {"leading_zero", "{\"A\": 01}", "", 7,
       "at offset 7: Missing a comma or '}' after an object member."},
      {"no_fraction", "{\"A\": 1.}", "A", 8,
       "key \"A\" at offset 8: Miss fraction part in number."},
      {"no_exponent", "{\"A\": 1e}", "A", 8, "key \"A\" at offset 8: Miss exponent in number."},
      {"huge_exponent", "{\"A\": 1e999}", "A", 6,
       "key \"A\" at offset 6: Number too big to be stored in double."},
      {"open_text", R"({"A": "B)", "A", 8,
       "key \"A\" at offset 8: Missing a closing quotation mark in string."},
      {"bad_escape", R"({"A": "\x"})", "A", 7,
       "key \"A\" at offset 7: Invalid escape character in string."},
      {"bad_hex_digit", R"({"A": "\u00G0"})", "A", 7,
       R"(key "A" at offset 7: Incorrect hex digit after \u escape in string.)"},
      {"lone_surrogate", R"({"A": "\uD800"})", "A", 7,
       "key \"A\" at offset 7: The surrogate pair in string is invalid."},
      {"invalid_utf8", "{\"A\": \"\xFF\"}", "A", 7,
       "key \"A\" at offset 7: Invalid encoding in string."},
      {"overlong_utf8", "{\"A\": \"\xC0\x80\"}", "A", 7,
       "key \"A\" at offset 7: Invalid encoding in string."},
      {"zero_byte_in_text", std::string("{\"A\": \"\0\"}", 10), "A", 7,
       "key \"A\" at offset 7: Missing a closing quotation mark in string."},
      {"two_roots", "{\"A\": 1} {}", "", 9,
       "at offset 9: The document root must not be followed by other values."},
      {"trailing_junk", "{\"A\": 1}x", "", 8,
       "at offset 8: The document root must not be followed by other values."},
      {"trailing_zero_byte", std::string("{\"A\": 1} \0", 10), "", 9,
       "at offset 9: a zero byte follows the object"},
      {"utf16", std::string("\xFF\xFE{\0}\0", 6), "", 0, "at offset 0: Invalid value."},
  };
}

std::string NameOf(testing::TestParamInfo<Fault> const& info) {
  return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Root, FaultySettingsFile, testing::ValuesIn(RootFaults()), NameOf);
INSTANTIATE_TEST_SUITE_P(Value, FaultySettingsFile, testing::ValuesIn(ValueFaults()), NameOf);
INSTANTIATE_TEST_SUITE_P(Syntax, FaultySettingsFile, testing::ValuesIn(SyntaxFaults()), NameOf);

}  // namespace

#include <cstddef>
#include <filesystem>
#include <optional>
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
using usb_support::standalone::Utf8;

std::optional<unsigned long long> ReadNumber(std::string_view key, int base = 10) {
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

  // The error of a file that must fail; also checks that no setting changes.
  SettingsError LoadFault(std::filesystem::path const& file) {
    SetSetting("Kept", 42);
    SetSetting("A", "11");
    try {
      LoadSettings(file);
    } catch (SettingsError const& error) {
      EXPECT_EQ(ReadNumber("Kept"), 42U);
      EXPECT_EQ(ReadNumber("A", 2), 3U);
      EXPECT_EQ(ReadNumber("B"), std::nullopt);
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
  EXPECT_EQ(ReadNumber("Zero"), 0U);
  EXPECT_EQ(ReadNumber("Small"), 7U);
  EXPECT_EQ(ReadNumber("Negative"), 0xFFFFFFFFFFFFFFF9U);
  EXPECT_EQ(ReadNumber("Text", 16), 0x1FU);
  EXPECT_EQ(ReadNumber("Text", 10), std::nullopt);
  EXPECT_EQ(ReadNumber("Largest"), 0xFFFFFFFFFFFFFFFFU);
  EXPECT_EQ(ReadNumber("Lowest"), 0x8000000000000000U);
  EXPECT_EQ(ReadNumber("MinusZero"), 0U);
}

TEST_F(SettingsFile, MayBeAnEmptyObject) {
  SetSetting("Other", 1);
  Load(" {\t}\r\n");
  EXPECT_EQ(ReadNumber("Other"), 1U);
}

TEST_F(SettingsFile, KeepsWhatItDoesNotName) {
  SetSetting("Other", 1);
  SetSetting("A", "text");
  Load(R"({"A": 2, "B": 3})");
  EXPECT_EQ(ReadNumber("Other"), 1U);
  EXPECT_EQ(ReadNumber("A"), 2U);
  EXPECT_EQ(ReadNumber("B"), 3U);
}

TEST_F(SettingsFile, LetsTheLastValueOfAKeyCount) {
  Load(R"({"A": 1, "B": 2, "A": "3", "A": true})");
  EXPECT_EQ(ReadNumber("A"), 1U);
  EXPECT_EQ(ReadBool("A"), true);
  Load(R"({"A": true, "A": 5})");
  EXPECT_EQ(ReadNumber("A"), 5U);
}

TEST_F(SettingsFile, KeepsKeysAndTextsInUtf8) {
  Load("{\"gr\xC3\xBC\xC3\x9F\": 1, \"\\u20AC\": 2, \"\\uD83D\\uDE00\": 3, \"\": 4}");
  EXPECT_EQ(ReadNumber("gr\xC3\xBC\xC3\x9F"), 1U);
  EXPECT_EQ(ReadNumber("\xE2\x82\xAC"), 2U);
  EXPECT_EQ(ReadNumber("\xF0\x9F\x98\x80"), 3U);
  EXPECT_EQ(ReadNumber(""), 4U);
}

TEST_F(SettingsFile, MayBeginWithAByteOrderMark) {
  Load("\xEF\xBB\xBF{\"A\": 1}");
  EXPECT_EQ(ReadNumber("A"), 1U);
}

TEST_F(SettingsFile, MayBeLongerThanOneBlockOfReading) {
  std::string text = "{";
  for (int i = 0; i < 2000; ++i) {
    text += "\"Key" + std::to_string(i) + "\": " + std::to_string(i) + ",\n";
  }
  text += "\"Last\": 1}";
  Load(text);
  EXPECT_EQ(ReadNumber("Key1999"), 1999U);
  EXPECT_EQ(ReadNumber("Last"), 1U);
}

TEST_F(SettingsFile, MayHaveANameBeyondAscii) {
  LoadSettings(folder_.Write(std::filesystem::path(u8"gr\u00FC\u00DF.json"), R"({"A": 1})"));
  EXPECT_EQ(ReadNumber("A"), 1U);
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
  EXPECT_EQ(ReadNumber("Small"), 7U);
  text += ' ';
  SettingsError const error = LoadFault(folder_.Write("settings.json", text));
  EXPECT_EQ(error.Offset(), 0U);
  EXPECT_EQ(error.what(), Utf8(error.File()) + ": has more than 16 MiB");
}

TEST_F(SettingsFile, ErrorIsAStandardOne) {
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

TEST_F(SettingsFile, ErrorStaysOnOneLine) {
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
  EXPECT_EQ(ReadNumber("A"), 1U);
}

TEST_F(SettingsFile, RefusesALineBreakInAText) {
  // The parser's releases give different reasons.
  SettingsError const error = LoadFault(folder_.Write("settings.json", "{\"A\": \"\n\"}"));
  EXPECT_EQ(error.Key(), "A");
  EXPECT_EQ(error.Offset(), 7U);
}

TEST_F(SettingsFile, RefusesDeepNestingAtOnce) {
  std::string const manyArrays(1'000'000, '[');
  EXPECT_EQ(LoadFault(folder_.Write("settings.json", manyArrays)).Offset(), 0U);
  EXPECT_EQ(LoadFault(folder_.Write("settings.json", "{\"A\": " + manyArrays)).Offset(), 6U);
}

// A text, the key that the message names, and the offset.
struct Fault {
  std::string text;
  char const* key;
  std::size_t offset;
};

TEST_F(SettingsFile, FaultsAreReportedWithKeyAndOffset) {
  auto const expect = [this](std::string const& reason, std::vector<Fault> const& faults) {
    for (Fault const& fault : faults) {
      SCOPED_TRACE(fault.text);
      std::filesystem::path const file = folder_.Write("settings.json", fault.text);
      SettingsError const error = LoadFault(file);
      EXPECT_EQ(error.Key(), fault.key == nullptr ? "" : fault.key);
      EXPECT_EQ(error.Offset(), fault.offset);
      EXPECT_EQ(error.what(),
                Utf8(file) + ": " +
                    (fault.key == nullptr ? "" : "key \"" + std::string(fault.key) + "\" ") +
                    "at offset " + std::to_string(fault.offset) + ": " + reason);
    }
  };
  std::string const root = "expected an object, found ";
  std::string const value = "expected a boolean, an integer or a text, found ";
  expect(root + "an array", {Fault{"[1]", nullptr, 0}, Fault{"\xEF\xBB\xBF []", nullptr, 4}});
  expect(root + "a boolean", {Fault{" true", nullptr, 1}});
  expect(root + "null", {Fault{"\n\nnull", nullptr, 2}});
  expect(root + "an integer", {Fault{"7", nullptr, 0}});
  expect(root + "a number that is not a 64-bit integer", {Fault{"7.5", nullptr, 0}});
  expect(root + "a text", {Fault{"\"A\"", nullptr, 0}});
  expect(value + "null",
         {Fault{R"({"B": 1, "A": null})", "A", 14}, Fault{"{\"A\" \t:\r\n null }", "A", 10},
          Fault{R"({"A":null, "B": 1})", "A", 5}, Fault{R"({"\u0041\"": null})", R"(A")", 13},
          Fault{R"({"": null})", "", 5}, Fault{"\xEF\xBB\xBF{\"A\": null}", "A", 9}});
  expect(value + "a number that is not a 64-bit integer",
         {Fault{R"({"A": 1.5})", "A", 6}, Fault{R"({"A": 1.0})", "A", 6},
          Fault{R"({"A": 1e3})", "A", 6}, Fault{R"({"A": 18446744073709551616})", "A", 6},
          Fault{R"({"A": -9223372036854775809})", "A", 6}});
  expect(value + "an array", {Fault{R"({"A": []})", "A", 6}});
  expect(value + "an object", {Fault{R"({"A": {"B": 1}})", "A", 6}});
  expect("The document is empty.", {Fault{"", nullptr, 0}, Fault{" \n ", nullptr, 3}});
  expect("Invalid value.",
         {Fault{"A: 1", nullptr, 0}, Fault{"{\"A\": }", "A", 6}, Fault{"{\"A\": True}", "A", 6},
          Fault{"{\"A\": NaN}", "A", 6}, Fault{"{\"A\": +1}", "A", 6},
          Fault{std::string("\xFF\xFE{\0}\0", 6), nullptr, 0}});
  expect("Missing a name for object member.",
         {Fault{"{A: 1}", nullptr, 1}, Fault{"{1: 1}", nullptr, 1}, Fault{"{'A': 1}", nullptr, 1},
          Fault{"{\"A\": 1,}", nullptr, 8}});
  expect("Missing a colon after a name of object member.", {Fault{"{\"A\" 1}", "A", 5}});
  expect("Missing a comma or '}' after an object member.",
         {Fault{R"({"A": 1 "B": 2})", nullptr, 8}, Fault{"{\"A\": 1]", nullptr, 7},
          Fault{"{\"A\": 1 /* one */}", nullptr, 8}, Fault{"{\"A\": 0x1}", nullptr, 7},
          Fault{"{\"A\": 01}", nullptr, 7}});
  expect("Miss fraction part in number.", {Fault{"{\"A\": 1.}", "A", 8}});
  expect("Miss exponent in number.", {Fault{"{\"A\": 1e}", "A", 8}});
  expect("Number too big to be stored in double.", {Fault{"{\"A\": 1e999}", "A", 6}});
  expect("Missing a closing quotation mark in string.",
         {Fault{R"({"A": "B)", "A", 8}, Fault{std::string("{\"A\": \"\0\"}", 10), "A", 7}});
  expect("Invalid escape character in string.", {Fault{R"({"A": "\x"})", "A", 7}});
  expect("Incorrect hex digit after \\u escape in string.", {Fault{R"({"A": "\u00G0"})", "A", 7}});
  expect("The surrogate pair in string is invalid.", {Fault{R"({"A": "\uD800"})", "A", 7}});
  expect("Invalid encoding in string.",
         {Fault{"{\"A\": \"\xFF\"}", "A", 7}, Fault{"{\"A\": \"\xC0\x80\"}", "A", 7}});
  expect("The document root must not be followed by other values.",
         {Fault{"{\"A\": 1} {}", nullptr, 9}, Fault{"{\"A\": 1}x", nullptr, 8}});
  expect("a zero byte follows the object", {Fault{std::string("{\"A\": 1} \0", 10), nullptr, 9}});
}

}  // namespace

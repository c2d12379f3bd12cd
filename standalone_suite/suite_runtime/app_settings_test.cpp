#include <usb_support/suite_interfaces/app_settings.h>

#include <cstdint>
#include <optional>
#include <string>

#include <gmock/gmock.h>

#include <standalone_suite/suite_runtime/settings.h>
#include <usb_support/suite_interfaces/app_state.h>

namespace {

using usb_support::standalone::ClearSettings;
using usb_support::standalone::SetSetting;

std::optional<bool> ReadBool(basic_sv_wrapper<char> key, EScope scope = SCOPE_DEFAULT) {
  bool value = false;
  if (!CAppState::AppSettings().GetAppSetting(key, value, scope)) {
    EXPECT_FALSE(value);
    value = true;
    EXPECT_FALSE(CAppState::AppSettings().GetAppSetting(key, value, scope));
    EXPECT_TRUE(value);
    return std::nullopt;
  }
  return value;
}

std::optional<unsigned long long> ReadInt(basic_sv_wrapper<char> key, int base = 10,
                                          EScope scope = SCOPE_DEFAULT) {
  unsigned long long value = 0xA5A5;
  if (!CAppState::AppSettings().GetAppSetting(key, value, scope, base)) {
    EXPECT_EQ(value, 0xA5A5U);
    return std::nullopt;
  }
  return value;
}

class AppSettings : public testing::Test {
 protected:
  AppSettings() { ClearSettings(); }
  ~AppSettings() override { ClearSettings(); }
};

TEST_F(AppSettings, FindsNothingThatWasNotSet) {
  EXPECT_EQ(ReadBool("K"), std::nullopt);
  EXPECT_EQ(ReadInt("K"), std::nullopt);
  EXPECT_EQ(ReadBool(basic_sv_wrapper<char>()), std::nullopt);
  EXPECT_EQ(ReadInt(basic_sv_wrapper<char>()), std::nullopt);
}

TEST_F(AppSettings, FindsNothingInAnotherScope) {
  SetSetting("K", 1);
  EXPECT_EQ(ReadBool("K", static_cast<EScope>(1)), std::nullopt);
  EXPECT_EQ(ReadInt("K", 10, static_cast<EScope>(1)), std::nullopt);
  EXPECT_EQ(ReadInt("K", 10, static_cast<EScope>(0xFFFFFFFF)), std::nullopt);
  EXPECT_EQ(ReadInt("K"), 1U);
}

TEST_F(AppSettings, ReadsNumbersAsABoolean) {
  SetSetting("K", true);
  EXPECT_EQ(ReadBool("K"), true);
  SetSetting("K", false);
  EXPECT_EQ(ReadBool("K"), false);
  SetSetting("K", 0);
  EXPECT_EQ(ReadBool("K"), false);
  SetSetting("K", 0U);
  EXPECT_EQ(ReadBool("K"), false);
  SetSetting("K", -1);
  EXPECT_EQ(ReadBool("K"), true);
  SetSetting("K", std::uint64_t{1} << 63);
  EXPECT_EQ(ReadBool("K"), true);
}

TEST_F(AppSettings, ReadsATextAsABoolean) {
  auto const expect = [](std::string const& text, std::optional<bool> read) {
    SetSetting("K", text);
    EXPECT_EQ(ReadBool("K"), read) << '"' << text << '"';
  };
  for (char const* const text : {"true", "TRUE", "tRuE", "1", "-1", "10", "18446744073709551615"}) {
    expect(text, true);
  }
  for (char const* const text : {"false", "False", "0", "000", "-0"}) {
    expect(text, false);
  }
  for (char const* const text :
       {"18446744073709551616", "", " true", "true ", "tru", "truee", "yes", "0x1", "1.0"}) {
    expect(text, std::nullopt);
  }
  expect(std::string("true\0", 5), std::nullopt);
}

TEST_F(AppSettings, ReadsNumbersAsAnInteger) {
  for (int const base : {2, 10, 16, 36, 0, 1, 37, -5}) {
    SetSetting("K", true);
    EXPECT_EQ(ReadInt("K", base), 1U);
    SetSetting("K", false);
    EXPECT_EQ(ReadInt("K", base), 0U);
    SetSetting("K", 99);
    EXPECT_EQ(ReadInt("K", base), 99U);
    SetSetting("K", -2);
    EXPECT_EQ(ReadInt("K", base), 0xFFFFFFFFFFFFFFFEU);
    SetSetting("K", ~std::uint64_t{0});
    EXPECT_EQ(ReadInt("K", base), 0xFFFFFFFFFFFFFFFFU);
  }
}

TEST_F(AppSettings, ReadsATextAsAnInteger) {
  struct Row {
    std::string text;
    int base;
    std::optional<unsigned long long> read;
  };
  for (Row const& row : {Row{"0", 10, 0},
                         Row{"7", 10, 7},
                         Row{"007", 10, 7},
                         Row{"10", 2, 2},
                         Row{"10", 8, 8},
                         Row{"10", 10, 10},
                         Row{"10", 16, 16},
                         Row{"Zz", 36, 1295},
                         Row{"fF", 16, 255},
                         Row{"0x1F", 16, 31},
                         Row{"0X1f", 16, 31},
                         Row{"-0x1", 16, ~0ULL},
                         Row{"-1", 10, ~0ULL},
                         Row{"-0", 10, 0},
                         Row{"18446744073709551615", 10, ~0ULL},
                         Row{"-9223372036854775808", 10, 1ULL << 63},
                         Row{"FFFFFFFFFFFFFFFF", 16, ~0ULL},
                         Row{"", 10, {}},
                         Row{"-", 10, {}},
                         Row{"--1", 10, {}},
                         Row{"+1", 10, {}},
                         Row{" 1", 10, {}},
                         Row{"1 ", 10, {}},
                         Row{"1.0", 10, {}},
                         Row{"1e3", 10, {}},
                         Row{"true", 10, {}},
                         Row{"12", 2, {}},
                         Row{"8", 8, {}},
                         Row{"A", 10, {}},
                         Row{"G", 16, {}},
                         Row{"0x", 16, {}},
                         Row{"0x-1", 16, {}},
                         Row{"0x0x1", 16, {}},
                         Row{"0x1F", 10, {}},
                         Row{"0b1", 2, {}},
                         Row{"18446744073709551616", 10, {}},
                         Row{"-9223372036854775809", 10, {}},
                         Row{"-18446744073709551616", 10, {}},
                         Row{"10000000000000000", 16, {}},
                         Row{"1", 0, {}},
                         Row{"1", 1, {}},
                         Row{"1", 37, {}},
                         Row{"1", -10, {}},
                         Row{std::string("1\0", 2), 10, {}}}) {
    SetSetting("K", row.text);
    EXPECT_EQ(ReadInt("K", row.base), row.read) << '"' << row.text << "\" in base " << row.base;
  }
}

}  // namespace

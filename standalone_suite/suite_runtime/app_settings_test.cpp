#include <usb_support/suite_interfaces/app_settings.h>

#include <cstdint>
#include <optional>
#include <ostream>
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

TEST_F(AppSettings, IsOneObject) {
  EXPECT_EQ(&CAppState::AppSettings(), &CAppState::AppSettings());
}

TEST_F(AppSettings, ReadsBooleansAndIntegersAsABoolean) {
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

struct BooleanText {
  std::string text;
  std::optional<bool> read;

  friend void PrintTo(BooleanText const& value, std::ostream* out) { *out << value.text; }
};

class BooleanOfText : public AppSettings, public testing::WithParamInterface<BooleanText> {};

TEST_P(BooleanOfText, IsReadOrNotFound) {
  SetSetting("K", GetParam().text);
  EXPECT_EQ(ReadBool("K"), GetParam().read) << '"' << GetParam().text << '"';
}

INSTANTIATE_TEST_SUITE_P(
    AppSettings, BooleanOfText,
    testing::Values(BooleanText{"true", true}, BooleanText{"TRUE", true}, BooleanText{"tRuE", true},
                    BooleanText{"false", false}, BooleanText{"False", false},
                    BooleanText{"0", false}, BooleanText{"000", false}, BooleanText{"-0", false},
                    BooleanText{"1", true}, BooleanText{"-1", true}, BooleanText{"10", true},
                    BooleanText{"18446744073709551615", true},
                    BooleanText{"18446744073709551616", std::nullopt},
                    BooleanText{"", std::nullopt}, BooleanText{" true", std::nullopt},
                    BooleanText{"true ", std::nullopt}, BooleanText{"tru", std::nullopt},
                    BooleanText{"truee", std::nullopt}, BooleanText{"yes", std::nullopt},
                    BooleanText{"0x1", std::nullopt}, BooleanText{"1.0", std::nullopt},
                    BooleanText{std::string("true\0", 5), std::nullopt}));

TEST_F(AppSettings, ReadsBooleansAndIntegersAsAnIntegerInAnyBase) {
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

struct IntegerText {
  std::string text;
  int base;
  std::optional<unsigned long long> read;

  friend void PrintTo(IntegerText const& value, std::ostream* out) { *out << value.text; }
};

class IntegerOfText : public AppSettings, public testing::WithParamInterface<IntegerText> {};

TEST_P(IntegerOfText, IsReadInTheBaseOrNotFound) {
  SetSetting("K", GetParam().text);
  EXPECT_EQ(ReadInt("K", GetParam().base), GetParam().read)
      << '"' << GetParam().text << "\" in base " << GetParam().base;
}

INSTANTIATE_TEST_SUITE_P(AppSettings, IntegerOfText,
                         testing::Values(IntegerText{"0", 10, 0}, IntegerText{"7", 10, 7},
                                         IntegerText{"007", 10, 7}, IntegerText{"10", 2, 2},
                                         IntegerText{"10", 8, 8}, IntegerText{"10", 10, 10},
                                         IntegerText{"10", 16, 16}, IntegerText{"Zz", 36, 1295},
                                         IntegerText{"fF", 16, 255}, IntegerText{"0x1F", 16, 31},
                                         IntegerText{"0X1f", 16, 31},
                                         IntegerText{"-0x1", 16, ~0ULL},
                                         IntegerText{"-1", 10, ~0ULL}, IntegerText{"-0", 10, 0},
                                         IntegerText{"18446744073709551615", 10, ~0ULL},
                                         IntegerText{"-9223372036854775808", 10, 1ULL << 63},
                                         IntegerText{"FFFFFFFFFFFFFFFF", 16, ~0ULL}));

INSTANTIATE_TEST_SUITE_P(
    AppSettingsFaults, IntegerOfText,
    testing::Values(IntegerText{"", 10, std::nullopt}, IntegerText{"-", 10, std::nullopt},
                    IntegerText{"--1", 10, std::nullopt}, IntegerText{"+1", 10, std::nullopt},
                    IntegerText{" 1", 10, std::nullopt}, IntegerText{"1 ", 10, std::nullopt},
                    IntegerText{"1.0", 10, std::nullopt}, IntegerText{"1e3", 10, std::nullopt},
                    IntegerText{"true", 10, std::nullopt}, IntegerText{"12", 2, std::nullopt},
                    IntegerText{"8", 8, std::nullopt}, IntegerText{"A", 10, std::nullopt},
                    IntegerText{"G", 16, std::nullopt}, IntegerText{"0x", 16, std::nullopt},
                    IntegerText{"0x-1", 16, std::nullopt}, IntegerText{"0x0x1", 16, std::nullopt},
                    IntegerText{"0x1F", 10, std::nullopt}, IntegerText{"0b1", 2, std::nullopt},
                    IntegerText{"18446744073709551616", 10, std::nullopt},
                    IntegerText{"-9223372036854775809", 10, std::nullopt},
                    IntegerText{"-18446744073709551616", 10, std::nullopt},
                    IntegerText{"10000000000000000", 16, std::nullopt},
                    IntegerText{"1", 0, std::nullopt}, IntegerText{"1", 1, std::nullopt},
                    IntegerText{"1", 37, std::nullopt}, IntegerText{"1", -10, std::nullopt},
                    IntegerText{std::string("1\0", 2), 10, std::nullopt}));

}  // namespace

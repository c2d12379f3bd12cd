#include <standalone_suite/suite_runtime/settings.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include <gmock/gmock.h>

#include <usb_support/suite_interfaces/app_state.h>

namespace {

using testing::Optional;
using usb_support::standalone::ClearSetting;
using usb_support::standalone::ClearSettings;
using usb_support::standalone::SetSetting;
using usb_support::standalone::SettingInteger;

static_assert(!SettingInteger<char> && !SettingInteger<wchar_t> && !SettingInteger<bool>);
static_assert(SettingInteger<short> && SettingInteger<unsigned char>);

std::optional<unsigned long long> Read(std::string_view key, int base = 10) {
  unsigned long long value = 0;
  return CAppState::AppSettings().GetAppSetting(key, value, SCOPE_DEFAULT, base)
             ? std::optional(value)
             : std::nullopt;
}

class SettingsTest : public testing::Test {
 protected:
  SettingsTest() { ClearSettings(); }
  ~SettingsTest() override { ClearSettings(); }
};

TEST_F(SettingsTest, TakesEveryIntegerType) {
  SetSetting("K", 5);
  EXPECT_THAT(Read("K"), Optional(5U));
  SetSetting("K", short{-1});
  EXPECT_THAT(Read("K"), Optional(0xFFFFFFFFFFFFFFFFU));
  SetSetting("K", static_cast<unsigned char>(200));
  EXPECT_THAT(Read("K"), Optional(200U));
  SetSetting("K", 4'000'000'000U);
  EXPECT_THAT(Read("K"), Optional(4'000'000'000U));
  SetSetting("K", std::numeric_limits<std::uint64_t>::max());
  EXPECT_THAT(Read("K"), Optional(0xFFFFFFFFFFFFFFFFU));
  SetSetting("K", std::numeric_limits<unsigned long long>::max() - 1);
  EXPECT_THAT(Read("K"), Optional(0xFFFFFFFFFFFFFFFEU));
  SetSetting("K", std::numeric_limits<std::int64_t>::min());
  EXPECT_THAT(Read("K"), Optional(0x8000000000000000U));
  SetSetting("K", std::numeric_limits<long long>::max());
  EXPECT_THAT(Read("K"), Optional(0x7FFFFFFFFFFFFFFFU));
}

TEST_F(SettingsTest, TakesEveryTextAsAText) {
  SetSetting("K", "11");
  EXPECT_THAT(Read("K", 2), Optional(3U));
  SetSetting("K", std::string("12"));
  EXPECT_THAT(Read("K", 8), Optional(10U));
  SetSetting("K", std::string_view("123", 2));
  EXPECT_THAT(Read("K", 16), Optional(0x12U));
}

TEST_F(SettingsTest, CopiesKeyAndText) {
  std::string key = "a key that is too long to be kept inside the string object itself";
  std::string text = "12";
  SetSetting(key, text);
  std::string const keyBefore = key;
  key.assign(key.size(), 'x');
  text = "99";
  EXPECT_THAT(Read(keyBefore), Optional(12U));
}

TEST_F(SettingsTest, ComparesKeysExactly) {
  SetSetting("Key", 1);
  EXPECT_EQ(Read("key"), std::nullopt);
  EXPECT_EQ(Read("Ke"), std::nullopt);
  EXPECT_EQ(Read("Key "), std::nullopt);
  EXPECT_EQ(Read(""), std::nullopt);
  EXPECT_THAT(Read(std::string_view("Keys", 3)), Optional(1U));
}

TEST_F(SettingsTest, ClearsOne) {
  SetSetting("A", 1);
  SetSetting("B", 2);
  ClearSetting("A");
  ClearSetting("never set");
  EXPECT_EQ(Read("A"), std::nullopt);
  EXPECT_THAT(Read("B"), Optional(2U));
}

TEST_F(SettingsTest, ClearsAll) {
  SetSetting("A", 1);
  SetSetting("B", true);
  ClearSettings();
  EXPECT_EQ(Read("A"), std::nullopt);
  EXPECT_EQ(Read("B"), std::nullopt);
}

}  // namespace

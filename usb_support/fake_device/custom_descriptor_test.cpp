#include <usb_support/fake_device/custom_descriptor.h>

#include <cstdint>
#include <functional>
#include <ostream>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <standalone_suite/base_support/sleep_recorder.h>
#include <tests/support/suite_test.h>

namespace usb_support {
namespace {

using standalone::CallRecorder;
using standalone::SetSetting;
using standalone::SettingKind;
using standalone::SettingRead;
using standalone::SleepRecorder;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char const* kUse = "UseCustomDescriptor";
constexpr char const* kBinary = "CustomDescriptorBinary";

SettingRead ReadOf(char const* key) {
  return {key, SettingKind::kInteger, SCOPE_DEFAULT, 10};
}

struct Value {
  char const* name;
  std::function<void(char const* key)> set;
  bool isOn;
};

// The values of a setting that count as on.
std::vector<Value> const& Values() {
  static std::vector<Value> const values = {
      {"absent", [](char const*) {}, false},
      {"0", [](char const* key) { SetSetting(key, 0); }, false},
      {"1", [](char const* key) { SetSetting(key, 1); }, true},
      {"2", [](char const* key) { SetSetting(key, 2); }, true},
      {"-1", [](char const* key) { SetSetting(key, -1); }, true},
      {"2^31", [](char const* key) { SetSetting(key, std::uint64_t{1} << 31); }, true},
      {"2^32 - 1", [](char const* key) { SetSetting(key, std::uint64_t{4294967295}); }, true},
      {"2^32", [](char const* key) { SetSetting(key, std::uint64_t{4294967296}); }, false},
      {"2^32 + 1", [](char const* key) { SetSetting(key, std::uint64_t{4294967297}); }, true},
      {"-2^32", [](char const* key) { SetSetting(key, std::int64_t{-4294967296}); }, false},
      {"2^63", [](char const* key) { SetSetting(key, std::uint64_t{1} << 63); }, false},
      {"2^64 - 1", [](char const* key) { SetSetting(key, UINT64_MAX); }, true},
      {"true", [](char const* key) { SetSetting(key, true); }, true},
      {"false", [](char const* key) { SetSetting(key, false); }, false},
      {"text 1", [](char const* key) { SetSetting(key, "1"); }, true},
      {"text 0", [](char const* key) { SetSetting(key, "0"); }, false},
      {"text 2^32", [](char const* key) { SetSetting(key, "4294967296"); }, false},
      {"text 0x1", [](char const* key) { SetSetting(key, "0x1"); }, false},
      {"text ff", [](char const* key) { SetSetting(key, "ff"); }, false},
      {"text 1x", [](char const* key) { SetSetting(key, "1x"); }, false},
      {"empty text", [](char const* key) { SetSetting(key, ""); }, false},
      {"2^64 as text", [](char const* key) { SetSetting(key, "18446744073709551616"); }, false},
  };
  return values;
}

class CustomDescriptor : public testing_support::SuiteTest {
 protected:
  /// Nothing is reported.
  void TearDown() override { EXPECT_THAT(TakeCalls(), IsEmpty()); }
};

TEST_F(CustomDescriptor, IsUsedWhenTheSettingIsOn) {
  for (Value const& value : Values()) {
    standalone::ClearSettings();
    value.set(kUse);
    CallRecorder const recorder;
    EXPECT_EQ(UseCustomConfigDescriptor(), value.isOn) << value.name;
    EXPECT_THAT(recorder.SettingReads(), ElementsAre(ReadOf(kUse))) << value.name;
  }
}

TEST_F(CustomDescriptor, IsBinaryWhenBothSettingsAreOn) {
  for (Value const& use : Values()) {
    for (Value const& binary : Values()) {
      standalone::ClearSettings();
      use.set(kUse);
      binary.set(kBinary);
      EXPECT_EQ(IsBinaryCustomConfigDescriptorFile(), use.isOn && binary.isOn)
          << use.name << ", " << binary.name;
    }
  }
}

TEST_F(CustomDescriptor, FormatIsReadWhenTheDescriptorIsUsed) {
  SetSetting(kBinary, 1);
  SleepRecorder const sleeps;
  for (int const use : {0, 1, 0}) {
    SetSetting(kUse, use);
    CallRecorder const recorder;
    EXPECT_EQ(IsBinaryCustomConfigDescriptorFile(), use == 1);
    std::vector<SettingRead> expected = {ReadOf(kUse)};
    if (use == 1) {
      expected.push_back(ReadOf(kBinary));
    }
    EXPECT_EQ(recorder.SettingReads(), expected);
  }
  EXPECT_THAT(sleeps.Sleeps(), IsEmpty());
}

TEST_F(CustomDescriptor, DelaySleepsOneMicrosecond) {
  CallRecorder const calls;
  SleepRecorder const sleeps;
  SuperMUTTControlTransferDelay();
  EXPECT_THAT(sleeps.Sleeps(), ElementsAre(1));
  SuperMUTTControlTransferDelay();
  EXPECT_THAT(sleeps.Sleeps(), ElementsAre(1, 1));
  EXPECT_THAT(calls.SettingReads(), IsEmpty());
}

}  // namespace
}  // namespace usb_support

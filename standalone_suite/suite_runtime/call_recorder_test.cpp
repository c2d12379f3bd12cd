#include <standalone_suite/suite_runtime/call_recorder.h>

#include <sstream>
#include <string>

#include <gmock/gmock.h>

#include <standalone_suite/suite_runtime/settings.h>
#include <usb_support/suite_interfaces/app_state.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using usb_support::standalone::CallRecorder;
using usb_support::standalone::ClearSettings;
using usb_support::standalone::SetSetting;
using usb_support::standalone::SetStopTestAnswer;
using usb_support::standalone::SettingKind;
using usb_support::standalone::SettingRead;

void AskForBool(basic_sv_wrapper<char> key, EScope scope) {
  bool value = false;
  CAppState::AppSettings().GetAppSetting(key, value, scope);
}

void AskForInt(basic_sv_wrapper<char> key, EScope scope, int base) {
  unsigned long long value = 0;
  CAppState::AppSettings().GetAppSetting(key, value, scope, base);
}

TEST(CallRecorder, TakesDownEverySettingRead) {
  ClearSettings();
  SetSetting("Found", 1);
  CallRecorder const recorder;
  AskForBool("Found", SCOPE_DEFAULT);
  AskForInt("Found", SCOPE_DEFAULT, 10);
  AskForInt("Missing", static_cast<EScope>(7), 16);
  AskForBool(basic_sv_wrapper<char>(), static_cast<EScope>(1));
  EXPECT_THAT(recorder.SettingReads(),
              ElementsAre(SettingRead{"Found", SettingKind::kBoolean, SCOPE_DEFAULT, 0},
                          SettingRead{"Found", SettingKind::kInteger, SCOPE_DEFAULT, 10},
                          SettingRead{"Missing", SettingKind::kInteger, static_cast<EScope>(7), 16},
                          SettingRead{"", SettingKind::kBoolean, static_cast<EScope>(1), 0}));
  EXPECT_THAT(recorder.StopTests(), IsEmpty());
  ClearSettings();
}

TEST(CallRecorder, TakesDownEveryStopTest) {
  TQHelper const helper;
  CallRecorder const recorder;
  helper.StopTest(TEST_STATUS_FAILURE);
  helper.StopTest(TEST_STATUS_PLAIN);
  EXPECT_THAT(recorder.StopTests(), ElementsAre(TEST_STATUS_FAILURE, TEST_STATUS_PLAIN));
  EXPECT_THAT(recorder.SettingReads(), IsEmpty());
}

TEST(CallRecorder, KnowsOnlyWhatHappensInItsLife) {
  TQHelper const helper;
  AskForBool("1", SCOPE_DEFAULT);
  CallRecorder const outer;
  AskForBool("2", SCOPE_DEFAULT);
  {
    CallRecorder const inner;
    AskForBool("3", SCOPE_DEFAULT);
    helper.StopTest(TEST_STATUS_FAILURE);
    EXPECT_EQ(inner.SettingReads().size(), 1U);
    EXPECT_EQ(inner.StopTests().size(), 1U);
  }
  AskForBool("4", SCOPE_DEFAULT);
  EXPECT_THAT(outer.SettingReads(),
              ElementsAre(SettingRead{"2"}, SettingRead{"3"}, SettingRead{"4"}));
  EXPECT_EQ(outer.StopTests().size(), 1U);
}

TEST(CallRecorder, Forgets) {
  TQHelper const helper;
  CallRecorder recorder;
  AskForBool("K", SCOPE_DEFAULT);
  helper.StopTest(TEST_STATUS_FAILURE);
  recorder.Clear();
  EXPECT_THAT(recorder.SettingReads(), IsEmpty());
  EXPECT_THAT(recorder.StopTests(), IsEmpty());
  helper.StopTest(TEST_STATUS_PLAIN);
  EXPECT_THAT(recorder.StopTests(), ElementsAre(TEST_STATUS_PLAIN));
}

TEST(SettingReadOutput, IsReadable) {
  std::ostringstream out;
  out << SettingRead{"Speed", SettingKind::kInteger, SCOPE_DEFAULT, 10} << '\n'
      << SettingRead{"Flag", SettingKind::kBoolean, static_cast<EScope>(2), 0};
  EXPECT_EQ(out.str(), "integer \"Speed\" (scope 0, base 10)\nboolean \"Flag\" (scope 2)");
}

TEST(StopTestAnswer, IsTrueUntilItIsSet) {
  TQHelper const helper;
  EXPECT_TRUE(helper.StopTest(TEST_STATUS_PLAIN));
  SetStopTestAnswer(false);
  EXPECT_FALSE(helper.StopTest(TEST_STATUS_FAILURE));
  SetStopTestAnswer(true);
  EXPECT_TRUE(helper.StopTest(TEST_STATUS_FAILURE));
}

}  // namespace

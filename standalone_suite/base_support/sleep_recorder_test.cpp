#include <standalone_suite/base_support/sleep_recorder.h>

#include <thread>

#include <gmock/gmock.h>

#include <usb_support/suite_interfaces/system.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using usb_support::standalone::SleepRecorder;

TEST(SleepRecorder, TakesDownTheSleepsInOrder) {
  SleepRecorder const recorder;
  SleepMicroSec(3);
  SleepMicroSec(0);
  SleepMicroSec(1);
  EXPECT_THAT(recorder.Sleeps(), ElementsAre(3U, 0U, 1U));
}

TEST(SleepRecorder, KnowsOnlyWhatHappensInItsLife) {
  SleepMicroSec(1);
  SleepRecorder const outer;
  SleepMicroSec(2);
  {
    SleepRecorder const inner;
    SleepMicroSec(3);
    EXPECT_THAT(inner.Sleeps(), ElementsAre(3U));
  }
  SleepMicroSec(4);
  EXPECT_THAT(outer.Sleeps(), ElementsAre(2U, 3U, 4U));
}

TEST(SleepRecorder, Forgets) {
  SleepRecorder recorder;
  SleepMicroSec(1);
  recorder.Clear();
  EXPECT_THAT(recorder.Sleeps(), IsEmpty());
  SleepMicroSec(2);
  EXPECT_THAT(recorder.Sleeps(), ElementsAre(2U));
}

TEST(SleepRecorder, TakesDownTheSleepsOfAllThreads) {
  SleepRecorder const recorder;
  std::thread one([] { SleepMicroSec(1); });
  std::thread two([] { SleepMicroSec(2); });
  one.join();
  two.join();
  EXPECT_THAT(recorder.Sleeps(), UnorderedElementsAre(1U, 2U));
}

}  // namespace

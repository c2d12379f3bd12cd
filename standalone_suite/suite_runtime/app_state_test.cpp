#include <usb_support/suite_interfaces/app_state.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include <standalone_suite/suite_runtime/log.h>
#include <standalone_suite/suite_runtime/log_sinks.h>
#include <usb_support/suite_interfaces/exceptions.h>

namespace {

using testing::ElementsAre;
using usb_support::standalone::SetLogVerbosity;

using HelperOwner = custom_unique_ptr<TQHelper, TQHelper>;

std::vector<std::string> events;

// Reports its destruction, and the helper that is registered at that time.
class TellingHelper : public TQHelper {
 public:
  explicit TellingHelper(std::string name) : name_(std::move(name)) {}
  ~TellingHelper() override { events.push_back(name_ + " ends, registered: " + Registered()); }

 private:
  static std::string Registered() {
    return CAppState::HelperCreated() ? dynamic_cast<TellingHelper&>(CAppState::Helper()).name_
                                      : "none";
  }

  std::string name_;
};

HelperOwner MakeHelper(std::string const& name) {
  return {new TellingHelper(name), [name](TQHelper* helper) {
            events.push_back("the deleter of " + name);
            delete helper;
          }};
}

class HelperOwnership : public testing::Test {
 protected:
  HelperOwnership() {
    CAppState::Helper(nullptr);
    events.clear();
  }
  ~HelperOwnership() override { CAppState::Helper(nullptr); }
};

TEST_F(HelperOwnership, BeginsWithNone) {
  EXPECT_FALSE(CAppState::HelperCreated());
  try {
    CAppState::Helper();
    FAIL() << "A helper was found.";
  } catch (TQRunTimeException const& error) {
    EXPECT_STREQ(error.what(), "No helper is registered.");
    EXPECT_EQ(error.Status(), TEST_STATUS_INTERNAL_ERROR);
  }
}

TEST_F(HelperOwnership, TakesTheHelper) {
  HelperOwner helper = MakeHelper("A");
  TQHelper* const address = helper.get();
  CAppState::Helper(std::move(helper));
  EXPECT_TRUE(CAppState::HelperCreated());
  EXPECT_EQ(&CAppState::Helper(), address);
  EXPECT_THAT(events, ElementsAre());
}

TEST_F(HelperOwnership, EndsTheOneBefore) {
  CAppState::Helper(MakeHelper("A"));
  CAppState::Helper(MakeHelper("B"));
  EXPECT_THAT(events, ElementsAre("the deleter of A", "A ends, registered: B"));
}

TEST_F(HelperOwnership, EndsTheHelperForANullPointer) {
  CAppState::Helper(MakeHelper("A"));
  CAppState::Helper(nullptr);
  EXPECT_THAT(events, ElementsAre("the deleter of A", "A ends, registered: none"));
  EXPECT_FALSE(CAppState::HelperCreated());
  EXPECT_THROW(CAppState::Helper(), TQException);
}

// Logs in its destructor, when much of the process has already been destroyed.
class LastWordsHelper : public TQHelper {
 public:
  ~LastWordsHelper() override {
    CAppState::Log().DoWritePrintLnOnly(
        0, CAppState::HelperCreated() ? "ends while registered" : "ends unregistered");
    FlushOutput(true);
  }
};

void ExitWithAHelper() {
  using namespace usb_support::standalone;
  AddLogSink(std::make_shared<ConsoleSink>(stderr, ColourPolicy::kNever));
  CAppState::Helper(HelperOwner(new LastWordsHelper, [](TQHelper* helper) { delete helper; }));
  std::exit(0);
}

TEST(HelperOwnershipDeathTest, EndsTheHelperAtExit) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(ExitWithAHelper(), testing::ExitedWithCode(0), "ends unregistered");
}

TEST(LogVerbosity, IsThreeAndCanBeSet) {
  EXPECT_EQ(CAppState::TQLogVerbosityLevel(), LOG_LEVEL_3);
  SetLogVerbosity(LOG_LEVEL_5);
  EXPECT_EQ(CAppState::TQLogVerbosityLevel(), LOG_LEVEL_5);
  SetLogVerbosity(LOG_LEVEL_3);
}

TEST(LogVerbosity, ShowsTheLevelsUpToIt) {
  for (unsigned verbosity = 0; verbosity < 256; ++verbosity) {
    SetLogVerbosity(static_cast<ELogLevel>(verbosity));
    for (unsigned level = 0; level < 256; ++level) {
      ASSERT_EQ(CAppState::IsLogVerbosityLevel(static_cast<ELogLevel>(level)), level <= verbosity)
          << level << " at " << verbosity;
    }
  }
  SetLogVerbosity(LOG_LEVEL_3);
}

}  // namespace

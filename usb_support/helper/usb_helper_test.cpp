#include <usb_support/helper/usb_helper.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <regex>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include <tests/support/suite_test.h>
#include <tests/support/virtual_slot.h>

namespace usb_support {
namespace {

using standalone::CallRecorder;
using standalone::RecordedCall;
using standalone::SetSetting;
using testing::ElementsAre;
using testing_support::Flush;
using testing_support::Line;

constexpr char const* kMissingHelper = "INTERNAL ERROR - USB TQHelper does not exist.";
constexpr char const* kBothMissing =
    "Invalid USB Test input:  test services: NULL, device under test: NULL.";
constexpr char const* kDeviceMissing =
    "Invalid USB Test input:  test services: set, device under test: NULL.";
constexpr char const* kServicesMissing =
    "Invalid USB Test input:  test services: NULL, device under test: set.";

static_assert(sizeof(CDevice) == sizeof(void*) && std::has_virtual_destructor_v<CDevice>);
static_assert(sizeof(CTestServices) == sizeof(void*));
static_assert(std::has_virtual_destructor_v<CTestServices>);
static_assert(std::is_standard_layout_v<UsbTqPointers>);
static_assert(offsetof(UsbTqPointers, testServices) == 0);
static_assert(offsetof(UsbTqPointers, device) == sizeof(void*));
static_assert(sizeof(UsbTqPointers) == 2 * sizeof(void*));
static_assert(sizeof(CUsbHelper) == 2 * sizeof(void*));
static_assert(std::is_convertible_v<UsbTqPointers*, CUsbHelper>);
static_assert(noexcept(UsbHelperCreated()));
static_assert(std::is_same_v<decltype(&CUsbHelper::EndFunction), void (TQHelper::*)()>,
              "inherited, not overridden");

TEST_STATUS Status(std::uint32_t value) {
  return static_cast<TEST_STATUS>(value);
}

// A helper with its own answers, which records the calls of its virtual operations.
class ProbeHelper : public CUsbHelper {
 public:
  explicit ProbeHelper(UsbTqPointers* pointers = nullptr) : CUsbHelper(pointers) {}

  CDevice* GetDevice() const override {
    calls += 'D';
    return device;
  }
  CTestServices* GetTestServices() const override {
    calls += 'T';
    return testServices;
  }

  CDevice* device = nullptr;
  CTestServices* testServices = nullptr;
  mutable std::string calls;
};

// A helper whose other virtual operations are overridden.
class OverridingHelper : public CUsbHelper {
 public:
  explicit OverridingHelper(UsbTqPointers* pointers) : CUsbHelper(pointers) {}

  bool ValidatePointers(bool throwOnFailure, TEST_STATUS status) const override {
    validations.emplace_back(throwOnFailure, status);
    wereNullInside =
        servicesArgument != nullptr && *servicesArgument == nullptr && *deviceArgument == nullptr;
    return answer;
  }

  void LogValidatePointerFail(TEST_STATUS status, basic_sv_wrapper<char> message) const override {
    logged.emplace_back(status, message);
    stopsBeforeLogging = recorder.StopTests().size();
  }

  bool answer = false;
  CTestServices** servicesArgument = nullptr;
  CDevice** deviceArgument = nullptr;
  mutable bool wereNullInside = false;
  mutable std::vector<std::pair<bool, TEST_STATUS>> validations;
  mutable std::vector<std::pair<TEST_STATUS, basic_sv_wrapper<char>>> logged;
  mutable std::size_t stopsBeforeLogging = 99;
  CallRecorder recorder;
};

// The helper of some other library of the suite.
class ForeignHelper : public TQHelper {};

// Counts its destructions.
class CountedHelper : public CUsbHelper {
 public:
  explicit CountedHelper(int& ended) : CUsbHelper(nullptr), ended_(ended) {}
  CountedHelper(CountedHelper const&) = delete;
  CountedHelper& operator=(CountedHelper const&) = delete;
  ~CountedHelper() override { ++ended_; }

 private:
  int& ended_;
};

void Register(TQHelper* helper) {
  CAppState::Helper(
      custom_unique_ptr<TQHelper, TQHelper>(helper, [](TQHelper* ended) { delete ended; }));
}

class UsbHelperObject : public testing_support::SuiteTest {
 protected:
  CTestServices services_;
  CDevice device_;
};

#if !defined(_MSC_VER) && defined(__x86_64__)

using testing_support::SlotOf;

struct ProtectedMembers : CUsbHelper {
  static auto ValidationFailMsgMember() { return &ProtectedMembers::ValidationFailMsg; }
};

static_assert(std::is_same_v<decltype(ProtectedMembers::ValidationFailMsgMember()),
                             std::string (TQHelper::*)(TQSuiteRuntimeState*)>,
              "inherited, not overridden");

// The destructor has the slots 0 and 1.
TEST_F(UsbHelperObject, HasTheSuitesSlots) {
  EXPECT_EQ(SlotOf(&CUsbHelper::EndFunction), 2u);
  EXPECT_EQ(SlotOf(&CUsbHelper::ValidatePointers), 3u);
  EXPECT_EQ(SlotOf(ProtectedMembers::ValidationFailMsgMember()), 4u);
  EXPECT_EQ(SlotOf(&CUsbHelper::InitializePointers), 5u);
  EXPECT_EQ(SlotOf(&CUsbHelper::LogValidatePointerFail), 6u);
  EXPECT_EQ(SlotOf(&CUsbHelper::SetDevice), 7u);
  EXPECT_EQ(SlotOf(&CUsbHelper::GetDevice), 8u);
  EXPECT_EQ(SlotOf(&CUsbHelper::GetTestServices), 9u);
}

#endif

TEST_F(UsbHelperObject, InitRegistersAHelper) {
  EXPECT_FALSE(UsbHelperCreated());
  UsbTqPointers pointers{&services_, &device_};
  InitUsbHelper(&pointers);
  ASSERT_TRUE(UsbHelperCreated());
  CUsbHelper& helper = UsbHelper();
  EXPECT_EQ(typeid(helper), typeid(CUsbHelper));
  EXPECT_EQ(static_cast<TQHelper*>(&helper), &CAppState::Helper());
  EXPECT_EQ(helper.GetPIO(), &pointers);
  EXPECT_EQ(helper.GetTestServices(), &services_);
  EXPECT_EQ(helper.GetDevice(), &device_);
  InitUsbHelper(nullptr);
  EXPECT_EQ(UsbHelper().GetPIO(), nullptr);
  EXPECT_EQ(UsbHelper().GetTestServices(), nullptr);
  EXPECT_EQ(UsbHelper().GetDevice(), nullptr);
  UsbHelper().SetDevice(&device_);
  EXPECT_EQ(UsbHelper().GetDevice(), nullptr);
  // The record is the test program's and stays as it was.
  EXPECT_EQ(pointers.testServices, &services_);
  EXPECT_EQ(pointers.device, &device_);
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(UsbHelperObject, DerivedHelperEndsOnce) {
  int ended = 0;
  auto* const derived = new CountedHelper(ended);
  Register(derived);
  EXPECT_EQ(&UsbHelper(), derived);
  EXPECT_EQ(ended, 0);
  InitUsbHelper(nullptr);
  EXPECT_EQ(ended, 1);
  CAppState::Helper(nullptr);
  EXPECT_EQ(ended, 1);
}

TEST_F(UsbHelperObject, ThrowsWithoutAHelperOfItsOwn) {
  for (bool const foreign : {false, true}) {
    if (foreign) {
      Register(new ForeignHelper);
      EXPECT_TRUE(CAppState::HelperCreated());
    }
    EXPECT_FALSE(UsbHelperCreated());
    for (ELogLevel const verbosity : {LOG_LEVEL_0, LOG_LEVEL_3, LOG_LEVEL_4}) {
      standalone::SetLogVerbosity(verbosity);
      EXPECT_RUN_TIME_EXCEPTION(static_cast<void>(UsbHelper()), kMissingHelper, 0x40000000u);
      EXPECT_TRUE(TakeCalls().empty());
    }
  }
  InitUsbHelper(nullptr);
  EXPECT_TRUE(UsbHelperCreated()) << "in the place of the foreign one";
  CAppState::Helper(nullptr);
  EXPECT_FALSE(UsbHelperCreated());
}

struct Frame {
  std::string description;
  std::string file;
  unsigned line = 0;
};

// The parts of "    description - file(line)"; nothing for any other text.
std::optional<Frame> ParseFrame(std::string const& text) {
  std::smatch parts;
  if (!std::regex_match(text, parts, std::regex(R"(    (.*) - (.*)\((\d+)\))"))) {
    return std::nullopt;
  }
  return Frame{parts[1], parts[2], static_cast<unsigned>(std::stoul(parts[3]))};
}

TEST_F(UsbHelperObject, LogsTheStackFromVerbosityFiveOn) {
  for (bool const foreign : {false, true}) {
    if (foreign) {
      Register(new ForeignHelper);
    }
    for (ELogLevel const verbosity : {LOG_LEVEL_5, LOG_LEVEL_6}) {
      standalone::SetLogVerbosity(verbosity);
      EXPECT_RUN_TIME_EXCEPTION(static_cast<void>(UsbHelper()), kMissingHelper, 0x40000000u);
      std::vector<RecordedCall> const calls = TakeCalls();
      ASSERT_FALSE(calls.empty());
      EXPECT_EQ(calls.front(), Line(TEST_STATUS_INFORMATION, 5, "Printing stack trace."));
      for (std::size_t at = 1; at < calls.size(); ++at) {
        EXPECT_EQ(calls[at], Line(TEST_STATUS_INFORMATION, 5, calls[at].text));
        std::optional<Frame> const frame = ParseFrame(calls[at].text);
        ASSERT_TRUE(frame.has_value()) << calls[at].text;
        EXPECT_NE(frame->description, "") << calls[at].text;
      }
    }
  }
}

// Where the library has a stack trace and the build has debug information.
#if defined(__linux__) && !defined(NDEBUG) && __has_include(<boost/stacktrace.hpp>)

// The code after the call is at the return address, and on another line.
volatile bool hasFoundHelper = false;
constexpr unsigned kLineOfTheCall = __LINE__ + 2;
__attribute__((noinline)) void FindHelper() {
  static_cast<void>(UsbHelper());
  hasFoundHelper = true;
}

TEST_F(UsbHelperObject, StackNamesFunctionsAndLines) {
  standalone::SetLogVerbosity(LOG_LEVEL_5);
  EXPECT_RUN_TIME_EXCEPTION(FindHelper(), kMissingHelper, 0x40000000u);
  std::vector<unsigned> lines;
  std::string callers;
  for (RecordedCall const& call : TakeCalls()) {
    Frame const frame = ParseFrame(call.text).value_or(Frame());
    auto const names = [&frame](char const* function, char const* file) {
      return frame.description.find(function) != std::string::npos && frame.file.ends_with(file);
    };
    if (names("FindHelper", "usb_helper_test.cpp")) {
      lines.push_back(frame.line);
    }
    callers += names("UsbHelper", "usb_helper.cpp") && frame.line != 0 ? "library " : "";
    callers += names("TestBody", "usb_helper_test.cpp") ? "test" : "";
  }
  EXPECT_THAT(lines, ElementsAre(kLineOfTheCall));
  EXPECT_TRUE(callers.starts_with("library ") && callers.ends_with("test")) << callers;
}

#endif

TEST_F(UsbHelperObject, ReadsAndWritesItsRecord) {
  CDevice other;
  UsbTqPointers pointers{};
  CUsbHelper helper(&pointers);
  pointers.testServices = &services_;
  EXPECT_EQ(helper.GetTestServices(), &services_);
  EXPECT_EQ(helper.GetDevice(), nullptr);
  pointers.device = &device_;
  EXPECT_EQ(helper.GetDevice(), &device_);
  helper.SetDevice(&other);
  EXPECT_EQ(pointers.device, &other);
  EXPECT_EQ(helper.GetDevice(), &other);
  EXPECT_EQ(pointers.testServices, &services_);
  CallRecorder const recorder;
  helper.Reinitialize();
  EXPECT_EQ(helper.GetPIO(), &pointers);
  EXPECT_EQ(pointers.device, &other);
  EXPECT_TRUE(recorder.SettingReads().empty());
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(UsbHelperObject, PrintErrorDetailForwards) {
  CUsbHelper helper(nullptr);
  EXPECT_TRUE(helper.PrintErrorDetail(RC_WAIT_TIMEOUT, TEST_STATUS_FAILURE));
  EXPECT_THAT(TakeCalls(),
              ElementsAre(Line(TEST_STATUS_FAILURE, 1, "System wait timeout."), Flush(true)));
}

struct PointersRow {
  bool services;
  bool device;
  char const* message;  // null: nothing is missing
};

constexpr PointersRow kRows[] = {{false, false, kBothMissing},
                                 {true, false, kDeviceMissing},
                                 {false, true, kServicesMissing},
                                 {true, true, nullptr}};

TEST_F(UsbHelperObject, ValidatesPointers) {
  for (PointersRow const& row : kRows) {
    UsbTqPointers pointers{row.services ? &services_ : nullptr, row.device ? &device_ : nullptr};
    CUsbHelper const helper(&pointers);
    for (auto const& [status, level] :
         {std::pair(0x00000000u, 3u), std::pair(0x20000000u, 5u), std::pair(0x40000000u, 0u),
          std::pair(0x80000000u, 1u), std::pair(0x80000007u, 1u)}) {
      if (row.message == nullptr) {
        EXPECT_TRUE(helper.ValidatePointers(false, Status(status)));
        EXPECT_TRUE(helper.ValidatePointers(true, Status(status)));
        EXPECT_THAT(TakeCalls(), ElementsAre(Flush(true), Flush(true)));
      } else {
        EXPECT_FALSE(helper.ValidatePointers(false, Status(status)));
        EXPECT_THAT(TakeCalls(),
                    ElementsAre(Line(Status(status), level, row.message), Flush(true)));
        EXPECT_RUN_TIME_EXCEPTION(helper.ValidatePointers(true, Status(status)), row.message,
                                  0x40000000u);
        EXPECT_TRUE(TakeCalls().empty());
      }
    }
  }
}

TEST_F(UsbHelperObject, DutOptionalValidatesTestServicesAlone) {
  for (PointersRow const& row : kRows) {
    UsbTqPointers pointers{row.services ? &services_ : nullptr, row.device ? &device_ : nullptr};
    CUsbHelper const helper(&pointers);
    EXPECT_EQ(helper.ValidatePointersDUTOptional(false, TEST_STATUS_INFORMATION), row.services);
    if (row.services) {
      EXPECT_TRUE(helper.ValidatePointersDUTOptional(true, TEST_STATUS_FAILURE));
      EXPECT_TRUE(TakeCalls().empty());
    } else {
      EXPECT_THAT(TakeCalls(), ElementsAre(Line(TEST_STATUS_INFORMATION, 5,
                                                "Invalid USB Test input:  test services: NULL.")));
      EXPECT_RUN_TIME_EXCEPTION(helper.ValidatePointersDUTOptional(true, TEST_STATUS_FAILURE),
                                "Invalid USB Test input:  test services: NULL.", 0x40000000u);
      EXPECT_TRUE(TakeCalls().empty());
    }
  }
}

TEST_F(UsbHelperObject, InitializesPointers) {
  for (PointersRow const& row : kRows) {
    UsbTqPointers pointers{row.services ? &services_ : nullptr, row.device ? &device_ : nullptr};
    CUsbHelper const helper(&pointers);
    CTestServices otherServices;
    CDevice otherDevice;
    CTestServices* services = &otherServices;
    CDevice* device = &otherDevice;
    bool const isGood = row.message == nullptr;
    EXPECT_EQ(helper.InitializePointers(services, device, false, TEST_STATUS_FAILURE), isGood);
    EXPECT_EQ(services, pointers.testServices);
    EXPECT_EQ(device, pointers.device);
    EXPECT_EQ(TakeCalls().size(), isGood ? 1u : 2u);
    if (!isGood) {
      services = &otherServices;
      device = &otherDevice;
      EXPECT_RUN_TIME_EXCEPTION(
          helper.InitializePointers(services, device, true, TEST_STATUS_FAILURE), row.message,
          0x40000000u);
      EXPECT_EQ(services, nullptr);
      EXPECT_EQ(device, nullptr);
    }
  }
}

TEST_F(UsbHelperObject, NeedsNoPointersWithoutADevice) {
  SetSetting("DevDescHardCoded", true);
  CUSBDebugCapabilities::SetupUsbDebugCapabilities();
  CUsbHelper const helper(nullptr);
  EXPECT_FALSE(helper.ValidatePointers(false, TEST_STATUS_FAILURE)) << "fakes are not enough";
  EXPECT_FALSE(helper.ValidatePointersDUTOptional(false, TEST_STATUS_FAILURE));
  CUSBDebugCapabilities::CleanupUsbDebugCapabilities();
  SetSetting("NoUsbInteraction", true);
  CUSBDebugCapabilities::SetupUsbDebugCapabilities();
  TakeCalls();
  CTestServices* services = &services_;
  CDevice* device = &device_;
  for (bool const throwOnFailure : {false, true}) {
    EXPECT_TRUE(helper.ValidatePointersDUTOptional(throwOnFailure, TEST_STATUS_FAILURE));
    EXPECT_TRUE(TakeCalls().empty());
    EXPECT_TRUE(helper.ValidatePointers(throwOnFailure, TEST_STATUS_FAILURE));
    EXPECT_THAT(TakeCalls(), ElementsAre(Flush(true)));
  }
  EXPECT_TRUE(helper.InitializePointers(services, device, true, TEST_STATUS_FAILURE));
  EXPECT_EQ(services, nullptr);
  EXPECT_EQ(device, nullptr);
}

TEST_F(UsbHelperObject, AsksTheVirtualGetters) {
  // They take precedence over the record.
  UsbTqPointers pointers{&services_, &device_};
  ProbeHelper helper(&pointers);
  auto const expectCalls = [&helper](char const* calls) {
    EXPECT_EQ(std::exchange(helper.calls, {}), calls);
  };
  EXPECT_FALSE(helper.ValidatePointers(false, TEST_STATUS_PLAIN));
  expectCalls("TD");
  EXPECT_THAT(TakeCalls(), ElementsAre(Line(TEST_STATUS_PLAIN, 3, kBothMissing), Flush(true)));
  EXPECT_FALSE(helper.ValidatePointersDUTOptional(false, TEST_STATUS_FAILURE));
  expectCalls("T");
  helper.LogValidatePointerFail(TEST_STATUS_PLAIN, "abc");
  expectCalls("TD");
  helper.testServices = &services_;
  helper.device = &device_;
  CTestServices* services = nullptr;
  CDevice* device = nullptr;
  EXPECT_TRUE(helper.InitializePointers(services, device, true, TEST_STATUS_FAILURE));
  EXPECT_EQ(services, &services_);
  EXPECT_EQ(device, &device_);
  expectCalls("TDTD");
}

TEST_F(UsbHelperObject, InitializePointersAsksTheOverriddenValidation) {
  UsbTqPointers pointers{&services_, &device_};
  OverridingHelper helper(&pointers);
  CTestServices* services = &services_;
  CDevice* device = &device_;
  helper.servicesArgument = &services;
  helper.deviceArgument = &device;
  for (bool const answer : {false, true}) {
    helper.answer = answer;
    helper.validations.clear();
    EXPECT_EQ(helper.InitializePointers(services, device, !answer, Status(0x123)), answer);
    EXPECT_THAT(helper.validations, ElementsAre(std::pair(!answer, Status(0x123))));
    EXPECT_TRUE(helper.wereNullInside);
    EXPECT_EQ(services, &services_);
    EXPECT_EQ(device, &device_);
  }
}

TEST_F(UsbHelperObject, LogsTheCallersMessageAlone) {
  for (PointersRow const& row : kRows) {
    UsbTqPointers pointers{row.services ? &services_ : nullptr, row.device ? &device_ : nullptr};
    CUsbHelper const helper(&pointers);
    for (char const* const message : {"abc", "abc\n", "", "%s %n 100%"}) {
      helper.LogValidatePointerFail(TEST_STATUS_FAILURE, message);
      EXPECT_THAT(TakeCalls(), ElementsAre(Line(TEST_STATUS_FAILURE, 1, message)));
    }
    helper.LogValidatePointerFail(TEST_STATUS_INFORMATION, basic_sv_wrapper<char>());
    helper.LogValidatePointerFail(TEST_STATUS_PLAIN, std::string_view("abcdef", 3));
    EXPECT_THAT(TakeCalls(), ElementsAre(Line(TEST_STATUS_INFORMATION, 5, ""),
                                         Line(TEST_STATUS_PLAIN, 3, "abc")));
  }
}

TEST_F(UsbHelperObject, ValidatePointerFailStopsTheTest) {
  UsbTqPointers pointers{};
  CUsbHelper const helper(&pointers);
  for (bool const stop : {false, true}) {
    standalone::SetStopTestAnswer(stop);
    CallRecorder const recorder;
    helper.LogValidatePointerFail(TEST_STATUS_FAILURE, "abc");
    EXPECT_TRUE(recorder.StopTests().empty());
    TakeCalls();
    EXPECT_EQ(helper.ValidatePointerFail(Status(0x80000042)), stop);
    EXPECT_THAT(recorder.StopTests(), ElementsAre(Status(0x80000042)));
    EXPECT_THAT(TakeCalls(), ElementsAre(Line(Status(0x80000042), 1, "")));
  }
  // Asks an override first, with an unset message.
  OverridingHelper const overriding(nullptr);
  EXPECT_TRUE(overriding.ValidatePointerFail(TEST_STATUS_FAILURE));
  ASSERT_EQ(overriding.logged.size(), 1u);
  EXPECT_EQ(overriding.logged[0].first, TEST_STATUS_FAILURE);
  EXPECT_FALSE(overriding.logged[0].second.has_value());
  EXPECT_EQ(overriding.stopsBeforeLogging, 0u);
}

}  // namespace
}  // namespace usb_support

#include <usb_support/helper/usb_helper.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <optional>
#include <stdexcept>
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
using testing_support::Flush;
using testing_support::Line;

constexpr char const* kMissingHelper = "INTERNAL ERROR - USB TQHelper does not exist.";
constexpr char const* kBothMissing =
    "Invalid USB Test input:  test services: NULL, device under test: NULL.";
constexpr char const* kDeviceMissing =
    "Invalid USB Test input:  test services: set, device under test: NULL.";
constexpr char const* kServicesMissing =
    "Invalid USB Test input:  test services: NULL, device under test: set.";
constexpr char const* kServicesMissingDutOptional = "Invalid USB Test input:  test services: NULL.";

static_assert(sizeof(CDevice) == sizeof(void*));
static_assert(std::is_polymorphic_v<CDevice>);
static_assert(std::has_virtual_destructor_v<CDevice>);
static_assert(std::is_default_constructible_v<CDevice>);
static_assert(std::is_copy_constructible_v<CDevice>);
static_assert(std::is_copy_assignable_v<CDevice>);
static_assert(sizeof(CTestServices) == sizeof(void*));
static_assert(std::is_polymorphic_v<CTestServices>);
static_assert(std::has_virtual_destructor_v<CTestServices>);
static_assert(std::is_default_constructible_v<CTestServices>);
static_assert(std::is_copy_constructible_v<CTestServices>);
static_assert(std::is_copy_assignable_v<CTestServices>);

static_assert(std::is_standard_layout_v<UsbTqPointers>);
static_assert(offsetof(UsbTqPointers, testServices) == 0);
static_assert(offsetof(UsbTqPointers, device) == sizeof(void*));
static_assert(sizeof(UsbTqPointers) == 2 * sizeof(void*));

static_assert(std::is_convertible_v<CUsbHelper*, TQHelper*>, "derives publicly");
static_assert(sizeof(TQHelper) == sizeof(void*));
static_assert(sizeof(CUsbHelper) == 2 * sizeof(void*));
static_assert(std::has_virtual_destructor_v<CUsbHelper>);
static_assert(std::is_convertible_v<UsbTqPointers*, CUsbHelper>);
static_assert(noexcept(UsbHelperCreated()));

static_assert(std::is_same_v<decltype(&CUsbHelper::EndFunction), void (TQHelper::*)()>,
              "inherited, not overridden");
static_assert(std::is_same_v<decltype(&CUsbHelper::ValidatePointers),
                             bool (CUsbHelper::*)(bool, TEST_STATUS) const>);
static_assert(
    std::is_same_v<decltype(&CUsbHelper::InitializePointers),
                   bool (CUsbHelper::*)(CTestServices*&, CDevice*&, bool, TEST_STATUS) const>);
static_assert(std::is_same_v<decltype(&CUsbHelper::LogValidatePointerFail),
                             void (CUsbHelper::*)(TEST_STATUS, basic_sv_wrapper<char>) const>);
static_assert(std::is_same_v<decltype(&CUsbHelper::SetDevice), void (CUsbHelper::*)(CDevice*)>);
static_assert(std::is_same_v<decltype(&CUsbHelper::GetDevice), CDevice* (CUsbHelper::*)() const>);
static_assert(
    std::is_same_v<decltype(&CUsbHelper::GetTestServices), CTestServices* (CUsbHelper::*)() const>);

TEST_STATUS Status(std::uint32_t value) {
  return static_cast<TEST_STATUS>(value);
}

// A helper that answers for itself and shows which of its virtual operations were called.
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
    if (raiseInside) {
      throw TQRunTimeException("from the override", status);
    }
    return answer;
  }

  void LogValidatePointerFail(TEST_STATUS status, basic_sv_wrapper<char> message) const override {
    logged.emplace_back(status, message);
    stopsBeforeLogging = recorder.StopTests().size();
  }

  bool answer = false;
  bool raiseInside = false;
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
  static void RunWithoutDevice() {
    SetSetting("NoUsbInteraction", true);
    CUSBDebugCapabilities::SetupUsbDebugCapabilities();
  }

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
TEST_F(UsbHelperObject, KeepsTheOrderOfItsVirtualOperations) {
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

TEST_F(UsbHelperObject, IsCreatedByInit) {
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
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(UsbHelperObject, InitAgainRegistersAFreshHelper) {
  UsbTqPointers first{&services_, &device_};
  UsbTqPointers second{};
  InitUsbHelper(&first);
  InitUsbHelper(&second);
  ASSERT_TRUE(UsbHelperCreated());
  EXPECT_EQ(UsbHelper().GetPIO(), &second);
  // The record of the helper before is the test program's and stays as it was.
  EXPECT_EQ(first.testServices, &services_);
  EXPECT_EQ(first.device, &device_);
}

TEST_F(UsbHelperObject, InitAcceptsNoRecord) {
  InitUsbHelper(nullptr);
  ASSERT_TRUE(UsbHelperCreated());
  CUsbHelper& helper = UsbHelper();
  EXPECT_EQ(helper.GetPIO(), nullptr);
  EXPECT_EQ(helper.GetTestServices(), nullptr);
  EXPECT_EQ(helper.GetDevice(), nullptr);
  helper.SetDevice(&device_);
  EXPECT_EQ(helper.GetPIO(), nullptr);
  EXPECT_EQ(helper.GetDevice(), nullptr);
  EXPECT_FALSE(helper.ValidatePointers(false, TEST_STATUS_FAILURE));
  EXPECT_THAT(TakeCalls(),
              testing::ElementsAre(Line(TEST_STATUS_FAILURE, 1, kBothMissing), Flush(true)));
}

TEST_F(UsbHelperObject, InitReplacesAForeignHelper) {
  Register(new ForeignHelper);
  EXPECT_FALSE(UsbHelperCreated());
  InitUsbHelper(nullptr);
  EXPECT_TRUE(UsbHelperCreated());
}

TEST_F(UsbHelperObject, EndsWithItsRegistration) {
  InitUsbHelper(nullptr);
  CAppState::Helper(nullptr);
  EXPECT_FALSE(UsbHelperCreated());
  EXPECT_RUN_TIME_EXCEPTION(static_cast<void>(UsbHelper()), kMissingHelper, 0x40000000u);
}

TEST_F(UsbHelperObject, DerivedHelperEndsOnceWhenReplaced) {
  int ended = 0;
  auto* const derived = new CountedHelper(ended);
  Register(derived);
  EXPECT_TRUE(UsbHelperCreated());
  EXPECT_EQ(&UsbHelper(), derived);
  EXPECT_EQ(ended, 0);
  InitUsbHelper(nullptr);
  EXPECT_EQ(ended, 1);
  CAppState::Helper(nullptr);
  EXPECT_EQ(ended, 1);
}

TEST_F(UsbHelperObject, OwnsNeitherRecordNorDeviceNorServices) {
  struct CountedDevice : CDevice {
    explicit CountedDevice(int& ended) : ended_(ended) {}
    ~CountedDevice() override { ++ended_; }
    int& ended_;
  };
  struct CountedServices : CTestServices {
    explicit CountedServices(int& ended) : ended_(ended) {}
    ~CountedServices() override { ++ended_; }
    int& ended_;
  };
  int ended = 0;
  {
    CountedServices services(ended);
    CountedDevice device(ended);
    UsbTqPointers pointers{&services, &device};
    { CUsbHelper const helper(&pointers); }
    InitUsbHelper(&pointers);
    CAppState::Helper(nullptr);
    EXPECT_EQ(ended, 0);
    EXPECT_EQ(pointers.testServices, &services);
    EXPECT_EQ(pointers.device, &device);
  }
  EXPECT_EQ(ended, 2);
}

TEST_F(UsbHelperObject, RaisesWithoutAHelper) {
  EXPECT_RUN_TIME_EXCEPTION(static_cast<void>(UsbHelper()), kMissingHelper, 0x40000000u);
  EXPECT_THROW(static_cast<void>(UsbHelper()), TQException);
  EXPECT_THROW(static_cast<void>(UsbHelper()), std::runtime_error);
  EXPECT_THROW(static_cast<void>(UsbHelper()), std::exception);
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(UsbHelperObject, RaisesWithAForeignHelper) {
  Register(new ForeignHelper);
  EXPECT_TRUE(CAppState::HelperCreated());
  EXPECT_FALSE(UsbHelperCreated());
  EXPECT_RUN_TIME_EXCEPTION(static_cast<void>(UsbHelper()), kMissingHelper, 0x40000000u);
  EXPECT_TRUE(TakeCalls().empty());
}

struct Frame {
  std::string description;
  std::string file;
  unsigned line = 0;
};

// The parts of "    description - file(line)"; nothing for any other text.
std::optional<Frame> ParseFrame(std::string const& text) {
  std::size_t const separator = text.rfind(" - ");
  std::size_t const open = text.rfind('(');
  if (!text.starts_with("    ") || !text.ends_with(')') || separator == std::string::npos ||
      separator < 4 || open == std::string::npos || open < separator + 3) {
    return std::nullopt;
  }
  std::string const number = text.substr(open + 1, text.size() - open - 2);
  if (number.empty() || number.find_first_not_of("0123456789") != std::string::npos) {
    return std::nullopt;
  }
  return Frame{text.substr(4, separator - 4), text.substr(separator + 3, open - separator - 3),
               static_cast<unsigned>(std::stoul(number))};
}

TEST_F(UsbHelperObject, MissingHelperLogsNoStackBelowVerbosityFive) {
  for (ELogLevel const verbosity : {LOG_LEVEL_0, LOG_LEVEL_3, LOG_LEVEL_4}) {
    standalone::SetLogVerbosity(verbosity);
    EXPECT_RUN_TIME_EXCEPTION(static_cast<void>(UsbHelper()), kMissingHelper, 0x40000000u);
    EXPECT_TRUE(TakeCalls().empty()) << static_cast<unsigned>(verbosity);
  }
}

TEST_F(UsbHelperObject, MissingHelperLogsTheStackAtVerbosityFive) {
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

TEST_F(UsbHelperObject, StackNamesFunctionsAndSourceLines) {
  standalone::SetLogVerbosity(LOG_LEVEL_5);
  constexpr unsigned kFirstLine = __LINE__;
  EXPECT_RUN_TIME_EXCEPTION(static_cast<void>(UsbHelper()), kMissingHelper, 0x40000000u);
  constexpr unsigned kLastLine = __LINE__;
  bool thisTest = false;
  bool theLibrary = false;
  std::string all;
  for (RecordedCall const& call : TakeCalls()) {
    all += call.text + '\n';
    std::optional<Frame> const frame = ParseFrame(call.text);
    if (frame.has_value()) {
      thisTest = thisTest || (frame->file.ends_with("usb_helper_test.cpp") &&
                              frame->line >= kFirstLine && frame->line <= kLastLine &&
                              frame->description.find("TestBody") != std::string::npos);
      theLibrary = theLibrary || (frame->file.ends_with("usb_helper.cpp") && frame->line != 0 &&
                                  frame->description.find("UsbHelper") != std::string::npos);
    }
  }
  EXPECT_TRUE(thisTest) << all;
  EXPECT_TRUE(theLibrary) << all;
}

// What follows the call lies where the call returns to, and on another line.
volatile bool hasFoundHelper = false;
constexpr unsigned kLineOfTheCall = __LINE__ + 2;
__attribute__((noinline)) void FindHelper() {
  static_cast<void>(UsbHelper());
  hasFoundHelper = true;
}

TEST_F(UsbHelperObject, StackNamesTheLineOfACallAndNotTheNextOne) {
  standalone::SetLogVerbosity(LOG_LEVEL_5);
  EXPECT_RUN_TIME_EXCEPTION(FindHelper(), kMissingHelper, 0x40000000u);
  std::vector<unsigned> lines;
  for (RecordedCall const& call : TakeCalls()) {
    std::optional<Frame> const frame = ParseFrame(call.text);
    if (frame.has_value() && frame->description.find("FindHelper") != std::string::npos) {
      lines.push_back(frame->line);
    }
  }
  EXPECT_THAT(lines, testing::ElementsAre(kLineOfTheCall));
}

#endif

TEST_F(UsbHelperObject, GettersReadTheRecordAfresh) {
  UsbTqPointers pointers{};
  CUsbHelper const helper(&pointers);
  EXPECT_EQ(helper.GetTestServices(), nullptr);
  EXPECT_EQ(helper.GetDevice(), nullptr);
  pointers.testServices = &services_;
  EXPECT_EQ(helper.GetTestServices(), &services_);
  EXPECT_EQ(helper.GetDevice(), nullptr);
  pointers.device = &device_;
  EXPECT_EQ(helper.GetDevice(), &device_);
  pointers.testServices = nullptr;
  EXPECT_EQ(helper.GetTestServices(), nullptr);
  EXPECT_EQ(helper.GetDevice(), &device_);
}

TEST_F(UsbHelperObject, SetDeviceWritesTheRecord) {
  CDevice other;
  UsbTqPointers pointers{&services_, &device_};
  CUsbHelper helper(&pointers);
  helper.SetDevice(&other);
  EXPECT_EQ(pointers.device, &other);
  EXPECT_EQ(helper.GetDevice(), &other);
  helper.SetDevice(nullptr);
  EXPECT_EQ(pointers.device, nullptr);
  EXPECT_EQ(helper.GetDevice(), nullptr);
  EXPECT_EQ(pointers.testServices, &services_);
}

TEST_F(UsbHelperObject, ReinitializeDoesNothing) {
  UsbTqPointers pointers{&services_, &device_};
  CUsbHelper helper(&pointers);
  CallRecorder const recorder;
  helper.Reinitialize();
  EXPECT_EQ(helper.GetPIO(), &pointers);
  EXPECT_EQ(pointers.testServices, &services_);
  EXPECT_EQ(pointers.device, &device_);
  EXPECT_TRUE(TakeCalls().empty());
  EXPECT_TRUE(recorder.SettingReads().empty());
  EXPECT_TRUE(recorder.StopTests().empty());
}

TEST_F(UsbHelperObject, PrintErrorDetailForwards) {
  CUsbHelper helper(nullptr);
  EXPECT_TRUE(helper.PrintErrorDetail(RC_WAIT_TIMEOUT, TEST_STATUS_FAILURE));
  EXPECT_THAT(TakeCalls(), testing::ElementsAre(
                               Line(TEST_STATUS_FAILURE, 1, "System wait timeout."), Flush(true)));
}

TEST_F(UsbHelperObject, CopiesOfDeviceAndServicesAreObjectsOfTheirOwn) {
  struct Device : CDevice {
    int number = 0;
  };
  Device first;
  first.number = 1;
  Device second = first;
  EXPECT_EQ(second.number, 1);
  second.number = 2;
  static_cast<CDevice&>(first) = second;
  EXPECT_EQ(first.number, 1);
  CTestServices copy = services_;
  copy = services_;
  EXPECT_EQ(typeid(static_cast<CTestServices&>(copy)), typeid(CTestServices));
}

TEST_F(UsbHelperObject, ValidatesPointersThatAreSet) {
  UsbTqPointers pointers{&services_, &device_};
  CUsbHelper const helper(&pointers);
  for (bool const throwOnFailure : {false, true}) {
    EXPECT_TRUE(helper.ValidatePointers(throwOnFailure, TEST_STATUS_FAILURE));
    EXPECT_THAT(TakeCalls(), testing::ElementsAre(Flush(true)));
  }
}

struct MissingRow {
  bool services;
  bool device;
  char const* message;
};

constexpr MissingRow kMissingRows[] = {
    {false, false, kBothMissing}, {true, false, kDeviceMissing}, {false, true, kServicesMissing}};

TEST_F(UsbHelperObject, LogsMissingPointersWithTheStatus) {
  struct Row {
    std::uint32_t status;
    unsigned level;
  };
  for (MissingRow const& missing : kMissingRows) {
    UsbTqPointers pointers{missing.services ? &services_ : nullptr,
                           missing.device ? &device_ : nullptr};
    CUsbHelper const helper(&pointers);
    for (Row const& row : {Row{0x00000000, 3}, Row{0x20000000, 5}, Row{0x40000000, 0},
                           Row{0x80000000, 1}, Row{0x80000007, 1}}) {
      EXPECT_FALSE(helper.ValidatePointers(false, Status(row.status)));
      EXPECT_THAT(
          TakeCalls(),
          testing::ElementsAre(Line(Status(row.status), row.level, missing.message), Flush(true)));
    }
  }
}

TEST_F(UsbHelperObject, RaisesMissingPointersWithoutTheStatus) {
  for (MissingRow const& missing : kMissingRows) {
    UsbTqPointers pointers{missing.services ? &services_ : nullptr,
                           missing.device ? &device_ : nullptr};
    CUsbHelper const helper(&pointers);
    for (std::uint32_t const status : {0u, 0x80000000u, 0x12345678u}) {
      EXPECT_RUN_TIME_EXCEPTION(helper.ValidatePointers(true, Status(status)), missing.message,
                                0x40000000u);
      EXPECT_TRUE(TakeCalls().empty());
    }
  }
}

TEST_F(UsbHelperObject, ValidatesAnythingWithoutADevice) {
  RunWithoutDevice();
  UsbTqPointers pointers{};
  for (UsbTqPointers* const record : {static_cast<UsbTqPointers*>(nullptr), &pointers}) {
    CUsbHelper const helper(record);
    for (bool const throwOnFailure : {false, true}) {
      EXPECT_TRUE(helper.ValidatePointers(throwOnFailure, TEST_STATUS_FAILURE));
      EXPECT_THAT(TakeCalls(), testing::ElementsAre(Flush(true)));
    }
  }
}

TEST_F(UsbHelperObject, NeedsPointersAlthoughDescriptorsAreFake) {
  SetSetting("DevDescHardCoded", true);
  CUSBDebugCapabilities::SetupUsbDebugCapabilities();
  CUsbHelper const helper(nullptr);
  EXPECT_FALSE(helper.ValidatePointers(false, TEST_STATUS_FAILURE));
  EXPECT_FALSE(helper.ValidatePointersDUTOptional(false, TEST_STATUS_FAILURE));
}

TEST_F(UsbHelperObject, ValidationAsksTheVirtualGetters) {
  ProbeHelper helper;
  helper.device = &device_;
  helper.testServices = &services_;
  EXPECT_TRUE(helper.ValidatePointers(false, TEST_STATUS_FAILURE));
  EXPECT_EQ(helper.calls, "TD");
  helper.device = nullptr;
  EXPECT_RUN_TIME_EXCEPTION(helper.ValidatePointers(true, TEST_STATUS_FAILURE), kDeviceMissing,
                            0x40000000u);
  RunWithoutDevice();
  helper.calls.clear();
  EXPECT_TRUE(helper.ValidatePointers(false, TEST_STATUS_FAILURE));
  EXPECT_EQ(helper.calls, "TD");
}

TEST_F(UsbHelperObject, OverriddenGettersOutweighTheRecord) {
  UsbTqPointers pointers{&services_, &device_};
  ProbeHelper const helper(&pointers);
  EXPECT_FALSE(helper.ValidatePointers(false, TEST_STATUS_PLAIN));
  EXPECT_THAT(TakeCalls(),
              testing::ElementsAre(Line(TEST_STATUS_PLAIN, 3, kBothMissing), Flush(true)));
}

TEST_F(UsbHelperObject, DutOptionalValidatesTestServicesAlone) {
  UsbTqPointers pointers{&services_, nullptr};
  CUsbHelper const helper(&pointers);
  for (bool const throwOnFailure : {false, true}) {
    EXPECT_TRUE(helper.ValidatePointersDUTOptional(throwOnFailure, TEST_STATUS_FAILURE));
    EXPECT_TRUE(TakeCalls().empty());
  }
}

TEST_F(UsbHelperObject, DutOptionalLogsMissingTestServicesWithoutAFlush) {
  UsbTqPointers pointers{nullptr, &device_};
  CUsbHelper const helper(&pointers);
  EXPECT_FALSE(helper.ValidatePointersDUTOptional(false, TEST_STATUS_FAILURE));
  EXPECT_FALSE(helper.ValidatePointersDUTOptional(false, TEST_STATUS_INFORMATION));
  EXPECT_THAT(TakeCalls(),
              testing::ElementsAre(Line(TEST_STATUS_FAILURE, 1, kServicesMissingDutOptional),
                                   Line(TEST_STATUS_INFORMATION, 5, kServicesMissingDutOptional)));
}

TEST_F(UsbHelperObject, DutOptionalRaisesMissingTestServicesWithoutTheStatus) {
  CUsbHelper const helper(nullptr);
  EXPECT_RUN_TIME_EXCEPTION(helper.ValidatePointersDUTOptional(true, TEST_STATUS_FAILURE),
                            kServicesMissingDutOptional, 0x40000000u);
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(UsbHelperObject, DutOptionalValidatesAnythingWithoutADevice) {
  RunWithoutDevice();
  CUsbHelper const helper(nullptr);
  for (bool const throwOnFailure : {false, true}) {
    EXPECT_TRUE(helper.ValidatePointersDUTOptional(throwOnFailure, TEST_STATUS_FAILURE));
    EXPECT_TRUE(TakeCalls().empty());
  }
}

TEST_F(UsbHelperObject, DutOptionalAsksTheVirtualGetterOfTheTestServicesOnly) {
  ProbeHelper helper;
  EXPECT_FALSE(helper.ValidatePointersDUTOptional(false, TEST_STATUS_FAILURE));
  EXPECT_EQ(helper.calls, "T");
  helper.testServices = &services_;
  EXPECT_TRUE(helper.ValidatePointersDUTOptional(false, TEST_STATUS_FAILURE));
  EXPECT_EQ(helper.calls, "TT");
}

TEST_F(UsbHelperObject, InitializesPointers) {
  UsbTqPointers pointers{&services_, &device_};
  CUsbHelper const helper(&pointers);
  CTestServices* services = nullptr;
  CDevice* device = nullptr;
  EXPECT_TRUE(helper.InitializePointers(services, device, false, TEST_STATUS_FAILURE));
  EXPECT_EQ(services, &services_);
  EXPECT_EQ(device, &device_);
  EXPECT_THAT(TakeCalls(), testing::ElementsAre(Flush(true)));
}

TEST_F(UsbHelperObject, InitializesPointersAlsoWhenOneIsMissing) {
  for (MissingRow const& missing : kMissingRows) {
    UsbTqPointers pointers{missing.services ? &services_ : nullptr,
                           missing.device ? &device_ : nullptr};
    CUsbHelper const helper(&pointers);
    CTestServices otherServices;
    CDevice otherDevice;
    CTestServices* services = &otherServices;
    CDevice* device = &otherDevice;
    EXPECT_FALSE(helper.InitializePointers(services, device, false, TEST_STATUS_FAILURE));
    EXPECT_EQ(services, pointers.testServices);
    EXPECT_EQ(device, pointers.device);
    EXPECT_THAT(TakeCalls(),
                testing::ElementsAre(Line(TEST_STATUS_FAILURE, 1, missing.message), Flush(true)));
  }
}

TEST_F(UsbHelperObject, InitializePointersLeavesNullWhenValidationRaises) {
  UsbTqPointers pointers{&services_, nullptr};
  CUsbHelper const helper(&pointers);
  CTestServices* services = &services_;
  CDevice* device = &device_;
  EXPECT_RUN_TIME_EXCEPTION(helper.InitializePointers(services, device, true, TEST_STATUS_FAILURE),
                            kDeviceMissing, 0x40000000u);
  EXPECT_EQ(services, nullptr);
  EXPECT_EQ(device, nullptr);
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
    EXPECT_THAT(helper.validations, testing::ElementsAre(std::pair(!answer, Status(0x123))));
    EXPECT_TRUE(helper.wereNullInside);
    EXPECT_EQ(services, &services_);
    EXPECT_EQ(device, &device_);
  }
  helper.raiseInside = true;
  EXPECT_RUN_TIME_EXCEPTION(helper.InitializePointers(services, device, true, Status(0x123)),
                            "from the override", 0x123u);
  EXPECT_EQ(services, nullptr);
  EXPECT_EQ(device, nullptr);
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(UsbHelperObject, InitializePointersAsksTheVirtualGetters) {
  ProbeHelper helper;
  helper.testServices = &services_;
  helper.device = &device_;
  CTestServices* services = nullptr;
  CDevice* device = nullptr;
  EXPECT_TRUE(helper.InitializePointers(services, device, true, TEST_STATUS_FAILURE));
  EXPECT_EQ(services, &services_);
  EXPECT_EQ(device, &device_);
  EXPECT_EQ(helper.calls, "TDTD");
}

TEST_F(UsbHelperObject, InitializePointersWithoutADevice) {
  RunWithoutDevice();
  CUsbHelper const helper(nullptr);
  CTestServices* services = &services_;
  CDevice* device = &device_;
  EXPECT_TRUE(helper.InitializePointers(services, device, true, TEST_STATUS_FAILURE));
  EXPECT_EQ(services, nullptr);
  EXPECT_EQ(device, nullptr);
}

// The sentences about missing pointers never reach the log.
TEST_F(UsbHelperObject, LogValidatePointerFailWritesTheCallersMessageAlone) {
  for (bool const servicesSet : {false, true}) {
    for (bool const deviceSet : {false, true}) {
      UsbTqPointers pointers{servicesSet ? &services_ : nullptr, deviceSet ? &device_ : nullptr};
      CUsbHelper const helper(&pointers);
      for (char const* const message : {"abc", "abc\n", "\n", "", "%s %n 100%"}) {
        helper.LogValidatePointerFail(TEST_STATUS_FAILURE, message);
        EXPECT_THAT(TakeCalls(), testing::ElementsAre(Line(TEST_STATUS_FAILURE, 1, message)));
      }
      helper.LogValidatePointerFail(TEST_STATUS_INFORMATION, basic_sv_wrapper<char>());
      EXPECT_THAT(TakeCalls(), testing::ElementsAre(Line(TEST_STATUS_INFORMATION, 5, "")));
    }
  }
}

TEST_F(UsbHelperObject, LogValidatePointerFailTakesAViewThatIsNotTerminated) {
  CUsbHelper const helper(nullptr);
  helper.LogValidatePointerFail(TEST_STATUS_PLAIN, std::string_view("abcdef", 3));
  EXPECT_THAT(TakeCalls(), testing::ElementsAre(Line(TEST_STATUS_PLAIN, 3, "abc")));
}

TEST_F(UsbHelperObject, LogValidatePointerFailAsksTheVirtualGetters) {
  ProbeHelper const helper;
  helper.LogValidatePointerFail(TEST_STATUS_PLAIN, "abc");
  EXPECT_EQ(helper.calls, "TD");
  EXPECT_THAT(TakeCalls(), testing::ElementsAre(Line(TEST_STATUS_PLAIN, 3, "abc")));
}

TEST_F(UsbHelperObject, ValidatePointerFailLogsAnEmptyLineAndStopsTheTest) {
  UsbTqPointers pointers{};
  CUsbHelper const helper(&pointers);
  for (bool const stop : {false, true}) {
    standalone::SetStopTestAnswer(stop);
    CallRecorder const recorder;
    EXPECT_EQ(helper.ValidatePointerFail(Status(0x80000042)), stop);
    EXPECT_THAT(recorder.StopTests(), testing::ElementsAre(Status(0x80000042)));
    EXPECT_THAT(TakeCalls(), testing::ElementsAre(Line(Status(0x80000042), 1, "")));
  }
}

TEST_F(UsbHelperObject, ValidatePointerFailAsksTheOverrideWithAnUnsetMessageFirst) {
  OverridingHelper const helper(nullptr);
  EXPECT_TRUE(helper.ValidatePointerFail(TEST_STATUS_FAILURE));
  ASSERT_EQ(helper.logged.size(), 1u);
  EXPECT_EQ(helper.logged[0].first, TEST_STATUS_FAILURE);
  EXPECT_FALSE(helper.logged[0].second.has_value());
  EXPECT_TRUE(helper.logged[0].second.empty());
  EXPECT_EQ(helper.stopsBeforeLogging, 0u);
  EXPECT_THAT(helper.recorder.StopTests(), testing::ElementsAre(TEST_STATUS_FAILURE));
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(UsbHelperObject, OnlyValidatePointerFailStopsTheTest) {
  CallRecorder const recorder;
  CUsbHelper const helper(nullptr);
  static_cast<void>(helper.ValidatePointers(false, TEST_STATUS_FAILURE));
  static_cast<void>(helper.ValidatePointersDUTOptional(false, TEST_STATUS_FAILURE));
  helper.LogValidatePointerFail(TEST_STATUS_FAILURE, "abc");
  EXPECT_TRUE(recorder.StopTests().empty());
}

}  // namespace
}  // namespace usb_support

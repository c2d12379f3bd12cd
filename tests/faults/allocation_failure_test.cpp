// The state after an operation of the library that runs out of memory: no leak, and everything
// unchanged, or as its header describes.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <tests/support/exact_bytes.h>
#include <tests/support/failing_allocator.h>
#include <tests/support/suite_test.h>
#include <tests/support/vendor_list_test.h>
#include <usb_support/descriptor_sets/bos_descriptor_set.h>
#include <usb_support/descriptor_sets/config_descriptor_set.h>
#include <usb_support/descriptor_sets/function_selector.h>
#include <usb_support/descriptors/finders.h>
#include <usb_support/events/driver_event.h>
#include <usb_support/fake_device/custom_descriptor.h>
#include <usb_support/log/log_assert.h>
#include <usb_support/log/log_descriptor.h>
#include <usb_support/status/status_text.h>
#include <usb_support/text/formatting.h>

namespace usb_support {
namespace {

using testing_support::Answer;
using testing_support::Bytes;
using testing_support::BytesOf;
using testing_support::Ending;
using testing_support::ExactBytes;
using testing_support::FailEachAllocation;
using testing_support::Hex;
using testing_support::Joined;
using testing_support::OutstandingAllocations;
using testing_support::Put;
using testing_support::RunOnNewThread;

// A composite device's configuration: an interface association with two interfaces, and one more.
Bytes const kConfiguration =
    Hex("09 02 4B 00 03 01 00 80 32  08 0B 00 02 02 02 01 00  09 04 00 00 01 02 02 01 00"
        "05 24 00 10 01  07 05 83 03 08 00 10  09 04 01 00 00 0A 00 00 00"
        "09 04 02 00 02 08 06 50 00  07 05 81 02 00 02 00  07 05 02 02 00 02 00");

// A device descriptor, as bytes that replace others.
Bytes const kOther = Hex("12 01 00 02 09 00 01 40 24 04 14 25 B3 0B 00 00 00 01");

void Nothing() {
}

// Keeps the last line in its own memory, so that only the library allocates during a write.
class LastLineSink : public standalone::LogSink {
 public:
  void Take(standalone::LogCall const& call) override {
    if (call.operation != standalone::LogOperation::kFlushOutput) {
      length_ = std::min(call.text.size(), text_.size());
      std::copy_n(call.text.data(), length_, text_.data());
      stackDepth_ = call.stackDepth;
      ++lines_;
    }
  }

  std::string_view Text() const { return {text_.data(), length_}; }
  unsigned Lines() const { return lines_; }
  unsigned StackDepth() const { return stackDepth_; }
  void Clear() { length_ = lines_ = 0; }

 private:
  std::array<char, 2048> text_{};
  std::size_t length_ = 0;
  unsigned lines_ = 0;
  unsigned stackDepth_ = 0;
};

// An operation that is run without memory. A failure leaves the state that `prepare` made, and the
// next try gives the state of a run that had memory.
struct Operation {
  char const* name;
  std::size_t least;  ///< allocations that it makes at least
  std::size_t most;
  std::function<void()> prepare;
  std::function<void()> run;
  std::function<std::string()> state = [] { return std::string(); };
};

constexpr std::size_t kAny = 1000;

class AllocationFailure : public testing_support::SuiteTest {
 protected:
  AllocationFailure() {
    standalone::RemoveAllLogSinks();
    standalone::AddLogSink(sink_);
  }

  static void Check(Operation const& operation) {
    SCOPED_TRACE(operation.name);
    operation.prepare();
    std::string const before = operation.state();
    operation.run();
    std::string const after = operation.state();
    std::size_t const allocations = FailEachAllocation(
        operation.prepare, operation.run, [&] { EXPECT_EQ(operation.state(), before); },
        [&] { EXPECT_EQ(operation.state(), after); });
    EXPECT_GE(allocations, operation.least);
    EXPECT_LE(allocations, operation.most);
  }

  // What was logged, for operations that write one line or none.
  std::string Logged() const {
    return std::to_string(sink_->Lines()) + ": " + std::string(sink_->Text());
  }
  std::function<void()> ClearLog() {
    return [this] { sink_->Clear(); };
  }
  Operation Line(char const* name, std::size_t least, std::function<void()> write) {
    return {name, least, kAny, ClearLog(), std::move(write), [this] { return Logged(); }};
  }

  LastLineSink& Log() { return *sink_; }

 private:
  std::shared_ptr<LastLineSink> sink_ = std::make_shared<LastLineSink>();
};

// Without these tests the others would prove nothing.

TEST_F(AllocationFailure, ReachesIntoTheLibrary) {
  EXPECT_EQ(RunOnNewThread([] {
              testing_support::FailingAllocator const noMemory(
                  1, testing_support::Shortage::kFromThenOn);
              CSimpleBuffer().GetBuffer(1000);
            }),
            Ending::kOutOfMemory);
  ExactBytes const run(kConfiguration);
  EXPECT_EQ(RunOnNewThread([&] {
              testing_support::FailingAllocator const noMemory(
                  1, testing_support::Shortage::kFromThenOn);
              static_cast<void>(run.Range().GetAll());
            }),
            Ending::kOutOfMemory);
}

TEST_F(AllocationFailure, ThatLeavesABlockIsSeen) {
  testing::TestPartResultArray failures;
  {
    testing::ScopedFakeTestPartResultReporter const reporter(&failures);
    std::unique_ptr<int> kept[2];
    // The first block stays when the second cannot be had.
    EXPECT_EQ(FailEachAllocation([&] { kept[0].reset(), kept[1].reset(); },
                                 [&] {
                                   kept[0] = std::make_unique<int>(1);
                                   kept[1] = std::make_unique<int>(2);
                                 },
                                 Nothing, Nothing),
              2u);
  }
  // Once for each of the passes that count blocks.
  EXPECT_EQ(failures.size(), 2);
}

TEST_F(AllocationFailure, OfARange) {
  InitUsbHelper(nullptr);
  ExactBytes const run(kConfiguration);
  ExactBytes const broken(Joined({kConfiguration, {0x09, 0x04}}));
  CDescriptorRange const range = run.Range();
  CConfigDescriptorSet configuration;
  Put(configuration, kConfiguration);
  CBOSDescriptorSet bos;
  RangePredicate predicate = IsFirstSetting;
  // A capture that std::function keeps on the heap, so that each copy of a finder allocates.
  RangeFinder const heavy = [interfaces = std::array<unsigned char, 64>{0x04}](
                                CDescriptorRangeIterator first, CDescriptorRangeIterator last) {
    while (first != last && first->bDescriptorType != interfaces[0]) {
      ++first;
    }
    return std::pair(true, first);
  };
  function_head head;
  std::size_t found = 0;
  auto const check = [&](char const* name, auto const& find) {
    Check({name, 2, kAny, [&] { found = 99; }, [&] { found = find(); },
           [&] { return std::to_string(found); }});
    EXPECT_EQ(BytesOf(range), kConfiguration);
  };
  check("all", [&] { return range.GetAll()->size(); });
  check("of a type", [&] { return range.GetAll(0x05)->size(); });
  check("of a selector", [&] { return range.GetSubRanges(CRangeSelector(predicate))->size(); });
  check("of finders", [&] { return range.GetSubRanges(heavy, heavy)->size(); });
  check("counted", [&] { return range.Count(heavy, heavy); });
  check("first", [&] { return range.SubRange(heavy, heavy).Length(); });
  check("not valid", [&] { return broken.Range().GetAll()->size(); });
  check("listing", [&] { return broken.Range().OutputString(false)->size(); });
  check("code", [&] { return broken.Range().OutputString(true)->size(); });
  check("logged", [&] { return TQHelper_LogDescriptor(run.Range(), "title"), std::size_t{1}; });
  check("interfaces", [&] { return configuration.GetInterfaceList()->size(); });
  check("functions", [&] { return configuration.GetFunctionList()->size(); });
  check("capabilities", [&] { return bos.GetDescriptorsOfType(0x02)->size(); });
  EXPECT_EQ(BytesOf(configuration), kConfiguration);

  CRangeSelector const selector(predicate);
  CRangeSelector target(heavy, heavy);
  Operation const selectors[] = {
      {"a predicate", 1, kAny, Nothing, [&] { CRangeSelector const one(predicate); }},
      {"two predicates", 1, kAny, Nothing, [&] { CRangeSelector const two(predicate, predicate); }},
      {"two finders", 2, kAny, Nothing, [&] { CRangeSelector const two(heavy, heavy); }},
      {"functions", 1, kAny, Nothing, [&] { function_selector const functions(&head); }},
      {"capabilities", 1, kAny, Nothing, [] { capability_type_selector const capabilities(2); }},
      {"copies", 0, 0, Nothing, [&] { target = CRangeSelector(selector); }},
  };
  for (Operation const& operation : selectors) {
    Check(operation);
  }
}

template <typename Set>
struct OpenSet : Set {
  using Set::Set;
  using Set::SyncPointers;
};

template <typename Set>
class AllocationFailureOfASet : public AllocationFailure {};

using Sets = testing::Types<OpenSet<CDescriptorSet<TQ_USB_BOS_DESCRIPTOR>>,
                            OpenSet<CBOSDescriptorSet>, OpenSet<CConfigDescriptorSet>>;
TYPED_TEST_SUITE(AllocationFailureOfASet, Sets);

TYPED_TEST(AllocationFailureOfASet, ChangesNothing) {
  TypeParam set;
  TypeParam source;
  Put(source, kOther);
  ExactBytes const other(kOther);
  unsigned char const* held = nullptr;
  auto const check = [&](char const* name, std::size_t allocations, auto const& change) {
    this->Check({name, allocations, allocations,
                 [&] {
                   Put(set, kConfiguration);
                   held = set.Bytes();
                 },
                 [&] { change(); },
                 [&] {
                   Bytes const bytes = BytesOf(set);
                   return (set.Bytes() == held ? "same " : "new ") +
                          std::string(bytes.begin(), bytes.end());
                 }});
  };
  check("SetDescriptor", 2, [&] { set.SetDescriptor(other.data(), 18); });
  check("own bytes", 2, [&] { set.SetDescriptor(set.Bytes() + set.Length() - 14, 14); });
  check("Reset to bytes", 2, [&] { set.Reset(other.data(), 18); });
  check("Reset to iterators", 2, [&] { set.Reset(other.At(0), other.At(18)); });
  check("assignment", 2, [&] { set = source; });
  check("copy", 2, [&] { TypeParam const copy(set); });
  check("Reset", 0, [&] { set.Reset(); });
  check("re-pointing", 0, [&] { set.Reset(set.Bytes() + 1, 8); });
  check("SyncPointers", 0, [&] { set.SyncPointers(9); });
  check("self-assignment", 0, [&] { set = *&set; });
  check("moving", 0, [&] {
    // Not std::move: the source is examined afterwards.
    TypeParam target(static_cast<TypeParam&&>(set));
    target = static_cast<TypeParam&&>(set);
  });
}

struct OpenConfiguration : CConfigDescriptorSet {
  using CConfigDescriptorSet::CConfigDescriptorSet;
  using CConfigDescriptorSet::HasDeviceDescriptor;
  using CConfigDescriptorSet::StoreDeviceDescriptor;
};

TEST_F(AllocationFailure, OfAConfigurationKeepsIndexAndDevice) {
  ExactBytes const other(kOther);
  OpenConfiguration source(7);
  source.OtherSpeed(true);
  Put(source, kConfiguration);
  OpenConfiguration set;
  std::function<void()> const changes[] = {[&] { set = source; },
                                           [&] { set.Reset(other.data(), 12); },
                                           [&] { set.Reset(other.At(0), other.At(18)); }};
  for (auto const& change : changes) {
    Check({"change", 2, 2,
           [&] {
             set.ConfigIndex(1);
             set.OtherSpeed(false);
             set.StoreDeviceDescriptor({});
           },
           change,
           [&] {
             return std::to_string(set.ConfigIndex()) + (set.OtherSpeed() ? " other" : "") +
                    (set.HasDeviceDescriptor() ? " device" : "");
           }});
  }
}

// On one thread: a text that was too long does not affect a shorter one.
TEST_F(AllocationFailure, OfALongTextLeavesShortOnes) {
  std::string const longText(5000, 'x');
  TQLogger& logger = CAppState::Log();
  CSimpleBuffer out;
  auto const isRefused = [](auto const& action) {
    try {
      action();
    } catch (std::bad_alloc const&) {
      return true;
    }
    return false;
  };
  EXPECT_EQ(RunOnNewThread([&] {
              testing_support::SmallBlocksOnly const fewBytes(1000);
              EXPECT_TRUE(isRefused([&] { Format(out, Indentation{}, "%s", longText.c_str()); }));
              Format(out, Indentation{}, "%s", "short");
              EXPECT_STREQ(out.Contents(), "short");
              EXPECT_TRUE(isRefused(
                  [&] { LogFormatted(logger, TEST_STATUS_PLAIN, "%s", longText.c_str()); }));
              LogFormatted(logger, TEST_STATUS_PLAIN, "%s", "formatted");
              EXPECT_EQ(Log().Text(), "formatted");
              EXPECT_TRUE(isRefused([&] { LogWrite(logger, TEST_STATUS_PLAIN, longText); }));
              LogWrite(logger, TEST_STATUS_PLAIN, "passed through");
              EXPECT_EQ(Log().Text(), "passed through");
              EXPECT_TRUE(isRefused([&] { Raise(TEST_STATUS_PLAIN, "%s", longText.c_str()); }));
              EXPECT_RUN_TIME_EXCEPTION(Raise(TEST_STATUS_PLAIN, "%s", "thrown"), "thrown", 0u);
            }),
            Ending::kReturned);
}

// The count of skipped frames belongs to the line that was not written.
TEST_F(AllocationFailure, OfALineLeavesTheStackDepth) {
  ExactBytes const broken({0x00, 0x02});
  auto const depthAfter = [this](auto const& write) {
    EXPECT_EQ(RunOnNewThread([&] {
                try {
                  testing_support::FailingAllocator const noMemory(
                      1, testing_support::Shortage::kFromThenOn);
                  write();
                  ADD_FAILURE() << "There was memory.";
                } catch (std::bad_alloc const&) {
                }
                CAppState::Log().DoWritePrintOnly(0, "next");
              }),
              Ending::kReturned);
    EXPECT_EQ(Log().Text(), "next");
    return Log().StackDepth();
  };
  TQLogger& logger = CAppState::Log();
  CFormatInfo const look(TQColor{1, 2, 3, 4}, TEXT_STRENGTH_BOLD);
  EXPECT_EQ(depthAfter([&] { LogWrite(logger, TEST_STATUS_PLAIN, "a"); }), 0u);
  EXPECT_EQ(depthAfter([&] { LogFormatted(logger, TEST_STATUS_PLAIN, "%s", "a"); }), 0u);
  EXPECT_EQ(
      depthAfter([&] { LogFormatted(logger, TEST_STATUS_PLAIN, LOG_LEVEL_4, look, "%s", "a"); }),
      0u);
  EXPECT_EQ(depthAfter([&] { broken.Range().Count(); }), 0u);
}

TEST_F(AllocationFailure, OfALineWritesNone) {
  std::string const longText(1000, 'x');
  TQLogger& logger = CAppState::Log();
  CFormatInfo const look(TQColor{1, 2, 3, 4}, TEXT_STRENGTH_BOLD);
  TQAssertionNumbers const numbers[] = {{{"TD", "9", "4", "1"}}};
  char const* const messages[] = {longText.c_str()};
  InitUsbHelper(nullptr);
  standalone::SetLogVerbosity(LOG_LEVEL_6);
  COsSpecificDriverEvent event(TQE_EVENT_TYPE_DEFAULT);
  Operation const operations[] = {
      Line("text", 1, [&] { LogWrite(logger, TEST_STATUS_PLAIN, longText); }),
      Line("text with a look", 1,
           [&] { LogWrite(logger, TEST_STATUS_PLAIN, LOG_LEVEL_4, look, longText); }),
      Line("format", 2, [&] { LogFormatted(logger, TEST_STATUS_PLAIN, "%s", longText.c_str()); }),
      Line("format with a look", 2,
           [&] {
             LogFormatted(logger, TEST_STATUS_PLAIN, LOG_LEVEL_4, look, "%s", longText.c_str());
           }),
      Line("assertion", 2, [&] { LogAssert(TEST_STATUS_FAILURE, 0, numbers, messages); }),
      Line("unknown status", 1,
           [] {
             static_cast<void>(GetStatusDetail(static_cast<RETURN_CODE>(0x80004003), nullptr));
           }),
      Line("status", 1, [] { PrintErrorDetail(RC_STALL_ERROR, TEST_STATUS_PLAIN); }),
      Line("validation", 2, [] { UsbHelper().ValidatePointers(false, TEST_STATUS_FAILURE); }),
      Line("validation of the services", 2,
           [] { UsbHelper().ValidatePointersDUTOptional(false, TEST_STATUS_FAILURE); }),
      // The signal is taken before the line is written, so the next try finds none.
      {"wait", 1, kAny,
       [&] {
         Log().Clear();
         event.SetEvent();
       },
       [&] { static_cast<void>(event.WaitOnEvent(0)); },
       [&] { return std::to_string(Log().Lines()); }},
  };
  for (Operation const& operation : operations) {
    Check(operation);
  }
}

TEST_F(AllocationFailure, OfEverythingElse) {
  std::string const longText(1000, 'x');
  CSimpleBuffer out;
  std::size_t length = 0;
  auto const raise = [&](auto const& action) {
    return [&length, action] {
      try {
        action();
      } catch (TQRunTimeException const& raised) {
        length = std::string_view(raised.what()).size();
      }
    };
  };
  auto const clear = [&] { length = 0; };
  auto const state = [&] { return std::to_string(length); };
  UsbTqPointers first;
  UsbTqPointers second;
  CDevice device;
  CTestServices services;
  UsbTqPointers found{};
  std::optional<CDriverEvent> event;
  CDriverEvent one(TQE_EVENT_TYPE_DEFAULT);
  CDriverEvent two(TQE_EVENT_TYPE_DEFAULT);
  std::vector<CDriverEvent*> const events = {&one, &two};
  RETURN_CODE code = RC_OPERATION_FAILED;
  Operation const operations[] = {
      {"a format", 2, kAny,
       [&] {
         out = CSimpleBuffer();
         std::memcpy(out.GetBuffer(5), "kept", 5);
       },
       [&] { Format(out, kDefaultIndentation, "%s", longText.c_str()); },
       [&] { return std::string(out.Contents()); }},
      {"a formatted exception", 2, kAny, clear,
       raise([&] { Raise(TEST_STATUS_INTERNAL_ERROR, "%s", longText.c_str()); }), state},
      {"an exception", 2, kAny, clear,
       raise([&] { RaiseMessage(TEST_STATUS_INTERNAL_ERROR, longText); }), state},
      {"the first helper", 1, kAny, [] { CAppState::Helper(nullptr); },
       [] { InitUsbHelper(nullptr); },
       [] { return std::string(UsbHelperCreated() ? "helper" : "none"); }},
      {"another helper", 1, kAny, [&] { InitUsbHelper(&first); }, [&] { InitUsbHelper(&second); },
       [&] { return std::string(UsbHelper().GetPIO() == &first ? "first" : "second"); }},
      {"the helper", 0, 0, Nothing, [] { static_cast<void>(UsbHelper()); }},
      {"the pointers", 2, kAny,
       [&] {
         InitUsbHelper(nullptr);
         found = {&services, &device};
         found = {};
       },
       [&] {
         UsbHelper().InitializePointers(found.testServices, found.device, false,
                                        TEST_STATUS_FAILURE);
       },
       [&] { return std::string(found.device == nullptr ? "null" : "set"); }},
      {"diagnostics", 2, kAny, Nothing,
       [] {
         UsbHelper().StallExpectedDiagnostic(RC_TRANSFER_ERROR, TEST_STATUS_PLAIN);
         UsbHelper().StallExpectedDiagnostic(RC_STALL_ERROR, TEST_STATUS_PLAIN);
         UsbHelper().ValidatePointerFail(TEST_STATUS_FAILURE);
         CUsbHelper::OutputProgressMarker(9, 10, "transfer", 1);
       }},
      {"the debug capabilities", 1, kAny,
       [] { CUSBDebugCapabilities::CleanupUsbDebugCapabilities(); },
       [] { CUSBDebugCapabilities::SetupUsbDebugCapabilities(); }},
      {"their janitor", 1, kAny, [] { CUSBDebugCapabilities::CleanupUsbDebugCapabilities(); },
       [] { CUSBDebugCapabilitiesJanitor const janitor(true); }},
      {"custom descriptors", 0, 0, [] { standalone::SetSetting("UseCustomDescriptor", "1"); },
       [] {
         EXPECT_TRUE(UseCustomConfigDescriptor());
         EXPECT_FALSE(IsBinaryCustomConfigDescriptorFile());
       }},
      {"an event's record", 1, 1, [&] { event.reset(); }, [&] { event.emplace(); },
       [&] { return std::string(event.has_value() ? "event" : "none"); }},
      {"a wait", 2, 2,
       [&] {
         two.SetEvent();
         code = RC_OPERATION_FAILED;
       },
       [&] { code = CDriverEvent::WaitOnMultipleEvents(events, 0, WAIT_FOR_ANY_EVENT); },
       [&] { return std::to_string(code); }},
  };
  for (Operation const& operation : operations) {
    Check(operation);
  }
  COsSpecificDriverEvent record(TQE_EVENT_TYPE_DEFAULT);
  std::vector<COsSpecificDriverEvent*> const records = {&record};
  for (unsigned const timeout : {0u, 1u}) {
    Check({"a wait on one in vain", 0, 0, Nothing,
           [&] { static_cast<void>(record.WaitOnEvent(timeout)); }});
    Check({"a wait on several in vain", 1, 1, Nothing, [&] {
             static_cast<void>(COsSpecificDriverEvent::WaitOnMultipleEvents(records, timeout,
                                                                            WAIT_FOR_ALL_EVENTS));
           }});
  }
  ExactBytes const bytes(kConfiguration);
  for (unsigned const offset : {0u, 9u, 17u, 26u, 31u, 38u}) {
    Check({"a label", 0, kAny, clear,
           [&] {
             length = CUsbHelper::GenerateDescriptorLabel(*bytes.Descriptor(offset), nullptr,
                                                          TQE_USB_DEVICE_SPEED_UNKNOWN)
                          .size();
           },
           state});
  }
}

// A system without memory has no event left: the handle is null, as the header says.
TEST_F(AllocationFailure, OfAnEventGivesANullHandle) {
  COsSpecificDriverEvent event;
  auto const close = [&] {
    event.~COsSpecificDriverEvent();
    new (&event) COsSpecificDriverEvent;
  };
  for (bool const manualReset : {false, true}) {
    SCOPED_TRACE(manualReset);
    EXPECT_GE(FailEachAllocation(
                  close,
                  [&] {
                    if (manualReset) {
                      event.InitializeManualReset(TQE_EVENT_TYPE_DEFAULT);
                    } else {
                      event.Initialize(TQE_EVENT_TYPE_DEFAULT);
                    }
                  },
                  [&] {
                    EXPECT_EQ(event.GetOverlappedEvent(), nullptr);
                    EXPECT_FALSE(event.SetEvent());
                    EXPECT_EQ(event.WaitOnEvent(0), RC_OPERATION_FAILED);
                  },
                  [&] {
                    EXPECT_TRUE(event.SetEvent());
                    EXPECT_EQ(event.WaitOnEvent(0), RC_SUCCESS);
                  },
                  Answer::kReturns),
              2u);
  }
}

class AllocationFailureOfAVendorName : public testing_support::VendorListTest {};

TEST_F(AllocationFailureOfAVendorName, KeepsTheBuffer) {
  standalone::RemoveAllLogSinks();
  SaveList(R"([{"name":"A company whose name is long enough to be on the heap","field_vid":"1234"},
               7,
               {"name":"Another one","field_vid":"no number at all, and a long text"},
               {"name":"Wanted, and long enough too, Incorporated","field_vid":"4660"}])");
  std::array<char, 64> buffer{};
  EXPECT_GE(FailEachAllocation(
                [&] { buffer.fill('\x5A'); }, [&] { GetVendorName(4660, buffer.data(), 64); },
                [&] { EXPECT_EQ(std::ranges::count(buffer, '\x5A'), 64); },
                [&] { EXPECT_STREQ(buffer.data(), "Wanted, and long enough too, Incorporated"); }),
            2u);
}

TEST_F(AllocationFailureOfAVendorName, MovesTheListOrLeavesIt) {
  standalone::RemoveAllLogSinks();
  std::string_view const list = R"([{"name":"Wanted","field_vid":"4660"}])";
  std::array<char, 64> buffer{};
  EXPECT_GE(FailEachAllocation(
                [&] {
                  std::filesystem::remove(List());
                  SaveListInCurrentDirectory(list);
                },
                [&] { GetVendorName(4660, buffer.data(), 64); },
                [&] {
                  EXPECT_NE(std::filesystem::exists(List()),
                            std::filesystem::exists(ListInCurrentDirectory()));
                },
                [&] {
                  EXPECT_STREQ(buffer.data(), "Wanted");
                  EXPECT_EQ(standalone::ReadFileBytes(List()), list);
                }),
            2u);
}

}  // namespace
}  // namespace usb_support

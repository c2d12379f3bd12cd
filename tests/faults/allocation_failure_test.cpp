// What the library's operations leave behind when there is no memory: nothing, and everything as it
// was, or else what their headers say.
#include <gtest/gtest.h>

#if defined(_WIN32)

TEST(AllocationFailure, LeavesEverythingAsItWas) {
  GTEST_SKIP() << "A program's operator new does not reach into its DLLs on Windows.";
}

#else

#include <gtest/gtest-spi.h>

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
using testing_support::Ending;
using testing_support::ExactBytes;
using testing_support::FailEachAllocation;
using testing_support::OutstandingAllocations;
using testing_support::RunOnNewThread;

// A composite device's configuration: an interface association with two interfaces, and one more.
Bytes const kConfiguration = {0x09, 0x02, 0x4B, 0x00, 0x03, 0x01, 0x00, 0x80, 0x32,  //
                              0x08, 0x0B, 0x00, 0x02, 0x02, 0x02, 0x01, 0x00,        //
                              0x09, 0x04, 0x00, 0x00, 0x01, 0x02, 0x02, 0x01, 0x00,  //
                              0x05, 0x24, 0x00, 0x10, 0x01,                          //
                              0x07, 0x05, 0x83, 0x03, 0x08, 0x00, 0x10,              //
                              0x09, 0x04, 0x01, 0x00, 0x00, 0x0A, 0x00, 0x00, 0x00,  //
                              0x09, 0x04, 0x02, 0x00, 0x02, 0x08, 0x06, 0x50, 0x00,  //
                              0x07, 0x05, 0x81, 0x02, 0x00, 0x02, 0x00,              //
                              0x07, 0x05, 0x02, 0x02, 0x00, 0x02, 0x00};

// A BOS with a USB 2.0 extension.
Bytes const kBos = {0x05, 0x0F, 0x0C, 0x00, 0x01,  //
                    0x07, 0x10, 0x02, 0x02, 0x00, 0x00, 0x00};

// A device descriptor, as bytes that replace others.
Bytes const kOther = {0x12, 0x01, 0x00, 0x02, 0x09, 0x00, 0x01, 0x40, 0x24,
                      0x04, 0x14, 0x25, 0xB3, 0x0B, 0x00, 0x00, 0x00, 0x01};

Bytes BytesOf(CDescriptorRange const& range) {
  return {range.Bytes(), range.Bytes() + range.Length()};
}

void Nothing() {
}

// Keeps the last line in memory of its own, so that a write allocates nothing but what the library
// does.
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

class AllocationFailure : public testing_support::SuiteTest {
 protected:
  AllocationFailure() {
    standalone::RemoveAllLogSinks();
    standalone::AddLogSink(sink_);
  }

  // For operations whose only effect is a line: a failure writes none.
  template <typename Write>
  std::size_t FailEachOfALine(Write const& write, std::string_view text) {
    return FailEachAllocation([this] { sink_->Clear(); }, write,
                              [this] {
                                EXPECT_EQ(sink_->Lines(), 0u);
                                sink_->Clear();
                              },
                              [this, text] {
                                EXPECT_EQ(sink_->Lines(), 1u);
                                EXPECT_EQ(sink_->Text(), text);
                              });
  }

  LastLineSink& Log() { return *sink_; }

 private:
  std::shared_ptr<LastLineSink> sink_ = std::make_shared<LastLineSink>();
};

// Without these the others would prove nothing.

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

TEST_F(AllocationFailure, BlocksOfTheLibraryAreCounted) {
  ExactBytes const run(kConfiguration);
  std::size_t const before = OutstandingAllocations();
  {
    CDescriptorRange::RangeVector const all = run.Range().GetAll();
    EXPECT_EQ(all->size(), 9u);
    EXPECT_GT(OutstandingAllocations(), before);
  }
  EXPECT_EQ(OutstandingAllocations(), before);
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

// Ranges.

class AllocationFailureOfARange : public AllocationFailure {
 protected:
  // Lets each allocation of making a list fail; returns how many there are.
  template <typename List>
  std::size_t FailEachOfAList(List const& list, std::size_t size) {
    std::size_t found = 0;
    std::size_t const allocations =
        FailEachAllocation([&] { found = 99; }, [&] { found = list()->size(); },
                           [&] {
                             EXPECT_EQ(found, 99u);
                             ExpectUnchanged();
                           },
                           [&] {
                             EXPECT_EQ(found, size);
                             ExpectUnchanged();
                           });
    return allocations;
  }

  void ExpectUnchanged() const {
    EXPECT_EQ(range_.Bytes(), run_.data());
    EXPECT_EQ(BytesOf(range_), kConfiguration);
  }

  ExactBytes run_{kConfiguration};
  CDescriptorRange range_ = run_.Range();
};

TEST_F(AllocationFailureOfARange, InTheListOfAllDescriptors) {
  EXPECT_GE(FailEachOfAList([this] { return range_.GetAll(); }, 9), 2u);
}

TEST_F(AllocationFailureOfARange, InTheListOfAType) {
  EXPECT_GE(FailEachOfAList([this] { return range_.GetAll(0x05); }, 3), 2u);
}

TEST_F(AllocationFailureOfARange, InTheSubRangesOfASelector) {
  RangePredicate const isInterface = IsFirstSetting;
  EXPECT_GE(FailEachOfAList([&] { return range_.GetSubRanges(CRangeSelector(isInterface)); }, 3),
            2u);
}

TEST_F(AllocationFailureOfARange, InTheSubRangesOfFindersThatAllocate) {
  // A capture that std::function keeps on the heap, so that each copy of a finder allocates.
  auto const finder = [interfaces = std::array<unsigned char, 64>{0x04}](
                          CDescriptorRangeIterator first, CDescriptorRangeIterator last) {
    while (first != last && first->bDescriptorType != interfaces[0]) {
      ++first;
    }
    return std::pair(true, first);
  };
  RangeFinder const start = finder;
  RangeFinder const finish = finder;
  EXPECT_GE(FailEachOfAList([&] { return range_.GetSubRanges(start, finish); }, 3), 2u);
  unsigned count = 0;
  EXPECT_GE(FailEachAllocation([&] { count = 99; }, [&] { count = range_.Count(start, finish); },
                               [&] { EXPECT_EQ(count, 99u); }, [&] { EXPECT_EQ(count, 3u); }),
            2u);
  CDescriptorRange first;
  EXPECT_GE(FailEachAllocation([&] { first = {}; }, [&] { first = range_.SubRange(start, finish); },
                               [&] { EXPECT_TRUE(first.IsEmpty()); },
                               [&] { EXPECT_EQ(first.Length(), 9 + 5 + 7); }),
            2u);
}

TEST_F(AllocationFailureOfARange, InTheListOfARunThatIsNotValid) {
  ExactBytes const broken(testing_support::Joined({kConfiguration, {0x09, 0x04}}));
  std::size_t found = 0;
  EXPECT_GE(FailEachAllocation(
                [&] {
                  found = 99;
                  Log().Clear();
                },
                [&] {
                  Log().Clear();
                  found = broken.Range().GetAll()->size();
                },
                // The line is out once the text is printed; nothing takes it back.
                [&] {
                  EXPECT_EQ(found, 99u);
                  EXPECT_LE(Log().Lines(), 1u);
                },
                [&] {
                  EXPECT_EQ(found, 9u);
                  EXPECT_EQ(Log().Lines(), 1u);
                  EXPECT_TRUE(Log().Text().starts_with("Descriptor Range is not valid.\n"));
                }),
            2u);
}

TEST_F(AllocationFailureOfARange, InADump) {
  InitUsbHelper(nullptr);
  ExactBytes const broken(testing_support::Joined({kConfiguration, {0x09, 0x04}}));
  for (bool const asCode : {false, true}) {
    SCOPED_TRACE(asCode);
    std::string const whole = *broken.Range().OutputString(asCode);
    bool isSame = false;
    EXPECT_GE(FailEachAllocation([&] { isSame = false; },
                                 [&] { isSame = *broken.Range().OutputString(asCode) == whole; },
                                 [&] { EXPECT_FALSE(isSame); }, [&] { EXPECT_TRUE(isSame); }),
              2u);
  }
}

TEST_F(AllocationFailureOfARange, InALoggedDescriptor) {
  InitUsbHelper(nullptr);
  ExactBytes const hub({0x09, 0x04, 0x00, 0x00, 0x01, 0x09, 0x00, 0x00, 0x00});
  std::string const dump = *hub.Range().OutputString(true);
  std::string const title(100, 't');
  EXPECT_GE(FailEachAllocation([this] { Log().Clear(); },
                               [&] {
                                 Log().Clear();
                                 TQHelper_LogDescriptor(hub.Range(), title.c_str());
                               },
                               // The title may be out already.
                               [&] { EXPECT_LE(Log().Lines(), 1u); },
                               [&] {
                                 EXPECT_EQ(Log().Lines(), 2u);
                                 EXPECT_EQ(Log().Text(), dump);
                               }),
            2u);
}

TEST_F(AllocationFailureOfARange, InTheListsOfAConfiguration) {
  CConfigDescriptorSet set;
  set.SetDescriptor(run_.data(), static_cast<unsigned short>(run_.size()));
  unsigned char const* const held = set.Bytes();
  EXPECT_GE(FailEachOfAList([&] { return set.GetInterfaceList(); }, 3), 2u);
  EXPECT_GE(FailEachOfAList([&] { return set.GetFunctionList(); }, 2), 2u);
  EXPECT_EQ(set.Bytes(), held);
  EXPECT_EQ(BytesOf(set), kConfiguration);
}

TEST_F(AllocationFailureOfARange, InTheCapabilitiesOfABos) {
  CBOSDescriptorSet set;
  std::size_t found = 0;
  EXPECT_GE(FailEachAllocation([&] { found = 99; },
                               [&] { found = set.GetDescriptorsOfType(0x02)->size(); },
                               [&] { EXPECT_EQ(found, 99u); }, [&] { EXPECT_EQ(found, 0u); }),
            2u);
}

// Descriptor sets.

template <typename Set>
struct OpenSet : Set {
  using Set::Set;
  using Set::SyncPointers;
};

template <typename Set>
struct OpenCompoundSet : OpenSet<Set> {
  using OpenSet<Set>::OpenSet;
  using Set::DeviceDescriptor;
  using Set::HasDeviceDescriptor;
  using Set::StoreDeviceDescriptor;
};

template <typename Set>
class AllocationFailureOfASet : public AllocationFailure {
 protected:
  void Fill() { set_.SetDescriptor(kept_.data(), static_cast<unsigned short>(kept_.size())); }

  // Lets each allocation of `change` fail; expects the set as it was, or with the other bytes.
  template <typename Change>
  std::size_t FailEachOfAChange(Change const& change, Bytes const& changed) {
    unsigned char const* held = nullptr;
    return FailEachAllocation(
        [&] {
          Fill();
          held = set_.Bytes();
        },
        change,
        [&] {
          EXPECT_EQ(set_.Bytes(), held);
          EXPECT_EQ(BytesOf(set_), kConfiguration);
        },
        [&] { EXPECT_EQ(BytesOf(set_), changed); });
  }

  ExactBytes kept_{kConfiguration};
  ExactBytes other_{kOther};
  Set set_;
};

using Sets = testing::Types<OpenSet<CDescriptorSet<TQ_USB_BOS_DESCRIPTOR>>,
                            OpenSet<CDescriptorSet<TQ_USB_CONFIGURATION_DESCRIPTOR>>,
                            OpenSet<CCompoundDescriptorSet<TQ_USB_BOS_DESCRIPTOR>>,
                            OpenSet<CCompoundDescriptorSet<TQ_USB_CONFIGURATION_DESCRIPTOR>>,
                            OpenSet<CBOSDescriptorSet>, OpenSet<CConfigDescriptorSet>>;
TYPED_TEST_SUITE(AllocationFailureOfASet, Sets);

TYPED_TEST(AllocationFailureOfASet, InFilling) {
  EXPECT_EQ(this->FailEachOfAChange([this] { this->set_.SetDescriptor(this->other_.data(), 18); },
                                    kOther),
            1u);
}

TYPED_TEST(AllocationFailureOfASet, InFillingFromItsOwnBytes) {
  EXPECT_EQ(
      this->FailEachOfAChange(
          [this] { this->set_.SetDescriptor(this->set_.Bytes() + this->set_.Length() - 14, 14); },
          Bytes(kConfiguration.end() - 14, kConfiguration.end())),
      1u);
}

TYPED_TEST(AllocationFailureOfASet, InResettingToOtherBytes) {
  EXPECT_EQ(this->FailEachOfAChange([this] { this->set_.Reset(this->other_.data(), 18); }, kOther),
            1u);
  EXPECT_EQ(this->FailEachOfAChange(
                [this] { this->set_.Reset(this->other_.At(0), this->other_.At(18)); }, kOther),
            1u);
}

TYPED_TEST(AllocationFailureOfASet, InCopyAssignment) {
  TypeParam source;
  source.SetDescriptor(this->other_.data(), 18);
  EXPECT_EQ(this->FailEachOfAChange([&] { this->set_ = source; }, kOther), 1u);
  EXPECT_EQ(BytesOf(source), kOther);
}

TYPED_TEST(AllocationFailureOfASet, InCopying) {
  this->Fill();
  std::optional<TypeParam> copy;
  EXPECT_EQ(FailEachAllocation([&] { copy.reset(); }, [&] { copy.emplace(this->set_); },
                               [&] { EXPECT_FALSE(copy.has_value()); },
                               [&] {
                                 EXPECT_EQ(BytesOf(*copy), kConfiguration);
                                 copy.reset();
                               }),
            1u);
  EXPECT_EQ(BytesOf(this->set_), kConfiguration);
}

// What needs no memory, and so cannot fail.

TYPED_TEST(AllocationFailureOfASet, HasNoPlaceInWhatEmptiesOrRepoints) {
  EXPECT_EQ(this->FailEachOfAChange([this] { this->set_.Reset(); }, {}), 0u);
  EXPECT_EQ(this->FailEachOfAChange([this] { this->set_.Reset(this->set_.Bytes() + 9, 8); },
                                    Bytes(kConfiguration.begin() + 9, kConfiguration.begin() + 17)),
            0u);
  EXPECT_EQ(this->FailEachOfAChange([this] { this->set_.SyncPointers(9); },
                                    Bytes(kConfiguration.begin(), kConfiguration.begin() + 9)),
            0u);
  EXPECT_EQ(this->FailEachOfAChange([this] { this->set_ = *&this->set_; }, kConfiguration), 0u);
  EXPECT_EQ(FailEachAllocation(
                Nothing, [] { TypeParam const empty; }, Nothing, Nothing),
            0u);
}

TYPED_TEST(AllocationFailureOfASet, HasNoPlaceInMoving) {
  std::optional<TypeParam> target;
  EXPECT_EQ(FailEachAllocation([&] { this->Fill(); },
                               [&] {
                                 // Not std::move: the source is looked at afterwards.
                                 target.emplace(static_cast<TypeParam&&>(this->set_));
                                 *target = static_cast<TypeParam&&>(this->set_);
                               },
                               Nothing, [&] { EXPECT_TRUE(this->set_.IsEmpty()); }),
            0u);
}

template <typename Set>
class AllocationFailureOfACompoundSet : public AllocationFailure {
 protected:
  static TQ_USB_DEVICE_DESCRIPTOR Device() {
    TQ_USB_DEVICE_DESCRIPTOR device;
    std::memcpy(&device, kOther.data(), sizeof(device));
    return device;
  }
};

using CompoundSets =
    testing::Types<OpenCompoundSet<CCompoundDescriptorSet<TQ_USB_BOS_DESCRIPTOR>>,
                   OpenCompoundSet<CCompoundDescriptorSet<TQ_USB_CONFIGURATION_DESCRIPTOR>>,
                   OpenCompoundSet<CBOSDescriptorSet>, OpenCompoundSet<CConfigDescriptorSet>>;
TYPED_TEST_SUITE(AllocationFailureOfACompoundSet, CompoundSets);

TYPED_TEST(AllocationFailureOfACompoundSet, KeepsTheDeviceDescriptor) {
  ExactBytes const kept(kConfiguration);
  ExactBytes const other(kBos);
  TypeParam set;
  TypeParam const source;
  auto const fill = [&] {
    set.SetDescriptor(kept.data(), static_cast<unsigned short>(kept.size()));
    set.StoreDeviceDescriptor(this->Device());
  };
  auto const expectKept = [&] {
    EXPECT_EQ(BytesOf(set), kConfiguration);
    EXPECT_TRUE(set.HasDeviceDescriptor());
    EXPECT_EQ(set.DeviceDescriptor().idVendor, 0x0424);
  };
  auto const expectForgotten = [&] { EXPECT_FALSE(set.HasDeviceDescriptor()); };
  EXPECT_EQ(FailEachAllocation(
                fill, [&] { set.Reset(other.data(), 12); }, expectKept, expectForgotten),
            1u);
  EXPECT_EQ(FailEachAllocation(
                fill, [&] { set.Reset(other.At(0), other.At(12)); }, expectKept, expectForgotten),
            1u);
  EXPECT_EQ(FailEachAllocation(
                fill, [&] { set = source; }, expectKept, expectForgotten),
            1u);
}

TEST_F(AllocationFailure, OfAConfigurationKeepsItsIndex) {
  ExactBytes const bytes(kConfiguration);
  CConfigDescriptorSet source(7);
  source.OtherSpeed(true);
  source.SetDescriptor(bytes.data(), static_cast<unsigned short>(bytes.size()));
  CConfigDescriptorSet set;
  EXPECT_EQ(FailEachAllocation([&] { set = CConfigDescriptorSet(1); }, [&] { set = source; },
                               [&] {
                                 EXPECT_EQ(set.ConfigIndex(), 1);
                                 EXPECT_FALSE(set.OtherSpeed());
                               },
                               [&] {
                                 EXPECT_EQ(set.ConfigIndex(), 7);
                                 EXPECT_TRUE(set.OtherSpeed());
                               }),
            1u);
}

// Selectors.

TEST_F(AllocationFailure, OfASelectorLeavesNothing) {
  RangePredicate predicate = IsFirstSetting;
  auto const heavy = [weight = std::array<char, 64>{}](CDescriptorRangeIterator first,
                                                       CDescriptorRangeIterator) {
    return std::pair(weight[0] == 0, first);
  };
  RangeFinder const start = heavy;
  RangeFinder const finish = heavy;
  function_head head;
  EXPECT_GE(FailEachAllocation(
                Nothing, [&] { CRangeSelector const selector(predicate); }, Nothing, Nothing),
            1u);
  EXPECT_GE(
      FailEachAllocation(
          Nothing, [&] { CRangeSelector const selector(predicate, predicate); }, Nothing, Nothing),
      1u);
  EXPECT_GE(FailEachAllocation(
                Nothing, [&] { CRangeSelector const selector(start, finish); }, Nothing, Nothing),
            2u);
  EXPECT_GE(FailEachAllocation(
                Nothing, [&] { function_selector const selector(&head); }, Nothing, Nothing),
            1u);
  EXPECT_GE(FailEachAllocation(
                Nothing, [] { capability_type_selector const selector(2); }, Nothing, Nothing),
            1u);
}

TEST_F(AllocationFailure, HasNoPlaceInCopyingSelectors) {
  RangePredicate const predicate = IsFirstSetting;
  CRangeSelector const selector(predicate);
  CRangeSelector target(CDescriptorRange::AlwaysTrue, CDescriptorRange::AlwaysTrue);
  EXPECT_EQ(FailEachAllocation(
                Nothing,
                [&] {
                  CRangeSelector const copy(selector);
                  target = copy;
                },
                Nothing, [&] { EXPECT_EQ(&target.FindStartFunc(), &selector.FindStartFunc()); }),
            0u);
}

// Formatting and the log.

TEST_F(AllocationFailure, OfAFormatKeepsTheBufferOfTheCaller) {
  std::string const longText(1000, 'x');
  CSimpleBuffer out;
  EXPECT_GE(FailEachAllocation(
                [&] {
                  out = CSimpleBuffer();
                  std::memcpy(out.GetBuffer(5), "kept", 5);
                },
                [&] { Format(out, kDefaultIndentation, "%s", longText.c_str()); },
                [&] { EXPECT_STREQ(out.Contents(), "kept"); },
                [&] { EXPECT_EQ(out.Contents(), longText); }),
            2u);
}

// On one thread: what was too long does not stay in the way of what is not.
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

TEST_F(AllocationFailure, OfALogLineWritesNone) {
  std::string const longText(1000, 'x');
  TQLogger& logger = CAppState::Log();
  CFormatInfo const look(TQColor{1, 2, 3, 4}, TEXT_STRENGTH_BOLD);
  EXPECT_GE(FailEachOfALine([&] { LogWrite(logger, TEST_STATUS_PLAIN, longText); }, longText), 1u);
  EXPECT_GE(
      FailEachOfALine([&] { LogWrite(logger, TEST_STATUS_PLAIN, LOG_LEVEL_4, look, longText); },
                      longText),
      1u);
  EXPECT_GE(FailEachOfALine(
                [&] { LogFormatted(logger, TEST_STATUS_PLAIN, "%s", longText.c_str()); }, longText),
            2u);
  EXPECT_GE(FailEachOfALine(
                [&] {
                  LogFormatted(logger, TEST_STATUS_PLAIN, LOG_LEVEL_4, look, "%s",
                               longText.c_str());
                },
                longText),
            2u);
}

// The count of the frames to be skipped belongs to the line that was not written.
TEST_F(AllocationFailure, OfALogLineLeavesTheStackDepth) {
  ExactBytes const broken({0x00, 0x02});
  auto const depthBehind = [this](auto const& write) {
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
  EXPECT_EQ(depthBehind([&] { LogWrite(logger, TEST_STATUS_PLAIN, "a"); }), 0u);
  EXPECT_EQ(depthBehind([&] { LogFormatted(logger, TEST_STATUS_PLAIN, "%s", "a"); }), 0u);
  EXPECT_EQ(
      depthBehind([&] { LogFormatted(logger, TEST_STATUS_PLAIN, LOG_LEVEL_4, look, "%s", "a"); }),
      0u);
  EXPECT_EQ(depthBehind([&] { broken.Range().Count(); }), 0u);
}

TEST_F(AllocationFailure, OfALoggedAssertionWritesNone) {
  TQAssertionNumbers const numbers[] = {{{"TD", "9", "4", "1"}}};
  std::string const found(1000, 'f');
  char const* const messages[] = {found.c_str()};
  EXPECT_GE(FailEachOfALine([&] { LogAssert(TEST_STATUS_FAILURE, 0, numbers, messages); },
                            "(TD: 9.4.1) " + found),
            2u);
}

TEST_F(AllocationFailure, OfAStatusTextWritesNone) {
  EXPECT_GE(
      FailEachOfALine(
          [] { EXPECT_STREQ(GetStatusDetail(static_cast<RETURN_CODE>(0x80004003), nullptr), ""); },
          "No status text discovered for status: 0x80004003"),
      1u);
  EXPECT_GE(
      FailEachOfALine([] { PrintErrorDetail(RC_STALL_ERROR, TEST_STATUS_PLAIN); }, "Stall error."),
      1u);
}

TEST_F(AllocationFailure, OfARaisedMessageIsRaisedInstead) {
  std::string const longText(1000, 'x');
  std::size_t length = 0;
  auto const expectRaised = [&](auto const& raise) {
    return FailEachAllocation([&] { length = 0; },
                              [&] {
                                try {
                                  raise();
                                } catch (TQRunTimeException const& raised) {
                                  length = std::string_view(raised.what()).size();
                                }
                              },
                              [&] { EXPECT_EQ(length, 0u); }, [&] { EXPECT_EQ(length, 1000u); });
  };
  EXPECT_GE(expectRaised([&] { Raise(TEST_STATUS_INTERNAL_ERROR, "%s", longText.c_str()); }), 2u);
  EXPECT_GE(expectRaised([&] { RaiseMessage(TEST_STATUS_INTERNAL_ERROR, longText); }), 2u);
}

// The helper.

TEST_F(AllocationFailure, OfANewHelperKeepsTheOneBefore) {
  UsbTqPointers before;
  UsbTqPointers after;
  EXPECT_GE(FailEachAllocation([&] { InitUsbHelper(&before); }, [&] { InitUsbHelper(&after); },
                               [&] { EXPECT_EQ(UsbHelper().GetPIO(), &before); },
                               [&] { EXPECT_EQ(UsbHelper().GetPIO(), &after); }),
            1u);
}

TEST_F(AllocationFailure, OfTheFirstHelperRegistersNone) {
  EXPECT_GE(FailEachAllocation([] { CAppState::Helper(nullptr); }, [] { InitUsbHelper(nullptr); },
                               [] { EXPECT_FALSE(UsbHelperCreated()); },
                               [] { EXPECT_TRUE(UsbHelperCreated()); }),
            1u);
}

TEST_F(AllocationFailure, HasNoPlaceInFindingTheHelper) {
  InitUsbHelper(nullptr);
  EXPECT_EQ(FailEachAllocation(
                Nothing,
                [] {
                  static_cast<void>(UsbHelper());
                  EXPECT_TRUE(UsbHelperCreated());
                },
                Nothing, Nothing),
            0u);
}

TEST_F(AllocationFailure, OfAValidationTakesNoDevice) {
  InitUsbHelper(nullptr);
  std::string_view const text =
      "Invalid USB Test input:  test services: NULL, device under test: NULL.";
  EXPECT_GE(
      FailEachOfALine(
          [] { EXPECT_FALSE(UsbHelper().ValidatePointers(false, TEST_STATUS_FAILURE)); }, text),
      2u);
  EXPECT_GE(
      FailEachOfALine(
          [] { EXPECT_FALSE(UsbHelper().ValidatePointersDUTOptional(false, TEST_STATUS_FAILURE)); },
          "Invalid USB Test input:  test services: NULL."),
      2u);
  CDevice device;
  CTestServices services;
  CDevice* foundDevice = &device;
  CTestServices* foundServices = &services;
  EXPECT_GE(FailEachAllocation(
                [&] {
                  foundDevice = &device;
                  foundServices = &services;
                },
                [&] {
                  UsbHelper().InitializePointers(foundServices, foundDevice, false,
                                                 TEST_STATUS_FAILURE);
                },
                [&] {
                  EXPECT_EQ(foundDevice, nullptr);
                  EXPECT_EQ(foundServices, nullptr);
                },
                Nothing),
            2u);
}

TEST_F(AllocationFailure, OfADiagnosticLeavesNothing) {
  InitUsbHelper(nullptr);
  EXPECT_GE(FailEachAllocation(
                Nothing,
                [] {
                  UsbHelper().StallExpectedDiagnostic(RC_TRANSFER_ERROR, TEST_STATUS_PLAIN);
                  UsbHelper().StallExpectedDiagnostic(RC_STALL_ERROR, TEST_STATUS_PLAIN);
                  UsbHelper().ValidatePointerFail(TEST_STATUS_FAILURE);
                  CUsbHelper::OutputProgressMarker(9, 10, "transfer", 1);
                },
                Nothing, Nothing),
            2u);
}

TEST_F(AllocationFailure, OfALabelLeavesNothing) {
  ExactBytes const bytes(kConfiguration);
  for (unsigned const offset : {0u, 9u, 17u, 26u, 31u, 38u}) {
    SCOPED_TRACE(offset);
    auto const label = [&] {
      return CUsbHelper::GenerateDescriptorLabel(*bytes.Descriptor(offset), nullptr,
                                                 TQE_USB_DEVICE_SPEED_UNKNOWN);
    };
    std::string const whole = label();
    bool isSame = false;
    FailEachAllocation([&] { isSame = false; }, [&] { isSame = label() == whole; },
                       [&] { EXPECT_FALSE(isSame); }, [&] { EXPECT_TRUE(isSame); });
  }
}

// Debug capabilities and settings.

TEST_F(AllocationFailure, OfTheDebugCapabilitiesMakesNone) {
  EXPECT_GE(FailEachAllocation([] { CUSBDebugCapabilities::CleanupUsbDebugCapabilities(); },
                               [] { CUSBDebugCapabilities::SetupUsbDebugCapabilities(); },
                               [] { EXPECT_FALSE(DebugCapAllDescHardCoded()); },
                               [] { EXPECT_FALSE(GetUsbDebugCaps().NoUsbInteraction()); }),
            1u);
  EXPECT_GE(FailEachAllocation([] { CUSBDebugCapabilities::CleanupUsbDebugCapabilities(); },
                               [] { CUSBDebugCapabilitiesJanitor const janitor(true); }, Nothing,
                               Nothing),
            1u);
}

TEST_F(AllocationFailure, HasNoPlaceInTheSwitchesOfACustomDescriptor) {
  standalone::SetSetting("UseCustomDescriptor", "1");
  EXPECT_EQ(FailEachAllocation(
                Nothing,
                [] {
                  EXPECT_TRUE(UseCustomConfigDescriptor());
                  EXPECT_FALSE(IsBinaryCustomConfigDescriptorFile());
                },
                Nothing, Nothing),
            0u);
}

// Driver events.

TEST_F(AllocationFailure, OfADriverEventsRecordLeavesNothing) {
  std::optional<CDriverEvent> event;
  EXPECT_EQ(FailEachAllocation([&] { event.reset(); }, [&] { event.emplace(); },
                               [&] { EXPECT_FALSE(event.has_value()); }, [&] { event.reset(); }),
            1u);
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

TEST_F(AllocationFailure, OfAWaitOnSeveralTakesNoSignal) {
  CDriverEvent first(TQE_EVENT_TYPE_DEFAULT);
  CDriverEvent second(TQE_EVENT_TYPE_DEFAULT);
  std::vector<CDriverEvent*> const events = {&first, &second};
  RETURN_CODE code = RC_OPERATION_FAILED;
  EXPECT_EQ(FailEachAllocation(
                [&] {
                  second.SetEvent();
                  code = RC_OPERATION_FAILED;
                },
                [&] { code = CDriverEvent::WaitOnMultipleEvents(events, 0, WAIT_FOR_ANY_EVENT); },
                [&] { EXPECT_EQ(code, RC_OPERATION_FAILED); },
                [&] {
                  EXPECT_EQ(code, 1u);
                  EXPECT_EQ(second.WaitOnEvent(0), RC_WAIT_TIMEOUT);
                }),
            2u);
}

TEST_F(AllocationFailure, OfALoggedWaitTakesTheSignalAndWritesNone) {
  standalone::SetLogVerbosity(LOG_LEVEL_6);
  COsSpecificDriverEvent event(TQE_EVENT_TYPE_DEFAULT);
  // The signal is taken before the line is written, so the next try finds none.
  EXPECT_GE(FailEachAllocation(
                [&] {
                  Log().Clear();
                  event.SetEvent();
                },
                [&] { static_cast<void>(event.WaitOnEvent(0)); },
                [&] { EXPECT_EQ(Log().Lines(), 0u); }, [&] { EXPECT_EQ(Log().Lines(), 1u); }),
            1u);
}

class Memory : public AllocationFailure {};

TEST_F(Memory, IsFreedByItsLastOwner) {
  InitUsbHelper(nullptr);
  ExactBytes const configuration(kConfiguration);
  auto const useAll = [&] {
    CConfigDescriptorSet set;
    set.SetDescriptor(configuration.data(), static_cast<unsigned short>(configuration.size()));
    CConfigDescriptorSet copy(set);
    copy = set;
    copy.SetDescriptor(set.Bytes() + 9, 8);
    CConfigDescriptorSet const target(std::move(copy));
    CDescriptorRange::RangeVector const functions = set.GetFunctionList();
    CDescriptorRange::RangeVector const all = set.GetAll();
    CDescriptorRange::Text const text = set.OutputString(true);
    RangePredicate const always = [](CDescriptorRangeIterator const&) { return true; };
    CRangeSelector const selector(always);
    CRangeSelector shared(selector);
    shared = CRangeSelector(CapabilityFinder(0x02), CDescriptorRange::AlwaysTrue);
    CDriverEvent const event(TQE_EVENT_TYPE_DEFAULT);
  };
  // The first time also makes what the program keeps to its end.
  EXPECT_EQ(RunOnNewThread(useAll), Ending::kReturned);
  std::size_t const before = OutstandingAllocations();
  EXPECT_EQ(RunOnNewThread(useAll), Ending::kReturned);
  EXPECT_EQ(OutstandingAllocations(), before);
}

// Vendor names.

class AllocationFailureOfAVendorName : public testing_support::VendorListTest {};

TEST_F(AllocationFailureOfAVendorName, KeepsTheBuffer) {
  standalone::RemoveAllLogSinks();
  SaveList(R"([{"name":"A company whose name is long enough to be on the heap","field_vid":"1234"},
               7,
               {"name":"Another one","field_vid":"no number at all, and a long text"},
               {"name":"Wanted, and long enough too, Incorporated","field_vid":"4660"}])");
  std::array<char, 64> buffer{};
  RETURN_CODE code = RC_SUCCESS;
  EXPECT_GE(FailEachAllocation(
                [&] {
                  buffer.fill('\x5A');
                  code = RC_WAIT_ERROR;
                },
                [&] { code = GetVendorName(4660, buffer.data(), 64); },
                [&] {
                  EXPECT_EQ(code, RC_WAIT_ERROR);
                  EXPECT_EQ(std::ranges::count(buffer, '\x5A'), 64);
                },
                [&] {
                  EXPECT_EQ(code, RC_SUCCESS);
                  EXPECT_STREQ(buffer.data(), "Wanted, and long enough too, Incorporated");
                }),
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

#endif

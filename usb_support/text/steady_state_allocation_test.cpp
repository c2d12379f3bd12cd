// What allocates nothing once it is warm.
#include <tests/support/allocation_counter.h>

#if defined(USB_SUPPORT_TEST_COUNTS_ALLOCATIONS)

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

#include <tests/support/exact_bytes.h>
#include <tests/support/suite_test.h>
#include <usb_support/descriptors/descriptor_type_finder.h>
#include <usb_support/descriptors/range_diagnosis.h>
#include <usb_support/status/status_text.h>
#include <usb_support/text/formatting.h>

namespace usb_support {
namespace {

using testing_support::AllocationsOf;
using testing_support::Bytes;
using testing_support::ExactBytes;
using testing_support::SteadyAllocationsOf;

class NullSink : public standalone::LogSink {
 public:
  void Take(standalone::LogCall const& call) override { characters_ += call.text.size(); }

  std::size_t Characters() const { return characters_; }

 private:
  std::size_t characters_ = 0;
};

// A configuration with two interfaces, each with two endpoints.
Bytes const kRun = {0x09, 0x02, 0x37, 0x00, 0x02, 0x01, 0x00, 0x80, 0x32,  //
                    0x09, 0x04, 0x00, 0x00, 0x02, 0x08, 0x06, 0x50, 0x00,  //
                    0x07, 0x05, 0x81, 0x02, 0x00, 0x02, 0x00,              //
                    0x07, 0x05, 0x02, 0x02, 0x00, 0x02, 0x00,              //
                    0x09, 0x04, 0x01, 0x00, 0x02, 0xFF, 0x00, 0x00, 0x00,  //
                    0x07, 0x05, 0x83, 0x02, 0x00, 0x02, 0x00,              //
                    0x07, 0x05, 0x04, 0x02, 0x00, 0x02, 0x00};

class SteadyState : public testing_support::SuiteTest {
 protected:
  SteadyState() {
    standalone::RemoveAllLogSinks();
    standalone::AddLogSink(sink_);
  }

  std::shared_ptr<NullSink> sink_ = std::make_shared<NullSink>();
  ExactBytes run_{kRun};
};

// Without this the other tests would prove nothing.
TEST_F(SteadyState, AllocationsOfTheLibraryAreSeen) {
  CDescriptorRange const range = run_.Range();
  EXPECT_GT(AllocationsOf([&range] { static_cast<void>(range.GetAll()); }), 0u);
  EXPECT_GT(AllocationsOf([] { CSimpleBuffer().GetBuffer(1000); }), 0u);
}

TEST_F(SteadyState, FormatAllocatesNothing) {
  std::string const longText(1000, 'x');
  CSimpleBuffer out;
  EXPECT_EQ(SteadyAllocationsOf([&] {
              Format(out, kDefaultIndentation, "%s", longText.c_str());
              Format(out, kDefaultIndentation, "%s", "short");
              Format(out, Indentation{' ', 8}, "0x%08X", RC_STALL_ERROR);
              Format(out, kDefaultIndentation, "%s %u %02X %d %s", "a", 1u,
                     static_cast<unsigned char>(2), 3, "b");
              Format(out, kDefaultIndentation, "none");
            }),
            0u);
  EXPECT_STREQ(out.Contents(), "none");
}

TEST_F(SteadyState, WritingToTheLogAllocatesNothing) {
  std::string const longText(1000, 'x');
  EXPECT_EQ(SteadyAllocationsOf([&] {
              TQLogger& logger = CAppState::Log();
              LogFormatted(logger, TEST_STATUS_PLAIN, "%s", longText.c_str());
              LogFormatted(logger, TEST_STATUS_FAILURE, "%s %u", "a", 1u);
              LogFormatted(logger, TEST_STATUS_PLAIN, LOG_LEVEL_4,
                           CFormatInfo(TQColor{1, 2, 3, 4}, TEXT_STRENGTH_BOLD), "%u", 7u);
              LogWrite(logger, TEST_STATUS_PLAIN, longText);
              LogWrite(logger, TEST_STATUS_INFORMATION, "a%%b");
            }),
            0u);
  EXPECT_EQ(sink_->Characters(), 101u * (1000 + 3 + 1 + 1000 + 3));
}

TEST_F(SteadyState, ProgressMarkersAllocateNothing) {
  EXPECT_EQ(SteadyAllocationsOf([] { CUsbHelper::OutputProgressMarker(9, 10, "transfer", 1); }),
            0u);
}

TEST_F(SteadyState, EachThreadAllocatesItsBufferOnce) {
  std::size_t first = 0;
  std::size_t later = 0;
  std::thread([&] {
    auto const write = [] { LogFormatted(CAppState::Log(), TEST_STATUS_PLAIN, "%s", "a"); };
    first = AllocationsOf(write);
    later = SteadyAllocationsOf(write);
  }).join();
  EXPECT_GT(first, 0u);
  EXPECT_EQ(later, 0u);
}

TEST_F(SteadyState, SteppingAllocatesNothing) {
  CDescriptorRange const range = run_.Range();
  std::size_t steps = 0;
  EXPECT_EQ(SteadyAllocationsOf([&] {
              for (CDescriptorRangeIterator it = range.begin(); it != range.end(); ++it) {
                ++steps;
              }
              CDescriptorRangeIterator it = range.begin();
              it++;
              steps += it + 6 == range.end() ? 1u : 0u;
              steps += range.ValidUntil() == range.end() ? 1u : 0u;
            }),
            0u);
  EXPECT_EQ(steps, 101u * 9);
}

TEST_F(SteadyState, CountingDescriptorsAllocatesNothing) {
  CDescriptorRange const range = run_.Range();
  unsigned all = 0;
  unsigned endpoints = 0;
  EXPECT_EQ(SteadyAllocationsOf([&] {
              all += range.Count();
              endpoints += range.Count(static_cast<unsigned char>(0x05));
            }),
            0u);
  EXPECT_EQ(all, 101u * 7);
  EXPECT_EQ(endpoints, 101u * 4);
  CRangeSelector const selector(DescriptorType(0x05), CDescriptorRange::AlwaysTrue);
  EXPECT_EQ(SteadyAllocationsOf([&] {
              endpoints += range.Count(
                  [](CDescriptorRangeIterator const& it) { return it->bDescriptorType == 0x05; });
              endpoints += range.Count(DescriptorType(0x05), CDescriptorRange::AlwaysTrue);
              endpoints += range.Count(selector);
            }),
            0u);
  EXPECT_EQ(endpoints, 101u * 4 * 4);
  EXPECT_EQ(sink_->Characters(), 0u);
}

TEST_F(SteadyState, StatusTextsAllocateNothing) {
  std::size_t characters = 0;
  EXPECT_EQ(SteadyAllocationsOf([&] {
              for (RETURN_CODE const code : {RC_SUCCESS, RC_SUCCESS_WITH_WARNING, RC_STALL_ERROR,
                                             RC_INCORRECT_DRIVER_VERSION}) {
                characters += std::string_view(GetStatusDetail(code, nullptr)).size();
              }
            }),
            0u);
  EXPECT_EQ(characters, 101u * (7 + 22 + 11 + 24));
  EXPECT_EQ(sink_->Characters(), 0u);
  EXPECT_EQ(SteadyAllocationsOf([] {
              GetStatusDetail(static_cast<RETURN_CODE>(0x80004003), nullptr);
              PrintErrorDetail(RC_STALL_ERROR, TEST_STATUS_PLAIN);
            }),
            0u);
  EXPECT_EQ(sink_->Characters(), 101u * (48 + 12));
}

TEST_F(SteadyState, DiagnosingARunAllocatesNothing) {
  CDescriptorRange const range = run_.Range();
  ExactBytes const broken(testing_support::Joined({kRun, {0x09, 0x04}}));
  CDescriptorRange const brokenRange = broken.Range();
  unsigned complete = 0;
  unsigned pastEnd = 0;
  EXPECT_EQ(SteadyAllocationsOf([&] {
              complete += DiagnoseRun(range).reason == RunEnd::kComplete ? 1u : 0u;
              pastEnd += DiagnoseRun(brokenRange).reason == RunEnd::kPastEnd ? 1u : 0u;
            }),
            0u);
  EXPECT_EQ(complete, 101u);
  EXPECT_EQ(pastEnd, 101u);
}

TEST_F(SteadyState, DebugCapabilitiesAnswerWithoutAllocating) {
  CUSBDebugCapabilities::SetupUsbDebugCapabilities();
  EXPECT_EQ(AllocationsOf([] {
              static_cast<void>(DebugCapNeedFakeDescriptor(0x01));
              static_cast<void>(DebugCapGetFakeDesc(0x0F, 0, 0));
            }),
            0u);
}

#if defined(USB_SUPPORT_TEST_FAILS_ALLOCATIONS)

TEST_F(SteadyState, DebugCapabilitiesThatFindNoMemoryDoNotExist) {
  EXPECT_TRUE(
      testing_support::RunsOutOfMemory([] { CUSBDebugCapabilities::SetupUsbDebugCapabilities(); }));
  EXPECT_RUN_TIME_EXCEPTION(static_cast<void>(GetUsbDebugCaps()),
                            "Internal Error: NULL USBDebugCapabilities object.", 0x40000000u);
  CUSBDebugCapabilities::SetupUsbDebugCapabilities();
  EXPECT_FALSE(GetUsbDebugCaps().NoUsbInteraction());
}

#endif

}  // namespace
}  // namespace usb_support

#endif

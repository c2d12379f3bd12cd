// Operations that allocate nothing once warm.
#include <tests/support/allocation_counter.h>

#if defined(USB_SUPPORT_TEST_COUNTS_ALLOCATIONS)

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>

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

class SteadyState : public testing_support::SuiteTest {
 protected:
  SteadyState() {
    standalone::RemoveAllLogSinks();
    standalone::AddLogSink(sink_);
  }

  std::shared_ptr<NullSink> sink_ = std::make_shared<NullSink>();
  // A configuration with two interfaces, each with two endpoints.
  Bytes const bytes_ = testing_support::Hex(
      "09 02 37 00 02 01 00 80 32  09 04 00 00 02 08 06 50 00  07 05 81 02 00 02 00"
      "07 05 02 02 00 02 00  09 04 01 00 02 FF 00 00 00  07 05 83 02 00 02 00"
      "07 05 04 02 00 02 00");
  ExactBytes run_{bytes_};
};

// Without this the other tests would prove nothing.
TEST_F(SteadyState, AllocationsOfTheLibraryAreSeen) {
  CDescriptorRange const range = run_.Range();
  EXPECT_GT(AllocationsOf([&range] { static_cast<void>(range.GetAll()); }), 0u);
  EXPECT_GT(AllocationsOf([] { CSimpleBuffer().GetBuffer(1000); }), 0u);
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

TEST_F(SteadyState, NothingIsAllocated) {
  std::string const longText(1000, 'x');
  ExactBytes const broken(testing_support::Joined({bytes_, {0x09, 0x04}}));
  CDescriptorRange const range = run_.Range();
  CRangeSelector const selector(DescriptorType(0x05), CDescriptorRange::AlwaysTrue);
  CFormatInfo const look(TQColor{1, 2, 3, 4}, TEXT_STRENGTH_BOLD);
  TQLogger& logger = CAppState::Log();
  CUSBDebugCapabilities::SetupUsbDebugCapabilities();
  CSimpleBuffer out;
  std::pair<char const*, std::function<void()>> const actions[] = {
      {"a long text", [&] { Format(out, kDefaultIndentation, "%s", longText.c_str()); }},
      {"a short one", [&] { Format(out, kDefaultIndentation, "none"); }},
      {"indented",
       [&] {
         Format(out, Indentation{' ', 8}, "0x%08X", RC_STALL_ERROR);
       }},
      {"formatted", [&] { LogFormatted(logger, TEST_STATUS_PLAIN, "%s", longText.c_str()); }},
      {"with a look",
       [&] { LogFormatted(logger, TEST_STATUS_PLAIN, LOG_LEVEL_4, look, "%u", 7u); }},
      {"passed through", [&] { LogWrite(logger, TEST_STATUS_PLAIN, longText); }},
      {"a pair", [&] { LogWrite(logger, TEST_STATUS_INFORMATION, "a%%b"); }},
      {"progress", [] { CUsbHelper::OutputProgressMarker(9, 10, "transfer", 1); }},
      {"steps",
       [&] {
         CDescriptorRangeIterator it = range.begin();
         it++;
         ++it;
         static_cast<void>(it + 5 == range.end());
         static_cast<void>(range.ValidUntil());
       }},
      {"count", [&] { static_cast<void>(range.Count()); }},
      {"count of a type", [&] { static_cast<void>(range.Count(0x05)); }},
      {"count by predicate",
       [&] {
         static_cast<void>(range.Count(
             [](CDescriptorRangeIterator const& it) { return it->bDescriptorType == 0x05; }));
       }},
      {"count by finders",
       [&] { static_cast<void>(range.Count(DescriptorType(0x05), CDescriptorRange::AlwaysTrue)); }},
      {"count by selector", [&] { static_cast<void>(range.Count(selector)); }},
      {"status text", [] { static_cast<void>(GetStatusDetail(RC_STALL_ERROR, nullptr)); }},
      {"unknown status",
       [] { static_cast<void>(GetStatusDetail(static_cast<RETURN_CODE>(0x80004003), nullptr)); }},
      {"error", [] { PrintErrorDetail(RC_STALL_ERROR, TEST_STATUS_PLAIN); }},
      {"diagnosis", [&] { static_cast<void>(DiagnoseRun(range)); }},
      {"diagnosis of a fault", [&] { static_cast<void>(DiagnoseRun(broken.Range())); }},
      {"debug capabilities",
       [] {
         static_cast<void>(DebugCapNeedFakeDescriptor(0x01));
         static_cast<void>(DebugCapGetFakeDesc(0x0F, 0, 0));
       }},
  };
  for (auto const& [name, action] : actions) {
    EXPECT_EQ(SteadyAllocationsOf(action), 0u) << name;
  }
  EXPECT_GT(sink_->Characters(), 2 * 101u * 1000) << "the lines were written";
}

}  // namespace
}  // namespace usb_support

#endif

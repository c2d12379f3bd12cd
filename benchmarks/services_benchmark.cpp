// Messages, status texts and waits, each compared with the bare call or, for the texts, with one
// code repeated: the ratio shows the cost of the order, which reveals a text that is found by a
// chain of branches.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <benchmarks/null_sink.h>
#include <benchmarks/rows.h>
#include <benchmarks/side_by_side.h>
#include <usb_support/events/driver_event.h>
#include <usb_support/platform/events.h>
#include <usb_support/status/status_text.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/text/formatting.h>

namespace usb_support::benchmarks {
namespace {

constexpr double kGoal = 2.00;

constexpr char kWait[] =
    "%s returned in time! (this : 0x%0*X, m_StatusBuffer : 0x%08X: timeout: %u ms)\n";
constexpr char kCode[] = "No status text discovered for status: 0x%08X";
constexpr char kStall[] = "Request returned a STALL (as expected).";
constexpr char const* kWaitName = "COsSpecificDriverEvent::WaitOnEvent";

// The arguments of a message are not known at compile time.
struct Arguments {
  unsigned address = 0x7F01A2C0;
  unsigned status = 0x01000200;
  unsigned timeout = 5000;
  unsigned code = 0x80008FFF;
  std::string stall = kStall;
};

Arguments& Known() {
  static Arguments arguments;
  benchmark::DoNotOptimize(&arguments);
  return arguments;
}

unsigned BareWait() {
  Arguments const& known = Known();
  char text[512];
  int const length = std::snprintf(text, sizeof(text), kWait, kWaitName, 16, known.address,
                                   known.status, known.timeout);
  benchmark::DoNotOptimize(&text);
  return static_cast<unsigned>(length);
}

unsigned BareCode() {
  char text[512];
  int const length = std::snprintf(text, sizeof(text), kCode, Known().code);
  benchmark::DoNotOptimize(&text);
  return static_cast<unsigned>(length);
}

unsigned BareMessage() {
  char text[512];
  int const length = std::snprintf(text, sizeof(text), "%s", Known().stall.c_str());
  benchmark::DoNotOptimize(&text);
  return static_cast<unsigned>(length);
}

void CheckTexts() {
  Arguments const& known = Known();
  char text[512];
  std::snprintf(text, sizeof(text), kWait, kWaitName, 16, known.address, known.status,
                known.timeout);
  CSimpleBuffer formatted;
  Format(formatted, Indentation{}, kWait, kWaitName, 16, known.address, known.status,
         known.timeout);
  if (std::string_view(text) != formatted.Contents()) {
    throw std::logic_error("The baseline of the formatting service makes another text.");
  }
}

// Characters of the line that one action writes to the log.
template <typename Action>
auto Written(std::shared_ptr<NullSink> const& sink, Action action) {
  return [sink, action] {
    std::size_t const before = sink->Characters();
    action();
    return static_cast<unsigned>(sink->Characters() - before);
  };
}

Row RowOf(char const* operation, char const* input, double goal = kGoal) {
  return {.operation = operation, .input = input, .mostRatio = goal, .allocatesNothing = true};
}

constexpr std::size_t kCalls = 4096;
constexpr double kMostNs = 5;

// More than a sequence of branches that a core can learn.
std::vector<RETURN_CODE> KnownCodesInRandomOrder() {
  constexpr char kUnknown[] = "unknown";
  std::vector<RETURN_CODE> known;
  for (std::uint32_t code = 0x80000000; code < 0x80009000; ++code) {
    if (GetStatusDetail(static_cast<RETURN_CODE>(code), kUnknown) != kUnknown) {
      known.push_back(static_cast<RETURN_CODE>(code));
    }
  }
  std::mt19937 engine(1);
  std::vector<RETURN_CODE> codes;
  while (codes.size() < kCalls) {
    codes.push_back(known[engine() % known.size()]);
  }
  return codes;
}

constexpr double kWaitGoal = 1.10;
constexpr unsigned kLimitMs = 1000;

}  // namespace

void AddMessageRows() {
  CheckTexts();
  auto const sink = std::make_shared<NullSink>();
  standalone::AddLogSink(sink);
  auto const out = std::make_shared<CSimpleBuffer>();
  Compare(
      RowOf("Format", "5 arguments"),
      [out] {
        Arguments const& known = Known();
        Format(*out, Indentation{}, kWait, kWaitName, 16, known.address, known.status,
               known.timeout);
        benchmark::DoNotOptimize(out->Contents());
        return static_cast<unsigned>(out->Size() - 1);
      },
      BareWait);
  Compare(
      RowOf("Format", "1 argument"),
      [out] {
        Format(*out, Indentation{}, kCode, Known().code);
        benchmark::DoNotOptimize(out->Contents());
        return static_cast<unsigned>(out->Size() - 1);
      },
      BareCode);
  Compare(RowOf("log write, formatted", "5 arguments"),
          Written(sink,
                  [] {
                    Arguments const& known = Known();
                    LogFormatted(CAppState::Log(), TEST_STATUS_INFORMATION, kWait, kWaitName, 16,
                                 known.address, known.status, known.timeout);
                  }),
          BareWait);
  Compare(
      RowOf("log write, formatted", "1 argument"),
      Written(sink,
              [] { LogFormatted(CAppState::Log(), TEST_STATUS_INFORMATION, kCode, Known().code); }),
      BareCode);
  Compare(RowOf("log write, finished text", "39 characters"),
          Written(sink, [] { LogWrite(CAppState::Log(), TEST_STATUS_INFORMATION, Known().stall); }),
          BareMessage);
}

void AddStatusRows() {
  std::vector<RETURN_CODE> const codes = KnownCodesInRandomOrder();
  auto const hasText = [](RETURN_CODE code) {
    return GetStatusDetail(code, nullptr) != nullptr ? 1u : 0u;
  };
  Compare({.operation = "GetStatusDetail",
           .input = "known codes in random order, compared with one code",
           .operations = kCalls,
           .mostNs = kMostNs,
           .allocatesNothing = true},
          SumOver(codes, hasText),
          SumOver(std::vector<RETURN_CODE>(kCalls, codes.front()), hasText));
}

void AddEventRows() {
  auto const event = std::make_shared<CDriverEvent>();
  event->InitializeManualReset(TQE_EVENT_TYPE_DEFAULT);
  event->SetEvent();
  platform::EventHandle const handle = platform::MakeEvent(true);
  platform::SignalEvent(handle);
  Compare(
      {.operation = "WaitOnEvent",
       .input = "a signalled event",
       .mostRatio = kWaitGoal,
       .allocatesNothing = true},
      [event] { return static_cast<unsigned>(event->WaitOnEvent(kLimitMs)); },
      [handle] { return static_cast<unsigned>(platform::WaitForOne(handle, kLimitMs)); });
}

}  // namespace usb_support::benchmarks

// WaitOnEvent on a signalled event beside the bare platform call.
#include <memory>

#include <benchmarks/rows.h>
#include <benchmarks/side_by_side.h>
#include <usb_support/events/driver_event.h>
#include <usb_support/platform/events.h>

namespace usb_support::benchmarks {
namespace {

constexpr double kGoal = 1.10;
constexpr unsigned kLimitMs = 1000;

}  // namespace

void AddEventRows() {
  auto const event = std::make_shared<CDriverEvent>();
  event->InitializeManualReset(TQE_EVENT_TYPE_DEFAULT);
  event->SetEvent();
  platform::EventHandle const handle = platform::MakeEvent(true);
  platform::SignalEvent(handle);
  Compare(
      {.operation = "WaitOnEvent",
       .input = "a signalled event",
       .mostRatio = kGoal,
       .allocatesNothing = true},
      [event] { return static_cast<unsigned>(event->WaitOnEvent(kLimitMs)); },
      [handle] { return static_cast<unsigned>(platform::WaitForOne(handle, kLimitMs)); });
}

}  // namespace usb_support::benchmarks

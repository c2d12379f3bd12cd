// Runs the library's main operations under callgrind, each so often that its start does not matter,
// and lets callgrind write the cost of each. See scripts/count-instructions.
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include <valgrind/callgrind.h>

#include <benchmarks/inputs.h>
#include <benchmarks/null_sink.h>
#include <benchmarks/vendor_list_file.h>
#include <usb_support/descriptor_sets/config_descriptor_set.h>
#include <usb_support/descriptors/read_record.h>
#include <usb_support/events/driver_event.h>
#include <usb_support/helper/usb_helper.h>
#include <usb_support/status/status_text.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/text/formatting.h>
#include <usb_support/vendor_names/vendor_name.h>

namespace usb_support::benchmarks {
namespace {

constexpr int kRuns = 100;
constexpr std::size_t kBytes = 4096;
constexpr int kVendors = 1000;

// The results are used, because otherwise the compiler could remove the operations.
volatile std::size_t used = 0;

template <typename Action>
void Count(char const* operation, Action const& action) {
  for (int warm = 0; warm < 2; ++warm) {
    used = used + action();
  }
  CALLGRIND_ZERO_STATS;
  for (int run = 0; run < kRuns; ++run) {
    used = used + action();
  }
  CALLGRIND_DUMP_STATS_AT(operation);
}

void CountAll() {
  Input const input = GeneratedConfiguration(kBytes);
  CConfigDescriptorSet set;
  set.SetDescriptor(input.runs[0].data(), static_cast<unsigned short>(input.runs[0].size()));
  static UsbTqPointers pointers;
  InitUsbHelper(&pointers);
  auto const sink = std::make_shared<NullSink>();
  standalone::AddLogSink(sink);
  VendorListFile const list(kVendors);
  CDriverEvent event;
  event.InitializeManualReset(TQE_EVENT_TYPE_DEFAULT);
  event.SetEvent();
  RangePredicate const isInterface = [](CDescriptorRangeIterator const& it) {
    return HasType(it, kInterfaceType);
  };

  Count("walk", [&] {
    std::size_t sum = 0;
    CDescriptorRangeIterator const validEnd = set.ValidUntil();
    for (CDescriptorRangeIterator it = set.begin(); it != validEnd; ++it) {
      sum += it->bDescriptorType;
    }
    return sum;
  });
  Count("ValidUntil", [&] { return std::size_t{set.ValidUntil()->bLength}; });
  Count("Count", [&] { return std::size_t{set.Count()}; });
  Count("Count(type)", [&] { return std::size_t{set.Count(kInterfaceType)}; });
  Count("Count(predicate)", [&] { return std::size_t{set.Count(isInterface)}; });
  Count("FindFirst", [&] { return std::size_t{set.FindFirst(0xEE).Remaining()}; });
  Count("GetAll", [&] { return set.GetAll()->size(); });
  Count("GetInterfaceList", [&] { return set.GetInterfaceList()->size(); });
  Count("GetFunctionList", [&] { return set.GetFunctionList()->size(); });
  Count("OutputString(listing)", [&] { return set.OutputString(false)->size(); });
  Count("OutputString(code)", [&] { return set.OutputString(true)->size(); });
  CSimpleBuffer text;
  Count("Format", [&text] {
    Format(text, Indentation{}, "%s returned in time! (this : 0x%0*X: %u ms)\n", "WaitOnEvent", 16,
           0x7F01A2C0u, 5000u);
    return text.Size();
  });
  Count("LogFormatted", [&] {
    LogFormatted(CAppState::Log(), TEST_STATUS_INFORMATION, "No status text: 0x%08X", 0x80008FFFu);
    return sink->Characters();
  });
  Count("LogWrite", [&] {
    LogWrite(CAppState::Log(), TEST_STATUS_INFORMATION, "Request returned a STALL (as expected).");
    return sink->Characters();
  });
  Count("GetStatusDetail", [] { return std::strlen(GetStatusDetail(RC_STALL_ERROR, nullptr)); });
  Count("GetVendorName", [] {
    char name[64] = {};
    GetVendorName(kVendors, name, sizeof(name));
    return std::strlen(name);
  });
  Count("WaitOnEvent", [&] { return static_cast<std::size_t>(event.WaitOnEvent(1000) + 1); });
}

}  // namespace
}  // namespace usb_support::benchmarks

int main(int argc, char** argv) {
  if (argc == 2 && std::strcmp(argv[1], "--compiler") == 0) {
    std::puts(USB_SUPPORT_COMPILER);
    return 0;
  }
  try {
    usb_support::benchmarks::CountAll();
    return 0;
  } catch (std::exception const& error) {
    std::fprintf(stderr, "instruction_counts: %s\n", error.what());
    return 1;
  }
}

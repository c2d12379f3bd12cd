// Behaviours of the library that look odd but are intended: each line of output is one of them.
//
//   deliberate_tour PART...
//
// PART is ranges, selectors, dump, sets, switches, helper, texts or events.
#include <cstdint>
#include <cstdio>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include <standalone_suite/suite_runtime/log_sinks.h>
#include <standalone_suite/suite_runtime/settings.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/usb_support.h>

namespace {

namespace suite = usb_support::standalone;

char const* YesNo(bool value) {
  return value ? "yes" : "no";
}

unsigned Number(RETURN_CODE code) {
  return static_cast<unsigned>(code);
}

// What an operation throws, in words.
std::string ThrownBy(std::function<void()> const& operation) {
  try {
    operation();
    return "nothing";
  } catch (TQRunTimeException const& error) {
    return std::string("\"") + error.what() + "\"";
  } catch (std::bad_function_call const&) {
    return "std::bad_function_call";
  } catch (std::length_error const&) {
    return "std::length_error";
  }
}

void Ranges() {
  suite::RemoveAllLogSinks();  // the log would show addresses, which differ from run to run
  unsigned char tooLong[] = {0x02, 0x24, 0x09, 0x24};  // the second claims 9 bytes of 2
  CDescriptorRange const claims(tooLong, sizeof tooLong);
  std::printf("two steps reach end(): %s, but the range is valid: %s\n",
              YesNo(claims.begin() + 2 == claims.end()), YesNo(claims.Valid()));
  std::printf("the third step throws %s\n", ThrownBy([&] { claims.begin() + 3; }).c_str());

  unsigned char zero[] = {0x02, 0x24, 0x00, 0x24, 0x02, 0x24};
  CDescriptorRange const broken(zero, sizeof zero);
  std::printf("a step on bLength 0 throws %s\n", ThrownBy([&] { broken.begin() + 2; }).c_str());
  std::printf("FindFirst(0x05) throws %s\n",
              ThrownBy([&] { static_cast<void>(broken.FindFirst(0x05)); }).c_str());
  std::printf("Count() throws nothing and counts %u\n", broken.Count());

  unsigned char two[] = {0x02, 0x24, 0x02, 0x24};
  CDescriptorRange const range(two, sizeof two);
  CDescriptorRangeIterator const second = range.begin() + 1;
  std::printf("one descriptor further is a difference of %d bytes\n",
              static_cast<int>(second - range.begin()));
  std::printf("&iterator is the descriptor's address: %s\n", YesNo(&second == second.operator->()));
  CDescriptorRangeIterator const shorter(range.begin().operator->(), 2);
  std::printf("same address, other bytes left: equal: %s\n", YesNo(shorter == range.begin()));
  std::printf("a range over a reversed pair has %u bytes\n",
              CDescriptorRange(second, range.begin()).Length());
  CDescriptorRange reset;
  reset.Reset(second, range.begin());
  std::printf("reset to a reversed pair it has %u\n", reset.Length());
  std::printf("range[2] is after the last byte: %s; range[3] throws %s\n",
              YesNo(&range[2] == range.end().operator->()), ThrownBy([&] { range[3]; }).c_str());
  std::string const large(65536, '\x02');
  auto const* const first = reinterpret_cast<unsigned char const*>(large.data());
  std::printf("RangeOver 65,536 bytes throws %s\n", ThrownBy([&] {
                                                      usb_support::RangeOver({first, large.size()});
                                                    }).c_str());
}

void Selectors() {
  unsigned char bytes[] = {0x02, 0x24, 0x02, 0x25, 0x02, 0x24};
  CDescriptorRange const range(bytes, sizeof bytes);
  usb_support::RangePredicate is = [](auto const& it) { return usb_support::HasType(it, 0x24); };
  CRangeSelector const selector(is);
  std::printf("selected with the first predicate: %u\n", range.Count(selector));
  is = [](auto const& it) { return usb_support::HasType(it, 0x25); };
  std::printf("after the predicate was assigned anew: %u\n", range.Count(selector));
  auto const [found, position] = DescriptorType(0x30)(range.begin(), range.end());
  std::printf("a finder that finds nothing says %s, at the end: %s\n", YesNo(found),
              YesNo(position == range.end()));
}

void Dump() {
  unsigned char bytes[] = {0x02, 0x24, 0x05, 0x24, 0x01};
  CDescriptorRange const range(bytes, sizeof bytes);
  std::printf("%s\n", range.OutputString(true)->c_str());
  InitUsbHelper(nullptr);
  CAppState::Helper({});
  std::printf("without a helper a dump throws %s\n",
              ThrownBy([&] { static_cast<void>(range.OutputString(true)); }).c_str());
}

void Sets() {
  unsigned char bytes[] = {0x05, 0x0F, 0x0F, 0x00, 0x01, 0x0A, 0x10, 0x03,
                           0x00, 0x0E, 0x00, 0x01, 0x0A, 0xFF, 0x07};
  CBOSDescriptorSet bos;
  std::printf("an empty BOS set: HasBOS %s, GetSSDesc null %s\n", YesNo(bos.HasBOS()),
              YesNo(bos.GetSSDesc() == nullptr));
  bos.SetDescriptor(bytes, sizeof bytes);
  std::printf("a filled one: HasBOS %s, GetSSDesc throws %s\n", YesNo(bos.HasBOS()),
              ThrownBy([&] { static_cast<void>(bos.GetSSDesc()); }).c_str());
  std::printf("FindCapability finds %u bytes\n",
              usb_support::FindCapability(bos, usb_support::kSuperSpeedCapability).Length());
  bos.Reset(bos.begin() + 1, bos.end());
  std::printf("reset to a part of its own bytes: %u bytes\n", bos.Length());

  unsigned char configurationBytes[] = {0x09, 0x02, 0x09, 0x00, 0x00, 0x01, 0x00, 0x80, 0x32};
  CConfigDescriptorSet configuration(7);
  configuration.SetDescriptor(configurationBytes, sizeof configurationBytes);
  configuration.Reset();
  std::printf("a configuration that was filled and reset keeps its index: %u\n",
              configuration.ConfigIndex());
}

// Reads the switches with their current settings.
CUSBDebugCapabilities& FreshSwitches() {
  CUSBDebugCapabilities::CleanupUsbDebugCapabilities();
  CUSBDebugCapabilities::SetupUsbDebugCapabilities();
  return GetUsbDebugCaps();
}

void Switches() {
  std::printf("before setup a device is required: %s; speed %u\n", YesNo(DebugCapRequiresUsb()),
              static_cast<unsigned>(DebugCapGetDeviceSpeed()));
  suite::SetSetting("HubDescHardCoded", true);
  CUSBDebugCapabilities const& crossed = FreshSwitches();
  std::printf("HubDescHardCoded on: strings fake %s, hub fake %s\n",
              YesNo(crossed.NeedFakeDescriptor(usb_support::kStringType)),
              YesNo(crossed.NeedFakeDescriptor(usb_support::kHubType)));
  suite::SetSetting("NoUsbInteraction", true);
  std::printf("set after setup, NoUsbInteraction reads %s\n", YesNo(DebugCapNoUsb()));
  CUSBDebugCapabilities const& all = FreshSwitches();
  std::printf("after setup again: %s\n", YesNo(all.NoUsbInteraction()));
  std::printf("a fake device qualifier is needed: %s; GetFakeDesc has one: %s\n",
              YesNo(all.NeedFakeDescriptor(usb_support::kDeviceQualifierType)),
              YesNo(all.GetFakeDesc(usb_support::kDeviceQualifierType, 0, 0) != nullptr));
  std::printf("the fake of type 2Ah has type %02Xh\n",
              all.GetFakeDesc(usb_support::kSuperSpeedHubType, 0, 0)[1]);
  std::printf(
      "configuration 1 is configuration 0: %s\n",
      YesNo(CDescriptorRange(usb_support::RangeOver(
                {reinterpret_cast<unsigned char const*>(all.GetConfigDesc(0, false)), 25})) ==
            usb_support::RangeOver(
                {reinterpret_cast<unsigned char const*>(all.GetConfigDesc(1, false)), 25})));
  { CUSBDebugCapabilitiesJanitor const janitor(true); }
  std::printf("after a janitor's scope the setup is gone: %s\n",
              YesNo(ThrownBy([] { GetUsbDebugCaps(); }) != "nothing"));
  suite::SetSetting("CustomDescriptorBinary", 1);
  std::printf("CustomDescriptorBinary alone: %s\n", YesNo(IsBinaryCustomConfigDescriptorFile()));
  suite::SetSetting("UseCustomDescriptor", std::uint64_t{1} << 32);
  std::printf("UseCustomDescriptor 2^32: %s\n", YesNo(UseCustomConfigDescriptor()));
}

void Helper() {
  UsbTqPointers pointers;
  InitUsbHelper(&pointers);
  UsbHelper().LogValidatePointerFail(TEST_STATUS_PLAIN, "This line is not extended.");
  CTestServices* services = nullptr;
  CDevice device;
  pointers.device = &device;
  CDevice* found = nullptr;
  bool const isValid =
      UsbHelper().InitializePointers(services, found, false, TEST_STATUS_INFORMATION);
  std::printf("InitializePointers says %s and sets the device all the same: %s\n", YesNo(isValid),
              YesNo(found == &device));
  TQ_USB_INTERFACE_DESCRIPTOR audio{0x09, 0x04, 0, 0, 0, 0x01, 9, 0x30, 0};
  auto const label = [&audio] {
    return CUsbHelper::GenerateDescriptorLabel(
        reinterpret_cast<TQ_USB_COMMON_DESCRIPTOR const&>(audio), nullptr,
        TQE_USB_DEVICE_SPEED_UNKNOWN);
  };
  std::printf("%s\n", label().c_str());
  audio.bInterfaceProtocol = 0;
  std::printf("%s\n", label().c_str());
}

void Texts() {
  std::printf("0x80004008 is %s, 0xBF004008 is %s\n", GetStatusDetail(RC_STALL_ERROR, nullptr),
              GetStatusDetail(static_cast<RETURN_CODE>(0xBF004008), nullptr));
  std::printf("0x80006002 is %s, 0x80006003 is %s\n",
              GetStatusDetail(RC_HANDSHAKE_3_FAILED, nullptr),
              GetStatusDetail(RC_HANDSHAKE_3_FAILED_AGAIN, nullptr));
  std::printf("an unknown code with a default text is %s\n",
              GetStatusDetail(static_cast<RETURN_CODE>(0x80004003), "of its own"));
  std::printf("PrintErrorDetail of it writes two lines:\n");
  std::fflush(stdout);
  PrintErrorDetail(static_cast<RETURN_CODE>(0x80004003), TEST_STATUS_PLAIN);
  usb_support::LogWrite(CAppState::Log(), TEST_STATUS_PLAIN, "%%s is shown as %s, %d as it is");
  std::printf("an empty message throws %s\n",
              ThrownBy([] { usb_support::RaiseMessage(TEST_STATUS_FAILURE, ""); }).c_str());
}

void Events() {
  COsSpecificDriverEvent event(TQE_EVENT_TYPE_DEFAULT);
  event.SetEvent();
  bool const isFirst = event.IsSignalled();
  std::printf("signalled: %s; asked again: %s\n", YesNo(isFirst), YesNo(event.IsSignalled()));

  COsSpecificDriverEvent kept;
  kept.m_StatusBuffer = 0x80000010;
  kept.InitializeManualReset(TQE_EVENT_TYPE_DEFAULT);
  std::printf("status word after InitializeManualReset: 0x%08X, length %u\n", kept.m_StatusBuffer,
              kept.GetLengthTransfered());

  CDriverEvent first(TQE_EVENT_TYPE_DEFAULT);
  CDriverEvent second(TQE_EVENT_TYPE_DEFAULT);
  second.SetEvent();
  std::printf("a wait on two says 0x%08X\n",
              Number(CDriverEvent::WaitOnMultipleEvents({&first, &second}, 0, WAIT_FOR_ANY_EVENT)));
  std::printf("a wait on none says 0x%08X\n",
              Number(CDriverEvent::WaitOnMultipleEvents({}, 0, WAIT_FOR_ANY_EVENT)));
  CDriverEvent none;
  std::printf("a wait on an event that was not made says 0x%08X\n", Number(none.WaitOnEvent(0)));
}

void Run(std::string const& part) {
  static std::map<std::string, std::function<void()>> const parts = {
      {"ranges", Ranges},     {"selectors", Selectors}, {"dump", Dump},   {"sets", Sets},
      {"switches", Switches}, {"helper", Helper},       {"texts", Texts}, {"events", Events}};
  auto const found = parts.find(part);
  if (found == parts.end()) {
    throw std::invalid_argument(part + ": no such part");
  }
  suite::RemoveAllLogSinks();
  suite::AddLogSink(std::make_shared<suite::ConsoleSink>(stdout));
  suite::ClearSettings();
  CUSBDebugCapabilities::CleanupUsbDebugCapabilities();
  InitUsbHelper(nullptr);
  found->second();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fputs("Usage: deliberate_tour PART...\n", stderr);
    return 2;
  }
  try {
    for (int i = 1; i < argc; ++i) {
      if (argc > 2) {
        std::printf("\n== %s\n", argv[i]);
      }
      Run(argv[i]);
    }
    return 0;
  } catch (std::exception const& error) {
    std::fprintf(stderr, "deliberate_tour: %s\n", error.what());
  }
  return 2;
}

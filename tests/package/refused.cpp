// Lines that must not compile: every line that ends in "// refused", one at a time. Without REFUSED
// the file compiles; it then contains only similar code that is correct.
#include <concepts>
#include <memory>
#include <string>
#include <type_traits>

#include <standalone_suite/base_support/sleep_recorder.h>
#include <standalone_suite/suite_runtime/call_recorder.h>
#include <standalone_suite/suite_runtime/log_sinks.h>
#include <standalone_suite/suite_runtime/settings.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/usb_support.h>

namespace us = usb_support;
namespace suite = usb_support::standalone;

extern char const* text;
extern char letters[3];
extern CSimpleBuffer out;
extern unsigned number;
extern unsigned char const byte;
extern us::RangePredicate predicate;

// A case is a line.
// clang-format off
#if !defined(REFUSED)

void Formats(TQLogger& logger) {
  us::Format(out, {}, "no arguments");
  us::Format(out, {}, "%s %-5s %u %08X %x %d %*d %.3s 100%%", text, letters, number, number, byte,
                 -1, 4, 5, text);
  us::Format(out, {}, "0x%08X", RC_SUCCESS);
  us::LogFormatted(logger, TEST_STATUS_PLAIN, "%u", number);
  us::Raise(TEST_STATUS_FAILURE, "%s", text);
}

void FormatsAtRunTime(TQLogger& logger) {
  us::LogWrite(logger, TEST_STATUS_PLAIN, text);
}

void Settings() {
  suite::SetSetting("key", 'c' - 'a');
  suite::SetSetting("key", "text");
  suite::SetSetting("key", true);
}

void Copies(CDescriptorRange& range, CDevice& device, CSimpleBuffer& buffer, CBOSDescriptorSet& set,
            CUSBDebugCapabilities& capabilities) {
  range = CDescriptorRange(range);
  device = CDevice(device);
  buffer = CSimpleBuffer(buffer);
  set = CBOSDescriptorSet(set);
  capabilities = GetUsbDebugCaps();
}

void Conversions(us::RangePredicate& finish) {
  CRangeSelector const selector(predicate, finish);
  DescriptorType const type(5);
  us::CapabilityFinder const capability(5);
  CUSBDebugCapabilitiesJanitor const janitor = true;
  CDriverEvent event(TQE_EVENT_TYPE_DEFAULT);
}

#else

// Formats whose arguments do not fit; tests of FormatStringCheck show the check itself.
void F1() { us::Format(out, {}, "%s", number); }                                // refused
void F5() { us::Format(out, {}, "%u"); }                                        // refused
void F8() { us::Format(out, {}, "none", number); }                              // refused
void F14() { us::Format(out, {}, "%s", RC_SUCCESS); }                           // refused
// A conversion that the library does not know, and a dangerous one.
void F20(int* where) { us::Format(out, {}, "%n", where); }                      // refused
// Formats that are known at run time only.
void F30() { us::Format(out, {}, text); }                                       // refused
void F31() { us::Format(out, {}, letters); }                                    // refused
void F32() { us::Format(out, {}, std::string()); }                              // refused
// The same check in everything else that takes a format.
void F40(TQLogger& log) {
  us::LogFormatted(log, TEST_STATUS_PLAIN, LOG_LEVEL_1, "%s", 1);               // refused
}
void F41(TQLogger& log) { us::LogFormatted(log, TEST_STATUS_PLAIN, "%s", 1); }  // refused
void F42(TQLogger& log, CFormatInfo const& look) {
  us::LogFormatted(log, TEST_STATUS_PLAIN, LOG_LEVEL_1, look, "%s", 1);         // refused
}
void F44(TQLogger& log, CFormatInfo const& look) {
  us::LogFormatted(log, TEST_STATUS_PLAIN, look, "%s", 1);                      // refused
}
void F43() { us::Raise(TEST_STATUS_FAILURE, "%s", 1); }                         // refused

// Copies of objects that must be unique.
void C1(CDriverEvent& a) { CDriverEvent b(a); }                                 // refused
void C2(CDriverEvent& a, CDriverEvent& b) { a = b; }                            // refused
void C5(CUSBDebugCapabilitiesJanitor& a) { CUSBDebugCapabilitiesJanitor b(a); }  // refused
void C6(CUSBDebugCapabilitiesJanitor& a, CUSBDebugCapabilitiesJanitor& b) {
  a = b;                                                                        // refused
}
void C7() { new CUSBDebugCapabilities(GetUsbDebugCaps()); }                     // refused
void C8(CUsbHelper& a) { CUsbHelper b(a); }                                     // refused
void C9(CUsbHelper& a, CUsbHelper& b) { a = b; }                                // refused
void C10(TQHelper& a) { TQHelper b(a); }                                        // refused
void C11(TQHelper& a, TQHelper& b) { a = b; }                                   // refused
void C12() { TQLogger copy(CAppState::Log()); }                                 // refused
void C13(TQLogger& a) { a = CAppState::Log(); }                                 // refused
void C14() { CAppSettings copy(CAppState::AppSettings()); }                     // refused
void C15(CAppSettings& a) { a = CAppState::AppSettings(); }                     // refused
void C16(CDescriptorRange::RangeVector& a) { CDescriptorRange::RangeVector b(a); }  // refused
void C17(suite::ConsoleSink& a) { suite::ConsoleSink b(a); }                    // refused
void C18(suite::RecordingSink& a, suite::RecordingSink& b) { a = b; }           // refused
void C19(suite::CallRecorder& a) { suite::CallRecorder b(a); }                  // refused
void C20(suite::CallRecorder& a, suite::CallRecorder& b) { a = b; }             // refused
void C21(suite::SleepRecorder& a) { suite::SleepRecorder b(a); }                // refused
void C22(suite::SleepRecorder& a, suite::SleepRecorder& b) { a = b; }           // refused

// Only its own functions release the object of the debug capabilities.
void D1() { CUSBDebugCapabilities local; }                                      // refused
void D2() { delete &GetUsbDebugCaps(); }                                        // refused

// Numbers that would convert to finders, events and owners.
void E1() { DescriptorType a = static_cast<unsigned char>(5); }                 // refused
void E2() { us::CapabilityFinder a = static_cast<unsigned char>(5); }           // refused
void E4() { capability_type_selector a = static_cast<unsigned char>(5); }       // refused
void E5(CDriverEvent* (*make)(CDriverEvent const&)) { make(TQE_EVENT_TYPE_DEFAULT); }  // refused
void E6() { COsSpecificDriverEvent a = TQE_EVENT_TYPE_DEFAULT; }                // refused
void E8() { function_selector a = static_cast<function_head*>(nullptr); }       // refused
void E9() { CSafeString a = basic_sv_wrapper<char>(); }                         // refused

// A temporary where the selector keeps a reference, and types that are not wire records.
void R1() { CRangeSelector a(predicate, us::RangePredicate()); }                // refused
void R2(CDescriptorRangeIterator& it) { us::ReadRecord<std::string>(it); }      // refused
void R3(CDescriptorRangeIterator& it) { us::ReadRecord<int*>(it); }             // refused

// Settings whose type is ambiguous.
void S1() { suite::SetSetting("key", nullptr); }                                // refused
void S2() { suite::SetSetting("key", 'c'); }                                    // refused
void S3() { suite::SetSetting("key", 1.5); }                                    // refused
void S4() { suite::SetSetting("key", L'c'); }                                   // refused

#endif

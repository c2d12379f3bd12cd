#include <usb_support/helper/usb_helper.h>

#include <memory>

#include <usb_support/fake_device/debug_capabilities.h>
#include <usb_support/helper/checked_cast.h>
#include <usb_support/helper/stack_trace.h>
#include <usb_support/status/status_text.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/text/formatting.h>

namespace {

char const* SetOrNull(void const* pointer) {
  return pointer != nullptr ? "set" : "NULL";
}

// The end of every failed validation; the log line is only for callers that want no exception.
void ReportInvalidInput(bool throwOnFailure, TEST_STATUS status, CSimpleBuffer const& message) {
  if (throwOnFailure) {
    usb_support::RaiseMessage(TEST_STATUS_INTERNAL_ERROR, message.Contents());
  }
  usb_support::LogWrite(CAppState::Log(), status, message.Contents());
}

[[noreturn]] void RaiseMissingHelper(CSafeString const& family) {
  if (CAppState::IsLogVerbosityLevel(LOG_LEVEL_5)) {
    TQLogger& logger = CAppState::Log();
    usb_support::LogWrite(logger, TEST_STATUS_INFORMATION, "Printing stack trace.");
    for (usb_support::StackFrame const& frame : usb_support::CurrentStack()) {
      usb_support::LogFormatted(logger, TEST_STATUS_INFORMATION, "    %s - %s(%u)",
                                frame.description.c_str(), frame.sourceFile.c_str(),
                                frame.sourceLine);
    }
  }
  usb_support::Raise(TEST_STATUS_INTERNAL_ERROR, "INTERNAL ERROR - %s TQHelper does not exist.",
                     family.c_str());
}

}  // namespace

CUsbHelper::CUsbHelper(UsbTqPointers* pointers) : pointers_(pointers) {
}

CUsbHelper::~CUsbHelper() {
  pointers_ = nullptr;
}

bool CUsbHelper::ValidatePointers(bool throwOnFailure, TEST_STATUS status) const {
  CTestServices const* const testServices = GetTestServices();
  CDevice const* const device = GetDevice();
  bool const valid = !DebugCapRequiresUsb() || (testServices != nullptr && device != nullptr);
  if (!valid) {
    CSimpleBuffer message;
    usb_support::Format(message, usb_support::kDefaultIndentation,
                        "Invalid USB Test input:  test services: %s, device under test: %s.",
                        SetOrNull(testServices), SetOrNull(device));
    ReportInvalidInput(throwOnFailure, status, message);
  }
  FlushOutput(true);
  return valid;
}

bool CUsbHelper::ValidatePointersDUTOptional(bool throwOnFailure, TEST_STATUS status) const {
  CTestServices const* const testServices = GetTestServices();
  if (!DebugCapRequiresUsb() || testServices != nullptr) {
    return true;
  }
  CSimpleBuffer message;
  usb_support::Format(message, usb_support::kDefaultIndentation,
                      "Invalid USB Test input:  test services: %s.", SetOrNull(testServices));
  ReportInvalidInput(throwOnFailure, status, message);
  return false;
}

bool CUsbHelper::InitializePointers(CTestServices*& testServices, CDevice*& device,
                                    bool throwOnFailure, TEST_STATUS status) const {
  testServices = nullptr;
  device = nullptr;
  bool const valid = ValidatePointers(throwOnFailure, status);
  testServices = GetTestServices();
  device = GetDevice();
  return valid;
}

void CUsbHelper::LogValidatePointerFail(TEST_STATUS status, basic_sv_wrapper<char> message) const {
  // Deliberately, the log line does not report which pointer is missing. The virtual getters are
  // still called, because an override may rely on that.
  static_cast<void>(GetTestServices());
  static_cast<void>(GetDevice());
  usb_support::LogWrite(CAppState::Log(), status, message);
}

bool CUsbHelper::ValidatePointerFail(TEST_STATUS status) const {
  LogValidatePointerFail(status, {});
  return StopTest(status);
}

void CUsbHelper::SetDevice(CDevice* device) {
  if (pointers_ != nullptr) {
    pointers_->device = device;
  }
}

CDevice* CUsbHelper::GetDevice() const {
  return pointers_ != nullptr ? pointers_->device : nullptr;
}

CTestServices* CUsbHelper::GetTestServices() const {
  return pointers_ != nullptr ? pointers_->testServices : nullptr;
}

void CUsbHelper::Reinitialize() {
}

bool CUsbHelper::PrintErrorDetail(RETURN_CODE code, TEST_STATUS status) {
  return ::PrintErrorDetail(code, status);
}

void CUsbHelper::StallExpectedDiagnostic(RETURN_CODE code, TEST_STATUS status) {
  TQLogger& logger = CAppState::Log();
  if (code == RC_STALL_ERROR) {
    usb_support::LogWrite(logger, TEST_STATUS_PLAIN, LOG_LEVEL_4,
                          "Request returned a STALL (as expected).");
  } else if (usb_support::Failed(code)) {
    usb_support::LogFormatted(
        logger, TEST_STATUS_INFORMATION,
        "Request was expected to STALL, but failed in another manner. (Status = 0x%08X)", code);
  } else {
    usb_support::LogFormatted(
        logger, TEST_STATUS_INFORMATION,
        "Request was expected to STALL, but succeeded instead. (Status = 0x%08X)", code);
  }
  ::PrintErrorDetail(code, status);
}

void CUsbHelper::OutputProgressMarker(unsigned index, unsigned perLine, char const* operation,
                                      unsigned channel) {
  TQLogger& logger = CAppState::Log();
  auto const loggerChannel = static_cast<int>(channel);
  logger.IncrStackDepth();
  logger.DoWritePrintOnly(loggerChannel, ". ");
  unsigned const done = index + 1;
  if (perLine != 0 && done % perLine == 0) {
    usb_support::format_detail::LineBuffer line;
    usb_support::format_detail::PrintChecked(
        line.Text(), usb_support::kDefaultIndentation, " \n%u %s%s", done,
        operation != nullptr ? operation : "operation", done == 1 ? "" : "s");
    logger.IncrStackDepth();
    logger.DoWritePrintLnOnly(loggerChannel, line.Text().Contents());
  }
  FlushOutput(true);
}

void InitUsbHelper(UsbTqPointers* pointers) {
  CAppState::Helper(custom_unique_ptr<TQHelper, TQHelper>(new CUsbHelper(pointers),
                                                          std::default_delete<TQHelper>()));
}

CUsbHelper& UsbHelper() {
  try {
    return usb_support::CheckedCast<CUsbHelper>(CAppState::Helper());
  } catch (...) {
    RaiseMissingHelper("USB");
  }
}

bool UsbHelperCreated() noexcept {
  try {
    return CAppState::HelperCreated() && dynamic_cast<CUsbHelper*>(&CAppState::Helper()) != nullptr;
  } catch (...) {
    return false;
  }
}

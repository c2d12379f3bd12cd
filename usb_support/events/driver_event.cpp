#include <usb_support/events/driver_event.h>

#include <cstdlib>

#include <usb_support/helper/checked_cast.h>
#include <usb_support/platform/events.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/text/formatting.h>

namespace {

constexpr std::uint32_t kLengthBits = 0x00FFFFFF;
constexpr char const* kWaitName = "COsSpecificDriverEvent::WaitOnEvent";

bool IsVerbose() {
  return static_cast<std::uint8_t>(CAppState::TQLogVerbosityLevel()) >= LOG_LEVEL_6;
}

}  // namespace

CDEImplementation::CDEImplementation() = default;
CDEImplementation::CDEImplementation(CDEImplementation const&) = default;
CDEImplementation& CDEImplementation::operator=(CDEImplementation const&) = default;
CDEImplementation::~CDEImplementation() = default;

COsSpecificDriverEvent::COsSpecificDriverEvent()
    : m_Overlapped{},
      m_StatusBuffer(0),
      m_Buffer(nullptr),
      m_SecondBlock(nullptr) {
}

COsSpecificDriverEvent::COsSpecificDriverEvent(TQE_EventType type) : COsSpecificDriverEvent() {
  Initialize(type);
}

COsSpecificDriverEvent::COsSpecificDriverEvent(COsSpecificDriverEvent const&) = default;
COsSpecificDriverEvent& COsSpecificDriverEvent::operator=(COsSpecificDriverEvent const&) = default;

COsSpecificDriverEvent::~COsSpecificDriverEvent() {
  if (m_Overlapped.hEvent != nullptr) {
    usb_support::platform::CloseEvent(m_Overlapped.hEvent);
  }
  std::free(m_Buffer);
  std::free(m_SecondBlock);
}

void COsSpecificDriverEvent::Initialize(TQE_EventType /*type*/) {
  m_Buffer = nullptr;
  m_SecondBlock = nullptr;
  m_StatusBuffer = 0;
  m_Overlapped = {};
  m_Overlapped.hEvent = usb_support::platform::MakeEvent(false);
}

void COsSpecificDriverEvent::InitializeManualReset(TQE_EventType /*type*/) {
  // Deliberately unlike Initialize: a test may read the status of the previous request.
  m_Buffer = nullptr;
  m_Overlapped = {};
  m_Overlapped.hEvent = usb_support::platform::MakeEvent(true);
}

bool COsSpecificDriverEvent::SetEvent() {
  return usb_support::platform::SignalEvent(m_Overlapped.hEvent);
}

bool COsSpecificDriverEvent::ResetEvent() {
  return usb_support::platform::ResetEvent(m_Overlapped.hEvent);
}

bool COsSpecificDriverEvent::IsSignalled() {
  return !usb_support::Failed(WaitOnEvent(0));
}

unsigned COsSpecificDriverEvent::GetLengthTransfered() const noexcept {
  return m_StatusBuffer & kLengthBits;
}

RETURN_CODE COsSpecificDriverEvent::GetStatus(DriverStatusDecoder const& decode, bool flag) {
  return decode(m_StatusBuffer, flag);
}

RETURN_CODE COsSpecificDriverEvent::WaitOnEvent(unsigned timeoutMs) {
  switch (usb_support::platform::WaitForOne(m_Overlapped.hEvent, timeoutMs)) {
    case 0:
      if (IsVerbose()) {
        usb_support::LogFormatted(
            CAppState::Log(), TEST_STATUS_INFORMATION,
            "%s returned in time! (this : 0x%0*X, m_StatusBuffer : 0x%08X: timeout: %u ms)\n",
            kWaitName, 16, usb_support::PrintedAddress(this), m_StatusBuffer, timeoutMs);
      }
      return RC_SUCCESS;
    case usb_support::platform::kWaitAbandoned:
      return RC_WAIT_ABANDONED;
    case usb_support::platform::kWaitTimeout:
      if (IsVerbose()) {
        usb_support::LogFormatted(
            CAppState::Log(), TEST_STATUS_INFORMATION,
            "%s returning timeout! (this : 0x%016X, m_StatusBuffer : 0x%08X: timeout: %u ms)\n",
            kWaitName, usb_support::PrintedAddress(this), m_StatusBuffer, timeoutMs);
      }
      return RC_WAIT_TIMEOUT;
    default:
      return RC_OPERATION_FAILED;
  }
}

void COsSpecificDriverEvent::DebugSeeErrorMessage(RETURN_CODE /*code*/) {
  static_cast<void>(usb_support::platform::LastError());
}

RETURN_CODE COsSpecificDriverEvent::WaitOnMultipleEvents(
    std::vector<COsSpecificDriverEvent*> const& events, unsigned timeoutMs,
    EMultipleWaitCondition condition) {
  std::vector<usb_support::platform::EventHandle> handles;
  handles.reserve(events.size());
  for (COsSpecificDriverEvent const* const event : events) {
    handles.push_back(event->m_Overlapped.hEvent);
  }
  std::uint32_t const result =
      usb_support::platform::WaitForSeveral(handles, condition == WAIT_FOR_ALL_EVENTS, timeoutMs);
  if (result == usb_support::platform::kWaitTimeout) {
    if (IsVerbose()) {
      TQLogger& logger = CAppState::Log();
      logger.IncrStackDepth();
      logger.DoWritePrintOnly(0, "WaitForMultipleEvents() timed out.");
    }
    return RC_WAIT_TIMEOUT;
  }
  // Deliberately, an abandoned event is an error here, unlike in the wait on one event.
  return result < events.size() ? static_cast<RETURN_CODE>(result) : RC_WAIT_ERROR;
}

CDriverEvent::CDriverEvent() : implementation_(new COsSpecificDriverEvent) {
}

CDriverEvent::CDriverEvent(TQE_EventType type) : CDriverEvent() {
  Record().Initialize(type);
}

CDriverEvent::~CDriverEvent() {
  delete implementation_;
}

COsSpecificDriverEvent& CDriverEvent::Record() const {
  return usb_support::CheckedCast<COsSpecificDriverEvent>(*implementation_);
}

RETURN_CODE CDriverEvent::GetStatus(DriverStatusDecoder const& decode, bool flag) {
  return Record().GetStatus(decode, flag);
}

void CDriverEvent::Initialize(TQE_EventType type) {
  Record().Initialize(type);
}

void CDriverEvent::InitializeManualReset(TQE_EventType type) {
  Record().InitializeManualReset(type);
}

bool CDriverEvent::SetEvent() {
  return Record().SetEvent();
}

bool CDriverEvent::ResetEvent() {
  return Record().ResetEvent();
}

RETURN_CODE CDriverEvent::WaitOnEvent(unsigned timeoutMs) {
  return Record().WaitOnEvent(timeoutMs);
}

void* CDriverEvent::GetStatusBuffer() {
  return Record().GetStatusBuffer();
}

unsigned CDriverEvent::GetLengthTransfered() {
  return Record().GetLengthTransfered();
}

void* CDriverEvent::AsynchHandler() const {
  return &Record().GetOverlapped();
}

void CDriverEvent::DebugSeeErrorMessage(RETURN_CODE code) {
  COsSpecificDriverEvent::DebugSeeErrorMessage(code);
}

RETURN_CODE CDriverEvent::WaitOnMultipleEvents(std::vector<CDriverEvent*> const& events,
                                               unsigned timeoutMs,
                                               EMultipleWaitCondition condition) {
  std::vector<COsSpecificDriverEvent*> records;
  records.reserve(events.size());
  for (CDriverEvent const* const event : events) {
    records.push_back(&event->Record());
  }
  return COsSpecificDriverEvent::WaitOnMultipleEvents(records, timeoutMs, condition);
}

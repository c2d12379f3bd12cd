// Effects on a driver event that only the system's own objects have: a mutex that its owner has
// left, and a request that the system completes.
#if defined(_WIN32)

// First, as a program may include it: see overlapped_windows_test.cpp for the reverse choice.
#define WIN32_LEAN_AND_MEAN
#include <usb_support/platform/overlapped.h>
#if !defined(WIN32_LEAN_AND_MEAN)
#error "overlapped.h undefines the program's WIN32_LEAN_AND_MEAN."
#endif
#if defined(NOMINMAX)
#error "overlapped.h leaves NOMINMAX defined."
#endif

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <tests/support/suite_test.h>
#include <usb_support/events/driver_event.h>
#include <usb_support/platform/overlapped.h>

namespace usb_support {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Record = COsSpecificDriverEvent;

constexpr RETURN_CODE kWaitTimedOut = static_cast<RETURN_CODE>(0x80005001);
constexpr TQE_EventType kType = TQE_EVENT_TYPE_DEFAULT;
constexpr auto kAny = static_cast<EMultipleWaitCondition>(0);
constexpr auto kAll = static_cast<EMultipleWaitCondition>(1);

class DriverEventOnWindows : public testing_support::SuiteTest {
 protected:
  /// A mutex whose owner has ended without releasing it.
  static HANDLE AbandonedMutex() {
    HANDLE const mutex = ::CreateMutexW(nullptr, FALSE, nullptr);
    std::jthread([mutex] {
      EXPECT_EQ(::WaitForSingleObject(mutex, INFINITE), WAIT_OBJECT_0);
    }).join();
    return mutex;
  }
};

TEST_F(DriverEventOnWindows, AbandonedWaitIsReported) {
  standalone::SetLogVerbosity(LOG_LEVEL_6);
  for (unsigned const timeout : {0u, 5'000u, 0xFFFFFFFFu}) {
    Record record;
    record.m_Overlapped.hEvent = AbandonedMutex();
    ASSERT_NE(record.m_Overlapped.hEvent, nullptr);
    EXPECT_EQ(record.WaitOnEvent(timeout), 0x80005000u) << timeout;
    EXPECT_NE(::ReleaseMutex(record.m_Overlapped.hEvent), FALSE);
    record.m_Overlapped.hEvent = (::CloseHandle(record.m_Overlapped.hEvent), AbandonedMutex());
    EXPECT_FALSE(record.IsSignalled());
    EXPECT_THAT(TakeCalls(), IsEmpty());
    EXPECT_NE(::ReleaseMutex(record.m_Overlapped.hEvent), FALSE);
  }
}

TEST_F(DriverEventOnWindows, AbandonedEventFailsAWaitOnSeveral) {
  standalone::SetLogVerbosity(LOG_LEVEL_6);
  for (EMultipleWaitCondition const condition : {kAny, kAll}) {
    Record first(kType);
    Record second;
    second.m_Overlapped.hEvent = AbandonedMutex();
    if (condition == kAll) {
      first.SetEvent();
    }
    EXPECT_EQ(Record::WaitOnMultipleEvents({&first, &second}, 5'000, condition), 0x80005002u);
    EXPECT_NE(::ReleaseMutex(second.m_Overlapped.hEvent), FALSE);
    // The lowest number as well: 128 is not the number of an event.
    second.m_Overlapped.hEvent = (::CloseHandle(second.m_Overlapped.hEvent), AbandonedMutex());
    first.SetEvent();
    EXPECT_EQ(Record::WaitOnMultipleEvents({&second, &first}, 5'000, condition), 0x80005002u);
    EXPECT_NE(::ReleaseMutex(second.m_Overlapped.hEvent), FALSE);
  }
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(DriverEventOnWindows, LastErrorSurvivesDebugSeeErrorMessage) {
  for (DWORD const error : {DWORD{0}, DWORD{5}, DWORD{997}, DWORD{0x20001234}}) {
    ::SetLastError(error);
    Record::DebugSeeErrorMessage(kWaitTimedOut);
    CDriverEvent::DebugSeeErrorMessage(RC_SUCCESS);
    EXPECT_EQ(::GetLastError(), error);
  }
}

TEST_F(DriverEventOnWindows, RecordClosesItsHandle) {
  HANDLE event = nullptr;
  DWORD flags = 0;
  {
    Record const record(kType);
    event = record.m_Overlapped.hEvent;
    EXPECT_NE(::GetHandleInformation(event, &flags), FALSE);
  }
  EXPECT_EQ(::GetHandleInformation(event, &flags), FALSE);
  EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
}

TEST_F(DriverEventOnWindows, RecordWithoutAnEventClosesNothing) {
  ::SetLastError(ERROR_IO_PENDING);
  { Record const record; }
  EXPECT_EQ(::GetLastError(), DWORD{ERROR_IO_PENDING});
}

/// Both ends of a pipe; the one that reads is opened for overlapped requests.
class Pipe {
 public:
  Pipe() {
    std::string const name =
        R"(\\.\pipe\usb_support_test_)" + std::to_string(::GetCurrentProcessId());
    reader_ = ::CreateNamedPipeA(name.c_str(), PIPE_ACCESS_INBOUND | FILE_FLAG_OVERLAPPED,
                                 PIPE_TYPE_BYTE | PIPE_READMODE_BYTE | PIPE_WAIT, 1, 4'096, 4'096,
                                 0, nullptr);
    writer_ = ::CreateFileA(name.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  }
  Pipe(Pipe const&) = delete;
  Pipe& operator=(Pipe const&) = delete;
  ~Pipe() {
    ::CloseHandle(writer_);
    ::CloseHandle(reader_);
  }

  bool IsOpen() const { return reader_ != INVALID_HANDLE_VALUE && writer_ != INVALID_HANDLE_VALUE; }

  /// Starts a read that the system completes through `overlapped`.
  void StartRead(void* buffer, DWORD size, OVERLAPPED& overlapped) const {
    EXPECT_EQ(::ReadFile(reader_, buffer, size, nullptr, &overlapped), FALSE);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_IO_PENDING});
  }

  void Write(std::string_view text) const {
    DWORD written = 0;
    EXPECT_NE(::WriteFile(writer_, text.data(), static_cast<DWORD>(text.size()), &written, nullptr),
              FALSE);
    EXPECT_EQ(written, text.size());
  }

  DWORD Transferred(OVERLAPPED& overlapped) const {
    DWORD transferred = 0;
    EXPECT_NE(::GetOverlappedResult(reader_, &overlapped, &transferred, FALSE), FALSE);
    return transferred;
  }

  void Cancel(OVERLAPPED& overlapped) const {
    EXPECT_NE(::CancelIoEx(reader_, &overlapped), FALSE);
  }

 private:
  HANDLE reader_ = INVALID_HANDLE_VALUE;
  HANDLE writer_ = INVALID_HANDLE_VALUE;
};

TEST_F(DriverEventOnWindows, RequestIsCompletedThroughTheRecord) {
  Pipe const pipe;
  ASSERT_TRUE(pipe.IsOpen());
  for (bool const manualReset : {false, true}) {
    CDriverEvent event;
    if (manualReset) {
      event.InitializeManualReset(kType);
    } else {
      event.Initialize(kType);
    }
    auto& record = dynamic_cast<Record&>(*event.GetImplStruct());
    record.m_Buffer = std::calloc(64, 1);
    ASSERT_NE(record.m_Buffer, nullptr);

    pipe.StartRead(record.GetBuffer(), 64, record.GetOverlapped());
    EXPECT_EQ(event.WaitOnEvent(0), kWaitTimedOut);
    pipe.Write("bytes of the driver");
    EXPECT_EQ(event.WaitOnEvent(60'000), RC_SUCCESS);
    EXPECT_EQ(event.WaitOnEvent(0), manualReset ? RC_SUCCESS : kWaitTimedOut);
    EXPECT_EQ(pipe.Transferred(record.GetOverlapped()), 19u);
    EXPECT_EQ(record.GetOverlapped().InternalHigh, 19u);
    EXPECT_STREQ(static_cast<char const*>(record.GetBuffer()), "bytes of the driver");
  }
}

TEST_F(DriverEventOnWindows, CancelledRequestSignalsTheEventToo) {
  Pipe const pipe;
  ASSERT_TRUE(pipe.IsOpen());
  Record record(kType);
  std::array<char, 8> bytes{};
  pipe.StartRead(bytes.data(), bytes.size(), record.GetOverlapped());
  pipe.Cancel(record.GetOverlapped());
  EXPECT_EQ(record.WaitOnEvent(60'000), RC_SUCCESS);
  EXPECT_EQ(record.GetOverlapped().Internal, std::uintptr_t{0xC0000120});  // STATUS_CANCELLED
}

TEST_F(DriverEventOnWindows, WaitOnSeveralRequests) {
  Pipe const pipe;
  ASSERT_TRUE(pipe.IsOpen());
  CDriverEvent idle(kType);
  CDriverEvent reading(kType);
  std::array<char, 8> bytes{};
  auto& overlapped = *static_cast<OVERLAPPED*>(reading.AsynchHandler());
  pipe.StartRead(bytes.data(), bytes.size(), overlapped);
  std::jthread const writer([&] { pipe.Write("xy"); });
  EXPECT_EQ(CDriverEvent::WaitOnMultipleEvents({&idle, &reading}, 60'000, kAny), 1u);
  EXPECT_EQ(pipe.Transferred(overlapped), 2u);
}

}  // namespace
}  // namespace usb_support

#endif

// The completion signal of one overlapped request to a driver: an event, the OVERLAPPED record that
// carries it, the status word that the driver fills in, and the request's buffer.
//
// A test program passes the record to the I/O call, waits with WaitOnEvent or WaitOnMultipleEvents,
// and reads status and length. One thread waits on an event at a time; the driver or another thread
// signals it. There is no lock: an event must not be destroyed while a thread waits on it. Every
// operation reports failure by its result. Only GetStatus throws, what its decoder throws. Without
// memory, operations that allocate throw std::bad_alloc: constructors, waits on several events, and
// logged waits, which have then already taken the signal.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include <usb_support/platform/export.h>
#include <usb_support/platform/overlapped.h>
#include <usb_support/status/return_code.h>

/// The driver interface's kind of event. Accepted everywhere and without effect.
enum TQE_EventType : std::uint32_t {
  TQE_EVENT_TYPE_DEFAULT = 0,
};

/// What a wait on several events waits for. Every value but WAIT_FOR_ALL_EVENTS means any.
enum EMultipleWaitCondition : std::uint32_t {
  WAIT_FOR_ANY_EVENT = 0,
  WAIT_FOR_ALL_EVENTS = 1,
};

/// Converts a request's status word to a status; the caller chooses the meaning of the flag.
using DriverStatusDecoder = std::function<RETURN_CODE(unsigned statusWord, bool flag)>;

/// Base of the record of a driver event.
struct USB_SUPPORT_API CDEImplementation {
  /// Holds nothing of its own.
  CDEImplementation();
  CDEImplementation(CDEImplementation const&);
  CDEImplementation& operator=(CDEImplementation const&);
  virtual ~CDEImplementation();
};

/// The record of a driver event. COPIES ARE SHALLOW: A COPY SHARES THE EVENT AND BOTH BLOCKS WITH
/// ITS SOURCE, AND EACH OF THE TWO DESTRUCTORS CLOSES AND FREES THEM. Copy a record only to pass it
/// on, and never let two owners be destroyed.
struct USB_SUPPORT_API COsSpecificDriverEvent : public CDEImplementation {
  OVERLAPPED m_Overlapped;  ///< passed to the I/O call; its hEvent is the event
  std::uint32_t
      m_StatusBuffer;   ///< written by the driver: bits 23..0 bytes transferred, rest flags
  void* m_Buffer;       ///< the request's data, from malloc; owned
  void* m_SecondBlock;  ///< another block from malloc; owned, and not used here

  /// No event yet: everything is zero.
  COsSpecificDriverEvent();

  /// As Initialize does.
  explicit COsSpecificDriverEvent(TQE_EventType type);

  /// See above: shallow.
  COsSpecificDriverEvent(COsSpecificDriverEvent const&);
  COsSpecificDriverEvent& operator=(COsSpecificDriverEvent const&);

  /// Closes the event and frees both blocks.
  ~COsSpecificDriverEvent() override;

  /// Clears everything, then makes an auto-reset event that is not signalled. An event or block
  /// that the record already has is overwritten, not closed or freed: initialise once. When the
  /// system has no event left, the handle is null.
  void Initialize(TQE_EventType type);

  /// The same with a manual-reset event, but deliberately keeps the status word and the second
  /// block.
  void InitializeManualReset(TQE_EventType type);

  /// Signals or resets the event; true when the system did it.
  bool SetEvent();
  bool ResetEvent();

  /// True when the event is signalled. NEVER WAITS, BUT TAKES THE SIGNAL of an auto-reset event,
  /// and logs as WaitOnEvent does.
  bool IsSignalled();

  /// The OVERLAPPED, its event and the request's data; the last two may be null. The record keeps
  /// owning them.
  OVERLAPPED& GetOverlapped() noexcept { return m_Overlapped; }
  void* GetOverlappedEvent() noexcept { return m_Overlapped.hEvent; }
  void* GetBuffer() noexcept { return m_Buffer; }

  /// Where the driver writes the status word.
  void* GetStatusBuffer() noexcept { return &m_StatusBuffer; }

  /// Bytes transferred: the low 24 bits of the status word.
  unsigned GetLengthTransfered() const noexcept;

  /// The result of `decode` for the whole status word. Throws std::bad_function_call when it is
  /// empty.
  RETURN_CODE GetStatus(DriverStatusDecoder const& decode, bool flag);

  /// Waits until the event is signalled, at most `timeoutMs` milliseconds (0xFFFFFFFF: no limit).
  /// RC_SUCCESS; RC_WAIT_TIMEOUT; RC_WAIT_ABANDONED; RC_OPERATION_FAILED when the wait failed. From
  /// verbosity 6 on a signal and a timeout are logged; the address in the line is cut to 32 bits.
  [[nodiscard]] RETURN_CODE WaitOnEvent(unsigned timeoutMs);

  /// A fixed place for a breakpoint: reads the thread's last system error and discards it.
  static void DebugSeeErrorMessage(RETURN_CODE code);

  /// Waits for any or all of the events, as above. Any: the index of the one that was signalled,
  /// the lowest when several were; only its signal is taken. All: 0. RC_WAIT_TIMEOUT, which from
  /// verbosity 6 on is printed; RC_WAIT_ERROR for everything else, including no events and more
  /// than 64.
  [[nodiscard]] static RETURN_CODE WaitOnMultipleEvents(
      std::vector<COsSpecificDriverEvent*> const& events, unsigned timeoutMs,
      EMultipleWaitCondition condition);
};

/// The event that test programs use: owns its record and forwards every call to it.
class USB_SUPPORT_API CDriverEvent {
 public:
  /// No event yet.
  CDriverEvent();

  /// With an auto-reset event.
  explicit CDriverEvent(TQE_EventType type);

  CDriverEvent(CDriverEvent const&) = delete;
  CDriverEvent& operator=(CDriverEvent const&) = delete;
  virtual ~CDriverEvent();

  /// As the record's operations of the same names.
  virtual RETURN_CODE GetStatus(DriverStatusDecoder const& decode, bool flag);
  void Initialize(TQE_EventType type);
  void InitializeManualReset(TQE_EventType type);
  bool SetEvent();
  bool ResetEvent();
  [[nodiscard]] RETURN_CODE WaitOnEvent(unsigned timeoutMs);
  void* GetStatusBuffer();
  unsigned GetLengthTransfered();

  /// The address of the record's OVERLAPPED.
  void* AsynchHandler() const;

  /// The record; owned by this event.
  CDEImplementation* GetImplStruct() const noexcept { return implementation_; }

  /// As the record's operations of the same names.
  static void DebugSeeErrorMessage(RETURN_CODE code);
  [[nodiscard]] static RETURN_CODE WaitOnMultipleEvents(std::vector<CDriverEvent*> const& events,
                                                        unsigned timeoutMs,
                                                        EMultipleWaitCondition condition);

 private:
  COsSpecificDriverEvent& Record() const;

  CDEImplementation* implementation_;
};

// The one helper of a test program: it knows the test services and the device under test, checks
// that both exist before a test uses them, and provides the library's labels and diagnostics.
//
// InitUsbHelper makes the helper and passes it to the suite's application state, which owns it from
// then on; UsbHelper() finds it. The helper keeps no copy of the two pointers: it reads the test
// program's record at every call. It is not locked; the suite calls it from the test thread. The
// static members need no helper and may be used from any thread.
#pragma once

#include <string>
#include <utility>

#include <usb_support/descriptors/device_speed.h>
#include <usb_support/descriptors/records.h>
#include <usb_support/helper/test_objects.h>
#include <usb_support/platform/export.h>
#include <usb_support/status/return_code.h>
#include <usb_support/suite_interfaces/safe_string.h>
#include <usb_support/suite_interfaces/sv_wrapper.h>
#include <usb_support/suite_interfaces/test_status.h>
#include <usb_support/suite_interfaces/tq_helper.h>

struct TQAssertionNumbers;  // log/log_assert.h

/// The helper of a USB test program; one per process, registered with the application's state.
class USB_SUPPORT_API CUsbHelper : public TQHelper {
 public:
  /// The text between a descriptor's bytes and its label: " : " in a listing, " // " in code.
  static char const* const DESCRIPTION_SEPARATOR_TEXT;
  static char const* const DESCRIPTION_SEPARATOR_C;

  /// `pointers` may be null; otherwise it must outlive the helper.
  CUsbHelper(UsbTqPointers* pointers);
  ~CUsbHelper() override;

  // The suite depends on the order of the virtual operations.

  /// True when test services and device are both set, or when the debug capabilities allow a run
  /// without a device. Otherwise throws TQRunTimeException (TEST_STATUS_INTERNAL_ERROR, whatever
  /// `status` is) or, without `throwOnFailure`, logs the same message with `status` and returns
  /// false. Flushes the log whenever it returns.
  bool ValidatePointers(bool throwOnFailure, TEST_STATUS status) const override;

  /// Sets both pointers, even when it returns false; the result is that of ValidatePointers.
  virtual bool InitializePointers(CTestServices*& testServices, CDevice*& device,
                                  bool throwOnFailure, TEST_STATUS status) const;

  /// Logs `message` with `status`: passed through, so that "%%" in it becomes "%".
  virtual void LogValidatePointerFail(TEST_STATUS status, basic_sv_wrapper<char> message) const;

  /// Stores the device in the test program's record; does nothing when there is no record.
  virtual void SetDevice(CDevice* device);

  /// The device under test and the test services; null when there is no record.
  virtual CDevice* GetDevice() const;
  virtual CTestServices* GetTestServices() const;

  /// The test program's record; may be null.
  UsbTqPointers* GetPIO() const noexcept { return pointers_; }

  /// Does nothing; a place for test programs to call between tests.
  void Reinitialize();

  /// As the free function (status/status_text.h).
  bool PrintErrorDetail(RETURN_CODE code, TEST_STATUS status);

  /// Logs an empty line with `status` through LogValidatePointerFail, then asks the suite to stop
  /// the test; returns the suite's answer.
  bool ValidatePointerFail(TEST_STATUS status) const;

  /// ValidatePointers for a test that may run without a device: only the test services are checked.
  /// Never flushes the log.
  bool ValidatePointersDUTOptional(bool throwOnFailure, TEST_STATUS status) const;

  /// Logs whether a request that should stall did so, then the text of `code` with `status`.
  void StallExpectedDiagnostic(RETURN_CODE code, TEST_STATUS status);

  /// Marks a finished step of a long operation: ". ", and after every `perLine` steps (never when
  /// 0) the count, `operation` ("operation" when null) and a line end. `index` counts from 0.
  /// Flushes the log.
  static void OutputProgressMarker(unsigned index, unsigned perLine, char const* operation,
                                   unsigned channel);

  /// One line that describes a descriptor. `currentInterface` is the interface that it belongs to,
  /// null when not known; the speed is not used. "<UNKNOWN DESCRIPTOR>" for anything else.
  /// Requires: the record of the descriptor's type is readable, and for a class-specific one its
  /// third byte; the labels check no length.
  static std::string GenerateDescriptorLabel(TQ_USB_COMMON_DESCRIPTOR const& descriptor,
                                             TQ_USB_INTERFACE_DESCRIPTOR* const currentInterface,
                                             TQE_USB_DEVICE_SPEED speed);

  /// (handled, label) of a device capability; handled is always true. Names: USB 3.2, 9.6.2, and
  /// USB PD 2.0.
  /// Requires: three bytes are readable.
  static std::pair<bool, std::string> GenerateBOSCapabilityDescriptorLabel(
      TQ_USB_COMMON_DESCRIPTOR const& descriptor);

  /// (handled, label) of a class-specific descriptor of a video interface; handled for the
  /// subclasses 1 (control) and 2 (streaming). Names: USB Video Class 1.5, A.4 to A.6.
  /// Requires: three bytes are readable when the type is 0x24.
  static std::pair<bool, std::string> GenerateUVCDescriptorLabel(
      TQ_USB_COMMON_DESCRIPTOR const& descriptor, unsigned char interfaceSubClass);

  /// The place for labels of audio class descriptors: deliberately never handles anything.
  static std::pair<bool, std::string> GenerateUACDescriptorLabel(
      TQ_USB_COMMON_DESCRIPTOR const& descriptor, unsigned char interfaceSubClass,
      unsigned char interfaceProtocol);

  /// "IN" or "OUT".
  static char const* GetEpDirString(TQ_USB_ENDPOINT_DESCRIPTOR const& endpoint);

  /// "Control", "Isoch", "Bulk" or "Interrupt".
  static char const* GetEpTypeString(TQ_USB_ENDPOINT_DESCRIPTOR const& endpoint,
                                     TQE_USB_DEVICE_SPEED speed);

  /// bInterval as "0x%02X"; not converted into a time.
  static CSafeString GetEpIntervalString(TQ_USB_ENDPOINT_DESCRIPTOR const& endpoint,
                                         TQE_USB_DEVICE_SPEED speed);

 protected:
  /// As LogAssert.
  void DoLogAssert(TEST_STATUS status, unsigned index, TQAssertionNumbers const* numbers,
                   char const* const* messages) const;

 private:
  UsbTqPointers* pointers_;
};

/// Makes a helper for `pointers` (may be null) and registers it with the application state, in
/// place of any earlier one.
USB_SUPPORT_API void InitUsbHelper(UsbTqPointers* pointers);

/// The registered helper. Throws TQRunTimeException ("INTERNAL ERROR - USB TQHelper does not
/// exist.") when there is none or it is of another class; at verbosity 5 the call stack is logged
/// first.
USB_SUPPORT_API CUsbHelper& UsbHelper();

/// True when a CUsbHelper is registered. Never fails.
USB_SUPPORT_API bool UsbHelperCreated() noexcept;

// The suite's base class of a test helper. The suite depends on the order of its virtual
// operations.
#pragma once

#include <string>

#include <usb_support/platform/export.h>
#include <usb_support/suite_interfaces/test_status.h>

/// The suite's own run state; the library only passes it on.
class TQSuiteRuntimeState;

/// The application's one helper is derived from this class.
class SUITE_RUNTIME_API TQHelper {
 public:
  TQHelper();
  TQHelper(TQHelper const&) = delete;
  TQHelper& operator=(TQHelper const&) = delete;
  virtual ~TQHelper();

  /// Called by the suite when a test function has ended.
  virtual void EndFunction();

  /// True when the helper has what a test needs.
  virtual bool ValidatePointers(bool throwOnFailure, TEST_STATUS status) const;

  /// Ends the current test with `status`; returns whether it must stop.
  bool StopTest(TEST_STATUS status) const;

  /// Sets `text` to the bytes as upper-case hexadecimal numbers of two digits, separated by spaces
  /// ("12 01 00"). The last argument is the suite's own; the library passes false.
  static void BytesToString(std::string& text, unsigned char const* bytes, unsigned long long count,
                            bool flag);

  /// The same as byte literals for source code ("0x12, 0x01, 0x00").
  static void BytesToCode(std::string& text, unsigned char const* bytes, unsigned long long count,
                          bool flag);

 protected:
  /// What the suite prints when ValidatePointers has failed.
  virtual std::string ValidationFailMsg(TQSuiteRuntimeState* state);
};

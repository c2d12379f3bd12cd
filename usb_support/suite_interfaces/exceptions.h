// The suite's exception classes. They cross library boundaries and can be caught as any of their
// bases: TQException, std::runtime_error, std::exception.
#pragma once

#include <stdexcept>

#include <usb_support/platform/export.h>
#include <usb_support/suite_interfaces/sv_wrapper.h>
#include <usb_support/suite_interfaces/test_status.h>

#if defined(_MSC_VER)
#pragma warning(push)
#pragma warning(disable : 4275)  // the standard's exception is the same class in every module
#endif

/// A failure, with its status for the test.
class BASE_SUPPORT_API TQException : public std::runtime_error {
 public:
  /// Keeps a copy of the message, which copies of the exception share.
  TQException(basic_sv_wrapper<char> message, TEST_STATUS status);
  TQException(TQException const&) noexcept;
  TQException& operator=(TQException const&) noexcept;
  ~TQException() override;

  /// The failure's status for the test.
  TEST_STATUS Status() const noexcept { return status_; }

 private:
  TEST_STATUS status_;
};

/// A fault of the caller or of the data, found at run time.
class BASE_SUPPORT_API TQRunTimeException : public TQException {
 public:
  /// Replaces an empty message.
  static constexpr char const* RUN_TIME_EXCEPTION_DEFAULT_MSG = "Run-time exception.";

  /// As a TQException, with the default message in place of an empty one.
  TQRunTimeException(basic_sv_wrapper<char> message, TEST_STATUS status);
  TQRunTimeException(TQRunTimeException const&) noexcept;
  TQRunTimeException& operator=(TQRunTimeException const&) noexcept;
  ~TQRunTimeException() override;
};

#if defined(_MSC_VER)
#pragma warning(pop)
#endif

// The formatting service of every message: turns a printf format and its arguments into text,
// and writes that text to the suite's log or throws it.
//
// Any thread may format without a lock: a line of the log is made in a buffer that the thread keeps
// until it ends, so that nothing here allocates once that buffer is large enough. Nothing that a
// logger or a sink does while it receives a line (format, log, throw) changes the line. All of this
// works until the very end of a thread or the process, in the destructors of static and
// thread_local objects too. A format is checked against its arguments at compile time. A text
// without arguments is passed through: "%%" in it becomes "%" and every other "%" stays as it is,
// so no text can make the service read an argument that was not passed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <usb_support/platform/export.h>
#include <usb_support/suite_interfaces/exceptions.h>
#include <usb_support/suite_interfaces/simple_buffer.h>
#include <usb_support/suite_interfaces/sv_wrapper.h>
#include <usb_support/suite_interfaces/test_status.h>
#include <usb_support/suite_interfaces/tq_logger.h>
#include <usb_support/text/format_string.h>

namespace usb_support {

/// Characters put before a formatted text: `count` times `fill`.
struct Indentation {
  char fill = '\0';       ///< the character
  std::size_t count = 0;  ///< the number of repetitions
};

/// The library's indentation level. Nothing changes it, so no message is indented.
inline constexpr std::size_t kIndentationLevel = 0;

/// The indentation of the library's messages: two spaces for each level.
inline constexpr Indentation kDefaultIndentation{' ', 2 * kIndentationLevel};

/// An address as "%X" prints it: its low 32 bits.
inline unsigned int PrintedAddress(void const* address) noexcept {
  return static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(address));
}

namespace format_detail {

// The value that printf reads for an argument: an enumeration as its number, small numbers as
// unsigned int.
template <typename Arg>
constexpr auto Printable(Arg arg) noexcept {
  if constexpr (std::is_enum_v<Arg>) {
    return Printable(static_cast<std::underlying_type_t<Arg>>(arg));
  } else if constexpr (std::is_unsigned_v<Arg>) {
    return static_cast<unsigned int>(arg);
  } else {
    return arg;
  }
}

/// The thread's buffer, used by one text from its construction to its destruction. Another text
/// that is made in the meantime gets its own memory.
class USB_SUPPORT_API LineBuffer {
 public:
  LineBuffer();
  LineBuffer(LineBuffer const&) = delete;
  LineBuffer& operator=(LineBuffer const&) = delete;
  ~LineBuffer();

  CSimpleBuffer& Text() noexcept { return *text_; }

 private:
  CSimpleBuffer own_;
  CSimpleBuffer* text_;
};

/// Prints `format` with its arguments after the indentation; `out` stays as it was when that fails.
#if defined(__GNUC__)
__attribute__((format(printf, 3, 4)))
#endif
USB_SUPPORT_API void
Print(CSimpleBuffer& out, Indentation indentation, char const* format, ...);

/// The level and the look of a line, null for the status's own, and whether it was formatted.
struct LineStyle {
  ELogLevel const* level = nullptr;
  CFormatInfo const* look = nullptr;
  bool isFormatted = false;
};

USB_SUPPORT_API void Write(TQLogger& logger, TEST_STATUS status, LineStyle style, char const* text);
[[noreturn]] USB_SUPPORT_API void Throw(TEST_STATUS status, char const* text);

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"  // FormatString has checked it
#pragma GCC diagnostic ignored "-Wformat-security"
#endif
template <typename... Args>
void PrintChecked(CSimpleBuffer& out, Indentation indentation, FormatFor<Args...> format,
                  Args... args) {
  Print(out, indentation, format.c_str(), Printable(args)...);
}
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

template <typename... Args>
void WriteFormatted(TQLogger& logger, TEST_STATUS status, LineStyle style,
                    FormatFor<Args...> format, Args... args) {
  LineBuffer line;
  PrintChecked<Args...>(line.Text(), Indentation{}, format, args...);
  style.isFormatted = true;
  Write(logger, status, style, line.Text().Contents());
}

}  // namespace format_detail

/// Sets `out` to the formatted text. Throws std::runtime_error ("INTERNAL ERROR - std::vsprintf()
/// failed.") when the C library refuses the format; `out` is then as it was.
template <typename... Args>
void Format(CSimpleBuffer& out, Indentation indentation, FormatFor<Args...> format, Args... args) {
  // Through the thread's buffer, because an argument may point into `out`.
  format_detail::LineBuffer line;
  format_detail::PrintChecked<Args...>(line.Text(), indentation, format, args...);
  out = line.Text();
}

/// Writes one line: `message` passed through, with the given status as its log type, level and look
/// (the look is passed to the logger as null when it is the status's own). Level and look are the
/// status's defaults unless they are given.
USB_SUPPORT_API void LogWrite(TQLogger& logger, TEST_STATUS status, basic_sv_wrapper<char> message);
USB_SUPPORT_API void LogWrite(TQLogger& logger, TEST_STATUS status, ELogLevel level,
                              basic_sv_wrapper<char> message);
USB_SUPPORT_API void LogWrite(TQLogger& logger, TEST_STATUS status, CFormatInfo const& look,
                              basic_sv_wrapper<char> message);
USB_SUPPORT_API void LogWrite(TQLogger& logger, TEST_STATUS status, ELogLevel level,
                              CFormatInfo const& look, basic_sv_wrapper<char> message);

/// The same with a formatted line. Throws as Format does, before any call to the logger.
template <typename... Args>
void LogFormatted(TQLogger& logger, TEST_STATUS status, FormatFor<Args...> format, Args... args) {
  format_detail::WriteFormatted<Args...>(logger, status, {}, format, args...);
}
template <typename... Args>
void LogFormatted(TQLogger& logger, TEST_STATUS status, ELogLevel level, FormatFor<Args...> format,
                  Args... args) {
  format_detail::WriteFormatted<Args...>(logger, status, {.level = &level}, format, args...);
}
template <typename... Args>
void LogFormatted(TQLogger& logger, TEST_STATUS status, CFormatInfo const& look,
                  FormatFor<Args...> format, Args... args) {
  format_detail::WriteFormatted<Args...>(logger, status, {.look = &look}, format, args...);
}
template <typename... Args>
void LogFormatted(TQLogger& logger, TEST_STATUS status, ELogLevel level, CFormatInfo const& look,
                  FormatFor<Args...> format, Args... args) {
  format_detail::WriteFormatted<Args...>(logger, status, {.level = &level, .look = &look}, format,
                                         args...);
}

/// Throws TQRunTimeException with the formatted text and `status`. An empty format throws
/// TQRunTimeException::RUN_TIME_EXCEPTION_DEFAULT_MSG with TEST_STATUS_INTERNAL_ERROR instead.
template <typename... Args>
[[noreturn]] void Raise(TEST_STATUS status, FormatFor<Args...> format, Args... args) {
  if (format.empty()) {
    format_detail::Throw(TEST_STATUS_INTERNAL_ERROR, "");
  }
  CSimpleBuffer text;
  format_detail::PrintChecked<Args...>(text, Indentation{}, format, args...);
  format_detail::Throw(status, text.Contents());
}

/// Throws TQRunTimeException with `message`, passed through, and `status`; an empty message as
/// above.
[[noreturn]] USB_SUPPORT_API void RaiseMessage(TEST_STATUS status, basic_sv_wrapper<char> message);

}  // namespace usb_support

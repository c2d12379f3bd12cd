// The formatting service behind every message: turns a printf format and its arguments into text in
// a buffer of the calling thread, and writes that text to the suite's log or raises it.
//
// Every thread has its own buffers, so any thread may format without a lock; they live until the
// thread ends, and once they are warm nothing here allocates. A format is checked against its
// arguments at compile time. A text without arguments is passed through: "%%" in it becomes "%" and
// every other "%" stays as it is, so no text can make the service read an argument that was not
// passed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <usb_support/helper/format_string.h>
#include <usb_support/platform/export.h>
#include <usb_support/suite_interfaces/exceptions.h>
#include <usb_support/suite_interfaces/simple_buffer.h>
#include <usb_support/suite_interfaces/sv_wrapper.h>
#include <usb_support/suite_interfaces/test_status.h>
#include <usb_support/suite_interfaces/tq_logger.h>

namespace usb_support {

/// Characters put before a formatted text: `count` times `fill`.
struct Indentation {
  char fill = '\0';       ///< the character
  std::size_t count = 0;  ///< how often it is put
};

/// The library's indentation level. Nothing changes it, so no message is indented.
inline constexpr std::size_t kIndentationLevel = 0;

/// The indentation of the library's messages: two blanks for each level.
inline constexpr Indentation kDefaultIndentation{' ', 2 * kIndentationLevel};

/// An address as "%X" prints it: its low 32 bits.
inline unsigned int PrintedAddress(void const* address) noexcept {
  return static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(address));
}

/// What a thread keeps for formats of one argument list.
class USB_SUPPORT_API FormatState {
 public:
  FormatState() = default;
  FormatState(FormatState const&) = delete;
  FormatState& operator=(FormatState const&) = delete;

  /// Prints `format` with its arguments behind the indentation. The text is valid until the next
  /// call. Raises std::runtime_error when the C library refuses the format.
#if defined(__GNUC__)
  __attribute__((format(printf, 3, 4)))
#endif
  char const*
  Print(Indentation indentation, char const* format, ...);

  /// Passes a text through as a format without arguments. Valid until the next call.
  char const* PassThrough(basic_sv_wrapper<char> text);

  /// The text of the last call; the empty text before the first.
  CSimpleBuffer const& Buffer() const noexcept {
    return buffer_;
  }

 private:
  CSimpleBuffer buffer_;
  std::size_t room_ = 512;  // grows with the longest text so far
};

/// The calling thread's state for formats of the argument list `Args`.
template <typename... Args>
FormatState& ThreadFormatState() {
  thread_local FormatState state;
  return state;
}

namespace format_detail {

// What printf reads for an argument: an enumeration as its number, small numbers as unsigned int.
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

USB_SUPPORT_API void Write(TQLogger& logger, TEST_STATUS status, ELogLevel level,
                           CFormatInfo const& format, char const* text);
USB_SUPPORT_API void WriteWithDefaults(TQLogger& logger, TEST_STATUS status, char const* text);
[[noreturn]] USB_SUPPORT_API void RaiseFormatted(TEST_STATUS status, char const* text);

}  // namespace format_detail

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"  // FormatString has checked it
#pragma GCC diagnostic ignored "-Wformat-security"
#endif
/// The formatted text in the calling thread's buffer: valid until the next format of the same
/// argument list on this thread. Raises std::runtime_error ("INTERNAL ERROR - std::vsprintf()
/// failed.") when the C library refuses the format.
template <typename... Args>
char const* FormatText(Indentation indentation, FormatFor<Args...> format, Args... args) {
  return ThreadFormatState<Args...>().Print(indentation, format.c_str(),
                                            format_detail::Printable(args)...);
}
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

/// Sets `out` to the formatted text, so that it stays valid after the next format. Raises as
/// FormatText does.
template <typename... Args>
void Format(CSimpleBuffer& out, Indentation indentation, FormatFor<Args...> format, Args... args) {
  FormatText<Args...>(indentation, format, args...);
  out = ThreadFormatState<Args...>().Buffer();
}

/// Writes one line: `message` passed through, with the given status as its log type, level and look
/// (handed to the logger as null when it is the status's own).
USB_SUPPORT_API void LogWrite(TQLogger& logger, TEST_STATUS status, ELogLevel level,
                              CFormatInfo const& format, basic_sv_wrapper<char> message);

/// The same at the status's default verbosity and look.
USB_SUPPORT_API void LogWrite(TQLogger& logger, TEST_STATUS status, basic_sv_wrapper<char> message);

/// Writes one formatted line at the status's default verbosity and look.
template <typename... Args>
void LogFormatted(TQLogger& logger, TEST_STATUS status, FormatFor<Args...> format, Args... args) {
  char const* const text = FormatText<Args...>(Indentation{}, format, args...);
  logger.IncrStackDepth();
  format_detail::WriteWithDefaults(logger, status, text);
}

/// Writes one formatted line with a level and a look of its own (as LogWrite does).
template <typename... Args>
void LogFormatted(TQLogger& logger, TEST_STATUS status, ELogLevel level, CFormatInfo const& look,
                  FormatFor<Args...> format, Args... args) {
  char const* const text = FormatText<Args...>(Indentation{}, format, args...);
  logger.IncrStackDepth();
  format_detail::Write(logger, status, level, look, text);
}

/// Raises TQRunTimeException with the formatted text and `status`. An empty format raises
/// TQRunTimeException::RUN_TIME_EXCEPTION_DEFAULT_MSG with TEST_STATUS_INTERNAL_ERROR instead.
template <typename... Args>
[[noreturn]] void Raise(TEST_STATUS status, FormatFor<Args...> format, Args... args) {
  if (format.empty()) {
    format_detail::RaiseFormatted(TEST_STATUS_INTERNAL_ERROR, "");
  }
  format_detail::RaiseFormatted(status, FormatText<Args...>(Indentation{}, format, args...));
}

/// Raises TQRunTimeException with `message`, passed through, and `status`; an empty message as
/// above.
[[noreturn]] USB_SUPPORT_API void RaiseMessage(TEST_STATUS status, basic_sv_wrapper<char> message);

}  // namespace usb_support

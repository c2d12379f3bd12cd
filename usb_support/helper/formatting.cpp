#include <usb_support/helper/formatting.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <stdexcept>

namespace usb_support {

char const* FormatState::Print(Indentation indentation, char const* format, ...) {
  // Printing into the room that earlier texts needed measures and prints in one pass; only a text
  // longer than any before it is printed twice.
  for (;;) {
    char* const start = buffer_.GetBuffer(indentation.count + room_);
    std::memset(start, indentation.fill, indentation.count);
    std::va_list arguments;
    va_start(arguments, format);
    int const printed = std::vsnprintf(start + indentation.count, room_, format, arguments);
    va_end(arguments);
    if (printed < 0) {
      throw std::runtime_error("INTERNAL ERROR - std::vsprintf() failed.");
    }
    auto const needed = static_cast<std::size_t>(printed) + 1;
    if (needed <= room_) {
      return buffer_.GetBuffer(indentation.count + needed);
    }
    room_ = needed;
  }
}

char const* FormatState::PassThrough(basic_sv_wrapper<char> text) {
  std::string_view const source = text.view();
  char* const start = buffer_.GetBuffer(source.size() + 1);
  char* end = start;
  for (std::size_t at = 0; at < source.size(); ++at) {
    *end++ = source[at];
    if (source.substr(at, 2) == "%%") {
      ++at;
    }
  }
  *end = '\0';
  return start;
}

namespace format_detail {

void Write(TQLogger& logger, TEST_STATUS status, ELogLevel level, CFormatInfo const& format,
           char const* text) {
  logger.IncrStackDepth();
  bool const isDefault = format == logger.GetDefaultFormat(status);
  logger.DoWrite(LogTypeOf(status), level, isDefault ? nullptr : &format, text);
}

void WriteWithDefaults(TQLogger& logger, TEST_STATUS status, char const* text) {
  Write(logger, status, logger.GetDefaultLogVerbosity(status), logger.GetDefaultFormat(status),
        text);
}

void RaiseFormatted(TEST_STATUS status, char const* text) {
  char const* const message =
      *text == '\0' ? TQRunTimeException::RUN_TIME_EXCEPTION_DEFAULT_MSG : text;
  throw TQRunTimeException(message, status);
}

}  // namespace format_detail

void LogWrite(TQLogger& logger, TEST_STATUS status, ELogLevel level, CFormatInfo const& format,
              basic_sv_wrapper<char> message) {
  format_detail::Write(logger, status, level, format, ThreadFormatState<>().PassThrough(message));
}

void LogWrite(TQLogger& logger, TEST_STATUS status, basic_sv_wrapper<char> message) {
  format_detail::WriteWithDefaults(logger, status, ThreadFormatState<>().PassThrough(message));
}

void RaiseMessage(TEST_STATUS status, basic_sv_wrapper<char> message) {
  format_detail::RaiseFormatted(message.empty() ? TEST_STATUS_INTERNAL_ERROR : status,
                                ThreadFormatState<>().PassThrough(message));
}

}  // namespace usb_support

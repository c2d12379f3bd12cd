#include <usb_support/helper/formatting.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include <usb_support/helper/plain_format.h>

namespace usb_support {

char const* FormatState::Print(Indentation indentation, char const* format, ...) {
  auto const startOfText = [&] {
    char* const start = buffer_.GetBuffer(indentation.count + room_);
    std::memset(start, indentation.fill, indentation.count);
    return start + indentation.count;
  };
  std::va_list arguments;
  va_start(arguments, format);
  std::size_t const length = PrintPlain(startOfText(), room_, format, arguments);
  va_end(arguments);
  if (length != kNotPlain) {
    return buffer_.GetBuffer(indentation.count + length + 1);
  }
  // Printing into the room that earlier texts needed measures and prints in one pass; only a text
  // longer than any before it is printed twice.
  for (;;) {
    char* const text = startOfText();
    va_start(arguments, format);
    int const printed = std::vsnprintf(text, room_, format, arguments);
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
  std::size_t at = source.find('%');
  if (at == std::string_view::npos) {
    at = source.size();
  }
  source.copy(start, at);
  char* end = start + at;
  for (; at < source.size(); ++at) {
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

// The default look is handed on as null, so it is not asked for.
void WriteWithDefaults(TQLogger& logger, TEST_STATUS status, char const* text) {
  ELogLevel const level = logger.GetDefaultLogVerbosity(status);
  logger.IncrStackDepth();
  logger.DoWrite(LogTypeOf(status), level, nullptr, text);
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

#include <usb_support/helper/formatting.h>

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string_view>

namespace usb_support {
namespace {

// What PrintPlain answers when the text is not its business: the C library prints it.
constexpr std::size_t kNotPlain = SIZE_MAX;

// The digits of `value` in front of `end`; where they begin.
char* WriteDecimal(char* end, unsigned int value) {
  do {
    *--end = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value != 0);
  return end;
}

char* WriteHexadecimal(char* end, unsigned int value, char const* digits) {
  do {
    *--end = digits[value & 0xF];
    value >>= 4;
  } while (value != 0);
  return end;
}

// Prints what the library's messages are made of: %s, %u, %d, %x, %X and %%, with a width of up to
// two digits or '*', filled with blanks or, for numbers, zeros. The number of characters in front
// of the terminator, or kNotPlain when the format asks for anything else or `room` is too small.
std::size_t PrintPlain(char* const start, std::size_t room, char const* format,
                       std::va_list arguments) {
  constexpr unsigned int kMostWidth = 99;
  char* out = start;
  char* const end = start + room;
  for (;;) {
    char const* const percent = *format != '\0' ? std::strchr(format, '%') : format;
    auto const literal =
        percent != nullptr ? static_cast<std::size_t>(percent - format) : std::strlen(format);
    if (literal >= static_cast<std::size_t>(end - out)) {
      return kNotPlain;
    }
    std::memcpy(out, format, literal);
    out += literal;
    if (percent == nullptr || *percent == '\0') {
      *out = '\0';
      return static_cast<std::size_t>(out - start);
    }
    format = percent + 1;
    char fill = ' ';
    if (*format == '0') {
      fill = '0';
      ++format;
    }
    unsigned int width = 0;
    if (*format == '*') {
      int const wanted = va_arg(arguments, int);
      if (wanted < 0) {
        return kNotPlain;
      }
      width = static_cast<unsigned int>(wanted);
      ++format;
    } else {
      for (; *format >= '0' && *format <= '9' && width <= kMostWidth; ++format) {
        width = width * 10 + static_cast<unsigned int>(*format - '0');
      }
    }
    if (width > kMostWidth) {
      return kNotPlain;
    }
    char digits[16];
    char* const digitsEnd = digits + sizeof(digits);
    char const* text = digits;
    bool isNegative = false;
    std::size_t length = 0;
    switch (*format++) {
      case 's':
        text = va_arg(arguments, char const*);
        if (text == nullptr || fill == '0') {
          return kNotPlain;
        }
        length = std::strlen(text);
        break;
      case 'u':
        text = WriteDecimal(digitsEnd, va_arg(arguments, unsigned int));
        length = static_cast<std::size_t>(digitsEnd - text);
        break;
      case 'd': {
        int const value = va_arg(arguments, int);
        isNegative = value < 0;
        text = WriteDecimal(digitsEnd, isNegative ? 0u - static_cast<unsigned int>(value)
                                                  : static_cast<unsigned int>(value));
        length = static_cast<std::size_t>(digitsEnd - text);
        break;
      }
      case 'x':
        text = WriteHexadecimal(digitsEnd, va_arg(arguments, unsigned int), "0123456789abcdef");
        length = static_cast<std::size_t>(digitsEnd - text);
        break;
      case 'X':
        text = WriteHexadecimal(digitsEnd, va_arg(arguments, unsigned int), "0123456789ABCDEF");
        length = static_cast<std::size_t>(digitsEnd - text);
        break;
      case '%':
        if (width != 0 || fill == '0') {
          return kNotPlain;
        }
        text = "%";
        length = 1;
        break;
      default:
        return kNotPlain;
    }
    std::size_t const sign = isNegative ? 1 : 0;
    std::size_t const padding = width > length + sign ? width - length - sign : 0;
    if (padding + sign + length >= static_cast<std::size_t>(end - out)) {
      return kNotPlain;
    }
    // Blanks stand before the sign, zeros behind it.
    if (isNegative && fill == '0') {
      *out++ = '-';
    }
    for (std::size_t i = 0; i < padding; ++i) {
      *out++ = fill;
    }
    if (isNegative && fill == ' ') {
      *out++ = '-';
    }
    std::memcpy(out, text, length);
    out += length;
  }
}

}  // namespace

char const* FormatState::Print(Indentation indentation, char const* format, ...) {
  // Printing into the room that earlier texts needed measures and prints in one pass; only a text
  // longer than any before it is printed twice.
  for (bool first = true;; first = false) {
    char* const start = buffer_.GetBuffer(indentation.count + room_);
    std::memset(start, indentation.fill, indentation.count);
    std::va_list arguments;
    if (first) {
      va_start(arguments, format);
      std::size_t const length = PrintPlain(start + indentation.count, room_, format, arguments);
      va_end(arguments);
      if (length != kNotPlain) {
        return buffer_.GetBuffer(indentation.count + length + 1);
      }
    }
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

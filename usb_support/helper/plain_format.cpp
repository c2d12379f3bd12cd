#include <usb_support/helper/plain_format.h>

#include <cstring>

#include <usb_support/helper/text_writer.h>

namespace usb_support {
namespace {

constexpr unsigned int kMostWidth = 99;

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

}  // namespace

std::size_t PrintPlain(char* const start, std::size_t room, char const* format,
                       std::va_list arguments) {
  char* out = start;
  char* const end = start + room;
  for (;;) {
    char const* const percent = std::strchr(format, '%');
    std::size_t const literal =
        percent != nullptr ? static_cast<std::size_t>(percent - format) : std::strlen(format);
    if (literal >= static_cast<std::size_t>(end - out)) {
      return kNotPlain;
    }
    std::memcpy(out, format, literal);
    out += literal;
    if (percent == nullptr) {
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
      // A width below 0 asks for blanks behind the text; it is then too wide for this printer.
      width = static_cast<unsigned int>(va_arg(arguments, int));
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
    char const* text = nullptr;
    char const* textEnd = digitsEnd;
    bool isNegative = false;
    switch (*format++) {
      case 's':
        text = va_arg(arguments, char const*);
        if (text == nullptr || fill == '0') {
          return kNotPlain;
        }
        textEnd = text + std::strlen(text);
        break;
      case 'u':
        text = WriteDecimal(digitsEnd, va_arg(arguments, unsigned int));
        break;
      case 'd': {
        int const value = va_arg(arguments, int);
        isNegative = value < 0;
        text = WriteDecimal(digitsEnd, isNegative ? 0u - static_cast<unsigned int>(value)
                                                  : static_cast<unsigned int>(value));
        break;
      }
      case 'x':
        text = WriteHexadecimal(digitsEnd, va_arg(arguments, unsigned int), "0123456789abcdef");
        break;
      case 'X':
        text = WriteHexadecimal(digitsEnd, va_arg(arguments, unsigned int), kHexDigits);
        break;
      case '%':
        if (width != 0 || fill == '0') {
          return kNotPlain;
        }
        text = "%";
        textEnd = text + 1;
        break;
      default:
        return kNotPlain;
    }
    auto const length = static_cast<std::size_t>(textEnd - text);
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

}  // namespace usb_support

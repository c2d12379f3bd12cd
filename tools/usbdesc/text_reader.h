// Reads a run of descriptors from a text.
//
// Four forms, told apart by how the text begins:
//
//   12 01 00 02 00 00 00 40                    hexadecimal bytes, two digits each
//   unsigned char const device[] = {0x12, 1};  a C byte array; the declaration may be missing, and
//                                              so may the braces
//      0h:  12 01 00 02 00 00 00 40 : Device   the listing of CDescriptorRange::OutputString
//   /*    0h */  0x12, 0x01, // Device         its source-code form
//
// A comment runs from "#" or "//" to the end of the line or is between "/*" and "*/". Lines end
// in "\n", "\r\n" or "\r"; a byte order mark is allowed. An offset of the last two forms must be
// the number of bytes before it, so a text that holds several dumps is refused. The line that ends
// in "(incomplete)" is the part of a dump that forms no descriptor: hexadecimal bytes in every form,
// and nothing but comments and a closing brace may follow it.
#pragma once

#include <cstddef>
#include <string_view>

#include <tools/usbdesc/run_bytes.h>

namespace usb_support::usbdesc {

/// A text that holds no run: what was found where, and what was expected.
class TextError : public InputError {
 public:
  TextError(std::size_t line, std::size_t column, std::string_view found,
            std::string_view expected);

  /// Both count from 1; a column is a character.
  std::size_t Line() const noexcept { return line_; }
  std::size_t Column() const noexcept { return column_; }

 private:
  std::size_t line_;
  std::size_t column_;
};

/// The bytes that a text means; none when it holds nothing but comments. Throws TextError, or
/// InputError for more bytes than a range can span.
Bytes ReadText(std::string_view text);

}  // namespace usb_support::usbdesc

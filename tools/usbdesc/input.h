// Gets a run of descriptors from a file or a stream that holds it as raw bytes or as text.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

#include <tools/usbdesc/run_bytes.h>

namespace usb_support::usbdesc {

/// What an input is taken for.
enum class InputKind {
  kRecognise,  ///< text when LooksLikeText, else raw
  kRaw,
  kText,
};

/// The longest text that is read: four times what the largest run takes in any form.
inline constexpr std::size_t kMaxTextSize = std::size_t{16} << 20;

/// True when there is a byte and every byte is printable ASCII, white space or part of valid UTF-8
/// in a comment; a character that is cut off at the end counts as whole. A byte order mark is
/// allowed.
bool LooksLikeText(std::string_view content);

/// The run in a file. Throws InputError.
Bytes ReadFile(std::string const& name, InputKind kind);

/// The run in what a stream still holds; an endless one is left as soon as it is known to be too
/// long. Throws InputError.
Bytes ReadStream(std::FILE* stream, InputKind kind);

}  // namespace usb_support::usbdesc

// Reads files from outside, within limits.
#pragma once

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <usb_devices/bytes.h>
#include <usb_devices/export.h>

namespace usb_devices {

/// The path that a name in UTF-8 names, on every system.
USB_DEVICES_API std::filesystem::path PathOf(std::string_view name);

/// The name in UTF-8 of a path, with "/" between the parts.
USB_DEVICES_API std::string NameOf(std::filesystem::path const& path);

/// The bytes of a text, and the text of bytes.
inline Bytes BytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}
inline std::string TextOf(ByteSpan bytes) {
  return {bytes.begin(), bytes.end()};
}

/// An open file. Throws ReadError.
using OpenFile = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;
USB_DEVICES_API OpenFile OpenForReading(std::string const& name);

/// The most bytes that a stream may have, with the words for the message.
struct SizeLimit {
  std::size_t bytes;
  std::string_view what;  ///< "16 MiB of text"
};

/// Chooses the limit from the first block; called once.
using LimitOf = std::function<SizeLimit(std::string_view begin)>;

/// All remaining bytes of a stream. Reading stops as soon as they exceed the limit.
/// Throws ReadError; `name` names the stream in it.
USB_DEVICES_API std::string ReadStream(std::FILE* stream, std::string const& name,
                                       LimitOf const& limitOf);

/// All bytes of a file within a limit. Throws ReadError.
USB_DEVICES_API std::string ReadFile(std::string const& name, SizeLimit const& limit);

/// Writes a whole file. Throws ReadError with the name of the file.
USB_DEVICES_API void WriteFile(std::string const& name, std::string_view content);

}  // namespace usb_devices

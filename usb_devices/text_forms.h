// The forms of a text with descriptors, its contents, and its errors.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <usb_devices/device.h>
#include <usb_devices/export.h>
#include <usb_devices/read_error.h>

namespace usb_devices {

/// The form of a text; text_reader.h shows an example of each.
enum class TextForm : std::uint8_t {
  kHexadecimal,
  kStream,
  kColons,
  kPrefixes,
  kEscapes,
  kArrays,
  kPython,
  kXxd,
  kHexdump,
  kOd,
  kWireshark,
  kListing,
  kCode,
  kJson,
  kLsusb,
};
inline constexpr std::size_t kTextForms = static_cast<std::size_t>(TextForm::kLsusb) + 1;

/// The name of a form, as a user gives it: "hex", "xxd", ...
USB_DEVICES_API std::string_view NameOf(TextForm form) noexcept;

/// The form with a name; nothing when there is none.
USB_DEVICES_API std::optional<TextForm> TextFormOf(std::string_view name) noexcept;

/// A text that cannot be read: what was found where, and what was expected.
class USB_DEVICES_API TextError : public ReadError {
 public:
  TextError(std::string const& name, std::size_t line, std::size_t column, std::string const& found,
            std::string_view expected);

  /// Both count from 1; a column is one character.
  std::size_t Line() const noexcept { return line_; }
  std::size_t Column() const noexcept { return column_; }

 private:
  std::size_t line_;
  std::size_t column_;
};

/// Bytes of a text that belong together.
struct TextRun {
  Bytes bytes;
  std::uint64_t line = 1;          ///< where the run begins, from 1
  std::string title;               ///< as the text has it, or empty
  std::optional<Request> request;  ///< where the text names it
  Outcome outcome = Outcome::kAnswered;
  std::string note;
  std::optional<Speed> beginsDevice;  ///< set in an empty run that begins a device, `title`
};

}  // namespace usb_devices

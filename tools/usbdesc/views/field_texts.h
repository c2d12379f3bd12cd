// The texts of fields in all views.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>

#include <usb_fields/fields.h>

namespace usb_support::usbdesc {

/// "baSourceID[1]" of a field that repeats.
inline std::string NameOf(usb_fields::FieldValue const& field) {
  std::string name(field.field->name);
  if (!field.field->extra.repeat.empty()) {
    name.append("[").append(std::to_string(field.index)).append("]");
  }
  return name;
}

/// "0524" of two bytes.
inline std::string HexOf(std::span<std::uint8_t const> bytes) {
  std::string text;
  text.reserve(2 * bytes.size());
  for (std::uint8_t const byte : bytes) {
    text.push_back("0123456789ABCDEF"[byte >> 4]);
    text.push_back("0123456789ABCDEF"[byte & 0xF]);
  }
  return text;
}

/// Makes the texts of a device's fields. A returned text is valid until the next call of the same
/// function.
class FieldTexts {
 public:
  /// `names` are those of vendors and products; they outlive the texts.
  explicit FieldTexts(usb_fields::UsbIds const& names) noexcept : names_(names) {}

  /// Sets the strings of the device for the next fields; they outlive the texts.
  void Use(std::map<std::uint8_t, std::string> const& strings) noexcept { strings_ = &strings; }

  /// The value as a number, or the bytes.
  std::string_view Number(usb_fields::FieldValue const& field) noexcept {
    return usb_fields::NumberOf(field, number_);
  }
  /// The meaning of the value, or nothing: the name of a vendor or product, the string of an index.
  std::string_view Text(usb_fields::FieldValue const& field) noexcept {
    auto const number = static_cast<std::uint16_t>(field.value);
    if (field.field->name == "idVendor" && !field.IsCut()) {
      vendor_ = number;
      return names_.Vendor(vendor_);
    }
    if (field.field->name == "idProduct" && !field.IsCut()) {
      return names_.Product(vendor_, number);
    }
    if (field.field->meaning.form == usb_fields::Form::kStringIndex && strings_ != nullptr) {
      auto const string = strings_->find(static_cast<std::uint8_t>(field.value));
      if (number != 0 && string != strings_->end()) {
        return string->second;
      }
    }
    return usb_fields::TextOf(field, text_);
  }
  std::string_view Text(usb_fields::HidItem const& item) noexcept {
    return usb_fields::HidItemText(item, text_);
  }

 private:
  usb_fields::UsbIds const& names_;
  std::map<std::uint8_t, std::string> const* strings_ = nullptr;
  std::uint16_t vendor_ = 0;
  std::array<char, usb_fields::kMostText> number_;
  std::array<char, usb_fields::kMostText> text_;
};

}  // namespace usb_support::usbdesc

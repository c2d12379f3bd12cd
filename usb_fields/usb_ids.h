// Names of vendors and products from a "usb.ids" file, which Linux distributions provide
// (http://www.linux-usb.org/usb.ids). Nothing in the library needs the file; without it every name
// is empty. Once an object has read its names, any thread may look them up.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <usb_fields/export.h>

namespace usb_fields {

class UsbIds {
 public:
  /// An object without names.
  UsbIds() = default;

  /// Replaces the names with those of this file. Returns false, and leaves no names, when the file
  /// cannot be read or contains none.
  USB_FIELDS_API bool Read(std::filesystem::path const& file);

  /// The same with the first usb.ids that contains names in /usr/share/misc, /usr/share/hwdata and
  /// /var/lib/usbutils.
  USB_FIELDS_API bool ReadSystemFile();

  /// The same with the text of such a file.
  USB_FIELDS_API bool ReadText(std::string text);

  /// The name of a vendor, or the empty text. It is valid until the names are replaced.
  USB_FIELDS_API std::string_view Vendor(std::uint16_t vendor) const noexcept;

  /// The name of a vendor's product, or the empty text.
  USB_FIELDS_API std::string_view Product(std::uint16_t vendor,
                                          std::uint16_t product) const noexcept;

 private:
  struct Entry {
    std::uint64_t key;
    std::size_t offset;
    std::size_t size;
  };

  void Add(std::uint64_t key, std::size_t offset, std::size_t size);
  std::string_view Find(std::uint64_t key) const noexcept;

  std::string text_;
  std::vector<Entry> entries_;
};

}  // namespace usb_fields

// Writes HTML: markup unchanged, and text from outside with everything escaped that a browser would
// read as markup.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

namespace usb_support::usbdesc {

class HtmlWriter {
 public:
  HtmlWriter() { html_.reserve(kFirstSize); }

  /// Adds markup.
  ///
  /// Requires: nothing from outside is in it.
  HtmlWriter& Markup(std::string_view markup) {
    html_.append(markup);
    return *this;
  }

  /// Adds a text, safe as the content of an element and as the value of an attribute in quotes.
  /// Bytes that are not UTF-8, and characters that HTML does not allow, become U+FFFD.
  HtmlWriter& Text(std::string_view text);

  HtmlWriter& Number(std::size_t number);

  /// Adds an element around a text: Element("h2", "", name), Element("p", " class=note", text).
  HtmlWriter& Element(std::string_view name, std::string_view attributes, std::string_view text);

  std::string Take() { return std::move(html_); }

 private:
  static constexpr std::size_t kFirstSize = std::size_t{1} << 16;

  std::string html_;
};

}  // namespace usb_support::usbdesc

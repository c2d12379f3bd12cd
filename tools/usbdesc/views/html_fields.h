// The fields of descriptors beside their bytes, as HTML. Each field is a row with a link to its
// bytes, and its bytes are a link to the row.
#pragma once

#include <cstddef>

#include <tools/usbdesc/outline.h>
#include <tools/usbdesc/views/field_texts.h>
#include <tools/usbdesc/views/html_writer.h>

namespace usb_support::usbdesc {

/// Numbers the links of a page.
struct HtmlLinks {
  std::size_t fields = 0;
};

/// Adds the bytes and the table of fields of a descriptor.
void AddFields(HtmlWriter& html, HtmlLinks& links, OutlineItem const& item, FieldTexts& texts);

/// Adds bytes that belong to no descriptor.
void AddTail(HtmlWriter& html, OutlineRun const& run);

}  // namespace usb_support::usbdesc

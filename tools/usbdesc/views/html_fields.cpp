#include <tools/usbdesc/views/html_fields.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include <tools/usbdesc/log_text.h>
#include <usb_fields/fields.h>

namespace usb_support::usbdesc {
namespace {

using usb_fields::BitsReader;
using usb_fields::BitsValue;
using usb_fields::FieldValue;

void AddBytes(HtmlWriter& html, ByteSpan bytes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  char separator = '\0';
  for (std::uint8_t const byte : bytes) {
    char const text[] = {separator, kDigits[byte >> 4], kDigits[byte & 0xF]};
    html.Markup(separator == '\0' ? std::string_view(text + 1, 2) : std::string_view(text, 3));
    separator = ' ';
  }
}

// A row of the table and the bytes that belong to it.
class Table {
 public:
  Table(HtmlWriter& html, HtmlLinks& links) : html_(html), links_(links) {}

  void Begin() {
    html_.Markup(
        "<table><thead><tr><th scope=col>At<th scope=col>Field<th scope=col>Value<th "
        "scope=col>Meaning<tbody>");
  }

  void Row(std::size_t offset, std::string_view name, std::string_view number,
           std::string_view text) {
    ++row_;
    html_.Markup("<tr id=f").Number(links_.fields + row_).Markup("><td>").Number(offset);
    html_.Markup("<th scope=row><a href=#b").Number(links_.fields + row_).Markup(">").Text(name);
    html_.Markup("</a><td>").Text(number).Markup("<td>").Text(text);
  }

  void Bits(BitsValue const& bits) {
    html_.Markup("<tr class=b><td>").Number(bits.high);
    if (bits.low != bits.high) {
      html_.Markup("..").Number(bits.low);
    }
    html_.Markup("<td>").Text(bits.name).Markup("<td>").Number(bits.value);
    html_.Markup("<td>").Text(bits.text);
  }

  void End() {
    html_.Markup("</table>\n");
    links_.fields += row_;
  }

 private:
  HtmlWriter& html_;
  HtmlLinks& links_;
  std::size_t row_ = 0;
};

// The bytes of a descriptor, each group linked with its row.
class ByteGroups {
 public:
  ByteGroups(HtmlWriter& html, HtmlLinks const& links) : html_(html), next_(links.fields) {
    html_.Markup("<p class=x aria-label=Bytes>");
  }

  void Add(ByteSpan bytes) {
    ++next_;
    html_.Markup("<a id=b").Number(next_).Markup(" href=#f").Number(next_).Markup(">");
    AddBytes(html_, bytes);
    html_.Markup("</a> ");
  }

  void End() { html_.Markup("</p>"); }

 private:
  HtmlWriter& html_;
  std::size_t next_;
};

void AddHidItems(HtmlWriter& html, HtmlLinks& links, OutlineItem const& item, FieldTexts& texts) {
  ByteGroups groups(html, links);
  for (usb_fields::HidItemReader items(item.bytes); items.Next();) {
    groups.Add(items.Item().bytes);
  }
  groups.End();
  Table table(html, links);
  table.Begin();
  for (usb_fields::HidItemReader items(item.bytes); items.Next();) {
    usb_fields::HidItem const& one = items.Item();
    table.Row(one.offset, one.name.empty() ? "Reserved item" : one.name, std::to_string(one.number),
              texts.Text(one));
  }
  table.End();
}

}  // namespace

void AddFields(HtmlWriter& html, HtmlLinks& links, OutlineItem const& item, FieldTexts& texts) {
  if (item.isHidReport) {
    AddHidItems(html, links, item, texts);
    return;
  }
  ByteGroups groups(html, links);
  usb_fields::Reading const reading = usb_fields::ReadFields(
      item.bytes, item.context, [&](FieldValue const& field) { groups.Add(field.Bytes()); });
  ByteSpan const rest = item.bytes.last(reading.NotDescribed());
  if (!rest.empty()) {
    groups.Add(rest);
  }
  groups.End();
  Table table(html, links);
  table.Begin();
  usb_fields::ReadFields(item.bytes, item.context, [&](FieldValue const& field) {
    if (field.Bytes().empty()) {
      table.Row(field.offset, NameOf(field), "", "missing");
      return;
    }
    std::string_view const number = texts.Number(field);
    std::string_view const text = field.IsCut() ? "cut off" : texts.Text(field);
    // A long number tells no more than the bytes beside it.
    bool const isLong = number.size() > 12 && (!text.empty() || field.size > 8);
    table.Row(field.offset, NameOf(field), isLong ? "" : number, text);
    for (BitsReader bits(field); bits.Next();) {
      table.Bits(bits.Value());
    }
  });
  if (!rest.empty()) {
    table.Row(reading.described, "not described", "", Counted(rest.size(), "byte"));
  }
  table.End();
}

void AddTail(HtmlWriter& html, OutlineRun const& run) {
  if (run.breakReason.empty()) {
    return;
  }
  html.Markup("<p class=bad>Lengths bad: ").Text(run.breakReason).Markup(" at ");
  html.Text(Hex(run.breakOffset, 4) + "h, " + Counted(run.tail.size(), "byte") + " left")
      .Markup("</p>");
}

}  // namespace usb_support::usbdesc

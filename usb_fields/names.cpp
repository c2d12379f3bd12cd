#include <usb_fields/names.h>

#include <algorithm>

#include <usb_fields/tables/names.h>
#include <usb_fields/text_writer.h>

namespace usb_fields {
namespace {

using detail::ClassRow;

std::string_view RowName(std::uint8_t classCode, int subclass, int protocol) noexcept {
  for (ClassRow const& row : detail::ClassRows()) {
    if (row.classCode == classCode && row.subclass == subclass && row.protocol == protocol) {
      return row.name;
    }
  }
  return {};
}

}  // namespace

std::string_view ClassName(std::uint8_t classCode) noexcept {
  return RowName(classCode, ClassRow::kAny, ClassRow::kAny);
}

std::string_view SubclassName(std::uint8_t classCode, std::uint8_t subclass) noexcept {
  return RowName(classCode, subclass, ClassRow::kAny);
}

std::string_view ProtocolName(std::uint8_t classCode, std::uint8_t subclass,
                              std::uint8_t protocol) noexcept {
  std::string_view const name = RowName(classCode, subclass, protocol);
  return !name.empty() ? name : RowName(classCode, ClassRow::kAny, protocol);
}

std::string_view TripleName(std::uint8_t classCode, std::uint8_t subclass, std::uint8_t protocol,
                            std::span<char> buffer) noexcept {
  detail::TextWriter writer(buffer);
  std::string_view last;
  for (std::string_view const name : {ClassName(classCode), SubclassName(classCode, subclass),
                                      ProtocolName(classCode, subclass, protocol)}) {
    if (!name.empty() && name != last && !name.ends_with("undefined")) {
      writer.Add(writer.IsEmpty() ? "" : ", ");
      writer.Add(name);
      last = name;
    }
  }
  return writer.Text();
}

std::string_view LanguageName(std::uint16_t language) noexcept {
  return detail::NameOf(detail::LanguageCodes(), language);
}

std::string_view UsagePageName(std::uint16_t page) noexcept {
  return detail::NameOf(detail::UsagePageCodes(), page);
}

std::string_view UsageName(std::uint16_t page, std::uint16_t usage,
                           std::span<char> buffer) noexcept {
  std::string_view const name =
      detail::NameOf(detail::UsageCodes(), static_cast<std::uint32_t>(page) << 16 | usage);
  std::size_t const brace = name.find('{');
  if (brace == std::string_view::npos) {
    return name;
  }
  detail::TextWriter writer(buffer);
  writer.Add(name.substr(0, brace));
  if (name.substr(brace) == "{n}") {
    writer.AddNumber(usage);
  } else {
    writer.AddHex(usage, 4);
  }
  return writer.Text();
}

}  // namespace usb_fields

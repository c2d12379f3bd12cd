#include <usb_fields/usb_ids.h>

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>
#include <optional>
#include <utility>

namespace usb_fields {
namespace {

constexpr std::uint64_t kProduct = std::uint64_t{1} << 32;

// The number of a line such as "046d  Logitech, Inc.".
std::optional<std::uint16_t> NumberOfLine(std::string_view line) noexcept {
  constexpr std::size_t kDigits = 4;
  if (line.size() <= kDigits + 2 || line.substr(kDigits, 2) != "  ") {
    return std::nullopt;
  }
  std::uint16_t number = 0;
  auto const result = std::from_chars(line.data(), line.data() + kDigits, number, 16);
  if (result.ptr != line.data() + kDigits) {
    return std::nullopt;
  }
  return number;
}

// The number of bytes of the well-formed character at the start of `text`; 0 when there is none.
std::size_t CharacterSize(std::string_view text) noexcept {
  auto const byte = [&text](std::size_t at) {
    return at < text.size() ? static_cast<unsigned char>(text[at]) : 0u;
  };
  auto const isNext = [&byte](std::size_t at) { return (byte(at) & 0xC0) == 0x80; };
  unsigned const first = byte(0);
  if (first < 0x80) {
    return first >= 0x20 && first != 0x7F ? 1 : 0;
  }
  if (first >= 0xC2 && first < 0xE0) {
    return isNext(1) && (first != 0xC2 || byte(1) >= 0xA0) ? 2 : 0;
  }
  if (first >= 0xE0 && first < 0xF0) {
    bool const isShortest = first != 0xE0 || byte(1) >= 0xA0;
    bool const isSurrogate = first == 0xED && byte(1) >= 0xA0;
    return isNext(1) && isNext(2) && isShortest && !isSurrogate ? 3 : 0;
  }
  if (first >= 0xF0 && first < 0xF5) {
    bool const isInRange = (first != 0xF0 || byte(1) >= 0x90) && (first != 0xF4 || byte(1) < 0x90);
    return isNext(1) && isNext(2) && isNext(3) && isInRange ? 4 : 0;
  }
  return 0;
}

// Callers rely on names being UTF-8 without control characters.
void MakeHarmless(std::string& text) noexcept {
  for (std::size_t i = 0; i < text.size();) {
    std::size_t const size = CharacterSize(std::string_view(text).substr(i));
    if (size == 0 && text[i] != '\n' && text[i] != '\t') {
      text[i] = '?';
    }
    i += std::max<std::size_t>(size, 1);
  }
}

}  // namespace

bool UsbIds::Read(std::filesystem::path const& file) {
  std::ifstream stream(file, std::ios::binary);
  return ReadText({std::istreambuf_iterator<char>(stream), {}});
}

bool UsbIds::ReadSystemFile() {
  for (char const* const folder : {"/usr/share/misc", "/usr/share/hwdata", "/var/lib/usbutils"}) {
    if (Read(std::filesystem::path(folder) / "usb.ids")) {
      return true;
    }
  }
  return false;
}

bool UsbIds::ReadText(std::string text) {
  std::erase(text, '\r');
  MakeHarmless(text);
  text_ = std::move(text);
  entries_.clear();
  // Lines of other lists (classes, languages ...) begin with a letter and a space; the indented
  // lines below them belong to those lists.
  std::optional<std::uint16_t> vendor;
  for (std::size_t begin = 0; begin < text_.size();) {
    std::size_t const end = std::min(text_.find('\n', begin), text_.size());
    std::string_view line = std::string_view(text_).substr(begin, end - begin);
    bool const isIndented = line.starts_with('\t');
    line.remove_prefix(isIndented ? 1 : 0);
    std::optional<std::uint16_t> const number = NumberOfLine(line);
    std::size_t const name = begin + (isIndented ? 7 : 6);
    if (!isIndented && !line.empty() && !line.starts_with('#')) {
      vendor = number;
      if (vendor) {
        Add(*vendor, name, end - name);
      }
    } else if (isIndented && vendor && number) {
      Add(kProduct | static_cast<std::uint64_t>(*vendor) << 16 | *number, name, end - name);
    }
    begin = end + 1;
  }
  std::ranges::stable_sort(entries_, {}, &Entry::key);
  return !entries_.empty();
}

void UsbIds::Add(std::uint64_t key, std::size_t offset, std::size_t size) {
  entries_.push_back({key, offset, size});
}

std::string_view UsbIds::Find(std::uint64_t key) const noexcept {
  auto const found = std::ranges::lower_bound(entries_, key, {}, &Entry::key);
  if (found == entries_.end() || found->key != key) {
    return {};
  }
  return std::string_view(text_).substr(found->offset, found->size);
}

std::string_view UsbIds::Vendor(std::uint16_t vendor) const noexcept {
  return Find(vendor);
}

std::string_view UsbIds::Product(std::uint16_t vendor, std::uint16_t product) const noexcept {
  return Find(kProduct | static_cast<std::uint64_t>(vendor) << 16 | product);
}

}  // namespace usb_fields

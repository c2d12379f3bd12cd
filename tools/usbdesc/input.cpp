#include <tools/usbdesc/input.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <set>
#include <system_error>

#include <tools/usbdesc/characters.h>
#include <tools/usbdesc/platform.h>
#include <tools/usbdesc/text_reader.h>

namespace usb_support::usbdesc {
namespace {

[[noreturn]] void FailWithErrno(std::string what, int error) {
  if (error != 0) {
    what += ": " + std::generic_category().message(error);
  }
  throw InputError(what);
}

// "; its files: a/b.bin, a/c.bin", which a user can copy; the first in order when they are many.
std::string FilesIn(std::filesystem::path const& folder) {
  constexpr std::size_t kShown = 10;
  std::set<std::string> names;
  std::error_code error;
  for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end;
       it.increment(error)) {
    std::error_code ignored;
    if (it->is_regular_file(ignored)) {
      std::u8string const name = it->path().generic_u8string();
      names.emplace(name.begin(), name.end());
    }
  }
  std::string text;
  std::size_t count = 0;
  for (std::string const& name : names) {
    if (count++ == kShown) {
      return text + " and " + std::to_string(names.size() - kShown) + " more";
    }
    text += (text.empty() ? "; its files: " : ", ") + name;
  }
  return text.empty() ? "; it has no files" : text;
}

bool IsRaw(std::string_view content, InputKind kind) {
  return kind == InputKind::kRaw || (kind == InputKind::kRecognise && !LooksLikeText(content));
}

// Appends the next block; false at the end of the stream.
bool AppendBlock(std::string& content, std::FILE* stream) {
  std::array<char, kMaxRunSize + 1> block;
  errno = 0;
  std::size_t const size = std::fread(block.data(), 1, block.size(), stream);
  bool const isWhole = size == block.size();
  // Microsoft's C library does not mark every failure as one, but the end it does.
  if (std::ferror(stream) != 0 || (!isWhole && std::feof(stream) == 0)) {
    FailWithErrno("cannot be read", errno);
  }
  content.append(block.data(), size);
  return isWhole;
}

std::string ReadContent(std::FILE* stream, InputKind kind) {
  std::string content;
  bool mayGoOn = false;
  while (AppendBlock(content, stream)) {
    // A block is longer than the longest raw run, so only a text may go on.
    if (!mayGoOn && IsRaw(content, kind)) {
      throw InputError(kRunTooLong);
    }
    mayGoOn = true;
    if (content.size() > kMaxTextSize) {
      break;
    }
  }
  if (content.size() > kMaxTextSize) {
    throw InputError("holds more than 16 MiB of text");
  }
  return content;
}

}  // namespace

bool LooksLikeText(std::string_view content) {
  if (content.starts_with(kByteOrderMark)) {
    content.remove_prefix(kByteOrderMark.size());
    if (content.empty()) {
      return true;
    }
  }
  enum class Place { kText, kLineComment, kBlockComment };
  Place place = Place::kText;
  for (std::size_t at = 0; at < content.size();) {
    auto const byte = static_cast<unsigned char>(content[at]);
    std::string_view const pair = content.substr(at, 2);
    if (byte >= 0x80) {
      std::size_t const length = Utf8Length(content.substr(at));
      if (place == Place::kText || length == 0) {
        return false;
      }
      at += length;
      continue;
    }
    if (!IsWhiteSpace(content[at]) && !IsPrintable(content[at])) {
      return false;
    }
    if (place == Place::kText && (byte == '#' || pair == "//")) {
      place = Place::kLineComment;
    } else if (place == Place::kText && pair == "/*") {
      place = Place::kBlockComment;
      ++at;
    } else if ((place == Place::kLineComment && IsLineEnd(content[at])) ||
               (place == Place::kBlockComment && pair == "*/")) {
      at += place == Place::kBlockComment ? 1 : 0;
      place = Place::kText;
    }
    ++at;
  }
  return !content.empty();
}

Bytes ReadStream(std::FILE* stream, InputKind kind) {
  std::string const content = ReadContent(stream, kind);
  if (!IsRaw(content, kind)) {
    return ReadText(content);
  }
  if (content.size() > kMaxRunSize) {
    throw InputError(kRunTooLong);
  }
  return Bytes(content.begin(), content.end());
}

Bytes ReadFile(std::string const& name, InputKind kind) {
  std::error_code ignored;
  if (std::filesystem::is_directory(PathOf(name), ignored)) {
    throw InputError("is a directory" + FilesIn(PathOf(name)));
  }
  errno = 0;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> const file(OpenForReading(name), std::fclose);
  if (file == nullptr) {
    FailWithErrno("cannot be opened", errno);
  }
  return ReadStream(file.get(), kind);
}

}  // namespace usb_support::usbdesc

#include <usb_support/vendor_names/vendor_name.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include <usb_support/platform/files.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/suite_interfaces/system.h>
#include <usb_support/text/formatting.h>
#include <usb_support/vendor_names/vendor_list.h>

namespace {

constexpr char const* kFileName = "usbif.json";
constexpr char const* kNameMember = "name";
constexpr char const* kIdMember = "field_vid";

// A list is read into memory; the complete list of the USB-IF has 2 MB.
constexpr std::uintmax_t kLargestList = 128 << 20;

// The page of the USB-IF that lists its companies as JSON.
constexpr char const* kVendorListAddress = "https://www.usb.org/jsonlist";

template <typename... Args>
void Log(usb_support::FormatFor<Args...> format, Args... args) {
  usb_support::LogFormatted<Args...>(CAppState::Log(), TEST_STATUS_VENDOR_LIST, format, args...);
}

void LogHowToGetTheList(char const* verb) {
  CSafeString const folder = GetUsbifJsonFolderPathName();
  Log("Couldn't %s vendor name file: %s\nOpen the link %s in a browser. Once the page has fully "
      "loaded, copy full content of the page into the text file %s, and place it in the directory "
      "\"%s\"",
      verb, kFileName, kVendorListAddress, kFileName, folder.c_str());
}

// A file that cannot be examined counts as missing.
bool Exists(std::filesystem::path const& path) {
  std::error_code error;
  return std::filesystem::exists(path, error);
}

// Makes sure that the list is at `path`; otherwise logs the reason.
bool PutListInPlace(std::optional<std::filesystem::path> const& path) {
  if (path && Exists(*path)) {
    return true;
  }
  if (path && Exists(kFileName)) {
    // Another thread may have moved it there in the meantime.
    if (path->native() == std::filesystem::path(kFileName).native()) {
      return true;
    }
    CSafeString const folder = GetUsbifJsonFolderPathName();
    Log("Moving %s to new location: %s", kFileName, folder.c_str());
    usb_support::platform::MoveFileReplacing(kFileName, *path);
    if (Exists(*path)) {
      return true;
    }
  }
  LogHowToGetTheList("find");
  return false;
}

// The whole file; nothing when it cannot be opened or read, is too large, or is a pipe or a device,
// which may have no end.
std::optional<std::string> ReadFile(std::filesystem::path const& file) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) {
    return std::nullopt;
  }
  std::uintmax_t const size = std::filesystem::file_size(file, error);
  if (error || size > kLargestList) {
    return std::nullopt;
  }
  // What is added to the file from now on is not read.
  std::ifstream stream(file);
  std::string text(static_cast<std::size_t>(size), '\0');
  stream.read(text.data(), static_cast<std::streamsize>(size));
  if (!stream.is_open() || stream.bad()) {
    return std::nullopt;
  }
  text.resize(static_cast<std::size_t>(stream.gcount()));
  return text;
}

void LogFault(usb_support::FaultyEntry const& entry) {
  auto const log = [&]<typename... Args>(usb_support::FormatFor<Args...> format, Args... args) {
    usb_support::LogFormatted<Args...>(CAppState::Log(), TEST_STATUS_VENDOR_LIST, LOG_LEVEL_6,
                                       format, args...);
  };
  char const* const name = entry.name;
  switch (entry.fault) {
    case usb_support::EntryFault::kNotAnObject:
      log("JSON Array value is not an object.");
      break;
    case usb_support::EntryFault::kNoName:
      log("Couldn't find object member: %s.", kNameMember);
      break;
    case usb_support::EntryFault::kNameNotText:
      log("Member %s is not a string.", kNameMember);
      break;
    case usb_support::EntryFault::kNameEmpty:
      log("Member %s is empty.", kNameMember);
      break;
    case usb_support::EntryFault::kNoId:
      log("Couldn't find object member: %s for vendor %s.", kIdMember, name);
      break;
    case usb_support::EntryFault::kIdNotText:
      log("Member %s for vendor %s is not a string.", kIdMember, name);
      break;
    case usb_support::EntryFault::kIdEmpty:
      log("%s is empty for vendor %s.", kIdMember, name);
      break;
    case usb_support::EntryFault::kIdInvalid:
      log("Invalid %s: %s for vendor %s.", kIdMember, entry.id, name);
      break;
  }
}

// Searches the list for `vid`. `name` points into `text`, which the caller owns.
usb_support::VendorAnswer Search(int vid, std::optional<std::string>& text,
                                 std::string_view& name) {
  using usb_support::VendorAnswer;
  std::optional<std::filesystem::path> const path = usb_support::platform::PathOf(
      AppendToPath(GetUsbifJsonFolderPathName().get(), kFileName).get());
  if (!PutListInPlace(path)) {
    return VendorAnswer::kNoList;
  }
  text = ReadFile(*path);
  if (!text) {
    LogHowToGetTheList("open");
    return VendorAnswer::kBrokenList;
  }
  // Faulty entries are logged only when the whole text is a list, and are not kept until then,
  // because a list may have millions of them: a second search, in a second text, finds them again.
  std::string unsearched = *text;
  bool hasFaults = false;
  usb_support::VendorSearch search = usb_support::SearchVendorList(
      *text, vid, [&hasFaults](usb_support::FaultyEntry const&) { hasFaults = true; });
  if (search.parseError != 0) {
    Log("Couldn't parse vendor name file %s.", kFileName);
    Log("JSON parse error: %u (offset: %u)\n", search.parseError,
        static_cast<unsigned int>(search.errorOffset));
    return VendorAnswer::kBrokenList;
  }
  if (!search.isArray) {
    Log("Unexpected format: %s should be a JSON array.", kFileName);
    return VendorAnswer::kBrokenList;
  }
  if (hasFaults) {
    text = std::move(unsearched);
    search = usb_support::SearchVendorList(*text, vid, LogFault);
  }
  if (!search.name) {
    return VendorAnswer::kNotInList;
  }
  name = *search.name;
  return VendorAnswer::kFound;
}

}  // namespace

RETURN_CODE GetVendorName(int vid, char* buffer, int size) {
  std::optional<std::string> text;
  std::string_view name;
  if (Search(vid, text, name) != usb_support::VendorAnswer::kFound) {
    return RC_OPERATION_FAILED;
  }
  auto const room = static_cast<std::size_t>(size);
  std::strncpy(buffer, name.data(), room);
  buffer[room - 1] = '\0';
  return RC_SUCCESS;
}

usb_support::VendorLookup usb_support::FindVendorName(int vid) {
  std::optional<std::string> text;
  std::string_view name;
  VendorAnswer const answer = Search(vid, text, name);
  return {answer, std::string(name)};
}

char const* usb_support::VendorAnswerText(VendorAnswer answer) noexcept {
  switch (answer) {
    case VendorAnswer::kFound:
      return "found";
    case VendorAnswer::kNotInList:
      return "not in the list";
    case VendorAnswer::kNoList:
      return "there is no list";
    case VendorAnswer::kBrokenList:
      break;
  }
  return "the list is broken";
}

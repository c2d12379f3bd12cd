#include <usb_support/suite_interfaces/system.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iterator>
#include <mutex>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include <standalone_suite/base_support/never_destroyed.h>
#include <standalone_suite/base_support/sleep_record.h>
#include <standalone_suite/base_support/vendor_list_folder.h>
#include <standalone_suite/platform/host.h>

namespace {

struct VendorListFolder {
  std::mutex lock;
  std::optional<std::string> folder;
};

VendorListFolder& TheVendorListFolder() {
  static usb_support::standalone::NeverDestroyed<VendorListFolder> folder;
  return folder.value;
}

// A new account has no such folder, and a list could neither be placed nor moved there. A folder
// that cannot be made causes an error when it is used.
void MakeFolder(std::string const& folder) {
  try {
    std::filesystem::create_directories(std::u8string(folder.begin(), folder.end()));
  } catch (std::system_error const&) {
    return;
  }
}

std::string VendorListFolderInUse() {
  VendorListFolder& chosen = TheVendorListFolder();
  {
    std::lock_guard const guard(chosen.lock);
    if (chosen.folder) {
      return *chosen.folder;
    }
  }
  std::string folder = usb_support::standalone::EnvironmentVariable("USBIF_JSON_FOLDER");
  if (folder.empty()) {
    folder = usb_support::standalone::UserDataFolder();
    MakeFolder(folder);
  }
  return folder;
}

constexpr char kSeparator = static_cast<char>(std::filesystem::path::preferred_separator);
constexpr char kSeparators[] = {'/', kSeparator};

bool IsSeparator(char c) {
  return std::find(std::begin(kSeparators), std::end(kSeparators), c) != std::end(kSeparators);
}

bool NeedsSeparator(std::string_view folder, std::string_view name) {
  if (folder.empty() || name.empty()) {
    return false;
  }
  // On Windows "C:" alone is that drive's current folder; a separator would make it the drive's
  // root.
  bool const endsInDrive = kSeparator == '\\' && folder.back() == ':';
  return !endsInDrive && !IsSeparator(folder.back()) && !IsSeparator(name.front());
}

}  // namespace

void SleepMicroSec(std::uint64_t microseconds) {
  using Clock = std::chrono::steady_clock;
  using Micro = std::chrono::duration<std::uint64_t, std::micro>;
  constexpr std::uint64_t kLongestSleep = 3'600'000'000;

  usb_support::standalone::SleepRecord::Add(microseconds);
  auto const start = Clock::now();
  std::uint64_t passed = 0;
  // Some systems cut a sleep to whole milliseconds or clock ticks, so that one sleep may be too
  // short; and the length of one sleep is limited, so that the clock's arithmetic does not
  // overflow.
  while (passed < microseconds) {
    std::this_thread::sleep_for(Micro(std::min(microseconds - passed, kLongestSleep)));
    passed = std::chrono::duration_cast<Micro>(Clock::now() - start).count();
  }
}

CSafeString AppendToPath(basic_sv_wrapper<char> const& folder, basic_sv_wrapper<char> const& name) {
  std::string path;
  path.reserve(folder.size() + 1 + name.size());
  path += folder.view();
  if (NeedsSeparator(folder.view(), name.view())) {
    path += kSeparator;
  }
  path += name.view();
  return CSafeString(basic_sv_wrapper<char>(path));
}

CSafeString GetUsbifJsonFolderPathName() {
  return CSafeString(basic_sv_wrapper<char>(VendorListFolderInUse()));
}

namespace usb_support::standalone {

void SetVendorListFolder(std::optional<std::string> folder) {
  VendorListFolder& chosen = TheVendorListFolder();
  std::lock_guard const guard(chosen.lock);
  chosen.folder = std::move(folder);
}

}  // namespace usb_support::standalone

#include <usb_support/suite_interfaces/app_state.h>

#include <atomic>
#include <utility>

#include <standalone_suite/base_support/never_destroyed.h>
#include <standalone_suite/suite_runtime/log.h>
#include <usb_support/suite_interfaces/exceptions.h>

namespace {

using HelperOwner = custom_unique_ptr<TQHelper, TQHelper>;

HelperOwner& TheHelper() {
  static usb_support::standalone::NeverDestroyed<HelperOwner> helper;
  return helper.value;
}

void ReplaceHelper(HelperOwner helper) {
  // The previous helper is destroyed when `helper` goes out of scope: its destructor already finds
  // the new one.
  TheHelper().swap(helper);
}

struct HelperAtExit {
  ~HelperAtExit() { ReplaceHelper(nullptr); }
};

}  // namespace

CAppSettings& CAppState::AppSettings() {
  static CAppSettings settings;
  return settings;
}

TQLogger& CAppState::Log() {
  static TQLogger logger;
  return logger;
}

TQHelper& CAppState::Helper() {
  if (TheHelper() == nullptr) {
    throw TQRunTimeException("No helper is registered.", TEST_STATUS_INTERNAL_ERROR);
  }
  return *TheHelper();
}

void CAppState::Helper(custom_unique_ptr<TQHelper, TQHelper>&& helper) {
  // Built with the first helper, so that the last helper is destroyed before the objects that
  // existed when the first one was registered. (On Windows a library's static objects are always
  // destroyed after those of the program.)
  static HelperAtExit const atExit;
  ReplaceHelper(std::move(helper));
}

bool CAppState::HelperCreated() {
  return TheHelper() != nullptr;
}

ELogLevel CAppState::TQLogVerbosityLevel() {
  return usb_support::standalone::LogVerbosity();
}

bool CAppState::IsLogVerbosityLevel(ELogLevel level) {
  return level <= TQLogVerbosityLevel();
}

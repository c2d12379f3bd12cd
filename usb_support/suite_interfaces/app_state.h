// The state of the running application: its settings, its log and its one helper.
#pragma once

#include <functional>
#include <memory>

#include <usb_support/platform/export.h>
#include <usb_support/suite_interfaces/app_settings.h>
#include <usb_support/suite_interfaces/log_level.h>
#include <usb_support/suite_interfaces/tq_helper.h>
#include <usb_support/suite_interfaces/tq_logger.h>

/// A move-only owner with its own deleter, so that the module that made an object frees it.
template <typename T, typename Deleted>
using custom_unique_ptr = std::unique_ptr<T, std::function<void(Deleted*)>>;

/// Static access to the application's state. Settings and helper belong to the test thread; the
/// log may be used from any.
class SUITE_RUNTIME_API CAppState {
 public:
  /// The settings and the log; they live as long as the process.
  static CAppSettings& AppSettings();
  static TQLogger& Log();

  /// The registered helper. Throws a TQException when there is none.
  static TQHelper& Helper();

  /// Takes ownership of the application's helper and destroys the previous one.
  static void Helper(custom_unique_ptr<TQHelper, TQHelper>&& helper);

  /// True once a helper has been registered.
  static bool HelperCreated();

  /// The verbosity of the run.
  static ELogLevel TQLogVerbosityLevel();

  /// True when lines of this level are shown in this run.
  static bool IsLogVerbosityLevel(ELogLevel level);
};

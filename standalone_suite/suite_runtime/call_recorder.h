// Shows a test what the code under test asked of the suite: the settings it read and the tests it
// ended.
//
// A recorder takes down the calls of the whole process from its construction to its end; the calls
// themselves are answered as usual. Several recorders may be alive at a time, each with a record of
// its own. Any thread may use it.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include <usb_support/platform/export.h>
#include <usb_support/suite_interfaces/app_settings.h>
#include <usb_support/suite_interfaces/test_status.h>
#include <usb_support/suite_interfaces/tq_helper.h>

namespace usb_support::standalone {

/// What a setting was read as.
enum class SettingKind {
  kBoolean,
  kInteger,
};

/// One read of a setting, found or not.
struct SettingRead {
  std::string key;                           ///< the name of the setting
  SettingKind kind = SettingKind::kBoolean;  ///< what it was read as
  EScope scope = SCOPE_DEFAULT;              ///< where it was looked for
  int base = 0;  ///< the base asked for; 0 for a boolean read, which has none

  friend bool operator==(SettingRead const&, SettingRead const&) = default;
};

/// Writes the read for a test's output, for example `integer "Speed" (scope 0, base 10)`.
SUITE_RUNTIME_API std::ostream& operator<<(std::ostream& out, SettingRead const& read);

/// Records setting reads and StopTest calls while it is alive.
class CallRecorder {
 public:
  SUITE_RUNTIME_API CallRecorder();
  CallRecorder(CallRecorder const&) = delete;
  CallRecorder& operator=(CallRecorder const&) = delete;
  SUITE_RUNTIME_API ~CallRecorder();

  /// The settings asked for so far, in order.
  SUITE_RUNTIME_API std::vector<SettingRead> SettingReads() const;

  /// The statuses that StopTest was called with so far, in order.
  SUITE_RUNTIME_API std::vector<TEST_STATUS> StopTests() const;

  /// Forgets the calls so far.
  SUITE_RUNTIME_API void Clear();

 private:
  friend ::CAppSettings;
  friend ::TQHelper;

  static void RecordSettingRead(std::string_view key, SettingKind kind, EScope scope, int base);
  static void RecordStopTest(TEST_STATUS status);

  std::vector<SettingRead> settingReads_;
  std::vector<TEST_STATUS> stopTests_;
};

/// Sets what TQHelper::StopTest answers from now on; it is true until this is called.
SUITE_RUNTIME_API void SetStopTestAnswer(bool stop);

/// What TQHelper::StopTest answers.
SUITE_RUNTIME_API bool StopTestAnswer();

}  // namespace usb_support::standalone

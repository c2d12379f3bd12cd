// Shows a test what the code under test requested from the suite: the settings that it read and the
// tests that it ended.
//
// A recorder records the calls of the whole process from its construction to its destruction; the
// calls themselves are answered as usual. Several recorders may exist at a time, each with its own
// record. Any thread may use it.
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

/// The type that a setting was read as.
enum class SettingKind {
  kBoolean,
  kInteger,
};

/// One read of a setting, found or not.
struct SettingRead {
  std::string key;                           ///< the name of the setting
  SettingKind kind = SettingKind::kBoolean;  ///< the type that it was read as
  EScope scope = SCOPE_DEFAULT;              ///< the scope of the search
  int base = 0;  ///< the requested base; 0 for a boolean read, which has none

  friend bool operator==(SettingRead const&, SettingRead const&) = default;
};

/// Writes the read for a test's output, for example `integer "Speed" (scope 0, base 10)`.
SUITE_RUNTIME_API std::ostream& operator<<(std::ostream& out, SettingRead const& read);

/// Records setting reads and StopTest calls while it exists.
class CallRecorder {
 public:
  SUITE_RUNTIME_API CallRecorder();
  CallRecorder(CallRecorder const&) = delete;
  CallRecorder& operator=(CallRecorder const&) = delete;
  SUITE_RUNTIME_API ~CallRecorder();

  /// The settings read so far, in order.
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

/// Sets the answer of TQHelper::StopTest from now on; it is true until this is called.
SUITE_RUNTIME_API void SetStopTestAnswer(bool stop);

/// The answer of TQHelper::StopTest.
SUITE_RUNTIME_API bool StopTestAnswer();

}  // namespace usb_support::standalone

#include <standalone_suite/suite_runtime/call_recorder.h>

#include <atomic>
#include <mutex>
#include <ostream>

#include <standalone_suite/base_support/never_destroyed.h>

namespace usb_support::standalone {
namespace {

struct Alive {
  std::mutex lock;
  std::vector<CallRecorder*> recorders;
};

Alive& TheAlive() {
  static NeverDestroyed<Alive> alive;
  return alive.value;
}

std::atomic<bool> stopTestAnswer{true};

}  // namespace

std::ostream& operator<<(std::ostream& out, SettingRead const& read) {
  out << (read.kind == SettingKind::kBoolean ? "boolean" : "integer") << " \"" << read.key
      << "\" (scope " << static_cast<std::uint32_t>(read.scope);
  if (read.kind == SettingKind::kInteger) {
    out << ", base " << read.base;
  }
  return out << ')';
}

CallRecorder::CallRecorder() {
  Alive& alive = TheAlive();
  std::lock_guard const guard(alive.lock);
  alive.recorders.push_back(this);
}

CallRecorder::~CallRecorder() {
  Alive& alive = TheAlive();
  std::lock_guard const guard(alive.lock);
  std::erase(alive.recorders, this);
}

std::vector<SettingRead> CallRecorder::SettingReads() const {
  std::lock_guard const guard(TheAlive().lock);
  return settingReads_;
}

std::vector<TEST_STATUS> CallRecorder::StopTests() const {
  std::lock_guard const guard(TheAlive().lock);
  return stopTests_;
}

void CallRecorder::Clear() {
  std::lock_guard const guard(TheAlive().lock);
  settingReads_.clear();
  stopTests_.clear();
}

void CallRecorder::RecordSettingRead(std::string_view key, SettingKind kind, EScope scope,
                                     int base) {
  Alive& alive = TheAlive();
  std::lock_guard const guard(alive.lock);
  for (CallRecorder* const recorder : alive.recorders) {
    recorder->settingReads_.push_back(SettingRead{std::string(key), kind, scope, base});
  }
}

void CallRecorder::RecordStopTest(TEST_STATUS status) {
  Alive& alive = TheAlive();
  std::lock_guard const guard(alive.lock);
  for (CallRecorder* const recorder : alive.recorders) {
    recorder->stopTests_.push_back(status);
  }
}

void SetStopTestAnswer(bool stop) {
  stopTestAnswer = stop;
}

bool StopTestAnswer() {
  return stopTestAnswer;
}

}  // namespace usb_support::standalone

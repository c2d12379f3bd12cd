#include <standalone_suite/base_support/sleep_recorder.h>

#include <mutex>

#include <standalone_suite/base_support/never_destroyed.h>
#include <standalone_suite/base_support/sleep_record.h>

namespace usb_support::standalone {
namespace {

struct Alive {
  std::mutex lock;
  std::vector<SleepRecorder*> recorders;
};

Alive& TheAlive() {
  static NeverDestroyed<Alive> alive;
  return alive.value;
}

}  // namespace

SleepRecorder::SleepRecorder() {
  Alive& alive = TheAlive();
  std::lock_guard const guard(alive.lock);
  alive.recorders.push_back(this);
}

SleepRecorder::~SleepRecorder() {
  Alive& alive = TheAlive();
  std::lock_guard const guard(alive.lock);
  std::erase(alive.recorders, this);
}

std::vector<std::uint64_t> SleepRecorder::Sleeps() const {
  std::lock_guard const guard(TheAlive().lock);
  return sleeps_;
}

void SleepRecorder::Clear() {
  std::lock_guard const guard(TheAlive().lock);
  sleeps_.clear();
}

void SleepRecord::Add(std::uint64_t microseconds) {
  Alive& alive = TheAlive();
  std::lock_guard const guard(alive.lock);
  for (SleepRecorder* const recorder : alive.recorders) {
    recorder->sleeps_.push_back(microseconds);
  }
}

}  // namespace usb_support::standalone

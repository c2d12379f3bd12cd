#include <standalone_suite/suite_runtime/log_dispatch.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <exception>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <utility>
#include <vector>

#include <standalone_suite/base_support/never_destroyed.h>
#include <standalone_suite/suite_runtime/log_sinks.h>

namespace usb_support::standalone {
namespace {

using SinkList = std::vector<std::shared_ptr<LogSink>>;

struct Sinks {
  std::mutex lock;
  // Until the program chooses a sink, nothing that is written may be lost.
  SinkList list{std::make_shared<ConsoleSink>(stderr)};
  bool areChosen = false;
};

Sinks& TheSinks() {
  static NeverDestroyed<Sinks> sinks;
  return sinks.value;
}

std::atomic<ELogLevel> logVerbosity{LOG_LEVEL_3};

thread_local bool sinkIsTaking = false;

// Locks the sinks for this thread. A sink that calls this again would wait for itself for ever.
class SinksLock {
 public:
  SinksLock() : guard_(RefuseSink(TheSinks()).lock) {}

 private:
  static Sinks& RefuseSink(Sinks& sinks) {
    if (sinkIsTaking) {
      throw std::logic_error("A log sink must neither write to the log nor change its sinks.");
    }
    return sinks;
  }

  std::lock_guard<std::mutex> guard_;
};

class TakingMark {
 public:
  TakingMark() { sinkIsTaking = true; }
  TakingMark(TakingMark const&) = delete;
  TakingMark& operator=(TakingMark const&) = delete;
  ~TakingMark() { sinkIsTaking = false; }
};

struct SinksAtExit {
  ~SinksAtExit() {
    // On Windows the other threads no longer exist at this time, and one may have ended during a
    // write: then the lock is never released, and the sinks stay.
    std::unique_lock guard(TheSinks().lock, std::try_to_lock);
    if (guard) {
      SinkList last;
      last.swap(TheSinks().list);
      guard.unlock();
    }
  }
};

}  // namespace

LogSink::~LogSink() = default;

void HandToSinks(LogCall const& call) {
  std::exception_ptr failure;
  {
    SinksLock const lock;
    TakingMark const mark;
    for (std::shared_ptr<LogSink> const& sink : TheSinks().list) {
      try {
        sink->Take(call);
      } catch (...) {
        if (!failure) {
          failure = std::current_exception();
        }
      }
    }
  }
  if (failure) {
    std::rethrow_exception(failure);
  }
}

void AddLogSink(std::shared_ptr<LogSink> sink) {
  if (sink == nullptr) {
    throw std::invalid_argument("A log sink must not be null.");
  }
  static SinksAtExit const atExit;
  SinkList unchosen;
  SinksLock const lock;
  SinkList& list = TheSinks().list;
  if (!std::exchange(TheSinks().areChosen, true)) {
    unchosen.swap(list);
  }
  if (std::find(list.begin(), list.end(), sink) == list.end()) {
    list.push_back(std::move(sink));
  }
}

void RemoveLogSink(std::shared_ptr<LogSink> const& sink) {
  // Destroys the sink, if it has no other owner, after the lock is released: its destructor may
  // log.
  std::shared_ptr<LogSink> removed;
  SinksLock const lock;
  SinkList& list = TheSinks().list;
  auto const found = std::find(list.begin(), list.end(), sink);
  if (found != list.end()) {
    removed = std::move(*found);
    list.erase(found);
  }
}

void RemoveAllLogSinks() {
  SinkList removed;
  SinksLock const lock;
  removed.swap(TheSinks().list);
  TheSinks().areChosen = true;
}

void SetLogVerbosity(ELogLevel verbosity) {
  logVerbosity = verbosity;
}

ELogLevel LogVerbosity() {
  return logVerbosity;
}

}  // namespace usb_support::standalone

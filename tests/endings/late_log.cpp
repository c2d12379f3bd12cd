// Logs an assertion when nearly everything has been destroyed. The argument names the place:
// "static", "thread_local", "worker" (a thread_local object of another thread) or "helper" (the
// registered helper). A sanitizer sees what the library then touches.
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <thread>

#include <standalone_suite/suite_runtime/log.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/text/formatting.h>
#include <usb_support/usb_support.h>

namespace {

class PrintingSink : public usb_support::standalone::LogSink {
 public:
  void Take(usb_support::standalone::LogCall const& call) override {
    std::fwrite(call.text.data(), 1, call.text.size(), stdout);
    std::fputs(call.operation == usb_support::standalone::LogOperation::kDoWrite ? "\n" : "",
               stdout);
    std::fflush(stdout);
  }
};

void Assert(char const* message) {
  TQAssertionNumbers const numbers[] = {{{"TD", "9", "4", "1"}}};
  char const* const messages[] = {message};
  LogAssert(TEST_STATUS_FAILURE, 0, numbers, messages);
}

void UseEverything(char const* when) {
  Assert(when);
  std::string const longText(2000, '.');
  usb_support::LogFormatted(CAppState::Log(), TEST_STATUS_PLAIN, "%.3s%s", when,
                            longText.c_str() + 1990);
  CSimpleBuffer out;
  usb_support::Format(out, {}, "%s", longText.c_str());
  try {
    ++CDescriptorRangeIterator();
  } catch (TQRunTimeException const& exception) {
    usb_support::LogWrite(CAppState::Log(), TEST_STATUS_PLAIN, exception.what());
  }
}

void End() {
  std::puts("ending");
  std::fflush(stdout);
  UseEverything("end");
}

struct LogsAtItsEnd {
  ~LogsAtItsEnd() { End(); }
};

class HelperThatLogs : public CUsbHelper {
 public:
  HelperThatLogs() : CUsbHelper(nullptr) {}
  HelperThatLogs(HelperThatLogs const&) = delete;
  HelperThatLogs& operator=(HelperThatLogs const&) = delete;
  ~HelperThatLogs() override { End(); }
};

// Older than the library's objects for the thread, so that it is destroyed after them.
void WithAThreadLocalObject() {
  thread_local LogsAtItsEnd const object;
  UseEverything("start");
}

}  // namespace

int main(int argc, char** argv) {
  char const* const mode = argc == 2 ? argv[1] : "";
  usb_support::standalone::AddLogSink(std::make_shared<PrintingSink>());
  if (std::strcmp(mode, "static") == 0) {
    static LogsAtItsEnd const object;
    UseEverything("start");
  } else if (std::strcmp(mode, "thread_local") == 0) {
    WithAThreadLocalObject();
  } else if (std::strcmp(mode, "worker") == 0) {
    std::thread(WithAThreadLocalObject).join();
  } else if (std::strcmp(mode, "helper") == 0) {
    CAppState::Helper(custom_unique_ptr<TQHelper, TQHelper>(
        new HelperThatLogs(), [](TQHelper* helper) { delete helper; }));
    UseEverything("start");
  } else {
    std::fputs("late_log static|thread_local|worker|helper\n", stderr);
    return 2;
  }
  return 0;
}

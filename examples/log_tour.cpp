// Every line that the library writes to the log, in the calls that write it: their status ("type"),
// level, look and text, and the flushes between them.
//
//   log_tour PART...
//
// PART is dump, assert, range, pointers, stall, progress, status, texts, wait or vendor. An address
// is shown as ????????, because it differs from run to run.
#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <standalone_suite/base_support/vendor_list_folder.h>
#include <standalone_suite/suite_runtime/log.h>
#include <standalone_suite/suite_runtime/log_sinks.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/usb_support.h>

namespace {

namespace suite = usb_support::standalone;

void Dump() {
  unsigned char bytes[] = {0x09, 0x04, 0x00, 0x00, 0x01, 0x03, 0x01, 0x01, 0x00,
                           0x07, 0x05, 0x81, 0x03, 0x08, 0x00, 0x0A, 0x07, 0x05};
  TQHelper_LogDescriptor(CDescriptorRange(bytes, sizeof bytes), "Keyboard");
  TQHelper_LogDescriptor(CDescriptorRange(bytes, 9), "");
}

void Assert() {
  constexpr TQAssertionNumbers kNumbers[] = {{{"USB 2.0", "9", "6", "3"}}, {{"Setup"}}};
  constexpr char const* kMessages[] = {"bNumInterfaces is 0.", "100% of the runs failed."};
  LogAssert(TEST_STATUS_FAILURE, 0, kNumbers, kMessages);
  LogAssert(TEST_STATUS_VENDOR_LIST, 0, kNumbers, kMessages);
  LogAssert(TEST_STATUS_INFORMATION, 1, kNumbers, kMessages);
}

void Range() {
  unsigned char bytes[] = {0x02, 0x24, 0x00};
  CDescriptorRange const range(bytes, sizeof bytes);
  std::cout << range.Count() << " valid descriptor(s)\n";
}

void Pointers() {
  CTestServices services;
  UsbTqPointers pointers{&services, nullptr};
  InitUsbHelper(&pointers);
  UsbHelper().ValidatePointers(false, TEST_STATUS_FAILURE);
  pointers.testServices = nullptr;
  UsbHelper().ValidatePointersDUTOptional(false, TEST_STATUS_FAILURE);
  UsbHelper().ValidatePointerFail(TEST_STATUS_FAILURE);
  UsbHelper().LogValidatePointerFail(TEST_STATUS_FAILURE, "The hub has no device.");
}

void Stall() {
  UsbHelper().StallExpectedDiagnostic(RC_STALL_ERROR, TEST_STATUS_PLAIN);
  UsbHelper().StallExpectedDiagnostic(RC_TRANSFER_TIMEOUT, TEST_STATUS_FAILURE);
  UsbHelper().StallExpectedDiagnostic(RC_SUCCESS, TEST_STATUS_FAILURE);
}

void Progress() {
  for (unsigned index = 0; index < 2; ++index) {
    CUsbHelper::OutputProgressMarker(index, 2, "transfer", 0);
  }
  CUsbHelper::OutputProgressMarker(0, 1, nullptr, 0);
}

void Status() {
  PrintErrorDetail(RC_TRANSFER_TIMEOUT, TEST_STATUS_FAILURE);
  PrintErrorDetail(RC_SUCCESS, TEST_STATUS_PLAIN);
  PrintErrorDetail(static_cast<RETURN_CODE>(0x80004003), TEST_STATUS_FAILURE);
}

// All status texts. The codes are in nine groups of 0x1000.
void Texts() {
  for (unsigned group = 0; group < 9; ++group) {
    for (unsigned index = 0; index < 0x20; ++index) {
      auto const code = static_cast<RETURN_CODE>(0x80000000 + 0x1000 * group + index);
      std::string_view const text = GetStatusDetail(code, "-");
      if (text != "-") {
        CSimpleBuffer number;
        usb_support::Format(number, {}, "0x%08X  ", code);
        std::cout << number.Contents() << text << '\n';
      }
    }
  }
}

void Wait() {
  suite::SetLogVerbosity(LOG_LEVEL_6);
  CDriverEvent event(TQE_EVENT_TYPE_DEFAULT);
  event.SetEvent();
  static_cast<void>(event.WaitOnEvent(1000));
  static_cast<void>(event.WaitOnEvent(1));
  static_cast<void>(CDriverEvent::WaitOnMultipleEvents({&event}, 1, WAIT_FOR_ANY_EVENT));
  suite::SetLogVerbosity(LOG_LEVEL_3);
}

// An empty folder of this run, which is the current one as long as this object exists.
class WorkFolder {
 public:
  WorkFolder()
      : before_(std::filesystem::current_path()),
        path_(std::filesystem::temp_directory_path() /
              ("log_tour_" +
               std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()))) {
    std::filesystem::create_directory(path_);
    std::filesystem::current_path(path_);
  }
  WorkFolder(WorkFolder const&) = delete;
  WorkFolder& operator=(WorkFolder const&) = delete;
  ~WorkFolder() {
    std::error_code ignored;
    std::filesystem::current_path(before_, ignored);
    std::filesystem::remove_all(path_, ignored);
  }

 private:
  std::filesystem::path before_;
  std::filesystem::path path_;
};

void WriteList(char const* file, char const* text) {
  std::ofstream(file) << text;
}

void Vendor() {
  WorkFolder const folder;
  std::filesystem::create_directory("lists");
  suite::SetVendorListFolder("lists");
  char name[40] = "";
  GetVendorName(4617, name, sizeof name);  // no list anywhere

  WriteList("usbif.json", R"([{"name": "A vendor", "field_vid": "4617"}])");
  GetVendorName(4617, name, sizeof name);  // a list in the current folder
  std::cout << "found " << name << '\n';

  std::filesystem::remove("lists/usbif.json");
  std::filesystem::create_directory("lists/usbif.json");
  GetVendorName(4617, name, sizeof name);  // it cannot be opened
  std::filesystem::remove("lists/usbif.json");

  WriteList("lists/usbif.json", "[");
  GetVendorName(4617, name, sizeof name);
  WriteList("lists/usbif.json", "{}");
  GetVendorName(4617, name, sizeof name);
  WriteList("lists/usbif.json", R"([1,
    {"field_vid": "1"}, {"name": 1}, {"name": ""},
    {"name": "B"}, {"name": "C", "field_vid": 3}, {"name": "D", "field_vid": ""},
    {"name": "E", "field_vid": "0x5"}, {"name": "A vendor", "field_vid": "4617"}])");
  GetVendorName(4617, name, sizeof name);
}

std::string WithoutAddresses(std::string const& text) {
  return std::regex_replace(text, std::regex("0x0{8}[0-9A-F]{8}\\b"), "0x00000000????????");
}

// Prints each call as it is made, so that it appears between the output of the parts.
class PrintingSink final : public suite::LogSink {
 public:
  void Take(suite::LogCall const& call) override {
    record_.Take(call);
    for (suite::RecordedCall const& recorded : record_.Take()) {
      std::ostringstream text;
      text << recorded;
      std::cout << WithoutAddresses(text.str()) << '\n';
    }
  }

 private:
  suite::RecordingSink record_;
};

void Run(std::string const& part) {
  static std::map<std::string, std::function<void()>> const parts = {
      {"dump", Dump},         {"assert", Assert}, {"range", Range}, {"pointers", Pointers},
      {"stall", Stall},       {"status", Status}, {"texts", Texts}, {"wait", Wait},
      {"progress", Progress}, {"vendor", Vendor}};
  auto const found = parts.find(part);
  if (found == parts.end()) {
    throw std::invalid_argument(part + ": no such part");
  }
  CTestServices services;
  CDevice device;
  UsbTqPointers pointers{&services, &device};
  InitUsbHelper(&pointers);
  found->second();
  InitUsbHelper(nullptr);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fputs("Usage: log_tour PART...\n", stderr);
    return 2;
  }
  suite::AddLogSink(std::make_shared<PrintingSink>());
  try {
    for (int i = 1; i < argc; ++i) {
      if (argc > 2) {
        std::cout << "\n== " << argv[i] << '\n';
      }
      Run(argv[i]);
    }
    return 0;
  } catch (std::exception const& error) {
    std::fprintf(stderr, "log_tour: %s\n", error.what());
  }
  return 2;
}

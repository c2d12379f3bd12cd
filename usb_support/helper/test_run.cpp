#include <usb_support/helper/test_run.h>

#include <memory>
#include <utility>

#include <usb_support/fake_device/debug_capabilities.h>
#include <usb_support/helper/usb_helper.h>
#include <usb_support/suite_interfaces/app_state.h>

namespace usb_support {
namespace {

// The application may keep its helper after the end of the run, so both own the pointers.
class RunHelper final : public CUsbHelper {
 public:
  explicit RunHelper(std::shared_ptr<UsbTqPointers> pointers)
      : CUsbHelper(pointers.get()),
        pointers_(std::move(pointers)) {}

 private:
  std::shared_ptr<UsbTqPointers> pointers_;
};

}  // namespace

struct TestRun::Parts {
  Parts(CDevice* givenDevice, CTestServices* givenServices) {
    pointers->device = givenDevice != nullptr ? givenDevice : &device;
    pointers->testServices = givenServices != nullptr ? givenServices : &services;
    CAppState::Helper(custom_unique_ptr<TQHelper, TQHelper>(new RunHelper(pointers),
                                                            std::default_delete<TQHelper>()));
  }
  Parts(Parts const&) = delete;
  Parts& operator=(Parts const&) = delete;
  ~Parts() { *pointers = {}; }

  CDevice device;
  CTestServices services;
  std::shared_ptr<UsbTqPointers> pointers = std::make_shared<UsbTqPointers>();
  CUSBDebugCapabilitiesJanitor debugCapabilities{true};
};

TestRun::TestRun() : parts_(std::make_unique<Parts>(nullptr, nullptr)) {
}

TestRun::TestRun(CDevice& device) : parts_(std::make_unique<Parts>(&device, nullptr)) {
}

TestRun::TestRun(CDevice& device, CTestServices& services)
    : parts_(std::make_unique<Parts>(&device, &services)) {
}

TestRun::~TestRun() = default;

}  // namespace usb_support

// Everything that a test program needs before its first test, in one line:
//
//   usb_support::TestRun const run(device);
//
// From then on UsbHelper() has the device and test services, and the debug capabilities follow the
// settings. Its destructor undoes all of that: the helper then refers to no device and no services.
#pragma once

#include <memory>

#include <usb_support/helper/test_objects.h>
#include <usb_support/platform/export.h>
#include <usb_support/platform/lifetime.h>

namespace usb_support {

/// The run of a test program; one at a time, in its main thread.
class TestRun {
 public:
  /// Registers the helper and sets up the debug capabilities. The device, and the services if there
  /// are any, must outlive the run; without services the run uses plain ones of its own.
  USB_SUPPORT_API explicit TestRun(CDevice& device USB_SUPPORT_LIFETIMEBOUND);
  USB_SUPPORT_API TestRun(CDevice& device USB_SUPPORT_LIFETIMEBOUND,
                          CTestServices& services USB_SUPPORT_LIFETIMEBOUND);

  /// The same with a device that answers nothing, for programs that work on the fake device or on
  /// files.
  USB_SUPPORT_API TestRun();

  TestRun(TestRun const&) = delete;
  TestRun& operator=(TestRun const&) = delete;
  USB_SUPPORT_API ~TestRun();

 private:
  struct Parts;

  std::unique_ptr<Parts> parts_;
};

}  // namespace usb_support

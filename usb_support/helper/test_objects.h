// What a test program passes to the library: its test services, its device under test, and the
// record that points to both. The library never calls anything on the two objects and owns none of
// the three; it stores the pointers, compares them with null and passes them on.
#pragma once

#include <usb_support/platform/export.h>

/// Base of the test program's device class.
class USB_SUPPORT_API CDevice {
 public:
  /// Holds nothing of its own.
  CDevice();
  CDevice(CDevice const&);
  CDevice& operator=(CDevice const&);
  virtual ~CDevice();
};

/// Base of the test program's test-services class.
class USB_SUPPORT_API CTestServices {
 public:
  /// Holds nothing of its own.
  CTestServices();
  CTestServices(CTestServices const&);
  CTestServices& operator=(CTestServices const&);
  virtual ~CTestServices();
};

/// Owned by the test program, which may change the pointers at any time. Must outlive the helper.
struct UsbTqPointers {
  CTestServices* testServices = nullptr;  ///< null: none yet
  CDevice* device = nullptr;              ///< the device under test; null: none yet
};

#include <usb_support/helper/test_run.h>

#include <typeinfo>

#include <gtest/gtest.h>

#include <tests/support/suite_test.h>
#include <usb_support/fake_device/debug_capabilities.h>
#include <usb_support/helper/usb_helper.h>

namespace usb_support {
namespace {

class TestRunTest : public testing_support::SuiteTest {};

TEST_F(TestRunTest, RegistersDeviceAndServicesUntilItEnds) {
  CDevice device;
  CTestServices services;
  {
    TestRun const run(device, services);
    EXPECT_EQ(UsbHelper().GetDevice(), &device);
    EXPECT_EQ(UsbHelper().GetTestServices(), &services);
    EXPECT_TRUE(UsbHelper().ValidatePointers(false, TEST_STATUS_FAILURE));
  }
  EXPECT_TRUE(UsbHelperCreated());
  EXPECT_EQ(UsbHelper().GetDevice(), nullptr);
  EXPECT_EQ(UsbHelper().GetTestServices(), nullptr);
}

TEST_F(TestRunTest, HasServicesAndADeviceOfItsOwn) {
  CDevice device;
  {
    TestRun const run(device);
    EXPECT_EQ(UsbHelper().GetDevice(), &device);
    EXPECT_NE(UsbHelper().GetTestServices(), nullptr);
  }
  TestRun const run;
  EXPECT_NE(UsbHelper().GetDevice(), nullptr);
  EXPECT_NE(UsbHelper().GetTestServices(), nullptr);
}

TEST_F(TestRunTest, DevicesAndServicesAreCopied) {
  struct Device : CDevice {
    int number = 1;
  };
  Device first;
  Device second = first;
  second.number = 2;
  static_cast<CDevice&>(first) = second;
  EXPECT_EQ(first.number, 1);
  CTestServices services;
  CTestServices copy = services;
  copy = services;
  EXPECT_EQ(typeid(static_cast<CTestServices&>(copy)), typeid(CTestServices));
}

TEST_F(TestRunTest, FollowsTheSettings) {
  standalone::SetSetting("NoUsbInteraction", true);
  EXPECT_FALSE(DebugCapNoUsb());
  {
    TestRun const run;
    EXPECT_TRUE(DebugCapNoUsb());
  }
  EXPECT_FALSE(DebugCapNoUsb());
}

TEST_F(TestRunTest, EndsAfterTheHelperWasReplaced) {
  {
    TestRun const run;
    InitUsbHelper(nullptr);
  }
  EXPECT_EQ(UsbHelper().GetDevice(), nullptr);
}

}  // namespace
}  // namespace usb_support

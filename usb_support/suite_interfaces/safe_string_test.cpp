#include <usb_support/suite_interfaces/safe_string.h>

#include <gtest/gtest.h>

namespace {

TEST(SafeString, IsEqualToTheSameText) {
  EXPECT_TRUE(CSafeString("usbif.json") == CSafeString("usbif.json"));
  EXPECT_FALSE(CSafeString("usbif.json") == CSafeString("usbif.jso"));
  EXPECT_FALSE(CSafeString("usbif.json") == CSafeString("USBIF.json"));
  EXPECT_TRUE(CSafeString() == CSafeString(""));
  EXPECT_TRUE(CSafeString() == CSafeString(static_cast<char const*>(nullptr)));
  EXPECT_FALSE(CSafeString() == CSafeString("a"));
}

}  // namespace

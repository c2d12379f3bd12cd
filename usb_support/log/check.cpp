#include <usb_support/log/check.h>

namespace usb_support {

bool Check(Rule const& rule, bool isKept, TEST_STATUS status) {
  if (!isKept) {
    LogAssert(status, 0, &rule.number, &rule.message);
  }
  return isKept;
}

}  // namespace usb_support

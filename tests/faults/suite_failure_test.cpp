// How the library handles a suite that fails. The program's own CAppState::HelperCreated takes
// the place of the suite's, which works only where a program's functions reach into shared
// libraries.
#include <stdexcept>

#include <tests/support/suite_test.h>

namespace {

bool suiteFails = false;

}  // namespace

bool CAppState::HelperCreated() {
  if (suiteFails) {
    throw std::runtime_error("The application state is gone.");
  }
  try {
    static_cast<void>(Helper());
    return true;
  } catch (std::exception const&) {
    return false;
  }
}

namespace usb_support {
namespace {

class SuiteFailure : public testing_support::SuiteTest {
 protected:
  ~SuiteFailure() override { suiteFails = false; }
};

TEST_F(SuiteFailure, MeansThatThereIsNoHelper) {
  InitUsbHelper(nullptr);
  EXPECT_TRUE(UsbHelperCreated());
  suiteFails = true;
  EXPECT_FALSE(UsbHelperCreated());
  suiteFails = false;
  EXPECT_TRUE(UsbHelperCreated());
}

}  // namespace
}  // namespace usb_support

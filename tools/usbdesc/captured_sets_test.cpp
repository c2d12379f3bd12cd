#include <tools/usbdesc/captured_sets.h>

#include <optional>

#include <tests/support/exact_bytes.h>
#include <tests/support/suite_test.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::ExactBytes;
using testing_support::Joined;

Bytes const kDevice = {0x12, 0x01, 0x20, 0x03, 0x00, 0x00, 0x00, 0x09, 0x09,
                       0x12, 0x10, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01};
Bytes const kConfiguration = {9, 2, 12, 0, 1, 5, 0, 0x80, 50, 3, 0x24, 1};
Bytes const kOtherSpeed = {9, 7, 9, 0, 1, 6, 0, 0x80, 50};
Bytes const kBos = {5, 0x0F, 8, 0, 1, 3, 0x10, 0x0B};

class CapturedSets : public testing_support::SuiteTest {
 protected:
  void Hold(Bytes const& run) {
    bytes_.emplace(run);
    devices_ = DevicesOf(bytes_->Range());
    pointers_ = {&services_, &devices_.front()};
    InitUsbHelper(&pointers_);
  }
  ~CapturedSets() override { CAppState::Helper(nullptr); }

  static Bytes Held(CDescriptorRange const& set) {
    return Bytes(set.Bytes(), set.Bytes() + set.Length());
  }

 private:
  std::optional<ExactBytes> bytes_;
  std::vector<CapturedDevice> devices_;
  CTestServices services_;
  UsbTqPointers pointers_;
};

TEST_F(CapturedSets, ReadTheConfigurationOfTheirIndexAndSpeed) {
  Bytes second = kConfiguration;
  second[5] = 9;
  Hold(Joined({kDevice, kConfiguration, second, kOtherSpeed}));
  CapturedConfiguration configuration(1, false);
  EXPECT_EQ(configuration.Read(), RC_SUCCESS);
  EXPECT_EQ(Held(configuration), second);
  EXPECT_EQ(configuration.Header().bConfigurationValue, 9);
  EXPECT_THAT(configuration.Behind(), IsEmpty());
  CapturedConfiguration otherSpeed(0, true);
  EXPECT_EQ(otherSpeed.Read(), RC_SUCCESS);
  EXPECT_EQ(Held(otherSpeed), kOtherSpeed);
  EXPECT_TRUE(otherSpeed.OtherSpeed());
  EXPECT_EQ(otherSpeed.Type(), 7);
}

TEST_F(CapturedSets, AreEmptyWhereTheDeviceHasNothing) {
  Hold(Joined({kDevice, kConfiguration}));
  CapturedConfiguration configuration(0, false);
  EXPECT_EQ(configuration.Read(), RC_SUCCESS);
  configuration.ConfigIndex(1);
  EXPECT_EQ(configuration.Read(), RC_STALL_ERROR);
  EXPECT_TRUE(configuration.IsEmpty());
  EXPECT_FALSE(configuration.IsSuperSpeed());
  EXPECT_EQ(configuration.Header().wTotalLength, 0);
  CapturedBos bos(0);
  EXPECT_EQ(bos.Read(), RC_STALL_ERROR);
  EXPECT_TRUE(bos.IsEmpty());
}

TEST_F(CapturedSets, HoldTheTotalLengthAtMost) {
  Hold(Joined({kConfiguration, {3, 0x24, 2}}));
  CapturedConfiguration configuration(0, false);
  EXPECT_EQ(configuration.Read(), RC_SUCCESS);
  EXPECT_EQ(Held(configuration), kConfiguration);
  EXPECT_THAT(configuration.Behind(), ElementsAre(3, 0x24, 2));
  Hold(Joined({kBos, {3, 0x10, 2}}));
  CapturedBos bos(0);
  EXPECT_EQ(bos.Read(), RC_SUCCESS);
  EXPECT_EQ(Held(bos), kBos);
  EXPECT_THAT(bos.Behind(), ElementsAre(3, 0x10, 2));
}

TEST_F(CapturedSets, HoldLessWhenThereIsLess) {
  Bytes cut = kConfiguration;
  cut[2] = 200;
  Hold(Joined({cut, kOtherSpeed}));
  CapturedConfiguration configuration(0, false);
  EXPECT_EQ(configuration.Read(), RC_SUCCESS);
  EXPECT_EQ(Held(configuration), cut);
  EXPECT_THAT(configuration.Behind(), IsEmpty());
}

TEST_F(CapturedSets, HoldTheHeaderWhateverItAnnounces) {
  Bytes nothing = kConfiguration;
  nothing[2] = 0;
  Hold(nothing);
  CapturedConfiguration configuration(0, false);
  EXPECT_EQ(configuration.Read(), RC_SUCCESS);
  EXPECT_EQ(configuration.Length(), 9);
  EXPECT_THAT(configuration.Behind(), ElementsAre(3, 0x24, 1));
}

TEST_F(CapturedSets, KnowTheDeviceDescriptor) {
  Hold(Joined({kDevice, kConfiguration, kBos}));
  CapturedConfiguration configuration(0, false);
  EXPECT_FALSE(configuration.IsSuperSpeed());
  EXPECT_EQ(configuration.Read(), RC_SUCCESS);
  EXPECT_TRUE(configuration.IsSuperSpeed());
  CapturedBos bos(0);
  EXPECT_EQ(bos.Read(), RC_SUCCESS);
  EXPECT_EQ(bos.BcdUsb(), std::make_tuple(true, 0x0320));
  EXPECT_EQ(bos.VID(), 0x1209);
  EXPECT_EQ(bos.PID(), 0x0010);
}

TEST_F(CapturedSets, ForgetTheDeviceDescriptorOfAnotherDevice) {
  Hold(Joined({kDevice, kBos}));
  CapturedBos bos(0);
  EXPECT_EQ(bos.Read(), RC_SUCCESS);
  Hold(kBos);
  EXPECT_EQ(bos.Read(), RC_SUCCESS);
  EXPECT_EQ(bos.BcdUsb(), std::make_tuple(false, 0));
}

TEST_F(CapturedSets, TakeAShortDeviceDescriptorForNone) {
  Bytes device = kDevice;
  device[0] = 17;
  device.pop_back();
  Hold(Joined({device, kConfiguration}));
  CapturedConfiguration configuration(0, false);
  EXPECT_EQ(configuration.Read(), RC_SUCCESS);
  EXPECT_FALSE(configuration.IsSuperSpeed());
}

TEST_F(CapturedSets, KeepTheirValidPart) {
  Bytes broken = kConfiguration;
  broken[9] = 4;
  Hold(broken);
  CapturedConfiguration configuration(0, false);
  EXPECT_EQ(configuration.Read(), RC_SUCCESS);
  EXPECT_EQ(Held(configuration), broken);
  KeepValidPart(configuration);
  EXPECT_EQ(configuration.Length(), 9);
  EXPECT_TRUE(configuration.Valid());
}

}  // namespace
}  // namespace usb_support::usbdesc

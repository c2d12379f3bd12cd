#include <usb_support/descriptor_sets/device_sets.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/support/exact_bytes.h>
#include <tests/support/suite_test.h>

namespace usb_support {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::Bytes;
using testing_support::BytesOf;
using testing_support::ExactBytes;
using testing_support::Hex;
using testing_support::Joined;
using testing_support::Part;

Bytes const kDeviceBytes = Hex("12 01 00 02 00 00 00 40 09 12 01 00 00 01 01 02 00 01");
Bytes const kConfigurationBytes = Hex("09 02 12 00 01 01 00 80 32 09 04 00 00 00 FF 00 00 00");
Bytes const kBosBytes = Hex("05 0F 0C 00 01 07 10 02 02 00 00 00");

struct Asked {
  std::uint8_t type;
  std::uint8_t index;
  std::uint16_t length;

  friend bool operator==(Asked const&, Asked const&) = default;
};

// Sends the given bytes, and may send more than was requested.
class ScriptedDevice final : public DescriptorDevice {
 public:
  RETURN_CODE GetDescriptor(std::uint8_t type, std::uint8_t index, std::uint16_t length,
                            std::vector<unsigned char>& answer) override {
    asked.push_back({type, index, length});
    EXPECT_THAT(answer, IsEmpty());
    auto const found = answers.find({type, index});
    if (found == answers.end()) {
      return RC_STALL_ERROR;
    }
    answer = found->second;
    if (!sendsTooMuch) {
      answer.resize(std::min<std::size_t>(answer.size(), length));
    }
    return RC_SUCCESS;
  }

  std::map<std::pair<unsigned, unsigned>, Bytes> answers;
  std::vector<Asked> asked;
  bool sendsTooMuch = false;
};

class DeviceSets : public testing_support::SuiteTest {
 protected:
  DeviceSets() {
    device_.answers[{kDeviceType, 0}] = kDeviceBytes;
    device_.answers[{kConfigurationType, 0}] = kConfigurationBytes;
    device_.answers[{kBosType, 0}] = kBosBytes;
  }

  ScriptedDevice device_;
};

TEST_F(DeviceSets, ReadAConfigurationInTwoSteps) {
  DeviceConfiguration configuration(device_);
  EXPECT_EQ(configuration.Read(), RC_SUCCESS);
  EXPECT_EQ(BytesOf(configuration), kConfigurationBytes);
  EXPECT_TRUE(configuration.HasDeviceDescriptor());
  EXPECT_EQ(+configuration.DeviceDescriptor().idVendor, 0x1209);
  EXPECT_THAT(device_.asked,
              ElementsAre(Asked{kConfigurationType, 0, 9}, Asked{kConfigurationType, 0, 18},
                          Asked{kDeviceType, 0, 18}));
}

TEST_F(DeviceSets, ReadTheOtherSpeed) {
  Bytes other = kConfigurationBytes;
  other[1] = kOtherSpeedConfigurationType;
  device_.answers[{kOtherSpeedConfigurationType, 3}] = other;
  DeviceConfiguration configuration(device_, 3);
  configuration.OtherSpeed(true);
  EXPECT_EQ(configuration.Read(), RC_SUCCESS);
  EXPECT_EQ(BytesOf(configuration), other);
}

TEST_F(DeviceSets, ReadABosInTwoSteps) {
  DeviceBos bos(device_);
  EXPECT_EQ(bos.Read(), RC_SUCCESS);
  EXPECT_EQ(BytesOf(bos), kBosBytes);
  EXPECT_EQ(bos.VID(), 0x1209);
  EXPECT_THAT(device_.asked, ElementsAre(Asked{kBosType, 0, 5}, Asked{kBosType, 0, 12},
                                         Asked{kDeviceType, 0, 18}));
}

TEST_F(DeviceSets, HoldWhatTheDeviceSends) {
  struct Row {
    unsigned char total;
    bool sendsTooMuch;
    unsigned length;
  };
  for (Row const& row : {Row{0xFF, false, 18}, Row{0, false, 9}, Row{10, true, 10}}) {
    device_.answers[{kConfigurationType, 0}][2] = row.total;
    device_.sendsTooMuch = row.sendsTooMuch;
    DeviceConfiguration configuration(device_);
    EXPECT_EQ(configuration.Read(), RC_SUCCESS);
    EXPECT_EQ(configuration.Length(), row.length);
  }
}

TEST_F(DeviceSets, KeepTheirBytesWhenAReadingAloneFails) {
  struct ReadByHooks : DeviceConfiguration {
    using DeviceConfiguration::DeviceConfiguration;
    using DeviceConfiguration::DoReadDescriptor;
  };
  ReadByHooks configuration(device_);
  EXPECT_EQ(configuration.DoReadDescriptor(), RC_SUCCESS);
  device_.answers.clear();
  EXPECT_EQ(configuration.DoReadDescriptor(), RC_STALL_ERROR);
  EXPECT_EQ(BytesOf(configuration), kConfigurationBytes);
}

TEST_F(DeviceSets, AreEmptyWhenTheDeviceStalls) {
  DeviceConfiguration configuration(device_);
  EXPECT_EQ(configuration.Read(), RC_SUCCESS);
  for (unsigned const type : {kDeviceType, kConfigurationType}) {
    device_.answers.erase({type, 0});
    EXPECT_EQ(configuration.Read(), RC_STALL_ERROR);
    EXPECT_TRUE(configuration.IsEmpty());
    EXPECT_FALSE(configuration.HasDeviceDescriptor());
  }
}

TEST_F(DeviceSets, RefuseAHeaderBeforeItsTotal) {
  for (std::size_t length = 0; length <= kConfigurationBytes.size(); ++length) {
    device_.answers[{kConfigurationType, 0}] = Part(kConfigurationBytes, 0, length);
    DeviceConfiguration configuration(device_);
    EXPECT_EQ(configuration.Read(), length < 4 ? RC_TRANSFER_INSUFFICIENT_DATA : RC_SUCCESS);
    EXPECT_EQ(configuration.Length(), length < 4 ? 0 : length);
  }
}

TEST_F(DeviceSets, ReadACutDeviceDescriptorWithZeros) {
  device_.answers[{kDeviceType, 0}].resize(9);
  DeviceConfiguration configuration(device_);
  EXPECT_EQ(configuration.Read(), RC_SUCCESS);
  EXPECT_EQ(+configuration.DeviceDescriptor().idVendor, 0x0009);
  device_.answers[{kDeviceType, 0}].clear();
  EXPECT_EQ(configuration.Read(), RC_TRANSFER_INSUFFICIENT_DATA);
}

TEST_F(DeviceSets, TakeTheFakeDescriptors) {
  standalone::SetSetting("NoUsbInteraction", true);
  CUSBDebugCapabilitiesJanitor const debugCapabilities(true);
  DeviceConfiguration configuration(device_);
  EXPECT_EQ(configuration.Read(), RC_SUCCESS);
  EXPECT_EQ(configuration.Length(), 25);
  EXPECT_EQ(+configuration.DeviceDescriptor().idVendor, 0x2887);
  configuration.OtherSpeed(true);
  EXPECT_EQ(configuration.Read(), RC_SUCCESS);
  EXPECT_EQ(configuration.Length(), 25);
  DeviceBos bos(device_);
  EXPECT_EQ(bos.Read(), RC_SUCCESS);
  EXPECT_EQ(bos.Length(), 127);
  EXPECT_THAT(device_.asked, IsEmpty());
  DeviceConfiguration beyond(device_, 200);
  EXPECT_EQ(beyond.Read(), RC_STALL_ERROR);
}

TEST_F(DeviceSets, AskTheDeviceForWhatIsNotFaked) {
  standalone::SetSetting("BOSDescHardCoded", true);
  CUSBDebugCapabilitiesJanitor const debugCapabilities(true);
  DeviceBos bos(device_);
  EXPECT_EQ(bos.Read(), RC_SUCCESS);
  EXPECT_EQ(bos.Length(), 127);
  EXPECT_THAT(device_.asked, ElementsAre(Asked{kDeviceType, 0, 18}));
}

TEST(ConfigurationAt, IsTheConfigurationWithAllThatFollowsIt) {
  ExactBytes const file(Joined({kDeviceBytes, kConfigurationBytes, kConfigurationBytes}));
  CDescriptorRange const second = ConfigurationAt(file.Range(), 1);
  EXPECT_EQ(second.Bytes(), file.data() + 36);
  EXPECT_EQ(second.Length(), 18);
  EXPECT_TRUE(ConfigurationAt(file.Range(), 2).IsEmpty());
  EXPECT_TRUE(ConfigurationAt({}, 0).IsEmpty());
}

TEST(ConfigurationAt, KeepsToTheBytesThatAreThere) {
  Bytes const all = Joined({kDeviceBytes, kConfigurationBytes});
  for (std::size_t length = 0; length <= all.size(); ++length) {
    ExactBytes const file(Part(all, 0, length));
    EXPECT_EQ(ConfigurationAt(file.Range(), 0).Length(),
              length < kDeviceBytes.size() + 9 ? 0 : length - kDeviceBytes.size());
  }
}

TEST(ConfigurationAt, IsTheHeaderWhenItsTotalIsLess) {
  Bytes bytes = kConfigurationBytes;
  bytes[2] = 3;
  ExactBytes const file(bytes);
  EXPECT_EQ(ConfigurationAt(file.Range(), 0).Length(), 9);
}

TEST(BosAt, IsTheBosWithItsCapabilities) {
  ExactBytes const file(Joined({kDeviceBytes, kBosBytes, kConfigurationBytes}));
  CDescriptorRange const bos = BosAt(file.Range());
  EXPECT_EQ(bos.Bytes(), file.data() + kDeviceBytes.size());
  EXPECT_EQ(bos.Length(), kBosBytes.size());
  EXPECT_TRUE(BosAt({}).IsEmpty());
}

TEST(AnswerFrom, IsTheAnswerOfACapturedDevice) {
  Bytes otherSpeed = kConfigurationBytes;
  otherSpeed[1] = kOtherSpeedConfigurationType;
  ExactBytes const file(
      Joined({kDeviceBytes, kConfigurationBytes, kConfigurationBytes, otherSpeed, kBosBytes}));
  struct Row {
    std::uint8_t type;
    std::uint8_t index;
    std::uint16_t length;
    Bytes answer;
  };
  Row const rows[] = {{kDeviceType, 0, 255, kDeviceBytes},
                      {kDeviceType, 0, 8, Part(kDeviceBytes, 0, 8)},
                      {kConfigurationType, 1, 255, kConfigurationBytes},
                      {kOtherSpeedConfigurationType, 0, 255, otherSpeed},
                      {kBosType, 0, 255, kBosBytes},
                      {kBosType, 0, 5, Part(kBosBytes, 0, 5)},
                      {kBosType, 0, 0, {}}};
  for (Row const& row : rows) {
    Bytes answer = {0xEE};
    EXPECT_EQ(AnswerFrom(file.Range(), row.type, row.index, row.length, answer), RC_SUCCESS);
    EXPECT_EQ(answer, row.answer);
  }
  Bytes answer;
  EXPECT_EQ(AnswerFrom(file.Range(), kConfigurationType, 2, 255, answer), RC_STALL_ERROR);
  EXPECT_EQ(AnswerFrom(file.Range(), kHubType, 0, 255, answer), RC_STALL_ERROR);
}

TEST(Fill, CopiesARangeIntoASet) {
  ExactBytes const file(Joined({kDeviceBytes, kConfigurationBytes}));
  CConfigDescriptorSet set;
  Fill(set, ConfigurationAt(file.Range(), 0));
  EXPECT_NE(set.Bytes(), file.data() + kDeviceBytes.size());
  EXPECT_EQ(set, ConfigurationAt(file.Range(), 0));
}

}  // namespace
}  // namespace usb_support

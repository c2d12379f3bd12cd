#include <usb_support/fake_device/debug_capabilities.h>

#include <array>
#include <cstddef>
#include <initializer_list>
#include <new>
#include <string_view>
#include <type_traits>

#include <tests/support/exact_bytes.h>
#include <tests/support/suite_test.h>

namespace usb_support {
namespace {

using standalone::CallRecorder;
using standalone::SetSetting;
using standalone::SettingKind;
using standalone::SettingRead;
using testing_support::Bytes;

constexpr char const* kNoInstance = "Internal Error: NULL USBDebugCapabilities object.";

static_assert(sizeof(CUSBDebugCapabilities) == 7);
static_assert(alignof(CUSBDebugCapabilities) == 1);
static_assert(!std::is_polymorphic_v<CUSBDebugCapabilities>);
static_assert(!std::is_destructible_v<CUSBDebugCapabilities>);
static_assert(std::is_copy_assignable_v<CUSBDebugCapabilities>);
static_assert(std::is_convertible_v<bool, CUSBDebugCapabilitiesJanitor>);
static_assert(!std::is_copy_constructible_v<CUSBDebugCapabilitiesJanitor>);
static_assert(!std::is_copy_assignable_v<CUSBDebugCapabilitiesJanitor>);

Bytes const kDevice = {0x12, 0x01, 0x20, 0x03, 0x09, 0x00, 0x20, 0x09, 0x87,
                       0x28, 0x01, 0x00, 0x00, 0x01, 0x02, 0x01, 0x00, 0x01};
Bytes const kDeviceQualifier = {0x0A, 0x06, 0x01, 0x02, 0x09, 0x00, 0x00, 0x40, 0x01, 0x00};
Bytes const kUsb2Hub = {0x09, 0x29, 0x04, 0x00, 0x00, 0x00, 0x00, 0x1E, 0x1E};
Bytes const kUsb3Hub = {0x0C, 0x2A, 0x04, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00};
Bytes const kConfiguration = {0x09, 0x02, 0x19, 0x00, 0x05, 0x01, 0x00, 0xE0, 0x00,
                              0x09, 0x04, 0x00, 0x00, 0x00, 0x09, 0x00, 0x01, 0x00,
                              0x07, 0x05, 0x81, 0x03, 0x40, 0x00, 0x04};
Bytes const kLanguageIds = {0x04, 0x03, 0x09, 0x04};

Bytes const kBos = testing_support::Joined({
    {0x05, 0x0F, 0x7F, 0x00, 0x08},
    {0x07, 0x10, 0x02, 0x06, 0x00, 0x00, 0x00},
    {0x0A, 0x10, 0x03, 0x00, 0x0E, 0x00, 0x01, 0x04, 0xE7, 0x00},
    {0x14, 0x10, 0x04, 0x00, 0x5C, 0xF3, 0xEE, 0x30, 0xD5, 0x07,
     0x49, 0x25, 0xB0, 0x01, 0x80, 0x2D, 0x79, 0x43, 0x4C, 0x30},
    {0x1C, 0x10, 0x0A, 0x00, 0x23, 0x00, 0x00, 0x00, 0x00, 0x11, 0x00, 0x00, 0x30, 0x00,
     0x05, 0x00, 0xB0, 0x00, 0x05, 0x00, 0x31, 0x40, 0x0A, 0x00, 0xB1, 0x40, 0x0A, 0x00},
    {0x03, 0x10, 0x0B},
    {0x12, 0x10, 0x06, 0x00, 0x5C, 0x01, 0x00, 0x00, 0x02, 0x00, 0x02, 0x00, 0x00, 0x00, 0x00, 0x03,
     0x30, 0x01},
    {0x18, 0x10, 0x08, 0x00, 0x06, 0x00, 0x32, 0x00, 0x96, 0x00, 0x00, 0x00,
     0xC2, 0x01, 0x00, 0x00, 0xC2, 0x01, 0x00, 0x00, 0xFF, 0xFF, 0x00, 0x00},
    {0x0C, 0x10, 0x09, 0x00, 0x06, 0x00, 0x01, 0x00, 0x2C, 0x91, 0x01, 0x3E},
});

struct FakeString {
  unsigned char index;
  unsigned char length;
  std::string_view text;
};

constexpr FakeString kStrings[] = {
    {1, 78, "Enhanced SuperSpeed MA USB Virtual Hub"},
    {2, 20, "Quillmark"},
    {3, 20, "Battery 1"},
    {4, 18, "Serial 1"},
    {5, 30, "Manufacturer 1"},
    {6, 20, "Battery 2"},
    {7, 18, "Serial 2"},
    {8, 30, "Manufacturer 2"},
};

Bytes StringBytes(FakeString const& string) {
  Bytes bytes = {string.length, 0x03};
  for (char const character : string.text) {
    bytes.push_back(static_cast<unsigned char>(character));
    bytes.push_back(0);
  }
  return bytes;
}

Bytes BytesAt(void const* address, std::size_t count) {
  auto const* const first = static_cast<unsigned char const*>(address);
  return first == nullptr ? Bytes() : Bytes(first, first + count);
}

void MakeInstance() {
  CUSBDebugCapabilities::SetupUsbDebugCapabilities();
}

void EndInstance() {
  CUSBDebugCapabilities::CleanupUsbDebugCapabilities();
}

bool InstanceExists() {
  try {
    static_cast<void>(GetUsbDebugCaps());
    return true;
  } catch (TQRunTimeException const&) {
    return false;
  }
}

// In the order in which the object keeps them.
std::array<bool, 7> FlagsOf(CUSBDebugCapabilities const& capabilities) {
  return {capabilities.NoUsbInteraction(),    capabilities.AllDescriptorsHardCoded(),
          capabilities.DevDescHardCoded(),    capabilities.BOSDescHardCoded(),
          capabilities.ConfigDescHardCoded(), capabilities.StringDescHardCoded(),
          capabilities.HubDescHardCoded()};
}

SettingRead BooleanRead(char const* key) {
  return {key, SettingKind::kBoolean, SCOPE_DEFAULT, 0};
}

class DebugCapabilities : public testing_support::SuiteTest {};

TEST_F(DebugCapabilities, ReadsSwitchesInOrderAsBooleansInScopeZero) {
  CallRecorder const recorder;
  MakeInstance();
  EXPECT_THAT(
      recorder.SettingReads(),
      testing::ElementsAre(BooleanRead("NoUsbInteraction"), BooleanRead("DevDescHardCoded"),
                           BooleanRead("BOSDescHardCoded"), BooleanRead("ConfigDescHardCoded"),
                           BooleanRead("HubDescHardCoded"), BooleanRead("StringDescHardCoded")));
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(DebugCapabilities, StopsReadingWhenTheRunTouchesNoDevice) {
  SetSetting("NoUsbInteraction", true);
  CallRecorder const recorder;
  MakeInstance();
  EXPECT_THAT(recorder.SettingReads(), testing::ElementsAre(BooleanRead("NoUsbInteraction")));
}

TEST_F(DebugCapabilities, AllFlagsAreOffWithoutSettings) {
  MakeInstance();
  EXPECT_EQ(FlagsOf(GetUsbDebugCaps()),
            (std::array{false, false, false, false, false, false, false}));
}

TEST_F(DebugCapabilities, NoUsbInteractionSetsAllSevenFlags) {
  SetSetting("NoUsbInteraction", true);
  MakeInstance();
  EXPECT_EQ(FlagsOf(GetUsbDebugCaps()), (std::array{true, true, true, true, true, true, true}));
}

TEST_F(DebugCapabilities, NoUsbInteractionOverridesSwitchesThatAreOff) {
  SetSetting("NoUsbInteraction", true);
  for (char const* const key : {"DevDescHardCoded", "BOSDescHardCoded", "ConfigDescHardCoded",
                                "HubDescHardCoded", "StringDescHardCoded"}) {
    SetSetting(key, false);
  }
  MakeInstance();
  EXPECT_EQ(FlagsOf(GetUsbDebugCaps()), (std::array{true, true, true, true, true, true, true}));
}

TEST_F(DebugCapabilities, NoUsbInteractionThatIsOffLeavesTheOtherSwitchesInCharge) {
  SetSetting("NoUsbInteraction", false);
  SetSetting("BOSDescHardCoded", true);
  MakeInstance();
  EXPECT_EQ(FlagsOf(GetUsbDebugCaps()),
            (std::array{false, false, false, true, false, false, false}));
}

TEST_F(DebugCapabilities, HasNoSettingOfItsOwnForAllDescriptors) {
  SetSetting("AllDescriptorsHardCoded", true);
  SetSetting("AllDescHardCoded", true);
  MakeInstance();
  EXPECT_FALSE(GetUsbDebugCaps().AllDescriptorsHardCoded());
}

TEST_F(DebugCapabilities, HubSettingSwitchesStrings) {
  SetSetting("HubDescHardCoded", true);
  MakeInstance();
  CUSBDebugCapabilities const& capabilities = GetUsbDebugCaps();
  EXPECT_TRUE(capabilities.StringDescHardCoded());
  EXPECT_FALSE(capabilities.HubDescHardCoded());
  EXPECT_TRUE(capabilities.NeedFakeDescriptor(0x03));
  EXPECT_FALSE(capabilities.NeedFakeDescriptor(0x29));
  EXPECT_FALSE(capabilities.NeedFakeDescriptor(0x2A));
}

TEST_F(DebugCapabilities, StringSettingSwitchesHubs) {
  SetSetting("StringDescHardCoded", true);
  MakeInstance();
  CUSBDebugCapabilities const& capabilities = GetUsbDebugCaps();
  EXPECT_FALSE(capabilities.StringDescHardCoded());
  EXPECT_TRUE(capabilities.HubDescHardCoded());
  EXPECT_FALSE(capabilities.NeedFakeDescriptor(0x03));
  EXPECT_TRUE(capabilities.NeedFakeDescriptor(0x29));
  EXPECT_TRUE(capabilities.NeedFakeDescriptor(0x2A));
}

TEST_F(DebugCapabilities, KeepsFlagsAsBytesInOrder) {
  struct Row {
    char const* key;
    std::size_t position;
  };
  for (Row const& row :
       {Row{"DevDescHardCoded", 2}, Row{"BOSDescHardCoded", 3}, Row{"ConfigDescHardCoded", 4},
        Row{"HubDescHardCoded", 5}, Row{"StringDescHardCoded", 6}}) {
    standalone::ClearSettings();
    SetSetting(row.key, true);
    MakeInstance();
    Bytes expected(7, 0);
    expected[row.position] = 1;
    EXPECT_EQ(BytesAt(&GetUsbDebugCaps(), 7), expected) << row.key;
    EndInstance();
  }
}

// Every combination of the five switches, every descriptor type.
TEST_F(DebugCapabilities, SwitchesDecideWhichTypesNeedAFake) {
  for (unsigned combination = 0; combination < 32; ++combination) {
    bool const device = (combination & 1) != 0;
    bool const bos = (combination & 2) != 0;
    bool const configuration = (combination & 4) != 0;
    bool const hubSetting = (combination & 8) != 0;
    bool const stringSetting = (combination & 16) != 0;
    SetSetting("DevDescHardCoded", device);
    SetSetting("BOSDescHardCoded", bos);
    SetSetting("ConfigDescHardCoded", configuration);
    SetSetting("HubDescHardCoded", hubSetting);
    SetSetting("StringDescHardCoded", stringSetting);
    MakeInstance();
    CUSBDebugCapabilities const& capabilities = GetUsbDebugCaps();
    EXPECT_EQ(FlagsOf(capabilities),
              (std::array{false, false, device, bos, configuration, hubSetting, stringSetting}))
        << combination;
    EXPECT_FALSE(DebugCapNoUsb());
    EXPECT_TRUE(DebugCapRequiresUsb());
    EXPECT_FALSE(DebugCapAllDescHardCoded());
    EXPECT_EQ(DebugCapDevDescHardCoded(), device);
    EXPECT_EQ(DebugCapBOSDescHardCoded(), bos);
    EXPECT_EQ(DebugCapConfigDescHardCoded(), configuration);
    EXPECT_EQ(DebugCapStringDescHardCoded(), hubSetting);
    EXPECT_EQ(DebugCapHubDescHardCoded(), stringSetting);
    for (unsigned value = 0; value < 256; ++value) {
      auto const type = static_cast<unsigned char>(value);
      bool expected = false;
      switch (type) {
        case 0x01:
          expected = device;
          break;
        case 0x02:
          expected = configuration;
          break;
        case 0x03:
          expected = hubSetting;
          break;
        case 0x0F:
          expected = bos;
          break;
        case 0x29:
        case 0x2A:
          expected = stringSetting;
          break;
        default:
          break;
      }
      EXPECT_EQ(capabilities.NeedFakeDescriptor(type), expected) << combination << ' ' << value;
      EXPECT_EQ(DebugCapNeedFakeDescriptor(type), expected) << combination << ' ' << value;
    }
    EndInstance();
  }
}

TEST_F(DebugCapabilities, EveryTypeNeedsAFakeWithoutADevice) {
  SetSetting("NoUsbInteraction", true);
  MakeInstance();
  for (unsigned value = 0; value < 256; ++value) {
    auto const type = static_cast<unsigned char>(value);
    EXPECT_TRUE(GetUsbDebugCaps().NeedFakeDescriptor(type)) << value;
    EXPECT_TRUE(DebugCapNeedFakeDescriptor(type)) << value;
  }
}

TEST_F(DebugCapabilities, DeviceDescriptorHasItsBytes) {
  MakeInstance();
  EXPECT_EQ(BytesAt(GetUsbDebugCaps().GetDevDesc(), 18), kDevice);
}

TEST_F(DebugCapabilities, DeviceQualifierHasItsBytes) {
  MakeInstance();
  EXPECT_EQ(BytesAt(GetUsbDebugCaps().GetDevQualDesc(), 10), kDeviceQualifier);
}

TEST_F(DebugCapabilities, Usb2HubDescriptorHasItsBytes) {
  MakeInstance();
  EXPECT_EQ(BytesAt(GetUsbDebugCaps().GetUsb2HubDesc(), 9), kUsb2Hub);
}

TEST_F(DebugCapabilities, Usb3HubDescriptorHasItsBytes) {
  MakeInstance();
  EXPECT_EQ(BytesAt(GetUsbDebugCaps().GetUsb3HubDesc(), 12), kUsb3Hub);
}

TEST_F(DebugCapabilities, BosHasItsBytesWithAllCapabilities) {
  MakeInstance();
  ASSERT_EQ(kBos.size(), 127u);
  EXPECT_EQ(BytesAt(GetUsbDebugCaps().GetBOSDesc(), 127), kBos);
}

TEST_F(DebugCapabilities, ConfigurationHasItsBytesAtBothSpeeds) {
  MakeInstance();
  CUSBDebugCapabilities const& capabilities = GetUsbDebugCaps();
  EXPECT_EQ(BytesAt(capabilities.GetConfigDesc(0, false), 25), kConfiguration);
  EXPECT_EQ(BytesAt(capabilities.GetConfigDesc(0, true), 25), kConfiguration);
  EXPECT_EQ(BytesAt(capabilities.GetConfigDesc(1, false), 25), kConfiguration);
}

TEST_F(DebugCapabilities, ConfigurationIndexBeyondTheTableGivesNull) {
  MakeInstance();
  CUSBDebugCapabilities const& capabilities = GetUsbDebugCaps();
  for (unsigned value = 2; value < 256; ++value) {
    auto const index = static_cast<unsigned char>(value);
    EXPECT_EQ(capabilities.GetConfigDesc(index, false), nullptr) << value;
    EXPECT_EQ(capabilities.GetConfigDesc(static_cast<unsigned char>(value - 1), true), nullptr)
        << value;
    EXPECT_EQ(capabilities.GetFakeDesc(0x02, index, 0), nullptr) << value;
    EXPECT_EQ(DebugCapGetFakeDesc(0x02, index, 0), nullptr) << value;
    EXPECT_EQ(DebugCapGetFakeConfigDesc(index, false), nullptr) << value;
  }
  EXPECT_EQ(capabilities.GetConfigDesc(255, true), nullptr);
  EXPECT_EQ(DebugCapGetFakeConfigDesc(255, true), nullptr);
}

TEST_F(DebugCapabilities, StringsHaveTheirBytesInAnyLanguage) {
  MakeInstance();
  CUSBDebugCapabilities const& capabilities = GetUsbDebugCaps();
  for (unsigned short const language :
       std::initializer_list<unsigned short>{0x0000, 0x0409, 0x0407, 0xFFFF}) {
    EXPECT_EQ(BytesAt(capabilities.GetStringDesc(0, language), 4), kLanguageIds);
    for (FakeString const& string : kStrings) {
      Bytes const expected = StringBytes(string);
      ASSERT_EQ(expected.size(), string.length) << string.text;
      EXPECT_EQ(BytesAt(capabilities.GetStringDesc(string.index, language), string.length),
                expected)
          << string.text;
    }
  }
}

TEST_F(DebugCapabilities, StringIndexBeyondTheTableGivesNull) {
  MakeInstance();
  for (unsigned value = 9; value < 256; ++value) {
    auto const index = static_cast<unsigned char>(value);
    EXPECT_EQ(GetUsbDebugCaps().GetStringDesc(index, 0x0409), nullptr) << value;
    EXPECT_EQ(GetUsbDebugCaps().GetFakeDesc(0x03, index, 0x0409), nullptr) << value;
    EXPECT_EQ(DebugCapGetFakeDesc(0x03, index, 0x0409), nullptr) << value;
  }
}

TEST_F(DebugCapabilities, FakeDescriptorsByType) {
  MakeInstance();
  CUSBDebugCapabilities const& capabilities = GetUsbDebugCaps();
  for (unsigned value = 0; value < 256; ++value) {
    auto const type = static_cast<unsigned char>(value);
    Bytes expected;
    switch (type) {
      case 0x01:
        expected = kDevice;
        break;
      case 0x02:
        expected = kConfiguration;
        break;
      case 0x03:
        expected = kLanguageIds;
        break;
      case 0x0F:
        expected = kBos;
        break;
      case 0x29:
      case 0x2A:
        expected = kUsb2Hub;
        break;
      default:
        EXPECT_EQ(capabilities.GetFakeDesc(type, 0, 0), nullptr) << value;
        EXPECT_EQ(DebugCapGetFakeDesc(type, 0, 0), nullptr) << value;
        continue;
    }
    EXPECT_EQ(BytesAt(capabilities.GetFakeDesc(type, 0, 0), expected.size()), expected) << value;
    EXPECT_EQ(DebugCapGetFakeDesc(type, 0, 0), capabilities.GetFakeDesc(type, 0, 0)) << value;
  }
}

TEST_F(DebugCapabilities, FakeStringsByIndex) {
  MakeInstance();
  for (FakeString const& string : kStrings) {
    unsigned char const* const fake = GetUsbDebugCaps().GetFakeDesc(0x03, string.index, 0x0407);
    EXPECT_EQ(BytesAt(fake, string.length), StringBytes(string)) << string.text;
    EXPECT_EQ(DebugCapGetFakeDesc(0x03, string.index, 0x0407), fake) << string.text;
  }
}

TEST_F(DebugCapabilities, FakeConfigurationsByIndex) {
  MakeInstance();
  EXPECT_EQ(BytesAt(GetUsbDebugCaps().GetFakeDesc(0x02, 1, 0), 25), kConfiguration);
  EXPECT_EQ(BytesAt(DebugCapGetFakeDesc(0x02, 1, 0), 25), kConfiguration);
  EXPECT_EQ(BytesAt(DebugCapGetFakeConfigDesc(0, false), 25), kConfiguration);
  EXPECT_EQ(BytesAt(DebugCapGetFakeConfigDesc(0, true), 25), kConfiguration);
  EXPECT_EQ(BytesAt(DebugCapGetFakeConfigDesc(1, false), 25), kConfiguration);
  EXPECT_EQ(DebugCapGetFakeConfigDesc(1, true), nullptr);
}

TEST_F(DebugCapabilities, IndexAndLanguageSelectOnlyWhereTheTypeHasThem) {
  MakeInstance();
  CUSBDebugCapabilities const& capabilities = GetUsbDebugCaps();
  EXPECT_EQ(BytesAt(capabilities.GetFakeDesc(0x01, 255, 0xFFFF), 18), kDevice);
  EXPECT_EQ(BytesAt(capabilities.GetFakeDesc(0x0F, 255, 0xFFFF), 127), kBos);
  EXPECT_EQ(BytesAt(capabilities.GetFakeDesc(0x29, 255, 0xFFFF), 9), kUsb2Hub);
  EXPECT_EQ(BytesAt(capabilities.GetFakeDesc(0x2A, 255, 0xFFFF), 9), kUsb2Hub);
}

TEST_F(DebugCapabilities, FakeDescriptorsAreTheSameWhateverTheSettings) {
  MakeInstance();
  TQ_USB_DEVICE_DESCRIPTOR const* const device = GetUsbDebugCaps().GetDevDesc();
  unsigned char const* const string = DebugCapGetFakeDesc(0x03, 1, 0);
  EndInstance();
  EXPECT_EQ(BytesAt(device, 18), kDevice);
  EXPECT_EQ(BytesAt(string, 78), StringBytes(kStrings[0]));
  SetSetting("NoUsbInteraction", true);
  MakeInstance();
  EXPECT_EQ(GetUsbDebugCaps().GetDevDesc(), device);
  EXPECT_EQ(DebugCapGetFakeDesc(0x03, 1, 0), string);
}

TEST_F(DebugCapabilities, DeviceSpeedIsAlwaysThree) {
  EXPECT_EQ(static_cast<unsigned>(DebugCapGetDeviceSpeed()), 3u);
  MakeInstance();
  EXPECT_EQ(static_cast<unsigned>(GetUsbDebugCaps().GetDeviceSpeed()), 3u);
  EXPECT_EQ(static_cast<unsigned>(DebugCapGetDeviceSpeed()), 3u);
  EndInstance();
  SetSetting("NoUsbInteraction", true);
  MakeInstance();
  EXPECT_EQ(static_cast<unsigned>(GetUsbDebugCaps().GetDeviceSpeed()), 3u);
  EXPECT_EQ(static_cast<unsigned>(DebugCapGetDeviceSpeed()), 3u);
}

TEST_F(DebugCapabilities, AnswersSafelyWithoutAnInstance) {
  // Settings that say otherwise play no part before setup.
  SetSetting("NoUsbInteraction", true);
  CallRecorder const recorder;
  EXPECT_FALSE(DebugCapNoUsb());
  EXPECT_TRUE(DebugCapRequiresUsb());
  EXPECT_FALSE(DebugCapAllDescHardCoded());
  EXPECT_FALSE(DebugCapDevDescHardCoded());
  EXPECT_FALSE(DebugCapBOSDescHardCoded());
  EXPECT_FALSE(DebugCapConfigDescHardCoded());
  EXPECT_FALSE(DebugCapStringDescHardCoded());
  EXPECT_FALSE(DebugCapHubDescHardCoded());
  for (unsigned value = 0; value < 256; ++value) {
    auto const type = static_cast<unsigned char>(value);
    EXPECT_FALSE(DebugCapNeedFakeDescriptor(type)) << value;
    EXPECT_EQ(DebugCapGetFakeDesc(type, 0, 0), nullptr) << value;
    EXPECT_EQ(DebugCapGetFakeConfigDesc(type, false), nullptr) << value;
    EXPECT_EQ(DebugCapGetFakeConfigDesc(type, true), nullptr) << value;
  }
  EXPECT_TRUE(recorder.SettingReads().empty());
}

TEST_F(DebugCapabilities, AnswersThroughTheInstanceWithoutADevice) {
  SetSetting("NoUsbInteraction", true);
  MakeInstance();
  EXPECT_TRUE(DebugCapNoUsb());
  EXPECT_FALSE(DebugCapRequiresUsb());
  EXPECT_TRUE(DebugCapAllDescHardCoded());
  EXPECT_TRUE(DebugCapDevDescHardCoded());
  EXPECT_TRUE(DebugCapBOSDescHardCoded());
  EXPECT_TRUE(DebugCapConfigDescHardCoded());
  EXPECT_TRUE(DebugCapStringDescHardCoded());
  EXPECT_TRUE(DebugCapHubDescHardCoded());
}

TEST_F(DebugCapabilities, RaisesWithoutAnInstance) {
  EXPECT_RUN_TIME_EXCEPTION(static_cast<void>(CUSBDebugCapabilities::GetUsbDebugCapabilities()),
                            kNoInstance, 0x40000000u);
  EXPECT_RUN_TIME_EXCEPTION(static_cast<void>(GetUsbDebugCaps()), kNoInstance, 0x40000000u);
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(DebugCapabilities, BothAccessorsGiveTheOneInstance) {
  MakeInstance();
  EXPECT_EQ(&GetUsbDebugCaps(), &CUSBDebugCapabilities::GetUsbDebugCapabilities());
}

TEST_F(DebugCapabilities, SettingUpTwiceKeepsTheFirstInstance) {
  MakeInstance();
  CUSBDebugCapabilities const* const first = &GetUsbDebugCaps();
  SetSetting("NoUsbInteraction", true);
  CallRecorder const recorder;
  MakeInstance();
  EXPECT_EQ(&GetUsbDebugCaps(), first);
  EXPECT_FALSE(GetUsbDebugCaps().NoUsbInteraction());
  EXPECT_TRUE(recorder.SettingReads().empty());
}

TEST_F(DebugCapabilities, SeesChangedSettingsOnlyAfterCleanupAndSetup) {
  MakeInstance();
  SetSetting("DevDescHardCoded", true);
  EXPECT_FALSE(GetUsbDebugCaps().DevDescHardCoded());
  EXPECT_FALSE(DebugCapNeedFakeDescriptor(0x01));
  EndInstance();
  MakeInstance();
  EXPECT_TRUE(GetUsbDebugCaps().DevDescHardCoded());
  EXPECT_TRUE(DebugCapNeedFakeDescriptor(0x01));
  EndInstance();
  standalone::ClearSettings();
  MakeInstance();
  EXPECT_FALSE(GetUsbDebugCaps().DevDescHardCoded());
}

TEST_F(DebugCapabilities, CleanupReleasesTheInstanceAndMayBeRepeated) {
  EndInstance();
  EXPECT_FALSE(InstanceExists());
  SetSetting("NoUsbInteraction", true);
  MakeInstance();
  EXPECT_TRUE(InstanceExists());
  EndInstance();
  EXPECT_FALSE(InstanceExists());
  EXPECT_TRUE(DebugCapRequiresUsb());
  EndInstance();
  EXPECT_FALSE(InstanceExists());
}

TEST_F(DebugCapabilities, OwningJanitorKeepsAnInstanceForItsScope) {
  SetSetting("NoUsbInteraction", true);
  {
    CUSBDebugCapabilitiesJanitor const janitor(true);
    EXPECT_TRUE(InstanceExists());
    EXPECT_TRUE(DebugCapNoUsb());
  }
  EXPECT_FALSE(InstanceExists());
  EXPECT_FALSE(DebugCapNoUsb());
}

TEST_F(DebugCapabilities, OwningJanitorKeepsTheInstanceThatIsThereAndReleasesIt) {
  MakeInstance();
  CUSBDebugCapabilities const* const first = &GetUsbDebugCaps();
  {
    CallRecorder const recorder;
    CUSBDebugCapabilitiesJanitor const janitor(true);
    EXPECT_EQ(&GetUsbDebugCaps(), first);
    EXPECT_TRUE(recorder.SettingReads().empty());
  }
  EXPECT_FALSE(InstanceExists());
}

TEST_F(DebugCapabilities, OwningJanitorReleasesAnInstanceMadeLaterBySomebodyElse) {
  {
    CUSBDebugCapabilitiesJanitor const janitor(true);
    EndInstance();
    MakeInstance();
  }
  EXPECT_FALSE(InstanceExists());
}

TEST_F(DebugCapabilities, OwningJanitorEndsQuietlyWhenTheInstanceIsGone) {
  {
    CUSBDebugCapabilitiesJanitor const janitor(true);
    EndInstance();
  }
  EXPECT_FALSE(InstanceExists());
}

TEST_F(DebugCapabilities, InnerOwningJanitorReleasesForTheOuterOne) {
  CUSBDebugCapabilitiesJanitor const outer(true);
  { CUSBDebugCapabilitiesJanitor const inner(true); }
  EXPECT_FALSE(InstanceExists());
}

TEST_F(DebugCapabilities, OtherJanitorNeitherCreatesNorReleases) {
  {
    CUSBDebugCapabilitiesJanitor const janitor(false);
    EXPECT_FALSE(InstanceExists());
  }
  EXPECT_FALSE(InstanceExists());
  MakeInstance();
  CUSBDebugCapabilities const* const first = &GetUsbDebugCaps();
  { CUSBDebugCapabilitiesJanitor const janitor(false); }
  ASSERT_TRUE(InstanceExists());
  EXPECT_EQ(&GetUsbDebugCaps(), first);
}

// The place of each flag in the object, which other modules of a program rely on.
TEST_F(DebugCapabilities, KeepsItsFlagsInOrder) {
  struct Row {
    char const* setting;
    Bytes flags;
  };
  for (Row const& row :
       {Row{"none", {0, 0, 0, 0, 0, 0, 0}}, Row{"NoUsbInteraction", {1, 1, 1, 1, 1, 1, 1}},
        Row{"DevDescHardCoded", {0, 0, 1, 0, 0, 0, 0}},
        Row{"BOSDescHardCoded", {0, 0, 0, 1, 0, 0, 0}},
        Row{"ConfigDescHardCoded", {0, 0, 0, 0, 1, 0, 0}},
        Row{"HubDescHardCoded", {0, 0, 0, 0, 0, 1, 0}},
        Row{"StringDescHardCoded", {0, 0, 0, 0, 0, 0, 1}}}) {
    standalone::ClearSettings();
    SetSetting(row.setting, true);
    MakeInstance();
    EXPECT_EQ(BytesAt(&GetUsbDebugCaps(), 7), row.flags) << row.setting;
    EndInstance();
  }
  // The first two are never set alone; written into, they tell themselves apart.
  MakeInstance();
  auto* const flags = reinterpret_cast<unsigned char*>(&GetUsbDebugCaps());
  flags[0] = 1;
  EXPECT_TRUE(GetUsbDebugCaps().NoUsbInteraction());
  EXPECT_FALSE(GetUsbDebugCaps().AllDescriptorsHardCoded());
}

TEST_F(DebugCapabilities, CopyAssignmentCopiesAllSevenFlags) {
  // Only the library deletes such an object, so the second one lies in storage of its own.
  alignas(CUSBDebugCapabilities) unsigned char storage[sizeof(CUSBDebugCapabilities)];
  SetSetting("NoUsbInteraction", true);
  auto const& source = *new (storage) CUSBDebugCapabilities();
  standalone::ClearSettings();
  MakeInstance();
  CUSBDebugCapabilities& target = GetUsbDebugCaps();
  EXPECT_EQ(FlagsOf(target), (std::array{false, false, false, false, false, false, false}));
  EXPECT_EQ(&(target = source), &target);
  EXPECT_EQ(FlagsOf(target), (std::array{true, true, true, true, true, true, true}));
  EXPECT_TRUE(DebugCapNoUsb());
}

TEST_F(DebugCapabilities, CopyAssignmentCopiesEachFlagToItsPlace) {
  for (char const* const key : {"DevDescHardCoded", "BOSDescHardCoded", "ConfigDescHardCoded",
                                "HubDescHardCoded", "StringDescHardCoded"}) {
    alignas(CUSBDebugCapabilities) unsigned char storage[sizeof(CUSBDebugCapabilities)];
    SetSetting(key, true);
    auto const& source = *new (storage) CUSBDebugCapabilities();
    standalone::ClearSettings();
    MakeInstance();
    GetUsbDebugCaps() = source;
    EXPECT_EQ(FlagsOf(GetUsbDebugCaps()), FlagsOf(source)) << key;
    EXPECT_EQ(BytesAt(&GetUsbDebugCaps(), 7), BytesAt(storage, 7)) << key;
    EndInstance();
  }
}

TEST_F(DebugCapabilities, ConstructorReadsTheSettingsAndRegistersNothing) {
  alignas(CUSBDebugCapabilities) unsigned char storage[sizeof(CUSBDebugCapabilities)];
  SetSetting("ConfigDescHardCoded", true);
  auto const& capabilities = *new (storage) CUSBDebugCapabilities();
  EXPECT_EQ(FlagsOf(capabilities), (std::array{false, false, false, false, true, false, false}));
  EXPECT_FALSE(InstanceExists());
}

}  // namespace
}  // namespace usb_support

#include <usb_support/fake_device/debug_capabilities.h>

#include <array>
#include <cstddef>
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
using testing_support::Hex;

constexpr char const* kNoInstance = "Internal Error: NULL USBDebugCapabilities object.";

static_assert(sizeof(CUSBDebugCapabilities) == 7);
static_assert(!std::is_destructible_v<CUSBDebugCapabilities>);
static_assert(!std::is_copy_constructible_v<CUSBDebugCapabilitiesJanitor>);

Bytes const kDevice = Hex("12 01 20 03 09 00 20 09 87 28 01 00 00 01 02 01 00 01");
Bytes const kDeviceQualifier = Hex("0A 06 01 02 09 00 00 40 01 00");
Bytes const kUsb2Hub = Hex("09 29 04 00 00 00 00 1E 1E");
Bytes const kUsb3Hub = Hex("0C 2A 04 00 00 00 00 00 00 00 00 00");
Bytes const kFakeConfiguration =
    Hex("09 02 19 00 05 01 00 E0 00  09 04 00 00 00 09 00 01 00  07 05 81 03 40 00 04");
Bytes const kLanguageIds = Hex("04 03 09 04");
Bytes const kBos =
    Hex("05 0F 7F 00 08  07 10 02 06 00 00 00  0A 10 03 00 0E 00 01 04 E7 00"
        "14 10 04 00 5C F3 EE 30 D5 07 49 25 B0 01 80 2D 79 43 4C 30"
        "1C 10 0A 00 23 00 00 00 00 11 00 00 30 00 05 00 B0 00 05 00 31 40 0A 00 B1 40 0A 00"
        "03 10 0B  12 10 06 00 5C 01 00 00 02 00 02 00 00 00 00 03 30 01"
        "18 10 08 00 06 00 32 00 96 00 00 00 C2 01 00 00 C2 01 00 00 FF FF 00 00"
        "0C 10 09 00 06 00 01 00 2C 91 01 3E");

// From index 1 on.
constexpr std::string_view kStrings[] = {
    "Enhanced SuperSpeed MA USB Virtual Hub",
    "Quillmark",
    "Battery 1",
    "Serial 1",
    "Manufacturer 1",
    "Battery 2",
    "Serial 2",
    "Manufacturer 2",
};

Bytes StringBytes(std::string_view text) {
  Bytes bytes = {static_cast<unsigned char>(2 + 2 * text.size()), 0x03};
  for (char const character : text) {
    bytes.insert(bytes.end(), {static_cast<unsigned char>(character), 0});
  }
  return bytes;
}

// As many bytes as are expected.
void ExpectAt(void const* address, Bytes const& expected) {
  ASSERT_NE(address, nullptr);
  auto const* const first = static_cast<unsigned char const*>(address);
  EXPECT_EQ(Bytes(first, first + expected.size()), expected);
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
using Flags = std::array<bool, 7>;

Flags FlagsOf(CUSBDebugCapabilities const& capabilities) {
  return {capabilities.NoUsbInteraction(),    capabilities.AllDescriptorsHardCoded(),
          capabilities.DevDescHardCoded(),    capabilities.BOSDescHardCoded(),
          capabilities.ConfigDescHardCoded(), capabilities.StringDescHardCoded(),
          capabilities.HubDescHardCoded()};
}

Flags FreeFlags() {
  EXPECT_EQ(DebugCapRequiresUsb(), !DebugCapNoUsb());
  return {DebugCapNoUsb(),
          DebugCapAllDescHardCoded(),
          DebugCapDevDescHardCoded(),
          DebugCapBOSDescHardCoded(),
          DebugCapConfigDescHardCoded(),
          DebugCapStringDescHardCoded(),
          DebugCapHubDescHardCoded()};
}

constexpr Flags kNone = {};
constexpr Flags kAll = {true, true, true, true, true, true, true};

SettingRead BooleanRead(char const* key) {
  return {key, SettingKind::kBoolean, SCOPE_DEFAULT, 0};
}

class DebugCapabilities : public testing_support::SuiteTest {};

TEST_F(DebugCapabilities, ReadsItsSwitchesInOrder) {
  CallRecorder const recorder;
  MakeInstance();
  EXPECT_THAT(
      recorder.SettingReads(),
      testing::ElementsAre(BooleanRead("NoUsbInteraction"), BooleanRead("DevDescHardCoded"),
                           BooleanRead("BOSDescHardCoded"), BooleanRead("ConfigDescHardCoded"),
                           BooleanRead("HubDescHardCoded"), BooleanRead("StringDescHardCoded")));
  EndInstance();
  SetSetting("NoUsbInteraction", true);
  CallRecorder const second;
  MakeInstance();
  EXPECT_THAT(second.SettingReads(), testing::ElementsAre(BooleanRead("NoUsbInteraction")));
  EXPECT_TRUE(TakeCalls().empty());
}

// Every combination of the five switches, every descriptor type. As in the suite, the hub setting
// switches strings and the string setting hubs; there is no setting for all descriptors.
TEST_F(DebugCapabilities, SwitchesDecideWhatIsFake) {
  SetSetting("AllDescriptorsHardCoded", true);
  for (unsigned combination = 0; combination < 32; ++combination) {
    auto const isOn = [combination](unsigned bit) { return (combination >> bit & 1) != 0; };
    SetSetting("NoUsbInteraction", false);
    SetSetting("DevDescHardCoded", isOn(0));
    SetSetting("BOSDescHardCoded", isOn(1));
    SetSetting("ConfigDescHardCoded", isOn(2));
    SetSetting("HubDescHardCoded", isOn(3));
    SetSetting("StringDescHardCoded", isOn(4));
    MakeInstance();
    Flags const flags = {false, false, isOn(0), isOn(1), isOn(2), isOn(3), isOn(4)};
    EXPECT_EQ(FlagsOf(GetUsbDebugCaps()), flags);
    EXPECT_EQ(FreeFlags(), flags);
    // Other modules of a program depend on the place of each flag in the object.
    ExpectAt(&GetUsbDebugCaps(), Bytes(flags.begin(), flags.end()));
    for (unsigned value = 0; value < 256; ++value) {
      auto const type = static_cast<unsigned char>(value);
      bool const expected = type == 0x01                   ? isOn(0)
                            : type == 0x02                 ? isOn(2)
                            : type == 0x03                 ? isOn(3)
                            : type == 0x0F                 ? isOn(1)
                            : type == 0x29 || type == 0x2A ? isOn(4)
                                                           : false;
      EXPECT_EQ(GetUsbDebugCaps().NeedFakeDescriptor(type), expected) << combination << ' ' << type;
      EXPECT_EQ(DebugCapNeedFakeDescriptor(type), expected) << combination << ' ' << value;
    }
    EndInstance();
    // Without a device everything is fake.
    SetSetting("NoUsbInteraction", true);
    MakeInstance();
    EXPECT_EQ(FlagsOf(GetUsbDebugCaps()), kAll);
    EXPECT_EQ(FreeFlags(), kAll);
    for (unsigned value = 0; value < 256; ++value) {
      EXPECT_TRUE(GetUsbDebugCaps().NeedFakeDescriptor(static_cast<unsigned char>(value)));
      EXPECT_TRUE(DebugCapNeedFakeDescriptor(static_cast<unsigned char>(value)));
    }
    EndInstance();
  }
  // The first two are never set alone; written into, they tell themselves apart.
  standalone::ClearSettings();
  MakeInstance();
  reinterpret_cast<unsigned char*>(&GetUsbDebugCaps())[0] = 1;
  EXPECT_TRUE(GetUsbDebugCaps().NoUsbInteraction());
  EXPECT_FALSE(GetUsbDebugCaps().AllDescriptorsHardCoded());
}

TEST_F(DebugCapabilities, FakeDescriptorsHaveTheirBytes) {
  MakeInstance();
  CUSBDebugCapabilities const& capabilities = GetUsbDebugCaps();
  ExpectAt(capabilities.GetDevDesc(), kDevice);
  ExpectAt(capabilities.GetDevQualDesc(), kDeviceQualifier);
  ExpectAt(capabilities.GetUsb2HubDesc(), kUsb2Hub);
  ExpectAt(capabilities.GetUsb3HubDesc(), kUsb3Hub);
  ExpectAt(capabilities.GetBOSDesc(), kBos);
  ExpectAt(capabilities.GetConfigDesc(0, false), kFakeConfiguration);
  ExpectAt(capabilities.GetConfigDesc(0, true), kFakeConfiguration);
  ExpectAt(capabilities.GetConfigDesc(1, false), kFakeConfiguration);
  ExpectAt(capabilities.GetStringDesc(0, 0), kLanguageIds);
  for (unsigned char index = 1; index <= 8; ++index) {
    ExpectAt(capabilities.GetStringDesc(index, 0x0409), StringBytes(kStrings[index - 1]));
    ExpectAt(capabilities.GetStringDesc(index, 0xFFFF), StringBytes(kStrings[index - 1]));
  }
}

TEST_F(DebugCapabilities, FakeDescriptorsByTypeAndIndex) {
  MakeInstance();
  CUSBDebugCapabilities const& capabilities = GetUsbDebugCaps();
  for (unsigned type = 0; type < 256; ++type) {
    for (unsigned value = 0; value < 256; ++value) {
      auto const index = static_cast<unsigned char>(value);
      void const* expected = nullptr;
      if (type == 0x01) {
        expected = capabilities.GetDevDesc();
      } else if (type == 0x02) {
        expected = capabilities.GetConfigDesc(index, false);
      } else if (type == 0x03) {
        expected = capabilities.GetStringDesc(index, 0);
      } else if (type == 0x0F) {
        expected = capabilities.GetBOSDesc();
      } else if (type == 0x29 || type == 0x2A) {
        expected = capabilities.GetUsb2HubDesc();
      }
      auto const typeByte = static_cast<unsigned char>(type);
      ASSERT_EQ(capabilities.GetFakeDesc(typeByte, index, 0x0407), expected) << type;
      ASSERT_EQ(DebugCapGetFakeDesc(typeByte, index, 0x0407), expected) << type;
    }
  }
  for (unsigned value = 0; value < 256; ++value) {
    auto const index = static_cast<unsigned char>(value);
    for (bool const otherSpeed : {false, true}) {
      void const* const found = capabilities.GetConfigDesc(index, otherSpeed);
      EXPECT_EQ(found != nullptr, value < (otherSpeed ? 1u : 2u)) << value;
      EXPECT_EQ(DebugCapGetFakeConfigDesc(index, otherSpeed), found) << value;
    }
    EXPECT_EQ(capabilities.GetStringDesc(index, 0) != nullptr, value < 9) << value;
  }
}

TEST_F(DebugCapabilities, FakeDescriptorsOutliveTheInstance) {
  MakeInstance();
  TQ_USB_DEVICE_DESCRIPTOR const* const device = GetUsbDebugCaps().GetDevDesc();
  EndInstance();
  ExpectAt(device, kDevice);
  MakeInstance();
  EXPECT_EQ(GetUsbDebugCaps().GetDevDesc(), device);
}

TEST_F(DebugCapabilities, DeviceSpeedIsAlwaysThree) {
  EXPECT_EQ(static_cast<unsigned>(DebugCapGetDeviceSpeed()), 3u);
  MakeInstance();
  EXPECT_EQ(static_cast<unsigned>(GetUsbDebugCaps().GetDeviceSpeed()), 3u);
  EXPECT_EQ(static_cast<unsigned>(DebugCapGetDeviceSpeed()), 3u);
}

TEST_F(DebugCapabilities, AnswersWithoutAnInstance) {
  // Settings have no effect before the setup.
  SetSetting("NoUsbInteraction", true);
  CallRecorder const recorder;
  EXPECT_EQ(FreeFlags(), kNone);
  for (unsigned value = 0; value < 256; ++value) {
    auto const type = static_cast<unsigned char>(value);
    EXPECT_FALSE(DebugCapNeedFakeDescriptor(type)) << value;
    EXPECT_EQ(DebugCapGetFakeDesc(type, 0, 0), nullptr) << value;
    EXPECT_EQ(DebugCapGetFakeConfigDesc(type, false), nullptr) << value;
    EXPECT_EQ(DebugCapGetFakeConfigDesc(type, true), nullptr) << value;
  }
  EXPECT_TRUE(recorder.SettingReads().empty());
  EXPECT_RUN_TIME_EXCEPTION(static_cast<void>(CUSBDebugCapabilities::GetUsbDebugCapabilities()),
                            kNoInstance, 0x40000000u);
  EXPECT_RUN_TIME_EXCEPTION(static_cast<void>(GetUsbDebugCaps()), kNoInstance, 0x40000000u);
}

TEST_F(DebugCapabilities, SetupReadsTheSettingsOnce) {
  MakeInstance();
  CUSBDebugCapabilities const* const first = &GetUsbDebugCaps();
  EXPECT_EQ(&CUSBDebugCapabilities::GetUsbDebugCapabilities(), first);
  SetSetting("DevDescHardCoded", true);
  CallRecorder const recorder;
  MakeInstance();
  EXPECT_EQ(&GetUsbDebugCaps(), first);
  EXPECT_TRUE(recorder.SettingReads().empty());
  EXPECT_EQ(FlagsOf(*first), kNone);
  EndInstance();
  EXPECT_FALSE(InstanceExists());
  EndInstance();
  EXPECT_FALSE(InstanceExists());
  MakeInstance();
  EXPECT_TRUE(GetUsbDebugCaps().DevDescHardCoded());
}

TEST_F(DebugCapabilities, OwningJanitorReleasesWhatIsThere) {
  for (bool const isThereBefore : {false, true}) {
    for (bool const endsInside : {false, true}) {
      if (isThereBefore) {
        MakeInstance();
      }
      CUSBDebugCapabilities const* const before = isThereBefore ? &GetUsbDebugCaps() : nullptr;
      {
        CUSBDebugCapabilitiesJanitor const janitor = true;
        ASSERT_TRUE(InstanceExists());
        EXPECT_TRUE(before == nullptr || &GetUsbDebugCaps() == before);
        if (endsInside) {
          EndInstance();
        }
      }
      EXPECT_FALSE(InstanceExists());
    }
  }
}

TEST_F(DebugCapabilities, OtherJanitorChangesNothing) {
  {
    CUSBDebugCapabilitiesJanitor const janitor(false);
    EXPECT_FALSE(InstanceExists());
  }
  EXPECT_FALSE(InstanceExists());
  MakeInstance();
  { CUSBDebugCapabilitiesJanitor const janitor(false); }
  EXPECT_TRUE(InstanceExists());
}

TEST_F(DebugCapabilities, CopyAssignmentCopiesEachFlag) {
  for (char const* const key : {"NoUsbInteraction", "DevDescHardCoded", "BOSDescHardCoded",
                                "ConfigDescHardCoded", "HubDescHardCoded", "StringDescHardCoded"}) {
    // Only the library deletes such an object, so this one is in separate storage.
    alignas(CUSBDebugCapabilities) unsigned char storage[sizeof(CUSBDebugCapabilities)];
    SetSetting(key, true);
    auto const& source = *new (storage) CUSBDebugCapabilities();
    EXPECT_FALSE(InstanceExists());
    EXPECT_NE(FlagsOf(source), kNone);
    standalone::ClearSettings();
    MakeInstance();
    CUSBDebugCapabilities& target = GetUsbDebugCaps();
    EXPECT_EQ(FlagsOf(target), kNone);
    EXPECT_EQ(&(target = source), &target);
    EXPECT_EQ(FlagsOf(target), FlagsOf(source)) << key;
    EndInstance();
  }
}

}  // namespace
}  // namespace usb_support

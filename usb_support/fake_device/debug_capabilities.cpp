#include <usb_support/fake_device/debug_capabilities.h>

#include <cstddef>

#include <usb_support/fake_device/fake_descriptors.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/text/formatting.h>

namespace {

CUSBDebugCapabilities* theInstance = nullptr;

// A switch whose setting is missing stays as it is.
void ReadSwitch(char const* key, bool& flag) {
  bool value = false;
  if (CAppState::AppSettings().GetAppSetting(key, value, SCOPE_DEFAULT)) {
    flag = value;
  }
}

template <typename Record>
Record const* As(unsigned char const* bytes) {
  static_assert(usb_support::kIsWireRecord<Record>);
  return reinterpret_cast<Record const*>(bytes);
}

template <typename Table>
unsigned char const* Entry(Table const& table, std::size_t index) {
  return index < table.size() ? table[index] : nullptr;
}

}  // namespace

static_assert(sizeof(CUSBDebugCapabilities) == 7);

CUSBDebugCapabilities::CUSBDebugCapabilities() {
  Initialize();
}

void CUSBDebugCapabilities::Initialize() {
  ReadSwitch("NoUsbInteraction", noUsbInteraction_);
  if (noUsbInteraction_) {
    allDescriptorsHardCoded_ = true;
    devDescHardCoded_ = true;
    bosDescHardCoded_ = true;
    configDescHardCoded_ = true;
    stringDescHardCoded_ = true;
    hubDescHardCoded_ = true;
    return;
  }
  ReadSwitch("DevDescHardCoded", devDescHardCoded_);
  ReadSwitch("BOSDescHardCoded", bosDescHardCoded_);
  ReadSwitch("ConfigDescHardCoded", configDescHardCoded_);
  // Deliberately exchanged: settings files in use were written for these meanings.
  ReadSwitch("HubDescHardCoded", stringDescHardCoded_);
  ReadSwitch("StringDescHardCoded", hubDescHardCoded_);
}

void CUSBDebugCapabilities::SetupUsbDebugCapabilities() {
  if (theInstance == nullptr) {
    theInstance = new CUSBDebugCapabilities();
  }
}

void CUSBDebugCapabilities::CleanupUsbDebugCapabilities() {
  delete theInstance;
  theInstance = nullptr;
}

CUSBDebugCapabilities& CUSBDebugCapabilities::GetUsbDebugCapabilities() {
  if (theInstance == nullptr) {
    usb_support::Raise(TEST_STATUS_INTERNAL_ERROR,
                       "Internal Error: NULL USBDebugCapabilities object.");
  }
  return *theInstance;
}

bool CUSBDebugCapabilities::NeedFakeDescriptor(unsigned char descriptorType) const noexcept {
  if (allDescriptorsHardCoded_) {
    return true;
  }
  switch (descriptorType) {
    case usb_support::kDeviceType:
      return devDescHardCoded_;
    case usb_support::kConfigurationType:
      return configDescHardCoded_;
    case usb_support::kStringType:
      return stringDescHardCoded_;
    case usb_support::kBosType:
      return bosDescHardCoded_;
    case usb_support::kHubType:
    case usb_support::kSuperSpeedHubType:
      return hubDescHardCoded_;
    default:
      return false;
  }
}

TQ_USB_DEVICE_DESCRIPTOR const* CUSBDebugCapabilities::GetDevDesc() const noexcept {
  return As<TQ_USB_DEVICE_DESCRIPTOR>(usb_support::fake::kDevice.data());
}

TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR const* CUSBDebugCapabilities::GetDevQualDesc() const noexcept {
  return As<TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR>(usb_support::fake::kDeviceQualifier.data());
}

TQ_USB_BOS_DESCRIPTOR const* CUSBDebugCapabilities::GetBOSDesc() const noexcept {
  return As<TQ_USB_BOS_DESCRIPTOR>(usb_support::fake::kBos.data());
}

TQ_USB_HUB_DESCRIPTOR const* CUSBDebugCapabilities::GetUsb2HubDesc() const noexcept {
  return As<TQ_USB_HUB_DESCRIPTOR>(usb_support::fake::kUsb2Hub.data());
}

TQ_USB_30_HUB_DESCRIPTOR const* CUSBDebugCapabilities::GetUsb3HubDesc() const noexcept {
  return As<TQ_USB_30_HUB_DESCRIPTOR>(usb_support::fake::kUsb3Hub.data());
}

TQ_USB_CONFIGURATION_DESCRIPTOR const* CUSBDebugCapabilities::GetConfigDesc(
    unsigned char index, bool otherSpeed) const noexcept {
  return As<TQ_USB_CONFIGURATION_DESCRIPTOR>(
      Entry(usb_support::fake::kConfigurations, std::size_t{index} + (otherSpeed ? 1 : 0)));
}

TQ_USB_STRING_DESCRIPTOR const* CUSBDebugCapabilities::GetStringDesc(
    unsigned char index, unsigned short /*langId*/) const noexcept {
  return As<TQ_USB_STRING_DESCRIPTOR>(Entry(usb_support::fake::kStrings, index));
}

unsigned char const* CUSBDebugCapabilities::GetFakeDesc(unsigned char descriptorType,
                                                        unsigned char index,
                                                        unsigned short langId) const noexcept {
  auto const asBytes = [](auto const* record) {
    return reinterpret_cast<unsigned char const*>(record);
  };
  switch (descriptorType) {
    case usb_support::kDeviceType:
      return asBytes(GetDevDesc());
    case usb_support::kConfigurationType:
      return asBytes(GetConfigDesc(index, false));
    case usb_support::kStringType:
      return asBytes(GetStringDesc(index, langId));
    case usb_support::kBosType:
      return asBytes(GetBOSDesc());
    case usb_support::kHubType:
    case usb_support::kSuperSpeedHubType:
      // Deliberately for both types: test programs that want the USB 3 one call GetUsb3HubDesc.
      return asBytes(GetUsb2HubDesc());
    default:
      return nullptr;
  }
}

TQE_USB_DEVICE_SPEED CUSBDebugCapabilities::GetDeviceSpeed() const noexcept {
  return TQE_USB_DEVICE_SPEED_SUPER;
}

CUSBDebugCapabilitiesJanitor::CUSBDebugCapabilitiesJanitor(bool owner) : owner_(owner) {
  if (owner_) {
    CUSBDebugCapabilities::SetupUsbDebugCapabilities();
  }
}

CUSBDebugCapabilitiesJanitor::~CUSBDebugCapabilitiesJanitor() {
  if (owner_) {
    CUSBDebugCapabilities::CleanupUsbDebugCapabilities();
  }
}

CUSBDebugCapabilities& GetUsbDebugCaps() {
  return CUSBDebugCapabilities::GetUsbDebugCapabilities();
}

bool DebugCapNoUsb() {
  return theInstance != nullptr && theInstance->NoUsbInteraction();
}

bool DebugCapRequiresUsb() {
  return !DebugCapNoUsb();
}

bool DebugCapAllDescHardCoded() {
  return theInstance != nullptr && theInstance->AllDescriptorsHardCoded();
}

bool DebugCapDevDescHardCoded() {
  return theInstance != nullptr && theInstance->DevDescHardCoded();
}

bool DebugCapBOSDescHardCoded() {
  return theInstance != nullptr && theInstance->BOSDescHardCoded();
}

bool DebugCapConfigDescHardCoded() {
  return theInstance != nullptr && theInstance->ConfigDescHardCoded();
}

bool DebugCapStringDescHardCoded() {
  return theInstance != nullptr && theInstance->StringDescHardCoded();
}

bool DebugCapHubDescHardCoded() {
  return theInstance != nullptr && theInstance->HubDescHardCoded();
}

bool DebugCapNeedFakeDescriptor(unsigned char type) {
  return theInstance != nullptr && theInstance->NeedFakeDescriptor(type);
}

unsigned char const* DebugCapGetFakeDesc(unsigned char type, unsigned char index,
                                         unsigned short langId) {
  return theInstance != nullptr ? theInstance->GetFakeDesc(type, index, langId) : nullptr;
}

TQ_USB_CONFIGURATION_DESCRIPTOR const* DebugCapGetFakeConfigDesc(unsigned char index,
                                                                 bool otherSpeed) {
  return theInstance != nullptr ? theInstance->GetConfigDesc(index, otherSpeed) : nullptr;
}

TQE_USB_DEVICE_SPEED DebugCapGetDeviceSpeed() {
  return TQE_USB_DEVICE_SPEED_SUPER;
}

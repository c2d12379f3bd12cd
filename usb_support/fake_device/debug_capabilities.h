// The debug switches of a run: they let it work without a device, or with fake descriptors that are
// built into the library instead of the device's own.
//
// One object for the process, made from the application settings by SetupUsbDebugCapabilities (or
// an owning janitor) and released by CleanupUsbDebugCapabilities; a change of the settings takes
// effect only after a cleanup and a new setup. The DebugCap... functions give the same answers
// without access to the object, and safe ones when it does not exist. Nothing is locked: set up and
// clean up on the main thread, before and after the threads that ask.
//
// The fake descriptors are constant data that lives as long as the library. String indexes run from
// 0 to 8, and the one configuration index is 0, at both speeds; an index beyond the tables is the
// caller's fault and gives null.
#pragma once

#include <usb_support/descriptors/device_speed.h>
#include <usb_support/descriptors/records.h>
#include <usb_support/platform/export.h>

/// The switches of the run, as set when the object was made, and the fake descriptors.
class USB_SUPPORT_API CUSBDebugCapabilities {
 public:
  /// Reads the settings "NoUsbInteraction" and, unless that is on, "DevDescHardCoded",
  /// "BOSDescHardCoded", "ConfigDescHardCoded", "HubDescHardCoded" and "StringDescHardCoded". A
  /// missing setting is off.
  CUSBDebugCapabilities();
  CUSBDebugCapabilities(CUSBDebugCapabilities const&) = delete;
  CUSBDebugCapabilities& operator=(CUSBDebugCapabilities const&) noexcept = default;

  /// Makes the object if there is none.
  static void SetupUsbDebugCapabilities();

  /// Releases the object if there is one.
  static void CleanupUsbDebugCapabilities();

  /// The object. Throws TQRunTimeException ("Internal Error: NULL USBDebugCapabilities object.")
  /// when there is none.
  static CUSBDebugCapabilities& GetUsbDebugCapabilities();

  /// The run must not touch the device.
  bool NoUsbInteraction() const noexcept { return noUsbInteraction_; }
  /// Every descriptor is to be the fake one; follows NoUsbInteraction.
  bool AllDescriptorsHardCoded() const noexcept { return allDescriptorsHardCoded_; }
  bool DevDescHardCoded() const noexcept { return devDescHardCoded_; }
  bool BOSDescHardCoded() const noexcept { return bosDescHardCoded_; }
  bool ConfigDescHardCoded() const noexcept { return configDescHardCoded_; }
  /// Switched by the setting "HubDescHardCoded"; see Initialize in the source.
  bool StringDescHardCoded() const noexcept { return stringDescHardCoded_; }
  /// Switched by the setting "StringDescHardCoded".
  bool HubDescHardCoded() const noexcept { return hubDescHardCoded_; }

  /// True when descriptors of this type are to be the fake ones.
  bool NeedFakeDescriptor(unsigned char descriptorType) const noexcept;

  /// The fake device descriptor and device qualifier.
  TQ_USB_DEVICE_DESCRIPTOR const* GetDevDesc() const noexcept;
  TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR const* GetDevQualDesc() const noexcept;
  /// The whole BOS of 127 bytes, capabilities included.
  TQ_USB_BOS_DESCRIPTOR const* GetBOSDesc() const noexcept;
  TQ_USB_HUB_DESCRIPTOR const* GetUsb2HubDesc() const noexcept;
  TQ_USB_30_HUB_DESCRIPTOR const* GetUsb3HubDesc() const noexcept;

  /// The whole configuration of 25 bytes; index 1 gives the same when `otherSpeed` is false.
  TQ_USB_CONFIGURATION_DESCRIPTOR const* GetConfigDesc(unsigned char index,
                                                       bool otherSpeed) const noexcept;

  /// String `index`; index 0 gives the language identifiers. `langId` is not used.
  TQ_USB_STRING_DESCRIPTOR const* GetStringDesc(unsigned char index,
                                                unsigned short langId) const noexcept;

  /// The fake descriptor of a type as bytes; null for a type that has none. 0x29 and 0x2A
  /// deliberately both give the USB 2.0 hub descriptor.
  unsigned char const* GetFakeDesc(unsigned char descriptorType, unsigned char index,
                                   unsigned short langId) const noexcept;

  /// Always SuperSpeed.
  TQE_USB_DEVICE_SPEED GetDeviceSpeed() const noexcept;

 private:
  friend class CUSBDebugCapabilitiesJanitor;

  ~CUSBDebugCapabilities() = default;

  void Initialize();

  bool noUsbInteraction_ = false;
  bool allDescriptorsHardCoded_ = false;
  bool devDescHardCoded_ = false;
  bool bosDescHardCoded_ = false;
  bool configDescHardCoded_ = false;
  bool stringDescHardCoded_ = false;
  bool hubDescHardCoded_ = false;
};

/// Keeps the debug capabilities for a scope. An owning janitor makes the object if there is none
/// and always releases it at the end, even one that other code made. Any other does nothing.
class USB_SUPPORT_API CUSBDebugCapabilitiesJanitor {
 public:
  /// Throws what making the object throws.
  CUSBDebugCapabilitiesJanitor(bool owner);
  CUSBDebugCapabilitiesJanitor(CUSBDebugCapabilitiesJanitor const&) = delete;
  CUSBDebugCapabilitiesJanitor& operator=(CUSBDebugCapabilitiesJanitor const&) = delete;
  ~CUSBDebugCapabilitiesJanitor();

 private:
  bool owner_;
};

/// As CUSBDebugCapabilities::GetUsbDebugCapabilities.
USB_SUPPORT_API CUSBDebugCapabilities& GetUsbDebugCaps();

/// The answers of the debug capabilities; without them false or null, except DebugCapRequiresUsb
/// (true) and DebugCapGetDeviceSpeed (SuperSpeed).
USB_SUPPORT_API bool DebugCapNoUsb();
USB_SUPPORT_API bool DebugCapRequiresUsb();
USB_SUPPORT_API bool DebugCapAllDescHardCoded();
USB_SUPPORT_API bool DebugCapDevDescHardCoded();
USB_SUPPORT_API bool DebugCapBOSDescHardCoded();
USB_SUPPORT_API bool DebugCapConfigDescHardCoded();
USB_SUPPORT_API bool DebugCapStringDescHardCoded();
USB_SUPPORT_API bool DebugCapHubDescHardCoded();
USB_SUPPORT_API bool DebugCapNeedFakeDescriptor(unsigned char type);
USB_SUPPORT_API unsigned char const* DebugCapGetFakeDesc(unsigned char type, unsigned char index,
                                                         unsigned short langId);
USB_SUPPORT_API TQ_USB_CONFIGURATION_DESCRIPTOR const* DebugCapGetFakeConfigDesc(
    unsigned char index, bool otherSpeed);
USB_SUPPORT_API TQE_USB_DEVICE_SPEED DebugCapGetDeviceSpeed();

// The vendor's name beside idVendor.
#pragma once

namespace usb_support::usbdesc {

/// Logs "// idVendor 0x1209: NAME" for the device under test. Nothing when the device has no device
/// descriptor, the list does not know the vendor, or there is no list in the folder of
/// GetUsbifJsonFolderPathName. Nothing is ever moved: the list in that folder is all that is looked
/// at, where GetVendorName alone would first fetch one from the current folder. What is wrong with
/// a list stands in the log, as GetVendorName says it.
void LogVendor();

}  // namespace usb_support::usbdesc

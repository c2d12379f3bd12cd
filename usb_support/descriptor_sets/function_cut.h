// How a configuration is cut into functions: shared by the function list and the finders that test
// programs use. Not installed.
#pragma once

#include <cstddef>
#include <cstdint>

#include <usb_support/descriptors/finders.h>
#include <usb_support/descriptors/read_record.h>
#include <usb_support/text/formatting.h>

namespace usb_support {

/// True for an interface association.
inline bool IsAssociation(CDescriptorRangeIterator const& it) {
  return HasType(it, kInterfaceAssociationType);
}

/// bInterfaceNumber of an interface.
inline std::uint8_t InterfaceNumber(CDescriptorRangeIterator const& it) {
  return ReadByte(it, offsetof(TQ_USB_INTERFACE_DESCRIPTOR, bInterfaceNumber));
}

/// Number of the interface that begins the function after the head's (modulo 256). Throws
/// TQRunTimeException when the head cannot begin a function.
inline std::uint8_t NextFirstInterface(CDescriptorRangeIterator const& head) {
  if (HasType(head, kInterfaceType)) {
    return static_cast<std::uint8_t>(InterfaceNumber(head) + 1);
  }
  if (IsAssociation(head)) {
    return static_cast<std::uint8_t>(
        ReadByte(head, offsetof(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR, bFirstInterface)) +
        ReadByte(head, offsetof(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR, bInterfaceCount)));
  }
  Raise(TEST_STATUS_INTERNAL_ERROR, "Descriptor has type 0x%02X: not valid for USB Function.",
        ReadRecord<TQ_USB_COMMON_DESCRIPTOR>(head).bDescriptorType);
}

}  // namespace usb_support

// Tables of values that several standards use.
#pragma once

#include <usb_fields/table.h>
#include <usb_fields/tables/units.h>

namespace usb_fields::detail {

// USB 3.2, 9.4, table 9-6; Wireless USB 1.1, table 7-1
inline constexpr Code kDescriptorType[] = {
    {0x01, "Device"},
    {0x02, "Configuration"},
    {0x03, "String"},
    {0x04, "Interface"},
    {0x05, "Endpoint"},
    {0x06, "Device Qualifier"},
    {0x07, "Other Speed Configuration"},
    {0x08, "Interface Power"},
    {0x09, "OTG"},
    {0x0A, "Debug"},
    {0x0B, "Interface Association"},
    {0x0C, "Security"},
    {0x0D, "Key"},
    {0x0E, "Encryption Type"},
    {0x0F, "BOS"},
    {0x10, "Device Capability"},
    {0x11, "Wireless Endpoint Companion"},
    {0x12, "eUSB2 Isochronous Endpoint Companion"},
    {0x29, "Hub"},
    {0x2A, "SuperSpeed Hub"},
    {0x30, "SuperSpeed Endpoint Companion"},
    {0x31, "SuperSpeedPlus Isochronous Endpoint Companion"},
};

// USB 2.0, 9.6.6, table 9-13
inline constexpr Bit kEndpointAddress[] = {
    {3, 0, "Endpoint number"}, {6, 4, "Reserved"}, {7, 7, "Direction"},
    {7, 7, 0, "OUT"},          {7, 7, 1, "IN"},
};

// USB 2.0, 9.6.6, table 9-13
inline constexpr Bit kEndpointAttrIsoch[] = {
    {1, 0, "Transfer Type"},
    {1, 0, 0, "Control"},
    {1, 0, 1, "Isochronous"},
    {1, 0, 2, "Bulk"},
    {1, 0, 3, "Interrupt"},
    {3, 2, "Synchronization Type"},
    {3, 2, 0, "No Synchronization"},
    {3, 2, 1, "Asynchronous"},
    {3, 2, 2, "Adaptive"},
    {3, 2, 3, "Synchronous"},
    {5, 4, "Usage Type"},
    {5, 4, 0, "Data endpoint"},
    {5, 4, 1, "Feedback endpoint"},
    {5, 4, 2, "Implicit feedback Data endpoint"},
    {5, 4, 3, "Reserved"},
    {7, 6, "Reserved"},
};

// USB 3.2, 9.6.6, table 9-25
inline constexpr Bit kEndpointAttrIntSs[] = {
    {1, 0, "Transfer Type"}, {1, 0, 0, "Control"},   {1, 0, 1, "Isochronous"},
    {1, 0, 2, "Bulk"},       {1, 0, 3, "Interrupt"}, {3, 2, "Reserved"},
    {5, 4, "Usage Type"},    {5, 4, 0, "Periodic"},  {5, 4, 1, "Notification"},
    {5, 4, 2, "Reserved"},   {5, 4, 3, "Reserved"},  {7, 6, "Reserved"},
};

// USB 2.0, 9.6.6, table 9-13
inline constexpr Bit kEndpointAttrInt[] = {
    {1, 0, "Transfer Type"}, {1, 0, 0, "Control"},   {1, 0, 1, "Isochronous"},
    {1, 0, 2, "Bulk"},       {1, 0, 3, "Interrupt"}, {7, 2, "Reserved"},
};

// USB 2.0, 9.6.6, table 9-13
inline constexpr Bit kEndpointAttrOther[] = {
    {1, 0, "Transfer Type"}, {1, 0, 0, "Control"},   {1, 0, 1, "Isochronous"},
    {1, 0, 2, "Bulk"},       {1, 0, 3, "Interrupt"}, {7, 2, "Reserved"},
};

// USB 2.0, 9.6.6, table 9-13
inline constexpr Bit kEndpointMaxpacketFs[] = {
    {10, 0, "Maximum packet size", kBytes},
    {15, 11, "Reserved"},
};

// USB 2.0, 9.6.6, tables 9-13 and 9-14
inline constexpr Bit kEndpointMaxpacketHsPeriodic[] = {
    {10, 0, "Maximum packet size", kBytes},
    {12, 11, "Additional transactions per microframe"},
    {12, 11, 0, "None (1 transaction per microframe)"},
    {12, 11, 1, "1 additional (2 per microframe)"},
    {12, 11, 2, "2 additional (3 per microframe)"},
    {12, 11, 3, "Reserved"},
    {15, 13, "Reserved"},
};

}  // namespace usb_fields::detail

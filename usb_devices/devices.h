// Reads descriptors from any source as the same thing: a device with its answers to GET_DESCRIPTOR.
// The library needs the C++ standard library, libpcap for traffic captures and libusb for devices
// that are plugged in.
//
//   #include <usb_devices/devices.h>
//
//   for (usb_devices::Device const& device : usb_devices::ReadInput("trace.pcapng").devices) {
//     if (auto const bos = device.Bytes(usb_devices::Request::Descriptor(usb_devices::kBosType))) {
//       Show(device.Name(), *bos);
//     }
//   }
//
// device.h          Device, Request, Answer: what all readers make
// input.h           ReadInput: any file or folder, by its content
// runs.h            raw runs of descriptors, and how they are split
// folder.h          a device in a folder, and Linux' sysfs
// text_reader.h     hexadecimal in every common form, listings, code
// json.h            JSON
// lsusb_reader.h    listings of lsusb -v
// traffic.h         traffic captures
// live.h            devices that are plugged in
// control_reader.h  reads a device through the caller's own control transfers
// listing_writer.h  listings and code
//
// Memory: a device owns its bytes.
// Threads: nothing is shared; a device never changes.
// Failure: a reader throws ReadError, one harmless line with the file, the place and what was
// expected. Nothing reads more than a limit that its header names.
#pragma once

#include <usb_devices/control_reader.h>
#include <usb_devices/device.h>
#include <usb_devices/folder.h>
#include <usb_devices/input.h>
#include <usb_devices/json.h>
#include <usb_devices/listing_writer.h>
#include <usb_devices/live.h>
#include <usb_devices/lsusb_reader.h>
#include <usb_devices/read_error.h>
#include <usb_devices/runs.h>
#include <usb_devices/text_reader.h>
#include <usb_devices/traffic.h>

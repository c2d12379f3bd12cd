// The meaning of every byte of every USB descriptor. The library needs only the C++ standard
// library. It covers the standard descriptors, hubs and the BOS, and the descriptors of audio,
// MIDI, video, CDC, HID, smart cards, DFU, mass storage, printers, healthcare, IrDA, audio/video
// devices, Wireless USB, Microsoft OS and WebUSB.
//
//   #include <usb_fields/fields.h>
//
//   void Show(std::span<std::uint8_t const> run) {  // a configuration, or a BOS
//     using namespace usb_fields;
//     Context context{.speed = Speed::kHigh};
//     while (run.size() >= 2 && run[0] >= 2) {
//       Reading const reading = ReadFields(run, context, [](FieldValue const& field) {
//         char number[kMostText];
//         char text[kMostText];
//         Print(field.field->name, NumberOf(field, number), TextOf(field, text));
//         for (BitsReader bits(field); bits.Next();) {
//           Print(bits.Value().name, bits.Value().value, bits.Value().text);
//         }
//       });
//       Print(reading.layout != nullptr ? reading.layout->name : "Unknown");
//       context.Follow(run);
//       run = run.subspan(reading.length);
//     }
//   }
//
// reader.h     ReadFields: passes the fields of one descriptor to a visitor, in order
// context.h    Context: what a descriptor's meaning depends on, followed through a run
// text.h       TextOf, NumberOf, BitsReader: values as text for people
// summary.h    SummaryOf: one line for each descriptor
// speed.h      GuessSpeed: the speed of a device when only its descriptors are known
// names.h      classes, languages, HID usages
// hid_report.h report descriptors: items, and the reports that they describe
// usb_ids.h    names of vendors and products from a usb.ids file
// table.h      the parts of the tables: Layout, Field, Meaning
//
// Memory: spans and views refer to the caller's bytes and buffers, or to constant tables. Only
// ReadHidReports and UsbIds allocate. Threads: only constant tables are shared; an object of the
// caller may be used by one thread at a time. Failure: bytes may have any content. A descriptor
// that is too short has fields that are cut (FieldValue::IsCut); bytes that belong to no field are
// counted (Reading::NotDescribed); a descriptor that no standard defines has no layout. Only
// std::bad_alloc is thrown.
#pragma once

#include <usb_fields/context.h>
#include <usb_fields/hid_report.h>
#include <usb_fields/names.h>
#include <usb_fields/reader.h>
#include <usb_fields/speed.h>
#include <usb_fields/summary.h>
#include <usb_fields/table.h>
#include <usb_fields/text.h>
#include <usb_fields/usb_ids.h>

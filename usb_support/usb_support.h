// The map of the library: includes every public header.
//
// Open first:
//
//   descriptors/walk.h              look at descriptors one by one: the loop that a test needs most
//   descriptors/descriptor_range.h  a run of descriptors: lists, counts, sub-ranges, the dump
//   descriptors/records.h           the fields of the standard descriptors; more: further_records.h
//   descriptor_sets/device_sets.h   sets of descriptors that read themselves from the device
//   log/check.h, log/log_assert.h   log a broken rule
//   helper/test_run.h               what a program needs before its first test, in one line
//
// The rooms, from the bottom; a room uses only those above it in this list:
//
//   platform, suite_interfaces      exports, events, files; what the suite's two libraries offer
//   text                            formatted messages
//   status, descriptors             status codes and their texts; records, walks and ranges
//   fake_device                     the debug switches and the fake descriptors
//   helper                          the helper object, test services, the device under test
//   labels                          the label of a descriptor, the dump of a range
//   log                             assertions, rules and descriptors in the log
//   descriptor_sets, vendor_names, events   owned descriptors; names of vendors; driver events
//
// What fails how:
//
//   the outside: driver, file, device     a RETURN_CODE: Failed(), GetStatusDetail()
//   broken data, in a walk over all       the walk ends; ranges also write one line to the log
//   broken data, in a single step         TQRunTimeException (++ of an iterator, FindFirst, [])
//   the caller: no helper, no instance    TQRunTimeException
//   a caller's empty std::function        std::bad_function_call
//   the vendor list cannot be moved       std::filesystem::filesystem_error
//   no memory                             std::bad_alloc; the object keeps its contents
//
// The suite's own names are in the global namespace, everything else in usb_support.
#pragma once

#include <usb_support/descriptor_sets/bos_descriptor_set.h>
#include <usb_support/descriptor_sets/config_descriptor_set.h>
#include <usb_support/descriptor_sets/descriptor_set.h>
#include <usb_support/descriptor_sets/device_sets.h>
#include <usb_support/descriptor_sets/function_selector.h>
#include <usb_support/descriptors/class_codes.h>
#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/descriptors/descriptor_range_iterator.h>
#include <usb_support/descriptors/descriptor_type_finder.h>
#include <usb_support/descriptors/device_speed.h>
#include <usb_support/descriptors/endpoint_fields.h>
#include <usb_support/descriptors/finders.h>
#include <usb_support/descriptors/first_match.h>
#include <usb_support/descriptors/further_records.h>
#include <usb_support/descriptors/range_diagnosis.h>
#include <usb_support/descriptors/range_selector.h>
#include <usb_support/descriptors/read_record.h>
#include <usb_support/descriptors/records.h>
#include <usb_support/descriptors/walk.h>
#include <usb_support/events/driver_event.h>
#include <usb_support/events/waits.h>
#include <usb_support/fake_device/custom_descriptor.h>
#include <usb_support/fake_device/debug_capabilities.h>
#include <usb_support/helper/test_objects.h>
#include <usb_support/helper/test_run.h>
#include <usb_support/helper/usb_helper.h>
#include <usb_support/log/check.h>
#include <usb_support/log/log_assert.h>
#include <usb_support/log/log_descriptor.h>
#include <usb_support/platform/export.h>
#include <usb_support/platform/lifetime.h>
#include <usb_support/platform/overlapped.h>
#include <usb_support/status/return_code.h>
#include <usb_support/status/status_text.h>
#include <usb_support/status/version.h>
#include <usb_support/suite_interfaces/app_settings.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/suite_interfaces/exceptions.h>
#include <usb_support/suite_interfaces/format_info.h>
#include <usb_support/suite_interfaces/log_level.h>
#include <usb_support/suite_interfaces/safe_string.h>
#include <usb_support/suite_interfaces/simple_buffer.h>
#include <usb_support/suite_interfaces/sv_wrapper.h>
#include <usb_support/suite_interfaces/system.h>
#include <usb_support/suite_interfaces/test_status.h>
#include <usb_support/suite_interfaces/tq_helper.h>
#include <usb_support/suite_interfaces/tq_logger.h>
#include <usb_support/text/format_string.h>
#include <usb_support/text/formatting.h>
#include <usb_support/vendor_names/vendor_name.h>

// Everything that the library offers to a test program.
#pragma once

#include <usb_support/descriptor_sets/bos_descriptor_set.h>
#include <usb_support/descriptor_sets/config_descriptor_set.h>
#include <usb_support/descriptor_sets/custom_descriptor.h>
#include <usb_support/descriptor_sets/debug_capabilities.h>
#include <usb_support/descriptor_sets/descriptor_set.h>
#include <usb_support/descriptor_sets/function_selector.h>
#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/descriptors/descriptor_range_iterator.h>
#include <usb_support/descriptors/descriptor_type_finder.h>
#include <usb_support/descriptors/device_speed.h>
#include <usb_support/descriptors/finders.h>
#include <usb_support/descriptors/range_diagnosis.h>
#include <usb_support/descriptors/range_selector.h>
#include <usb_support/descriptors/read_record.h>
#include <usb_support/descriptors/records.h>
#include <usb_support/helper/format_string.h>
#include <usb_support/helper/formatting.h>
#include <usb_support/helper/log_assert.h>
#include <usb_support/helper/log_descriptor.h>
#include <usb_support/helper/test_objects.h>
#include <usb_support/helper/usb_helper.h>
#include <usb_support/status/return_code.h>
#include <usb_support/status/status_text.h>
#include <usb_support/status/version.h>

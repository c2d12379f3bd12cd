# The fuzz targets as sources of an ordinary test program that replays their inputs. It links usbdesc_core, usb_devices
# and usb_support_rapidjson, and gets the root of the source tree as USB_SUPPORT_SOURCE_DIR and the samples of the rules
# as USB_RULES_SAMPLES. The library does not export the search in a vendor list, so its source is part of the program.
set(USB_SUPPORT_FUZZ_TARGET_SOURCES
  ${CMAKE_CURRENT_LIST_DIR}/assertion.cpp
  ${CMAKE_CURRENT_LIST_DIR}/bos_set.cpp
  ${CMAKE_CURRENT_LIST_DIR}/configuration_set.cpp
  ${CMAKE_CURRENT_LIST_DIR}/control_reader.cpp
  ${CMAKE_CURRENT_LIST_DIR}/devices.cpp
  ${CMAKE_CURRENT_LIST_DIR}/fields.cpp
  ${CMAKE_CURRENT_LIST_DIR}/labels.cpp
  ${CMAKE_CURRENT_LIST_DIR}/range_walk.cpp
  ${CMAKE_CURRENT_LIST_DIR}/rules.cpp
  ${CMAKE_CURRENT_LIST_DIR}/settings_file.cpp
  ${UsbSupport_SOURCE_DIR}/usb_rules/test_support/sample.cpp
  ${CMAKE_CURRENT_LIST_DIR}/text_reader.cpp
  ${CMAKE_CURRENT_LIST_DIR}/traffic.cpp
  ${CMAKE_CURRENT_LIST_DIR}/vendor_list.cpp
  ${UsbSupport_SOURCE_DIR}/usb_support/vendor_names/vendor_list.cpp)
set(USB_SUPPORT_FUZZ_REGRESSION_TESTS
  ${CMAKE_CURRENT_LIST_DIR}/regressions_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/seeds.cpp
  ${USB_SUPPORT_FUZZ_TARGET_SOURCES})

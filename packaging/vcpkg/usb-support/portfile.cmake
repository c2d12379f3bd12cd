# Builds the tree that this port is in. A port elsewhere names the sources by vcpkg_from_git instead.
get_filename_component(SOURCE_PATH "${CURRENT_PORT_DIR}/../../.." ABSOLUTE)

vcpkg_check_features(OUT_FEATURE_OPTIONS options
  FEATURES
    live USB_SUPPORT_LIBUSB
    tools USB_SUPPORT_BUILD_TOOLS
    traffic USB_SUPPORT_PCAP)

vcpkg_cmake_configure(
  SOURCE_PATH "${SOURCE_PATH}"
  OPTIONS
    -DUSB_SUPPORT_INSTALL=ON
    -DUSB_SUPPORT_BUILD_TESTS=OFF
    -DUSB_SUPPORT_BUILD_BENCHMARKS=OFF
    -DUSB_SUPPORT_BUILD_FUZZERS=OFF
    -DUSB_SUPPORT_WERROR=OFF
    ${options})
vcpkg_cmake_install()
vcpkg_copy_pdbs()
vcpkg_cmake_config_fixup(PACKAGE_NAME UsbSupport CONFIG_PATH lib/cmake/UsbSupport)
vcpkg_fixup_pkgconfig()
if("tools" IN_LIST FEATURES)
  vcpkg_copy_tools(TOOL_NAMES usbdesc AUTO_CLEAN)
endif()

file(REMOVE_RECURSE
  "${CURRENT_PACKAGES_DIR}/debug/include"
  "${CURRENT_PACKAGES_DIR}/debug/share")
file(INSTALL "${CURRENT_PORT_DIR}/usage" DESTINATION "${CURRENT_PACKAGES_DIR}/share/${PORT}")
set(VCPKG_POLICY_SKIP_COPYRIGHT_CHECK enabled)

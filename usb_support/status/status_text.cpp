#include <usb_support/status/status_text.h>

#include <array>
#include <cstddef>

#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/suite_interfaces/format_info.h>
#include <usb_support/text/formatting.h>

namespace {

struct StatusText {
  RETURN_CODE code;
  char const* text;
};

constexpr StatusText kFailures[] = {
    {RC_OPERATION_FAILED, "Operation failed"},
    {RC_NOT_IMPLEMENTED, "Operation not implemented"},
    {RC_NOT_SUPPORTED, "Operation not supported"},
    {RC_ACCESS_DENIED, "Access denied"},
    {RC_CANNOT_OPEN_LOG, "Cannot open log"},
    {RC_LOG_NOT_OPEN, "Log not open"},
    {RC_LOG_WRITE_ERROR, "Log write error"},
    {RC_DESTINATION_TOO_SMALL, "Destination buffer too small"},
    {RC_REGISTRY_OPERATION_FAILED, "Internal error: a Windows registry operation failed."},
    {RC_HOST_INTERFACE_INVALID, "The host interface is invalid"},
    {RC_TRANSFER_TYPE_UNDEFINED, "Transfer type undefined"},
    {RC_INVALID_PACKET_SIZE, "Invalid packet size"},
    {RC_INVALID_TRANSFER_TYPE, "Invalid transfer type"},
    {RC_INVALID_OPTION, "Invalid option"},
    {RC_PARAMETER_CANNOT_CHANGE, "Parameter can't change"},
    {RC_ENDPOINT_NOT_FOUND, "Endpoint not found"},
    {RC_INVALID_RESPONSE_MODE, "Invalid response mode"},
    {RC_ENDPOINT_WRITE_ERROR, "Endpoint write error"},
    {RC_ENDPOINT_READ_ERROR, "Endpoint read error"},
    {RC_ENDPOINT_OPEN_ERROR, "Endpoint open error"},
    {RC_ENDPOINT_INVALID_MAX_BURST, "Endpoint invalid max burst size"},
    {RC_ENDPOINT_INVALID_MULTIPLIER, "Endpoint invalid SuperSpeed multiplier size"},
    {RC_ENDPOINT_CONFIGURATION_FAILED, "Endpoint configuration failed"},
    {RC_TRANSFER_TIMEOUT, "Transfer timeout"},
    {RC_TRANSFER_ERROR, "Transfer error"},
    {RC_MISSED_MICROFRAME, "Missed microframe"},
    {RC_TRANSFER_HARD_ERROR, "Transfer hard error"},
    {RC_BABBLE_ERROR, "Babble error"},
    {RC_DATA_BUFFER_HARD_ERROR, "Data buffer hard error"},
    {RC_STALL_ERROR, "Stall error"},
    {RC_TRANSFER_ACTIVE, "Transfer active"},
    {RC_TRANSFER_INSUFFICIENT_RESOURCES, "Transfer insufficient resources"},
    {RC_TRANSFER_INSUFFICIENT_DATA, "Transfer insufficient data"},
    {RC_TRANSFER_UNEXPECTED_DATA, "The data returned in the transfer has an unexpected value"},
    {RC_TRANSFER_FAILED, "Transfer failed"},
    {RC_TRANSFER_UNEXPECTED_STATUS, "A transfer did not respond with the expected status"},
    {RC_WAIT_ABANDONED, "System wait abandoned"},
    {RC_WAIT_TIMEOUT, "System wait timeout"},
    {RC_WAIT_ERROR, "System wait error"},
    {RC_HANDSHAKE_1_FAILED, "Handshake 1 failed"},
    {RC_HANDSHAKE_2_FAILED, "Handshake 2 failed"},
    {RC_HANDSHAKE_3_FAILED, "Handshake 3 failed"},
    {RC_HANDSHAKE_3_FAILED_AGAIN, "Handshake 3 failed"},
    {RC_NO_SLOT, "Error getting a new Slot from Host Controller"},
    {RC_INPUT_CONTEXT_ERROR,
     "Error allocating or initializing the Input Context for the Host controller"},
    {RC_DEFAULT_ENDPOINT_ERROR, "Error setting up Default Endpoint 0"},
    {RC_SET_ADDRESS_ERROR,
     "Error Setting the address for the device via the xHCI Host Controller SetAddress Command"},
    {RC_PORT_STATUS_ERROR, "Error trying to get the port status"},
    {RC_PORT_NOT_CONNECTED, "Port Status did not report a connected device"},
    {RC_MEMORY_ALLOCATION_ERROR, "Memory allocation error"},
    {RC_HOST_INITIALIZATION_FAILED, "Host Initialization failed"},
    {RC_PORT_FUNCTION_FAILED, "A Port function failed"},
    {RC_DEVICE_NOT_FOUND,
     "A device was not found.  Check that device is plugged into correct port"},
    {RC_EVALUATE_CONTEXT_ERROR,
     "Error performing \"Evaluate Context\" to change device parameters"},
    {RC_GET_HUB_DESCRIPTOR_ERROR, "Error getting hub descriptor during enumeration"},
    {RC_GET_DEVICE_DESCRIPTOR_ERROR, "Error getting device descriptor during enumeration"},
    {RC_DEVICE_NOTIFICATION_ERROR, "Error checking dev notification during enumeration"},
    {RC_LINK_HELPER_FAILURE, "Link helper failure"},
    {RC_ENUMERATION_FAILURE, "Enumeration failure"},
    {RC_NULL_POINTER, "Internal error: NULL pointer"},
    {RC_OUT_OF_RANGE, "Internal error: value out of range"},
    {RC_UNEXPECTED_DYNAMIC_TYPE, "Internal error: the pointer has an unexpected dynamic type"},
    {RC_NO_DOWNSTREAM_PORT, "No downstream port"},
    {RC_NO_DOWNSTREAM_DEVICE, "No downstream device"},
    {RC_NO_UPSTREAM_PORT, "No upstream port"},
    {RC_USB_QUERY_FAILURE, "USB query failure"},
    {RC_PROCEDURE_TIMEOUT, "Procedure timeout"},
    {RC_PROCEDURE_ABORTED, "Procedure aborted by user"},
    {RC_INCOMPLETE_PROCEDURE, "Incomplete procedure"},
    {RC_BAD_PARAMETER, "Bad parameter"},
    {RC_BAD_PORT_STATUS, "Bad port status"},
    {RC_USB_INCONSISTENCY, "USB inconsistency"},
    {RC_COMPLIANCE_DRIVER_ERROR, "Compliance driver error"},
    {RC_INCORRECT_DRIVER_VERSION, "Incorrect driver version"},
};

// The codes lie close together inside a group, so each group is a short row of texts.
constexpr std::uint32_t kGroupShift = 12;
constexpr std::uint32_t kGroups = 9;
constexpr std::uint32_t kCodesPerGroup = 0x17;
constexpr std::uint32_t kIndexMask = (1u << kGroupShift) - 1;

using TextTable = std::array<std::array<char const*, kCodesPerGroup>, kGroups>;

constexpr TextTable kTextTable = [] {
  TextTable table{};
  for (StatusText const& failure : kFailures) {
    std::uint32_t const key = failure.code & 0x00FFFFFFu;
    table.at(key >> kGroupShift).at(key & kIndexMask) = failure.text;
  }
  return table;
}();

char const* FailureText(RETURN_CODE code) {
  // Bits 24 to 30 carry flags of other layers; they never change what a failure is called.
  std::uint32_t const key = code & 0x00FFFFFFu;
  std::uint32_t const group = key >> kGroupShift;
  std::uint32_t const index = key & kIndexMask;
  return group < kGroups && index < kCodesPerGroup ? kTextTable[group][index] : nullptr;
}

}  // namespace

char const* GetStatusDetail(RETURN_CODE code, char const* defaultText) {
  if (!usb_support::Failed(code)) {
    return (code & RC_SUCCESS_WITH_WARNING) != 0 ? "Success (with warning)" : "Success";
  }
  if (char const* const text = FailureText(code)) {
    return text;
  }
  if (defaultText != nullptr && *defaultText != '\0') {
    return defaultText;
  }
  usb_support::LogFormatted(CAppState::Log(), TEST_STATUS_PLAIN, DefaultErrorFormat(),
                            "No status text discovered for status: 0x%08X", code);
  return "";
}

bool PrintErrorDetail(RETURN_CODE code, TEST_STATUS status) {
  char const* const text = GetStatusDetail(code, nullptr);
  usb_support::LogFormatted(CAppState::Log(), status, "%s.", text);
  FlushOutput(true);
  return true;
}

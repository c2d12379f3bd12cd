#include <usb_support/suite_interfaces/safe_string.h>

CSafeString::CSafeString(char const* text) : CSafeString(basic_sv_wrapper<char>(text)) {
}

CSafeString::CSafeString(basic_sv_wrapper<char> text) : text_(text.view()) {
}

#include <usb_support/suite_interfaces/format_info.h>

CFormatInfo DefaultErrorFormat() {
  // Unlike every default look of the log, so that a line with this look can be recognised.
  return CFormatInfo(TQColor{255, 48, 48, 255}, TEXT_STRENGTH_BOLD);
}

/* Preloaded into lsusb: answers GET_DESCRIPTOR for the BOS with the bytes of the file that $WITNESS_BOS names, and stalls
   every other control request. */
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define LIBUSB_ERROR_PIPE (-9)

struct libusb_device_handle;

int libusb_control_transfer(struct libusb_device_handle* device, uint8_t requestType,
                            uint8_t request, uint16_t value, uint16_t index, unsigned char* data,
                            uint16_t length, unsigned timeout) {
  char const* const name = getenv("WITNESS_BOS");
  (void)device;
  (void)index;
  (void)timeout;
  if (name == NULL || requestType != 0x80 || request != 6 || value != 0x0F00) {
    return LIBUSB_ERROR_PIPE;
  }
  FILE* const file = fopen(name, "rb");
  if (file == NULL) {
    return LIBUSB_ERROR_PIPE;
  }
  int const count = (int)fread(data, 1, length, file);
  fclose(file);
  return count;
}

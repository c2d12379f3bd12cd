// Looks up the names of vendors: look_up_names VENDOR_ID...
#include <cstdio>
#include <cstdlib>
#include <exception>

#include <usb_support/usb_support.h>

namespace {

// True when every name was found.
bool LookUp(int count, char const* const* ids) {
  bool isFound = true;
  for (int i = 0; i < count; ++i) {
    int const vid = static_cast<int>(std::strtol(ids[i], nullptr, 0));
    usb_support::VendorLookup const vendor = usb_support::FindVendorName(vid);
    std::printf("%04Xh: %s\n", vid,
                vendor ? vendor.name.c_str() : usb_support::VendorAnswerText(vendor.answer));
    isFound = isFound && vendor;
  }
  return isFound;
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc < 2) {
    std::fputs("Usage: look_up_names VENDOR_ID...\n", stderr);
    return 2;
  }
  return LookUp(argc - 1, argv + 1) ? 0 : 1;
} catch (std::exception const& error) {
  std::fprintf(stderr, "look_up_names: %s\n", error.what());
  return 2;
}

// The program that the debugger examines: one variable for each view, and every status code with
// its text.
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include <usb_support/usb_support.h>

namespace {

// A status code and its text in the library.
struct StatusRow {
  RETURN_CODE code;
  char const* text;
};

constexpr std::uint32_t kGroups = 10;
constexpr std::uint32_t kCodesOfGroup = 0x18;

std::array<StatusRow, std::size_t{kGroups} * kCodesOfGroup + 6> MakeStatuses() {
  std::array<StatusRow, std::size_t{kGroups} * kCodesOfGroup + 6> rows{};
  std::size_t count = 0;
  for (std::uint32_t const special :
       {0x00000000u, 0x40000000u, 0x20004008u, 0x7FFFFFFFu, 0xC1004008u, 0x80104008u}) {
    rows.at(count++).code = static_cast<RETURN_CODE>(special);
  }
  for (std::uint32_t group = 0; group < kGroups; ++group) {
    for (std::uint32_t code = 0; code < kCodesOfGroup; ++code) {
      rows.at(count++).code = static_cast<RETURN_CODE>(0x80000000u | group << 12 | code);
    }
  }
  for (StatusRow& row : rows) {
    row.text = GetStatusDetail(row.code, "(no text)");
  }
  return rows;
}

int seen = 0;

// Where the debugger stops.
void Stop(void const* first, void const* second) {
  seen += first == second ? 0 : 1;
}

}  // namespace

int main() {
  // A device, a configuration with an interface and its endpoint, a descriptor of a type that has
  // no name.
  unsigned char bytes[] = {0x12, 0x01, 0x00, 0x02, 0x00, 0x00, 0x00, 0x40, 0x09, 0x12, 0x03, 0x00,
                           0x00, 0x01, 0x01, 0x02, 0x03, 0x01, 0x09, 0x02, 0x1C, 0x00, 0x01, 0x01,
                           0x00, 0x80, 0x32, 0x09, 0x04, 0x00, 0x00, 0x01, 0xFF, 0x00, 0x00, 0x00,
                           0x07, 0x05, 0x81, 0x03, 0x08, 0x00, 0x0A, 0x03, 0x77, 0x00};
  unsigned char bosBytes[] = {0x05, 0x0F, 0x0C, 0x00, 0x01, 0x07,
                              0x10, 0x02, 0x02, 0x00, 0x00, 0x00};
  unsigned char zeroBytes[] = {0x02, 0x03, 0x00, 0x05, 0x01};
  unsigned char longBytes[] = {0x02, 0x03, 0x07, 0x05, 0x81};
  unsigned char singleByte[] = {0x01};
  static unsigned char manyBytes[2500];
  for (unsigned char& byte : manyBytes) {
    byte = 1;
  }
  auto* const nowhere = std::bit_cast<void*>(std::uintptr_t{16});

  [[maybe_unused]] CDescriptorRange whole(bytes, sizeof bytes);
  [[maybe_unused]] CDescriptorRange empty;
  [[maybe_unused]] CDescriptorRange zeroLength(zeroBytes, sizeof zeroBytes);
  [[maybe_unused]] CDescriptorRange pastTheEnd(longBytes, sizeof longBytes);
  [[maybe_unused]] CDescriptorRange single(singleByte, sizeof singleByte);
  [[maybe_unused]] CDescriptorRange many(manyBytes, sizeof manyBytes);
  [[maybe_unused]] CDescriptorRange unreadable(nowhere, 20);
  [[maybe_unused]] auto* const nowhereRange = static_cast<CDescriptorRange*>(nowhere);
  [[maybe_unused]] CDescriptorRangeIterator begin = whole.begin();
  [[maybe_unused]] CDescriptorRangeIterator third = whole.begin() + 2;
  [[maybe_unused]] CDescriptorRangeIterator end = whole.end();
  [[maybe_unused]] CDescriptorRangeIterator onSingle = single.begin();
  [[maybe_unused]] CDescriptorRangeIterator onNothing(
      static_cast<TQ_USB_COMMON_DESCRIPTOR*>(nowhere), 20);
  CConfigDescriptorSet configuration(0);
  configuration.SetDescriptor(bytes + 18, 28);
  CBOSDescriptorSet bos;
  bos.SetDescriptor(bosBytes, sizeof bosBytes);
  [[maybe_unused]] RETURN_CODE success = RC_SUCCESS;
  [[maybe_unused]] RETURN_CODE stall = RC_STALL_ERROR;
  [[maybe_unused]] auto noText = static_cast<RETURN_CODE>(0x80000123u);
  auto const statuses = MakeStatuses();
  Stop(&whole, statuses.data());
  return seen == 1 ? 0 : 1;
}

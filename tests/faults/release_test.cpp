// Destroyed objects are freed, and existing ones take no byte more than they need: checked without
// a leak checker.
#include <gtest/gtest.h>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

#include <cstddef>
#include <cstdlib>

#include <tests/support/allocation_counter.h>
#include <tests/support/exact_bytes.h>
#include <tests/support/failing_allocator.h>
#include <tests/support/suite_test.h>
#include <usb_support/descriptor_sets/bos_descriptor_set.h>
#include <usb_support/descriptor_sets/config_descriptor_set.h>
#include <usb_support/events/driver_event.h>

namespace usb_support {
namespace {

using testing_support::AllocatedBlock;
using testing_support::Bytes;
using testing_support::ExactBytes;
using testing_support::LastAllocation;
using testing_support::OutstandingAllocations;

class Release : public testing_support::SuiteTest {};

// Blocks that are left by the second run; the first also makes permanent allocations.
template <typename Action>
std::size_t BlocksLeftBy(Action const& action) {
  action();
  std::size_t const before = OutstandingAllocations();
  action();
  return OutstandingAllocations() - before;
}

TEST_F(Release, OfTheHelperFreesIt) {
  std::size_t meanwhile = 0;
  EXPECT_EQ(BlocksLeftBy([&meanwhile] {
              std::size_t const before = OutstandingAllocations();
              InitUsbHelper(nullptr);
              meanwhile = OutstandingAllocations() - before;
              CAppState::Helper(nullptr);
            }),
            0u);
  EXPECT_GE(meanwhile, 1u);
}

TEST_F(Release, OfTheDebugCapabilitiesFreesThem) {
  EXPECT_EQ(BlocksLeftBy([] {
              CUSBDebugCapabilities::SetupUsbDebugCapabilities();
              CUSBDebugCapabilities::CleanupUsbDebugCapabilities();
            }),
            0u);
  EXPECT_EQ(BlocksLeftBy([] { CUSBDebugCapabilitiesJanitor const janitor(true); }), 0u);
}

#if defined(__GLIBC__) && !defined(USB_SUPPORT_TEST_ADDRESS_SANITIZER)

std::size_t BytesInUse() {
  struct mallinfo2 const heap = mallinfo2();
  return heap.uordblks + heap.hblkhd;
}

// The driver puts both blocks there with malloc.
TEST_F(Release, OfADriverEventFreesBothBlocks) {
  constexpr std::size_t kSize = 4u << 20;
  std::size_t const before = BytesInUse();
  {
    COsSpecificDriverEvent event(TQE_EVENT_TYPE_DEFAULT);
    event.m_Buffer = std::malloc(kSize);
    event.m_SecondBlock = std::malloc(kSize);
    EXPECT_GE(BytesInUse(), before + 2 * kSize);
  }
  EXPECT_LT(BytesInUse(), before + kSize);
}

#endif

// The block ends with the last byte of the set.
template <typename Set>
void ExpectExactBlocks() {
  for (std::size_t const length : {1u, 2u, 5u, 7u, 8u, 9u, 18u, 255u, 4096u, 65535u}) {
    ExactBytes const source(Bytes(length, 0x01));
    Set set;
    auto const expectNothingAfter = [&set, length] {
      AllocatedBlock const block = LastAllocation();
      EXPECT_EQ(set.Length(), length);
      EXPECT_EQ(static_cast<unsigned char const*>(block.start) + block.size,
                set.Bytes() + set.Length())
          << length;
    };
    set.SetDescriptor(source.data(), static_cast<unsigned short>(length));
    expectNothingAfter();
    set.Reset();
    set.Reset(source.data(), static_cast<unsigned short>(length));
    expectNothingAfter();
    Set const copy(set);
    EXPECT_EQ(static_cast<unsigned char const*>(LastAllocation().start) + LastAllocation().size,
              copy.Bytes() + copy.Length());
  }
}

TEST_F(Release, SetsHoldNoByteMore) {
  ExpectExactBlocks<CBOSDescriptorSet>();
  ExpectExactBlocks<CConfigDescriptorSet>();
}

}  // namespace
}  // namespace usb_support

// What a wait on several events allocates.
#include <tests/support/allocation_counter.h>

#if defined(USB_SUPPORT_TEST_COUNTS_ALLOCATIONS)

#include <cstddef>
#include <vector>

#include <gtest/gtest.h>

#include <usb_support/events/driver_event.h>

namespace usb_support {
namespace {

using testing_support::AllocationsOf;

TEST(MultipleWaitAllocations, AreOneForEachListOfTheEvents) {
  COsSpecificDriverEvent records[5];
  CDriverEvent events[5];
  std::vector<COsSpecificDriverEvent*> recordList;
  std::vector<CDriverEvent*> eventList;
  for (std::size_t i = 0; i < 5; ++i) {
    records[i].Initialize(TQE_EVENT_TYPE_DEFAULT);
    events[i].Initialize(TQE_EVENT_TYPE_DEFAULT);
    recordList.push_back(&records[i]);
    eventList.push_back(&events[i]);
  }
  // The wait itself allocates nothing, not even when the thread has to sleep.
  for (unsigned const timeout : {0u, 1u}) {
    EXPECT_EQ(AllocationsOf([&] {
                EXPECT_EQ(COsSpecificDriverEvent::WaitOnMultipleEvents(recordList, timeout,
                                                                       WAIT_FOR_ANY_EVENT),
                          RC_WAIT_TIMEOUT);
              }),
              1u);
    EXPECT_EQ(AllocationsOf([&] { EXPECT_EQ(records[0].WaitOnEvent(timeout), RC_WAIT_TIMEOUT); }),
              0u);
  }
  EXPECT_EQ(AllocationsOf([&] {
              EXPECT_EQ(CDriverEvent::WaitOnMultipleEvents(eventList, 0, WAIT_FOR_ANY_EVENT),
                        RC_WAIT_TIMEOUT);
            }),
            2u);
}

}  // namespace
}  // namespace usb_support

#endif

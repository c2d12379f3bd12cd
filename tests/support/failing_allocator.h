// An operator new that a test lets fail, and a count of what has been allocated and not yet freed.
// It replaces the global one, even the sanitizer's, so it must be in a separate program. Not for
// Windows, where a program's operator new does not replace that of its DLLs.
#pragma once

#include <cstddef>
#include <exception>
#include <new>
#include <thread>

#include <gtest/gtest.h>

namespace usb_support::testing_support {

/// Blocks of operator new that exist, of all threads.
std::size_t OutstandingAllocations() noexcept;

/// A block of operator new: its address and the requested size.
struct AllocatedBlock {
  void const* start = nullptr;
  std::size_t size = 0;
};

/// The last block that this thread allocated.
AllocatedBlock LastAllocation() noexcept;

/// Whether memory is available again after the failure.
enum class Shortage : unsigned char { kOnce, kFromThenOn };

/// Lets an allocation of this thread fail: the `failing`th from here, counted from 1, and with
/// kFromThenOn every one after it. One at a time on a thread.
class FailingAllocator {
 public:
  FailingAllocator(std::size_t failing, Shortage shortage) noexcept;
  FailingAllocator(FailingAllocator const&) = delete;
  FailingAllocator& operator=(FailingAllocator const&) = delete;
  ~FailingAllocator();

  /// True when an allocation has failed.
  bool HasFailed() const noexcept;
};

/// Refuses every allocation of more than `most` bytes on this thread. One at a time on a
/// thread.
class SmallBlocksOnly {
 public:
  explicit SmallBlocksOnly(std::size_t most) noexcept;
  SmallBlocksOnly(SmallBlocksOnly const&) = delete;
  SmallBlocksOnly& operator=(SmallBlocksOnly const&) = delete;
  ~SmallBlocksOnly();
};

/// How a run ended.
enum class Ending : unsigned char { kReturned, kOutOfMemory, kOtherException };

/// Runs `action` on a separate thread, so that the library's objects for a thread do not exist
/// before it or after it.
template <typename Action>
Ending RunOnNewThread(Action const& action) {
  auto ending = Ending::kReturned;
  std::thread([&] {
    try {
      action();
    } catch (std::bad_alloc const&) {
      ending = Ending::kOutOfMemory;
    } catch (std::exception const& raised) {
      ending = Ending::kOtherException;
      ADD_FAILURE() << "raised \"" << raised.what() << '"';
    }
  }).join();
  return ending;
}

/// The reaction of an operation to a lack of memory.
enum class Answer : unsigned char { kRaises, kReturns };

/// Lets the first allocation of `run` fail, then the second, and so on until it succeeds with all
/// of them. `prepare` sets the state before; after each failure this expects the answer, no block
/// left over, the state that `expectBefore` expects, success on the next try, and then the result
/// that `expectDone` expects. Returns how many allocations the operation makes.
template <typename Prepare, typename Run, typename ExpectBefore, typename ExpectDone>
std::size_t FailEachAllocation(Prepare const& prepare, Run const& run,
                               ExpectBefore const& expectBefore, ExpectDone const& expectDone,
                               Answer answer = Answer::kRaises) {
  std::size_t most = 0;
  auto const failEach = [&](Shortage shortage, bool isWarm) {
    for (std::size_t failing = 1;; ++failing) {
      SCOPED_TRACE(testing::Message() << "allocation " << failing << " fails"
                                      << (shortage == Shortage::kOnce ? "" : ", and all after it")
                                      << (isWarm ? "" : " (first pass)"));
      prepare();
      std::size_t const before = OutstandingAllocations();
      bool hasFailed = false;
      Ending const ending = RunOnNewThread([&] {
        FailingAllocator const allocator(failing, shortage);
        try {
          run();
        } catch (...) {
          hasFailed = allocator.HasFailed();
          throw;
        }
        hasFailed = allocator.HasFailed();
      });
      if (!hasFailed) {
        EXPECT_EQ(ending, Ending::kReturned);
        expectDone();
        most = failing - 1 > most ? failing - 1 : most;
        return;
      }
      EXPECT_EQ(ending, answer == Answer::kRaises ? Ending::kOutOfMemory : Ending::kReturned);
      if (isWarm) {
        EXPECT_EQ(OutstandingAllocations(), before);
      }
      expectBefore();
      EXPECT_EQ(RunOnNewThread(run), Ending::kReturned);
      expectDone();
      if (testing::Test::HasFailure()) {
        return;
      }
    }
  };
  // The first pass also fails permanent allocations of the program.
  failEach(Shortage::kOnce, false);
  failEach(Shortage::kOnce, true);
  failEach(Shortage::kFromThenOn, true);
  return most;
}

}  // namespace usb_support::testing_support

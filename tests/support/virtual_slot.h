// The slot of a virtual operation in its class's table, for classes whose order matters.
#pragma once

#if !defined(_MSC_VER) && defined(__x86_64__)

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <gtest/gtest.h>

namespace usb_support::testing_support {

/// The slot of a virtual operation, as the Itanium C++ ABI (2.3) writes it into a pointer to
/// member: 1 plus the offset in the table. The destructor has the slots 0 and 1.
template <typename Member>
std::size_t SlotOf(Member member) {
  std::uintptr_t words[2];
  static_assert(sizeof(member) == sizeof(words));
  std::memcpy(words, &member, sizeof(words));
  EXPECT_EQ(words[0] % sizeof(void*), 1u) << "not virtual";
  EXPECT_EQ(words[1], 0u) << "in another base";
  return (words[0] - 1) / sizeof(void*);
}

}  // namespace usb_support::testing_support

#endif

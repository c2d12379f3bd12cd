// A holder for the state of a library that must stay usable while the process ends: destructors of
// other libraries may still log, sleep or read settings then. The value is built as usual and never
// destroyed; the system reclaims its memory.
#pragma once

namespace usb_support::standalone {

/// Holds a T without ever running its destructor.
template <typename T>
union NeverDestroyed {
  constexpr NeverDestroyed() : value() {}
  NeverDestroyed(NeverDestroyed const&) = delete;
  NeverDestroyed& operator=(NeverDestroyed const&) = delete;
  ~NeverDestroyed() {}  // NOLINT(modernize-use-equals-default): a default one would be deleted

  T value;
};

}  // namespace usb_support::standalone

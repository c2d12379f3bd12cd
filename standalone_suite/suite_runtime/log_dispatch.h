// The way of a call from the logger to the sinks. Internal to the library.
#pragma once

#include <standalone_suite/suite_runtime/log.h>

namespace usb_support::standalone {

/// Hands a call to every sink; throws what the first failing sink threw, after the last sink.
void HandToSinks(LogCall const& call);

}  // namespace usb_support::standalone

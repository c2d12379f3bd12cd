// Passes calls from the logger to the sinks. Internal to the library.
#pragma once

#include <standalone_suite/suite_runtime/log.h>

namespace usb_support::standalone {

/// Passes a call to every sink; after the last sink throws what the first failing sink threw.
void HandToSinks(LogCall const& call);

}  // namespace usb_support::standalone

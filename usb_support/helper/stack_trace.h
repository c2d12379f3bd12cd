// The call stack of the calling thread, for diagnostics. Not installed.
#pragma once

#include <string>
#include <vector>

namespace usb_support {

struct StackFrame {
  std::string description;  ///< function name, or the address when the name is not known
  std::string sourceFile;   ///< empty where not known
  unsigned int sourceLine;  ///< 0 where not known
};

/// The frames from the caller outwards; empty where the build has no stack-trace library.
std::vector<StackFrame> CurrentStack();

}  // namespace usb_support

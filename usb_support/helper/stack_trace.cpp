#include <usb_support/helper/stack_trace.h>

#if defined(USB_SUPPORT_BOOST_STACKTRACE)
#include <boost/stacktrace.hpp>
#elif __has_include(<stacktrace>)
#include <stacktrace>
#endif

namespace usb_support {

std::vector<StackFrame> CurrentStack() {
  std::vector<StackFrame> frames;
#if defined(USB_SUPPORT_BOOST_STACKTRACE)
  for (boost::stacktrace::frame const& frame : boost::stacktrace::stacktrace()) {
    std::string name = frame.name();
    frames.push_back({name.empty() ? boost::stacktrace::to_string(frame) : std::move(name),
                      frame.source_file(), static_cast<unsigned int>(frame.source_line())});
  }
#elif defined(__cpp_lib_stacktrace)
  for (std::stacktrace_entry const& frame : std::stacktrace::current()) {
    frames.push_back(
        {frame.description(), frame.source_file(), static_cast<unsigned int>(frame.source_line())});
  }
#endif
  return frames;
}

}  // namespace usb_support

#include <usb_support/helper/stack_trace.h>

#include <utility>

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
    // A frame holds the return address, which may already belong to the next line or function.
    boost::stacktrace::frame const call(static_cast<char const*>(frame.address()) - 1);
    std::string name = call.name();
    frames.push_back({name.empty() ? boost::stacktrace::to_string(frame) : std::move(name),
                      call.source_file(), static_cast<unsigned int>(call.source_line())});
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

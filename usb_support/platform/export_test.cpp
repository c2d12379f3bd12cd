// Exceptions that cross the boundary of the shared libraries: an exception that one of them throws
// is caught in the program as its own class and as each of that class's bases.
#include <usb_support/platform/export.h>

#include <cstddef>
#include <exception>
#include <filesystem>
#include <functional>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <system_error>
#include <typeinfo>
#include <vector>

#include <gmock/gmock.h>

#include <tests/support/exact_bytes.h>
#include <tests/support/vendor_list_test.h>
#include <usb_support/descriptor_sets/bos_descriptor_set.h>
#include <usb_support/descriptor_sets/function_selector.h>
#include <usb_support/events/driver_event.h>
#include <usb_support/text/formatting.h>

namespace usb_support {
namespace {

using testing_support::ExactBytes;

// Runs `raise`; true when what it throws is caught as `Caught`, the first handler that is asked.
template <typename Caught>
bool IsCaughtAs(std::function<void()> const& raise) {
  try {
    raise();
  } catch (Caught const& raised) {
    return dynamic_cast<Caught const*>(&raised) == &raised && *raised.what() != '\0';
  } catch (...) {
    return false;
  }
  ADD_FAILURE() << "nothing raised";
  return false;
}

template <typename Exact>
bool IsExactly(std::function<void()> const& raise) {
  try {
    raise();
  } catch (std::exception const& raised) {
    return typeid(raised) == typeid(Exact);
  }
  return false;
}

struct Handler {
  char const* name;
  bool (*catches)(std::function<void()> const& raise);
};

constexpr Handler kHandlers[] = {
    {"TQRunTimeException", IsCaughtAs<TQRunTimeException>},
    {"TQException", IsCaughtAs<TQException>},
    {"std::runtime_error", IsCaughtAs<std::runtime_error>},
    {"std::system_error", IsCaughtAs<std::system_error>},
    {"std::filesystem::filesystem_error", IsCaughtAs<std::filesystem::filesystem_error>},
    {"std::logic_error", IsCaughtAs<std::logic_error>},
    {"std::length_error", IsCaughtAs<std::length_error>},
    {"std::bad_alloc", IsCaughtAs<std::bad_alloc>},
    {"std::bad_function_call", IsCaughtAs<std::bad_function_call>},
    {"std::exception", IsCaughtAs<std::exception>},
};

struct Row {
  char const* what;
  std::function<void()> raise;
  bool (*isExactly)(std::function<void()> const& raise);
  std::vector<std::string> classes;
};

using Exceptions = testing_support::VendorListTest;

TEST_F(Exceptions, AreCaughtAsEachOfTheirClasses) {
  ExactBytes const zeroLength({0x00, 0x02});
  ExactBytes const hub({0x05, 0x0F, 0x05, 0x00, 0x00});
  CBOSDescriptorSet bos;
  bos.SetDescriptor(hub.data(), 5);
  COsSpecificDriverEvent event;
  std::vector<std::string> const runTime = {"TQRunTimeException", "TQException",
                                            "std::runtime_error", "std::exception"};
  std::vector<std::string> const badCall = {"std::bad_function_call", "std::exception"};
  Row const rows[] = {
      {"a step from a zero length", [&] { static_cast<void>(zeroLength.Range()[1]); },
       IsExactly<TQRunTimeException>, runTime},
      {"a step past the end", [&] { static_cast<void>(CDescriptorRange()[1]); },
       IsExactly<TQRunTimeException>, runTime},
      {"a function without a head",
       [&] {
         function_head head;
         ExactBytes const interface({0x09, 0x04, 0x00, 0x00, 0x00, 0x08, 0x06, 0x50, 0x00});
         end_function const finder(&head);
         finder(interface.At(0), interface.At(9));
       },
       IsExactly<TQRunTimeException>, runTime},
      {"no helper", [] { static_cast<void>(UsbHelper()); }, IsExactly<TQRunTimeException>, runTime},
      {"a dump without a helper", [&] { static_cast<void>(hub.Range().OutputString(false)); },
       IsExactly<TQRunTimeException>, runTime},
      {"no test services", [] { CUsbHelper(nullptr).ValidatePointers(true, TEST_STATUS_FAILURE); },
       IsExactly<TQRunTimeException>, runTime},
      {"no debug capabilities", [] { static_cast<void>(GetUsbDebugCaps()); },
       IsExactly<TQRunTimeException>, runTime},
      {"a message", [] { RaiseMessage(TEST_STATUS_FAILURE, "message"); },
       IsExactly<TQRunTimeException>, runTime},
      {"a formatted message", [] { Raise(TEST_STATUS_FAILURE, "%u", 1u); },
       IsExactly<TQRunTimeException>, runTime},
      {"a helper that the suite does not have", [] { static_cast<void>(CAppState::Helper()); },
       IsExactly<TQRunTimeException>, runTime},
      {"too long a range",
       [] {
         ExactBytes const bytes(testing_support::Bytes(0x10000));
         static_cast<void>(RangeOver({bytes.data(), bytes.size()}));
       },
       IsExactly<std::length_error>,
       {"std::length_error", "std::logic_error", "std::exception"}},
      {"an accessor of a BOS", [&] { static_cast<void>(bos.GetContainer()); },
       IsExactly<std::bad_function_call>, badCall},
      {"an empty finder", [&] { static_cast<void>(hub.Range().GetSubRanges(RangeFinder(), {})); },
       IsExactly<std::bad_function_call>, badCall},
      {"an empty decoder", [&] { event.GetStatus({}, false); }, IsExactly<std::bad_function_call>,
       badCall},
      {"an indentation as wide as the memory",
       [] {
         CSimpleBuffer out;
         Format(out, Indentation{' ', std::numeric_limits<std::size_t>::max() / 2 + 1}, "%s", "");
       },
       IsExactly<std::bad_alloc>,
       {"std::bad_alloc", "std::exception"}},
      {"a vendor list that cannot be moved",
       [this] {
         SaveListInCurrentDirectory("[]");
         standalone::SetVendorListFolder(Folder() + "/none");
         testing_support::Look(4660);
       },
       IsExactly<std::filesystem::filesystem_error>,
       {"std::filesystem::filesystem_error", "std::system_error", "std::runtime_error",
        "std::exception"}},
  };
  for (Row const& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_TRUE(row.isExactly(row.raise));
    std::vector<std::string> classes;
    for (Handler const& handler : kHandlers) {
      if (handler.catches(row.raise)) {
        classes.emplace_back(handler.name);
      }
    }
    EXPECT_THAT(classes, testing::UnorderedElementsAreArray(row.classes));
  }
}

}  // namespace
}  // namespace usb_support

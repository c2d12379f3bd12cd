// Findings that are accepted for a product: a file with a line for each,
//
//   # the display needs a longer report
//   hid.desc.country configuration[0]+18 the keyboard has keys of two countries
//
// the id of a rule, the place as check shows it, and why it is accepted. Empty lines and lines that
// begin with # are ignored.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace usb_support::usbdesc {

struct AcceptedFinding {
  std::string rule;
  std::string place;
  std::string reason;
  std::size_t line = 0;
  bool hasOccurred = false;
};

class AcceptedFindings {
 public:
  AcceptedFindings() = default;

  /// Reads a file. Throws std::runtime_error with the file and the line of the fault.
  static AcceptedFindings Read(std::string const& file);

  /// The reason, or null; remembers that the finding has occurred.
  std::string const* Find(std::string_view rule, std::string_view place);

  /// "accept.txt:3: usb2.config.string at configuration[0]+0 does not occur", for each.
  std::vector<std::string> NotOccurred() const;

 private:
  void ReadLine(std::string_view line, std::size_t number);

  std::string file_;
  std::vector<AcceptedFinding> all_;
};

}  // namespace usb_support::usbdesc

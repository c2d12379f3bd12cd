#include <tools/usbdesc/accepted.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include <standalone_suite/suite_runtime/showable.h>
#include <tools/usbdesc/platform.h>
#include <usb_rules/catalogue.h>

namespace usb_support::usbdesc {
namespace {

bool IsWhiteSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsWhiteSpace(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && IsWhiteSpace(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

std::string_view TakeWord(std::string_view& text) {
  auto const size =
      static_cast<std::size_t>(std::find_if(text.begin(), text.end(), IsWhiteSpace) - text.begin());
  std::string_view const word = text.substr(0, size);
  text = Trimmed(text.substr(size));
  return word;
}

// A place in the form of "configuration[0]+27", with any names.
bool IsPlace(std::string_view place) {
  std::size_t const mark = place.rfind('+');
  return mark != std::string_view::npos && mark != 0 && mark + 1 < place.size() &&
         std::all_of(place.begin() + static_cast<std::ptrdiff_t>(mark) + 1, place.end(),
                     [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

AcceptedFindings AcceptedFindings::Read(std::string const& file) {
  AcceptedFindings accepted;
  accepted.file_ = file;
  errno = 0;
  std::ifstream stream(PathOf(file), std::ios::binary);
  if (!stream) {
    throw std::runtime_error(
        file + ": cannot be opened: " + std::generic_category().message(errno != 0 ? errno : EIO));
  }
  std::string line;
  for (std::size_t number = 1; std::getline(stream, line); ++number) {
    try {
      accepted.ReadLine(Trimmed(line), number);
    } catch (std::runtime_error const& error) {
      throw std::runtime_error(file + ":" + std::to_string(number) + ": " + error.what());
    }
  }
  if (stream.bad()) {
    throw std::runtime_error(file + ": cannot be read");
  }
  return accepted;
}

void AcceptedFindings::ReadLine(std::string_view line, std::size_t number) {
  if (line.empty() || line.front() == '#') {
    return;
  }
  AcceptedFinding finding;
  finding.rule = TakeWord(line);
  finding.place = TakeWord(line);
  finding.reason = standalone::Showable(line);
  finding.line = number;
  if (usb_rules::FindRule(finding.rule) == nullptr) {
    throw std::runtime_error("'" + finding.rule + "' is not the id of a rule");
  }
  if (!IsPlace(finding.place)) {
    throw std::runtime_error("'" + finding.place + "' is not a place such as configuration[0]+27");
  }
  if (finding.reason.empty()) {
    throw std::runtime_error("the reason is missing");
  }
  for (AcceptedFinding const& other : all_) {
    if (other.rule == finding.rule && other.place == finding.place) {
      throw std::runtime_error("line " + std::to_string(other.line) + " accepts the same");
    }
  }
  all_.push_back(std::move(finding));
}

std::string const* AcceptedFindings::Find(std::string_view rule, std::string_view place) {
  for (AcceptedFinding& finding : all_) {
    if (finding.rule == rule && finding.place == place) {
      finding.hasOccurred = true;
      return &finding.reason;
    }
  }
  return nullptr;
}

std::vector<std::string> AcceptedFindings::NotOccurred() const {
  std::vector<std::string> lines;
  for (AcceptedFinding const& finding : all_) {
    if (!finding.hasOccurred) {
      lines.push_back(file_ + ":" + std::to_string(finding.line) + ": " + finding.rule + " at " +
                      finding.place + " does not occur");
    }
  }
  return lines;
}

}  // namespace usb_support::usbdesc

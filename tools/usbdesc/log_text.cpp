#include <tools/usbdesc/log_text.h>

#include <usb_support/labels/dump_form.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/suite_interfaces/tq_logger.h>
#include <usb_support/text/text_writer.h>

namespace usb_support::usbdesc {
namespace {

Line const* theLine = nullptr;

// Finished text: nothing in it is a format.
void Write(Line const& line, TEST_STATUS status, CFormatInfo const* look) {
  struct Mark {
    explicit Mark(Line const& line) { theLine = &line; }
    ~Mark() { theLine = nullptr; }
  } const mark(line);
  TQLogger& log = CAppState::Log();
  log.IncrStackDepth();
  log.DoWrite(LogTypeOf(TEST_STATUS_PLAIN), log.GetDefaultLogVerbosity(status), look,
              line.Text().c_str());
}

}  // namespace

Line& Line::Add(std::string_view text, Piece piece) {
  if (!text.empty()) {
    text_.append(text);
    spans_.push_back({text_.size(), piece});
  }
  return *this;
}

void Log(Line const& line, TEST_STATUS status) {
  Write(line, status, nullptr);
}

void LogPlain(std::string_view text, TEST_STATUS status) {
  Write(Line(text), status, nullptr);
}

void LogHeading(std::string_view title) {
  Write(Line("\n// " + std::string(title), Piece::kTitle), TEST_STATUS_PLAIN, &kDumpTitleLook);
}

void LogTitle(std::string_view title) {
  LogHeading(std::string(title) + ":");
}

Line const* LineBeingLogged() noexcept {
  return theLine;
}

std::string Counted(std::size_t count, char const* name) {
  return std::to_string(count) + ' ' + name + (count == 1 ? "" : "s");
}

std::string Hex(std::size_t value, int digits) {
  std::string text;
  for (; value != 0 || digits > 0; value >>= 4U, --digits) {
    text.insert(text.begin(), kHexDigits[value & 0xFU]);
  }
  return text;
}

std::string HexText(unsigned value, int digits) {
  return "0x" + Hex(value, digits);
}

std::string OffsetText(std::size_t offset) {
  return "offset " + Hex(offset) + "h";
}

std::string OffsetText(std::size_t start, std::size_t inSet, std::string_view set) {
  std::string text = OffsetText(start + inSet);
  if (start != 0) {
    text.append(" (").append(Hex(inSet)).append("h in the ").append(set).append(")");
  }
  return text;
}

}  // namespace usb_support::usbdesc

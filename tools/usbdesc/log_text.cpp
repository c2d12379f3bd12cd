#include <tools/usbdesc/log_text.h>

#include <algorithm>

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

namespace {

// The beginning of each further line in a text, and the characters left out before it.
struct Cut {
  std::size_t end;
  std::size_t next;
  std::size_t indent;
};

bool BeginsCharacter(char c) noexcept {
  return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
}

// Cuts the line from `begin` to `end`.
void CutLine(std::vector<Cut>& cuts, std::string_view text, std::size_t begin, std::size_t end,
             std::size_t columns) {
  std::size_t const content = std::min(text.find_first_not_of(' ', begin), end);
  std::size_t const indent = std::min(content - begin + 4, columns / 2);
  std::size_t used = 0;
  std::size_t space = 0;  // the last one that the line can be cut at
  for (std::size_t at = begin; at < end; ++at) {
    used += BeginsCharacter(text[at]) ? 1U : 0U;
    if (used > columns) {
      bool const isSpace = text[at] == ' ';
      std::size_t const cut = isSpace || space == 0 ? at : space;
      std::size_t const next = isSpace || space != 0 ? cut + 1 : at;
      cuts.push_back({cut, next, indent});
      used = indent;
      at = next - 1;
      space = 0;
    } else if (text[at] == ' ' && at > content) {
      space = at;
    }
  }
}

}  // namespace

Line Wrapped(Line const& line, std::size_t columns) {
  constexpr std::size_t kLeast = 20;
  std::string_view const text = line.Text();
  std::vector<Cut> cuts;
  for (std::size_t begin = 0; columns >= kLeast && begin < text.size();) {
    std::size_t const end = std::min(text.find('\n', begin), text.size());
    CutLine(cuts, text, begin, end, columns);
    begin = end + 1;
  }
  if (cuts.empty()) {
    return line;
  }
  Line wrapped;
  std::size_t at = 0;
  auto cut = cuts.begin();
  for (Line::Span const& span : line.Spans()) {
    for (; cut != cuts.end() && cut->end < span.end; ++cut) {
      wrapped.Add(text.substr(at, cut->end - std::min(cut->end, at)), span.piece);
      std::string lineEnd(cut->indent + 1, ' ');
      lineEnd.front() = '\n';
      wrapped.Add(lineEnd);
      at = cut->next;
    }
    if (at < span.end) {
      wrapped.Add(text.substr(at, span.end - at), span.piece);
      at = span.end;
    }
  }
  return wrapped;
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

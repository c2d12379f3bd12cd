#include <usb_devices/listing_writer.h>

#include <algorithm>

#include <usb_devices/characters.h>

namespace usb_devices {
namespace {

// The offset of a line in four columns, wider beyond 64 KiB.
std::string Columns(std::size_t offset) {
  std::string const digits = Hexadecimal(offset);
  return std::string(4 - std::min<std::size_t>(4, digits.size()), ' ') + digits;
}

// A line for each descriptor; the bytes after the chain of lengths ends are a line of their own.
std::string Lines(ByteSpan bytes, bool asCode) {
  std::string text;
  ByteCursor at(bytes);
  while (at.Left() != 0) {
    std::size_t const offset = at.Offset();
    bool const isWhole = at.Peek() != 0 && at.Peek() <= at.Left();
    text += asCode ? "/* " + Columns(offset) + "h */  " : Columns(offset) + "h:  ";
    text += isWhole ? "" : "\n";
    bool isFirst = true;
    for (std::uint8_t const byte : at.Take(isWhole ? at.Peek() : at.Left())) {
      text += isFirst ? "" : " ";
      text += (asCode && isWhole ? "0x" : "") + Hexadecimal(byte, 2);
      text += asCode && isWhole ? "," : "";
      isFirst = false;
    }
    text += isWhole ? "\n" : " (incomplete)\n";
  }
  return text;
}

template <typename Titled>
std::string LineOf(Titled const& titled) {
  return "// " + TitleOf(titled) + '\n';
}

std::string Write(Device const& device, bool asCode) {
  std::string text = LineOf(device);
  for (Answer const& answer : device.Answers()) {
    text += LineOf(answer) + Lines(answer.bytes, asCode);
  }
  return text;
}

}  // namespace

std::string TitleOf(Device const& device) {
  return "device " + Harmless(device.Name()) + ", speed " + std::string(NameOf(device.Speed())) +
         ':';
}

std::string TitleOf(Answer const& answer) {
  Request const& request = answer.request;
  std::string line = "request";
  for (unsigned const byte : {unsigned{request.requestType}, unsigned{request.request},
                              unsigned{request.value} & 0xFF, unsigned{request.value} >> 8,
                              unsigned{request.index} & 0xFF, unsigned{request.index} >> 8}) {
    line += ' ' + Hexadecimal(byte, 2);
  }
  line += ", " + NameOf(request) + ':';
  if (answer.outcome != Outcome::kAnswered) {
    line += ' ' + std::string(NameOf(answer.outcome));
    line += answer.note.empty() ? "" : ", " + Harmless(answer.note);
  }
  return line;
}

std::string WriteListing(Device const& device) {
  return Write(device, false);
}

std::string WriteCode(Device const& device) {
  return Write(device, true);
}

std::string WriteOutcomes(Device const& device) {
  std::string lines;
  for (Answer const& answer : device.Answers()) {
    lines += answer.outcome == Outcome::kAnswered ? "" : LineOf(answer);
  }
  bool const isPlain = lines.empty() && device.Speed() == Speed::kUnknown;
  return isPlain ? "" : LineOf(device) + lines;
}

}  // namespace usb_devices

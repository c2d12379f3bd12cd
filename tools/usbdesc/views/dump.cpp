#include <tools/usbdesc/views/dump.h>

#include <algorithm>
#include <span>
#include <string>
#include <vector>

#include <tools/usbdesc/log_text.h>
#include <usb_devices/listing_writer.h>
#include <usb_support/labels/dump_form.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

// Adds the text from `at` up to `end` as one piece.
void AddUpTo(Line& line, std::string_view text, std::size_t& at, std::size_t end,
             Piece piece = Piece::kPlain) {
  line.Add(text.substr(at, end - at), piece);
  at = end;
}

// The library's dump, divided into its pieces by its form.
Line DumpOf(CDescriptorRange const& run, bool asCode) {
  CDescriptorRange::Text const dump = run.OutputString(asCode);
  std::string_view const text = *dump;
  DumpForm const& form = asCode ? kCodeForm : kListingForm;
  std::size_t const prefix = form.beforeOffset.size() + kDumpOffsetWidth + form.afterOffset.size();
  bool const hasTail = !run.Valid();
  std::size_t const tail = hasTail ? text.rfind('\n') : text.size();
  Line line;
  std::size_t at = 0;
  for (Descriptor d(run); d; d = d.Next()) {
    std::size_t const end = d.Next() ? text.find('\n', at) + 1 : tail - (hasTail ? prefix : 0);
    AddUpTo(line, text, at, at + prefix, Piece::kOffset);
    AddUpTo(line, text, at, text.find(form.separator, at) + form.separator.size());
    AddUpTo(line, text, at, end, Piece::kLabel);
  }
  if (hasTail) {
    AddUpTo(line, text, at, tail, Piece::kOffset);
    AddUpTo(line, text, at, text.size() - kIncompleteMark.size());
    AddUpTo(line, text, at, text.size(), Piece::kFault);
  }
  return line;
}

// The library's code form ends with plain hexadecimal digits when a run is cut short; no compiler
// accepts those.
Line CodeOf(CDescriptorRange const& run) {
  RunDiagnosis const diagnosis = DiagnoseRun(run);
  Line line = DumpOf(CDescriptorRange(run.Bytes(), diagnosis.offset), true);
  if (diagnosis.reason != RunEnd::kComplete) {
    std::string const offset = Hex(diagnosis.offset);
    std::string prefix(kCodeForm.beforeOffset);
    prefix.append(kDumpOffsetWidth - offset.size(), ' ').append(offset);
    std::string bytes;
    for (unsigned char const byte :
         std::span(run.Bytes(), run.Length()).subspan(diagnosis.offset)) {
      bytes.append(bytes.empty() ? "" : " ").append(HexText(byte)).append(",");
    }
    line.Add(diagnosis.offset == 0 ? "" : "\n")
        .Add(prefix.append(kCodeForm.afterOffset), Piece::kOffset)
        .Add(bytes + " //")
        .Add(kIncompleteMark, Piece::kFault);
  }
  return line;
}

// Bytes that are not descriptors, sixteen per line.
Line RowsOf(usb_devices::ByteSpan bytes, bool asCode) {
  constexpr std::size_t kRow = 16;
  DumpForm const& form = asCode ? kCodeForm : kListingForm;
  Line line;
  for (std::size_t at = 0; at < bytes.size(); at += kRow) {
    std::string const offset = Hex(at);
    std::string prefix(at == 0 ? "" : "\n");
    prefix.append(form.beforeOffset).append(kDumpOffsetWidth - offset.size(), ' ').append(offset);
    line.Add(prefix.append(form.afterOffset), Piece::kOffset);
    std::string row;
    for (std::uint8_t const byte : bytes.subspan(at, std::min(kRow, bytes.size() - at))) {
      row.append(row.empty() ? "" : " ").append(asCode ? HexText(byte) + ',' : Hex(byte, 2));
    }
    line.Add(row);
  }
  return line;
}

using Ranges = std::vector<CDescriptorRange>;
using TitleOf = std::string (*)(CDescriptorRange const& range, std::string const& place);

// "2 of 3"
std::string Place(std::size_t index, std::size_t count) {
  return std::to_string(index + 1) + " of " + std::to_string(count);
}

// A dump counts its offsets from the start of its range, so the title states that place.
void LogRanges(Part const& part, Ranges const& ranges, std::string const& name, char const* what,
               TitleOf titleOf, bool asCode) {
  if (ranges.empty()) {
    LogHeading(name + ": no " + what);
  }
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    auto const inPart = static_cast<std::size_t>(ranges[i].Bytes() - part.bytes.Bytes());
    LogDump(ranges[i],
            name + ", " + titleOf(ranges[i], Place(i, ranges.size())) + ", from " +
                OffsetText(part.offset + inPart),
            asCode);
  }
}

void LogOfConfigurations(ShownDevice const& device, Ranges (*rangesOf)(Part const&),
                         char const* what, TitleOf titleOf, bool asCode) {
  bool hasConfiguration = false;
  for (Part const& part : device.parts) {
    if (part.IsConfiguration()) {
      hasConfiguration = true;
      LogRanges(part, rangesOf(part), device.name + ", " + part.Name(), what, titleOf, asCode);
    }
  }
  if (!hasConfiguration) {
    LogHeading(device.name + ": no configurations");
  }
}

// The lists of the library's configuration as ranges of the part.
Ranges ListOf(Part const& part, CDescriptorRange::RangeVector (CConfigDescriptorSet::*list)()) {
  CConfigDescriptorSet set;
  Fill(set, part.valid);
  CDescriptorRange::RangeVector const found = (set.*list)();
  Ranges ranges;
  for (CDescriptorRange const& range : *found) {
    ranges.emplace_back(part.valid.Bytes() + (range.Bytes() - set.Bytes()), range.Length());
  }
  return ranges;
}

Ranges InterfacesOf(Part const& configuration) {
  return ListOf(configuration, &CConfigDescriptorSet::GetInterfaceList);
}

}  // namespace

std::vector<CDescriptorRange> FunctionsOf(Part const& configuration) {
  return ListOf(configuration, &CConfigDescriptorSet::GetFunctionList);
}

void LogDump(CDescriptorRange const& run, std::string_view title, bool asCode) {
  LogTitle(title);
  Log(asCode ? CodeOf(run) : DumpOf(run, false));
}

void LogDump(ShownInput const& input, bool asCode) {
  if (input.run) {
    LogDump(RangeOver(*input.run), input.input.name, asCode);
    return;
  }
  LogTitle(input.input.name);
  for (ShownDevice const& device : input.devices) {
    LogHeading(usb_devices::TitleOf(*device.source));
    for (usb_devices::Answer const& answer : device.source->Answers()) {
      LogPlain("// " + usb_devices::TitleOf(answer));
      CDescriptorRange const range = RangeOver(answer.bytes);
      if (!IsChain(answer.request)) {
        Log(RowsOf(answer.bytes, asCode));
      } else if (!range.IsEmpty()) {
        Log(asCode ? CodeOf(range) : DumpOf(range, false));
      }
    }
  }
}

void LogFunctions(ShownDevice const& device, bool asCode) {
  LogOfConfigurations(
      device, FunctionsOf, "functions",
      [](CDescriptorRange const&, std::string const& place) { return "function " + place; },
      asCode);
}

void LogInterfaces(ShownDevice const& device, bool asCode) {
  LogOfConfigurations(
      device, InterfacesOf, "interfaces",
      [](CDescriptorRange const& range, std::string const& place) {
        auto const interface = ReadRecord<TQ_USB_INTERFACE_DESCRIPTOR>(range.begin());
        return "interface " + std::to_string(interface.bInterfaceNumber) + " (" + place + ")";
      },
      asCode);
}

void LogCapabilities(ShownDevice const& device, bool asCode) {
  bool hasBos = false;
  for (Part const& part : device.parts) {
    if (part.IsBos()) {
      hasBos = true;
      Ranges capabilities;
      for (Descriptor const d : Walk(part.valid, kDeviceCapabilityType)) {
        capabilities.push_back(d.Range());
      }
      LogRanges(
          part, capabilities, device.name + ", BOS", "capabilities",
          [](CDescriptorRange const& range, std::string const& place) {
            auto const capability = ReadRecord<TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR>(range.begin());
            return "capability " + place + " (type " + HexText(capability.bDevCapabilityType) + ")";
          },
          asCode);
    }
  }
  if (!hasBos) {
    LogHeading(device.name + ": no BOS");
  }
}

}  // namespace usb_support::usbdesc

#include <tools/usbdesc/views/dump.h>

#include <span>
#include <string>
#include <vector>

#include <tools/usbdesc/log_text.h>
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

// The library's dump with its pieces, found by the form that it is written in.
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

// The library's code form ends with bare hexadecimal digits where a run is cut short; no compiler
// takes those.
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

using Ranges = std::vector<CDescriptorRange>;
using TitleOf = std::string (*)(CDescriptorRange const& range, std::string const& place);

// "2 of 3"
std::string Place(std::size_t index, std::size_t count) {
  return std::to_string(index + 1) + " of " + std::to_string(count);
}

// A dump counts its offsets from the start of its range, so the title says where that is.
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

void LogOfConfigurations(Device const& device, Ranges (*rangesOf)(Part const&), char const* what,
                         TitleOf titleOf, bool asCode) {
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

void LogFunctions(Device const& device, bool asCode) {
  LogOfConfigurations(
      device, FunctionsOf, "functions",
      [](CDescriptorRange const&, std::string const& place) { return "function " + place; },
      asCode);
}

void LogInterfaces(Device const& device, bool asCode) {
  LogOfConfigurations(
      device, InterfacesOf, "interfaces",
      [](CDescriptorRange const& range, std::string const& place) {
        auto const interface = ReadRecord<TQ_USB_INTERFACE_DESCRIPTOR>(range.begin());
        return "interface " + std::to_string(interface.bInterfaceNumber) + " (" + place + ")";
      },
      asCode);
}

void LogCapabilities(Device const& device, bool asCode) {
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

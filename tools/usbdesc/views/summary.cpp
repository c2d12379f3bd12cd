#include <tools/usbdesc/views/summary.h>

#include <cstddef>
#include <optional>
#include <string>

#include <usb_devices/characters.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

// The first of several faults, and the number of the others.
class Faults {
 public:
  void Add(std::string const& text) {
    if (text_.empty()) {
      text_ = text;
    } else {
      ++more_;
    }
  }

  std::string Text() const {
    return more_ == 0 ? text_ : text_ + ", and " + std::to_string(more_) + " more";
  }

 private:
  std::string text_;
  std::size_t more_ = 0;
};

// Counts the contents of an input, and finds its faults.
class Summary {
 public:
  explicit Summary(ShownInput const& input) : input_(input) {
    if (input.run) {
      AddChain(RangeOver(*input.run), "");
    }
    for (ShownDevice const& device : input.devices) {
      if (!input.run) {
        AddAnswers(device);
      }
      AddTotals(device);
    }
  }

  RunSummary Take() const {
    std::string const& form = input_.input.form;
    Line line("// " + form + (form.empty() ? "" : ": "));
    std::size_t const devices = input_.devices.size();
    line.Add(devices > 1 && !input_.run ? Counted(devices, "device") + ", " : "")
        .Add(Counted(descriptors_, "descriptor") + ", " +
             Counted(configurations_, "configuration") + ", " + Counted(interfaces_, "interface"))
        .Add(others_ != 0 ? ", " + Counted(others_, "other answer") : "")
        .Add(", " + Counted(bytes_, "byte"))
        .Add(refused_ != 0 ? ", " + Counted(refused_, "request") + " without an answer" : "")
        .Add(",");
    if (bytes_ == 0) {
      return {line.Add(" nothing to check", Piece::kFault), false};
    }
    std::string const lengths = lengths_.Text();
    std::string const totals = totals_.Text();
    if (lengths.empty()) {
      line.Add(" lengths good");
    } else {
      line.Add(" lengths bad: " + lengths, Piece::kFault);
    }
    if (!totals.empty()) {
      line.Add(",").Add(" wTotalLength wrong: " + totals, Piece::kFault);
    }
    return {line, lengths.empty() && totals.empty()};
  }

 private:
  void AddAnswers(ShownDevice const& device) {
    for (usb_devices::Answer const& answer : device.source->Answers()) {
      refused_ += answer.outcome != usb_devices::Outcome::kAnswered ? 1U : 0U;
      if (IsChain(answer.request)) {
        AddChain(RangeOver(answer.bytes), device.name + ", " + NameOf(answer.request) + ": ");
      } else {
        others_ += answer.outcome == usb_devices::Outcome::kAnswered ? 1U : 0U;
        bytes_ += answer.bytes.size();
      }
    }
  }

  void AddChain(CDescriptorRange const& run, std::string const& place) {
    bytes_ += run.Length();
    for (Descriptor const d : Walk(run)) {
      bool const isFirstSetting =
          d.Is(kInterfaceType) && d.As<TQ_USB_INTERFACE_DESCRIPTOR>().bAlternateSetting == 0;
      ++descriptors_;
      configurations_ += d.Is(kConfigurationType) || d.Is(kOtherSpeedConfigurationType) ? 1U : 0U;
      interfaces_ += isFirstSetting ? 1U : 0U;
    }
    RunDiagnosis const diagnosis = DiagnoseRun(run);
    if (!run.IsEmpty() && diagnosis.reason != RunEnd::kComplete) {
      lengths_.Add(place + RunEndText(diagnosis.reason) + " at " + OffsetText(diagnosis.offset) +
                   ", " + Counted(diagnosis.bytesLeft, "byte") + " left");
    }
  }

  void AddTotals(ShownDevice const& device) {
    for (Part const& part : device.parts) {
      if (std::optional<WrongTotal> const wrong = FindWrongTotal(part)) {
        totals_.Add((input_.run ? "" : device.name + ", ") + std::to_string(wrong->announced) +
                    " announced at " + OffsetText(part.offset) + ", " +
                    std::to_string(wrong->found) + " found");
      }
    }
  }

  ShownInput const& input_;
  std::size_t descriptors_ = 0;
  std::size_t configurations_ = 0;
  std::size_t interfaces_ = 0;
  std::size_t others_ = 0;  // answers that are not descriptors
  std::size_t refused_ = 0;
  std::size_t bytes_ = 0;
  Faults lengths_;
  Faults totals_;
};

}  // namespace

RunSummary Summarise(ShownInput const& input) {
  return Summary(input).Take();
}

std::string InputCounts::Text() const {
  return Counted(All(), "input") + ": " + std::to_string(good) + " good, " +
         std::to_string(broken) + " with failures, " + std::to_string(invalid) + " not valid";
}

}  // namespace usb_support::usbdesc

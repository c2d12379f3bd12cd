#include <tools/usbdesc/views/tree_json.h>

#include <array>

#include <tools/usbdesc/json_writer.h>
#include <usb_fields/summary.h>

namespace usb_support::usbdesc {
namespace {

class TreeWriter {
 public:
  std::string Write(std::string_view name, Outline const& outline) {
    writer_.StartObject();
    writer_.String("name", name);
    writer_.Key("answers");
    writer_.StartArray();
    for (OutlineRun const& run : outline.Runs()) {
      writer_.StartObject();
      writer_.String("name", run.name);
      writer_.String("answer", usb_devices::NameOf(run.answer->outcome));
      Descriptors(outline, run);
      if (!run.breakReason.empty()) {
        writer_.String("end", run.breakReason);
      }
      writer_.EndObject();
    }
    writer_.EndArray();
    writer_.EndObject();
    return writer_.Text();
  }

 private:
  void BeginList() {
    writer_.Key("descriptors");
    writer_.StartArray();
  }
  void EndItem() {
    writer_.EndArray();
    writer_.EndObject();
  }

  // An item stays open until one that is not below it begins.
  void Descriptors(Outline const& outline, OutlineRun const& run) {
    BeginList();
    std::size_t open = 0;
    for (std::size_t i = run.first; i < run.first + run.count; ++i) {
      OutlineItem const& item = outline.Items()[i];
      for (; open > item.level; --open) {
        EndItem();
      }
      writer_.StartObject();
      writer_.String("name", item.name);
      writer_.String("text", TextOf(item));
      writer_.Key("offset");
      writer_.Number(item.offset);
      writer_.Key("length");
      writer_.Number(item.bytes.size());
      BeginList();
      ++open;
    }
    for (; open > 0; --open) {
      EndItem();
    }
    writer_.EndArray();
  }

  static std::string TextOf(OutlineItem const& item) {
    if (item.isHidReport) {
      return DetailOf(item);
    }
    std::array<char, usb_fields::kMostSummary> buffer;
    return std::string(usb_fields::SummaryOf(item.rest, item.context, buffer));
  }

  JsonWriter writer_;
};

}  // namespace

std::string TreeJson(std::string_view name, Outline const& outline) {
  return TreeWriter().Write(name, outline);
}

}  // namespace usb_support::usbdesc

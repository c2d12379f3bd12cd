#include <tools/usbdesc/views/tree_json.h>

#include <array>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <usb_fields/summary.h>

namespace usb_support::usbdesc {
namespace {

class TreeWriter {
 public:
  std::string Write(std::string_view name, Outline const& outline) {
    writer_.StartObject();
    String("name", name);
    Key("answers");
    writer_.StartArray();
    for (OutlineRun const& run : outline.Runs()) {
      writer_.StartObject();
      String("name", run.name);
      String("answer", usb_devices::NameOf(run.answer->outcome));
      Descriptors(outline, run);
      if (!run.breakReason.empty()) {
        String("end", run.breakReason);
      }
      writer_.EndObject();
    }
    writer_.EndArray();
    writer_.EndObject();
    return {buffer_.GetString(), buffer_.GetSize()};
  }

 private:
  void Key(std::string_view key) {
    writer_.Key(key.data(), static_cast<rapidjson::SizeType>(key.size()));
  }
  void String(std::string_view key, std::string_view value) {
    Key(key);
    writer_.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
  }
  void BeginList() {
    Key("descriptors");
    writer_.StartArray();
  }
  void EndItem() {
    writer_.EndArray();
    writer_.EndObject();
  }

  // An item stays open until one that is not under it begins.
  void Descriptors(Outline const& outline, OutlineRun const& run) {
    BeginList();
    std::size_t open = 0;
    for (std::size_t i = run.first; i < run.first + run.count; ++i) {
      OutlineItem const& item = outline.Items()[i];
      for (; open > item.level; --open) {
        EndItem();
      }
      writer_.StartObject();
      String("name", item.name);
      String("text", TextOf(item));
      Key("offset");
      writer_.Uint64(item.offset);
      Key("length");
      writer_.Uint64(item.bytes.size());
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

  rapidjson::StringBuffer buffer_;
  rapidjson::Writer<rapidjson::StringBuffer> writer_{buffer_};
};

}  // namespace

std::string TreeJson(std::string_view name, Outline const& outline) {
  return TreeWriter().Write(name, outline);
}

}  // namespace usb_support::usbdesc

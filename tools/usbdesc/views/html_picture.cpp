#include <tools/usbdesc/views/html_picture.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include <usb_fields/fields.h>

namespace usb_support::usbdesc {
namespace {

using usb_fields::ByteView;

constexpr std::uint8_t kInterface = 0x04;
constexpr std::uint8_t kEndpoint = 0x05;
constexpr std::uint8_t kAssociation = 0x0B;

bool IsPlain(OutlineItem const& item, std::uint8_t type) {
  return item.context.request == usb_fields::Request::kDescriptor && !item.isHidReport &&
         ByteView(item.bytes).At(1) == type;
}

// Writes the boxes one after the other; each ends those that cannot contain it.
class Boxes {
 public:
  explicit Boxes(HtmlWriter& html) : html_(html) {}

  void Add(OutlineItem const& item) {
    ByteView const view(item.bytes);
    if (IsPlain(item, kAssociation)) {
      EndFunction();
      std::array<char, 256> buffer;
      html_.Markup("<section class=fun>");
      html_.Element("h4", "", usb_fields::TripleName(view.At(4), view.At(5), view.At(6), buffer));
      functionEnd_ = view.At(2) + std::size_t{view.At(3)};
      isInFunction_ = true;
    } else if (IsPlain(item, kInterface)) {
      Interface(item, view.At(2), view.At(3));
    } else if (IsPlain(item, kEndpoint) && isInSetting_) {
      Endpoint(item, view.At(2));
    }
  }

  void End() { EndFunction(); }

 private:
  void Interface(OutlineItem const& item, std::uint8_t number, std::uint8_t setting) {
    EndSetting();
    if (!isInInterface_ || number != number_) {
      EndInterface();
      if (isInFunction_ && number >= functionEnd_) {
        EndFunction();
      }
      html_.Markup("<section class=itf>");
      html_.Element("h5", "", "Interface " + std::to_string(number));
      html_.Element("p", "", DetailOf(item));
      isInInterface_ = true;
      number_ = number;
    }
    html_.Markup("<div class=alt><b>Alternate setting ").Number(setting).Markup("</b><ul>");
    isInSetting_ = true;
    endpoints_ = 0;
  }

  void Endpoint(OutlineItem const& item, std::uint8_t address) {
    bool const isIn = (address & 0x80) != 0;
    html_.Markup(isIn ? "<li class=in>" : "<li class=out>");
    html_.Markup("<b>").Text(item.name).Markup("</b> ").Text(DetailOf(item));
    ++endpoints_;
  }

  void EndSetting() {
    if (isInSetting_) {
      html_.Markup(endpoints_ == 0 ? "<li class=no>no endpoints</ul></div>" : "</ul></div>");
      isInSetting_ = false;
    }
  }
  void EndInterface() {
    EndSetting();
    html_.Markup(isInInterface_ ? "</section>" : "");
    isInInterface_ = false;
  }
  void EndFunction() {
    EndInterface();
    html_.Markup(isInFunction_ ? "</section>" : "");
    isInFunction_ = false;
  }

  HtmlWriter& html_;
  bool isInFunction_ = false;
  bool isInInterface_ = false;
  bool isInSetting_ = false;
  std::size_t functionEnd_ = 0;  // the number after that of its last interface
  std::uint8_t number_ = 0;
  std::size_t endpoints_ = 0;
};

// A terminal, a unit or a clock.
struct Entity {
  std::string name;
  std::string detail;
  char const* kind = "unit";
  std::vector<std::uint8_t> sources;
  std::vector<std::uint8_t> clocks;
  std::size_t column = 0;
  std::size_t row = 0;
  bool isThere = false;
  bool isBeingPlaced = false;
  bool isPlaced = false;
};

// The entities of one control interface by their ids.
class Graph {
 public:
  void Add(OutlineItem const& item) {
    Entity entity;
    int id = -1;
    usb_fields::ReadFields(item.bytes, item.context, [&](usb_fields::FieldValue const& field) {
      std::string_view const name = field.field->name;
      auto const value = static_cast<std::uint8_t>(field.value);
      bool const isClock = name == "bClockID";
      bool const isTerminal = name == "bTerminalID";
      if (id < 0 && (isClock || isTerminal || name == "bUnitID")) {
        id = value;
        entity.kind = isClock ? "clock" : isTerminal ? "terminal" : "unit";
      } else if (name == "bSourceID" || name == "baSourceID") {
        entity.sources.push_back(value);
      } else if (name.starts_with("bCSource") || name == "baCSourceID") {
        entity.clocks.push_back(value);
      }
    });
    if (id < 0 || (entity.sources.empty() && entity.clocks.empty() && item.bytes.size() < 4)) {
      return;
    }
    std::size_t const comma = item.name.find(", ");
    entity.name = comma == std::string::npos ? item.name : item.name.substr(comma + 2);
    entity.detail = DetailOf(item);
    entity.isThere = true;
    entities_[static_cast<std::size_t>(id)] = std::move(entity);
  }

  void Write(HtmlWriter& html, std::string const& title) {
    Place();
    if (count_ == 0) {
      return;
    }
    std::size_t const width = columns_ * kColumn - kColumn + kBoxWidth + 2 * kMargin;
    std::size_t const height = rows_ * kRow - kRow + kBoxHeight + 2 * kMargin;
    html.Markup("<figure class=graph><figcaption>").Text(title).Markup("</figcaption>");
    html.Markup("<svg role=img viewBox=\"0 0 ").Number(width).Markup(" ").Number(height);
    html.Markup("\" width=").Number(width).Markup(" height=").Number(height);
    html.Markup("><title>").Text(title).Markup("</title><desc>");
    Describe(html);
    html.Markup("</desc>");
    for (Entity const& to : entities_) {
      Lines(html, to, to.sources, "line");
      Lines(html, to, to.clocks, "tick");
    }
    for (Entity const& entity : entities_) {
      Box(html, entity);
    }
    html.Markup("</svg></figure>\n");
  }

 private:
  static constexpr std::size_t kColumn = 225;
  static constexpr std::size_t kRow = 64;
  static constexpr std::size_t kBoxWidth = 175;
  static constexpr std::size_t kBoxHeight = 44;
  static constexpr std::size_t kMargin = 6;

  // An entity is one column after its last source; sources in a circle count once.
  std::size_t Column(std::size_t id) {
    Entity& entity = entities_[id];
    if (!entity.isThere || entity.isBeingPlaced || entity.isPlaced) {
      return entity.isPlaced ? entity.column + 1 : 0;
    }
    entity.isBeingPlaced = true;
    std::size_t column = 0;
    for (auto const* const list : {&entity.sources, &entity.clocks}) {
      for (std::uint8_t const source : *list) {
        column = std::max(column, Column(source));
      }
    }
    entity.column = column;
    entity.isPlaced = true;
    return column + 1;
  }

  void Place() {
    std::vector<std::size_t> used(entities_.size() + 1);
    for (std::size_t id = 0; id < entities_.size(); ++id) {
      Column(id);
    }
    for (Entity& entity : entities_) {
      if (entity.isThere) {
        ++count_;
        entity.row = used[entity.column]++;
        rows_ = std::max(rows_, entity.row + 1);
        columns_ = std::max(columns_, entity.column + 1);
      }
    }
  }

  // The graph in words.
  void Describe(HtmlWriter& html) const {
    for (Entity const& to : entities_) {
      for (auto const* const list : {&to.sources, &to.clocks}) {
        for (std::uint8_t const source : *list) {
          if (to.isThere && entities_[source].isThere) {
            html.Text(entities_[source].name + " to " + to.name + ". ");
          }
        }
      }
    }
  }

  void Lines(HtmlWriter& html, Entity const& to, std::vector<std::uint8_t> const& sources,
             std::string_view kind) const {
    std::array<bool, 256> isDone{};
    for (std::uint8_t const source : sources) {
      Entity const& from = entities_[source];
      if (!to.isThere || !from.isThere || isDone[source]) {
        continue;
      }
      isDone[source] = true;
      std::size_t const x1 = kMargin + from.column * kColumn + kBoxWidth;
      std::size_t const y1 = kMargin + from.row * kRow + kBoxHeight / 2;
      std::size_t const x2 = kMargin + to.column * kColumn;
      std::size_t const y2 = kMargin + to.row * kRow + kBoxHeight / 2;
      html.Markup("<path class=").Markup(kind).Markup(" d=\"M").Number(x1).Markup(" ").Number(y1);
      html.Markup("C").Number(x1 + 25).Markup(" ").Number(y1).Markup(" ").Number(
          x2 - std::min<std::size_t>(x2, 25));
      html.Markup(" ").Number(y2).Markup(" ").Number(x2).Markup(" ").Number(y2);
      html.Markup("\"/><path class=tip d=\"M").Number(x2).Markup(" ").Number(y2);
      html.Markup("l-7-4v8z\"/>");
    }
  }

  // The start of a text that fits the width of a box.
  static std::string Short(std::string const& text) {
    constexpr std::size_t kMost = 26;
    if (text.size() <= kMost) {
      return text;
    }
    std::size_t end = kMost - 1;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) {
      --end;
    }
    return text.substr(0, end) + "\xE2\x80\xA6";
  }

  static void Box(HtmlWriter& html, Entity const& entity) {
    if (!entity.isThere) {
      return;
    }
    std::size_t const x = kMargin + entity.column * kColumn;
    std::size_t const y = kMargin + entity.row * kRow;
    html.Markup("<g class=").Markup(entity.kind).Markup("><title>").Text(entity.name);
    html.Text(entity.detail.empty() ? "" : ": " + entity.detail).Markup("</title><rect x=");
    html.Number(x).Markup(" y=").Number(y).Markup(" width=").Number(kBoxWidth);
    html.Markup(" height=").Number(kBoxHeight).Markup(" rx=6 />");
    Caption(html, x, y + (entity.detail.empty() ? 27 : 18), "", entity.name);
    if (!entity.detail.empty()) {
      Caption(html, x, y + 35, " class=s", entity.detail);
    }
    html.Markup("</g>");
  }

  static void Caption(HtmlWriter& html, std::size_t x, std::size_t y, std::string_view attributes,
                      std::string const& text) {
    html.Markup("<text").Markup(attributes).Markup(" x=").Number(x + kBoxWidth / 2).Markup(" y=");
    html.Number(y).Markup(">").Text(Short(text)).Markup("</text>");
  }

  std::array<Entity, 256> entities_;
  std::size_t count_ = 0;
  std::size_t columns_ = 1;
  std::size_t rows_ = 1;
};

// The control interface of an audio or video function.
bool IsControl(OutlineItem const& item) {
  ByteView const view(item.bytes);
  return IsPlain(item, kInterface) && (view.At(5) == 0x01 || view.At(5) == 0x0E) &&
         view.At(6) == 0x01;
}

}  // namespace

void AddPicture(HtmlWriter& html, Outline const& outline, OutlineRun const& run) {
  Boxes boxes(html);
  html.Markup("<div class=cfg>");
  for (std::size_t i = run.first; i < run.first + run.count; ++i) {
    boxes.Add(outline.Items()[i]);
  }
  boxes.End();
  html.Markup("</div>\n");
}

void AddGraphs(HtmlWriter& html, Outline const& outline, OutlineRun const& run) {
  std::vector<OutlineItem> const& items = outline.Items();
  std::size_t const end = run.first + run.count;
  for (std::size_t i = run.first; i < end; ++i) {
    if (!IsControl(items[i])) {
      continue;
    }
    Graph graph;
    for (std::size_t j = i + 1; j < end && items[j].level > items[i].level; ++j) {
      if (items[j].parent == i && IsPlain(items[j], 0x24)) {
        graph.Add(items[j]);
      }
    }
    graph.Write(html, "Terminals and units of " + items[i].name);
  }
}

}  // namespace usb_support::usbdesc

#include <tools/usbdesc/views/html.h>

#include <algorithm>
#include <array>
#include <map>
#include <string_view>
#include <utility>

#include <tools/usbdesc/log_text.h>
#include <tools/usbdesc/views/html_assets.h>
#include <tools/usbdesc/views/html_fields.h>
#include <tools/usbdesc/views/html_picture.h>
#include <tools/usbdesc/views/html_writer.h>
#include <usb_fields/fields.h>

namespace usb_support::usbdesc {
namespace {

using usb_devices::Request;
using usb_fields::ByteView;

std::string SummaryOf(OutlineItem const& item) {
  if (item.isHidReport) {
    return item.name + ": " + DetailOf(item);
  }
  std::array<char, usb_fields::kMostSummary> buffer;
  return std::string(usb_fields::SummaryOf(item.rest, item.context, buffer));
}

// The head of a page, up to the first element of its main part.
void Begin(HtmlWriter& html, std::string const& title) {
  html.Markup(
      "<!DOCTYPE html>\n<html lang=en>\n<head>\n<meta charset=utf-8>\n"
      "<meta http-equiv=Content-Security-Policy content=\"default-src 'none'; style-src "
      "'unsafe-inline'; script-src 'unsafe-inline'\">\n"
      "<meta name=viewport content=\"width=device-width\">\n"
      "<meta name=color-scheme content=\"light dark\">\n");
  html.Element("title", "", title).Markup("\n<style>\n").Markup(HtmlStyle());
  html.Markup("</style>\n</head>\n<body>\n<a class=skip href=#main>To the content</a>\n<header>");
  html.Element("h1", "", title).Markup("</header>\n<main id=main>\n");
}

std::string End(HtmlWriter& html) {
  html.Markup("</main>\n<p id=say role=status aria-live=polite></p>\n<script>\n");
  html.Markup(HtmlScript()).Markup("</script>\n</body>\n</html>\n");
  return html.Take();
}

// One device on a page.
class DevicePage {
 public:
  DevicePage(HtmlWriter& html, HtmlLinks& links, std::size_t number, HtmlDevice const& device,
             usb_fields::UsbIds const& names)
      : html_(html),
        links_(links),
        device_(device),
        outline_(*device.outline),
        names_(names),
        texts_(names),
        prefix_("d" + std::to_string(number) + "-") {
    texts_.Use(outline_.Strings());
    for (HtmlFinding const& finding : device.findings) {
      findings_[ItemAt(finding)].push_back(&finding);
    }
  }

  void Add(HtmlContent content, bool isAlone) {
    bool const hasFields = content != HtmlContent::kTree;
    html_.Markup("<section class=device>").Element("h2", "", isAlone ? Title() : device_.name);
    Summary();
    if (content == HtmlContent::kCheck) {
      Findings();
    }
    Pictures();
    html_.Markup("<div class=cols><nav aria-label=\"Tree of descriptors\">");
    html_.Element("h3", "", "Tree");
    Tree(hasFields);
    html_.Markup("</nav>\n");
    if (hasFields) {
      html_.Markup("<div class=all>");
      Descriptors();
      html_.Markup("</div>");
    }
    html_.Markup("</div></section>\n");
  }

  // The summary of the device.
  void Summary() {
    html_.Markup("<dl class=sum>");
    if (OutlineItem const* const device = HeadOf(Request::Descriptor(usb_devices::kDeviceType))) {
      DeviceRows(*device);
    }
    Row("Speed", SpeedText(outline_.Speed()));
    for (OutlineRun const& run : outline_.Runs()) {
      if (IsConfiguration(run)) {
        OutlineItem const& head = outline_.Items()[run.first];
        Row(head.name, DetailOf(head));
        Functions(run);
      }
    }
    html_.Markup("</dl>\n");
  }

 private:
  void Row(std::string_view name, std::string_view text) {
    if (!text.empty()) {
      html_.Element("dt", "", name).Element("dd", "", text);
    }
  }

  OutlineItem const* HeadOf(Request const& request) const {
    for (OutlineRun const& run : outline_.Runs()) {
      if (run.answer->request == request && run.count != 0) {
        return &outline_.Items()[run.first];
      }
    }
    return nullptr;
  }

  bool IsConfiguration(OutlineRun const& run) const {
    std::uint8_t const type = run.answer->request.Type();
    bool const isAsked =
        run.answer->request.IsStandard() && (type == usb_devices::kConfigurationType ||
                                             type == usb_devices::kOtherSpeedConfigurationType);
    return isAsked && run.count != 0;
  }

  std::string StringOf(std::uint8_t index) const {
    auto const string = outline_.Strings().find(index);
    return string == outline_.Strings().end() ? "" : string->second;
  }

  // "Device 1209:0008", below the name of the source.
  std::string Title() const {
    OutlineItem const* const device = HeadOf(Request::Descriptor(usb_devices::kDeviceType));
    std::string const summary = device == nullptr ? "Device" : SummaryOf(*device);
    return summary.substr(0, summary.find(": "));
  }

  void DeviceRows(OutlineItem const& item) {
    ByteView const view(item.bytes);
    auto const vendor = static_cast<std::uint16_t>(view.Number(8, 2));
    auto const product = static_cast<std::uint16_t>(view.Number(10, 2));
    auto const named = [](std::uint16_t id, std::string_view name, std::string const& string) {
      std::string text = Hex(id, 4) + "h";
      text.append(name.empty() ? "" : " ").append(name);
      return text.append(string.empty() ? "" : " \xE2\x80\x9C" + string + "\xE2\x80\x9D");
    };
    Row("Vendor", named(vendor, names_.Vendor(vendor), StringOf(view.At(14))));
    Row("Product", named(product, names_.Product(vendor, product), StringOf(view.At(15))));
    Row("Serial number", StringOf(view.At(16)));
    Row("Device", DetailOf(item));
  }

  // A line for each interface association, and for each interface outside of associations.
  void Functions(OutlineRun const& run) {
    constexpr std::size_t kMostShown = 16;
    std::vector<std::string> functions;
    std::size_t associatedEnd = 0;
    std::array<char, 256> buffer;
    for (std::size_t i = run.first; i < run.first + run.count; ++i) {
      ByteView const view(outline_.Items()[i].bytes);
      bool const isInterface = view.At(1) == 0x04 && view.At(3) == 0;
      if (view.At(1) == 0x0B) {
        functions.emplace_back(usb_fields::TripleName(view.At(4), view.At(5), view.At(6), buffer));
        associatedEnd = view.At(2) + std::size_t{view.At(3)};
      } else if (isInterface && view.At(2) >= associatedEnd) {
        functions.emplace_back(usb_fields::TripleName(view.At(5), view.At(6), view.At(7), buffer));
      }
    }
    html_.Markup(functions.empty() ? "" : "<dt>Functions<dd><ol>");
    for (std::size_t i = 0; i < std::min(functions.size(), kMostShown); ++i) {
      html_.Markup("<li>").Text(functions[i].empty() ? "without a known class" : functions[i]);
    }
    if (functions.size() > kMostShown) {
      html_.Markup("<li>").Text("and " + std::to_string(functions.size() - kMostShown) + " more");
    }
    html_.Markup(functions.empty() ? "" : "</ol></dd>");
  }

  void Pictures() {
    for (OutlineRun const& run : outline_.Runs()) {
      if (IsConfiguration(run)) {
        html_.Markup("<section>");
        html_.Element("h3", "", SummaryOf(outline_.Items()[run.first]));
        AddPicture(html_, outline_, run);
        AddGraphs(html_, outline_, run);
        html_.Markup("</section>\n");
      }
    }
  }

  // Every list is closed before an item of a higher level begins.
  void Tree(bool hasFields) {
    html_.Markup("<ul class=tree>");
    for (OutlineRun const& run : outline_.Runs()) {
      std::size_t depth = 0;
      for (std::size_t i = run.first; i < run.first + run.count; ++i) {
        OutlineItem const& item = outline_.Items()[i];
        for (; depth < item.level; ++depth) {
          html_.Markup("<ul>");
        }
        for (; depth > item.level; --depth) {
          html_.Markup("</ul>");
        }
        html_.Markup("<li>");
        if (hasFields) {
          html_.Markup("<a href=#").Markup(prefix_).Number(i).Markup(">");
        }
        html_.Text(SummaryOf(item)).Markup(hasFields ? "</a>" : "");
        Mark(i);
      }
      for (; depth > 0; --depth) {
        html_.Markup("</ul>");
      }
      if (run.count == 0) {
        html_.Markup("<li>").Text(run.name + ": " + Outcome(run));
      }
      if (!run.breakReason.empty()) {
        html_.Markup("<li>");
        AddTail(html_, run);
      }
    }
    html_.Markup("</ul>");
  }

  static std::string Outcome(OutlineRun const& run) {
    return run.answer->outcome == usb_devices::Outcome::kAnswered
               ? Counted(run.answer->bytes.size(), "byte")
               : std::string(usb_devices::NameOf(run.answer->outcome));
  }

  void Mark(std::size_t item) {
    if (auto const found = findings_.find(item); found != findings_.end()) {
      html_.Markup(" <span class=mark>").Text(Counted(found->second.size(), "finding"));
      html_.Markup("</span>");
    }
  }

  void Descriptors() {
    for (std::size_t i = 0; i < outline_.Runs().size(); ++i) {
      OutlineRun const& run = outline_.Runs()[i];
      html_.Markup("<section class=run data-run=").Number(i).Markup(">");
      html_.Element("h3", "", run.name);
      for (std::size_t j = run.first; j < run.first + run.count; ++j) {
        Descriptor(j);
      }
      AddTail(html_, run);
      html_.Markup("</section>\n");
    }
  }

  void Descriptor(std::size_t index) {
    OutlineItem const& item = outline_.Items()[index];
    html_.Markup("<article class=l").Number(std::min<std::size_t>(item.level, 4));
    html_.Markup(" id=").Markup(prefix_).Number(index).Markup("><h4><span class=o>");
    html_.Text(Hex(outline_.FileOffset(item), 4)).Markup("h</span> ");
    html_.Text(SummaryOf(item)).Markup("</h4>");
    if (auto const found = findings_.find(index); found != findings_.end()) {
      html_.Markup("<ul class=find>");
      for (HtmlFinding const* const finding : found->second) {
        Finding(*finding);
      }
      html_.Markup("</ul>");
    }
    AddFields(html_, links_, item, texts_);
    html_.Markup("</article>\n");
  }

  void Finding(HtmlFinding const& finding) {
    html_.Markup(finding.isMust ? "<li><b>" : "<li class=should><b>").Text(finding.rule);
    html_.Markup("</b> ").Text(finding.text);
  }

  void Findings() {
    html_.Markup("<section class=findings>").Element("h3", "", "Findings");
    if (device_.findings.empty()) {
      html_.Markup("<p class=good>No rule is broken.</p>");
    } else {
      html_.Markup("<ul class=find>");
      for (HtmlFinding const& finding : device_.findings) {
        Finding(finding);
        if (std::size_t const item = ItemAt(finding); item != kNone) {
          html_.Markup(" <a href=#").Markup(prefix_).Number(item).Markup(">");
          html_.Text(outline_.PlaceOf(outline_.Items()[item])).Markup("</a>");
        }
      }
      html_.Markup("</ul>");
    }
    html_.Markup("</section>\n");
  }

  // The descriptor that a finding is in.
  std::size_t ItemAt(HtmlFinding const& finding) const {
    if (finding.run >= outline_.Runs().size() || outline_.Runs()[finding.run].count == 0) {
      return kNone;
    }
    OutlineRun const& run = outline_.Runs()[finding.run];
    auto const begin = outline_.Items().begin() + static_cast<std::ptrdiff_t>(run.first);
    auto const after = std::upper_bound(
        begin, begin + static_cast<std::ptrdiff_t>(run.count), finding.offset,
        [](std::size_t offset, OutlineItem const& item) { return offset < item.offset; });
    return after == begin ? kNone : run.first + static_cast<std::size_t>(after - begin) - 1;
  }

  HtmlWriter& html_;
  HtmlLinks& links_;
  HtmlDevice const& device_;
  Outline const& outline_;
  usb_fields::UsbIds const& names_;
  FieldTexts texts_;
  std::string prefix_;
  std::map<std::size_t, std::vector<HtmlFinding const*>> findings_;
};

void AddChange(HtmlWriter& html, Change const& change) {
  auto const side = [&html](ChangeSide const& of) {
    html.Markup("<td>").Text(of.text);
    if (!of.bytes.empty()) {
      html.Markup(" <span class=o>").Text(Hex(of.offset, 4)).Markup("h</span>");
    }
  };
  html.Markup("<tr class=\"")
      .Markup(NameOf(change.kind))
      .Markup(change.isWithin ? " in\">" : "\">");
  html.Markup("<td>").Text(NameOf(change.kind)).Markup("<th scope=row>").Text(change.place);
  html.Markup("<td>");
  html.Text(change.field.empty() && change.kind == ChangeKind::kChanged
                ? "bytes that no field describes"
                : change.field);
  side(change.before);
  side(change.after);
}

void AddRules(HtmlWriter& html, std::vector<RuleChange> const& rules) {
  if (rules.empty()) {
    return;
  }
  html.Markup("<section>").Element("h2", "", "Rules").Markup("<table class=diff><thead><tr>");
  html.Markup("<th scope=col>Rule<th scope=col>Before<th scope=col>After<th scope=col>Demands");
  html.Markup("<tbody>\n");
  for (RuleChange const& rule : rules) {
    html.Markup(rule.isBroken ? "<tr class=removed><td>" : "<tr class=added><td>").Text(rule.rule);
    html.Markup(rule.isBroken ? "<td>kept<td>broken<td>" : "<td>broken<td>kept<td>");
    html.Text(rule.sentence).Markup("\n");
  }
  html.Markup("</table></section>\n");
}

}  // namespace

std::string DevicesHtml(std::span<HtmlDevice const> devices, HtmlContent content,
                        usb_fields::UsbIds const& names) {
  HtmlWriter html;
  HtmlLinks links;
  Begin(html, devices.size() == 1 ? devices[0].name : Counted(devices.size(), "USB device"));
  for (std::size_t i = 0; i < devices.size(); ++i) {
    DevicePage(html, links, i, devices[i], names).Add(content, devices.size() == 1);
  }
  return End(html);
}

std::string DiffHtml(HtmlDevice const& before, HtmlDevice const& after,
                     std::vector<Change> const& changes, std::vector<RuleChange> const& rules,
                     usb_fields::UsbIds const& names) {
  HtmlWriter html;
  HtmlLinks links;
  Begin(html, before.name + " and " + after.name);
  html.Markup("<div class=two>");
  for (HtmlDevice const* const device : {&before, &after}) {
    html.Markup("<section class=device>").Element("h2", "", device->name);
    DevicePage(html, links, device == &before ? 0 : 1, *device, names).Summary();
    html.Markup("</section>");
  }
  html.Markup("</div>\n<section>").Element("h2", "", "Changes");
  if (changes.empty()) {
    html.Markup("<p class=good>No difference.</p>");
  } else {
    html.Markup(
        "<table class=diff><thead><tr><th scope=col>What<th scope=col>Place<th scope=col>Field<th "
        "scope=col>Before<th scope=col>After<tbody>\n");
    for (Change const& change : changes) {
      AddChange(html, change);
      html.Markup("\n");
    }
    html.Markup("</table>");
  }
  html.Markup("</section>\n");
  AddRules(html, rules);
  return End(html);
}

}  // namespace usb_support::usbdesc

#include <tools/usbdesc/views/html.h>

#include <array>
#include <string>

#include <tools/usbdesc/usbdesc_test.h>
#include <tools/usbdesc/views/html_writer.h>
#include <usb_devices/input.h>

namespace usb_support::usbdesc {
namespace {

using testing::HasSubstr;
using testing::Not;
using usb_devices::Answer;
using usb_devices::DeviceBuilder;
using usb_devices::Request;
using usb_fields::Speed;

std::string Escaped(std::string_view text) {
  return HtmlWriter().Text(text).Take();
}

TEST(HtmlWriter, EscapesMarkup) {
  EXPECT_EQ(Escaped("<script>alert(\"1\")</script>"),
            "&lt;script&gt;alert(&quot;1&quot;)&lt;/script&gt;");
  EXPECT_EQ(Escaped("a & b's \xC3\xA9 \xF0\x9F\x98\x80"),
            "a &amp; b&#39;s \xC3\xA9 \xF0\x9F\x98\x80");
}

TEST(HtmlWriter, ReplacesWhatHtmlDoesNotAllow) {
  std::string const replacement = "\xEF\xBF\xBD";
  EXPECT_EQ(Escaped(std::string_view("\0", 1)), replacement);
  EXPECT_EQ(Escaped("\x1B[2J"), replacement + "[2J");
  EXPECT_EQ(Escaped("\x7F"), replacement);
  EXPECT_EQ(Escaped("\xC2\x85"), replacement);          // U+0085, a control character
  EXPECT_EQ(Escaped("\xEF\xBF\xBF"), replacement);      // U+FFFF, no character
  EXPECT_EQ(Escaped("\xEF\xB7\x90"), replacement);      // U+FDD0, no character
  EXPECT_EQ(Escaped("\xF0\x9F\xBF\xBE"), replacement);  // U+1FFFE, no character
  EXPECT_EQ(Escaped("\xFF"), replacement);              // not UTF-8
  EXPECT_EQ(Escaped("\xC3"), replacement);              // cut off
}

// A device whose product name is chosen by an attacker.
usb_devices::Device Named(std::string_view product) {
  DeviceBuilder builder;
  builder.Add({.request = Request::Descriptor(usb_devices::kDeviceType),
               .outcome = usb_devices::Outcome::kAnswered,
               .bytes = {18, 1, 0, 2, 0, 0, 0, 64, 9, 18, 1, 0, 0, 1, 0, 2, 0, 1},
               .source = {},
               .note = {}});
  Answer string;
  string.request = Request::String(2, 0x0409);
  string.bytes = {static_cast<std::uint8_t>(2 + 2 * product.size()), 3};
  for (char const c : product) {
    string.bytes.push_back(static_cast<std::uint8_t>(c));
    string.bytes.push_back(0);
  }
  builder.Add(std::move(string));
  return builder.Build();
}

TEST(Html, WhatADeviceSendsIsText) {
  usb_devices::Device const device = Named("</title><script>alert(1)</script><!--");
  usb_devices::Device const other = Named("</table>'\"><img src=x onerror=alert(1)>");
  Outline const outline(Decode(device, Speed::kHigh));
  Outline const otherOutline(Decode(other, Speed::kHigh));
  std::string const plain =
      DevicesHtml(std::array{HtmlDevice{"plain", &outline}}, HtmlContent::kTree, {});
  HtmlDevice const hostile{"<script>name",
                           &outline,
                           {{0, 0, "<b>rule", "<i>text", true}, {kNone, 0, "<b>", "<i>", false}}};
  for (HtmlContent const content :
       {HtmlContent::kTree, HtmlContent::kFields, HtmlContent::kCheck}) {
    std::string const page = DevicesHtml(std::array{hostile}, content, {});
    EXPECT_EQ(page.find("<script>", page.find("<body>")), page.rfind("<script>"));
    EXPECT_THAT(page, Not(HasSubstr("<i>")));
    EXPECT_THAT(page, Not(HasSubstr("<!--")));
    EXPECT_THAT(page, HasSubstr("&lt;script&gt;alert(1)"));
  }
  std::string const diff = DiffHtml({"<i>a", &outline}, {"<i>b", &otherOutline},
                                    usbdesc::Compare(outline, otherOutline), {}, {});
  EXPECT_THAT(diff, Not(HasSubstr("<img")));
  EXPECT_THAT(diff, Not(HasSubstr("<i>")));
  EXPECT_THAT(diff, HasSubstr("&lt;img src=x"));
}

TEST(Html, AFindingIsAtItsPlace) {
  usb_devices::Device const device = Named("x");
  Outline const outline(Decode(device, Speed::kHigh));
  HtmlDevice const page{"x", &outline, {{1, 1, "usb2.rule", "is wrong", true}}};
  std::string const html = DevicesHtml(std::array{page}, HtmlContent::kCheck, {});
  std::size_t const article = html.find("id=d0-1>");
  ASSERT_NE(article, std::string::npos);
  EXPECT_NE(html.find("<b>usb2.rule</b> is wrong", article), std::string::npos);
  EXPECT_THAT(html, HasSubstr("<a href=#d0-1>string 2, language 0409h</a>"));
  HtmlDevice const good{"x", &outline, {}};
  EXPECT_THAT(DevicesHtml(std::array{good}, HtmlContent::kCheck, {}),
              HasSubstr("No rule is broken."));
}

// Pages need nothing from elsewhere.
TEST(Html, LoadsNothing) {
  std::filesystem::path const path = SourceFolder() / "examples" / "captures" / "uvc-camera.txt";
  usb_devices::Device const device = usb_devices::ReadInput(NameOf(path)).devices.at(0);
  Outline const outline(Decode(device, Speed::kHigh));
  std::string const html =
      DevicesHtml(std::array{HtmlDevice{"camera", &outline}}, HtmlContent::kFields, {});
  for (char const* const text : {"http://", "https://", " src=", "url(", "@import"}) {
    EXPECT_THAT(html, Not(HasSubstr(text)));
  }
  for (char const* const text :
       {"640 x 480, 15 to 30 frames a second", "<svg role=img", "processing unit 2",
        "Alternate setting 5", "isochronous, asynchronous, 3 x 1024 bytes"}) {
    EXPECT_THAT(html, HasSubstr(text));
  }
}

}  // namespace
}  // namespace usb_support::usbdesc

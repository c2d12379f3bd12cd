// The reports of usbdesc: a camera of 3 KiB as an HTML page, which must take less than 10 ms and
// 300 KiB, and the difference of two long configurations compared with that of short ones with as
// many descriptors together, which shows that its time is linear.
#include <cstdint>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmarks/inputs.h>
#include <benchmarks/rows.h>
#include <benchmarks/side_by_side.h>
#include <tools/usbdesc/outline.h>
#include <tools/usbdesc/views/diff.h>
#include <tools/usbdesc/views/html.h>
#include <usb_devices/files.h>
#include <usb_devices/input.h>

namespace usb_support::benchmarks {
namespace {

using usb_devices::Device;
using usb_devices::Request;
using usbdesc::Decode;
using usbdesc::HtmlContent;
using usbdesc::HtmlDevice;
using usbdesc::Outline;

using Bytes = std::vector<std::uint8_t>;

constexpr double kMostNsOfPage = 10e6;
constexpr std::size_t kMostBytesOfPage = std::size_t{300} * 1024;
constexpr std::size_t kCameraSize = 3072;
constexpr double kMostGrowth = 1.5;

Device WithConfiguration(Bytes bytes) {
  usb_devices::DeviceBuilder builder;
  usb_devices::Answer answer;
  answer.request = Request::Descriptor(usb_devices::kConfigurationType);
  answer.bytes = std::move(bytes);
  builder.Add(std::move(answer));
  return builder.Build();
}

// The sample camera with its first video frame repeated, each with its own number.
Device Camera() {
  std::string const name =
      usb_devices::NameOf(std::filesystem::path(USB_SUPPORT_SAMPLES) / "uvc-camera.txt");
  Device const sample = usb_devices::ReadInput(name).devices.at(0);
  auto const found = sample.Bytes(Request::Descriptor(usb_devices::kConfigurationType));
  Bytes bytes(found->begin(), found->end());
  auto const isFrame = [&bytes](std::size_t at) {
    return bytes[at + 1] == 0x24 && bytes[at + 2] == 0x05 && bytes[at] >= 26;
  };
  std::size_t at = 0;
  while (at < bytes.size() && !isFrame(at)) {
    at += bytes[at];
  }
  Bytes frame(bytes.begin() + static_cast<std::ptrdiff_t>(at),
              bytes.begin() + static_cast<std::ptrdiff_t>(at + bytes.at(at)));
  for (frame[3] = 100; bytes.size() < kCameraSize; ++frame[3]) {
    bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(at), frame.begin(), frame.end());
  }
  return WithConfiguration(std::move(bytes));
}

std::string PageOf(Device const& device) {
  Outline const outline(Decode(device));
  return usbdesc::DevicesHtml(std::vector{HtmlDevice{"camera", &outline}}, HtmlContent::kFields,
                              {});
}

void AddPageRow() {
  Device const camera = Camera();
  std::size_t const size = PageOf(camera).size();
  if (size > kMostBytesOfPage) {
    throw std::logic_error("The page of a camera of 3 KiB has " + std::to_string(size) + " bytes.");
  }
  Compare(
      {.operation = "HTML page, beside the outline",
       .input = "camera of 3 KiB",
       .mostNs = kMostNsOfPage,
       .bytes = static_cast<double>(size)},
      [camera] { return PageOf(camera).size(); },
      [camera] { return Outline(Decode(camera)).Items().size(); },
      [](std::size_t page, std::size_t items) { return page > items; });
}

// The changes between a configuration and one with another power and without its last descriptor.
std::size_t ChangesOf(Device const& before, Device const& after) {
  return usbdesc::Compare(Outline(Decode(before)), Outline(Decode(after))).size();
}

void AddDiffRow() {
  constexpr std::size_t kShort = 4000;
  constexpr std::size_t kTimes = 16;
  auto const pairOf = [](std::size_t size) {
    Bytes bytes = GeneratedConfiguration(size).runs.at(0);
    Device before = WithConfiguration(bytes);
    bytes[8] ^= 1;  // bMaxPower
    return std::pair(std::move(before), WithConfiguration(std::move(bytes)));
  };
  auto const one = pairOf(kTimes * kShort);
  auto const few = pairOf(kShort);
  Compare(
      {.operation = "Difference, beside 16 of a sixteenth",
       .input = "64,000 bytes",
       .mostRatio = kMostGrowth},
      [one] { return kTimes * ChangesOf(one.first, one.second); },
      [few] {
        std::size_t changes = 0;
        for (std::size_t i = 0; i < kTimes; ++i) {
          changes += ChangesOf(few.first, few.second);
        }
        return changes;
      });
}

}  // namespace

void AddReportRows() {
  AddPageRow();
  AddDiffRow();
}

}  // namespace usb_support::benchmarks

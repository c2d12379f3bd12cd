#include <usb_fields/summary.h>

#include <algorithm>
#include <array>
#include <string>

#include <gtest/gtest.h>
#include <tests/support/heap_bytes.h>
#include <usb_fields/samples.h>

namespace usb_fields {
namespace {

using testing_support::Bytes;
using testing_support::ContextOf;
using testing_support::FromHex;
using testing_support::HeapBytes;
using testing_support::In;
using testing_support::Sample;
using testing_support::Samples;

std::string Summary(Bytes const& bytes, Context const& context) {
  std::array<char, kMostSummary> buffer{};
  return std::string(SummaryOf(HeapBytes(bytes).Span(), context, buffer));
}

TEST(SummaryTest, SaysWhatPeopleLookForFirst) {
  struct Row {
    char const* hex;
    Context context;
    char const* summary;
  };
  Context const high{.speed = Speed::kHigh};
  Context const full{.speed = Speed::kFull};
  Context const super{.speed = Speed::kSuper};
  Context const video = In(0x0E, 2, 0);
  Row const rows[] = {
      {"12 01 00 02 ef 02 01 40 6d 04 25 08 12 00 00 02 03 01", high,
       "Device 046d:0825: USB 2.00, Miscellaneous, Common Class, Interface Association Descriptor, "
       "release 0.12"},
      {"12 01 10 01 00 00 00 08 eb 03 42 20 01 00 01 02 00 01", high,
       "Device 03eb:2042: USB 1.10, class by interface, release 0.01"},
      {"09 02 a2 09 04 01 00 a0 fa", high,
       "Configuration 1: 4 interfaces, bus-powered, remote wakeup, 500 mA"},
      {"08 0b 00 02 0e 03 00 04", high,
       "Interface Association, interfaces 0 and 1: Video, Video Interface Collection"},
      {"09 04 01 03 01 0e 02 00 00", high,
       "Interface 1, alternate setting 3: Video, Video Streaming, 1 endpoint"},
      {"07 05 81 05 fc 13 01", high,
       "Endpoint 81h IN: isochronous, asynchronous, 3 x 1020 bytes every 125 us (24.48 MB/s)"},
      {"07 05 83 03 10 00 06", high, "Endpoint 83h IN: interrupt, 16 bytes every 4 ms (4 kB/s)"},
      {"07 05 81 03 08 00 0a", full, "Endpoint 81h IN: interrupt, 8 bytes every 10 ms (800 B/s)"},
      {"07 05 02 02 00 02 00", high, "Endpoint 02h OUT: bulk, 512 bytes"},
      {"07 05 83 03 10 00 00", high,
       "Endpoint 83h IN: interrupt, 16 bytes, interval 0 is out of range"},
      {"07 05 81 02 00 04 00 06 30 0f 00 00 00", super,
       "Endpoint 81h IN: bulk, 1024 bytes, bursts of 16"},
      {"07 05 81 05 00 04 01 06 30 03 02 00 30", super,
       "Endpoint 81h IN: isochronous, asynchronous, 1024 bytes, bursts of 4, mult 3, 12288 bytes "
       "every 125 us (98.3 MB/s)"},
      {"06 30 0f 00 00 00", super, "SuperSpeed Endpoint Companion: bursts of 16"},
      {"09 21 11 01 00 01 22 3f 00", In(3, 1, 1), "HID 1.11: report descriptor of 63 bytes"},
      {"09 21 11 01 00 01 22 3f 00", In(0xFF, 0, 0),
       "HID 1.11: report descriptor of 63 bytes (guessed)"},
      {"1e 24 05 01 00 80 02 e0 01 00 00 ca 08 00 00 ca 08 00 60 09 00 15 16 05 00 01 15 16 05 00",
       video, "Video Streaming, uncompressed frame 1: 640 x 480, 30 frames a second"},
      {"1b 24 04 01 13 59 55 59 32 00 00 10 00 80 00 00 aa 00 38 9b 71 10 01 00 00 00 00", video,
       "Video Streaming, uncompressed format 1: YUY2, 16 bits a pixel, 19 frames"},
      {"0e 24 02 01 01 02 10 02 80 bb 00 44 ac 00", In(1, 2, 0),
       "Audio Streaming 1.0, format type I, discrete frequencies: 1 channel, 16 bits in 2 bytes, "
       "48000, 44100 Hz"},
      {"05 0f 2a 00 03", high, "BOS: 3 device capabilities"},
      {"04 41 01 02", In(0xFF, 0, 0), "Vendor-specific descriptor, type 41h: 4 bytes"},
      {"04 24 77 02", In(8, 6, 0x50), "Class-specific descriptor, type 24h: 4 bytes"},
      {"09 04 01", high, "Interface (cut off)"},
      {"01", high, "Unknown descriptor: 1 byte"},
  };
  for (Row const& row : rows) {
    EXPECT_EQ(Summary(FromHex(row.hex), row.context), row.summary);
  }
}

TEST(SummaryTest, HasNoControlCharactersForAnySampleAtAnyLength) {
  for (Sample const& sample : Samples()) {
    for (std::size_t size = 0; size <= sample.bytes.size(); ++size) {
      Bytes const cut(sample.bytes.begin(),
                      sample.bytes.begin() + static_cast<std::ptrdiff_t>(size));
      std::string const summary = Summary(cut, ContextOf(sample));
      EXPECT_FALSE(summary.empty());
      EXPECT_TRUE(std::ranges::all_of(summary, [](char c) {
        return static_cast<unsigned char>(c) >= 0x20 && c != 0x7F;
      })) << summary;
    }
  }
}

}  // namespace
}  // namespace usb_fields

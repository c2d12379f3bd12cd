// The program reads its own output: saved output gives the original bytes.
#include <random>

#include <tools/usbdesc/usbdesc_test.h>

namespace usb_support::usbdesc {
namespace {

class RoundTrip : public UsbdescTest {
 protected:
  // Expects both forms of output, saved with any line end, to give the bytes back.
  void Check(Bytes const& run) const {
    for (char const* const form : {"--verbosity=3", "--code"}) {
      Outcome const outcome = RunProgram({"--input", "raw", form, "-"}, AsText(run));
      EXPECT_EQ(outcome.err, "");
      EXPECT_TRUE(usb_devices::LooksLikeText(outcome.out));
      EXPECT_EQ(ReadText(outcome.out), run) << outcome.out;
      std::string onWindows = "\xEF\xBB\xBF";
      for (char const c : outcome.out) {
        onWindows += c == '\n' ? "\r\n" : std::string(1, c);
      }
      EXPECT_EQ(ReadText(onWindows), run) << outcome.out;
    }
  }
};

TEST_F(RoundTrip, OfEmptyAndTinyRuns) {
  Check({});
  for (int first = 0; first < 4; ++first) {
    Check({static_cast<unsigned char>(first)});
    Check({static_cast<unsigned char>(first), 0x12});
    Check({static_cast<unsigned char>(first), 0x12, 0x01, 0x00});
  }
}

TEST_F(RoundTrip, OfEveryKindOfTail) {
  Bytes const valid = {0x09, 0x04, 0x00, 0x00, 0x00, 0x0E, 0x01, 0x00, 0x00, 0x03, 0x24, 0x01};
  for (Bytes const& tail :
       {Bytes{0}, Bytes{0, 4, 0, 0}, Bytes{2}, Bytes{9, 4, 0}, Bytes{0xFF, 0x0F}, Bytes(300, 0)}) {
    Bytes run = valid;
    run.insert(run.end(), tail.begin(), tail.end());
    Check(run);
    Check(tail);
  }
}

TEST_F(RoundTrip, OfRandomRuns) {
  std::mt19937 random(20241);
  auto const below = [&random](unsigned limit) {
    return static_cast<unsigned char>(random() % limit);
  };
  constexpr unsigned char kTypes[] = {1,    2,    4,    4,    5,    7,    0x0B,
                                      0x0F, 0x10, 0x24, 0x25, 0x30, 0x31, 0xFF};
  for (int round = 0; round < 150; ++round) {
    Bytes run;
    for (int count = below(12); count > 0; --count) {
      std::size_t const start = run.size();
      unsigned char const length =
          below(8) == 0 ? below(256) : static_cast<unsigned char>(below(20) + 1);
      for (int i = 0; i < length; ++i) {
        run.push_back(below(256));
      }
      if (length > 0) {
        run[start] = length;
      }
      if (length > 1) {
        run[start + 1] = kTypes[below(sizeof kTypes)];
      }
      if (length > 6) {
        run[start + 5] = below(2) == 0 ? 0x0E : below(256);  // the class of an interface
      }
    }
    if (below(2) == 0) {
      for (int count = below(10); count > 0; --count) {
        run.push_back(below(256));
      }
    }
    Check(run);
  }
}

}  // namespace
}  // namespace usb_support::usbdesc

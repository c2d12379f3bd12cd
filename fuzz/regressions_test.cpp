// Replays the seeds of every fuzz target. A target stops the program, and with it the test, when
// the library's answer is wrong; the last name that was printed tells which input it was.
#include <cstdio>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include <fuzz/seeds.h>
#include <fuzz/targets.h>

namespace usb_support::fuzz {
namespace {

struct Target {
  char const* name;
  void (*run)(Input);
};

void PrintTo(Target const& target, std::ostream* out) {
  *out << target.name;
}

class FuzzTarget : public testing::TestWithParam<Target> {};

TEST_P(FuzzTarget, AnswersEverySeedAsItsModelDoes) {
  Seeds const seeds = SeedsOf(GetParam().name, USB_SUPPORT_SOURCE_DIR);
  EXPECT_TRUE(seeds.contains("kept-0"));
  for (auto const& [name, content] : seeds) {
    Input const input(reinterpret_cast<unsigned char const*>(content.data()), content.size());
    std::printf("%s\n", name.c_str());
    std::fflush(stdout);
    EXPECT_NO_THROW(GetParam().run(input)) << name;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Targets, FuzzTarget,
    testing::Values(Target{"range_walk", RangeWalk}, Target{"configuration_set", ConfigurationSet},
                    Target{"bos_set", BosSet}, Target{"labels", Labels}, Target{"fields", Fields},
                    Target{"rules", Rules}, Target{"assertion", Assertion},
                    Target{"settings_file", SettingsFile}, Target{"text_reader", TextReader},
                    Target{"devices", Devices}, Target{"traffic", TrafficPackets},
                    Target{"control_reader", ControlReader}, Target{"vendor_list", VendorList}),
    [](auto const& one) { return std::string(one.param.name); });

}  // namespace
}  // namespace usb_support::fuzz

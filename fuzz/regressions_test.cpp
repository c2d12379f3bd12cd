// Replays the seeds and the committed inputs of every fuzz target: those that found a fault, and
// those that between them reach all that the fuzzers have reached. A target stops the program, and
// with it the test, when the library's answer is wrong; which input it was stands before that.
#include <cstdio>
#include <filesystem>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include <fuzz/seeds.h>
#include <fuzz/targets.h>
#include <standalone_suite/test_support/temp_folder.h>

namespace usb_support::fuzz {
namespace {

struct Target {
  char const* name;
  void (*run)(Input);
};

void PrintTo(Target const& target, std::ostream* out) {
  *out << target.name;
}

std::filesystem::path const kSource = USB_SUPPORT_SOURCE_DIR;

Seeds CommittedInputs(std::filesystem::path const& folder) {
  Seeds inputs;
  for (auto const& entry : std::filesystem::directory_iterator(folder)) {
    inputs[entry.path().filename().string()] = standalone::ReadFileBytes(entry.path());
  }
  return inputs;
}

class FuzzRegressions : public testing::TestWithParam<Target> {
 protected:
  static void Replay(Seeds const& inputs) {
    for (auto const& [name, content] : inputs) {
      Input const input(reinterpret_cast<unsigned char const*>(content.data()), content.size());
      std::printf("%s\n", name.c_str());
      std::fflush(stdout);
      EXPECT_NO_THROW(GetParam().run(input)) << name;
    }
  }
};

TEST_P(FuzzRegressions, Seeds) {
  Seeds const seeds = SeedsOf(GetParam().name, kSource / "examples" / "captures");
  EXPECT_GE(seeds.size(), 5u);
  Replay(seeds);
}

TEST_P(FuzzRegressions, CommittedInputs) {
  Seeds const inputs = CommittedInputs(kSource / "fuzz" / "regressions" / GetParam().name);
  EXPECT_GE(inputs.size(), 1u);
  Replay(inputs);
}

INSTANTIATE_TEST_SUITE_P(
    Targets, FuzzRegressions,
    testing::Values(Target{"range_walk", RangeWalk}, Target{"configuration_set", ConfigurationSet},
                    Target{"bos_set", BosSet}, Target{"labels", Labels},
                    Target{"assertion", Assertion}, Target{"settings_file", SettingsFile},
                    Target{"text_reader", TextReader}, Target{"vendor_list", VendorList}),
    [](auto const& one) { return std::string(one.param.name); });

}  // namespace
}  // namespace usb_support::fuzz

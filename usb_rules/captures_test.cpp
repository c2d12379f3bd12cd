// The catalogue over real devices: with USB_SUPPORT_CAPTURES_DIR, a folder of captured descriptors,
// the number of devices that keep and that break each rule is compared with captures.txt.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <usb_rules/judge.h>
#include <usb_rules/test_support/sample.h>

namespace usb_rules::test {
namespace {

namespace fs = std::filesystem;

Bytes ReadFile(fs::path const& path) {
  std::ifstream file(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(file), {});
}

// The files of one folder as a subject.
class Capture {
 public:
  explicit Capture(fs::path const& folder)
      : all_(ReadFile(folder / "descriptors.bin")),
        device_(ReadFile(folder / "device.bin")),
        bos_(ReadFile(folder / "bos.bin")),
        qualifier_(ReadFile(folder / "qualifier.bin")),
        other_(ReadFile(folder / "other_speed_config.bin")) {
    std::span<std::uint8_t const> rest(all_);
    subject_.device = RunOf(device_);
    if (rest.size() >= 18 && rest[1] == 1) {
      subject_.device = RunOf(rest.first(18));
      rest = rest.subspan(18);
    }
    while (rest.size() >= 9 && rest[1] == 2) {
      std::size_t const total = std::clamp<std::size_t>(rest[2] + rest[3] * 256U, 9, rest.size());
      configurations_.push_back(RunOf(rest.first(total)));
      rest = rest.subspan(total);
    }
    subject_.configurations = configurations_;
    subject_.bos = RunOf(bos_);
    subject_.qualifier = RunOf(qualifier_);
    if (!other_.empty()) {
      others_.push_back(RunOf(other_));
      subject_.otherSpeedConfigurations = others_;
      subject_.otherSpeed = Presence::kGiven;
    }
  }
  Capture(Capture const&) = delete;
  Capture& operator=(Capture const&) = delete;

  Subject const& Get() const { return subject_; }

 private:
  static Run RunOf(std::span<std::uint8_t const> bytes) {
    return {.bytes = bytes, .presence = bytes.empty() ? Presence::kNotCaptured : Presence::kGiven};
  }

  Bytes all_;
  Bytes device_;
  Bytes bos_;
  Bytes qualifier_;
  Bytes other_;
  std::vector<Run> configurations_;
  std::vector<Run> others_;
  Subject subject_;
};

struct Tally {
  int kept = 0;
  int broken = 0;

  bool operator==(Tally const&) const = default;
};

std::map<std::string, Tally> Expected() {
  std::map<std::string, Tally> expected;
  std::ifstream file(USB_RULES_SAMPLES "/captures.txt");
  std::string rule;
  for (Tally tally; file >> rule >> tally.kept >> tally.broken;) {
    expected[rule] = tally;
  }
  return expected;
}

TEST(Captures, KeepAndBreakTheRulesAsRecorded) {
  char const* const folder = std::getenv("USB_SUPPORT_CAPTURES_DIR");
  if (folder == nullptr) {
    GTEST_SKIP() << "USB_SUPPORT_CAPTURES_DIR is not set";
  }
  std::map<std::string, Tally> found;
  for (auto const& entry : fs::directory_iterator(folder)) {
    if (!entry.is_directory()) {
      continue;
    }
    Capture const capture(entry.path());
    for (Verdict const& verdict : Judge(capture.Get()).verdicts) {
      Tally& tally = found[std::string(verdict.rule->id)];
      tally.kept += verdict.outcome == Outcome::kPass ? 1 : 0;
      tally.broken += verdict.outcome == Outcome::kFail ? 1 : 0;
    }
  }
  std::erase_if(found, [](auto const& row) { return row.second == Tally{}; });
  std::map<std::string, Tally> const expected = Expected();
  for (auto const& [rule, tally] : found) {
    auto const row = expected.find(rule);
    Tally const was = row != expected.end() ? row->second : Tally{};
    EXPECT_EQ(tally, was) << rule << ": kept " << tally.kept << ", broken " << tally.broken
                          << "; recorded " << was.kept << ", " << was.broken;
  }
  for (auto const& [rule, tally] : expected) {
    EXPECT_TRUE(found.contains(rule)) << rule << " applies to no capture any more";
  }
}

}  // namespace
}  // namespace usb_rules::test

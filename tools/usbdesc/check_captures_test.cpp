// The catalogue over real devices: with USB_SUPPORT_CAPTURES_DIR, a folder with a folder for each
// device, the number of devices that keep and that break each rule is compared with
// usb_rules/samples/captures.txt. With USB_RULES_UPDATE set the file is written.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include <tools/usbdesc/device_subject.h>
#include <tools/usbdesc/usbdesc_test.h>
#include <usb_devices/input.h>
#include <usb_rules/judge.h>

namespace usb_support::usbdesc {
namespace {

struct RuleTally {
  int kept = 0;
  int broken = 0;

  bool operator==(RuleTally const&) const = default;
};

using Tallies = std::map<std::string, RuleTally>;

std::filesystem::path RecordFile() {
  return SourceFolder() / "usb_rules" / "samples" / "captures.txt";
}

Tallies Recorded() {
  Tallies recorded;
  std::ifstream file(RecordFile());
  std::string rule;
  for (RuleTally tally; file >> rule >> tally.kept >> tally.broken;) {
    recorded[rule] = tally;
  }
  return recorded;
}

Tallies Found(std::filesystem::path const& folder) {
  Tallies found;
  for (auto const& entry : std::filesystem::directory_iterator(folder)) {
    if (!entry.is_directory()) {
      continue;
    }
    for (usb_devices::Device const& device : usb_devices::ReadInput(NameOf(entry.path())).devices) {
      DeviceSubject const subject(device, usb_rules::Speed::kUnknown);
      for (usb_rules::Verdict const& verdict : usb_rules::Judge(subject.Get()).verdicts) {
        RuleTally& tally = found[std::string(verdict.rule->id)];
        tally.kept += verdict.outcome == usb_rules::Outcome::kPass ? 1 : 0;
        tally.broken += verdict.outcome == usb_rules::Outcome::kFail ? 1 : 0;
      }
    }
  }
  std::erase_if(found, [](auto const& row) { return row.second == RuleTally{}; });
  return found;
}

TEST(RulesOverCaptures, AreKeptAndBrokenAsRecorded) {
  char const* const folder = std::getenv("USB_SUPPORT_CAPTURES_DIR");
  if (folder == nullptr || *folder == '\0') {
    GTEST_SKIP() << "USB_SUPPORT_CAPTURES_DIR is not set.";
  }
  Tallies const found = Found(folder);
  if (std::getenv("USB_RULES_UPDATE") != nullptr) {
    std::ofstream file(RecordFile(), std::ios::binary);
    for (auto const& [rule, tally] : found) {
      file << rule << ' ' << tally.kept << ' ' << tally.broken << '\n';
    }
  }
  Tallies const recorded = Recorded();
  for (auto const& [rule, tally] : found) {
    auto const row = recorded.find(rule);
    RuleTally const was = row != recorded.end() ? row->second : RuleTally{};
    EXPECT_EQ(tally, was) << rule << ": kept " << tally.kept << ", broken " << tally.broken
                          << "; recorded " << was.kept << ", " << was.broken;
  }
  for (auto const& [rule, tally] : recorded) {
    EXPECT_TRUE(found.contains(rule)) << rule << " applies to no capture any more";
  }
}

}  // namespace
}  // namespace usb_support::usbdesc

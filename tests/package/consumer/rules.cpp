#include <cstdint>
#include <cstdio>
#include <string>

#include <usb_rules/judge.h>

int main() {
  std::uint8_t const bytes[] = {9, 2, 18, 0, 1, 1, 0, 0x60, 50, 9, 4, 0, 0, 0, 0xFF, 0, 0, 0};
  usb_rules::Run const configuration{.bytes = bytes, .presence = usb_rules::Presence::kGiven};
  usb_rules::Subject subject;
  subject.configurations = {&configuration, 1};
  for (usb_rules::Verdict const& verdict : usb_rules::Judge(subject).verdicts) {
    for (usb_rules::Finding const& finding : verdict.findings) {
      std::string const id(verdict.rule->id);
      std::printf("%s: %s\n", id.c_str(), usb_rules::TextOf(finding).c_str());
    }
  }
}

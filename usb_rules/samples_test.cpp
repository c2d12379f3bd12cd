#include <gtest/gtest.h>

#include <usb_rules/judge.h>
#include <usb_rules/test_support/sample.h>

namespace usb_rules::test {
namespace {

TEST(Samples, KeepAllRules) {
  for (Sample const& original : AllSamples()) {
    Sample sample = original;
    for (Verdict const& verdict : Judge(sample.Get()).verdicts) {
      for (Finding const& finding : verdict.findings) {
        ADD_FAILURE() << sample.Name() << ": " << verdict.rule->id << ": " << finding.descriptor
                      << " at " << finding.offset << ": " << finding.field << " is "
                      << finding.value << ", expected " << finding.expected;
      }
    }
  }
}

}  // namespace
}  // namespace usb_rules::test

#include <usb_rules/catalogue.h>

#include <set>
#include <string_view>

#include <gtest/gtest.h>

#include <usb_rules/judge.h>

namespace usb_rules {
namespace {

TEST(Catalogue, HasOneRowARule) {
  std::set<std::string_view> ids;
  for (Rule const& rule : Catalogue()) {
    EXPECT_TRUE(ids.insert(rule.id).second) << rule.id;
    EXPECT_FALSE(rule.standard.empty()) << rule.id;
    EXPECT_FALSE(rule.section.empty()) << rule.id;
    EXPECT_TRUE(rule.sentence.ends_with('.')) << rule.id;
  }
  EXPECT_GE(ids.size(), 700u);
}

TEST(Catalogue, IsUnderstood) {
  for (Rule const& rule : Catalogue()) {
    EXPECT_EQ(CheckRule(rule), "");
  }
}

}  // namespace
}  // namespace usb_rules

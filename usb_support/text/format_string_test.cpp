#include <usb_support/text/format_string.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

#include <gtest/gtest.h>

#include <usb_support/status/return_code.h>
#include <usb_support/suite_interfaces/log_level.h>
#include <usb_support/suite_interfaces/test_status.h>

namespace usb_support {
namespace {

using format_check::Kind;
using format_check::KindOf;

enum class SmallEnum : unsigned char {};
enum class SignedEnum : int {};
enum class WideEnum : unsigned long long {};

static_assert(KindOf<char const*>() == Kind::kText);
static_assert(KindOf<char*>() == Kind::kText);
static_assert(KindOf<char const (&)[4]>() == Kind::kText);
static_assert(KindOf<char const* const&>() == Kind::kText);
static_assert(KindOf<unsigned char>() == Kind::kUnsigned);
static_assert(KindOf<unsigned short>() == Kind::kUnsigned);
static_assert(KindOf<unsigned int>() == Kind::kUnsigned);
static_assert(KindOf<unsigned int const&>() == Kind::kUnsigned);
static_assert(KindOf<int>() == Kind::kSigned);
static_assert(KindOf<RETURN_CODE>() == Kind::kUnsigned);
static_assert(KindOf<TEST_STATUS>() == Kind::kUnsigned);
static_assert(KindOf<ELogLevel>() == Kind::kUnsigned);
static_assert(KindOf<SmallEnum>() == Kind::kUnsigned);
static_assert(KindOf<SignedEnum>() == Kind::kSigned);

// What printf would read at another size or in another way than it is passed.
static_assert(KindOf<WideEnum>() == Kind::kUnsupported);
static_assert(KindOf<unsigned long long>() == Kind::kUnsupported);
static_assert(KindOf<long long>() == Kind::kUnsupported);
static_assert(KindOf<unsigned long>() == Kind::kUnsupported);
static_assert(KindOf<long>() == Kind::kUnsupported);
static_assert(KindOf<short>() == Kind::kUnsupported);
static_assert(KindOf<signed char>() == Kind::kUnsupported);
static_assert(KindOf<char>() == Kind::kUnsupported);
static_assert(KindOf<wchar_t>() == Kind::kUnsupported);
static_assert(KindOf<bool>() == Kind::kUnsupported);
static_assert(KindOf<double>() == Kind::kUnsupported);
static_assert(KindOf<void*>() == Kind::kUnsupported);
static_assert(KindOf<std::nullptr_t>() == Kind::kUnsupported);
static_assert(KindOf<unsigned char const*>() == Kind::kUnsupported);
static_assert(KindOf<wchar_t const*>() == Kind::kUnsupported);
static_assert(KindOf<std::string>() == Kind::kUnsupported);
static_assert(KindOf<std::string_view>() == Kind::kUnsupported);

constexpr Kind kText = Kind::kText;
constexpr Kind kUnsigned = Kind::kUnsigned;
constexpr Kind kSigned = Kind::kSigned;
constexpr Kind kUnsupported = Kind::kUnsupported;

template <typename... Kinds>
constexpr bool Fits(std::string_view format, Kinds... kinds) {
  Kind const list[] = {kinds..., Kind::kUnsupported};
  return format_check::Fits(format, list, sizeof...(kinds));
}

// The check is the compiler's own: what does not hold here does not compile as a format either.
static_assert(Fits(""));
static_assert(Fits("no conversion"));
static_assert(Fits("100%%"));
static_assert(Fits("%%%%"));
static_assert(Fits("%s", kText));
static_assert(Fits("%u", kUnsigned));
static_assert(Fits("%x", kUnsigned));
static_assert(Fits("%X", kUnsigned));
static_assert(Fits("%d", kSigned));
static_assert(Fits("%s%u%d", kText, kUnsigned, kSigned));
static_assert(Fits("%%%s%%", kText));
static_assert(Fits("0x%02X", kUnsigned));
static_assert(Fits("% 4Xh:  ", kUnsigned));
static_assert(Fits("%-10s|", kText));
static_assert(Fits("%+d", kSigned));
static_assert(Fits("%#x", kUnsigned));
static_assert(Fits("%-+ #05d", kSigned));
static_assert(Fits("%.3s", kText));
static_assert(Fits("%10.3s", kText));
static_assert(Fits("%.s", kText));
static_assert(Fits("%*s", kSigned, kText));
static_assert(Fits("%-*s", kSigned, kText));
static_assert(Fits("%*.2u", kSigned, kUnsigned));
static_assert(Fits("%s%s%s%s%s%s%s%s%s%s%s%s", kText, kText, kText, kText, kText, kText, kText,
                   kText, kText, kText, kText, kText));

static_assert(!Fits("%s"), "an argument is missing");
static_assert(!Fits("%s %s", kText), "an argument is missing");
static_assert(!Fits("%*s", kText), "the width is missing");
static_assert(!Fits("%*s", kSigned), "the text is missing");
static_assert(!Fits("", kText), "an argument is left");
static_assert(!Fits("%%", kText), "an argument is left");
static_assert(!Fits("%s", kText, kText), "an argument is left");
static_assert(!Fits("%s", kUnsigned), "a number is no text");
static_assert(!Fits("%s", kSigned), "a number is no text");
static_assert(!Fits("%u", kText), "a text is no number");
static_assert(!Fits("%x", kText), "a text is no number");
static_assert(!Fits("%X", kSigned), "the sign differs");
static_assert(!Fits("%u", kSigned), "the sign differs");
static_assert(!Fits("%d", kUnsigned), "the sign differs");
static_assert(!Fits("%d", kText), "a text is no number");
static_assert(!Fits("%*s", kUnsigned, kText), "the width is an int");
static_assert(!Fits("%*s", kText, kSigned), "the width comes first");
static_assert(!Fits("%s %u", kUnsigned, kText), "the order differs");
static_assert(!Fits("%s", kUnsupported), "no conversion takes this");
static_assert(!Fits("%u", kUnsupported), "no conversion takes this");
static_assert(!Fits("%", kText), "the conversion is cut short");
static_assert(!Fits("%"), "the conversion is cut short");
static_assert(!Fits("100%"), "the conversion is cut short");
static_assert(!Fits("%%%"), "the conversion is cut short");
static_assert(!Fits("%-", kText), "the conversion is cut short");
static_assert(!Fits("%5", kText), "the conversion is cut short");
static_assert(!Fits("%5.", kText), "the conversion is cut short");
static_assert(!Fits("%5.3", kText), "the conversion is cut short");
static_assert(!Fits("%*", kSigned), "the conversion is cut short");
static_assert(!Fits("%-%"), "a percent sign takes no flags");
static_assert(!Fits("%5%"), "a percent sign takes no width");
static_assert(!Fits("%.*s", kSigned, kText), "a precision is a number in the format");
static_assert(!Fits("%n", kSigned), "not a conversion of the library");
static_assert(!Fits("%p", kText), "not a conversion of the library");
static_assert(!Fits("%c", kSigned), "not a conversion of the library");
static_assert(!Fits("%i", kSigned), "not a conversion of the library");
static_assert(!Fits("%o", kUnsigned), "not a conversion of the library");
static_assert(!Fits("%f", kUnsupported), "not a conversion of the library");
static_assert(!Fits("%S", kText), "not a conversion of the library");
static_assert(!Fits("%lu", kUnsigned), "no size prefix");
static_assert(!Fits("%hhX", kUnsigned), "no size prefix");
static_assert(!Fits("%llu", kUnsigned), "no size prefix");
static_assert(!Fits("%zu", kUnsigned), "no size prefix");
static_assert(!Fits("%I64u", kUnsigned), "no size prefix");
static_assert(!Fits("%1$s", kText), "no positions");
static_assert(!Fits("%5$d", kSigned), "no positions");
static_assert(!Fits(std::string_view("a\0b", 3)), "printf would stop at the zero");
static_assert(!Fits(std::string_view("%s\0%s", 5), kText, kText), "printf would stop at the zero");

// A format is made from a literal only, and only at compile time.
static_assert(!std::is_constructible_v<FormatString<>, char const*>);
static_assert(!std::is_constructible_v<FormatString<>, std::string>);
static_assert(!std::is_constructible_v<FormatString<>, std::string_view>);
static_assert(!std::is_default_constructible_v<FormatString<>>);
static_assert(std::is_trivially_copyable_v<FormatString<char const*>>);
static_assert(
    std::is_same_v<FormatFor<unsigned, char const*>, FormatString<unsigned, char const*>>);

// The same check with formats that no compiler has seen: every single conversion character.
TEST(FormatStringCheck, KnowsFiveConversionCharacters) {
  for (unsigned value = 0; value < 256; ++value) {
    char const conversion = static_cast<char>(static_cast<unsigned char>(value));
    std::string const format = {'%', conversion};
    for (Kind const kind : {kText, kUnsigned, kSigned, kUnsupported}) {
      bool const expected =
          (conversion == 's' && kind == kText) || (conversion == 'u' && kind == kUnsigned) ||
          (conversion == 'x' && kind == kUnsigned) || (conversion == 'X' && kind == kUnsigned) ||
          (conversion == 'd' && kind == kSigned);
      EXPECT_EQ(Fits(format, kind), expected) << format << ' ' << static_cast<int>(kind);
    }
    EXPECT_EQ(Fits(format), conversion == '%') << format;
  }
}

TEST(FormatStringCheck, FindsTheFaultWhereverItStands) {
  std::string const good = "a %s b %u c %d d %% e %5X f";
  EXPECT_TRUE(Fits(good, kText, kUnsigned, kSigned, kUnsigned));
  for (std::size_t at = 0; at < good.size(); ++at) {
    std::string bad = good;
    bad.insert(at, "%n");
    EXPECT_FALSE(Fits(bad, kText, kUnsigned, kSigned, kUnsigned)) << bad;
  }
}

TEST(FormatString, KeepsTheLiteral) {
  constexpr FormatString<char const*, unsigned> format("%s=%u");
  EXPECT_STREQ(format.c_str(), "%s=%u");
  EXPECT_FALSE(format.empty());
  constexpr FormatString<> empty("");
  EXPECT_STREQ(empty.c_str(), "");
  EXPECT_TRUE(empty.empty());
}

TEST(FormatStringCheck, KnowsTheArgumentsThatPrintfReads) {
  // The compiler's answers once more, from the running program.
  EXPECT_EQ(KindOf<char const*>(), Kind::kText);
  EXPECT_EQ(KindOf<char*>(), Kind::kText);
  EXPECT_EQ(KindOf<char const(&)[4]>(), Kind::kText);
  EXPECT_EQ(KindOf<unsigned char>(), Kind::kUnsigned);
  EXPECT_EQ(KindOf<unsigned short>(), Kind::kUnsigned);
  EXPECT_EQ(KindOf<unsigned int>(), Kind::kUnsigned);
  EXPECT_EQ(KindOf<int>(), Kind::kSigned);
  EXPECT_EQ(KindOf<RETURN_CODE>(), Kind::kUnsigned);
  EXPECT_EQ(KindOf<SmallEnum>(), Kind::kUnsigned);
  EXPECT_EQ(KindOf<SignedEnum>(), Kind::kSigned);
  EXPECT_EQ(KindOf<WideEnum>(), Kind::kUnsupported);
  EXPECT_EQ(KindOf<double>(), Kind::kUnsupported);
}

TEST(FormatStringCheck, RefusesAZeroWhereverItStands) {
  std::string const good = "a %s b %% c";
  for (std::size_t at = 0; at <= good.size(); ++at) {
    std::string bad = good;
    bad.insert(at, 1, '\0');
    EXPECT_FALSE(Fits(bad, kText)) << at;
  }
}

}  // namespace
}  // namespace usb_support

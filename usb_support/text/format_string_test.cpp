#include <usb_support/text/format_string.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>

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

template <class... Args>
void ExpectKind(Kind kind) {
  ([kind] { EXPECT_EQ(KindOf<Args>(), kind) << typeid(Args).name(); }(), ...);
}

TEST(FormatStringCheck, KnowsTheKindsOfArguments) {
  ExpectKind<char const*, char*, char const(&)[4], char const* const&>(Kind::kText);
  ExpectKind<unsigned char, unsigned short, unsigned int, unsigned int const&, RETURN_CODE,
             TEST_STATUS, ELogLevel, SmallEnum>(Kind::kUnsigned);
  ExpectKind<int, SignedEnum>(Kind::kSigned);
  // Arguments that printf would read with another size or in another way than they are passed.
  ExpectKind<WideEnum, unsigned long long, long long, unsigned long, long, short, signed char, char,
             wchar_t, bool, double, void*, std::nullptr_t, unsigned char const*, wchar_t const*,
             std::string, std::string_view>(Kind::kUnsupported);
}

// Whether a format fits arguments: a text, an unsigned and a signed number, and what no conversion
// takes are written t, u, s and x.
constexpr bool Fits(std::string_view format, std::string_view arguments) {
  Kind kinds[16] = {};
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    kinds[i] = arguments[i] == 't'   ? Kind::kText
               : arguments[i] == 'u' ? Kind::kUnsigned
               : arguments[i] == 's' ? Kind::kSigned
                                     : Kind::kUnsupported;
  }
  return format_check::Fits(format, kinds, arguments.size());
}

// The compiler makes the check: a format that fails here does not compile either.
static_assert(Fits("%s%u%d", "tus"));
static_assert(!Fits("%s", "u"));

// A format is made from a literal only, and only at compile time.
static_assert(!std::is_constructible_v<FormatString<>, char const*>);
static_assert(!std::is_constructible_v<FormatString<>, std::string>);
static_assert(!std::is_constructible_v<FormatString<>, std::string_view>);
static_assert(!std::is_default_constructible_v<FormatString<>>);
static_assert(std::is_trivially_copyable_v<FormatString<char const*>>);
static_assert(
    std::is_same_v<FormatFor<unsigned, char const*>, FormatString<unsigned, char const*>>);

template <std::size_t Size>
struct Literal {
  char text[Size];
  consteval Literal(char const (&literal)[Size]) { std::ranges::copy(literal, text); }
};

// Whether FormatString<Args...> can be made from the literal.
template <Literal kFormat, typename... Args>
concept Compiles = requires {
  typename std::bool_constant<(FormatString<Args...>(kFormat.text), true)>;
};
static_assert(Compiles<"%s", char const*>);
static_assert(Compiles<"">);
static_assert(!Compiles<"%s", int>);
static_assert(!Compiles<"%s">);
static_assert(!Compiles<"", int>);

struct Row {
  char const* format;
  char const* arguments;
};

TEST(FormatStringCheck, AcceptsWhatFits) {
  for (Row const& row : {Row{"", ""},          Row{"no conversion", ""},
                         Row{"100%%", ""},     Row{"%%%%", ""},
                         Row{"%s%u%d", "tus"}, Row{"%x%X", "uu"},
                         Row{"%%%s%%", "t"},   Row{"0x%02X", "u"},
                         Row{"% 4Xh:  ", "u"}, Row{"%-10s|", "t"},
                         Row{"%+d", "s"},      Row{"%#x", "u"},
                         Row{"%-+ #05d", "s"}, Row{"%.3s", "t"},
                         Row{"%10.3s", "t"},   Row{"%.s", "t"},
                         Row{"%*s", "st"},     Row{"%-*s", "st"},
                         Row{"%*.2u", "su"},   Row{"%s%s%s%s%s%s%s%s%s%s%s%s", "tttttttttttt"}}) {
    EXPECT_TRUE(Fits(row.format, row.arguments)) << row.format;
  }
  EXPECT_TRUE(Fits("%1234567890.9876543210s", "t"));
}

TEST(FormatStringCheck, RefusesWhatDoesNotFit) {
  for (Row const& row :
       {// An argument is missing, or left.
        Row{"%s", ""}, Row{"%s %s", "t"}, Row{"%*s", "t"}, Row{"%*s", "s"}, Row{"", "t"},
        Row{"%%", "t"}, Row{"%s", "tt"},
        // The kinds or their order differ.
        Row{"%*s", "ut"}, Row{"%*s", "ts"}, Row{"%s %u", "ut"},
        // The conversion is cut short.
        Row{"%", "t"}, Row{"%", ""}, Row{"100%", ""}, Row{"%%%", ""}, Row{"%-", "t"},
        Row{"%5", "t"}, Row{"%5.", "t"}, Row{"%5.3", "t"}, Row{"%*", "s"},
        // A percent sign takes nothing, and a precision is a number in the format.
        Row{"%-%", ""}, Row{"%5%", ""}, Row{"%.*s", "st"},
        // No sizes, no positions.
        Row{"%lu", "u"}, Row{"%hhX", "u"}, Row{"%llu", "u"}, Row{"%zu", "u"}, Row{"%I64u", "u"},
        Row{"%1$s", "t"}, Row{"%5$d", "s"}}) {
    EXPECT_FALSE(Fits(row.format, row.arguments)) << row.format << ", " << row.arguments;
  }
}

TEST(FormatStringCheck, KnowsFiveConversions) {
  for (unsigned value = 0; value < 256; ++value) {
    char const conversion = static_cast<char>(static_cast<unsigned char>(value));
    std::string const format = {'%', conversion};
    for (char const kind : std::string_view("tusx")) {
      bool const expected = (conversion == 's' && kind == 't') ||
                            (conversion == 'd' && kind == 's') ||
                            (kind == 'u' && std::string_view("uxX").find(conversion) < 3);
      EXPECT_EQ(Fits(format, {&kind, 1}), expected) << format << ' ' << kind;
    }
    EXPECT_EQ(Fits(format, ""), conversion == '%') << format;
  }
}

TEST(FormatStringCheck, FindsTheFaultWhereverItIs) {
  std::string const good = "a %s b %u c %d d %% e %5X f";
  EXPECT_TRUE(Fits(good, "tusu"));
  for (std::size_t at = 0; at <= good.size(); ++at) {
    // An unknown conversion, and a zero, where printf would stop.
    for (std::string_view const fault : {std::string_view("%n"), std::string_view("\0", 1)}) {
      std::string bad = good;
      bad.insert(at, fault);
      EXPECT_FALSE(Fits(bad, "tusu")) << bad;
    }
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

}  // namespace
}  // namespace usb_support

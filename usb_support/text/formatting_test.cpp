#include <usb_support/text/formatting.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <tests/support/exact_bytes.h>
#include <tests/support/latch.h>
#include <tests/support/suite_test.h>
#include <usb_support/status/return_code.h>

namespace usb_support {
namespace {

using testing_support::Line;

constexpr CFormatInfo kOwnLook(TQColor{1, 2, 3, 4}, TEXT_STRENGTH_BOLD);

// Formats into a buffer of its own and gives the text, up to its first zero.
template <typename... Args>
std::string Formatted(FormatFor<Args...> format, Args... args) {
  CSimpleBuffer out;
  Format<Args...>(out, kDefaultIndentation, format, args...);
  return out.Contents();
}

class Formatting : public testing_support::SuiteTest {
 protected:
  std::string PassedThrough(basic_sv_wrapper<char> text) {
    LogWrite(CAppState::Log(), TEST_STATUS_PLAIN, text);
    return TakeCalls().at(0).text;
  }
};

TEST_F(Formatting, MessagesAreNotIndented) {
  EXPECT_EQ(kIndentationLevel, 0u);
  EXPECT_EQ(kDefaultIndentation.fill, ' ');
  EXPECT_EQ(kDefaultIndentation.count, 0u);
  EXPECT_EQ(Indentation{}.fill, '\0');
  EXPECT_EQ(Indentation{}.count, 0u);
}

TEST_F(Formatting, PrintsAsPrintfDoes) {
  char own[] = "own";
  EXPECT_EQ(Formatted("%s", static_cast<char*>(own)), "own");
  EXPECT_EQ(Formatted("[%8s|%-8s|%.2s|%6.3s]", "right", "left", "cut", "abcdef"),
            "[   right|left    |cu|   abc]");
  EXPECT_EQ(Formatted("%u %u", 0u, 4294967295u), "0 4294967295");
  EXPECT_EQ(Formatted("%u", static_cast<unsigned char>(255)), "255");
  EXPECT_EQ(Formatted("%u", static_cast<unsigned short>(65535)), "65535");
  EXPECT_EQ(Formatted("0x%08X %x %#x", 0xABCDEFu, 0xABCDEFu, 0x1Fu), "0x00ABCDEF abcdef 0x1f");
  EXPECT_EQ(Formatted("[%5u|%-5u|%05u]", 42u, 42u, 42u), "[   42|42   |00042]");
  EXPECT_EQ(Formatted("% 4Xh:  ", static_cast<unsigned short>(0x12)), "  12h:  ");
  EXPECT_EQ(Formatted("%d %+d", -2147483647 - 1, 7), "-2147483648 +7");
  EXPECT_EQ(Formatted("[%*s|%*s]", 5, "ab", -5, "ab"), "[   ab|ab   ]");
  EXPECT_EQ(Formatted("0x%08X 0x%08X %u", RC_STALL_ERROR, TEST_STATUS_FAILURE, LOG_LEVEL_6),
            "0x80004008 0x80000000 6");
  EXPECT_EQ(Formatted("%u%%", 50u), "50%");
  EXPECT_EQ(Formatted("(%s%s%s.%s.%s.%s.%s.%s.%s.%s.%s) %s", "A", ": ", "1", "2", "3", "4", "5",
                      "6", "7", "8", "9", "message"),
            "(A: 1.2.3.4.5.6.7.8.9) message");
}

// The content of an argument is never read as a format.
TEST_F(Formatting, LeavesConversionsInArgumentsAsTheyAre) {
  char const* const text = "%s%n%%%5$d100%";
  EXPECT_EQ(Formatted("%s", text), text);
  LogFormatted(CAppState::Log(), TEST_STATUS_PLAIN, "%s", text);
  EXPECT_THAT(TakeCalls(), testing::ElementsAre(Line(TEST_STATUS_PLAIN, 3, text)));
  EXPECT_RUN_TIME_EXCEPTION(Raise(TEST_STATUS_INTERNAL_ERROR, "%s", text), text, 0x40000000u);
}

TEST_F(Formatting, IndentsTheText) {
  struct IndentedRow {
    Indentation indentation;
    std::string text;
    std::string result;
  };
  CSimpleBuffer out;
  for (IndentedRow const& row :
       {IndentedRow{{'.', 3}, "x=5", "...x=5"}, IndentedRow{{' ', 0}, "a", "a"},
        IndentedRow{{' ', 0}, "", ""}, IndentedRow{{'-', 4}, "", "----"},
        IndentedRow{{'%', 2}, "s", "%%s"}, IndentedRow{{'\0', 2}, "ab", std::string("\0\0ab", 4)},
        IndentedRow{{' ', 1000},
                    std::string(3000, 'x'),
                    std::string(1000, ' ') + std::string(3000, 'x')}}) {
    Format(out, row.indentation, "%s", row.text.c_str());
    ASSERT_EQ(out.Size(), row.result.size() + 1);
    EXPECT_EQ(std::string(out.Contents(), out.Size()), row.result + '\0');
  }
  Format(out, Indentation{'>', 1}, "");
  EXPECT_STREQ(out.Contents(), ">");
}

// About as long as the buffer on the stack, and much longer.
TEST_F(Formatting, FreshBufferHoldsTextsOfEveryLength) {
  for (std::size_t length = 0; length <= 1100; ++length) {
    std::string const text(length, 'a');
    CSimpleBuffer out;
    Format(out, Indentation{'>', 1}, "%s", text.c_str());
    ASSERT_EQ(out.Contents(), ">" + text) << length;
    ASSERT_EQ(out.Size(), length + 2) << length;
  }
}

TEST_F(Formatting, ReusedBufferHoldsTextsOfEveryLength) {
  CSimpleBuffer out;
  for (std::size_t const length : std::initializer_list<std::size_t>{
           3, 511, 512, 513, 2000, 5, 1999, 2000, 2001, 0, 70000, 1, 69999, 70001}) {
    std::string const text(length, 'b');
    Format(out, Indentation{}, "%s", text.c_str());
    ASSERT_EQ(out.Contents(), text) << length;
    ASSERT_EQ(out.Size(), length + 1) << length;
    ASSERT_EQ(PassedThrough(text), text) << length;
  }
}

// An argument may point into the buffer that is set.
TEST_F(Formatting, ABufferMayBeItsArgument) {
  std::string const text(2000, 'd');
  CSimpleBuffer out;
  Format(out, Indentation{}, "%s", text.c_str());
  Format(out, Indentation{}, "<%s|%s>", out.Contents(), out.Contents());
  EXPECT_EQ(out.Contents(), "<" + text + "|" + text + ">");
}

TEST_F(Formatting, AnyThreadMayLog) {
  constexpr unsigned kThreads = 4;
  constexpr unsigned kLines = 200;
  testing_support::Latch start(kThreads);
  std::vector<std::thread> threads;
  for (unsigned thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([thread, &start] {
      std::string const text(50 + 400 * thread, static_cast<char>('a' + thread));
      start.ArriveAndWait();
      for (unsigned line = 0; line < kLines; ++line) {
        LogFormatted(CAppState::Log(), TEST_STATUS_PLAIN, "%u %u %s", thread, line, text.c_str());
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  std::vector<unsigned> next(kThreads, 0);
  std::vector<standalone::RecordedCall> const calls = TakeCalls();
  ASSERT_EQ(calls.size(), kThreads * kLines);
  for (standalone::RecordedCall const& call : calls) {
    auto const thread = static_cast<unsigned>(call.text.at(0) - '0');
    ASSERT_LT(thread, kThreads);
    EXPECT_EQ(call, Line(TEST_STATUS_PLAIN, 3,
                         std::to_string(thread) + " " + std::to_string(next[thread]) + " " +
                             std::string(50 + 400 * thread, static_cast<char>('a' + thread))));
    ++next[thread];
  }
}

TEST_F(Formatting, PassThroughHalvesPercentSigns) {
  for (auto const& [text, written] : std::initializer_list<std::pair<char const*, char const*>>{
           {"%%", "%"},
           {"%%%", "%%"},
           {"%%%%", "%%"},
           {"%%%%%", "%%%"},
           {"%%a%%", "%a%"},
           {"%%s", "%s"},
           {"% %", "% %"},
           {"", ""},
           {"two\nlines\n", "two\nlines\n"}}) {
    EXPECT_EQ(PassedThrough(text), written);
  }
  for (char const* const text : {"%", "100%", "%s", "%n", "%5$d", "%d %u %x %p", "%*.*s", "%ls",
                                 "%s%s%s%s%s%s%s%s%s%s", "%2147483648d", "%\n", "plain"}) {
    EXPECT_EQ(PassedThrough(text), text);
  }
  std::string all;
  for (int value = 1; value < 256; ++value) {
    all += static_cast<char>(static_cast<unsigned char>(value));
  }
  EXPECT_EQ(PassedThrough(all), all);
  // A text ends at its first zero, at the end of its view, or at once.
  EXPECT_EQ(PassedThrough(std::string_view("ab\0cd", 5)), "ab");
  EXPECT_EQ(PassedThrough(std::string_view("%\0%", 3)), "%");
  EXPECT_EQ(PassedThrough(std::string_view("a%%b%%", 5)), "a%b%");
  EXPECT_EQ(PassedThrough(std::string_view("a%%b%%", 2)), "a%");
  EXPECT_EQ(PassedThrough(basic_sv_wrapper<char>()), "");
  EXPECT_EQ(PassedThrough(basic_sv_wrapper<char>(static_cast<char const*>(nullptr))), "");
}

TEST_F(Formatting, LogWritePassesTheTextThrough) {
  TQLogger& logger = CAppState::Log();
  std::string const longText(100000, 'x');
  for (std::string const& text : {std::string("100%s"), longText, std::string()}) {
    LogWrite(logger, TEST_STATUS_PLAIN, text);
    LogWrite(logger, TEST_STATUS_PLAIN, LOG_LEVEL_6, kOwnLook, text);
    EXPECT_THAT(TakeCalls(), testing::ElementsAre(Line(TEST_STATUS_PLAIN, 3, text),
                                                  Line(TEST_STATUS_PLAIN, 6, text, kOwnLook)));
  }
}

struct StatusRow {
  std::uint32_t status;
  unsigned level;
};

constexpr StatusRow kStatusRows[] = {
    {0x00000000, 3}, {0x08000000, 2}, {0x20000000, 5}, {0x40000000, 0},
    {0x80000000, 1}, {0x00000001, 3}, {0x80000123, 1}, {0xFFFFFFFF, 0},
};

TEST_F(Formatting, DefaultLookIsNull) {
  TQLogger& logger = CAppState::Log();
  for (StatusRow const& row : kStatusRows) {
    auto const status = static_cast<TEST_STATUS>(row.status);
    CFormatInfo const look = logger.GetDefaultFormat(status);
    LogWrite(logger, status, "a");
    LogWrite(logger, status, LOG_LEVEL_4, look, "b");
    LogFormatted(logger, status, "%s", "c");
    LogFormatted(logger, status, LOG_LEVEL_4, look, "%s", "d");
    EXPECT_THAT(TakeCalls(),
                testing::ElementsAre(Line(status, row.level, "a"), Line(status, 4, "b"),
                                     Line(status, row.level, "c"), Line(status, 4, "d")));
  }
}

TEST_F(Formatting, EveryOtherLookIsHandedOn) {
  TQLogger& logger = CAppState::Log();
  CFormatInfo const plain = logger.GetDefaultFormat(TEST_STATUS_PLAIN);
  CFormatInfo const otherStrength(plain.Color(), TEXT_STRENGTH_BOLD);
  CFormatInfo const otherColour(TQColor{0, 0, 0, 0}, plain.Strength());
  ASSERT_NE(otherStrength, plain);
  ASSERT_NE(otherColour, plain);
  for (CFormatInfo const& look : {kOwnLook, otherStrength, otherColour}) {
    LogWrite(logger, TEST_STATUS_PLAIN, LOG_LEVEL_1, look, "a");
    LogFormatted(logger, TEST_STATUS_PLAIN, LOG_LEVEL_2, look, "%u", 1u);
    EXPECT_THAT(TakeCalls(), testing::ElementsAre(Line(TEST_STATUS_PLAIN, 1, "a", look),
                                                  Line(TEST_STATUS_PLAIN, 2, "1", look)));
  }
  // The default look of another status is not the default of this one.
  LogWrite(logger, TEST_STATUS_FAILURE, LOG_LEVEL_1, plain, "a");
  LogFormatted(logger, TEST_STATUS_FAILURE, LOG_LEVEL_1, plain, "b");
  EXPECT_THAT(TakeCalls(), testing::ElementsAre(Line(TEST_STATUS_FAILURE, 1, "a", plain),
                                                Line(TEST_STATUS_FAILURE, 1, "b", plain)));
}

TEST_F(Formatting, FormattedLineCountsOneMoreCall) {
  TQLogger& logger = CAppState::Log();
  LogWrite(logger, TEST_STATUS_PLAIN, "a");
  LogWrite(logger, TEST_STATUS_PLAIN, LOG_LEVEL_1, kOwnLook, "b");
  LogFormatted(logger, TEST_STATUS_PLAIN, "%s", "c");
  LogFormatted(logger, TEST_STATUS_PLAIN, LOG_LEVEL_1, kOwnLook, "%s", "d");
  std::vector<unsigned> depths;
  for (standalone::RecordedCall const& call : Sink().Take()) {
    depths.push_back(call.stackDepth);
  }
  EXPECT_THAT(depths, testing::ElementsAre(1u, 1u, 2u, 2u));
}

TEST_F(Formatting, WhatIsNotGivenIsTheStatussOwn) {
  TQLogger& logger = CAppState::Log();
  for (StatusRow const& row : kStatusRows) {
    auto const status = static_cast<TEST_STATUS>(row.status);
    LogWrite(logger, status, LOG_LEVEL_6, "a%%");
    LogFormatted(logger, status, LOG_LEVEL_6, "%u", 2u);
    LogWrite(logger, status, kOwnLook, "c%%");
    LogFormatted(logger, status, kOwnLook, "%u", 4u);
    EXPECT_THAT(TakeCalls(), testing::ElementsAre(Line(status, 6, "a%"), Line(status, 6, "2"),
                                                  Line(status, row.level, "c%", kOwnLook),
                                                  Line(status, row.level, "4", kOwnLook)));
  }
}

// While it takes a line, lets the library make other texts on the same thread.
class MeddlingSink : public standalone::LogSink {
 public:
  void Take(standalone::LogCall const& call) override {
    std::string const before(call.text);
    EXPECT_THROW(++CDescriptorRangeIterator(), TQRunTimeException);
    EXPECT_THROW(RaiseMessage(TEST_STATUS_FAILURE, "no arguments, as long as the line itself"),
                 TQRunTimeException);
    EXPECT_THROW(Raise(TEST_STATUS_FAILURE, "%s", "with an argument"), TQRunTimeException);
    CSimpleBuffer out;
    Format(out, Indentation{}, "%s, as long as the line itself", "another text");
    EXPECT_EQ(call.text, before);
    lines_.push_back(before);
  }

  std::vector<std::string> const& Lines() const { return lines_; }

 private:
  std::vector<std::string> lines_;
};

TEST_F(Formatting, LineIsUnchangedWhileItIsWritten) {
  auto const sink = std::make_shared<MeddlingSink>();
  standalone::AddLogSink(sink);
  TQLogger& logger = CAppState::Log();
  LogWrite(logger, TEST_STATUS_PLAIN, "a line that is passed through");
  LogWrite(logger, TEST_STATUS_PLAIN, LOG_LEVEL_1, kOwnLook, "a line with a look of its own");
  LogFormatted(logger, TEST_STATUS_PLAIN, "a line with %s", "an argument");
  std::string const longText(3000, 'l');
  LogFormatted(logger, TEST_STATUS_PLAIN, "%s", longText.c_str());
  CUsbHelper::OutputProgressMarker(0, 1, "read", 1);
  testing_support::ExactBytes const broken({0x00, 0x02});
  broken.Range().Count();
  EXPECT_THAT(
      sink->Lines(),
      testing::ElementsAre("a line that is passed through", "a line with a look of its own",
                           "a line with an argument", longText, ". ", " \n1 read", "", testing::_));
}

TEST_F(Formatting, RaiseFormatsItsMessage) {
  EXPECT_RUN_TIME_EXCEPTION(Raise(static_cast<TEST_STATUS>(0x80000001), "a %s %u", "b", 3u),
                            "a b 3", 0x80000001u);
  EXPECT_RUN_TIME_EXCEPTION(Raise(TEST_STATUS_PLAIN, "no arguments, 100%%"), "no arguments, 100%",
                            0u);
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(Formatting, RaiseMessagePassesItsMessageThrough) {
  EXPECT_RUN_TIME_EXCEPTION(RaiseMessage(TEST_STATUS_FAILURE, "%s %n 100%% %5$d"),
                            "%s %n 100% %5$d", 0x80000000u);
  std::string const text(5000, 'm');
  EXPECT_RUN_TIME_EXCEPTION(RaiseMessage(TEST_STATUS_PLAIN, text), text.c_str(), 0u);
  EXPECT_TRUE(TakeCalls().empty());
}

// The default status too, where there is no format.
TEST_F(Formatting, RaiseOfNothingHasTheDefaultMessage) {
  char const* const message = TQRunTimeException::RUN_TIME_EXCEPTION_DEFAULT_MSG;
  EXPECT_RUN_TIME_EXCEPTION(Raise(TEST_STATUS_FAILURE, ""), message, 0x40000000u);
  EXPECT_RUN_TIME_EXCEPTION(Raise(TEST_STATUS_FAILURE, "%s", ""), message, 0x80000000u);
  EXPECT_RUN_TIME_EXCEPTION(RaiseMessage(TEST_STATUS_FAILURE, ""), message, 0x40000000u);
  EXPECT_RUN_TIME_EXCEPTION(RaiseMessage(TEST_STATUS_FAILURE, basic_sv_wrapper<char>()), message,
                            0x40000000u);
}

TEST_F(Formatting, RaisedMessageStaysValid) {
  try {
    Raise(TEST_STATUS_FAILURE, "%s", "first");
    ADD_FAILURE() << "nothing thrown";
  } catch (TQRunTimeException const& first) {
    try {
      Raise(TEST_STATUS_FAILURE, "%s", "other");
      ADD_FAILURE() << "nothing thrown";
    } catch (TQRunTimeException const& second) {
      EXPECT_STREQ(second.what(), "other");
    }
    EXPECT_STREQ(first.what(), "first");
  }
}

#if defined(__GLIBC__)

// What this C library refuses to print. Others print such formats as well as they can.

constexpr char const* kRefused = "INTERNAL ERROR - std::vsprintf() failed.";

#define EXPECT_REFUSED(statement)                                    \
  do {                                                               \
    try {                                                            \
      statement;                                                     \
      ADD_FAILURE() << #statement " threw nothing";                  \
    } catch (std::runtime_error const& raised) {                     \
      EXPECT_STREQ(raised.what(), kRefused);                         \
      EXPECT_EQ(dynamic_cast<TQException const*>(&raised), nullptr); \
    }                                                                \
  } while (false)

TEST_F(Formatting, ThrowsWhenTheTextHasNoMultibyteForm) {
  // A lone surrogate has no form in the "C" locale that a test program starts in.
  wchar_t const text[] = {static_cast<wchar_t>(0xDC00), L'\0'};
  CSimpleBuffer out;
  format_detail::Print(out, Indentation{}, "%s", "kept");
  EXPECT_REFUSED(format_detail::Print(out, Indentation{}, "%ls", text));
  EXPECT_STREQ(out.Contents(), "kept");
}

// The compiler detects it.
#if !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-overflow"
#endif

TEST_F(Formatting, ThrowsForAHugeWidth) {
  CSimpleBuffer out;
  Format(out, Indentation{}, "%u", 1u);
  EXPECT_REFUSED(Format(out, Indentation{}, "%2147483648u", 1u));
  EXPECT_STREQ(out.Contents(), "1");
  EXPECT_REFUSED(LogFormatted(CAppState::Log(), TEST_STATUS_PLAIN, "%2147483648u", 1u));
  EXPECT_REFUSED(Raise(TEST_STATUS_FAILURE, "%2147483648u", 1u));
  EXPECT_TRUE(TakeCalls().empty());
  Format(out, Indentation{}, "%u", 2u);
  EXPECT_STREQ(out.Contents(), "2");
}

#if !defined(__clang__)
#pragma GCC diagnostic pop
#endif

#endif

}  // namespace
}  // namespace usb_support

// The bytes as assertion numbers and messages: the text in the log and in exceptions, with any
// percent signs and control characters.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <fuzz/oracle.h>
#include <fuzz/targets.h>
#include <tests/support/exact_bytes.h>
#include <usb_support/log/log_assert.h>
#include <usb_support/text/formatting.h>

namespace usb_support::fuzz {
namespace {

using standalone::LogOperation;
using standalone::RecordedCall;

// A text without arguments: "%%" becomes "%", any other percent sign stays.
std::string PassedThrough(std::string const& text) {
  std::string result;
  std::size_t at = 0;
  while (at < text.size()) {
    bool const isPair = text[at] == '%' && at + 1 < text.size() && text[at + 1] == '%';
    result += text[at];
    at += isPair ? 2 : 1;
  }
  return result;
}

// The part of a text that passes through a C interface.
std::string UpToZero(std::string const& text) {
  return text.c_str();
}

std::vector<std::string> SplitAtZeros(std::string const& text) {
  std::vector<std::string> parts(1);
  for (char const c : text) {
    if (c == '\0') {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

// A terminated text in a heap block of exactly its length.
class ExactText {
 public:
  explicit ExactText(std::string const& text) : block_(Terminated(text)) {}

  char const* c_str() const { return reinterpret_cast<char const*>(block_.data()); }

 private:
  static testing_support::Bytes Terminated(std::string const& text) {
    testing_support::Bytes bytes(text.begin(), text.end());
    bytes.push_back(0);
    return bytes;
  }

  testing_support::ExactBytes block_;
};

void RequireLine(RecordedCall const& call, TEST_STATUS status, std::string const& text) {
  Require(call.operation == LogOperation::kDoWrite, "a line");
  RequireEqual(static_cast<std::uint32_t>(call.type), static_cast<std::uint32_t>(status),
               "log type of a line");
  Require(call.stackDepth >= 1, "stack depth of a line");
  RequireEqual(call.text, text, "text of a line");
}

void CheckAssertion(Suite const& suite, TEST_STATUS status, std::size_t numberOfParts,
                    std::vector<std::string> const& texts) {
  auto const textAt = [&texts](std::size_t at) {
    return at < texts.size() ? texts[at] : std::string();
  };
  std::vector<ExactText> parts;
  for (std::size_t i = 0; i < numberOfParts; ++i) {
    parts.emplace_back(textAt(i));
  }
  ExactText const message(textAt(numberOfParts));

  TQAssertionNumbers numbers[2] = {};
  std::string expected = "(";
  for (std::size_t i = 0; i < numberOfParts; ++i) {
    numbers[1].parts[i] = parts[i].c_str();
    expected += (i == 0 ? "" : i == 1 ? ": " : ".") + textAt(i);
  }
  expected += ") " + textAt(numberOfParts);
  char const* const messages[2] = {nullptr, message.c_str()};
  LogAssert(status, 1, numbers, messages);

  std::uint32_t const severity = status & 0xC8000000u;
  std::vector<RecordedCall> const calls = suite.TakeCalls();
  RequireEqual(calls.size(), 2u, "calls of an assertion");
  RequireLine(calls[0], static_cast<TEST_STATUS>(severity == 0 ? 0x80000000u : severity), expected);
  Require(calls[1].operation == LogOperation::kFlushOutput && !calls[1].wait, "flush at the end");
}

void CheckPassThrough(Suite const& suite, TEST_STATUS status, std::string const& text) {
  testing_support::ExactBytes const block(testing_support::Bytes(text.begin(), text.end()));
  basic_sv_wrapper<char> const view(reinterpret_cast<char const*>(block.data()), text.size());
  std::string const expected = UpToZero(PassedThrough(text));
  TQLogger& log = CAppState::Log();

  LogWrite(log, status, view);
  CFormatInfo const look(TQColor{1, 2, 3, 4}, TEXT_STRENGTH_BOLD);
  LogWrite(log, status, LOG_LEVEL_5, look, view);
  std::vector<RecordedCall> const calls = suite.TakeCalls();
  RequireEqual(calls.size(), 2u, "lines of two messages");
  RequireLine(calls[0], status, expected);
  Require(!calls[0].format && calls[0].level == log.GetDefaultLogVerbosity(status),
          "default look and level");
  RequireLine(calls[1], status, expected);
  Require(calls[1].format == look && calls[1].level == LOG_LEVEL_5, "look and level as asked for");

  try {
    RaiseMessage(status, view);
  } catch (TQRunTimeException const& thrown) {
    RequireEqual(std::string(thrown.what()),
                 expected.empty() ? TQRunTimeException::RUN_TIME_EXCEPTION_DEFAULT_MSG : expected,
                 "thrown message");
    RequireEqual(static_cast<std::uint32_t>(thrown.Status()),
                 text.empty() ? 0x40000000u : static_cast<std::uint32_t>(status),
                 "status of a thrown message");
  }
  suite.ExpectNothingLogged();
}

// A text that is an argument is not changed.
void CheckArguments(Suite const& suite, TEST_STATUS status, std::string const& first,
                    std::string const& second) {
  ExactText const a(first);
  ExactText const b(second);
  LogFormatted(CAppState::Log(), status, "%s|%s%%d", a.c_str(), b.c_str());
  std::vector<RecordedCall> const calls = suite.TakeCalls();
  RequireEqual(calls.size(), 1u, "formatted lines");
  RequireLine(calls[0], status, first + "|" + second + "%d");
  std::size_t const indentation = first.size() % 7;
  CSimpleBuffer out;
  Format(out, Indentation{'.', indentation}, "%s", a.c_str());
  RequireEqual(std::string(out.Contents()), std::string(indentation, '.') + first, "text");
}

}  // namespace

// Bytes: number of parts, status (4), texts with zeros between them.
void Assertion(Input input) {
  constexpr std::size_t kFirst = 5;
  if (input.size() < kFirst || input.size() > 0xFFFF) {
    return;
  }
  Suite const suite;
  std::uint32_t status = 0;
  for (std::size_t i = 1; i < kFirst; ++i) {
    status = status << 8 | input[i];
  }
  auto const testStatus = static_cast<TEST_STATUS>(status);
  std::string const text = TextOf(input.subspan(kFirst));
  std::vector<std::string> const texts = SplitAtZeros(text);
  CheckAssertion(suite, testStatus, 1u + input[0] % 10u, texts);
  CheckPassThrough(suite, testStatus, text);
  CheckArguments(suite, testStatus, texts.front(), texts.back());
}

}  // namespace usb_support::fuzz

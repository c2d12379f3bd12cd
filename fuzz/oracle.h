// Used by every fuzz target: the checks that stop the program when the library's answer is not the
// expected one, and a suite in a known state.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fuzz/targets.h>
#include <standalone_suite/suite_runtime/log.h>
#include <standalone_suite/suite_runtime/log_sinks.h>
#include <standalone_suite/suite_runtime/settings.h>
#include <tests/property/model.h>
#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/fake_device/debug_capabilities.h>
#include <usb_support/helper/usb_helper.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/suite_interfaces/exceptions.h>

namespace usb_support::fuzz {

inline std::vector<unsigned char> BytesOf(Input input) {
  return {input.begin(), input.end()};
}

inline std::string TextOf(Input input) {
  return {input.begin(), input.end()};
}

/// Numbers, texts with their unprintable bytes escaped, pieces and lists of all of these.
template <std::integral T>
std::string Shown(T value) {
  return std::to_string(value);
}

inline std::string Shown(std::string_view text) {
  std::string shown = "\"";
  for (char const c : text) {
    auto const byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte > 0x7E) {
      shown += "\\x" + model::Hex(byte);
    } else {
      shown += c;
    }
  }
  return shown + '"';
}

inline std::string Shown(std::string const& text) {
  return Shown(std::string_view(text));
}

inline std::string Shown(model::Piece const& piece) {
  return std::to_string(piece.offset) + "+" + std::to_string(piece.length);
}

template <typename T>
std::string Shown(std::optional<T> const& value) {
  return value ? Shown(*value) : "nothing";
}

template <typename T>
std::string Shown(std::vector<T> const& values) {
  std::string shown = "{";
  for (T const& value : values) {
    shown += ' ' + Shown(value);
  }
  return shown + " }";
}

/// Reports the difference and stops the program.
[[noreturn]] inline void Fail(std::string const& what) {
  std::fprintf(stderr, "ORACLE: %s\n", what.c_str());
  std::fflush(stderr);
  std::abort();
}

inline void Require(bool holds, char const* what) {
  if (!holds) {
    Fail(std::string("not so: ") + what);
  }
}

template <typename Actual, typename Expected>
void RequireEqual(Actual const& actual, Expected const& expected, char const* what) {
  if (!(actual == expected)) {
    Fail(std::string(what) + "\n  is       " + Shown(actual) + "\n  expected " + Shown(expected));
  }
}

/// The text of the exception of `work`; empty when it throws nothing.
template <typename Work>
std::string Thrown(Work const& work) {
  try {
    work();
  } catch (TQRunTimeException const& thrown) {
    Require(thrown.Status() == TEST_STATUS_INTERNAL_ERROR, "status of what was thrown");
    return thrown.what();
  }
  return {};
}

/// The suite as a test program finds it, with a helper and one recording sink; the state of earlier
/// inputs is removed.
class Suite {
 public:
  Suite() {
    Clear();
    standalone::SetLogVerbosity(LOG_LEVEL_3);
    standalone::AddLogSink(sink_);
    InitUsbHelper(nullptr);
  }
  Suite(Suite const&) = delete;
  Suite& operator=(Suite const&) = delete;
  ~Suite() { Clear(); }

  /// The calls since the last query.
  std::vector<standalone::RecordedCall> TakeCalls() const { return sink_->Take(); }

  void ExpectNothingLogged() const { RequireEqual(TakeCalls().size(), 0u, "log lines"); }

  /// One message about an invalid range, nothing about a valid one.
  void ExpectLoggedValidity(bool isValid) const {
    std::vector<standalone::RecordedCall> const calls = TakeCalls();
    RequireEqual(calls.size(), isValid ? 0u : 1u, "log lines about the range");
    if (!isValid) {
      Require(calls[0].operation == standalone::LogOperation::kDoWritePrintOnly &&
                  calls[0].text.starts_with("Descriptor Range is not valid.\n"),
              "message about an invalid range");
    }
  }

 private:
  static void Clear() {
    standalone::RemoveAllLogSinks();
    standalone::ClearSettings();
    CAppState::Helper(nullptr);
    CUSBDebugCapabilities::CleanupUsbDebugCapabilities();
  }

  std::shared_ptr<standalone::RecordingSink> sink_ = std::make_shared<standalone::RecordingSink>();
};

/// The pieces of a block that ranges into it cover.
inline model::Piece PieceOf(unsigned char const* block, CDescriptorRange const& range) {
  return range.IsEmpty()
             ? model::Piece{}
             : model::Piece{static_cast<std::size_t>(range.Bytes() - block), range.Length()};
}

inline std::vector<model::Piece> PiecesOf(unsigned char const* block,
                                          CDescriptorRange::RangeVector const& ranges) {
  std::vector<model::Piece> pieces;
  for (CDescriptorRange const& range : *ranges) {
    pieces.push_back(PieceOf(block, range));
  }
  return pieces;
}

}  // namespace usb_support::fuzz

// The fixture of the tests that compare the library with the model over generated runs.
#pragma once

#include <cstddef>
#include <vector>

#include <gtest/gtest.h>

#include <tests/property/model.h>
#include <tests/property/run_generator.h>
#include <tests/support/exact_bytes.h>
#include <tests/support/suite_test.h>

namespace usb_support::property {

class PropertyTest : public testing_support::SuiteTest {
 protected:
  /// Checks every run, up to the first that fails.
  template <typename Check>
  void ForEachRun(std::vector<GeneratedRun> const& runs, Check const& check) {
    ASSERT_GT(runs.size(), 10000u);
    for (GeneratedRun const& run : runs) {
      SCOPED_TRACE(run.origin);
      check(run.bytes);
      if (HasFailure()) {
        ADD_FAILURE() << "bytes: "
                      << model::Joined(run.bytes, model::Piece{0, run.bytes.size()}, "", " ");
        return;
      }
    }
  }

  /// One message about an invalid range, nothing about a valid one.
  void ExpectLogged(bool isValid) {
    std::vector<standalone::RecordedCall> const calls = TakeCalls();
    ASSERT_EQ(calls.size(), isValid ? 0u : 1u);
    if (!isValid) {
      EXPECT_EQ(calls[0].operation, standalone::LogOperation::kDoWritePrintOnly);
      EXPECT_TRUE(calls[0].text.starts_with("Descriptor Range is not valid.\n")) << calls[0];
    }
  }
};

/// Where the ranges of a list are in the whole.
inline std::vector<model::Piece> PiecesOf(CDescriptorRange const& whole,
                                          CDescriptorRange::RangeVector const& ranges) {
  std::vector<model::Piece> pieces;
  for (auto const& [offset, length] : testing_support::PiecesOf(whole, ranges)) {
    pieces.push_back({offset, length});
  }
  return pieces;
}

}  // namespace usb_support::property

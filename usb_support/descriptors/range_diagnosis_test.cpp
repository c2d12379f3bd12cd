#include <usb_support/descriptors/range_diagnosis.h>

#include <cstddef>
#include <cstdint>

#include <gtest/gtest.h>

#include <tests/support/exact_bytes.h>

namespace usb_support {
namespace {

using testing_support::Bytes;
using testing_support::ExactBytes;
using testing_support::Hex;
using testing_support::MakeDescriptor;

void ExpectDiagnosis(Bytes const& bytes, RunEnd reason, unsigned offset, unsigned bytesLeft) {
  ExactBytes const block(bytes);
  CDescriptorRange const range = block.Range();
  RunDiagnosis const diagnosis = DiagnoseRun(range);
  EXPECT_EQ(diagnosis.reason, reason) << RunEndText(diagnosis.reason);
  EXPECT_EQ(diagnosis.offset, offset);
  EXPECT_EQ(diagnosis.bytesLeft, bytesLeft);
  EXPECT_EQ(diagnosis.offset, range.ValidUntil() - range.begin());
  EXPECT_EQ(diagnosis.reason == RunEnd::kComplete, range.Valid());
}

TEST(RangeDiagnosis, NamesTheFaultAndItsPlace) {
  ExpectDiagnosis({}, RunEnd::kComplete, 0, 0);
  ExpectDiagnosis(Hex("01"), RunEnd::kComplete, 1, 0);
  ExpectDiagnosis(MakeDescriptor(255, 0x24), RunEnd::kComplete, 255, 0);
  ExpectDiagnosis(Hex("00 04 01"), RunEnd::kZeroLength, 0, 3);
  ExpectDiagnosis(Hex("02 04 00 04 02 05"), RunEnd::kZeroLength, 2, 4);
  ExpectDiagnosis(Hex("02 04 00"), RunEnd::kZeroLength, 2, 1);
  ExpectDiagnosis(Hex("02 04 02"), RunEnd::kHeaderCutShort, 2, 1);
  ExpectDiagnosis(Hex("02 04 FF"), RunEnd::kHeaderCutShort, 2, 1);
  ExpectDiagnosis(Hex("02 04 03 05"), RunEnd::kPastEnd, 2, 2);
  ExpectDiagnosis(Hex("02 04 FF 05 00"), RunEnd::kPastEnd, 2, 3);
  Bytes bytes(65535, 1);
  ExpectDiagnosis(bytes, RunEnd::kComplete, 65535, 0);
  bytes[65533] = 3;
  ExpectDiagnosis(bytes, RunEnd::kPastEnd, 65533, 2);
  bytes[0] = 0;
  ExpectDiagnosis(bytes, RunEnd::kZeroLength, 0, 65535);
}

TEST(RangeDiagnosis, TextForEveryValue) {
  EXPECT_STREQ(RunEndText(RunEnd::kComplete), "complete");
  EXPECT_STREQ(RunEndText(RunEnd::kZeroLength), "zero length");
  EXPECT_STREQ(RunEndText(RunEnd::kHeaderCutShort), "header cut short");
  EXPECT_STREQ(RunEndText(RunEnd::kPastEnd), "past the end");
  for (unsigned value = 4; value < 256; ++value) {
    EXPECT_STREQ(RunEndText(static_cast<RunEnd>(value)), "unknown") << value;
  }
}

}  // namespace
}  // namespace usb_support

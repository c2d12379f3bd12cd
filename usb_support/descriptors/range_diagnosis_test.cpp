#include <usb_support/descriptors/range_diagnosis.h>

#include <cstddef>
#include <cstdint>

#include <gtest/gtest.h>

#include <tests/support/exact_bytes.h>

namespace usb_support {
namespace {

using testing_support::Bytes;
using testing_support::ExactBytes;
using testing_support::Joined;
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

TEST(RangeDiagnosis, EmptyRunIsComplete) {
  ExpectDiagnosis({}, RunEnd::kComplete, 0, 0);
}

TEST(RangeDiagnosis, WholeRunIsComplete) {
  ExpectDiagnosis(Joined({MakeDescriptor(18, 1), MakeDescriptor(9, 2)}), RunEnd::kComplete, 27, 0);
  ExpectDiagnosis({0x01}, RunEnd::kComplete, 1, 0);
  ExpectDiagnosis(MakeDescriptor(255, 0x24), RunEnd::kComplete, 255, 0);
  ExpectDiagnosis(Bytes(65535, 1), RunEnd::kComplete, 65535, 0);
}

TEST(RangeDiagnosis, ZeroLengthAtTheStart) {
  ExpectDiagnosis({0x00, 0x04, 0x01}, RunEnd::kZeroLength, 0, 3);
}

TEST(RangeDiagnosis, ZeroLengthInTheMiddle) {
  ExpectDiagnosis(Joined({MakeDescriptor(9, 2), {0x00, 0x04}, MakeDescriptor(7, 5)}),
                  RunEnd::kZeroLength, 9, 9);
}

TEST(RangeDiagnosis, ZeroLengthAsTheLastByteIsNoCutHeader) {
  ExpectDiagnosis(Joined({MakeDescriptor(9, 2), {0x00}}), RunEnd::kZeroLength, 9, 1);
}

TEST(RangeDiagnosis, OneByteOfALongerDescriptorIsACutHeader) {
  for (unsigned length = 2; length < 256; ++length) {
    ExpectDiagnosis(Joined({MakeDescriptor(9, 2), {static_cast<unsigned char>(length)}}),
                    RunEnd::kHeaderCutShort, 9, 1);
  }
}

TEST(RangeDiagnosis, DescriptorCutAtEveryLength) {
  Bytes const descriptor = MakeDescriptor(18, 1);
  for (std::size_t present = 2; present < 18; ++present) {
    Bytes bytes = MakeDescriptor(9, 2);
    bytes.insert(bytes.end(), descriptor.begin(),
                 descriptor.begin() + static_cast<std::ptrdiff_t>(present));
    ExpectDiagnosis(bytes, RunEnd::kPastEnd, 9, static_cast<unsigned>(present));
  }
}

TEST(RangeDiagnosis, FillsAllSixteenBits) {
  Bytes bytes(65535, 1);
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

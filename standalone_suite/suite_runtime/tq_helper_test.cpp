#include <usb_support/suite_interfaces/tq_helper.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

namespace {

using testing::IsEmpty;
using testing::Not;

class PlainHelper : public TQHelper {
 public:
  std::string FailMsg() { return ValidationFailMsg(nullptr); }
};

// The bytes are in a heap block of exactly their size.
class Bytes {
 public:
  Bytes(std::initializer_list<unsigned char> bytes)
      : count_(bytes.size()),
        bytes_(std::make_unique<unsigned char[]>(bytes.size())) {
    std::copy(bytes.begin(), bytes.end(), bytes_.get());
  }

  std::string AsString() const { return As(&TQHelper::BytesToString); }
  std::string AsCode() const { return As(&TQHelper::BytesToCode); }

 private:
  std::string As(decltype(&TQHelper::BytesToString) render) const {
    std::string text = "before";
    render(text, bytes_.get(), count_, false);
    return text;
  }

  std::size_t count_;
  std::unique_ptr<unsigned char[]> bytes_;
};

TEST(TqHelper, PointersAreValid) {
  PlainHelper helper;
  helper.EndFunction();
  EXPECT_TRUE(helper.ValidatePointers(false, TEST_STATUS_FAILURE));
  EXPECT_TRUE(helper.ValidatePointers(true, TEST_STATUS_INTERNAL_ERROR));
}

TEST(TqHelper, HasATextForFailedValidation) {
  EXPECT_THAT(PlainHelper().FailMsg(), Not(IsEmpty()));
}

TEST(BytesToString, GivesNothingForNoBytes) {
  EXPECT_EQ(Bytes({}).AsString(), "");
  std::string text = "before";
  TQHelper::BytesToString(text, nullptr, 0, false);
  EXPECT_EQ(text, "");
}

TEST(BytesToCode, GivesNothingForNoBytes) {
  EXPECT_EQ(Bytes({}).AsCode(), "");
  std::string text = "before";
  TQHelper::BytesToCode(text, nullptr, 0, false);
  EXPECT_EQ(text, "");
}

TEST(BytesRendering, ShowsEveryValue) {
  for (unsigned value = 0; value < 256; ++value) {
    char expected[8];
    std::snprintf(expected, sizeof expected, "%02X", value);
    Bytes const bytes{static_cast<unsigned char>(value)};
    EXPECT_EQ(bytes.AsString(), expected);
    EXPECT_EQ(bytes.AsCode(), std::string("0x") + expected);
  }
}

TEST(BytesRendering, ReusesTheStringsMemory) {
  unsigned char const bytes[4] = {1, 2, 3, 4};
  std::string text(100, 'x');
  char const* const start = text.data();
  TQHelper::BytesToString(text, bytes, 4, false);
  EXPECT_EQ(text, "01 02 03 04");
  EXPECT_EQ(text.data(), start);
  TQHelper::BytesToCode(text, bytes, 4, false);
  EXPECT_EQ(text, "0x01, 0x02, 0x03, 0x04");
  EXPECT_EQ(text.data(), start);
  TQHelper::BytesToCode(text, bytes, 0, false);
  EXPECT_EQ(text.data(), start);
}

TEST(BytesRendering, RefusesTheFlagOfTheSuite) {
  unsigned char const byte = 0;
  std::string text = "before";
  EXPECT_THROW(TQHelper::BytesToString(text, &byte, 1, true), std::invalid_argument);
  EXPECT_THROW(TQHelper::BytesToCode(text, &byte, 0, true), std::invalid_argument);
  EXPECT_EQ(text, "before");
}

TEST(BytesRendering, RefusesMoreThanATextCanHold) {
  unsigned char const byte = 0;
  std::string text;
  EXPECT_THROW(TQHelper::BytesToString(text, &byte, UINT64_MAX, false), std::length_error);
  EXPECT_THROW(TQHelper::BytesToCode(text, &byte, UINT64_MAX / 3, false), std::length_error);
}

}  // namespace

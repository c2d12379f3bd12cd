#include <usb_support/descriptors/read_record.h>

#include <cstddef>
#include <cstring>

#include <gtest/gtest.h>

#include <tests/support/exact_bytes.h>
#include <usb_support/descriptors/descriptor_range.h>

namespace usb_support {
namespace {

using testing_support::Bytes;
using testing_support::ExactBytes;

// The expected record of `size` bytes when only `bytes` exist.
Bytes ZeroPadded(Bytes bytes, std::size_t size) {
  bytes.resize(size);
  return bytes;
}

template <typename Record>
Bytes BytesOf(Record const& record) {
  Bytes bytes(sizeof(Record));
  std::memcpy(bytes.data(), &record, sizeof(Record));
  return bytes;
}

Bytes CountingUp(std::size_t size) {
  Bytes bytes;
  for (std::size_t at = 0; at < size; ++at) {
    bytes.push_back(static_cast<unsigned char>(0x81 + at));
  }
  return bytes;
}

template <typename Record>
void ExpectZeroBeyondEveryEnd() {
  for (std::size_t present = 0; present <= sizeof(Record) + 3; ++present) {
    SCOPED_TRACE(present);
    Bytes const bytes = CountingUp(present);
    ExactBytes const block(bytes);
    EXPECT_EQ(BytesOf(ReadRecord<Record>(block.At(0))), ZeroPadded(bytes, sizeof(Record)));
  }
}

TEST(ReadRecord, ReadsZeroBeyondTheRun) {
  ExpectZeroBeyondEveryEnd<TQ_USB_COMMON_DESCRIPTOR>();
  ExpectZeroBeyondEveryEnd<TQ_USB_CLASS_SPECIFIC_DESCRIPTOR>();
  ExpectZeroBeyondEveryEnd<TQ_USB_ENDPOINT_DESCRIPTOR>();
  ExpectZeroBeyondEveryEnd<TQ_USB_INTERFACE_DESCRIPTOR>();
  ExpectZeroBeyondEveryEnd<TQ_USB_DEVICE_DESCRIPTOR>();
  ExpectZeroBeyondEveryEnd<TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR>();
}

TEST(ReadByte, ReadsZeroBeyondTheRun) {
  for (std::size_t present = 0; present <= 4; ++present) {
    Bytes const bytes = CountingUp(present);
    ExactBytes const block(bytes);
    for (std::size_t offset = 0; offset <= 5; ++offset) {
      EXPECT_EQ(ReadByte(block.At(0), offset), offset < present ? bytes[offset] : 0)
          << present << ", " << offset;
    }
  }
}

TEST(ReadRecord, ReadsBeyondTheLengthInsideTheRun) {
  ExactBytes const block({0x02, 0x04, 0x03, 0x24, 0x06});
  auto const interface = ReadRecord<TQ_USB_INTERFACE_DESCRIPTOR>(block.At(0));
  EXPECT_EQ(BytesOf(interface), (Bytes{0x02, 0x04, 0x03, 0x24, 0x06, 0, 0, 0, 0}));
}

TEST(ReadRecord, StopsAtTheIteratorsEnd) {
  ExactBytes const block({0x09, 0x04, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77});
  CDescriptorRangeIterator const it(block.Descriptor(), 4);
  EXPECT_EQ(BytesOf(ReadRecord<TQ_USB_INTERFACE_DESCRIPTOR>(it)),
            (Bytes{0x09, 0x04, 0x11, 0x22, 0, 0, 0, 0, 0}));
}

TEST(ReadRecord, IsAllZeroAtTheEndAndOverNothing) {
  ExactBytes const block({0x02, 0x04});
  EXPECT_EQ(BytesOf(ReadRecord<TQ_USB_INTERFACE_DESCRIPTOR>(block.Range().end())), Bytes(9));
  EXPECT_EQ(BytesOf(ReadRecord<TQ_USB_INTERFACE_DESCRIPTOR>(CDescriptorRangeIterator())), Bytes(9));
}

TEST(HasType, AnswersForEveryType) {
  for (unsigned present = 0; present < 256; ++present) {
    ExactBytes const block({0x02, static_cast<unsigned char>(present)});
    for (unsigned asked = 0; asked < 256; ++asked) {
      EXPECT_EQ(HasType(block.At(0), static_cast<std::uint8_t>(asked)), asked == present)
          << asked << " in " << present;
    }
  }
}

TEST(HasType, NoneWithoutASecondByte) {
  ExactBytes const block({0x01});
  for (unsigned type = 0; type < 256; ++type) {
    EXPECT_FALSE(HasType(block.At(0), static_cast<std::uint8_t>(type))) << type;
    EXPECT_FALSE(HasType(block.At(1), static_cast<std::uint8_t>(type))) << type;
    EXPECT_FALSE(HasType(CDescriptorRangeIterator(), static_cast<std::uint8_t>(type))) << type;
  }
}

TEST(HasType, ReadsTheNextByteOfTheRun) {
  ExactBytes const block({0x01, 0x05});
  EXPECT_TRUE(HasType(block.At(0), 0x05));
  EXPECT_FALSE(HasType(block.At(0), 0x00));
}

}  // namespace
}  // namespace usb_support

#include <usb_support/descriptors/further_records.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/support/exact_bytes.h>
#include <usb_support/descriptors/class_codes.h>
#include <usb_support/descriptors/endpoint_fields.h>
#include <usb_support/descriptors/walk.h>

namespace usb_support {
namespace {

using testing::ElementsAre;
using testing_support::Bytes;
using testing_support::ExactBytes;

template <typename Record>
Record Read(Bytes const& bytes) {
  ExactBytes const block(bytes);
  return Descriptor(block.Range()).As<Record>();
}

// The offsets of the standards' tables.
static_assert(offsetof(SuperSpeedEndpointCompanionDescriptor, wBytesPerInterval) == 4);
static_assert(offsetof(SuperSpeedPlusIsochEndpointCompanionDescriptor, dwBytesPerInterval) == 4);
static_assert(offsetof(SuperSpeedPlusCapabilityDescriptor, bmAttributes) == 4);
static_assert(offsetof(SuperSpeedPlusCapabilityDescriptor, wFunctionalitySupport) == 8);
static_assert(offsetof(SuperSpeedPlusCapabilityDescriptor, bmSublinkSpeedAttr) == 12);
static_assert(offsetof(PlatformCapabilityDescriptor, PlatformCapabilityUUID) == 4);
static_assert(offsetof(BillboardCapabilityDescriptor, VCONNPower) == 6);
static_assert(offsetof(BillboardCapabilityDescriptor, bmConfigured) == 8);
static_assert(offsetof(BillboardCapabilityDescriptor, bcdVersion) == 40);
static_assert(offsetof(BillboardCapabilityDescriptor, bAdditionalFailureInfo) == 42);
static_assert(offsetof(HidDescriptor, bcdHID) == 2);
static_assert(offsetof(HidDescriptor, bClassDescriptorType) == 6);
static_assert(offsetof(HidDescriptor, wClassDescriptorLength) == 7);
static_assert(offsetof(CdcHeaderDescriptor, bcdCDC) == 3);
static_assert(offsetof(CdcUnionDescriptor, bControlInterface) == 3);
static_assert(offsetof(CdcUnionDescriptor, bSubordinateInterface) == 4);

TEST(FurtherRecords, ReadTheCompanionOfADiskWithStreams) {
  auto const companion =
      Read<SuperSpeedEndpointCompanionDescriptor>({0x06, 0x30, 0x0E, 0x05, 0x00, 0x00});
  EXPECT_EQ(MaxBurstPackets(companion), 15u);
  EXPECT_EQ(MaxStreams(companion), 32u);
  EXPECT_EQ(+companion.wBytesPerInterval, 0);
}

TEST(FurtherRecords, ReadTheCompanionsOfAnIsochronousEndpoint) {
  auto const plain =
      Read<SuperSpeedEndpointCompanionDescriptor>({0x06, 0x30, 0x0F, 0x02, 0x00, 0xC0});
  EXPECT_FALSE(HasSuperSpeedPlusCompanion(plain));
  EXPECT_EQ(MaxBurstPackets(plain), 16u);
  EXPECT_EQ(BurstsPerInterval(plain), 3u);
  EXPECT_EQ(+plain.wBytesPerInterval, 49152);
  auto const announcing =
      Read<SuperSpeedEndpointCompanionDescriptor>({0x06, 0x30, 0x0F, 0x80, 0x01, 0x00});
  EXPECT_TRUE(HasSuperSpeedPlusCompanion(announcing));
  auto const plus = Read<SuperSpeedPlusIsochEndpointCompanionDescriptor>(
      {0x08, 0x31, 0x00, 0x00, 0x00, 0x80, 0x01, 0x00});
  EXPECT_EQ(+plus.dwBytesPerInterval, 98304u);
}

TEST(FurtherRecords, ReadTheSuperSpeedPlusCapabilityOfAFrameGrabber) {
  auto const capability = Read<SuperSpeedPlusCapabilityDescriptor>(
      {0x14, 0x10, 0x0A, 0x00, 0x01, 0x00, 0x00, 0x00, 0x00, 0x11,
       0x00, 0x00, 0x30, 0x40, 0x0A, 0x00, 0xB0, 0x40, 0x0A, 0x00});
  EXPECT_EQ(capability.bDevCapabilityType, kSuperSpeedPlusCapability);
  EXPECT_EQ(+capability.bmAttributes, 1u);  // two sublink attributes
  EXPECT_EQ(+capability.wFunctionalitySupport, 0x1100);
  EXPECT_EQ(+capability.bmSublinkSpeedAttr[0], 0x000A4030u);  // 10 Gb/s
}

TEST(FurtherRecords, ReadThePlatformCapabilityOfATablet) {
  auto const capability = Read<PlatformCapabilityDescriptor>(
      {0x1C, 0x10, 0x05, 0x00, 0xDF, 0x60, 0xDD, 0xD8, 0x89, 0x45, 0xC7, 0x4C, 0x9C, 0xD2,
       0x65, 0x9D, 0x9E, 0x64, 0x8A, 0x9F, 0x00, 0x00, 0x03, 0x06, 0x48, 0x00, 0x04, 0x00});
  EXPECT_EQ(capability.bDevCapabilityType, kPlatformCapability);
  EXPECT_EQ(capability.PlatformCapabilityUUID[0], 0xDF);
  EXPECT_EQ(capability.PlatformCapabilityUUID[15], 0x9F);
}

// Made from the standard's table: one alternate mode, configured.
TEST(FurtherRecords, ReadABillboardCapability) {
  Bytes bytes(48);
  bytes[0] = 48;
  bytes[1] = 0x10;
  bytes[2] = 0x0D;
  bytes[3] = 5;
  bytes[4] = 1;
  bytes[6] = 0x00;
  bytes[7] = 0x80;
  bytes[8] = 0x03;
  bytes[40] = 0x22;
  bytes[41] = 0x01;
  bytes[42] = 0x02;
  auto const capability = Read<BillboardCapabilityDescriptor>(bytes);
  EXPECT_EQ(capability.bDevCapabilityType, kBillboardCapability);
  EXPECT_EQ(capability.iAddtionalInfoURL, 5);
  EXPECT_EQ(capability.bNumberOfAlternateOrUSB4Modes, 1);
  EXPECT_EQ(capability.bPreferredAlternateOrUSB4Mode, 0);
  EXPECT_EQ(+capability.VCONNPower, 0x8000);
  EXPECT_EQ(capability.bmConfigured[0], 3);
  EXPECT_EQ(+capability.bcdVersion, 0x0122);
  EXPECT_EQ(capability.bAdditionalFailureInfo, 2);
}

TEST(FurtherRecords, ReadTheHidDescriptorOfAKeyboard) {
  auto const hid = Read<HidDescriptor>({0x09, 0x21, 0x11, 0x01, 0x00, 0x01, 0x22, 0x3F, 0x00});
  EXPECT_EQ(hid.bDescriptorType, kHidType);
  EXPECT_EQ(+hid.bcdHID, 0x0111);
  EXPECT_EQ(hid.bCountryCode, 0);
  EXPECT_EQ(hid.bNumDescriptors, 1);
  EXPECT_EQ(hid.bClassDescriptorType, 0x22);
  EXPECT_EQ(+hid.wClassDescriptorLength, 63);
}

TEST(FurtherRecords, ReadTheHeaderAndUnionOfAModem) {
  auto const header = Read<CdcHeaderDescriptor>({0x05, 0x24, 0x00, 0x10, 0x01});
  EXPECT_EQ(header.bDescriptorSubtype, kCdcHeaderSubtype);
  EXPECT_EQ(+header.bcdCDC, 0x0110);
  auto const unionOf = Read<CdcUnionDescriptor>({0x05, 0x24, 0x06, 0x00, 0x01});
  EXPECT_EQ(unionOf.bDescriptorSubtype, kCdcUnionSubtype);
  EXPECT_EQ(unionOf.bControlInterface, 0);
  EXPECT_EQ(unionOf.bSubordinateInterface[0], 1);
}

// A webcam's isochronous endpoint: 3 x 1024 bytes in a microframe.
TEST(EndpointFields, AreThoseOfAHighSpeedWebcam) {
  auto const endpoint =
      Read<TQ_USB_ENDPOINT_DESCRIPTOR>({0x07, 0x05, 0x81, 0x05, 0x00, 0x14, 0x01});
  EXPECT_EQ(TransferTypeOf(endpoint), TransferType::kIsochronous);
  EXPECT_TRUE(IsIn(endpoint));
  EXPECT_EQ(EndpointNumber(endpoint), 1u);
  EXPECT_EQ(MaxPacketBytes(endpoint), 1024u);
  EXPECT_EQ(TransactionsPerMicroframe(endpoint), 3u);
}

TEST(EndpointFields, LeaveTheOtherBitsOut) {
  TQ_USB_ENDPOINT_DESCRIPTOR endpoint{};
  endpoint.bEndpointAddress = 0x7F;
  endpoint.bmAttributes = 0xFE;
  endpoint.wMaxPacketSize = 0xE7FF;
  EXPECT_EQ(TransferTypeOf(endpoint), TransferType::kBulk);
  EXPECT_FALSE(IsIn(endpoint));
  EXPECT_EQ(EndpointNumber(endpoint), 15u);
  EXPECT_EQ(MaxPacketBytes(endpoint), 2047u);
  EXPECT_EQ(TransactionsPerMicroframe(endpoint), 1u);
}

TEST(EndpointFields, GiveReservedValuesAsTheyAre) {
  TQ_USB_ENDPOINT_DESCRIPTOR endpoint{};
  endpoint.wMaxPacketSize = 0x1800;
  EXPECT_EQ(TransactionsPerMicroframe(endpoint), 4u);
  SuperSpeedEndpointCompanionDescriptor companion{};
  companion.bMaxBurst = 255;
  companion.bmAttributes = 0x1F;
  EXPECT_EQ(MaxBurstPackets(companion), 256u);
  EXPECT_EQ(MaxStreams(companion), 0x80000000u);
  EXPECT_EQ(BurstsPerInterval(companion), 4u);
  companion.bmAttributes = 0;
  EXPECT_EQ(MaxStreams(companion), 0u);
}

TEST(ClassCodes, AreThoseOfTheUsbIf) {
  constexpr std::array kCodes = {kPerInterfaceClass,
                                 kAudioClass,
                                 kCommunicationsClass,
                                 kHidClass,
                                 kPhysicalClass,
                                 kImageClass,
                                 kPrinterClass,
                                 kMassStorageClass,
                                 kHubClass,
                                 kCdcDataClass,
                                 kSmartCardClass,
                                 kContentSecurityClass,
                                 kVideoClass,
                                 kPersonalHealthcareClass,
                                 kAudioVideoClass,
                                 kBillboardClass,
                                 kTypeCBridgeClass,
                                 kBulkDisplayClass,
                                 kMctpClass,
                                 kI3cClass,
                                 kDiagnosticClass,
                                 kWirelessControllerClass,
                                 kMiscellaneousClass,
                                 kApplicationSpecificClass,
                                 kVendorSpecificClass};
  EXPECT_THAT(kCodes, ElementsAre(0x00, 0x01, 0x02, 0x03, 0x05, 0x06, 0x07, 0x08, 0x09, 0x0A, 0x0B,
                                  0x0D, 0x0E, 0x0F, 0x10, 0x11, 0x12, 0x13, 0x14, 0x3C, 0xDC, 0xE0,
                                  0xEF, 0xFE, 0xFF));
}

}  // namespace
}  // namespace usb_support

#include <usb_support/descriptors/further_records.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include <tests/support/exact_bytes.h>
#include <usb_support/descriptors/class_codes.h>
#include <usb_support/descriptors/endpoint_fields.h>
#include <usb_support/descriptors/walk.h>

namespace usb_support {
namespace {

using testing_support::Bytes;
using testing_support::ExactBytes;
using testing_support::Hex;

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

TEST(FurtherRecords, ReadTheCompanionOfADiskWithStreams) {
  auto const companion = Read<SuperSpeedEndpointCompanionDescriptor>(Hex("06 30 0E 05 00 00"));
  EXPECT_EQ(MaxBurstPackets(companion), 15u);
  EXPECT_EQ(MaxStreams(companion), 32u);
  EXPECT_EQ(+companion.wBytesPerInterval, 0);
}

TEST(FurtherRecords, ReadIsochronousCompanions) {
  auto const plain = Read<SuperSpeedEndpointCompanionDescriptor>(Hex("06 30 0F 02 00 C0"));
  EXPECT_FALSE(HasSuperSpeedPlusCompanion(plain));
  EXPECT_EQ(MaxBurstPackets(plain), 16u);
  EXPECT_EQ(BurstsPerInterval(plain), 3u);
  EXPECT_EQ(+plain.wBytesPerInterval, 49152);
  EXPECT_FALSE(HasSuperSpeedPlusCompanion(
      Read<SuperSpeedEndpointCompanionDescriptor>(Hex("06 30 0F 7F 01 00"))));
  auto const announcing = Read<SuperSpeedEndpointCompanionDescriptor>(Hex("06 30 0F 80 01 00"));
  EXPECT_TRUE(HasSuperSpeedPlusCompanion(announcing));
  auto const plus =
      Read<SuperSpeedPlusIsochEndpointCompanionDescriptor>(Hex("08 31 00 00 00 80 01 00"));
  EXPECT_EQ(+plus.dwBytesPerInterval, 98304u);
}

TEST(FurtherRecords, ReadASuperSpeedPlusCapability) {
  auto const capability = Read<SuperSpeedPlusCapabilityDescriptor>(
      Hex("14 10 0A 00 01 00 00 00 00 11 00 00 30 40 0A 00 B0 40 0A 00"));
  EXPECT_EQ(capability.bDevCapabilityType, kSuperSpeedPlusCapability);
  EXPECT_EQ(+capability.bmAttributes, 1u);  // two sublink attributes
  EXPECT_EQ(+capability.wFunctionalitySupport, 0x1100);
  EXPECT_EQ(+capability.bmSublinkSpeedAttr[0], 0x000A4030u);  // 10 Gb/s
}

TEST(FurtherRecords, ReadThePlatformCapabilityOfATablet) {
  auto const capability = Read<PlatformCapabilityDescriptor>(
      Hex("1C 10 05 00 DF 60 DD D8 89 45 C7 4C 9C D2 65 9D 9E 64 8A 9F 00 00 03 06 48 00 04 00"));
  EXPECT_EQ(capability.bDevCapabilityType, kPlatformCapability);
  EXPECT_EQ(capability.PlatformCapabilityUUID[0], 0xDF);
  EXPECT_EQ(capability.PlatformCapabilityUUID[15], 0x9F);
}

// Made from the standard's table: one alternate mode, configured.
TEST(FurtherRecords, ReadABillboardCapability) {
  Bytes const bytes =
      Hex("30 10 0D 05 01 00 00 80 03 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
          "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 22 01 02 00 00 00 00 00");
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
  auto const hid = Read<HidDescriptor>(Hex("09 21 11 01 00 01 22 3F 00"));
  EXPECT_EQ(hid.bDescriptorType, kHidType);
  EXPECT_EQ(+hid.bcdHID, 0x0111);
  EXPECT_EQ(hid.bCountryCode, 0);
  EXPECT_EQ(hid.bNumDescriptors, 1);
  EXPECT_EQ(hid.bClassDescriptorType, 0x22);
  EXPECT_EQ(+hid.wClassDescriptorLength, 63);
}

TEST(FurtherRecords, ReadTheHeaderAndUnionOfAModem) {
  auto const header = Read<CdcHeaderDescriptor>(Hex("05 24 00 10 01"));
  EXPECT_EQ(header.bDescriptorSubtype, kCdcHeaderSubtype);
  EXPECT_EQ(+header.bcdCDC, 0x0110);
  auto const unionOf = Read<CdcUnionDescriptor>(Hex("05 24 06 00 01"));
  EXPECT_EQ(unionOf.bDescriptorSubtype, kCdcUnionSubtype);
  EXPECT_EQ(unionOf.bControlInterface, 0);
  EXPECT_EQ(unionOf.bSubordinateInterface[0], 1);
}

// A webcam's isochronous endpoint: 3 x 1024 bytes in a microframe.
TEST(EndpointFields, AreThoseOfAHighSpeedWebcam) {
  auto const endpoint = Read<TQ_USB_ENDPOINT_DESCRIPTOR>(Hex("07 05 81 05 00 14 01"));
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

std::vector<unsigned> ListOf(auto... codes) {
  return {codes...};
}

TEST(ClassCodes, AreThoseOfTheUsbIf) {
  EXPECT_EQ(ListOf(kPerInterfaceClass, kAudioClass, kCommunicationsClass, kHidClass, kPhysicalClass,
                   kImageClass, kPrinterClass, kMassStorageClass, kHubClass, kCdcDataClass,
                   kSmartCardClass, kContentSecurityClass, kVideoClass, kPersonalHealthcareClass,
                   kAudioVideoClass, kBillboardClass, kTypeCBridgeClass, kBulkDisplayClass,
                   kMctpClass, kI3cClass, kDiagnosticClass, kWirelessControllerClass,
                   kMiscellaneousClass, kApplicationSpecificClass, kVendorSpecificClass),
            ListOf(0x00u, 0x01u, 0x02u, 0x03u, 0x05u, 0x06u, 0x07u, 0x08u, 0x09u, 0x0Au, 0x0Bu,
                   0x0Du, 0x0Eu, 0x0Fu, 0x10u, 0x11u, 0x12u, 0x13u, 0x14u, 0x3Cu, 0xDCu, 0xE0u,
                   0xEFu, 0xFEu, 0xFFu));
}

}  // namespace
}  // namespace usb_support

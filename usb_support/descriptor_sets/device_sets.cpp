#include <usb_support/descriptor_sets/device_sets.h>

#include <algorithm>
#include <cstddef>
#include <optional>

#include <usb_support/descriptors/walk.h>
#include <usb_support/fake_device/debug_capabilities.h>

namespace usb_support {
namespace {

// Both kinds of compound descriptor have their total at the same place.
using Header = TQ_USB_CONFIGURATION_DESCRIPTOR;
constexpr std::size_t kBytesUpToTotal = offsetof(Header, wTotalLength) + sizeof(std::uint16_t);
static_assert(kBytesUpToTotal ==
                  offsetof(TQ_USB_BOS_DESCRIPTOR, wTotalLength) + sizeof(std::uint16_t),
              "a BOS is read with the header of a configuration");

std::uint16_t HeaderLength(std::uint8_t type) noexcept {
  return type == kBosType ? sizeof(TQ_USB_BOS_DESCRIPTOR) : sizeof(Header);
}

// The fake descriptor with all that follows it, empty when there is none of this index; nothing
// when the device must be asked.
std::optional<CDescriptorRange> FakeCompound(std::uint8_t type, std::uint8_t index) {
  bool const isOtherSpeed = type == kOtherSpeedConfigurationType;
  std::uint8_t const switchType = isOtherSpeed ? kConfigurationType : type;
  if (!DebugCapNeedFakeDescriptor(switchType)) {
    return std::nullopt;
  }
  void const* const fake = switchType == kConfigurationType
                               ? DebugCapGetFakeConfigDesc(index, isOtherSpeed)
                               : static_cast<void const*>(DebugCapGetFakeDesc(type, index, 0));
  if (fake == nullptr) {
    return CDescriptorRange();
  }
  return RangeOver({static_cast<unsigned char const*>(fake),
                    std::size_t{static_cast<Header const*>(fake)->wTotalLength}});
}

// Descriptor `index` of a type, or none.
Descriptor DescriptorAt(CDescriptorRange const& descriptors, std::uint8_t type,
                        std::uint8_t index) noexcept {
  unsigned before = 0;
  for (Descriptor const d : Walk(descriptors, type)) {
    if (before++ == index) {
      return d;
    }
  }
  return {};
}

// The compound descriptor whose header is given, as far as its bytes exist; empty without a header.
CDescriptorRange CompoundFrom(CDescriptorRange const& descriptors, Descriptor const& header) {
  if (!header) {
    return {};
  }
  unsigned const total = std::max<unsigned>(header.As<Header>().wTotalLength, header.Length());
  unsigned const left = descriptors.Length() - unsigned{header.Offset()};
  return {header.Range().Bytes(), static_cast<unsigned short>(std::min(total, left))};
}

}  // namespace

RETURN_CODE DescriptorDevice::Request(std::uint8_t type, std::uint8_t index, std::uint16_t length,
                                      std::vector<unsigned char>& answer) {
  answer.clear();
  RETURN_CODE const result = GetDescriptor(type, index, length, answer);
  // More bytes than requested are the driver's or the device's fault, and not part of the answer.
  if (answer.size() > length) {
    answer.resize(length);
  }
  return result;
}

RETURN_CODE DescriptorDevice::ReadDeviceDescriptor(TQ_USB_DEVICE_DESCRIPTOR& descriptor) {
  if (DebugCapNeedFakeDescriptor(kDeviceType)) {
    descriptor = *GetUsbDebugCaps().GetDevDesc();
    return RC_SUCCESS;
  }
  std::vector<unsigned char> answer;
  RETURN_CODE const result = Request(kDeviceType, 0, sizeof(descriptor), answer);
  if (Failed(result)) {
    return result;
  }
  if (answer.empty()) {
    return RC_TRANSFER_INSUFFICIENT_DATA;
  }
  descriptor = ReadRecord<TQ_USB_DEVICE_DESCRIPTOR>(RangeOver(answer).begin());
  return result;
}

RETURN_CODE DescriptorDevice::ReadCompound(std::uint8_t type, std::uint8_t index,
                                           std::vector<unsigned char>& bytes) {
  if (std::optional<CDescriptorRange> const fake = FakeCompound(type, index)) {
    bytes.assign(fake->Bytes(), fake->Bytes() + fake->Length());
    return fake->IsEmpty() ? RC_STALL_ERROR : RC_SUCCESS;
  }
  RETURN_CODE const result = Request(type, index, HeaderLength(type), bytes);
  if (Failed(result)) {
    return result;
  }
  if (bytes.size() < kBytesUpToTotal) {
    return RC_TRANSFER_INSUFFICIENT_DATA;
  }
  std::uint16_t const total = ReadRecord<Header>(RangeOver(bytes).begin()).wTotalLength;
  // A total below the header asks for nothing more.
  return total <= bytes.size() ? result : Request(type, index, total, bytes);
}

CDescriptorRange ConfigurationAt(CDescriptorRange const& descriptors, std::uint8_t index) {
  return CompoundFrom(descriptors, DescriptorAt(descriptors, kConfigurationType, index));
}

CDescriptorRange BosAt(CDescriptorRange const& descriptors) {
  return CompoundFrom(descriptors, Find(descriptors, kBosType));
}

RETURN_CODE AnswerFrom(CDescriptorRange const& descriptors, std::uint8_t type, std::uint8_t index,
                       std::uint16_t length, std::vector<unsigned char>& answer) {
  Descriptor const found = DescriptorAt(descriptors, type, index);
  if (!found) {
    return RC_STALL_ERROR;
  }
  bool const isCompound =
      found.Is(kBosType) || found.Is(kConfigurationType) || found.Is(kOtherSpeedConfigurationType);
  CDescriptorRange const whole = isCompound ? CompoundFrom(descriptors, found) : found.Range();
  answer.assign(whole.Bytes(), whole.Bytes() + std::min(whole.Length(), length));
  return RC_SUCCESS;
}

}  // namespace usb_support

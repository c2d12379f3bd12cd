#include <usb_support/descriptor_sets/descriptor_set.h>

#include <algorithm>
#include <cstdint>

namespace {

// The number of held bytes from `address` on: 0 when it is not that of a held byte.
std::uint16_t HeldFrom(std::vector<unsigned char> const* held, void const* address) noexcept {
  if (held == nullptr) {
    return 0;
  }
  auto const offset =
      reinterpret_cast<std::uintptr_t>(address) - reinterpret_cast<std::uintptr_t>(held->data());
  return offset < held->size() ? static_cast<std::uint16_t>(held->size() - offset)
                               : std::uint16_t{0};
}

}  // namespace

template <typename T>
CDescriptorSet<T>::CDescriptorSet() = default;

template <typename T>
CDescriptorSet<T>::CDescriptorSet(CDescriptorSet const& other) : CDescriptorRange() {
  SetDescriptor(other.Bytes(), other.Length());
}

template <typename T>
CDescriptorSet<T>& CDescriptorSet<T>::operator=(CDescriptorSet const& other) {
  if (this != &other) {
    SetDescriptor(other.Bytes(), other.Length());
  }
  return *this;
}

template <typename T>
CDescriptorSet<T>::CDescriptorSet(CDescriptorSet&& other) : CDescriptorRange() {
  TakeBytesOf(other);
}

template <typename T>
CDescriptorSet<T>& CDescriptorSet<T>::operator=(CDescriptorSet&& other) {
  if (this != &other) {
    TakeBytesOf(other);
  }
  return *this;
}

template <typename T>
CDescriptorSet<T>::~CDescriptorSet() = default;

// Derived classes rely on the order: the target takes the bytes, the range is pointed at them, and
// only then the source's Reset() runs and releases its share of them.
template <typename T>
void CDescriptorSet<T>::TakeBytesOf(CDescriptorSet& source) {
  held_ = source.held_;
  SyncPointers(source.Length());
  source.Reset();
}

template <typename T>
void CDescriptorSet<T>::SetDescriptor(unsigned char const* const bytes, unsigned short length) {
  unsigned short const held = bytes != nullptr ? length : std::uint16_t{0};
  // The old bytes exist until the new ones are copied: the source may be among them.
  held_ = std::make_shared<std::vector<unsigned char>>(bytes, bytes + held);
  SyncPointers(held);
}

template <typename T>
void CDescriptorSet<T>::Reset() {
  held_.reset();
  CDescriptorRange::Reset(nullptr, 0);
}

template <typename T>
void CDescriptorSet<T>::Reset(void* const bytes, unsigned short length) {
  std::uint16_t const held = HeldFrom(held_.get(), bytes);
  if (held != 0 && length != 0) {
    CDescriptorRange::Reset(bytes, std::min(length, held));
  } else {
    SetDescriptor(static_cast<unsigned char const*>(bytes), length);
  }
}

template <typename T>
T const* CDescriptorSet<T>::Descriptor() const noexcept {
  return reinterpret_cast<T const*>(Bytes());
}

template <typename T>
bool CDescriptorSet<T>::Holds(void const* address) const noexcept {
  return HeldFrom(held_.get(), address) != 0;
}

template <typename T>
void CDescriptorSet<T>::SyncPointers(unsigned short length) {
  if (held_ == nullptr) {
    return CDescriptorRange::Reset(nullptr, 0);
  }
  CDescriptorRange::Reset(held_->data(),
                          std::min(length, static_cast<unsigned short>(held_->size())));
}

template <typename T>
RETURN_CODE CDescriptorSet<T>::DoReadDescriptor() {
  return RC_OPERATION_FAILED;
}

template <typename T>
CCompoundDescriptorSet<T>::CCompoundDescriptorSet() = default;

template <typename T>
CCompoundDescriptorSet<T>::CCompoundDescriptorSet(CCompoundDescriptorSet const& other) = default;

// The device descriptor is copied on self-assignment too, which changes nothing.
template <typename T>
CCompoundDescriptorSet<T>& CCompoundDescriptorSet<T>::operator=(
    CCompoundDescriptorSet const& other) = default;

// The base class has reset the source, so there is no device descriptor left to copy.
template <typename T>
CCompoundDescriptorSet<T>::CCompoundDescriptorSet(CCompoundDescriptorSet&& other) = default;

template <typename T>
CCompoundDescriptorSet<T>& CCompoundDescriptorSet<T>::operator=(CCompoundDescriptorSet&& other) =
    default;

template <typename T>
CCompoundDescriptorSet<T>::~CCompoundDescriptorSet() = default;

template <typename T>
void CCompoundDescriptorSet<T>::Reset() {
  CDescriptorSet<T>::Reset();
  ForgetDeviceDescriptor();
}

template <typename T>
void CCompoundDescriptorSet<T>::Reset(void* const bytes, unsigned short length) {
  bool const pointsIntoHeldBytes = length != 0 && this->Holds(bytes);
  CDescriptorSet<T>::Reset(bytes, length);
  if (!pointsIntoHeldBytes) {
    ForgetDeviceDescriptor();
  }
}

template <typename T>
RETURN_CODE CCompoundDescriptorSet<T>::DoGetDeviceDescriptor() {
  return RC_OPERATION_FAILED;
}

template <typename T>
void CCompoundDescriptorSet<T>::StoreDeviceDescriptor(
    TQ_USB_DEVICE_DESCRIPTOR const& descriptor) noexcept {
  deviceDescriptor_ = descriptor;
  hasDeviceDescriptor_ = true;
}

template <typename T>
bool CCompoundDescriptorSet<T>::HasDeviceDescriptor() const noexcept {
  return hasDeviceDescriptor_;
}

template <typename T>
TQ_USB_DEVICE_DESCRIPTOR const& CCompoundDescriptorSet<T>::DeviceDescriptor() const noexcept {
  return deviceDescriptor_;
}

template <typename T>
void CCompoundDescriptorSet<T>::ForgetDeviceDescriptor() noexcept {
  deviceDescriptor_ = {};
  hasDeviceDescriptor_ = false;
}

template class USB_SUPPORT_TEMPLATE_DEFINITION_API CDescriptorSet<TQ_USB_BOS_DESCRIPTOR>;
template class USB_SUPPORT_TEMPLATE_DEFINITION_API CDescriptorSet<TQ_USB_CONFIGURATION_DESCRIPTOR>;
template class USB_SUPPORT_TEMPLATE_DEFINITION_API CCompoundDescriptorSet<TQ_USB_BOS_DESCRIPTOR>;
template class USB_SUPPORT_TEMPLATE_DEFINITION_API
    CCompoundDescriptorSet<TQ_USB_CONFIGURATION_DESCRIPTOR>;

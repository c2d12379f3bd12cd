#include <usb_support/descriptor_sets/descriptor_set.h>

#include <algorithm>

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
  TakeBlockOf(other);
}

template <typename T>
CDescriptorSet<T>& CDescriptorSet<T>::operator=(CDescriptorSet&& other) {
  if (this != &other) {
    TakeBlockOf(other);
  }
  return *this;
}

template <typename T>
CDescriptorSet<T>::~CDescriptorSet() = default;

// Derived classes rely on the order: the target takes the block, the range is pointed at it, and
// only then the source's Reset() runs and releases its share of that block.
template <typename T>
void CDescriptorSet<T>::TakeBlockOf(CDescriptorSet& source) {
  block_ = source.block_;
  SyncPointers(source.Length());
  source.Reset();
}

template <typename T>
void CDescriptorSet<T>::SetDescriptor(unsigned char const* const bytes, unsigned short length) {
  // The old block exists until the new one is filled: the bytes may be in it.
  block_ = usb_support::CountedBlock(bytes, bytes != nullptr ? length : std::uint16_t{0});
  SyncPointers(length);
}

template <typename T>
void CDescriptorSet<T>::Reset() {
  block_ = {};
  CDescriptorRange::Reset(nullptr, 0);
}

template <typename T>
void CDescriptorSet<T>::Reset(void* const bytes, unsigned short length) {
  std::uint16_t const held = block_.LengthFrom(bytes);
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
  return block_.LengthFrom(address) != 0;
}

template <typename T>
void CDescriptorSet<T>::SyncPointers(unsigned short length) {
  CDescriptorRange::Reset(block_.Bytes(), std::min(length, block_.Length()));
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

// Descriptor sets: one descriptor as read from the device under test, in a copy that the set owns.
// The set is itself the range over that copy.
//
// A set is used by one thread at a time. Everything that CDescriptorRange offers works on the held
// bytes; nothing checks them. The test program reads from the device: it derives from a concrete
// set and overrides the Do... hooks, or fills the set with its own bytes.
//
// Reset(first, last) with `first` before `last` calls Reset(bytes, length), which points the range
// into the held bytes or, when the iterators walk other bytes, holds a copy of those. With an
// equal, reversed or null pair it calls Reset(): the set is empty.
//
// Filling makes the new copy before it releases the old one, so the bytes may come from the set
// itself; when there is no memory (std::bad_alloc), nothing has changed.
//
// Copy sets, do not move them. A move passes the bytes to the target and then calls the source's
// virtual Reset(), in this order, which a derived class may rely on. After a move the source is
// empty, and both sets may be destroyed, reset, copied and filled again. The target is not
// guaranteed to hold the bytes; treat it as empty until it is filled. The range of a set that was
// pointed to a part of its bytes is not kept. A compound set that is the target of a move has no
// device descriptor, because the source was reset before its device descriptor was copied.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/descriptors/records.h>
#include <usb_support/platform/export.h>
#include <usb_support/platform/lifetime.h>
#include <usb_support/status/return_code.h>

/// A descriptor of the record type T with the bytes that follow it, owned.
template <typename T>
class CDescriptorSet : public CDescriptorRange {
 public:
  using CDescriptorRange::Reset;

  /// An empty set.
  CDescriptorSet();

  /// A copy of the bytes that the other set's range covers.
  CDescriptorSet(CDescriptorSet const& other);
  /// The same; the set releases what it held before.
  CDescriptorSet& operator=(CDescriptorSet const& other);

  /// See the note on moving above. Throws what the source's Reset() throws.
  CDescriptorSet(CDescriptorSet&& other);
  /// The same; the set releases what it held before.
  CDescriptorSet& operator=(CDescriptorSet&& other);

  ~CDescriptorSet() override;

  /// Holds a copy of `length` bytes from `bytes`; with length 0 the set is empty. A device
  /// descriptor copy stays as it is.
  void SetDescriptor(unsigned char const* const bytes, unsigned short length);

  /// Releases the bytes.
  void Reset() override;

  /// As SetDescriptor; but a pointer into the held bytes, such as Reset(first, last) passes, only
  /// points the range there, at most to their end, and keeps everything else. With length 0 the
  /// bytes are released, whatever the pointer.
  void Reset(void* const bytes, unsigned short length) override;

  /// The held descriptor as its record, null when empty. Neither length nor type is checked.
  [[nodiscard]] T const* Descriptor() const noexcept USB_SUPPORT_LIFETIMEBOUND;

 protected:
  /// Points the range at the held bytes from their start, `length` of them at most, for a reader
  /// that has filled them in place.
  void SyncPointers(unsigned short length);

  /// Reads the descriptor from the device. The library's own implementation does nothing and
  /// returns RC_OPERATION_FAILED.
  virtual RETURN_CODE DoReadDescriptor();

  /// True when `address` is in the held bytes.
  bool Holds(void const* address) const noexcept;

 private:
  void TakeBytesOf(CDescriptorSet& source);

  // Shared only during a move: the source has them until its Reset().
  std::shared_ptr<std::vector<unsigned char>> held_;
};

/// A descriptor set whose descriptor spans others by a total length, with a copy of the device's
/// device descriptor.
template <typename T>
class CCompoundDescriptorSet : public CDescriptorSet<T> {
 public:
  using CDescriptorSet<T>::Reset;

  CCompoundDescriptorSet();

  /// Copies the device descriptor too.
  CCompoundDescriptorSet(CCompoundDescriptorSet const& other);
  /// The same; the set releases what it held before.
  CCompoundDescriptorSet& operator=(CCompoundDescriptorSet const& other);

  /// See the note on moving above: the target has no device descriptor.
  CCompoundDescriptorSet(CCompoundDescriptorSet&& other);
  /// The same; the set releases what it held before.
  CCompoundDescriptorSet& operator=(CCompoundDescriptorSet&& other);

  ~CCompoundDescriptorSet() override;

  /// Also forgets the device descriptor.
  void Reset() override;

  /// Also forgets the device descriptor, unless it only points the range into the held bytes.
  void Reset(void* const bytes, unsigned short length) override;

 protected:
  /// Reads the device descriptor from the device and stores it. The library's own implementation
  /// does nothing and returns RC_OPERATION_FAILED.
  virtual RETURN_CODE DoGetDeviceDescriptor();

  /// Keeps a copy of `descriptor`; for implementations of DoGetDeviceDescriptor.
  void StoreDeviceDescriptor(TQ_USB_DEVICE_DESCRIPTOR const& descriptor) noexcept;

  /// True when a device descriptor has been stored since the last reset.
  bool HasDeviceDescriptor() const noexcept;

  /// The stored device descriptor; all zero when there is none.
  [[nodiscard]] TQ_USB_DEVICE_DESCRIPTOR const& DeviceDescriptor() const noexcept
      USB_SUPPORT_LIFETIMEBOUND;

 private:
  void ForgetDeviceDescriptor() noexcept;

  TQ_USB_DEVICE_DESCRIPTOR deviceDescriptor_{};
  bool hasDeviceDescriptor_ = false;
};

// The library instantiates both templates for exactly these two records. Their members are defined
// in its source: MinGW exports no member that is defined inside the class, and an unoptimised
// program calls all of them.
extern template class USB_SUPPORT_TEMPLATE_API CDescriptorSet<TQ_USB_BOS_DESCRIPTOR>;
extern template class USB_SUPPORT_TEMPLATE_API CDescriptorSet<TQ_USB_CONFIGURATION_DESCRIPTOR>;
extern template class USB_SUPPORT_TEMPLATE_API CCompoundDescriptorSet<TQ_USB_BOS_DESCRIPTOR>;
extern template class USB_SUPPORT_TEMPLATE_API
    CCompoundDescriptorSet<TQ_USB_CONFIGURATION_DESCRIPTOR>;

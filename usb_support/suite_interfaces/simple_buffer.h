// The base support library's growable text buffer. A buffer that keeps its memory when it is filled
// again allocates nothing once it is large enough; the library relies only on the bytes of the last
// request.
#pragma once

#include <cstddef>

#include <usb_support/platform/export.h>

/// A block of bytes that grows on demand. Copying copies the bytes in use.
class BASE_SUPPORT_API CSimpleBuffer {
 public:
  CSimpleBuffer() noexcept = default;
  /// See above; a buffer that was moved from is empty. Copying throws std::bad_alloc.
  CSimpleBuffer(CSimpleBuffer const& other);
  CSimpleBuffer(CSimpleBuffer&& other) noexcept;
  CSimpleBuffer& operator=(CSimpleBuffer const& other);
  CSimpleBuffer& operator=(CSimpleBuffer&& other) noexcept;
  ~CSimpleBuffer();

  /// Makes the buffer `size` bytes long and returns its start. The bytes are undefined, and earlier
  /// pointers are invalid. Throws std::bad_alloc; nothing has changed then.
  char* GetBuffer(std::size_t size);

  /// The start of the bytes; the empty text when the buffer was never filled.
  char const* Contents() const noexcept;

  /// Bytes in use: the size of the last GetBuffer.
  std::size_t Size() const noexcept { return size_; }

 private:
  char* bytes_ = nullptr;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

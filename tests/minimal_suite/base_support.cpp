// A second base support library, as small as suite_interfaces/ allows. Its calls appear in the
// output of the program.
#include <cstdio>
#include <cstring>

#include <usb_support/suite_interfaces/exceptions.h>
#include <usb_support/suite_interfaces/format_info.h>
#include <usb_support/suite_interfaces/safe_string.h>
#include <usb_support/suite_interfaces/simple_buffer.h>
#include <usb_support/suite_interfaces/system.h>

TQException::TQException(basic_sv_wrapper<char> message, TEST_STATUS status)
    : std::runtime_error(std::string(message.view())),
      status_(status) {
}
TQException::TQException(TQException const&) noexcept = default;
TQException& TQException::operator=(TQException const&) noexcept = default;
TQException::~TQException() = default;

TQRunTimeException::TQRunTimeException(basic_sv_wrapper<char> message, TEST_STATUS status)
    : TQException(message, status) {
}
TQRunTimeException::TQRunTimeException(TQRunTimeException const&) noexcept = default;
TQRunTimeException& TQRunTimeException::operator=(TQRunTimeException const&) noexcept = default;
TQRunTimeException::~TQRunTimeException() = default;

CFormatInfo DefaultErrorFormat() {
  return CFormatInfo(TQColor{1, 2, 3, 4}, TEXT_STRENGTH_NORMAL);
}

CSafeString::CSafeString(char const* text) : text_(text == nullptr ? "" : text) {
}
CSafeString::CSafeString(basic_sv_wrapper<char> text) : text_(text.view()) {
}

CSimpleBuffer::CSimpleBuffer(CSimpleBuffer const& other) {
  *this = other;
}
CSimpleBuffer::CSimpleBuffer(CSimpleBuffer&& other) noexcept {
  *this = static_cast<CSimpleBuffer&&>(other);
}
CSimpleBuffer& CSimpleBuffer::operator=(CSimpleBuffer const& other) {
  if (this != &other && other.size_ != 0) {
    std::memcpy(GetBuffer(other.size_), other.bytes_, other.size_);
  } else if (this != &other) {
    size_ = 0;
  }
  return *this;
}
CSimpleBuffer& CSimpleBuffer::operator=(CSimpleBuffer&& other) noexcept {
  if (this != &other) {
    delete[] bytes_;
    bytes_ = other.bytes_;
    size_ = other.size_;
    capacity_ = other.capacity_;
    other.bytes_ = nullptr;
    other.size_ = 0;
    other.capacity_ = 0;
  }
  return *this;
}
CSimpleBuffer::~CSimpleBuffer() {
  delete[] bytes_;
}
// Different bytes at every request: nothing may depend on earlier contents.
char* CSimpleBuffer::GetBuffer(std::size_t size) {
  char* const bytes = new char[size];
  std::memset(bytes, '?', size);
  delete[] bytes_;
  bytes_ = bytes;
  size_ = size;
  capacity_ = size;
  return bytes_;
}
char const* CSimpleBuffer::Contents() const noexcept {
  return size_ == 0 ? "" : bytes_;
}

void SleepMicroSec(std::uint64_t microseconds) {
  std::printf("[sleep %u]\n", static_cast<unsigned>(microseconds));
}
CSafeString AppendToPath(basic_sv_wrapper<char> const& folder, basic_sv_wrapper<char> const& name) {
  std::string path(folder.view());
  path += '/';
  path += name.view();
  return CSafeString(path.c_str());
}
CSafeString GetUsbifJsonFolderPathName() {
  return CSafeString("no_such_folder");
}

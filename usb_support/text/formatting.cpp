#include <usb_support/text/formatting.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace {

// Of types without a destructor, so that they can still be used when the thread's other objects
// have been destroyed: static objects, older thread_local ones and the registered helper may log
// after that.
thread_local CSimpleBuffer* keptBuffer = nullptr;
thread_local bool threadEnds = false;
thread_local bool isLent = false;

struct KeptBufferOwner {
  ~KeptBufferOwner() {
    threadEnds = true;
    delete std::exchange(keptBuffer, nullptr);
  }
};

// The calling thread's buffer; null at the thread's end, when nothing could free it later.
CSimpleBuffer* KeptBuffer() {
  if (keptBuffer == nullptr && !threadEnds) {
    thread_local KeptBufferOwner const owner;
    keptBuffer = new CSimpleBuffer();
  }
  return keptBuffer;
}

void PassThrough(CSimpleBuffer& out, std::string_view text) {
  char* end = out.GetBuffer(text.size() + 1);
  std::size_t const plain = text.find('%') == text.npos ? text.size() : text.find('%');
  end += text.copy(end, plain);
  for (std::size_t at = plain; at < text.size(); ++at) {
    *end++ = text[at];
    if (text.substr(at, 2) == "%%") {
      ++at;
    }
  }
  *end = '\0';
}

void WritePassedThrough(TQLogger& logger, TEST_STATUS status,
                        usb_support::format_detail::LineStyle style,
                        basic_sv_wrapper<char> message) {
  usb_support::format_detail::LineBuffer line;
  PassThrough(line.Text(), message.view());
  Write(logger, status, style, line.Text().Contents());
}

}  // namespace

namespace usb_support {
namespace format_detail {

LineBuffer::LineBuffer() : text_(isLent ? nullptr : KeptBuffer()) {
  if (text_ != nullptr) {
    isLent = true;
  } else {
    text_ = &own_;
  }
}

LineBuffer::~LineBuffer() {
  if (text_ != &own_) {
    isLent = false;
  }
}

void Print(CSimpleBuffer& out, Indentation indentation, char const* format, ...) {
  // The buffer is requested once, with the exact size: a second request need not keep its bytes.
  char scratch[512];
  std::va_list arguments;
  va_start(arguments, format);
  int const printed = std::vsnprintf(scratch, sizeof(scratch), format, arguments);
  va_end(arguments);
  if (printed < 0) {
    throw std::runtime_error("INTERNAL ERROR - std::vsprintf() failed.");
  }
  std::size_t const size = static_cast<std::size_t>(printed) + 1;
  char* const start = out.GetBuffer(indentation.count + size);
  std::memset(start, indentation.fill, indentation.count);
  char* const text = start + indentation.count;
  if (size <= sizeof(scratch)) {
    std::memcpy(text, scratch, size);
  } else {
    va_start(arguments, format);
    std::vsnprintf(text, size, format, arguments);
    va_end(arguments);
  }
}

// The suite depends on the order of the calls: the logger is told of the library's frame first.
void Write(TQLogger& logger, TEST_STATUS status, LineStyle style, char const* text) {
  logger.IncrStackDepth();
  ELogLevel const level =
      style.level != nullptr ? *style.level : logger.GetDefaultLogVerbosity(status);
  CFormatInfo const defaultLook = logger.GetDefaultFormat(status);
  bool const isDefault = style.look == nullptr || *style.look == defaultLook;
  if (style.isFormatted) {
    // The formatting template is another frame of the library.
    logger.IncrStackDepth();
  }
  logger.DoWrite(LogTypeOf(status), level, isDefault ? nullptr : style.look, text);
}

void Throw(TEST_STATUS status, char const* text) {
  char const* const message =
      *text == '\0' ? TQRunTimeException::RUN_TIME_EXCEPTION_DEFAULT_MSG : text;
  throw TQRunTimeException(message, status);
}

}  // namespace format_detail

void LogWrite(TQLogger& logger, TEST_STATUS status, basic_sv_wrapper<char> message) {
  WritePassedThrough(logger, status, {}, message);
}

void LogWrite(TQLogger& logger, TEST_STATUS status, ELogLevel level,
              basic_sv_wrapper<char> message) {
  WritePassedThrough(logger, status, {.level = &level}, message);
}

void LogWrite(TQLogger& logger, TEST_STATUS status, CFormatInfo const& look,
              basic_sv_wrapper<char> message) {
  WritePassedThrough(logger, status, {.look = &look}, message);
}

void LogWrite(TQLogger& logger, TEST_STATUS status, ELogLevel level, CFormatInfo const& look,
              basic_sv_wrapper<char> message) {
  WritePassedThrough(logger, status, {.level = &level, .look = &look}, message);
}

void RaiseMessage(TEST_STATUS status, basic_sv_wrapper<char> message) {
  CSimpleBuffer text;
  PassThrough(text, message.view());
  format_detail::Throw(message.empty() ? TEST_STATUS_INTERNAL_ERROR : status, text.Contents());
}

}  // namespace usb_support

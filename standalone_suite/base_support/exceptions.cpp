#include <usb_support/suite_interfaces/exceptions.h>

#include <string>

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

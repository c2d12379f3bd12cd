#include <usb_support/helper/test_objects.h>

CDevice::CDevice() = default;
CDevice::CDevice(CDevice const&) = default;
CDevice& CDevice::operator=(CDevice const&) = default;
CDevice::~CDevice() = default;

CTestServices::CTestServices() = default;
CTestServices::CTestServices(CTestServices const&) = default;
CTestServices& CTestServices::operator=(CTestServices const&) = default;
CTestServices::~CTestServices() = default;

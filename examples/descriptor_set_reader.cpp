// Descriptor sets that read themselves from a device: what a test program derives from the
// library's sets, and what it can ask of them then.
//
//   descriptor_set_reader                 the built-in fake device
//   descriptor_set_reader DEVICE [BOS]    a device that was captured in these files: hexadecimal
//                                         bytes with # comments, as in examples/captures
//
// The device here is a file. A real test program puts its control transfers where this one looks
// into the file; all the rest stays as it is.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <standalone_suite/suite_runtime/log_sinks.h>
#include <standalone_suite/suite_runtime/settings.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/usb_support.h>

#include "hex_file.h"

namespace {

// The device under test. Its descriptors lie in the order in which they were captured.
class FileDevice final : public CDevice {
 public:
  explicit FileDevice(DescriptorBytes descriptors) : descriptors_(std::move(descriptors)) {}

  // GET_DESCRIPTOR: descriptor `index` of a type with `length` bytes of what follows it at most. A
  // device stalls when it has no such descriptor.
  RETURN_CODE GetDescriptor(unsigned char type, unsigned char index, unsigned short length,
                            DescriptorBytes& answer) const {
    CDescriptorRange const all = usb_support::RangeOver(descriptors_);
    CDescriptorRangeIterator const validEnd = all.ValidUntil();
    unsigned before = 0;
    for (CDescriptorRangeIterator it = all.begin(); it != validEnd; ++it) {
      if (usb_support::HasType(it, type) && before++ == index) {
        auto const* const first = reinterpret_cast<unsigned char const*>(it.operator->());
        answer.assign(first, first + std::min<std::uint64_t>(length, it.Remaining()));
        return RC_SUCCESS;
      }
    }
    return RC_STALL_ERROR;
  }

 private:
  DescriptorBytes descriptors_;
};

FileDevice& DeviceUnderTest() {
  return dynamic_cast<FileDevice&>(*UsbHelper().GetDevice());
}

// A descriptor of the device, or the library's own where the debug capabilities say so. The request
// for the header alone tells how much to ask for.
template <typename Header>
RETURN_CODE ReadCompound(unsigned char type, unsigned char index, DescriptorBytes& bytes) {
  if (DebugCapNeedFakeDescriptor(type)) {
    unsigned char const* const fake = DebugCapGetFakeDesc(type, index, 0);
    bytes.assign(fake, fake + reinterpret_cast<Header const*>(fake)->wTotalLength);
    return RC_SUCCESS;
  }
  RETURN_CODE const result = DeviceUnderTest().GetDescriptor(type, index, sizeof(Header), bytes);
  if (result != RC_SUCCESS) {
    return result;
  }
  // The device may have sent anything: its bytes are read through ReadRecord.
  auto const header = usb_support::ReadRecord<Header>(usb_support::RangeOver(bytes).begin());
  return DeviceUnderTest().GetDescriptor(type, index, header.wTotalLength, bytes);
}

RETURN_CODE ReadDeviceDescriptor(TQ_USB_DEVICE_DESCRIPTOR& descriptor) {
  if (DebugCapNeedFakeDescriptor(usb_support::kDeviceType)) {
    descriptor = *GetUsbDebugCaps().GetDevDesc();
    return RC_SUCCESS;
  }
  DescriptorBytes bytes;
  RETURN_CODE const result =
      DeviceUnderTest().GetDescriptor(usb_support::kDeviceType, 0, sizeof descriptor, bytes);
  if (result == RC_SUCCESS) {
    descriptor =
        usb_support::ReadRecord<TQ_USB_DEVICE_DESCRIPTOR>(usb_support::RangeOver(bytes).begin());
  }
  return result;
}

// A configuration that reads itself: the set says which one, by ConfigIndex() and OtherSpeed().
class Configuration final : public CConfigDescriptorSet {
 public:
  using CConfigDescriptorSet::CConfigDescriptorSet;

  RETURN_CODE Read() {
    RETURN_CODE const result = DoReadDescriptor();
    return result == RC_SUCCESS ? DoGetDeviceDescriptor() : result;
  }

  unsigned short Vendor() const { return DeviceDescriptor().idVendor; }

 protected:
  RETURN_CODE DoReadDescriptor() override {
    unsigned char const type =
        OtherSpeed() ? usb_support::kOtherSpeedConfigurationType : usb_support::kConfigurationType;
    DescriptorBytes bytes;
    RETURN_CODE const result =
        ReadCompound<TQ_USB_CONFIGURATION_DESCRIPTOR>(type, ConfigIndex(), bytes);
    if (result == RC_SUCCESS) {
      SetDescriptor(bytes.data(), static_cast<unsigned short>(bytes.size()));
    }
    return result;
  }

  RETURN_CODE DoGetDeviceDescriptor() override {
    TQ_USB_DEVICE_DESCRIPTOR descriptor{};
    RETURN_CODE const result = ReadDeviceDescriptor(descriptor);
    if (result == RC_SUCCESS) {
      StoreDeviceDescriptor(descriptor);
    }
    return result;
  }
};

// A BOS that reads itself.
class Bos final : public CBOSDescriptorSet {
 public:
  RETURN_CODE Read() {
    RETURN_CODE const result = DoReadDescriptor();
    return result == RC_SUCCESS ? DoGetDeviceDescriptor() : result;
  }

 protected:
  RETURN_CODE DoReadDescriptor() override {
    DescriptorBytes bytes;
    RETURN_CODE const result = ReadCompound<TQ_USB_BOS_DESCRIPTOR>(usb_support::kBosType, 0, bytes);
    if (result == RC_SUCCESS) {
      SetDescriptor(bytes.data(), static_cast<unsigned short>(bytes.size()));
    }
    return result;
  }

  RETURN_CODE DoGetDeviceDescriptor() override {
    TQ_USB_DEVICE_DESCRIPTOR descriptor{};
    RETURN_CODE const result = ReadDeviceDescriptor(descriptor);
    if (result == RC_SUCCESS) {
      StoreDeviceDescriptor(descriptor);
    }
    return result;
  }
};

void Say(std::string const& line) {
  usb_support::LogWrite(CAppState::Log(), TEST_STATUS_PLAIN, line);
}

std::string Hex(unsigned value) {
  CSimpleBuffer text;
  usb_support::Format(text, usb_support::kDefaultIndentation, "0x%04X", value);
  return text.Contents();
}

bool ShowConfiguration() {
  Configuration configuration(0);
  RETURN_CODE const result = configuration.Read();
  if (result != RC_SUCCESS) {
    Say("The configuration cannot be read:");
    PrintErrorDetail(result, TEST_STATUS_FAILURE);
    return false;
  }
  CDescriptorRange::RangeVector const functions = configuration.GetFunctionList();
  Say("Vendor " + Hex(configuration.Vendor()) + ", " + std::to_string(functions->size()) +
      " function(s), " + std::to_string(configuration.GetInterfaceList()->size()) +
      " interface(s)");
  for (CDescriptorRange const& function : *functions) {
    TQHelper_LogDescriptor(function, "Function");
    Say(std::to_string(function.Count(usb_support::kEndpointType)) + " endpoint(s), " +
        std::to_string(function.Count(usb_support::kClassSpecificInterfaceType)) +
        " class-specific interface descriptor(s)");
  }
  return configuration.Valid();
}

bool ShowBos() {
  Bos bos;
  RETURN_CODE const result = bos.Read();
  if (result != RC_SUCCESS) {
    Say("The BOS cannot be read:");
    PrintErrorDetail(result, TEST_STATUS_FAILURE);
    return false;
  }
  auto const [isKnown, release] = bos.BcdUsb();
  Say("\nBOS of a device of USB release " + (isKnown ? Hex(release) : std::string("unknown")) +
      ", " + std::to_string(bos.Count(usb_support::kDeviceCapabilityType)) + " capabilities");
  // The set's own accessors answer for an empty set only; the finders find.
  CDescriptorRange const superSpeed =
      usb_support::FindCapability(bos, usb_support::kSuperSpeedCapability);
  if (!superSpeed.IsEmpty()) {
    auto const capability =
        usb_support::ReadRecord<TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR>(
            superSpeed.begin());
    TQHelper_LogDescriptor(superSpeed, "SuperSpeed capability");
    Say("Speeds supported: " + Hex(capability.wSpeedsSupported));
  }
  return bos.Valid();
}

int Run(int argc, char** argv) {
  DescriptorBytes captured;
  for (int i = 1; i < argc; ++i) {
    DescriptorBytes const bytes = ReadHexFile(argv[i]);
    captured.insert(captured.end(), bytes.begin(), bytes.end());
  }

  namespace suite = usb_support::standalone;
  suite::AddLogSink(std::make_shared<suite::ConsoleSink>(stdout));
  suite::SetSetting("NoUsbInteraction", captured.empty());
  FileDevice device(std::move(captured));
  CTestServices services;
  UsbTqPointers pointers{&services, &device};
  InitUsbHelper(&pointers);
  CUSBDebugCapabilitiesJanitor const debugCapabilities(true);

  bool const hasBos = argc != 2;  // one file is a device without a BOS
  bool const isGood = ShowConfiguration() && (!hasBos || ShowBos());
  return isGood ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (std::exception const& error) {
    std::fprintf(stderr, "descriptor_set_reader: %s\n", error.what());
  }
  return EXIT_FAILURE;
}

#include <usb_devices/live.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <system_error>
#include <utility>

#include <usb_devices/characters.h>
#include <usb_devices/control_reader.h>
#include <usb_devices/files.h>
#include <usb_devices/folder.h>
#include <usb_devices/read_error.h>

#if defined(USB_DEVICES_HAS_LIBUSB)
#include <libusb.h>
#endif

namespace usb_devices {
namespace {

constexpr std::string_view kPrefix = "usb:";

}  // namespace

bool IsLiveName(std::string_view name) noexcept {
  return name.starts_with(kPrefix);
}

#if defined(USB_DEVICES_HAS_LIBUSB)

namespace {

constexpr unsigned kTimeout = 1000;              // milliseconds
constexpr std::uint16_t kMostOfTransfer = 4096;  // libusb refuses longer control transfers on Linux
constexpr std::string_view kSysfs = "/sys/bus/usb/devices/";

using Library = std::unique_ptr<libusb_context, decltype(&libusb_exit)>;
using Handle = std::unique_ptr<libusb_device_handle, decltype(&libusb_close)>;

Library OpenLibrary() {
  libusb_context* context = nullptr;
  int const error = libusb_init(&context);
  if (error != 0) {
    throw ReadError({}, std::string("the USB devices of this system cannot be listed: ") +
                            libusb_strerror(error));
  }
  return {context, libusb_exit};
}

Speed SpeedOfDevice(libusb_device* device) {
  switch (libusb_get_device_speed(device)) {
    case LIBUSB_SPEED_LOW:
      return Speed::kLow;
    case LIBUSB_SPEED_FULL:
      return Speed::kFull;
    case LIBUSB_SPEED_HIGH:
      return Speed::kHigh;
    case LIBUSB_SPEED_SUPER:
      return Speed::kSuper;
    case LIBUSB_SPEED_SUPER_PLUS:
      return Speed::kSuperPlus;
    default:
      return Speed::kUnknown;
  }
}

std::string PortName(libusb_device* device) {
  std::array<std::uint8_t, 7> ports{};  // a longer chain is not allowed (USB 3.2, 10.1)
  int const count = libusb_get_port_numbers(device, ports.data(), static_cast<int>(ports.size()));
  std::string name = std::string(kPrefix) + std::to_string(libusb_get_bus_number(device));
  for (int i = 0; i < count; ++i) {
    name += (i == 0 ? "-" : ".") + std::to_string(ports[static_cast<std::size_t>(i)]);
  }
  return count > 0 ? name : name + "-0";
}

struct Plugged {
  LiveDevice live;
  libusb_device* device;
};

// The devices that are plugged in. They are valid as long as the Bus exists.
class Bus {
 public:
  Bus() : library_(OpenLibrary()) {
    auto const count = libusb_get_device_list(library_.get(), &list_);
    if (count < 0) {
      throw ReadError({}, std::string("the USB devices of this system cannot be listed: ") +
                              libusb_strerror(static_cast<int>(count)));
    }
    for (libusb_device* const device : std::span(list_, static_cast<std::size_t>(count))) {
      libusb_device_descriptor descriptor{};
      libusb_get_device_descriptor(device, &descriptor);
      devices_.push_back(
          {{PortName(device), libusb_get_bus_number(device), libusb_get_device_address(device),
            descriptor.idVendor, descriptor.idProduct, SpeedOfDevice(device)},
           device});
    }
    std::sort(devices_.begin(), devices_.end(), [](Plugged const& a, Plugged const& b) {
      return std::pair(a.live.bus, a.live.address) < std::pair(b.live.bus, b.live.address);
    });
  }
  ~Bus() { libusb_free_device_list(list_, 1); }
  Bus(Bus const&) = delete;
  Bus& operator=(Bus const&) = delete;

  std::vector<Plugged> const& Devices() const { return devices_; }

 private:
  Library library_;
  libusb_device** list_ = nullptr;
  std::vector<Plugged> devices_;
};

ControlTransfer Read(libusb_device_handle* handle, Request const& request, std::uint16_t length) {
  ControlTransfer transfer;
  transfer.bytes.resize(length);
  int const result =
      libusb_control_transfer(handle, request.requestType, request.request, request.value,
                              request.index, transfer.bytes.data(), length, kTimeout);
  transfer.bytes.resize(result < 0 ? 0 : static_cast<std::size_t>(result));
  if (result >= 0) {
    transfer.outcome = Outcome::kAnswered;
  } else if (result == LIBUSB_ERROR_PIPE) {
    transfer.outcome = Outcome::kStalled;
  } else if (result == LIBUSB_ERROR_NO_DEVICE) {
    transfer.note = "the device was unplugged";
    transfer.isGone = true;
  } else {
    transfer.note =
        result == LIBUSB_ERROR_TIMEOUT ? "no answer within a second" : libusb_strerror(result);
  }
  return transfer;
}

// The part of a device that the kernel shows to everyone; nothing when it has no folder or the
// folder cannot be read.
std::optional<Device> ReadSysfs(LiveDevice const& live, std::vector<std::string>& notes) {
  std::string const ports = live.name.substr(kPrefix.size());
  std::string const folder =
      std::string(kSysfs) +
      (ports.ends_with("-0") ? "usb" + ports.substr(0, ports.size() - 2) : ports);
  std::error_code ignored;
  if (!std::filesystem::exists(PathOf(folder), ignored)) {
    return std::nullopt;
  }
  try {
    return ReadFolder(folder);
  } catch (ReadError const& error) {
    notes.emplace_back(error.what());
    return std::nullopt;
  }
}

std::string Permission(LiveDevice const& live) {
  auto const digits = [](std::uint16_t number) {
    std::string text = Hexadecimal(number, 4);
    std::transform(text.begin(), text.end(), text.begin(), [](char c) {
      return c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return text;
  };
  return live.name +
         ": no permission to open it, so this is what the kernel shows to everyone. A file "
         R"(/etc/udev/rules.d/70-usb.rules with SUBSYSTEM=="usb", ATTR{idVendor}==")" +
         digits(live.vendor) + R"(", ATTR{idProduct}==")" + digits(live.product) +
         R"(", TAG+="uaccess" gives it to the user who is logged in, when it is plugged in again)";
}

// Completes an answer that is longer than a transfer with the bytes that the kernel has read, or
// notes that it is cut off.
void AddRest(ControlTransfer& transfer, ByteSpan known) {
  if (known.size() > kMostOfTransfer && AreEqual(known.first(kMostOfTransfer), transfer.bytes)) {
    transfer.bytes.assign(known.begin(), known.end());
    transfer.note = "the kernel's from byte 4,096 on, as libusb reads no more at once";
  } else {
    transfer.note = "cut off at 4,096 bytes, as libusb reads no more at once";
  }
}

Device ReadOne(Plugged const& plugged, std::vector<std::string>& notes) {
  LiveDevice const& live = plugged.live;
  std::optional<Device> const sysfs = ReadSysfs(live, notes);
  libusb_device_handle* opened = nullptr;
  int const error = libusb_open(plugged.device, &opened);
  Handle const handle(opened, libusb_close);
  if (error != 0) {
    std::string const reason = libusb_strerror(error);
    if (!sysfs) {
      throw ReadError(live.name, "cannot be opened: " + reason);
    }
    notes.push_back(error == LIBUSB_ERROR_ACCESS ? Permission(live)
                                                 : live.name + ": cannot be opened (" + reason +
                                                       "), so this is what the kernel shows of it");
  }
  DeviceBuilder device;
  device.SetName(live.name);
  device.SetSpeed(live.speed);
  if (sysfs) {
    for (Answer const& answer : sysfs->Answers()) {
      if (answer.request.IsOfInterface()) {
        device.Add(answer);
      }
    }
  }
  auto const read = [&](Request const& request, std::uint16_t length) -> ControlTransfer {
    Answer const* const answer = sysfs ? sysfs->Find(request) : nullptr;
    bool const isKnown = answer != nullptr && answer->outcome == Outcome::kAnswered;
    ByteSpan const known = isKnown ? ByteCursor(answer->bytes).Take(length) : ByteSpan();
    if (handle != nullptr) {
      ControlTransfer transfer = Read(handle.get(), request, std::min(length, kMostOfTransfer));
      if (length > kMostOfTransfer && transfer.bytes.size() == kMostOfTransfer) {
        AddRest(transfer, known);
      }
      return transfer;
    }
    if (isKnown) {
      return {Outcome::kAnswered, {known.begin(), known.end()}, {}, false};
    }
    return {Outcome::kFailed, {}, "the device cannot be opened", false};
  };
  ReadThrough({live.name, read, false}, device);
  return device.Build();
}

// Selects devices by the text after "usb:".
class Selection {
 public:
  explicit Selection(std::string const& name) : name_(name) {
    std::string_view const rest =
        IsLiveName(name) ? std::string_view(name).substr(kPrefix.size()) : std::string_view();
    if (rest.size() == 9 && rest[4] == ':') {
      vendor_ = NumberOf(rest.substr(0, 4), 16, 0xFFFF);
      product_ = NumberOf(rest.substr(5), 16, 0xFFFF);
    }
    bool const isPath = rest.find('-') != std::string_view::npos &&
                        rest.find_first_not_of("0123456789-.") == std::string_view::npos;
    if (!isPath && (!vendor_ || !product_)) {
      throw ReadError(name,
                      "is not a name of a device, expected one such as usb:046d:0825 or usb:1-7");
    }
  }

  bool Has(LiveDevice const& live) const {
    return vendor_ ? live.vendor == vendor_ && live.product == product_ : live.name == name_;
  }

 private:
  std::string name_;
  std::optional<std::uint64_t> vendor_;
  std::optional<std::uint64_t> product_;
};

}  // namespace

bool CanReadLive() noexcept {
  return true;
}

std::vector<LiveDevice> ListLiveDevices() {
  Bus const bus;
  std::vector<LiveDevice> devices;
  for (Plugged const& plugged : bus.Devices()) {
    devices.push_back(plugged.live);
  }
  return devices;
}

LiveReading ReadLive(std::string const& name) {
  Selection const selection(name);
  Bus const bus;
  LiveReading reading;
  for (Plugged const& plugged : bus.Devices()) {
    if (selection.Has(plugged.live)) {
      reading.devices.push_back(ReadOne(plugged, reading.notes));
    }
  }
  if (reading.devices.empty()) {
    throw ReadError(name, "is not plugged in");
  }
  return reading;
}

#else

bool CanReadLive() noexcept {
  return false;
}

std::vector<LiveDevice> ListLiveDevices() {
  throw ReadError({}, "this build has no libusb to list the devices that are plugged in");
}

LiveReading ReadLive(std::string const& name) {
  throw ReadError(name, "is a device, and this build has no libusb to read it");
}

#endif

}  // namespace usb_devices

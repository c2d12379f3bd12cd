// Devices from the traffic of a bus: their answers to a host's requests for descriptors.
//
// A TrafficReader gets the packets of a capture, in order. A descriptor is the longest answer to
// its request: hosts ask for a few bytes first, and try again after a fault. A stall counts only
// when there was no answer, a failure only when there was no stall either. A request without an
// answer in the capture leaves no trace, because nobody knows what the device would have answered.
//
// A device is named by bus and address: "1.7". When an address answers with another device
// descriptor, the address was given to another device: "1.7-2". Address 0 is left out; every device
// has it for a moment before it gets its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include <usb_devices/bytes.h>
#include <usb_devices/device.h>
#include <usb_devices/export.h>

namespace usb_devices {

namespace detail {
/// The contents of a packet of a transfer on the control pipe.
struct TransferEvent;
}  // namespace detail

/// The kind of a capture's packets, by its link type (https://www.tcpdump.org/linktypes.html).
enum class PacketKind : std::uint8_t {
  kUsbmon,      ///< Linux, a header of 48 bytes in the order of this machine
  kUsbmonLong,  ///< Linux, a header of 64 bytes in the order of this machine
  kUsbPcap,     ///< USBPcap on Windows
  kDarwin,      ///< macOS
};

/// The contents of a capture.
struct Traffic {
  std::vector<Device> devices;     ///< in the order in which they were first seen
  std::vector<std::string> notes;  ///< missing data, for people
};

class USB_DEVICES_API TrafficReader {
 public:
  /// `name` is the name of the capture, for sources and messages.
  explicit TrafficReader(std::string name) : name_(std::move(name)) {}

  /// Takes the captured bytes of the next packet. Throws ReadError when the capture has more
  /// descriptors than any bus.
  void Add(PacketKind kind, ByteSpan packet);

  /// The devices so far. The reader is then empty again.
  Traffic Take();

 private:
  // bus, address, transfer
  using TransferKey = std::tuple<std::uint32_t, std::uint16_t, std::uint64_t>;
  struct Asked {
    Request request;
    std::uint16_t length = 0;
    std::uint64_t packet = 0;
  };
  struct Seen {
    std::string name;
    Speed speed = Speed::kUnknown;
    std::map<Request, Answer> answers;
    std::vector<Request> order;
  };

  void Ask(detail::TransferEvent const& event);
  void Finish(detail::TransferEvent const& event);
  void Keep(detail::TransferEvent const& event, Asked const& asked);
  Seen& DeviceOf(detail::TransferEvent const& event, Answer const& answer);

  std::string name_;
  std::uint64_t packet_ = 0;
  std::map<TransferKey, Asked> asked_;
  std::vector<Seen> devices_;
  std::map<std::pair<std::uint32_t, std::uint16_t>, std::size_t> current_;
  std::map<std::pair<std::uint32_t, std::uint16_t>, unsigned> counts_;
  std::size_t kept_ = 0;
  std::uint64_t short_ = 0;
  std::uint64_t lost_ = 0;
};

/// The number of bytes at the start of a file that show whether it is a traffic capture.
inline constexpr std::size_t kTrafficMagicSize = 12;

/// True when a file begins as a pcap or pcapng file does.
USB_DEVICES_API bool LooksLikeTraffic(std::string_view begin) noexcept;

/// Whether this build reads traffic captures (with libpcap).
USB_DEVICES_API bool CanReadTraffic() noexcept;

/// The devices in a pcap or pcapng file. A truncated file gives the devices before the end, with a
/// note. Throws ReadError.
USB_DEVICES_API Traffic ReadTraffic(std::string const& name);

/// The same from the content of such a file, through a temporary one. Throws ReadError, which calls
/// the capture `name`.
USB_DEVICES_API Traffic ReadTraffic(ByteSpan content, std::string const& name);

}  // namespace usb_devices

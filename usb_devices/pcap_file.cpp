#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include <usb_devices/files.h>
#include <usb_devices/read_error.h>
#include <usb_devices/traffic.h>

#if defined(USB_DEVICES_HAS_PCAP)
#include <pcap/pcap.h>
#endif

namespace usb_devices {

#if defined(USB_DEVICES_HAS_PCAP)

namespace {

// A capture of an hour of video is larger; the descriptors are at its start.
constexpr std::uintmax_t kMostBytes = std::uintmax_t{1} << 30;

using Pcap = std::unique_ptr<pcap_t, decltype(&pcap_close)>;

PacketKind KindOf(pcap_t* pcap, std::string const& name) {
  constexpr std::pair<int, PacketKind> kKinds[] = {
      {DLT_USB_LINUX, PacketKind::kUsbmon},
      {DLT_USB_LINUX_MMAPPED, PacketKind::kUsbmonLong},
      {DLT_USBPCAP, PacketKind::kUsbPcap},
      {DLT_USB_DARWIN, PacketKind::kDarwin},
  };
  int const type = pcap_datalink(pcap);
  for (auto const& [linkType, kind] : kKinds) {
    if (linkType == type) {
      return kind;
    }
  }
  char const* const text = pcap_datalink_val_to_description(type);
  throw ReadError(name, "holds packets of link type " + std::to_string(type) + " (" +
                            (text == nullptr ? "unknown" : text) +
                            "), expected USB packets of Linux, USBPcap or macOS");
}

// Opening a pipe would wait for the other end, and a capture cannot be read twice from one.
void RequireFile(std::string const& name) {
  std::error_code error;
  std::filesystem::path const path = PathOf(name);
  if (!std::filesystem::is_regular_file(path, error)) {
    throw ReadError(name, error ? "cannot be opened: " + error.message()
                                : "is not a regular file, as a traffic capture must be");
  }
  std::uintmax_t const size = std::filesystem::file_size(path, error);
  if (error || size > kMostBytes) {
    throw ReadError(
        name, error ? "cannot be read: " + error.message() : "holds more than 1 GiB of traffic");
  }
}

Traffic ReadPackets(pcap_t* pcap, std::string const& name) {
  PacketKind const kind = KindOf(pcap, name);
  TrafficReader reader(name);
  pcap_pkthdr* header = nullptr;
  unsigned char const* data = nullptr;
  std::uint64_t packets = 0;
  int result = 0;
  while ((result = pcap_next_ex(pcap, &header, &data)) == 1) {
    reader.Add(kind, {data, header->caplen});
    ++packets;
  }
  Traffic traffic = reader.Take();
  if (result == PCAP_ERROR) {
    std::string const note = "after packet " + std::to_string(packets) + ": " + pcap_geterr(pcap);
    if (traffic.devices.empty()) {
      throw ReadError(name, note);
    }
    traffic.notes.push_back(note);
  }
  return traffic;
}

Pcap Checked(pcap_t* pcap, std::string const& name, char const* error) {
  if (pcap == nullptr) {
    throw ReadError(name, std::string("is not a traffic capture: ") + error);
  }
  return {pcap, pcap_close};
}

}  // namespace

bool CanReadTraffic() noexcept {
  return true;
}

Traffic ReadTraffic(std::string const& name) {
  RequireFile(name);
  char error[PCAP_ERRBUF_SIZE] = {};
#if defined(_WIN32)
  pcap_init(PCAP_CHAR_ENC_UTF_8, error);
#endif
  // For libpcap "-" is standard input.
  pcap_t* const opened = pcap_open_offline(name == "-" ? "./-" : name.c_str(), error);
  return ReadPackets(Checked(opened, name, error).get(), name);
}

Traffic ReadTraffic(ByteSpan content, std::string const& name) {
  // libpcap reads files only.
  OpenFile file(std::tmpfile(), std::fclose);
  if (file == nullptr ||
      std::fwrite(content.data(), 1, content.size(), file.get()) != content.size() ||
      std::fflush(file.get()) != 0) {
    throw ReadError(name, "cannot be put into a temporary file, as reading it takes");
  }
  std::rewind(file.get());
  char error[PCAP_ERRBUF_SIZE] = {};
  pcap_t* const opened = pcap_fopen_offline(file.get(), error);
  if (opened != nullptr) {
    (void)file.release();  // closed with the capture
  }
  return ReadPackets(Checked(opened, name, error).get(), name);
}

#else

bool CanReadTraffic() noexcept {
  return false;
}

Traffic ReadTraffic(std::string const& name) {
  throw ReadError(name, "is a traffic capture, and this build has no libpcap to read it");
}

Traffic ReadTraffic(ByteSpan /*content*/, std::string const& name) {
  return ReadTraffic(name);
}

#endif

}  // namespace usb_devices

// Writes traffic captures for the tests.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <usb_devices/bytes.h>
#include <usb_devices/device.h>
#include <usb_devices/traffic.h>

namespace usb_devices::testing_support {

// Numbers in either order.
class Writer {
 public:
  explicit Writer(bool isBig) : isBig_(isBig) {}

  Writer& Number(std::uint64_t value, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
      std::size_t const shift = 8 * (isBig_ ? size - 1 - i : i);
      bytes_.push_back(static_cast<std::uint8_t>(value >> shift));
    }
    return *this;
  }
  Writer& Add(ByteSpan bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    return *this;
  }
  Bytes const& Get() const { return bytes_; }

 private:
  bool isBig_;
  Bytes bytes_;
};

// The SETUP packet of a read.
inline Bytes SetupOf(Request const& request, std::uint16_t length) {
  Writer setup(false);
  setup.Number(request.requestType, 1).Number(request.request, 1);
  return setup.Number(request.value, 2).Number(request.index, 2).Number(length, 2).Get();
}

// Writes the packets of one kind, in the byte order of a machine where the kind has one.
class Packets {
 public:
  explicit Packets(PacketKind kind, bool isBig = false) : kind_(kind), isBig_(isBig) {}

  Bytes Ask(unsigned bus, unsigned address, std::uint64_t transfer, ByteSpan setup) const {
    switch (kind_) {
      case PacketKind::kUsbPcap:
        return UsbPcap(bus, address, transfer, 0, 0, 0, setup);
      case PacketKind::kDarwin:
        return Darwin(bus, address, transfer, false, 0, setup);
      default:
        return Usbmon('S', bus, address, transfer, 0, setup, {}, LengthOf(setup));
    }
  }
  Bytes Answer(unsigned bus, unsigned address, std::uint64_t transfer, std::uint32_t status,
               ByteSpan data) const {
    switch (kind_) {
      case PacketKind::kUsbPcap:
        return UsbPcap(bus, address, transfer, 3, 1, status, data);
      case PacketKind::kDarwin:
        return Darwin(bus, address, transfer, true, status, data);
      default:
        return Usbmon('C', bus, address, transfer, status, {}, data, data.size());
    }
  }

  Bytes Usbmon(char type, unsigned bus, unsigned address, std::uint64_t transfer,
               std::uint32_t status, ByteSpan setup, ByteSpan data, std::size_t length) const {
    Writer packet(isBig_);
    packet.Number(transfer, 8).Number(static_cast<unsigned char>(type), 1).Number(2, 1);
    packet.Number(0x80, 1).Number(address, 1).Number(bus, 2);
    packet.Number(setup.empty() ? '-' : 0, 1).Number(data.empty() ? '<' : 0, 1);
    packet.Number(1, 8).Number(2, 4).Number(status, 4).Number(length, 4).Number(data.size(), 4);
    packet.Add(setup.empty() ? ByteSpan(kNoSetup) : setup);
    if (kind_ == PacketKind::kUsbmonLong) {
      packet.Number(0, 8).Number(0, 8);
    }
    return packet.Add(data).Get();
  }
  static Bytes UsbPcap(unsigned bus, unsigned address, std::uint64_t transfer, unsigned stage,
                       unsigned info, std::uint32_t status, ByteSpan data) {
    Writer packet(false);
    packet.Number(28, 2).Number(transfer, 8).Number(status, 4).Number(0x08, 2).Number(info, 1);
    packet.Number(bus, 2).Number(address, 2).Number(0x80, 1).Number(2, 1);
    return packet.Number(data.size(), 4).Number(stage, 1).Add(data).Get();
  }
  static Bytes Darwin(unsigned bus, unsigned address, std::uint64_t transfer, bool isCompletion,
                      std::uint32_t status, ByteSpan data) {
    Writer packet(false);
    packet.Number(0x0100, 2).Number(32, 1).Number(isCompletion ? 1 : 0, 1);
    packet.Number(data.size(), 4).Number(status, 4).Number(0, 4).Number(transfer, 8);
    packet.Number(bus << 24 | 0x100000, 4).Number(2, 1).Number(address, 1).Number(0x80, 1);
    return packet.Number(0, 1).Add(data).Get();
  }

 private:
  // The bytes that a SETUP packet asks for.
  static std::size_t LengthOf(ByteSpan setup) {
    ByteCursor at(setup);
    at.Skip(6);
    return at.Little16();
  }

  static constexpr std::uint8_t kNoSetup[8] = {};
  PacketKind kind_;
  bool isBig_;
};

// Files around packets.
struct FileForm {
  bool isNew;  // pcapng
  bool isBig;
  bool hasNanoseconds;
};

inline Bytes FileOf(FileForm const& form, unsigned linkType, std::vector<Bytes> const& packets) {
  Writer file(form.isBig);
  auto const padded = [](std::size_t size) { return (size + 3) / 4 * 4; };
  if (form.isNew) {
    file.Number(0x0A0D0D0A, 4).Number(28, 4).Number(0x1A2B3C4D, 4).Number(1, 2).Number(0, 2);
    file.Number(~0ULL, 8).Number(28, 4);
    file.Number(1, 4).Number(form.hasNanoseconds ? 32 : 20, 4).Number(linkType, 2).Number(0, 2);
    file.Number(262144, 4);
    if (form.hasNanoseconds) {
      file.Number(9, 2).Number(1, 2).Number(9, 1).Number(0, 1).Number(0, 2).Number(0, 4);
    }
    file.Number(form.hasNanoseconds ? 32 : 20, 4);
  } else {
    file.Number(form.hasNanoseconds ? 0xA1B23C4D : 0xA1B2C3D4, 4).Number(2, 2).Number(4, 2);
    file.Number(0, 8).Number(262144, 4).Number(linkType, 4);
  }
  for (Bytes const& packet : packets) {
    if (form.isNew) {
      std::size_t const length = 32 + padded(packet.size());
      file.Number(6, 4).Number(length, 4).Number(0, 4).Number(0, 4).Number(1, 4);
      file.Number(packet.size(), 4).Number(packet.size(), 4).Add(packet);
      file.Add(Bytes(padded(packet.size()) - packet.size())).Number(length, 4);
    } else {
      file.Number(1, 4).Number(2, 4).Number(packet.size(), 4).Number(packet.size(), 4).Add(packet);
    }
  }
  return file.Get();
}

// A capture in which a host asks for everything that devices answer, each at an address from 1.
inline Bytes CaptureOf(std::vector<Device> const& devices) {
  constexpr auto kStall = static_cast<std::uint32_t>(-32);
  Packets const packets(PacketKind::kUsbmonLong);
  std::vector<Bytes> all;
  unsigned address = 0;
  for (Device const& device : devices) {
    ++address;
    for (usb_devices::Answer const& answer : device.Answers()) {
      all.push_back(packets.Ask(1, address, 1, SetupOf(answer.request, 0xFFFF)));
      bool const isAnswered = answer.outcome == Outcome::kAnswered;
      all.push_back(packets.Answer(1, address, 1, isAnswered ? 0 : kStall, answer.bytes));
    }
  }
  return FileOf({false, false, false}, 220, all);
}

}  // namespace usb_devices::testing_support

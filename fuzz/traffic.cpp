// Transfers on a bus in every kind of packet: all kinds give the same devices, and each answer is
// the longest that was given. And the bytes as meaningless packets.
#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include <fuzz/oracle.h>
#include <fuzz/targets.h>
#include <usb_devices/devices.h>
#include <usb_devices/test_traffic.h>

namespace usb_support::fuzz {
namespace {

using usb_devices::Device;
using usb_devices::Outcome;
using usb_devices::PacketKind;
using usb_devices::Request;

constexpr PacketKind kKinds[] = {PacketKind::kUsbmon, PacketKind::kUsbmonLong, PacketKind::kUsbPcap,
                                 PacketKind::kDarwin};
// The codes of each system for a stall and for another failure.
constexpr std::uint32_t kStalls[] = {0xFFFFFFE0, 0xFFFFFFE0, 0xC0000004, 0xE000404F};
constexpr std::uint32_t kFailures[] = {0xFFFFFF92, 0xFFFFFF92, 0xC0000011, 0xE00002D8};

constexpr Request kRequests[] = {
    Request::Descriptor(usb_devices::kDeviceType),
    Request::Descriptor(usb_devices::kConfigurationType),
    Request::Descriptor(usb_devices::kConfigurationType, 1),
    Request::Descriptor(usb_devices::kBosType),
    Request::String(0, 0),
    Request::String(2, 0x0409),
    Request::HidReport(1),
    Request::Hub(usb_devices::kHubType),
};

struct Step {
  unsigned bus;
  unsigned address;
  Request request;
  Outcome outcome;
  bool hasQuestion;
  bool hasAnswer;
  usb_devices::Bytes data;
};

// Six bytes per step, then its data.
std::vector<Step> StepsOf(Input input) {
  std::vector<Step> steps;
  while (input.size() >= 6) {
    std::size_t const size = std::min<std::size_t>(input[5] % 64, input.size() - 6);
    Input const data = input.subspan(6, size);
    Step step{1u + input[0] % 2,
              1u + input[1] % 3,
              kRequests[input[2] % std::size(kRequests)],
              static_cast<Outcome>(input[3] % 4 == 3 ? 0 : input[3] % 4),
              input[4] % 8 != 1,
              input[4] % 8 != 2,
              {}};
    if (step.outcome == Outcome::kAnswered) {
      step.data.assign(data.begin(), data.end());
    }
    steps.push_back(step);
    input = input.subspan(6 + size);
  }
  return steps;
}

usb_devices::Traffic Read(std::vector<Step> const& steps, std::size_t kind) {
  usb_devices::testing_support::Packets const packets(kKinds[kind]);
  usb_devices::TrafficReader reader("a");
  std::uint64_t transfer = 0;
  for (Step const& step : steps) {
    ++transfer;
    if (step.hasQuestion) {
      reader.Add(kKinds[kind],
                 packets.Ask(step.bus, step.address, transfer,
                             usb_devices::testing_support::SetupOf(step.request, 0xFFFF)));
    }
    if (step.hasAnswer) {
      std::uint32_t const status = step.outcome == Outcome::kAnswered  ? 0
                                   : step.outcome == Outcome::kStalled ? kStalls[kind]
                                                                       : kFailures[kind];
      reader.Add(kKinds[kind], packets.Answer(step.bus, step.address, transfer, status, step.data));
    }
  }
  return reader.Take();
}

void CheckLongest(std::vector<Step> const& steps, std::vector<Device> const& devices) {
  std::map<std::string, std::map<Request, std::size_t>> longest;
  for (Step const& step : steps) {
    if (step.hasQuestion && step.hasAnswer) {
      std::string const name = std::to_string(step.bus) + '.' + std::to_string(step.address);
      std::size_t& size = longest[name][step.request];
      size = std::max(size, step.data.size());
    }
  }
  for (Device const& device : devices) {
    bool const isOnly = std::none_of(devices.begin(), devices.end(), [&](Device const& other) {
      return other.Name() == device.Name() + "-2";
    });
    std::string const address = device.Name().substr(0, device.Name().find('-'));
    for (usb_devices::Answer const& answer : device.Answers()) {
      std::size_t const most = longest[address][answer.request];
      Require(answer.bytes.size() <= most, "an answer was given");
      Require(!isOnly || device.Name() != address || answer.bytes.size() == most,
              "an answer is the longest");
    }
  }
}

// A kind, then packets after their sizes.
void CheckPackets(Input input) {
  PacketKind const kind = kKinds[input[0] % std::size(kKinds)];
  usb_devices::TrafficReader reader("a");
  for (input = input.subspan(1); !input.empty();) {
    std::size_t const size = std::min<std::size_t>(input[0], input.size() - 1);
    usb_devices::Bytes const packet = BytesOf(input.subspan(1, size));
    reader.Add(kind, packet);
    input = input.subspan(1 + size);
  }
  for (Device const& device : reader.Take().devices) {
    std::vector<usb_devices::Input> const read =
        usb_devices::ReadJson(usb_devices::WriteJson({{"a", {device}}}), "a");
    Require(read.size() == 1 && read[0].devices.size() == 1 &&
                read[0].devices[0].HasSameAnswers(device),
            "JSON of a device");
  }
}

}  // namespace

void TrafficPackets(Input input) {
  if (input.empty() || input.size() > 0x10000) {
    return;
  }
  CheckPackets(input);
  std::vector<Step> const steps = StepsOf(input);
  usb_devices::Traffic const first = Read(steps, 0);
  CheckLongest(steps, first.devices);
  for (std::size_t kind = 1; kind < std::size(kKinds); ++kind) {
    usb_devices::Traffic const other = Read(steps, kind);
    RequireEqual(other.devices.size(), first.devices.size(), "devices of another kind of packet");
    for (std::size_t i = 0; i < first.devices.size(); ++i) {
      Device const& a = first.devices[i];
      Device const& b = other.devices[i];
      RequireEqual(b.Name(), a.Name(), "name in another kind of packet");
      RequireEqual(b.Answers().size(), a.Answers().size(), "answers in another kind of packet");
      for (usb_devices::Answer const& answer : a.Answers()) {
        usb_devices::Answer const* const same = b.Find(answer.request);
        Require(same != nullptr && same->outcome == answer.outcome &&
                    usb_devices::AreEqual(same->bytes, answer.bytes),
                "answer in another kind of packet");
      }
    }
  }
}

}  // namespace usb_support::fuzz

// A device that answers each transfer with the next bytes: the number of transfers, and that the
// recorded answers are those of the device.
#include <map>
#include <vector>

#include <fuzz/oracle.h>
#include <fuzz/targets.h>
#include <usb_devices/control_reader.h>

namespace usb_support::fuzz {

using usb_devices::ControlTransfer;
using usb_devices::Outcome;
using usb_devices::Request;

// Bytes: for each transfer its outcome, its number of bytes, and the bytes.
void ControlReader(Input input) {
  constexpr std::size_t kMostTransfers = 70000;
  std::map<Request, std::vector<usb_devices::Bytes>> given;
  std::size_t failures = 0;
  std::size_t transfers = 0;
  bool isGone = false;
  auto const read = [&](Request const& request, std::uint16_t length) {
    ++transfers;
    Require(!isGone, "a device that is gone is not asked");
    Require(failures < 8, "a device that fails is left alone");
    Require((request.requestType & 0x80) != 0, "a device is only read");
    Require(transfers < kMostTransfers, "reading ends");
    ControlTransfer transfer;
    if (input.size() < 2) {
      transfer.outcome = Outcome::kStalled;
      return transfer;
    }
    transfer.outcome = input[0] < 0xE0   ? Outcome::kAnswered
                       : input[0] < 0xF0 ? Outcome::kStalled
                                         : Outcome::kFailed;
    isGone = input[0] == 0xFF;
    transfer.isGone = isGone;
    failures += transfer.outcome == Outcome::kFailed ? 1u : 0u;
    std::size_t const size = std::min<std::size_t>(input[1], input.size() - 2);
    Input const bytes = input.subspan(2, size);
    input = input.subspan(2 + size);
    if (transfer.outcome == Outcome::kAnswered) {
      transfer.bytes.assign(bytes.begin(), bytes.end());
      usb_devices::Bytes kept = transfer.bytes;
      kept.resize(std::min<std::size_t>(kept.size(), length));
      given[request].push_back(kept);
    }
    return transfer;
  };
  usb_devices::DeviceBuilder builder;
  usb_devices::ReadThrough({"usb:1-7", read, input.size() % 2 == 0}, builder);
  usb_devices::Device const device = builder.Build();
  for (usb_devices::Answer const& answer : device.Answers()) {
    Require(answer.outcome == Outcome::kAnswered || answer.bytes.empty(),
            "what is not answered has no bytes");
    bool isGiven = answer.outcome != Outcome::kAnswered;
    for (usb_devices::Bytes const& bytes : given[answer.request]) {
      isGiven = isGiven || bytes == answer.bytes;
    }
    Require(isGiven, "an answer was given");
  }
  for (auto const& [request, answers] : given) {
    if (!answers.empty()) {
      Require(device.Bytes(request).has_value(), "what was answered is kept");
    }
  }
}

}  // namespace usb_support::fuzz

// The bytes as a BOS that a set holds: its capabilities, the accessors that answer with an
// exception, and the device descriptor beside it.
#include <algorithm>
#include <cstring>
#include <functional>
#include <iterator>
#include <utility>

#include <fuzz/oracle.h>
#include <fuzz/targets.h>
#include <tests/support/exact_bytes.h>
#include <usb_support/descriptor_sets/bos_descriptor_set.h>
#include <usb_support/descriptors/finders.h>

namespace usb_support::fuzz {
namespace {

using model::Bytes;
using model::Piece;
using testing_support::ExactBytes;

// What a test program derives: it stores the device descriptor that it has read.
class ReadSet : public CBOSDescriptorSet {
 public:
  void Store(TQ_USB_DEVICE_DESCRIPTOR const& descriptor) { StoreDeviceDescriptor(descriptor); }
};

// The valid descriptors of a type and subtype, each as a piece of its own. The third byte counts
// when it is there, whatever bLength is.
std::vector<Piece> Matches(Bytes const& run, unsigned char type, unsigned char subtype) {
  std::vector<Piece> matches;
  for (Piece const& descriptor : model::ChainOf(run).descriptors) {
    std::size_t const third = descriptor.offset + 2;
    if (model::HasType(run, descriptor.offset, type) && third < run.size() &&
        run[third] == subtype) {
      matches.push_back(descriptor);
    }
  }
  return matches;
}

void CheckCapabilities(Suite const& suite, CBOSDescriptorSet const& set, Bytes const& run) {
  bool const isValid = model::ChainOf(run).end == model::End::kComplete;
  // The known codes, one that is not, and one of the fuzzer's choice.
  for (int const code : {0x00, 0x02, 0x03, 0x04, 0x06, 0x07, 0x08, 0x09, 0x0A, 0xFF,
                         static_cast<int>(run.empty() ? 1 : run.back())}) {
    auto const type = static_cast<unsigned char>(code);
    std::vector<Piece> const expected = Matches(run, 0x10, type);
    RequireEqual(PieceOf(set.Bytes(), FindCapability(set.GetRange(), type)),
                 expected.empty() ? Piece{} : expected.front(), "first capability of a type");
    suite.ExpectNothingLogged();
    RequireEqual(PiecesOf(set.Bytes(),
                          set.GetSubRanges(CapabilityFinder(type), CDescriptorRange::AlwaysTrue)),
                 expected, "capabilities of a type");
    suite.ExpectLoggedValidity(isValid);
    RequireEqual(set.Count(ClassSpecificFinder(0x24, type), CDescriptorRange::AlwaysTrue),
                 static_cast<unsigned short>(Matches(run, 0x24, type).size()),
                 "class-specific descriptors of a subtype");
    suite.ExpectLoggedValidity(isValid);
  }
}

// An accessor answers with std::bad_function_call as soon as there is a valid descriptor to look
// at, and with nothing when there is none. One of them is asked, as throwing is what takes the
// time; the length of the input tells which.
void CheckAccessors(Suite const& suite, ReadSet& set, Bytes const& run) {
  constexpr std::pair<char const*, bool (*)(ReadSet&)> kAccessors[] = {
      {"Get20ExtensionDesc",
       [](ReadSet& bos) { return static_cast<bool>(bos.Get20ExtensionDesc()); }},
      {"GetSSDesc", [](ReadSet& bos) { return static_cast<bool>(bos.GetSSDesc()); }},
      {"GetContainer", [](ReadSet& bos) { return static_cast<bool>(bos.GetContainer()); }},
      {"GetPDCap", [](ReadSet& bos) { return static_cast<bool>(bos.GetPDCap()); }},
      {"GetBattery", [](ReadSet& bos) { return static_cast<bool>(bos.GetBattery()); }},
      {"GetConsumer", [](ReadSet& bos) { return static_cast<bool>(bos.GetConsumer()); }},
      {"GetProvider", [](ReadSet& bos) { return static_cast<bool>(bos.GetProvider()); }},
      {"ContainerID", [](ReadSet& bos) { return static_cast<bool>(bos.ContainerID()); }},
      {"SupportsSuperSpeed",
       [](ReadSet& bos) { return static_cast<bool>(bos.SupportsSuperSpeed()); }},
      {"GetDescriptorsOfType",
       [](ReadSet& bos) {
         return !bos.GetDescriptorsOfType(bos.Bytes()[bos.Length() - 1])->empty();
       }},
  };
  auto const& [name, answers] = kAccessors[run.size() % std::size(kAccessors)];
  model::Chain const chain = model::ChainOf(run);
  bool threw = false;
  try {
    Require(!answers(set), name);
  } catch (std::bad_function_call const&) {
    threw = true;
  }
  RequireEqual(threw, !chain.descriptors.empty(), name);
  suite.ExpectLoggedValidity(chain.end == model::End::kComplete);
}

void RequireDevice(CBOSDescriptorSet& set, TQ_USB_DEVICE_DESCRIPTOR const* device) {
  auto const [isKnown, bcdUsb] = set.BcdUsb();
  RequireEqual(isKnown, device != nullptr, "device descriptor");
  RequireEqual(bcdUsb, device != nullptr ? device->bcdUSB : 0, "bcdUSB");
  RequireEqual(set.VID(), device != nullptr ? device->idVendor : 0, "idVendor");
  RequireEqual(set.PID(), device != nullptr ? device->idProduct : 0, "idProduct");
}

void RequireHolds(CBOSDescriptorSet const& set, Bytes const& run, char const* what) {
  // NOLINTNEXTLINE(clang-analyzer-cplusplus.Move): deliberately after a move
  RequireEqual(Bytes(set.Bytes(), set.Bytes() + set.Length()), run, what);
  RequireEqual(set.HasBOS(), run.empty(), "HasBOS of a set");
  Require(static_cast<void const*>(set.GetBOS()) == set.Bytes(), "header of the held bytes");
}

void CheckDevice(ReadSet& set, Bytes const& run) {
  RequireDevice(set, nullptr);
  TQ_USB_DEVICE_DESCRIPTOR device{};
  if (!run.empty()) {
    std::memcpy(&device, run.data(), std::min(sizeof(device), run.size()));
  }
  set.Store(device);
  RequireDevice(set, &device);
  ReadSet copy(set);
  RequireHolds(copy, run, "bytes of a copy");
  RequireDevice(copy, &device);
  copy.SetDescriptor(run.data(), static_cast<unsigned short>(run.size() / 2));
  RequireDevice(copy, &device);
  if (run.size() > 1) {
    copy.Reset(copy.Bytes(), 1);
    RequireDevice(copy, &device);
  }
  copy.Reset(set.Bytes(), set.Length());
  RequireHolds(copy, run, "bytes after a reset to another set's bytes");
  RequireDevice(copy, nullptr);
  ReadSet moved(std::move(set));
  RequireDevice(moved, nullptr);
  RequireHolds(set, {}, "bytes of a moved set");  // NOLINT(bugprone-use-after-move)
  RequireDevice(set, nullptr);
  copy = moved;
  copy.Store(device);
  copy.Reset();
  RequireHolds(copy, {}, "bytes after a reset");
  RequireDevice(copy, nullptr);
}

}  // namespace

void BosSet(Input input) {
  if (input.size() > 0xFFFF) {
    return;
  }
  Suite const suite;
  Bytes const run = BytesOf(input);
  ReadSet set;
  {
    ExactBytes const block(run);
    set.SetDescriptor(block.data(), static_cast<unsigned short>(run.size()));
  }
  RequireHolds(set, run, "bytes of the set");
  CheckCapabilities(suite, set, run);
  CheckAccessors(suite, set, run);
  CheckDevice(set, run);
  suite.ExpectNothingLogged();
}

}  // namespace usb_support::fuzz

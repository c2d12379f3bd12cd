// The bytes as a BOS that a set holds: its capabilities, and the accessors that answer with an
// exception.
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

// The valid descriptors of a type and subtype, each as a piece of its own. The third byte counts
// when it exists, whatever bLength is.
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
  // The known codes, an unknown one, and one of the fuzzer's choice.
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

// An accessor throws std::bad_function_call when there is a valid descriptor, and returns nothing
// when there is none. Only one of them is called, because throwing takes time; the length of the
// input chooses which.
void CheckAccessors(Suite const& suite, CBOSDescriptorSet& set, Bytes const& run) {
  constexpr std::pair<char const*, bool (*)(CBOSDescriptorSet&)> kAccessors[] = {
      {"Get20ExtensionDesc",
       [](CBOSDescriptorSet& bos) { return static_cast<bool>(bos.Get20ExtensionDesc()); }},
      {"GetSSDesc", [](CBOSDescriptorSet& bos) { return static_cast<bool>(bos.GetSSDesc()); }},
      {"GetContainer",
       [](CBOSDescriptorSet& bos) { return static_cast<bool>(bos.GetContainer()); }},
      {"GetPDCap", [](CBOSDescriptorSet& bos) { return static_cast<bool>(bos.GetPDCap()); }},
      {"GetBattery", [](CBOSDescriptorSet& bos) { return static_cast<bool>(bos.GetBattery()); }},
      {"GetConsumer", [](CBOSDescriptorSet& bos) { return static_cast<bool>(bos.GetConsumer()); }},
      {"GetProvider", [](CBOSDescriptorSet& bos) { return static_cast<bool>(bos.GetProvider()); }},
      {"ContainerID", [](CBOSDescriptorSet& bos) { return static_cast<bool>(bos.ContainerID()); }},
      {"SupportsSuperSpeed",
       [](CBOSDescriptorSet& bos) { return static_cast<bool>(bos.SupportsSuperSpeed()); }},
      {"GetDescriptorsOfType",
       [](CBOSDescriptorSet& bos) {
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

}  // namespace

void BosSet(Input input) {
  if (input.size() > 0xFFFF) {
    return;
  }
  Suite const suite;
  Bytes const run = BytesOf(input);
  CBOSDescriptorSet set;
  testing_support::Put(set, run);
  RequireEqual(testing_support::BytesOf(set), run, "bytes of the set");
  CheckCapabilities(suite, set, run);
  CheckAccessors(suite, set, run);
  suite.ExpectNothingLogged();
}

}  // namespace usb_support::fuzz

// The bytes as a configuration that a set holds: its interfaces and functions, its copies, and what
// happens to its bytes when it is filled, moved and re-pointed.
#include <utility>

#include <fuzz/oracle.h>
#include <fuzz/targets.h>
#include <tests/property/function_model.h>
#include <tests/support/exact_bytes.h>
#include <usb_support/descriptor_sets/config_descriptor_set.h>
#include <usb_support/descriptor_sets/function_selector.h>

namespace usb_support::fuzz {
namespace {

using model::Bytes;
using model::Piece;
using testing_support::ExactBytes;

Bytes BytesOf(CDescriptorRange const& range) {
  return {range.Bytes(), range.Bytes() + range.Length()};
}

// The bytes come from a block that is gone when the set is looked at.
void Fill(CConfigDescriptorSet& set, Bytes const& run) {
  ExactBytes const block(run);
  // NOLINTNEXTLINE(clang-analyzer-cplusplus.Move): deliberately after a move
  set.SetDescriptor(block.data(), static_cast<unsigned short>(run.size()));
}

void RequireHolds(CConfigDescriptorSet const& set, Bytes const& run, char const* what) {
  RequireEqual(BytesOf(set), run, what);
  RequireEqual(set.Descriptor() == nullptr, run.empty() && set.Bytes() == nullptr,
               "no record without bytes");
}

void CheckLists(Suite const& suite, CConfigDescriptorSet& set, Bytes const& run) {
  model::Chain const chain = model::ChainOf(run);
  bool const isValid = chain.end == model::End::kComplete;
  auto const interfaceRanges = set.GetInterfaceList();
  suite.ExpectLoggedValidity(isValid);
  auto const functionRanges = set.GetFunctionList();
  suite.ExpectLoggedValidity(isValid);
  std::vector<Piece> const interfaces = PiecesOf(set.Bytes(), interfaceRanges);
  std::vector<Piece> const functions = PiecesOf(set.Bytes(), functionRanges);
  RequireEqual(interfaces, model::InterfacesOf(run), "interfaces");
  RequireEqual(functions, model::FunctionsOf(run), "functions");
  function_head head;
  RequireEqual(set.Count(function_selector(&head)), functions.size(), "count of functions");
  suite.ExpectLoggedValidity(isValid);

  // Functions lie one after the other up to the end of the valid part, and each interface in one.
  for (std::size_t i = 0; i < functions.size(); ++i) {
    std::size_t const next = i + 1 < functions.size() ? functions[i + 1].offset : chain.validLength;
    RequireEqual(functions[i].offset + functions[i].length, next, "end of a function");
    Require((*functionRanges)[i].SubRangeOf(set), "a function lies in the set's bytes");
  }
  for (CDescriptorRange const& interface : *interfaceRanges) {
    unsigned holders = 0;
    for (CDescriptorRange const& function : *functionRanges) {
      holders += interface.SubRangeOf(function) ? 1u : 0u;
    }
    RequireEqual(holders, 1u, "functions that hold an interface");
  }
}

void CheckCopies(CConfigDescriptorSet const& set, Bytes const& run) {
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the copy is what is looked at
  CConfigDescriptorSet const copy(set);
  RequireHolds(copy, run, "bytes of a copy");
  Require(run.empty() || copy.Bytes() != set.Bytes(), "a copy has bytes of its own");
  RequireEqual(copy.ConfigIndex(), set.ConfigIndex(), "index of a copy");
  RequireEqual(copy.OtherSpeed(), set.OtherSpeed(), "speed of a copy");
  CConfigDescriptorSet assigned(1);
  Fill(assigned, {9, 2, 9, 0, 0, 1, 0, 0x80, 50});
  assigned = copy;
  RequireHolds(assigned, run, "bytes of an assigned set");
  CConfigDescriptorSet const& itself = assigned;
  assigned = itself;
  RequireHolds(assigned, run, "bytes of a set assigned to itself");
  RequireEqual(assigned.ConfigIndex(), set.ConfigIndex(), "index of an assigned set");
}

// A move promises an empty source, and two sets that can be filled and let go again.
void CheckMoves(CConfigDescriptorSet const& set, Bytes const& run) {
  CConfigDescriptorSet source(set);
  CConfigDescriptorSet target(std::move(source));
  Require(source.IsEmpty(), "the source of a move is empty");  // NOLINT(bugprone-use-after-move)
  Fill(target, run);
  RequireHolds(target, run, "bytes of a target that was filled");
  Fill(source, run);
  RequireHolds(source, run, "bytes of a source that was filled");
  target = std::move(source);
  Require(source.IsEmpty(), "the source of a move is empty");  // NOLINT(bugprone-use-after-move)
  target.Reset();
  RequireHolds(target, {}, "bytes after a reset");
}

// A set takes bytes from itself, and a pointer into its own bytes only moves its range.
void CheckOwnBytes(CConfigDescriptorSet const& set, Bytes const& run) {
  CConfigDescriptorSet own(set);
  std::size_t const from = run[0] % run.size();
  Bytes const rest(run.begin() + static_cast<std::ptrdiff_t>(from), run.end());
  unsigned char* const held = own.Bytes();
  own.Reset(held + from, 0xFFFF);
  Require(own.Bytes() == held + from, "a range that was moved stays in its block");
  RequireHolds(own, rest, "bytes up to the end of the block");
  own.Reset(held, static_cast<unsigned short>(from));
  if (from != 0) {
    RequireHolds(own, Bytes(run.begin(), run.begin() + static_cast<std::ptrdiff_t>(from)),
                 "bytes from the start of the block");
  }
  own = set;
  own.SetDescriptor(own.Bytes() + from, static_cast<unsigned short>(run.size() - from));
  RequireHolds(own, rest, "bytes that came from the set itself");
}

}  // namespace

void ConfigurationSet(Input input) {
  if (input.size() > 0xFFFF) {
    return;
  }
  Suite const suite;
  Bytes const run = fuzz::BytesOf(input);
  CConfigDescriptorSet set(run.empty() ? static_cast<unsigned char>(7) : run.back());
  set.OtherSpeed(run.size() % 2 == 0);
  Fill(set, run);
  RequireHolds(set, run, "bytes of the set");
  RequireEqual(set.ConfigIndex(), run.empty() ? 7 : run.back(), "index of the set");
  if (run.size() >= sizeof(TQ_USB_CONFIGURATION_DESCRIPTOR)) {
    RequireEqual(set.Descriptor()->wTotalLength, run[2] + 256 * run[3], "wTotalLength");
    RequireEqual(set.Descriptor()->bMaxPower, run[8], "bMaxPower");
  }
  CheckLists(suite, set, run);
  CheckCopies(set, run);
  CheckMoves(set, run);
  if (!run.empty()) {
    CheckOwnBytes(set, run);
  }
  RequireHolds(set, run, "bytes of the set at the end");
  suite.ExpectNothingLogged();
}

}  // namespace usb_support::fuzz

// The bytes as a configuration that a set holds: its interfaces and functions.
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
using testing_support::Put;

void RequireHolds(CConfigDescriptorSet const& set, Bytes const& run, char const* what) {
  RequireEqual(testing_support::BytesOf(set), run, what);
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

  // Functions are one after the other up to the end of the valid part.
  for (std::size_t i = 0; i < functions.size(); ++i) {
    std::size_t const next = i + 1 < functions.size() ? functions[i + 1].offset : chain.validLength;
    RequireEqual(functions[i].offset + functions[i].length, next, "end of a function");
    Require((*functionRanges)[i].SubRangeOf(set), "a function is in the set's bytes");
  }
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
  Put(set, run);
  RequireHolds(set, run, "bytes of the set");
  RequireEqual(set.ConfigIndex(), run.empty() ? 7 : run.back(), "index of the set");
  if (run.size() >= sizeof(TQ_USB_CONFIGURATION_DESCRIPTOR)) {
    RequireEqual(set.Descriptor()->wTotalLength, run[2] + 256 * run[3], "wTotalLength");
    RequireEqual(set.Descriptor()->bMaxPower, run[8], "bMaxPower");
  }
  CheckLists(suite, set, run);
  suite.ExpectNothingLogged();
}

}  // namespace usb_support::fuzz

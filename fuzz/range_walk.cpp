// The bytes as a run of descriptors: its valid part, searches, lists, sub-ranges, counts, and its
// dump.
#include <cstring>
#include <set>

#include <fuzz/oracle.h>
#include <fuzz/targets.h>
#include <tests/support/exact_bytes.h>
#include <usb_support/descriptors/descriptor_type_finder.h>
#include <usb_support/descriptors/range_diagnosis.h>

namespace usb_support::fuzz {
namespace {

using model::Bytes;
using model::Piece;
using testing_support::ExactBytes;

constexpr char const* kOutOfRange = "Invalid Descriptor Range Iterator: out of range.";
constexpr char const* kZeroLength = "Invalid descriptor:  bLength must be greater than 0.";

std::size_t Offset(CDescriptorRange const& range, CDescriptorRangeIterator const& it) {
  return static_cast<std::size_t>(it - range.begin());
}

void CheckDiagnosis(CDescriptorRange const& range, model::Chain const& chain, std::size_t size) {
  RequireEqual(range.Valid(), chain.end == model::End::kComplete, "validity");
  RequireEqual(Offset(range, range.ValidUntil()), chain.validLength, "end of the valid part");
  RequireEqual(range.ValidUntil().Remaining(), size - chain.validLength, "bytes after it");
  RunDiagnosis const diagnosis = DiagnoseRun(range);
  RequireEqual(static_cast<int>(diagnosis.reason), static_cast<int>(chain.end), "why it ends");
  RequireEqual(diagnosis.offset, chain.validLength, "diagnosed end");
  RequireEqual(diagnosis.bytesLeft, size - chain.validLength, "diagnosed rest");
}

// Steps continue until one is refused; after that the place stays the same.
void CheckSteps(CDescriptorRange const& range, Bytes const& run) {
  CDescriptorRangeIterator it = range.begin();
  std::size_t at = 0;
  for (std::optional<std::size_t> next = model::Next(run, at); next; next = model::Next(run, at)) {
    ++it;
    at = *next;
    RequireEqual(Offset(range, it), at, "place after a step");
    RequireEqual(it.Remaining(), run.size() - at, "bytes left after a step");
  }
  RequireEqual(Thrown([&] { ++it; }), std::string(at == run.size() ? kOutOfRange : kZeroLength),
               "refused step");
  RequireEqual(Offset(range, it), at, "place after a refused step");
}

void CheckType(Suite const& suite, ExactBytes const& block, Bytes const& run,
               model::Chain const& chain, unsigned char type) {
  CDescriptorRange const range = block.Range();
  std::optional<std::size_t> const first =
      model::Search(run, 0, run.size(), model::OfType(run, type));
  if (first) {
    RequireEqual(Offset(range, range.FindFirst(type)), *first, "first of a type");
  } else {
    RequireEqual(Thrown([&] { static_cast<void>(range.FindFirst(type)); }),
                 std::string(kZeroLength), "refused search");
  }
  suite.ExpectNothingLogged();

  std::vector<Piece> expected;
  for (Piece const& descriptor : chain.descriptors) {
    if (model::HasType(run, descriptor.offset, type)) {
      expected.push_back(descriptor);
    }
  }
  bool const isValid = chain.end == model::End::kComplete;
  RequireEqual(PiecesOf(block.data(), range.GetAll(type)), expected, "all of a type");
  suite.ExpectLoggedValidity(isValid);
  RequireEqual(range.Count(type), static_cast<unsigned short>(expected.size()), "count of a type");
  suite.ExpectLoggedValidity(isValid);
}

// From a descriptor of one type to the next of another.
void CheckSubRanges(Suite const& suite, ExactBytes const& block, Bytes const& run, bool isValid,
                    unsigned char startType, unsigned char finishType) {
  CDescriptorRange const range = block.Range();
  model::Match const isStart = model::OfType(run, startType);
  model::Match const isFinish = model::OfType(run, finishType);
  RangePredicate const startPredicate = [&](auto const& it) { return HasType(it, startType); };
  RangePredicate finishPredicate = [&](auto const& it) { return HasType(it, finishType); };
  RangeFinder const start = DescriptorType(startType);
  RangeFinder const finish = DescriptorType(finishType);
  CRangeSelector const selectors[] = {CRangeSelector(start, finish),
                                      CRangeSelector(startPredicate, finishPredicate)};
  std::vector<Piece> const all = model::Cuts(run, isStart, isFinish);
  std::optional<Piece> const one = model::Cut(run, 0, run.size(), isStart, isFinish);
  for (CRangeSelector const& selector : selectors) {
    RequireEqual(PiecesOf(block.data(), range.GetSubRanges(selector)), all, "sub-ranges");
    suite.ExpectLoggedValidity(isValid);
    RequireEqual(range.Count(selector), static_cast<unsigned short>(all.size()),
                 "count of sub-ranges");
    suite.ExpectLoggedValidity(isValid);
    if (one) {
      RequireEqual(PieceOf(block.data(), range.SubRange(selector)), *one, "first sub-range");
    } else {
      RequireEqual(Thrown([&] { range.SubRange(selector); }), std::string(kZeroLength),
                   "refused sub-range");
    }
    suite.ExpectNothingLogged();
  }
  RequireEqual(range.Count(startPredicate),
               static_cast<unsigned short>(model::Cuts(run, isStart, isStart).size()),
               "count by predicate");
  suite.ExpectLoggedValidity(isValid);
}

template <typename Record>
Record RecordOf(model::LabelBytes const& bytes) {
  Record record;
  static_assert(sizeof(record) <= sizeof(bytes));
  std::memcpy(&record, bytes.data(), sizeof(record));
  return record;
}

std::string Label(model::LabelBytes descriptor, model::LabelBytes const* interface) {
  auto const record = RecordOf<TQ_USB_INTERFACE_DESCRIPTOR>(descriptor);
  auto const& common = reinterpret_cast<TQ_USB_COMMON_DESCRIPTOR const&>(record);
  if (interface == nullptr) {
    return CUsbHelper::GenerateDescriptorLabel(common, nullptr, TQE_USB_DEVICE_SPEED_UNKNOWN);
  }
  auto current = RecordOf<TQ_USB_INTERFACE_DESCRIPTOR>(*interface);
  return CUsbHelper::GenerateDescriptorLabel(common, &current, TQE_USB_DEVICE_SPEED_UNKNOWN);
}

// The middle of a run behaves as a run of its own.
void CheckSlice(Suite const& suite, ExactBytes const& block, Bytes const& run) {
  std::size_t const first = run.size() / 3;
  std::size_t const last = run.size() - run.size() / 4;
  Bytes const bytes(run.begin() + static_cast<std::ptrdiff_t>(first),
                    run.begin() + static_cast<std::ptrdiff_t>(last));
  ExactBytes const copy(bytes);
  CDescriptorRange const slice(block.At(first), block.At(last));
  Require(slice == copy.Range() || bytes.empty(), "a slice equals a copy of its bytes");
  Require(slice.SubRangeOf(block.Range()) || bytes.empty(), "a slice is in the run");
  RequireEqual(slice.Count(), model::ChainOf(bytes).descriptors.size(), "count of a slice");
  RequireEqual(*slice.OutputString(true), model::Dump(bytes, true, Label), "dump of a slice");
  static_cast<void>(suite.TakeCalls());
}

}  // namespace

void RangeWalk(Input input) {
  if (input.size() > 0xFFFF) {
    return;
  }
  Suite const suite;
  Bytes const run = BytesOf(input);
  ExactBytes const block(run);
  CDescriptorRange const range = block.Range();
  model::Chain const chain = model::ChainOf(run);
  bool const isValid = chain.end == model::End::kComplete;

  CheckDiagnosis(range, chain, run.size());
  CheckSteps(range, run);
  suite.ExpectNothingLogged();

  RequireEqual(PiecesOf(block.data(), range.GetAll()), chain.descriptors, "all descriptors");
  suite.ExpectLoggedValidity(isValid);
  RequireEqual(range.Count(), static_cast<unsigned short>(chain.descriptors.size()),
               "count of descriptors");
  suite.ExpectLoggedValidity(isValid);

  std::set<unsigned char> types = {0x00, 0x04, 0x24};
  for (std::size_t i = 0; i < chain.descriptors.size() && types.size() < 16; ++i) {
    types.insert(model::ByteAt(run, chain.descriptors[i].offset + 1));
  }
  for (unsigned char const type : types) {
    CheckType(suite, block, run, chain, type);
  }

  CheckSubRanges(suite, block, run, isValid, 0x04, 0x05);
  // The last bytes choose two types.
  if (run.size() >= 2) {
    CheckSubRanges(suite, block, run, isValid, run[run.size() - 2], run[run.size() - 1]);
  }
  for (bool const asCode : {false, true}) {
    RequireEqual(*range.OutputString(asCode), model::Dump(run, asCode, Label), "dump");
  }
  CheckSlice(suite, block, run);
}

}  // namespace usb_support::fuzz

// Holds the operations over a run of descriptors to the model, over some thousands of generated
// runs. Each run lies in a heap block of exactly its length.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tests/property/dump_reader.h>
#include <tests/property/model.h>
#include <tests/property/run_generator.h>
#include <tests/support/exact_bytes.h>
#include <tests/support/suite_test.h>
#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/descriptors/descriptor_type_finder.h>
#include <usb_support/descriptors/range_diagnosis.h>
#include <usb_support/helper/usb_helper.h>

namespace usb_support {
namespace {

using model::Bytes;
using model::Piece;
using property::GeneratedRun;
using testing_support::ExactBytes;

constexpr char const* kOutOfRange = "Invalid Descriptor Range Iterator: out of range.";
constexpr char const* kZeroLength = "Invalid descriptor:  bLength must be greater than 0.";

using Iterator = CDescriptorRangeIterator;

std::vector<GeneratedRun> const& Runs() {
  static std::vector<GeneratedRun> const runs = property::MakeRuns();
  return runs;
}

class DescriptorRangeProperty : public testing_support::SuiteTest {
 protected:
  void SetUp() override { InitUsbHelper(nullptr); }

  /// Checks every run, up to the first that fails.
  template <typename Check>
  void ForEachRun(Check const& check) {
    ASSERT_GT(Runs().size(), 10000u);
    for (GeneratedRun const& run : Runs()) {
      SCOPED_TRACE(run.origin);
      check(run.bytes);
      if (HasFailure()) {
        ADD_FAILURE() << "bytes: " << model::Joined(run.bytes, Piece{0, run.bytes.size()}, "", " ");
        return;
      }
    }
  }

  /// One message about an invalid range, nothing about a valid one.
  void ExpectLogged(bool isValid) {
    std::vector<standalone::RecordedCall> const calls = TakeCalls();
    ASSERT_EQ(calls.size(), isValid ? 0u : 1u);
    if (!isValid) {
      EXPECT_EQ(calls[0].operation, standalone::LogOperation::kDoWritePrintOnly);
      EXPECT_TRUE(calls[0].text.starts_with("Descriptor Range is not valid.\n")) << calls[0];
    }
  }
};

Piece PieceOf(ExactBytes const& block, CDescriptorRange const& range) {
  return range.IsEmpty()
             ? Piece{}
             : Piece{static_cast<std::size_t>(range.Bytes() - block.data()), range.Length()};
}

std::vector<Piece> PiecesOf(ExactBytes const& block, CDescriptorRange::RangeVector const& ranges) {
  std::vector<Piece> pieces;
  for (CDescriptorRange const& range : *ranges) {
    pieces.push_back(PieceOf(block, range));
  }
  return pieces;
}

// The types that occur in a run and some that seldom do.
std::set<unsigned char> TypesIn(Bytes const& run) {
  std::set<unsigned char> types = {0x00, 0x01, 0x04, 0x05, 0x24, 0xFF};
  for (Piece const& descriptor : model::ChainOf(run).descriptors) {
    types.insert(model::ByteAt(run, descriptor.offset + 1));
  }
  return types;
}

ExactBytes BlockOf(model::LabelBytes const& bytes) {
  static_assert(sizeof(bytes) == sizeof(TQ_USB_INTERFACE_DESCRIPTOR));
  return ExactBytes({bytes.begin(), bytes.end()});
}

std::string Label(model::LabelBytes const& descriptor, model::LabelBytes const* interface) {
  ExactBytes const record = BlockOf(descriptor);
  if (interface == nullptr) {
    return CUsbHelper::GenerateDescriptorLabel(*record.Descriptor(), nullptr,
                                               TQE_USB_DEVICE_SPEED_UNKNOWN);
  }
  ExactBytes const current = BlockOf(*interface);
  return CUsbHelper::GenerateDescriptorLabel(
      *record.Descriptor(), reinterpret_cast<TQ_USB_INTERFACE_DESCRIPTOR*>(current.data()),
      TQE_USB_DEVICE_SPEED_UNKNOWN);
}

// What `work` raises; the empty text when it raises nothing.
template <typename Work>
std::string Raised(Work const& work) {
  try {
    work();
  } catch (TQRunTimeException const& raised) {
    return raised.what();
  }
  return {};
}

TEST_F(DescriptorRangeProperty, WalkVisitsEveryDescriptorOfTheValidPart) {
  ForEachRun([](Bytes const& run) {
    ExactBytes const block(run);
    CDescriptorRange const range = block.Range();
    std::vector<Piece> visited;
    for (Iterator it = range.begin(); it != range.ValidUntil(); ++it) {
      visited.push_back({static_cast<std::size_t>(it - range.begin()), it->bLength});
      EXPECT_EQ(it.Remaining(), run.size() - visited.back().offset);
    }
    EXPECT_EQ(visited, model::ChainOf(run).descriptors);
  });
}

TEST_F(DescriptorRangeProperty, StepsIndicesAndSumsEndWhereTheModelsDo) {
  ForEachRun([](Bytes const& run) {
    ExactBytes const block(run);
    CDescriptorRange const range = block.Range();
    Iterator it = range.begin();
    std::size_t at = 0;
    for (std::uint64_t steps = 0;; ++steps) {
      if (!run.empty()) {
        EXPECT_EQ(it, block.At(at));
        EXPECT_EQ(range.begin() + steps, block.At(at));
        EXPECT_EQ(std::addressof(range[steps]), block.Descriptor(at));
      }
      std::optional<std::size_t> const next = model::Next(run, at);
      if (!next.has_value()) {
        char const* const reason = at == run.size() ? kOutOfRange : kZeroLength;
        Iterator const before = it;
        EXPECT_EQ(Raised([&] { ++it; }), reason);
        EXPECT_EQ(it, before);
        EXPECT_EQ(Raised([&] { static_cast<void>(range.begin() + (steps + 1)); }), reason);
        EXPECT_EQ(Raised([&] { static_cast<void>(range[steps + 1]); }), reason);
        break;
      }
      ++it;
      at = *next;
    }
  });
}

TEST_F(DescriptorRangeProperty, ValidUntilAndDiagnosis) {
  std::set<model::End> seen;
  ForEachRun([&seen](Bytes const& run) {
    ExactBytes const block(run);
    CDescriptorRange const range = block.Range();
    model::Chain const chain = model::ChainOf(run);
    seen.insert(chain.end);
    EXPECT_EQ(static_cast<std::size_t>(range.ValidUntil() - range.begin()), chain.validLength);
    EXPECT_EQ(range.ValidUntil().Remaining(), run.size() - chain.validLength);
    EXPECT_EQ(range.Valid(), chain.end == model::End::kComplete);

    RunDiagnosis const diagnosis = DiagnoseRun(range);
    RunEnd const expected = chain.end == model::End::kComplete         ? RunEnd::kComplete
                            : chain.end == model::End::kZeroLength     ? RunEnd::kZeroLength
                            : chain.end == model::End::kHeaderCutShort ? RunEnd::kHeaderCutShort
                                                                       : RunEnd::kPastEnd;
    EXPECT_EQ(diagnosis.reason, expected) << RunEndText(diagnosis.reason);
    EXPECT_EQ(diagnosis.offset, chain.validLength);
    EXPECT_EQ(diagnosis.bytesLeft, run.size() - chain.validLength);
  });
  EXPECT_EQ(seen.size(), 4u) << "the runs do not end in every way";
}

TEST_F(DescriptorRangeProperty, FindFirst) {
  ForEachRun([](Bytes const& run) {
    ExactBytes const block(run);
    CDescriptorRange const range = block.Range();
    for (unsigned char const type : TypesIn(run)) {
      std::optional<std::size_t> const at =
          model::Search(run, 0, run.size(), model::OfType(run, type));
      if (at.has_value()) {
        EXPECT_EQ(static_cast<std::size_t>(range.FindFirst(type) - range.begin()), *at) << +type;
        EXPECT_EQ(range.FindFirst(type).Remaining(), run.size() - *at) << +type;
      } else {
        EXPECT_EQ(Raised([&] { static_cast<void>(range.FindFirst(type)); }), kZeroLength) << +type;
      }
    }
  });
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(DescriptorRangeProperty, AllDescriptors) {
  ForEachRun([this](Bytes const& run) {
    ExactBytes const block(run);
    CDescriptorRange const range = block.Range();
    model::Chain const chain = model::ChainOf(run);
    bool const isValid = chain.end == model::End::kComplete;
    EXPECT_EQ(PiecesOf(block, range.GetAll()), chain.descriptors);
    ExpectLogged(isValid);
    EXPECT_EQ(range.Count(), chain.descriptors.size());
    ExpectLogged(isValid);
  });
}

TEST_F(DescriptorRangeProperty, AllDescriptorsOfAType) {
  ForEachRun([this](Bytes const& run) {
    ExactBytes const block(run);
    CDescriptorRange const range = block.Range();
    bool const isValid = model::ChainOf(run).end == model::End::kComplete;
    for (unsigned char const type : TypesIn(run)) {
      std::vector<Piece> expected;
      for (Piece const& descriptor : model::ChainOf(run).descriptors) {
        if (model::HasType(run, descriptor.offset, type)) {
          expected.push_back(descriptor);
        }
      }
      EXPECT_EQ(PiecesOf(block, range.GetAll(type)), expected) << +type;
      ExpectLogged(isValid);
      EXPECT_EQ(range.Count(type), expected.size()) << +type;
      ExpectLogged(isValid);
    }
  });
}

TEST_F(DescriptorRangeProperty, SubRanges) {
  std::size_t found = 0;
  ForEachRun([&](Bytes const& run) {
    ExactBytes const block(run);
    CDescriptorRange const range = block.Range();
    bool const isValid = model::ChainOf(run).end == model::End::kComplete;
    model::Match const isInterface = model::OfType(run, 4);
    model::Match const isShort = [&run](std::size_t at) { return run[at] < 8; };

    RangePredicate const interfacePredicate = [](Iterator const& it) { return HasType(it, 4); };
    RangePredicate shortPredicate = [](Iterator const& it) { return it->bLength < 8; };
    CRangeSelector const byInterface(interfacePredicate);
    CRangeSelector const toShort(interfacePredicate, shortPredicate);
    RangeFinder const typeFinder = DescriptorType(4);
    RangeFinder const next = CDescriptorRange::AlwaysTrue;

    std::vector<Piece> expected = model::Cuts(run, isInterface, isInterface);
    found += expected.size();
    EXPECT_EQ(PiecesOf(block, range.GetSubRanges(byInterface)), expected);
    ExpectLogged(isValid);
    EXPECT_EQ(range.Count(byInterface), expected.size());
    ExpectLogged(isValid);
    EXPECT_EQ(range.Count(interfacePredicate), expected.size());
    ExpectLogged(isValid);

    expected = model::Cuts(run, isInterface, isShort);
    EXPECT_EQ(PiecesOf(block, range.GetSubRanges(toShort)), expected);
    ExpectLogged(isValid);

    expected = model::Cuts(run, isInterface, model::Anything);
    EXPECT_EQ(PiecesOf(block, range.GetSubRanges(typeFinder, next)), expected);
    ExpectLogged(isValid);
    EXPECT_EQ(range.Count(typeFinder, next), expected.size());
    ExpectLogged(isValid);
  });
  EXPECT_GT(found, 1000u);
}

TEST_F(DescriptorRangeProperty, OneSubRangeUpToTheEnd) {
  std::size_t raised = 0;
  ForEachRun([&raised](Bytes const& run) {
    ExactBytes const block(run);
    CDescriptorRange const range = block.Range();
    model::Match const isInterface = model::OfType(run, 4);
    model::Match const isEndpoint = model::OfType(run, 5);
    RangeFinder const interfaceFinder = DescriptorType(4);
    RangeFinder const endpointFinder = DescriptorType(5);
    struct Case {
      model::Match const& startMatch;
      model::Match const& finishMatch;
      RangeFinder const& start;
      RangeFinder const& finish;
    };
    for (Case const& one : {Case{isInterface, isInterface, interfaceFinder, interfaceFinder},
                            Case{isInterface, isEndpoint, interfaceFinder, endpointFinder},
                            Case{isEndpoint, isInterface, endpointFinder, interfaceFinder}}) {
      std::optional<Piece> const expected =
          model::Cut(run, 0, run.size(), one.startMatch, one.finishMatch);
      CRangeSelector const selector(one.start, one.finish);
      if (expected.has_value()) {
        EXPECT_EQ(PieceOf(block, range.SubRange(selector)), *expected);
        EXPECT_EQ(PieceOf(block, range.SubRange(one.start, one.finish)), *expected);
      } else {
        ++raised;
        EXPECT_EQ(Raised([&] { range.SubRange(selector); }), kZeroLength);
        EXPECT_EQ(Raised([&] { range.SubRange(one.start, one.finish); }), kZeroLength);
      }
    }
  });
  EXPECT_GT(raised, 100u);
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(DescriptorRangeProperty, Dumps) {
  ForEachRun([](Bytes const& run) {
    ExactBytes const block(run);
    CDescriptorRange const range = block.Range();
    EXPECT_EQ(*range.OutputString(false), model::Dump(run, false, Label));
    EXPECT_EQ(*range.OutputString(true), model::Dump(run, true, Label));
  });
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(DescriptorRangeProperty, DumpsReadBackToTheSameBytes) {
  ForEachRun([](Bytes const& run) {
    ExactBytes const block(run);
    CDescriptorRange const range = block.Range();
    dump::Contents const expected = dump::ContentsOf(run, model::ChainOf(run));
    for (dump::Contents const& contents : {dump::ReadListing(*range.OutputString(false)),
                                           dump::ReadCode(*range.OutputString(true))}) {
      EXPECT_EQ(contents.bytes, expected.bytes);
      EXPECT_EQ(contents.tail, expected.tail);
      EXPECT_EQ(contents.offsets, expected.offsets);
    }
  });
}

// A slice sees no byte of the run around it: it behaves as a copy of its bytes in a block of its
// own.
TEST_F(DescriptorRangeProperty, SlicesBehaveAsRunsOfTheirOwn) {
  property::RunGenerator generator(4711);
  ForEachRun([&](Bytes const& run) {
    ExactBytes const block(run);
    std::size_t const first = generator.Below(run.size() + 1);
    std::size_t const last = first + generator.Below(run.size() - first + 1);
    Bytes const bytes(run.begin() + static_cast<std::ptrdiff_t>(first),
                      run.begin() + static_cast<std::ptrdiff_t>(last));
    ExactBytes const copy(bytes);
    CDescriptorRange const slice(block.At(first), block.At(last));
    EXPECT_EQ(slice, copy.Range());
    EXPECT_EQ(slice.Count(), copy.Range().Count());
    EXPECT_EQ(slice.Count(4), copy.Range().Count(4));
    EXPECT_EQ(*slice.OutputString(true), model::Dump(bytes, true, Label));
    Sink().Clear();
  });
}

}  // namespace
}  // namespace usb_support

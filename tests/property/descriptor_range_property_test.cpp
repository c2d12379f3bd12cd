// Compares the operations over a run of descriptors with the model, for some thousands of generated
// runs. Each run is in a heap block of exactly its length.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tests/property/model.h>
#include <tests/property/property_test.h>
#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/descriptors/descriptor_type_finder.h>
#include <usb_support/descriptors/range_diagnosis.h>
#include <usb_support/helper/usb_helper.h>

namespace usb_support {
namespace {

using model::Bytes;
using model::Piece;
using property::GeneratedRun;
using property::PiecesOf;
using testing_support::ExactBytes;
using testing_support::kOutOfRange;
using testing_support::kZeroLength;

using Iterator = CDescriptorRangeIterator;

std::vector<GeneratedRun> const& Runs() {
  static std::vector<GeneratedRun> const runs = property::MakeRuns();
  return runs;
}

class DescriptorRangeProperty : public property::PropertyTest {
 protected:
  void SetUp() override { InitUsbHelper(nullptr); }

  template <typename Check>
  void ForEachRun(Check const& check) {
    PropertyTest::ForEachRun(Runs(), check);
  }
};

Piece PieceOf(ExactBytes const& block, CDescriptorRange const& range) {
  return range.IsEmpty()
             ? Piece{}
             : Piece{static_cast<std::size_t>(range.Bytes() - block.data()), range.Length()};
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

// What `work` throws; the empty text when it throws nothing.
template <typename Work>
std::string Raised(Work const& work) {
  try {
    work();
  } catch (TQRunTimeException const& raised) {
    return raised.what();
  }
  return {};
}

TEST_F(DescriptorRangeProperty, WalkVisitsEveryDescriptor) {
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

TEST_F(DescriptorRangeProperty, StepsIndicesAndSums) {
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
    EXPECT_EQ(PiecesOf(range, range.GetAll()), chain.descriptors);
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
      EXPECT_EQ(PiecesOf(range, range.GetAll(type)), expected) << +type;
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
    EXPECT_EQ(PiecesOf(range, range.GetSubRanges(byInterface)), expected);
    ExpectLogged(isValid);
    EXPECT_EQ(range.Count(byInterface), expected.size());
    ExpectLogged(isValid);
    EXPECT_EQ(range.Count(interfacePredicate), expected.size());
    ExpectLogged(isValid);

    expected = model::Cuts(run, isInterface, isShort);
    EXPECT_EQ(PiecesOf(range, range.GetSubRanges(toShort)), expected);
    ExpectLogged(isValid);

    expected = model::Cuts(run, isInterface, model::Anything);
    EXPECT_EQ(PiecesOf(range, range.GetSubRanges(typeFinder, next)), expected);
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

// A slice sees no byte of the run around it: it behaves as a copy of its bytes in a block of its
// own.
TEST_F(DescriptorRangeProperty, SlicesBehaveAsRunsOfTheirOwn) {
  property::RunGenerator generator(4711);
  ForEachRun([&](Bytes const& run) {
    ExactBytes const block(run);
    std::size_t const first = generator.Below(run.size() + 1);
    std::size_t const last = first + generator.Below(run.size() - first + 1);
    Bytes const bytes = testing_support::Part(run, first, last);
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

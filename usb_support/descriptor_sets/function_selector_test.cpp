#include <usb_support/descriptor_sets/function_selector.h>

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/support/exact_bytes.h>
#include <tests/support/suite_test.h>
#include <usb_support/descriptors/descriptor_range.h>

namespace usb_support {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::Bytes;
using testing_support::ExactBytes;
using testing_support::Joined;
using testing_support::MakeDescriptor;

constexpr auto kInternalError = static_cast<TEST_STATUS>(0x40000000);
constexpr char const* kZeroLength = "Invalid descriptor:  bLength must be greater than 0.";

using Byte = unsigned char;
using Iterator = CDescriptorRangeIterator;
using Found = std::pair<bool, Iterator>;
using Piece = std::pair<std::size_t, std::size_t>;

static_assert(std::is_convertible_v<start_function, RangeFinder>);
static_assert(std::is_convertible_v<end_function, RangeFinder>);
static_assert(std::is_base_of_v<CRangeSelector, function_selector>);
static_assert(std::has_virtual_destructor_v<function_selector>);

Bytes Interface(Byte number, Byte setting = 0) {
  return {0x09, 0x04, number, setting, 0x01, 0x03, 0x00, 0x00, 0x00};
}

Bytes Association(Byte first, Byte count) {
  return {0x08, 0x0B, first, count, 0x0E, 0x03, 0x00, 0x00};
}

Bytes const kEndpoint = {0x07, 0x05, 0x81, 0x03, 0x08, 0x00, 0x0A};

std::vector<Piece> PiecesOf(CDescriptorRange const& whole,
                            CDescriptorRange::RangeVector const& ranges) {
  std::vector<Piece> pieces;
  for (CDescriptorRange const& range : *ranges) {
    pieces.emplace_back(static_cast<std::size_t>(range.Bytes() - whole.Bytes()), range.Length());
  }
  return pieces;
}

std::string NotValid(unsigned type) {
  char text[64];
  std::snprintf(text, sizeof(text), "Descriptor has type 0x%02X: not valid for USB Function.",
                type);
  return text;
}

TEST(StartOfFunction, HeadIsNoneAtFirst) {
  function_head const head;
  EXPECT_EQ(head.descriptor, Iterator());
}

TEST(StartOfFunction, IsAnAssociationOrAnInterfacesFirstSetting) {
  for (unsigned type = 0; type < 256; ++type) {
    for (Byte const setting : {Byte{0x00}, Byte{0x01}, Byte{0xFF}}) {
      ExactBytes const block(
          Bytes{0x09, static_cast<Byte>(type), 0x00, setting, 0x00, 0x00, 0x00, 0x00, 0x00});
      function_head head;
      bool const isStart = type == 0x0B || (type == 0x04 && setting == 0);
      EXPECT_EQ(start_function(&head)(block.At(0), block.At(9)),
                Found(true, block.At(isStart ? 0 : 9)))
          << type << ", " << int{setting};
      EXPECT_EQ(head.descriptor, isStart ? block.At(0) : Iterator());
    }
  }
}

TEST(StartOfFunction, IsTheFirstAndIsKeptAsTheHead) {
  // At 0, 9, 18, 25, 33 and 42; end 51.
  ExactBytes const block(Joined({MakeDescriptor(9, 2), Interface(0, 1), kEndpoint,
                                 Association(1, 2), Interface(1), Interface(2)}));
  function_head head;
  start_function const start(&head);
  EXPECT_EQ(start(block.At(0), block.At(51)), Found(true, block.At(25)));
  EXPECT_EQ(head.descriptor, block.At(25));
  EXPECT_EQ(start(block.At(33), block.At(51)), Found(true, block.At(33)));
  EXPECT_EQ(head.descriptor, block.At(33));
  EXPECT_EQ(start(block.At(42), block.At(51)), Found(true, block.At(42)));
  EXPECT_EQ(head.descriptor, block.At(42));
}

TEST(StartOfFunction, IsLastWithTheHeadAsItWasWhenThereIsNone) {
  ExactBytes const block(Joined({Interface(0), kEndpoint, Interface(0, 1), Interface(1)}));
  function_head head{block.At(0)};
  start_function const start(&head);
  EXPECT_EQ(start(block.At(9), block.At(25)), Found(true, block.At(25)));
  EXPECT_EQ(head.descriptor, block.At(0));
  EXPECT_EQ(start(block.At(25), block.At(25)), Found(true, block.At(25)));
  EXPECT_EQ(head.descriptor, block.At(0));
  EXPECT_EQ(start(block.At(34), block.At(34)), Found(true, block.At(34)));
  EXPECT_EQ(start(Iterator(), Iterator()), Found(true, Iterator()));
  EXPECT_EQ(head.descriptor, block.At(0));
}

TEST(StartOfFunction, ReadsFieldsInsideTheRunOnly) {
  // An interface without its third byte has setting 0; a last byte alone has no type.
  ExactBytes const shortInterface({0x02, 0x04});
  function_head head;
  EXPECT_EQ(start_function(&head)(shortInterface.At(0), shortInterface.At(2)),
            Found(true, shortInterface.At(0)));
  EXPECT_EQ(head.descriptor, shortInterface.At(0));
  ExactBytes const lastByte({0x01});
  EXPECT_EQ(start_function(&head)(lastByte.At(0), lastByte.At(1)), Found(true, lastByte.At(1)));
  EXPECT_EQ(head.descriptor, shortInterface.At(0));
}

TEST(StartOfFunction, RaisesOnAZeroLength) {
  ExactBytes const block({0x02, 0x05, 0x00, 0x05, 0x02, 0x0B});
  function_head head;
  EXPECT_RUN_TIME_EXCEPTION(start_function{&head}(block.At(0), block.At(6)), kZeroLength,
                            kInternalError);
}

TEST(EndOfFunction, IsTheNextAssociationWhateverTheHead) {
  // At 0, 9, 18 and 26; end 35.
  ExactBytes const block(Joined({Interface(0), Interface(5), Association(9, 1), Interface(1)}));
  ExactBytes const device(MakeDescriptor(18, 1));
  for (Iterator const& descriptor : {block.At(0), block.At(18), device.At(0), Iterator()}) {
    function_head const head{descriptor};
    EXPECT_EQ(end_function(&head)(block.At(18), block.At(35)), Found(true, block.At(18)));
  }
  function_head const head{block.At(0)};
  EXPECT_EQ(end_function(&head)(block.At(9), block.At(35)), Found(true, block.At(18)));
}

TEST(EndOfFunction, IsTheInterfaceThatFollowsOnAnInterface) {
  for (unsigned headNumber = 0; headNumber < 256; ++headNumber) {
    ExactBytes const headBlock(Interface(static_cast<Byte>(headNumber)));
    function_head const head{headBlock.At(0)};
    for (unsigned number = 0; number < 256; ++number) {
      ExactBytes const block(Interface(static_cast<Byte>(number)));
      bool const followsOn = number == headNumber + 1 || (headNumber == 255 && number == 0);
      ASSERT_EQ(end_function(&head)(block.At(0), block.At(9)),
                Found(true, block.At(followsOn ? 0 : 9)))
          << headNumber << ", " << number;
    }
  }
}

TEST(EndOfFunction, IsTheInterfaceThatFollowsOnAnAssociation) {
  for (unsigned first = 0; first < 256; ++first) {
    for (unsigned count = 0; count < 256; ++count) {
      ExactBytes const headBlock(Association(static_cast<Byte>(first), static_cast<Byte>(count)));
      function_head const head{headBlock.At(0)};
      unsigned const next = first + count < 256 ? first + count : first + count - 256;
      ExactBytes const block(
          Joined({Interface(static_cast<Byte>(next + 1)), Interface(static_cast<Byte>(next + 255)),
                  Interface(static_cast<Byte>(next))}));
      ASSERT_EQ(end_function(&head)(block.At(0), block.At(27)), Found(true, block.At(18)))
          << first << ", " << count;
    }
  }
}

TEST(EndOfFunction, OtherSettingsAndDescriptorsStayInside) {
  ExactBytes const block(Joined(
      {Interface(0), Interface(1, 1), kEndpoint, MakeDescriptor(5, 0x24), Interface(1, 255)}));
  function_head const head{block.At(0)};
  EXPECT_EQ(end_function(&head)(block.At(9), block.At(39)), Found(true, block.At(39)));
}

TEST(EndOfFunction, IsLastWhenItStartsThere) {
  ExactBytes const block(Joined({Interface(0), Interface(1)}));
  function_head const head{block.At(0)};
  EXPECT_EQ(end_function(&head)(block.At(9), block.At(9)), Found(true, block.At(9)));
  function_head const none;
  EXPECT_EQ(end_function(&none)(Iterator(), Iterator()), Found(true, Iterator()));
}

TEST(EndOfFunction, RaisesForAHeadOfAnotherType) {
  ExactBytes const block(Interface(1));
  for (unsigned type = 0; type < 256; ++type) {
    ExactBytes const headBlock(MakeDescriptor(9, static_cast<Byte>(type)));
    function_head const head{headBlock.At(0)};
    if (type == 0x04 || type == 0x0B) {
      EXPECT_NO_THROW(end_function{&head}(block.At(0), block.At(9)));
    } else {
      EXPECT_RUN_TIME_EXCEPTION(end_function{&head}(block.At(0), block.At(9)),
                                NotValid(type).c_str(), kInternalError);
    }
  }
}

TEST(EndOfFunction, RaisesForNoHead) {
  ExactBytes const block(Interface(1));
  function_head const none;
  EXPECT_RUN_TIME_EXCEPTION(end_function{&none}(block.At(0), block.At(9)),
                            "Descriptor has type 0x00: not valid for USB Function.",
                            kInternalError);
  ExactBytes const lastByte({0x01});
  function_head const untyped{lastByte.At(0)};
  EXPECT_RUN_TIME_EXCEPTION(end_function{&untyped}(block.At(0), block.At(9)),
                            "Descriptor has type 0x00: not valid for USB Function.",
                            kInternalError);
}

// The head is looked at only where an interface might end the function.
TEST(EndOfFunction, DoesNotNeedTheHeadBeforeAnInterface) {
  ExactBytes const headBlock(MakeDescriptor(9, 0x05));
  function_head const head{headBlock.At(0)};
  ExactBytes const block(Joined({Interface(1, 1), kEndpoint}));
  EXPECT_EQ(end_function(&head)(block.At(0), block.At(16)), Found(true, block.At(16)));
}

TEST(EndOfFunction, ReadsFieldsInsideTheRunOnly) {
  // Interface heads that end with the run, short of the number or not, and interface 1 and 6.
  ExactBytes const unnumbered({0x02, 0x04});
  ExactBytes const numbered({0x09, 0x04, 0x05});
  ExactBytes const one(Interface(1));
  ExactBytes const six(Interface(6));
  function_head const unnumberedHead{unnumbered.At(0)};
  EXPECT_EQ(end_function(&unnumberedHead)(one.At(0), one.At(9)), Found(true, one.At(0)));
  function_head const numberedHead{numbered.At(0)};
  EXPECT_EQ(end_function(&numberedHead)(six.At(0), six.At(9)), Found(true, six.At(0)));
  EXPECT_EQ(end_function(&numberedHead)(one.At(0), one.At(9)), Found(true, one.At(9)));

  // Association heads: 5 + 0 and 0 + 0.
  ExactBytes const uncounted({0x03, 0x0B, 0x06});
  function_head const uncountedHead{uncounted.At(0)};
  EXPECT_EQ(end_function(&uncountedHead)(six.At(0), six.At(9)), Found(true, six.At(0)));
  ExactBytes const bare({0x02, 0x0B});
  function_head const bareHead{bare.At(0)};
  ExactBytes const zero(Interface(0));
  EXPECT_EQ(end_function(&bareHead)(zero.At(0), zero.At(9)), Found(true, zero.At(0)));

  // An interface that ends with the run has number 0 and setting 0.
  EXPECT_EQ(end_function(&bareHead)(unnumbered.At(0), unnumbered.At(2)),
            Found(true, unnumbered.At(0)));
  EXPECT_EQ(end_function(&numberedHead)(unnumbered.At(0), unnumbered.At(2)),
            Found(true, unnumbered.At(2)));
}

TEST(EndOfFunction, ReadsBehindShortDescriptorsWhatStandsThere) {
  // The head's number is the next bLength: 9, so interface 10 follows on.
  ExactBytes const block(Joined({{0x02, 0x04}, Interface(1), Interface(10)}));
  function_head const head{block.At(0)};
  EXPECT_EQ(end_function(&head)(block.At(2), block.At(20)), Found(true, block.At(11)));
  // 9 + 4 for an association.
  ExactBytes const association(Joined({{0x02, 0x0B}, Interface(1), Interface(13)}));
  function_head const associationHead{association.At(0)};
  EXPECT_EQ(end_function(&associationHead)(association.At(2), association.At(20)),
            Found(true, association.At(11)));
}

TEST(EndOfFunction, RaisesOnAZeroLength) {
  ExactBytes const block(Joined({Interface(0), {0x00, 0x05}, Interface(1)}));
  function_head const head{block.At(0)};
  EXPECT_RUN_TIME_EXCEPTION(end_function{&head}(block.At(9), block.At(20)), kZeroLength,
                            kInternalError);
}

using FunctionSelector = testing_support::SuiteTest;

TEST_F(FunctionSelector, CutsARangeIntoFunctions) {
  // At 0, 9, 17, 26, 33, 42 and 51; end 58.
  ExactBytes const block(Joined({MakeDescriptor(9, 2), Association(0, 2), Interface(0), kEndpoint,
                                 Interface(1), Interface(2), kEndpoint}));
  function_head head;
  function_selector const selector(&head);
  EXPECT_THAT(PiecesOf(block.Range(), block.Range().GetSubRanges(selector)),
              ElementsAre(Piece(9, 33), Piece(42, 16)));
  EXPECT_EQ(head.descriptor, block.At(42));
  EXPECT_EQ(block.Range().Count(selector), 2);
  CDescriptorRange const first = block.Range().SubRange(selector);
  EXPECT_EQ(first.Bytes(), block.data() + 9);
  EXPECT_EQ(first.Length(), 33);
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(FunctionSelector, CopiesShareTheHead) {
  ExactBytes const block(Joined({Interface(3), Interface(4)}));
  function_head head;
  function_selector const selector(&head);
  std::unique_ptr<CRangeSelector> const copy = std::make_unique<function_selector>(selector);
  EXPECT_EQ(copy->FindStart(block.At(0), block.At(18)), Found(true, block.At(0)));
  EXPECT_EQ(head.descriptor, block.At(0));
  EXPECT_EQ(selector.FindFinish(block.At(9), block.At(18)), Found(true, block.At(9)));
}

TEST_F(FunctionSelector, WrongHeadEndsTheListWithTheException) {
  ExactBytes const block(Joined({Interface(0), Interface(1), Interface(2)}));
  ExactBytes const endpoint(kEndpoint);
  function_head head;
  int starts = 0;
  // The head turns wrong behind the first function.
  auto const start = [&](Iterator first, Iterator last) {
    Found const found = start_function(&head)(first, last);
    if (++starts == 2) {
      head.descriptor = endpoint.At(0);
    }
    return found;
  };
  EXPECT_RUN_TIME_EXCEPTION(block.Range().GetSubRanges(start, end_function(&head)),
                            "Descriptor has type 0x05: not valid for USB Function.",
                            kInternalError);
  EXPECT_EQ(starts, 2);
}

// How often finders are called over a run, and how many descriptors they look at.
struct Effort {
  std::size_t ranges = 0;
  std::size_t calls = 0;
  std::size_t looks = 0;
};

template <typename Finder>
auto Counted(Finder const& finder, Effort& effort) {
  return [finder, &effort](Iterator first, Iterator last) {
    Found const found = finder(first, last);
    ++effort.calls;
    for (Iterator it = first; it != found.second; ++it) {
      ++effort.looks;
    }
    effort.looks += found.second != last ? 1u : 0u;
    return found;
  };
}

Effort EffortOf(Bytes const& run) {
  ExactBytes const block(run);
  Effort effort;
  function_head head;
  effort.ranges = block.Range()
                      .GetSubRanges(Counted(start_function(&head), effort),
                                    Counted(end_function(&head), effort))
                      ->size();
  return effort;
}

Bytes Repeated(Bytes const& part, std::size_t size) {
  Bytes run;
  while (run.size() + part.size() <= size) {
    run.insert(run.end(), part.begin(), part.end());
  }
  return run;
}

// Each descriptor is looked at once by the end finder and once by the start finder at most.
TEST_F(FunctionSelector, WorkIsLinearInTheDescriptors) {
  struct Case {
    char const* name;
    Bytes part;
    std::size_t ranges;
  };
  std::size_t const descriptors = 32767;  // of 2 bytes, in the longest run
  for (Case const& each :
       {Case{"no function", {0x02, 0x05}, 0}, Case{"associations", {0x02, 0x0B}, 32767},
        Case{"one function", {0x02, 0x04, 0x02, 0x00}, 1},
        Case{"a function every fourth", {0x02, 0x0B, 0x02, 0x24, 0x02, 0x04, 0x02, 0x05}, 8191},
        Case{"settings", {0x02, 0x04, 0x02, 0x01}, 0}}) {
    Bytes const run = Repeated(each.part, 2 * descriptors);
    Effort const effort = EffortOf(run);
    EXPECT_EQ(effort.ranges, each.ranges) << each.name;
    EXPECT_LE(effort.calls, 2 * each.ranges + 2) << each.name;
    EXPECT_LE(effort.looks, 2 * descriptors) << each.name;
    EXPECT_GE(effort.looks, run.size() / 2) << each.name;
  }
}

}  // namespace
}  // namespace usb_support

// Where functions begin and end is compared with a model in tests/property/function_list_test.cpp.
#include <usb_support/descriptor_sets/function_selector.h>

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tests/support/exact_bytes.h>
#include <tests/support/suite_test.h>
#include <usb_support/descriptors/descriptor_range.h>

namespace usb_support {
namespace {

using testing_support::Bytes;
using testing_support::ExactBytes;
using testing_support::Hex;
using testing_support::kInternalError;
using testing_support::kZeroLength;

using Iterator = CDescriptorRangeIterator;
using Found = std::pair<bool, Iterator>;

TEST(StartOfFunction, KeepsWhatItFindsAsTheHead) {
  // At 0, 9, 18 and 26; end 35: a second setting, an interface, an association, an interface.
  ExactBytes const block(
      Hex("09 04 00 01 00 00 00 00 00  09 04 01 00 00 00 00 00 00"
          "08 0B 02 02 0E 03 00 00  09 04 02 01 00 00 00 00 00"));
  function_head head;
  EXPECT_EQ(head.descriptor, Iterator());
  start_function const start(&head);
  for (std::size_t const at : {9u, 18u}) {
    EXPECT_EQ(start(block.At(at == 9 ? 0 : at), block.At(35)), Found(true, block.At(at)));
    EXPECT_EQ(head.descriptor, block.At(at));
  }
  EXPECT_EQ(start(block.At(26), block.At(35)), Found(true, block.At(35)));
  EXPECT_EQ(start(block.At(9), block.At(9)), Found(true, block.At(9)));
  EXPECT_EQ(start(Iterator(), Iterator()), Found(true, Iterator()));
  EXPECT_EQ(head.descriptor, block.At(18)) << "as it was";
}

TEST(EndOfFunction, FollowsOnItsHead) {
  // Heads, and the number of the interface that ends their function; the last ones are cut short.
  std::pair<Bytes, unsigned> const rows[] = {{Hex("09 04 00 00 00 00 00 00 00"), 1},
                                             {Hex("09 04 FF 00 00 00 00 00 00"), 0},
                                             {Hex("08 0B 05 02 00 00 00 00"), 7},
                                             {Hex("08 0B FE 04 00 00 00 00"), 2},
                                             {Hex("08 0B 05 00 00 00 00 00"), 5},
                                             {Hex("02 04"), 1},
                                             {Hex("09 04 05"), 6},
                                             {Hex("03 0B 06"), 6},
                                             {Hex("02 0B"), 0},
                                             {Hex("02 04 09 04"), 10},
                                             {Hex("02 0B 09 04 00 00 00 00 00"), 13}};
  for (auto const& [headBytes, next] : rows) {
    ExactBytes const headBlock(headBytes);
    function_head const head{headBlock.At(0)};
    end_function const end(&head);
    for (unsigned number = 0; number < 256; ++number) {
      ExactBytes const block({9, 4, static_cast<unsigned char>(number), 0, 0, 0, 0, 0, 0});
      ASSERT_EQ(end(block.At(0), block.At(9)), Found(true, block.At(number == next ? 0 : 9)))
          << next << ", " << number;
      ASSERT_EQ(end(block.At(9), block.At(9)), Found(true, block.At(9)));
    }
  }
}

TEST(EndOfFunction, ThrowsForAHeadOfAnotherType) {
  ExactBytes const interface1(Hex("09 04 01 00 01 03 00 00 00"));
  ExactBytes const association(Hex("08 0B 01 01 0E 03 00 00"));
  ExactBytes const setting1(Hex("09 04 01 01 01 03 00 00 00"));
  for (unsigned type = 0; type < 256; ++type) {
    ExactBytes const headBlock({9, static_cast<unsigned char>(type), 0, 0, 0, 0, 0, 0, 0});
    function_head const head{headBlock.At(0)};
    end_function const end(&head);
    if (type == 0x04 || type == 0x0B) {
      EXPECT_NO_THROW(end(interface1.At(0), interface1.At(9)));
    } else {
      char text[64];
      std::snprintf(text, sizeof(text), "Descriptor has type 0x%02X: not valid for USB Function.",
                    type);
      EXPECT_RUN_TIME_EXCEPTION(end(interface1.At(0), interface1.At(9)), text, kInternalError);
    }
    // Only an interface's first setting uses the head.
    EXPECT_EQ(end(association.At(0), association.At(8)), Found(true, association.At(0)));
    EXPECT_EQ(end(setting1.At(0), setting1.At(9)), Found(true, setting1.At(9)));
  }
  function_head const none;
  EXPECT_RUN_TIME_EXCEPTION(end_function{&none}(interface1.At(0), interface1.At(9)),
                            "Descriptor has type 0x00: not valid for USB Function.",
                            kInternalError);
}

TEST(FunctionFinders, ThrowOnAZeroLength) {
  ExactBytes const block(Hex("09 04 00 00 01 03 00 00 00  00 05 02 0B"));
  function_head head{block.At(0)};
  EXPECT_RUN_TIME_EXCEPTION(start_function{&head}(block.At(9), block.At(13)), kZeroLength,
                            kInternalError);
  EXPECT_RUN_TIME_EXCEPTION(end_function{&head}(block.At(9), block.At(13)), kZeroLength,
                            kInternalError);
}

TEST(FunctionSelector, CopiesShareTheHead) {
  ExactBytes const block(Hex("09 04 03 00 01 03 00 00 00  09 04 04 00 01 03 00 00 00"));
  function_head head;
  function_selector const selector(&head);
  std::unique_ptr<CRangeSelector> const copy = std::make_unique<function_selector>(selector);
  EXPECT_EQ(copy->FindStart(block.At(0), block.At(18)), Found(true, block.At(0)));
  EXPECT_EQ(head.descriptor, block.At(0));
  EXPECT_EQ(selector.FindFinish(block.At(9), block.At(18)), Found(true, block.At(9)));
}

// Each descriptor is looked at once by the end finder and once by the start finder at most.
TEST(FunctionSelector, WorkIsLinearInTheDescriptors) {
  std::size_t const descriptors = 32764;  // of 2 bytes
  for (char const* const part : {"02 05 02 05 02 05 02 05", "02 0B 02 0B 02 0B 02 0B",
                                 "02 04 02 00 02 04 02 00", "02 0B 02 24 02 04 02 05"}) {
    Bytes run;
    while (run.size() < 2 * descriptors) {
      run = testing_support::Joined({run, Hex(part)});
    }
    ExactBytes const block(run);
    function_head head;
    std::size_t looks = 0;
    auto const counted = [&looks](auto const& finder) {
      return [finder, &looks](Iterator first, Iterator last) {
        Found const found = finder(first, last);
        for (Iterator it = first; it != found.second; ++it) {
          ++looks;
        }
        looks += found.second != last ? 1u : 0u;
        return found;
      };
    };
    static_cast<void>(
        block.Range().GetSubRanges(counted(start_function(&head)), counted(end_function(&head))));
    EXPECT_GE(looks, descriptors) << part;
    EXPECT_LE(looks, 2 * descriptors) << part;
  }
}

}  // namespace
}  // namespace usb_support

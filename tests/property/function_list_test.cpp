// Compares the interface and function lists of a configuration with the model, for some thousands
// of generated configurations.
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tests/property/function_model.h>
#include <tests/property/property_test.h>
#include <usb_support/descriptor_sets/config_descriptor_set.h>
#include <usb_support/descriptor_sets/function_selector.h>

namespace usb_support {
namespace {

using model::Bytes;
using property::GeneratedRun;
using property::PiecesOf;

// Makes configurations as real devices have them, and bad ones: associations inside
// associations, numbers that repeat, skip and wrap, descriptors that are too short.
class ConfigurationGenerator {
 public:
  explicit ConfigurationGenerator(std::uint32_t seed) : engine_(seed) {}

  Bytes Configuration() {
    Bytes run;
    if (Below(8) != 0) {
      run = {0x09, 0x02, 0x00, 0x00, 0x02, 0x01, 0x00, 0x80, 0x32};
    }
    number_ = Below(3) == 0 ? 250 + Below(6) : 0;
    for (std::size_t count = Below(14); count != 0; --count) {
      Bytes const part = Part();
      run.insert(run.end(), part.begin(), part.end());
    }
    return run;
  }

 private:
  std::size_t Below(std::size_t limit) { return engine_() % limit; }

  static unsigned char Byte(std::size_t value) { return static_cast<unsigned char>(value); }

  Bytes Part() {
    switch (Below(8)) {
      case 0:
        return Cut({0x08, 0x0B, Byte(NextNumber()), Byte(Below(5)), 0x0E, 0x03, 0x00, 0x00});
      case 1:
      case 2:
      case 3:
        number_ = NextNumber();
        return Cut({0x09, 0x04, Byte(number_), 0x00, 0x01, 0xFF, 0x00, 0x00, 0x00});
      case 4:
        return Cut({0x09, 0x04, Byte(number_), Byte(Below(3)), 0x02, 0xFF, 0x00, 0x00, 0x00});
      case 5:
        return Cut({0x07, 0x05, 0x81, 0x02, 0x00, 0x02, 0x00});
      case 6:
        return Cut({0x05, 0x24, Byte(Below(8)), 0x00, 0x01});
      default:
        return {0x02, Byte(Below(2) == 0 ? Below(6) : Below(256))};
    }
  }

  // Mostly the next number; otherwise the same one, one after a gap, or any.
  std::size_t NextNumber() {
    switch (Below(8)) {
      case 0:
        return number_;
      case 1:
        return (number_ + 2) % 256;
      case 2:
        return Below(256);
      default:
        return (number_ + 1) % 256;
    }
  }

  // Sometimes shorter than its type requires, with a bLength that matches.
  Bytes Cut(Bytes descriptor) {
    if (Below(4) == 0) {
      descriptor.resize(1 + Below(descriptor.size()));
      descriptor[0] = Byte(descriptor.size());
    }
    return descriptor;
  }

  std::mt19937 engine_;
  std::size_t number_ = 0;  // of the latest interface
};

// The configurations, each also cut off, with each length broken and with broken tails.
std::vector<GeneratedRun> MakeConfigurations() {
  std::vector<GeneratedRun> runs;
  for (std::uint32_t seed = 1; seed <= 2000; ++seed) {
    Bytes const whole = ConfigurationGenerator(seed).Configuration();
    std::string const origin = " of the configuration of seed " + std::to_string(seed);
    runs.push_back({whole, "all" + origin});
    for (Bytes const& tail :
         {Bytes{0x00}, Bytes{0x00, 0x00}, Bytes{0x00, 0x04, 0x00, 0x00}, Bytes{0x01}, Bytes{0x02},
          Bytes{0x09, 0x04}, Bytes{0x05, 0x0B, 0x01}, Bytes{0xFF, 0x00, 0x00}}) {
      Bytes longer = whole;
      longer.insert(longer.end(), tail.begin(), tail.end());
      runs.push_back(
          {std::move(longer), std::to_string(tail.size()) + " bytes after all" + origin});
    }
    if (seed > 100) {
      continue;
    }
    for (std::size_t length = 0; length < whole.size(); ++length) {
      runs.push_back({testing_support::Part(whole, 0, length),
                      "first " + std::to_string(length) + " bytes" + origin});
    }
    for (model::Piece const& descriptor : model::ChainOf(whole).descriptors) {
      for (unsigned const length : {0u, 1u, 2u, 3u, 0xFFu}) {
        Bytes broken = whole;
        broken[descriptor.offset] = static_cast<unsigned char>(length);
        runs.push_back({std::move(broken), "length " + std::to_string(length) + " at " +
                                               std::to_string(descriptor.offset) + origin});
      }
    }
  }
  return runs;
}

// Compares at least `least` interfaces and functions.
class FunctionLists : public property::PropertyTest {
 protected:
  void ExpectListsOfTheModel(std::vector<GeneratedRun> const& runs, std::size_t least) {
    std::size_t interfaces = 0;
    std::size_t functions = 0;
    ForEachRun(runs, [&](Bytes const& run) {
      CConfigDescriptorSet set;
      testing_support::Put(set, run);
      bool const isValid = model::ChainOf(run).end == model::End::kComplete;
      EXPECT_EQ(PiecesOf(set, set.GetInterfaceList()), model::InterfacesOf(run));
      ExpectLogged(isValid);
      EXPECT_EQ(PiecesOf(set, set.GetFunctionList()), model::FunctionsOf(run));
      ExpectLogged(isValid);
      function_head head;
      function_selector const selector(&head);
      EXPECT_EQ(PiecesOf(set, set.GetSubRanges(selector)), model::FunctionsOf(run));
      ExpectLogged(isValid);
      interfaces += model::InterfacesOf(run).size();
      functions += model::FunctionsOf(run).size();
    });
    EXPECT_GE(interfaces, least);
    EXPECT_GE(functions, least);
  }
};

TEST_F(FunctionLists, OfConfigurations) {
  ExpectListsOfTheModel(MakeConfigurations(), 20000);
}

TEST_F(FunctionLists, OfAnyRuns) {
  ExpectListsOfTheModel(property::MakeRuns(), 10);
}

}  // namespace
}  // namespace usb_support

// Makes runs of descriptors, good and bad. The same seed makes the same runs on every system.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <tests/property/model.h>

namespace usb_support::property {

using model::Bytes;

struct GeneratedRun {
  Bytes bytes;
  std::string origin;  ///< the kind and the seed that make it again
};

class RunGenerator {
 public:
  explicit RunGenerator(std::uint32_t seed) : engine_(seed) {}

  /// 0 to `limit` - 1.
  std::size_t Below(std::size_t limit) { return engine_() % limit; }

  unsigned char Byte() { return static_cast<unsigned char>(Below(256)); }

  /// A chain of whole descriptors, among them many that are shorter than their type requires.
  Bytes Chain() {
    Bytes run;
    for (std::size_t count = Below(9); count != 0; --count) {
      Bytes const descriptor = Descriptor();
      run.insert(run.end(), descriptor.begin(), descriptor.end());
    }
    return run;
  }

  /// Bytes without any order; small ones are frequent, so that some of it forms chains.
  Bytes Soup() {
    Bytes run(Below(48));
    std::size_t const limit = Below(2) == 0 ? 8 : 256;
    for (unsigned char& byte : run) {
      byte = static_cast<unsigned char>(Below(limit));
    }
    return run;
  }

 private:
  Bytes Descriptor() {
    static constexpr unsigned char kTypes[] = {0x01, 0x02, 0x03, 0x04, 0x04, 0x04, 0x05, 0x05,
                                               0x06, 0x07, 0x0B, 0x0F, 0x10, 0x12, 0x21, 0x24,
                                               0x24, 0x25, 0x29, 0x2A, 0x30, 0x31};
    static constexpr std::size_t kLengths[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 9, 9, 10, 18, 31};
    static constexpr unsigned char kClasses[] = {0x00, 0x01, 0x01, 0x03, 0x0E, 0x0E, 0xFF};
    Bytes descriptor(kLengths[Below(std::size(kLengths))]);
    for (unsigned char& byte : descriptor) {
      byte = Byte();
    }
    Set(descriptor, 0, static_cast<unsigned char>(descriptor.size()));
    unsigned char const type = Below(16) == 0 ? Byte() : kTypes[Below(std::size(kTypes))];
    Set(descriptor, 1, type);
    if (type == 4) {
      Set(descriptor, 5, kClasses[Below(std::size(kClasses))]);
      Set(descriptor, 6, static_cast<unsigned char>(Below(4)));
      Set(descriptor, 7, static_cast<unsigned char>(Below(4) * 0x10));
    } else {
      Set(descriptor, 2, static_cast<unsigned char>(Below(28)));
    }
    return descriptor;
  }

  static void Set(Bytes& bytes, std::size_t at, unsigned char value) {
    if (at < bytes.size()) {
      bytes[at] = value;
    }
  }

  std::mt19937 engine_;
};

/// Some thousands of runs: chains, chains with each possible fault, and random bytes.
inline std::vector<GeneratedRun> MakeRuns() {
  std::vector<GeneratedRun> runs;
  for (std::uint32_t seed = 1; seed <= 60; ++seed) {
    RunGenerator generator(seed);
    Bytes const chain = generator.Chain();
    std::string const origin = " of the chain of seed " + std::to_string(seed);
    runs.push_back({chain, "all" + origin});

    for (model::Piece const& descriptor : model::ChainOf(chain).descriptors) {
      Bytes broken = chain;
      broken[descriptor.offset] = 0;
      runs.push_back(
          {std::move(broken), "zero length at " + std::to_string(descriptor.offset) + origin});
    }
    for (std::size_t length = 0; length < chain.size(); ++length) {
      runs.push_back({Bytes(chain.begin(), chain.begin() + static_cast<std::ptrdiff_t>(length)),
                      "first " + std::to_string(length) + " bytes" + origin});
    }
    for (std::size_t at = 0; at < chain.size(); ++at) {
      for (unsigned value : {0x00u, 0x01u, 0x04u, 0xFFu, chain[at] + 1u, chain[at] ^ 0x80u}) {
        Bytes broken = chain;
        broken[at] = static_cast<unsigned char>(value);
        runs.push_back({std::move(broken), "byte " + std::to_string(at) + " set to " +
                                               std::to_string(value % 256) + origin});
      }
    }
    for (unsigned value : {0x00u, 0x01u, 0x02u, 0x04u, 0xFFu}) {
      Bytes longer = chain;
      longer.push_back(static_cast<unsigned char>(value));
      runs.push_back(
          {std::move(longer), "one-byte tail " + std::to_string(value) + " after all" + origin});
    }
  }
  for (std::uint32_t seed = 1; seed <= 2000; ++seed) {
    runs.push_back({RunGenerator(seed).Soup(), "soup of seed " + std::to_string(seed)});
  }
  return runs;
}

}  // namespace usb_support::property

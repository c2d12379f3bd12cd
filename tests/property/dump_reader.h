// Reads the dump of a range back, as a reader of the log or a compiler would.
#pragma once

#include <cstddef>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <tests/property/model.h>

namespace usb_support::dump {

struct Contents {
  std::vector<std::size_t> offsets;  ///< of every line's prefix, the tail's among them
  std::vector<unsigned char> bytes;  ///< of the descriptors
  std::vector<unsigned char> tail;   ///< marked as incomplete
};

/// What the dump of a run with this chain must read back to.
inline Contents ContentsOf(model::Bytes const& run, model::Chain const& chain) {
  auto const tail = run.begin() + static_cast<std::ptrdiff_t>(chain.validLength);
  Contents contents{{}, {run.begin(), tail}, {tail, run.end()}};
  for (model::Piece const& descriptor : chain.descriptors) {
    contents.offsets.push_back(descriptor.offset);
  }
  if (tail != run.end()) {
    contents.offsets.push_back(chain.validLength);
  }
  return contents;
}

inline std::vector<std::string> LinesOf(std::string const& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) {
    lines.push_back(line);
  }
  return lines;
}

inline std::size_t Number(std::string const& digits) {
  std::size_t used = 0;
  std::size_t const value = std::stoul(digits, &used, 16);
  if (used != digits.size()) {
    throw std::invalid_argument(digits);
  }
  return value;
}

inline unsigned char Byte(std::string const& digits) {
  if (digits.size() != 2) {
    throw std::invalid_argument(digits);
  }
  return static_cast<unsigned char>(Number(digits));
}

// Takes the marked line off the end and gives its bytes.
inline std::vector<unsigned char> TakeTail(std::vector<std::string>& lines) {
  std::string_view const mark = " (incomplete)";
  std::vector<unsigned char> tail;
  if (!lines.empty() && lines.back().ends_with(mark)) {
    std::istringstream in(lines.back().substr(0, lines.back().size() - mark.size()));
    for (std::string digits; in >> digits;) {
      tail.push_back(Byte(digits));
    }
    lines.pop_back();
  }
  return tail;
}

/// The contents of a listing.
inline Contents ReadListing(std::string const& text) {
  Contents contents;
  std::vector<std::string> lines = LinesOf(text);
  contents.tail = TakeTail(lines);
  for (std::string const& line : lines) {
    std::size_t const colon = line.find("h:  ");
    contents.offsets.push_back(Number(line.substr(0, colon)));
    std::istringstream in(line.substr(colon + 4));
    for (std::string digits; in >> digits && digits != ":";) {
      contents.bytes.push_back(Byte(digits));
    }
  }
  if (!contents.tail.empty() && !contents.bytes.empty()) {
    std::string const& last = lines.back();
    contents.offsets.push_back(Number(last.substr(last.size() - 8, 4)));
  }
  return contents;
}

/// The contents of the code form: comments count for their offsets only.
inline Contents ReadCode(std::string const& text) {
  Contents contents;
  std::vector<std::string> lines = LinesOf(text);
  contents.tail = TakeTail(lines);
  for (std::string line : lines) {
    for (std::size_t open = line.find("/*"); open != std::string::npos;
         open = line.find("/*", open)) {
      std::size_t const close = line.find("h */", open);
      contents.offsets.push_back(Number(line.substr(open + 2, close - open - 2)));
      line.erase(open, close + 4 - open);
    }
    std::istringstream in(line.substr(0, line.find("//")));
    for (std::string literal; in >> literal;) {
      if (literal.size() != 5 || !literal.starts_with("0x") || literal.back() != ',') {
        throw std::invalid_argument(literal);
      }
      contents.bytes.push_back(Byte(literal.substr(2, 2)));
    }
  }
  return contents;
}

}  // namespace usb_support::dump

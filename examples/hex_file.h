// Reads the text form of examples/captures: bytes as two hexadecimal digits, with # comments.
// Raises std::runtime_error, with the file's name, for anything else.
#pragma once

#include <cctype>
#include <cstddef>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

using DescriptorBytes = std::vector<unsigned char>;

/// All bytes of the file, in order.
inline DescriptorBytes ReadHexFile(char const* name) {
  std::ifstream file(name);
  if (!file) {
    throw std::runtime_error(std::string(name) + ": cannot be opened");
  }
  DescriptorBytes bytes;
  for (std::string line; std::getline(file, line);) {
    std::string const text = line.substr(0, line.find('#'));
    for (std::size_t at = 0; at < text.size();) {
      if (std::isspace(static_cast<unsigned char>(text[at])) != 0) {
        ++at;
        continue;
      }
      std::string const pair = text.substr(at, 2);
      if (pair.size() != 2 || pair.find_first_not_of("0123456789ABCDEFabcdef") != pair.npos) {
        throw std::runtime_error(std::string(name) + ": found \"" + pair +
                                 "\", expected a byte of two hexadecimal digits");
      }
      bytes.push_back(static_cast<unsigned char>(std::stoul(pair, nullptr, 16)));
      at += pair.size();
    }
  }
  return bytes;
}

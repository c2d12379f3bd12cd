// Devices of the tests: bytes in a text file, and changes to them that are written as text.
//
// A file has one section for each answer: "device", "configuration", "other" (-speed
// configuration), "qualifier", "bos", "hub", "report N", "blocks" (group terminal blocks of
// interface 1), each followed by lines of hexadecimal bytes. "speed high" gives the speed,
// "languages 0409" and `string 1 "text"` give the strings. '#' begins a comment. The device refuses
// every request without a section.
//
// A change is one of these, or several joined by ';':
//   set WHERE FIELD = 1F      sets a field (hexadecimal); FIELD(2): third occurrence; @4: byte 4
//   remove WHERE              removes a descriptor; copy: repeats it; swap: with the next one
//   after WHERE: 07 05 ...    inserts bytes after it
//   drop bos                  the device refuses the request; drop string 3
//   string 3 = "text"         languages = 0409 0407
//   report 0 = 05 01 ...      all bytes of a report descriptor
//   speed low
// WHERE is the id of a layout, or type=05, with #1 for the second; the prefix "other:" selects the
// other-speed configuration. wTotalLength is adjusted when a change adds or removes descriptors.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <usb_rules/subject.h>

namespace usb_rules::test {

using Bytes = std::vector<std::uint8_t>;

/// One answer of a sample.
struct Part {
  std::string kind;  // the name of its section
  unsigned index = 0;
  Bytes bytes;
};

class Sample {
 public:
  /// Reads a file. Throws std::runtime_error with the line of a fault.
  static Sample Read(std::string const& path);

  /// Applies a change. Throws std::runtime_error when it cannot be applied.
  void Change(std::string_view change);

  /// The subject; it refers to the sample, which must not move.
  Subject const& Get();

  std::vector<Part>& Parts() { return parts_; }
  std::size_t Count() const { return parts_.size(); }
  Part const& At(std::size_t part) const { return parts_[part]; }
  std::string const& Name() const { return name_; }

 private:
  struct Place {
    Part* part;
    std::size_t offset;
    std::size_t length;
  };

  void ChangeOne(std::string_view change);
  void ReadLine(std::string_view line);
  void Resize(Part& part, std::ptrdiff_t by);
  void SetField(Place const& place, std::string_view field, std::uint64_t value);
  Place Find(std::string_view where);
  Part& PartOf(std::string_view kind, unsigned index);

  std::string name_;
  Speed speed_ = Speed::kUnknown;
  std::vector<Part> parts_;
  std::vector<Run> configurations_;
  std::vector<Run> others_;
  std::vector<StringRun> strings_;
  std::vector<InterfaceRun> reports_;
  std::vector<InterfaceRun> blocks_;
  Subject subject_;
};

/// The bytes of "12 01 00".
Bytes BytesOf(std::string_view hex);

/// The samples of the folder, by name; read once.
std::vector<Sample> const& AllSamples();
Sample const& SampleOf(std::string_view name);

}  // namespace usb_rules::test

#include <benchmarks/inputs.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <stdexcept>
#include <utility>

#include <usb_devices/text_reader.h>

namespace usb_support::benchmarks {
namespace {

using Run = std::vector<unsigned char>;

// The length and type of a descriptor and, where it has any, what matters after them.
using Head = std::array<unsigned char, 8>;

// bInterfaceNumber and bFirstInterface are numbered when a function is added.
constexpr Head kKeyboard[] = {
    {9, 0x04, 0, 0, 1, 0x03, 1, 1}, {9, 0x21, 0x11, 0x01}, {7, 0x05, 0x81, 0x03, 8}};
constexpr Head kSerialPort[] = {{8, 0x0B, 0, 2, 0x02, 0x02, 0x01},
                                {9, 0x04, 0, 0, 1, 0x02, 0x02, 0x01},
                                {5, 0x24, 0x00},
                                {5, 0x24, 0x01},
                                {4, 0x24, 0x02},
                                {5, 0x24, 0x06},
                                {7, 0x05, 0x83, 0x03, 16},
                                {9, 0x04, 1, 0, 2, 0x0A},
                                {7, 0x05, 0x02, 0x02, 0, 2},
                                {7, 0x05, 0x82, 0x02, 0, 2}};
constexpr Head kCamera[] = {{8, 0x0B, 0, 2, 0x0E, 0x03},
                            {9, 0x04, 0, 0, 1, 0x0E, 1},
                            {13, 0x24, 0x01},
                            {18, 0x24, 0x02},
                            {11, 0x24, 0x05},
                            {28, 0x24, 0x06},
                            {9, 0x24, 0x03},
                            {7, 0x05, 0x85, 0x03, 16},
                            {5, 0x25, 0x03},
                            {9, 0x04, 1, 0, 0, 0x0E, 2},
                            {15, 0x24, 0x01},
                            {27, 0x24, 0x04},
                            {38, 0x24, 0x05},
                            {30, 0x24, 0x05},
                            {30, 0x24, 0x05},
                            {6, 0x24, 0x0D},
                            {11, 0x24, 0x06},
                            {38, 0x24, 0x07},
                            {30, 0x24, 0x07},
                            {6, 0x24, 0x0D},
                            {9, 0x04, 1, 1, 1, 0x0E, 2},
                            {7, 0x05, 0x86, 0x05, 0x80, 0x01},
                            {9, 0x04, 1, 2, 1, 0x0E, 2},
                            {7, 0x05, 0x86, 0x05, 0x00, 0x14}};
constexpr Head kDisk[] = {{9, 0x04, 0, 0, 2, 0x08, 6, 0x50},
                          {7, 0x05, 0x81, 0x02, 0, 4},
                          {6, 0x30, 15},
                          {7, 0x05, 0x02, 0x02, 0, 4},
                          {6, 0x30, 15}};

constexpr std::span<Head const> kFunctions[] = {kKeyboard, kSerialPort, kCamera, kDisk};

void Add(Run& run, Head const& head, unsigned firstInterface) {
  std::size_t const at = run.size();
  run.resize(at + head[0]);
  std::copy_n(head.begin(), std::min<std::size_t>(head.size(), head[0]),
              run.begin() + static_cast<std::ptrdiff_t>(at));
  if (head[1] == kInterfaceType || head[1] == kInterfaceAssociationType) {
    run[at + 2] = static_cast<unsigned char>(head[2] + firstInterface);
  }
}

// Endpoints up to `size`, and one vendor-specific descriptor for the bytes that no endpoint fills.
void Fill(Run& run, std::size_t size) {
  while (run.size() + 14 <= size) {
    Add(run, {7, 0x05, 0x84, 0x02, 0, 2}, 0);
  }
  if (std::size_t const left = size - run.size(); left == 1) {
    throw std::logic_error("A run of this size cannot be made.");
  } else if (left != 0) {
    Add(run,
        {static_cast<unsigned char>(left), left == 7 ? std::uint8_t{0x05} : std::uint8_t{0x41},
         0x84, 0x02},
        0);
  }
}

std::vector<std::filesystem::path> SortedFiles(std::filesystem::path const& folder) {
  std::vector<std::filesystem::path> files;
  for (auto const& entry : std::filesystem::recursive_directory_iterator(folder)) {
    std::filesystem::path const& path = entry.path();
    if (path.extension() == ".bin" ||
        (path.extension() == ".txt" && path.parent_path() == folder)) {
      files.push_back(path);
    }
  }
  std::ranges::sort(files);
  return files;
}

Run ReadRun(std::filesystem::path const& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string const content{std::istreambuf_iterator<char>(stream), {}};
  if (file.extension() == ".txt") {
    return usb_devices::ReadText(content).runs.front().bytes;
  }
  return {content.begin(), content.end()};
}

Input ReadFolder(std::string name, std::filesystem::path const& folder) {
  Input input;
  for (std::filesystem::path const& file : SortedFiles(folder)) {
    Run run = ReadRun(file);
    CDescriptorRange const range = RangeOver(run);
    run.resize(static_cast<std::size_t>(range.ValidUntil() - range.begin()));
    if (!run.empty()) {
      input.runs.push_back(std::move(run));
    }
  }
  if (input.runs.empty()) {
    throw std::runtime_error("There are no captures in " + folder.string());
  }
  input.name = std::to_string(input.runs.size()) + " " + std::move(name);
  return input;
}

std::vector<Input> MakeTableInputs() {
  std::vector<Input> inputs;
  for (std::size_t const size : {25u, 256u, 4096u, 65535u}) {
    inputs.push_back(GeneratedConfiguration(size));
  }
  inputs.push_back(Samples());
  if (Input captures = Captures(); !captures.runs.empty()) {
    inputs.push_back(std::move(captures));
  }
  return inputs;
}

}  // namespace

std::vector<CDescriptorRange> Input::Ranges() const {
  std::vector<CDescriptorRange> ranges;
  ranges.reserve(runs.size());
  for (Run const& run : runs) {
    ranges.push_back(RangeOver(run));
  }
  return ranges;
}

std::vector<BareRun> Input::BareRuns() const {
  std::vector<BareRun> bare;
  for (Run const& run : runs) {
    bare.push_back({run.data(), run.size()});
  }
  return bare;
}

std::size_t Input::Bytes() const {
  std::size_t bytes = 0;
  for (Run const& run : runs) {
    bytes += run.size();
  }
  return bytes;
}

Input GeneratedConfiguration(std::size_t size) {
  Run run;
  run.reserve(size);
  Add(run,
      {9, 0x02, static_cast<unsigned char>(size & 0xFF), static_cast<unsigned char>(size >> 8), 1,
       1, 0, 0x80},
      0);
  if (size == 25) {
    Add(run, kKeyboard[0], 0);
    Add(run, kKeyboard[2], 0);
  }
  unsigned interfaces = 0;
  for (std::size_t next = 0;; ++next) {
    std::span<Head const> const function = kFunctions[next % std::size(kFunctions)];
    std::size_t length = 0;
    unsigned own = 0;
    for (Head const& head : function) {
      length += head[0];
      own += head[1] == kInterfaceType && head[3] == 0 ? 1u : 0u;
    }
    // Never leaves a single byte, which no descriptor could fill.
    if (run.size() + length > size || run.size() + length + 1 == size) {
      break;
    }
    for (Head const& head : function) {
      Add(run, head, interfaces);
    }
    interfaces += own;
  }
  Fill(run, size);
  std::string const name = size < 1024    ? std::to_string(size) + " bytes"
                           : size < 65535 ? std::to_string(size / 1024) + " KiB"
                                          : "64 KiB";
  return {name, {std::move(run)}};
}

Input Samples() {
  return ReadFolder("samples", USB_SUPPORT_SAMPLES);
}

Input Captures() {
  char const* const folder = std::getenv("USB_SUPPORT_CAPTURES_DIR");
  if (folder == nullptr || *folder == '\0') {
    return {};
  }
  return ReadFolder("captures", folder);
}

std::vector<Input> const& TableInputs() {
  static std::vector<Input> const inputs = MakeTableInputs();
  return inputs;
}

}  // namespace usb_support::benchmarks

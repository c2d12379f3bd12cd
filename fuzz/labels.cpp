// The bytes as one descriptor and the interface that it belongs to, each record in a heap block of
// exactly its length: the labels, and that they depend on nothing else.
#include <algorithm>
#include <cstring>

#include <fuzz/oracle.h>
#include <fuzz/targets.h>
#include <tests/support/exact_bytes.h>
#include <usb_support/descriptors/read_record.h>

namespace usb_support::fuzz {
namespace {

using model::Bytes;
using testing_support::ExactBytes;

// The part of a descriptor that its label may read.
std::size_t LabelledLength(unsigned char type) {
  switch (type) {
    case 0x04:
      return 9;
    case 0x05:
      return 7;
    case 0x0B:
      return 4;
    case 0x10:
    case 0x24:
      return 3;
    default:
      return 2;
  }
}

void RequireReadable(std::string const& label, char const* what) {
  Require(!label.empty(), what);
  for (char const c : label) {
    Require(c >= ' ' && c <= '~', what);
  }
}

std::string LabelOf(ExactBytes const& descriptor, ExactBytes const* interface, unsigned speed) {
  auto* const current = interface == nullptr
                            ? nullptr
                            : reinterpret_cast<TQ_USB_INTERFACE_DESCRIPTOR*>(interface->data());
  return CUsbHelper::GenerateDescriptorLabel(*descriptor.Descriptor(), current,
                                             static_cast<TQE_USB_DEVICE_SPEED>(speed));
}

void CheckClassLabels(ExactBytes const& descriptor, unsigned char subClass,
                      unsigned char protocol) {
  TQ_USB_COMMON_DESCRIPTOR const& common = *descriptor.Descriptor();
  auto const [isVideo, video] = CUsbHelper::GenerateUVCDescriptorLabel(common, subClass);
  RequireEqual(isVideo, subClass == 1 || subClass == 2, "video label");
  if (isVideo) {
    RequireReadable(video, "readable video label");
  }
  auto const [isAudio, audio] = CUsbHelper::GenerateUACDescriptorLabel(common, subClass, protocol);
  Require(!isAudio && audio.empty(), "no audio label");
}

// The dump labels the record as the label function labels a copy that is padded with zeros.
void CheckDump(Bytes const& interface, Bytes const& bytes, std::string const& label) {
  Bytes run = interface;
  run[0] = 9;
  run[1] = 4;
  run.insert(run.end(), bytes.begin(), bytes.end());
  run[9] = static_cast<unsigned char>(bytes.size());
  ExactBytes const block(run);
  std::string const listing = *block.Range().OutputString(false);
  std::string const line = listing.substr(listing.find('\n') + 1);
  std::size_t const colon = line.find(" : ");
  Require(colon != std::string::npos, "label in a dump");
  RequireEqual(line.substr(colon + 3), label, "label in a dump");
}

}  // namespace

// Bytes: speed, the interface without its header (7), the descriptor.
void Labels(Input input) {
  constexpr std::size_t kFirst = 8;
  if (input.size() < kFirst + 2 || input.size() > kFirst + 255) {
    return;
  }
  Suite const suite;
  unsigned const speed = input[0];
  Bytes interface = {9, 4};
  interface.insert(interface.end(), input.begin() + 1, input.begin() + kFirst);
  Bytes const bytes(input.begin() + kFirst, input.end());
  ExactBytes const interfaceBlock(interface);

  // Bytes missing at the end of a run count as zero.
  Bytes padded = bytes;
  padded.resize(std::max<std::size_t>(bytes.size(), 9));
  Bytes record(padded.begin(),
               padded.begin() + static_cast<std::ptrdiff_t>(LabelledLength(padded[1])));
  ExactBytes const block(record);
  ExactBytes const run(bytes);
  auto const read = ReadRecord<TQ_USB_INTERFACE_DESCRIPTOR>(run.At(0));
  Require(std::memcmp(&read, padded.data(), sizeof(read)) == 0, "record at the end of a run");

  std::string const label = LabelOf(block, &interfaceBlock, speed);
  RequireReadable(label, "readable label");
  RequireEqual(LabelOf(block, &interfaceBlock, speed + 1), label, "label at another speed");
  record.insert(record.end(), 16, 0xA5);
  RequireEqual(LabelOf(ExactBytes(record), &interfaceBlock, speed), label,
               "label of a record with more after it");
  record[0] = static_cast<unsigned char>(~record[0]);
  RequireEqual(LabelOf(ExactBytes(record), &interfaceBlock, speed), label,
               "label of a record of another length");

  std::string const alone = LabelOf(block, nullptr, speed);
  RequireReadable(alone, "readable label without an interface");
  bool const dependsOnInterface = alone == "<UNKNOWN DESCRIPTOR>";
  Require(dependsOnInterface || alone == label, "label without an interface");
  CheckClassLabels(block, interface[6], interface[7]);
  CheckDump(interface, bytes, label);
  suite.ExpectNothingLogged();
}

}  // namespace usb_support::fuzz

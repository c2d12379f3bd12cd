// The fuzz targets: each takes any bytes and stops the program when the library's answer is wrong.
#pragma once

#include <span>

namespace usb_support::fuzz {

/// The bytes of the fuzzer.
using Input = std::span<unsigned char const>;

void RangeWalk(Input input);
void Rules(Input input);
void ConfigurationSet(Input input);
void BosSet(Input input);
void Fields(Input input);
void Labels(Input input);
void Devices(Input input);
void TrafficPackets(Input input);
void ControlReader(Input input);
void Assertion(Input input);
void SettingsFile(Input input);
void TextReader(Input input);
void VendorList(Input input);

}  // namespace usb_support::fuzz

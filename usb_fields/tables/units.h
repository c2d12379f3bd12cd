// The units of the numbers in the tables.
#pragma once

#include <usb_fields/table.h>

namespace usb_fields::detail {

inline constexpr Unit k1000Macroblocks{Unit::Kind::kTimes, 1000, 1, "macroblocks/s"};
inline constexpr Unit k100MilliVolts{Unit::Kind::kTimes, 100, 1, "mV"};
inline constexpr Unit k100Milliseconds{Unit::Kind::kTimes, 100, 1, "ms"};
inline constexpr Unit k100Nanoseconds{Unit::Kind::kTimes, 100, 1, "ns"};
inline constexpr Unit k10MilliAmps{Unit::Kind::kTimes, 10, 1, "mA"};
inline constexpr Unit k10MilliWatts{Unit::Kind::kTimes, 10, 1, "mW"};
inline constexpr Unit k250MilliWatts{Unit::Kind::kTimes, 250, 1, "mW"};
inline constexpr Unit k2MilliAmps{Unit::Kind::kTimes, 2, 1, "mA"};
inline constexpr Unit k2Milliseconds{Unit::Kind::kTimes, 2, 1, "ms"};
inline constexpr Unit k4KilobytesPerSecond{Unit::Kind::kTimes, 4, 1, "kB/s"};
inline constexpr Unit k4MilliAmps{Unit::Kind::kTimes, 4, 1, "mA"};
inline constexpr Unit k50Microseconds{Unit::Kind::kTimes, 50, 1, "us"};
inline constexpr Unit k50MilliAmps{Unit::Kind::kTimes, 50, 1, "mA"};
inline constexpr Unit k50MilliVolts{Unit::Kind::kTimes, 50, 1, "mV"};
inline constexpr Unit k8MilliAmps{Unit::Kind::kTimes, 8, 1, "mA"};
inline constexpr Unit kBits{Unit::Kind::kTimes, 1, 1, "bits"};
inline constexpr Unit kBitsPerSecond{Unit::Kind::kTimes, 1, 1, "bit/s"};
inline constexpr Unit kBytes{Unit::Kind::kTimes, 1, 1, "bytes"};
inline constexpr Unit kClassSpecificStringId{Unit::Kind::kIdentifier, 1, 1,
                                             "ID of a class-specific string"};
inline constexpr Unit kClusterDescriptorId{Unit::Kind::kIdentifier, 1, 1,
                                           "ID of a cluster descriptor"};
inline constexpr Unit kConnectorsDescriptorId{Unit::Kind::kIdentifier, 1, 1,
                                              "ID of a connectors descriptor"};
inline constexpr Unit kDecibels256{Unit::Kind::kTimes, 1, 256, "dB"};
inline constexpr Unit kExtendedTerminalDescriptorId{Unit::Kind::kIdentifier, 1, 1,
                                                    "ID of an extended terminal descriptor"};
inline constexpr Unit kFrames{Unit::Kind::kTimes, 1, 1, "frames"};
inline constexpr Unit kHundredths{Unit::Kind::kTimes, 1, 100, ""};
inline constexpr Unit kHz{Unit::Kind::kTimes, 1, 1, "Hz"};
inline constexpr Unit kKHz{Unit::Kind::kTimes, 1, 1, "kHz"};
inline constexpr Unit kKilobitsPerSecond{Unit::Kind::kTimes, 1, 1, "kbit/s"};
inline constexpr Unit kLanguageIndex{Unit::Kind::kIdentifier, 1, 1, "index into the LANGID array"};
inline constexpr Unit kMicroframesBetweenNaks{Unit::Kind::kTimes, 1, 1,
                                              "microframes between NAKs at most"};
inline constexpr Unit kMicrometres{Unit::Kind::kTimes, 1, 1, "um"};
inline constexpr Unit kMicroradians{Unit::Kind::kTimes, 1, 1, "urad"};
inline constexpr Unit kMilliAmps{Unit::Kind::kTimes, 1, 1, "mA"};
inline constexpr Unit kMilliWattHours{Unit::Kind::kTimes, 1, 1, "mWh"};
inline constexpr Unit kMilliseconds{Unit::Kind::kTimes, 1, 1, "ms"};
inline constexpr Unit kNanoseconds{Unit::Kind::kTimes, 1, 1, "ns"};
inline constexpr Unit kPi32768{Unit::Kind::kTimes, 1, 32768, "pi"};
inline constexpr Unit kPixels{Unit::Kind::kTimes, 1, 1, "pixels"};
inline constexpr Unit kPlusOneBursts{Unit::Kind::kPlusOne, 1, 1, "bursts a service interval"};
inline constexpr Unit kPlusOnePackets{Unit::Kind::kPlusOne, 1, 1, "packets in a burst"};
inline constexpr Unit kPowerBytes{Unit::Kind::kPower, 1, 1, "bytes"};
inline constexpr Unit kPowerMilliseconds{Unit::Kind::kPower, 1, 1, "ms"};
inline constexpr Unit kPowerOf125Microseconds{Unit::Kind::kPowerLessOne, 125, 1, "us"};
inline constexpr Unit kPowerOfMilliseconds{Unit::Kind::kPowerLessOne, 1, 1, "ms"};
inline constexpr Unit kPowerStreams{Unit::Kind::kPower, 1, 1, "streams"};
inline constexpr Unit kSamples{Unit::Kind::kTimes, 1, 1, "samples"};
inline constexpr Unit kTenths{Unit::Kind::kTimes, 1, 10, ""};

}  // namespace usb_fields::detail

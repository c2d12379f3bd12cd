// The tables, one function per file. Internal to the library.
#pragma once

#include <span>

#include <usb_fields/compile.h>

namespace usb_fields::detail {

std::span<Compiled const> FrameworkTable() noexcept;
std::span<Compiled const> BosTable() noexcept;
std::span<Compiled const> WirelessTable() noexcept;
std::span<Compiled const> MicrosoftTable() noexcept;
std::span<Compiled const> Audio1Table() noexcept;
std::span<Compiled const> Audio2Table() noexcept;
std::span<Compiled const> Audio3Table() noexcept;
std::span<Compiled const> MidiTable() noexcept;
std::span<Compiled const> VideoTable() noexcept;
std::span<Compiled const> CdcTable() noexcept;
std::span<Compiled const> HidTable() noexcept;
std::span<Compiled const> DeviceClassesTable() noexcept;

/// All of them, in the order of the standards.
std::span<std::span<Compiled const> const> AllTables() noexcept;

}  // namespace usb_fields::detail

#include <usb_fields/tables/tables.h>

#include <array>

namespace usb_fields::detail {

std::span<std::span<Compiled const> const> AllTables() noexcept {
  static std::array<std::span<Compiled const>, 12> const tables = {
      FrameworkTable(), BosTable(),    WirelessTable(), MicrosoftTable(),
      Audio1Table(),    Audio2Table(), Audio3Table(),   MidiTable(),
      VideoTable(),     CdcTable(),    HidTable(),      DeviceClassesTable()};
  return tables;
}

}  // namespace usb_fields::detail

#include <array>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include <usb_fields/fields.h>

namespace {

void Print(std::string_view name, std::string_view text) {
  std::printf("%.*s: %.*s\n", static_cast<int>(name.size()), name.data(),
              static_cast<int>(text.size()), text.data());
}

}  // namespace

int main() {
  std::uint8_t const configuration[] = {9, 2, 32, 0, 1, 1, 0, 0xE0, 250};
  usb_fields::Context const context{.speed = usb_fields::Speed::kHigh};
  usb_fields::ReadFields(configuration, context, [](usb_fields::FieldValue const& field) {
    std::array<char, usb_fields::kMostText> buffer;
    if (field.offset >= 7) {
      Print(field.field->name, usb_fields::TextOf(field, buffer));
    }
  });
}

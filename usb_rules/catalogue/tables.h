// The tables of rules, one function per file. Internal to the library.
#pragma once

#include <span>

#include <usb_rules/rule.h>

namespace usb_rules::detail {

std::span<Rule const> Usb2Rules() noexcept;
std::span<Rule const> Usb3Rules() noexcept;
std::span<Rule const> HubRules() noexcept;
std::span<Rule const> HidRules() noexcept;
std::span<Rule const> CdcRules() noexcept;
std::span<Rule const> VideoRules() noexcept;
std::span<Rule const> Audio1Rules() noexcept;
std::span<Rule const> Audio2Rules() noexcept;
std::span<Rule const> Audio3Rules() noexcept;
std::span<Rule const> MidiRules() noexcept;
std::span<Rule const> ClassesRules() noexcept;
std::span<Rule const> FieldRules() noexcept;

}  // namespace usb_rules::detail

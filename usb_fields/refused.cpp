// Tables with one mistake for each case, so that none compiles. refused.cmake compiles the file
// once for each line "case N: message" and looks for that message. Case 0 has no mistake.
#include <usb_fields/compile.h>

namespace usb_fields::detail {
namespace {

constexpr Bit kFlags[] = {
#if CASE == 1  // case 1: bits overlap
    {7, 3, "Reserved"},
    {3, "D3"},
    {2, 0, "Mode"},
#elif CASE == 2  // case 2: bits leave a gap
    {7, 5, "Reserved"}, {3, "D3"},
    {2, 0, "Mode"},
#elif CASE == 3  // case 3: bits leave a gap or go beyond the field
    {8, 4, "Reserved"},
    {3, "D3"},
    {2, 0, "Mode"},
#elif CASE == 4  // case 4: bits are written with the higher one first
    {4, 7, "Reserved"},
    {3, "D3"},
    {2, 0, "Mode"},
#else
    {7, 4, "Reserved"},
    {3, "D3"},
    {2, 0, "Mode"},
#endif
#if CASE == 5  // case 5: a value does not fit into its bits
    {2, 0, 8, "Eight"},
#elif CASE == 6  // case 6: values of bits are sorted, each once
    {2, 0, 1, "One"},   {2, 0, 1, "One again"},
#elif CASE == 7  // case 7: a value of bits does not come after those bits
    {1, 0, 1, "One"},
#endif
};

constexpr Code kCodes[] = {
    {0x01, "First"},
#if CASE == 8  // case 8: codes are sorted, each once
    {0x03, "Third"},
    {0x02, "Second"},
#elif CASE == 9   // case 9: codes are sorted, each once
    {0x01, 0x02, "Other"},
#elif CASE == 10  // case 10: a code does not fit into its field
    {0x100, "Large"},
#endif
};

constexpr Field kFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Hex()},
    {"bCode", 1, Enum(kCodes)},
    {"bFlags", 1, Bits(kFlags)},
    {"bCount", 1, Dec()},
#if CASE == 11  // case 11: a name is neither an earlier field nor a fact of the context
    {"bItem", 1, Dec(), {.repeat = "bCuont"}},
#elif CASE == 12  // case 12: a name is neither an earlier field nor a fact of the context
    {"bItem", 1, Dec(), {.repeat = "bLater"}},
    {"bLater", 1, Dec()},
#elif CASE == 13  // case 13: an expression goes on after its end
    {"bItem", 1, Dec(), {.repeat = "bCount 2"}},
#elif CASE == 14  // case 14: a condition compares a field or a fact with a number
    {"bItem", 1, Dec(), {.when = "bCount"}},
#elif CASE == 15  // case 15: the rows of a group repeat equally often
    {"bItem", 1, Dec(), {.repeat = "bCount", .group = 'a'}},
    {"bOther", 1, Dec(), {.repeat = "2", .group = 'a'}},
#elif CASE == 16  // case 16: a UUID has 16 bytes
    {"guid", 15, Uuid()},
#elif CASE == 17  // case 17: a field has no size
    {"bItem", 0, Dec()},
#elif CASE == 18  // case 18: a number has at most 8 bytes
    {"bItem", 9, Dec()},
#elif CASE == 19  // case 19: a field has no name
    {"", 1, Dec()},
#elif CASE == 20  // case 20: a group says how often it repeats
    {"bItem", 1, Dec(), {.group = 'a'}},
#elif CASE == 21  // case 21: a pattern names bits that the table does not have
    {"bItem", 1, Bits(kFlags, "{2..0} of {6..4}")},
#elif CASE == 32  // case 32: a condition is true of every value, or of none
    {"bItem", 1, Dec(), {.when = "bFlags[2..0] == 8"}},
#elif CASE == 33  // case 33: a condition is true of every value, or of none
    {"bItem", 1, Dec(), {.when = "bCount < 0"}},
#elif CASE == 34  // case 34: alternatives have conditions, and one size, which is a number
    {"bItem", 1, Dec(), {.when = "bCount == 1"}},
    {"bItem", 2, Dec(), {.when = "bCount == 2"}},
#endif
    {"bItems", "rest", Bytes()},
};

constexpr Field kFixed[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Hex()},
    {"wValue", 2, Hex()},
};

constexpr Layout kLayouts[] = {
#if CASE == 22  // case 22: the least length is below the fields that are always there
    {"probe.rest", "Probe", "type=70", 4, "", kFields, "none"},
#elif CASE == 23  // case 23: a key names a field that has no fixed place
    {"probe.rest", "Probe", "type=70 bItem=01", 5, "", kFields, "none"},
#elif CASE == 24  // case 24: a number in a key is upper-case hexadecimal
    {"probe.rest", "Probe", "type=7g", 5, "", kFields, "none"},
#elif CASE == 25  // case 25: a layout has an id, a name and a source
    {"probe.rest", "Probe", "type=70", 5, "", kFields, ""},
#elif CASE == 26  // case 26: a UUID is 32 lower-case hexadecimal digits
    {"probe.rest", "Probe", "type=70 guid=3408b638-09a9-47a0-8bfd", 5, "", kFields, "none"},
#elif CASE == 27  // case 27: a name is neither an earlier field nor a fact of the context
    {"probe.rest", "Probe", "type=70", 5, "5+bLater", kFields, "none"},
#else
    {"probe.rest", "Probe", "type=70", 5, "", kFields, "none"},
#endif
#if CASE == 28  // case 28: two layouts have one key or one id
    {"probe.fixed", "Probe", "type=70", 4, "4", kFixed, "none"},
#elif CASE == 29  // case 29: two layouts have one key or one id
    {"probe.rest", "Probe", "type=71", 4, "4", kFixed, "none"},
#elif CASE == 30  // case 30: the least length is not the end of the last field
    {"probe.fixed", "Probe", "type=71", 5, "4", kFixed, "none"},
#elif CASE == 31  // case 31: the exact length is not the end of the last field
    {"probe.fixed", "Probe", "type=71", 4, "5", kFixed, "none"},
#else
    {"probe.fixed", "Probe", "type=71", 4, "4", kFixed, "none"},
#endif
};

constexpr auto kCompiled = CompileAll<kLayouts>();
static_assert(kCompiled.size() == 2);

}  // namespace
}  // namespace usb_fields::detail

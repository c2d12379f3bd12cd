#include <usb_fields/reader.h>

#include <usb_fields/cdc_header.h>
#include <usb_fields/tables/tables.h>

namespace usb_fields {
namespace detail {

std::int64_t Values::Evaluate(std::uint16_t first) const noexcept {
  std::array<std::int64_t, kMostOperands> stack;
  std::size_t size = 0;
  for (Op const* op = &layout_->ops[first];; ++op) {
    switch (op->code) {
      case OpCode::kEnd:
        return stack[0];
      case OpCode::kNumber:
        stack[size++] = op->number;
        continue;
      case OpCode::kValue: {
        unsigned const width = op->high - op->low + 1u;
        std::uint64_t const shifted = values_[op->number] >> op->low;
        stack[size++] = static_cast<std::int64_t>(
            width >= 64 ? shifted : shifted & ((std::uint64_t{1} << width) - 1));
        continue;
      }
      default:
        break;
    }
    // Unsigned, so that the numbers of a device cannot overflow.
    auto const b = static_cast<std::uint64_t>(stack[--size]);
    auto const a = static_cast<std::uint64_t>(stack[size - 1]);
    std::int64_t& result = stack[size - 1];
    switch (op->code) {
      case OpCode::kAdd:
        result = static_cast<std::int64_t>(a + b);
        break;
      case OpCode::kSubtract:
        result = static_cast<std::int64_t>(a - b);
        break;
      case OpCode::kMultiply:
        result = static_cast<std::int64_t>(a * b);
        break;
      case OpCode::kDivide:
        // A difference below 0, as of a length that is too small, divides to 0 too.
        result = b != 0 && result > 0 ? static_cast<std::int64_t>(a / b) : 0;
        break;
      case OpCode::kEqual:
        result = a == b ? 1 : 0;
        break;
      case OpCode::kNotEqual:
        result = a != b ? 1 : 0;
        break;
      case OpCode::kLess:
        result = a < b ? 1 : 0;
        break;
      case OpCode::kLessOrEqual:
        result = a <= b ? 1 : 0;
        break;
      case OpCode::kGreater:
        result = a > b ? 1 : 0;
        break;
      case OpCode::kGreaterOrEqual:
        result = a >= b ? 1 : 0;
        break;
      default:
        break;
    }
  }
}

namespace {

// True in interfaces that are known to have CDC descriptors after a CDC header: vendor-specific
// ones, and those of RNDIS. A CDC data interface may have any without one.
constexpr bool MayHaveCdc(Context const& context, ByteView bytes) noexcept {
  if (!context.hasInterface || bytes.At(1) != 0x24) {
    return false;
  }
  std::uint32_t const triple = static_cast<std::uint32_t>(context.interfaceClass) << 16 |
                               static_cast<std::uint32_t>(context.interfaceSubclass) << 8 |
                               context.interfaceProtocol;
  if (context.interfaceClass == 0x0A) {
    return true;
  }
  bool const isKnown =
      context.interfaceClass == 0xFF || triple == 0xE0'01'03 || triple == 0xEF'04'01;
  return isKnown && (context.cdc == CdcGuess::kYes ||
                     (context.cdc == CdcGuess::kNotSeen && IsCdcHeader(bytes)));
}

// A HID descriptor in a physical (05h, as HID 1.0 drafts had it) or vendor-specific interface: its
// length fits its count, and its first class descriptor is a report descriptor (HID 1.11, 6.2.1).
constexpr bool MayBeHid(Context const& context, ByteView bytes) noexcept {
  bool const isKnown =
      context.hasInterface && (context.interfaceClass == 0x05 || context.interfaceClass == 0xFF);
  return isKnown && bytes.At(1) == 0x21 && bytes.At(5) != 0 && bytes.At(0) == 6 + 3 * bytes.At(5) &&
         bytes.At(6) == 0x22;
}

constexpr Field kUnknown[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Hex()},
};
constexpr Field kUnknownMsOs20[] = {
    {"wLength", 2, Dec()},
    {"wDescriptorType", 2, Hex()},
};
constexpr Field kUnknownMsOs10[] = {
    {"dwLength", 4, Dec()},
};
constexpr Field kUnknownAudio3[] = {
    {"wLength", 2, Dec()},
    {"bDescriptorType", 1, Hex()},
};
constexpr Layout kUnknownLayouts[] = {
    {"unknown", "Unknown", "", 2, "", kUnknown, "USB 2.0, 9.5"},
    {"unknown.msos10", "Unknown", "context=msos10", 4, "", kUnknownMsOs10, "Microsoft OS 1.0"},
    {"unknown.msos20", "Unknown", "context=msos20", 4, "", kUnknownMsOs20, "Microsoft OS 2.0"},
    {"unknown.uac3", "Unknown", "context=uac3_hc", 3, "", kUnknownAudio3, "Audio 3.0"},
};
constexpr auto kCompiledUnknown = CompileAll<kUnknownLayouts>();

// What most keys are made of, in one number.
constexpr std::uint64_t Packed(int type, int subtype, int interfaceClass, int interfaceSubclass,
                               int interfaceProtocol, int flags) noexcept {
  auto const byte = [](int value, int place) {
    return static_cast<std::uint64_t>(value & 0xFF) << (8 * place);
  };
  return byte(type, 0) | byte(subtype, 1) | byte(interfaceClass, 2) | byte(interfaceSubclass, 3) |
         byte(interfaceProtocol, 4) | byte(flags, 5);
}

constexpr int kHasInterface = 1;
constexpr int kHasEndpoint = 2;

bool Holds(Condition const& condition, ByteView bytes) noexcept {
  return condition.size == 0 || bytes.Number(condition.offset, condition.size) == condition.value;
}

struct Candidate {
  Compiled const* layout = nullptr;
  std::uint64_t mask = 0;
  std::uint64_t value = 0;
  bool hasMore = false;  // conditions beyond those that are packed
  std::uint8_t count = 0;
  std::uint8_t typeOffset = 0;
  std::uint16_t next = 0;

  Candidate() = default;
  explicit Candidate(Compiled const& compiled) noexcept
      : layout(&compiled),
        count(compiled.key.count),
        typeOffset(compiled.typeOffset) {
    Key const& key = compiled.key;
    auto const mark = [](int wanted) { return wanted < 0 ? 0 : 0xFF; };
    int const flags =
        (key.interfaceClass >= 0 ? kHasInterface : 0) | (key.isBeforeEndpoint ? kHasEndpoint : 0);
    mask = Packed(mark(key.type), mark(key.subtype), mark(key.interfaceClass),
                  mark(key.interfaceSubclass), mark(key.interfaceProtocol), flags);
    value = mask & Packed(key.type, key.subtype, key.interfaceClass, key.interfaceSubclass,
                          key.interfaceProtocol, kHasInterface);
    hasMore = key.index >= 0 || key.conditions[0].size != 0 || key.hasUuid || !key.parent.empty();
  }

  bool Matches(std::uint64_t packed, ByteView bytes, Context const& context) const noexcept {
    if ((packed & mask) != value) {
      return false;
    }
    if (!hasMore) {
      return context.parent.empty();
    }
    Key const& key = layout->key;
    return (key.index < 0 || key.index == context.index) && Holds(key.conditions[0], bytes) &&
           Holds(key.conditions[1], bytes) && key.parent == context.parent &&
           (!key.hasUuid || std::ranges::equal(bytes.Slice(4, 16), key.uuid));
  }
};

// All layouts, as chains of those with one type and subtype; the most conditions come first.
class Registry {
 public:
  Registry() noexcept {
    for (std::span<Compiled const> const table : AllTables()) {
      for (Compiled const& layout : table) {
        all_[count_++] = &layout;
        NoteType(layout);
        Candidate& candidate = candidates_[count_];
        candidate = Candidate(layout);
        std::uint16_t* place =
            &heads_[HeadOf(layout.key.request, layout.key.type, layout.key.subtype)];
        while (*place != 0 && candidates_[*place].count > candidate.count) {
          place = &candidates_[*place].next;
        }
        candidate.next = *place;
        *place = static_cast<std::uint16_t>(count_);
      }
    }
  }

  std::span<Compiled const* const> All() const noexcept { return {all_.data(), count_}; }

  /// The matching layout with the most conditions, or null.
  Compiled const* Find(ByteView bytes, Context const& context) const noexcept {
    Candidate const* best = nullptr;
    int const flags =
        (context.hasInterface ? kHasInterface : 0) | (context.hasEndpoint ? kHasEndpoint : 0);
    auto const search = [&](std::size_t head, std::size_t typeOffset) {
      std::uint64_t const packed =
          Packed(bytes.At(typeOffset), bytes.At(typeOffset + 1), context.interfaceClass,
                 context.interfaceSubclass, context.interfaceProtocol, flags);
      for (std::uint16_t i = heads_[head]; i != 0; i = candidates_[i].next) {
        Candidate const& candidate = candidates_[i];
        if (best != nullptr && candidate.count <= best->count) {
          return;
        }
        if (candidate.typeOffset == typeOffset && candidate.Matches(packed, bytes, context)) {
          best = &candidate;
          return;
        }
      }
    };
    if (context.request == Request::kDescriptor) {
      OfType const& known = types_[bytes.At(1)];
      if (known.only != nullptr && context.parent.empty()) {
        return known.only;
      }
      if (known.hasSubtypes) {
        search(HeadOf(context.request, bytes.At(1), bytes.At(2)), 1);
      }
      search(HeadOf(context.request, bytes.At(1), -1), 1);
    } else {
      // The answers to other requests are few.
      for (std::size_t const typeOffset : std::array<std::size_t, 4>{0, 1, 2, 4}) {
        search(HeadOf(context.request, 0, -1), typeOffset);
      }
    }
    return best != nullptr ? best->layout : nullptr;
  }

 private:
  static constexpr std::size_t kMostLayouts = 400;
  static constexpr std::size_t kHeads = 1024;  // with a chain for each other request

  void NoteType(Compiled const& layout) noexcept {
    Key const& key = layout.key;
    if (key.request == Request::kDescriptor && key.type >= 0) {
      OfType& known = types_[static_cast<std::size_t>(key.type)];
      known.only = !known.isSeen && key.count == 1 ? &layout : nullptr;
      known.isSeen = true;
      known.hasSubtypes = known.hasSubtypes || key.subtype >= 0;
    }
  }

  static std::size_t HeadOf(Request request, int type, int subtype) noexcept {
    if (request != Request::kDescriptor) {
      return kHeads + static_cast<std::size_t>(request);
    }
    return (static_cast<std::size_t>(type) * 37 + static_cast<std::size_t>(subtype + 1)) % kHeads;
  }

  std::array<Compiled const*, kMostLayouts> all_{};
  std::array<Candidate, kMostLayouts + 1> candidates_{};
  std::array<std::uint16_t, kHeads + 8> heads_{};
  // What is known of a type.
  struct OfType {
    Compiled const* only = nullptr;  // the one layout, which needs no more than the type
    bool isSeen = false;
    bool hasSubtypes = false;
  };
  std::array<OfType, 256> types_{};
  std::size_t count_ = 0;
};

Registry const& TheRegistry() noexcept {
  static Registry const registry;
  return registry;
}

}  // namespace

Compiled const& UnknownLayout(Context const& context) noexcept {
  switch (context.request) {
    case Request::kMsOs10:
      return kCompiledUnknown[1];
    case Request::kMsOs20:
      return kCompiledUnknown[2];
    case Request::kAudioHighCapability:
    case Request::kAudioString:
      return kCompiledUnknown[3];
    default:
      return kCompiledUnknown[0];
  }
}

}  // namespace detail

std::span<detail::Compiled const* const> AllLayouts() noexcept {
  return detail::TheRegistry().All();
}

LayoutMatch FindLayout(std::span<std::uint8_t const> bytes, Context const& context) noexcept {
  ByteView const view(bytes);
  detail::Registry const& registry = detail::TheRegistry();
  if (detail::Compiled const* const found = registry.Find(view, context)) {
    return {found, false};
  }
  Context guess = context;
  if (detail::MayHaveCdc(context, view)) {
    guess.interfaceClass = 0x02;
  } else if (detail::MayBeHid(context, view)) {
    guess.interfaceClass = 0x03;
  } else {
    return {};
  }
  detail::Compiled const* const guessed = registry.Find(view, guess);
  return {guessed, guessed != nullptr};
}

std::size_t DescriptorLength(std::span<std::uint8_t const> bytes, Context const& context) noexcept {
  LayoutMatch const match = FindLayout(bytes, context);
  detail::Compiled const& layout =
      match.compiled != nullptr ? *match.compiled : detail::UnknownLayout(context);
  return static_cast<std::size_t>(ByteView(bytes).Number(0, layout.lengthSize));
}

}  // namespace usb_fields

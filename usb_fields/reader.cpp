#include <usb_fields/reader.h>

#include <bit>
#include <cassert>

#include <usb_fields/cdc_header.h>
#include <usb_fields/tables/tables.h>

namespace usb_fields {
namespace detail {

std::int64_t Values::EvaluateSteps(Op const* op) const noexcept {
  std::array<std::int64_t, kMostOperands> stack;
  std::size_t size = 0;
  for (;; ++op) {
    switch (op->code) {
      case OpCode::kEnd:
        return stack[0];
      case OpCode::kNumber:
        stack[size++] = op->number;
        continue;
      case OpCode::kValue:
        stack[size++] = ValueOf(*op);
        continue;
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
        // A negative difference, for example from a length that is too small, also gives 0.
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

// True where a class-specific descriptor may be one of CDC: everywhere in a CDC data interface; in
// a vendor-specific or RNDIS interface only if the first one is a CDC header.
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

// True for a HID descriptor in a vendor-specific or physical interface (class 05h, as in drafts of
// HID 1.0): its length fits its count, and its first class descriptor is a report descriptor
// (HID 1.11, 6.2.1).
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

// The parts that most keys consist of, to be packed into one number.
struct Wanted {
  int type = 0;
  int subtype = 0;
  int interfaceClass = 0;
  int interfaceSubclass = 0;
  int interfaceProtocol = 0;
  int flags = 0;
  int typeOffset = 0;

  constexpr std::uint64_t Packed() const noexcept {
    std::uint64_t packed = 0;
    int place = 0;
    for (int const part :
         {type, subtype, interfaceClass, interfaceSubclass, interfaceProtocol, flags, typeOffset}) {
      packed |= static_cast<std::uint64_t>(part & 0xFF) << place;
      place += 8;
    }
    return packed;
  }
};

constexpr int kHasInterface = 1;
constexpr int kHasEndpoint = 2;
constexpr int kHasParent = 4;

Wanted WantedBy(Context const& context, std::uint8_t interfaceClass, ByteView const& bytes,
                std::size_t typeOffset) noexcept {
  int const flags = (context.hasInterface ? kHasInterface : 0) |
                    (context.hasEndpoint ? kHasEndpoint : 0) |
                    (context.parent.empty() ? 0 : kHasParent);
  return {bytes.At(typeOffset),        bytes.At(typeOffset + 1),  interfaceClass,
          context.interfaceSubclass,   context.interfaceProtocol, flags,
          static_cast<int>(typeOffset)};
}

bool Holds(Condition const& condition, ByteView const& bytes) noexcept {
  return condition.size == 0 || bytes.Number(condition.offset, condition.size) == condition.value;
}

// True when the conditions of a key that are not packed hold.
bool RestHolds(Key const& key, ByteView const& bytes, Context const& context) noexcept {
  return (key.index < 0 || key.index == context.index) && Holds(key.conditions[0], bytes) &&
         Holds(key.conditions[1], bytes) && key.parent == context.parent &&
         (!key.hasUuid || std::ranges::equal(bytes.Slice(4, 16), key.uuid));
}

// A layout in a chain of possible matches.
struct Candidate {
  Compiled const* layout = nullptr;
  std::uint64_t mask = 0;
  std::uint64_t value = 0;
  Candidate const* next = nullptr;
  std::uint8_t count = 0;  // the number of conditions
  bool hasMore = false;    // some conditions are not packed

  Candidate() = default;
  explicit Candidate(Compiled const& compiled) noexcept
      : layout(&compiled),
        count(compiled.key.count) {
    Key const& key = compiled.key;
    auto const mark = [](int wanted) { return wanted < 0 ? 0 : 0xFF; };
    mask = Wanted{mark(key.type),
                  mark(key.subtype),
                  mark(key.interfaceClass),
                  mark(key.interfaceSubclass),
                  mark(key.interfaceProtocol),
                  (key.interfaceClass >= 0 ? kHasInterface : 0) |
                      (key.isBeforeEndpoint ? kHasEndpoint : 0) | kHasParent,
                  0xFF}
               .Packed();
    value = mask & Wanted{key.type,
                          key.subtype,
                          key.interfaceClass,
                          key.interfaceSubclass,
                          key.interfaceProtocol,
                          kHasInterface | (key.parent.empty() ? 0 : kHasParent),
                          compiled.typeOffset}
                       .Packed();
    hasMore = key.index >= 0 || key.conditions[0].size != 0 || key.hasUuid || !key.parent.empty();
  }
};

// All layouts, in chains chosen by the type, subtype and class of the key (-1 for a part that it
// lacks). In each chain the layouts with the most conditions come first.
class Registry {
 public:
  Registry() noexcept {
    heads_.fill(&kNone);
    for (std::span<Compiled const> const table : AllTables()) {
      for (Compiled const& layout : table) {
        assert(count_ < kMostLayouts);
        NoteType(layout);
        Candidate& candidate = candidates_[count_];
        candidate = Candidate(layout);
        all_[count_++] = &layout;
        Candidate const** place = &heads_[HeadOf(layout.key)];
        while ((*place)->count > candidate.count) {
          place = &candidates_[static_cast<std::size_t>(*place - candidates_.data())].next;
        }
        candidate.next = *place;
        *place = &candidate;
      }
    }
  }
  Registry(Registry const&) = delete;
  Registry& operator=(Registry const&) = delete;

  std::span<Compiled const* const> All() const noexcept { return {all_.data(), count_}; }

  /// The matching layout with the most conditions in an interface of this class, or null.
  Compiled const* Find(ByteView const& bytes, Context const& context,
                       std::uint8_t interfaceClass) const noexcept {
    if (context.request != Request::kDescriptor) {
      return FindOfRequest(bytes, context, interfaceClass);
    }
    OfType const& known = types_[bytes.At(1)];
    if (known.only != nullptr && context.parent.empty()) {
      return known.only;
    }
    Wanted const wanted = WantedBy(context, interfaceClass, bytes, 1);
    std::uint64_t const packed = wanted.Packed();
    Candidate const* best = &kNone;
    for (unsigned left = known.parts; left != 0; left &= left - 1) {
      auto const without = static_cast<unsigned>(std::countr_zero(left));
      std::size_t const head = HeadOf(wanted.type, (without & kSubtype) != 0 ? -1 : wanted.subtype,
                                      (without & kClass) != 0 ? -1 : wanted.interfaceClass);
      best = Better(best, heads_[head], packed, bytes, context);
    }
    return best->layout;
  }

 private:
  static constexpr std::size_t kMostLayouts = 400;
  static constexpr std::size_t kHeads = 1024;  // then one chain for each other request
  static constexpr Candidate kNone{};

  // Parts that a key may lack.
  static constexpr unsigned kSubtype = 1;
  static constexpr unsigned kClass = 2;

  struct OfType {
    Compiled const* only = nullptr;  // the only layout, if its key is only the type
    unsigned parts = 0;              // bit n: some key lacks exactly the parts in n
  };

  // The layouts for other requests are few: one chain for each request is enough.
  Compiled const* FindOfRequest(ByteView const& bytes, Context const& context,
                                std::uint8_t interfaceClass) const noexcept {
    Candidate const* best = &kNone;
    for (std::size_t const offset : std::array<std::size_t, 4>{0, 1, 2, 4}) {
      std::uint64_t const packed = WantedBy(context, interfaceClass, bytes, offset).Packed();
      best = Better(best, heads_[HeadOf(context.request)], packed, bytes, context);
    }
    return best->layout;
  }

  // The first match in a chain if it has more conditions than `best`, else `best`.
  static Candidate const* Better(Candidate const* best, Candidate const* chain,
                                 std::uint64_t packed, ByteView const& bytes,
                                 Context const& context) noexcept {
    for (; chain->count > best->count; chain = chain->next) {
      if ((packed & chain->mask) == chain->value &&
          (!chain->hasMore || RestHolds(chain->layout->key, bytes, context))) {
        return chain;
      }
    }
    return best;
  }

  void NoteType(Compiled const& layout) noexcept {
    Key const& key = layout.key;
    if (key.request != Request::kDescriptor || key.type < 0) {
      return;
    }
    OfType& known = types_[static_cast<std::size_t>(key.type)];
    known.only = known.parts == 0 && key.count == 1 ? &layout : nullptr;
    known.parts |= 1u << ((key.subtype < 0 ? kSubtype : 0) | (key.interfaceClass < 0 ? kClass : 0));
  }

  static std::size_t HeadOf(Key const& key) noexcept {
    return key.request != Request::kDescriptor ? HeadOf(key.request)
                                               : HeadOf(key.type, key.subtype, key.interfaceClass);
  }
  static std::size_t HeadOf(Request request) noexcept {
    return kHeads + static_cast<std::size_t>(request);
  }
  // -1: the key lacks this part.
  static std::size_t HeadOf(int type, int subtype, int interfaceClass) noexcept {
    return static_cast<std::size_t>(type * 97 + (subtype + 1) * 7 + (interfaceClass + 1) * 211) %
           kHeads;
  }

  std::array<Compiled const*, kMostLayouts> all_{};
  std::array<Candidate, kMostLayouts> candidates_{};
  std::array<Candidate const*, kHeads + 8> heads_{};
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

namespace {

// Finds a layout of another class that seems to fit.
LayoutMatch GuessLayout(ByteView const& bytes, Context const& context) noexcept {
  std::uint8_t guess = 0;
  if (detail::MayHaveCdc(context, bytes)) {
    guess = 0x02;
  } else if (detail::MayBeHid(context, bytes)) {
    guess = 0x03;
  } else {
    return {};
  }
  detail::Compiled const* const found = detail::TheRegistry().Find(bytes, context, guess);
  return {found, found != nullptr};
}

}  // namespace

LayoutMatch FindLayout(std::span<std::uint8_t const> bytes, Context const& context) noexcept {
  ByteView const view(bytes);
  detail::Compiled const* const found =
      detail::TheRegistry().Find(view, context, context.interfaceClass);
  return found != nullptr ? LayoutMatch{found, false} : GuessLayout(view, context);
}

std::size_t DescriptorLength(std::span<std::uint8_t const> bytes, Context const& context) noexcept {
  LayoutMatch const match = FindLayout(bytes, context);
  detail::Compiled const& layout =
      match.compiled != nullptr ? *match.compiled : detail::UnknownLayout(context);
  return static_cast<std::size_t>(ByteView(bytes).Number(0, layout.lengthSize));
}

}  // namespace usb_fields

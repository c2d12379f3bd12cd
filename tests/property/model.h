// The expected results of the operations over a run of descriptors, computed independently from
// plain bytes and indices. Nothing here uses the library.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace usb_support::model {

using Bytes = std::vector<unsigned char>;

/// Bytes `offset` to `offset + length` of a run.
struct Piece {
  std::size_t offset = 0;
  std::size_t length = 0;

  friend bool operator==(Piece const&, Piece const&) = default;
};

/// Why the chain of descriptors ends.
enum class End {
  kComplete,
  kZeroLength,
  kHeaderCutShort,
  kPastEnd,
};

struct Chain {
  std::vector<Piece> descriptors;  ///< the whole ones, from the start
  std::size_t validLength = 0;     ///< where the first one begins that is not whole
  End end = End::kComplete;
};

inline Chain ChainOf(Bytes const& run) {
  Chain chain;
  std::size_t at = 0;
  while (at < run.size()) {
    std::size_t const length = run[at];
    std::size_t const left = run.size() - at;
    if (length == 0) {
      chain.end = End::kZeroLength;
      break;
    }
    if (length > left) {
      chain.end = left == 1 ? End::kHeaderCutShort : End::kPastEnd;
      break;
    }
    chain.descriptors.push_back({at, length});
    at += length;
  }
  chain.validLength = at;
  return chain;
}

/// The byte at `at`, 0 after the run.
inline unsigned char ByteAt(Bytes const& run, std::size_t at) {
  return at < run.size() ? run[at] : static_cast<unsigned char>(0);
}

/// A descriptor without a second byte has no type.
inline bool HasType(Bytes const& run, std::size_t at, unsigned char type) {
  return at + 1 < run.size() && run[at + 1] == type;
}

/// The place after a step from `at`, never past the end; nothing when the step is refused.
inline std::optional<std::size_t> Next(Bytes const& run, std::size_t at) {
  if (at >= run.size() || run[at] == 0) {
    return std::nullopt;
  }
  return std::min<std::size_t>(at + run[at], run.size());
}

/// True when the descriptor at an offset matches.
using Match = std::function<bool(std::size_t at)>;

inline Match OfType(Bytes const& run, unsigned char type) {
  return [&run, type](std::size_t at) { return HasType(run, at, type); };
}

inline bool Anything(std::size_t) {
  return true;
}

/// The first match from `from` on, `limit` when there is none; nothing when the search meets a zero
/// length first.
/// Requires: a walk from `from` reaches `limit` or a zero length.
inline std::optional<std::size_t> Search(Bytes const& run, std::size_t from, std::size_t limit,
                                         Match const& match) {
  std::optional<std::size_t> at = from;
  while (at.has_value() && *at != limit && !match(*at)) {
    at = Next(run, *at);
  }
  return at;
}

/// The first piece from a `start` to the next `finish` between two offsets, of length 0 when there
/// is none; nothing when the search meets a zero length first.
inline std::optional<Piece> Cut(Bytes const& run, std::size_t from, std::size_t limit,
                                Match const& start, Match const& finish) {
  std::optional<std::size_t> const first = Search(run, from, limit, start);
  if (!first.has_value()) {
    return std::nullopt;
  }
  if (*first == limit) {
    return Piece{};
  }
  std::optional<std::size_t> const next = Next(run, *first);
  if (!next.has_value()) {
    return std::nullopt;
  }
  std::optional<std::size_t> const last = Search(run, *next, limit, finish);
  if (!last.has_value()) {
    return std::nullopt;
  }
  return Piece{*first, *last - *first};
}

/// All pieces of the valid part, one after the other.
inline std::vector<Piece> Cuts(Bytes const& run, Match const& start, Match const& finish) {
  std::vector<Piece> pieces;
  std::size_t const limit = ChainOf(run).validLength;
  std::size_t at = 0;
  while (at != limit) {
    Piece const piece = Cut(run, at, limit, start, finish).value();
    if (piece.length == 0) {
      break;
    }
    pieces.push_back(piece);
    while (at < piece.offset + piece.length) {
      at += run[at];
    }
  }
  return pieces;
}

/// The part of a descriptor that a label reads.
using LabelBytes = std::array<unsigned char, 9>;

inline LabelBytes LabelBytesAt(Bytes const& run, std::size_t at) {
  LabelBytes bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = ByteAt(run, at + i);
  }
  return bytes;
}

/// Gives the label of a descriptor; the interface is null before the first.
using Labeller = std::function<std::string(LabelBytes descriptor, LabelBytes const* interface)>;

inline std::string Hex(unsigned char byte) {
  char const* const digits = "0123456789ABCDEF";
  return {digits[byte / 16], digits[byte % 16]};
}

inline std::string Joined(Bytes const& run, Piece piece, char const* prefix,
                          char const* separator) {
  std::string text;
  for (std::size_t i = 0; i < piece.length; ++i) {
    text.append(i == 0 ? "" : separator).append(prefix).append(Hex(run[piece.offset + i]));
  }
  return text;
}

/// The offset in four columns.
inline std::string Column(std::size_t offset) {
  std::string digits =
      Hex(static_cast<unsigned char>(offset / 256)) + Hex(static_cast<unsigned char>(offset % 256));
  for (std::size_t i = 0; i < 3 && digits[i] == '0'; ++i) {
    digits[i] = ' ';
  }
  return digits;
}

inline std::string Prefix(std::size_t offset, bool asCode) {
  return asCode ? "/* " + Column(offset) + "h */  " : Column(offset) + "h:  ";
}

inline std::string Dump(Bytes const& run, bool asCode, Labeller const& label) {
  Chain const chain = ChainOf(run);
  std::string text;
  std::optional<LabelBytes> interface;
  for (Piece const& descriptor : chain.descriptors) {
    if (descriptor.offset != 0) {
      text += "\n";
    }
    text += Prefix(descriptor.offset, asCode);
    text += asCode ? Joined(run, descriptor, "0x", ", ") + "," : Joined(run, descriptor, "", " ");
    LabelBytes const bytes = LabelBytesAt(run, descriptor.offset);
    if (HasType(run, descriptor.offset, 4)) {
      interface = bytes;
    }
    std::string const words = label(bytes, interface.has_value() ? &*interface : nullptr);
    if (!words.empty()) {
      text += (asCode ? " // " : " : ") + words;
    }
  }
  if (chain.validLength != run.size()) {
    Piece const tail{chain.validLength, run.size() - chain.validLength};
    text += Prefix(tail.offset, asCode) + "\n" + Joined(run, tail, "", " ") + " (incomplete)";
  }
  return text;
}

}  // namespace usb_support::model

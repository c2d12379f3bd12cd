// The interfaces and functions of a configuration, computed independently from plain bytes: one
// pass over the descriptors, with the piece that is open. Nothing here uses the library.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include <tests/property/model.h>

namespace usb_support::model {

/// The pieces of a run, each closed by the next one or by a border.
class PieceList {
 public:
  /// Closes the open piece before `at`.
  void Close(std::size_t at) {
    if (start_.has_value()) {
      pieces_.push_back({*start_, at - *start_});
      start_.reset();
    }
  }

  /// Closes the open piece before `at` and begins one there.
  void Open(std::size_t at) {
    Close(at);
    start_ = at;
  }

  bool IsOpen() const { return start_.has_value(); }

  std::vector<Piece> const& Pieces() const { return pieces_; }

 private:
  std::vector<Piece> pieces_;
  std::optional<std::size_t> start_;
};

inline bool IsAssociation(Bytes const& run, std::size_t at) {
  return HasType(run, at, 0x0B);
}

inline bool IsFirstSetting(Bytes const& run, std::size_t at) {
  return HasType(run, at, 0x04) && ByteAt(run, at + 3) == 0;
}

inline std::vector<Piece> InterfacesOf(Bytes const& run) {
  Chain const chain = ChainOf(run);
  PieceList list;
  for (Piece const& descriptor : chain.descriptors) {
    if (IsAssociation(run, descriptor.offset)) {
      list.Close(descriptor.offset);
    } else if (IsFirstSetting(run, descriptor.offset)) {
      list.Open(descriptor.offset);
    }
  }
  list.Close(chain.validLength);
  return list.Pieces();
}

inline std::vector<Piece> FunctionsOf(Bytes const& run) {
  Chain const chain = ChainOf(run);
  PieceList list;
  unsigned next = 0;  // number of the interface that closes the open function
  for (Piece const& descriptor : chain.descriptors) {
    std::size_t const at = descriptor.offset;
    unsigned const number = ByteAt(run, at + 2);
    if (IsAssociation(run, at)) {
      list.Open(at);
      next = (number + ByteAt(run, at + 3)) % 256;
    } else if (IsFirstSetting(run, at) && (!list.IsOpen() || number == next)) {
      list.Open(at);
      next = (number + 1) % 256;
    }
  }
  list.Close(chain.validLength);
  return list.Pieces();
}

}  // namespace usb_support::model

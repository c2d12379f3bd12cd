#include <usb_support/vendor_names/vendor_list.h>

#include <charconv>
#include <cstdint>
#include <string_view>
#include <system_error>
#include <utility>

// Only RapidJSON's reader: the newest Clang refuses its document, which assigns to a const member.
#include <rapidjson/reader.h>
#include <rapidjson/stream.h>

#include <usb_support/text/utf8.h>

namespace usb_support {
namespace {

// The reader recurses on every level; a hostile text must not use up the thread's stack.
constexpr unsigned kDeepestNesting = 256;

// Numbers as strings: no number in the list is used, and converting one with a hostile exponent
// overflows in RapidJSON 1.1.0 (CVE-2024-38517). The same numbers are well-formed. In place:
// nothing is copied, and the reader does not use its stack, on whose first use RapidJSON 1.1.0 adds
// to a null pointer.
constexpr unsigned kParseFlags =
    rapidjson::kParseInsituFlag | rapidjson::kParseNumbersAsStringsFlag;

// The texts of an entry's two members, in the list itself; the first member of a name counts.
struct Member {
  enum class State : unsigned char { kMissing, kNotText, kText };
  State state = State::kMissing;
  std::string_view text = "";
};

std::string_view UpToZero(std::string_view text) {
  return text.substr(0, text.find('\0'));
}

std::optional<std::uint16_t> VendorId(std::string_view text) {
  std::uint16_t value = 0;
  char const* const end = text.data() + text.size();
  auto const [stopped, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc{} || stopped != end) {
    return std::nullopt;
  }
  return value;
}

using TakeFault = std::function<void(FaultyEntry const&)>;

// Takes the parser's events; depth 1 is inside the root, depth 2 inside an entry.
class ListHandler : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, ListHandler> {
 public:
  ListHandler(int vid, TakeFault const& take, VendorSearch& search)
      : vid_(vid),
        take_(take),
        search_(search) {}

  // Every value without its own handler.
  bool Default() { return Scalar(); }
  bool RawNumber(char const* /*text*/, rapidjson::SizeType /*length*/, bool /*copy*/) {
    return Scalar();
  }

  bool String(char const* text, rapidjson::SizeType length, bool /*copy*/) {
    if (Member* const member = AwaitedMember()) {
      member->state = Member::State::kText;
      member->text = std::string_view(text, length);
      return true;
    }
    return Scalar();
  }

  bool Key(char const* text, rapidjson::SizeType length, bool /*copy*/) {
    if (depth_ == 2 && search_.isArray) {
      std::string_view const key(text, length);
      awaited_ = key == "name" ? &name_ : key == "field_vid" ? &id_ : nullptr;
    }
    return true;
  }

  bool StartObject() {
    NotText();
    return Descend();
  }

  bool EndObject(rapidjson::SizeType /*members*/) {
    --depth_;
    if (depth_ == 1 && search_.isArray) {
      TakeEntry();
      name_ = {};
      id_ = {};
    }
    return true;
  }

  bool StartArray() {
    if (depth_ == 0) {
      search_.isArray = true;
      return Descend();
    }
    NotText();
    NotAnEntry();
    return Descend();
  }

  bool EndArray(rapidjson::SizeType /*elements*/) {
    --depth_;
    return true;
  }

 private:
  bool Descend() { return ++depth_ <= kDeepestNesting; }

  bool Scalar() {
    NotText();
    NotAnEntry();
    return true;
  }

  void NotAnEntry() {
    if (depth_ == 1 && search_.isArray) {
      AddFault(EntryFault::kNotAnObject);
    }
  }

  // The member whose value comes next, if it is one of the two and has not been seen before.
  Member* AwaitedMember() {
    Member* const member = std::exchange(awaited_, nullptr);
    return member != nullptr && member->state == Member::State::kMissing ? member : nullptr;
  }

  void NotText() {
    if (Member* const member = AwaitedMember()) {
      member->state = Member::State::kNotText;
    }
  }

  void AddFault(EntryFault fault) {
    if (!search_.name) {
      // The parser ends each text with a zero.
      take_({fault, name_.text.data(), id_.text.data()});
    }
  }

  void TakeEntry() {
    if (search_.name) {
      return;
    }
    name_.text = UpToZero(name_.text);
    id_.text = UpToZero(id_.text);
    if (name_.state != Member::State::kText) {
      AddFault(name_.state == Member::State::kMissing ? EntryFault::kNoName
                                                      : EntryFault::kNameNotText);
    } else if (name_.text.empty()) {
      AddFault(EntryFault::kNameEmpty);
    } else if (id_.state != Member::State::kText) {
      AddFault(id_.state == Member::State::kMissing ? EntryFault::kNoId : EntryFault::kIdNotText);
    } else if (id_.text.empty()) {
      AddFault(EntryFault::kIdEmpty);
    } else if (std::optional<std::uint16_t> const id = VendorId(id_.text); !id) {
      AddFault(EntryFault::kIdInvalid);
    } else if (*id == vid_) {
      search_.name = name_.text;
    }
  }

  int vid_;
  TakeFault const& take_;
  VendorSearch& search_;
  unsigned depth_ = 0;
  Member name_;
  Member id_;
  Member* awaited_ = nullptr;
};

}  // namespace

VendorSearch SearchVendorList(std::string& text, int vid, TakeFault const& take) {
  VendorSearch search;
  ListHandler handler(vid, take, search);
  rapidjson::InsituStringStream stream(text.data());
  if (text.starts_with(kByteOrderMark)) {
    stream.src_ += kByteOrderMark.size();
  }
  rapidjson::Reader reader;
  rapidjson::ParseResult const result = reader.Parse<kParseFlags>(stream, handler);
  search.parseError = static_cast<unsigned>(result.Code());
  search.errorOffset = result.Offset();
  return search;
}

}  // namespace usb_support

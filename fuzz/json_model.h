// The contents of a JSON text: a tree from RapidJSON's plain reader, independent of the library's
// rules. A zero byte ends the text, and a byte order mark may come first.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <rapidjson/reader.h>
#include <rapidjson/stream.h>

namespace usb_support::model {

struct Json {
  enum class Kind { kNull, kBoolean, kNumber, kText, kArray, kObject };

  Kind kind = Kind::kNull;
  bool boolean = false;
  std::string text;  ///< of a text its content, of a number its digits
  std::vector<std::string> keys;
  std::vector<Json> values;  ///< elements, or members beside their keys
};

class JsonText {
 public:
  /// `checksUtf8`: only well-formed UTF-8 is JSON. `deepest`: levels that are allowed.
  JsonText(std::string_view text, bool checksUtf8, std::size_t deepest)
      // Checking a character that is cut off reads bytes after the end.
      : text_(std::string(text) + std::string(8, '\0')),
        handler_{root_, deepest} {
    // In place and numbers as texts: see usb_support/vendor_names/vendor_list.cpp.
    constexpr unsigned kFlags = rapidjson::kParseInsituFlag | rapidjson::kParseNumbersAsStringsFlag;
    rapidjson::InsituStringStream stream(text_.data());
    if (text.starts_with("\xEF\xBB\xBF")) {
      stream.src_ += 3;
    }
    rapidjson::Reader reader;
    result_ = checksUtf8
                  ? reader.Parse<kFlags | rapidjson::kParseValidateEncodingFlag>(stream, handler_)
                  : reader.Parse<kFlags>(stream, handler_);
  }

  bool IsJson() const { return !result_.IsError(); }

  /// RapidJSON's code; kParseErrorTermination for a place that is deeper than allowed.
  unsigned Error() const { return result_.Code(); }

  /// The values that were read, up to the fault if there is one.
  Json const& Root() const { return root_; }

 private:
  struct Handler : rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Handler> {
    Handler(Json& value, std::size_t most) : root(value), deepest(most) {}

    Json& Add(Json::Kind kind, std::string_view text = "") {
      Json& value = open.empty() ? root : open.back()->values.emplace_back();
      value.kind = kind;
      value.text = text;
      return value;
    }
    bool Null() { return Add(Json::Kind::kNull), true; }
    bool Bool(bool value) {
      Add(Json::Kind::kBoolean).boolean = value;
      return true;
    }
    bool String(char const* text, rapidjson::SizeType length, bool /*copy*/) {
      return Add(Json::Kind::kText, {text, length}), true;
    }
    bool RawNumber(char const* text, rapidjson::SizeType length, bool /*copy*/) {
      return Add(Json::Kind::kNumber, {text, length}), true;
    }
    bool Key(char const* text, rapidjson::SizeType length, bool /*copy*/) {
      open.back()->keys.emplace_back(text, length);
      return true;
    }
    // A value in a growing vector is moved, but no open value is in a growing vector.
    bool Open(Json::Kind kind) {
      if (open.size() == deepest) {
        return false;
      }
      open.push_back(&Add(kind));
      return true;
    }
    bool StartObject() { return Open(Json::Kind::kObject); }
    bool StartArray() { return Open(Json::Kind::kArray); }
    bool EndObject(rapidjson::SizeType /*members*/) { return open.pop_back(), true; }
    bool EndArray(rapidjson::SizeType /*elements*/) { return open.pop_back(), true; }

    Json& root;
    std::size_t deepest;
    std::vector<Json*> open;
  };

  std::string text_;
  Json root_;
  Handler handler_;
  rapidjson::ParseResult result_;
};

}  // namespace usb_support::model

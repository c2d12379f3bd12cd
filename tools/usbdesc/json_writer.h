// Writes JSON. The one place that knows the library which does.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace usb_support::usbdesc {

/// A JSON text on one line, written from its start to its end. Any bytes may be in a string: what
/// JSON does not allow is escaped.
class JsonWriter {
 public:
  JsonWriter();
  ~JsonWriter();
  JsonWriter(JsonWriter const&) = delete;
  JsonWriter& operator=(JsonWriter const&) = delete;

  void StartObject();
  void EndObject();
  void StartArray();
  void EndArray();

  /// The name of what is written next in an object.
  void Key(std::string_view key);

  void String(std::string_view value);
  void Number(std::uint64_t value);
  void Signed(std::int64_t value);
  void Bool(bool value);

  /// A member of an object.
  void String(std::string_view key, std::string_view value);
  void Number(std::string_view key, std::uint64_t value);

  /// What was written.
  std::string Text() const;

 private:
  struct Output;
  std::unique_ptr<Output> output_;
};

}  // namespace usb_support::usbdesc

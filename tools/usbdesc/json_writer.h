// Writes JSON. Only this file uses the JSON library for writing.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace usb_support::usbdesc {

/// A JSON text on one line, written from its start to its end. A string may contain any bytes:
/// those that JSON does not allow are escaped.
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

  /// The name of the next value in an object.
  void Key(std::string_view key);

  void String(std::string_view value);
  void Number(std::uint64_t value);
  void Signed(std::int64_t value);
  void Bool(bool value);

  /// A member of an object.
  void String(std::string_view key, std::string_view value);
  void Number(std::string_view key, std::uint64_t value);

  /// The text that was written.
  std::string Text() const;

 private:
  struct Output;
  std::unique_ptr<Output> output_;
};

}  // namespace usb_support::usbdesc

#include <tools/usbdesc/json_writer.h>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace usb_support::usbdesc {
namespace {

rapidjson::SizeType SizeOf(std::string_view text) {
  return static_cast<rapidjson::SizeType>(text.size());
}

}  // namespace

struct JsonWriter::Output {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer{buffer};
};

JsonWriter::JsonWriter() : output_(std::make_unique<Output>()) {
}

JsonWriter::~JsonWriter() = default;

void JsonWriter::StartObject() {
  output_->writer.StartObject();
}

void JsonWriter::EndObject() {
  output_->writer.EndObject();
}

void JsonWriter::StartArray() {
  output_->writer.StartArray();
}

void JsonWriter::EndArray() {
  output_->writer.EndArray();
}

void JsonWriter::Key(std::string_view key) {
  output_->writer.Key(key.data(), SizeOf(key));
}

void JsonWriter::String(std::string_view value) {
  output_->writer.String(value.data(), SizeOf(value));
}

void JsonWriter::Number(std::uint64_t value) {
  output_->writer.Uint64(value);
}

void JsonWriter::Signed(std::int64_t value) {
  output_->writer.Int64(value);
}

void JsonWriter::Bool(bool value) {
  output_->writer.Bool(value);
}

void JsonWriter::String(std::string_view key, std::string_view value) {
  Key(key);
  String(value);
}

void JsonWriter::Number(std::string_view key, std::uint64_t value) {
  Key(key);
  Number(value);
}

std::string JsonWriter::Text() const {
  return {output_->buffer.GetString(), output_->buffer.GetSize()};
}

}  // namespace usb_support::usbdesc

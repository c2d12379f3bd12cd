// The descriptors of samples.txt, and helpers for tests of any descriptor. For tests only.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <usb_fields/context.h>
#include <usb_fields/reader.h>

namespace usb_fields::testing_support {

using Bytes = std::vector<std::uint8_t>;

/// The bytes of a text such as "09 04 00".
Bytes FromHex(std::string_view text);

/// A descriptor and its context.
struct Sample {
  std::string layout;
  Context context;
  std::string parent;  // the text that context.parent refers to
  bool isGuessed = false;
  Bytes bytes;
  std::string origin;  // such as "real: a keyboard"
};

/// Every sample; the file is read once.
std::vector<Sample> const& Samples();

/// The first sample of a layout.
Sample const& SampleOf(std::string_view layout);

/// The context of a sample.
Context ContextOf(Sample const& sample);

/// The context in an interface of this class, at high speed.
Context In(int interfaceClass, int subclass, int protocol);

/// The lines "offset size name[index] number: text" of a descriptor, with bits indented below; the
/// last lines list fields that are cut and bytes that are not described.
std::string Listing(std::span<std::uint8_t const> bytes, Context const& context);

}  // namespace usb_fields::testing_support

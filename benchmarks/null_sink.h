// A log sink that takes every call and does nothing with it.
#pragma once

#include <cstddef>

#include <standalone_suite/suite_runtime/log.h>

namespace usb_support::benchmarks {

class NullSink final : public standalone::LogSink {
 public:
  void Take(standalone::LogCall const& call) override { characters_ += call.text.size(); }

  std::size_t Characters() const noexcept { return characters_; }

 private:
  std::size_t characters_ = 0;
};

}  // namespace usb_support::benchmarks

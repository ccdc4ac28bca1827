// UTF-EBCDIC as a target.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "core/text/i8.h"
#include "transcode/skip_ahead.h"

namespace veldnls {

struct UtfEbcdicTarget {
  static constexpr size_t replacementRoom = 0;

  template <std::endian>
  static constexpr PlainText fromUtf16 = noPlainText;
  template <std::endian>
  static constexpr PlainText fromUtf32 = noPlainText;

  static size_t size(uint32_t value) { return i8Length(value); }
  static void write(uint8_t* at, uint32_t value, size_t size) { writeUtfEbcdic(at, value, size); }
};

}  // namespace veldnls

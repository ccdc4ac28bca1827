// UTF-8 as a target of the stages.
#pragma once

#include <bit>

#include "core/text/utf8.h"
#include "transcode/skip_ahead.h"

namespace veldnls {

struct Utf8Target {
  // A value with bit 31 set is replaced only while this many bytes of room are left.
  static constexpr size_t replacementRoom = 1;

  template <std::endian order>
  static constexpr PlainText fromUtf16{ofOrder<order>(offsetof(Kernels, utf16ToUtf8)), 1, 0};
  template <std::endian order>
  static constexpr PlainText fromUtf32{ofOrder<order>(offsetof(Kernels, utf32ToUtf8)), 2, 0};

  static size_t size(uint32_t value) { return utf8Length(value); }
  static void write(uint8_t* at, uint32_t value, size_t size) { writeUtf8(at, value, size); }
};

}  // namespace veldnls

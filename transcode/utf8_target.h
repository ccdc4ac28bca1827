// UTF-8 as a target of the stages.
#pragma once

#include <bit>

#include "core/text/utf8.h"
#include "transcode/skip_ahead.h"

namespace veldnls {

template <std::endian order>
TextKernel* utf16ToUtf8Kernel() {
  return kernels().utf16ToUtf8.of<order>();
}

template <std::endian order>
TextKernel* utf32ToUtf8Kernel() {
  return kernels().utf32ToUtf8.of<order>();
}

struct Utf8Target {
  // A value with bit 31 set is replaced only while this many bytes of room are left.
  static constexpr size_t replacementRoom = 1;

  template <std::endian order>
  static constexpr StageSkip fromUtf16 = skipByKernel<2, 1, utf16ToUtf8Kernel<order>>;
  template <std::endian order>
  static constexpr StageSkip fromUtf32 = skipByKernel<4, 1, utf32ToUtf8Kernel<order>>;

  static size_t size(uint32_t value) { return utf8Length(value); }
  static void write(uint8_t* at, uint32_t value, size_t size) { writeUtf8(at, value, size); }
};

}  // namespace veldnls

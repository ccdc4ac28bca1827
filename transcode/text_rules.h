// When a text is well-formed, by encoding class. Each rule looks for the first fault and reads nothing outside of the
// text.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "veldnls/encoding.h"

namespace veldnls {

inline constexpr size_t noFault = SIZE_MAX;

struct EncodedText {
  const uint8_t* bytes;
  size_t length;

  bool has(size_t position, size_t count) const { return count <= length - position; }
  // Bytes behind the text count as 0.
  uint8_t at(size_t position) const { return position < length ? bytes[position] : uint8_t{0}; }
};

// All return the offset of the first fault, or noFault.

// Every byte must be defined: `map` is one of validByteMaps.
size_t faultOfBytes(const EncodedText& text, const uint8_t* map);

// No surrogates, no sequence longer than needed; but leads F4 to F7 have no upper bound, so that values up to 0x1FFFFF
// are well-formed. A fault is where its character begins.
size_t faultOfUtf8(const EncodedText& text);

// Surrogates must stand in pairs. A fault is where the character begins, or the odd byte at the end.
template <std::endian order>
size_t faultOfUtf16(const EncodedText& text);

// Values up to lastValidUtf32; surrogates aren't looked for.
template <std::endian order>
size_t faultOfUtf32(const EncodedText& text);

// Far below the last code point: what lies above is refused here, though it converts.
inline constexpr uint32_t lastValidUtf32 = 0x1018F;

// Text with shifts begins in single-byte mode and may end in either. Designators aren't known.
size_t faultOfShifted(const EncodedText& text, const MultiByteProfile& profile, const uint8_t* map);

// Text without shifts, by a rule of the encoding's own or by the row's ranges of lead and trail bytes. A fault is where
// its character begins.
size_t faultOfMultiByte(const EncodedText& text, const EncodingDescriptor& row);

}  // namespace veldnls

#include "core/kernels/kernels.h"
#include "core/kernels/pace.h"
#include "core/text/units.h"
#include "core/text/utf8.h"
#include "transcode/text_rules.h"

namespace veldnls {

namespace {

constexpr size_t longestUtf8 = 4;

// Whether the byte behind a lead byte can follow it.
bool mayFollow(uint8_t lead, uint8_t second) {
  if (!isUtf8Trail(second)) return false;
  switch (lead) {
    case 0xC0:
    case 0xC1:
      return false;
    case 0xE0:
      return second >= 0xA0;
    case 0xED:
      return second <= 0x9F;
    case 0xF0:
      return second >= 0x90;
    default:
      return true;
  }
}

// Bytes of the character at a position, 0 if it is faulty.
size_t utf8Character(const EncodedText& text, size_t position) {
  const uint8_t* start = text.bytes + position;
  const uint8_t lead = *start;
  if (lead < 0x80) return 1;
  const size_t length = size_t{1} + utf8TrailCount[lead];
  if (length == 1 || length > longestUtf8 || !text.has(position, length)) return 0;
  if (!mayFollow(lead, start[1])) return 0;
  for (size_t i = 2; i < length; ++i) {
    if (!isUtf8Trail(start[i])) return 0;
  }
  return length;
}

}  // namespace

size_t faultOfUtf8(const EncodedText& text) {
  KernelPace pace;
  for (size_t position = 0; position < text.length;) {
    if (pace.due()) {
      // What the kernel takes is well-formed here too.
      const size_t valid = kernels().utf8Valid(text.bytes + position, text.length - position);
      pace.took(valid);
      position += valid;
      if (position == text.length) break;
    }
    const size_t length = utf8Character(text, position);
    if (length == 0) return position;
    position += length;
  }
  return noFault;
}

template <std::endian order>
size_t faultOfUtf16(const EncodedText& text) {
  size_t position = 0;
  while (text.has(position, utf16UnitBytes)) {
    const uint32_t unit = load16<order>(text.bytes + position);
    size_t length = utf16UnitBytes;
    if (isSurrogate(unit)) {
      length = 2 * utf16UnitBytes;
      if (isLowSurrogate(unit) || !text.has(position, length)) return position;
      if (!isLowSurrogate(load16<order>(text.bytes + position + utf16UnitBytes))) return position;
    }
    position += length;
  }
  return position < text.length ? position : noFault;
}

template <std::endian order>
size_t faultOfUtf32(const EncodedText& text) {
  for (size_t position = 0; position < text.length; position += utf32UnitBytes) {
    if (!text.has(position, utf32UnitBytes)) return position;
    if (load32<order>(text.bytes + position) > lastValidUtf32) return position;
  }
  return noFault;
}

template size_t faultOfUtf16<std::endian::little>(const EncodedText&);
template size_t faultOfUtf16<std::endian::big>(const EncodedText&);
template size_t faultOfUtf32<std::endian::little>(const EncodedText&);
template size_t faultOfUtf32<std::endian::big>(const EncodedText&);

}  // namespace veldnls

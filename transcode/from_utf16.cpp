#include "transcode/skip_ahead.h"
#include "transcode/stage_shell.h"
#include "transcode/stages.h"
#include "transcode/utf16_output.h"
#include "transcode/utf8_target.h"
#include "transcode/utf_ebcdic_target.h"

namespace veldnls {

namespace {

using std::endian;

template <class Target, endian order>
StageText toEightBit(StageText text) {
  SkipAhead<Target::template fromUtf16<order>> ahead;
  while (ahead.leaves(text)) {
    if (text.remaining() < 2) return text.incomplete();
    uint32_t value = load16<order>(text.position());
    size_t length = 2;
    if (isHighSurrogate(value)) {
      length = 4;
      if (text.remaining() < length) return text.incomplete();
      // Little-endian in both forms: pairs of utf-16be come out as other characters.
      value = pairValue(value, load16<endian::little>(text.position() + 2));
    }
    const size_t size = Target::size(value);
    if (text.written + size > text.outputSize) return text.full();
    Target::write(text.output + text.written, value, size);
    text.written += size;
    text.read += length;
  }
  return text;
}

template <endian order>
constexpr PlainText plainToUtf32{ofOrder<order>(offsetof(Kernels, utf16ToUtf32)), 1, 2};

template <endian order>
StageText toUtf32(StageText text) {
  const size_t room = text.outputSize - utf32Reserve;
  SkipAhead<plainToUtf32<order>> ahead;
  while (ahead.leaves(text)) {
    if (text.remaining() < 2) return text.incomplete();
    uint32_t value = load16<order>(text.position());
    const size_t length = isHighSurrogate(value) ? 4 : 2;
    if (text.remaining() < length) return text.incomplete();
    if (text.written >= room) return text.full();
    const uint32_t next = length == 4 ? load16<order>(text.position() + 2) : 0;
    if (isLowSurrogate(next)) {
      value = pairValue(value, next);
    } else if (isSurrogate(value)) {
      text.substitute();
      value = replacementCharacter;
    }
    text.put32(value);
    text.read += length;
  }
  return text;
}

}  // namespace

const StageRow utf16ToUtf8Row{
    .minimumOutput = 1,
    .targetUnit = 1,
    .straight = {toEightBit<Utf8Target, endian::little>, Utf8Target::fromUtf16<endian::little>, utf16Blank},
    .swapped = {toEightBit<Utf8Target, endian::big>, Utf8Target::fromUtf16<endian::big>, utf16BigEndianBlank},
};

// The blank rule reads little-endian units in both forms.
const StageRow utf16ToUtfEbcdicRow{
    .minimumOutput = 1,
    .targetUnit = 1,
    .straight = {toEightBit<UtfEbcdicTarget, endian::little>, UtfEbcdicTarget::fromUtf16<endian::little>, utf16Blank},
    .swapped = {toEightBit<UtfEbcdicTarget, endian::big>, UtfEbcdicTarget::fromUtf16<endian::big>, utf16Blank},
};

const StageRow utf16ToUtf32Row{
    .minimumOutput = 4,
    .targetUnit = 4,
    .straight = {toUtf32<endian::little>, plainToUtf32<endian::little>, utf16Blank},
    .swapped = {toUtf32<endian::big>, plainToUtf32<endian::big>, utf16BigEndianBlank},
};

}  // namespace veldnls

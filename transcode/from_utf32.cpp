#include "transcode/skip_ahead.h"
#include "transcode/stage_shell.h"
#include "transcode/stages.h"
#include "transcode/utf16_output.h"
#include "transcode/utf8_target.h"
#include "transcode/utf_ebcdic_target.h"

namespace veldnls {

namespace {

using std::endian;

constexpr uint32_t signBit = 0x80000000;

template <class Target, endian order>
StageText toEightBit(StageText text) {
  SkipAhead<Target::template fromUtf32<order>> ahead;
  while (ahead.leaves(text)) {
    if (text.remaining() < 4) return text.incomplete();
    uint32_t value = load32<order>(text.position());
    if ((value & signBit) != 0) {
      if (text.written + Target::replacementRoom > text.outputSize) return text.full();
      text.substitute();
      value = replacementCharacter;
    }
    const size_t size = Target::size(value);
    if (text.written + size > text.outputSize) return text.full();
    Target::write(text.output + text.written, value, size);
    text.written += size;
    text.read += 4;
  }
  return text;
}

template <endian order>
constexpr PlainText plainToUtf16{ofOrder<order>(offsetof(Kernels, utf32ToUtf16)), 2, 1};

template <endian order>
StageText toUtf16(StageText text) {
  const size_t room = text.outputSize - utf16Reserve;
  SkipAhead<plainToUtf16<order>> ahead;
  while (ahead.leaves(text)) {
    if (text.remaining() < 4) return text.incomplete();
    if (text.written >= room) return text.full();
    const uint32_t value = load32<order>(text.position());
    text.read += 4;
    if (isSurrogate(value) || value > lastCodePoint) {
      text.substitute();
      text.put16(replacementCharacter);
    } else if (value < firstSupplementary) {
      text.put16(value);
    } else if (!putPairOrReplacement(text, value)) {
      return text;
    }
  }
  return text;
}

}  // namespace

const StageRow utf32ToUtf8Row{
    .minimumOutput = 1,
    .targetUnit = 1,
    .straight = {toEightBit<Utf8Target, endian::little>, Utf8Target::fromUtf32<endian::little>, utf32Blank},
    .swapped = {toEightBit<Utf8Target, endian::big>, Utf8Target::fromUtf32<endian::big>, utf32BigEndianBlank},
};

// The blank rule reads little-endian units in both forms.
const StageRow utf32ToUtfEbcdicRow{
    .minimumOutput = 1,
    .targetUnit = 1,
    .straight = {toEightBit<UtfEbcdicTarget, endian::little>, UtfEbcdicTarget::fromUtf32<endian::little>, utf32Blank},
    .swapped = {toEightBit<UtfEbcdicTarget, endian::big>, UtfEbcdicTarget::fromUtf32<endian::big>, utf32Blank},
};

const StageRow utf32ToUtf16Row{
    .minimumOutput = 2,
    .targetUnit = 2,
    .straight = {toUtf16<endian::little>, plainToUtf16<endian::little>, utf32Blank},
    .swapped = {toUtf16<endian::big>, plainToUtf16<endian::big>, utf32BigEndianBlank},
};

}  // namespace veldnls

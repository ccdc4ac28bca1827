#include "core/text/i8.h"
#include "transcode/skip_ahead.h"
#include "transcode/stage_shell.h"
#include "transcode/stages.h"
#include "transcode/utf16_output.h"

namespace veldnls {

namespace {

// The value of a sequence of one lead and `length` - 1 trailing bytes, whatever these are. A byte that begins no
// sequence gives 0.
uint32_t i8Value(const uint8_t* sequence, size_t length) {
  const uint8_t lead = ebcdicToI8[sequence[0]];
  uint32_t value = uint32_t{lead} & i8LeadMask[lead];
  for (size_t i = 1; i < length; ++i) value = value << 5 | (ebcdicToI8[sequence[i]] & 0x1Fu);
  return value;
}

struct ToUtf16 {
  static constexpr size_t reserve = utf16Reserve;

  static bool hasRoom(const StageText& text, uint32_t value) {
    return value > lastCodePoint || !needsPair(value) || text.outputSize - text.written >= 4;
  }

  static void write(StageText& text, uint32_t value) {
    if (value > lastCodePoint) {
      text.substitute();
      text.put16(replacementCharacter);
    } else if (needsPair(value)) {
      text.putPair(value);
    } else {
      text.put16(value);
    }
  }
};

struct ToUtf32 {
  static constexpr size_t reserve = utf32Reserve;

  static bool hasRoom(const StageText&, uint32_t) { return true; }
  static void write(StageText& text, uint32_t value) { text.put32(value); }
};

template <class Target>
StageText fromUtfEbcdic(StageText text) {
  const size_t room = text.outputSize - Target::reserve;
  while (!text.atEnd()) {
    const int trails = i8TrailCount[ebcdicToI8[*text.position()]];
    const size_t length = trails < 0 ? 1 : static_cast<size_t>(trails) + 1;
    if (text.remaining() < length) return text.incomplete();
    if (text.written >= room) return text.full();
    const uint32_t value = i8Value(text.position(), length);
    if (!Target::hasRoom(text, value)) return text.full();
    text.read += length;
    Target::write(text, value);
  }
  return text;
}

constexpr StageForm toUtf16{fromUtfEbcdic<ToUtf16>, noPlainText, utfEbcdicBlank};
constexpr StageForm toUtf32{fromUtfEbcdic<ToUtf32>, noPlainText, utfEbcdicBlank};

}  // namespace

const StageRow utfEbcdicToUtf16Row{.minimumOutput = 2, .targetUnit = 2, .straight = toUtf16, .swapped = toUtf16};
const StageRow utfEbcdicToUtf32Row{.minimumOutput = 4, .targetUnit = 4, .straight = toUtf32, .swapped = toUtf32};

}  // namespace veldnls

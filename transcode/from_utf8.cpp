#include "core/text/utf8.h"
#include "transcode/skip_ahead.h"
#include "transcode/stage_shell.h"
#include "transcode/stages.h"
#include "transcode/utf16_output.h"

namespace veldnls {

namespace {

struct ToUtf16 {
  static constexpr PlainText plain{offsetof(Kernels, utf8ToUtf16), 0, 1};
  static constexpr size_t reserve = utf16Reserve;

  static void put(StageText& text, uint32_t unit) { text.put16(unit); }

  // Returns false when the run ends with this character.
  static bool write(StageText& text, uint32_t value) {
    if (value > lastCodePoint) {
      text.substitute();
      value = replacementCharacter;
    }
    if (needsPair(value)) return putPairOrReplacement(text, value);
    text.put16(value);
    return true;
  }
};

struct ToUtf32 {
  static constexpr PlainText plain{offsetof(Kernels, utf8ToUtf32), 0, 2};
  static constexpr size_t reserve = utf32Reserve;

  static void put(StageText& text, uint32_t unit) { text.put32(unit); }

  static bool write(StageText& text, uint32_t value) {
    text.put32(value);
    return true;
  }
};

template <class Target>
StageText fromUtf8(StageText text) {
  const size_t room = text.outputSize - Target::reserve;
  SkipAhead<Target::plain> ahead;
  while (ahead.leaves(text)) {
    const uint8_t* sequence = text.position();
    // ASCII needs no test but that for room.
    if (sequence[0] < 0x80) {
      if (text.written >= room) return text.full();
      Target::put(text, sequence[0]);
      ++text.read;
      continue;
    }
    const size_t length = utf8TrailCount[sequence[0]] + size_t{1};
    if (text.remaining() < length) return text.incomplete();
    if (text.written >= room) return text.full();
    const Utf8Sequence next = readUtf8(sequence, text.remaining());
    text.read += next.length;
    if (next.value == invalidUtf8) {
      text.substitute();
      Target::put(text, replacementCharacter);
    } else if (!Target::write(text, next.value)) {
      return text;
    }
  }
  return text;
}

constexpr StageForm toUtf16{fromUtf8<ToUtf16>, ToUtf16::plain, utf8Blank};
constexpr StageForm toUtf32{fromUtf8<ToUtf32>, ToUtf32::plain, utf8Blank};

}  // namespace

const StageRow utf8ToUtf16Row{.minimumOutput = 2, .targetUnit = 2, .straight = toUtf16, .swapped = toUtf16};
const StageRow utf8ToUtf32Row{.minimumOutput = 4, .targetUnit = 4, .straight = toUtf32, .swapped = toUtf32};

}  // namespace veldnls

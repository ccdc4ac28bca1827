#include <bit>
#include <type_traits>

#include "core/kernels/pace.h"
#include "core/registry.h"
#include "modules/qznlsgb/qznlsgb.h"
#include "modules/qznlsgb/tables.h"
#include "modules/qznlsmb/iso2022_target.h"
#include "modules/qznlsmb/qznlsmb.h"
#include "modules/qznlsmb/short_target.h"
#include "modules/qznlsmb/skip_target.h"
#include "modules/qznlsmb/stages.h"
#include "modules/qznlsmb/target_run.h"
#include "modules/qznlsmb/unicode_input.h"
#include "veldnls/cei.h"
#include "veldnls/modules.h"

namespace veldnls {

namespace {

struct ToPairs {
  static bool put(TargetRun& run, CodePageModule*, uint32_t codePoint, bool& substituted) {
    const OutputCode code = codeOf(run.side, codePoint);
    if (code.substituted) substituted = true;
    return run.put(code.bytes);
  }
};

struct ToGb18030 {
  static bool put(TargetRun& run, CodePageModule* module, uint32_t codePoint, bool& substituted) {
    if (codePoint < 0x80) return run.putSingle(static_cast<uint8_t>(codePoint));
    Gb18030Module& gb = *loadedGbModule(*reinterpret_cast<MultiByteModule*>(module));
    const uint32_t code = gb.fromUnicode(&gb, codePoint);
    const size_t length = code > 0xFFFF ? 4 : code > 0xFF ? 2 : 1;
    if (run.room() < length) return false;
    // What has no code comes as a blank.
    if (code >> 8 * (length - 1) == gbNotFound) substituted = true;
    for (size_t i = length; i > 0; --i) *run.out++ = static_cast<uint8_t>(code >> 8 * (i - 1));
    return true;
  }
};

// The inner loops of targets, and whether they write ASCII as it is. `few` is for short texts, of which a byte takes
// `mostRoom` bytes at most; `field` is a kernel for still shorter ones of UTF-16.
struct NoLoop {};

template <Pace pace>
struct PairLoop {
  static constexpr bool writesAscii = true;
  static constexpr size_t mostRoom = 1;
  static constexpr TargetLoop* run = plainToPairs;
  template <class Form>
  static KernelRun few(const PipelineSide& side, const uint8_t* in, size_t count, uint8_t* out) {
    return shortToPairs<Form>(side, in, count, out);
  }
  static KernelRun field(const PipelineSide& side, const uint8_t* units, size_t count, uint8_t* out,
                         size_t room) requires(pace == Pace::kernelsForAll) {
    return kernels().unitsToCodes(fromUnicodeSetOf(side).codes, blankCode(side), units, count, out, room);
  }
};

struct ModeLoop {
  static constexpr bool writesAscii = false;
  static constexpr TargetLoop* run = plainToModes;
};

struct Gb18030Loop {
  static constexpr bool writesAscii = true;
  static constexpr size_t mostRoom = 2;
  static constexpr TargetLoop* run = plainToGb18030;
  template <class Form>
  static KernelRun few(const PipelineSide& /*side*/, const uint8_t* in, size_t count, uint8_t* out) {
    return shortToGb18030<Form>(in, count, out);
  }
};

using LittleUtf16 = Utf16Input<std::endian::little>;

// In fewer bytes kernels don't pay, by form; 0: it has no loop of its own for them.
template <class Form>
constexpr size_t leastKernelBytes = std::is_same_v<Form, LittleUtf16> ? 32
                                    : std::is_same_v<Form, Utf8Input> ? 48
                                                                      : 0;

// Lets the inner loop take what it can off the front of a text, and returns how many bytes it read and wrote. Of forms
// other than UTF-16 the units are made on the stack first, a few to begin with, for the loop may not get far.
template <class Form, class Loop>
KernelRun skipTarget(const PipelineSide& side, bool& inDouble, const uint8_t* in, size_t count, uint8_t* out,
                     size_t room) {
  if constexpr (std::is_same_v<Loop, NoLoop>) {
    return {0, 0};
  } else if constexpr (std::is_same_v<Form, LittleUtf16>) {
    const KernelRun taken = Loop::run(side, inDouble, in, count / utf16UnitBytes, out, room);
    return {utf16UnitBytes * taken.read, taken.written};
  } else {
    constexpr size_t mostUnits = 512;
    uint8_t units[utf16UnitBytes * mostUnits];
    KernelRun sum{0, 0};
    for (size_t size = 64; sum.read < count; size = mostUnits) {
      if (Loop::writesAscii) {
        const KernelRun ascii =
            Form::narrowAscii(in + sum.read, count - sum.read, out + sum.written, room - sum.written);
        sum = {sum.read + ascii.read, sum.written + ascii.written};
        if (sum.read == count) break;
      }
      const KernelRun made = Form::toUtf16(in + sum.read, count - sum.read, units, size);
      const KernelRun taken = Loop::run(side, inDouble, units, made.written, out + sum.written, room - sum.written);
      sum.read += taken.read == made.written ? made.read : Form::sizeOf(units, taken.read);
      sum.written += taken.written;
      if (taken.read < size) break;
    }
    return sum;
  }
}

// What the inner loops take off the front of a whole text.
template <class Form, class Loop>
inline KernelRun front(const PipelineSide& side, bool& inDouble, const uint8_t* in, size_t count, uint8_t* out,
                       size_t room) {
  if constexpr (leastKernelBytes<Form> != 0 && requires { Loop::mostRoom; }) {
    if (count < leastKernelBytes<Form> && room >= Loop::mostRoom * count && count % Form::unitBytes == 0) {
      if (side.overlay != nullptr) return {0, 0};
      KernelRun begun{0, 0};
      if constexpr (std::is_same_v<Form, LittleUtf16> && requires { Loop::field(side, in, count, out, room); }) {
        if (count <= kernels().fieldBytes) begun = Loop::field(side, in, count / utf16UnitBytes, out, room);
        begun.read *= utf16UnitBytes;
        if (begun.read == count) return begun;
      }
      const KernelRun rest = Loop::template few<Form>(side, in + begun.read, count - begun.read, out + begun.written);
      return {begun.read + rest.read, begun.written + rest.written};
    }
  }
  return skipTarget<Form, Loop>(side, inDouble, in, count, out, room);
}

// The stage for what the inner loop has left over, and whatever follows.
template <class Form, class Target, class Loop>
NlsStatus convertRest(TargetRun& run, CodePageModule* module, uint32_t* outputLength, TranscodeProgress* progress,
                      const TranscodeOptions* options) {
  KernelPace pace;
  pace.took(run.consumed());
  while (!run.atEnd()) {
    const UnicodeCharacter character = Form::read(run.at, run.left());
    run.incomplete = character.length == 0;
    if (run.incomplete) break;
    bool substituted = character.invalid;
    if (!Target::put(run, module, character.value, substituted)) break;
    run.at += character.length;
    if (substituted) run.substituted = true;
    if (pace.due()) {
      const KernelRun taken = skipTarget<Form, Loop>(run.side, run.inDouble, run.at, run.left(), run.out, run.room());
      run.took(taken.read, taken.written);
      pace.took(taken.read);
    }
  }
  run.leaveDoubleMode();
  return run.finish(Form::blank(*encodingRow(run.side.cei)), outputLength, progress, options);
}

template <class Form, class Target, class Loop>
inline NlsStatus runStage(CodePageModule* module, PipelineSide* side, const void* input, uint32_t inputLength,
                          void* output, uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                          const TranscodeOptions* options) {
  bool inDouble = false;
  const KernelRun taken = front<Form, Loop>(*side, inDouble, static_cast<const uint8_t*>(input), inputLength,
                                            static_cast<uint8_t*>(output), outputSize);
  // Most texts end here.
  if (taken.read == inputLength && !inDouble) {
    if (outputLength != nullptr) *outputLength = static_cast<uint32_t>(taken.written);
    if (progress == nullptr) return 0;
    progress->consumed = inputLength;
    progress->flags &= ~NLS_PROGRESS_SUBSTITUTED;
    return 0;
  }
  TargetRun run(*side, input, inputLength, output, outputSize);
  run.took(taken.read, taken.written);
  run.inDouble = inDouble;
  return convertRest<Form, Target, Loop>(run, module, outputLength, progress, options);
}

// A form with two byte orders is chosen by the run's option.
template <class Little, class Big, class Target, class Loop>
NlsStatus stage(CodePageModule* module, PipelineSide* side, const void* input, uint32_t inputLength, void* output,
                uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                const TranscodeOptions* options) {
  if constexpr (!std::is_same_v<Little, Big>) {
    if (options != nullptr && (options->words[0] & NLS_SWAPPED_INPUT) != 0) {
      return runStage<Big, Target, Loop>(module, side, input, inputLength, output, outputSize, outputLength, progress,
                                         options);
    }
  }
  return runStage<Little, Target, Loop>(module, side, input, inputLength, output, outputSize, outputLength, progress,
                                        options);
}

template <class Little, class Big, class Pairs, class Modes, class Gb18030>
NlsModuleStage stageWith(TargetRule rule) {
  constexpr NlsModuleStage stages[targetRuleCount] = {
      stage<Little, Big, ToPairs, Pairs>,
      stage<Little, Big, ToPairs, Modes>,
      inSevenBits<stage<Little, Big, ToPairs, Modes>>,
      stage<Little, Big, ToGb18030, Gb18030>,
  };
  return stages[static_cast<int>(rule)];
}

template <class Little, class Big>
NlsModuleStage stageFrom(TargetRule rule, Pace pace) {
  switch (pace) {
    case Pace::everyCharacter:
      return stageWith<Little, Big, NoLoop, NoLoop, NoLoop>(rule);
    case Pace::kernelsForAll:
      return stageWith<Little, Big, PairLoop<Pace::kernelsForAll>, ModeLoop, Gb18030Loop>(rule);
    default:
      return stageWith<Little, Big, PairLoop<Pace::kernels>, ModeLoop, Gb18030Loop>(rule);
  }
}

}  // namespace

NlsModuleStage unicodeToMultibyte(TargetRule rule, CEI source, Pace pace) {
  using std::endian;
  switch (source) {
    case U_UTF8_CE:
      return stageFrom<Utf8Input, Utf8Input>(rule, pace);
    case U_UTFE_CE:
      return stageFrom<UtfEbcdicInput, UtfEbcdicInput>(rule, pace);
    case U_B_UCS4_CE:
    case U_L_UCS4_CE:
      return stageFrom<Utf32Input<endian::little>, Utf32Input<endian::big>>(rule, pace);
    default:
      return stageFrom<Utf16Input<endian::little>, Utf16Input<endian::big>>(rule, pace);
  }
}

}  // namespace veldnls

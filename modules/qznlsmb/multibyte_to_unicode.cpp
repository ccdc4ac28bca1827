#include <algorithm>
#include <type_traits>

#include "core/kernels/pace.h"
#include "core/registry.h"
#include "modules/qznlsgb/qznlsgb.h"
#include "modules/qznlsmb/qznlsmb.h"
#include "modules/qznlsmb/short_source.h"
#include "modules/qznlsmb/skip_source.h"
#include "modules/qznlsmb/source_run.h"
#include "modules/qznlsmb/source_tables.h"
#include "modules/qznlsmb/stages.h"
#include "modules/qznlsmb/unicode_output.h"
#include "veldnls/cei.h"

namespace veldnls {

namespace {

// What the double-byte characters of a text mean.
struct OfPairs {
  static Meaning meaning(CodePageModule*, const PipelineSide& side, const uint8_t* at, uint32_t /*length*/) {
    return meaningOfDouble(side, at[0] * 256u + at[1]);
  }
};

struct OfGb18030 {
  static Meaning meaning(CodePageModule* module, const PipelineSide& side, const uint8_t* at, uint32_t length) {
    return meaningOfGb18030(side, *loadedGbModule(*reinterpret_cast<MultiByteModule*>(module)), at, length);
  }
};

// The inner loops of rows. Those of text without modes read ASCII below 0x80. `few` is for short texts; `field` is a
// kernel for still shorter ones.
struct NoLoop {
  static constexpr bool hasModes = true;
};

template <class Form>
KernelRun takeField(const CodeRows& rows, const LeadBytes& leads, uint32_t blank, const uint8_t* in, size_t count,
                    uint8_t* out, size_t room) {
  if constexpr (std::is_same_v<Form, Utf8Output>) {
    return kernels().codesToUtf8(rows, blank, in, count, out, room);
  } else {
    const KernelRun run = kernels().codesToUnits(rows, leads, blank, in, count, out, room / utf16UnitBytes);
    return {run.read, utf16UnitBytes * run.written};
  }
}

template <Pace pace>
struct LeadByteLoop {
  static constexpr bool hasModes = false;
  static constexpr SourceLoop* run = pace == Pace::loops ? plainLeadBytesByLoop : plainLeadBytes;
  template <class Form>
  static KernelRun few(const PipelineSide& side, NlsBool8& /*inDouble*/, const uint8_t* in, size_t count,
                       uint8_t* out) {
    return shortLeadBytes<Form>(side, leadsOf(*side.sourceProfile), in, count, out);
  }
  template <class Form>
  static KernelRun field(const PipelineSide& side, const uint8_t* in, size_t count, uint8_t* out,
                         size_t room) requires(pace == Pace::kernelsForAll) {
    return takeField<Form>(toUnicodeSetOf(side).codes, leadsOf(*side.sourceProfile), blankOfSource(side), in, count,
                           out, room);
  }
};

template <Pace pace>
struct HighBitLoop {
  static constexpr bool hasModes = false;
  static constexpr SourceLoop* run = plainHighBits;
  template <class Form>
  static KernelRun few(const PipelineSide& side, NlsBool8& /*inDouble*/, const uint8_t* in, size_t count,
                       uint8_t* out) {
    return shortLeadBytes<Form>(side, highBitLeads, in, count, out);
  }
  template <class Form>
  static KernelRun field(const PipelineSide& side, const uint8_t* in, size_t count, uint8_t* out,
                         size_t room) requires(pace == Pace::kernelsForAll) {
    return takeField<Form>(toUnicodeSetOf(side).codes, highBitLeads, blankOfSource(side), in, count, out, room);
  }
};

struct ShiftedLoop {
  static constexpr bool hasModes = true;
  static constexpr SourceLoop* run = plainShifted;
  template <class Form>
  static KernelRun few(const PipelineSide& side, NlsBool8& inDouble, const uint8_t* in, size_t count, uint8_t* out) {
    return shortShifted<Form>(side, inDouble, in, count, out);
  }
};

struct Iso2022Loop {
  static constexpr bool hasModes = true;
  static constexpr SourceLoop* run = plainIso2022;
};

template <Pace pace>
struct Gb18030Loop {
  static constexpr bool hasModes = false;
  static constexpr SourceLoop* run = plainGb18030;
  template <class Form>
  static KernelRun few(const PipelineSide& /*side*/, NlsBool8& /*inDouble*/, const uint8_t* in, size_t count,
                       uint8_t* out) {
    return shortGb18030<Form>(in, count, out);
  }
  template <class Form>
  static KernelRun field(const PipelineSide& /*side*/, const uint8_t* in, size_t count, uint8_t* out,
                         size_t room) requires(pace == Pace::kernelsForAll) {
    return takeField<Form>(gbToUnicodeIndex.doubles, gb18030Leads, gb18030Blank, in, count, out, room);
  }
};

// The forms that short texts have loops of their own for.
template <class Form>
constexpr bool hasShortLoop = std::is_same_v<Form, Utf16Output> || std::is_same_v<Form, Utf8Output>;

// Lets the inner loop take what it can off the front of a text, and returns how many bytes it read and wrote. Forms
// other than UTF-16 have the units on the stack first, a few to begin with, for the loop may not get far.
template <class Form, class Loop>
KernelRun skipSource(const PipelineSide& side, NlsBool8& inDouble, const uint8_t* in, size_t count, uint8_t* out,
                     size_t room) {
  if constexpr (std::is_same_v<Loop, NoLoop>) {
    return {0, 0};
  } else if constexpr (std::is_same_v<Form, Utf16Output>) {
    const KernelRun taken = Loop::run(side, inDouble, in, count, out, room / utf16UnitBytes);
    return {taken.read, utf16UnitBytes * taken.written};
  } else {
    constexpr size_t mostUnits = 512;
    uint8_t units[utf16UnitBytes * mostUnits];
    KernelRun sum{0, 0};
    const auto add = [&sum](const KernelRun& taken) { sum = {sum.read + taken.read, sum.written + taken.written}; };
    for (size_t size = 64;; size = mostUnits) {
      if constexpr (!Loop::hasModes) {
        add(Form::writeAscii(in + sum.read, count - sum.read, out + sum.written, room - sum.written));
      }
      const size_t fitting = std::min(size, (room - sum.written) / Form::most);
      const KernelRun taken = Loop::run(side, inDouble, in + sum.read, count - sum.read, units, fitting);
      const size_t written = Form::writeUnits(units, taken.written, out + sum.written, room - sum.written);
      add({taken.read, written});
      if (taken.written < size) return sum;
    }
  }
}

// What the inner loops take off the front of a whole text.
template <class Form, class Loop>
inline KernelRun front(const PipelineSide& side, NlsBool8& inDouble, const uint8_t* in, size_t count, uint8_t* out,
                       size_t room) {
  if constexpr (hasShortLoop<Form> && requires { Loop::template few<Form>(side, inDouble, in, count, out); }) {
    if (count < shortText && room >= Form::most * count) {
      if (side.overlay != nullptr) return {0, 0};
      KernelRun begun{0, 0};
      if constexpr (requires { Loop::template field<Form>(side, in, count, out, room); }) {
        if (count <= kernels().fieldBytes) begun = Loop::template field<Form>(side, in, count, out, room);
        if (begun.read == count) return begun;
      }
      const KernelRun rest =
          Loop::template few<Form>(side, inDouble, in + begun.read, count - begun.read, out + begun.written);
      return {begun.read + rest.read, begun.written + rest.written};
    }
  }
  return skipSource<Form, Loop>(side, inDouble, in, count, out, room);
}

// The stage for what the inner loop has left over, and whatever follows.
template <class Form, class Double, class Loop>
NlsStatus convertRest(SourceRun& run, CodePageModule* module, uint32_t* outputLength, TranscodeProgress* progress,
                      const TranscodeOptions* options) {
  KernelPace pace;
  pace.took(run.consumed());
  while (!run.atEnd()) {
    const uint32_t length = run.next();
    if (length == 0) break;
    Meaning character = run.inDouble != 0 ? Double::meaning(module, run.side, run.at, length)
                                          : Meaning{unitOfSingle(run.side, *run.at), false};
    if (!Form::takesSurrogates && isSurrogate(character.value)) character = {replacementCharacter, true};
    const size_t size = Form::size(character.value);
    if (size > run.room()) break;
    Form::write(run.out, character.value, size);
    run.out += size;
    run.at += length;
    if (character.substituted) run.substituted = true;
    if (pace.due()) {
      const KernelRun taken = skipSource<Form, Loop>(run.side, run.inDouble, run.at, run.left(), run.out, run.room());
      run.took(taken.read, taken.written);
      pace.took(taken.read);
    }
  }
  if (run.side.swapOutput != 0) Form::swap(run.outBegin, run.written());
  const auto blank = static_cast<uint8_t>(encodingRow(run.side.cei)->padChar);
  return run.finish(blank, outputLength, progress, options);
}

template <class Form, class Double, class Loop>
NlsStatus stage(CodePageModule* module, PipelineSide* side, const void* input, uint32_t inputLength, void* output,
                uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                const TranscodeOptions* options) {
  NlsBool8 inDouble = SourceRun::modeOf(progress);
  auto* out = static_cast<uint8_t*>(output);
  const KernelRun taken =
      front<Form, Loop>(*side, inDouble, static_cast<const uint8_t*>(input), inputLength, out, outputSize);
  // Most texts end here.
  if (taken.read == inputLength) {
    if (outputLength != nullptr) *outputLength = static_cast<uint32_t>(taken.written);
    if (side->swapOutput != 0) Form::swap(out, taken.written);
    if (progress == nullptr) return 0;
    progress->consumed = inputLength;
    progress->flags &= ~NLS_PROGRESS_SUBSTITUTED;
    if constexpr (Loop::hasModes) SourceRun::keepMode(*side, inDouble, *progress);
    return 0;
  }
  SourceRun run(*side, input, inputLength, output, outputSize, progress);
  run.took(taken.read, taken.written);
  run.inDouble = inDouble;
  return convertRest<Form, Double, Loop>(run, module, outputLength, progress, options);
}

template <class Form, Pace pace>
NlsModuleStage stageAt(CharacterRule rule) {
  constexpr NlsModuleStage stages[characterRuleCount] = {
      stage<Form, OfPairs, LeadByteLoop<pace>>,  stage<Form, OfPairs, HighBitLoop<pace>>,
      stage<Form, OfPairs, ShiftedLoop>,         stage<Form, OfPairs, Iso2022Loop>,
      stage<Form, OfGb18030, Gb18030Loop<pace>>,
  };
  return stages[static_cast<int>(rule)];
}

template <class Form>
NlsModuleStage stageTo(CharacterRule rule, Pace pace) {
  switch (pace) {
    case Pace::everyCharacter:
      return rule == CharacterRule::gb18030 ? stage<Form, OfGb18030, NoLoop> : stage<Form, OfPairs, NoLoop>;
    case Pace::loops:
      return stageAt<Form, Pace::loops>(rule);
    case Pace::kernels:
      return stageAt<Form, Pace::kernels>(rule);
    default:
      return stageAt<Form, Pace::kernelsForAll>(rule);
  }
}

}  // namespace

NlsModuleStage multibyteToUnicode(CharacterRule rule, CEI target, Pace pace) {
  switch (target) {
    case U_UTF8_CE:
      return stageTo<Utf8Output>(rule, pace);
    case U_UTFE_CE:
      return stageTo<UtfEbcdicOutput>(rule, pace);
    case U_B_UCS4_CE:
    case U_L_UCS4_CE:
      return stageTo<Utf32Output>(rule, pace);
    default:
      return stageTo<Utf16Output>(rule, pace);
  }
}

}  // namespace veldnls

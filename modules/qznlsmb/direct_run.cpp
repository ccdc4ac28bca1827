#include "modules/qznlsmb/direct_run.h"

#include "core/kernels/kernels.h"
#include "modules/qznlsgb/tables.h"
#include "modules/qznlsmb/short_source.h"
#include "modules/qznlsmb/target_tables.h"

namespace veldnls {

namespace {

// Longer texts are better off with both stages and their kernels.
constexpr uint32_t directBytes = 32;

// The forms of sources and of targets: by the pairs of a set, or by the index of GB18030.
enum DirectForm : uint8_t { noForm, pairsForm, gb18030Form };

}  // namespace

uint8_t directFormOf(CharacterRule rule) {
  if (rule == CharacterRule::gb18030) return gb18030Form;
  return rule == CharacterRule::leadByte || rule == CharacterRule::highBit ? pairsForm : noForm;
}

uint8_t directFormOf(TargetRule rule) {
  if (rule == TargetRule::gb18030) return gb18030Form;
  return rule == TargetRule::pairs ? pairsForm : noForm;
}

uint32_t directRun(const PipelineSide* source, const PipelineSide* target, const void* input, uint32_t inputLength,
                   void* output, uint32_t outputSize) {
  if (inputLength > directBytes || target->directForm == noForm) return 0;
  if (source->overlay != nullptr || target->overlay != nullptr) return 0;
  const auto* in = static_cast<const uint8_t*>(input);
  auto* out = static_cast<uint8_t*>(output);
  const bool fromGb18030 = source->directForm == gb18030Form;
  const CodeRows& rows = fromGb18030 ? gbToUnicodeIndex.doubles : toUnicodeSetOf(*source).codes;
  const uint32_t blank = fromGb18030 ? gb18030Blank : blankOfSource(*source);
  KernelRun run;
  if (target->directForm == gb18030Form) {
    const UnitCells cells{gbFromUnicodeIndex.blocks, gbFromUnicodeIndex.cells};
    run = kernels().codesToCells(rows, blank, cells, in, inputLength, out, outputSize);
  } else {
    run = kernels().codesToCodes(rows, blank, fromUnicodeSetOf(*target).codes, blankCode(*target), in, inputLength, out,
                                 outputSize);
  }
  return run.read == inputLength ? static_cast<uint32_t>(run.written) : 0;
}

}  // namespace veldnls

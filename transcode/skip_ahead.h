// What kernels take off the loops of the stages.
#pragma once

#include "core/kernels/kernels.h"
#include "core/kernels/pace.h"
#include "transcode/stage_shell.h"

namespace veldnls {

// The step of a stage whose characters a kernel knows, from units of `sourceUnit` bytes to those of `targetUnit`.
template <size_t sourceUnit, size_t targetUnit, TextKernel* (*kernel)()>
inline size_t skipByKernel(StageText& text) {
  const KernelRun run = kernel()(text.position(), text.remaining() / sourceUnit, text.output + text.written,
                                 (text.outputSize - text.written) / targetUnit);
  text.read += run.read * sourceUnit;
  text.written += run.written * targetUnit;
  return run.read;
}

// The step of a stage without a kernel.
inline size_t skipNothing(StageText&) { return 0; }

// Lets a loop skip ahead from time to time. The shell has just done so when a loop begins.
template <StageSkip skip>
class SkipAhead {
 public:
  SkipAhead() { pace_.took(0); }

  // Returns whether something is left for the loop.
  bool leaves(StageText& text) {
    if (!text.atEnd() && pace_.due()) pace_.took(skip(text));
    return !text.atEnd();
  }

 private:
  KernelPace pace_;
};

}  // namespace veldnls

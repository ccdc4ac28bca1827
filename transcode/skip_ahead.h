// What kernels take off the loops of the stages.
#pragma once

#include "core/kernels/kernels.h"
#include "core/kernels/pace.h"
#include "transcode/stage_shell.h"

namespace veldnls {

inline constexpr PlainText noPlainText{0, 0, 0};

// The slot of one byte order, where a kernel has two.
template <std::endian order>
constexpr size_t ofOrder(size_t slot) {
  return slot +
         (order == std::endian::little ? offsetof(ByOrder<TextKernel>, little) : offsetof(ByOrder<TextKernel>, big));
}

// Lets a loop skip ahead from time to time. The shell has just done so when a loop begins.
template <PlainText plain>
class SkipAhead {
 public:
  SkipAhead() { pace_.took(0); }

  // Returns whether something is left for the loop.
  bool leaves(StageText& text) {
    if (!text.atEnd() && plain.kernel != 0 && pace_.due()) pace_.took(text.skip(plain) >> plain.sourceShift);
    return !text.atEnd();
  }

 private:
  KernelPace pace_;
};

}  // namespace veldnls

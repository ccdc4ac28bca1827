// How often a loop asks its kernel.
#pragma once

#include <cstddef>

namespace veldnls {

// A call that gets nowhere costs about as much as these many items of the loop, so that many of them pass before the
// next. A text full of what kernels leave alone then takes at most twice the loop's time, and a text with a fault here
// and there next to none more.
class KernelPace {
 public:
  // Whether the kernel's turn has come. Asked once for each item.
  bool due() {
    if (wait_ == 0) return true;
    --wait_;
    return false;
  }
  // What the kernel got through.
  void took(size_t items) { wait_ = items < dearItems ? dearItems : 0; }

 private:
  static constexpr unsigned dearItems = 16;

  unsigned wait_ = 0;
};

}  // namespace veldnls

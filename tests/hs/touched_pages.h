// How many pages of a context's pools and indexes code touches: what a call costs, without a clock.
#pragma once

#include <cstddef>

#include "veldnls/host.h"

namespace test {

// While one lives, each first touch of a page of the context's ranges is counted. One at a time; memory that the ranges
// come to use meanwhile isn't counted.
class TouchedPages {
 public:
  explicit TouchedPages(XmContext* context);
  ~TouchedPages();
  TouchedPages(const TouchedPages&) = delete;
  TouchedPages& operator=(const TouchedPages&) = delete;

  static size_t count();
};

}  // namespace test

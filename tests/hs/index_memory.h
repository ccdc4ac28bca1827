// Index memory that fails. The program is linked so that the allocator's calls of takeIndexMemory come here.
#pragma once

#include <cstdint>

namespace test {

// While one lives, so many of a hundred questions for index memory are refused, by chance.
class RefuseIndexMemory {
 public:
  explicit RefuseIndexMemory(uint32_t percent);
  ~RefuseIndexMemory();
  RefuseIndexMemory(const RefuseIndexMemory&) = delete;
  RefuseIndexMemory& operator=(const RefuseIndexMemory&) = delete;

  // Questions that were answered with memory, and those that were refused.
  static int given();
  static int refused();
};

}  // namespace test

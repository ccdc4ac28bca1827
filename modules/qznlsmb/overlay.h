// User characters: what a pipeline's overlay has for a code.
#pragma once

#include <cstdint>

#include "veldnls/pipeline.h"

namespace veldnls {

// The pair of `key`, or null. A null overlay has none. The pairs may be unsorted, when a table of user characters
// ended up so: what is found then is a pair of this key or none.
inline const NlsCodePair* findUserCharacter(const CodeOverlay* overlay, uint32_t key) {
  if (overlay == nullptr) return nullptr;
  uint32_t low = 0;
  uint32_t high = overlay->count;
  while (low < high) {
    const uint32_t middle = low + (high - low) / 2;
    const NlsCodePair& pair = overlay->pairs[middle];
    if (pair.key == key) return &pair;
    if (pair.key < key) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return nullptr;
}

}  // namespace veldnls

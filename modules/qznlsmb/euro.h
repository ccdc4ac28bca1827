// The euro sign of single-byte routes, which go through a byte map and keep little else above 7F.
#pragma once

#include <cstdint>

#include "veldnls/types.h"

namespace veldnls {

// The euro sign in both encodings of a route. `code` is 0 if either has none.
struct EuroPair {
  uint8_t byte = 0;   // in the single-byte encoding
  uint16_t code = 0;  // in the multi-byte one: first byte times 256 plus second; below 0x100 a single byte

  bool exists() const { return code != 0; }
};

EuroPair findEuro(CEI singleByte, CEI multiByte);

}  // namespace veldnls

// Finds the character that a block's run replaced.
#pragma once

#include "chain.h"

namespace veld {

// The bytes of a character, counted from the block's start.
struct Extent {
  int64_t start;  // negative when the first bytes are held from before the block
  int64_t end;
};

// The first replaced character. `before` is the state ahead of the block, whose run from there reported a substitution.
// The library says only that something in a block was replaced, so the block is run again in halves.
Extent locateSubstitution(Chain& chain, const ChainState& before, Bytes block);

}  // namespace veld

// Finds the character that a block's run replaced.
#pragma once

#include "chain.h"

namespace veld {

// Where the first replaced character begins, counted from the block's start; negative when its first bytes are those
// that `before` holds. `before` is the state ahead of the block, whose run from there reported a substitution.
// The library says only that something in a block was replaced, so the block is run again in halves.
int64_t locateSubstitution(Chain& chain, const ChainState& before, Bytes block);

}  // namespace veld

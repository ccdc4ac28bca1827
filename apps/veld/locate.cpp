#include "locate.h"

namespace veld {

namespace {

// Bytes at the end of the prefix, or held from before it, that wait for more.
size_t waitingBytes(Chain& chain, ChainState state, Bytes prefix) {
  const ChainStep step = chain.run(prefix, state);
  return prefix.size() - step.taken + chain.heldBytes(state);
}

bool substitutes(Chain& chain, ChainState state, Bytes prefix) { return chain.run(prefix, state).substituted; }

}  // namespace

Extent locateSubstitution(Chain& chain, const ChainState& before, Bytes block) {
  size_t whole = 0;             // a prefix of this length comes over
  size_t lossy = block.size();  // one of this length doesn't
  while (lossy - whole > 1) {
    const size_t middle = whole + (lossy - whole) / 2;
    (substitutes(chain, before, block.first(middle)) ? lossy : whole) = middle;
  }
  // The last byte of the shortest lossy prefix completes the character; those ahead of it were waiting.
  const size_t waiting = waitingBytes(chain, before, block.first(whole));
  return {static_cast<int64_t>(whole) - static_cast<int64_t>(waiting), static_cast<int64_t>(lossy)};
}

}  // namespace veld

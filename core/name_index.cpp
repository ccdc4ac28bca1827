#include "core/name_index.h"

#include <iterator>

namespace veldnls {

namespace {

#include "encodings/trie.inc"

constexpr int32_t rootState = 1;

// The node reached from `state` by `unit`, or -1. Unit and base are small enough for the sum.
int32_t step(const NameTrie& trie, int32_t state, char16_t unit) {
  const int32_t next = trie.nodes[state].base + unit;
  return next <= trie.lastIndex && trie.nodes[next].check == state ? next : -1;
}

}  // namespace

constexpr NameTrie encodingNameTrie = {static_cast<int32_t>(std::size(nodes)) - 1, tails, nodes};

int32_t nlsTrieLookup(const char16_t* key, int32_t keyLength, const NameTrie* trie) {
  int32_t state = rootState;
  int32_t last = 0;
  int32_t at = 0;
  for (; at < keyLength && trie->nodes[state].base >= 0; ++at) {
    // The terminator is no unit of a key: taken as one, it would lead to the node where a shorter key ends.
    const int32_t next = key[at] == trieTerminator ? -1 : step(*trie, state, key[at]);
    if (next < 0) return 0;
    last = trie->nodes[next].value;
    state = next;
  }
  if (trie->nodes[state].base >= 0) {
    const int32_t end = step(*trie, state, trieTerminator);
    return end < 0 ? 0 : trie->nodes[end].value;
  }
  const char16_t* tail = trie->tails - trie->nodes[state].base;
  for (; at < keyLength; ++at, ++tail) {
    if (*tail == trieTerminator || *tail != key[at]) return 0;
  }
  return *tail == trieTerminator ? last : 0;
}

}  // namespace veldnls

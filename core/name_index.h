// The index of all encoding names: a double-array trie over upper-case UTF-16 keys.
#pragma once

#include <cstdint>

namespace veldnls {

struct TrieNode {
  int32_t check;  // the state that this node was reached from
  int32_t base;   // offset of its children; negative: a leaf, whose rest of the key stands in the tails at -base
  int32_t value;  // value of the key that ends here
  int32_t spare;  // not read
};

struct NameTrie {
  int32_t lastIndex;
  const char16_t* tails;
  const TrieNode* nodes;  // lastIndex + 1 of them; the root is 1
};

// The unit that ends a key; no key holds it.
inline constexpr char16_t trieTerminator = 4;

extern const NameTrie encodingNameTrie;

// The value of `key` (already upper case), or 0. Reads nothing outside of the key and the trie.
int32_t nlsTrieLookup(const char16_t* key, int32_t keyLength, const NameTrie* trie);

}  // namespace veldnls

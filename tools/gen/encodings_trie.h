// A double-array trie: a node is reached from the state `check` by the unit that is the node's index less the state's
// `base`. A subtree with one key is a leaf, whose rest of the key stands in the pool of tails.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "text.h"

namespace gen {

inline constexpr uint32_t trieTerminator = 4;
inline constexpr size_t trieRoot = 1;

struct TrieNode {
  int32_t check = 0;  // 0 is no state: the node is free
  int32_t base = 0;   // negative: leaf with its tail at -base
  int32_t value = 0;
};

struct Trie {
  std::vector<TrieNode> nodes;
  std::vector<uint32_t> tails;  // each ends with the terminator; index 0 is not used
};

Trie buildTrie(const std::map<std::string, int>& keys);

// Fails unless every key leads to its value.
void checkTrie(const Trie& trie, const std::map<std::string, int>& keys, const Place& place);

}  // namespace gen

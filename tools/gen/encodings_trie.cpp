#include "encodings_trie.h"

#include <algorithm>

namespace gen {

namespace {

struct Key {
  std::vector<uint32_t> units;  // with the terminator
  int value = 0;
};

// Keys first to last (exclusive), all with the same first `depth` units.
struct Span {
  size_t first;
  size_t last;
};

class Builder {
 public:
  explicit Builder(const std::map<std::string, int>& keys) {
    for (const auto& [text, value] : keys) {
      Key key{{}, value};
      for (const char c : text) key.units.push_back(static_cast<unsigned char>(c));
      key.units.push_back(trieTerminator);
      keys_.push_back(std::move(key));
    }
    std::sort(keys_.begin(), keys_.end(), [](const Key& a, const Key& b) { return a.units < b.units; });
    trie_.tails.push_back(0);
    trie_.nodes.resize(trieRoot + 1);
    used_.assign(trieRoot + 1, true);
  }

  Trie build() {
    addChildren(trieRoot, {0, keys_.size()}, 0);
    return std::move(trie_);
  }

 private:
  void addChildren(size_t state, Span span, size_t depth) {
    std::vector<uint32_t> units;
    std::vector<Span> spans;
    for (size_t i = span.first; i < span.last; ++i) {
      const uint32_t unit = keys_[i].units[depth];
      if (units.empty() || units.back() != unit) {
        units.push_back(unit);
        spans.push_back({i, i});
      }
      spans.back().last = i + 1;
    }
    const size_t base = freeBase(units);
    trie_.nodes[state].base = static_cast<int32_t>(base);
    for (const uint32_t unit : units) {
      reserve(base + unit);
      trie_.nodes[base + unit].check = static_cast<int32_t>(state);
    }
    for (size_t i = 0; i < units.size(); ++i) addChild(base + units[i], units[i], spans[i], depth + 1);
  }

  void addChild(size_t node, uint32_t unit, Span span, size_t depth) {
    const Key& key = keys_[span.first];
    if (unit == trieTerminator) {
      trie_.nodes[node].value = key.value;
    } else if (span.last - span.first == 1) {
      trie_.nodes[node].value = key.value;
      const std::vector<uint32_t> tail(key.units.begin() + static_cast<std::ptrdiff_t>(depth), key.units.end());
      trie_.nodes[node].base = -static_cast<int32_t>(placeTail(tail));
    } else {
      addChildren(node, span, depth);
    }
  }

  // The lowest base above 0 at which no child meets a node in use.
  size_t freeBase(const std::vector<uint32_t>& units) const {
    for (size_t base = 1;; ++base) {
      if (std::none_of(units.begin(), units.end(),
                       [&](uint32_t unit) { return base + unit < used_.size() && used_[base + unit]; })) {
        return base;
      }
    }
  }

  void reserve(size_t node) {
    if (node >= used_.size()) {
      used_.resize(node + 1, false);
      trie_.nodes.resize(node + 1);
    }
    used_[node] = true;
  }

  // Tails that end alike share their units.
  size_t placeTail(const std::vector<uint32_t>& tail) {
    auto& pool = trie_.tails;
    const auto found = std::search(pool.begin() + 1, pool.end(), tail.begin(), tail.end());
    const auto index = static_cast<size_t>(found - pool.begin());
    if (found == pool.end()) pool.insert(pool.end(), tail.begin(), tail.end());
    return index;
  }

  std::vector<Key> keys_;
  std::vector<bool> used_;
  Trie trie_;
};

int find(const Trie& trie, const std::string& key) {
  size_t state = trieRoot;
  size_t at = 0;
  while (trie.nodes[state].base >= 0) {
    const uint32_t unit = at < key.size() ? static_cast<unsigned char>(key[at]) : trieTerminator;
    const size_t next = static_cast<size_t>(trie.nodes[state].base) + unit;
    if (next >= trie.nodes.size() || trie.nodes[next].check != static_cast<int32_t>(state)) return 0;
    if (at == key.size()) return trie.nodes[next].value;
    state = next;
    ++at;
  }
  auto tail = static_cast<size_t>(-trie.nodes[state].base);
  for (; at < key.size(); ++at, ++tail) {
    if (trie.tails[tail] != static_cast<unsigned char>(key[at])) return 0;
  }
  return trie.tails[tail] == trieTerminator ? trie.nodes[state].value : 0;
}

}  // namespace

Trie buildTrie(const std::map<std::string, int>& keys) { return Builder(keys).build(); }

void checkTrie(const Trie& trie, const std::map<std::string, int>& keys, const Place& place) {
  for (const auto& [key, value] : keys) {
    require(find(trie, key) == value, place,
            "the trie loses the key \"" + key + "\"; mend tools/gen/encodings_trie.cpp");
  }
}

}  // namespace gen

#include "bench/pieces.h"

namespace bench {

void Pieces::add(Bytes piece) {
  bytes_.insert(bytes_.end(), piece.begin(), piece.end());
  lengths_.push_back(piece.size());
}

std::u32string takeCharacters(const std::function<char32_t()>& next, const Sizes& sizes, size_t bytes) {
  std::u32string taken;
  size_t used = 0;
  bool isDouble = false;
  for (char32_t character = next();; character = next()) {
    const size_t alone = sizes.alone(character);
    const bool wasDouble = isDouble;
    isDouble = alone > sizes.shifts;
    // A run of double-byte characters has its shift sequences once.
    used += wasDouble && isDouble ? alone - sizes.shifts : alone;
    if (used > bytes) return taken;
    taken.push_back(character);
  }
}

Bytes asBytes(const std::u32string& text) {
  return {reinterpret_cast<const uint8_t*>(text.data()), text.size() * sizeof(char32_t)};
}

}  // namespace bench

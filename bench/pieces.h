// Encoded text in pieces, and the cutting of characters into pieces.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace bench {

using Bytes = std::span<const uint8_t>;
using Room = std::span<uint8_t>;

// Pieces that follow each other in one block of memory.
class Pieces {
 public:
  void add(Bytes piece);
  size_t count() const { return lengths_.size(); }
  size_t totalBytes() const { return bytes_.size(); }

  template <class Visit>
  void forEach(Visit visit) const {
    const uint8_t* piece = bytes_.data();
    for (const size_t length : lengths_) {
      visit(Bytes(piece, length));
      piece += length;
    }
  }

 private:
  std::vector<uint8_t> bytes_;
  std::vector<size_t> lengths_;
};

// Bytes of characters in an encoding.
struct Sizes {
  // Of a character that stands alone, shift sequences included.
  std::function<size_t(char32_t)> alone;
  // In a shifted encoding, what the two shift sequences take of that for a double-byte character; otherwise 0.
  size_t shifts = 0;
};

// Takes characters from `next` until the following one would make them longer than `bytes` bytes, as a text that begins
// and ends in single mode; that one is lost.
std::u32string takeCharacters(const std::function<char32_t()>& next, const Sizes& sizes, size_t bytes);

// The characters as UTF-32, in the byte order of this machine.
Bytes asBytes(const std::u32string& text);

}  // namespace bench

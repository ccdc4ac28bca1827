// Encoded text in pieces, and the cutting of characters into pieces.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "bench/encodings.h"

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

// Takes characters from `next` until the following one would exceed `bytes` bytes in `encoding`; that one is lost.
std::u32string takeCharacters(const std::function<char32_t()>& next, const Encoding& encoding, size_t bytes);

// The characters as UTF-32, in the byte order of this machine.
Bytes asBytes(const std::u32string& text);

}  // namespace bench

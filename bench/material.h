// What conversions are timed on: texts freed of what an encoding lacks, and pieces of them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "bench/library.h"
#include "bench/pieces.h"
#include "bench/texts.h"

namespace bench {

// Room for any piece in any encoding: 64 KB of single bytes become 256 KB of UTF-32.
inline constexpr size_t roomBytes = 4 * 65536 + 64;

// The library first, then its peers.
std::vector<Converter> allConverters(const Library& library, const Encoding& from, const Encoding& to);

class Material {
 public:
  Material(const Library& library, const std::string& textFolder)
      : library_(library), textFolder_(textFolder), room_(roomBytes) {}

  Text read(const std::string& name) const { return readText(textFolder_, name); }

  // The text without what the encoding lacks, or what library and peers don't map alike, there and back.
  Text restrictedTo(const Encoding& encoding, const Text& text) const;

  // Pieces in the encoding, which has all of the text's characters.
  Pieces cut(const Text& text, const Encoding& encoding, const Form& form);

 private:
  Sizes sizesIn(const Encoding& encoding) const;

  const Library& library_;
  std::string textFolder_;
  std::vector<uint8_t> room_;
};

}  // namespace bench

// Single-byte sets, half-width katakana and the euro signs of single-byte routes, as they stand in
// data/modules/qznlsmb/.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "text.h"

namespace gen::sets {

constexpr size_t byteCount = 256;
constexpr size_t katakanaCount = 63;
constexpr uint16_t firstKatakana = 0xFF61;
constexpr uint16_t unaskedUnit = 0x9F;  // from here on no unit is converted through a single-byte set
constexpr uint16_t blankUnit = 0x0020;

using Units = std::array<uint16_t, byteCount>;         // by byte
using Bytes = std::array<uint8_t, byteCount>;          // by unit, or by byte in maps of bytes
using Katakana = std::array<uint16_t, katakanaCount>;  // codes, below 0x100 single bytes

// One line of singles.tsv with what it names.
struct Single {
  Place place;
  Units to;
  Bytes from;  // 0 for a unit without a byte
  Katakana katakana;
};

// Reads singles.tsv of a folder, and the pages and columns that it names. `pages` is the folder of single-byte pages.
std::vector<Single> readSingles(const std::string& folder, const std::string& pages);

// 8E A1 to 8E DF.
Katakana eucKatakana();

// Maps of bytes. But for the identity they leave the 128 characters of ASCII and make the rest the blank.
Bytes identityMap();
Bytes asciiPassthrough();
Bytes asciiToHost(const Single& host);
Bytes hostToAscii(const Single& host);

// A line of a list of euro signs.
struct Euro {
  Place place;
  size_t cei;
  std::string name;
  uint16_t code;
};
std::vector<Euro> readEuros(const std::string& path, uint16_t maximum);

}  // namespace gen::sets

// The tables of the multi-byte encodings as their text in data/modules tells them, by a reader of their own: nothing
// here is shared with the generator that makes the library's tables from the same text.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "veldnls/types.h"

namespace transcode_test {

// A code of one or two bytes as one number, the first byte high.
using Code = uint32_t;

inline constexpr size_t katakanaCount = 63;
inline constexpr uint32_t firstHalfKatakana = 0xFF61;

struct DoubleByteText {
  std::vector<uint16_t> units;                 // by code, 65,536 of them; 0: none
  std::vector<std::optional<uint16_t>> codes;  // by unit, as many; below 0x100: a single byte
};

struct SingleByteText {
  std::array<uint16_t, 256> units;
  std::array<uint8_t, 256> bytes;  // by code point; only those below 0x9F are asked for
  std::array<uint16_t, katakanaCount> katakana;
};

using ByteMapText = std::array<uint8_t, 256>;

// By the numbers of sets in data/encodings/profiles.tsv. Set 0 is that of rows without a profile: no pairs.
const DoubleByteText& doubleByteText(int set);
const SingleByteText& singleByteText(int set);

const std::array<uint16_t, katakanaCount>& eucKatakana();

enum class ByteMapKind { identity, asciiPassthrough, ebcdicToAscii, asciiToEbcdic };
const ByteMapText& byteMapText(ByteMapKind kind);

// The euro's byte or code in an encoding, for routes between single-byte and multi-byte text.
std::optional<uint8_t> euroByte(CEI singleByte);
std::optional<Code> euroCode(CEI multiByte);

// GB18030: codes of one, two or four bytes as one number.
std::optional<uint32_t> gbCode(uint16_t unit);
std::optional<uint16_t> gbUnit(uint32_t code);

}  // namespace transcode_test

// The rows of the encoding table as their text in data/encodings tells them: what the references of multi-byte
// conversion and of validation ask of a row. Shares nothing with the library or with the generator of its table.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "veldnls/types.h"

namespace transcode_test {

struct ByteRange {
  uint8_t low;
  uint8_t high;
};

struct EncodingText {
  CEI cei = 0;
  std::string name;
  int encodingClass = 0;
  unsigned flags = 0;
  uint32_t padChar = 0;
  size_t unitSize = 0;
  CEI baseCei = 0;
  std::string ccsid;  // as far as the row's length field counts it

  // Zero and empty but for multi-byte rows.
  int doubleByteSet = 0;
  int singleByteSet = 0;
  std::vector<uint8_t> shiftOut;
  std::vector<uint8_t> shiftIn;
  std::array<uint8_t, 2> doubleBlank{};
  std::vector<ByteRange> leadRanges;
  std::vector<ByteRange> trailRanges;

  size_t shiftLength() const { return shiftOut.size(); }
  bool isMultiByte() const { return doubleByteSet != 0; }
  uint8_t blank() const { return static_cast<uint8_t>(padChar); }
};

inline constexpr bool isMultiByteClass(int encodingClass) { return encodingClass >= 4; }

// REQUIRES: 0 <= cei < 230.
const EncodingText& encodingText(CEI cei);

// Whether the bytes of one encoding have to change to be text of the other.
bool needsConversion(CEI source, CEI target);

bool isWithin(const std::vector<ByteRange>& ranges, uint8_t byte);

}  // namespace transcode_test

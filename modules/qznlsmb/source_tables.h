// What the bytes of a multi-byte source mean.
#pragma once

#include <cstdint>

#include "modules/qznlsmb/tables.h"
#include "veldnls/cei.h"
#include "veldnls/modules.h"
#include "veldnls/pipeline.h"

namespace veldnls {

struct Meaning {
  uint32_t value;
  bool substituted;
};

// Whether a set's single bytes below 0x80 are ASCII.
inline bool isAsciiSet(uint32_t singleByteSet) { return singleByteSet <= 1 || singleByteSet == 3; }

// Of a code of two bytes. One without a meaning is the ideographic space; the blank is that without being noted.
Meaning meaningOfDouble(const PipelineSide& side, uint32_t code);
// Of a GB18030 code of two or four bytes. One without a meaning is U+0020.
Meaning meaningOfGb18030(const PipelineSide& side, Gb18030Module& module, const uint8_t* at, uint32_t length);

inline const ToUnicodeSet& toUnicodeSetOf(const PipelineSide& side) {
  // `table` is the first member of the record.
  return *reinterpret_cast<const ToUnicodeSet*>(side.pairs);
}

// What is put on the codes of seven bits whose set has them in eight: sets 8, 14 and 20.
inline uint32_t codeMask(CEI cei) {
  return cei == U_ISO2022KR_CE || cei == U_ISO2022CNGB_CE || cei == U_ISO2022CNCNS_CE ? 0x8080 : 0;
}

// The byte of the euro sign, or 0x100. Rows built on ASCII have none but for two; every other row has the host's,
// whether its page has it there or not.
inline uint32_t oneByteEuro(const PipelineSide& side) {
  const uint32_t set = side.sourceProfile->singleByteSet;
  if (set != 1 && set != 3) return 0xE1;
  return side.cei == U_EUCCN_CE || side.cei == U_GB18030_CE ? 0x80 : 0x100;
}

inline uint32_t unitOfSingle(const PipelineSide& side, uint8_t byte) {
  return byte == oneByteEuro(side) ? euroSign : side.toUnicode[byte];
}

}  // namespace veldnls

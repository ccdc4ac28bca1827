// The case tables of 16-bit units.
#include <cstdint>

#include "core/wide_text.h"

namespace veldnls {
namespace {

constexpr int blockSize = 128;
constexpr int blockCount = 0x10000 / blockSize;
constexpr int casedBlocks = 19;
constexpr int lowerExceptionCount = 19;
constexpr int upperExceptionCount = 20;

// The delta of a unit whose mapping is too far for a byte and stands in the exception list.
constexpr int8_t exceptionMark = -128;

struct CaseTables {
  int16_t blocks[blockCount];  // where a block begins in the delta tables, -1 for one without cased letters
  int8_t lowerDeltas[casedBlocks * blockSize];
  char16_t lowerExceptions[2 * lowerExceptionCount + 1];  // pairs (from, to), ended by 0
  int8_t upperDeltas[casedBlocks * blockSize];
  char16_t upperExceptions[2 * upperExceptionCount + 1];
};

constexpr CaseTables tables = {
#include "unicode/case_tables.inc"
};

constexpr int countPairs(const char16_t* exceptions) {
  int pairs = 0;
  while (exceptions[2 * pairs] != 0) ++pairs;
  return pairs;
}

constexpr bool indexFitsDeltas() {
  int used = 0;
  for (const int16_t block : tables.blocks) {
    if (block >= 0 && block != blockSize * used++) return false;
  }
  return used == casedBlocks;
}

static_assert(countPairs(tables.lowerExceptions) == lowerExceptionCount);
static_assert(countPairs(tables.upperExceptions) == upperExceptionCount);
static_assert(indexFitsDeltas());

char16_t foldException(char16_t unit, const char16_t* exceptions) {
  for (; *exceptions != 0; exceptions += 2) {
    if (*exceptions == unit) return exceptions[1];
  }
  return unit;
}

char16_t fold(char16_t unit, const int8_t* deltas, const char16_t* exceptions) {
  const int16_t block = tables.blocks[unit / blockSize];
  if (block < 0) return unit;
  const int8_t delta = deltas[block + unit % blockSize];
  if (delta == exceptionMark) return foldException(unit, exceptions);
  return static_cast<char16_t>(unit + delta);
}

}  // namespace

char16_t foldToLower(char16_t unit) { return fold(unit, tables.lowerDeltas, tables.lowerExceptions); }

char16_t foldToUpper(char16_t unit) { return fold(unit, tables.upperDeltas, tables.upperExceptions); }

}  // namespace veldnls

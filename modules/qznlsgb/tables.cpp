#include "modules/qznlsgb/tables.h"

namespace veldnls {

namespace {

#include "sets/gb18030.inc"

}  // namespace

constexpr GbFromUnicodeRow gbFromUnicodeTable[] = {
#include "sets/gb18030_from.inc"
};

constexpr GbToUnicodeRow gbToUnicodeTable[] = {
#include "sets/gb18030_to.inc"
};

constexpr GbFromUnicodeIndex gbFromUnicodeIndex = {fromBlocks, fromCells, longCodes};
constexpr GbToUnicodeIndex gbToUnicodeIndex = {{rows_doubles, units_doubles}, fourBlocks, fourUnits};

}  // namespace veldnls

#include "core/kernels/tiers.h"

#include "core/kernels/avx2/functions.h"
#include "core/kernels/avx512/functions.h"

namespace veldnls {

using std::endian;

constinit const Kernels avx512Kernels{
    .tier = KernelTier::avx512,
    .fieldBytes = 16,
    .byteMap = avx512::byteMap,
    .expand = avx512::expand,
    .pagesToBytes = avx512::pagesToBytes,
    .asciiRun = avx512::asciiRun,
    .asciiRun16 = {avx512::asciiRun16<endian::little>, avx512::asciiRun16<endian::big>},
    .widenAscii16 = avx512::widenAscii16,
    .widenAscii32 = avx512::widenAscii32,
    .narrowAscii16 = {avx512::narrowAscii16<endian::little>, avx512::narrowAscii16<endian::big>},
    .narrowAscii32 = {avx512::narrowAscii32<endian::little>, avx512::narrowAscii32<endian::big>},
    .swap16 = avx512::swap16,
    .swap32 = avx512::swap32,
    .utf8Valid = avx512::utf8Valid,
    .utf8ToUtf16 = avx512::utf8ToUtf16,
    .utf8ToUtf32 = avx512::utf8ToUtf32,
    .utf16ToUtf8 = {avx512::utf16ToUtf8<endian::little>, avx512::utf16ToUtf8<endian::big>},
    .utf16ToUtf32 = {avx512::utf16ToUtf32<endian::little>, avx512::utf16ToUtf32<endian::big>},
    .utf32ToUtf8 = {avx512::utf32ToUtf8<endian::little>, avx512::utf32ToUtf8<endian::big>},
    .utf32ToUtf16 = {avx512::utf32ToUtf16<endian::little>, avx512::utf32ToUtf16<endian::big>},
    .unitsToCodes = avx512::unitsToCodes,
    .unitsToDoubles = avx512::unitsToDoubles,
    .unitsToCells = avx512::unitsToCells,
    .codesToUnits = avx512::codesToUnits,
    .codesToUtf8 = avx512::codesToUtf8,
    .codesToCodes = avx2::codesToCodes,
    .codesToCells = avx2::codesToCells,
    .doublesToUnits = avx512::doublesToUnits,
    .shiftedToUnits = avx512::shiftedToUnits,
    .unitsToShifted = avx512::unitsToShifted,
    .runWithout = avx512::runWithout,
};

}  // namespace veldnls

#include "core/kernels/tiers.h"

#include "core/kernels/avx2/functions.h"
#include "core/kernels/scalar_codes.h"

namespace veldnls {

using std::endian;

constinit const Kernels avx2Kernels{
    .tier = KernelTier::avx2,
    .fieldBytes = 0,
    .byteMap = avx2::byteMap,
    .expand = avx2::expand,
    .pagesToBytes = avx2::pagesToBytes,
    .asciiRun = avx2::asciiRun,
    .asciiRun16 = {avx2::asciiRun16<endian::little>, avx2::asciiRun16<endian::big>},
    .widenAscii16 = avx2::widenAscii16,
    .widenAscii32 = avx2::widenAscii32,
    .narrowAscii16 = {avx2::narrowAscii16<endian::little>, avx2::narrowAscii16<endian::big>},
    .narrowAscii32 = {avx2::narrowAscii32<endian::little>, avx2::narrowAscii32<endian::big>},
    .swap16 = avx2::swap16,
    .swap32 = avx2::swap32,
    .utf8Valid = avx2::utf8Valid,
    .utf8ToUtf16 = avx2::utf8ToUtf16,
    .utf8ToUtf32 = avx2::utf8ToUtf32,
    .utf16ToUtf8 = {avx2::utf16ToUtf8<endian::little>, avx2::utf16ToUtf8<endian::big>},
    .utf16ToUtf32 = {avx2::utf16ToUtf32<endian::little>, avx2::utf16ToUtf32<endian::big>},
    .utf32ToUtf8 = {avx2::utf32ToUtf8<endian::little>, avx2::utf32ToUtf8<endian::big>},
    .utf32ToUtf16 = {avx2::utf32ToUtf16<endian::little>, avx2::utf32ToUtf16<endian::big>},
    .unitsToCodes = avx2::unitsToCodes,
    .unitsToDoubles = scalar::unitsToDoubles,
    .unitsToCells = scalar::unitsToCells,
    .codesToUnits = scalar::codesToUnits,
    .codesToUtf8 = scalar::codesToUtf8,
    .codesToCodes = avx2::codesToCodes,
    .codesToCells = avx2::codesToCells,
    .doublesToUnits = scalar::doublesToUnits,
    .shiftedToUnits = scalar::shiftedToUnits,
    .unitsToShifted = scalar::unitsToShifted,
    .runWithout = scalar::runWithout,
};

}  // namespace veldnls

// The kernels of this tier, by the names of their slots.
#pragma once

#include <bit>

#include "core/kernels/kernels.h"

namespace veldnls::avx2 {

ByteMapKernel byteMap;
ExpandKernel expand;
PagesToBytesKernel pagesToBytes;

PrefixKernel asciiRun;
template <std::endian order>
PrefixKernel asciiRun16;
ItemKernel widenAscii16;
ItemKernel widenAscii32;
template <std::endian order>
ItemKernel narrowAscii16;
template <std::endian order>
ItemKernel narrowAscii32;

WholeKernel swap16;
WholeKernel swap32;

PrefixKernel utf8Valid;
TextKernel utf8ToUtf16;
TextKernel utf8ToUtf32;
template <std::endian order>
TextKernel utf16ToUtf8;
template <std::endian order>
TextKernel utf16ToUtf32;
template <std::endian order>
TextKernel utf32ToUtf8;
template <std::endian order>
TextKernel utf32ToUtf16;

UnitsToCodesKernel unitsToCodes;
CodesToCodesKernel codesToCodes;
CodesToCellsKernel codesToCells;

}  // namespace veldnls::avx2

// The kernels of this tier, by the names of their slots.
#pragma once

#include <bit>

#include "core/kernels/kernels.h"

namespace veldnls::avx2 {

void byteMap(const uint8_t* table, const uint8_t* in, uint8_t* out, size_t count);
void expand(const char16_t* table, const uint8_t* in, uint8_t* out, size_t count);
size_t pagesToBytes(const uint8_t* const* pages, const uint8_t* in, uint8_t* out, size_t count);

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

KernelRun unitsToCodes(const UnitCodes& codes, uint32_t blank, const uint8_t* in, size_t count, uint8_t* out,
                       size_t room);
KernelRun codesToCodes(const CodeRows& rows, uint32_t blank, const UnitCodes& codes, uint32_t targetBlank,
                       const uint8_t* in, size_t count, uint8_t* out, size_t room);
KernelRun codesToCells(const CodeRows& rows, uint32_t blank, const UnitCells& codes, const uint8_t* in, size_t count,
                       uint8_t* out, size_t room);

}  // namespace veldnls::avx2

// Plain text and memory primitives used across the library. Pure functions: they touch only what their arguments give
// and may run on any thread. Counts are int64_t so that lengths of either signedness pass unchanged; a count of 0 or
// less touches nothing, and the pointers may then be null.
#pragma once

#include <cstdint>

#include "veldnls/types.h"

namespace veldnls {

// Bytes, or 16-bit units, before the first zero. Null gives 0.
int32_t nlsNarrowLength(const char* text);
int32_t nlsWideLength(const char16_t* text);

// Copies byte by byte from the front. When the target starts inside the source, the bytes ahead of it repeat; use
// nlsMoveBytes to keep the text.
void nlsCopyBytes(const void* source, void* target, int64_t count);
// Copies as if through a temporary, so that the ranges may overlap in any way. The source comes first.
void nlsMoveBytes(const void* source, void* target, int64_t count);

// True when all `count` bytes equal the low 8 bits of `value`, or all `count` units its low 16 bits. True for no data.
bool nlsAllBytesEqual(uint32_t value, const void* data, int64_t count);
bool nlsAllWideEqual(uint32_t value, const char16_t* data, int64_t count);

// Reverse bytes, or 16-bit units, in place. Return 0.
NlsStatus nlsReverseBytes(void* data, int64_t length);
NlsStatus nlsReverseWide(char16_t* data, int64_t count);

// Stores `value` in `count` 16-bit units.
void nlsFillWide(char16_t* data, char16_t value, int64_t count);

// The count of 16-bit units less trailing U+0020; never below 0.
int32_t nlsTrimTrailingBlanks(const char16_t* data, int32_t count);

}  // namespace veldnls

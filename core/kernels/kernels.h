// Vector kernels: the inner loops over plain bytes and units, in one form per instruction set.
//
// A caller writes its loop item by item and lets a kernel take the items at the front that need no decision; without
// the call the result is the same. So a kernel may stop early for any reason, and the caller's loop must know how to
// do every item that a kernel does.
//
// Texts of 16-bit and 32-bit units are passed as bytes, for they need no alignment. Counts, rooms and results are in
// items: bytes of a byte text, units of a text of units. Units are little-endian unless the slot has two forms.
//
// A kernel reads nothing outside of the input's `count` items and writes nothing but the items that it reports. Input
// and output don't overlap, but where a slot allows it. All kernels may run on any thread.
#pragma once

#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "core/kernels/double_byte.h"

namespace veldnls {

// The scalar form is plain C++, and what the others are tested against. `avx2` needs BMI2 also; `avx512` needs
// AVX-512 F, BW, DQ, VL, VBMI, VBMI2 and VPOPCNTDQ.
enum class KernelTier : uint8_t { scalar, avx2, avx512 };

struct KernelRun {
  size_t read;
  size_t written;
};

// The two forms of a kernel whose input is of either byte order.
template <class Kernel>
struct ByOrder {
  Kernel* little;
  Kernel* big;

  template <std::endian order>
  Kernel* of() const {
    return order == std::endian::little ? little : big;
  }
};

// Counts how many items at the front have a property.
using PrefixKernel = size_t(const uint8_t* in, size_t count);
// Converts items one to one as long as they have a property, and returns how many.
using ItemKernel = size_t(const uint8_t* in, uint8_t* out, size_t count);
// Converts every item.
using WholeKernel = void(const uint8_t* in, uint8_t* out, size_t count);
// Converts whole characters as far as the input is plain and `room` items of output last.
using TextKernel = KernelRun(const uint8_t* in, size_t count, uint8_t* out, size_t room);

// The others. What they do stands at their slots.
using ByteMapKernel = void(const uint8_t* table, const uint8_t* in, uint8_t* out, size_t count);
using ExpandKernel = void(const char16_t* table, const uint8_t* in, uint8_t* out, size_t count);
using PagesToBytesKernel = size_t(const uint8_t* const* pages, const uint8_t* in, uint8_t* out, size_t count);
using UnitsToCodesKernel = KernelRun(const UnitCodes& codes, uint32_t blank, const uint8_t* in, size_t count,
                                     uint8_t* out, size_t room);
using UnitsToCellsKernel = KernelRun(const UnitCells& codes, const uint8_t* in, size_t count, uint8_t* out,
                                     size_t room);
using CodesToUnitsKernel = KernelRun(const CodeRows& rows, const LeadBytes& leads, uint32_t blank, const uint8_t* in,
                                     size_t count, uint8_t* out, size_t room);
using CodesToUtf8Kernel = KernelRun(const CodeRows& rows, uint32_t blank, const uint8_t* in, size_t count, uint8_t* out,
                                    size_t room);
using CodesToCodesKernel = KernelRun(const CodeRows& rows, uint32_t blank, const UnitCodes& codes, uint32_t targetBlank,
                                     const uint8_t* in, size_t count, uint8_t* out, size_t room);
using CodesToCellsKernel = KernelRun(const CodeRows& rows, uint32_t blank, const UnitCells& codes, const uint8_t* in,
                                     size_t count, uint8_t* out, size_t room);
using DoublesToUnitsKernel = size_t(const CodeRows& rows, uint32_t blank, const uint8_t* in, uint8_t* out,
                                    size_t count);
using ShiftedToUnitsKernel = KernelRun(const ShiftedSource& source, bool& inDouble, const uint8_t* in, size_t count,
                                       uint8_t* out, size_t room);
using UnitsToShiftedKernel = KernelRun(const ShiftedTarget& target, bool& inDouble, const uint8_t* in, size_t count,
                                       uint8_t* out, size_t room);
using RunWithoutKernel = size_t(const uint8_t* four, const uint8_t* in, size_t count);

struct Kernels {
  KernelTier tier;

  // For texts of up to so many bytes the kernels of two-byte codes have a way of their own, which pays; 0: they have
  // none.
  size_t fieldBytes;

  // Each byte through a table of 256. `out` may be `in`, or begin before it.
  ByteMapKernel* byteMap;
  // Each byte to the UTF-16 unit that a table of 256 has for it.
  ExpandKernel* expand;
  // Each UTF-16 unit to its byte: `pages` has 256 addresses by high byte, each null or of 256 bytes by low byte. Stops
  // at a unit without a byte, which is one whose page is null or has a zero for it; but U+0000 may have a zero.
  PagesToBytesKernel* pagesToBytes;

  // Items below 0x80: counted; bytes made units; units made bytes.
  PrefixKernel* asciiRun;
  ByOrder<PrefixKernel> asciiRun16;
  ItemKernel* widenAscii16;
  ItemKernel* widenAscii32;
  ByOrder<ItemKernel> narrowAscii16;
  ByOrder<ItemKernel> narrowAscii32;

  // The bytes of each unit turned around. `out` may be `in`, or begin before it.
  WholeKernel* swap16;
  WholeKernel* swap32;

  // Bytes at the front that are whole, valid UTF-8 sequences: no surrogates, no form longer than needed, leads up to
  // F4. The second byte of lead F4 isn't bounded, so that values up to 0x13FFFF pass.
  PrefixKernel* utf8Valid;
  // Stop at a sequence that isn't valid or not whole; the first, which writes surrogate pairs, also at lead F4.
  TextKernel* utf8ToUtf16;
  TextKernel* utf8ToUtf32;
  // Stop at a surrogate that belongs to no pair; the big-endian form to UTF-8 at any surrogate.
  ByOrder<TextKernel> utf16ToUtf8;
  ByOrder<TextKernel> utf16ToUtf32;
  // Surrogates pass; stops at values of 0x200000 and above.
  ByOrder<TextKernel> utf32ToUtf8;
  // Stops at surrogates and at values above 0x10FFFF.
  ByOrder<TextKernel> utf32ToUtf16;

  // UTF-16 units to characters of one or two bytes: those below 0x80 to the byte of that value, U+3000 to `blank`,
  // others through the table. Stop at a unit without a character there, and at U+0080 to U+009E and U+FF61 to U+FF9F,
  // which tables of their own are for.
  UnitsToCodesKernel* unitsToCodes;
  // The same for characters of two bytes alone: stops at what has one.
  UnitsToCodesKernel* unitsToDoubles;
  // The same as the first for the other table, with no exceptions.
  UnitsToCellsKernel* unitsToCells;

  // Text of bytes below 0x80, which mean that unit, and two-byte codes, to UTF-16 units. `blank` is the code of U+3000.
  // The rows have codes of no other leads. Stops at a byte from 0x80 on that is no lead, at a lead at the end, and at a
  // code without a unit.
  CodesToUnitsKernel* codesToUnits;
  // The same without a look at leads, and then what utf16ToUtf8, unitsToCodes or unitsToCells makes of the units, which
  // needn't go through memory for that. Stop also at a unit that these stop at. For short texts.
  CodesToUtf8Kernel* codesToUtf8;
  CodesToCodesKernel* codesToCodes;
  CodesToCellsKernel* codesToCells;
  // Two-byte codes alone; `count` of them. Stops at one without a unit.
  DoublesToUnitsKernel* doublesToUnits;
  // Text with shifts, whose mode is `inDouble` before and after. The first stops at a shift to the mode that is on, at
  // a first byte at the end, and at a code without a unit, and takes a shift-out only with the character behind it; the
  // second stops where unitsToCodes does, but for U+0080 to U+009E.
  ShiftedToUnitsKernel* shiftedToUnits;
  UnitsToShiftedKernel* unitsToShifted;
  // Counts the bytes ahead of the first that is one of four.
  RunWithoutKernel* runWithout;
};

// What kernels() answers; null until somebody asks.
extern constinit std::atomic<const Kernels*> chosenKernels;
const Kernels& chooseKernels();

// The kernels of the best tier that the processor has, or of the one forced.
inline const Kernels& kernels() {
  const Kernels* record = chosenKernels.load(std::memory_order_relaxed);
  return record != nullptr ? *record : chooseKernels();
}

// For tests: makes kernels() return those of `tier` from now on, on all threads. Returns false, and changes nothing, if
// the processor or the build lacks it.
bool forceKernelTier(KernelTier tier);

}  // namespace veldnls

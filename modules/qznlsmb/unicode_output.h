// The Unicode forms as targets: how many bytes a character takes and how it is written.
//
// `most` is the size of the longest character of plane 0. `writeUnits` writes `count` characters that are UTF-16 units
// and no surrogates, for which there must be room, and returns how many bytes they take. `writeAscii` writes bytes
// below 0x80 off the front of a text, as far as they and the room go, and returns bytes read and written.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/kernels/kernels.h"
#include "core/text/i8.h"
#include "core/text/swap.h"
#include "core/text/units.h"
#include "core/text/utf8.h"
#include "modules/qznlsmb/ascii.h"

namespace veldnls {

struct Utf16Output {
  static constexpr size_t most = 2;
  // A unit of the surrogate range is no character.
  static constexpr bool takesSurrogates = false;

  static size_t size(uint32_t /*value*/) { return 2; }
  static void write(uint8_t* at, uint32_t value, size_t /*size*/) { store16(at, value); }
  static size_t writeAsciiBlock(uint8_t* at, uint64_t block) {
    spread(at, static_cast<uint32_t>(block));
    spread(at + sizeof block, block >> 32);
    return 2 * sizeof block;
  }
  // Four bytes as four units.
  static void spread(uint8_t* at, uint64_t bytes) {
    bytes = (bytes | bytes << 16) & UINT64_C(0x0000FFFF0000FFFF);
    bytes = (bytes | bytes << 8) & UINT64_C(0x00FF00FF00FF00FF);
    std::memcpy(at, &bytes, sizeof bytes);
  }
  static void swap(uint8_t* text, size_t length) { swapUnits16(text, text, length); }
};

// The same for all but UTF-16, whose units need no writing. A kernel may stop early.
template <class Form>
size_t writeUnits(TextKernel* kernel, const uint8_t* units, size_t count, uint8_t* out, size_t room) {
  KernelRun run{0, 0};
  if (kernel != nullptr && count >= 16) run = kernel(units, count, out, room / Form::unit);
  run.written *= Form::unit;
  for (; run.read < count; ++run.read) {
    const uint32_t value = load16<std::endian::little>(units + utf16UnitBytes * run.read);
    const size_t size = Form::size(value);
    Form::write(out + run.written, value, size);
    run.written += size;
  }
  return run.written;
}

struct Utf32Output {
  static constexpr size_t unit = 4;
  static constexpr size_t most = 4;
  static constexpr bool takesSurrogates = true;

  static size_t size(uint32_t /*value*/) { return 4; }
  static void write(uint8_t* at, uint32_t value, size_t /*size*/) { store32(at, value); }
  static size_t writeUnits(const uint8_t* units, size_t count, uint8_t* out, size_t room) {
    return veldnls::writeUnits<Utf32Output>(kernels().utf16ToUtf32.little, units, count, out, room);
  }
  static KernelRun writeAscii(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
    const size_t ascii = kernels().widenAscii32(in, out, std::min(count, room / unit));
    return {ascii, unit * ascii};
  }
  static void swap(uint8_t* text, size_t length) { swapUnits32(text, text, length); }
};

struct Utf8Output {
  static constexpr size_t unit = 1;
  static constexpr size_t most = 3;
  static constexpr bool takesSurrogates = true;

  static size_t size(uint32_t value) { return utf8Length(value); }
  static void write(uint8_t* at, uint32_t value, size_t size) { writeUtf8(at, value, size); }
  static size_t writeUnits(const uint8_t* units, size_t count, uint8_t* out, size_t room) {
    return veldnls::writeUnits<Utf8Output>(kernels().utf16ToUtf8.little, units, count, out, room);
  }
  static KernelRun writeAscii(const uint8_t* in, size_t count, uint8_t* out, size_t room) {
    const size_t ascii = copyAscii(in, out, std::min(count, room));
    return {ascii, ascii};
  }
  static size_t writeAsciiBlock(uint8_t* at, uint64_t block) {
    std::memcpy(at, &block, sizeof block);
    return sizeof block;
  }
  static void swap(uint8_t* /*text*/, size_t /*length*/) {}
};

struct UtfEbcdicOutput {
  static constexpr size_t unit = 1;
  static constexpr size_t most = 4;
  static constexpr bool takesSurrogates = true;

  static size_t size(uint32_t value) { return i8Length(value); }
  static void write(uint8_t* at, uint32_t value, size_t size) { writeUtfEbcdic(at, value, size); }
  static size_t writeUnits(const uint8_t* units, size_t count, uint8_t* out, size_t room) {
    return veldnls::writeUnits<UtfEbcdicOutput>(nullptr, units, count, out, room);
  }
  static KernelRun writeAscii(const uint8_t* /*in*/, size_t /*count*/, uint8_t* /*out*/, size_t /*room*/) {
    return {0, 0};
  }
  static void swap(uint8_t* /*text*/, size_t /*length*/) {}
};

}  // namespace veldnls

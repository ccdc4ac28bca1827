#include "reference/reference.h"

#include <algorithm>
#include <array>

#include "support/tsv.h"

namespace transcode_test {

namespace {

struct Permutation {
  std::array<uint8_t, 256> toEbcdic;
  std::array<uint8_t, 256> toI8;
};

const Permutation& permutation() {
  static const Permutation both = [] {
    Permutation read{};
    for (const test::Fields& line : test::readTsv("utf_ebcdic/permutation.tsv")) {
      const auto i8 = static_cast<uint8_t>(std::stoul(line.at(0), nullptr, 16));
      const auto ebcdic = static_cast<uint8_t>(std::stoul(line.at(1), nullptr, 16));
      read.toEbcdic[i8] = ebcdic;
      read.toI8[ebcdic] = i8;
    }
    return read;
  }();
  return both;
}

uint32_t unit(Span text, size_t at, size_t size, bool bigEndian) {
  uint32_t value = 0;
  for (size_t i = 0; i < size; ++i) value = value * 256 + text[at + (bigEndian ? i : size - 1 - i)];
  return value;
}

bool isHigh(uint32_t value) { return value >= 0xD800 && value <= 0xDBFF; }
bool isLow(uint32_t value) { return value >= 0xDC00 && value <= 0xDFFF; }

Character nextUtfEbcdic(Span text) {
  const auto& toI8 = permutation().toI8;
  const uint32_t lead = toI8[text[0]];
  if (lead < 0xA0) return {1, lead};
  if (lead < 0xC0 || lead > 0xF9) return {1, 0};
  const size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF8 ? 4 : 5;
  if (text.size() < length) return {};
  uint32_t value = length == 2 ? 0 : length == 3 ? lead % 16 : length == 4 ? lead % 8 : lead % 2;
  for (size_t i = 1; i < length; ++i) value = value * 32 + toI8[text[i]] % 32;
  return {length, value};
}

Character nextUtf16(Span text, bool bigEndian, Form target) {
  if (text.size() < 2) return {};
  const uint32_t first = unit(text, 0, 2, bigEndian);
  if (!isHigh(first)) {
    if (target == Form::utf32 && isLow(first)) return {2, {}};
    return {2, first};
  }
  if (text.size() < 4) return {};
  if (target == Form::utf32) {
    const uint32_t second = unit(text, 2, 2, bigEndian);
    if (!isLow(second)) return {4, {}};
    return {4, 0x10000 + (first - 0xD800) * 1024 + (second - 0xDC00)};
  }
  return {4, 0x10000 + (first - 0xD800) * 1024 + unit(text, 2, 2, false) % 1024};
}

Character nextUtf32(Span text, bool bigEndian, Form target) {
  if (text.size() < 4) return {};
  const uint32_t value = unit(text, 0, 4, bigEndian);
  if (target == Form::utf16 && (isHigh(value) || isLow(value) || value > 0x10FFFF)) return {4, {}};
  if (target != Form::utf16 && value > 0x7FFFFFFF) return {4, {}};
  return {4, value};
}

Character next(const TextForm& source, Form target, Span text) {
  switch (source.form) {
    case Form::utf8:
      return nextUtf8(text);
    case Form::utfEbcdic:
      return nextUtfEbcdic(text);
    case Form::utf16:
      return nextUtf16(text, source.bigEndian, target);
    default:
      return nextUtf32(text, source.bigEndian, target);
  }
}

void putUnit(Bytes& bytes, uint32_t value, size_t size, bool bigEndian) {
  for (size_t i = 0; i < size; ++i) {
    bytes.push_back(static_cast<uint8_t>(value >> (8 * (bigEndian ? size - 1 - i : i))));
  }
}

// The bytes of a value in an eight-bit form, made from the end: `bits` of the value in each trailing byte.
Bytes sequence(uint32_t value, size_t length, int bits, uint32_t leadMark, uint32_t trailMark) {
  Bytes bytes(length);
  for (size_t i = length - 1; i > 0; --i) {
    bytes[i] = static_cast<uint8_t>(trailMark + value % (1u << bits));
    value >>= bits;
  }
  bytes[0] = static_cast<uint8_t>(leadMark | value);
  return bytes;
}

Bytes inUtf8(uint32_t value) {
  if (value < 0x80) return {static_cast<uint8_t>(value)};
  size_t length = 2;
  while (length < 6 && value >> (5 * length + 1) != 0) ++length;
  return sequence(value, length, 6, 0xFF00u >> length & 0xFF, 0x80);
}

Bytes inUtfEbcdic(uint32_t value) {
  size_t length = 1;
  Bytes bytes;
  if (value < 0xA0) {
    bytes = {static_cast<uint8_t>(value)};
  } else {
    length = value < 0x400 ? 2 : value < 0x4000 ? 3 : value < 0x40000 ? 4 : 5;
    bytes = sequence(value, length, 5, 0xFF00u >> length & 0xFF, 0xA0);
  }
  for (uint8_t& byte : bytes) byte = permutation().toEbcdic[byte];
  return bytes;
}

Bytes inUtf16(uint32_t value, bool bigEndian) {
  Bytes bytes;
  if (value < 0x10000) {
    putUnit(bytes, value, 2, bigEndian);
  } else {
    putUnit(bytes, 0xD7C0 + value / 1024, 2, bigEndian);
    putUnit(bytes, 0xDC00 + value % 1024, 2, bigEndian);
  }
  return bytes;
}

Bytes inUtf32(uint32_t value, bool bigEndian) {
  Bytes bytes;
  putUnit(bytes, value, 4, bigEndian);
  return bytes;
}

enum class Step { written, noRoom, last };

// Writes one character to what has been written so far. `substituted` is set when U+FFFD stands for it.
Step write(const TextForm& source, const TextForm& target, const Character& character, size_t capacity, Bytes& out,
           bool& substituted) {
  const size_t room = capacity - out.size();
  uint32_t value = character.value.value_or(0xFFFD);
  const bool bad = !character.value.has_value();
  if (target.form == Form::utf32) {
    if (room < 4) return Step::noRoom;
    substituted |= bad;
    putUnit(out, value, 4, target.bigEndian);
    return Step::written;
  }
  if (target.form == Form::utf16) {
    if (room < 2) return Step::noRoom;
    if (source.form != Form::utf32) {
      if (value > 0x10FFFF) return write(source, target, {character.length, {}}, capacity, out, substituted);
      if (value >= 0x100000) value %= 0x10000;
    }
    if (value >= 0x10000) {
      if (room < 4 && source.form == Form::utfEbcdic) return Step::noRoom;
      if (room < 4) {
        putUnit(out, 0xFFFD, 2, target.bigEndian);
        substituted = true;
        return Step::last;
      }
      putUnit(out, 0xD7C0 + value / 1024, 2, target.bigEndian);
      putUnit(out, 0xDC00 + value % 1024, 2, target.bigEndian);
      return Step::written;
    }
    substituted |= bad;
    putUnit(out, value, 2, target.bigEndian);
    return Step::written;
  }
  // A replaced value counts as such ahead of the test whether its bytes fit; in UTF-8 if there is any room.
  if (bad && (target.form == Form::utfEbcdic || room > 0)) substituted = true;
  const Bytes bytes = target.form == Form::utf8 ? inUtf8(value) : inUtfEbcdic(value);
  if (bytes.size() > room) return Step::noRoom;
  out.insert(out.end(), bytes.begin(), bytes.end());
  return Step::written;
}

bool allBlank(const TextForm& source, Form target, Span rest) {
  const size_t size = source.form == Form::utf16 ? 2 : source.form == Form::utf32 ? 4 : 1;
  const bool bigEndian = source.bigEndian && target != Form::utfEbcdic;
  const uint32_t blank = source.form == Form::utfEbcdic ? 0x40 : 0x20;
  if (rest.size() % size != 0) return false;
  for (size_t i = 0; i < rest.size(); i += size) {
    if (unit(rest, i, size, bigEndian) != blank) return false;
  }
  return true;
}

size_t minimum(Form target) { return target == Form::utf32 ? 4 : target == Form::utf16 ? 2 : 1; }

}  // namespace

// A bad sequence ends ahead of its first byte that is no continuation byte.
Character nextUtf8(Span text) {
  const uint32_t lead = text[0];
  const size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF8 ? 4 : lead < 0xFC ? 5 : 6;
  if (text.size() < length) return {};
  for (size_t i = 1; i < length; ++i) {
    if (text[i] < 0x80 || text[i] > 0xBF) return {i, {}};
  }
  if (length > 4 || (lead >= 0x80 && lead < 0xC2) || lead > 0xF4) return {length, {}};
  if (lead == 0xE0 && text[1] < 0xA0) return {length, {}};
  if (lead == 0xED && text[1] > 0x9F) return {length, {}};
  if (lead == 0xF0 && text[1] < 0x90) return {length, {}};
  uint32_t value = length == 1 ? lead : lead % (64u >> (length - 1));
  for (size_t i = 1; i < length; ++i) value = value * 64 + text[i] % 64;
  return {length, value};
}

Bytes textIn(const TextForm& form, std::u32string_view text) {
  Bytes bytes;
  for (const char32_t c : text) {
    const Bytes one = form.form == Form::utf8        ? inUtf8(c)
                      : form.form == Form::utfEbcdic ? inUtfEbcdic(c)
                      : form.form == Form::utf16     ? inUtf16(c, form.bigEndian)
                                                     : inUtf32(c, form.bigEndian);
    bytes.insert(bytes.end(), one.begin(), one.end());
  }
  return bytes;
}

Outcome expected(const TextForm& source, const TextForm& target, Span input, size_t capacity, bool resumable,
                 bool mayDropBlanks) {
  const auto rule = isDirect(source, target) ? expectedDirect : expectedIndirect;
  return rule(source, target, input, capacity, resumable, mayDropBlanks);
}

// Held bytes don't count as consumed. Those that weren't read are held again, but for blanks that were dropped.
Outcome toldWithHeld(Outcome ofBoth, Span held) {
  const size_t taken = ofBoth.consumed;
  ofBoth.consumed = static_cast<uint32_t>(taken - std::min(taken, held.size()));
  if (taken < held.size() && ofBoth.status != 0) {
    ofBoth.pending = true;
    ofBoth.held.assign(held.begin() + static_cast<std::ptrdiff_t>(taken), held.end());
  }
  return ofBoth;
}

Outcome expectedWithHeld(const TextForm& source, const TextForm& target, Span held, Span input, size_t capacity,
                         bool mayDropBlanks) {
  Bytes both(held.begin(), held.end());
  // What isn't a single converting stage takes what is held without any input too, and holds it again.
  if (input.empty() && isDirect(source, target)) return {.pending = !held.empty(), .held = both};
  both.insert(both.end(), input.begin(), input.end());
  return toldWithHeld(expected(source, target, both, capacity, true, mayDropBlanks), held);
}

Outcome expectedDirect(const TextForm& source, const TextForm& target, Span input, size_t capacity, bool resumable,
                       bool mayDropBlanks) {
  Outcome outcome;
  if (input.empty()) return outcome;
  if (capacity < minimum(target.form)) {
    outcome.status = nlsOutputTruncated;
    return outcome;
  }
  size_t at = 0;
  bool substituted = false;
  while (at < input.size()) {
    const Character character = next(source, target.form, input.subspan(at));
    if (character.length == 0) {
      outcome.status = resumable ? nlsIncompleteInput : nlsSubstituted;
      break;
    }
    const bool before = substituted;
    substituted = false;
    const Step step = write(source, target, character, capacity, outcome.bytes, substituted);
    if (substituted) outcome.status = nlsSubstituted;
    substituted |= before;
    if (step == Step::noRoom) {
      outcome.status = nlsOutputTruncated;
      break;
    }
    at += character.length;
    if (step == Step::last) break;
  }
  if (resumable) {
    outcome.substituted = substituted;
    outcome.consumed = static_cast<uint32_t>(at);
    if (outcome.status == nlsIncompleteInput) {
      outcome.consumed = static_cast<uint32_t>(input.size());
      outcome.pending = true;
      outcome.held.assign(input.begin() + static_cast<std::ptrdiff_t>(at), input.end());
    }
  }
  if (outcome.status == nlsOutputTruncated && mayDropBlanks && allBlank(source, target.form, input.subspan(at))) {
    outcome.status = 0;
  }
  return outcome;
}

}  // namespace transcode_test

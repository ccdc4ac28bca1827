// What single-byte conversions must give, written naively: one item a character, looked up in the to-Unicode tables.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "modules/qznlssb/route.h"
#include "veldnls/encoding.h"

namespace test {

// One character of a text with its two forms.
struct Item {
  Bytes in;
  Bytes out;
  bool blank = false;
  bool substituted = false;
};

using Items = std::vector<Item>;

// The Unicode form of a 16-bit value or code point, as the encoding has it.
Bytes encode(const EncodingDescriptor& row, char32_t code);

// The byte of a value in a code page: the lowest byte that means it, but for a few that the tables give to another.
std::optional<uint8_t> byteOfValue(CEI cei, char16_t value);

// A text of single bytes and its form in a Unicode encoding.
Items toUnicode(CEI source, std::span<const uint8_t> text, const EncodingDescriptor& target);

// A text in a Unicode encoding and its bytes. What has none is the substitution character.
Items fromUnicode(const EncodingDescriptor& source, std::u32string_view text, const EncodingDescriptor& target);

Bytes inputOf(const Items& items);
Bytes outputOf(const Items& items);
bool anySubstituted(const Items& items);

struct Expected {
  Bytes output;
  NlsStatus status = 0;
  uint32_t consumed = 0;
  bool substituted = false;
};

// The outcome with `capacity` bytes of room; `refused` says that so little is refused before anything is looked at.
Expected expect(const Items& items, uint32_t capacity, bool mayDrop, bool refused);

}  // namespace test

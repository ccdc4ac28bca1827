// The encodings that are timed, by the names that the library and its peers give them.
#pragma once

#include <cstddef>
#include <span>

namespace bench {

enum class Shape { singleByte, utf8, utf16, utf32, utfEbcdic };

struct Encoding {
  const char* name;  // the library's
  Shape shape;
  const char* icuName;    // null: ICU has no such converter
  const char* iconvName;  // null: iconv has none
  // The iconv decoder keeps a character back until it is asked to finish, since a mark may follow it.
  bool iconvHoldsBack = false;
};

// By the library's name, which must be one of this unit's.
const Encoding& encoding(const char* name);

// The five forms of Unicode that have peers.
std::span<const Encoding> unicodeForms();

// Bytes of a character that the encoding has.
size_t encodedSize(const Encoding& encoding, char32_t character);

}  // namespace bench

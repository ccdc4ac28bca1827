// The encodings that are timed, by the names that the library and its peers give them.
#pragma once

#include <cstddef>
#include <span>

namespace bench {

// `multiByte`: one to four bytes a character, without shifts; `shifted`: one or two, the latter between 0E and 0F.
enum class Shape { singleByte, utf8, utf16, utf32, utfEbcdic, multiByte, shifted };

struct Encoding {
  const char* name;  // the library's
  Shape shape;
  const char* icuName;    // null: ICU has no such converter
  const char* iconvName;  // null: iconv has none
  // iconv writes the rest of a text only when it is asked to finish: its decoder keeps a character back, since a mark
  // may follow it, or its encoder leaves double mode.
  bool iconvMustFinish = false;
};

// By the library's name, which must be one of this unit's.
const Encoding& encoding(const char* name);

// The five forms of Unicode that have peers.
std::span<const Encoding> unicodeForms();

// Whether the sizes of the encoding's characters follow from its shape alone.
bool hasKnownSizes(const Encoding& encoding);

// Bytes of a character in an encoding whose sizes are known.
size_t encodedSize(const Encoding& encoding, char32_t character);

}  // namespace bench

// Double-byte types and languages: how "which double-byte set, for which language" becomes an encoding. Rows stand at
// the index that is their number.
#pragma once

#include <cstdint>

#include "veldnls/types.h"

namespace veldnls {

// Columns of a type's cells. The low byte of a language code is its column; a high byte that isn't zero marks a
// variant of the language (katakana in the Japanese column, hangul in the Korean one).
inline constexpr int32_t dbcsColumnJapanese = 1;
inline constexpr int32_t dbcsColumnKorean = 2;
inline constexpr int32_t dbcsColumnTaiwanese = 4;
inline constexpr int32_t dbcsColumnUnknown = 5;
inline constexpr int32_t dbcsColumnCount = 6;

// The one bit of DbcsTypeRow::flags that is read: the type has a katakana variant.
inline constexpr uint32_t dbcsKatakanaVariant = 0x40;

// A double-byte type: the encodings that it stands for, by language column. A cell of 0 is none.
struct DbcsTypeRow {
  const char16_t* name;
  int32_t nameLength;
  uint32_t flags;
  CEI cells[dbcsColumnCount];
};

// A double-byte language. `alternate` is an empty text where there is no second name; neither text is ever null.
struct DbcsLanguageRow {
  const char16_t* name;
  int32_t nameLength;
  const char16_t* alternate;
  int32_t alternateLength;
  int32_t code;
};

inline constexpr int32_t dbcsTypeCount = 24;
inline constexpr int32_t dbcsLanguageCount = 9;

extern const DbcsTypeRow dbcsTypes[dbcsTypeCount];
extern const DbcsLanguageRow dbcsLanguages[dbcsLanguageCount];

}  // namespace veldnls

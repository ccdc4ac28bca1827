// The Unicode character records. Contracts stand at the slot types in veldnls/encoding.h.
#pragma once

#include "veldnls/encoding.h"

namespace veldnls {

inline constexpr int32_t characterRecordCount = 17700;

// Sorted by code point; those below U+0100 stand at the index equal to it.
extern const CharacterRecord characterRecords[characterRecordCount];

NlsStatus getCharacterRecord(uint32_t code, CharacterRecord* out);
uint16_t toUpperCharacter(uint32_t code, uint32_t flags);
uint16_t toLowerCharacter(uint32_t code, uint32_t flags);

}  // namespace veldnls

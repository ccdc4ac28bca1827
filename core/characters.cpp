#include "core/characters.h"

#include <algorithm>

namespace veldnls {
namespace {

constexpr uint32_t directCodes = 0x100;  // below, the code is the record's index
constexpr uint32_t mapAllCharacters = 0x1;

// A record of which only the code and the category are known.
constexpr CharacterRecord plainRecord(uint32_t code, uint32_t category) {
  return {code, category, NLS_BIDI_L, 0, 0, 0, 0, 0};
}

// Code points that share one record, whose `code` is the first of them.
struct SharedRecord {
  CharacterRecord record;
  uint32_t last;
};

constexpr SharedRecord sharedRecords[] = {
    {plainRecord(0x3400, NLS_CATEGORY_LO), 0x4DB5}, {plainRecord(0x4E00, NLS_CATEGORY_LO), 0x9FA5},
    {plainRecord(0xAC00, NLS_CATEGORY_LO), 0xD7A3}, {plainRecord(0xD800, NLS_CATEGORY_CS), 0xDFFF},
    {plainRecord(0xE000, NLS_CATEGORY_CO), 0xF8FF},
};

constexpr CharacterRecord defaultRecord = plainRecord(0xFFFF, NLS_CATEGORY_CO);

const CharacterRecord& findRecord(uint32_t code) {
  if (code < directCodes) return characterRecords[code];
  for (const SharedRecord& shared : sharedRecords) {
    if (code >= shared.record.code && code <= shared.last) return shared.record;
  }
  const CharacterRecord* const end = characterRecords + characterRecordCount;
  const CharacterRecord* const found = std::lower_bound(
      characterRecords, end, code, [](const CharacterRecord& record, uint32_t key) { return record.code < key; });
  return found != end && found->code == code ? *found : defaultRecord;
}

uint16_t mapCharacter(uint32_t code, uint32_t flags, uint32_t CharacterRecord::*mapping) {
  code &= 0xFFFF;
  if (code < directCodes || (flags & mapAllCharacters) != 0) {
    const uint32_t mapped = findRecord(code).*mapping;
    if (mapped != 0) code = mapped;
  }
  return static_cast<uint16_t>(code);
}

}  // namespace

NlsStatus getCharacterRecord(uint32_t code, CharacterRecord* out) {
  *out = findRecord(code & 0xFFFF);
  return 0;
}

uint16_t toUpperCharacter(uint32_t code, uint32_t flags) { return mapCharacter(code, flags, &CharacterRecord::upper); }

uint16_t toLowerCharacter(uint32_t code, uint32_t flags) { return mapCharacter(code, flags, &CharacterRecord::lower); }

}  // namespace veldnls

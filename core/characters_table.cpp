// The table of character records.
#include "core/characters.h"

namespace veldnls {

constexpr CharacterRecord characterRecords[characterRecordCount] = {
#include "unicode/character_records.inc"
};

namespace {

constexpr int32_t directRecords = 0x370;  // from U+0000 on, code points that are the record's index

constexpr bool codesRise() {
  for (int32_t i = 1; i < characterRecordCount; ++i) {
    if (characterRecords[i].code <= characterRecords[i - 1].code) return false;
  }
  return true;
}

constexpr int32_t countRuns() {
  int32_t runs = 1;
  for (int32_t i = 1; i < characterRecordCount; ++i)
    runs += characterRecords[i].code != characterRecords[i - 1].code + 1;
  return runs;
}

constexpr int32_t countAboveBmp() {
  int32_t count = 0;
  for (const CharacterRecord& record : characterRecords) count += record.code > 0xFFFF;
  return count;
}

static_assert(characterRecords[0].code == 0 && characterRecords[directRecords - 1].code == directRecords - 1);
static_assert(characterRecords[characterRecordCount - 1].code == 0xE01EF);
static_assert(codesRise() && countRuns() == 426 && countAboveBmp() == 4298);

}  // namespace
}  // namespace veldnls

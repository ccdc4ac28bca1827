#include "transcode/user_columns.h"

#include <cstring>

#include "veldnls/cei.h"

namespace veldnls {

Column columnOf(const UserCharacterTable& table, int32_t place) {
  if (place < 0 || place >= columnCountOf(table)) return {};
  return {table.columns[place], rowCountOf(table)};
}

int32_t placeOf(const UserCharacterTable& table, CEI cei) {
  // In a copy, negative numbers stand for columns whose encoding wasn't taken over.
  if (cei < 0) return notFound;
  const CEI* end = table.ceis + columnCountOf(table);
  const CEI* found = std::find(table.ceis, end, cei);
  return found == end ? notFound : static_cast<int32_t>(found - table.ceis);
}

bool isUnicodeCei(CEI cei) {
  return cei == U_UNICODE_CE || cei == U_UTF8_CE || (cei >= U_B_UNICODE_CE && cei <= U_L_UCS4_CE);
}

int32_t unicodePlaceOf(const UserCharacterTable& table) {
  const CEI* end = table.ceis + columnCountOf(table);
  const CEI* found = std::find_if(table.ceis, end, isUnicodeCei);
  return found == end ? notFound : static_cast<int32_t>(found - table.ceis);
}

int32_t rowOf(const Column& sorted, const uint8_t* code) {
  int32_t low = 0;
  int32_t high = static_cast<int32_t>(sorted.count) - 1;
  while (low <= high) {
    const int32_t middle = low + (high - low) / 2;
    const int order = std::memcmp(code, sorted.at(static_cast<uint32_t>(middle)), codeBytes);
    if (order == 0) return middle;
    if (order < 0) {
      high = middle - 1;
    } else {
      low = middle + 1;
    }
  }
  return notFound;
}

void turnColumn(const Column& from, uint32_t surplus, uint8_t* to) {
  const uint64_t offset = uint64_t{2} * surplus;
  for (uint32_t row = 0; row < from.count; ++row, to += codeBytes) {
    const uint64_t taken = row < surplus ? row + offset : row - offset;
    const bool exists = (row < surplus || row >= offset) && taken < from.count;
    if (exists) {
      std::memcpy(to, from.at(static_cast<uint32_t>(taken)), codeBytes);
    } else {
      std::memset(to, 0, codeBytes);
    }
  }
}

OwnColumns::~OwnColumns() {
  for (size_t i = used_; i > 0; --i) nlsPoolFree(pool_, blocks_[i - 1]);
}

uint8_t* OwnColumns::make(uint32_t count) {
  void* block = nlsPoolAlloc(pool_, count * codeBytes, zeroFill);
  if (block == nullptr) return nullptr;
  blocks_[used_++] = block;
  return static_cast<uint8_t*>(block);
}

}  // namespace veldnls

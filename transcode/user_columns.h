// Columns of user character tables: arrays of two-byte codes, high byte first.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "core/qznlsstub.h"
#include "veldnls/pipeline.h"

namespace veldnls {

inline constexpr int32_t notFound = -1;
inline constexpr int32_t tableColumnLimit = 24;
inline constexpr uint32_t codeBytes = 2;

// A column, or none.
struct Column {
  const uint8_t* codes = nullptr;
  uint32_t count = 0;

  bool present() const { return codes != nullptr; }
  const uint8_t* at(uint32_t row) const { return codes + codeBytes * row; }
  // A code as a number.
  uint16_t code(uint32_t row) const { return static_cast<uint16_t>(at(row)[0] << 8 | at(row)[1]); }
};

// The figures of a table are its host's: nothing is read beyond what a column holds.
inline int32_t columnCountOf(const UserCharacterTable& table) {
  return std::clamp(table.columnCount, int32_t{0}, tableColumnLimit);
}
inline uint32_t rowCountOf(const UserCharacterTable& table) {
  const int32_t whole = table.columnBytes / static_cast<int32_t>(codeBytes);
  return static_cast<uint32_t>(std::max(int32_t{0}, std::min(table.characterCount, whole)));
}

// A column by its place; none if the table has fewer.
Column columnOf(const UserCharacterTable& table, int32_t place);

// The place of an encoding's column, or notFound.
int32_t placeOf(const UserCharacterTable& table, CEI cei);

// Whether user character tables take a CEI for Unicode.
bool isUnicodeCei(CEI cei);
// The place of the first column that is Unicode, or notFound.
int32_t unicodePlaceOf(const UserCharacterTable& table);

// The row with the same code as `code`, by a binary search, or notFound.
int32_t rowOf(const Column& sorted, const uint8_t* code);

// The turn that goes with a fill of `surplus` entries beyond a private-use range: writes a column of the same count to
// `to`. It counts bytes where codes are meant, so that not the entries at the end come to the front but those from
// 2 * surplus on; the next `surplus` entries are 0, and behind them the column begins anew.
void turnColumn(const Column& from, uint32_t surplus, uint8_t* to);

// Columns that a pipeline's overlays are made from, freed together.
class OwnColumns {
 public:
  explicit OwnColumns(XmPool* pool) : pool_(pool) {}
  ~OwnColumns();
  OwnColumns(const OwnColumns&) = delete;
  OwnColumns& operator=(const OwnColumns&) = delete;

  // A zero-filled column of `count` codes, aligned to 8 bytes, or null without memory. Called up to four times.
  uint8_t* make(uint32_t count);

 private:
  XmPool* pool_;
  std::array<void*, 4> blocks_{};
  size_t used_ = 0;
};

}  // namespace veldnls

// Lists of user character tables in use, and what is built from them.
#pragma once

#include <ostream>
#include <utility>
#include <vector>

#include "transcode/user_lists.h"

namespace transcode_test {

// Bytes that the object's pool has given out.
uint64_t used();

// While it lives, the object has a list of its own.
class ListInUse {
 public:
  explicit ListInUse(const UserCharacterTable* list) : head_(nls()->setUserCharacterTables(nls(), list)) {}
  ~ListInUse() {
    nls()->userCharacterTables = nullptr;
    nls()->freeUserCharacterTables(nls(), head_);
  }
  ListInUse(const ListInUse&) = delete;
  ListInUse& operator=(const ListInUse&) = delete;
  UserCharacterTable* head() const { return head_; }

 private:
  UserCharacterTable* head_;
};

inline Bytes columnBytes(const UserCharacterTable& table, int column) {
  return {table.columns[column], table.columns[column] + table.columnBytes};
}

using Pairs = std::vector<std::pair<uint16_t, uint16_t>>;

struct Built {
  uint32_t result = 0;
  Pairs fromSource;  // none when it wasn't built
  Pairs toTarget;
  bool operator==(const Built&) const = default;
};

void PrintTo(const Built& built, std::ostream* stream);

// What an overlay holds; ends it.
Pairs pairsOf(CodeOverlay*& overlay);

// Both overlays of a pair of encodings. Nothing of them is left in the pool.
Built build(CEI source, CEI target, const UserCharacterTable* list);

// A target code as an overlay holds it: its bytes in memory, low address first.
constexpr uint16_t stored(uint16_t code) { return static_cast<uint16_t>(code << 8 | code >> 8); }
// A private-use character as it comes out of a fill.
constexpr uint16_t exchanged(uint16_t unit) { return stored(unit); }

// A turn in 16-bit units: `surplus` units are taken from twice as far on, and a gap of zeros stays.
Codes turned(const Codes& codes, size_t surplus);

inline constexpr CEI ibm = U_IBM939_CE;
inline constexpr CEI sjis = U_SHIFTJIS_CE;
inline constexpr CEI eucJp = U_EUCJP_CE;
inline constexpr CEI unicode = U_L_UNICODE_CE;

}  // namespace transcode_test

// Lists of user character tables as a host would make them.
#pragma once

#include <deque>
#include <vector>

#include "transcode/harness.h"

namespace transcode_test {

using Codes = std::vector<uint16_t>;

// Bytes of codes, high byte first.
inline Bytes bytesOf(const Codes& codes) {
  Bytes bytes;
  for (const uint16_t code : codes) {
    bytes.push_back(static_cast<uint8_t>(code >> 8));
    bytes.push_back(static_cast<uint8_t>(code));
  }
  return bytes;
}

class UserList {
 public:
  struct OfEncoding {
    CEI cei;
    Codes codes;
  };

  // Adds a table with these columns; all of them have the rows of the first.
  UserList& add(const std::vector<OfEncoding>& columns) {
    UserCharacterTable& table = tables_.emplace_back();
    table.columnCount = static_cast<int32_t>(columns.size());
    table.characterCount = static_cast<int32_t>(columns.at(0).codes.size());
    table.columnBytes = 2 * table.characterCount;
    for (size_t i = 0; i < columns.size(); ++i) {
      // Right ahead of a page that can't be read.
      table.columns[i] = columns_.emplace_back(bytesOf(columns[i].codes)).data();
      table.ceis[i] = columns[i].cei;
    }
    if (tables_.size() > 1) tables_[tables_.size() - 2].next = &table;
    return *this;
  }

  UserCharacterTable* head() { return &tables_.front(); }
  UserCharacterTable& table(size_t number) { return tables_.at(number); }

 private:
  std::deque<UserCharacterTable> tables_;
  std::deque<test::GuardedBuffer> columns_;
};

}  // namespace transcode_test

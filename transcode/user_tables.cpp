#include "transcode/user_tables.h"

#include <algorithm>
#include <cstring>

#include "transcode/user_columns.h"

namespace veldnls {

namespace {

// Of the encodings only these are taken over. Those behind them match none.
constexpr int32_t copiedCeis = 6;
constexpr CEI noCei = -1;

// Whether a table's figures agree and its columns stand.
bool isSound(const UserCharacterTable& table) {
  if (table.columnCount < 0 || table.columnCount > tableColumnLimit) return false;
  if (table.characterCount < 0 || table.columnBytes < 0) return false;
  if (table.columnBytes / static_cast<int32_t>(codeBytes) < table.characterCount) return false;
  return std::none_of(table.columns, table.columns + table.columnCount, [](const uint8_t* c) { return c == nullptr; });
}

// Copies the columns one by one; `columnCount` of the copy tells how many it has.
bool copyColumns(XmPool* pool, const UserCharacterTable& table, UserCharacterTable& copy) {
  const auto size = static_cast<uint32_t>(table.columnBytes);
  for (int32_t& count = copy.columnCount; count < table.columnCount; ++count) {
    void* column = nlsPoolAlloc(pool, size, 0);
    if (column == nullptr) return false;
    if (size != 0) std::memcpy(column, table.columns[count], size);
    copy.columns[count] = static_cast<uint8_t*>(column);
  }
  return true;
}

void copyFacts(const UserCharacterTable& table, UserCharacterTable& copy) {
  std::copy(std::begin(table.heading), std::end(table.heading), copy.heading);
  std::copy(std::begin(table.subheading), std::end(table.subheading), copy.subheading);
  std::copy(std::begin(table.codeA), std::end(table.codeA), copy.codeA);
  std::copy(std::begin(table.codeB), std::end(table.codeB), copy.codeB);
  copy.characterCount = table.characterCount;
  copy.columnBytes = table.columnBytes;
  std::fill(std::begin(copy.ceis), std::end(copy.ceis), noCei);
  std::copy(table.ceis, table.ceis + copiedCeis, copy.ceis);
}

}  // namespace

UserCharacterTable* setUserCharacterTables(QZNLS* nls, const UserCharacterTable* list) {
  UserCharacterTable* head = nullptr;
  UserCharacterTable** end = &head;
  for (; list != nullptr; list = list->next) {
    auto* copy = isSound(*list) ? nlsPoolNew<UserCharacterTable>(nls->pool) : nullptr;
    if (copy != nullptr) {
      *end = copy;
      end = &copy->next;
      copyFacts(*list, *copy);
    }
    if (copy == nullptr || !copyColumns(nls->pool, *list, *copy)) {
      freeUserCharacterTables(nls, head);
      return nullptr;
    }
  }
  // Without a copy the list in use stays.
  if (head != nullptr) nls->userCharacterTables = head;
  return head;
}

NlsStatus freeUserCharacterTables(QZNLS* nls, UserCharacterTable* list) {
  UserCharacterTable* last = nullptr;
  while (list != nullptr) {
    UserCharacterTable* next = list->next;
    list->next = last;
    last = list;
    list = next;
  }
  while (last != nullptr) {
    UserCharacterTable* before = last->next;
    for (int32_t i = columnCountOf(*last); i > 0; --i) nlsPoolFree(nls->pool, last->columns[i - 1]);
    nlsPoolFree(nls->pool, last);
    last = before;
  }
  return 0;
}

bool userTablesCover(QZNLS*, CEI a, CEI b, const UserCharacterTable* head) {
  return head != nullptr && placeOf(*head, a) != notFound && placeOf(*head, b) != notFound;
}

}  // namespace veldnls

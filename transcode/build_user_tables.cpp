// The overlays of a pipeline from the host's list. Which columns lie side by side tells which way leads from a code to
// its character: within one table, or by a look-up of a common code in the head of the list.
#include <cstring>

#include "core/registry.h"
#include "transcode/private_use.h"
#include "transcode/user_columns.h"
#include "transcode/user_tables.h"

namespace veldnls {

namespace {

// The codes of both overlays, row by row. A Unicode source has none; any other that is absent is a step that failed.
struct CodeArrays {
  Column sourceCodes;
  Column sourceValues;
  Column targetCodes;
  Column targetValues;

  bool isWhole(bool withSource) const {
    return sourceCodes.present() == withSource && sourceValues.present() == withSource && targetCodes.present() &&
           targetValues.present();
  }
};

// A pair of encodings in a list whose head has both.
struct Selection {
  CEI source;
  CEI target;
  const UserCharacterTable& head;
  const UserCharacterTable& own;  // the table of the source
  int32_t targetPlace;            // in the head
  bool sameWidth;                 // the head and the table behind it have as many columns

  bool isHeadsOwn() const { return source == head.ceis[0]; }
  // The first rows of a column, no more than the head has.
  Column limited(const Column& column) const { return {column.codes, std::min(column.count, rowCountOf(head))}; }
};

const UserCharacterTable* tableAt(const UserCharacterTable* list, int32_t number) {
  while (list != nullptr && number-- > 0) list = list->next;
  return list;
}

// The first table that belongs to Unicode, or null.
const UserCharacterTable* unicodeTable(const UserCharacterTable* list) {
  while (list != nullptr && unicodePlaceOf(*list) != 0) list = list->next;
  return list;
}

// For each row of `keys` the code in `values` beside the same code in `sorted`, a column of the same table; or
// `fallback` where there is none. An absent column without memory or without one of the columns.
Column lookUp(OwnColumns& columns, const Column& keys, const Column& sorted, const Column& values,
              const uint8_t (&fallback)[codeBytes]) {
  if (!keys.present() || !sorted.present() || !values.present()) return {};
  uint8_t* const made = columns.make(keys.count);
  if (made == nullptr) return {};
  for (uint32_t row = 0; row < keys.count; ++row) {
    const int32_t found = rowOf(sorted, keys.at(row));
    const uint8_t* value = found != notFound ? values.at(static_cast<uint32_t>(found)) : fallback;
    std::memcpy(made + codeBytes * row, value, codeBytes);
  }
  return {made, keys.count};
}

Column turned(OwnColumns& columns, const Column& column, uint32_t surplus) {
  if (!column.present()) return {};
  uint8_t* const made = columns.make(column.count);
  if (made == nullptr) return {};
  turnColumn(column, surplus, made);
  return {made, column.count};
}

// The list knows no Unicode: private-use characters stand for the rows, in order. Where the range doesn't last, they
// and the target's codes are turned, but not the source's.
CodeArrays throughPrivateUse(OwnColumns& columns, const Selection& pair, const Column& sourceCodes,
                             const Column& targetValues) {
  const uint32_t count = rowCountOf(pair.head);
  uint8_t* const made = columns.make(count);
  if (made == nullptr) return {};
  const uint32_t surplus = fillPrivateUse(reinterpret_cast<uint16_t*>(made), count, pair.source);
  const Column fill{made, count};
  if (surplus == 0) return {sourceCodes, fill, fill, targetValues};
  const Column turnedFill = turned(columns, fill, surplus);
  return {sourceCodes, turnedFill, turnedFill, turned(columns, pair.limited(targetValues), surplus)};
}

CodeArrays withoutUnicode(OwnColumns& columns, const Selection& pair) {
  const Column ownCodes = columnOf(pair.own, 0);
  if (pair.sameWidth) {
    return throughPrivateUse(columns, pair, ownCodes, columnOf(pair.own, placeOf(pair.own, pair.target)));
  }
  const Column common = columnOf(pair.head, 0);
  const Column targetCodes = columnOf(pair.head, pair.targetPlace);
  if (pair.isHeadsOwn()) return throughPrivateUse(columns, pair, common, targetCodes);
  const EncodingDescriptor* const target = encodingRow(pair.target);
  if (target == nullptr) return {};
  const Column keys = columnOf(pair.own, 1);
  return throughPrivateUse(columns, pair, ownCodes,
                           lookUp(columns, keys, common, targetCodes, target->profile.doubleBlank));
}

constexpr uint8_t ideographicSpace[codeBytes] = {0x30, 0x00};

CodeArrays withUnicode(OwnColumns& columns, const Selection& pair) {
  const UserCharacterTable* const unicode = unicodeTable(&pair.head);
  if (unicode == nullptr) return {};
  const bool fromUnicode = isUnicodeCei(pair.source);
  CodeArrays arrays;
  if (!fromUnicode) arrays.sourceCodes = columnOf(pair.own, 0);
  arrays.targetCodes = columnOf(*unicode, 0);
  if (pair.sameWidth) {
    if (!fromUnicode) arrays.sourceValues = columnOf(pair.own, unicodePlaceOf(pair.own));
    arrays.targetValues = columnOf(*unicode, placeOf(*unicode, pair.target));
    return arrays;
  }
  const Column common = columnOf(pair.head, 0);
  if (!fromUnicode) {
    const Column keys = pair.limited(columnOf(pair.own, pair.isHeadsOwn() ? 0 : 1));
    const Column values = columnOf(pair.head, unicodePlaceOf(pair.head));
    arrays.sourceValues = lookUp(columns, keys, common, values, ideographicSpace);
  }
  const Column keys = columnOf(*unicode, 1);
  arrays.targetValues = lookUp(columns, keys, common, columnOf(pair.head, pair.targetPlace), ideographicSpace);
  return arrays;
}

// The head is Unicode's and the table behind it relates one encoding to Unicode.
CodeArrays unicodeFirst(const Selection& pair) {
  const Column ownCodes = columnOf(pair.own, 0);
  const Column ownUnicode = columnOf(pair.own, 1);
  CodeArrays arrays;
  if (!isUnicodeCei(pair.source)) {
    arrays.sourceCodes = ownCodes;
    arrays.sourceValues = ownUnicode;
  }
  const bool toUnicode = isUnicodeCei(pair.target);
  arrays.targetCodes = toUnicode ? ownCodes : columnOf(pair.head, 0);
  arrays.targetValues = toUnicode ? ownUnicode : columnOf(pair.head, pair.targetPlace);
  return arrays;
}

CodeArrays arraysOf(OwnColumns& columns, const Selection& pair) {
  const UserCharacterTable* const second = pair.head.next;
  const int32_t unicodePlace = unicodePlaceOf(pair.head);
  if (unicodePlace == notFound) return withoutUnicode(columns, pair);
  const bool bothUnicode =
      unicodePlace == 0 && second != nullptr && second->columnCount == 2 && isUnicodeCei(second->ceis[1]);
  return bothUnicode ? unicodeFirst(pair) : withUnicode(columns, pair);
}

// How an overlay's value is read from its two bytes.
using ReadValue = uint16_t (*)(const Column& column, uint32_t row);

uint16_t highByteFirst(const Column& column, uint32_t row) { return column.code(row); }

uint16_t asItStands(const Column& column, uint32_t row) {
  uint16_t value = 0;
  std::memcpy(&value, column.at(row), codeBytes);
  return value;
}

// Null without memory.
CodeOverlay* makeOverlay(XmPool* pool, const Column& keys, const Column& values, ReadValue read) {
  auto* overlay = nlsPoolNew<CodeOverlay>(pool);
  if (overlay == nullptr) return nullptr;
  const uint32_t count = std::min(keys.count, values.count);
  constexpr auto pairBytes = static_cast<uint32_t>(sizeof(NlsCodePair));
  overlay->pairs = static_cast<NlsCodePair*>(nlsPoolAlloc(pool, count * pairBytes, 0));
  if (overlay->pairs == nullptr) {
    nlsPoolFree(pool, overlay);
    return nullptr;
  }
  overlay->count = count;
  for (uint32_t row = 0; row < count; ++row) overlay->pairs[row] = {keys.code(row), read(values, row)};
  return overlay;
}

}  // namespace

void freeOverlay(XmPool* pool, CodeOverlay* overlay) {
  if (overlay->pairs != nullptr) nlsPoolFree(pool, overlay->pairs);
  nlsPoolFree(pool, overlay);
}

uint32_t buildUserTables(QZNLS* nls, CEI source, CEI target, const UserCharacterTable* head, CodeOverlay** fromSource,
                         CodeOverlay** toTarget) {
  if (fromSource != nullptr) *fromSource = nullptr;
  if (toTarget != nullptr) *toTarget = nullptr;
  if (!userTablesCover(nls, source, target, head)) return 0;
  const UserCharacterTable* const own = tableAt(head, placeOf(*head, source));
  if (own == nullptr) return 0;
  const UserCharacterTable* const second = head->next;
  const bool sameWidth = second != nullptr && second->columnCount == head->columnCount;
  OwnColumns columns(nls->pool);
  const Selection pair{source, target, *head, *own, placeOf(*head, target), sameWidth};
  const CodeArrays arrays = arraysOf(columns, pair);
  if (!arrays.isWhole(!isUnicodeCei(source))) return 0;

  CodeOverlay* inward = nullptr;
  if (fromSource != nullptr && arrays.sourceCodes.present()) {
    inward = makeOverlay(nls->pool, arrays.sourceCodes, arrays.sourceValues, highByteFirst);
    if (inward == nullptr) return 0;
  }
  CodeOverlay* outward = nullptr;
  if (toTarget != nullptr) {
    outward = makeOverlay(nls->pool, pair.limited(arrays.targetCodes), arrays.targetValues, asItStands);
    if (outward == nullptr) {
      if (inward != nullptr) freeOverlay(nls->pool, inward);
      return 0;
    }
  }
  if (inward != nullptr) *fromSource = inward;
  if (outward != nullptr) *toTarget = outward;
  return (inward != nullptr ? builtFromSource : 0) | (outward != nullptr ? builtToTarget : 0);
}

}  // namespace veldnls

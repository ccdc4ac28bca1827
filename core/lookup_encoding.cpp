#include "core/name_index.h"
#include "core/registry.h"
#include "core/wide_text.h"
#include "veldnls/cei.h"
#include "veldnls/status.h"

namespace veldnls {

namespace {

constexpr int32_t longestName = 40;

// A name that a kind knows beside its column's texts.
struct LiteralKey {
  int32_t kind;
  const char16_t* text;
  int32_t length;
  CEI cei;
};

constexpr LiteralKey literalKeys[] = {
#include "encodings/literals.inc"
};

// The column that a kind searches, up to its terminator; null for a kind without one.
const char16_t* columnText(const EncodingDescriptor& row, int32_t kind) {
  switch (kind) {
    case NLS_LOOKUP_SHORT_NAME:
      return row.shortName;
    case NLS_LOOKUP_NAME:
      return row.name;
    case NLS_LOOKUP_DESCRIPTION:
      return row.description;
    case NLS_LOOKUP_LONG_DESCRIPTION:
      return row.longDescription;
    case NLS_LOOKUP_IANA_NAME:
      return row.ianaName;
    case NLS_LOOKUP_CCSID:
      return row.ccsid;
    case NLS_LOOKUP_CODE_PAGE:
      return row.codePage;
    case NLS_LOOKUP_JAVA_NAME:
      return row.javaName;
    case NLS_LOOKUP_PREFERRED_NAME:
      return row.preferredName;
    default:
      return nullptr;
  }
}

// True when the folded text is the key.
bool foldsTo(const char16_t* text, const char16_t* key, int32_t keyLength) {
  for (int32_t i = 0; i < keyLength; ++i) {
    if (text[i] == 0 || foldToUpper(text[i]) != key[i]) return false;
  }
  return text[keyLength] == 0;
}

// Two rows stand ahead of those that own their preferred names "Big5-HKSCS" and "Shift_JIS".
CEI ownerOfPreferredName(CEI cei) {
  if (cei == U_IBM950_CE) return U_BIG5_CE;
  if (cei == U_MACOS1_CE) return U_SHIFTJIS_CE;
  return cei;
}

NlsStatus lookupByColumn(const char16_t* key, int32_t keyLength, int32_t kind, CEI* cei) {
  if (columnText(encodingTable[0], kind) == nullptr) return nlsUnknownEncoding;
  for (const EncodingDescriptor& row : encodingTable) {
    if (foldsTo(columnText(row, kind), key, keyLength)) {
      *cei = kind == NLS_LOOKUP_PREFERRED_NAME ? ownerOfPreferredName(row.cei) : row.cei;
      return 0;
    }
  }
  for (const LiteralKey& literal : literalKeys) {
    if (literal.kind == kind && wideEqualExact(literal.text, literal.length, key, keyLength)) {
      *cei = literal.cei;
      return 0;
    }
  }
  return nlsUnknownEncoding;
}

// The index also has keys for groups of encodings; their values lie above the table and are answered as unknown.
NlsStatus lookupByIndex(const char16_t* key, int32_t keyLength, CEI* cei) {
  const int32_t value = nlsTrieLookup(key, keyLength, &encodingNameTrie);
  const bool known = value > 0 && value < NLS_CEI_COUNT;
  *cei = known ? value : 0;
  return known ? 0 : nlsUnknownEncoding;
}

}  // namespace

NlsStatus lookupEncoding(QZNLS*, const char16_t* name, int32_t nameLength, int32_t kind, CEI* cei) {
  if (nameLength < 1 || nameLength > longestName) return nlsUnknownEncoding;
  char16_t key[longestName];
  for (int32_t i = 0; i < nameLength; ++i) key[i] = foldToUpper(name[i]);
  return kind == NLS_LOOKUP_ANY ? lookupByIndex(key, nameLength, cei) : lookupByColumn(key, nameLength, kind, cei);
}

}  // namespace veldnls

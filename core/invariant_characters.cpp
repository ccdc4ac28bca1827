#include "core/registry.h"
#include "core/session.h"
#include "veldnls/cei.h"

namespace veldnls {

namespace {

struct EbcdicGroupPair {
  CEI cei;
  int32_t group;
};

// Encodings of a group have the invariant characters at the same codes.
constexpr EbcdicGroupPair ebcdicGroups[] = {
#include "encodings/ebcdic_groups.inc"
};

constexpr int32_t noGroup = 0;

int32_t ebcdicGroup(CEI cei) {
  for (const EbcdicGroupPair& pair : ebcdicGroups) {
    if (pair.cei == cei) return pair.group;
  }
  return noGroup;
}

// The Unicode forms carry no flag in the table; for this question they stand with ASCII, and UTF-EBCDIC with EBCDIC.
uint32_t invariantFlags(const EncodingDescriptor& row) {
  switch (row.cei) {
    case U_UNICODE_CE:
    case U_B_UNICODE_CE:
    case U_L_UNICODE_CE:
    case U_B_UCS4_CE:
    case U_L_UCS4_CE:
      return NLS_ENCODING_ASCII;
    case U_UTFE_CE:
      return NLS_ENCODING_EBCDIC;
    default:
      return row.flags;
  }
}

}  // namespace

NlsBool8 sharesInvariantCharacters(QZNLS* nls, CEI a, CEI b) {
  if (encodingRow(a) == nullptr || encodingRow(b) == nullptr) return 0;
  if (a == b || a == U_ANY_CE || b == U_ANY_CE) return 1;
  if (a == 0) a = sessionCei(nls);
  if (b == 0) b = sessionCei(nls);
  const EncodingDescriptor* rowA = encodingRow(a);
  const EncodingDescriptor* rowB = encodingRow(b);
  if (rowA == nullptr || rowB == nullptr) return 0;
  const uint32_t common = invariantFlags(*rowA) & invariantFlags(*rowB);
  if ((common & NLS_ENCODING_ASCII) != 0) return 1;
  if ((common & NLS_ENCODING_EBCDIC) == 0) return 0;
  const int32_t group = ebcdicGroup(a);
  return group != noGroup && group == ebcdicGroup(b) ? 1 : 0;
}

}  // namespace veldnls

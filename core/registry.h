// The encoding table and the slots that answer from it. Contracts stand at the slot types in veldnls/encoding.h.
#pragma once

#include "veldnls/encoding.h"
#include "veldnls/nls.h"

namespace veldnls {

// Row of every encoding, by CEI.
extern const EncodingDescriptor encodingTable[NLS_CEI_COUNT];

// The row of `cei`, or null outside 0 to 229.
inline const EncodingDescriptor* encodingRow(CEI cei) {
  return cei >= 0 && cei < NLS_CEI_COUNT ? &encodingTable[cei] : nullptr;
}

// True for a CEI that is a double-byte type number in a CEI's place.
inline bool isAliasCei(CEI cei) { return cei > 0 && cei < 24 && cei != 20; }

NlsStatus lookupEncoding(QZNLS* nls, const char16_t* name, int32_t nameLength, int32_t kind, CEI* cei);
NlsStatus getEncodingDescriptor(QZNLS* nls, CEI cei, const EncodingDescriptor** row);
NlsStatus getBaseEncoding(QZNLS* nls, CEI cei, CEI* base);
int32_t conversionNeeded(QZNLS* nls, CEI source, CEI target);
NlsBool8 sharesInvariantCharacters(QZNLS* nls, CEI a, CEI b);
NlsBool8 localeAcceptsEncoding(const char16_t* locale, int32_t localeLength, CEI cei);
NlsStatus encodingFromMibEnum(int32_t mib, CEI* cei);
CEI resolveDbcsEncoding(QZNLS* nls, int32_t language, int32_t type);
NlsStatus describeDbcsEncoding(QZNLS* nls, CEI cei, int32_t* language, int32_t* type);

}  // namespace veldnls

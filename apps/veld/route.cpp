#include "route.h"

#include "failure.h"
#include "names.h"
#include "veldnls/cei.h"

namespace veld {

namespace {

// Encodings below this, but utf-8, are double-byte types.
constexpr CEI firstPlainEncoding = U_B_UNICODE_CE;

bool isEbcdicPage(QZNLS& nls, CEI cei) {
  const EncodingDescriptor& row = rowOf(nls, cei);
  return row.encodingClass == NLS_CLASS_SINGLE_BYTE && (row.flags & NLS_ENCODING_EBCDIC) != 0;
}

}  // namespace

CEI resolveEncoding(QZNLS& nls, CEI cei) {
  if (cei >= firstPlainEncoding || cei == U_UTF8_CE) return cei;
  const CEI resolved = nls.resolveDbcsEncoding(&nls, 0, cei);
  if (resolved > 0) return resolved;
  if (cei != 0) {
    throw Failure(
        "the name of a double-byte type, as IBM or EUC, stands for an encoding only in a language; name "
        "one with --session-language, as JAPANESE");
  }
  CEI host = 0;
  return nls.getHostEncoding(&nls, &host) == 0 && host > 0 ? host : cei;
}

bool isWildCard(CEI cei) { return cei == U_ANY_CE || cei == U_EBCDICANY_CE; }

std::vector<CEI> planRoute(QZNLS& nls, CEI from, CEI to) {
  const bool copies = nls.conversionNeeded(&nls, from, to) == 0;
  if (copies && to == U_L_UNICODE_CE) return {U_L_UNICODE_CE, U_B_UNICODE_CE, U_L_UNICODE_CE};
  if (!copies && from == U_B_UNICODE_CE && to != U_L_UNICODE_CE) return {from, U_L_UNICODE_CE, to};
  const bool differs = from != to && !isWildCard(from) && !isWildCard(to);
  if (copies && differs && isEbcdicPage(nls, from) && isEbcdicPage(nls, to)) return {from, U_L_UNICODE_CE, to};
  return {from, to};
}

}  // namespace veld

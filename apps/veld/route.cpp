#include "route.h"

#include "failure.h"
#include "names.h"
#include "pipeline.h"
#include "veldnls/cei.h"

namespace veld {

namespace {

// Encodings below this, but utf-8, are double-byte types.
constexpr CEI firstPlainEncoding = U_B_UNICODE_CE;

bool isPage(QZNLS& nls, CEI cei) { return rowOf(nls, cei).encodingClass == NLS_CLASS_SINGLE_BYTE; }

bool isEbcdicPage(QZNLS& nls, CEI cei) {
  return isPage(nls, cei) && (rowOf(nls, cei).flags & NLS_ENCODING_EBCDIC) != 0;
}

bool canBeRead(QZNLS& nls, CEI cei) { return makePipeline(nls, cei, U_L_UNICODE_CE) != nullptr; }
bool canBeWritten(QZNLS& nls, CEI cei) { return makePipeline(nls, U_L_UNICODE_CE, cei) != nullptr; }

// The double-byte sets of these rows are empty.
bool hasOnlySingleBytes(CEI cei) { return cei == U_IBM1381_CE || cei == U_FUJITSUCN_CE || cei == U_HITQUOCN_CE; }

bool goesThroughUtf16(QZNLS& nls, CEI from, CEI to) {
  const bool copies = nls.conversionNeeded(&nls, from, to) == 0;
  if (!copies && from == U_B_UNICODE_CE) return true;
  if (isPage(nls, from) && isMultiByte(nls, to)) return true;
  if (isMultiByte(nls, from) && isPage(nls, to)) return true;
  if (copies) return from != to && isEbcdicPage(nls, from) && isEbcdicPage(nls, to);
  return isPage(nls, from) && isPage(nls, to) && !canBeWritten(nls, from);
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

bool passesAsItIs(QZNLS& nls, CEI from, CEI to) {
  return (isWildCard(from) || isWildCard(to)) && nls.conversionNeeded(&nls, from, to) == 0;
}

bool isMultiByte(QZNLS& nls, CEI cei) {
  const int32_t encodingClass = rowOf(nls, cei).encodingClass;
  return encodingClass == NLS_CLASS_SHIFTED || encodingClass == NLS_CLASS_MULTI_BYTE;
}

void requireTables(QZNLS& nls, CEI from, CEI to) {
  if (passesAsItIs(nls, from, to)) return;
  const std::string noWay =
      "the library has no way from " + displayName(nls, from) + " to " + displayName(nls, to) + ": ";
  for (const CEI cei : {from, to}) {
    if (!canBeRead(nls, cei)) {
      throw Failure(noWay + displayName(nls, cei) +
                    " has no code-page table; choose another encoding (\"veld encodings\" lists them)");
    }
  }
  if (!canBeWritten(nls, to)) {
    throw Failure(noWay + displayName(nls, to) + " can be read, but not written; choose another target");
  }
}

std::vector<std::string> warningsFor(QZNLS& nls, CEI from, CEI to) {
  std::vector<std::string> warnings;
  if (passesAsItIs(nls, from, to)) return warnings;
  if (from == U_UTFE_CE && isMultiByte(nls, to)) {
    warnings.emplace_back("the library reads malformed utf-e as other characters, and does not report it");
  } else if (from == U_UTFE_CE) {
    warnings.emplace_back(
        "the library reads two-byte characters of utf-e (U+00A0 to U+03FF) as others, and does not report it; convert "
        "such text where it was written");
  }
  for (const CEI cei : {from, to}) {
    if (hasOnlySingleBytes(cei)) {
      warnings.push_back("the library has no table of the double-byte characters of " + displayName(nls, cei) +
                         ", so only its single bytes come over");
      if (from == to) break;
    }
  }
  return warnings;
}

std::vector<CEI> planRoute(QZNLS& nls, CEI from, CEI to) {
  if (passesAsItIs(nls, from, to)) return {from, isWildCard(from) ? from : to};
  if (from == U_L_UNICODE_CE && to == from) return {from, U_B_UNICODE_CE, to};
  if (from != U_L_UNICODE_CE && to != U_L_UNICODE_CE && goesThroughUtf16(nls, from, to)) {
    return {from, U_L_UNICODE_CE, to};
  }
  return {from, to};
}

}  // namespace veld

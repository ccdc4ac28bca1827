#include "core/encoding_family.h"
#include "core/registry.h"
#include "core/wide_text.h"
#include "veldnls/cei.h"

namespace veldnls {

namespace {

struct Pair {
  const EncodingDescriptor& source;
  const EncodingDescriptor& target;

  bool bothHave(uint32_t flag) const { return (source.flags & target.flags & flag) != 0; }
  bool eitherIs(CEI cei) const { return source.cei == cei || target.cei == cei; }
};

bool isMultiByte(const EncodingDescriptor& row) { return row.profile.doubleByteSet != 0; }

// The column's own length decides here, which differs from the text's in a few rows.
bool sameCcsid(const Pair& pair) {
  return pair.source.ccsidLength > 0 &&
         wideEqualExact(pair.source.ccsid, pair.source.ccsidLength, pair.target.ccsid, pair.target.ccsidLength);
}

// UTF-16, UTF-32 and UTF-EBCDIC rows have neither flag: any pair with one of them is converted, and so are two rows of
// one form in opposite byte orders.
bool neededWithoutMultiByte(const Pair& pair) {
  if (pair.bothHave(NLS_ENCODING_ASCII)) {
    const bool bothLatin1 = pair.eitherIs(U_WLATIN1_CE) && pair.eitherIs(U_LATIN1_CE);
    return !pair.eitherIs(U_ASCII_CE) && !bothLatin1;
  }
  if (pair.bothHave(NLS_ENCODING_EBCDIC)) return !pair.eitherIs(U_EBCDICANY_CE) && !sameCcsid(pair);
  return true;
}

bool neededWithOneMultiByte(const Pair& pair) {
  if (pair.bothHave(NLS_ENCODING_ASCII)) return !pair.eitherIs(U_ASCII_CE);
  return !(pair.bothHave(NLS_ENCODING_EBCDIC) && pair.eitherIs(U_EBCDICANY_CE));
}

}  // namespace

int32_t conversionNeeded(QZNLS*, CEI source, CEI target) {
  if (source == target || source == U_ANY_CE || target == U_ANY_CE) return 0;
  const EncodingDescriptor* sourceRow = encodingRow(source);
  const EncodingDescriptor* targetRow = encodingRow(target);
  if (sourceRow == nullptr || targetRow == nullptr) return 1;
  const Pair pair{*sourceRow, *targetRow};
  if (isMultiByte(pair.source) && isMultiByte(pair.target)) return familyHead(source) != familyHead(target) ? 1 : 0;
  const bool oneMultiByte = isMultiByte(pair.source) || isMultiByte(pair.target);
  return (oneMultiByte ? neededWithOneMultiByte(pair) : neededWithoutMultiByte(pair)) ? 1 : 0;
}

}  // namespace veldnls

#include "modules/qznlsmb/target_tables.h"

#include "core/text/units.h"
#include "modules/qznlsmb/overlay.h"
#include "modules/qznlsmb/source_tables.h"

namespace veldnls {

uint32_t codeWithoutUsers(const PipelineSide& side, uint32_t unit) {
  if (unit == ideographicSpace) return blankCode(side);
  if (unit >= firstHalfWidthKatakana && unit <= lastHalfWidthKatakana) {
    return side.kanaPairs != nullptr ? side.kanaPairs[unit - firstHalfWidthKatakana] : 0;
  }
  return fromUnicodeSetOf(side).lookUp(static_cast<char16_t>(unit));
}

OutputCode codeOf(const PipelineSide& side, uint32_t codePoint) {
  if (codePoint < firstOfPairs) return {uint32_t{side.singleMap[codePoint]} << 8, false};
  if (codePoint >= firstSupplementary) return {blankCode(side), true};
  if (const NlsCodePair* user = findUserCharacter(side.overlay, codePoint)) return {user->value, false};
  const uint32_t code = codeWithoutUsers(side, codePoint);
  return code != 0 ? OutputCode{code, false} : OutputCode{blankCode(side), true};
}

}  // namespace veldnls

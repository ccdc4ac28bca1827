#include "modules/qznlsmb/source_tables.h"

#include "modules/qznlsgb/tables.h"
#include "modules/qznlsmb/overlay.h"

namespace veldnls {

namespace {

bool isBlank(const PipelineSide& side, uint32_t first, uint32_t second) {
  const uint8_t* blank = side.sourceProfile->doubleBlank;
  return first == blank[0] && second == blank[1];
}

}  // namespace

Meaning meaningOfDouble(const PipelineSide& side, uint32_t code) {
  const NlsCodePair* user = findUserCharacter(side.overlay, code);
  if (user != nullptr && user->value != ideographicSpace) return {user->value, false};
  if (isBlank(side, code >> 8, code & 0xFF)) return {ideographicSpace, false};
  const uint32_t masked = code | codeMask(side.cei);
  const char16_t unit = toUnicodeSetOf(side).lookUp(masked >> 8, masked & 0xFF);
  if (unit == 0) return {ideographicSpace, true};
  return {unit, false};
}

Meaning meaningOfGb18030(const PipelineSide& side, Gb18030Module& module, const uint8_t* at, uint32_t length) {
  uint32_t code = at[0] * 256u + at[1];
  if (length == 4) code = code << 16 | at[2] * 256u | at[3];
  const uint32_t value = module.toUnicode(&module, code) & 0xFFFF;
  return {value, value == gbNotFound && !isBlank(side, at[0], at[1])};
}

}  // namespace veldnls

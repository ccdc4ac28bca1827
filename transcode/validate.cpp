#include "transcode/validate.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "core/registry.h"
#include "transcode/text_rules.h"
#include "transcode/valid_bytes.h"
#include "veldnls/cei.h"
#include "veldnls/status.h"

namespace veldnls {

namespace {

// What 0 and the aliases stand for isn't asked; utf-e and ucsu have no rule.
bool isRefused(CEI cei) { return cei == 0 || isAliasCei(cei) || cei == U_UTFE_CE || cei == U_UCSU_CE; }

std::optional<size_t> faultOfSingleByte(const EncodedText& text, CEI cei) {
  // Any text is one of these.
  if (cei == U_EBCDICANY_CE || cei == U_ANY_CE) return noFault;
  if (validByteMaps[cei] == nullptr) return std::nullopt;
  return faultOfBytes(text, validByteMaps[cei]);
}

// The offset of the first fault, or nothing for an encoding that can't be validated.
std::optional<size_t> firstFault(const EncodedText& text, const EncodingDescriptor& row) {
  switch (row.encodingClass) {
    case NLS_CLASS_SINGLE_BYTE:
      return faultOfSingleByte(text, row.cei);
    case NLS_CLASS_UTF8:
      return faultOfUtf8(text);
    case NLS_CLASS_UTF16:
      return row.cei == U_B_UNICODE_CE ? faultOfUtf16<std::endian::big>(text) : faultOfUtf16<std::endian::little>(text);
    case NLS_CLASS_UTF32:
      return row.cei == U_B_UCS4_CE ? faultOfUtf32<std::endian::big>(text) : faultOfUtf32<std::endian::little>(text);
    case NLS_CLASS_SHIFTED:
      return faultOfShifted(text, row.profile, validByteMaps[row.cei]);
    default:
      return faultOfMultiByte(text, row);
  }
}

}  // namespace

size_t faultOfBytes(const EncodedText& text, const uint8_t* map) {
  const uint8_t* end = text.bytes + text.length;
  const uint8_t* fault = std::find_if(text.bytes, end, [map](uint8_t byte) { return map[byte] == 0; });
  return fault == end ? noFault : static_cast<size_t>(fault - text.bytes);
}

NlsStatus validateEncodedText(QZNLS*, const void* text, uint32_t length, CEI cei, void*, int32_t* offset) {
  if (offset != nullptr) *offset = -1;
  const EncodingDescriptor* row = encodingRow(cei);
  if (row == nullptr || isRefused(cei)) return nlsUnknownEncoding;
  const std::optional<size_t> fault = firstFault({static_cast<const uint8_t*>(text), length}, *row);
  if (!fault) return nlsUnknownEncoding;
  if (*fault == noFault) return 0;
  constexpr size_t farthest = std::numeric_limits<int32_t>::max();
  if (offset != nullptr) *offset = static_cast<int32_t>(std::min(*fault, farthest));
  return nlsInvalidCharacter;
}

}  // namespace veldnls

#include "core/text/blanks.h"

#include "core/text/units.h"
#include "veldnls/status.h"

namespace veldnls {

bool isAllBlank(const uint8_t* text, size_t length, Blank blank) {
  if (length % blank.size != 0) return false;
  for (size_t i = 0; i < length; i += blank.size) {
    const uint32_t unit = blank.size == 1   ? text[i]
                          : blank.size == 2 ? load16<std::endian::little>(text + i)
                                            : load32<std::endian::little>(text + i);
    if (unit != blank.value) return false;
  }
  return true;
}

NlsStatus statusOfRest(bool dropBlanks, const uint8_t* rest, size_t length, Blank blank) {
  if (length == 0) return 0;
  return dropBlanks && isAllBlank(rest, length, blank) ? 0 : nlsOutputTruncated;
}

}  // namespace veldnls

#include "core/registry.h"

#include "veldnls/status.h"

namespace veldnls {

NlsStatus getEncodingDescriptor(QZNLS*, CEI cei, const EncodingDescriptor** row) {
  const EncodingDescriptor* found = encodingRow(cei);
  if (found == nullptr) return nlsUnknownEncoding;
  *row = found;
  return 0;
}

NlsStatus getBaseEncoding(QZNLS* nls, CEI cei, CEI* base) {
  if (cei == 0 || isAliasCei(cei)) cei = resolveDbcsEncoding(nls, 0, cei);
  const EncodingDescriptor* row = encodingRow(cei);
  if (row == nullptr || cei == 0) return nlsUnknownEncoding;
  *base = row->baseCei;
  return 0;
}

}  // namespace veldnls

#include "transcode/validate.h"

#include "veldnls/status.h"

namespace veldnls {

NlsStatus validateEncodedText(QZNLS*, const void*, uint32_t, CEI, void*, int32_t* offset) {
  if (offset != nullptr) *offset = -1;
  return nlsUnknownEncoding;
}

}  // namespace veldnls

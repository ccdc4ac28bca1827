// Journal calls, mapped on the trace output.
#include "core/qznlsstub.h"
#include "veldnls/hostlib/hs.h"

namespace veldnls {

NlsStatus qzlStatusToJnl(void* /*journal*/, int32_t /*level*/, NlsStatus status) {
  switch (status) {
    case nlsNoMemory:
      hsTrace(hostRecords(), "qzlStatusToJnl: Insufficient Memory\n");
      break;
    case nlsBadOsCei:
      hsTrace(hostRecords(), "qzlStatusToJnl: Bad OS CEI\n");
      break;
    case nlsUnknownEncoding:
      hsTrace(hostRecords(), "qzlStatusToJnl: Unknown Encoding\n");
      break;
    default:
      hsTrace(hostRecords(), "qzlStatusToJnl: Unknown Status code (%d)\n", static_cast<int32_t>(status));
  }
  return 0;
}

NlsStatus QzlMessageToJnl(void* /*journal*/, int32_t /*level*/, const char16_t* /*format*/, uint32_t /*flags*/, ...) {
  hsTrace(hostRecords(), "QzlMessageToJnl: \n");
  return 0;
}

}  // namespace veldnls

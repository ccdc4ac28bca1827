// The module's one export.
#include "core/hsnlsmain/hsnlsmain.h"
#include "core/qznlsstub.h"
#include "veldnls/hostlib/hs.h"

namespace {

// The unit name and lines in the message are fixed texts: support staff know them.
constexpr char unit[] = "hs/src/hsnlsmain";
constexpr int tooFewElementsLine = 72;
constexpr int noObjectLine = 103;

constexpr int32_t elementCount = 5;

class CallInProgress {
 public:
  CallInProgress() { veldnls::beginCall(); }
  ~CallInProgress() { veldnls::endCall(); }
  CallInProgress(const CallInProgress&) = delete;
  CallInProgress& operator=(const CallInProgress&) = delete;
};

uint32_t reportFailure(int line) {
  hsTrace(veldnls::hostRecords(), "NLSASSERT failed: %s line=%d\n", unit, line);
  return nlsInitFailed;
}

}  // namespace

extern "C" uint32_t VELDNLSLIB(int32_t count, void** inputVector, void** outHandle) {
  const CallInProgress call;
  if (count < elementCount) return reportFailure(tooFewElementsLine);
  const VeldInputVector records = {
      .memory = static_cast<VeldMemoryRecord*>(inputVector[0]),
      .threadBlock = static_cast<VeldThreadBlock*>(inputVector[1]),
      .unused = nullptr,
      .threads = static_cast<VeldThreadRecord*>(inputVector[3]),
      .files = static_cast<VeldFileRecord*>(inputVector[4]),
  };
  QZNLS* nls = veldnls::storeHostRecords(records) ? veldnls::createNls(nullptr, nullptr) : nullptr;
  if (nls == nullptr) return reportFailure(noObjectLine);
  *outHandle = nls;
  return 0;
}

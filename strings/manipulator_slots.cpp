// No encoding family is built in: every encoding is unknown to this slot.
#include "strings/manipulator_slots.h"

#include "veldnls/status.h"

namespace veldnls {

namespace {

NlsStatus createStringManipulator(QZNLS* /*nls*/, CEI /*cei*/, void* /*options*/, QZNLSSM** manipulator) {
  if (manipulator != nullptr) *manipulator = nullptr;
  return nlsUnknownEncoding;
}

}  // namespace

void installManipulatorSlots(QZNLS* nls) { nls->createStringManipulator = createStringManipulator; }

}  // namespace veldnls

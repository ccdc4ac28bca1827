// No collation module is built in: a collator can't be had for any locale, and no key header is valid.
#include "collate/collator_slots.h"

#include "veldnls/status.h"

namespace veldnls {

namespace {

NlsStatus refuse(QZNLSCollate** collator, NlsStatus* status) {
  if (collator != nullptr) *collator = nullptr;
  if (status != nullptr) *status = nlsCollatorLocaleInvalid;
  return nlsCollatorLocaleInvalid;
}

NlsStatus createCollator(QZNLS* /*nls*/, const CollatorRequest* /*request*/, void* /*journal*/, QZNLSCollate** collator,
                         uint8_t* /*header359*/, NlsStatus* status) {
  return refuse(collator, status);
}

NlsStatus readKeyHeader(QZNLS* /*nls*/, const uint8_t* /*header*/, NlsText60* /*locale*/, NlsText60* /*kind*/,
                        uint32_t* /*flags*/, uint8_t* /*table256*/, int32_t* /*keyCei*/, uint16_t* /*keyVersion*/,
                        void* /*reserved*/, uint32_t* /*info*/) {
  return nlsCollationKeyCorrupt;
}

NlsStatus createCollatorFromHeader(QZNLS* /*nls*/, const uint8_t* /*header*/, void* /*journal*/,
                                   QZNLSCollate** collator, NlsStatus* status) {
  return refuse(collator, status);
}

NlsStatus compareKeyHeaders(void* /*reserved*/, const uint8_t* /*a*/, const uint8_t* /*b*/) {
  return nlsCollationKeyCorrupt;
}

NlsStatus makeKeyHeader(QZNLS* /*nls*/, const CollatorRequest* /*request*/, uint8_t* /*header359*/) {
  return nlsCollatorLocaleInvalid;
}

}  // namespace

void installCollatorSlots(QZNLS* nls) {
  nls->createCollator = createCollator;
  nls->readKeyHeader = readKeyHeader;
  nls->createCollatorFromHeader = createCollatorFromHeader;
  nls->compareKeyHeaders = compareKeyHeaders;
  nls->makeKeyHeader = makeKeyHeader;
}

}  // namespace veldnls

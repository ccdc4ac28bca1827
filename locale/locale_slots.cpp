#include "locale/locale_slots.h"

#include "core/qznlsstub.h"
#include "locale/locale_object.h"
#include "locale/qznlsldb.h"

namespace veldnls {

namespace {

constexpr uint32_t workRecordBytes = 272;  // the caller's own: the library doesn't look at it

void* allocateLocaleWorkRecord(QZLocale* locale, int32_t* size) {
  void* block = nlsPoolAlloc(locale->owner->pool, workRecordBytes, zeroFill);
  if (block != nullptr) *size = workRecordBytes;
  return block;
}

NlsStatus freeLocaleWorkRecord(QZNLS* nls, void* block) { return nlsPoolFree(nls->pool, block); }

}  // namespace

void installLocaleSlots(QZNLS* nls) {
  nls->createLocale = createLocale;
  nls->allocateLocaleWorkRecord = allocateLocaleWorkRecord;
  nls->createDefaultLocale = createDefaultLocale;
  nls->freeLocaleWorkRecord = freeLocaleWorkRecord;
  nls->findLocaleEntry = findLocaleEntry;
}

}  // namespace veldnls

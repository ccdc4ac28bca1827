// No locale object can be made, so there is none to take a work record from.
#include "locale/locale_slots.h"

#include "locale/qznlsldb.h"

namespace veldnls {

namespace {

QZLocale* createLocale(QZNLS* /*nls*/, const char16_t* /*name*/, int32_t /*length*/) { return nullptr; }

void* allocateLocaleWorkRecord(QZLocale* /*locale*/, int32_t* /*size*/) { return nullptr; }

QZLocale* createDefaultLocale(QZNLS* nls) { return nls->createLocale(nls, nullptr, 0); }

NlsStatus freeLocaleWorkRecord(QZNLS* /*nls*/, void* /*block*/) { return 0; }

}  // namespace

void installLocaleSlots(QZNLS* nls) {
  nls->createLocale = createLocale;
  nls->allocateLocaleWorkRecord = allocateLocaleWorkRecord;
  nls->createDefaultLocale = createDefaultLocale;
  nls->freeLocaleWorkRecord = freeLocaleWorkRecord;
  nls->findLocaleEntry = findLocaleEntry;
}

}  // namespace veldnls

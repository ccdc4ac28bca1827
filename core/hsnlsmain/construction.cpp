// Makes and ends the QZNLS object. The order of the steps is part of the contract: what has been set when a step fails
// decides how the failure ends.
#include <initializer_list>

#include "collate/collator_slots.h"
#include "core/characters.h"
#include "core/hsnlsmain/hsnlsmain.h"
#include "core/qznlsstub.h"
#include "core/registry.h"
#include "core/session.h"
#include "core/text_primitives.h"
#include "locale/locale_slots.h"
#include "strings/manipulator_slots.h"
#include "transcode/pipeline.h"
#include "veldnls/cei.h"

namespace veldnls {

namespace {

constexpr CEI fallbackCei = U_WLATIN1_CE;

struct PrebuiltRoute {
  CEI source;
  CEI target;
};

constexpr PrebuiltRoute prebuiltRoutes[NLS_PREBUILT_COUNT] = {
    {U_L_UNICODE_CE, U_L_UCS4_CE},  {U_L_UCS4_CE, U_L_UNICODE_CE},  //
    {U_L_UNICODE_CE, U_UTF8_CE},    {U_UTF8_CE, U_L_UNICODE_CE},    //
    {U_L_UNICODE_CE, U_UTFE_CE},    {U_UTFE_CE, U_L_UNICODE_CE},    //
    {U_WLATIN1_CE, U_L_UNICODE_CE}, {U_L_UNICODE_CE, U_WLATIN1_CE},
};

void report(void* journal, NlsStatus status) {
  if (journal != nullptr) qzlStatusToJnl(journal, journalError, status);
}

NlsStatus destroyNls(void* handle) { return static_cast<QZNLS*>(handle)->release(handle); }

void installCoreSlots(QZNLS* nls) {
  nls->versionQuery = versionQuery;
  nls->minimumVersionQuery = minimumVersionQuery;
  nls->release = releaseNls;
  nls->conversionNeeded = conversionNeeded;
  nls->lookupEncoding = lookupEncoding;
  nls->getEncodingDescriptor = getEncodingDescriptor;
  nls->getCharacterRecord = getCharacterRecord;
  nls->toUpperCharacter = toUpperCharacter;
  nls->toLowerCharacter = toLowerCharacter;
  nls->resolveDbcsEncoding = resolveDbcsEncoding;
  nls->describeDbcsEncoding = describeDbcsEncoding;
  nls->getHostLocaleName = getHostLocaleName;
  nls->getHostEncoding = getHostEncoding;
  nls->getBaseEncoding = getBaseEncoding;
  nls->sharesInvariantCharacters = sharesInvariantCharacters;
  nls->localeAcceptsEncoding = localeAcceptsEncoding;
  nls->encodingFromMibEnum = encodingFromMibEnum;
  nls->getLocaleEncodings = getLocaleEncodings;
  nls->getEncodingLocales = getEncodingLocales;
}

// The lists hold nothing: their handles say that creation took place.
bool createInstanceLists(QZNLS* nls, void* journal) {
  constexpr uint32_t listFlags = 0x20000000;
  constexpr uint32_t pipelineListFlags = 0xA0000000;
  const int32_t params[6] = {1, 0, 1, static_cast<int32_t>(listFlags), 0, 0};
  nls->localeInstances = nlsListCreate(nls->host, params, journal, "Locale instances");
  if (nls->localeInstances == nullptr) return false;
  nls->smInstances = nlsListCreate(nls->host, params, journal, "SM instances");
  if (nls->smInstances == nullptr) return false;
  const int32_t pipelineParams[6] = {1, 0, 1, static_cast<int32_t>(pipelineListFlags), 0, 0};
  nls->pipelineInstances = nlsListCreate(nls->host, pipelineParams, journal, "Pipeline instances");
  return nls->pipelineInstances != nullptr;
}

bool loadLocaleDatabase(QZNLS* nls, void* journal) {
  static constexpr char16_t name[] = u"qznlsldb";
  if (nls->localeDatabase == nullptr) {
    nls->localeDatabase =
        reinterpret_cast<LocaleDatabase*>(nlsLoadExtension(nls->host, name, nlsWideLength(name), journal));
  }
  return nls->localeDatabase != nullptr;
}

void discoverOsCei(QZNLS* nls, void* journal) {
  char16_t name[80];
  uint32_t bytes = 0;
  const char* narrow = activeEncodingName();
  TranscodingPipeline* widen = &nls->prebuiltPipelines[NLS_PREBUILT_WLATIN1_TO_UTF16];
  widen->transcode(widen, narrow, static_cast<uint32_t>(nlsNarrowLength(narrow)), name, sizeof name, &bytes, nullptr);
  CEI cei = 0;
  lookupEncoding(nls, name, static_cast<int32_t>(bytes / sizeof(char16_t)), NLS_LOOKUP_ANY, &cei);
  if (cei == 0) {
    report(journal, nlsBadOsCei);
    cei = fallbackCei;
  }
  nls->osCei = cei;
}

void discoverLocale(QZNLS* nls) {
  static constexpr char16_t fallbackName[] = u"en_US";
  if (discoverHostLocale(nls) == 0) return;
  nls->hostLocaleNameLength = nlsWideLength(fallbackName);
  nlsCopyBytes(fallbackName, nls->hostLocaleName, sizeof fallbackName - sizeof(char16_t));
}

void discoverHostCei(QZNLS* nls) {
  nls->hostCeiStatus = 0;
  // A pipeline that copies, for want of its module, fills fewer units than the length counts.
  char16_t number[100] = {};
  int32_t length = 0;
  if (discoverHostCodePage(nls, number, &length) != 0) {
    nls->hostCei = fallbackCei;
  } else if (lookupEncoding(nls, number, length, NLS_LOOKUP_ANY, &nls->hostCei) != 0) {
    nls->hostCei = fallbackCei;
    nls->hostCeiStatus = nlsUnknownEncoding;
  }
}

QZNLS* fail(QZNLS* nls, XmPool* pool, void* journal) {
  if (journal != nullptr) QzlMessageToJnl(journal, journalError, u"QZNLS initialization failed", 0);
  if (nls != nullptr) {
    // An object that isn't live yet has no destructor: lists or locale database that can't be made are fatal.
    if (nls->destroy == nullptr) fatalStore();
    nls->destroy(nls);
  } else if (pool != nullptr) {
    nlsPoolDestroy(pool);
  }
  return nullptr;
}

}  // namespace

QZNLS* createNls(void* host, void* journal) {
  const int32_t params[3] = {};
  XmPool* pool = nlsPoolCreate(host, params, journal, "qznls pool");
  QZNLS* nls = pool != nullptr ? nlsPoolNew<QZNLS>(pool) : nullptr;
  if (nls == nullptr) {
    report(journal, nlsNoMemory);
    return fail(nullptr, pool, journal);
  }
  nls->pool = pool;
  setMagic(nls->magic);
  nls->host = host;
  installCoreSlots(nls);
  installPipelineSlots(nls);
  installLocaleSlots(nls);
  installCollatorSlots(nls);
  installManipulatorSlots(nls);
  if (!createInstanceLists(nls, journal)) return fail(nls, pool, journal);
  if (!loadLocaleDatabase(nls, journal)) return fail(nls, pool, journal);
  nls->sessionCei = fallbackCei;
  for (int i = 0; i < NLS_PREBUILT_COUNT; ++i) {
    initPipeline(nls, prebuiltRoutes[i].source, prebuiltRoutes[i].target, &nls->prebuiltPipelines[i], nullptr);
  }
  discoverOsCei(nls, journal);
  nls->destroy = destroyNls;
  countObject();
  discoverLocale(nls);
  discoverHostCei(nls);
  return nls;
}

NlsStatus releaseNls(void* handle) {
  auto* nls = static_cast<QZNLS*>(handle);
  if (nls == nullptr) return 0;
  nls->shuttingDown = 1;
  for (void* list : {nls->smInstances, nls->pipelineInstances, nls->localeInstances}) {
    if (list != nullptr) nlsListDestroy(list);
  }
  if (nls->multiByteModule != nullptr) nls->multiByteModule->destroy(nls->multiByteModule);
  if (nls->singleByteModule != nullptr) nls->singleByteModule->destroy(nls->singleByteModule);
  if (nls->localeDatabase != nullptr) nls->localeDatabase->destroy(nls->localeDatabase);
  // The object lies in its own pool.
  if (XmPool* pool = nls->pool; pool != nullptr) nlsPoolDestroy(pool);
  forgetObject();
  return 0;
}

}  // namespace veldnls

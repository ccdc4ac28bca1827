/* The QZNLS object, root of the library, and the one export that makes it. */
#ifndef VELDNLS_NLS_H
#define VELDNLS_NLS_H

#include "veldnls/encoding.h"
#include "veldnls/modules.h"
#include "veldnls/pipeline.h"
#include "veldnls/qzcollate.h"
#include "veldnls/qzlocale.h"
#include "veldnls/qzstring.h"
#include "veldnls/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Places in QZNLS.prebuiltPipelines. */
#define NLS_PREBUILT_UTF16_TO_UTF32 0
#define NLS_PREBUILT_UTF32_TO_UTF16 1
#define NLS_PREBUILT_UTF16_TO_UTF8 2
#define NLS_PREBUILT_UTF8_TO_UTF16 3
#define NLS_PREBUILT_UTF16_TO_UTFE 4
#define NLS_PREBUILT_UTFE_TO_UTF16 5
#define NLS_PREBUILT_WLATIN1_TO_UTF16 6
#define NLS_PREBUILT_UTF16_TO_WLATIN1 7
#define NLS_PREBUILT_COUNT 8

/* Record of function slots and data. Read-only after construction, but for the lazily loaded modules and the user
 * character tables; every slot may be called from any thread unless its type says otherwise. All memory of the object,
 * its pipelines and its locales comes from `pool`: `destroy` gives back the pool and with it whatever the caller
 * failed to destroy. `name` is null. */
struct QZNLS {
  NLS_EXTENSION_FIELDS
  CEI sessionCei; /* 62; the session encoding of CEI 0 is a host option, not this field */
  NlsEstimateOutputLength estimateOutputLength;
  NlsConversionNeeded conversionNeeded;
  NlsLookupEncoding lookupEncoding;
  NlsGetEncodingDescriptor getEncodingDescriptor;
  NlsCreatePipeline createPipeline;
  NlsCreateUtf16Pipeline createToUtf16Pipeline;
  NlsCreateUtf16Pipeline createFromUtf16Pipeline;
  NlsDestroy destroyPipeline;
  NlsConvert convertUtf16ToUtf32;
  NlsConvert convertUtf32ToUtf16;
  NlsConvert convertUtf16ToUtf8;
  NlsConvert convertUtf8ToUtf16;
  NlsConvert convertUtf16ToUtfEbcdic;
  NlsConvert convertUtfEbcdicToUtf16;
  NlsConvertResumable convertUtf16ToUtf32Resumable;
  NlsConvertResumable convertUtf32ToUtf16Resumable;
  NlsConvertResumable convertUtf16ToUtf8Resumable;
  NlsConvertResumable convertUtf8ToUtf16Resumable;
  NlsConvertResumable convertUtf16ToUtfEbcdicResumable;
  NlsConvertResumable convertUtfEbcdicToUtf16Resumable;
  NlsGetCharacterRecord getCharacterRecord;
  NlsMapCharacter toUpperCharacter;
  NlsMapCharacter toLowerCharacter;
  NlsCreateLocale createLocale;
  NlsAllocateLocaleWorkRecord allocateLocaleWorkRecord;
  NlsCreateDefaultLocale createDefaultLocale;
  NlsFreeLocaleWorkRecord freeLocaleWorkRecord;
  NlsResolveDbcsEncoding resolveDbcsEncoding;
  NlsDescribeDbcsEncoding describeDbcsEncoding;
  NlsFindLocaleEntry findLocaleEntry;
  CEI osCei;   /* encoding of the operating system's text interface */
  CEI hostCei; /* encoding of the host's code page */
  int32_t hostLocaleNameLength;
  char16_t hostLocaleName[60]; /* no terminator */
  NlsStatus hostLocaleStatus;  /* 0 or nlsLocaleNotFound */
  NlsStatus hostCeiStatus;     /* 0 or nlsUnknownEncoding */
  NlsCreateCollator createCollator;
  NlsReadKeyHeader readKeyHeader;
  NlsCreateCollatorFromHeader createCollatorFromHeader;
  NlsCompareKeyHeaders compareKeyHeaders;
  NlsGetHostLocaleName getHostLocaleName;
  NlsGetHostEncoding getHostEncoding;
  NlsCreateStringManipulator createStringManipulator;
  NlsGetBaseEncoding getBaseEncoding;
  NlsSharesInvariantCharacters sharesInvariantCharacters;
  NlsLocaleAcceptsEncoding localeAcceptsEncoding;
  NlsEncodingFromMibEnum encodingFromMibEnum;
  NlsSetUserCharacterTables setUserCharacterTables;
  NlsFreeUserCharacterTables freeUserCharacterTables;
  UserCharacterTable* userCharacterTables;
  NlsMakeKeyHeader makeKeyHeader;
  NlsGetLocaleEncodings getLocaleEncodings;
  NlsGetEncodingLocales getEncodingLocales;
  NlsValidateEncodedText validateEncodedText;
  XmPool* pool; /* "qznls pool" */
  void* pipelineInstances;
  void* localeInstances;
  LocaleDatabase* localeDatabase;
  MultiByteModule* multiByteModule;   /* null until first needed */
  SingleByteModule* singleByteModule; /* null until first needed */
  TranscodingPipeline prebuiltPipelines[NLS_PREBUILT_COUNT];
  uint8_t shuttingDown;
  void* smInstances;
};

/* The module's one export: takes the host's support records and makes a QZNLS object.
 *   count        elements of the vector, at least 5; below that nothing of it is read
 *   inputVector  VeldInputVector (host.h) seen as pointers. Each element may be null. Element 1 is copied. The records
 *                of the latest call serve all objects and the export itself: they must live until a later call brings
 *                others or the module is unloaded, and the memory context as long as any object made with it
 *   outHandle    receives the object; untouched on failure
 * Returns 0 or nlsInitFailed. Called on the host's initialising thread; may be called again, each call makes a new
 * object. The caller ends an object with its `destroy`. */
#if defined(VELDNLS_BUILDING)
__attribute__((visibility("default")))
#endif
uint32_t
VELDNLSLIB(int32_t count, void** inputVector, void** outHandle);

/* The type of the export, for hosts that reach it by name. */
typedef uint32_t (*NlsLibraryEntry)(int32_t count, void** inputVector, void** outHandle);

#ifdef __cplusplus
}
#endif

#endif

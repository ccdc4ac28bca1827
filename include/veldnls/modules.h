/* The extensions that the library loads by name: code-page modules and the locale database.
 *
 * An extension is made by a constructor (host, journal), which returns null and gives everything back when memory fails
 * and leaves `destroy` to the loader. Its memory, the record included, comes from its own `pool`.
 */
#ifndef VELDNLS_MODULES_H
#define VELDNLS_MODULES_H

#include "veldnls/encoding.h"
#include "veldnls/locale_record.h"
#include "veldnls/pipeline.h"
#include "veldnls/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* What every code-page module begins with. `name` stays null. */
#define NLS_MODULE_FIELDS \
  NLS_EXTENSION_FIELDS    \
  XmPool* pool;

struct CodePageModule {
  NLS_MODULE_FIELDS
};

/* Setup slot of the single-byte module: chooses tables and run functions for a pair of rows and stores them in the
 * pipeline, which afterwards runs without the module. Returns 0, nlsModuleUnavailable when a row has no table in the
 * direction needed, or nlsUnknownEncoding when no byte map can be had. */
typedef NlsStatus (*NlsSingleByteSetup)(QZNLS* nls, TranscodingPipeline* pipeline, const EncodingDescriptor* source,
                                        const EncodingDescriptor* target);

/* "qznlssb" */
typedef struct SingleByteModule {
  NLS_MODULE_FIELDS
  NlsSingleByteSetup setupByteToByte;    /* class 0 to class 0 */
  NlsSingleByteSetup setupByteToUnicode; /* class 0 to classes 1, 2, 3 */
  NlsSingleByteSetup setupWideToByte;    /* classes 2, 3 to class 0 */
  NlsSingleByteSetup setupUtf8ToByte;    /* class 1 to class 0 */
} SingleByteModule;

typedef struct MultiByteModule MultiByteModule;

/* Setup slot of the multi-byte module: fills one side and its `stage`. Returns 0, or nlsModuleUnavailable when
 * "qznlsgb" is needed and can't be loaded. */
typedef NlsStatus (*NlsMultiByteSetup)(MultiByteModule* module, PipelineSide* side, const EncodingDescriptor* source,
                                       const EncodingDescriptor* target);

typedef struct Gb18030Module Gb18030Module;

/* "qznlsmb" */
struct MultiByteModule {
  NLS_MODULE_FIELDS
  NlsMultiByteSetup setupByteToMultibyte;
  NlsMultiByteSetup setupMultibyteToByte;
  NlsMultiByteSetup setupUtf16ToMultibyte;
  NlsMultiByteSetup setupMultibyteToUtf16;
  NlsMultiByteSetup setupUtf32ToMultibyte;
  NlsMultiByteSetup setupMultibyteToUtf32;
  NlsMultiByteSetup setupUtf8ToMultibyte;
  NlsMultiByteSetup setupMultibyteToUtf8;
  NlsMultiByteSetup setupUtfeToMultibyte;
  NlsMultiByteSetup setupMultibyteToUtfe;
  QZNLS* nls; /* stored by the library when it loads the module */
  Gb18030Module* gbModule;
};

/* Look-up of one character between GB18030 and UTF-16, in both directions; 0x20 if there is none. Only the low 16 bits
 * of a code point count. A code is its bytes read big-endian. */
typedef uint32_t (*NlsGbLookup)(Gb18030Module* module, uint32_t code);

/* "qznlsgb" */
struct Gb18030Module {
  NLS_MODULE_FIELDS
  NlsGbLookup fromUnicode;
  NlsGbLookup toUnicode;
};

/* Fills `*record` with the data of the locale of exactly this name (five 16-bit units, exact case). `requestedName` and
 * the two reserved sections stay as they were; everything else is written, zeros behind texts too. Returns 0, or
 * nlsLocaleNameUnknown with the record as it was. Any thread. */
typedef NlsStatus (*NlsLoadLocaleRecord)(LocaleRecord* record, const char16_t* name, int32_t length);

/* "qznlsldb" */
typedef struct LocaleDatabase {
  NLS_MODULE_FIELDS
  NlsLoadLocaleRecord loadLocaleRecord;
} LocaleDatabase;

#ifdef __cplusplus
}
#endif

#endif

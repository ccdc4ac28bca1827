/* Collators and their persistent key headers.
 *
 * No collator is built in: no slot here makes one, and no header is valid. Any thread.
 */
#ifndef VELDNLS_QZCOLLATE_H
#define VELDNLS_QZCOLLATE_H

#include "veldnls/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Bytes of a collation key header, the one format that outlives a process. */
#define NLS_KEY_HEADER_BYTES 359

typedef struct QZNLSCollate QZNLSCollate;
typedef struct CollatorRequest CollatorRequest;

/* Makes a collator for a request. `*collator` becomes null and `*status` the result; each of the two may be null.
 * Nothing else is read or written. Returns nlsCollatorLocaleInvalid. */
typedef NlsStatus (*NlsCreateCollator)(QZNLS* nls, const CollatorRequest* request, void* journal,
                                       QZNLSCollate** collator, uint8_t* header359, NlsStatus* status);

/* Reads a stored header. Every output may be null; `table256` is a buffer of 256 bytes. Nothing is read or written.
 * Returns nlsCollationKeyCorrupt. */
typedef NlsStatus (*NlsReadKeyHeader)(QZNLS* nls, const uint8_t* header, NlsText60* locale, NlsText60* kind,
                                      uint32_t* flags, uint8_t* table256, int32_t* keyCei, uint16_t* keyVersion,
                                      void* reserved, uint32_t* info);

/* Makes the collator that a stored header describes. `*collator` becomes null and `*status` the result; each of the two
 * may be null. The header isn't read. Returns nlsCollatorLocaleInvalid. */
typedef NlsStatus (*NlsCreateCollatorFromHeader)(QZNLS* nls, const uint8_t* header, void* journal,
                                                 QZNLSCollate** collator, NlsStatus* status);

/* Tells whether two headers describe the same sort order. Neither is read. Returns nlsCollationKeyCorrupt. */
typedef NlsStatus (*NlsCompareKeyHeaders)(void* reserved, const uint8_t* a, const uint8_t* b);

/* Makes the header that a collator for a request would have. Nothing is read or written. Returns
 * nlsCollatorLocaleInvalid. */
typedef NlsStatus (*NlsMakeKeyHeader)(QZNLS* nls, const CollatorRequest* request, uint8_t* header359);

#ifdef __cplusplus
}
#endif

#endif

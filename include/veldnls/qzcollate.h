/* Collators and their persistent key headers. */
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

/* Makes a collator for a request. `*collator` is null on failure. `header359` (359 bytes) and `status` may be null. */
typedef NlsStatus (*NlsCreateCollator)(QZNLS* nls, const CollatorRequest* request, void* journal,
                                       QZNLSCollate** collator, uint8_t* header359, NlsStatus* status);

/* Reads a stored header. Every output may be null; `table256` is a buffer of 256 bytes. A failed read still fills what
 * it could. */
typedef NlsStatus (*NlsReadKeyHeader)(QZNLS* nls, const uint8_t* header, NlsText60* locale, NlsText60* kind,
                                      uint32_t* flags, uint8_t* table256, int32_t* keyCei, uint16_t* keyVersion,
                                      void* reserved, uint32_t* info);

/* Makes the collator that a stored header describes. `*collator` is null on failure. */
typedef NlsStatus (*NlsCreateCollatorFromHeader)(QZNLS* nls, const uint8_t* header, void* journal,
                                                 QZNLSCollate** collator, NlsStatus* status);

/* 0 when two headers describe the same sort order. */
typedef NlsStatus (*NlsCompareKeyHeaders)(void* reserved, const uint8_t* a, const uint8_t* b);

/* Writes the header that a collator for this request would have. */
typedef NlsStatus (*NlsMakeKeyHeader)(QZNLS* nls, const CollatorRequest* request, uint8_t* header359);

#ifdef __cplusplus
}
#endif

#endif

/* Locale objects and the slots that make them. */
#ifndef VELDNLS_QZLOCALE_H
#define VELDNLS_QZLOCALE_H

#include "veldnls/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A locale with its formatters and parsers; a handle. */
typedef struct QZLocale QZLocale;

/* Makes a locale from one of the exact five-unit names ("en_US"), or returns null. The caller destroys it. */
typedef QZLocale* (*NlsCreateLocale)(QZNLS* nls, const char16_t* name, int32_t length);

/* Takes 272 zeroed bytes from the pool of the object that `locale` belongs to and writes 272 to `*size`; null without
 * touching `*size` when memory fails. */
typedef void* (*NlsAllocateLocaleWorkRecord)(QZLocale* locale, int32_t* size);

/* Returns null in every state of the library; callers take that into account. */
typedef QZLocale* (*NlsCreateDefaultLocale)(QZNLS* nls);

/* Gives a work record back. Returns 0. */
typedef NlsStatus (*NlsFreeLocaleWorkRecord)(QZNLS* nls, void* block);

#ifdef __cplusplus
}
#endif

#endif

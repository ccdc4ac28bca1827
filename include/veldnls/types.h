/* Types that every public record of the library is made of.
 *
 * All headers of this folder are plain C11 and C++20. Records hold plain fields in a fixed order with the natural
 * alignment of the platform (LP64); nothing is packed. Numbers of bits in this folder count from 0.
 */
#ifndef VELDNLS_TYPES_H
#define VELDNLS_TYPES_H

#include <stdint.h>

#ifndef __cplusplus
#include <uchar.h>
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* A pointer of a fixed number: a marker or special handle, never memory. */
#ifdef __cplusplus
#define NLS_FIXED_POINTER(type, number) (reinterpret_cast<type*>(static_cast<intptr_t>(number)))
#else
#define NLS_FIXED_POINTER(type, number) ((type*)(intptr_t)(number))
#endif

/* Result of an operation: 0, or one of the values of status.h. */
typedef uint32_t NlsStatus;

/* Truth value of one byte: 0 is false, anything else true. The library writes 0 and 1 only. */
typedef uint8_t NlsBool8;

/* Encoding identifier: a row number of the encoding table, 0 to 229 (see encoding.h and the names in cei.h).
 * 0 stands for the session's encoding; 1 to 23 but 20 are aliases of double-byte types; 204 equals everything. */
typedef int32_t CEI;

typedef struct QZNLS QZNLS;
typedef struct XmPool XmPool;

/* Destructor of any handle, and body of teardown of an extension. Takes the handle itself. Returns 0.
 * Untyped, since a caller destroys a handle without knowing its kind. */
typedef NlsStatus (*NlsDestroy)(void* handle);

/* Writes a version as three numbers. `handle` isn't looked at and may be null; a null output is skipped.
 * `versionQuery` writes 3, 1, 1; `minimumVersionQuery` writes 3, 0, 0. Returns 0. */
typedef NlsStatus (*NlsVersionQuery)(const void* handle, int32_t* major, int32_t* minor, int32_t* patch);

/* The fields at the head of every handle:
 *   magic    the bytes "nevo", without a terminator
 *   name     a type name, as "Transcoding pipeline"; null in the QZNLS object and in code-page modules
 *   destroy  ends the handle; afterwards nothing of it may be read */
#define NLS_HANDLE_FIELDS \
  uint8_t magic[4];       \
  const char* name;       \
  NlsDestroy destroy;

/* The fields at the head of an extension and of the QZNLS object. `host` is the first argument of the constructor,
 * `release` is the body of teardown, to which `destroy` only forwards. */
#define NLS_EXTENSION_FIELDS           \
  NLS_HANDLE_FIELDS                    \
  NlsVersionQuery versionQuery;        \
  NlsVersionQuery minimumVersionQuery; \
  void* host;                          \
  NlsDestroy release;

/* Any handle, seen by its header only. */
typedef struct NlsHandle {
  NLS_HANDLE_FIELDS
} NlsHandle;

/* Any extension, seen by its header only. */
typedef struct NlsExtension {
  NLS_EXTENSION_FIELDS
} NlsExtension;

/* Counted string: `count` 16-bit units of `text`. The count rules; there is no terminator. */
typedef struct NlsText60 {
  int32_t count;
  char16_t text[60];
} NlsText60;

#ifdef __cplusplus
}
#endif

#endif

/* String manipulators: one handle for the string operations of one encoding. */
#ifndef VELDNLS_QZSTRING_H
#define VELDNLS_QZSTRING_H

#include "veldnls/types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct QZNLSSM QZNLSSM;
typedef struct SMString SMString;

/* Makes a string manipulator for an encoding. None is built in: `*manipulator` becomes null, whatever the encoding; it
 * may be null itself. `options` isn't looked at. Returns nlsUnknownEncoding. Any thread. */
typedef NlsStatus (*NlsCreateStringManipulator)(QZNLS* nls, CEI cei, void* options, QZNLSSM** manipulator);

#ifdef __cplusplus
}
#endif

#endif

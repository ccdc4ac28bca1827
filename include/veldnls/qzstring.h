/* String manipulators: one handle for the string operations of one encoding. */
#ifndef VELDNLS_QZSTRING_H
#define VELDNLS_QZSTRING_H

#include "veldnls/types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct QZNLSSM QZNLSSM;
typedef struct SMString SMString;

/* Makes a string manipulator for an encoding; `options` must be null. `*manipulator` is null on failure. */
typedef NlsStatus (*NlsCreateStringManipulator)(QZNLS* nls, CEI cei, void* options, QZNLSSM** manipulator);

#ifdef __cplusplus
}
#endif

#endif

/* Options of the host, as the host layer reads them. */
#ifndef VELDNLS_HOSTLIB_OPT_H
#define VELDNLS_HOSTLIB_OPT_H

#include "veldnls/host.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Reads an integer option by its name through VeldMemoryRecord.readOption. Returns 0 when it has a value, and -1, with
 * `*value` unchanged, when it has none or the host has no option table. */
int32_t optReadInteger(const VeldInputVector* host, const char* name, int32_t* value);

#ifdef __cplusplus
}
#endif

#endif

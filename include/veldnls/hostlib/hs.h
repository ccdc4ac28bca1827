/* Trace output of the host layer, and the end of a process that can't go on. */
#ifndef VELDNLS_HOSTLIB_HS_H
#define VELDNLS_HOSTLIB_HS_H

#include "veldnls/host.h"

#ifdef __cplusplus
extern "C" {
#endif

#if defined(__GNUC__)
#define HS_PRINTF_LIKE(text, first) __attribute__((format(printf, text, first)))
#define HS_NO_RETURN __attribute__((noreturn))
#else
#define HS_PRINTF_LIKE(text, first)
#define HS_NO_RETURN
#endif

/* Prints local time, process id, program name and a message on standard output, and flushes it. The message ends its
 * own line. `host`, or its file record, may be null: then the program name is "VELD". Any thread; there is no lock, so
 * lines of concurrent threads may interleave. */
void hsTrace(const VeldInputVector* host, const char* format, ...) HS_PRINTF_LIKE(2, 3);

/* Sets the program name in trace lines; 64 characters at most are kept, null or an empty name means "VELD". Without a
 * file record nothing happens. To be called before threads trace. */
void hsSetProgramName(VeldInputVector* host, const char* name);

/* Ends the process on purpose, for a dump that shows the caller: stores to `address`, which must be 0 or 1, where no
 * process has memory. */
void hsCrash(uintptr_t address) HS_NO_RETURN;

#ifdef __cplusplus
}
#endif

#endif

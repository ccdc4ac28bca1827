/* Mutexes, thread identity and thread-local values. */
#ifndef VELDNLS_HOSTLIB_HT_H
#define VELDNLS_HOSTLIB_HT_H

#include "veldnls/host.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A mutex is re-entrant: its holder may take it again, and leaves it as often. Each call returns 0, or the system's
 * error number when the mutex isn't held by the caller (unlock) or is held (destroy). It must have been initialised. */

/* `attributes` must be null; else the mutex is left unset and the result is -1. */
int32_t htMutexInit(HtMutex* mutex, const void* attributes);
int32_t htMutexLock(HtMutex* mutex);
int32_t htMutexUnlock(HtMutex* mutex);
int32_t htMutexDestroy(HtMutex* mutex);

/* Identity of the calling thread, the same in every copy of this code. Never 0. May be that of a thread that ended. */
HtThreadId htThreadSelf(void);

/* 1 when the process is known to have no other thread than the caller's, else 0. */
int32_t htSingleThread(void);

/* Thread-local values, by an index of the process that is never 0. A thread's value is null until it sets one. Nothing
 * is called with the value when the thread ends. */

/* Returns 0, or -1 when the system has no more. */
int32_t htTlsCreate(uint32_t* index);
/* Null for index 0. */
void* htTlsGet(uint32_t index);
/* Returns 0, or -1 for index 0 or one that doesn't exist. */
int32_t htTlsSet(uint32_t index, void* value);
int32_t htTlsDelete(uint32_t index);

#ifdef __cplusplus
}
#endif

#endif

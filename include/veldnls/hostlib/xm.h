/* Memory pools: growable sets of chunks with a lock each, for many threads, cheap to throw away whole.
 *
 * A pool is of kind XM_KIND_VARIABLE (blocks of any size) or XM_KIND_MARK (bump allocation without free); fixed cells
 * serve the allocator's own records. All state stands in the XmContext of the host's memory record, so that every copy
 * of this code in the process works on the same pools.
 *
 * `host` is the input vector; it and its elements may be null where the call says nothing else. A pool that is named by
 * its address works on the context that it was made in, whichever the record names now. Every call that takes memory
 * asks VeldMemoryRecord.allowAllocation, possibly with the pool's lock held.
 *
 * Pool handles: the address of a pool, XM_THREAD_POOL, XM_SUPERVISOR_POOL, or null for no pool. A special handle for
 * which there is no pool counts as null. In a thread's record XM_SUPERVISOR_POOL means that pool, and XM_THREAD_POOL
 * the default pool.
 *
 * Threads: all calls may run at once on one pool, but for xminit, xmterm and, on the pool that it ends, xmdestroy.
 * Locks are taken in the order pool, built-in pool, context.
 */
#ifndef VELDNLS_HOSTLIB_XM_H
#define VELDNLS_HOSTLIB_XM_H

#include "veldnls/host.h"
#include "veldnls/status.h"

#ifdef __cplusplus
extern "C" {
#endif

/* All pool sizes are rounded up to a multiple of this number of bytes. */
#define XM_GRANULE 1024

/* For xmfree: the block's length stands in its header. */
#define XM_SIZE_IN_HEADER (-1)

/* What an allocation of 0 bytes gives: not null, and not memory. xmfree ignores it. */
#define XM_NO_BYTES NLS_FIXED_POINTER(void, 1)

/* ---- Context ---- */

/* Builds the context of the host's memory record, which mustn't be null, and stores it there; gives the one that is
 * there already, if any. Returns null, and stores nothing, when memory fails. */
XmContext* xminit(VeldInputVector* host);

/* Ends a context: its default pool, built-in pools and locks, and all memory that xmsysalloc gave. All other pools must
 * have been destroyed; what is left of them can't be used any more. hsmemterm, which closes the high-memory state,
 * comes before it. Clears the record's pointer if it names this context. Null is ignored. */
void xmterm(VeldInputVector* host, XmContext* context);

/* Sets the ceiling on the bytes taken through xmsysalloc; what is taken stays. Returns 0. */
uint32_t xmsetlimit(const VeldInputVector* host, uint32_t bytes);

/* ---- Pools ---- */

/* Makes a pool with a first chunk of `initialSize` bytes, none for 0, that grows by multiples of `extensionSize`, or
 * not at all for 0. Both are rounded up to XM_GRANULE. `flags`: XM_ZERO, XM_LENGTH_HEADER, XM_MARK_STYLE,
 * XM_HIGH_MEMORY, XM_EXECUTABLE; of the last two XM_HIGH_MEMORY wins. Returns null when memory fails. */
XmPool* xmcreate(const VeldInputVector* host, uint32_t initialSize, uint32_t extensionSize, uint32_t flags);

/* The same with a status: 0, or xmCreateFailed with a null `*out`. `unused` isn't looked at. */
uint32_t xmcreateChecked(const VeldInputVector* host, XmPool** out, void* unused, uint32_t initialSize,
                         uint32_t extensionSize, uint32_t flags);

/* Gives back all memory of a pool. Its record is filled with 0x11. Null and the built-in pools are ignored. */
void xmdestroy(const VeldInputVector* host, XmPool* pool);

/* Frees all blocks of a pool at once and keeps its chunks. Returns 0, or xmNullPool. */
uint32_t xmreset(const VeldInputVector* host, XmPool* pool);

/* ---- Blocks ---- */

/* Gives `size` bytes aligned to 8, or null when the handle is null, memory fails, the limit is reached or a pool of
 * cells is asked for more than a cell; the pool stays valid. A size of 0 gives XM_NO_BYTES. `flags`, ORed with the
 * pool's: XM_ZERO; XM_LENGTH_HEADER, for blocks to be freed with XM_SIZE_IN_HEADER. */
void* xmalloc(const VeldInputVector* host, XmPool* pool, uint32_t size, uint32_t flags);

/* xmalloc on XM_THREAD_POOL with XM_ZERO and XM_LENGTH_HEADER; ends the process with code 1 if it fails. */
void* xmallocOrExit(const VeldInputVector* host, uint32_t size);

/* Frees a block. `size` is what xmalloc was asked for, or XM_SIZE_IN_HEADER; in a pool with XM_LENGTH_HEADER it isn't
 * looked at. Null, XM_NO_BYTES, an address in no chunk of the pool, one that is no cell's in a pool of cells, and all
 * blocks of a mark-style pool are ignored.
 *
 * A length of 0 means that the header was overwritten: two lines on standard output, then a store to address 0, so that
 * a dump catches the caller. A block that overlaps free memory or the end of its chunk gets a message on descriptor 2
 * and is linked all the same, unless it is on the chain already or less than 8 bytes before the end. What is allocated
 * later stays in the chunk. */
void xmfree(const VeldInputVector* host, XmPool* pool, void* address, int32_t size);

/* Take and leave the lock of a pool, given by its address. The thread that holds it may take it again, and may make any
 * call on the pool. */
void xmpoollock(XmPool* pool);
void xmpoolunlock(XmPool* pool);

/* ---- Memory of chunks ---- */

/* Gives `size` bytes aligned to 1,024, or null when memory or the limit fails, or for 0 bytes. A nonzero `*zero` asks
 * for zeroed memory; null doesn't. Calls that follow each other get neighbouring memory where they can. */
void* xmsysalloc(const VeldInputVector* host, uint32_t size, int* zero);

/* Gives back memory of xmsysalloc, or the whole of neighbouring pieces in one call; their sizes must then be multiples
 * of XM_GRANULE for the account to be right. Other addresses are ignored. */
void xmsysfree(const VeldInputVector* host, void* address, uint32_t size);

/* Chunks of high memory, by the integer option HIMEMENABLE: 0, or a negative value, means xmsysalloc; else whole pages
 * that don't count against the limit; at 2 each call is traced. Without the option it is 1. The option is read once in
 * the life of a context. */
void* hshimalloc(const VeldInputVector* host, uint32_t size);
/* An error of the system is traced and ends the process with code 1. */
void hshifree(const VeldInputVector* host, void* address, uint32_t size);

/* Zeroed pages that may hold code; sets `*zero`, if given, to 1. A failure is traced and gives null. */
void* hscgmalloc(const VeldInputVector* host, uint32_t size, int* zero);
/* An error of the system is traced and ends the process with code 1. */
void hscgfree(const VeldInputVector* host, void* address, uint32_t size);

/* Closes the high-memory state. `handle` is what xminit gave, in the record that names it; with any other value the
 * process is aborted. High memory may still be given back afterwards, and none may be asked for. */
void hsmemterm(const VeldInputVector* host, const void* handle);

#ifdef __cplusplus
}
#endif

#endif

/* What a host hands in: its support records, the services that the library asks of it, and the memory pool records
 * that host and library share.
 *
 * Host and library each hold a copy of the host-layer code (include/veldnls/hostlib/) and work on the same records.
 * That code keeps no state of its own: all of it stands in the records below.
 */
#ifndef VELDNLS_HOST_H
#define VELDNLS_HOST_H

#include "veldnls/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Services ---- */

/* Answers of the default services that stand for a handle. Destroying null or this marker does nothing. */
#define NLS_MARKER_HANDLE NLS_FIXED_POINTER(void, 1)

/* Types of nlsGetOption. */
#define NLS_OPTION_INTEGER 3 /* a 4-byte integer */
#define NLS_OPTION_TEXT 4    /* wide text; sizes are in bytes */

/* Makes a list or a lock. The result begins with NLS_HANDLE_FIELDS; its `destroy` ends it, and the library calls that
 * once. Null in place of a list of the object ends the process; in place of a handle of a locale, no locale is made.
 * Nothing is ever put into the object's lists, "... instances".
 *   host     null
 *   params   six words, to be read until the call returns: zeros for a lock; for a list 1, 0, 1, then 0x20000000, or
 *            0xA0000000 for "Pipeline instances", and two zeros
 *   journal  null
 *   name     constant text */
typedef void* (*NlsServiceCreate)(void* host, const int32_t* params, void* journal, const char* name);
/* Sets an option of a list: option 0 of a locale's list of message modules to 1, once, behind `listCreate`. The result
 * isn't looked at. */
typedef NlsStatus (*NlsServiceTreeSetOption)(void* tree, int32_t option, int32_t value);
/* Takes a lock; `exclusive` and `wait` are 1. Returns 0 when the thread holds it; another status goes to the caller of
 * the slot, and the lock isn't released then. No thread takes a lock that it holds. */
typedef NlsStatus (*NlsServiceLockAcquire)(void* lock, int32_t exclusive, int32_t wait);
/* Releases it, in the thread that took it. The result isn't looked at. */
typedef NlsStatus (*NlsServiceLockRelease)(void* lock);

/* Searches a keyed list: the value under the key, or null. Keys are `keyLength` bytes. It is called without a lock too,
 * also while another thread inserts into the same list, which has to bear that. */
typedef void* (*NlsServiceTreeSearch)(void* tree, void* zero1, void* zero2, const void* key, int32_t keyLength);
/* Lists a value under a copy of a key that isn't there yet. Returns 0 when the list has taken the value. It is the
 * list's from then on, which ends it through its `destroy` when the list itself is destroyed. After another status the
 * library ends the value. */
typedef NlsStatus (*NlsServiceTreeInsert)(void* tree, void* zero1, void* zero2, void* value, int32_t zero3,
                                          const void* key, int32_t keyLength, int32_t zero4);

/* Reads an option by its name, `nameLength` units long. `*size` is the buffer's size in bytes on entry and the value's
 * on return. Returns 0 when the option has a value; any other status counts as none. Asked anew whenever it is needed.
 * The options are QZNLS.XPA_SESSION_CEI, an integer, and QZNLS.DBCSLANG, a text, of which 256 bytes have room. `host`
 * is null. */
typedef NlsStatus (*NlsServiceGetOption)(void* host, const char16_t* name, int32_t nameLength, int32_t type,
                                         void* buffer, int32_t* size);
/* Asks a message module, which `loadExtension` made, for its text; without a lock. `code` is 0, `data` and `size` are
 * what getLocaleMessage was given: a buffer, and its capacity. Returns 0, or the status that the slot returns. */
typedef NlsStatus (*NlsServiceOpenMessageBundle)(void* bundle, int32_t code, void* data, int32_t size);

/* Makes an extension, or returns null when there is none of that name. It begins with NLS_EXTENSION_FIELDS and has a
 * `release`, which gives back all that is the extension's; the library sets `destroy` to a function of its own, which
 * calls `release` and returns its status. `host` and `journal` are null. Each call gives a handle of its own, since
 * each is ended once: by the library, or by the list that has taken it. */
typedef void* (*NlsServiceLoadExtension)(void* host, const char16_t* name, int32_t nameLength, void* journal);

/* Both are asked once for each object, by the export. */
typedef int32_t (*NlsServiceHostCodePage)(void);
typedef uint32_t (*NlsServiceHostLocaleId)(void);

/* The services that a host may replace, through VeldMemoryRecord.services. A member that is null, or that lies behind
 * `size`, means the default. The defaults are constants (lists and locks are NLS_MARKER_HANDLE) and, for the calls that
 * no server path reaches, assertion stubs that end the process. Handles made by `listCreate` and `lockCreate` of a host
 * begin with a handle header whose `destroy` ends them. Members may be called from any thread, and by several
 * at a time. */
typedef struct NlsHostServices {
  uint32_t size; /* sizeof(NlsHostServices) as the host knows it */
  NlsServiceCreate listCreate;
  NlsServiceCreate lockCreate;
  NlsServiceTreeSetOption treeSetOption;
  NlsServiceLockAcquire lockAcquire;
  NlsServiceLockRelease lockRelease;
  NlsServiceTreeSearch treeSearch;
  NlsServiceTreeInsert treeInsert;
  NlsServiceGetOption getOption;
  NlsServiceOpenMessageBundle openMessageBundle;
  NlsServiceLoadExtension loadExtension; /* asked for names that the library doesn't know; default: null */
  NlsServiceHostCodePage hostCodePage;   /* a number that lookupEncoding knows by any-name; default: environment */
  NlsServiceHostLocaleId hostLocaleId;   /* a Windows locale identifier; default: environment */
} NlsHostServices;

/* ---- Memory pools ---- */

/* A mutex of the platform; re-entrancy is the pool's own. Initialised by htMutexInit, never copied. */
typedef struct HtMutex {
  uint64_t opaque[8];
} HtMutex;

/* Identity of a thread as the system gives it; 0 is no thread. */
typedef uint64_t HtThreadId;

/* Kinds of pool. */
#define XM_KIND_VARIABLE 0 /* blocks of any size */
#define XM_KIND_CELLS 1    /* cells of one size */
#define XM_KIND_MARK 2     /* bump allocation, no free */

/* Pool and allocation flags; those of a call are ORed with the pool's. */
#define XM_ZERO UINT32_C(0x4)           /* zero-fill the allocation */
#define XM_LENGTH_HEADER UINT32_C(0x20) /* each block has a length header; on a pool also 16-byte rounding */
#define XM_MARK_STYLE UINT32_C(0x200)   /* xmcreate: kind XM_KIND_MARK */
#define XM_HIGH_MEMORY UINT32_C(0x1000) /* chunks come from hshimalloc */
#define XM_EXECUTABLE UINT32_C(0x2000)  /* chunks come from hscgmalloc */

/* Bits of XmChunk.state. */
#define XM_CHUNK_ZERO UINT32_C(0x1)         /* memory from `bump` on is known to be zero */
#define XM_CHUNK_FIRST UINT32_C(0x40000000) /* the pool's first chunk, never merged */

typedef struct XmContext XmContext;
typedef struct XmChunk XmChunk;

/* A stretch of a pool's memory. */
struct XmChunk {
  uint32_t state;
  uint8_t* start;
  uint8_t* end;       /* one past the last byte */
  uint8_t* bump;      /* the first never-used byte, null if nothing remains */
  uint8_t* freeChain; /* first free block or cell, ascending by address in kind 0 */
  XmPool* owner;      /* in chunks of descriptors only */
  XmChunk* next;
  void* index; /* the allocator's index of free blocks, or null */
};

struct XmPool {
  uint8_t eyeCatcher[4]; /* "POOL"; "POOH", "PUDL", "SUPV" in the built-in ones */
  int32_t kind;
  uint32_t flags;
  int32_t lockDepth; /* nesting of `lock` in the owning thread */
  HtMutex lock;
  HtThreadId owner; /* holder of `lock`, or 0 */
  uint32_t initialSize;
  uint32_t extensionSize; /* growth step; 0: the pool can't grow */
  uint32_t cellSize;
  XmChunk* chunks;
  HtThreadId creator;
  XmPool* next; /* in XmContext.pools */
  XmPool* previous;
  XmContext* context; /* the context that the pool belongs to, whichever is current */
  void* index;        /* the allocator's directory of chunks, or null */
  uint64_t reserved[4];
};

/* A stretch of address space from which chunks are handed out ascending; kept by the allocator. */
typedef struct XmRange XmRange;

/* The shared global record of all pools, one per process. */
struct XmContext {
  int32_t initialised; /* 1 when complete */
  int32_t pageSize;
  int32_t granule; /* 1,024: pool sizes are rounded up to it */
  XmPool* pools;   /* head of the list of pools made by xmcreate */
  uint32_t limit;  /* ceiling on bytes taken through xmsysalloc, initially 0x7FFFFFFF */
  uint32_t limit2; /* not consulted */
  uint32_t inUse;
  uint32_t highWater;
  XmPool poolHeaders;      /* cells of one XmPool each */
  XmPool chunkDescriptors; /* cells of one XmChunk each */
  XmPool supervisor;
  XmPool* defaultPool;
  HtMutex lock; /* guards pools, inUse, limit, ranges */
  XmRange* ranges;
  int32_t highMemoryState; /* -1 not yet known, 0 plain allocation, 1 page allocation, 2 the same, traced */
  uint64_t reserved[4];
};

/* Special pool handles. */
#define XM_THREAD_POOL NLS_FIXED_POINTER(XmPool, -1)     /* the calling thread's own pool, or the default pool */
#define XM_SUPERVISOR_POOL NLS_FIXED_POINTER(XmPool, -2) /* XmContext.supervisor */

/* What the value of the per-thread key points to. */
typedef struct VeldThreadMemory {
  XmPool* pool; /* an address or a special handle; null: the default pool */
} VeldThreadMemory;

/* ---- Support records, the elements of the export's input vector ---- */

/* Element 0. With a context the record is read whenever a member is needed. Without one the library makes a context of
 * its own, once per module, which never stands in the record and ends when the module unloads, unless an object is
 * alive then and the process has several threads; the other members then count as they are at the call of the export.
 */
typedef struct VeldMemoryRecord {
  XmContext* context;
  const NlsHostServices* services; /* null: the defaults */
  /* Asked by every call that takes memory of a pool, with its size in bytes; 0 makes the call fail as if memory were
   * exhausted. Null means yes. Any thread. */
  NlsBool8 (*allowAllocation)(uint32_t size);
  /* Reads an integer option of the host by its narrow name; 0 when it has a value. Null: there is no option table. It
   * mustn't take high memory from this library. */
  int32_t (*readOption)(const char* name, int32_t* value);
  uint64_t reserved[4];
} VeldMemoryRecord;

/* Element 1, 64 bytes, copied by the export. */
typedef struct VeldThreadBlock {
  uint32_t words[15]; /* the host's own */
  uint32_t threadKey; /* htTlsCreate index whose value is the thread's VeldThreadMemory; 0: none */
} VeldThreadBlock;

typedef struct HtContext HtContext;

/* Element 3. */
typedef struct VeldThreadRecord {
  HtContext* context;
  uint64_t reserved[4];
} VeldThreadRecord;

typedef struct WinIoWrap WinIoWrap;
typedef struct MessageCatalogue MessageCatalogue;

/* Element 4. */
typedef struct VeldFileRecord {
  WinIoWrap* files;
  MessageCatalogue* catalogue; /* null: no call works on it yet */
  char programName[68];        /* in trace lines, at most 64 characters; empty: "VELD" */
  uint64_t reserved[4];
} VeldFileRecord;

/* The input vector. Its elements, in order, are the pointers that VELDNLSLIB takes as void*[5]; each may be null. The
 * host layer takes the same record as its first argument, so that host and library work on one state. */
typedef struct VeldInputVector {
  VeldMemoryRecord* memory;
  VeldThreadBlock* threadBlock;
  void* unused; /* never read */
  VeldThreadRecord* threads;
  VeldFileRecord* files;
} VeldInputVector;

#ifdef __cplusplus
}
#endif

#endif

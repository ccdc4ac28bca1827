/* The headers of the host layer as C11, and a call of each through them. */
#include "veldnls/hostlib/hs.h"
#include "veldnls/hostlib/ht.h"
#include "veldnls/hostlib/msg.h"
#include "veldnls/hostlib/opt.h"
#include "veldnls/hostlib/xm.h"

int cHostWorks(void);

int cHostWorks(void) {
  VeldMemoryRecord memory = {0};
  VeldFileRecord files = {0};
  VeldInputVector host = {&memory, 0, 0, 0, &files};
  int32_t value = 0;
  XmContext* context = xminit(&host);
  XmPool* pool = xmcreate(&host, XM_GRANULE, 0, XM_LENGTH_HEADER);
  void* block = xmalloc(&host, pool, 16, XM_ZERO);
  int works = context != 0 && pool != 0 && block != 0 && block != XM_NO_BYTES && files.catalogue == 0;
  works = works && xmalloc(&host, XM_THREAD_POOL, 8, 0) != 0 && xmalloc(&host, XM_SUPERVISOR_POOL, 8, 0) != 0;
  works = works && htThreadSelf() != 0 && optReadInteger(&host, "ANY", &value) != 0;
  hsSetProgramName(&host, "c");
  works = works && files.programName[0] == 'c';
  xmfree(&host, pool, block, XM_SIZE_IN_HEADER);
  xmdestroy(&host, pool);
  xmterm(&host, context);
  return works && memory.context == 0;
}

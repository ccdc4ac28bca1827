// Construction and teardown of the QZNLS object.
#pragma once

#include "veldnls/nls.h"

namespace veldnls {

// Makes the object, or returns null when memory fails. Reports go to `journal` if it isn't null.
QZNLS* createNls(void* host, void* journal);

// The slot `release`: ends what the object holds, its pool and with it the object itself. Null does nothing.
NlsStatus releaseNls(void* handle);

}  // namespace veldnls

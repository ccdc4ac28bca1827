/* Everything that a host needs: the object with its slots, the statuses, the encodings and the support records. */
#ifndef VELDNLS_VELDNLS_H
#define VELDNLS_VELDNLS_H

#include "veldnls/cei.h"
#include "veldnls/encoding.h"
#include "veldnls/host.h"
#include "veldnls/locale_record.h"
#include "veldnls/modules.h"
#include "veldnls/nls.h"
#include "veldnls/pipeline.h"
#include "veldnls/qzcollate.h"
#include "veldnls/qzlocale.h"
#include "veldnls/qzstring.h"
#include "veldnls/status.h"
#include "veldnls/types.h"

#endif

/* Message catalogues.
 *
 * There is no call yet. VeldFileRecord.catalogue, of the incomplete type MessageCatalogue, is where the tables that
 * look-ups share in a process are to hang; the host keeps it null.
 */
#ifndef VELDNLS_HOSTLIB_MSG_H
#define VELDNLS_HOSTLIB_MSG_H

#include "veldnls/host.h"

#endif

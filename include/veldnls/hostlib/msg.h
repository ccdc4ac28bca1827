/* Message catalogues.
 *
 * The tables that message look-ups share in a process hang at VeldFileRecord.catalogue, of the incomplete type
 * MessageCatalogue. No call works on them yet; the pointer is the host's to keep null.
 */
#ifndef VELDNLS_HOSTLIB_MSG_H
#define VELDNLS_HOSTLIB_MSG_H

#include "veldnls/host.h"

#endif

// User character tables of a host. The library takes none over yet: setting a list is refused.
#pragma once

#include "veldnls/nls.h"

namespace veldnls {

UserCharacterTable* setUserCharacterTables(QZNLS* nls, const UserCharacterTable* list);
NlsStatus freeUserCharacterTables(QZNLS* nls, UserCharacterTable* list);

}  // namespace veldnls

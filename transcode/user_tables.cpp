#include "transcode/user_tables.h"

namespace veldnls {

UserCharacterTable* setUserCharacterTables(QZNLS*, const UserCharacterTable*) { return nullptr; }

NlsStatus freeUserCharacterTables(QZNLS*, UserCharacterTable*) { return 0; }

}  // namespace veldnls

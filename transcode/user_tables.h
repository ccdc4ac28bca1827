// User character tables of a host, and what pipelines take from them. The contracts of the two slots stand at the slot
// types in veldnls/pipeline.h.
#pragma once

#include "veldnls/nls.h"

namespace veldnls {

UserCharacterTable* setUserCharacterTables(QZNLS* nls, const UserCharacterTable* list);
NlsStatus freeUserCharacterTables(QZNLS* nls, UserCharacterTable* list);

// Whether a list (may be null) relates two encodings: its head has a column for each.
bool userTablesCover(QZNLS* nls, CEI a, CEI b, const UserCharacterTable* head);

// Bits of buildUserTables' result: what was built.
inline constexpr uint32_t builtFromSource = 0x1;
inline constexpr uint32_t builtToTarget = 0x2;

// Makes the overlays of a pair from a list: `*fromSource` from codes of `source` to UTF-16, `*toTarget` from UTF-16 to
// codes of `target`. A value from a fill of private-use characters has its two bytes exchanged, U+E000 is 0x00E0; a
// value of a target code is its two bytes as they stand in memory.
// Either output may be null: that overlay isn't made. What isn't built is set to null: both without memory, or when the
// list lacks a table or column that is needed. A Unicode source has no overlay; the target's, when that is Unicode,
// leads from UTF-16 to itself, and nothing reads it.
uint32_t buildUserTables(QZNLS* nls, CEI source, CEI target, const UserCharacterTable* head, CodeOverlay** fromSource,
                         CodeOverlay** toTarget);

void freeOverlay(XmPool* pool, CodeOverlay* overlay);

}  // namespace veldnls

// The stages that the setup slots install. Their contract stands at NlsModuleStage in veldnls/pipeline.h.
//
// A stage converts character by character; ahead of each step an inner loop takes the characters that need no decision.
// The twin without that loop gives the same result.
#pragma once

#include <type_traits>

#include "modules/qznlsmb/scanners.h"
#include "veldnls/pipeline.h"

namespace veldnls {

enum class Pace : uint8_t { skipping, everyCharacter };

// Multi-byte text to the Unicode form of `target`. Pairs are those of `rule`.
NlsModuleStage multibyteToUnicode(CharacterRule rule, CEI target, Pace pace = Pace::skipping);

// What a stage writes: pairs as they stand, without shifts or with them; the same as ISO 2022 has them, in seven bits;
// or GB18030 through its module.
enum class TargetRule : uint8_t { pairs, modes, iso2022, gb18030 };
inline constexpr int targetRuleCount = 4;

// The Unicode form of `source` to multi-byte text.
NlsModuleStage unicodeToMultibyte(TargetRule rule, CEI source, Pace pace = Pace::skipping);

using Stage = std::remove_pointer_t<NlsModuleStage>;

// Single bytes to multi-byte text and back, through a byte map. The first writes no double-byte character but the euro
// sign and no shifts.
Stage byteToMultibyte;
Stage multibyteToByte;

}  // namespace veldnls

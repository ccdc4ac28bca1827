// The stages that the setup slots install. Their contract stands at NlsModuleStage in veldnls/pipeline.h.
//
// A stage converts character by character; ahead of each step inner loops take the characters that need no decision.
// The twin without them gives the same result.
#pragma once

#include <type_traits>

#include "modules/qznlsmb/scanners.h"
#include "veldnls/pipeline.h"

namespace veldnls {

// Which inner loops a stage has: none; those that go character by character; also kernels, where they pay, but not for
// texts of a few characters; kernels there as well. A text that another stage has just written in pieces is dear to
// load at once.
enum class Pace : uint8_t { everyCharacter, loops, kernels, kernelsForAll };

// Multi-byte text to the Unicode form of `target`. Pairs are those of `rule`.
NlsModuleStage multibyteToUnicode(CharacterRule rule, CEI target, Pace pace);

// What a stage writes: pairs as they stand, without shifts or with them; the same as ISO 2022 has them, in seven bits;
// or GB18030 through its module.
enum class TargetRule : uint8_t { pairs, modes, iso2022, gb18030 };
inline constexpr int targetRuleCount = 4;

// The Unicode form of `source` to multi-byte text.
NlsModuleStage unicodeToMultibyte(TargetRule rule, CEI source, Pace pace);

using Stage = std::remove_pointer_t<NlsModuleStage>;

// Single bytes to multi-byte text and back, through a byte map. The first writes no double-byte character but the euro
// sign and no shifts.
Stage byteToMultibyte;
Stage multibyteToByte;

}  // namespace veldnls

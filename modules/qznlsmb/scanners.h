// Scanners: where the next character of a multi-byte text stands and how long it is. The contract stands at
// NlsScanCharacter in veldnls/pipeline.h. None reads outside of the bytes remaining; at the end of a text of
// single-byte state the length is 1, so that a caller tests for the end.
#pragma once

#include <type_traits>

#include "veldnls/encoding.h"
#include "veldnls/pipeline.h"

namespace veldnls {

// How the characters of a row are told apart.
enum class CharacterRule : uint8_t { leadByte, highBit, shifted, iso2022, gb18030 };
inline constexpr int characterRuleCount = 5;

// Begins a designator.
inline constexpr uint8_t escape = 0x1B;

CharacterRule characterRuleOf(const EncodingDescriptor& row);
NlsScanCharacter scannerOf(CharacterRule rule);

using Scanner = std::remove_pointer_t<NlsScanCharacter>;

// A byte within the row's lead ranges begins a character of two bytes.
Scanner scanLeadByte;
// A byte with its top bit set does: 8F, too, in euc-jp, which has no third plane.
Scanner scanHighBit;
// Steps over shift sequences. The first byte of either one is always taken for the start of one: what then isn't the
// shift-in counts as the shift-out, whatever follows that byte.
Scanner scanShifted;
// Steps over shift sequences and, in all rows but two, over designators of four bytes. In each mode only the sequence
// that ends it is known. Behind a first one a further one is looked for only while twice its length remains; nearer to
// the end it is data.
Scanner scanIso2022;
// The same for a piece of a text: behind its end there may be more, so that what stands there is looked at all the
// same, and a sequence that is cut makes the length 0.
Scanner scanIso2022Piece;
// Two bytes, or four when the second is below 3A. The third and the fourth aren't looked at.
Scanner scanGb18030;
// One character of UTF-EBCDIC by its first byte.
Scanner scanUtfe;

}  // namespace veldnls

#include "modules/qznlsmb/iso2022_target.h"

#include <cstring>

#include "veldnls/cei.h"

namespace veldnls {

namespace {

constexpr uint8_t sevenBits = 0x7F;

// Sets of seven bits have nothing to clear but in codes of user characters.
bool hasSevenBitSet(CEI cei) { return cei == U_JIS7_CE || cei == U_ISO2022JP_CE; }

}  // namespace

// Whatever looks like a shift sequence is taken for one, also where it came from the source's text.
bool clearHighBits(const PipelineSide& side, uint8_t* text, uint32_t length) {
  const MultiByteProfile& profile = *side.targetProfile;
  const uint8_t* blank = profile.doubleBlank;
  const bool always = hasSevenBitSet(side.peerCei);
  uint8_t* const end = text + length;
  const auto startsWith = [&](const uint8_t* sequence) {
    return end - text >= profile.shiftLength && std::memcmp(text, sequence, profile.shiftLength) == 0;
  };
  bool inDouble = false;
  bool replaced = false;
  while (text != end) {
    if (startsWith(profile.shiftIn) || startsWith(profile.shiftOut)) {
      inDouble = startsWith(profile.shiftOut);
      text += profile.shiftLength;
    } else if (!inDouble || end - text < 2) {
      ++text;
    } else {
      const bool fits = always || (text[0] > 0xA0 && text[1] > 0xA0) || std::memcmp(text, blank, 2) == 0;
      text[0] = (fits ? text[0] : blank[0]) & sevenBits;
      text[1] = (fits ? text[1] : blank[1]) & sevenBits;
      if (!fits) replaced = true;
      text += 2;
    }
  }
  return replaced;
}

}  // namespace veldnls

#include "unwritable.h"

#include <algorithm>
#include <string>

#include "byte_meanings.h"
#include "names.h"
#include "pipeline.h"
#include "route.h"
#include "veldnls/cei.h"

namespace veld {

namespace {

constexpr size_t room = 64;

Bytes bytesOf(const std::u16string& text) {
  return {reinterpret_cast<const uint8_t*>(text.data()), text.size() * sizeof(char16_t)};
}

bool beginsShift(const MultiByteProfile& profile, uint8_t byte) {
  return profile.shiftLength > 0 && (byte == profile.shiftOut[0] || byte == profile.shiftIn[0]);
}

// One target, and the way there and back.
struct Target {
  const MultiByteProfile& profile;
  const ByteMeanings& meanings;
  TranscodingPipeline& there;
  TranscodingPipeline& back;
};

// True when the character is written, and the text that begins with it doesn't come back.
bool losesSilently(const Target& target, char16_t c) {
  const std::u16string text{c, u'A', u'B', u'1', u'2'};  // capitals and digits are the same in all pages
  std::array<uint8_t, room> written;
  const Converted out = convertShort(target.there, bytesOf(text), written);
  if (!out.whole || out.size == 0) return false;
  if (beginsShift(target.profile, written[0])) return true;
  const bool isSingle = out.size == text.size();
  if (isSingle && target.meanings[written[0]] != c) return true;
  std::array<uint8_t, room> again;
  const Converted in = convertShort(target.back, Bytes(written).first(out.size), again);
  const Bytes wanted = bytesOf(text);
  return !in.whole || !std::equal(wanted.begin(), wanted.end(), again.begin(), again.begin() + in.size);
}

}  // namespace

bool Unwritable::any() const { return beyondBmp || std::find(single.begin(), single.end(), true) != single.end(); }

Unwritable findUnwritable(QZNLS& nls, CEI to) {
  Unwritable found;
  if (!isMultiByte(nls, to)) return found;
  const Pipeline there = makePipeline(nls, U_L_UNICODE_CE, to);
  const Pipeline back = makePipeline(nls, to, U_L_UNICODE_CE);
  const auto meanings = byteMeanings(nls, to);
  if (there == nullptr || back == nullptr || !meanings) return found;
  const Target target{rowOf(nls, to).profile, *meanings, *there, *back};
  for (char16_t c = 0; c < firstBeyondSingleBytes; ++c) found.single[c] = losesSilently(target, c);
  found.beyondBmp = to == U_GB18030_CE;
  return found;
}

}  // namespace veld

#include "unwritable.h"

#include <algorithm>
#include <optional>
#include <string>

#include "byte_meanings.h"
#include "names.h"
#include "pipeline.h"
#include "route.h"
#include "veldnls/cei.h"

namespace veld {

namespace {

constexpr size_t charactersInRow = 256;
constexpr size_t rowRoom = charactersInRow * 16;  // no character becomes more bytes, there or back
constexpr size_t marksOfRow = charactersInRow / 64;
constexpr size_t firstSurrogateRow = 0xD8;
constexpr size_t lastSurrogateRow = 0xDF;

Bytes bytesOf(std::u16string_view text) {
  return {reinterpret_cast<const uint8_t*>(text.data()), text.size() * sizeof(char16_t)};
}

bool beginsShift(const MultiByteProfile& profile, uint8_t byte) {
  return byte == profile.shiftOut[0] || byte == profile.shiftIn[0];
}

}  // namespace

// The way to a target and back.
struct Unwritable::Target {
  bool losesSilently(char16_t c) const;
  bool becomesShift(char16_t c) const;
  // What a text becomes there and back.
  Bytes thereAndBack(std::u16string_view text, std::span<uint8_t> again) const;

  const EncodingDescriptor& row;
  bool multiByte;
  ByteMeanings meanings;
  Pipeline there;
  Pipeline back;
};

// True when the character becomes a byte that begins a shift sequence. What follows it is written by the state that the
// byte makes, so that a text may be replaced for its sake.
bool Unwritable::Target::becomesShift(char16_t c) const {
  if (!multiByte || row.profile.shiftLength == 0) return false;
  std::array<uint8_t, roomOfACharacter> written;
  const Converted out = convertShort(*there, bytesOf({&c, 1}), written);
  return out.whole && out.size == 1 && beginsShift(row.profile, written[0]);
}

// True when the character is written, and the text that begins with it doesn't come back.
bool Unwritable::Target::losesSilently(char16_t c) const {
  if (becomesShift(c)) return true;
  const char16_t text[] = {c, u'A', u'B', u'1', u'2'};  // capitals and digits are the same in all pages
  const std::u16string_view all(text, std::size(text));
  std::array<uint8_t, roomOfACharacter> written;
  const Converted out = convertShort(*there, bytesOf(all), written);
  if (!out.whole || out.size == 0) return false;
  const bool isSingle = out.size == all.size();
  if (isSingle && meanings[written[0]] != c) return true;
  std::array<uint8_t, roomOfACharacter> again;
  const Converted in = convertShort(*back, Bytes(written).first(out.size), again);
  const Bytes wanted = bytesOf(all);
  return !in.whole || !std::equal(wanted.begin(), wanted.end(), again.begin(), again.begin() + in.size);
}

Bytes Unwritable::Target::thereAndBack(std::u16string_view text, std::span<uint8_t> again) const {
  std::array<uint8_t, rowRoom> written;
  const Converted out = convertShort(*there, bytesOf(text), written);
  return Bytes(again).first(convertShort(*back, Bytes(written).first(out.size), again).size);
}

Unwritable::Unwritable() = default;
Unwritable::~Unwritable() = default;

Unwritable::Unwritable(QZNLS& nls, CEI to) {
  const EncodingDescriptor& row = rowOf(nls, to);
  if (row.encodingClass != NLS_CLASS_SINGLE_BYTE && !isMultiByte(nls, to)) return;
  Pipeline there = makePipeline(nls, U_L_UNICODE_CE, to);
  Pipeline back = makePipeline(nls, to, U_L_UNICODE_CE);
  const std::optional<ByteMeanings> meanings = byteMeanings(nls, to);
  if (there == nullptr || back == nullptr || !meanings) return;
  target_.reset(new Target{row, isMultiByte(nls, to), *meanings, std::move(there), std::move(back)});
  beyondBmp_ = to == U_GB18030_CE;
  marks_.fill(~uint64_t{0});
}

bool Unwritable::hasInBlocks(size_t first, size_t count) {
  bool found = false;
  for (size_t block = first; block < first + count; ++block) {
    has(static_cast<char32_t>(block * 64));  // makes it known
    found |= marks_[block] != 0;
  }
  return found;
}

// Looks at the row of a character, and returns whether that is one. Most rows come back whole, or with few characters
// that have to be looked at one by one.
bool Unwritable::learn(char32_t character) {
  const size_t row = character >> 8;
  known_[row] = true;
  std::fill_n(marks_.begin() + static_cast<ptrdiff_t>(row * marksOfRow), marksOfRow, uint64_t{0});
  if (row >= firstSurrogateRow && row <= lastSurrogateRow) return false;
  std::array<char16_t, charactersInRow> characters;
  for (size_t i = 0; i < charactersInRow; ++i) characters[i] = static_cast<char16_t>(row << 8 | i);
  const std::u16string_view text(characters.data(), characters.size());
  std::array<uint8_t, rowRoom> back;
  const Bytes again = target_->thereAndBack(text, back);
  const Bytes wanted = bytesOf(text);
  // What begins a shift sequence only ahead of certain bytes stands in the first row.
  const bool canCompare = row > 0 && again.size() == wanted.size();
  for (size_t i = 0; i < charactersInRow; ++i) {
    const size_t at = i * sizeof(char16_t);
    if (canCompare && again[at] == wanted[at] && again[at + 1] == wanted[at + 1]) continue;
    const char16_t c = characters[i];
    if (target_->losesSilently(c)) marks_[c >> 6] |= uint64_t{1} << (c & 63);
  }
  return isMarked(character);
}

}  // namespace veld

#include "unicode_scan.h"

#include <algorithm>

#include "veldnls/cei.h"

namespace veld {

namespace {

constexpr char32_t firstOfTwoBytes = 0x80;
constexpr uint16_t patience = 4096;
constexpr uint8_t firstTrail = 0x80;
constexpr uint8_t trailBits = 0x3F;
constexpr uint8_t leadOfTwo = 0xC0;  // the first that leads characters of two bytes
constexpr uint8_t leadOfThree = 0xE0;
constexpr uint8_t leadOfFour = 0xF0;
constexpr uint8_t leadOfPlane16 = 0xF4;
constexpr uint32_t lastCharacter = 0x10FFFF;

bool isTrail(uint8_t byte) { return (byte & ~trailBits) == firstTrail; }

bool isLeadOfThree(uint8_t byte) { return (byte & 0xF0) == leadOfThree; }

// The upper bits of a character of three bytes.
size_t blockOfThree(const uint8_t* text) { return static_cast<size_t>((text[0] & 0x0F) << 6 | (text[1] & trailBits)); }

template <ByteOrder order>
uint32_t utf16UnitAt(const uint8_t* text) {
  const unsigned high = text[order == ByteOrder::big ? 0 : 1];
  const unsigned low = text[order == ByteOrder::big ? 1 : 0];
  return high << 8 | low;
}

// As findLost, with the order known ahead of the loop.
template <ByteOrder order>
std::optional<size_t> findLostUnit(Bytes utf16, Unwritable& unwritable) {
  bool open = false;
  for (size_t place = 0; place + utf16Unit <= utf16.size(); place += utf16Unit) {
    const uint32_t unit = utf16UnitAt<order>(utf16.data() + place);
    if (open || (unit & 0xF800) == 0xD800) {
      if (open != isLowSurrogate(unit)) return open ? place - utf16Unit : place;
      if (open && unwritable.hasAllBeyondBmp()) return place - utf16Unit;
      open = !open;
    } else if (unwritable.has(unit)) {
      return place;
    }
  }
  return std::nullopt;
}

}  // namespace

ByteOrder byteOrderOf(CEI cei) {
  return cei == U_B_UNICODE_CE || cei == U_B_UCS4_CE ? ByteOrder::big : ByteOrder::little;
}

uint32_t unitAt(Bytes text, size_t place, size_t size, ByteOrder order) {
  uint32_t value = 0;
  for (size_t i = 0; i < size; ++i) {
    const size_t significant = order == ByteOrder::big ? i : size - 1 - i;
    value = value << 8 | text[place + significant];
  }
  return value;
}

bool isHighSurrogate(uint32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLowSurrogate(uint32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

Utf8Scan::Utf8Scan(Unwritable& unwritable, uint8_t trail) : trail_(trail) {
  for (char32_t c = 0; c < firstOfTwoBytes; ++c) suspects_[c] = unwritable.has(c);
  std::fill_n(suspects_.begin() + leadOfTwo, leadOfFour - leadOfTwo, unwritable.mayHaveAny());
  std::fill_n(suspects_.begin() + leadOfFour, leadOfPlane16 - leadOfFour, unwritable.hasAllBeyondBmp());
  suspects_[leadOfPlane16] = true;
}

// Lead bytes of characters up to U+FFFF are looked at when they occur often: that takes longer than a short text.
bool Utf8Scan::isSuspect(uint8_t lead, Unwritable& unwritable) {
  if (!suspects_[lead] || lead < leadOfTwo || lead >= leadOfFour) return suspects_[lead];
  if (seen_[lead] == patience || ++seen_[lead] < patience) return true;
  suspects_[lead] = lead < leadOfThree ? unwritable.hasInBlocks(lead & 0x1F, 1)
                                       : unwritable.hasInBlocks(static_cast<size_t>(lead & 0x0F) << 6, 64);
  return suspects_[lead];
}

// Whether the text begins with such a character.
bool Utf8Scan::isLost(Bytes text, Unwritable& unwritable) const {
  const uint8_t lead = text[0];
  if (lead < firstTrail) return true;
  if (text.size() < 2 || !isTrail(text[1])) return false;
  if (lead < leadOfThree) return unwritable.has(static_cast<char32_t>((lead & 0x1F) << 6 | (text[1] & trailBits)));
  if (lead >= leadOfFour) return lead != leadOfPlane16 || text[1] >= trail_ || unwritable.hasAllBeyondBmp();
  if (text.size() < 3 || !isTrail(text[2])) return false;
  return unwritable.has(static_cast<char32_t>(blockOfThree(text.data()) << 6 | (text[2] & trailBits)));
}

std::optional<size_t> Utf8Scan::find(Bytes text, Unwritable& unwritable) {
  const uint8_t* const begin = text.data();
  const uint8_t* const end = begin + text.size();
  const auto mayBegin = [this](uint8_t byte) { return suspects_[byte]; };
  const uint8_t* place = std::find_if(begin, end, mayBegin);
  while (place != end) {
    if (isSuspect(*place, unwritable) && isLost({place, end}, unwritable)) return static_cast<size_t>(place - begin);
    ++place;
    // Suspects of three bytes stand in rows. Steps also over bytes that don't belong to a character: the library tells
    // of such text.
    if (isLeadOfThree(place[-1]) && end - place >= 2) place += 2;
    while (end - place >= 3 && isLeadOfThree(*place) &&
           !unwritable.mayHave(blockOfThree(place), place[2] & trailBits)) {
      place += 3;
    }
    place = std::find_if(place, end, mayBegin);
  }
  return std::nullopt;
}

Bytes Utf8Scan::judgeable(Bytes text) const {
  for (size_t behind = 1; behind <= std::min<size_t>(text.size(), 3); ++behind) {
    const uint8_t byte = text[text.size() - behind];
    if (isTrail(byte)) continue;
    const size_t length = byte < leadOfTwo ? 1 : byte < leadOfThree ? 2 : byte < leadOfFour ? 3 : 4;
    return suspects_[byte] && length > behind ? text.first(text.size() - behind) : text;
  }
  return text;
}

std::optional<size_t> findLost(Bytes utf16, ByteOrder order, Unwritable& unwritable) {
  return order == ByteOrder::big ? findLostUnit<ByteOrder::big>(utf16, unwritable)
                                 : findLostUnit<ByteOrder::little>(utf16, unwritable);
}

std::optional<size_t> findNoCharacter(Bytes utf32, ByteOrder order, Unwritable& unwritable) {
  for (size_t place = 0; place + utf32Unit <= utf32.size(); place += utf32Unit) {
    const uint32_t unit = unitAt(utf32, place, utf32Unit, order);
    if (unit > lastCharacter || isHighSurrogate(unit) || isLowSurrogate(unit) || unwritable.has(unit)) return place;
  }
  return std::nullopt;
}

Bytes withoutOpenPair(Bytes utf16, ByteOrder order) {
  const Bytes whole = utf16.first(utf16.size() - utf16.size() % utf16Unit);
  const auto isOpen = [&](Bytes text) {
    return !text.empty() && isHighSurrogate(unitAt(text, text.size() - utf16Unit, utf16Unit, order));
  };
  if (!isOpen(whole)) return whole;
  const Bytes ahead = whole.first(whole.size() - utf16Unit);
  if (!isOpen(ahead)) return ahead;
  // The first of two halves is seen to have no other by the second. The first of more is seen so without the last; a
  // block of nothing else is to go on.
  const Bytes aheadOfBoth = ahead.first(ahead.size() - utf16Unit);
  return isOpen(aheadOfBoth) ? ahead : aheadOfBoth;
}

Bytes withoutOpenUnit(Bytes utf32) { return utf32.first(utf32.size() - utf32.size() % utf32Unit); }

}  // namespace veld

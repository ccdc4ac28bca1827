#include "unicode_scan.h"

#include <algorithm>

#include "veldnls/cei.h"

namespace veld {

namespace {

constexpr uint8_t leadOfControls = 0xC2;  // of U+0080 to U+00BF
constexpr uint8_t firstLeadBeyondBmp = 0xF0;
constexpr uint8_t leadOfPlane16 = 0xF4;
constexpr uint8_t firstTrail = 0x80;
constexpr uint32_t lastCharacter = 0x10FFFF;

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

Utf8Scan::Utf8Scan(const Unwritable& unwritable, uint8_t trail) : unwritable_(unwritable), trail_(trail) {
  std::copy_n(unwritable.single.begin(), firstTrail, suspects_.begin());
  suspects_[leadOfControls] =
      std::find(unwritable.single.begin() + firstTrail, unwritable.single.end(), true) != unwritable.single.end();
  if (unwritable.beyondBmp)
    std::fill_n(suspects_.begin() + firstLeadBeyondBmp, leadOfPlane16 - firstLeadBeyondBmp, true);
  suspects_[leadOfPlane16] = true;
}

bool Utf8Scan::isLost(uint8_t lead, uint8_t next) const {
  if (lead == leadOfControls) return next >= firstTrail && next < firstBeyondSingleBytes && unwritable_.single[next];
  if (lead == leadOfPlane16) return next >= trail_ || unwritable_.beyondBmp;
  return true;
}

std::optional<size_t> Utf8Scan::find(Bytes text) const {
  const auto isSuspect = [this](uint8_t byte) { return suspects_[byte]; };
  auto place = std::find_if(text.begin(), text.end(), isSuspect);
  while (place != text.end()) {
    const uint8_t next = place + 1 == text.end() ? 0 : place[1];
    if (isLost(*place, next)) return static_cast<size_t>(place - text.begin());
    place = std::find_if(place + 1, text.end(), isSuspect);
  }
  return std::nullopt;
}

Bytes Utf8Scan::judgeable(Bytes text) const {
  return !text.empty() && text.back() >= firstTrail && suspects_[text.back()] ? text.first(text.size() - 1) : text;
}

std::optional<size_t> findLost(Bytes utf16, ByteOrder order, const Unwritable& unwritable) {
  bool open = false;
  for (size_t place = 0; place + utf16Unit <= utf16.size(); place += utf16Unit) {
    const uint32_t unit = unitAt(utf16, place, utf16Unit, order);
    if (open != isLowSurrogate(unit)) return open ? place - utf16Unit : place;
    if (open && unwritable.beyondBmp) return place - utf16Unit;
    if (unwritable.has(unit)) return place;
    open = isHighSurrogate(unit);
  }
  return std::nullopt;
}

std::optional<size_t> findNoCharacter(Bytes utf32, ByteOrder order, const Unwritable& unwritable) {
  for (size_t place = 0; place + utf32Unit <= utf32.size(); place += utf32Unit) {
    const uint32_t unit = unitAt(utf32, place, utf32Unit, order);
    if (unit > lastCharacter || isHighSurrogate(unit) || isLowSurrogate(unit) || unwritable.has(unit)) return place;
  }
  return std::nullopt;
}

Bytes withoutOpenPair(Bytes utf16, ByteOrder order) {
  const Bytes whole = utf16.first(utf16.size() - utf16.size() % utf16Unit);
  if (whole.empty()) return whole;
  const size_t last = whole.size() - utf16Unit;
  return isHighSurrogate(unitAt(whole, last, utf16Unit, order)) ? whole.first(last) : whole;
}

Bytes withoutOpenUnit(Bytes utf32) { return utf32.first(utf32.size() - utf32.size() % utf32Unit); }

}  // namespace veld

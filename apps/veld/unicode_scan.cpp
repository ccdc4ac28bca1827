#include "unicode_scan.h"

#include <algorithm>

namespace veld {

namespace {

constexpr uint8_t leadOfPlane16 = 0xF4;
constexpr uint32_t lastCharacter = 0x10FFFF;
constexpr size_t utf16Unit = 2;
constexpr size_t utf32Unit = 4;

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

}  // namespace

std::optional<size_t> findPlane16(Bytes utf8, uint8_t trail) {
  auto lead = std::find(utf8.begin(), utf8.end(), leadOfPlane16);
  while (lead != utf8.end() && lead + 1 != utf8.end()) {
    if (lead[1] >= trail) return static_cast<size_t>(lead - utf8.begin());
    lead = std::find(lead + 1, utf8.end(), leadOfPlane16);
  }
  return std::nullopt;
}

std::optional<size_t> findUnpaired(Bytes utf16, ByteOrder order) {
  bool open = false;
  for (size_t place = 0; place + utf16Unit <= utf16.size(); place += utf16Unit) {
    const uint32_t unit = unitAt(utf16, place, utf16Unit, order);
    if (open != isLowSurrogate(unit)) return open ? place - utf16Unit : place;
    open = isHighSurrogate(unit);
  }
  return std::nullopt;
}

std::optional<size_t> findNoCharacter(Bytes utf32, ByteOrder order) {
  for (size_t place = 0; place + utf32Unit <= utf32.size(); place += utf32Unit) {
    const uint32_t unit = unitAt(utf32, place, utf32Unit, order);
    if (unit > lastCharacter || isHighSurrogate(unit) || isLowSurrogate(unit)) return place;
  }
  return std::nullopt;
}

Bytes withoutOpenPlane16(Bytes utf8) {
  return !utf8.empty() && utf8.back() == leadOfPlane16 ? utf8.first(utf8.size() - 1) : utf8;
}

Bytes withoutOpenPair(Bytes utf16, ByteOrder order) {
  const Bytes whole = utf16.first(utf16.size() - utf16.size() % utf16Unit);
  if (whole.empty()) return whole;
  const size_t last = whole.size() - utf16Unit;
  return isHighSurrogate(unitAt(whole, last, utf16Unit, order)) ? whole.first(last) : whole;
}

Bytes withoutOpenUnit(Bytes utf32) { return utf32.first(utf32.size() - utf32.size() % utf32Unit); }

}  // namespace veld

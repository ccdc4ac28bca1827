#include "cuts/exceptions.h"

#include <array>

#include "reference/encoding_text.h"

namespace cuts_test {

namespace {

using bounds_test::Bytes;
using bounds_test::isUnicode;
using bounds_test::isUtf16;
using bounds_test::Route;
using bounds_test::Span;
using bounds_test::TextKind;

bool isEightBit(const bounds_test::Encoding& encoding) {
  return encoding.kind == TextKind::utf8 || encoding.kind == TextKind::utfEbcdic;
}

bool isUtf32(const bounds_test::Encoding& encoding) {
  return encoding.kind == TextKind::utf32le || encoding.kind == TextKind::utf32be;
}

// The UTF-16LE form of a text, as the first step of a route that goes through it gives it.
Bytes unitsOf(const Route& route, Span text) {
  const CEI cei = isUnicode(route.source) ? route.source.cei : U_UTF8_CE;
  for (const transcode_test::TextForm& form : transcode_test::textForms) {
    if (form.cei != cei) continue;
    if (form.form == transcode_test::Form::utf16 && !form.bigEndian) return {text.begin(), text.end()};
    return transcode_test::expected(form, transcode_test::textForms[2], text, 4 * text.size() + 4, true).bytes;
  }
  return {};
}

// Whether a piece may end in the first unit of what the next step takes for a pair.
bool mayEndInHighSurrogate(const Route& route, Span text) {
  for (size_t end = 1; end <= text.size(); ++end) {
    const Bytes units = unitsOf(route, text.first(end));
    if (units.size() >= 2 && units.size() % 2 == 0 && units.back() >= 0xD8 && units.back() <= 0xDB) return true;
  }
  return false;
}

bool hasPairs(const Bytes& units) {
  for (size_t i = 1; i < units.size(); i += 2) {
    if (units[i] >= 0xD8 && units[i] <= 0xDB) return true;
  }
  return false;
}

bool isThroughUtf16(const Route& route) {
  return isEightBit(route.target) && (isEightBit(route.source) || route.source.cei == U_ASCII_CE);
}

// Whether a text has a character that is written as the byte at which a shift of the target begins.
bool hasShiftsAsCharacters(const Route& route, Span text) {
  const Bytes shiftIn = bounds_test::shiftInOf(route.target);
  if (shiftIn.empty() || !isUnicode(route.source)) return false;
  const Bytes shiftOut = transcode_test::encodingText(route.target.cei).shiftOut;
  const Bytes units = unitsOf(route, text);
  for (size_t i = 0; i + 1 < units.size(); i += 2) {
    if (units[i + 1] == 0 && (units[i] == shiftIn[0] || units[i] == shiftOut[0])) return true;
  }
  return false;
}

constexpr Exception exceptions[] = {
    {"a code page has one substitution byte for a pair, but two when the pair is cut between calls", Way::cuts,
     [](const Route& route, Span text) {
       const bool keepsUnits = isUtf16(route.source) || route.source.kind == TextKind::utfEbcdic;
       const bool toPage = !isUnicode(route.target) && !bounds_test::isMultiByte(route.target);
       return toPage && keepsUnits && mayEndInHighSurrogate(route, text);
     }},
    {"of two steps the second keeps a first surrogate in a record of its own, which ends with the call", Way::cuts,
     [](const Route& route, Span text) { return isThroughUtf16(route) && mayEndInHighSurrogate(route, text); }},
    {"ISO-2022 text is looked at once more when it is written, and control characters are then taken for shifts",
     Way::cuts,
     [](const Route& route, Span text) {
       const bool isAscii = transcode_test::encodingText(route.target.cei).blank() == 0x20;
       return bounds_test::isMultiByte(route.target) && isAscii && hasShiftsAsCharacters(route, text);
     }},
    {"a pair that has room for its first unit only becomes U+FFFD", Way::littleRoom,
     [](const Route& route, Span text) {
       if (!isUtf16(route.target) || !(route.source.kind == TextKind::utf8 || isUtf32(route.source))) return false;
       return hasPairs(unitsOf(route, text));
     }},
    {"a check of UTF-16 holds a whole unit with the bytes behind it, and no call brings it out at the end",
     Way::littleRoom,
     [](const Route& route, Span) {
       return isUtf16(route.target) && (route.source.cei == route.target.cei || route.source.cei == U_ANY_CE);
     }},
};

std::array<bool, std::size(exceptions)> used{};

}  // namespace

const Exception* exceptionFor(Way way, const Route& route, Span text) {
  for (size_t i = 0; i < std::size(exceptions); ++i) {
    if (exceptions[i].way != way || !exceptions[i].concerns(route, text)) continue;
    used[i] = true;
    return &exceptions[i];
  }
  return nullptr;
}

std::vector<std::string> unusedExceptions() {
  std::vector<std::string> reasons;
  for (size_t i = 0; i < std::size(exceptions); ++i) {
    if (!used[i]) reasons.emplace_back(exceptions[i].reason);
  }
  return reasons;
}

}  // namespace cuts_test

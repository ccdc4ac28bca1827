#include "bounds/texts.h"

#include <iterator>
#include <random>
#include <string>

#include "reference/multi_byte.h"

namespace bounds_test {

namespace {

using transcode_test::TextForm;
using transcode_test::textForms;

using Random = std::mt19937;

uint32_t below(Random& random, uint32_t end) { return static_cast<uint32_t>(random() % end); }

struct Range {
  char32_t first;
  uint32_t count;
};

// Characters of each length in UTF-8, some that no code page has, and some of plane 16 whose low bits are those of
// surrogates.
constexpr Range ranges[] = {
    {0x20, 0x5F},    {0x61, 26},       {0xA0, 0x60},    {0x391, 0x70},
    {0x2010, 0x100}, {0x4E00, 0x5000}, {0x1F600, 0x40}, {0x10D7F0, 0x20},
};

// How many of them, from the front, lie below U+10000.
constexpr uint32_t basicRanges = 6;
static_assert(ranges[basicRanges - 1].first < 0x10000 && ranges[basicRanges].first >= 0x10000);

const TextForm& formOf(TextKind kind) {
  switch (kind) {
    case TextKind::utf8:
      return textForms[0];
    case TextKind::utfEbcdic:
      return textForms[1];
    case TextKind::utf16le:
      return textForms[2];
    case TextKind::utf16be:
      return textForms[3];
    case TextKind::utf32le:
      return textForms[4];
    default:
      return textForms[5];
  }
}

// Appends a character if it fits.
bool append(Bytes& text, const TextForm& form, char32_t character, size_t length) {
  const Bytes bytes = transcode_test::textIn(form, {&character, 1});
  if (text.size() + bytes.size() > length) return false;
  text.insert(text.end(), bytes.begin(), bytes.end());
  return true;
}

Bytes unicodeText(const TextForm& form, Random& random, uint32_t rangeCount, bool blankTail, size_t length) {
  constexpr uint32_t longestRun = 40;
  Bytes text;
  const size_t written = blankTail ? length - length / 4 : length;
  bool fits = true;
  while (fits) {
    // Half of the runs are ASCII.
    const Range& range = ranges[random() % 2 == 0 ? 0 : below(random, rangeCount)];
    for (uint32_t left = below(random, longestRun) + 1; fits && left > 0; --left) {
      fits = append(text, form, range.first + below(random, range.count), written);
    }
  }
  while (append(text, form, U' ', length)) {
  }
  while (text.size() < length) text.push_back(0xC2);
  return text;
}

Bytes byteText(Random& random, bool blankTail, size_t length) {
  Bytes text(length);
  for (uint8_t& byte : text) byte = static_cast<uint8_t>(random());
  for (size_t i = blankTail ? length - length / 4 : length; i < length; ++i) text[i] = 0x20;
  return text;
}

// ---- Multi-byte text ----

// Katakana of both widths, hiragana, ideographs and syllables, of which each encoding has some.
constexpr Range eastern[] = {{0x3000, 4}, {0x3041, 80}, {0x30A1, 80}, {0xFF61, 63}, {0x4E00, 0x1000}, {0xAC00, 0x800}};

// Characters of users, which ms-950 has at FA40 to FAFE.
constexpr Range privateUse = {0xE000, 157};

Bytes encoded(CEI cei, std::u32string_view characters) {
  const Bytes units = transcode_test::utf16(characters);
  return transcode_test::expectedMultiByte(U_L_UNICODE_CE, cei, units, 16 * units.size() + 16, {.gbLoaded = true})
      .outcome.bytes;
}

const Range& rangeOf(CEI cei, Random& random) {
  if (cei == U_MS950_CE && random() % 4 == 0) return privateUse;
  return random() % 2 == 0 ? ranges[0] : eastern[below(random, static_cast<uint32_t>(std::size(eastern)))];
}

std::u32string characterRun(CEI cei, Random& random) {
  constexpr uint32_t longestRun = 4;
  const Range& range = rangeOf(cei, random);
  std::u32string run;
  for (uint32_t left = below(random, longestRun) + 1; left > 0; --left) run += range.first + below(random, range.count);
  return run;
}

Bytes multiByteText(CEI cei, Random& random, bool blankTail, size_t length) {
  const transcode_test::EncodingText& row = transcode_test::encodingText(cei);
  const size_t written = blankTail ? length - length / 4 : length;
  Bytes text;
  for (;;) {
    const Bytes run = encoded(cei, characterRun(cei, random));
    if (text.size() + run.size() > written) break;
    text.insert(text.end(), run.begin(), run.end());
  }
  text.resize(length, row.blank());
  // The beginning of a shift sequence or of a character.
  const Bytes& shift = row.shiftOut;
  if (!blankTail && length != 0 && random() % 2 == 0) text.back() = shift.empty() ? row.leadRanges[0].low : shift[0];
  return text;
}

void damageShifts(Bytes& text, Random& random) {
  constexpr uint8_t hot[] = {0x00, 0x0A, 0x0E, 0x0F, 0x1B, 0x20, 0x24, 0x28, 0x29, 0x30, 0x39, 0x40,
                             0x41, 0x42, 0x43, 0x4A, 0x80, 0x81, 0x8E, 0x8F, 0xA1, 0xE1, 0xFE, 0xFF};
  for (uint8_t& byte : text) {
    if (random() % 8 == 0) byte = hot[below(random, static_cast<uint32_t>(std::size(hot)))];
  }
}

// Names and pieces of names, in units; an odd byte stays 0.
Bytes nameText(std::initializer_list<const char16_t*> names, Random& random, size_t length) {
  const std::u16string name = names.begin()[below(random, static_cast<uint32_t>(names.size()))];
  Bytes text(length);
  for (size_t i = 0; i + 1 < length; i += 2) {
    const char16_t unit = i / 2 < name.size() ? name[i / 2] : u' ';
    text[i] = static_cast<uint8_t>(unit);
    text[i + 1] = static_cast<uint8_t>(unit >> 8);
  }
  return text;
}

void damage(Bytes& text, Random& random) {
  constexpr uint8_t hot[] = {0x00, 0x0E, 0x20, 0x40, 0x41, 0x80, 0x8F, 0x9F, 0xA0, 0xBF, 0xC0, 0xC2, 0xD8,
                             0xDC, 0xE0, 0xE2, 0xED, 0xF0, 0xF4, 0xF8, 0xFC, 0xFD, 0xFE, 0xFF, 0x10, 0x11};
  for (uint8_t& byte : text) {
    if (random() % 8 == 0) byte = hot[below(random, static_cast<uint32_t>(std::size(hot)))];
  }
}

}  // namespace

CEI multiByteCei(TextKind kind) {
  switch (kind) {
    case TextKind::shiftJis:
      return U_SHIFTJIS_CE;
    case TextKind::eucJp:
      return U_EUCJP_CE;
    case TextKind::gb18030:
      return U_GB18030_CE;
    case TextKind::ibm939:
      return U_IBM939_CE;
    case TextKind::hitachiJp:
      return U_HITACHIJP_CE;
    case TextKind::iso2022jp:
      return U_ISO2022JP_CE;
    case TextKind::iso2022kr:
      return U_ISO2022KR_CE;
    case TextKind::ms950:
      return U_MS950_CE;
    default:
      return -1;
  }
}

Bytes makeText(TextKind kind, Condition condition, uint32_t seed, size_t length) {
  Random random(seed * 2 + static_cast<uint32_t>(length) * 7919 + static_cast<uint32_t>(kind));
  const bool blankTail = seed % 2 != 0;
  Bytes text;
  if (multiByteCei(kind) >= 0) {
    text = multiByteText(multiByteCei(kind), random, blankTail, length);
    if (condition == Condition::damaged) damageShifts(text, random);
    return text;
  }
  switch (kind) {
    case TextKind::bytes:
    case TextKind::real:
      text = byteText(random, blankTail && kind == TextKind::bytes, length);
      break;
    case TextKind::encodingName:
      text = nameText({u"utf-8", u"WLATIN1", u"windows-1252", u"ISO-8859-1", u"ibm-1047", u"Big5", u"no such name",
                       u"1208", u"Simplified Chinese (EUC)", u"ISO_8859-1:1987", u"UNICODE (UTF-32)"},
                      random, length);
      break;
    case TextKind::localeName:
      text = nameText({u"en_US", u"de", u"WLCID:1033", u"QUOID:51", u"German_Germany", u"zh-TW", u"WLCID:99999999999",
                       u"xx_YY", u"German", u"WL", u"English_UnitedStates"},
                      random, length);
      break;
    case TextKind::number:
      text = nameText({u"1234,5", u"-1.234.567,89", u"+5", u" 12", u"1e400", u"1,5e-3", u".a", u"0x1F", u"ffffffff",
                       u"2147483648", u"18446744073709551616", u"1.", u"-", u"12345678901234567890123456789,0625e-8"},
                      random, length);
      break;
    case TextKind::moment:
      text = nameText({u"03.02.2011", u"3 Feb 2011", u"28. Dezember 1999", u"01.01.1960 00:00:01", u"23:59:59",
                       u"12:30:00 AM", u"17.45 Uhr", u"  05.11.20001", u"31.12.1582"},
                      random, length);
      break;
    default:
      text = unicodeText(formOf(kind), random,
                         condition == Condition::basic ? basicRanges : static_cast<uint32_t>(std::size(ranges)),
                         blankTail, length);
      break;
  }
  if (condition == Condition::damaged) damage(text, random);
  return text;
}

}  // namespace bounds_test

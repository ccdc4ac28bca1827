#include "bench/encodings.h"

#include <stdexcept>
#include <string>

namespace bench {

namespace {

constexpr Encoding unicodeRows[] = {
    {"utf-8", Shape::utf8, "UTF-8", "UTF-8"},           {"utf-16le", Shape::utf16, "UTF-16LE", "UTF-16LE"},
    {"utf-16be", Shape::utf16, "UTF-16BE", "UTF-16BE"}, {"utf-32le", Shape::utf32, "UTF-32LE", "UTF-32LE"},
    {"utf-32be", Shape::utf32, "UTF-32BE", "UTF-32BE"},
};

constexpr Encoding otherRows[] = {
    {"utf-e", Shape::utfEbcdic, nullptr, nullptr},
    {"wlatin1", Shape::singleByte, "windows-1252", "CP1252"},
    {"wlatin2", Shape::singleByte, "windows-1250", "CP1250"},
    {"wcyrillic", Shape::singleByte, "windows-1251", "CP1251"},
    {"wgreek", Shape::singleByte, "windows-1253", "CP1253"},
    {"whebrew", Shape::singleByte, "windows-1255", "CP1255", true},
    {"warabic", Shape::singleByte, "windows-1256", "CP1256"},
    {"latin2", Shape::singleByte, "ISO-8859-2", "ISO-8859-2"},
    {"cyrillic", Shape::singleByte, "ISO-8859-5", "ISO-8859-5"},
    {"arabic", Shape::singleByte, "ISO-8859-6", "ISO-8859-6"},
    {"greek", Shape::singleByte, "ISO-8859-7", "ISO-8859-7"},
    {"hebrew", Shape::singleByte, "ISO-8859-8", "ISO-8859-8"},
    {"thai", Shape::singleByte, "ISO-8859-11", "ISO-8859-11"},
    {"pcoem850", Shape::singleByte, "ibm-850", "CP850"},
    {"pcoem874", Shape::singleByte, "ibm-874", "IBM874"},
    {"ebcdic037", Shape::singleByte, "ibm-037", "IBM037"},
    {"ebcdic1047", Shape::singleByte, "ibm-1047", "IBM1047"},
    {"aroman", Shape::singleByte, "macintosh", "MACINTOSH"},
    {"shift-jis", Shape::multiByte, "ibm-943_P15A-2003", "SHIFT_JIS"},
    {"euc-jp", Shape::multiByte, "euc-jp-2007", "EUC-JP-MS"},
    {"euc-kr", Shape::multiByte, "windows-949-2000", "UHC"},
    {"ms-936", Shape::multiByte, "windows-936-2000", "CP936"},
    {"big5", Shape::multiByte, "windows-950-2000", "BIG5"},
    {"gb18030", Shape::multiByte, "gb18030", "GB18030"},
    {"ibm-930", Shape::shifted, "ibm-930_P120-1999", "IBM930", true},
    {"ibm-933", Shape::shifted, "ibm-933_P110-1995", "IBM933", true},
    {"ibm-935", Shape::shifted, "ibm-935_P110-1999", "IBM935", true},
    {"ibm-937", Shape::shifted, "ibm-937_P110-1999", "IBM937", true},
    {"ibm-939", Shape::shifted, "ibm-939_P120-1999", "IBM939", true},
};

size_t utf8Size(char32_t character) {
  if (character < 0x80) return 1;
  if (character < 0x800) return 2;
  return character < 0x10000 ? 3 : 4;
}

size_t utfEbcdicSize(char32_t character) {
  if (character < 0xA0) return 1;
  if (character < 0x400) return 2;
  if (character < 0x4000) return 3;
  return character < 0x40000 ? 4 : 5;
}

}  // namespace

const Encoding& encoding(const char* name) {
  const std::string wanted = name;
  for (const Encoding& row : unicodeRows) {
    if (wanted == row.name) return row;
  }
  for (const Encoding& row : otherRows) {
    if (wanted == row.name) return row;
  }
  throw std::runtime_error("no row for the encoding " + wanted);
}

std::span<const Encoding> unicodeForms() { return unicodeRows; }

bool hasKnownSizes(const Encoding& encoding) {
  return encoding.shape != Shape::multiByte && encoding.shape != Shape::shifted;
}

size_t encodedSize(const Encoding& encoding, char32_t character) {
  switch (encoding.shape) {
    case Shape::singleByte:
      return 1;
    case Shape::utf8:
      return utf8Size(character);
    case Shape::utf16:
      return character < 0x10000 ? 2 : 4;
    case Shape::utf32:
      return 4;
    case Shape::utfEbcdic:
      return utfEbcdicSize(character);
    case Shape::multiByte:
    case Shape::shifted:
      break;
  }
  throw std::runtime_error(std::string("sizes of ") + encoding.name + " depend on its table");
}

}  // namespace bench

// The encoding table against the text it is made of, field by field.
#include <gtest/gtest.h>

#include <algorithm>

#include "core/registry.h"
#include "encoding_data.h"
#include "session_host.h"
#include "support/wide.h"
#include "veldnls/cei.h"
#include "veldnls/status.h"

using test::encodingFacts;

namespace veldnls {
namespace {

struct TextField {
  const char* column;
  const char16_t* text;
  size_t capacity;
  int32_t length;
};

std::vector<TextField> textFields(const EncodingDescriptor& row) {
  return {{"shortName", row.shortName, 5, row.shortNameLength},
          {"name", row.name, 14, row.nameLength},
          {"description", row.description, 34, row.descriptionLength},
          {"identifier", row.identifier, 18, row.identifierLength},
          {"longDescription", row.longDescription, 42, row.longDescriptionLength},
          {"ianaName", row.ianaName, 32, row.ianaNameLength},
          {"javaName", row.javaName, 32, row.javaNameLength},
          {"ccsid", row.ccsid, 6, row.ccsidLength},
          {"codePage", row.codePage, 6, row.codePageLength},
          {"preferredName", row.preferredName, 32, row.preferredNameLength}};
}

std::string hexBytes(const uint8_t* bytes, size_t count) {
  if (count == 0) return "-";
  std::string text;
  for (size_t i = 0; i < count; ++i) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02X", bytes[i]);
    text += digits;
  }
  return text;
}

std::string rangeText(const NlsByteRange (&ranges)[4]) {
  std::string text;
  for (const NlsByteRange& range : ranges) {
    if (range.low == 0) break;
    text += (text.empty() ? "" : " ") + hexBytes(&range.low, 1) + "-" + hexBytes(&range.high, 1);
  }
  return text.empty() ? "-" : text;
}

// The fields of a line of profiles.tsv.
test::Fields profileFields(const MultiByteProfile& profile) {
  const bool blank = profile.doubleBlank[0] != 0;
  return {std::to_string(profile.structure),
          std::to_string(profile.doubleByteSet),
          std::to_string(profile.singleByteSet),
          hexBytes(profile.shiftOut, profile.shiftLength),
          hexBytes(profile.shiftIn, profile.shiftLength),
          hexBytes(profile.doubleBlank, blank ? 2 : 0),
          rangeText(profile.leadRanges),
          rangeText(profile.trailRanges)};
}

const test::Fields noProfile = {"0", "0", "0", "-", "-", "-", "-", "-"};

TEST(EncodingTable, NumbersAreThoseOfTheText) {
  ASSERT_EQ(encodingFacts().rows.size(), size_t{NLS_CEI_COUNT});
  for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
    SCOPED_TRACE(cei);
    const EncodingDescriptor& row = encodingTable[cei];
    const auto& facts = encodingFacts();
    EXPECT_EQ(row.cei, cei);
    EXPECT_EQ(row.encodingClass, facts.number(cei, "encodingClass"));
    EXPECT_EQ(row.flags, std::stoul(facts.text(cei, "flags"), nullptr, 0));
    EXPECT_EQ(row.padChar, std::stoul(facts.text(cei, "padChar"), nullptr, 0));
    EXPECT_EQ(row.substitution, std::stoul(facts.text(cei, "substitution"), nullptr, 0));
    EXPECT_EQ(row.unitSize, facts.number(cei, "unitSize"));
    EXPECT_EQ(row.baseCei, facts.number(cei, "baseCei"));
    EXPECT_EQ(row.mibEnum, facts.number(cei, "mibEnum"));
  }
}

TEST(EncodingTable, TextsAreThoseOfTheTextAndZeroPadded) {
  std::map<std::pair<int, std::string>, int32_t> lengths;
  for (const auto& fields : test::readTsv("encodings/length-exceptions.tsv")) {
    lengths[{std::stoi(fields.at(0)), fields.at(1)}] = std::stoi(fields.at(2));
  }
  for (const EncodingDescriptor& row : encodingTable) {
    for (const TextField& field : textFields(row)) {
      SCOPED_TRACE(std::to_string(row.cei) + " " + field.column);
      std::u16string expected = test::widen(encodingFacts().text(row.cei, field.column));
      const auto exception = lengths.find({row.cei, field.column});
      EXPECT_EQ(field.length, exception == lengths.end() ? int32_t(expected.size()) : exception->second);
      expected.resize(field.capacity, u'\0');
      EXPECT_EQ(std::u16string(field.text, field.capacity), expected);
      EXPECT_EQ(field.text[field.capacity - 1], u'\0');
    }
  }
}

TEST(EncodingTable, ProfilesAreThoseOfTheText) {
  for (CEI cei = 24; cei < NLS_CEI_COUNT; ++cei) {
    SCOPED_TRACE(cei);
    const auto found = encodingFacts().profiles.find(cei);
    const test::Fields expected = found == encodingFacts().profiles.end()
                                      ? noProfile
                                      : test::Fields(found->second.begin() + 1, found->second.end());
    EXPECT_EQ(profileFields(encodingTable[cei].profile), expected);
  }
}

TEST(EncodingTable, AliasesTakeTheProfileOfTheFirstCellOrOfTheirModel) {
  std::map<int, int> models;
  for (const auto& fields : test::readTsv("encodings/alias-models.tsv")) {
    models[std::stoi(fields.at(0))] = std::stoi(fields.at(1));
  }
  EXPECT_EQ(models.size(), 7u);
  for (const auto& fields : test::readTsv("encodings/dbcs-types.tsv")) {
    const int type = std::stoi(fields.at(0));
    if (type == 0 || type == U_UNICODE_CE || type == U_UTF8_CE) continue;
    for (size_t column = 3; column < fields.size(); ++column) {
      if (fields[column] != "0") models.emplace(type, std::stoi(fields[column]));
    }
    SCOPED_TRACE(type);
    const MultiByteProfile& profile = encodingTable[type].profile;
    EXPECT_EQ(profileFields(profile), profileFields(encodingTable[models.at(type)].profile));
    EXPECT_NE(profile.doubleByteSet, 0u);
  }
  EXPECT_EQ(profileFields(encodingTable[0].profile), noProfile);
  EXPECT_EQ(profileFields(encodingTable[U_UNICODE_CE].profile), noProfile);
  EXPECT_EQ(profileFields(encodingTable[U_UTF8_CE].profile), noProfile);
}

// All of a row but its profile: CEI, class, flags, padChar, substitution (hexadecimal, as the flags) and unitSize; the
// texts as far as their lengths go; base and MIBenum.
std::string rowText(const EncodingDescriptor& row) {
  char numbers[64];
  std::snprintf(numbers, sizeof numbers, "%d %d %X %X %X %d|", row.cei, row.encodingClass, row.flags, row.padChar,
                row.substitution, row.unitSize);
  std::string text = numbers;
  for (const TextField& field : textFields(row)) text += test::narrow(field.text, field.length) + "|";
  return text + std::to_string(row.baseCei) + " " + std::to_string(row.mibEnum);
}

const char* const fullRows[] = {
    "0 0 0 20 1A 1|    |||||"
    "|||||62 0",
    "19 2 0 20 FFFD 2|utf2|utf-16|Unicode (UTF-16)|U_UNICODE_CE|Unicode (UTF-16)|"
    "utf-16|UTF-16|1200|1200|UTF-16|25 1015",
    "20 1 1 20 EFBFBD 4|utf8|utf-8|Unicode (UTF-8)|U_UTF8_CE|Unicode (UTF-8)|"
    "utf-8|UTF8|1208|65001|UTF-8|20 106",
    "25 2 0 20 FFFD 2|u16l|utf-16le|Unicode (UTF-16LE)|U_L_UNICODE_CE|Unicode (UTF-16LE)|"
    "UTF-16LE|UnicodeLittleUnmarked|1200|1200|UTF-16LE|25 1014",
    "27 3 0 20 FFFD 4|u32l|utf-32le|Unicode (UTF-32LE)|U_L_UCS4_CE|Unicode (UTF-32LE)|"
    "UTF-32LE|||12000||27 1019",
    "28 0 1 20 1A 1|ansi|us-ascii|ASCII (ANSI)|U_ASCII_CE|7-bit ASCII|"
    "us-ascii|ASCII|367|20127|US-ASCII|28 3",
    "62 0 1 20 1A 1|wlt1|wlatin1|Western (Windows)|U_WLATIN1_CE|Win cp1252-latin1|"
    "windows-1252|Cp1252|1252|1252|windows-1252|62 2252",
    "110 0 8 40 3F 1|eol1|open_ed-1047|Western (OpenEdition)|U_OPEN_ED1047_CE|OE EBCDIC 1047-lt1|"
    "|Cp1047|1047|1047|IBM1047|62 2102",
    "129 4 8 40 3F 4|jibm|ibm-939|Japanese (IBM)|U_IBM939_CE|Japanese - IBM-939|"
    "|Cp939|939||x-IBM939|138 0",
    "136 5 1 20 1A 2|j932|ms-932|Japanese (PCMS)|U_MS932_CE|Shift JIS - MS-932|"
    "shift_jis|MS932|942|932|windows-31j|138 17",
    "161 1 0 40 3F 3|utfe|utf-e|Unicode (UTF-EBCDIC)|U_UTFE_CE|Unicode (UTF-EBCDIC)|"
    "|||||20 0",
    "203 0 8 40 3F 1|eany|ebcdic-any|Any EBCDIC encoding|U_EBCDICANY_CE|Any EBCDIC encoding|"
    "|||||28 0",
    "204 0 9 0 0 1|anye|any|Any encoding|U_ANY_CE|Any encoding|"
    "|||||62 0",
    "205 5 1 20 1A 4|gbke|gb18030|Simplified Chinese (GB18030)|U_GB18030_CE|Simplified Chinese - GB18030|"
    "gb18030|GB18030|1392|54936|GB18030|125 114",
};

TEST(EncodingTable, SomeRowsInFull) {
  for (const std::string expected : fullRows) EXPECT_EQ(rowText(encodingTable[std::stoi(expected)]), expected);
}

TEST(EncodingTable, TellingFields) {
  EXPECT_EQ(std::u16string(encodingTable[76].identifier), u"U_AUKRANIAN_CE");
  EXPECT_EQ(std::u16string(encodingTable[103].description), u"Thai (OpenEdition");
  EXPECT_EQ(encodingTable[U_B_UNICODE_CE].padChar, 0x2000u);
  EXPECT_EQ(encodingTable[U_B_UCS4_CE].substitution, 0xFDFF0000u);
  EXPECT_EQ(encodingTable[U_EUCJP_CE].ccsidLength, 4);
  EXPECT_EQ(encodingTable[U_DECJP_CE].ccsidLength, 4);
  EXPECT_EQ(encodingTable[U_PCOEM921_CE].codePageLength, 3);
  EXPECT_EQ(encodingTable[U_PCOEM921_CE].codePage[0], u'\0');

  const MultiByteProfile& jis = encodingTable[U_ISO2022JP_CE].profile;
  EXPECT_EQ(jis.shiftLength, 3);
  EXPECT_EQ(hexBytes(jis.shiftOut, 4), "1B244200");
  EXPECT_EQ(hexBytes(jis.shiftIn, 4), "1B284A00");
  EXPECT_EQ(encodingTable[U_WHEBREW_CE].profile.shiftOut[0], 0xFD);
  EXPECT_EQ(encodingTable[U_WARABIC_CE].profile.shiftIn[0], 0xFE);
  EXPECT_EQ(encodingTable[U_WARABIC_CE].profile.shiftLength, 1);
}

TEST(EncodingTable, FlagsOfAliases) {
  for (CEI cei = 1; cei < NLS_CEI_COUNT; ++cei) {
    if (!isAliasCei(cei) || cei == U_UNICODE_CE) continue;
    EXPECT_EQ(encodingTable[cei].flags, cei <= 5 ? NLS_ENCODING_EBCDIC : cei == 17 ? 0 : NLS_ENCODING_ASCII) << cei;
  }
}

// A double-byte character between its shifts, but for four rows that have less.
TEST(EncodingTable, RoomOfShiftedRows) {
  const std::pair<CEI, int> rooms[] = {{U_IBM939_CE, 4}, {U_HITACHITW_CE, 4}, {U_HITACHICN_CE, 6},
                                       {U_NECJP_CE, 4},  {U_NECKANA_CE, 6},   {U_PCJIS_CE, 2},
                                       {U_JIS7_CE, 4},   {U_ISO2022JP_CE, 8}};
  for (const auto& [cei, room] : rooms) EXPECT_EQ(encodingTable[cei].unitSize, room) << cei;
}

TEST(EncodingTable, ClassCounts) {
  const int expected[] = {149, 2, 3, 2, 41, 33};
  int counts[6] = {};
  for (const EncodingDescriptor& row : encodingTable) ++counts[row.encodingClass];
  EXPECT_TRUE(std::equal(std::begin(counts), std::end(counts), expected));
}

TEST(EncodingTable, DescriptorOfEveryRowAndNoOther) {
  for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
    const EncodingDescriptor* row = nullptr;
    EXPECT_EQ(getEncodingDescriptor(nullptr, cei, &row), 0u);
    EXPECT_EQ(row, &encodingTable[cei]);
  }
  for (const CEI cei : {NLS_CEI_COUNT, 231, INT32_MAX, -1, INT32_MIN}) {
    const EncodingDescriptor* row = nullptr;
    EXPECT_EQ(getEncodingDescriptor(nullptr, cei, &row), nlsUnknownEncoding);
    EXPECT_EQ(row, nullptr);
  }
}

TEST(BaseEncoding, RowsThatAreNoAlias) {
  for (CEI cei = 1; cei < NLS_CEI_COUNT; ++cei) {
    if (isAliasCei(cei)) continue;
    CEI base = -1;
    EXPECT_EQ(getBaseEncoding(nullptr, cei, &base), 0u);
    EXPECT_EQ(base, encodingFacts().number(cei, "baseCei"));
  }
  CEI base = 0;
  getBaseEncoding(nullptr, U_LATIN1_CE, &base);
  EXPECT_EQ(base, U_WLATIN1_CE);
  getBaseEncoding(nullptr, U_MS932_CE, &base);
  EXPECT_EQ(base, U_SHIFTJIS_CE);
  getBaseEncoding(nullptr, U_EBCDICANY_CE, &base);
  EXPECT_EQ(base, U_ASCII_CE);
}

TEST(BaseEncoding, OutsideTheTable) {
  for (const CEI cei : {NLS_CEI_COUNT, INT32_MAX, -1, INT32_MIN}) {
    CEI base = -7;
    EXPECT_EQ(getBaseEncoding(nullptr, cei, &base), nlsUnknownEncoding);
    EXPECT_EQ(base, -7);
  }
}

TEST(BaseEncoding, AliasesAreResolvedWithTheSession) {
  CEI base = -7;
  {
    test::SessionOptions session(U_IBM939_CE, u"KOREAN");
    EXPECT_EQ(getBaseEncoding(session.nls(), 0, &base), 0u);
    EXPECT_EQ(base, U_SHIFTJIS_CE);
    EXPECT_EQ(getBaseEncoding(session.nls(), 7, &base), 0u);
    EXPECT_EQ(base, U_EUCKR_CE);
    EXPECT_EQ(getBaseEncoding(session.nls(), 5, &base), 0u);
    EXPECT_EQ(base, encodingTable[5].baseCei);
  }
  {
    test::SessionOptions session(0);
    base = -7;
    EXPECT_EQ(getBaseEncoding(session.nls(), 0, &base), nlsUnknownEncoding);
    EXPECT_EQ(getBaseEncoding(session.nls(), 7, &base), nlsUnknownEncoding);
    EXPECT_EQ(base, -7);
    EXPECT_EQ(getBaseEncoding(session.nls(), 18, &base), 0u);
    EXPECT_EQ(base, U_SHIFTJIS_CE);
  }
  EXPECT_EQ(getBaseEncoding(nullptr, U_UNICODE_CE, &base), 0u);
  EXPECT_EQ(base, U_L_UNICODE_CE);
}

TEST(AliasCei, BelowTheUnicodeRowsButForNoneAndUtf8) {
  for (CEI cei = -2; cei < NLS_CEI_COUNT; ++cei) EXPECT_EQ(isAliasCei(cei), cei >= 1 && cei <= 23 && cei != 20);
}

}  // namespace
}  // namespace veldnls

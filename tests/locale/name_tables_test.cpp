#include "locale/name_tables.h"

#include <gtest/gtest.h>

#include <map>

#include "support/tsv.h"
#include "support/wide.h"

namespace {

using namespace veldnls;

// The text of a fixed buffer, whose units behind the text must be zero.
template <size_t capacity>
std::string text(const char16_t (&buffer)[capacity], int32_t length) {
  EXPECT_GE(length, 0);
  EXPECT_LE(length, static_cast<int32_t>(capacity));
  for (size_t i = static_cast<size_t>(length); i < capacity; ++i) EXPECT_EQ(buffer[i], u'\0');
  return test::narrow(buffer, length);
}

struct Expected {
  std::string countryCode, languageName, countryName;
  int localeId;
  unsigned lcid;
};

std::map<std::string, Expected> expectedNames() {
  std::map<std::string, Expected> rows;
  for (const auto& f : test::readTsv("locale/names.tsv")) {
    rows[f[0]] = {f[1], f[2], f[3], std::stoi(f[4]), static_cast<unsigned>(std::stoul(f[5], nullptr, 16))};
  }
  return rows;
}

void expectRow(const LocaleNameRow& row, const std::string& posixName, const Expected& expected) {
  SCOPED_TRACE(posixName);
  EXPECT_EQ(row.posixNameLength, 5);
  EXPECT_EQ(text(row.posixName, row.posixNameLength), posixName);
  EXPECT_EQ(row.languageCodeLength, 2);
  EXPECT_EQ(text(row.languageCode, 2), posixName.substr(0, 2));
  EXPECT_EQ(row.countryCodeLength, 2);
  EXPECT_EQ(text(row.countryCode, 2), expected.countryCode);
  EXPECT_EQ(text(row.longName, row.longNameLength), expected.languageName + "_" + expected.countryName);
  EXPECT_EQ(text(row.languageName, row.languageNameLength), expected.languageName);
  EXPECT_EQ(row.localeId, expected.localeId);
  EXPECT_EQ(row.windowsLcid, expected.lcid);
}

TEST(NameTables, LocaleNamesAreTheDataInOrder) {
  const auto rows = test::readTsv("locale/names.tsv");
  const auto expected = expectedNames();
  ASSERT_EQ(rows.size(), std::size(localeNameTable));
  for (size_t i = 0; i < rows.size(); ++i) expectRow(localeNameTable[i], rows[i][0], expected.at(rows[i][0]));
}

TEST(NameTables, LanguageDefaultsHaveTheIdentifiersOfTheirLocale) {
  const auto rows = test::readTsv("locale/language_defaults.tsv");
  const auto names = expectedNames();
  ASSERT_EQ(rows.size(), std::size(languageDefaultTable));
  for (size_t i = 0; i < rows.size(); ++i) {
    Expected expected = names.at(rows[i][2]);
    expected.languageName = rows[i][1];
    expectRow(languageDefaultTable[i], rows[i][0], expected);
  }
  EXPECT_EQ(text(defaultLocaleRow.posixName, 5), "en_US");
  EXPECT_EQ(defaultLocaleRow.localeId, 51);
}

TEST(NameTables, TellingRows) {
  const auto row = [](const std::string& name) {
    for (const LocaleNameRow& candidate : localeNameTable) {
      if (test::narrow(candidate.posixName, 5) == name) return &candidate;
    }
    return static_cast<const LocaleNameRow*>(nullptr);
  };
  EXPECT_EQ(test::narrow(row("en_US")->longName, row("en_US")->longNameLength), "English_UnitedStates");
  EXPECT_EQ(row("en_US")->localeId, 51);
  EXPECT_EQ(row("en_US")->windowsLcid, 0x0409);
  EXPECT_EQ(row("ar_AE")->localeId, 18);
  EXPECT_EQ(row("ar_AE")->windowsLcid, 0x3801);
  EXPECT_EQ(row("zh_TW")->localeId, 29);
  EXPECT_EQ(row("zh_TW")->windowsLcid, 0x0404);
  EXPECT_EQ(row("pl_XX")->windowsLcid, 0x8015);
  EXPECT_EQ(test::narrow(row("sr_BA")->countryCode, 2), "YU");
  EXPECT_EQ(test::narrow(row("af_ZA")->longName, row("af_ZA")->longNameLength), "Afrikaans_SouthAfrica");
}

TEST(NameTables, LanguagesByCode) {
  const auto rows = test::readTsv("locale/language_codes.tsv");
  ASSERT_EQ(rows.size(), std::size(languageCodeTable));
  for (size_t i = 0; i < rows.size(); ++i) {
    EXPECT_EQ(languageCodeTable[i].codeLength, 2);
    EXPECT_EQ(text(languageCodeTable[i].code, 2), rows[i][0]);
    EXPECT_EQ(text(languageCodeTable[i].name, languageCodeTable[i].nameLength), rows[i][1]);
  }
}

TEST(NameTables, LanguagesByWindowsNumber) {
  const auto rows = test::readTsv("locale/windows_languages.tsv");
  ASSERT_EQ(rows.size(), std::size(windowsLanguageTable));
  for (size_t i = 0; i < rows.size(); ++i) {
    EXPECT_EQ(windowsLanguageTable[i].primaryLanguage, std::stoul(rows[i][0], nullptr, 16));
    EXPECT_EQ(text(windowsLanguageTable[i].name, windowsLanguageTable[i].nameLength), rows[i][1]);
  }
}

}  // namespace

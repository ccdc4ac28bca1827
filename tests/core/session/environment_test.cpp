#include <gtest/gtest.h>

#include "core/registry.h"
#include "core/session.h"
#include "locale/environment_variables.h"
#include "support/tsv.h"
#include "support/wide.h"

namespace {

using test::EnvironmentVariables;

int32_t codePageOf(const std::string& lang) {
  EnvironmentVariables environment({{"LANG", lang}});
  return veldnls::environmentCodePage();
}

TEST(EnvironmentCodePage, FirstVariableThatIsNotEmptyWins) {
  const struct {
    std::map<std::string, std::string> variables;
    int32_t number;
  } cases[] = {
      {{}, 1252},
      {{{"LANG", ""}}, 1252},
      {{{"LANG", "de_DE.UTF-8"}}, 1208},
      {{{"LC_CTYPE", "ja_JP.eucJP"}, {"LANG", "de_DE.UTF-8"}}, 954},
      {{{"LC_CTYPE", ""}, {"LANG", "de_DE.UTF-8"}}, 1208},
      {{{"LC_ALL", "ru_RU.CP1251"}, {"LC_CTYPE", "ja_JP.eucJP"}, {"LANG", "de_DE.UTF-8"}}, 1251},
      {{{"LC_ALL", ""}, {"LC_CTYPE", "ja_JP.eucJP"}, {"LANG", "de_DE.UTF-8"}}, 954},
      {{{"LC_MESSAGES", "ja_JP.eucJP"}, {"LANG", "de_DE.UTF-8"}}, 1208},
      {{{"LC_ALL", "C"}, {"LANG", "de_DE.UTF-8"}}, 1252},
  };
  for (const auto& c : cases) {
    EnvironmentVariables environment(c.variables);
    EXPECT_EQ(veldnls::environmentCodePage(), c.number);
  }
}

TEST(EnvironmentCodePage, CodesetsInAnySpelling) {
  const struct {
    const char* lang;
    int32_t number;
  } cases[] = {
      {"C", 1252},
      {"POSIX", 1252},
      {"de_DE", 1252},
      {"de_DE@euro", 1252},
      {"de_DE.", 1252},
      {"de_DE.-", 0},
      {"C.UTF-8", 1208},
      {"en_US.utf8", 1208},
      {"en_US.UTF_8@x.y", 1208},
      {"de_DE.ISO-8859-1", 28591},
      {"de_DE.iso88591", 28591},
      {"de_DE.ISO_8859-15@euro", 28605},
      {"ru_RU.ISO-8859-5", 28595},
      {"ja_JP.EUC-JP", 954},
      {"ja_JP.SJIS", 932},
      {"ja_JP.Windows-31J", 932},
      {"ko_KR.euckr", 970},
      {"ko_KR.UHC", 949},
      {"zh_CN.GB2312", 1383},
      {"zh_CN.GBK", 936},
      {"zh_CN.GB18030", 54936},
      {"zh_TW.Big5", 950},
      {"zh_HK.BIG5-HKSCS", 950},
      {"zh_TW.EUC-TW", 964},
      {"th_TH.TIS-620", 874},
      {"en_US.ANSI_X3.4-1968", 367},
      {"ru_RU.KOI8-R", 0},
      {"se_NO.ISO-8859-10", 0},
      {"de_DE.UTF-80", 0},
      {"de_DE.UTF", 0},
      {"de_DE.nonsense", 0},
      {"de_DE.\xC3\xA9", 0},
  };
  for (const auto& c : cases) EXPECT_EQ(codePageOf(c.lang), c.number) << c.lang;
}

// Every number of the mapping is a name of the encoding that the data gives with it.
TEST(EnvironmentCodePage, EveryNumberNamesItsEncoding) {
  const auto rows = test::readTsv("locale/codesets.tsv");
  ASSERT_FALSE(rows.empty());
  for (const auto& row : rows) {
    EXPECT_EQ(codePageOf("xx_XX." + row[0]), std::stoi(row[1])) << row[0];
    const std::u16string number = test::widen(row[1]);
    CEI cei = 0;
    ASSERT_EQ(
        veldnls::lookupEncoding(nullptr, number.data(), static_cast<int32_t>(number.size()), NLS_LOOKUP_ANY, &cei), 0u)
        << row[1];
    const EncodingDescriptor& encoding = veldnls::encodingTable[cei];
    EXPECT_EQ(test::narrow(encoding.name, encoding.nameLength), row[2]) << row[0];
  }
}

}  // namespace

// The table generator stops on every kind of breach, with a sentence that tells what must hold.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "support/generator.h"

namespace {

namespace fs = std::filesystem;

class Generator : public testing::Test {
 protected:
  test::GeneratorCopy generator_{GEN_LOCALES, "locale", {"locales"}, test::GeneratorCopy::Writes::fileByFile};
};

TEST_F(Generator, SameTextGivesTheSameBytes) {
  EXPECT_EQ(generator_.run().exitCode, 0);
  int files = 0;
  for (const auto& entry : fs::directory_iterator(generator_.out("locales"))) {
    const fs::path built = fs::path(VELDNLS_BINARY_DIR "/generated/locales") / entry.path().filename();
    EXPECT_EQ(test::readFile(entry.path()), test::readFile(built));
    ++files;
  }
  EXPECT_EQ(files, 14);
}

struct Breach {
  const char* file;
  const char* from;
  const char* to;
  const char* message;
};

std::ostream& operator<<(std::ostream& out, const Breach& breach) {
  return out << breach.file << ": " << breach.message;
}

class GeneratorStops : public Generator, public testing::WithParamInterface<Breach> {};

TEST_P(GeneratorStops, OnABreach) {
  const Breach& breach = GetParam();
  generator_.replace(breach.file, breach.from, breach.to);
  generator_.expectStop({breach.message, breach.file});
}

// Values that callers rely on: the sentence tells the line of the edit.
class GeneratorTellsTheLine : public GeneratorStops {};

TEST_P(GeneratorTellsTheLine, OfAFixedValue) {
  const Breach& breach = GetParam();
  const std::string text = test::readFile(generator_.data(breach.file));
  const auto at = static_cast<ptrdiff_t>(text.find(breach.from));
  const auto line = 1 + std::count(text.begin(), text.begin() + at, '\n');
  const std::string place = std::string(breach.file) + ":" + std::to_string(line);
  generator_.expectBreach(breach.file, breach.from, breach.to, place + ": " + breach.message, place);
}

INSTANTIATE_TEST_SUITE_P(
    Names, GeneratorTellsTheLine,
    testing::Values(
        Breach{"names.tsv", "de_AT\tAT", "de_AX\tAX", "the row is fixed as \"de_AT\""},
        Breach{"names.tsv", "0x8015", "0x8115", "pl_XX has locale id 90 and Windows identifier 0x8015"},
        Breach{"names.tsv", "0x0809", "0x4C09", "en_GB has locale id 50 and Windows identifier 0x0809"},
        Breach{"names.tsv", "German\tGermany", "German\tGermania", "de_DE has the long name German_Germany"},
        Breach{"names.tsv", "\tUnitedStates\t51", "\tUnitedState\t51", "en_US has the long name English_UnitedStates"},
        Breach{"language_defaults.tsv", "en_US\tEnglish\ten_US", "en_GB\tEnglish\ten_GB",
               "the row is fixed as \"en_US English\""},
        Breach{"language_defaults.tsv", "be_BY\tByelorussian", "be_BY\tByelorussia",
               "the row is fixed as \"be_BY Byelorussian\""},
        Breach{"language_defaults.tsv", "iw_IL\tHebrew\the_IL", "iw_IL\tHebrew\tit_IT",
               "a row stands for the locale of its own name, but for he_IL in iw_IL"},
        Breach{"language_codes.tsv", "aa\tAfar", "aa\tAfro", "the row is fixed as \"aa Afar\""},
        Breach{"language_codes.tsv", "zu\tZulu", "zy\tZulu", "the row is fixed as \"zu Zulu\""},
        Breach{"windows_languages.tsv", "0x86\tK'iche ", "0x86\tK'iche", "the row is fixed as \"0x86 K'iche \""},
        Breach{"windows_languages.tsv", "0x8C\tDari", "0x8D\tDari", "the row is fixed as \"0x8C Dari\""}));

INSTANTIATE_TEST_SUITE_P(
    Data, GeneratorTellsTheLine,
    testing::Values(
        Breach{"overrides.tsv", "zh_CN\tdeviceFont\tHEI;<ttf> SimHei", "zh_CN\tdeviceFont\tX;<ttf> Y",
               "item 8 of zh_CN is fixed as \"HEI;<ttf> SimHei\""},
        Breach{"overrides.tsv", "ja_JP\tdeviceFont\tKANJI;<ttf> MS PGothic", "ja_JP\tdeviceFont\tFOO;<ttf> Bar",
               "item 8 of ja_JP is fixed as \"KANJI;<ttf> MS PGothic\""},
        Breach{"overrides.tsv", "es\tlanguageTag\tes", "es\tlanguageTag\txx",
               "the tag of es_AR is its language, or empty"},
        Breach{"overrides.tsv", "fr\tlanguageTag\tfr", "fr\tlanguageTag\tes", "the tag of fr_BE is its language"},
        Breach{"overrides.tsv", "ja_JP\tlanguageTag\tja", "ja_JP\tlanguageTag\tjp", "item 12 of ja_JP is fixed as"},
        Breach{"overrides.tsv", "ja_JP\tnameSuffix\t-san", "ja_JP\tnameSuffix\t-kun",
               "item 133 of ja_JP is fixed as \"-san\""},
        Breach{"overrides.tsv", "*\tnameSuffix\t", "*\tnameSuffix\tJr.", "a name's suffix is -san, or empty"},
        Breach{"overrides.tsv", "ar_IN\tcurrencyGrouping\t2;3", "ar_IN\tcurrencyGrouping\t3;2",
               "currencyGrouping of ar_IN is fixed as \"2;3\""},
        Breach{"overrides.tsv", "en_CB\tpaperName\tLETTER", "en_CB\tdeviceFont\tHEI;<ttf> SimHei",
               "Chinese, Japanese and Korean have a double-byte font, other languages have none"},
        Breach{"overrides.tsv", "en_CB\tpaperName\tLETTER",
               "en_CB\tfontNames\tSWISS|SWISS|SWISS|SWISS|SWISS|SWISS|SWISS|SWISS|SWISS|SWISS",
               "only Chinese, Japanese and Korean replace the fonts"},
        Breach{"overrides.tsv", "*\tformatNames\tNLDATE16.|NLDATM24.|NLTIME8.|BEST12.",
               "*\tformatNames\tNLDATE16.|NLDATM24.|NLTIME8.|BEST14.", "item 16 of af_ZA is fixed as \"BEST12.\""},
        Breach{"overrides.tsv", "*\tmeasurement\t1", "*\tmeasurement\t2", "item 140 of af_ZA is fixed as \"1\""},
        Breach{"overrides.tsv", "*\tperiodFormats\t%Y|%y|%Q %Y", "*\tperiodFormats\t%Y|%y|%Q/%Y",
               "item 45 of en_US is fixed as \"%Q %Y\""},
        Breach{"overrides.tsv", "en_US\tdateFormatMedium\t%d%b%Y", "en_US\tdateFormatMedium\t%d.%b.%Y",
               "dateFormatMedium of en_US is fixed as \"%d%b%Y\""},
        Breach{"overrides.tsv", "*\tnegativeSign\t-", "*\tnegativeSign\t~", "item 104 of en_US is fixed as \"-\""},
        Breach{"rows.tsv", "*\tnumberPattern\t#,##0.###", "*\tnumberPattern\t#,##0.##",
               "numberPattern of en_US is fixed as \"#,##0.###\""},
        Breach{"rows.tsv", "ja_JP\tcurrencyDigits\t0", "ja_JP\tcurrencyDigits\t1",
               "currencyDigits of ja_JP is fixed as \"0\""},
        Breach{"rows.tsv", "en_US\tpaperName\tLETTER", "en_US\tpaperName\tA4",
               "paperName of en_US is fixed as \"LETTER\""}));

INSTANTIATE_TEST_SUITE_P(
    Formats, GeneratorTellsTheLine,
    testing::Values(
        Breach{"rows.tsv", "en\tdateFormatFull\t%A, %d %B %Y", "en\tdateFormatFull\t%A, %d %B %X",
               "%A, %d %B %X of dateFormatFull needs one %A, one %d, one of %m %B, one of %y %Y, and no other items"},
        Breach{"rows.tsv", "bs_BA\tdateFormatFull\t%A, %d. %B %Y.", "bs_BA\tdateFormatFull\t%A, %d. %B% %Y.",
               "%A, %d. %B% %Y. of dateFormatFull needs"},
        Breach{"rows.tsv", "en\tdateFormatFull\t%A, ", "en\tdateFormatFull\t%a, ",
               "%a, %d %B %Y of dateFormatFull needs"},
        Breach{"rows.tsv", "*\tmonthYearFormat\t%B %Y", "*\tmonthYearFormat\t%B %X",
               "%B %X of monthYearFormat needs one of %m %b %B, one of %y %Y, and no other items"},
        Breach{"rows.tsv", "*\tmonthYearFormatShort\t%b %Y", "*\tmonthYearFormatShort\t%b %Y %d",
               "%b %Y %d of monthYearFormatShort needs"},
        Breach{"rows.tsv", "en\tmonthDayFormat\t%d %B", "en\tmonthDayFormat\t%d %d",
               "%d %d of monthDayFormat needs one of %m %b %B, one %d, and no other items"},
        Breach{"rows.tsv", "*\tmonthDayFormatShort\t%d %b", "*\tmonthDayFormatShort\t%d",
               "%d of monthDayFormatShort needs"},
        Breach{"overrides.tsv", "*\tperiodFormats\t%Y|", "*\tperiodFormats\t%X|",
               "%X of periodFormats needs one of %y %Y, and no other items"},
        Breach{"overrides.tsv", "*\tperiodFormats\t%Y|%y|%Q %Y", "*\tperiodFormats\t%Y|%y|%Q",
               "%Q of periodFormats needs one of %q %Q, one of %y %Y, and no other items"},
        Breach{"overrides.tsv", "*\tperiodFormats\t%Y|%y|%Q %Y|%q %y|Week %U %G|W%U %g",
               "*\tperiodFormats\t%Y|%y|%Q %Y|%q %y|Week %U %G|W%U %y",
               "W%U %y of periodFormats needs one %U, one of %g %G, and no other items"},
        Breach{"rows.tsv", "ja_JP\tdecimalPoint\t.", "ja_JP\tdecimalPoint\tX", "a decimal point is one of . , U+066B"},
        Breach{"rows.tsv", "de_CH\tdecimalPoint\t.", "de_CH\tdecimalPoint\t-", "a decimal point is one of . , U+066B"},
        Breach{"overrides.tsv", "en_CB\tpaperName\tLETTER\tours", "en_CB\tpaperName\tLETTER\tknown",
               "a value that is known is fixed"}));

INSTANTIATE_TEST_SUITE_P(
    Names, GeneratorStops,
    testing::Values(
        Breach{"names.tsv", "de_DE\tDE", "dE_DE\tDE", "has the form ll_CC"},
        Breach{"names.tsv", "de_DE\tDE", "de_DE\tFR", "the country code repeats the name"},
        Breach{"names.tsv", "sr_BA\tYU", "sr_BA\tBA", "but for YU in sr_BA"},
        Breach{"names.tsv", "German\tGermany", "German\tTheFederalRepublicOfGermany", "the buffer takes 31"},
        Breach{"names.tsv", "German\tGermany", "German\tGermany\xC3\xA9", "names are plain ASCII"},
        Breach{"names.tsv", "de_AT\tAT", "de_ZT\tZT", "rows ascend by name"},
        Breach{"names.tsv", "\t51\t", "\t50\t", "is locale 51 by language and country name"},
        Breach{"names.tsv", "\t51\t", "\t132\t", "number outside"},
        Breach{"names.tsv", "0x0407", "0x0007", "needs a Windows identifier with a sublanguage"},
        Breach{"names.tsv", "0x0029", "0x0429", "has no sublanguage in Windows"},
        Breach{"names.tsv", "0x0C07", "0x0407", "other locales share a Windows identifier"},
        Breach{"names.tsv", "vi_VN\tVN\tVietnamese\tVietnam\t131\t0x042A\n", "", "131 rows where there are 132"}));

INSTANTIATE_TEST_SUITE_P(
    Languages, GeneratorStops,
    testing::Values(Breach{"language_defaults.tsv", "German\tde_DE", "German\tde_XX", "no locale has the name de_XX"},
                    Breach{"language_defaults.tsv", "German\tde_DE", "German\tde_AT", "the locale of its own name"},
                    Breach{"language_defaults.tsv", "cs_CZ\tCzech\tcs_CZ\nda_DK\tDanish\tda_DK\n",
                           "da_DK\tDanish\tda_DK\ncs_CZ\tCzech\tcs_CZ\n", "rows ascend by name, then by language name"},
                    Breach{"language_defaults.tsv", "zh_CN\tChinese\tzh_CN\n", "", "60 rows where there are 61"},
                    Breach{"language_defaults.tsv", "de_DE\tGerman\tde_DE\n",
                           "de_AT\tGerman\tde_AT\nde_DE\tGerman\tde_DE\n", "a language has one default"},
                    Breach{"language_codes.tsv", "de\tGerman", "DE\tGerman", "two lower-case letters"},
                    Breach{"language_codes.tsv", "de\tGerman", "zz\tGerman", "rows ascend by code"},
                    Breach{"language_codes.tsv", "zu\tZulu\n", "", "207 rows where there are 208"},
                    Breach{"language_codes.tsv", "zu\tZulu\n", "zu\t\n", "empty text"},
                    Breach{"windows_languages.tsv", "0x8C\tDari\n", "", "117 rows where there are 118"},
                    Breach{"windows_languages.tsv", "0x8C\tDari\n", "0x400\tDari\n", "number above 0x3FF"},
                    Breach{"windows_languages.tsv", "0x00\tNeutral", "0x02\tNeutral", "rows ascend by number"},
                    Breach{"codesets.tsv", "eucjp", "euc-jp", "without \"-\" and \"_\""},
                    Breach{"codesets.tsv", "utf8", "UTF8", "lower case"},
                    Breach{"codesets.tsv", "utf8", "aaa", "rows ascend"},
                    Breach{"codesets.tsv", "utf8\t1208", "utf8\t0", "number outside"},
                    Breach{"codesets.tsv", "cp862\t862", "cp862\t9", "the number 9 is no name of an encoding"},
                    Breach{"codesets.tsv", "cp862\t862", "cp862\t863", "the number 863 is a name of pcoem863"},
                    Breach{"codesets.tsv", "cp862\t862\tpcoem862", "cp862\t862\tmsdos862",
                           "the number 862 is a name of pcoem862"}));

INSTANTIATE_TEST_SUITE_P(
    Encodings, GeneratorStops,
    testing::Values(
        Breach{"encodings.tsv", "sq_AL", "en_US", "in the order of locale identifiers"},
        Breach{"encodings.tsv", "af_ZA\t204 27 26", "af_ZA\t204 26 27", "encodings descend"},
        Breach{"encodings.tsv", "af_ZA\t204 27 26 25 24 20", "af_ZA\t204 27 26 25 24",
               "encoding 20 serves every locale"},
        Breach{"encodings.tsv", "110 97 69 62 42 29", "110 97 69 62 42 25", "encoding 25 stands on both lists"},
        Breach{"encodings.tsv", "110 97 69 62 42 29", "110 97 69 62 42 28", "af_ZA has the six common encodings"},
        Breach{"encodings.tsv", "110 97 69 62 42 29", "110 97 69 62 42 18", "encoding 18 stands on no list"},
        Breach{"encodings.tsv", "110 97 69 62 42 29", "110 107 69 62 42 29", "encoding 107 stands on no list"},
        Breach{"encodings.tsv", "110 97 69 62 42 29", "110 97 69 62 42 19", "encoding 19 stands on no list"},
        Breach{"encodings.tsv", "110 97 69 62 42 29", "161 97 69 62 42 29", "encoding 161 stands on no list"},
        Breach{"encodings.tsv", "110 97 69 62 42 29", "162 97 69 62 42 29", "encoding 162 stands on no list"},
        Breach{"encodings.tsv", "110 97 69 62 42 29", "170 97 69 62 42 29", "encoding 170 stands on no list"},
        Breach{"encodings.tsv", "110 97 69 62 42 29", "203 97 69 62 42 29", "encoding 203 stands on no list"},
        Breach{"encodings.tsv", "sq_AL\t204 200", "sq_AL\t230 204 200", "number outside 0 to 229"},
        Breach{"encodings.tsv", "sq_AL\t204 200", "sq_AL\t229 204 200", "4804 and 145 pairs"},
        Breach{"encodings.tsv", "42 40 29 27 26 25 24 20\t\n", "42 29 27 26 25 24 20\t40\n",
               "25 locales have a second list"},
        Breach{"encodings.tsv", "229 208 207 66", "228 208 207 66", "encoding 229 serves 19 locales, and 2 in part"}));

INSTANTIATE_TEST_SUITE_P(
    Columns, GeneratorStops,
    testing::Values(Breach{"names.tsv", "0x8015\n", "0x8015\tx\n", "has 7 fields; it must have 6"},
                    Breach{"names.tsv", "\t0x8015\n", "\n", "has 5 fields; it must have 6"},
                    Breach{"language_defaults.tsv", "German\tde_DE\n", "German\tde_DE\t\n", "has 4 fields"},
                    Breach{"language_codes.tsv", "zu\tZulu\n", "zu\tZulu\tx\n", "has 3 fields; it must have 2"},
                    Breach{"windows_languages.tsv", "0x8C\tDari\n", "0x8C\tDari\tx\n", "has 3 fields"},
                    Breach{"codesets.tsv", "utf8\t1208\t", "utf8\t1208\t\t", "has 4 fields; it must have 3"},
                    Breach{"encodings.tsv", "110 97 69 62 42 29\n", "110 97 69 62 42 29\tx\n", "has 4 fields"}));

INSTANTIATE_TEST_SUITE_P(
    Tables, GeneratorStops,
    testing::Values(
        Breach{"rows.tsv", "af_ZA\tdayNames", "af_AZ\tdayNames", "no locale or language has the name af_AZ"},
        Breach{"rows.tsv", "af_ZA\tdayNames", "af_ZA\tdays", "no field has the name days"},
        Breach{"rows.tsv", "af_ZA\tdayAbbreviations", "af_ZA\tdayNames", "af_ZA has two lines for dayNames"},
        Breach{"rows.tsv", "af_ZA\tpmText\tnm.\n", "", "af_ZA has no pmText"},
        Breach{"rows.tsv", "af_ZA\tpmText\tnm.\n", "af_ZA\tpmText\n", "has 2 fields; it must have 3"},
        Breach{"rows.tsv", "Sondag|Maandag", "Sondag", "dayNames is a list of 7 parts"},
        Breach{"rows.tsv", "Sondag|", "Son<U000A>dag|", "texts hold visible characters of one unit"},
        Breach{"rows.tsv", "Sondag|", "Son\xF0\x90\x80\x80|", "texts hold visible characters of one unit"},
        Breach{"rows.tsv", "Sondag|", "Son<U0XA0>dag|", "not a hexadecimal number"},
        Breach{"overrides.tsv", "en_US\tdateFormatShort\t%m/%d/%Y\tknown", "en_US\tdateFormatShort\t%m/%d/%Y\tsure",
               "an origin is \"known\" or \"ours\""},
        Breach{"overrides.tsv", "*\tlanguageTag\t\tknown", "*\tlanguageTag\t\tours",
               "has 17 known overrides; it must have 18"},
        Breach{"overrides.tsv", "*\tnegativeSign\t-\tours", "*\tnegativeSign\t-\tknown",
               "has 19 known overrides; it must have 18"},
        Breach{"overrides.tsv", "lv_LV\tdateFormatShort\t%y.%d.%m", "lv_LV\tdateFormatShort\t%d.%m.%y",
               "changes no row; remove the line"},
        Breach{"overrides.tsv", "*\tnegativeSign\t-\tours\n", "", "has no negativeSign"},
        Breach{"overrides.tsv", "sh_CS\tcountryName\tSerbiaAndMontenegro\tours\n", "", "has an empty countryName"}));

INSTANTIATE_TEST_SUITE_P(
    Texts, GeneratorStops,
    testing::Values(
        Breach{"rows.tsv", "Sondag|", "|", "af_ZA has an empty dayNames"},
        Breach{"rows.tsv", "Sondag|", "Sondag |", "dayNames ends or begins in a blank"},
        Breach{"rows.tsv", "Sondag|", "Sondagsondagsondagsondagsondagsondagsondagsondagsondagsondagso|",
               "dayNames has 62 units"},
        Breach{"rows.tsv", "1ste kwartaal",
               "\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC"
               "\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC"
               "\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC",
               "item 90 of af_ZA has 161 bytes, the record takes 160"},
        Breach{"rows.tsv", "af_ZA\tgroupSeparator\t<U00A0>", "af_ZA\tgroupSeparator\t..",
               "groupSeparator is one character"},
        Breach{"rows.tsv", "af_ZA\tgroupSeparator\t<U00A0>", "af_ZA\tgroupSeparator\t_",
               "groups are separated by one of"},
        Breach{"rows.tsv", "af_ZA\tgroupSeparator\t<U00A0>", "af_ZA\tgroupSeparator\t,",
               "af_ZA has one sign for decimal point and groups"},
        Breach{"overrides.tsv", "numberGrouping\t3;2", "numberGrouping\t4", "sizes of groups are 3, 3;2 or 2;3"},
        Breach{"rows.tsv", "currencyCode\tZAR", "currencyCode\tRand", "a code of three capitals"},
        Breach{"rows.tsv", "af_ZA\tclock\t12", "af_ZA\tclock\t13", "a clock has 12 or 24 hours"},
        Breach{"rows.tsv", "*\tpaperName\tA4", "*\tpaperName\tA5", "paper is LETTER or A4"},
        Breach{"rows.tsv", "af_ZA\tcurrencyPattern\t\xC2\xA4#,##0.00", "af_ZA\tcurrencyPattern\t#,##0.00",
               "have the currency sign and digits"},
        Breach{"rows.tsv", ";\xC2\xA4-#,##0.00", ";\xC2\xA4!#,##0.00", "the negative form puts its sign first"}));

INSTANTIATE_TEST_SUITE_P(
    Formats, GeneratorStops,
    testing::Values(
        Breach{"rows.tsv", "af_ZA\tdateFormatShort\t%Y-%m-%d", "af_ZA\tdateFormatShort\t%Y-%m", "has one %d"},
        Breach{"rows.tsv", "af_ZA\tdateFormatShort\t%Y-%m-%d", "af_ZA\tdateFormatShort\t%Y-%m-%e", "has one %d"},
        Breach{"rows.tsv", "af_ZA\tdateFormatShort\t%Y-%m-%d", "af_ZA\tdateFormatShort\t%a %Y-%m-%d",
               "and no other items"},
        Breach{"rows.tsv", "af_ZA\tdateFormatShort\t%Y-%m-%d", "af_ZA\tdateFormatShort\t%Y-%m-%d%",
               "a format doesn't end in"},
        Breach{"rows.tsv", "af_ZA\tdateFormatShort\t%Y-%m-%d", "af_ZA\tdateFormatShort\t%Y%m-%d",
               "a separator between them"},
        Breach{"overrides.tsv", "%d%b%y:%H:%M:%S", "%d%b%y:%H:%S:%M", "dateTimeFormat ends in %H %M %S"},
        Breach{"overrides.tsv", "%H.%M Uhr", "%H Uhr", "timeFormat24 has %H %M"},
        Breach{"overrides.tsv", "de_DE\ttimeFormatSeconds\t%H:%M:%S\tours\n", "",
               "give it a line where timeFormat24 has no seconds"},
        Breach{"rows.tsv", "*\ttimeFormat12\t%I:%M:%S %p", "*\ttimeFormat12\t%p %I:%M:%S", "in this order"},
        Breach{"rows.tsv", "af_ZA\tpmText\tnm.", "af_ZA\tpmText\tvm.x", "af_ZA reads its pmText as amText"},
        Breach{"rows.tsv", "af_ZA\tpmText\tnm.", "af_ZA\tpmText\tVM.x", "af_ZA reads its pmText as amText"},
        Breach{"rows.tsv", "Jan|Feb|Mrt", "Ja|Feb|Jan", "can't read its dates back: Ja begins Jan"},
        Breach{"rows.tsv", "Jan|Feb|Mrt", "Ja|Feb|jAN", "can't read its dates back: Ja begins jAN"},
        Breach{"rows.tsv", "Jan|Feb|Mrt", "\xC3\x89t|Feb|\xC3\xA9ta", "back: <U00C9>t begins <U00E9>ta"},
        Breach{"overrides.tsv", "kw_GB\tdateFormatLong\t%d/%m/%Y", "kw_GB\tdateFormatLong\t%d %B %Y",
               "can't read its dates back: mis Me begins mis Metheven"}));

INSTANTIATE_TEST_SUITE_P(
    Figures, GeneratorStops,
    testing::Values(
        Breach{"rows.tsv", "ko_KR\tcurrencyDigits\t0", "ko_KR\tcurrencyDigits\t1",
               "has 1 rows without currency digits; it must have 2"},
        Breach{"rows.tsv", "en_CA\tpaperName\tLETTER", "en_CA\tpaperName\tA4",
               "has 23 rows with letter paper; it must have 24"},
        Breach{"overrides.tsv", "%y.%d.%m", "%y.%m.%d", "has 0 rows with the order year, day, month; it must have 1"},
        Breach{"overrides.tsv", "KANJI;<ttf> MS PGothic", "", "no row; remove the line"},
        Breach{"overrides.tsv", "de\tlanguageTag\tde\tours\n", "", "has 41 rows with a language tag; it must have 46"},
        Breach{"rows.tsv", "Sunday|Monday", "Sonday|Monday", "dayNames of en_US is fixed as"},
        Breach{"rows.tsv", "1st quarter", "First quarter", "item 90 of en_US is fixed as \"1st quarter\""},
        Breach{"overrides.tsv", "ar_IN\tnumberGrouping\t3;2", "ar_IN\tnumberGrouping\t2;3",
               "has 1 rows with numbers in groups of two and three; it must have 0"},
        Breach{"overrides.tsv", "ar_IN\tnumberGrouping\t3;2", "bn_IN\tcurrencyGrouping\t2;3",
               "has 2 rows with money in groups of two and three; it must have 1"}));

}  // namespace

#include <gtest/gtest.h>

#include "core/session.h"
#include "locale/environment_variables.h"

namespace {

using test::EnvironmentVariables;

uint32_t localeOf(const std::string& lang) {
  EnvironmentVariables environment({{"LANG", lang}});
  return veldnls::environmentLocaleId();
}

TEST(EnvironmentLocale, FirstVariableThatIsNotEmptyWins) {
  const struct {
    std::map<std::string, std::string> variables;
    uint32_t lcid;
  } cases[] = {
      {{}, 1033},
      {{{"LANG", ""}}, 1033},
      {{{"LANG", "de_DE.UTF-8"}}, 0x0407},
      {{{"LC_MESSAGES", "fr_FR"}, {"LANG", "de_DE"}}, 0x040C},
      {{{"LC_MESSAGES", ""}, {"LANG", "de_DE"}}, 0x0407},
      {{{"LC_ALL", "ja_JP.eucJP"}, {"LC_MESSAGES", "fr_FR"}, {"LANG", "de_DE"}}, 0x0411},
      {{{"LC_ALL", ""}, {"LC_MESSAGES", "fr_FR"}, {"LANG", "de_DE"}}, 0x040C},
      {{{"LC_CTYPE", "ja_JP"}, {"LANG", "de_DE"}}, 0x0407},
      {{{"LC_ALL", "C"}, {"LANG", "de_DE"}}, 1033},
  };
  for (const auto& c : cases) {
    EnvironmentVariables environment(c.variables);
    EXPECT_EQ(veldnls::environmentLocaleId(), c.lcid);
  }
}

TEST(EnvironmentLocale, NamesBecomeWindowsIdentifiers) {
  const struct {
    const char* lang;
    uint32_t lcid;
  } cases[] = {
      {"C", 1033},
      {"POSIX", 1033},
      {"C.UTF-8", 1033},
      {"en_US.UTF-8", 1033},
      {"en_GB", 2057},
      {"de_DE.ISO-8859-15@euro", 0x0407},
      {"de_DE@euro", 0x0407},
      {"de", 0x0407},
      {"de.UTF-8", 0x0407},
      {"de_XX.UTF-8", 0x0407},
      {"nb_NO.UTF-8", 0x0414},
      {"zh_TW.Big5", 0x0404},
      {"iw_IL", 0x040D},
      {"xh_ZA.UTF-8", 1033},
      {"qq_QQ", 1033},
      {"ast_ES.UTF-8", 1033},
      {"x", 1033},
      {"DE", 0x0407},
      {"de-DE", 0x0407},
      {"de-XX", 0x0407},
      {"de_", 0x0407},
      {"German_Germany", 1033},
      {"d", 1033},
      {"1e_DE", 1033},
      {"d1_DE", 1033},
      {"de DE", 1033},
      {"gv_GB.UTF-8", 0},
      {"en_HK.UTF-8", 9},
      {"\xC3\xA9\xC3\xA9_FR", 1033},
      {"@euro", 1033},
      {".UTF-8", 1033},
      {"a name that is longer than any locale has, and means nothing", 1033},
  };
  for (const auto& c : cases) EXPECT_EQ(localeOf(c.lang), c.lcid) << c.lang;
}

// Look-ups know locales by number too; text of the environment never gets there.
TEST(EnvironmentLocale, NumericFormsMeanNothing) {
  for (const char* lang : {"QUOID:3", "QUOID:3.UTF-8", "QUOID:", "QUOID", "QUO", "QU", "QU.UTF-8", "QU@euro", "QU_",
                           "QU_PE", "WLCID:1031", "WLCID: 1031", "WLCID:7", "WLCID:", "WLCID", "WLC", "WL", "WL_DE"}) {
    EXPECT_EQ(localeOf(lang), 1033u) << lang;
  }
}

}  // namespace

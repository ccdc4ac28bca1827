// From the environment to the object's locale: the name goes through a Windows identifier, which not every locale has
// to itself.
#include <gtest/gtest.h>

#include "core/session.h"
#include "locale/environment_variables.h"
#include "support/host.h"
#include "support/tsv.h"
#include "support/wide.h"
#include "veldnls/status.h"

namespace {

struct HostLocale {
  std::string name;
  NlsStatus status;
};

// What an object made in an environment with this LANG says of the host's locale.
HostLocale hostLocaleOf(const std::string& lang) {
  test::EnvironmentVariables environment({{"LANG", lang}});
  test::NlsHost host(&VELDNLSLIB);
  if (host.nls == nullptr) return {"no object", nlsInitFailed};
  char16_t name[60] = {};
  int32_t length = -1;
  const NlsStatus status = host.nls->getHostLocaleName(host.nls, name, &length);
  return {test::narrow(name, length), status};
}

// Locales whose identifier leads to another name.
const std::map<std::string, HostLocale> exceptions = {
    // The identifier is 0, which is that of no locale.
    {"gv_GB", {"en_US", nlsLocaleNotFound}},
    {"kw_GB", {"en_US", nlsLocaleNotFound}},
    // The identifier tells only the language, and its default answers.
    {"ar_IN", {"ar_AE", 0}},
    {"ar_SD", {"ar_AE", 0}},
    {"en_BE", {"en_US", 0}},
    {"en_BW", {"en_US", 0}},
    {"en_HK", {"en_US", 0}},
    {"es_US", {"es_ES", 0}},
    {"fa_IN", {"fa_IR", 0}},
    {"ru_UA", {"ru_RU", 0}},
    // Another locale has the identifier too and stands ahead of it.
    {"hr_BA", {"bs_BA", 0}},
    {"no_NO", {"nb_NO", 0}},
    {"sh_RS", {"sh_ME", 0}},
    {"sr_RS", {"sr_ME", 0}},
    {"sr_YU", {"sr_ME", 0}},
};

TEST(HostLocale, LocalesComeBackAsThemselvesButForThese) {
  size_t met = 0;
  for (const auto& row : test::readTsv("locale/names.tsv")) {
    const std::string& name = row[0];
    const auto exception = exceptions.find(name);
    if (exception != exceptions.end()) ++met;
    const HostLocale expected = exception != exceptions.end() ? exception->second : HostLocale{name, 0};
    const HostLocale actual = hostLocaleOf(name + ".UTF-8");
    EXPECT_EQ(actual.name, expected.name) << name;
    EXPECT_EQ(actual.status, expected.status) << name;
  }
  EXPECT_EQ(met, exceptions.size());
}

// A bare language takes the same way as its default locale.
TEST(HostLocale, ALanguageComesBackAsItsDefault) {
  const std::map<std::string, HostLocale> cases = {
      {"de", {"de_DE", 0}},
      {"ar", {"ar_AE", 0}},
      {"iw", {"he_IL", 0}},
      {"sr", {"sr_ME", 0}},
      {"gv", {"en_US", nlsLocaleNotFound}},
      {"xh", {"en_US", 0}},
      {"C", {"en_US", 0}},
  };
  for (const auto& [lang, expected] : cases) {
    const HostLocale actual = hostLocaleOf(lang);
    EXPECT_EQ(actual.name, expected.name) << lang;
    EXPECT_EQ(actual.status, expected.status) << lang;
  }
}

}  // namespace

// veld locales: the table, and all about one locale.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "apps/locale_commands.h"

namespace test {
namespace {

using Json = nlohmann::json;

constexpr size_t localeCount = 132;

Json locales(std::vector<std::string> more) {
  std::vector<std::string> arguments{"locales", "--json"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  const Outcome outcome = runVeld({.arguments = std::move(arguments)});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  return Json::parse(outcome.output, nullptr, false);
}

std::string nameOf(const std::string& wanted) { return locales({wanted})["name"]; }

TEST(VeldLocales, TheTableHasALineForEachLocale) {
  const Outcome outcome = runVeld({.arguments = {"locales"}});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_EQ(lineCount(outcome.output), localeCount + 1);
  EXPECT_TRUE(contains(outcome.output, "\n 51  en_US  en-US  0x0409  USD       English           UnitedStates"))
      << outcome.output;
  const std::vector<std::string> names = localeNames();
  ASSERT_EQ(names.size(), localeCount);
  EXPECT_EQ(names[0], "af_ZA");
  EXPECT_EQ(names[29], "zh_TW");
}

TEST(VeldLocales, JsonHasTheSameRows) {
  const Json rows = locales({});
  ASSERT_EQ(rows.size(), localeCount);
  const std::vector<std::string> names = localeNames();
  for (size_t i = 0; i < localeCount; ++i) {
    EXPECT_EQ(rows[i]["id"], i);
    EXPECT_EQ(rows[i]["name"], names[i]);
    EXPECT_EQ(rows[i]["encodings"].back(), "utf-8");
    EXPECT_FALSE(rows[i]["country"].get<std::string>().empty());
  }
  EXPECT_EQ(rows[0]["windows"], "0x0436");
  EXPECT_EQ(rows[0]["longName"], "Afrikaans_SouthAfrica");
  EXPECT_GT(rows[0]["secondaryEncodings"].size(), 0u);
}

TEST(VeldLocales, EachLocaleShowsItsTenSectionsAndExamples) {
  for (const std::string& name : localeNames()) {
    const Outcome outcome = runVeld({.arguments = {"locales", name}});
    EXPECT_EQ(outcome.exitCode, 0) << name << ' ' << outcome.errors;
    for (const char* heading :
         {"\nrecord\n", "\nreserved1\n", "\nreserved2\n", "\ncurrency\n", "\nnumber\n", "\ndateTime\n", "\npercent\n",
          "\nmeasurement\n", "\nidentity\n", "\nitems\n", "\nexamples\n"}) {
      EXPECT_TRUE(contains(outcome.output, heading)) << name << heading;
    }
    EXPECT_FALSE(contains(outcome.output, "(0x80")) << name;
  }
}

TEST(VeldLocales, OneLocaleTellsAll) {
  const Json german = locales({"de_DE"});
  EXPECT_EQ(german["languageCode"], "de");
  EXPECT_EQ(german["symbol"], "€");
  const Json& sections = german["sections"];
  ASSERT_EQ(sections.size(), 10u);
  EXPECT_EQ(sections["record"]["requestedName"], "de_DE");
  EXPECT_EQ(sections["reserved1"]["reservedBytes"], 124);
  EXPECT_EQ(sections["reserved2"]["reservedBytes"], 96);
  EXPECT_EQ(sections["currency"]["currencyDigits"], 4);
  EXPECT_EQ(sections["number"]["numberPattern"], "#.##0,###");
  EXPECT_EQ(sections["dateTime"]["monthNames"][2], "März");
  EXPECT_EQ(sections["dateTime"]["timeFormat24"], "%H.%M Uhr");
  EXPECT_EQ(sections["percent"]["percentSign"], "%");
  EXPECT_EQ(sections["measurement"]["measurement"], 1);
  EXPECT_EQ(sections["identity"]["paperWidth"], 210);
  ASSERT_EQ(sections["items"].size(), 143u);
  EXPECT_EQ(sections["items"][2], "de");
  EXPECT_EQ(sections["items"][64], "März");  // an escape in the record
}

TEST(VeldLocales, ExamplesAreThoseOfFormat) {
  for (const char* locale : {"de_DE", "ja_JP", "hi_IN", "ar_EG"}) {
    const Json shown = locales({locale});
    for (const Json& example : shown["examples"]) {
      std::vector<std::string> more;
      if (example.contains("form")) more = {"--form", example["form"]};
      const Outcome outcome = formatIn(locale, example["kind"], {example["value"]}, more);
      EXPECT_EQ(outcome.output, example["text"].get<std::string>() + "\n") << locale << example;
    }
  }
}

TEST(VeldLocales, NamesOfEveryFormLeadToALocale) {
  EXPECT_EQ(nameOf("de-de"), "de_DE");
  EXPECT_EQ(nameOf("German_Germany"), "de_DE");
  EXPECT_EQ(nameOf("german"), "de_DE");
  EXPECT_EQ(nameOf("de"), "de_DE");
  EXPECT_EQ(nameOf("de_DE.UTF-8"), "de_DE");
  EXPECT_EQ(nameOf("QUOID:51"), "en_US");
  EXPECT_EQ(nameOf("WLCID:2057"), "en_GB");
}

TEST(VeldLocales, TheRetiredNameOfALanguageLeadsToItsLocale) { EXPECT_EQ(nameOf("iw"), "he_IL"); }

TEST(VeldLocales, AnUnknownNameGetsTheNearest) {
  const Outcome outcome = runVeld({.arguments = {"locales", "xx_US"}});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(contains(outcome.errors, "unknown locale \"xx_US\": nlsLocaleInvalid (0x803FE819); ")) << outcome.errors;
  EXPECT_TRUE(contains(outcome.errors, "_US")) << outcome.errors;
  EXPECT_TRUE(contains(runVeld({.arguments = {"locales", "Germn_Germany"}}).errors, "German_Germany"));
  for (const char* name : {"Klingon", "x", "QUOID:132", "WLCID:", ""}) {
    EXPECT_EQ(runVeld({.arguments = {"locales", name}}).exitCode, 2) << name;
  }
}

TEST(VeldLocales, AnUnknownCountryIsToldOf) {
  const Outcome outcome = runVeld({.arguments = {"format", "-l", "de_XX", "number", "0.5"}});
  EXPECT_EQ(outcome.exitCode, 0);
  EXPECT_EQ(outcome.output, "0,5\n");
  EXPECT_EQ(outcome.errors, "veld: no locale is called \"de_XX\"; the one of its language stands in, de_DE\n");
  const auto told = [](const char* name) {
    return runVeld({.arguments = {"format", "-l", name, "number", "0.5"}}).errors;
  };
  EXPECT_EQ(told("WLCID: 31751"),
            "veld: no locale is called \"WLCID: 31751\"; the one of its language stands in, de_DE\n");
  EXPECT_EQ(told("de_\x1B[31m"),
            "veld: no locale is called \"de_\\x1B[31m\"; the one of its language stands in, de_DE\n");
  for (const char* known : {"de", "German", "WLCID:7", "WLCID:1031"}) EXPECT_EQ(told(known), "") << known;
}

TEST(VeldLocales, ALanguageWithoutALocaleIsNoLocale) {
  const Outcome outcome = runVeld({.arguments = {"locales", "xh"}});
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_TRUE(contains(outcome.errors, "nlsLocaleLanguageOnly (0x803FE81D)")) << outcome.errors;
}

}  // namespace
}  // namespace test

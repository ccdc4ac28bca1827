#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <optional>

#include "locale/letters.h"
#include "locale/qznlsldb.h"
#include "support/guard.h"
#include "support/tsv.h"
#include "support/wide.h"
#include "veldnls/status.h"

namespace {

constexpr uint16_t fallback = NLS_LOCALE_FALLBACK;
constexpr uint16_t strict = NLS_LOCALE_STRICT;
constexpr uint16_t wide = NLS_LOCALE_WIDE;
constexpr uint16_t allModes[] = {fallback, strict, wide};

struct Answer {
  NlsStatus status;
  std::string row;  // POSIX name, or "-" where the out row was left as it was
  bool operator==(const Answer&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Answer& answer) {
  return out << std::hex << answer.status << " " << answer.row;
}

const Answer untouched{nlsLocaleInvalid, "-"};
const Answer unknownWithDefault{nlsLocaleInvalid, "en_US"};
const Answer languageOnly{nlsLocaleLanguageOnly, "en_US"};
Answer exact(const std::string& name) { return {0, name}; }
Answer approximated(const std::string& name) { return {nlsLocaleApproximated, name}; }
// What a name that means nothing gets.
Answer unknown(uint16_t mode) { return mode == fallback ? unknownWithDefault : untouched; }

// Looks a name up that ends at a guard page.
Answer find(const std::u16string& name, uint16_t mode) {
  test::GuardedBuffer buffer({reinterpret_cast<const uint8_t*>(name.data()), name.size() * 2});
  static const LocaleNameRow sentinel{};
  const LocaleNameRow* row = &sentinel;
  const NlsStatus status = veldnls::findLocaleEntry(nullptr, reinterpret_cast<const char16_t*>(buffer.data()),
                                                    static_cast<int32_t>(name.size()), mode, &row);
  return {status, row == &sentinel ? "-" : test::narrow(row->posixName, row->posixNameLength)};
}

Answer find(const std::string& name, uint16_t mode) { return find(test::widen(name), mode); }

struct Name {
  std::string posixName, languageName, longName;
  int localeId;
  unsigned lcid;
};

std::vector<Name> names() {
  std::vector<Name> rows;
  for (const auto& f : test::readTsv("locale/names.tsv")) {
    rows.push_back(
        {f[0], f[2], f[2] + "_" + f[3], std::stoi(f[4]), static_cast<unsigned>(std::stoul(f[5], nullptr, 16))});
  }
  return rows;
}

unsigned lcidOf(const std::string& locale) {
  for (const Name& row : names()) {
    if (row.posixName == locale) return row.lcid;
  }
  ADD_FAILURE() << "no locale " << locale;
  return 0;
}

// The first default row that satisfies a condition on (POSIX name, language name, Windows identifier).
template <class Matches>
std::optional<std::string> firstDefault(Matches matches) {
  static const auto rows = test::readTsv("locale/language_defaults.tsv");
  static const auto lcids = [] {
    std::vector<unsigned> values;
    for (const auto& f : rows) values.push_back(lcidOf(f[2]));
    return values;
  }();
  for (size_t i = 0; i < rows.size(); ++i) {
    if (matches(rows[i][0], rows[i][1], lcids[i])) return rows[i][0];
  }
  return std::nullopt;
}

TEST(LocaleLookup, EveryPosixNameIsExactInEveryMode) {
  ASSERT_EQ(names().size(), 132u);
  for (const Name& row : names()) {
    std::string hyphen = row.posixName;
    hyphen[2] = '-';
    for (const uint16_t mode : allModes) {
      for (const std::string& form : {row.posixName, hyphen, test::upper(row.posixName), test::lower(hyphen),
                                      row.posixName + ".UTF-8", row.posixName + "@euro", hyphen + "_x", hyphen + "1"}) {
        EXPECT_EQ(find(form, mode), exact(row.posixName)) << form << " mode " << mode;
      }
    }
  }
}

TEST(LocaleLookup, LongNamesAreKnownInTheWideModeOnly) {
  for (const Name& row : names()) {
    for (const std::string& form : {row.longName, test::upper(row.longName), test::lower(row.longName)}) {
      EXPECT_EQ(find(form, wide), exact(row.posixName)) << form;
      EXPECT_EQ(find(form, fallback), unknownWithDefault) << form;
      EXPECT_EQ(find(form, strict), untouched) << form;
    }
  }
}

TEST(LocaleLookup, EveryLocaleIdentifier) {
  for (const Name& row : names()) {
    const std::string form = "QUOID:" + std::to_string(row.localeId);
    for (const uint16_t mode : allModes) EXPECT_EQ(find(form, mode), exact(row.posixName)) << form;
  }
}

TEST(LocaleLookup, EveryWindowsIdentifierFindsTheFirstRowThatHasIt) {
  std::map<unsigned, std::string> first;
  for (const Name& row : names()) first.emplace(row.lcid, row.posixName);
  for (const auto& [lcid, posixName] : first) {
    const std::string form = "WLCID:" + std::to_string(lcid);
    for (const uint16_t mode : allModes) {
      if (lcid > 0x3FF) {
        EXPECT_EQ(find(form, mode), exact(posixName)) << form;
      } else if (lcid != 0) {
        const auto language = firstDefault([&](auto&, auto&, unsigned id) { return (id & 0x3FF) == lcid; });
        EXPECT_EQ(find(form, mode), approximated(language.value())) << form << " mode " << mode;
      } else {
        EXPECT_EQ(find(form, mode), unknown(mode)) << form;
      }
    }
  }
  EXPECT_EQ(first.at(0x0414), "nb_NO");
  EXPECT_EQ(first.at(0x0C1A), "sr_ME");
  EXPECT_EQ(first.at(0x081A), "sh_ME");
  EXPECT_EQ(first.at(0x141A), "bs_BA");
}

// A sublanguage that no locale has leads to the language, which either has a default, or a name only, or neither.
TEST(LocaleLookup, EveryPrimaryLanguage) {
  std::map<unsigned, bool> known;
  for (const auto& f : test::readTsv("locale/windows_languages.tsv")) {
    known[static_cast<unsigned>(std::stoul(f[0], nullptr, 16))] = true;
  }
  ASSERT_EQ(known.size(), 115u);
  constexpr unsigned noSublanguage = 0x3F << 10;
  for (unsigned language = 0; language <= 0x3FF; ++language) {
    const std::string form = "WLCID:" + std::to_string(noSublanguage | language);
    const auto substitute = firstDefault([&](auto&, auto&, unsigned id) { return (id & 0x3FF) == language; });
    for (const uint16_t mode : {fallback, wide}) {
      const Answer expected = substitute ? approximated(*substitute) : known[language] ? languageOnly : unknown(mode);
      EXPECT_EQ(find(form, mode), expected) << form << " mode " << mode;
    }
    EXPECT_EQ(find(form, strict), untouched) << form;
  }
}

TEST(LocaleLookup, EveryTwoLetterCode) {
  std::map<std::string, bool> known;
  const auto codes = test::readTsv("locale/language_codes.tsv");
  ASSERT_EQ(codes.size(), 208u);
  for (const auto& f : codes) known[f[0]] = true;
  for (char a = 'a'; a <= 'z'; ++a) {
    for (char b = 'a'; b <= 'z'; ++b) {
      const std::string code{a, b};
      const auto substitute = firstDefault([&](auto& name, auto&, unsigned) { return name.substr(0, 2) == code; });
      for (const uint16_t mode : {fallback, wide}) {
        const Answer expected = substitute ? approximated(*substitute) : known[code] ? languageOnly : unknown(mode);
        for (const char* rest : {"", "_", "-", ".", "@", "_X", "-XY1", "_QQ", "-qq.UTF-8", ".UTF-8", "@euro"}) {
          EXPECT_EQ(find(code + rest, mode), expected) << code << rest << " mode " << mode;
        }
        if (code != "wl" && code != "qu") {
          EXPECT_EQ(find(test::upper(code), mode), expected) << test::upper(code) << " mode " << mode;
        }
      }
      for (const char* rest : {"", "_", "_QQ", "@euro"})
        EXPECT_EQ(find(code + rest, strict), untouched) << code << rest;
    }
  }
}

TEST(LocaleLookup, LanguageNamesAreKnownInTheWideModeOnly) {
  const auto defaults = test::readTsv("locale/language_defaults.tsv");
  ASSERT_EQ(defaults.size(), 61u);
  for (const auto& f : defaults) {
    const std::string& language = f[1];
    const auto row = firstDefault([&](auto&, auto& name, unsigned) { return name == language; });
    for (const std::string& form :
         {language, test::upper(language), test::lower(language), language + "_", language + "_Atlantis"}) {
      EXPECT_EQ(find(form, wide), approximated(row.value())) << form;
      EXPECT_EQ(find(form, fallback), unknownWithDefault) << form;
      EXPECT_EQ(find(form, strict), untouched) << form;
    }
  }
  EXPECT_EQ(find("German", wide), approximated("de_DE"));
  EXPECT_EQ(find("Byelorussian", wide), approximated("be_BY"));
  EXPECT_EQ(find("Hebrew", wide), approximated("he_IL"));
}

TEST(LocaleLookup, NamesOfNoLanguageGetTheDefaultRow) {
  for (const char* form :
       {"Klingon", "Klingon_Space", "_German", "Xhosa", "Germany", "German Germany", "eng", "POSIX"}) {
    EXPECT_EQ(find(form, wide), unknownWithDefault) << form;
    EXPECT_EQ(find(form, fallback), unknownWithDefault) << form;
    EXPECT_EQ(find(form, strict), untouched) << form;
  }
}

TEST(LocaleLookup, ShortPosixNamesAreLanguages) {
  for (const char* form : {"en_U", "en-U", "en_", "en.US", "en@US", "en"}) {
    EXPECT_EQ(find(form, fallback), approximated("en_US")) << form;
    EXPECT_EQ(find(form, wide), approximated("en_US")) << form;
    EXPECT_EQ(find(form, strict), untouched) << form;
  }
  EXPECT_EQ(find("en_USA", strict), exact("en_US"));
}

TEST(LocaleLookup, WorkedExamples) {
  for (const char* form : {"en_US", "EN_us", "en-US", "en_US.UTF-8", "en_US@euro"}) {
    for (const uint16_t mode : allModes) EXPECT_EQ(find(form, mode), exact("en_US")) << form;
  }
  EXPECT_EQ(find("German_Germany", wide), exact("de_DE"));
  EXPECT_EQ(find("German_Germany", fallback), unknownWithDefault);
  EXPECT_EQ(find("de", fallback), approximated("de_DE"));
  EXPECT_EQ(find("de_XX", fallback), approximated("de_DE"));
  EXPECT_EQ(find("xh", fallback), languageOnly);
  EXPECT_EQ(find("xh", wide), languageOnly);
  EXPECT_EQ(find("qq", fallback), unknownWithDefault);
  EXPECT_EQ(find("iw", fallback), approximated("iw_IL"));
  EXPECT_EQ(find("iw_IL", fallback), approximated("iw_IL"));
  EXPECT_EQ(find("iw_IL", strict), untouched);
  EXPECT_EQ(find("WLCID:1033", fallback), exact("en_US"));
  EXPECT_EQ(find("WLCID:2057", fallback), exact("en_GB"));
  EXPECT_EQ(find("WLCID:  1033", fallback), exact("en_US"));
  EXPECT_EQ(find("WLCID:1131", fallback), languageOnly);
  EXPECT_EQ(find("QUOID:51", fallback), exact("en_US"));
}

TEST(LocaleLookup, WindowsNumbers) {
  // A bare language is looked for in every mode, the strict one too.
  for (const uint16_t mode : allModes) {
    EXPECT_EQ(find("WLCID:9", mode), approximated("en_US"));
    EXPECT_EQ(find("WLCID:26", mode), approximated("bs_BA"));
    EXPECT_EQ(find("WLCID:65536", mode), approximated("gv_GB"));
    EXPECT_EQ(find("WLCID:10 33", mode), exact("en_US"));
    EXPECT_EQ(find("WLCID:1033 ", mode), exact("en_US"));
    EXPECT_EQ(find("WLCID:1033x9", mode), exact("en_US"));
    EXPECT_EQ(find("WLCID:1033-9", mode), exact("en_US"));
    EXPECT_EQ(find("WLCID:0001033", mode), exact("en_US"));
    // The number counts modulo 2^32, the identifier is its low half.
    EXPECT_EQ(find("WLCID:4294968329", mode), exact("en_US"));
    EXPECT_EQ(find("WLCID:66569", mode), exact("en_US"));
    for (const char* form : {"WLCID:0", "WLCID:-1033", "WLCID:x1033", "WLCID:4294967296", "WLCID:\t1033"}) {
      EXPECT_EQ(find(form, mode), unknown(mode)) << form;
    }
    EXPECT_EQ(find("WLCID:1023", mode), unknown(mode));
    EXPECT_EQ(find(u"WLCID:\u0661\u0660", mode), unknown(mode));
  }
  EXPECT_EQ(find("WLCID:1024", fallback), approximated("gv_GB"));
  EXPECT_EQ(find("WLCID:1024", wide), approximated("gv_GB"));
  EXPECT_EQ(find("WLCID:1024", strict), untouched);
  EXPECT_EQ(find("WLCID:1131", strict), untouched);
  EXPECT_EQ(find("WLCID:107", strict), languageOnly);
}

TEST(LocaleLookup, LocaleNumbers) {
  for (const uint16_t mode : allModes) {
    EXPECT_EQ(find("QUOID: 5 1", mode), exact("en_US"));
    EXPECT_EQ(find("QUOID:51x9", mode), exact("en_US"));
    EXPECT_EQ(find("QUOID:4294967347", mode), exact("en_US"));
    EXPECT_EQ(find("QUOID:x", mode), exact("af_ZA"));
    EXPECT_EQ(find("QUOID:131", mode), exact("vi_VN"));
    for (const char* form : {"QUOID:132", "QUOID:-1", "QUOID:5-1", "QUOID:51-", "QUOID:-", "QUOID:4294967295"}) {
      EXPECT_EQ(find(form, mode), unknown(mode)) << form;
    }
  }
}

TEST(LocaleLookup, PrefixesCompareAsFarAsTheNameGoes) {
  for (const uint16_t mode : allModes) {
    for (const char* form : {"WL", "WLC", "WLCI", "WLCID", "WLCID:"}) {
      EXPECT_EQ(find(form, mode), unknown(mode)) << form;
    }
    for (const char* form : {"QU", "QUO", "QUOI", "QUOID", "QUOID:"}) {
      EXPECT_EQ(find(form, mode), exact("af_ZA")) << form;
    }
  }
  // The comparison is exact.
  EXPECT_EQ(find("qu", fallback), languageOnly);
  EXPECT_EQ(find("Qu", fallback), languageOnly);
  EXPECT_EQ(find("wl", wide), untouched);
  for (const char* form : {"wlcid:9", "WLCId:9", "quoid:51", "QUOID51"}) {
    EXPECT_EQ(find(form, fallback), unknownWithDefault) << form;
    EXPECT_EQ(find(form, strict), untouched) << form;
  }
}

TEST(LocaleLookup, OtherModesDeliverNothing) {
  constexpr uint16_t otherModes[] = {0, 2, 3, 5, 6, 7, 9, 12, 16, 0x0101, 0xFFFF};
  for (const uint16_t mode : otherModes) {
    for (const char* form : {"en_US", "WLCID:1033", "QUOID:51", "qq", "e", ""}) {
      EXPECT_EQ(find(form, mode), (Answer{nlsBadLookupKind, "-"})) << form << " mode " << mode;
    }
  }
}

TEST(LocaleLookup, NoNameOrTooShortAName) {
  const std::u16string letters = u"deWQ";
  static const LocaleNameRow sentinel{};
  for (const uint16_t mode : allModes) {
    for (const char16_t letter : letters) EXPECT_EQ(find(std::u16string(1, letter), mode), unknown(mode));
    EXPECT_EQ(find("", mode), unknown(mode));
    const LocaleNameRow* row = &sentinel;
    EXPECT_EQ(veldnls::findLocaleEntry(nullptr, nullptr, 5, mode, &row), nlsLocaleInvalid);
    EXPECT_EQ(row == &sentinel, mode != fallback);
    row = &sentinel;
    EXPECT_EQ(veldnls::findLocaleEntry(nullptr, letters.data(), -4, mode, &row), nlsLocaleInvalid);
    EXPECT_EQ(row == &sentinel, mode != fallback);
  }
}

// Every part of every kind of name stands before a guard page.
TEST(LocaleLookup, ReadsNothingBehindTheName) {
  for (const std::string name : {"WLCID:1033", "QUOID:51", "QUOID:-5", "en_US.UTF-8", "en-US@euro", "qq_QQ", "xh_ZA",
                                 "English_UnitedStates", "NorwegianNynorsk_Norway", "de", "zz"}) {
    for (size_t length = 0; length <= name.size(); ++length) {
      for (const uint16_t mode : allModes) {
        const Answer answer = find(name.substr(0, length), mode);
        EXPECT_TRUE(answer.status == 0 || answer.status == nlsLocaleInvalid || answer.status == nlsLocaleApproximated ||
                    answer.status == nlsLocaleLanguageOnly)
            << name.substr(0, length);
      }
    }
  }
}

TEST(LocaleIdByName, KnowsExactlyTheSupportedNames) {
  for (const Name& row : names()) {
    const std::u16string name = test::widen(row.posixName);
    int32_t id = -7;
    EXPECT_EQ(veldnls::findLocaleIdByName(name.data(), 5, &id), 0u);
    EXPECT_EQ(id, row.localeId) << row.posixName;
  }
}

TEST(LocaleIdByName, RejectsEverythingElse) {
  for (const std::u16string name : {u"en-US", u"EN_US", u"en_us", u"iw_IL", u"en_U", u"en_US ", u"en_USA", u"en", u"",
                                    u"sh_CS", u"sh_YU", u"sr_CS"}) {
    test::GuardedBuffer buffer({reinterpret_cast<const uint8_t*>(name.data()), name.size() * 2});
    int32_t id = -7;
    EXPECT_EQ(veldnls::findLocaleIdByName(reinterpret_cast<const char16_t*>(buffer.data()),
                                          static_cast<int32_t>(name.size()), &id),
              nlsLocaleNameUnknown);
    EXPECT_EQ(id, -7);
  }
}

}  // namespace

// lookupEncoding: every name of every row, every key of the index, and what is near to one.
#include <gtest/gtest.h>

#include "core/registry.h"
#include "core/wide_text.h"
#include "encoding_data.h"
#include "support/guard.h"
#include "support/wide.h"
#include "veldnls/cei.h"
#include "veldnls/status.h"

using test::encodingFacts;

namespace veldnls {
namespace {

constexpr CEI untouched = -7;

struct Answer {
  NlsStatus status;
  CEI cei;
  bool operator==(const Answer&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Answer& answer) {
  return out << std::hex << answer.status << " " << std::dec << answer.cei;
}

Answer lookup(const std::u16string& name, int32_t kind) {
  Answer answer{0, untouched};
  answer.status = lookupEncoding(nullptr, name.data(), static_cast<int32_t>(name.size()), kind, &answer.cei);
  return answer;
}

Answer found(CEI cei) { return {0, cei}; }
const Answer unknown{nlsUnknownEncoding, untouched};
const Answer unknownKey{nlsUnknownEncoding, 0};

std::string lowerAscii(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  }
  return text;
}

// The answer for a column text: the first row with it, but for the two preferred names that belong to a later row.
CEI firstRow(const std::string& column, const std::string& text) {
  for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
    if (test::upperAscii(encodingFacts().text(cei, column)) != test::upperAscii(text)) continue;
    if (column == "preferredName" && cei == 122) return 123;
    if (column == "preferredName" && cei == 135) return 138;
    return cei;
  }
  return untouched;
}

TEST(LookupEncoding, EveryTextOfEveryColumnInAnyCase) {
  int texts = 0;
  for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
    for (const auto& [column, kind] : test::nameColumns()) {
      const std::string& text = encodingFacts().text(cei, column);
      if (text.empty()) continue;
      SCOPED_TRACE(column + " " + text);
      ++texts;
      const Answer expected = kind == NLS_LOOKUP_IDENTIFIER ? unknown : found(firstRow(column, text));
      EXPECT_EQ(lookup(test::widen(text), kind), expected);
      EXPECT_EQ(lookup(test::widen(test::upperAscii(text)), kind), expected);
      EXPECT_EQ(lookup(test::widen(lowerAscii(text)), kind), expected);
    }
  }
  EXPECT_GT(texts, 1500);
}

TEST(LookupEncoding, TextsOfOtherColumnsAreNotFound) {
  EXPECT_EQ(lookup(u"wlt1", NLS_LOOKUP_NAME), unknown);
  EXPECT_EQ(lookup(u"wlatin1", NLS_LOOKUP_SHORT_NAME), unknown);
  EXPECT_EQ(lookup(u"windows-1252", NLS_LOOKUP_JAVA_NAME), unknown);
  EXPECT_EQ(lookup(u"US7ASCII", NLS_LOOKUP_IANA_NAME), unknown);
}

TEST(LookupEncoding, EveryKeyOfTheIndex) {
  EXPECT_EQ(encodingFacts().keys.size(), 1729u);
  for (const auto& [key, value] : encodingFacts().keys) {
    SCOPED_TRACE(key);
    const Answer expected = value < NLS_CEI_COUNT ? found(value) : unknownKey;
    EXPECT_EQ(lookup(test::widen(key), NLS_LOOKUP_ANY), expected);
    EXPECT_EQ(lookup(test::widen(lowerAscii(key)), NLS_LOOKUP_ANY), expected);
  }
}

TEST(LookupEncoding, NearKeysOfTheIndex) {
  const auto& keys = encodingFacts().keys;
  int misses = 0;
  const auto miss = [&](const std::u16string& name, const std::string& plain) {
    if (name.empty() || name.size() > 40 || (!plain.empty() && keys.contains(plain))) return;
    ++misses;
    EXPECT_EQ(lookup(name, NLS_LOOKUP_ANY), unknownKey) << plain;
  };
  for (const auto& [key, value] : keys) {
    for (size_t length = 1; length < key.size(); ++length) {
      miss(test::widen(key.substr(0, length)), key.substr(0, length));
      miss(test::widen(key.substr(0, length)) + u'\4', "");
      miss(test::widen(key.substr(0, length)) + u'\4' + test::widen(key.substr(length)), "");
    }
    for (const char* more : {"X", "1", " ", "_"}) miss(test::widen(key + more), key + more);
    miss(test::widen(key) + u'\4', "");
    miss(test::widen(key) + u'\0', "");
    miss(test::widen(key) + u'\xFFFF', "");
    std::u16string changed = test::widen(key);
    changed.back() = u'\x4E2D';
    miss(changed, "");
  }
  EXPECT_GT(misses, 1729 * 4);
}

TEST(LookupEncoding, ColumnTextsLeftOutOfTheIndex) {
  int count = 0;
  for (const auto& fields : test::readTsv("encodings/keys-left-out.txt")) {
    ++count;
    EXPECT_EQ(lookup(test::widen(fields.at(0)), NLS_LOOKUP_ANY), unknownKey) << fields.at(0);
  }
  EXPECT_EQ(count, 57);
}

TEST(LookupEncoding, LengthsOutsideTheRangeWriteNothing) {
  const std::u16string longName(41, u'A');
  for (int32_t kind = -1; kind <= 11; ++kind) {
    EXPECT_EQ(lookup(longName, kind), unknown);
    for (const int32_t length : {0, -1, INT32_MIN, 41, INT32_MAX}) {
      CEI cei = untouched;
      EXPECT_EQ(lookupEncoding(nullptr, nullptr, length, kind, &cei), nlsUnknownEncoding);
      EXPECT_EQ(cei, untouched);
    }
  }
  EXPECT_EQ(lookup(std::u16string(40, u'A'), NLS_LOOKUP_ANY), unknownKey);
  EXPECT_EQ(lookup(std::u16string(40, u'A'), NLS_LOOKUP_NAME), unknown);
}

void expectGuarded(const std::u16string& name, int32_t kind) {
  const auto* bytes = reinterpret_cast<const uint8_t*>(name.data());
  for (const auto at : {test::GuardedBuffer::At::end, test::GuardedBuffer::At::start}) {
    test::GuardedBuffer buffer({bytes, name.size() * sizeof(char16_t)}, at);
    Answer answer{0, untouched};
    answer.status = lookupEncoding(nullptr, reinterpret_cast<const char16_t*>(buffer.data()),
                                   static_cast<int32_t>(name.size()), kind, &answer.cei);
    EXPECT_EQ(answer, lookup(name, kind)) << kind << " " << name.size();
  }
}

// Names of every length against guard pages: unknown ones, and beginnings of keys and of column texts, which a look-up
// follows to their last unit.
TEST(LookupEncoding, ReadsNothingOutsideTheName) {
  std::map<size_t, std::set<std::string>> names;
  for (size_t length = 1; length <= 40; ++length) names[length].insert(std::string(length, 'A'));
  for (const std::string text : {"SIMPLIFIED CHINESE - EUC-CN", "Big5-HKSCS", "Shift_JIS", "UNICODE (UTF-32)"}) {
    for (size_t length = 1; length <= text.size(); ++length) names[length].insert(text.substr(0, length));
  }
  for (const auto& [key, value] : encodingFacts().keys) names[key.size()].insert(key);
  for (const auto& [length, texts] : names) {
    for (const std::string& text : texts) {
      for (int32_t kind = -1; kind <= 11; ++kind) expectGuarded(test::widen(text), kind);
    }
  }
  EXPECT_EQ(names.size(), 40u);
}

TEST(LookupEncoding, EveryLetterCaseOfOneName) {
  const std::u16string lower = u"wlatin1";
  for (unsigned mask = 0; mask < 64; ++mask) {
    std::u16string name = lower;
    for (unsigned i = 0; i < 6; ++i) {
      if ((mask >> i & 1) != 0) name[i] = static_cast<char16_t>(name[i] - 32);
    }
    EXPECT_EQ(lookup(name, NLS_LOOKUP_ANY), found(62));
    EXPECT_EQ(lookup(name, NLS_LOOKUP_NAME), found(62));
  }
}

// U+017F folds to "S" and U+00FF to U+0178, which no name has.
TEST(LookupEncoding, NamesFoldByTheWideTextTable) {
  EXPECT_EQ(lookup(u"u\u017F-ascii", NLS_LOOKUP_ANY), found(28));
  EXPECT_EQ(lookup(u"u\u017F-ascii", NLS_LOOKUP_IANA_NAME), found(28));
  EXPECT_EQ(lookup(u"\u017Fhift_ji\u017F", NLS_LOOKUP_PREFERRED_NAME), found(138));
  EXPECT_EQ(lookup(u"u\u00FF-ascii", NLS_LOOKUP_ANY), unknownKey);
  EXPECT_EQ(lookup(u"u\u00FF-ascii", NLS_LOOKUP_IANA_NAME), unknown);
  EXPECT_EQ(lookup(u"\u00FF", NLS_LOOKUP_ANY), unknownKey);
}

TEST(LookupEncoding, OneUnitOfManyNames) {
  for (const char16_t* name : {u"1252", u"CP1252", u"WE8MSWIN1252", u"WINDOWS-1252", u"U_WLATIN1_CE"}) {
    EXPECT_EQ(lookup(name, NLS_LOOKUP_ANY), found(62));
  }
}

TEST(LookupEncoding, NamesOfTheUtf16Alias) {
  EXPECT_EQ(lookup(u"utf-16", NLS_LOOKUP_NAME), found(19));
  EXPECT_EQ(lookup(u"utf-16", NLS_LOOKUP_ANY), found(25));
  EXPECT_EQ(lookup(u"UNICODE", NLS_LOOKUP_NAME), found(25));
  for (const auto& [key, value] : encodingFacts().keys) EXPECT_NE(value, 19) << key;
}

TEST(LookupEncoding, LiteralKeysBehindTheRows) {
  EXPECT_EQ(lookup(u"unic", NLS_LOOKUP_SHORT_NAME), found(25));
  EXPECT_EQ(lookup(u"Unicode", NLS_LOOKUP_NAME), found(25));
  EXPECT_EQ(lookup(u"ucs4", NLS_LOOKUP_SHORT_NAME), found(27));
  EXPECT_EQ(lookup(u"utf-32", NLS_LOOKUP_NAME), found(27));
  EXPECT_EQ(lookup(u"Unicode (UTF-32)", NLS_LOOKUP_DESCRIPTION), found(27));
  EXPECT_EQ(lookup(u"UNIC", NLS_LOOKUP_NAME), unknown);
  EXPECT_EQ(lookup(u"UNICODE", NLS_LOOKUP_SHORT_NAME), unknown);
  EXPECT_EQ(lookup(u"UNICODE (UTF-32)", NLS_LOOKUP_LONG_DESCRIPTION), unknown);
  EXPECT_EQ(lookup(u"UTF-3", NLS_LOOKUP_NAME), unknown);
}

TEST(LookupEncoding, FourBlanksAreTheShortNameOfTheFirstRow) {
  EXPECT_EQ(lookup(u"    ", NLS_LOOKUP_SHORT_NAME), found(0));
  EXPECT_EQ(lookup(u"   ", NLS_LOOKUP_SHORT_NAME), unknown);
  EXPECT_EQ(lookup(u"    ", NLS_LOOKUP_ANY), unknownKey);
}

TEST(LookupEncoding, PreferredNamesGoToTheirOwners) {
  EXPECT_EQ(lookup(u"Big5-HKSCS", NLS_LOOKUP_PREFERRED_NAME), found(123));
  EXPECT_EQ(lookup(u"Shift_JIS", NLS_LOOKUP_PREFERRED_NAME), found(138));
  EXPECT_EQ(lookup(u"shift_jis", NLS_LOOKUP_IANA_NAME), found(133 + 2));
}

TEST(LookupEncoding, KindsWithoutAColumn) {
  for (const int32_t kind : {5, -1, INT32_MIN, 11, 12, INT32_MAX}) {
    for (const char16_t* name : {u"wlatin1", u"U_WLATIN1_CE", u"UNIC", u"UNICODE"}) {
      EXPECT_EQ(lookup(name, kind), unknown) << kind;
    }
  }
}

TEST(LookupEncoding, TheIndexDecidesOnMisspellings) {
  EXPECT_EQ(lookup(u"U_WTURKISH_C", NLS_LOOKUP_ANY), found(64));
  EXPECT_EQ(lookup(u"U_WTURKISH_CE", NLS_LOOKUP_ANY), unknownKey);
  EXPECT_EQ(lookup(u"WIN CP1258-VIETAMESE", NLS_LOOKUP_ANY), found(68));
  EXPECT_EQ(lookup(u"WIN CP1258-VIETNAMESE", NLS_LOOKUP_ANY), unknownKey);
  EXPECT_EQ(lookup(u"U_AUKRANIAN_CE", NLS_LOOKUP_ANY), found(76));
  EXPECT_EQ(lookup(u"U_AUKRAINIAN_CE", NLS_LOOKUP_ANY), unknownKey);
}

TEST(LookupEncoding, GroupsAndTypesOfTheIndex) {
  for (const char16_t* name : {u"system", u"ebcdic", u"iso", u"macintosh", u"open edition", u"pcoem", u"windows"}) {
    EXPECT_EQ(lookup(name, NLS_LOOKUP_ANY), unknownKey);
  }
  EXPECT_EQ(lookup(u"ibm", NLS_LOOKUP_ANY), found(1));
  EXPECT_EQ(lookup(u"pcms", NLS_LOOKUP_ANY), found(16));
}

}  // namespace
}  // namespace veldnls

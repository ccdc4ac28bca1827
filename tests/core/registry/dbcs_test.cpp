#include "core/dbcs.h"

#include <gtest/gtest.h>

#include "core/registry.h"
#include "encoding_data.h"
#include "session_host.h"
#include "support/wide.h"
#include "veldnls/cei.h"

namespace veldnls {
namespace {

CEI resolve(int32_t language, int32_t type) { return resolveDbcsEncoding(nullptr, language, type); }

struct Name {
  NlsStatus status;
  int32_t language;
  int32_t type;
  bool operator==(const Name&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Name& name) {
  return out << name.status << " (0x" << std::hex << name.language << std::dec << ", " << name.type << ")";
}

Name describe(QZNLS* nls, CEI cei) {
  Name name{0, -7, -7};
  name.status = describeDbcsEncoding(nls, cei, &name.language, &name.type);
  return name;
}

Name describe(CEI cei) { return describe(nullptr, cei); }

TEST(DbcsTables, AreThoseOfTheText) {
  const auto types = test::readTsv("encodings/dbcs-types.tsv");
  ASSERT_EQ(types.size(), 24u);
  for (size_t type = 0; type < types.size(); ++type) {
    const DbcsTypeRow& row = dbcsTypes[type];
    EXPECT_EQ(std::u16string(row.name), test::widen(types[type].at(1)));
    EXPECT_EQ(row.nameLength, int32_t(types[type].at(1).size()));
    EXPECT_EQ(row.flags, std::stoul(types[type].at(2), nullptr, 0));
    for (size_t column = 0; column < 6; ++column) EXPECT_EQ(row.cells[column], std::stoi(types[type].at(3 + column)));
  }
  const auto languages = test::readTsv("encodings/dbcs-languages.tsv");
  ASSERT_EQ(languages.size(), 9u);
  for (size_t i = 0; i < languages.size(); ++i) {
    const DbcsLanguageRow& row = dbcsLanguages[i];
    EXPECT_EQ(std::u16string(row.name), test::widen(languages[i].at(0)));
    EXPECT_EQ(row.nameLength, int32_t(languages[i].at(0).size()));
    EXPECT_EQ(std::u16string(row.alternate), test::widen(languages[i].at(1)));
    EXPECT_EQ(row.alternateLength, int32_t(languages[i].at(1).size()));
    EXPECT_EQ(row.code, std::stoi(languages[i].at(2), nullptr, 0));
  }
}

TEST(ResolveDbcs, UnicodeTypesStandForThemselvesInAnyLanguage) {
  for (const int32_t language : {0, 1, 5, 6, 0x101, 99}) {
    EXPECT_EQ(resolve(language, 19), 25);
    for (const int32_t type : {20, 24, 25, 26, 27}) EXPECT_EQ(resolve(language, type), type);
  }
}

TEST(ResolveDbcs, EveryCell) {
  for (int32_t type = 1; type < dbcsTypeCount; ++type) {
    if (type == 19 || type == 20) continue;
    for (int32_t column = 1; column < dbcsColumnCount; ++column) {
      const CEI cell = dbcsTypes[type].cells[column];
      EXPECT_EQ(resolve(column, type), cell != 0 ? cell : type) << type << " " << column;
    }
  }
  EXPECT_EQ(resolve(1, 7), 138);
  EXPECT_EQ(resolve(2, 7), 142);
  EXPECT_EQ(resolve(1, 5), 5);
  EXPECT_EQ(resolve(5, 1), 1);
}

TEST(ResolveDbcs, Variants) {
  EXPECT_EQ(resolve(0x101, 2), 165);
  EXPECT_EQ(resolve(0x101, 3), 166);
  EXPECT_EQ(resolve(0x101, 4), 154);
  EXPECT_EQ(resolve(0x101, 5), 130);
  EXPECT_EQ(resolve(0x101, 17), 130);
  EXPECT_EQ(resolve(0x201, 1), 130);
  EXPECT_EQ(resolve(0x102, 1), 139);
  EXPECT_EQ(resolve(0x102, 5), 139);
  EXPECT_EQ(resolve(0x103, 1), 124);
  EXPECT_EQ(resolve(0x104, 2), 144);
  EXPECT_EQ(resolve(0x103, 5), 5);
  EXPECT_EQ(resolve(0x100, 1), 1);
  // Without a katakana variant the type's cell holds.
  EXPECT_EQ(resolve(0x101, 7), 138);
  EXPECT_EQ(resolve(0x102, 7), 142);
  EXPECT_EQ(resolve(0x101, 11), 11);
}

TEST(ResolveDbcs, ColumnsAndTypesOutsideTheTable) {
  for (const int32_t language : {6, 7, 8, 9, 0xFF, 0x106, -1}) EXPECT_EQ(resolve(language, 1), 0) << language;
  for (const int32_t type : {28, 100, 229, INT32_MAX}) EXPECT_EQ(resolve(1, type), 0) << type;
}

TEST(ResolveDbcs, TypesBelowOneAreTheSessionEncoding) {
  test::SessionOptions session(U_PCOEM850_CE);
  for (const int32_t type : {0, -1, INT32_MIN}) EXPECT_EQ(resolveDbcsEncoding(session.nls(), 1, type), 42);
  EXPECT_EQ(session.asked(), 3);
}

TEST(ResolveDbcs, LanguageOfTheSession) {
  const struct {
    const char16_t* language;
    CEI ibm;
  } examples[] = {{u"JAPANESE", 129}, {u"kanji", 129},  {u"Korean", 139}, {u"HANZI", 124}, {u"TCHINESE", 117},
                  {u"UNKNOWN", 1},    {u"KATAKANA", 0}, {u"KANA942", 0},  {u"HANGUL", 0},  {u"KLINGON", 0}};
  for (const auto& example : examples) {
    test::SessionOptions session(0, example.language);
    EXPECT_EQ(resolveDbcsEncoding(session.nls(), 0, 1), example.ibm);
    EXPECT_EQ(session.asked(), 1);
  }
}

TEST(ResolveDbcs, WithoutAnyLanguage) {
  for (const char16_t* none : {u"", u"NONE", u"none"}) {
    test::SessionOptions session(62, none);
    for (int32_t type = 1; type < 40; ++type) {
      if (type == 19 || type == 20 || (type >= 24 && type <= 27)) continue;
      const CEI expected = type == 18 ? 158 : type == 8 ? 157 : type == 6 ? 138 : type == 5 ? 5 : 0;
      EXPECT_EQ(resolveDbcsEncoding(session.nls(), 0, type), expected) << type;
    }
  }
}

TEST(DescribeDbcs, NamesOfTheirOwn) {
  EXPECT_EQ(describe(20), (Name{0, 5, 20}));
  EXPECT_EQ(describe(25), (Name{0, 5, 19}));
  for (const CEI cei : {24, 26, 27}) EXPECT_EQ(describe(cei), (Name{0, 5, cei}));
  for (CEI cei = 1; cei < 24; ++cei) EXPECT_EQ(describe(cei), (Name{0, 5, cei}));
  EXPECT_EQ(describe(139), (Name{0, 2, 1}));
  EXPECT_EQ(describe(130), (Name{0, 0x101, 1}));
  EXPECT_EQ(describe(165), (Name{0, 0x101, 2}));
  EXPECT_EQ(describe(166), (Name{0, 0x101, 3}));
  EXPECT_EQ(describe(154), (Name{0, 0x101, 4}));
}

TEST(DescribeDbcs, FamiliesBeforeCells) {
  for (const CEI cei : {118, 121, 123}) EXPECT_EQ(describe(cei), (Name{0, 4, 16}));
  for (const CEI cei : {119, 159}) EXPECT_EQ(describe(cei), (Name{0, 4, 10}));
  for (const CEI cei : {125, 126, 127, 160}) EXPECT_EQ(describe(cei), (Name{0, 3, 16}));
  for (const CEI cei : {140, 141, 143}) EXPECT_EQ(describe(cei), (Name{0, 2, 16}));
  for (const CEI cei : {135, 136, 137, 138}) EXPECT_EQ(describe(cei), (Name{0, 1, 16}));
}

TEST(DescribeDbcs, FirstCellByTypeAndColumn) {
  EXPECT_EQ(describe(129), (Name{0, 1, 1}));
  EXPECT_EQ(describe(124), (Name{0, 3, 1}));
  EXPECT_EQ(describe(117), (Name{0, 4, 1}));
  EXPECT_EQ(describe(206), (Name{0, 1, 17}));
  EXPECT_EQ(describe(133), (Name{0, 1, 9}));
  EXPECT_EQ(describe(134), (Name{0, 1, 10}));
  EXPECT_EQ(describe(120), (Name{0, 4, 13}));
  EXPECT_EQ(describe(158), (Name{0, 1, 18}));
}

TEST(DescribeDbcs, LeadsBackToTheEncodingOrItsFamilyHead) {
  for (CEI cei = 28; cei < NLS_CEI_COUNT; ++cei) {
    const Name name = describe(cei);
    EXPECT_EQ(name.status, 0u);
    EXPECT_EQ(name.language == 0, name.type == 0);
    if (name.language == 0) continue;
    const CEI back = resolve(name.language, name.type);
    EXPECT_EQ(conversionNeeded(nullptr, cei, back), 0) << cei << " " << back;
  }
}

TEST(DescribeDbcs, NothingIsKnownOfSingleBytes) {
  for (const CEI cei : {28, 62, 97, 161, 162, 204, 205, 229}) EXPECT_EQ(describe(cei), (Name{0, 0, 0})) << cei;
}

TEST(DescribeDbcs, OutsideTheTable) {
  for (const CEI cei : {-1, 230, INT32_MAX, INT32_MIN}) EXPECT_EQ(describe(cei), (Name{1, 0, 0})) << cei;
}

TEST(DescribeDbcs, SessionEncoding) {
  {
    test::SessionOptions session(136);
    EXPECT_EQ(describe(session.nls(), 0), (Name{0, 1, 16}));
    EXPECT_EQ(session.asked(), 1);
  }
  test::SessionOptions session(0);
  EXPECT_EQ(describe(session.nls(), 0), (Name{1, 0, 0}));
}

}  // namespace
}  // namespace veldnls

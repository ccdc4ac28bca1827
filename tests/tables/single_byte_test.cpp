// Every single-byte table, byte by byte and unit by unit, against its text.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "core/registry.h"
#include "modules/qznlssb/tables.h"
#include "page_text.h"

namespace {

using test::nothing;
using test::PageText;
using test::RowText;
using veldnls::byteFromUnicodeTables;
using veldnls::byteToUnicodeTables;

constexpr char16_t undefinedUnit = 0xFFFD;

bool hasTo(const RowText& row) { return row.form != "none"; }
bool hasFrom(const RowText& row) { return row.form == "plain" || row.form == "open"; }

// What the library's from-table answers.
int32_t byteOf(int cei, size_t unit) {
  const uint8_t* const page = byteFromUnicodeTables[cei][unit >> 8];
  if (page == nullptr) return nothing;
  const uint8_t byte = page[unit & 0xFF];
  return byte == 0 && unit != 0 ? nothing : byte;
}

const RowText* rowOf(const std::vector<RowText>& rows, int cei) {
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const RowText& row) { return row.cei == cei; });
  return found == rows.end() ? nullptr : &*found;
}

TEST(SingleByteTables, ExistForTheRowsThatNameAPageAndForNoOthers) {
  const std::vector<RowText> rows = test::readRowTexts();
  for (int cei = 0; cei < NLS_CEI_COUNT; ++cei) {
    const RowText* const row = rowOf(rows, cei);
    EXPECT_EQ(byteToUnicodeTables[cei] != nullptr, row != nullptr && hasTo(*row)) << cei;
    EXPECT_EQ(byteFromUnicodeTables[cei] != nullptr, row != nullptr && hasFrom(*row)) << cei;
  }
}

TEST(SingleByteTables, AreAbsentInVacantRows) {
  for (const int cei : {0, 77, 94, 107, 170, 171, 204}) {
    EXPECT_EQ(byteToUnicodeTables[cei], nullptr) << cei;
    EXPECT_EQ(byteFromUnicodeTables[cei], nullptr) << cei;
  }
  EXPECT_NE(byteToUnicodeTables[74], nullptr);
  EXPECT_EQ(byteFromUnicodeTables[74], nullptr);
}

TEST(SingleByteTables, DecodeEveryByteAsItsTextSays) {
  for (const RowText& row : test::readRowTexts()) {
    if (!hasTo(row)) continue;
    SCOPED_TRACE(row.name);
    const PageText text = test::readPageText(row.page, row.form);
    for (size_t byte = 0; byte < 256; ++byte) {
      const int32_t expected = text.to[byte] == nothing ? undefinedUnit : text.to[byte];
      EXPECT_EQ(byteToUnicodeTables[row.cei][byte], expected) << test::unitText(static_cast<int32_t>(byte));
    }
    EXPECT_EQ(std::count(text.to.begin(), text.to.end(), nothing), row.undefined);
  }
}

TEST(SingleByteTables, EncodeEveryUnitAsItsTextSays) {
  for (const RowText& row : test::readRowTexts()) {
    if (!hasFrom(row)) continue;
    SCOPED_TRACE(row.name);
    const PageText text = test::readPageText(row.page, row.form);
    for (size_t unit = 0; unit < 0x10000; ++unit) {
      ASSERT_EQ(byteOf(row.cei, unit), text.from[unit]) << test::unitText(static_cast<int32_t>(unit));
    }
  }
}

TEST(SingleByteTables, HaveAsManyFromPagesAsTheirRowSays) {
  for (const RowText& row : test::readRowTexts()) {
    if (!hasFrom(row)) continue;
    const uint8_t* const* const pages = byteFromUnicodeTables[row.cei];
    EXPECT_EQ(256 - std::count(pages, pages + 256, nullptr), row.pages) << row.name;
  }
}

TEST(SingleByteTables, HaveNoByteForTheReplacementCharacterOrSurrogates) {
  for (const RowText& row : test::readRowTexts()) {
    if (!hasFrom(row)) continue;
    EXPECT_EQ(byteOf(row.cei, undefinedUnit), nothing) << row.name;
    for (size_t high = 0xD8; high < 0xE0; ++high) EXPECT_EQ(byteFromUnicodeTables[row.cei][high], nullptr) << row.name;
    EXPECT_EQ(byteOf(row.cei, 0), 0) << row.name;
  }
}

TEST(SingleByteTables, AreSharedBetweenRowsOfOnePageAndForm) {
  constexpr int pairs[][2] = {{29, 62}, {115, 62}, {116, 60}, {203, 110}};
  for (const auto& [row, owner] : pairs) {
    EXPECT_EQ(byteToUnicodeTables[row], byteToUnicodeTables[owner]) << row;
    EXPECT_EQ(byteFromUnicodeTables[row], byteFromUnicodeTables[owner]) << row;
  }
}

TEST(SingleByteTables, OfOpenRowsDifferFromThePlainOnesInLineEndsOnly) {
  const std::vector<RowText> rows = test::readRowTexts();
  int open = 0;
  for (const RowText& row : rows) {
    if (row.form != "open") continue;
    SCOPED_TRACE(row.name);
    ++open;
    const auto plain = std::find_if(rows.begin(), rows.end(), [&](const RowText& other) {
      return other.page == row.page && other.form == "plain";
    });
    ASSERT_NE(plain, rows.end());
    for (size_t byte = 0; byte < 256; ++byte) {
      const size_t twin = byte == 0x15 ? 0x25 : byte == 0x25 ? 0x15 : byte;
      EXPECT_EQ(byteToUnicodeTables[row.cei][byte], byteToUnicodeTables[plain->cei][twin]);
    }
    EXPECT_EQ(byteToUnicodeTables[row.cei][0x15], 0x000A);
    EXPECT_EQ(byteToUnicodeTables[row.cei][0x25], 0x0085);
    for (size_t high = 1; high < 256; ++high) {
      EXPECT_EQ(byteFromUnicodeTables[row.cei][high], byteFromUnicodeTables[plain->cei][high]) << high;
    }
  }
  EXPECT_EQ(open, 42);  // 41 pages, and ebcdic-any
}

TEST(SingleByteTables, KeepTheFactsThatSelectAmongPublishedTables) {
  const auto to = [](int cei, int byte) { return byteToUnicodeTables[cei][byte]; };
  EXPECT_EQ(to(29, 0x80), 0x20AC);  // latin1 is windows-1252
  EXPECT_EQ(to(28, 0x80), 0x0080);
  EXPECT_EQ(to(28, 0x9F), 0x009F);
  EXPECT_EQ(to(28, 0xA0), undefinedUnit);
  EXPECT_EQ(to(47, 0x25), u'%');
  EXPECT_EQ(byteOf(47, 0x066A), nothing);
  for (const int cei : {41, 55, 228, 229}) {
    EXPECT_EQ(to(cei, 0x1A), 0x007F) << cei;
    EXPECT_EQ(to(cei, 0x7F), 0x001A) << cei;
  }
  EXPECT_EQ(byteOf(68, 0x0340), 0xCC);
  EXPECT_EQ(byteOf(68, 0x0341), 0xEC);
  EXPECT_EQ(to(68, 0xCC), 0x0300);
  EXPECT_EQ(to(212, 0x15), 0x0085);
  EXPECT_EQ(to(212, 0x25), 0x0085);
  EXPECT_EQ(byteOf(212, 0x000A), 0x15);
  EXPECT_EQ(byteOf(212, 0x0085), 0x25);
  // Its plain twin has the same tables but for the line ends.
  EXPECT_EQ(to(211, 0x15), 0x0085);
  EXPECT_EQ(to(211, 0x25), 0x000A);
  for (int byte = 0; byte < 256; ++byte) {
    if (byte != 0x15 && byte != 0x25) {
      EXPECT_EQ(to(212, byte), to(211, byte)) << byte;
    }
  }
  for (uint32_t unit = 0; unit < 0x10000; ++unit) {
    if (unit != 0x000A && unit != 0x0085) {
      EXPECT_EQ(byteOf(212, unit), byteOf(211, unit)) << unit;
    }
  }
}

TEST(SingleByteRows, AgreeWithTheEncodingTable) {
  const std::vector<RowText> rows = test::readRowTexts();
  size_t singleByte = 0;
  for (const EncodingDescriptor& encoding : veldnls::encodingTable) {
    if (encoding.encodingClass != NLS_CLASS_SINGLE_BYTE) continue;
    ++singleByte;
    const RowText* const row = rowOf(rows, encoding.cei);
    ASSERT_NE(row, nullptr) << encoding.cei;
    const std::u16string_view name(encoding.name, static_cast<size_t>(encoding.nameLength));
    const std::string expected = name.empty() ? "-" : std::string(name.begin(), name.end());
    EXPECT_EQ(row->name, expected);
    if (!hasTo(*row)) continue;
    EXPECT_EQ(row->family == "ebcdic", (encoding.flags & NLS_ENCODING_EBCDIC) != 0) << row->name;
  }
  EXPECT_EQ(singleByte, rows.size());
}

}  // namespace

// The setup slots: which pairs they accept, and what they leave in the pipeline.
#include <algorithm>
#include <array>

#include "modules/qznlssb/oracle.h"
#include "modules/qznlssb/route.h"
#include "modules/qznlssb/tables.h"

namespace test {
namespace {

using SetupSlots = SingleByteTest;

// Rows of class 0 without tables.
constexpr CEI bare[] = {0, 77, 94, 107, 170, 171, U_ANY_CE};

TEST_F(SetupSlots, RefusesRowsWithoutTables) {
  for (const CEI cei : bare) {
    SCOPED_TRACE(cei);
    EXPECT_EQ(Route(nls, cei, U_L_UNICODE_CE).setup, nlsModuleUnavailable);
    EXPECT_EQ(Route(nls, cei, U_UTF8_CE).setup, nlsModuleUnavailable);
    EXPECT_EQ(Route(nls, U_L_UNICODE_CE, cei).setup, nlsModuleUnavailable);
    EXPECT_EQ(Route(nls, U_B_UCS4_CE, cei).setup, nlsModuleUnavailable);
    EXPECT_EQ(Route(nls, U_UTF8_CE, cei).setup, nlsModuleUnavailable);
    EXPECT_EQ(Route(nls, U_UTFE_CE, cei).setup, nlsModuleUnavailable);
    EXPECT_EQ(Route(nls, cei, U_WLATIN1_CE).setup, nlsUnknownEncoding);
    EXPECT_EQ(Route(nls, U_WLATIN1_CE, cei).setup, nlsUnknownEncoding);
  }
}

// aeasteuro can be read and can't be written; but as a target of a byte map it is only read.
TEST_F(SetupSlots, RowWithoutFromTable) {
  EXPECT_EQ(Route(nls, U_AEASTEURO_CE, U_L_UNICODE_CE).setup, 0u);
  EXPECT_EQ(Route(nls, U_AEASTEURO_CE, U_UTF8_CE).setup, 0u);
  EXPECT_EQ(Route(nls, U_AEASTEURO_CE, U_WLATIN1_CE).setup, nlsUnknownEncoding);
  EXPECT_EQ(Route(nls, U_L_UNICODE_CE, U_AEASTEURO_CE).setup, nlsModuleUnavailable);
  EXPECT_EQ(Route(nls, U_UTF8_CE, U_AEASTEURO_CE).setup, nlsModuleUnavailable);
  EXPECT_EQ(Route(nls, U_WLATIN1_CE, U_AEASTEURO_CE).setup, 0u);
}

TEST_F(SetupSlots, ToUnicodeDescribesBothSides) {
  const Route route(nls, U_EBCDIC1047_CE, U_B_UCS4_CE);
  const PipelineSide& source = route.pipeline.source;
  const PipelineSide& target = route.pipeline.target;
  EXPECT_EQ(source.cei, U_EBCDIC1047_CE);
  EXPECT_EQ(source.encodingClass, NLS_CLASS_SINGLE_BYTE);
  EXPECT_EQ(source.padChar, 0x40u);
  EXPECT_EQ(source.substitution, 0x3Fu);
  EXPECT_EQ(source.unitSize, 1);
  EXPECT_EQ(source.toUnicode, veldnls::byteToUnicodeTables[U_EBCDIC1047_CE]);
  EXPECT_EQ(target.cei, U_B_UCS4_CE);
  EXPECT_EQ(target.encodingClass, NLS_CLASS_UTF32);
  EXPECT_EQ(target.padChar, 0x20000000u);
  EXPECT_EQ(target.unitSize, 4);
}

TEST_F(SetupSlots, ToByteDescribesBothSides) {
  for (const CEI cei : {U_L_UNICODE_CE, U_L_UCS4_CE, U_UTF8_CE, U_UTFE_CE}) {
    SCOPED_TRACE(cei);
    const Route route(nls, cei, U_WLATIN1_CE);
    EXPECT_EQ(route.pipeline.source.cei, cei);
    EXPECT_EQ(route.pipeline.source.encodingClass, row(cei).encodingClass);
    EXPECT_EQ(route.pipeline.source.unitSize, row(cei).unitSize);
    EXPECT_EQ(route.pipeline.source.fromUnicode, veldnls::byteFromUnicodeTables[U_WLATIN1_CE]);
    EXPECT_EQ(route.pipeline.target.cei, U_WLATIN1_CE);
    EXPECT_EQ(route.pipeline.target.substitution, 0x1Au);
  }
}

TEST_F(SetupSlots, ByteToByteOwnsTheMapItBuilds) {
  const Route route(nls, U_PCOEM850_CE, U_WLATIN1_CE);
  ASSERT_EQ(route.setup, 0u);
  EXPECT_EQ(route.pipeline.flags, NLS_PIPELINE_OWNS_BYTE_MAP);
  EXPECT_EQ(route.pipeline.source.padChar, 0x20u);
  EXPECT_EQ(route.pipeline.source.directionMarks, nullptr);
  EXPECT_EQ(Route(nls, U_EBCDIC037_CE, U_WLATIN1_CE).pipeline.source.padChar, 0x40u);
}

TEST_F(SetupSlots, DirectionalRowsBringTheirMarks) {
  for (const CEI cei : {U_WHEBREW_CE, U_WARABIC_CE}) {
    SCOPED_TRACE(cei);
    const Route route(nls, cei, U_WLATIN1_CE);
    ASSERT_EQ(route.setup, 0u);
    ASSERT_EQ(route.pipeline.source.directionMarks, &row(cei).profile);
    EXPECT_EQ(route.pipeline.source.directionMarks->shiftOut[0], 0xFD);
    EXPECT_EQ(route.pipeline.source.directionMarks->shiftIn[0], 0xFE);
  }
  // As a target they are ordinary.
  EXPECT_EQ(Route(nls, U_WLATIN1_CE, U_WHEBREW_CE).pipeline.source.directionMarks, nullptr);
}

TEST_F(SetupSlots, ByteMapFollowsUnicode) {
  const Route route(nls, U_PCOEM850_CE, U_WLATIN1_CE);
  ASSERT_EQ(route.setup, 0u);
  EXPECT_EQ(route.pipeline.source.byteMap[0x41], 0x41);
  EXPECT_EQ(route.pipeline.source.byteMap[0x84], 0xE4);
}

// Both rows share their tables, so that the map is the identity; undefined bytes are equal to the first of them.
TEST_F(SetupSlots, WindowsLatinToIsoLatin) {
  const Route route(nls, U_WLATIN1_CE, U_LATIN1_CE);
  ASSERT_EQ(route.setup, 0u);
  for (uint32_t byte = 0; byte < 256; ++byte) {
    const bool undefined = byte == 0x81 || byte == 0x8D || byte == 0x8F || byte == 0x90 || byte == 0x9D;
    EXPECT_EQ(route.pipeline.source.byteMap[byte], undefined ? 0x81 : byte) << byte;
  }
}

TEST_F(SetupSlots, OpenEditionExchangesTheLineEnds) {
  const Route route(nls, U_EBCDIC1047_CE, U_OPEN_ED1047_CE);
  ASSERT_EQ(route.setup, 0u);
  for (uint32_t byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(route.pipeline.source.byteMap[byte], byte == 0x15 ? 0x25 : byte == 0x25 ? 0x15 : byte) << byte;
  }
}

// Pairs by value first, then what is left over on both sides in ascending order.
std::array<uint8_t, 256> naiveMap(CEI source, CEI target) {
  const char16_t* from = veldnls::byteToUnicodeTables[source];
  const char16_t* to = veldnls::byteToUnicodeTables[target];
  std::array<uint8_t, 256> map{};
  std::vector<int> lonely;
  std::vector<int> spare;
  std::array<bool, 256> taken{};
  for (int byte = 0; byte < 256; ++byte) {
    const auto at = std::find(to, to + 256, from[byte]) - to;
    if (at == 256) {
      lonely.push_back(byte);
    } else {
      map[static_cast<size_t>(byte)] = static_cast<uint8_t>(at);
      taken[static_cast<size_t>(at)] = true;
    }
  }
  for (int byte = 0; byte < 256; ++byte) {
    if (!taken[static_cast<size_t>(byte)]) spare.push_back(byte);
  }
  for (size_t i = 0; i < std::min(lonely.size(), spare.size()); ++i) {
    map[static_cast<size_t>(lonely[i])] = static_cast<uint8_t>(spare[i]);
  }
  return map;
}

TEST_F(SetupSlots, EveryRowToAndFromSomeByOracle) {
  for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
    if (veldnls::byteFromUnicodeTables[cei] == nullptr) continue;
    for (const CEI other : {U_WLATIN1_CE, U_EBCDIC1047_CE, U_ASCII_CE, U_PCOEM437_CE, U_WARABIC_CE}) {
      SCOPED_TRACE(testing::Message() << cei << " and " << other);
      const Route out(nls, cei, other);
      const Route back(nls, other, cei);
      ASSERT_EQ(out.setup, 0u);
      ASSERT_EQ(back.setup, 0u);
      EXPECT_TRUE(std::ranges::equal(std::span(out.pipeline.source.byteMap, 256), naiveMap(cei, other)));
      EXPECT_TRUE(std::ranges::equal(std::span(back.pipeline.source.byteMap, 256), naiveMap(other, cei)));
    }
  }
}

TEST_F(SetupSlots, BytesLeftOverMeetInOrder) {
  const Route route(nls, U_WLATIN1_CE, U_ASCII_CE);
  ASSERT_EQ(route.setup, 0u);
  const uint8_t* map = route.pipeline.source.byteMap;
  EXPECT_EQ(map[0x41], 0x41);
  EXPECT_EQ(map[0x81], 0xA0);  // undefined here and there
  EXPECT_EQ(map[0x9D], 0xA0);
  EXPECT_EQ(map[0x80], 0x80);
  EXPECT_EQ(map[0x82], 0x81);
  EXPECT_EQ(map[0x83], 0x82);
}

}  // namespace
}  // namespace test

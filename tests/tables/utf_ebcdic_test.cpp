#include "core/text/utf_ebcdic.h"

#include <gtest/gtest.h>

#include "modules/qznlssb/tables.h"
#include "page_text.h"
#include "support/tsv.h"

namespace {

using veldnls::ebcdicToI8;
using veldnls::i8ToEbcdic;

TEST(UtfEbcdicPermutation, IsThatOfItsText) {
  const std::vector<test::Fields> lines = test::readTsv("utf_ebcdic/permutation.tsv");
  ASSERT_EQ(lines.size(), 256u);
  for (const test::Fields& line : lines) {
    EXPECT_EQ(i8ToEbcdic[test::parseUnit(line.at(0))], test::parseUnit(line.at(1)));
  }
}

TEST(UtfEbcdicPermutation, IsUndoneByItsInverse) {
  for (unsigned byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(ebcdicToI8[i8ToEbcdic[byte]], byte);
    EXPECT_EQ(i8ToEbcdic[ebcdicToI8[byte]], byte);
  }
}

TEST(UtfEbcdicPermutation, PlacesKnownCharacters) {
  EXPECT_EQ(i8ToEbcdic['A'], 0xC1);
  EXPECT_EQ(i8ToEbcdic[0xC5], 0x80);  // U+00A0 is I8 C5 A0
  EXPECT_EQ(i8ToEbcdic[0xA0], 0x41);
  EXPECT_EQ(i8ToEbcdic['\n'], 0x15);
}

// The invariant part of UTF-EBCDIC is the ASCII part of ibm-1047 in its open form.
TEST(UtfEbcdicPermutation, AgreesWithOpenIbm1047OnAscii) {
  constexpr int openIbm1047 = 110;
  for (unsigned i8 = 0; i8 < 0xA0; ++i8) {
    EXPECT_EQ(veldnls::byteToUnicodeTables[openIbm1047][i8ToEbcdic[i8]], i8) << i8;
  }
}

}  // namespace

// Lines and columns, however the text is cut.
#include "text_place.h"

#include <gtest/gtest.h>

#include "apps/program.h"
#include "module.h"
#include "veldnls/cei.h"

namespace {

const veld::Library& library() {
  static const veld::Library loaded(std::string(VELDNLS_BINARY_DIR) + "/veldnls.so");
  return loaded;
}

veld::Bytes view(const std::string& text) { return {reinterpret_cast<const uint8_t*>(text.data()), text.size()}; }

// The place of a text's end, the same from one piece and from any two.
void expectPlace(CEI cei, std::string_view hexDigits, uint64_t line, uint64_t column) {
  SCOPED_TRACE(hexDigits);
  const std::string text = test::bytes(hexDigits);
  for (size_t cut = 0; cut <= text.size(); ++cut) {
    veld::TextPlace place(library().nls(), cei);
    place.advance(view(text).first(cut));
    place.advance(view(text).subspan(cut));
    EXPECT_EQ(place.line(), line) << cut;
    EXPECT_EQ(place.column(), column) << cut;
  }
}

TEST(TextPlace, AnEmptyTextIsAtTheStart) { expectPlace(U_UTF8_CE, "", 1, 1); }

TEST(TextPlace, CharactersOfEveryForm) {
  expectPlace(U_WLATIN1_CE, "61 E9 62", 1, 4);
  expectPlace(U_UTF8_CE, "61 C3 A9 E3 81 82 F0 9F 98 80", 1, 5);
  expectPlace(U_L_UNICODE_CE, "61 00 3D D8 00 DE 62 00", 1, 4);
  expectPlace(U_B_UNICODE_CE, "00 61 D8 3D DE 00 00 62", 1, 4);
  expectPlace(U_L_UCS4_CE, "61 00 00 00 00 F6 01 00", 1, 3);
  expectPlace(U_SHIFTJIS_CE, "61 82 A0 B1 82 0A", 2, 1);
  expectPlace(U_EUCJP_CE, "61 A4 A2 8E B1 8F A1 A1 62", 1, 6);
  expectPlace(U_EUCTW_CE, "8E A2 A1 A1 C4 A1 61", 1, 4);
  expectPlace(U_GB18030_CE, "61 81 30 81 30 B0 A1", 1, 4);
  expectPlace(U_IBM939_CE, "81 0E 44 81 44 82 0F 82", 1, 5);
  expectPlace(U_ISO2022JP_CE, "61 1B 24 42 24 22 1B 28 4A 62", 1, 4);
  expectPlace(U_HITACHIJP_CE, "0A 42 B0 A1 0A 41 0A C1", 1, 4);
}

TEST(TextPlace, LinesOfEveryForm) {
  expectPlace(U_WLATIN1_CE, "61 0D 0A 62 0A 0A 63 85", 4, 3);
  expectPlace(U_UTF8_CE, "61 0A C2 85 E3 81 82", 2, 3);
  expectPlace(U_EBCDIC1047_CE, "81 15 82 25 83", 3, 2);
  expectPlace(U_OPEN_ED1047_CE, "81 15 82 25 83", 3, 2);
  expectPlace(U_L_UNICODE_CE, "61 00 0A 00 00 0A 62 00", 2, 3);
  expectPlace(U_B_UCS4_CE, "00 00 00 0A 00 00 00 61", 2, 2);
  expectPlace(U_IBM939_CE, "15 0E 44 81 0F 25 81", 3, 2);
  expectPlace(U_FUJITSUJP_CE, "28 B0 25 29 15", 2, 1);
}

TEST(TextPlace, AnOpenCharacterThatEndsIsAColumn) {
  const auto columnBehind = [](CEI cei, std::string_view hexDigits) {
    veld::TextPlace place(library().nls(), cei);
    place.advance(view(test::bytes(hexDigits)));
    place.endOpen();
    place.endOpen();
    return place.column();
  };
  EXPECT_EQ(columnBehind(U_UTF8_CE, "61"), 2u);
  EXPECT_EQ(columnBehind(U_UTF8_CE, "61 E3 81"), 3u);
  EXPECT_EQ(columnBehind(U_L_UNICODE_CE, "61 00 3D D8"), 3u);
  EXPECT_EQ(columnBehind(U_ISO2022JP_CE, "61 1B 24"), 4u);
  EXPECT_EQ(columnBehind(U_DECJP_CE, "61 8E"), 3u);  // no lead byte there
}

TEST(TextPlace, FaultsAreAColumnEach) {
  veld::TextPlace place(library().nls(), U_SHIFTJIS_CE);
  place.advance(view("a\x82"));
  EXPECT_EQ(place.column(), 2u);
  place.advanceOverFault();
  place.advance(view("b"));
  EXPECT_EQ(place.column(), 4u);
  place.advance(view("\x82"));
  EXPECT_EQ(place.dropOpen(), 1u);
  EXPECT_EQ(place.dropOpen(), 0u);
  EXPECT_EQ(place.column(), 4u);
}

}  // namespace

// Overlays: user characters go before the module's own.
#include "modules/qznlsmb/rows.h"

namespace transcode_test {
namespace {

// A route with an overlay of these pairs, which the caller keeps.
class OverlaidRoute : public StageRoute {
 public:
  OverlaidRoute(CEI source, CEI target, std::vector<NlsCodePair> pairs) : StageRoute(source, target), pairs_(pairs) {
    overlay_ = {static_cast<uint32_t>(pairs_.size()), pairs_.data()};
    (*this)->source.overlay = &overlay_;
  }

 private:
  std::vector<NlsCodePair> pairs_;
  CodeOverlay overlay_{};
};

// What is written, first byte low.
constexpr uint16_t written(uint16_t code) { return static_cast<uint16_t>(code << 8 | code >> 8); }

TEST(UserCharacters, ToUnicode) {
  OverlaidRoute route(U_SHIFTJIS_CE, U_L_UNICODE_CE, {{0x82A0, 0x5555}, {0xF040, 0xE123}, {0xFCFC, 0xE124}});
  EXPECT_EQ(run(route, hex("61 82 A0 82 A2 F0 40 FC FC B1"), 64),
            (Outcome{.bytes = utf16(U"a\u5555\u3044\uE123\uE124\uFF71")}));
}

// The ideographic space is no answer: then the module's pairs are asked.
TEST(UserCharacters, AnIdeographicSpaceIsLookedUpAgain) {
  OverlaidRoute route(U_SHIFTJIS_CE, U_L_UNICODE_CE, {{0x8140, 0x5555}, {0x82A0, 0x3000}, {0xFCFC, 0x3000}});
  EXPECT_EQ(run(route, hex("82 A0"), 64), (Outcome{.bytes = utf16(U"\u3042")}));
  EXPECT_EQ(run(route, hex("FC FC"), 64), (Outcome{.status = nlsSubstituted, .bytes = utf16(U"\u3000")}));
  EXPECT_EQ(run(route, hex("81 40"), 64), (Outcome{.bytes = utf16(U"\u5555")}));
}

TEST(UserCharacters, UnitsOfTheSurrogateRange) {
  const std::vector<NlsCodePair> pairs = {{0xF040, 0xD800}};
  OverlaidRoute to16(U_SHIFTJIS_CE, U_L_UNICODE_CE, pairs);
  EXPECT_EQ(run(to16, hex("F0 40"), 64), (Outcome{.status = nlsSubstituted, .bytes = utf16(U"\uFFFD")}));
  OverlaidRoute to32(U_SHIFTJIS_CE, U_L_UCS4_CE, pairs);
  EXPECT_EQ(run(to32, hex("F0 40"), 64), (Outcome{.bytes = hex("00 D8 00 00")}));
  OverlaidRoute to8(U_SHIFTJIS_CE, U_UTF8_CE, pairs);
  EXPECT_EQ(run(to8, hex("F0 40"), 64), (Outcome{.bytes = hex("ED A0 80")}));
}

TEST(UserCharacters, FromUnicode) {
  OverlaidRoute route(
      U_L_UNICODE_CE, U_SHIFTJIS_CE,
      {{0x3000, written(0xF041)}, {0x3042, written(0xF040)}, {0xE123, written(0x0041)}, {0xFF71, written(0xF042)}});
  EXPECT_EQ(run(route, utf16(U"a\u3042\u3044\uE123\u3000\uFF71"), 64),
            (Outcome{.bytes = hex("61 F0 40 82 A2 41 F0 41 F0 42")}));
  // Characters below U+009F and above U+FFFF aren't looked up.
  OverlaidRoute low(U_L_UCS4_CE, U_SHIFTJIS_CE, {{0x0061, written(0xF040)}, {0xF600, written(0xF040)}});
  EXPECT_EQ(run(low, utf32(U"a\U0001F600"), 64), (Outcome{.status = nlsSubstituted, .bytes = hex("61 81 40")}));
}

// What replaces a damaged sequence is looked up like any character, and stays noted.
TEST(UserCharacters, TheReplacementMayHaveACode) {
  OverlaidRoute route(U_UTF8_CE, U_SHIFTJIS_CE, {{0xFFFD, written(0xF040)}});
  EXPECT_EQ(run(route, hex("80"), 64), (Outcome{.status = nlsSubstituted, .bytes = hex("F0 40")}));
  EXPECT_EQ(run(route, utf8(U"\uFFFD"), 64), (Outcome{.bytes = hex("F0 40")}));
}

TEST(UserCharacters, ShiftedTargets) {
  OverlaidRoute route(U_L_UNICODE_CE, U_IBM939_CE, {{0xE123, written(0x6941)}, {0xE124, written(0x00C1)}});
  EXPECT_EQ(run(route, utf16(U"\uE123\uE124\u3042"), 64), (Outcome{.bytes = hex("0E 69 41 0F C1 0E 44 81 0F")}));
}

// GB18030 has no user characters when its module reads or writes it.
TEST(UserCharacters, Gb18030HasNone) {
  OverlaidRoute to(U_GB18030_CE, U_L_UNICODE_CE, {{0xA1A1, 0x5555}});
  EXPECT_EQ(run(to, hex("A1 A1"), 64), (Outcome{.bytes = utf16(U"\u3000")}));
  OverlaidRoute from(U_L_UNICODE_CE, U_GB18030_CE, {{0x3000, 0x4141}});
  EXPECT_EQ(run(from, utf16(U"\u3000"), 64), (Outcome{.bytes = hex("A1 A1")}));
}

TEST(UserCharacters, AnEmptyOverlayAndUnsortedOnes) {
  OverlaidRoute empty(U_SHIFTJIS_CE, U_L_UNICODE_CE, {});
  EXPECT_EQ(run(empty, hex("82 A0"), 64), (Outcome{.bytes = utf16(U"\u3042")}));
  // Whatever is found is a pair of the key or none.
  OverlaidRoute unsorted(U_SHIFTJIS_CE, U_L_UNICODE_CE, {{0xF042, 0xE003}, {0x82A0, 0xE001}, {0xF041, 0xE002}, {0, 0}});
  EXPECT_EQ(run(unsorted, hex("82 A0 F0 41 F0 42 82 A2"), 64).bytes.size(), 8u);
}

}  // namespace
}  // namespace transcode_test

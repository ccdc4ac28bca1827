// Texts of many blocks and pieces, with characters here and there that the target lacks, around every room that cuts
// them near the edge of a piece.
#include <random>

#include "core/text/units.h"
#include "modules/qznlssb/oracle.h"
#include "modules/qznlssb/tables.h"

namespace test {
namespace {

constexpr size_t textLength = 1600;

// `rare` of 1,000 characters come from outside of the page.
std::u32string textFor(CEI page, uint32_t rare) {
  constexpr std::u32string_view outside = U"\u4E2D\U0001F600\U0010FFFD\uE000\u0700";
  std::mt19937 random(7);
  std::u32string text;
  while (text.size() < textLength) {
    const char16_t unit = veldnls::byteToUnicodeTables[page][random() % 256];
    if (random() % 1000 < rare) {
      text += outside[random() % outside.size()];
    } else if (unit != 0xFFFD && byteOfValue(page, unit).has_value()) {
      text += unit;
    }
  }
  return text;
}

class LongText : public SingleByteTest {
 protected:
  void check(CEI source, CEI target, const Items& items) {
    Route route(nls, source, target);
    ASSERT_EQ(route.setup, 0u);
    const Bytes input = inputOf(items);
    const auto whole = static_cast<uint32_t>(outputOf(items).size());
    for (const uint32_t capacity : {4u, 63u, 64u, 65u, 511u, 512u, 513u, 514u, 1023u, 1024u, 1025u, whole / 2,
                                    whole - 1, whole, whole + 1, whole + 64}) {
      SCOPED_TRACE(testing::Message() << source << " to " << target << ", room " << capacity);
      const Expected expected = expect(items, capacity, false, false);
      TranscodeProgress progress{};
      const Outcome outcome = route.resume(input, capacity, progress);
      EXPECT_EQ(outcome.status, expected.status);
      EXPECT_TRUE(outcome.output == expected.output);
      EXPECT_EQ(progress.consumed, expected.consumed);
      EXPECT_EQ((progress.flags & NLS_PROGRESS_SUBSTITUTED) != 0, expected.substituted);
    }
  }
};

constexpr CEI pages[] = {U_WLATIN1_CE, U_WCYRILLIC_CE, U_EBCDIC1047_CE, U_WHEBREW_CE};

TEST_F(LongText, ToPages) {
  for (const CEI page : pages) {
    for (const uint32_t rare : {0u, 3u, 50u, 700u}) {
      const std::u32string text = textFor(page, rare);
      for (const CEI source : {U_UTF8_CE, U_L_UNICODE_CE, U_B_UNICODE_CE}) {
        check(source, page, fromUnicode(row(source), text, row(page)));
      }
    }
  }
}

TEST_F(LongText, FromPages) {
  Bytes text(textLength);
  std::mt19937 random(11);
  for (uint8_t& byte : text) byte = static_cast<uint8_t>(random());
  for (const CEI page : pages) {
    for (const CEI target : {U_UTF8_CE, U_L_UNICODE_CE, U_B_UNICODE_CE}) {
      check(page, target, toUnicode(page, text, row(target)));
    }
  }
}

// On the way to UTF-8 two surrogates side by side would be taken for a character.
TEST(PageTables, HaveNoSurrogates) {
  for (const char16_t* table : veldnls::byteToUnicodeTables) {
    for (size_t byte = 0; table != nullptr && byte < 256; ++byte) EXPECT_FALSE(veldnls::isSurrogate(table[byte]));
  }
}

}  // namespace
}  // namespace test

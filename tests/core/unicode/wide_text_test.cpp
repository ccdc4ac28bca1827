#include "core/wide_text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "support/guard.h"

using namespace veldnls;

namespace {

bool equalNoCase(std::u16string_view a, std::u16string_view b) {
  return wideEqualNoCase(a.data(), static_cast<int32_t>(a.size()), b.data(), static_cast<int32_t>(b.size()));
}

bool equalExact(std::u16string_view a, std::u16string_view b) {
  return wideEqualExact(a.data(), static_cast<int32_t>(a.size()), b.data(), static_cast<int32_t>(b.size()));
}

int32_t trimmed(std::u16string_view text, int32_t mode) {
  return wideTrimRight(text.data(), static_cast<int32_t>(text.size()), mode);
}

// A text that ends at a guard page, so that a read behind it ends the test.
class GuardedText : public test::GuardedBuffer {
 public:
  explicit GuardedText(std::u16string_view text) : GuardedBuffer(text.size() * sizeof(char16_t)) {
    if (!text.empty()) std::memcpy(data(), text.data(), size());
  }
  char16_t* units() { return reinterpret_cast<char16_t*>(data()); }
  int32_t length() const { return static_cast<int32_t>(size() / sizeof(char16_t)); }
  std::u16string text() { return {units(), units() + length()}; }
};

TEST(WideText, FoldsInPlace) {
  GuardedText text(u"Stra\u00DFe \u0178\u018E 9\U0001D400");
  wideFoldToLower(text.units(), text.length());
  EXPECT_EQ(text.text(), u"stra\u00DFe \u00FF\u0258 9\U0001D400");
  wideFoldToUpper(text.units(), text.length());
  EXPECT_EQ(text.text(), u"STRA\u00DFE \u0178\u018E 9\U0001D400");
}

TEST(WideText, FoldsOnlyWhatIsCounted) {
  char16_t text[] = u"ABC";
  wideFoldToLower(text, 2);
  EXPECT_EQ(std::u16string(text), u"abC");
  wideFoldToUpper(text, 1);
  EXPECT_EQ(std::u16string(text), u"AbC");
  wideFoldToLower(text, 0);
  wideFoldToUpper(text, -1);
  wideFoldToLower(nullptr, 0);
  EXPECT_EQ(std::u16string(text), u"AbC");
}

TEST(WideText, EqualNoCase) {
  EXPECT_TRUE(equalNoCase(u"STRASSE", u"strasse"));
  EXPECT_FALSE(equalNoCase(u"\u00DF", u"ss"));
  EXPECT_TRUE(equalNoCase(u"\u00C4", u"\u00E4"));
  EXPECT_FALSE(equalNoCase(u"\u0130", u"i"));
  EXPECT_TRUE(equalNoCase(u"", u""));
  EXPECT_TRUE(wideEqualNoCase(nullptr, 0, nullptr, 0));
  EXPECT_FALSE(equalNoCase(u"a", u""));
  EXPECT_FALSE(equalNoCase(u"ab", u"ac"));
  // The long s has an upper-case form, but equality goes by lower case.
  EXPECT_FALSE(equalNoCase(u"\u017F", u"s"));
}

TEST(WideText, EqualNoCaseLeavesTextsAndStaysInside) {
  GuardedText a(u"QzNls");
  GuardedText b(u"qZnLS");
  EXPECT_TRUE(wideEqualNoCase(a.units(), a.length(), b.units(), b.length()));
  EXPECT_EQ(a.text(), u"QzNls");
  EXPECT_EQ(b.text(), u"qZnLS");
}

TEST(WideText, EqualFoldedLeavesTextsFolded) {
  GuardedText a(u"WLatin1");
  GuardedText b(u"wLATIN1");
  EXPECT_TRUE(wideEqualFolded(a.units(), a.length(), b.units(), b.length()));
  EXPECT_EQ(a.text(), u"wlatin1");
  EXPECT_EQ(b.text(), u"wlatin1");

  GuardedText shorter(u"ABC");
  GuardedText longer(u"ABCD");
  EXPECT_FALSE(wideEqualFolded(shorter.units(), shorter.length(), longer.units(), longer.length()));
  EXPECT_EQ(shorter.text(), u"abc");
  EXPECT_EQ(longer.text(), u"abcd");

  GuardedText other(u"ABX");
  EXPECT_FALSE(wideEqualFolded(shorter.units(), shorter.length(), other.units(), other.length()));
  EXPECT_EQ(other.text(), u"abx");
}

TEST(WideText, EqualExact) {
  EXPECT_TRUE(equalExact(u"Name", u"Name"));
  EXPECT_FALSE(equalExact(u"Name", u"name"));
  EXPECT_FALSE(equalExact(u"Name", u"Nam"));
  EXPECT_TRUE(equalExact(u"", u""));
  // Units that differ in one byte only, the low one or the high one.
  EXPECT_FALSE(equalExact(u"\u0141", u"\u0142"));
  EXPECT_FALSE(equalExact(u"\u0141", u"\u0241"));
  GuardedText a(u"edge");
  GuardedText b(u"edge");
  EXPECT_TRUE(wideEqualExact(a.units(), a.length(), b.units(), b.length()));
}

TEST(WideText, TrimRight) {
  EXPECT_EQ(trimmed(u"ab \t", 0), 4);
  EXPECT_EQ(trimmed(u"ab \t", 1), 2);
  EXPECT_EQ(trimmed(u"ab  ", 0), 2);
  EXPECT_EQ(trimmed(u"ab\u3000\u00A0\u2029\r\n", -7), 2);
  EXPECT_EQ(trimmed(u"ab\u3000", 0), 3);
  EXPECT_EQ(trimmed(u" ab", 0), 3);
  EXPECT_EQ(trimmed(u"   ", 0), 0);
  EXPECT_EQ(trimmed(u" \t\u2003", 2), 0);
  EXPECT_EQ(trimmed(u"", 0), 0);
  EXPECT_EQ(wideTrimRight(nullptr, 0, 1), 0);
  EXPECT_EQ(wideTrimRight(nullptr, -4, 0), 0);
}

// Blanks ahead of the text must not be read, also when all of the text is blanks.
TEST(WideText, TrimRightStaysInside) {
  test::GuardedBuffer buffer(6, test::GuardedBuffer::At::start);
  auto* units = reinterpret_cast<char16_t*>(buffer.data());
  std::fill_n(units, 3, u' ');
  EXPECT_EQ(wideTrimRight(units, 3, 0), 0);
  EXPECT_EQ(wideTrimRight(units, 3, 1), 0);
}

}  // namespace

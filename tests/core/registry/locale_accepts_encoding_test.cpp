#include <gtest/gtest.h>

#include <set>
#include <string>

#include "core/registry.h"
#include "support/guard.h"

namespace veldnls {
namespace {

bool accepts(const std::u16string& locale, CEI cei) {
  return localeAcceptsEncoding(locale.data(), static_cast<int32_t>(locale.size()), cei) != 0;
}

void expectAccepted(const std::u16string& locale, const std::set<CEI>& accepted) {
  for (CEI cei = -1; cei <= NLS_CEI_COUNT; ++cei) {
    EXPECT_EQ(accepts(locale, cei), accepted.contains(cei)) << std::string(locale.begin(), locale.end()) << " " << cei;
  }
}

const std::set<CEI> traditional = {118, 121, 123};
const std::set<CEI> simplified = {125, 126, 127};

TEST(LocaleAcceptsEncoding, EnglishTakesWhatIsBuiltOnAscii) {
  std::set<CEI> ascii;
  for (const EncodingDescriptor& row : encodingTable) {
    if ((row.flags & NLS_ENCODING_ASCII) != 0) ascii.insert(row.cei);
  }
  for (const char16_t* locale : {u"en", u"en_US", u"EN_us", u"eN", u"english"}) expectAccepted(locale, ascii);
  EXPECT_FALSE(accepts(u"en_US", 25));
  EXPECT_FALSE(accepts(u"en_US", INT32_MAX));
  EXPECT_FALSE(accepts(u"en_US", INT32_MIN));
}

TEST(LocaleAcceptsEncoding, KoreanAndJapanese) {
  for (const char16_t* locale : {u"ko", u"ko_KR", u"KO_kr"}) expectAccepted(locale, {140, 141, 143});
  for (const char16_t* locale : {u"ja", u"ja_JP", u"Ja"}) expectAccepted(locale, {135, 136, 137, 138});
}

TEST(LocaleAcceptsEncoding, ChineseGoesByRegion) {
  for (const char16_t* locale : {u"zh_HK", u"zh_MO", u"zh_TW", u"ZH_tw", u"zH_tW", u"zh_TW.big5", u"zt", u"ZT_x"}) {
    expectAccepted(locale, traditional);
  }
  for (const char16_t* locale : {u"zh", u"zh_", u"zh_T", u"zh_CN", u"zh_SG", u"zh-TW", u"ZH_cn"}) {
    expectAccepted(locale, simplified);
  }
  EXPECT_TRUE(accepts(u"zh_TW", 118));
  EXPECT_FALSE(accepts(u"zh_CN", 118));
}

TEST(LocaleAcceptsEncoding, OtherLanguagesAndShortNames) {
  for (const char16_t* locale : {u"", u"e", u"k", u"de", u"de_DE", u"z_zh", u"nb"}) expectAccepted(locale, {});
  EXPECT_EQ(localeAcceptsEncoding(nullptr, 5, 62), 0);
  EXPECT_EQ(localeAcceptsEncoding(u"en", -1, 62), 0);
  EXPECT_EQ(localeAcceptsEncoding(u"en", 1, 62), 0);
}

TEST(LocaleAcceptsEncoding, ReadsTheNameOnly) {
  const std::u16string name = u"zh_TW";
  for (size_t length = 0; length <= name.size(); ++length) {
    test::GuardedBuffer buffer(length * sizeof(char16_t));
    for (size_t i = 0; i < length; ++i) reinterpret_cast<char16_t*>(buffer.data())[i] = name[i];
    const auto* locale = reinterpret_cast<const char16_t*>(buffer.data());
    EXPECT_EQ(localeAcceptsEncoding(locale, static_cast<int32_t>(length), 125) != 0, length >= 2 && length < 5);
  }
}

}  // namespace
}  // namespace veldnls

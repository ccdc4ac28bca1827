#include "core/registry.h"
#include "core/wide_text.h"
#include "veldnls/cei.h"

namespace veldnls {

namespace {

constexpr int32_t languageLength = 2;
constexpr int32_t regionLength = 5;

// True when the locale begins with `prefix` in any case of letters.
bool beginsWith(const char16_t* locale, int32_t localeLength, const char16_t* prefix, int32_t prefixLength) {
  return localeLength >= prefixLength && wideEqualNoCase(locale, prefixLength, prefix, prefixLength);
}

bool isKorean(CEI cei) { return cei == U_EUCKR_CE || cei == U_MS949_CE || cei == U_MACOS3_CE; }

bool isJapanese(CEI cei) {
  return cei == U_MACOS1_CE || cei == U_MS932_CE || cei == U_IBM942_CE || cei == U_SHIFTJIS_CE;
}

bool isTraditionalChinese(CEI cei) { return cei == U_MS950_CE || cei == U_MACOS2_CE || cei == U_BIG5_CE; }

bool isSimplifiedChinese(CEI cei) { return cei == U_EUCCN_CE || cei == U_MS936_CE || cei == U_MACOS25_CE; }

bool writesTraditionalChinese(const char16_t* locale, int32_t localeLength) {
  return beginsWith(locale, localeLength, u"zh_HK", regionLength) ||
         beginsWith(locale, localeLength, u"zh_MO", regionLength) ||
         beginsWith(locale, localeLength, u"zh_TW", regionLength);
}

}  // namespace

NlsBool8 localeAcceptsEncoding(const char16_t* locale, int32_t localeLength, CEI cei) {
  if (locale == nullptr || localeLength < languageLength) return 0;
  const auto isLanguage = [&](const char16_t* code) { return beginsWith(locale, localeLength, code, languageLength); };
  if (isLanguage(u"en")) {
    const EncodingDescriptor* row = encodingRow(cei);
    return row != nullptr && (row->flags & NLS_ENCODING_ASCII) != 0 ? 1 : 0;
  }
  if (isLanguage(u"ko")) return isKorean(cei) ? 1 : 0;
  if (isLanguage(u"ja")) return isJapanese(cei) ? 1 : 0;
  if (isLanguage(u"zt")) return isTraditionalChinese(cei) ? 1 : 0;
  if (!isLanguage(u"zh")) return 0;
  return (writesTraditionalChinese(locale, localeLength) ? isTraditionalChinese(cei) : isSimplifiedChinese(cei)) ? 1
                                                                                                                 : 0;
}

}  // namespace veldnls

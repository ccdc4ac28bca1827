#include "core/session.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string_view>

#include "core/dbcs.h"
#include "core/qznlsstub.h"
#include "core/wide_text.h"
#include "veldnls/status.h"

namespace veldnls {

namespace {

constexpr std::u16string_view sessionCeiOption = u"QZNLS.XPA_SESSION_CEI";
constexpr std::u16string_view dbcsLanguageOption = u"QZNLS.DBCSLANG";
constexpr int32_t dbcsLanguageBytes = 256;

constexpr uint32_t discoveryBytes = 200;
constexpr std::string_view localePrefix = "WLCID: ";
constexpr size_t decimalLength = 11;  // of the smallest int32

// Host texts are plain ASCII, so that the conversion fits and can't fail.
uint32_t widen(QZNLS* nls, const char* text, uint32_t length, char16_t* buffer) {
  TranscodingPipeline* pipeline = &nls->prebuiltPipelines[NLS_PREBUILT_WLATIN1_TO_UTF16];
  uint32_t bytes = 0;
  pipeline->transcode(pipeline, text, length, buffer, discoveryBytes, &bytes, nullptr);
  return bytes;
}

}  // namespace

CEI sessionCei(QZNLS* nls) {
  int32_t value = 0;
  int32_t size = sizeof value;
  const NlsStatus status =
      nlsGetOption(nls->host, sessionCeiOption.data(), static_cast<int32_t>(sessionCeiOption.size()),
                   NLS_OPTION_INTEGER, &value, &size);
  return status == 0 ? value : 0;
}

int32_t sessionDbcsLanguage(QZNLS* nls) {
  char16_t value[dbcsLanguageBytes / 2] = {};
  int32_t size = dbcsLanguageBytes;
  const NlsStatus status = nlsGetOption(nls->host, dbcsLanguageOption.data(),
                                        static_cast<int32_t>(dbcsLanguageOption.size()), NLS_OPTION_TEXT, value, &size);
  if (status != 0) return 0;
  // A host may tell the size of a value that it had to cut.
  const int32_t length = std::clamp(size, 0, dbcsLanguageBytes) / 2;
  // An empty value meets the empty alternate of the first row.
  const auto* found = std::find_if(std::begin(dbcsLanguages), std::end(dbcsLanguages), [&](const DbcsLanguageRow& row) {
    return wideEqualNoCase(value, length, row.name, row.nameLength) ||
           wideEqualNoCase(value, length, row.alternate, row.alternateLength);
  });
  return static_cast<int32_t>(found - std::begin(dbcsLanguages));
}

const char* activeEncodingName() { return "UTF-16LE"; }

NlsStatus discoverHostCodePage(QZNLS* nls, char16_t* buffer, int32_t* length) {
  if (nls == nullptr) return nlsBadArgument;
  char text[decimalLength];
  const char* end = std::to_chars(std::begin(text), std::end(text), nlsHostCodePage()).ptr;
  *length = static_cast<int32_t>(end - text);
  widen(nls, text, static_cast<uint32_t>(*length), buffer);
  return 0;
}

NlsStatus discoverHostLocale(QZNLS* nls) {
  if (nls == nullptr) return nlsBadArgument;
  char text[localePrefix.size() + decimalLength];
  char* digits = std::copy(localePrefix.begin(), localePrefix.end(), text);
  const char* end = std::to_chars(digits, std::end(text), static_cast<int32_t>(nlsHostLocaleId())).ptr;

  // The look-up gets the length in bytes. That is twice the text, within the buffer, and the zero behind the last digit
  // ends the number.
  char16_t wide[discoveryBytes / 2] = {};
  const uint32_t bytes = widen(nls, text, static_cast<uint32_t>(end - text), wide);
  static_assert(2 * sizeof text < discoveryBytes / 2);
  const LocaleNameRow* row = nullptr;
  const NlsStatus status = nls->findLocaleEntry(nls, wide, static_cast<int32_t>(bytes), NLS_LOCALE_FALLBACK, &row);
  if (status != 0 && status != nlsLocaleApproximated) {
    nls->hostLocaleStatus = nlsLocaleNotFound;
    return nlsLocaleNotFound;
  }
  nls->hostLocaleNameLength = row->posixNameLength;
  std::copy_n(row->posixName, row->posixNameLength, nls->hostLocaleName);
  nls->hostLocaleStatus = 0;
  return 0;
}

NlsStatus getHostEncoding(QZNLS* nls, CEI* cei) {
  *cei = nls->hostCei;
  return nls->hostCeiStatus;
}

NlsStatus getHostLocaleName(QZNLS* nls, char16_t* buffer, int32_t* length) {
  if (buffer == nullptr) return nlsNullString;
  *length = nls->hostLocaleNameLength;
  std::copy_n(nls->hostLocaleName, nls->hostLocaleNameLength, buffer);
  return nls->hostLocaleStatus;
}

}  // namespace veldnls

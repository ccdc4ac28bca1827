#include <iterator>

#include "core/session.h"
#include "veldnls/status.h"

namespace veldnls {

namespace {

// All lists of both tables.
constexpr int32_t listedNumbers[] = {
#include "locales/listed_numbers.inc"
};

// Encodings by locale, and the exact inverse.
constexpr LocaleEncodings encodingsByLocale[] = {
#include "locales/encodings.inc"
};
static_assert(std::size(encodingsByLocale) == NLS_LOCALE_COUNT);

constexpr LocaleEncodings localesByEncoding[] = {
#include "locales/encoding_locales.inc"
};
static_assert(std::size(localesByEncoding) == NLS_CEI_COUNT);

}  // namespace

NlsStatus getLocaleEncodings(int32_t localeId, const LocaleEncodings** row) {
  *row = localeId >= 0 && localeId < NLS_LOCALE_COUNT ? &encodingsByLocale[localeId] : nullptr;
  return *row != nullptr ? 0 : nlsLocaleInvalid;
}

NlsStatus getEncodingLocales(CEI cei, const LocaleEncodings** row) {
  *row = cei >= 0 && cei < NLS_CEI_COUNT ? &localesByEncoding[cei] : nullptr;
  return *row != nullptr ? 0 : nlsUnknownEncoding;
}

}  // namespace veldnls

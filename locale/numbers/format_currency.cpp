#include <algorithm>

#include "locale/numbers/decimal_text.h"
#include "locale/numbers/formats.h"

namespace veldnls {

NlsStatus formatCurrency(const LocaleNumber& locale, const NlsText60& symbol, double value, int32_t width,
                         int32_t precision, uint32_t flags, char16_t* output, int32_t capacity, int32_t* length) {
  const int32_t places = symbol.count;
  capacity = std::max(capacity, 0);
  *length = 0;
  if (width < 1 || width < places) return nlsFieldTooNarrow;
  fillUnits(output, std::min(places, capacity), u' ');
  const uint32_t conversion = (flags & FMT_CURRENCY_NO_FRACTION) != 0 ? FMT_INTEGER_ONLY : FMT_FIXED;
  // An output without room for the symbol has none for the number either.
  const NlsStatus status = formatDouble(locale, value, width - places, precision, conversion | FMT_GROUP,
                                        output + std::min(places, capacity), capacity - places, length);
  *length += places;
  if (status != 0) return status;
  const char16_t* first =
      std::find_if(output, output + std::min(width, capacity), [](char16_t unit) { return unit != u' '; });
  std::copy_n(symbol.text, places, output + (first - output) - places);
  return 0;
}

}  // namespace veldnls

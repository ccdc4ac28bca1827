#include <algorithm>
#include <limits>

#include "locale/numbers/binary_double.h"
#include "locale/numbers/double_arithmetic.h"
#include "locale/numbers/formats.h"

namespace veldnls {
namespace {

double hundredfold(double value) {
  if (!isFinite(value)) return value;
  const auto sign = std::bit_cast<uint64_t>(value) & doubleSignBit;
  return std::bit_cast<double>(std::bit_cast<uint64_t>(multiply(magnitudeOf(value), 100)) | sign);
}

// A width or capacity less the places of "%" and parenthesis.
int32_t reduce(int32_t value, int32_t places) {
  return std::max(value, std::numeric_limits<int32_t>::min() + 2) - places;
}

}  // namespace

NlsStatus formatPercent(const LocaleNumber& locale, double value, int32_t width, int32_t precision, uint32_t flags,
                        char16_t* output, int32_t capacity, int32_t* length) {
  const bool parentheses = (flags & FMT_PERCENT_PARENTHESES) != 0 && isNegative(value);
  const int32_t places = parentheses ? 2 : 1;
  const NlsStatus status = formatDouble(locale, hundredfold(value), reduce(width, places), precision, FMT_FIXED, output,
                                        reduce(capacity, places), length);
  const int32_t count = *length;
  *length = static_cast<int32_t>(std::min<int64_t>(int64_t{count} + places, std::numeric_limits<int32_t>::max()));
  if (status != 0) return status;
  output[count] = u'%';
  if (parentheses) {
    output[count + 1] = u')';
    output[0] = u'(';
    char16_t* minus = std::find(output, output + count, u'-');
    if (minus != output + count) *minus = u' ';
  }
  return 0;
}

}  // namespace veldnls

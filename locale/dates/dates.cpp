#include "locale/dates/dates.h"

#include <limits>

#include "locale/dates/fixed_point.h"
#include "locale/dates/format_items.h"
#include "locale/dates/parse_items.h"
#include "locale/numbers/missing_value.h"
#include "veldnls/qzlocale.h"
#include "veldnls/status.h"

namespace veldnls {
namespace {

const NlsText60& dateFormat(const LocaleDateTime& locale, int32_t style) {
  if (style == NLS_DATE_STYLE_MEDIUM) return locale.dateFormatMedium;
  return style == NLS_DATE_STYLE_LONG ? locale.dateFormatLong : locale.dateFormatShort;
}

NlsStatus formatSeconds(const LocaleDateTime& locale, const NlsText60& format, double seconds, char16_t* output,
                        int32_t capacity, int32_t* length) {
  if (isMissing(seconds)) return nlsDateInputMissing;
  Moment moment;
  const NlsStatus status = momentOfSeconds(seconds, &moment);
  return status == 0 ? formatItems(locale, format, moment, output, capacity, length) : status;
}

// Thousandths of a second, below 1000, and two counts of seconds, added as doubles in this order with a rounding each.
double sumOfSeconds(int32_t millisecond, int64_t seconds, int64_t furtherSeconds) {
  constexpr Int128 second = Int128{1} << fractionBits;
  // 2^64 thousandths, divided in words: dividing wider numbers takes another library. Cut as they are, none is a tie.
  constexpr uint64_t thousandth = std::numeric_limits<uint64_t>::max() / 1000;
  constexpr uint64_t rest = std::numeric_limits<uint64_t>::max() % 1000 + 1;
  const auto count = static_cast<uint64_t>(millisecond);
  Int128 sum = fixedPoint(nextDouble(Int128{count * thousandth + count * rest / 1000}));
  sum = fixedPoint(nextDouble(sum + second * seconds));
  return nextDouble(sum + second * furtherSeconds);
}

}  // namespace

NlsStatus formatDate(const LocaleDateTime& locale, uint32_t month, uint32_t day, uint32_t year, int32_t style,
                     char16_t* output, int32_t capacity, int32_t* length) {
  const auto date = dateFromMonthDayYear(month, day, year);
  if (!date) return nlsDateOutOfRange;
  Moment moment;
  const NlsStatus status = momentOfDate(*date, &moment);
  if (status != 0) return status;
  return formatItems(locale, dateFormat(locale, style), moment, output, capacity, length);
}

NlsStatus formatTime(const LocaleDateTime& locale, double seconds, int32_t style, char16_t* output, int32_t capacity,
                     int32_t* length) {
  // Every style but the one of 12 hours is that of 24, where reading has it the other way round.
  const NlsText60& format = style == NLS_TIME_STYLE_12 ? locale.timeFormat12 : locale.timeFormat24;
  return formatSeconds(locale, format, seconds, output, capacity, length);
}

NlsStatus formatDateTime(const LocaleDateTime& locale, double seconds, uint32_t /*reserved*/, char16_t* output,
                         int32_t capacity, int32_t* length) {
  return formatSeconds(locale, locale.dateTimeFormat, seconds, output, capacity, length);
}

NlsStatus parseDate(const LocaleDateTime& locale, const char16_t* text, int32_t length, int32_t style, uint32_t* month,
                    uint32_t* day, uint32_t* year, int32_t* consumed) {
  DateTimeFields fields;
  const NlsStatus status = parseItems(locale, dateFormat(locale, style), text, length, &fields, consumed);
  // A format that lacks a part has status 0 all the same: the zeros tell.
  const bool complete = status == 0 && fields.year != 0 && fields.month != 0 && fields.day != 0;
  *month = complete ? static_cast<uint32_t>(fields.month) : 0;
  *day = complete ? static_cast<uint32_t>(fields.day) : 0;
  *year = complete ? static_cast<uint32_t>(fields.year) : 0;
  return status;
}

NlsStatus parseTime(const LocaleDateTime& locale, const char16_t* text, int32_t length, int32_t style, double* seconds,
                    int32_t* consumed) {
  const NlsText60& format = style == NLS_TIME_STYLE_24 ? locale.timeFormat24 : locale.timeFormat12;
  DateTimeFields fields;
  const NlsStatus status = parseItems(locale, format, text, length, &fields, consumed);
  if (status != 0) return status;
  *seconds = sumOfSeconds(fields.millisecond, (fields.hour * 60 + fields.minute) * 60 + fields.second, 0);
  return 0;
}

NlsStatus parseDateTime(const LocaleDateTime& locale, const char16_t* text, int32_t length, uint32_t /*flags*/,
                        double* seconds, int32_t* consumed) {
  DateTimeFields fields;
  int32_t used = 0;
  const NlsStatus status = parseItems(locale, locale.dateTimeFormat, text, length, &fields, &used);
  if (status != 0) return status;
  const auto date = dateFromMonthDayYear(static_cast<uint32_t>(fields.month), static_cast<uint32_t>(fields.day),
                                         static_cast<uint32_t>(fields.year));
  if (!date) return nlsDateResultMissing;
  const int64_t minutes = fields.minute + 60 * (fields.hour + 24 * int64_t{*date});
  *seconds = sumOfSeconds(fields.millisecond, fields.second, 60 * minutes);
  *consumed = used;
  return 0;
}

}  // namespace veldnls

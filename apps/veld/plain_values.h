// Values in the form in which this program takes and gives them: numbers with "." and without groups, dates as
// 2011-03-02, times as 13:05:09, datetimes as 2011-03-02T13:05:09. Dates are also taken as a number of days and times
// as a number of seconds, both from 1 January 1960.
#pragma once

#include "value_reader.h"
#include "value_writer.h"

namespace veld {

class PlainValues {
 public:
  PlainValues(QZNLS& nls, Kind kind);

  Read read(std::u16string_view text);
  Written write(const Value& value);
  // The number of days or seconds that stands for a value of a kind of date.
  Written writeCount(const Value& value);

 private:
  Read readDate(std::u16string_view text);
  std::optional<Fault> dateOfDays(double days, Value& value);
  Written writeNumber(double value);

  QZNLS& nls_;
  Kind kind_;
  Locale locale_;
  ValueReader numbers_;
  ValueReader reader_;
  ValueWriter numberWriter_;
  ValueWriter writer_;
};

}  // namespace veld

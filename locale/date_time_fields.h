// The fields of dates and times. The rows have their texts as numbers, a fetched row in full, and a record in its room.
#pragma once

namespace veldnls {

// Copies them, with `copy(to, from)` for each text and each array of texts.
template <class To, class From, class Copy>
void copyDateTimeFields(To& to, const From& from, Copy copy) {
  copy(to.dayNames, from.dayNames);
  copy(to.dayAbbreviations, from.dayAbbreviations);
  copy(to.monthNames, from.monthNames);
  copy(to.monthAbbreviations, from.monthAbbreviations);
  copy(to.dateFormatShort, from.dateFormatShort);
  copy(to.dateFormatMedium, from.dateFormatMedium);
  copy(to.dateFormatLong, from.dateFormatLong);
  copy(to.dateTimeFormat, from.dateTimeFormat);
  copy(to.timeFormat24, from.timeFormat24);
  copy(to.timeFormat12, from.timeFormat12);
  copy(to.amText, from.amText);
  copy(to.pmText, from.pmText);
  to.dateSeparator = from.dateSeparator;
  to.timeSeparator = from.timeSeparator;
}

}  // namespace veldnls

// Formats of dates and times: those of a locale, and a format of the user's own.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "locale_handle.h"
#include "value_kinds.h"

namespace veld {

// Which format is wanted. Without either it is the short date, the time of 24 hours, or the locale's datetime.
struct DateChoice {
  std::string form = {};                   // date, datetime: short, medium, long, full; time: 12, 24
  std::optional<std::string> format = {};  // one of the user's own, in its place
};

// Part of a format: an item, as "%d" and "%?b", or one character that stands for itself.
struct FormatPart {
  size_t start;
  size_t end;
  bool isItem;
};

std::vector<FormatPart> partsOf(std::u16string_view format);

// What the parser wants at a part, in words, and how many digits that are, 0 for none.
struct Wanted {
  std::string words;
  size_t digits;
};
Wanted wantedAt(QZNLS& nls, std::u16string_view part);

// How a kind of date goes through the slots of a locale.
struct DateSlot {
  NlsText60* format;  // the field of the record that the slot reads with `style`
  int32_t style;
};

// Makes a locale's slots for a kind of date use the format wanted; formats without a style of their own take the place
// of another in the record. Throws Failure for a form that the kind doesn't have and a format without room.
DateSlot chooseFormat(QZNLS& nls, Locale& locale, Kind kind, const DateChoice& choice);

// Throws Failure, with the place, for a format of the user's that can't be written, or can't be read.
void checkWritable(QZNLS& nls, Locale& locale, Kind kind, const DateSlot& slot);
void checkReadable(QZNLS& nls, Kind kind, const DateSlot& slot);

}  // namespace veld

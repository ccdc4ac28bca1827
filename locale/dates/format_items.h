// Writes a moment by a format: text with items "%x" and "%?x".
#pragma once

#include "locale/dates/moment.h"
#include "veldnls/locale_record.h"

namespace veldnls {

// Blanks at the end of the text are cut. Returns 0; nlsFieldTooNarrow with what fits the output; nlsBadArgument, with
// the output and `*length` as they were, for an item that isn't known or an item of time in the format of a plain date.
NlsStatus formatItems(const LocaleDateTime& locale, const NlsText60& format, const Moment& moment, char16_t* output,
                      int32_t capacity, int32_t* length);

}  // namespace veldnls

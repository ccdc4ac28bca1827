// Dates and times as text of a locale and back. The contracts stand at the slots of QZLocale (veldnls/qzlocale.h). No
// function raises a floating-point exception, and none depends on the process or the clock.
#pragma once

#include "veldnls/locale_record.h"

namespace veldnls {

NlsStatus formatDate(const LocaleDateTime& locale, uint32_t month, uint32_t day, uint32_t year, int32_t style,
                     char16_t* output, int32_t capacity, int32_t* length);
NlsStatus formatTime(const LocaleDateTime& locale, double seconds, int32_t style, char16_t* output, int32_t capacity,
                     int32_t* length);
NlsStatus formatDateTime(const LocaleDateTime& locale, double seconds, uint32_t reserved, char16_t* output,
                         int32_t capacity, int32_t* length);

NlsStatus parseDate(const LocaleDateTime& locale, const char16_t* text, int32_t length, int32_t style, uint32_t* month,
                    uint32_t* day, uint32_t* year, int32_t* consumed);
NlsStatus parseTime(const LocaleDateTime& locale, const char16_t* text, int32_t length, int32_t style, double* seconds,
                    int32_t* consumed);
NlsStatus parseDateTime(const LocaleDateTime& locale, const char16_t* text, int32_t length, uint32_t flags,
                        double* seconds, int32_t* consumed);

}  // namespace veldnls

// Numbers out of text of a locale: the work of the slots in veldnls/qzlocale.h, whose contracts these functions have.
#pragma once

#include "veldnls/locale_record.h"
#include "veldnls/number_flags.h"
#include "veldnls/status.h"

namespace veldnls {

// `locale` may be null.
NlsStatus parseDouble(const LocaleNumber* locale, const char16_t* text, int32_t length, double* value,
                      int32_t* consumed);

NlsStatus parseInt32(const LocaleNumber& locale, const char16_t* text, int32_t length, uint32_t flags, int32_t* value,
                     int32_t* consumed);
NlsStatus parseInt64(const LocaleNumber& locale, const char16_t* text, int32_t length, uint32_t flags, int64_t* value,
                     int32_t* consumed);
NlsStatus parseUInt32(const LocaleNumber& locale, const char16_t* text, int32_t length, uint32_t flags, uint32_t* value,
                      int32_t* consumed);
NlsStatus parseUInt64(const LocaleNumber& locale, const char16_t* text, int32_t length, uint32_t flags, uint64_t* value,
                      int32_t* consumed);

}  // namespace veldnls

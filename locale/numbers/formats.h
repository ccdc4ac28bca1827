// Numbers as text of a locale: the work of the slots in veldnls/qzlocale.h, whose contracts these functions have.
#pragma once

#include "veldnls/locale_record.h"
#include "veldnls/number_flags.h"
#include "veldnls/status.h"

namespace veldnls {

NlsStatus formatDouble(const LocaleNumber& locale, double value, int32_t width, int32_t precision, uint32_t flags,
                       char16_t* output, int32_t capacity, int32_t* length);

NlsStatus formatInt32(const LocaleNumber& locale, int32_t value, int32_t width, int32_t precision, uint32_t flags,
                      char16_t* output, int32_t capacity, int32_t* length);
NlsStatus formatInt64(const LocaleNumber& locale, int64_t value, int32_t width, int32_t precision, uint32_t flags,
                      char16_t* output, int32_t capacity, int32_t* length);
NlsStatus formatUInt32(const LocaleNumber& locale, uint32_t value, int32_t width, int32_t precision, uint32_t flags,
                       char16_t* output, int32_t capacity, int32_t* length);
NlsStatus formatUInt64(const LocaleNumber& locale, uint64_t value, int32_t width, int32_t precision, uint32_t flags,
                       char16_t* output, int32_t capacity, int32_t* length);

NlsStatus formatPointer(const void* value, int32_t width, uint32_t flags, char16_t* output, int32_t capacity,
                        int32_t* length);

NlsStatus formatPercent(const LocaleNumber& locale, double value, int32_t width, int32_t precision, uint32_t flags,
                        char16_t* output, int32_t capacity, int32_t* length);

NlsStatus formatCurrency(const LocaleNumber& locale, const NlsText60& symbol, double value, int32_t width,
                         int32_t precision, uint32_t flags, char16_t* output, int32_t capacity, int32_t* length);

}  // namespace veldnls

// Integers in any base and grouping, in an output of any size: what format_int.cpp has no quicker way for.
#pragma once

#include "locale/numbers/formats.h"

namespace veldnls {

NlsStatus formatGeneral(const LocaleNumber& locale, int64_t value, int32_t width, int32_t precision, uint32_t flags,
                        char16_t* output, int32_t capacity, int32_t* length);
NlsStatus formatGeneral(const LocaleNumber& locale, uint64_t value, int32_t width, int32_t precision, uint32_t flags,
                        char16_t* output, int32_t capacity, int32_t* length);

}  // namespace veldnls

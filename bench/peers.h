// The peers' conversions. Each converter is made once and held by what is returned.
#pragma once

#include <vector>

#include "bench/converter.h"
#include "bench/encodings.h"

namespace bench {

// Every call of ICU that does this conversion: ucnv_convertEx, and what is cheaper where one side is in ICU's own
// UTF-16. None if ICU lacks an encoding.
std::vector<Converter> icuConverters(const Encoding& from, const Encoding& to);

// iconv, or nothing if it lacks an encoding.
std::vector<Converter> iconvConverters(const Encoding& from, const Encoding& to);

}  // namespace bench

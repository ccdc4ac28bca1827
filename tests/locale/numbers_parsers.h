// The parsers of numbers, of texts that end at a guard page.
#pragma once

#include "locale/numbers_support.h"
#include "support/parsed.h"

namespace test {

class NumberParsers : public Numbers {
 protected:
  template <class Value, class Slot, class... Flags>
  Parsed<Value> parse(Slot slot, QZLocale* with, const std::u16string& text, Flags... flags) {
    auto* end = reinterpret_cast<char16_t*>(area.data() + area.size());
    char16_t* start = end - text.size();
    std::copy(text.begin(), text.end(), start);
    Parsed<Value> parsed{0, {}, -77};
    parsed.status = slot(with, start, static_cast<int32_t>(text.size()), flags..., &parsed.value, &parsed.consumed);
    return parsed;
  }
  Parsed<double> parseDouble(const std::u16string& text) {
    return parse<double>(locale->parseDouble, locale.get(), text);
  }
  Parsed<int32_t> parseInt32(const std::u16string& text, uint32_t flags = 0) {
    return parse<int32_t>(locale->parseInt32, locale.get(), text, flags);
  }
  Parsed<int64_t> parseInt64(const std::u16string& text, uint32_t flags = 0) {
    return parse<int64_t>(locale->parseInt64, locale.get(), text, flags);
  }
  Parsed<uint32_t> parseUInt32(const std::u16string& text, uint32_t flags = 0) {
    return parse<uint32_t>(locale->parseUInt32, locale.get(), text, flags);
  }
  Parsed<uint64_t> parseUInt64(const std::u16string& text, uint32_t flags = 0) {
    return parse<uint64_t>(locale->parseUInt64, locale.get(), text, flags);
  }
};

}  // namespace test

// The values of numbers that are formatted and parsed: random ones from a fixed seed, in random order of their lengths
// and more than branch prediction can learn, as a column of a table brings them.
#pragma once

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

template <class Value>
struct Values {
  const char* name;
  std::vector<Value> items;
};

Values<double> priceValues();     // of two places, up to 100,000
Values<double> wholeValues();     // of 1 to 15 digits
Values<double> longDoubles();     // of 17 digits, from 4 to 10^8
Values<int64_t> shortIntegers();  // up to 6 digits, negative ones among them
Values<int64_t> longIntegers();   // 18 digits, likewise
Values<int64_t> anyIntegers();    // 1 to 18 digits, likewise

// Numbers as the peers read them, and as the library does, one behind the other.
struct NumberTexts {
  std::string narrow;
  std::u16string wide;
  std::vector<uint32_t> starts{0};  // and the end of the last

  size_t size() const { return starts.size() - 1; }
  std::string_view narrowAt(size_t i) const { return {narrow.data() + starts[i], starts[i + 1] - starts[i]}; }
  std::u16string_view wideAt(size_t i) const { return {wide.data() + starts[i], starts[i + 1] - starts[i]}; }
};

// As std::to_chars writes them, without a digit too many.
template <class Value>
NumberTexts writtenTexts(const Values<Value>& values, char decimalPoint) {
  NumberTexts texts;
  for (const Value value : values.items) {
    char text[64];
    texts.narrow.append(text, std::to_chars(text, text + sizeof text, value).ptr);
    texts.starts.push_back(static_cast<uint32_t>(texts.narrow.size()));
  }
  for (const char letter : texts.narrow)
    texts.wide.push_back(static_cast<char16_t>(letter == '.' ? decimalPoint : letter));
  return texts;
}

}  // namespace bench

// Texts that kernels are tried on, and a plain encoder to make them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace test::kernels {

using Bytes = std::vector<uint8_t>;
using CodePoints = std::vector<uint32_t>;

// `shiftJis` is text of bytes below 0x80 and two-byte codes; of `shiftJisPairs`, a code is one unit. `shifted` has its
// two-byte codes between 0E and 0F.
enum class Form { bytes, utf8, utf16Little, utf16Big, utf32Little, utf32Big, shiftJis, shiftJisPairs, shifted };

// Their numbers among the double-byte sets.
inline constexpr int shiftJisSet = 3;
inline constexpr int shiftedSet = 1;

size_t unitSize(Form form);

// UTF-8 of a value up to 0x1FFFFF; surrogates as three bytes.
void appendUtf8(Bytes& text, uint32_t value);
Bytes encode(Form form, const CodePoints& text);

struct Text {
  std::string name;
  Bytes bytes;
};

// Texts of at least `units` units: plain ones of each script's length, mixtures, damaged ones, noise.
std::vector<Text> textsIn(Form form, size_t units);

}  // namespace test::kernels

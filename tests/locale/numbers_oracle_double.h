// What the parts of the oracle of doubles share.
#pragma once

#include <string>

#include "locale/numbers_oracle.h"

namespace oracle {

struct Call {
  const Signs& signs;
  double value;  // the magnitude
  int width;     // the magnitude
  int precision;
  uint32_t flags;
  int capacity;
  bool left;
  bool zero;
  bool space;
  bool negative;

  bool has(uint32_t flag) const { return (flags & flag) != 0; }
};

// An output in which every place is checked.
struct Field {
  std::u16string units;

  char16_t& operator[](int place) { return units.at(static_cast<size_t>(place)); }
  void fill(int from, int count, char16_t unit) {
    for (int i = 0; i < count; ++i) (*this)[from + i] = unit;
  }
};

// A number in a field of its own: with FMT_FIELD_DECIMAL or FMT_FIELD_EXPONENT, or, with `best`, in whatever form shows
// most of it.
Result fieldFormat(const Call& call, bool best);

// Writes a magnitude with an exponent to the first places of a field: `width` of them, one more with the minus sign.
// Below 0 a precision asks for one digit more than its magnitude, 99 for as many as there is room for. With
// nlsFieldTooNarrow nothing is written.
uint32_t exponentField(const Signs& signs, Field& out, bool negative, int width, int precision, double value);

// The power of two just above a number; a number divided by a power of two and rounded down.
int binaryExponent(double value);
int shifted(int value, int bits);

std::u16string wide(const std::string& text);

// How many digits an integer of this has in decimal.
int decimalLength(int number);

// Of the digits of an integer: how many a group has (0: there are none), how many separators go between them, and the
// text with these.
int groupSize(const Signs& signs);
int separatorCount(int digits, int size);
std::u16string grouped(const std::u16string& digits, int size, char16_t separator);

}  // namespace oracle

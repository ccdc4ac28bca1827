// What the number formatters must give, step by step as their contract goes and apart from the library: exact decimal
// expansions by repeated doubling and halving of digit strings, and the processor's own arithmetic where a field's
// digits come from doubles.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>

namespace oracle {

// A unit of the output that isn't written.
inline constexpr char16_t untouched = u'\xE000';

// All `capacity` units of an output.
struct Result {
  uint32_t status;
  int32_t length;
  std::u16string units;
  bool operator==(const Result&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Result& result);

struct Signs {
  char16_t point = u'.';
  char16_t separator = u',';
  std::u16string grouping = u"3";
};

// The magnitude of a finite double in decimal digits: those of the integer part, none for zero, and all of the
// fraction.
struct Exact {
  std::string integer;
  std::string fraction;
};
Exact exactDigits(double value);
// The same of the point halfway between a double and the next above.
Exact halfwayAbove(double value);

Result formatDouble(const Signs& signs, double value, int32_t width, int32_t precision, uint32_t flags,
                    int32_t capacity);
Result formatSigned(const Signs& signs, int64_t value, int32_t width, int32_t precision, uint32_t flags,
                    int32_t capacity);
Result formatUnsigned(const Signs& signs, uint64_t value, int32_t width, int32_t precision, uint32_t flags,
                      int32_t capacity);

// The double next to digits * 10^exponent, by comparison of integers as digit strings; infinity if there is none.
double nearestDouble(const std::string& digits, int exponent);

}  // namespace oracle

// Number formatters against the oracle, in every unit of the output.
#pragma once

#include "locale/numbers_support.h"

namespace test {

class NumberDifferential : public Numbers {
 protected:
  void expectDouble(double value, int32_t width, int32_t precision, uint32_t flags, int32_t capacity) {
    const oracle::Result expected = oracle::formatDouble(signs, value, width, precision, flags, capacity);
    const oracle::Result result = formatDouble(value, width, precision, flags, capacity);
    if (result != expected && ++failures <= 20) {
      ADD_FAILURE() << std::hexfloat << value << " = " << std::defaultfloat << value << " width " << width
                    << " precision " << precision << " flags " << std::hex << flags << std::dec << " capacity "
                    << capacity << "\n  is     " << result << "\n  not    " << expected;
    }
  }
  // The value and its negative, in outputs with room enough.
  void expectBoth(double value, int32_t width, int32_t precision, uint32_t flags) {
    expectDouble(value, width, precision, flags, 700);
    expectDouble(-value, width, precision, flags, 700);
  }
  void TearDown() override { EXPECT_EQ(failures, 0); }

  int failures = 0;
};

inline constexpr uint32_t conversions[] = {0,
                                           FMT_GENERAL_UPPER,
                                           FMT_FIXED,
                                           FMT_FRACTION_ONLY,
                                           FMT_INTEGER_ONLY,
                                           FMT_EXPONENT,
                                           FMT_EXPONENT_UPPER,
                                           FMT_BEST,
                                           FMT_FIELD_DECIMAL,
                                           FMT_FIELD_EXPONENT};

class IntegerDifferential : public Numbers {
 protected:
  void expectAll(uint64_t bits, int32_t width, int32_t precision, uint32_t flags, int32_t capacity) {
    const auto signedBits = static_cast<int64_t>(bits);
    const auto narrow = static_cast<uint32_t>(bits);
    const auto narrowSigned = static_cast<int32_t>(narrow);
    expect(formatInt64(signedBits, width, precision, flags, capacity),
           oracle::formatSigned(signs, signedBits, width, precision, flags, capacity));
    expect(formatUInt64(bits, width, precision, flags, capacity),
           oracle::formatUnsigned(signs, bits, width, precision, flags, capacity));
    expect(formatInt32(narrowSigned, width, precision, flags, capacity),
           oracle::formatSigned(signs, narrowSigned, width, precision, flags, capacity));
    expect(formatUInt32(narrow, width, precision, flags, capacity),
           oracle::formatUnsigned(signs, narrow, width, precision, flags, capacity));
  }
  void TearDown() override { EXPECT_EQ(failures, 0); }

 private:
  void expect(const oracle::Result& result, const oracle::Result& expected) {
    if (result != expected && ++failures <= 20) ADD_FAILURE() << "  is     " << result << "\n  not    " << expected;
  }

  int failures = 0;
};

}  // namespace test

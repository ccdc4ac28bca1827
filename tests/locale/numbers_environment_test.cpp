// Numbers in unusual states of floating point: exceptions unmasked, other roundings, subnormals cut to zero.
#include <fenv.h>
#ifdef __SSE__
#include <xmmintrin.h>
#endif

#include "locale/numbers_support.h"

namespace {

using oracle::Result;

class NumberEnvironment : public test::Numbers {
 protected:
  // What all formatters and parsers give for many numbers, in one text.
  std::string everything() {
    std::string all;
    const auto note = [&](const Result& result) {
      all += std::to_string(result.status) + ":" + std::to_string(result.length) + ":";
      for (const char16_t unit : result.units) all += static_cast<char>(unit);
    };
    for (const uint64_t bits : sampleBits) {
      const auto value = std::bit_cast<double>(bits);
      for (const uint32_t conversion :
           {FMT_GENERAL, FMT_FIXED, FMT_EXPONENT, FMT_BEST, FMT_FIELD_DECIMAL, FMT_FIELD_EXPONENT}) {
        note(formatDouble(value, 14, 3, conversion));
      }
      const Result text = formatDouble(value, 0, 17, FMT_EXPONENT);
      note(text);
      double back = 0;
      int32_t consumed = 0;
      all += std::to_string(locale->parseDouble(locale.get(), text.units.data(), text.length, &back, &consumed));
      all += std::to_string(std::bit_cast<uint64_t>(back)) + std::to_string(consumed);
      note(run(64, [&](char16_t* output, int32_t room, int32_t* length) {
        return locale->formatPercent(locale.get(), value, 16, 2, 1, output, room, length);
      }));
      note(run(64, [&](char16_t* output, int32_t room, int32_t* length) {
        return locale->formatCurrency(locale.get(), value, 16, 2, 1, output, room, length);
      }));
      note(formatInt64(static_cast<int64_t>(bits), 20, 0, FMT_GROUP));
    }
    for (const char16_t* text :
         {u"1e400", u"1e-400", u"0.1", u"123456789012345678901234567890", u".a", u"x", u"1e99999"}) {
      double back = 0;
      int32_t consumed = 0;
      const auto length = static_cast<int32_t>(std::char_traits<char16_t>::length(text));
      all += std::to_string(locale->parseDouble(locale.get(), text, length, &back, &consumed)) +
             std::to_string(std::bit_cast<uint64_t>(back)) + std::to_string(consumed);
    }
    return all;
  }

  // Only bits: moving signalling values and subnormals about must not raise anything either.
  std::vector<uint64_t> sampleBits = [] {
    std::vector<uint64_t> all = {0x7FF0000000000000, 0xFFF0000000000000, 0x7FF8000000000000, 0x7FF0000000000001,
                                 0xFFF8000000000000, UINT64_MAX,         0xFFFFBE0000000000, uint64_t{1} << 63};
    for (const double value : test::sampleValues(20)) {
      all.push_back(std::bit_cast<uint64_t>(value));
      all.push_back(std::bit_cast<uint64_t>(-value));
    }
    return all;
  }();
};

TEST_F(NumberEnvironment, NoExceptionIsRaised) {
  std::feclearexcept(FE_ALL_EXCEPT);
  const std::string usual = everything();
  EXPECT_EQ(std::fetestexcept(FE_ALL_EXCEPT), 0);
  EXPECT_FALSE(usual.empty());
}

#ifdef __GLIBC__
TEST_F(NumberEnvironment, UnmaskedExceptionsDontTrap) {
  const std::string usual = everything();
  std::fenv_t environment;
  ASSERT_EQ(std::fegetenv(&environment), 0);
  ASSERT_NE(feenableexcept(FE_ALL_EXCEPT), -1);
  const std::string result = everything();
  std::fesetenv(&environment);
  EXPECT_EQ(result, usual);
}
#endif

TEST_F(NumberEnvironment, RoundingDoesntMatter) {
  const std::string usual = everything();
  for (const int rounding : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
    ASSERT_EQ(std::fesetround(rounding), 0);
    const std::string result = everything();
    std::fesetround(FE_TONEAREST);
    EXPECT_EQ(result, usual) << rounding;
  }
}

#ifdef __SSE__
TEST_F(NumberEnvironment, SubnormalsAreTakenWhereTheProcessorCutsThem) {
  const std::string usual = everything();
  const unsigned before = _mm_getcsr();
  _mm_setcsr(before | 0x8040);  // flush to zero, denormals are zero
  const std::string result = everything();
  _mm_setcsr(before);
  EXPECT_EQ(result, usual);
}
#endif

}  // namespace

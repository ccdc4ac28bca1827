// Widths and precisions at the ends of their type, which no sum may leave.
#include "locale/numbers_support.h"

namespace {

using oracle::Result;

constexpr int32_t lowest = INT32_MIN;
constexpr int32_t highest = INT32_MAX;
constexpr uint32_t conversions[] = {FMT_GENERAL,       FMT_FIXED,          FMT_FRACTION_ONLY,
                                    FMT_INTEGER_ONLY,  FMT_EXPONENT,       FMT_BEST,
                                    FMT_FIELD_DECIMAL, FMT_FIELD_EXPONENT, FMT_FIXED | FMT_GROUP | FMT_ZERO | FMT_PLUS};

class NumberExtremes : public test::Numbers {
 protected:
  static std::u16string filled(int32_t count, char16_t unit) {
    return std::u16string(static_cast<size_t>(count), unit);
  }

  Result formatAmount(NlsFormatDouble slot, double value, int32_t width, int32_t precision, int32_t capacity) {
    return run(capacity, [&](char16_t* output, int32_t room, int32_t* length) {
      return slot(locale.get(), value, width, precision, 1, output, room, length);
    });
  }
};

TEST_F(NumberExtremes, IntegersInFieldsAboveTheirOutput) {
  for (const int32_t capacity : {0, 1, 8, 64}) {
    for (const int32_t width : {capacity + 1, highest - 8, highest - 1, highest}) {
      const Result nothing{nlsFieldTooNarrow, 0, filled(capacity, oracle::untouched)};
      for (const int32_t precision : {lowest, -1, 0, 1}) {
        for (const uint32_t flags : {0u, FMT_ZERO, FMT_LEFT, FMT_HEX | FMT_ALT_HEX, FMT_PLUS, FMT_GROUP}) {
          EXPECT_EQ(formatInt32(-15, width, precision, flags, capacity), nothing) << width;
          EXPECT_EQ(formatInt64(15, width, precision, flags, capacity), nothing) << width;
          EXPECT_EQ(formatUInt32(15, width, precision, flags, capacity), nothing) << width;
          EXPECT_EQ(formatUInt64(0, width, precision, flags, capacity), nothing) << width;
        }
      }
    }
  }
}

TEST_F(NumberExtremes, IntegersWithMoreDigitsThanAnOutput) {
  for (const int32_t precision : {highest - 1, highest}) {
    for (const int32_t width : {lowest, -1, 0, 8}) {
      EXPECT_EQ(formatInt32(lowest, width, precision, 0, 8),
                (Result{nlsFieldTooNarrow, 0, filled(8, oracle::untouched)}));
      EXPECT_EQ(formatUInt64(7, width, precision, 0, 8), (Result{nlsFieldTooNarrow, 0, filled(8, oracle::untouched)}));
    }
  }
}

TEST_F(NumberExtremes, IntegersAtTheLeftOfTheLargestField) {
  for (const int32_t width : {lowest, lowest + 1}) {
    EXPECT_EQ(formatInt32(-15, width, 0, 0, 8), (Result{nlsFieldTooNarrow, highest, u"-15     "}));
    EXPECT_EQ(formatInt64(-15, width, 5, 0, 8), (Result{nlsFieldTooNarrow, highest, u"-00015  "}));
    EXPECT_EQ(formatUInt32(15, width, 0, FMT_HEX | FMT_ALT_HEX, 8), (Result{nlsFieldTooNarrow, highest, u"0xf     "}));
    EXPECT_EQ(formatUInt64(15, width, 0, FMT_ZERO, 8), (Result{nlsFieldTooNarrow, highest, u"15      "}));
  }
}

TEST_F(NumberExtremes, DoublesInFieldsAboveTheirOutput) {
  for (const int32_t width : {lowest, lowest + 1, highest - 1, highest}) {
    const int32_t field = width == lowest ? highest : std::abs(width);
    for (const int32_t precision : {lowest, -1, 0, 5}) {
      for (const uint32_t conversion : {FMT_GENERAL, FMT_FIXED, FMT_EXPONENT, FMT_INTEGER_ONLY}) {
        EXPECT_EQ(formatDouble(-1234.5, width, precision, conversion, 24),
                  (Result{nlsFieldTooNarrow, field, filled(24, u'*')}))
            << width << " " << precision << " " << conversion;
      }
    }
  }
}

TEST_F(NumberExtremes, DoublesAnyhow) {
  for (const double value : {0.0, -1234.5, 1e300, -4.9e-324, test::missing('A')}) {
    for (const int32_t width : {lowest, -1, 0, 1, 40, highest}) {
      for (const int32_t precision : {lowest, -1, 98, 99, 100, 350, 351, highest}) {
        for (const uint32_t conversion : conversions) {
          for (const int32_t capacity : {0, 1, 40, 700}) {
            const Result result = formatDouble(value, width, precision, conversion, capacity);
            EXPECT_TRUE(result.status == 0 || result.status == nlsFieldTooNarrow || result.status == nlsDigitsLost);
            EXPECT_GE(result.length, 0) << width << " " << precision << " " << conversion;
          }
        }
      }
    }
  }
}

TEST_F(NumberExtremes, AmountsAnyhow) {
  for (const NlsFormatDouble slot : {locale->formatCurrency, locale->formatPercent}) {
    for (const double value : {0.0, -1234.5, 1e308, test::missing('_')}) {
      for (const int32_t width : {lowest, lowest + 1, -1, 0, 1, 2, 40, highest}) {
        for (const int32_t precision : {lowest, 2, highest}) {
          for (const int32_t capacity : {0, 1, 2, 3, 40, 700}) {
            const Result result = formatAmount(slot, value, width, precision, capacity);
            EXPECT_TRUE(result.status == 0 || result.status == nlsFieldTooNarrow || result.status == nlsBadArgument);
          }
        }
      }
    }
  }
}

}  // namespace

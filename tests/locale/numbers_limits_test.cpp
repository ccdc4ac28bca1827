// Fields and outputs at their limits: what a caller learns when something has no room, and digits that get lost there.
#include "locale/numbers_support.h"

namespace {

using oracle::Result;
using test::missing;
using test::text;

constexpr int32_t lowest = INT32_MIN;
constexpr int32_t highest = INT32_MAX;

std::vector<int32_t> extremeWidths() {
  std::vector<int32_t> widths;
  for (int32_t i = 0; i <= 8; ++i) widths.insert(widths.end(), {highest - i, lowest + i});
  return widths;
}

int32_t fieldOf(int32_t width) { return width == lowest ? highest : std::abs(width); }

std::u16string filled(int32_t count, char16_t unit) {
  return std::u16string(static_cast<size_t>(std::max(count, 0)), unit);
}

// `start` and as many units behind it as make `count`; less of it if it is longer.
std::u16string filledBehind(const std::u16string& start, int32_t count, char16_t unit) {
  const auto wanted = static_cast<size_t>(count);
  std::u16string units = start.substr(0, wanted);
  units.resize(wanted, unit);
  return units;
}

class NumberLimits : public test::Numbers {
 protected:
  Result formatPointer(uintptr_t value, int32_t width, uint32_t flags, int32_t capacity) {
    return run(capacity, [&](char16_t* output, int32_t room, int32_t* length) {
      return locale->formatPointer(locale.get(), reinterpret_cast<const void*>(value), width, flags, output, room,
                                   length);
    });
  }
  Result formatAmount(NlsFormatDouble slot, double value, int32_t width, int32_t precision, int32_t capacity) {
    return run(capacity, [&](char16_t* output, int32_t room, int32_t* length) {
      return slot(locale.get(), value, width, precision, 0, output, room, length);
    });
  }
};

TEST_F(NumberLimits, IntegersOfExtremeWidths) {
  for (const int32_t width : extremeWidths()) {
    for (const int32_t capacity : {0, 10, 64}) {
      for (const uint32_t flags : {0U, FMT_ZERO, FMT_GROUP, FMT_PLUS}) {
        const auto expected = [&](const std::u16string& number) {
          if (width > 0) return Result{nlsFieldTooNarrow, 0, filled(capacity, oracle::untouched)};
          return Result{nlsFieldTooNarrow, fieldOf(width), filledBehind(number, capacity, u' ')};
        };
        // Of a number alone the last units would be kept.
        if (capacity == 0) {
          EXPECT_EQ(formatInt32(-15, width, 0, flags, 0), expected(u"")) << width;
          EXPECT_EQ(formatUInt64(0, width, 0, flags, 0), expected(u"")) << width;
          continue;
        }
        EXPECT_EQ(formatInt32(-15, width, 0, flags, capacity), expected(u"-15")) << width;
        EXPECT_EQ(formatInt64(-15, width, 5, flags, capacity), expected(u"-00015")) << width;
        EXPECT_EQ(formatUInt32(15, width, 0, flags, capacity), expected(u"15")) << width;
        EXPECT_EQ(formatUInt64(0, width, 0, flags, capacity), expected(u"")) << width;
        EXPECT_EQ(formatUInt64(255, width, 0, flags | FMT_HEX | FMT_ALT_HEX, capacity), expected(u"0xff")) << width;
      }
    }
  }
}

TEST_F(NumberLimits, PointersOfExtremeWidths) {
  for (const int32_t width : extremeWidths()) {
    for (const int32_t capacity : {0, 10, 64}) {
      EXPECT_EQ(formatPointer(0xAB, width, FMT_POINTER_PREFIX, capacity),
                (Result{nlsFieldTooNarrow, fieldOf(width), filled(capacity, u' ')}));
      EXPECT_EQ(formatPointer(0xAB, width, FMT_POINTER_PREFIX | FMT_POINTER_LEFT, capacity),
                (Result{nlsFieldTooNarrow, fieldOf(width), filledBehind(u"0xAB", capacity, u' ')}));
      EXPECT_EQ(formatPointer(0, width, FMT_POINTER_LEFT, capacity),
                (Result{capacity == 0 ? nlsFieldTooNarrow : 0, 3, filledBehind(u"NIL", capacity, u'\0')}));
    }
  }
}

TEST_F(NumberLimits, DoublesOfExtremeWidths) {
  for (const int32_t width : extremeWidths()) {
    for (const int32_t capacity : {0, 10, 64}) {
      for (const double value : {0.0, -1234.5, 1e300, 4.9e-324, missing('A')}) {
        for (const uint32_t flags : {FMT_GENERAL, FMT_FIXED, FMT_FIXED | FMT_ZERO | FMT_GROUP, FMT_FIXED | FMT_LEFT}) {
          // A fixed 1E300 is longer than these outputs too, but shorter than the field.
          EXPECT_EQ(formatDouble(value, width, 2, flags, capacity),
                    (Result{nlsFieldTooNarrow, fieldOf(width), filled(capacity, u'*')}))
              << value << " " << width << " " << flags;
        }
        if (std::isnan(value)) continue;
        for (const uint32_t flags : {FMT_BEST, FMT_FIELD_DECIMAL, FMT_FIELD_EXPONENT}) {
          EXPECT_EQ(formatDouble(value, width, 2, flags, capacity), formatDouble(value, capacity, 2, flags, capacity))
              << value << " " << width << " " << flags;
        }
      }
    }
  }
}

TEST_F(NumberLimits, AmountsOfExtremeWidths) {
  for (const int32_t width : extremeWidths()) {
    for (const int32_t capacity : {0, 10, 64}) {
      for (const double value : {0.0, -1234.5, missing('A')}) {
        // A percent's own place widens a negative width.
        const int64_t percent = int64_t{width} < 0 ? 2 - int64_t{width} : width;
        EXPECT_EQ(formatAmount(locale->formatPercent, value, width, 2, capacity),
                  (Result{nlsFieldTooNarrow, static_cast<int32_t>(std::min<int64_t>(percent, highest)),
                          filledBehind(filled(capacity - 1, u'*'), capacity, oracle::untouched)}));
        const Result refused{nlsFieldTooNarrow, 0, filled(capacity, oracle::untouched)};
        const Result tooWide{nlsFieldTooNarrow, width, filledBehind(u" ", capacity, u'*')};
        EXPECT_EQ(formatAmount(locale->formatCurrency, value, width, 2, capacity), width < 0 ? refused : tooWide);
      }
    }
  }
}

TEST_F(NumberLimits, ACapacityBelowZeroCountsAsZero) {
  using Slot = std::function<NlsStatus(int32_t width, int32_t capacity, int32_t * length)>;
  QZLocale* l = locale.get();
  const Slot slots[] = {
      [=](int32_t width, int32_t capacity, int32_t* length) {
        return l->formatInt32(l, 1, width, 0, 0, nullptr, capacity, length);
      },
      [=](int32_t width, int32_t capacity, int32_t* length) {
        return l->formatInt64(l, 0, width, 0, FMT_GROUP, nullptr, capacity, length);
      },
      [=](int32_t width, int32_t capacity, int32_t* length) {
        return l->formatUInt32(l, 0, width, 0, 0, nullptr, capacity, length);
      },
      [=](int32_t width, int32_t capacity, int32_t* length) {
        return l->formatUInt64(l, 12345, width, -1, FMT_HEX | FMT_ALT_HEX, nullptr, capacity, length);
      },
      [=](int32_t width, int32_t capacity, int32_t* length) {
        return l->formatPointer(l, nullptr, width, 0, nullptr, capacity, length);
      },
      [=](int32_t width, int32_t capacity, int32_t* length) {
        return l->formatPointer(l, l, width, 0, nullptr, capacity, length);
      },
      [=](int32_t width, int32_t capacity, int32_t* length) {
        return l->formatDouble(l, 1.5, width, 2, FMT_FIXED, nullptr, capacity, length);
      },
      [=](int32_t width, int32_t capacity, int32_t* length) {
        return l->formatDouble(l, -0.1, width, 0, FMT_BEST, nullptr, capacity, length);
      },
      [=](int32_t width, int32_t capacity, int32_t* length) {
        return l->formatDouble(l, missing('A'), width, 0, FMT_FIELD_DECIMAL, nullptr, capacity, length);
      },
      [=](int32_t width, int32_t capacity, int32_t* length) {
        return l->formatPercent(l, 1.5, width, 2, 0, nullptr, capacity, length);
      },
      [=](int32_t width, int32_t capacity, int32_t* length) {
        return l->formatCurrency(l, 1.5, width, 2, 0, nullptr, capacity, length);
      },
  };
  int32_t number = 0;
  for (const Slot& slot : slots) {
    for (const int32_t width : {lowest, -8, 0, 1, 8, highest}) {
      int32_t expected = -77;
      const NlsStatus status = slot(width, 0, &expected);
      for (const int32_t capacity : {-1, -8, lowest + 1, lowest}) {
        int32_t length = -78;
        EXPECT_EQ(slot(width, capacity, &length), status) << number << " " << width << " " << capacity;
        EXPECT_EQ(length, expected) << number << " " << width << " " << capacity;
      }
    }
    ++number;
  }
}

TEST_F(NumberLimits, WhatIsTooNarrowTellsTheGreaterOfTextAndField) {
  for (const uint32_t flags : {FMT_FIXED, FMT_FIXED | FMT_ZERO, FMT_FIXED | FMT_LEFT}) {
    for (const int32_t capacity : {0, 5, 6, 7, 8, 19}) {
      EXPECT_EQ(formatDouble(1234567, 20, 0, flags, capacity), (Result{nlsFieldTooNarrow, 20, filled(capacity, u'*')}));
    }
    EXPECT_EQ(formatDouble(1234567, 20, 0, flags, 20).status, 0U);
  }
  EXPECT_EQ(formatDouble(1234567, 4, 0, FMT_FIXED, 5).length, 7);
  EXPECT_EQ(formatDouble(1234567, 6, 0, FMT_FIXED, 5).length, 7);
  EXPECT_EQ(formatDouble(missing('A'), 6, 0, FMT_FIXED, 0).length, 6);
  EXPECT_EQ(formatAmount(locale->formatPercent, 12345, 20, 0, 6).length, 20);
  EXPECT_EQ(formatAmount(locale->formatCurrency, 1234567, 20, 0, 6).length, 20);
}

TEST_F(NumberLimits, AMissingValuesDecimalFieldIsNotCutToTheOutput) {
  for (const uint32_t flags : {FMT_FIELD_DECIMAL, FMT_FIELD_DECIMAL | FMT_BEST, FMT_FIELD_DECIMAL | FMT_GROUP}) {
    for (int32_t capacity = 0; capacity < 10; ++capacity) {
      for (const int32_t precision : {-1, 0, 2, 12, highest}) {
        for (const int32_t width : {10, -10, highest, lowest}) {
          EXPECT_EQ(formatDouble(missing('A'), width, precision, flags, capacity),
                    (Result{nlsFieldTooNarrow, fieldOf(width), filled(capacity, u'*')}));
        }
      }
    }
    EXPECT_EQ(formatDouble(missing('A'), 10, 2, flags, 10), (Result{0, 10, u"       A  "}));
    EXPECT_EQ(formatDouble(missing('A'), -10, 2, flags, 11), (Result{0, 10, u"       A   "}));
  }
  // That of a number is.
  EXPECT_EQ(formatDouble(12, 10, 2, FMT_FIELD_DECIMAL, 5), (Result{0, 5, u"12.00"}));
}

TEST_F(NumberLimits, APrecisionCountsSeparatorsToo) {
  EXPECT_EQ(text(formatInt64(1234, 0, 6, FMT_GROUP)), "01,234");
  EXPECT_EQ(text(formatInt32(1234, 0, -1, FMT_GROUP)), "01,234");
  EXPECT_EQ(text(formatUInt32(1234567, 0, 9, FMT_GROUP)), "1,234,567");
  EXPECT_EQ(text(formatInt32(-1, 0, 6, FMT_GROUP)), "-000001");
}

TEST_F(NumberLimits, PointersAndFieldsAreNotLeftJustifiedByANegativeWidth) {
  EXPECT_EQ(formatPointer(0xAB, -6, 0, 6), (Result{0, 6, u"    AB"}));
  EXPECT_EQ(formatPointer(0xAB, -6, FMT_POINTER_LEFT, 6), (Result{0, 6, u"AB    "}));
  EXPECT_EQ(formatDouble(1.5, -6, 1, FMT_FIELD_DECIMAL, 6), (Result{0, 6, u"   1.5"}));
  EXPECT_EQ(formatDouble(1.5, -6, 1, FMT_BEST | FMT_LEFT, 6), (Result{0, 6, u"   1.5"}));
  EXPECT_EQ(formatDouble(1.5, -12, 1, FMT_FIELD_EXPONENT, 13), (Result{0, 12, u" 1.50000E+00\xE000"}));
}

TEST_F(NumberLimits, AMinusSignMayTakeTheRoomOfSeparators) {
  EXPECT_EQ(formatDouble(-1234567, 0, 0, FMT_FIXED, 9), (Result{0, 8, u"-1234567\xE000"}));
  EXPECT_EQ(formatDouble(-1234567, 0, 0, FMT_FIXED | FMT_GROUP, 9), (Result{nlsFieldTooNarrow, 10, filled(9, u'*')}));
  EXPECT_EQ(formatDouble(-1234567, 0, 0, FMT_FIXED | FMT_GROUP, 8), (Result{0, 8, u"-1234567"}));
  // A plus sign or its blank doesn't.
  EXPECT_EQ(formatDouble(1234567, 0, 0, FMT_FIXED | FMT_GROUP | FMT_PLUS, 9), (Result{0, 8, u"+1234567\xE000"}));
  EXPECT_EQ(formatDouble(1234567, 0, 0, FMT_FIXED | FMT_GROUP | FMT_SPACE, 9), (Result{0, 8, u" 1234567\xE000"}));
}

TEST_F(NumberLimits, AnExponentFieldThatCarriesFromMinus100EndsWithABlank) {
  EXPECT_EQ(text(formatDouble(9.99999999e-100, 12, 0, FMT_FIELD_EXPONENT)), "1.00000E-99 ");
  EXPECT_EQ(text(formatDouble(-9.99999999e-100, 13, 0, FMT_FIELD_EXPONENT), nlsDigitsLost), "-1.00000E-99 ");
  EXPECT_EQ(text(formatDouble(9.99999e-100, 12, 0, FMT_FIELD_EXPONENT)), "9.99999E-100");
  EXPECT_EQ(text(formatDouble(1.00001e-99, 12, 0, FMT_FIELD_EXPONENT)), " 1.00001E-99");
}

TEST_F(NumberLimits, ANarrowExponentFieldRounds1E100Twice) {
  EXPECT_EQ(text(formatDouble(1e100, 6, 0, FMT_FIELD_EXPONENT), nlsDigitsLost), " 11E99");
  EXPECT_EQ(text(formatDouble(-1e100, 7, 0, FMT_FIELD_EXPONENT), nlsDigitsLost), " -11E99");
  EXPECT_EQ(text(formatDouble(1e100, 7, 0, FMT_FIELD_EXPONENT)), "1.E+100");
  EXPECT_EQ(text(formatDouble(1e100, 6, 0, FMT_BEST)), " 1E100");
}

TEST_F(NumberLimits, LargeValuesJustAboveAPowerOfTenAreCut) {
  EXPECT_EQ(text(formatDouble(1.0488674956203626e213, 8, 0, FMT_BEST)), "1.04E213");
  EXPECT_EQ(text(formatDouble(1.0488674956203626e213, 0, 2, FMT_EXPONENT)), "1.05e+213");
  EXPECT_EQ(text(formatDouble(1.2180773519577226e306, 12, 0, FMT_FIELD_EXPONENT)), "1.21807E+306");
  EXPECT_EQ(text(formatDouble(1.2180773519577226e306, 0, 5, FMT_EXPONENT)), "1.21808e+306");
}

TEST_F(NumberLimits, ABestFieldOfAllDigitsIsCut) {
  EXPECT_EQ(text(formatDouble(2.4513251336889825e-05, 18, 0, FMT_BEST)), "0.0000245132513368");
  EXPECT_EQ(text(formatDouble(2.4513251336889825e-05, 18, 16, FMT_FIELD_DECIMAL)), "0.0000245132513369");
}

}  // namespace

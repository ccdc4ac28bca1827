// All number formatters against the oracle: many values, widths, precisions and pairs of flags, as far as that takes
// long.
#include "locale/numbers_differential.h"

namespace {

using test::IntegerDifferential;
using test::NumberDifferential;

TEST_F(NumberDifferential, ConversionsOfManyValues) {
  for (const double value : test::sampleValues(400)) {
    for (const int32_t precision : {-1, 0, 1, 2, 6, 15, 17, 18, 19, 20, 40}) {
      for (const uint32_t conversion : {0U, FMT_FIXED, FMT_EXPONENT}) expectBoth(value, 0, precision, conversion);
    }
    for (const uint32_t conversion : {FMT_INTEGER_ONLY, FMT_FRACTION_ONLY}) expectBoth(value, 0, 5, conversion);
  }
}

TEST_F(NumberDifferential, AllPrecisions) {
  for (const double value : {0.0, 1.5, 0.1, 999.9999999, 123456.789, 1e22, 1e300, 1.25e-7, 4.9e-324, 3e-310}) {
    for (int32_t precision = -2; precision <= 360; ++precision) {
      for (const uint32_t conversion : test::conversions) expectBoth(value, 0, precision, conversion);
    }
    for (const int32_t precision : {INT32_MIN, INT32_MAX}) {
      for (const uint32_t conversion : test::conversions)
        expectBoth(value, 12, precision, conversion & ~FMT_FIELD_DECIMAL);
    }
  }
}

TEST_F(NumberDifferential, FieldsOfManyValues) {
  for (const double value : test::sampleValues(250)) {
    for (const int32_t width : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 15, 16, 17, 20, 24, 32, 40}) {
      expectBoth(value, width, 0, FMT_BEST);
      expectBoth(value, width, 0, FMT_FIELD_EXPONENT);
      expectBoth(value, width, width % 5, FMT_FIELD_DECIMAL);
      expectBoth(value, width, width / 2, FMT_FIELD_DECIMAL | FMT_GROUP);
    }
  }
}

TEST_F(NumberDifferential, FieldsNearTheirCarries) {
  // Mantissas of nines at every exponent, where one more unit changes the exponent or its length.
  for (int exponent = -323; exponent <= 308; ++exponent) {
    const std::string power = "e" + std::to_string(exponent);
    for (const char* digits : {"9.9999999999999999", "9.99999", "9.5", "9.4999999", "1", "1.0000001", "5"}) {
      const double value = std::strtod((digits + power).c_str(), nullptr);
      if (!std::isfinite(value)) continue;
      for (int32_t width = 1; width <= 14; ++width) {
        expectBoth(value, width, 0, FMT_BEST);
        expectBoth(value, width, 0, FMT_FIELD_EXPONENT);
        expectBoth(value, width, 2, FMT_FIELD_DECIMAL);
      }
    }
  }
}

TEST_F(NumberDifferential, AllPowersOfTwo) {
  for (int exponent = -1074; exponent < 1024; ++exponent) {
    const double value = std::ldexp(1, exponent);
    for (const double near : {value, std::nextafter(value, 0), value * 1.75}) {
      expectBoth(near, 0, 17, 0);
      expectBoth(near, 12, 0, FMT_BEST);
      expectBoth(near, 9, 0, FMT_FIELD_EXPONENT);
      expectBoth(near, 30, 10, FMT_FIELD_DECIMAL);
    }
  }
}

TEST_F(NumberDifferential, AllWidths) {
  for (const double value :
       {0.0, 0.5, 1.0, 1234.5, 999999.95, 1234567.0, 1e15, 1e16, 1.5e100, 1.25e-7, 1e-12, 5e-324}) {
    for (int32_t width = -40; width <= 60; ++width) {
      for (const uint32_t conversion : test::conversions) {
        for (const int32_t precision : {-1, 0, 2, 12, 45}) expectBoth(value, width, precision, conversion);
      }
    }
  }
}

TEST_F(NumberDifferential, PairsOfFlags) {
  const oracle::Signs locales[] = {
      {}, {u',', u'.', u"3"}, {u'.', u',', u"3;2"}, {u',', u'\u00A0', u"2"}, {u'.', u'\'', u""}};
  for (const auto& with : locales) {
    setSigns(with);
    for (const double value : {0.0, 0.75, 1234.5, 999999.95, 12345678.0, 1e20, 3e-7}) {
      for (const int32_t width : {-14, 0, 5, 14, 20}) {
        for (int first = 0; first < 25; ++first) {
          for (int second = first; second < 25; ++second) {
            expectBoth(value, width, 2, uint32_t{1} << first | uint32_t{1} << second);
            expectBoth(value, width, 2, FMT_FIXED | uint32_t{1} << first | uint32_t{1} << second);
          }
        }
      }
    }
  }
}

TEST_F(NumberDifferential, MissingValues) {
  for (const char letter : std::string("._ABCDEFGHIJKLMNOPQRSTUVWXYZ")) {
    for (int32_t width = -12; width <= 12; ++width) {
      for (const int32_t precision : {-1, 0, 3, 99}) {
        for (const int32_t capacity : {0, 1, 5, 12, 16}) {
          for (const uint32_t conversion : test::conversions) {
            for (const uint32_t flags : {0U, FMT_GROUP, FMT_ZERO, FMT_LEFT, FMT_PLUS}) {
              expectDouble(test::missing(letter), width, precision, conversion | flags, capacity);
            }
          }
        }
      }
    }
  }
}

TEST_F(IntegerDifferential, AllWidthsAndFlags) {
  const uint32_t bases[] = {0, FMT_HEX, FMT_HEX_UPPER, FMT_OCTAL, FMT_HEX | FMT_HEX_UPPER, FMT_OCTAL | FMT_HEX};
  const uint32_t additions[] = {FMT_PLUS, FMT_GROUP, FMT_LEFT, FMT_ZERO, FMT_SPACE, FMT_ALT_HEX, FMT_ALT_OCTAL};
  std::vector<uint32_t> pairs = {0};
  for (const uint32_t first : additions) {
    for (const uint32_t second : additions) pairs.push_back(first | second);
  }
  for (const uint64_t value :
       {UINT64_C(0), UINT64_C(7), UINT64_C(255), UINT64_C(1234567), UINT64_MAX - 41, UINT64_C(1) << 63}) {
    for (const char16_t* grouping : {u"3", u"3;2"}) {
      setSigns({u'.', u',', grouping});
      for (int32_t width = -40; width <= 60; width += width > -3 && width < 24 ? 1 : 7) {
        for (const uint32_t base : bases) {
          for (const uint32_t pair : pairs) expectAll(value, width, width % 3, base | pair, 64);
        }
      }
    }
  }
}

// Numbers of every length with their neighbours, in outputs that are hardly large enough up to ones that are long.
TEST_F(IntegerDifferential, EveryLengthInEveryRoom) {
  constexpr uint32_t additions[] = {0, FMT_PLUS, FMT_SPACE | FMT_LEFT, FMT_ZERO, FMT_LEFT | FMT_PLUS};
  for (const char16_t* grouping : {u"3", u"3;2", u"4"}) {
    setSigns({u'.', u',', grouping});
    uint32_t turn = 0;
    for (uint64_t power = 1; power <= UINT64_MAX / 10; power *= 10) {
      for (const uint64_t value : {power, 2 * power - 1, uint64_t{0} - power, power * 10 - 1}) {
        for (int32_t capacity = 0; capacity <= 80; ++capacity) {
          ++turn;
          const uint32_t flags = additions[turn % 5] | (turn % 2 == 0 ? FMT_GROUP : 0);
          const int32_t precision = static_cast<int32_t>(turn % 3) - 1;
          for (const int32_t width : {0, 9, 20, capacity - 4, capacity}) {
            expectAll(value, width, precision, flags, capacity);
          }
        }
      }
    }
  }
}

TEST_F(IntegerDifferential, AllNumbersOfFewDigits) {
  for (const char16_t* grouping : {u"3", u"3;2"}) {
    setSigns({u'.', u',', grouping});
    for (int64_t value = -1050; value <= 1'001'000; value += value < 1050 || value > 998'950 ? 1 : 997) {
      const auto bits = static_cast<uint64_t>(value);
      for (const uint32_t flags : {0U, FMT_GROUP, FMT_GROUP | FMT_ZERO}) {
        for (const int32_t precision : {-1, 0, 7}) expectAll(bits, 12, precision, flags, 20);
      }
    }
  }
}

}  // namespace

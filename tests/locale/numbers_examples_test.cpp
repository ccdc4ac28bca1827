// Numbers as text: single cases that show each rule once.
#include "locale/numbers_support.h"

namespace {

using oracle::Result;
using test::missing;
using test::text;

class NumberFormats : public test::Numbers {};

TEST_F(NumberFormats, IntegersHaveSixDigitsUnlessAPrecisionIsGiven) {
  EXPECT_EQ(text(formatInt32(1, 0, -1, 0)), "000001");
  EXPECT_EQ(text(formatInt32(1, 0, 0, 0)), "1");
  EXPECT_EQ(text(formatInt32(0, 0, -1, 0)), "000000");
  EXPECT_EQ(text(formatInt32(-42, 0, -5, 0)), "-000042");
}

TEST_F(NumberFormats, ZeroWithPrecisionZeroHasNoDigit) {
  EXPECT_EQ(text(formatInt32(0, 0, 0, 0)), "");
  EXPECT_EQ(text(formatInt32(0, 4, 0, 0)), "    ");
  EXPECT_EQ(text(formatInt32(0, 4, 0, FMT_ZERO)), "    ");
  EXPECT_EQ(text(formatInt32(0, 4, 0, FMT_PLUS)), "   +");
  EXPECT_EQ(text(formatUInt32(0, 4, 0, FMT_HEX | FMT_ALT_HEX)), "  0x");
  EXPECT_EQ(text(formatInt32(0, 0, 1, 0)), "0");
}

TEST_F(NumberFormats, TheMostNegativeIntegers) {
  EXPECT_EQ(text(formatInt32(INT32_MIN, 0, 0, 0)), "-2147483648");
  EXPECT_EQ(text(formatInt64(INT64_MIN, 0, 0, 0)), "-9223372036854775808");
  EXPECT_EQ(text(formatUInt64(UINT64_MAX, 0, 0, 0)), "18446744073709551615");
  EXPECT_EQ(text(formatUInt64(UINT64_MAX, 0, 0, FMT_OCTAL)), "1777777777777777777777");
}

TEST_F(NumberFormats, IntegersKnowListsOfGroupSizesAndDoublesDont) {
  EXPECT_EQ(text(formatInt32(1234567, 0, 0, FMT_GROUP)), "1,234,567");
  EXPECT_EQ(text(formatDouble(1234567, 0, 0, FMT_FIXED | FMT_GROUP)), "1,234,567");
  setSigns({u'.', u',', u"3;2"});
  EXPECT_EQ(text(formatInt32(1234567, 0, 0, FMT_GROUP)), "12,34,567");
  EXPECT_EQ(text(formatDouble(1234567, 0, 0, FMT_FIXED | FMT_GROUP)), "1,234,567");
  setSigns({u'.', u',', u"3;-"});
  EXPECT_EQ(text(formatInt32(1234567, 0, 0, FMT_GROUP)), "1234,567");
  setSigns({u'.', u',', u""});
  EXPECT_EQ(text(formatInt32(1234567, 0, 0, FMT_GROUP)), "1234567");
  EXPECT_EQ(text(formatDouble(1234567, 0, 0, FMT_FIXED | FMT_GROUP)), "1234567");
  setSigns({u'.', u',', u"0"});
  EXPECT_EQ(text(formatInt32(1234567, 0, 0, FMT_GROUP)), "1234567");
  EXPECT_EQ(text(formatDouble(1234567, 0, 0, FMT_FIXED | FMT_GROUP)), "1234567");
  setSigns({u'.', u',', u"12"});
  EXPECT_EQ(text(formatInt64(123456789012345, 0, 0, FMT_GROUP)), "12,34,56,78,90,12,34,5");
  EXPECT_EQ(text(formatDouble(123456789012345, 0, 0, FMT_FIXED | FMT_GROUP)), "123,456789012345");
}

TEST_F(NumberFormats, PrefixesOfUnsignedIntegers) {
  EXPECT_EQ(text(formatUInt32(255, 0, 0, FMT_HEX | FMT_ALT_HEX)), "0xff");
  EXPECT_EQ(text(formatUInt32(255, 0, 0, FMT_HEX_UPPER | FMT_ALT_HEX)), "0XFF");
  EXPECT_EQ(text(formatUInt32(8, 4, 0, FMT_OCTAL | FMT_ALT_OCTAL)), " 010");
  EXPECT_EQ(text(formatUInt32(8, 2, 0, FMT_OCTAL | FMT_ALT_OCTAL)), "10");
}

TEST_F(NumberFormats, AHexadecimalFieldOfZerosIsOnePlaceTooLong) {
  EXPECT_EQ(text(formatUInt32(255, 8, 0, FMT_HEX | FMT_ALT_HEX | FMT_ZERO)), "0x00000ff");
  EXPECT_EQ(text(formatUInt32(255, 8, 0, FMT_HEX | FMT_ZERO)), "000000ff");
}

TEST_F(NumberFormats, AnIntegerTooLongKeepsItsLastUnits) {
  EXPECT_EQ(formatInt32(12345, 0, 0, 0, 3), (Result{nlsFieldTooNarrow, 5, u"345"}));
  EXPECT_EQ(formatInt32(-12345, -9, 0, 0, 6), (Result{nlsFieldTooNarrow, 9, u"-12345"}));
  EXPECT_EQ(formatInt32(-12345, -9, 0, 0, 8), (Result{nlsFieldTooNarrow, 9, u"-12345  "}));
  EXPECT_EQ(formatInt32(-12345, -9, 0, 0, 5), (Result{nlsFieldTooNarrow, 9, u"12345"}));
}

TEST_F(NumberFormats, AnIntegerFieldOrPrecisionAboveTheCapacityWritesNothing) {
  const std::u16string nothing(4, oracle::untouched);
  EXPECT_EQ(formatInt32(1, 5, 0, 0, 4), (Result{nlsFieldTooNarrow, 0, nothing}));
  EXPECT_EQ(formatInt32(1, 0, 5, 0, 4), (Result{nlsFieldTooNarrow, 0, nothing}));
  EXPECT_EQ(formatInt32(1, 0, -1, 0, 4), (Result{nlsFieldTooNarrow, 0, nothing}));
  EXPECT_EQ(formatUInt32(1, 5, 0, 0, 4), (Result{nlsFieldTooNarrow, 0, nothing}));
  int32_t length = -77;
  EXPECT_EQ(locale->formatInt32(locale.get(), 1, 0, 0, 0, nullptr, -3, &length), nlsFieldTooNarrow);
  EXPECT_EQ(locale->formatInt32(locale.get(), 0, INT32_MIN, 0, 0, nullptr, 0, &length), nlsFieldTooNarrow);
  EXPECT_EQ(length, INT32_MAX);
}

TEST_F(NumberFormats, TheOutputBehindAnIntegerIsCleared) {
  EXPECT_EQ(formatInt32(7, 3, 0, 0, 6), (Result{0, 3, std::u16string(u"  7\0\0\0", 6)}));
  EXPECT_EQ(formatInt32(7, -3, 0, 0, 6), (Result{0, 3, std::u16string(u"7  \0\0\0", 6)}));
}

TEST_F(NumberFormats, Pointers) {
  const auto format = [&](uintptr_t value, int32_t width, uint32_t flags, int32_t capacity) {
    return run(capacity, [&](char16_t* output, int32_t room, int32_t* length) {
      return locale->formatPointer(locale.get(), reinterpret_cast<const void*>(value), width, flags, output, room,
                                   length);
    });
  };
  EXPECT_EQ(format(0, 0, 0, 3), (Result{0, 3, u"NIL"}));
  EXPECT_EQ(format(0, 8, 3, 4), (Result{0, 3, std::u16string(u"NIL\0", 4)}));
  EXPECT_EQ(format(0, 0, 0, 2), (Result{nlsFieldTooNarrow, 3, u"NI"}));
  EXPECT_EQ(format(0xAB, 0, 1, 4), (Result{0, 4, u"0xAB"}));
  EXPECT_EQ(format(0xAB, 6, 1, 6), (Result{0, 6, u"  0xAB"}));
  EXPECT_EQ(format(0xAB, -6, 1, 6), (Result{0, 6, u"  0xAB"}));
  EXPECT_EQ(format(0xAB, 6, 3, 7), (Result{0, 6, std::u16string(u"0xAB  \0", 7)}));
  EXPECT_EQ(format(0xAB, 6, 0, 5), (Result{nlsFieldTooNarrow, 6, u"    A"}));
  EXPECT_EQ(format(UINTPTR_MAX, 0, 1, 18), (Result{0, 18, u"0xFFFFFFFFFFFFFFFF"}));
  EXPECT_EQ(format(1, INT32_MIN, 0, 0), (Result{nlsFieldTooNarrow, INT32_MAX, u""}));
}

TEST_F(NumberFormats, RoundingIsHalfUpOnTheExactDigits) {
  EXPECT_EQ(text(formatDouble(2.5, 0, 0, FMT_FIXED)), "3");
  EXPECT_EQ(text(formatDouble(0.125, 0, 2, FMT_FIXED)), "0.13");
  EXPECT_EQ(text(formatDouble(-0.5, 0, 0, FMT_FIXED)), "-1");
  // Just below and just above a tie.
  EXPECT_EQ(text(formatDouble(1.005, 0, 2, FMT_FIXED)), "1.00");
  EXPECT_EQ(text(formatDouble(0.025, 0, 2, FMT_FIXED)), "0.03");
  EXPECT_EQ(text(formatDouble(0.999, 0, 2, FMT_FIXED)), "1.00");
  EXPECT_EQ(text(formatDouble(9.9999999, 0, 3, FMT_EXPONENT)), "1.000e+01");
  EXPECT_EQ(text(formatDouble(-0.0, 0, 1, FMT_FIXED)), "0.0");
}

TEST_F(NumberFormats, NumbersThatAreNeitherFiniteNorMissingAreRefused) {
  const std::u16string nothing(64, oracle::untouched);
  for (const double value : {HUGE_VAL, -HUGE_VAL, std::nan(""), -std::nan("")}) {
    for (const uint32_t flags : {FMT_FIXED, FMT_GENERAL, FMT_BEST, FMT_FIELD_DECIMAL}) {
      EXPECT_EQ(formatDouble(value, 8, 2, flags), (Result{nlsBadArgument, 0, nothing}));
    }
  }
}

TEST_F(NumberFormats, ZeroKeepsTheCallersPrecisionWithoutAFraction) {
  EXPECT_EQ(text(formatDouble(0, 0, 2, FMT_INTEGER_ONLY)), "0.00");
  EXPECT_EQ(text(formatDouble(0, 0, 0, FMT_INTEGER_ONLY)), "0.0");
  EXPECT_EQ(text(formatDouble(0, 0, -1, FMT_FRACTION_ONLY)), "0.0");
  EXPECT_EQ(text(formatDouble(0, 0, 3, FMT_FRACTION_ONLY)), "0.000");
  EXPECT_EQ(text(formatDouble(0, 0, 3, FMT_KEEP_ZEROS)), "0.000");
  EXPECT_EQ(text(formatDouble(0, 0, 3, 0)), "0");
  EXPECT_EQ(text(formatDouble(0, 0, -1, FMT_EXPONENT)), "0.000000e+00");
  EXPECT_EQ(text(formatDouble(12.9, 0, 2, FMT_INTEGER_ONLY)), "12");
  EXPECT_EQ(text(formatDouble(-0.9, 0, 2, FMT_INTEGER_ONLY)), "-0");
  EXPECT_EQ(text(formatDouble(12.9, 0, 2, FMT_FRACTION_ONLY)), "0.90");
}

TEST_F(NumberFormats, AFractionAloneCarriesIntoItsZero) {
  EXPECT_EQ(text(formatDouble(0.999, 0, 2, FMT_FRACTION_ONLY)), "1.00");
  EXPECT_EQ(text(formatDouble(12.996, 0, 2, FMT_FRACTION_ONLY)), "1.00");
  EXPECT_EQ(text(formatDouble(-0.96, 0, 1, FMT_FRACTION_ONLY)), "-1.0");
  EXPECT_EQ(text(formatDouble(12.994, 0, 2, FMT_FRACTION_ONLY)), "0.99");
}

TEST_F(NumberFormats, TheGeneralConversionShowsOneDigitMoreThanC) {
  EXPECT_EQ(text(formatDouble(1234567, 0, 6, FMT_GENERAL)), "1.234567e+06");
  EXPECT_EQ(text(formatDouble(1234567, 0, 6, FMT_GENERAL_UPPER)), "1.234567E+06");
  EXPECT_EQ(text(formatDouble(123456, 0, 6, 0)), "123456");
  EXPECT_EQ(text(formatDouble(0.0001, 0, 6, 0)), "0.0001");
  EXPECT_EQ(text(formatDouble(0.00001, 0, 6, 0)), "1e-05");
  EXPECT_EQ(text(formatDouble(999999.5, 0, 6, 0)), "1000000");
}

TEST_F(NumberFormats, AGeneralExponentCountsFewerDigitsThanItWrites) {
  EXPECT_EQ(text(formatDouble(1.23456789e100, 12, 6, 0)), "1.234568e+100");
  EXPECT_EQ(formatDouble(1.23456789e100, 0, 6, 0, 12), (Result{nlsFieldTooNarrow, 13, std::u16string(12, u'*')}));
}

TEST_F(NumberFormats, AFractionIsShownAsZerosWhenItAndTheIntegerPartExceed350Digits) {
  EXPECT_EQ(text(formatDouble(1.5, 0, 349, FMT_FIXED, 400)), "1.5" + std::string(348, '0'));
  EXPECT_EQ(text(formatDouble(1.5, 0, 350, FMT_FIXED, 400)), "1." + std::string(350, '0'));
  EXPECT_EQ(text(formatDouble(1.5, 0, 1000, FMT_FIXED, 400)), "1." + std::string(350, '0'));
  EXPECT_EQ(text(formatDouble(0.5, 0, 1000, FMT_FIXED, 400)), "0.5" + std::string(349, '0'));
}

TEST_F(NumberFormats, TheLastPlaceOfALeftJustifiedFieldIsNotWritten) {
  EXPECT_EQ(formatDouble(1.5, -6, 1, FMT_FIXED, 7), (Result{0, 6, u"1.5  \xE000\xE000"}));
  EXPECT_EQ(formatDouble(1.5, 6, 1, FMT_FIXED | FMT_LEFT, 6), (Result{0, 6, u"1.5  \xE000"}));
}

TEST_F(NumberFormats, AFieldWiderThanTheOutputIsTooNarrow) {
  EXPECT_EQ(formatDouble(1.5, 6, 1, FMT_FIXED, 5), (Result{nlsFieldTooNarrow, 6, u"*****"}));
  EXPECT_EQ(formatDouble(1.5, 6, 1, FMT_FIXED | FMT_ZERO, 5), (Result{nlsFieldTooNarrow, 6, u"*****"}));
  EXPECT_EQ(formatDouble(1.5, -6, 1, FMT_FIXED, 5), (Result{nlsFieldTooNarrow, 6, u"*****"}));
  // Stars end with the field.
  EXPECT_EQ(formatDouble(123456, 2, 1, FMT_FIXED, 5), (Result{nlsFieldTooNarrow, 8, u"**\xE000\xE000\xE000"}));
}

TEST_F(NumberFormats, SignsAndFilling) {
  EXPECT_EQ(text(formatDouble(1.5, 7, 1, FMT_FIXED | FMT_ZERO)), "00001.5");
  EXPECT_EQ(text(formatDouble(-1.5, 7, 1, FMT_FIXED | FMT_ZERO)), "-0001.5");
  EXPECT_EQ(text(formatDouble(1.5, 7, 1, FMT_FIXED | FMT_ZERO | FMT_PLUS)), "+0001.5");
  EXPECT_EQ(text(formatDouble(1.5, 7, 1, FMT_FIXED | FMT_ZERO | FMT_SPACE)), "00001.5");
  EXPECT_EQ(text(formatDouble(1.5, 0, 1, FMT_FIXED | FMT_ZERO | FMT_SPACE)), " 1.5");
  EXPECT_EQ(text(formatDouble(1.5, 7, 1, FMT_FIXED | FMT_SPACE)), "    1.5");
  EXPECT_EQ(text(formatDouble(1, 0, 0, FMT_FIXED | FMT_POINT)), "1.");
  EXPECT_EQ(text(formatDouble(1234.5, 10, 1, FMT_FIXED | FMT_ZERO | FMT_GROUP)), "0001,234.5");
}

TEST_F(NumberFormats, MissingValuesOfEveryLetter) {
  for (const char letter : std::string("._ABCDEFGHIJKLMNOPQRSTUVWXYZ")) {
    const std::string shown(1, letter);
    EXPECT_EQ(text(formatDouble(missing(letter), 0, 2, FMT_FIXED)), shown);
    EXPECT_EQ(text(formatDouble(missing(letter), 4, 2, FMT_BEST)), "   " + shown);
    EXPECT_EQ(text(formatDouble(missing(letter), 4, 2, FMT_FIELD_EXPONENT)), "   " + shown);
    EXPECT_EQ(text(formatDouble(missing(letter), 8, 2, FMT_FIELD_DECIMAL)), "     " + shown + "  ");
    EXPECT_EQ(formatDouble(missing(letter), -3, 2, 0, 3),
              (Result{0, 3, std::u16string(1, static_cast<char16_t>(letter)) + u" \xE000"}));
  }
  // A letter that is none.
  EXPECT_EQ(text(formatDouble(std::bit_cast<double>(UINT64_MAX), 0, 0, 0)), ".");
}

TEST_F(NumberFormats, AMissingValueStandsInThePlaceOfTheLastIntegerDigit) {
  const double value = missing('B');
  EXPECT_EQ(formatDouble(value, 6, 2, FMT_FIELD_DECIMAL, 8), (Result{0, 6, u"   B    "}));
  EXPECT_EQ(formatDouble(value, 6, 6, FMT_FIELD_DECIMAL, 6), (Result{0, 6, u"     B"}));
  EXPECT_EQ(formatDouble(value, 6, 6, FMT_FIELD_DECIMAL | FMT_GROUP, 6), (Result{0, 6, u"      "}));
  EXPECT_EQ(formatDouble(value, 9, 2, FMT_FIELD_DECIMAL, 4), (Result{nlsFieldTooNarrow, 9, u"****"}));
  EXPECT_EQ(formatDouble(value, 0, 0, FMT_FIELD_DECIMAL, 2), (Result{0, 0, u"  "}));
  EXPECT_EQ(formatDouble(value, 9, 2, 0, 4), (Result{nlsFieldTooNarrow, 9, u"****"}));
}

TEST_F(NumberFormats, DecimalFields) {
  EXPECT_EQ(text(formatDouble(1234.5, 8, 2, FMT_FIELD_DECIMAL)), " 1234.50");
  EXPECT_EQ(text(formatDouble(1234.5, 4, 1, FMT_FIELD_DECIMAL), nlsDigitsLost), "1235");
  EXPECT_EQ(text(formatDouble(1234567.891, 12, 2, FMT_FIELD_DECIMAL | FMT_GROUP)), "1,234,567.89");
  EXPECT_EQ(text(formatDouble(1234567.891, 11, 2, FMT_FIELD_DECIMAL | FMT_GROUP)), " 1234567.89");
  EXPECT_EQ(text(formatDouble(-1234567.891, 14, 2, FMT_FIELD_DECIMAL | FMT_GROUP)), " -1,234,567.89");
  EXPECT_EQ(text(formatDouble(0.0004, 5, 4, FMT_FIELD_DECIMAL)), ".0004");
  EXPECT_EQ(text(formatDouble(0, 5, 2, FMT_FIELD_DECIMAL)), " 0.00");
  EXPECT_EQ(text(formatDouble(1e20, 8, 2, FMT_FIELD_DECIMAL), nlsDigitsLost), "    1E20");
  EXPECT_EQ(text(formatDouble(0.3, 0, 2, FMT_FIELD_DECIMAL)), "");
}

TEST_F(NumberFormats, BestFields) {
  EXPECT_EQ(text(formatDouble(1e100, 12, 0, FMT_BEST)), "       1E100");
  EXPECT_EQ(text(formatDouble(3.14159, 12, 99, 0)), "     3.14159");
  EXPECT_EQ(text(formatDouble(-3.14159, 12, 0, FMT_BEST)), "    -3.14159");
  EXPECT_EQ(text(formatDouble(0, 12, 0, FMT_BEST)), "           0");
  EXPECT_EQ(text(formatDouble(0.5, 3, 0, FMT_BEST)), "0.5");
  EXPECT_EQ(text(formatDouble(-0.5, 4, 0, FMT_BEST)), "-0.5");
  EXPECT_EQ(text(formatDouble(123456.7891, 6, 0, FMT_BEST)), "123457");
  EXPECT_EQ(text(formatDouble(0.00001234, 10, 0, FMT_BEST)), "0.00001234");
  EXPECT_EQ(text(formatDouble(0.000001234, 10, 0, FMT_BEST)), "  1.234E-6");
  for (const int32_t width : {1, 2, 3, 4}) {
    EXPECT_EQ(text(formatDouble(1e100, width, 0, FMT_BEST), nlsFieldTooNarrow),
              std::string(static_cast<size_t>(width), '*'));
  }
}

TEST_F(NumberFormats, WholeNumbersNear1E32HaveNoDecimalField) {
  EXPECT_EQ(text(formatDouble(1e31, 40, 0, FMT_BEST)).substr(9), "9999999999999999635896294965248");
  EXPECT_EQ(text(formatDouble(1e32, 40, 0, FMT_BEST)), std::string(36, ' ') + "1E32");
  EXPECT_EQ(text(formatDouble(1e34, 40, 0, FMT_BEST)).substr(6), "9999999999999999455752309870428160");
}

TEST_F(NumberFormats, TinyNegativeValuesInNarrowBestFields) {
  EXPECT_EQ(text(formatDouble(-0.0009, 5, 0, FMT_BEST)), "   -0");
  EXPECT_EQ(text(formatDouble(0.0009, 4, 0, FMT_BEST)), "   0");
  EXPECT_EQ(text(formatDouble(-0.004, 4, 0, FMT_BEST)), "   0");
  EXPECT_EQ(text(formatDouble(-0.04, 3, 0, FMT_BEST)), "  0");
  EXPECT_EQ(text(formatDouble(-0.3, 1, 0, FMT_BEST)), "0");
}

TEST_F(NumberFormats, ExponentFields) {
  EXPECT_EQ(text(formatDouble(1.5, 12, 0, FMT_FIELD_EXPONENT)), " 1.50000E+00");
  EXPECT_EQ(text(formatDouble(-1.5, 12, 0, FMT_FIELD_EXPONENT)), "-1.50000E+00");
  EXPECT_EQ(text(formatDouble(0, 12, 0, FMT_FIELD_EXPONENT)), " 0.00000E+00");
  EXPECT_EQ(text(formatDouble(1.5e100, 12, 0, FMT_FIELD_EXPONENT)), "1.50000E+100");
  EXPECT_EQ(text(formatDouble(-1.5e100, 12, 0, FMT_FIELD_EXPONENT), nlsDigitsLost), "-1.5000E+100");
  EXPECT_EQ(text(formatDouble(9.999999e99, 12, 0, FMT_FIELD_EXPONENT)), " 1.0000E+100");
  EXPECT_EQ(text(formatDouble(1.5, 6, 0, FMT_FIELD_EXPONENT), nlsDigitsLost), "2.E+00");
  EXPECT_EQ(text(formatDouble(1.5, 1, 0, FMT_FIELD_EXPONENT), nlsFieldTooNarrow), "*");
}

TEST_F(NumberFormats, SubnormalsLoseTheirDigitsInExponentForm) {
  EXPECT_EQ(text(formatDouble(4.9e-324, 12, 0, FMT_BEST)), "      0E-310");
}

TEST_F(NumberFormats, FieldsOfNoWidth) {
  EXPECT_EQ(formatDouble(5, 0, 0, FMT_BEST, 2), (Result{nlsFieldTooNarrow, 0, u"\xE000\xE000"}));
  EXPECT_EQ(formatDouble(-5, 0, 0, FMT_BEST, 2), (Result{nlsFieldTooNarrow, 0, u"\xE000\xE000"}));
  EXPECT_EQ(formatDouble(5, 8, 0, FMT_BEST, 0), (Result{nlsFieldTooNarrow, 0, u""}));
  EXPECT_EQ(formatDouble(0.1, 0, 0, FMT_BEST, 2), (Result{0, 0, u"0\xE000"}));
  // The narrower of field and output rules.
  EXPECT_EQ(formatDouble(1234.5, 20, 0, FMT_BEST, 6), (Result{0, 6, u"1234.5"}));
  EXPECT_EQ(formatDouble(1234.5, -8, 0, FMT_BEST, 8), (Result{0, 8, u"  1234.5"}));
}

TEST_F(NumberFormats, SignsOfTheLocale) {
  setSigns({u',', u'\u00A0', u"3"});
  EXPECT_EQ(formatDouble(1234.5, 0, 1, FMT_FIXED | FMT_GROUP, 7), (Result{0, 7, u"1\u00A0234,5"}));
  EXPECT_EQ(formatDouble(1234.5, 8, 1, FMT_FIELD_DECIMAL, 8), (Result{0, 8, u"  1234,5"}));
  EXPECT_EQ(formatDouble(1.5, 12, 1, FMT_FIELD_EXPONENT, 12), (Result{0, 12, u" 1,50000E+00"}));
}

class Amounts : public test::Numbers {
 protected:
  Result formatPercent(double value, int32_t width, int32_t precision, uint32_t flags, int32_t capacity = 64) {
    return run(capacity, [&](char16_t* output, int32_t room, int32_t* length) {
      return locale->formatPercent(locale.get(), value, width, precision, flags, output, room, length);
    });
  }
  Result formatCurrency(double value, int32_t width, int32_t precision, uint32_t flags, int32_t capacity = 64) {
    return run(capacity, [&](char16_t* output, int32_t room, int32_t* length) {
      return locale->formatCurrency(locale.get(), value, width, precision, flags, output, room, length);
    });
  }
};

TEST_F(Amounts, Percents) {
  EXPECT_EQ(text(formatPercent(-0.5, 8, 1, 1)), "( 50.0%)");
  EXPECT_EQ(text(formatPercent(-0.5, 8, 1, 0)), "  -50.0%");
  EXPECT_EQ(text(formatPercent(0.5, 8, 1, 1)), "   50.0%");
  EXPECT_EQ(text(formatPercent(0.125, 0, 0, 0)), "13%");
  EXPECT_EQ(text(formatPercent(-0.5, 0, 1, 1)), "(50.0%)");
  EXPECT_EQ(text(formatPercent(0.07, 0, 20, 0)), "7.00000000000000088818%");
  EXPECT_EQ(text(formatPercent(-0.0, 5, 0, 1)), "   0%");
  EXPECT_EQ(text(formatPercent(missing('Z'), 5, 0, 1)), "   Z%");
}

TEST_F(Amounts, PercentsGrowByTheirSignsOnFailureToo) {
  EXPECT_EQ(formatPercent(12, 4, 1, 0, 4), (Result{nlsFieldTooNarrow, 7, u"***\xE000"}));
  EXPECT_EQ(formatPercent(-12, 4, 1, 1, 4), (Result{nlsFieldTooNarrow, 9, u"**\xE000\xE000"}));
  EXPECT_EQ(formatPercent(1, 4, 1, 0, 0), (Result{nlsFieldTooNarrow, 6, u""}));
  EXPECT_EQ(formatPercent(1e308, 4, 1, 0, 1), (Result{nlsBadArgument, 1, u"\xE000"}));
}

TEST_F(Amounts, ANegativePercentWidthLeavesAGapInFrontOfTheSign) {
  EXPECT_EQ(formatPercent(0.5, -8, 1, 0, 10), (Result{0, 10, u"50.0    \xE000%"}));
}

TEST_F(Amounts, CurrencySymbolsStandInFrontOfTheSign) {
  EXPECT_EQ(text(formatCurrency(-1234.5, 12, 2, 0)), "  $-1,234.50");
  EXPECT_EQ(text(formatCurrency(1234.5, 12, 2, 1)), "      $1,234");
  EXPECT_EQ(text(formatCurrency(5, 1, 2, 0)), "$5.00");
  EXPECT_EQ(text(formatCurrency(missing('A'), 6, 2, 0)), "    $A");
  locale->record->currency.currencySymbol = test::counted(u"EUR");
  EXPECT_EQ(text(formatCurrency(5, 8, 2, 0)), " EUR5.00");
}

TEST_F(Amounts, ZeroWithoutFractionShowsOne) {
  EXPECT_EQ(text(formatCurrency(0, 8, 2, 1)), "   $0.00");
  EXPECT_EQ(text(formatCurrency(0, 8, 0, 1)), "    $0.0");
}

TEST_F(Amounts, CurrencyFieldsBelowTheSymbolAreRefused) {
  const std::u16string nothing(8, oracle::untouched);
  EXPECT_EQ(formatCurrency(5, 0, 2, 0, 8), (Result{nlsFieldTooNarrow, 0, nothing}));
  EXPECT_EQ(formatCurrency(5, -8, 2, 0, 8), (Result{nlsFieldTooNarrow, 0, nothing}));
  EXPECT_EQ(formatCurrency(5, INT32_MIN, 2, 0, 8), (Result{nlsFieldTooNarrow, 0, nothing}));
  locale->record->currency.currencySymbol = test::counted(u"EUR");
  EXPECT_EQ(formatCurrency(5, 2, 2, 0, 8), (Result{nlsFieldTooNarrow, 0, nothing}));
  EXPECT_EQ(text(formatCurrency(5, 3, 2, 0, 8)), "EUR5.00");
}

TEST_F(Amounts, AnAmountTooLongIsFilledWithStars) {
  EXPECT_EQ(formatCurrency(1234, 8, 2, 0, 5), (Result{nlsFieldTooNarrow, 8, u" ****"}));
  EXPECT_EQ(formatCurrency(1234, 8, 2, 0, 0), (Result{nlsFieldTooNarrow, 8, u""}));
}

TEST_F(Amounts, EveryCapacity) {
  for (int32_t capacity = 0; capacity <= 24; ++capacity) {
    for (int32_t width = -12; width <= 20; ++width) {
      for (const double value : {0.0, -0.25, 1234.5, -98765.4321, missing('Q')}) {
        for (const int32_t precision : {-1, 0, 2, 99}) {
          for (const uint32_t flags : {0U, 1U}) {
            formatPercent(value, width, precision, flags, capacity);
            const Result amount = formatCurrency(value, width, precision, flags, capacity);
            EXPECT_EQ(amount.status == 0, amount.units.find(u'$') != std::u16string::npos) << amount;
          }
        }
      }
    }
  }
}

}  // namespace

// Numbers out of text.
#include <charconv>

#include "locale/numbers_parsers.h"

namespace {

using test::missing;
using test::NumberParsers;
using test::Parsed;

Parsed<double> number(double value, int32_t consumed) { return {0, value, consumed}; }
Parsed<double> failed(NlsStatus status, int32_t consumed) { return {status, missing('.'), consumed}; }
Parsed<double> failed(int32_t consumed) { return failed(nlsNoDigits, consumed); }

TEST_F(NumberParsers, Doubles) {
  const struct {
    const char16_t* text;
    Parsed<double> parsed;
  } cases[] = {
      {u"0", number(0, 1)},
      {u"-0", number(-0.0, 2)},
      {u"1,234.5", number(1234.5, 7)},
      {u"1.5e3", number(1500, 5)},
      {u"1D2", number(100, 3)},
      {u"1d-2", number(0.01, 4)},
      {u"1E+2", number(100, 4)},
      {u" \t+12.25 \t", number(12.25, 10)},
      {u".5", number(0.5, 2)},
      {u"-.5", number(-0.5, 3)},
      {u"1.", number(1, 2)},
      {u"1.e2", number(100, 4)},
      {u"1,,2,3", number(123, 6)},
      {u"1, ", number(1, 3)},
      {u"1,.5", number(1.5, 4)},
      {u"000,000.000125", number(0.000125, 14)},
      {u"1e1,0", number(1e10, 5)},
      {u"1e1,", number(10, 4)},
      {u"1e-00000000000000000002", number(0.01, 23)},
      {u"0e30800", number(0, 7)},
      {u"0.1e-30800", failed(nlsNumberUnderflow, 10)},
      {u"0e-99999999999999999999", number(0, 23)},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(parseDouble(c.text), c.parsed) << test::narrow(c.text, static_cast<int>(std::u16string(c.text).size()));
  }
}

TEST_F(NumberParsers, TextsWithoutNumber) {
  const struct {
    const char16_t* text;
    int32_t consumed;
  } cases[] = {
      {u"x", 0},
      {u"  x", 0},
      {u",5", 0},
      {u"\xA0"
       u"5",
       0},
      {u"\u0661", 0},
      {u"+", 1},
      {u"  -", 3},
      {u"+x", 1},
      {u"- 5", 1},
      {u"+,5", 1},
      {u"-.", 2},
      {u"+.x", 2},
      {u"--5", 1},
      {u"-.a", 2},
      {u"12x", 2},
      {u"12 x", 3},
      {u"1.5.2", 3},
      {u"1.5,2", 3},
      {u"1,234,", 5},
      {u"1e", 2},
      {u"1e+", 3},
      {u"1e x", 2},
      {u"1e,5", 2},
      {u"1e5x", 3},
      {u"1e5.", 3},
      {u"1e5 6", 4},
      {u"1\u0661", 1},
      {u". x", 2},
      {u".ab", 2},
      {u".a b", 3},
      {u".;", 1},
      {u"..", 1},
      {u".\u00E9", 1},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(parseDouble(c.text), failed(c.consumed))
        << test::narrow(c.text, static_cast<int>(std::u16string(c.text).size()));
  }
}

TEST_F(NumberParsers, TextsOfNothingAreMissing) {
  EXPECT_EQ(parseDouble(u""), (Parsed<double>{0, missing('.'), 0}));
  EXPECT_EQ(parseDouble(u" \t "), (Parsed<double>{0, missing('.'), 3}));
  double value = 0;
  int32_t consumed = -77;
  EXPECT_EQ(locale->parseDouble(locale.get(), nullptr, -1, &value, &consumed), nlsNoDigits);
  EXPECT_EQ((Parsed<double>{0, value, consumed}), (Parsed<double>{0, missing('.'), 0}));
}

TEST_F(NumberParsers, MissingValuesOfEveryLetter) {
  EXPECT_EQ(parseDouble(u"."), number(missing('.'), 1));
  EXPECT_EQ(parseDouble(u" . \t"), number(missing('.'), 4));
  EXPECT_EQ(parseDouble(u"._"), number(missing('_'), 2));
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    const auto unit = static_cast<char16_t>(letter);
    EXPECT_EQ(parseDouble({u'.', unit}), number(missing(letter), 2));
    EXPECT_EQ(parseDouble({u' ', u'.', static_cast<char16_t>(unit + 32), u'\t', u' '}), number(missing(letter), 5));
  }
}

TEST_F(NumberParsers, SignsOfTheLocale) {
  setSigns({u',', u'.', u"3"});
  EXPECT_EQ(parseDouble(u"1.234,5"), number(1234.5, 7));
  EXPECT_EQ(parseDouble(u",5"), number(0.5, 2));
  EXPECT_EQ(parseDouble(u"."), number(missing('.'), 1));
  EXPECT_EQ(parseDouble(u".a"), number(missing('A'), 2));
  EXPECT_EQ(parseDouble(u".5"), failed(1));
  EXPECT_EQ(parseDouble(u"+.5"), failed(1));
  EXPECT_EQ(parseDouble(u","), failed(1));
  EXPECT_EQ(parseDouble(u",x"), failed(1));
  EXPECT_EQ(parseDouble(u"-,"), failed(2));
  setSigns({u'\u066B', u'\u066C', u"3"});
  EXPECT_EQ(parseDouble(u"1\u066C234\u066B5"), number(1234.5, 7));
}

TEST_F(NumberParsers, WithoutLocalePointAndComma) {
  setSigns({u',', u'.', u"3"});
  EXPECT_EQ(parse<double>(locale->parseDouble, nullptr, u"1,234.5"), number(1234.5, 7));
}

TEST_F(NumberParsers, OverflowAndUnderflow) {
  EXPECT_EQ(parseDouble(u"1e30801"), failed(nlsDateOutOfRange, 7));
  EXPECT_EQ(parseDouble(u"0e30801"), failed(nlsDateOutOfRange, 7));
  EXPECT_EQ(parseDouble(u"1e99999999999999999999 "), failed(nlsDateOutOfRange, 22));
  EXPECT_EQ(parseDouble(u"1e400"), failed(nlsNumberOverflow, 5));
  EXPECT_EQ(parseDouble(u"-1e30800"), failed(nlsNumberOverflow, 8));
  EXPECT_EQ(parseDouble(u"1" + std::u16string(309, u'0')), failed(nlsNumberOverflow, 310));
  EXPECT_EQ(parseDouble(u"1e-400"), failed(nlsNumberUnderflow, 6));
  EXPECT_EQ(parseDouble(u"1e-30801"), failed(nlsNumberUnderflow, 8));
  EXPECT_EQ(parseDouble(u"4.9e-324"), failed(nlsNumberUnderflow, 8));
  EXPECT_EQ(parseDouble(u"1.7976931348623157e308"), number(1.7976931348623157e308, 22));
  EXPECT_EQ(parseDouble(u"1.7976931348623159e308"), failed(nlsNumberOverflow, 22));
  EXPECT_EQ(parseDouble(u"2.2250738585072014e-308"), number(2.2250738585072014e-308, 23));
  EXPECT_EQ(parseDouble(u"2.2250738585072011e-308"), failed(nlsNumberUnderflow, 23));
  // It rounds up to the smallest normal double.
  EXPECT_EQ(parseDouble(u"2.22507385850720136e-308"), number(2.2250738585072014e-308, 24));
}

TEST_F(NumberParsers, ExponentsAbove308OverflowBeforeTheirNumberDoes) {
  EXPECT_EQ(parseDouble(u"0.0001e310"), number(1e306, 10));
  EXPECT_EQ(parseDouble(u"0.17e309"), number(1.7e308, 8));
  EXPECT_EQ(parseDouble(u"0.17976931348623157e309"), failed(nlsNumberOverflow, 23));
  EXPECT_EQ(parseDouble(u"0." + std::u16string(400, u'0') + u"1e401"), number(1, 407));
}

TEST_F(NumberParsers, AllDigitsCount) {
  // Halfway between two doubles, with one digit more on either side, far behind the 60th.
  const std::u16string half = u"9007199254740993";
  EXPECT_EQ(parseDouble(half), number(9007199254740992, 16));
  EXPECT_EQ(parseDouble(half + u"." + std::u16string(900, u'0') + u"1"), number(9007199254740994, 918));
  EXPECT_EQ(parseDouble(u"9007199254740992." + std::u16string(900, u'9')), number(9007199254740992, 917));
  std::u16string long1 = u"9,007,199,254,740,993";
  for (int i = 0; i < 300; ++i) long1 += u",000";
  EXPECT_EQ(parseDouble(long1 + u"e-900"), number(9007199254740992, static_cast<int32_t>(long1.size() + 5)));
  EXPECT_EQ(parseDouble(long1 + u".1e-900"), number(9007199254740994, static_cast<int32_t>(long1.size() + 7)));
}

TEST_F(NumberParsers, HalfwayPointsOfDoubles) {
  std::mt19937_64 generator(5);
  for (int i = 0; i < 1000; ++i) {
    const auto mantissa = static_cast<double>((uint64_t{1} << 52) + (generator() >> (12 + generator() % 52)));
    const double lower =
        std::ldexp(mantissa, static_cast<int>(generator() % (i % 2 == 0 ? 80 : 1800)) - (i % 2 == 0 ? 60 : 900));
    const double upper = std::nextafter(lower, HUGE_VAL);
    const oracle::Exact exact = oracle::halfwayAbove(lower);
    const std::string half = exact.integer + "." + exact.fraction;
    const auto value = [&](const std::string& text) { return parseDouble(test::widen(text)).value; };
    EXPECT_EQ(value(half), std::bit_cast<uint64_t>(lower) % 2 == 0 ? lower : upper);
    EXPECT_EQ(value(half + "0000001"), upper);
    // One less in the last place.
    std::string below = half;
    size_t place = below.find_last_not_of(".0");
    --below[place];
    while (++place < below.size()) below[place] = below[place] == '.' ? '.' : '9';
    EXPECT_EQ(value(below + "9"), lower);
  }
}

TEST_F(NumberParsers, ShortestTextsComeBack) {
  char buffer[40];
  for (const double value : test::sampleValues(2000)) {
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, -value).ptr;
    const std::u16string text(buffer, end);
    const Parsed<double> parsed = parseDouble(text);
    if (value != 0 && value < 2.2250738585072014e-308) {
      EXPECT_EQ(parsed, failed(nlsNumberUnderflow, static_cast<int32_t>(text.size())));
    } else {
      EXPECT_EQ(parsed, number(-value, static_cast<int32_t>(text.size())));
    }
  }
}

TEST_F(NumberParsers, FormattedDoublesComeBack) {
  const oracle::Signs locales[] = {
      {}, {u',', u'.', u"3"}, {u',', u'\u00A0', u"3"}, {u'.', u'\'', u"3"}, {u'\u066B', u'\u066C', u"3"}};
  for (const auto& with : locales) {
    setSigns(with);
    for (const double value : test::sampleValues(300)) {
      if (value != 0 && value < 2.2250738585072014e-308) continue;
      const auto comesBack = [&](int32_t width, int32_t precision, uint32_t flags) {
        const oracle::Result written = formatDouble(-value, width, precision, flags, 400);
        ASSERT_EQ(written.status, 0u);
        const std::u16string text = written.units.substr(0, static_cast<size_t>(written.length));
        const Parsed<double> parsed = parseDouble(text);
        EXPECT_EQ(parsed.value, -value) << written;
        EXPECT_EQ(parsed.consumed, written.length);
      };
      comesBack(0, 17, FMT_EXPONENT);
      comesBack(0, 17, FMT_GENERAL);
      comesBack(40, 16, FMT_EXPONENT_UPPER | FMT_PLUS);
      if (value >= 1e16) comesBack(0, 0, FMT_FIXED | FMT_GROUP);
      if (value < 1e15 && value == std::floor(value * 8) / 8) comesBack(60, 3, FMT_FIXED | FMT_GROUP);
      if (value < 1e15 && value == std::floor(value)) comesBack(20, 0, FMT_BEST);
    }
  }
}

TEST_F(NumberParsers, FormattedMissingValuesComeBackWithAPoint) {
  for (const char letter : std::string("_ABCDEFGHIJKLMNOPQRSTUVWXYZ")) {
    const oracle::Result written = formatDouble(missing(letter), 0, 0, 0, 1);
    EXPECT_EQ(parseDouble(u"." + written.units), number(missing(letter), 2));
  }
}

TEST_F(NumberParsers, SignedIntegers) {
  const struct {
    const char16_t* text;
    uint32_t flags;
    Parsed<int32_t> parsed;
  } cases[] = {
      {u"", 0, {0, 0, 0}},
      {u"   ", 0, {0, 0, 3}},
      {u"\t1", 0, {nlsNoDigits, 0, 0}},
      {u"+", 0, {nlsNoDigits, 0, 1}},
      {u" - ", 0, {nlsNoDigits, 0, 3}},
      {u" +  7", 0, {0, 7, 5}},
      {u" -  7", 0, {0, -7, 5}},
      {u"+-7", 0, {nlsNoDigits, 0, 1}},
      {u"12", 0, {0, 12, 2}},
      {u"12 ", 0, {0, 12, 2}},
      {u"12 ", 0x1000, {0, 12, 3}},
      {u"12  x", 0, {0, 12, 2}},
      {u"12  x", 0x1000, {nlsNoDigits, 12, 4}},
      {u"12x", 0, {nlsNoDigits, 12, 2}},
      {u"12x", 0x1000, {nlsNoDigits, 12, 2}},
      {u"-12x", 0, {nlsNoDigits, -12, 3}},
      {u"12\t", 0, {nlsNoDigits, 12, 2}},
      {u"12\u0661", 0, {nlsNoDigits, 12, 2}},
      {u"2147483647", 0, {0, INT32_MAX, 10}},
      {u"2147483648", 0, {nlsNumberOverflow, 0, 10}},
      {u"-2147483648", 0, {0, INT32_MIN, 11}},
      {u"-2147483649", 0, {nlsNumberOverflow, 0, 11}},
      {u"00000000002147483647", 0, {0, INT32_MAX, 20}},
      {u"99999999999,9,,x", 0, {nlsNumberOverflow, 0, 15}},
      {u"99999999999 ", 0x1000, {nlsNumberOverflow, 0, 11}},
      {u"-x", 0, {nlsNoDigits, 0, 1}},
  };
  for (const auto& c : cases) {
    const std::u16string text = c.text;
    EXPECT_EQ(parseInt32(text, c.flags), c.parsed) << test::narrow(c.text, static_cast<int>(text.size()));
    if (c.parsed.status == nlsNumberOverflow || text.size() > 18) continue;
    EXPECT_EQ(parseInt64(text, c.flags), (Parsed<int64_t>{c.parsed.status, c.parsed.value, c.parsed.consumed}));
  }
  EXPECT_EQ(parseInt64(u"9223372036854775807"), (Parsed<int64_t>{0, INT64_MAX, 19}));
  EXPECT_EQ(parseInt64(u"9223372036854775808"), (Parsed<int64_t>{nlsNumberOverflow, 0, 19}));
  EXPECT_EQ(parseInt64(u"-9223372036854775808"), (Parsed<int64_t>{0, INT64_MIN, 20}));
  EXPECT_EQ(parseInt64(u"-9223372036854775809"), (Parsed<int64_t>{nlsNumberOverflow, 0, 20}));
}

TEST_F(NumberParsers, SignedIntegersLoseTheUnitBehindASeparator) {
  EXPECT_EQ(parseInt32(u"1,234"), (Parsed<int32_t>{0, 134, 4}));
  EXPECT_EQ(parseInt32(u",123"), (Parsed<int32_t>{0, 23, 3}));
  EXPECT_EQ(parseInt32(u"1,"), (Parsed<int32_t>{0, 1, 2}));
  EXPECT_EQ(parseInt32(u"1,x2"), (Parsed<int32_t>{0, 12, 3}));
  EXPECT_EQ(parseInt32(u"1,,,2"), (Parsed<int32_t>{0, 1, 3}));
  EXPECT_EQ(parseInt32(u"1,2x"), (Parsed<int32_t>{nlsNoDigits, 1, 2}));
  EXPECT_EQ(parseInt64(u"1,234,567"), (Parsed<int64_t>{0, 13467, 7}));
  EXPECT_EQ(parseInt32(u"9,99999999999,9"), (Parsed<int32_t>{nlsNumberOverflow, 0, 14}));
}

TEST_F(NumberParsers, ANulEndsAnInteger) {
  EXPECT_EQ(parseInt32(std::u16string(u"12\0x", 4)), (Parsed<int32_t>{0, 12, 2}));
  EXPECT_EQ(parseInt32(std::u16string(u"12 \0x", 5), 0x1000), (Parsed<int32_t>{0, 12, 3}));
  EXPECT_EQ(parseUInt32(std::u16string(u"12\0x", 4), 0x1000), (Parsed<uint32_t>{0, 12, 2}));
}

TEST_F(NumberParsers, UnsignedIntegers) {
  const struct {
    const char16_t* text;
    uint32_t flags;
    Parsed<uint32_t> parsed;
  } cases[] = {
      {u"", 0, {0, 0, 0}},
      {u"  ", 1, {0, 0, 2}},
      {u"1,234", 0, {0, 1234, 5}},
      {u",1,,2,", 0, {0, 12, 6}},
      {u"+ 5", 0, {0, 5, 3}},
      {u"+", 0, {nlsNoDigits, 0, 1}},
      {u" -5", 0, {nlsNoDigits, 0, 1}},
      {u"-", 0, {nlsNoDigits, 0, 0}},
      {u"ff", 1, {0, 255, 2}},
      {u"0XFF", 1, {0, 255, 4}},
      {u"0xFf", 1, {0, 255, 4}},
      {u"0x", 1, {0, 0, 2}},
      {u"0", 1, {0, 0, 1}},
      {u"+ff", 1, {nlsNoDigits, 0, 0}},
      {u"-ff", 1, {nlsNoDigits, 0, 0}},
      {u"f,f", 1, {nlsNoDigits, 15, 1}},
      {u"fg", 1, {nlsNoDigits, 15, 1}},
      {u"ff ", 1, {0, 255, 2}},
      {u"ff  ", 0x1001, {0, 255, 4}},
      {u"12a", 0, {nlsNoDigits, 12, 2}},
      {u"0x12", 0, {nlsNoDigits, 0, 1}},
      {u"4294967295", 0, {0, UINT32_MAX, 10}},
      {u"4294967296", 0, {nlsNumberOverflow, 0, 10}},
      {u"42949672960", 0, {nlsNumberOverflow, 0, 11}},
      {u"FFFFFFFF", 1, {0, UINT32_MAX, 8}},
      {u"100000000", 1, {nlsNumberOverflow, 0, 9}},
      {u"1FFFFFFFF,e,g", 1, {nlsNumberOverflow, 0, 12}},
      {u"99999999999,9aF ", 0, {nlsNumberOverflow, 0, 15}},
  };
  for (const auto& c : cases) {
    const std::u16string text = c.text;
    EXPECT_EQ(parseUInt32(text, c.flags), c.parsed) << test::narrow(c.text, static_cast<int>(text.size()));
    if (c.parsed.status == nlsNumberOverflow) continue;
    EXPECT_EQ(parseUInt64(text, c.flags), (Parsed<uint64_t>{c.parsed.status, c.parsed.value, c.parsed.consumed}));
  }
  EXPECT_EQ(parseUInt64(u"18446744073709551615"), (Parsed<uint64_t>{0, UINT64_MAX, 20}));
  EXPECT_EQ(parseUInt64(u"18446744073709551616"), (Parsed<uint64_t>{nlsNumberOverflow, 0, 20}));
  EXPECT_EQ(parseUInt64(u"ffffffffffffffff", 1), (Parsed<uint64_t>{0, UINT64_MAX, 16}));
  EXPECT_EQ(parseUInt64(u"10000000000000000", 1), (Parsed<uint64_t>{nlsNumberOverflow, 0, 17}));
}

TEST_F(NumberParsers, NegativeLengths) {
  int32_t value = -1;
  int32_t consumed = -77;
  EXPECT_EQ(locale->parseInt32(locale.get(), nullptr, -1, 0, &value, &consumed), nlsNegativeLength);
  EXPECT_EQ(value, 0);
  EXPECT_EQ(consumed, 0);
  uint64_t large = 1;
  EXPECT_EQ(locale->parseUInt64(locale.get(), nullptr, INT32_MIN, 0, &large, &consumed), nlsNegativeLength);
  EXPECT_EQ(large, 0u);
  int64_t longer = 1;
  EXPECT_EQ(locale->parseInt64(locale.get(), nullptr, -5, 0, &longer, &consumed), nlsNegativeLength);
  uint32_t natural = 1;
  EXPECT_EQ(locale->parseUInt32(locale.get(), nullptr, -5, PARSE_HEX, &natural, &consumed), nlsNegativeLength);
}

TEST_F(NumberParsers, FormattedIntegersComeBack) {
  std::mt19937_64 generator(3);
  for (int i = 0; i < 20000; ++i) {
    const uint64_t value = generator() >> generator() % 64;
    const auto comesBack = [&](const oracle::Result& written, auto parser, auto expected) {
      ASSERT_EQ(written.status, 0u);
      const auto parsed = parser(written.units.substr(0, static_cast<size_t>(written.length)));
      EXPECT_EQ(parsed, (decltype(parsed){0, expected, written.length}));
    };
    const auto negated = static_cast<int64_t>(uint64_t{0} - value);
    comesBack(
        formatInt64(negated, 22, 0, FMT_ZERO), [&](auto t) { return parseInt64(t); }, negated);
    comesBack(
        formatUInt64(value, 0, 1, FMT_GROUP), [&](auto t) { return parseUInt64(t); }, value);
    comesBack(
        formatUInt64(value, 24, 1, FMT_HEX | FMT_ALT_HEX), [&](auto t) { return parseUInt64(t, PARSE_HEX); }, value);
    const auto narrow = static_cast<int32_t>(value);
    comesBack(
        formatInt32(narrow, 0, -1, FMT_PLUS), [&](auto t) { return parseInt32(t); }, narrow);
  }
}

TEST_F(NumberParsers, RandomTexts) {
  // Nothing is read outside of the text, and what is consumed lies in it.
  const std::u16string alphabet = u"0123456789.,+-eEdD _xXaf \t*\u00A0";
  std::mt19937_64 generator(11);
  for (int i = 0; i < 200000; ++i) {
    std::u16string text;
    for (uint64_t length = generator() % 12; length > 0; --length) text += alphabet[generator() % alphabet.size()];
    const auto size = static_cast<int32_t>(text.size());
    const auto check = [&](const auto& parsed) {
      EXPECT_GE(parsed.consumed, 0);
      EXPECT_LE(parsed.consumed, size);
    };
    check(parseDouble(text));
    check(parseInt32(text, generator() % 2 * 0x1000));
    check(parseInt64(text));
    check(parseUInt32(text, PARSE_HEX));
    check(parseUInt64(text, generator() % 2 * 0x1000));
  }
}

}  // namespace

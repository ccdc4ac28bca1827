// Every stage against the reference, over all code points, all surrogate pairs, and all leads of UTF-8 and UTF-EBCDIC
// with trails at the bounds of their ranges.
#include <string>

#include "reference/reference.h"

namespace transcode_test {

namespace {

constexpr char32_t codePointCount = 0x110000;

void checkWhole(TranscodingPipeline* pipeline, const TextForm& source, const TextForm& target, Span input) {
  const size_t capacity = 5 * input.size() + 8;
  TranscodeProgress progress{};
  ASSERT_EQ(resume(pipeline, input, capacity, progress), expected(source, target, input, capacity, true))
      << source.cei << " to " << target.cei << ", input " << test::toHex(input);
}

using Pair = std::tuple<TextForm, TextForm>;

class ExhaustiveForms : public testing::TestWithParam<Pair> {};
class ExhaustiveUtf16 : public ExhaustiveForms {};
class ExhaustiveEightBit : public ExhaustiveForms {};

TEST_P(ExhaustiveForms, AllCodePoints) {
  constexpr char32_t blockSize = 512;
  const auto& [source, target] = GetParam();
  const Pipeline pipeline(source.cei, target.cei);
  std::u32string block(blockSize, 0);
  for (char32_t first = 0; first < codePointCount; first += blockSize) {
    for (char32_t i = 0; i < blockSize; ++i) block[i] = first + i;
    ASSERT_NO_FATAL_FAILURE(checkWhole(pipeline, source, target, textIn(source, block)));
  }
}

TEST_P(ExhaustiveUtf16, AllSurrogatePairs) {
  constexpr char32_t half = 0x400;
  const auto& [source, target] = GetParam();
  const Pipeline pipeline(source.cei, target.cei);
  std::u32string units(2 * half, 0);
  for (char32_t high = 0; high < half; ++high) {
    for (char32_t low = 0; low < half; ++low) {
      units[2 * low] = 0xD800 + high;
      units[2 * low + 1] = 0xDC00 + low;
    }
    ASSERT_NO_FATAL_FAILURE(checkWhole(pipeline, source, target, textIn(source, units)));
  }
}

// How many bytes a form waits for behind a lead. No form takes the byte of 'A' for a lead.
size_t trailsBehind(const TextForm& source, uint8_t lead) {
  Bytes text = {lead};
  while (expected(source, textForms[2], text, 16, true).pending) text.push_back('A');
  return text.size() - 1;
}

constexpr size_t boundCount = 8;
constexpr uint8_t utf8Bounds[boundCount] = {0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF, 0xC0};
// Those of UTF-EBCDIC stand for 20, 80, 9F, A0, AF, B0, BF and C0 ahead of its permutation.
constexpr uint8_t utfEbcdicBounds[boundCount] = {0x40, 0x20, 0xFF, 0x41, 0x56, 0x57, 0x73, 0x74};

// Each lead with trails at the bounds of the ranges, as many as the longest form has, cut at every length.
TEST_P(ExhaustiveEightBit, AllLeadsWithBoundaryTrails) {
  const auto& [source, target] = GetParam();
  const Pipeline pipeline(source.cei, target.cei);
  const uint8_t* const bounds = source.form == Form::utf8 ? utf8Bounds : utfEbcdicBounds;
  for (int lead = 0; lead < 0x100; ++lead) {
    const size_t trails = trailsBehind(source, static_cast<uint8_t>(lead));
    size_t mixes = 1;
    for (size_t i = 0; i < trails; ++i) mixes *= boundCount;
    for (size_t mix = 0; mix < mixes; ++mix) {
      uint8_t text[7] = {static_cast<uint8_t>(lead)};
      size_t rest = mix;
      for (size_t i = 1; i <= trails; ++i, rest /= boundCount) text[i] = bounds[rest % boundCount];
      text[trails + 1] = 'A';
      // The shorter cuts of a lead are the same for all mixes of what they leave off.
      for (size_t length = mix == 0 ? 1 : trails + 1; length <= trails + 2; ++length) {
        ASSERT_NO_FATAL_FAILURE(checkWhole(pipeline, source, target, Span(text, length)));
      }
    }
  }
}

// Every pair of bytes, alone and with an ASCII byte behind it.
TEST_P(ExhaustiveForms, AllPairsOfBytes) {
  const auto& [source, target] = GetParam();
  const Pipeline pipeline(source.cei, target.cei);
  for (uint32_t pair = 0; pair < 0x10000; ++pair) {
    const uint8_t text[] = {static_cast<uint8_t>(pair), static_cast<uint8_t>(pair >> 8), 'A', 0};
    ASSERT_NO_FATAL_FAILURE(checkWhole(pipeline, source, target, Span(text, 2)));
    ASSERT_NO_FATAL_FAILURE(checkWhole(pipeline, source, target, text));
  }
}

std::string pairName(const testing::TestParamInfo<Pair>& pair) {
  return std::to_string(std::get<0>(pair.param).cei) + "to" + std::to_string(std::get<1>(pair.param).cei);
}

using testing::Combine;
using testing::Values;
using testing::ValuesIn;
INSTANTIATE_TEST_SUITE_P(Pairs, ExhaustiveForms, Combine(ValuesIn(textForms), ValuesIn(textForms)), pairName);
INSTANTIATE_TEST_SUITE_P(Pairs, ExhaustiveUtf16, Combine(Values(textForms[2], textForms[3]), ValuesIn(textForms)),
                         pairName);
INSTANTIATE_TEST_SUITE_P(Pairs, ExhaustiveEightBit, Combine(Values(textForms[0], textForms[1]), ValuesIn(textForms)),
                         pairName);

}  // namespace

}  // namespace transcode_test

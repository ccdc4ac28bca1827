// Conversions among the Unicode forms against ICU and iconv: the bytes of every code point, and which faulty texts are
// taken for good.
#include <gtest/gtest.h>

#include <numeric>

#include "differential/differences.h"
#include "differential/peers.h"
#include "reference/reference.h"
#include "support/conversion.h"

namespace differential_test {

namespace {

using test::convertWhole;
using transcode_test::Form;
using transcode_test::Pipeline;
using transcode_test::TextForm;
using transcode_test::textForms;

struct Named {
  const TextForm& form;
  const char* name;
};

constexpr Named forms[] = {
    {textForms[0], "UTF-8"},    {textForms[2], "UTF-16LE"}, {textForms[3], "UTF-16BE"},
    {textForms[4], "UTF-32LE"}, {textForms[5], "UTF-32BE"},
};

constexpr const Peer* peers[] = {&icu, &systemIconv};

std::string textOf(const std::optional<Bytes>& bytes) { return bytes ? test::toHex(*bytes) : "fault"; }

// In blocks, of which the line shows the first character: in each of them a difference that is one of the whole block
// may vanish for a single character.
void compareCodePoints(const Named& source, const Named& target, test::Exceptions& listed) {
  constexpr char32_t blockSize = 64;
  const Pipeline pipeline(source.form.cei, target.form.cei);
  std::u32string block(blockSize, 0);
  for (const Peer* peer : peers) {
    Differences differences(listed, {peer->name, source.name, target.name});
    for (char32_t first = 0; first < 0x110000; first += blockSize) {
      if (first == 0xD800) first = 0xE000;
      std::iota(block.begin(), block.end(), first);
      const Bytes text = transcode_test::textIn(source.form, block);
      const Bytes one = transcode_test::textIn(source.form, {&first, 1});
      if (peer->convert(source.name, target.name, text) == convertWhole(pipeline, text).bytes) {
        differences.addSame();
      } else {
        differences.add(first, first + blockSize - 1, textOf(convertWhole(pipeline, one).bytes),
                        textOf(peer->convert(source.name, target.name, one)), "bytes");
      }
    }
  }
}

// Texts of a form that may be faulty, by a number.
struct Suspects {
  std::vector<uint32_t> numbers;
  Bytes (*text)(const TextForm& form, uint32_t number);
};

Bytes unitAheadOfA(const TextForm& form, uint32_t number) {
  const char32_t text[] = {number, U'A'};
  return transcode_test::textIn(form, {text, 2});
}

// A lead and a second byte, with as many more trails as the lead wants.
Bytes leadAndSecond(const TextForm&, uint32_t number) {
  const auto lead = static_cast<uint8_t>(number >> 8);
  const size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF8 ? 4 : lead < 0xFC ? 5 : 6;
  Bytes text(length, 0x80);
  text[0] = lead;
  text[1] = static_cast<uint8_t>(number);
  return text;
}

std::vector<uint32_t> range(uint32_t first, uint32_t last) {
  std::vector<uint32_t> numbers(last - first + 1);
  std::iota(numbers.begin(), numbers.end(), first);
  return numbers;
}

Suspects suspectsOf(Form form) {
  if (form == Form::utf8) return {range(0x8000, 0xFFFF), leadAndSecond};
  if (form == Form::utf16) return {range(0, 0xFFFF), unitAheadOfA};
  Suspects values{range(0xD000, 0xE0FF), unitAheadOfA};
  for (const uint32_t value : {0x10FFFFu, 0x110000u, 0x13FFFFu, 0x140000u, 0x1FFFFFu, 0x200000u, 0x3FFFFFFu, 0x4000000u,
                               0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    values.numbers.push_back(value);
  }
  return values;
}

void compareVerdicts(const Named& source, const Named& target, test::Exceptions& listed) {
  const Pipeline pipeline(source.form.cei, target.form.cei);
  const Suspects suspects = suspectsOf(source.form.form);
  for (const Peer* peer : peers) {
    Differences differences(listed, {peer->name, source.name, target.name});
    for (const uint32_t number : suspects.numbers) {
      const Bytes text = suspects.text(source.form, number);
      const test::Converted outcome = convertWhole(pipeline, text);
      const bool ours = outcome.status == 0 && !outcome.substituted;
      const bool theirs = peer->convert(source.name, target.name, text).has_value();
      if (ours == theirs) {
        differences.addSame();
      } else {
        const std::string verdict = ours ? "good" : "faulty";
        differences.add(number, number, verdict, theirs ? "good" : "faulty", verdict);
      }
    }
  }
}

void forEveryPair(const std::string& list, void (*compare)(const Named&, const Named&, test::Exceptions&)) {
  test::Exceptions listed(listPath(list));
  for (const Named& source : forms) {
    for (const Named& target : forms) {
      // A text in its own form is only checked; that is no conversion to compare.
      if (source.form.form == target.form.form && source.form.form != Form::utf8) continue;
      compare(source, target, listed);
    }
  }
  EXPECT_EQ(listed.unused(), std::vector<std::string>());
}

TEST(UnicodePeers, BytesOfEveryCodePoint) { forEveryPair("code_points.tsv", compareCodePoints); }
TEST(UnicodePeers, VerdictsOnFaultyTexts) { forEveryPair("faulty_texts.tsv", compareVerdicts); }

}  // namespace

}  // namespace differential_test

// Random texts, whole and damaged, with little room and with plenty, against the reference.
#include <random>
#include <string>

#include "bounds/texts.h"

namespace transcode_test {

namespace {

using bounds_test::Condition;
using bounds_test::makeText;
using bounds_test::TextKind;

constexpr TextKind kinds[] = {TextKind::utf8,    TextKind::utfEbcdic, TextKind::utf16le,
                              TextKind::utf16be, TextKind::utf32le,   TextKind::utf32be};

void checkAt(TranscodingPipeline* pipeline, const TextForm& source, const TextForm& target, Span input, size_t room) {
  for (const bool dropping : {false, true}) {
    const TranscodeOptions* options = dropping ? &dropBlanks : nullptr;
    const auto describe = [&] {
      return std::to_string(source.cei) + " to " + std::to_string(target.cei) + ", room " + std::to_string(room) +
             (dropping ? ", dropping blanks" : "") + ", input " + test::toHex(input);
    };
    ASSERT_EQ(run(pipeline, input, room, options), expected(source, target, input, room, false, dropping))
        << describe();
    TranscodeProgress progress{};
    ASSERT_EQ(resume(pipeline, input, room, progress, options), expected(source, target, input, room, true, dropping))
        << describe();
  }
}

TEST(RandomTexts, EveryPair) {
  constexpr uint32_t rounds = 400;
  constexpr size_t longest = 300;
  for (size_t from = 0; from < std::size(kinds); ++from) {
    for (const TextForm& target : textForms) {
      const TextForm& source = textForms[from];
      const Pipeline pipeline(source.cei, target.cei);
      std::mt19937 random(static_cast<uint32_t>(source.cei * NLS_CEI_COUNT + target.cei));
      for (uint32_t round = 0; round < rounds; ++round) {
        const Condition condition = round % 2 == 0 ? Condition::whole : Condition::damaged;
        const Bytes input = makeText(kinds[from], condition, round, random() % longest);
        const size_t full = expected(source, target, input, 6 * longest, false).bytes.size();
        ASSERT_NO_FATAL_FAILURE(checkAt(pipeline, source, target, input, full + 8));
        ASSERT_NO_FATAL_FAILURE(checkAt(pipeline, source, target, input, random() % (full + 1)));
      }
    }
  }
}

// The second call of a text in two pieces, with the record that the first has left.
void checkSecondPiece(TranscodingPipeline* pipeline, const TextForm& source, const TextForm& target, Span input,
                      size_t cut, size_t room) {
  for (const bool dropping : {false, true}) {
    const Span rest = input.subspan(cut);
    TranscodeProgress progress{};
    const Outcome first = resume(pipeline, input.first(cut), 6 * cut + 8, progress);
    ASSERT_EQ(resume(pipeline, rest, room, progress, dropping ? &dropBlanks : nullptr),
              expectedWithHeld(source, target, first.held, rest, room, dropping))
        << source.cei << " to " << target.cei << ", room " << room << (dropping ? ", dropping blanks" : "")
        << ", cut at " << cut << ", holding " << test::toHex(first.held) << ", input " << test::toHex(input);
  }
}

TEST(RandomTexts, EverySplitOfEveryPair) {
  constexpr uint32_t rounds = 48;
  constexpr size_t longest = 40;
  for (size_t from = 0; from < std::size(kinds); ++from) {
    for (const TextForm& target : textForms) {
      const TextForm& source = textForms[from];
      const Pipeline pipeline(source.cei, target.cei);
      std::mt19937 random(static_cast<uint32_t>(source.cei * NLS_CEI_COUNT + target.cei));
      for (uint32_t round = 0; round < rounds; ++round) {
        const Condition condition = round % 4 < 2 ? Condition::whole : Condition::damaged;
        const Bytes input = makeText(kinds[from], condition, round, random() % longest);
        for (size_t cut = 0; cut <= input.size(); ++cut) {
          const size_t full = 6 * (input.size() - cut) + 8;
          ASSERT_NO_FATAL_FAILURE(checkSecondPiece(pipeline, source, target, input, cut, full));
          ASSERT_NO_FATAL_FAILURE(checkSecondPiece(pipeline, source, target, input, cut, random() % full));
          ASSERT_NO_FATAL_FAILURE(checkSecondPiece(pipeline, source, target, input, cut, random() % 6));
        }
      }
    }
  }
}

}  // namespace

}  // namespace transcode_test

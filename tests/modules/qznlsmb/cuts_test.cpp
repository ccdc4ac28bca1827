// A text cut anywhere, with empty pieces and byte by byte, is the whole text.
#include "modules/qznlsmb/rows.h"

namespace transcode_test {
namespace {

// With sequences of all kinds, also ones without effect, and damaged ends.
std::vector<Bytes> sourceTexts(CEI cei, std::mt19937& random) {
  const MultiByteProfile& profile = row(cei).profile;
  std::vector<Bytes> texts;
  for (int i = 0; i < 12; ++i) texts.push_back(randomText(cei, 24, random));
  const Bytes out(profile.shiftOut, profile.shiftOut + profile.shiftLength);
  const Bytes in(profile.shiftIn, profile.shiftIn + profile.shiftLength);
  const Bytes designator = hex("1B 24 29 43");
  const auto joined = [](std::initializer_list<Bytes> parts) {
    Bytes text;
    for (const Bytes& part : parts) text.insert(text.end(), part.begin(), part.end());
    return text;
  };
  const Bytes two = hex("30 21");
  texts.push_back(joined({out, two, in, out, two, in, in, out}));
  texts.push_back(joined({out, in, out, in, designator, out, designator, two, in, designator}));
  texts.push_back(joined({out, two, in, designator, designator, out, out, two}));
  return texts;
}

// Damaged ones for rows without shifts; where a row has some, nothing that reads as one when it comes back.
Bytes unicodeText(CEI form, CEI towards, std::mt19937& random) {
  if (row(towards).profile.shiftLength == 0) return randomUnicode(form, towards, 10, random);
  constexpr std::u32string_view characters = U"aAz0\u3042\u4E00\uAC00\u4F3D\u3000\uFF71\uFFFD\U0001F600";
  std::u32string text;
  for (int i = 0; i < 10; ++i) text.push_back(characters[random() % characters.size()]);
  const Bytes units = utf32(text);
  return form == U_L_UCS4_CE ? units : run(Pipeline(U_L_UCS4_CE, form), units, 128).bytes;
}

Outcome whole(TranscodingPipeline* pipeline, Span text) {
  TranscodeProgress progress{};
  Outcome outcome = resume(pipeline, text, 8 * text.size() + 64, progress);
  if (outcome.substituted && outcome.status == 0) outcome.status = nlsSubstituted;
  return outcome;
}

void checkCuts(TranscodingPipeline* pipeline, Span text, bool comparesStatus) {
  const Outcome expected = whole(pipeline, text);
  const auto check = [&](const std::vector<size_t>& lengths) {
    const Outcome pieces = inPieces(pipeline, text, lengths);
    ASSERT_EQ(pieces.bytes, expected.bytes) << test::toHex(text);
    ASSERT_EQ(pieces.consumed, expected.consumed) << test::toHex(text);
    ASSERT_EQ(pieces.substituted, expected.substituted) << test::toHex(text);
    ASSERT_EQ(pieces.held, expected.held) << test::toHex(text);
    if (comparesStatus) {
      ASSERT_EQ(pieces.status, expected.status) << test::toHex(text);
    }
  };
  for (size_t cut = 0; cut <= text.size(); ++cut) check({cut});
  for (size_t cut = 1; cut + 1 < text.size(); ++cut) check({cut, 0, 1, 0});
  check(std::vector<size_t>(text.size(), 1));
}

TEST(Cuts, MultiByteText) {
  std::mt19937 random(11);
  for (const CEI cei : multiByteRows()) {
    SCOPED_TRACE(cei);
    for (const CEI target : {U_L_UNICODE_CE, U_UTF8_CE, U_WLATIN1_CE}) {
      StageRoute route(cei, target);
      for (const Bytes& text : sourceTexts(cei, random)) {
        checkCuts(route, text, true);
        if (HasFatalFailure()) return;
      }
    }
  }
}

// Output pieces of rows with shifts stand alone, so that what they mean is compared.
TEST(Cuts, UnicodeText) {
  std::mt19937 random(12);
  for (const CEI cei : multiByteRows()) {
    SCOPED_TRACE(cei);
    for (const CEI form : unicodeForms) {
      StageRoute route(form, cei);
      StageRoute back(cei, U_L_UNICODE_CE);
      for (int i = 0; i < 4; ++i) {
        const Bytes text = unicodeText(form, cei, random);
        const Outcome expected = whole(route, text);
        for (size_t cut = 0; cut <= text.size(); ++cut) {
          const Outcome pieces = inPieces(route, text, std::vector<size_t>{cut, 0});
          ASSERT_EQ(whole(back, pieces.bytes).bytes, whole(back, expected.bytes).bytes) << test::toHex(text);
          ASSERT_EQ(pieces.consumed, expected.consumed);
          ASSERT_EQ(pieces.substituted, expected.substituted);
          ASSERT_EQ(pieces.held, expected.held);
          ASSERT_EQ(pieces.status, expected.status);
        }
      }
    }
  }
}

}  // namespace
}  // namespace transcode_test

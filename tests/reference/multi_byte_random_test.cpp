// Texts that change their mode at each character and texts of hostile bytes, between all kinds of multi-byte and other
// encodings, at every capacity, against the reference.
#include <random>

#include "reference/checked_route.h"

namespace transcode_test {

namespace {

using Random = std::mt19937;

constexpr CEI others[] = {U_UTF8_CE,   U_UTFE_CE,    U_L_UNICODE_CE, U_B_UNICODE_CE, U_L_UCS4_CE,
                          U_B_UCS4_CE, U_WLATIN1_CE, U_LATIN9_CE,    U_EBCDIC1047_CE};

// Control characters that some encodings take for shifts are left to hostile text.
std::u32string characters(Random& random, size_t count) {
  constexpr char32_t firsts[] = {U' ',   U'a',   0x80,   0xA0,   0x391,  0x20AC, 0x3000,
                                 0x3041, 0xFF61, 0x4E00, 0xAC00, 0xE000, 0x1F600};
  constexpr char32_t spread = 60;
  std::u32string text;
  for (size_t i = 0; i < count; ++i) {
    const size_t kind = i % 2 == 0 ? random() % 2 : random() % std::size(firsts);
    text +=
        firsts[kind] + (firsts[kind] == 0x3000 || firsts[kind] == U' ' ? 0 : static_cast<char32_t>(random() % spread));
  }
  return text;
}

Bytes textIn(CEI cei, std::u32string_view text) {
  for (const TextForm& form : textForms) {
    if (form.cei == cei) return textIn(form, text);
  }
  const EncodingText& row = encodingText(cei);
  const Bytes units = utf16(text);
  if (isMultiByteClass(row.encodingClass)) {
    return expectedMultiByte(U_L_UNICODE_CE, cei, units, 16 * units.size() + 16, {.gbLoaded = true}).outcome.bytes;
  }
  Bytes bytes;
  for (const char32_t c : text) bytes.push_back(static_cast<uint8_t>(c));
  return bytes;
}

// Bytes at which sequences begin, end or break, between others.
Bytes hostileText(Random& random, size_t length) {
  constexpr uint8_t hot[] = {0x00, 0x0A, 0x0E, 0x0E, 0x0F, 0x0F, 0x1B, 0x1B, 0x20, 0x24, 0x24, 0x28,
                             0x28, 0x29, 0x30, 0x3F, 0x3F, 0x40, 0x41, 0x42, 0x42, 0x43, 0x4A, 0x4A,
                             0x75, 0x76, 0x80, 0x81, 0x8E, 0xA1, 0xA4, 0xD8, 0xDC, 0xE1, 0xE2, 0xFE};
  Bytes text(length);
  for (uint8_t& byte : text) byte = random() % 4 == 0 ? static_cast<uint8_t>(random()) : hot[random() % std::size(hot)];
  return text;
}

// A text that ends in blanks of the source, for the rule that drops them.
Bytes withBlanks(CEI cei, Bytes text) {
  const Bytes blanks = textIn(cei, U"     ");
  const bool isPage = encodingText(cei).encodingClass == 0;
  text.insert(text.end(), blanks.begin(), blanks.end());
  if (isPage && encodingText(cei).blank() == 0x40) std::fill(text.end() - 5, text.end(), uint8_t{0x40});
  return text;
}

void checkAtEveryRoom(const CheckedRoute& route, Span text, bool doubleMode) {
  const size_t full = route.expected(text, CheckedRoute::roomFor(text), {}).outcome.bytes.size();
  for (size_t room = 0; room <= full + 8; ++room) {
    for (const bool mayDropBlanks : {false, true}) {
      ASSERT_NO_FATAL_FAILURE(route.check(text, room, doubleMode, mayDropBlanks));
    }
  }
}

void checkPair(CEI source, CEI target, size_t length, int rounds) {
  const CheckedRoute route(source, target);
  Random random(static_cast<uint32_t>(source * NLS_CEI_COUNT + target));
  for (int round = 0; round < rounds; ++round) {
    const Bytes alternating = textIn(source, characters(random, length));
    ASSERT_NO_FATAL_FAILURE(checkAtEveryRoom(route, alternating, false));
    ASSERT_NO_FATAL_FAILURE(checkAtEveryRoom(route, withBlanks(source, alternating), false));
    const Bytes hostile = hostileText(random, length);
    ASSERT_NO_FATAL_FAILURE(checkAtEveryRoom(route, hostile, false));
    ASSERT_NO_FATAL_FAILURE(checkAtEveryRoom(route, withBlanks(source, hostile), round % 2 == 1));
  }
}

class MultiByteAtEveryRoom : public testing::TestWithParam<CEI> {
 protected:
  void SetUp() override { loadGbModule(); }

  test::DbcsLanguage language_{host(), u"UNKNOWN"};
};

TEST_P(MultiByteAtEveryRoom, ToOthers) {
  for (const CEI other : others) ASSERT_NO_FATAL_FAILURE(checkPair(GetParam(), other, 12, 2));
}

TEST_P(MultiByteAtEveryRoom, FromOthers) {
  for (const CEI other : others) ASSERT_NO_FATAL_FAILURE(checkPair(other, GetParam(), 12, 2));
}

TEST_P(MultiByteAtEveryRoom, ToEachOther) {
  for (const CEI target : multiByteCeis()) ASSERT_NO_FATAL_FAILURE(checkPair(GetParam(), target, 7, 1));
}

// Runs long enough for the inner loops, broken by what these leave alone, in a few rooms.
void checkLongTexts(CEI source, CEI target, int rounds) {
  constexpr size_t longest = 400;
  const CheckedRoute route(source, target);
  Random random(static_cast<uint32_t>(source + NLS_CEI_COUNT * target));
  for (int round = 0; round < rounds; ++round) {
    Bytes text = textIn(source, characters(random, random() % longest));
    for (Bytes more : {hostileText(random, random() % 70), textIn(source, std::u32string(random() % 99, U'\u3042')),
                       hostileText(random, 1)}) {
      text.insert(text.end(), more.begin(), more.end());
    }
    ASSERT_NO_FATAL_FAILURE(route.check(text, round % 2 == 1));
    for (int i = 0; i < 3; ++i) {
      ASSERT_NO_FATAL_FAILURE(route.check(text, random() % (2 * text.size() + 1), false, round % 2 == 0));
    }
  }
}

TEST_P(MultiByteAtEveryRoom, LongTexts) {
  for (const CEI other : others) {
    ASSERT_NO_FATAL_FAILURE(checkLongTexts(GetParam(), other, 12));
    ASSERT_NO_FATAL_FAILURE(checkLongTexts(other, GetParam(), 12));
  }
  for (const CEI target : multiByteCeis()) ASSERT_NO_FATAL_FAILURE(checkLongTexts(GetParam(), target, 2));
}

// Nothing is converted, but the resumable run checks.
TEST_P(MultiByteAtEveryRoom, FromEncodingsThatNeedNoConversion) {
  for (const CEI source : {U_ASCII_CE, U_EBCDICANY_CE, U_ANY_CE}) {
    if (needsConversion(source, GetParam())) continue;
    ASSERT_NO_FATAL_FAILURE(checkPair(source, GetParam(), 12, 2));
  }
}

// The second call of a text in two pieces, with the record that the first has left.
void checkSecondPiece(const CheckedRoute& route, Span text, size_t cut, size_t room, bool mayDropBlanks) {
  const Span rest = text.subspan(cut);
  TranscodeProgress progress{};
  const Bytes held = resume(route.pipeline(), text.first(cut), CheckedRoute::roomFor(text), progress).held;
  Bytes both = held;
  both.insert(both.end(), rest.begin(), rest.end());
  const bool doubleMode = (progress.flags & NLS_PROGRESS_DOUBLE_MODE) != 0;
  const MultiByteOutcome ofBoth = route.expected(both, room, {true, doubleMode, mayDropBlanks, false});
  const Outcome outcome = resume(route.pipeline(), rest, room, progress, mayDropBlanks ? &dropBlanks : nullptr);
  ASSERT_EQ((MultiByteOutcome{outcome, (progress.flags & NLS_PROGRESS_DOUBLE_MODE) != 0}),
            (MultiByteOutcome{toldWithHeld(ofBoth.outcome, held), ofBoth.doubleMode}))
      << route.name() << (mayDropBlanks ? ", dropping blanks" : "") << ", room " << room << ", cut at " << cut
      << ", holding " << test::toHex(held) << ", input " << test::toHex(text);
}

void checkEverySplit(CEI source, CEI target) {
  constexpr size_t length = 8;
  const CheckedRoute route(source, target);
  Random random(static_cast<uint32_t>(source * NLS_CEI_COUNT + target));
  for (const Bytes& text : {withBlanks(source, textIn(source, characters(random, length))), hostileText(random, length),
                            withBlanks(source, hostileText(random, length))}) {
    for (size_t cut = 0; cut < text.size(); ++cut) {
      for (const size_t room : {CheckedRoute::roomFor(text), random() % (2 * text.size()), random() % 6}) {
        ASSERT_NO_FATAL_FAILURE(checkSecondPiece(route, text, cut, room, false));
        ASSERT_NO_FATAL_FAILURE(checkSecondPiece(route, text, cut, room, true));
      }
    }
  }
}

TEST_P(MultiByteAtEveryRoom, EverySplit) {
  for (const CEI other : others) {
    ASSERT_NO_FATAL_FAILURE(checkEverySplit(GetParam(), other));
    ASSERT_NO_FATAL_FAILURE(checkEverySplit(other, GetParam()));
  }
  for (const CEI target : {U_SHIFTJIS_CE, U_IBM939_CE, U_ISO2022KR_CE}) {
    ASSERT_NO_FATAL_FAILURE(checkEverySplit(GetParam(), target));
  }
}

INSTANTIATE_TEST_SUITE_P(Rows, MultiByteAtEveryRoom, testing::ValuesIn(multiByteCeis()));

// A caller with room for one character, who goes on from `consumed`: every call takes something.
void drive(const CheckedRoute& route, Span text) {
  constexpr size_t room = 8;
  TranscodeProgress progress{};
  while (!text.empty()) {
    const Outcome outcome = resume(route.pipeline(), text, room, progress);
    if (outcome.status == nlsIncompleteInput) return;
    ASSERT_NE(outcome.consumed, 0u) << route.name() << " stands still at " << test::toHex(text);
    text = text.subspan(outcome.consumed);
  }
}

// Long texts of shifts and designators alone, and of first halves.
TEST_P(MultiByteAtEveryRoom, EndlessSequences) {
  const EncodingText& row = encodingText(GetParam());
  const Bytes designator = hex("1B 24 29 43");
  for (const CEI target : {U_L_UNICODE_CE, U_UTF8_CE, U_SHIFTJIS_CE, U_IBM939_CE, U_WLATIN1_CE}) {
    const CheckedRoute route(GetParam(), target);
    for (const Bytes& one :
         {row.shiftOut, row.shiftIn, designator, Bytes{0x0E}, Bytes{0x0F}, Bytes{0x1B}, Bytes{0x81, 0x30}}) {
      Bytes text;
      for (int i = 0; i < 400; ++i) text.insert(text.end(), one.begin(), one.end());
      ASSERT_NO_FATAL_FAILURE(route.check(text));
      ASSERT_NO_FATAL_FAILURE(route.check(text, 3, row.shiftLength() != 0, true));
      text.push_back('a');
      ASSERT_NO_FATAL_FAILURE(route.check(text));
      ASSERT_NO_FATAL_FAILURE(drive(route, text));
    }
  }
}

}  // namespace

}  // namespace transcode_test

// Runs from encodings with shifts, by their own rows: shifts and designators without end, text cut anywhere, and what a
// progress record holds in the meantime.
#include <algorithm>

#include "transcode/harness.h"

namespace transcode_test {

namespace {

struct Source {
  CEI cei;
  const char* single;  // "a"
  const char* shiftOut;
  const char* pair;  // U+3042, U+AC00 or U+4E00
  const char* shiftIn;
  const char* designator;  // may be empty
  char32_t character;
};

const Source sources[] = {
    {U_IBM939_CE, "81", "0E", "44 81", "0F", "", U'\u3042'},
    {U_IBM930_CE, "62", "0E", "44 81", "0F", "", U'\u3042'},
    {U_IBM933_CE, "81", "0E", "88 61", "0F", "", U'\uAC00'},
    {U_FUJITSUJP_CE, "81", "28", "A4 A2", "29", "", U'\u3042'},
    {U_HITACHIJP_CE, "81", "0A 42", "A4 A2", "0A 41", "", U'\u3042'},
    {U_NECJP_CE, "81", "3F 75", "A4 A2", "3F 76", "", U'\u3042'},
    {U_PCJIS_CE, "61", "0E", "24 22", "0F", "", U'\u3042'},
    {U_ISO2022JP_CE, "61", "1B 24 42", "24 22", "1B 28 4A", "", U'\u3042'},
    {U_JIS7_CE, "61", "1B 24 42", "24 22", "1B 28 4A", "", U'\u3042'},
    {U_ISO2022KR_CE, "61", "0E", "30 21", "0F", "1B 24 29 43", U'\uAC00'},
    {U_ISO2022CNGB_CE, "61", "0E", "52 3B", "0F", "1B 24 29 41", U'\u4E00'},
};

void add(Bytes& text, const char* piece) {
  const Bytes bytes = hex(piece);
  text.insert(text.end(), bytes.begin(), bytes.end());
}

// One stage to UTF-16, two stages without shifts in the target and with.
const CEI targets[] = {U_L_UNICODE_CE, U_B_UNICODE_CE, U_UTF8_CE,     U_GB18030_CE,
                       U_IBM939_CE,    U_IBM933_CE,    U_ISO2022JP_CE};

// What a text of a target reads as. Two output pieces together read as the text of both.
Bytes reading(CEI target, const Bytes& text) {
  return run(Pipeline(target, U_L_UNICODE_CE), text, 4 * text.size() + 8).bytes;
}

// Feeds a text in pieces with a given room, and again from where each call stopped, to its end.
Outcome feed(TranscodingPipeline* pipeline, const Bytes& text, size_t piece, size_t room) {
  TranscodeProgress progress{};
  Outcome whole;
  size_t at = 0;
  for (size_t calls = 0; at < text.size() || progress.pending != 0; ++calls) {
    if (calls > 8 * text.size() + 64) {
      ADD_FAILURE() << "no end of calls";
      break;
    }
    const size_t length = std::min(piece, text.size() - at);
    const Outcome part = resume(pipeline, Span(text).subspan(at, length), room, progress);
    if (part.consumed > length) {
      ADD_FAILURE() << "more consumed than there was";
      break;
    }
    at += part.consumed;
    whole.bytes.insert(whole.bytes.end(), part.bytes.begin(), part.bytes.end());
    whole.substituted |= part.substituted;
    whole.status = part.status;
    whole.held = part.held;
    EXPECT_LE(progress.heldCount, 8u);
    if (at == text.size() && part.status != nlsOutputTruncated) break;
  }
  whole.consumed = static_cast<uint32_t>(at);
  if (whole.status == 0 && whole.substituted) whole.status = nlsSubstituted;
  return whole;
}

// Text in which something redundant stands at every place where it may.
Bytes redundantText(const Source& source, int times) {
  Bytes text;
  add(text, source.single);
  for (int i = 0; i < times; ++i) {
    add(text, source.shiftOut);
    add(text, source.shiftIn);
    add(text, source.designator);
  }
  add(text, source.shiftOut);
  add(text, source.pair);
  for (int i = 0; i < times; ++i) {
    add(text, source.shiftIn);
    add(text, source.shiftOut);
    add(text, source.designator);
  }
  add(text, source.pair);
  add(text, source.shiftIn);
  add(text, source.single);
  return text;
}

TEST(ShiftedRuns, RedundantShiftsAreReadOver) {
  for (const Source& source : sources) {
    const std::u32string wanted = {U'a', source.character, source.character, U'a'};
    for (const int times : {0, 1, 2, 5, 40}) {
      const Bytes text = redundantText(source, times);
      EXPECT_EQ(run(Pipeline(source.cei, U_L_UNICODE_CE), text, 64), (Outcome{.status = 0, .bytes = utf16(wanted)}))
          << source.cei << " " << times;
    }
  }
}

// Many more bytes of shifts than a record holds, and then a character cut in half: the shifts are consumed, their state
// is kept, and only the half is held.
TEST(ShiftedRuns, ShiftsAheadOfACutCharacterAreConsumed) {
  for (const Source& source : sources) {
    for (const CEI target : targets) {
      SCOPED_TRACE(testing::Message() << source.cei << " to " << target);
      const Pipeline pipeline(source.cei, target);
      Bytes text = hex(source.single);
      for (int i = 0; i < 20; ++i) {
        add(text, source.shiftOut);
        add(text, source.shiftIn);
      }
      add(text, source.shiftOut);
      const Bytes pair = hex(source.pair);
      text.push_back(pair[0]);
      TranscodeProgress progress{};
      const Outcome first = resume(pipeline, text, 64, progress);
      EXPECT_EQ(first.status, nlsIncompleteInput);
      EXPECT_EQ(first.consumed, text.size());
      EXPECT_EQ(first.held, Bytes{pair[0]});
      EXPECT_EQ(progress.flags & NLS_PROGRESS_DOUBLE_MODE, NLS_PROGRESS_DOUBLE_MODE);
      const Outcome second = resume(pipeline, Span(pair).subspan(1), 64, progress);
      EXPECT_EQ(second.consumed, 1u);
      Bytes joined = first.bytes;
      joined.insert(joined.end(), second.bytes.begin(), second.bytes.end());
      Bytes whole = text;
      whole.push_back(pair[1]);
      progress = {};
      const Outcome atOnce = resume(pipeline, whole, 64, progress);
      EXPECT_EQ(second.status, atOnce.status);
      EXPECT_EQ(reading(target, joined), reading(target, atOnce.bytes));
    }
  }
}

TEST(ShiftedRuns, ATextThatEndsInAShiftIsWhole) {
  for (const Source& source : sources) {
    for (const CEI target : targets) {
      const Pipeline pipeline(source.cei, target);
      Bytes text = hex(source.shiftOut);
      add(text, source.pair);
      add(text, source.shiftIn);
      // A character that the target lacks is replaced.
      const NlsStatus wanted = run(pipeline, text, 64).status;
      ASSERT_TRUE(wanted == 0 || wanted == nlsSubstituted);
      TranscodeProgress progress{};
      const Outcome outcome = resume(pipeline, text, 64, progress);
      EXPECT_EQ(outcome.status, wanted) << source.cei << " to " << target;
      EXPECT_EQ(outcome.consumed, text.size());
      EXPECT_EQ(progress.flags & NLS_PROGRESS_DOUBLE_MODE, 0u);
      // With no more room than the text takes.
      progress = {};
      EXPECT_EQ(resume(pipeline, text, outcome.bytes.size(), progress).status, wanted)
          << source.cei << " to " << target;
    }
  }
}

TEST(ShiftedRuns, AnyCutGivesTheWhole) {
  for (const Source& source : sources) {
    const Bytes text = redundantText(source, 3);
    for (const CEI target : targets) {
      const Pipeline pipeline(source.cei, target);
      const Outcome whole = feed(pipeline, text, text.size(), 256);
      EXPECT_EQ(whole.bytes, run(pipeline, text, 256).bytes);
      const Bytes wanted = reading(target, whole.bytes);
      for (size_t piece = 1; piece <= text.size(); ++piece) {
        const Outcome parts = feed(pipeline, text, piece, 256);
        ASSERT_EQ(reading(target, parts.bytes), wanted) << source.cei << " to " << target << " by " << piece;
        ASSERT_EQ(parts.status, whole.status);
        ASSERT_EQ(parts.consumed, text.size());
        ASSERT_EQ(parts.substituted, whole.substituted);
      }
    }
  }
}

// Any room that takes a character with its shifts gets the whole text through, in a bounded number of calls.
TEST(ShiftedRuns, LittleRoomGivesTheWhole) {
  for (const Source& source : sources) {
    const Bytes text = redundantText(source, 3);
    for (const CEI target : targets) {
      const Pipeline pipeline(source.cei, target);
      const Bytes wanted = reading(target, run(pipeline, text, 256).bytes);
      for (size_t room = 8; room < 24; ++room) {
        for (const size_t piece : {size_t{1}, size_t{3}, text.size()}) {
          const Outcome parts = feed(pipeline, text, piece, room);
          ASSERT_EQ(reading(target, parts.bytes), wanted) << source.cei << " to " << target << ", " << room;
          ASSERT_EQ(parts.consumed, text.size());
        }
      }
    }
  }
}

// A replacement hides that the output was too short: from multi-byte text in one step always, to multi-byte text
// without a progress record. Between two of them never.
TEST(ReplacementsInShortRoom, OneStepFromMultiByteText) {
  const Pipeline pipeline(U_IBM939_CE, U_L_UNICODE_CE);
  const Bytes text = hex("0E 41 FD 0F 81 82");
  EXPECT_EQ(run(pipeline, text, 4), (Outcome{.status = nlsSubstituted, .bytes = hex("00 30 61 00")}));
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, text, 4, progress),
            (Outcome{.status = nlsSubstituted, .bytes = hex("00 30 61 00"), .consumed = 5, .substituted = true}));
}

TEST(ReplacementsInShortRoom, OneStepToMultiByteText) {
  const Pipeline pipeline(U_L_UNICODE_CE, U_SHIFTJIS_CE);
  const Bytes text = utf16(U"\uF8A0ab");
  EXPECT_EQ(run(pipeline, text, 3), (Outcome{.status = nlsSubstituted, .bytes = hex("81 40 61")}));
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, text, 3, progress),
            (Outcome{.status = nlsOutputTruncated, .bytes = hex("81 40 61"), .consumed = 4, .substituted = true}));
}

TEST(ReplacementsInShortRoom, BetweenMultiByteTexts) {
  const Pipeline pipeline(U_EUCKR_CE, U_SHIFTJIS_CE);
  const Bytes text = hex("B0 A1 61 62");
  EXPECT_EQ(run(pipeline, text, 3), (Outcome{.status = nlsOutputTruncated, .bytes = hex("81 40 61")}));
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, text, 3, progress),
            (Outcome{.status = nlsOutputTruncated, .bytes = hex("81 40 61"), .consumed = 3, .substituted = true}));
  const Pipeline fromUnmapped(U_IBM939_CE, U_SHIFTJIS_CE);
  progress = {};
  EXPECT_EQ(resume(fromUnmapped, hex("0E 41 FD 0F 81 82"), 3, progress),
            (Outcome{.status = nlsOutputTruncated, .bytes = hex("81 40 61"), .consumed = 5, .substituted = true}));
}

// A character that the first of two steps replaces hides nothing either, so long as text is left.
TEST(ReplacementsInShortRoom, TextIsLeftBehindAReplacement) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_EUCJP_CE);
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, hex("85 40 41"), 2, progress),
            (Outcome{.status = nlsOutputTruncated, .bytes = hex("A1 A1"), .consumed = 2, .substituted = true}));
  EXPECT_EQ(resume(pipeline, hex("41"), 2, progress), (Outcome{.status = 0, .bytes = hex("41"), .consumed = 1}));
}

// Rows that need no conversion to a multi-byte one are copied by the plain run; the resumable one takes each byte for
// the character of its number, whatever the text is.
TEST(UnconvertedText, IsReadByBytes) {
  for (const CEI source : {U_ANY_CE, U_ASCII_CE}) {
    const Pipeline pipeline(source, U_SHIFTJIS_CE);
    const Bytes text = hex("61 82 A0 B1");
    EXPECT_EQ(plain(pipeline, text, 16), (Outcome{.status = 0, .bytes = text}));
    EXPECT_EQ(run(pipeline, text, 16), (Outcome{.status = nlsSubstituted, .bytes = hex("61 82 81 40 81 7D")}))
        << source;
  }
  const Pipeline host(U_EBCDICANY_CE, U_IBM939_CE);
  const Bytes text = hex("81 C1");
  EXPECT_EQ(plain(host, text, 16), (Outcome{.status = 0, .bytes = text}));
  EXPECT_EQ(run(host, text, 16), (Outcome{.status = nlsSubstituted, .bytes = hex("21 0E 40 40 0F")}));
}

// Without a progress record, two steps read a text as one does, up to its very end: there the rows of ISO 2022 take
// shifts for characters.
TEST(ShiftedRuns, TwoStepsReadWhatOneDoes) {
  for (const Source& source : sources) {
    const Pipeline toUnicode(source.cei, U_L_UNICODE_CE);
    const Bytes text = redundantText(source, 3);
    for (const CEI target : {U_SHIFTJIS_CE, U_IBM939_CE}) {
      const Pipeline twoSteps(source.cei, target);
      const Pipeline fromUnicode(U_L_UNICODE_CE, target);
      for (size_t length = 0; length <= text.size(); ++length) {
        const Span part = Span(text).first(length);
        ASSERT_EQ(run(twoSteps, part, 256).bytes, run(fromUnicode, run(toUnicode, part, 256).bytes, 256).bytes)
            << source.cei << " to " << target << ": " << test::toHex(part);
      }
    }
  }
  EXPECT_EQ(run(Pipeline(U_ISO2022JP_CE, U_SHIFTJIS_CE), hex("61 1B 24 42 1B 28 4A 1B 24 42 24 22"), 64).bytes,
            hex("61 1B 24 42 24 22"));
}

// A plain run of any length gives what a resumable one does, though it goes through in pieces.
TEST(ShiftedRuns, LongTexts) {
  for (const Source& source : sources) {
    Bytes text;
    while (text.size() < 20000) {
      const Bytes more = redundantText(source, static_cast<int>(text.size() % 4));
      text.insert(text.end(), more.begin(), more.end());
    }
    for (const CEI target : {U_GB18030_CE, U_SHIFTJIS_CE, U_MS949_CE, U_IBM939_CE}) {
      const Pipeline pipeline(source.cei, target);
      TranscodeProgress progress{};
      const Outcome resumed = resume(pipeline, text, 60000, progress);
      const Outcome plainRun = run(pipeline, text, 60000);
      EXPECT_EQ(plainRun.bytes, resumed.bytes) << source.cei << " to " << target;
      EXPECT_EQ(plainRun.status, resumed.status) << source.cei << " to " << target;
      for (const size_t less : {1u, 100u, 5000u}) {
        progress = {};
        const size_t room = resumed.bytes.size() - less;
        const Outcome shorter = run(pipeline, text, room);
        EXPECT_EQ(shorter.bytes, resume(pipeline, text, room, progress).bytes) << source.cei << " to " << target;
        EXPECT_EQ(shorter.status, nlsOutputTruncated) << source.cei << " to " << target;
      }
    }
  }
}

}  // namespace

}  // namespace transcode_test

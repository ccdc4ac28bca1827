// Every capacity from none to more than enough, with output against a guard page and texts that change the mode at each
// character: whole characters, closed text, nothing behind the capacity, and a run that gets on when it is called
// again.
#include "modules/qznlsmb/rows.h"

namespace transcode_test {
namespace {

// Characters of one and of two bytes in turn, as far as the row has them.
std::u32string alternating(size_t count) {
  std::u32string text;
  while (text.size() < count) text += U"a\uAC00b\u3042\u4E00c\u3044\u4E01";
  text.resize(count);
  return text;
}

// What a caller gets who comes back with the rest until all is read.
struct Whole {
  Bytes bytes;
  size_t calls = 0;
  bool finished = false;
};

Whole drive(TranscodingPipeline* pipeline, Span text, size_t capacity) {
  Whole whole;
  TranscodeProgress progress{};
  const size_t most = 4 * text.size() + 4;
  while (whole.calls < most) {
    ++whole.calls;
    const Outcome part = resume(pipeline, text, capacity, progress);
    whole.bytes.insert(whole.bytes.end(), part.bytes.begin(), part.bytes.end());
    text = text.subspan(part.consumed);
    whole.finished = text.empty();
    if (whole.finished || (part.bytes.empty() && part.consumed == 0)) break;
  }
  return whole;
}

Bytes back(CEI cei, Span text) {
  StageRoute route(cei, U_L_UNICODE_CE);
  return run(route, text, 8 * text.size() + 64).bytes;
}

TEST(Room, FromUnicodeAtEveryCapacity) {
  for (const CEI cei : multiByteRows()) {
    SCOPED_TRACE(cei);
    StageRoute route(U_L_UNICODE_CE, cei);
    const std::u32string text = alternating(9);
    const Bytes full = run(route, utf16(text), 256).bytes;
    const Bytes meaning = back(cei, full);
    // The blank of hp15-tw, which stands for what it lacks, doesn't begin with one of its lead bytes.
    if (meaning.size() != 2 * text.size()) {
      EXPECT_EQ(cei, 120);
      continue;
    }
    size_t before = 0;
    for (size_t capacity = 0; capacity <= full.size() + 8; ++capacity) {
      for (const veldnls::Pace pace : {veldnls::Pace::kernelsForAll, veldnls::Pace::everyCharacter}) {
        route.setPace(pace);
        TranscodeProgress progress{};
        const Outcome outcome = resume(route, utf16(text), capacity, progress);
        ASSERT_GE(outcome.consumed, before);
        before = outcome.consumed;
        if (capacity >= full.size()) {
          // Text that ends in double-byte mode may need the room that was kept back for both shifts.
          ASSERT_TRUE(outcome.bytes == full || outcome.consumed < 2 * text.size());
        }
        // What was written is what was read, and closed.
        ASSERT_EQ(back(cei, outcome.bytes), Bytes(meaning.begin(), meaning.begin() + outcome.consumed)) << capacity;
      }
    }
    ASSERT_EQ(before, 2 * text.size());
    // Small pieces of output, each standing alone, are the whole text.
    for (const size_t capacity : {8u, 9u, 11u, 16u}) {
      const Whole whole = drive(route, utf16(text), capacity);
      EXPECT_TRUE(whole.finished);
      EXPECT_EQ(back(cei, whole.bytes), meaning) << capacity;
    }
  }
}

// The rows whose unitSize is below what their shifts need keep the room that they do need.
TEST(Room, RowsWithATooSmallUnitSize) {
  for (const CEI cei : {U_JIS7_CE, U_NECJP_CE, U_HITACHITW_CE, U_PCJIS_CE}) {
    const EncodingDescriptor& of = row(cei);
    const size_t needed = 2u * of.profile.shiftLength + 2;
    EXPECT_LT(of.unitSize, needed);
    const Pipeline pipeline(U_L_UNICODE_CE, cei);
    for (size_t capacity = 0; capacity < needed; ++capacity) {
      EXPECT_EQ(run(pipeline, utf16(U"\u4E00"), capacity), (Outcome{.status = nlsOutputTruncated}));
    }
    EXPECT_EQ(run(pipeline, utf16(U"\u4E00"), needed).bytes.size(), needed);
  }
}

// Text is closed before a single byte that has no room.
TEST(Room, AShiftInFitsThoughItsCharacterDoesnt) {
  const Pipeline pipeline(U_L_UNICODE_CE, U_IBM939_CE);
  const Bytes text = utf16(U"\u3042a");
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, text, 4, progress),
            (Outcome{.status = nlsOutputTruncated, .bytes = hex("0E 44 81 0F"), .consumed = 2}));
  EXPECT_EQ(resume(pipeline, text, 5, progress), (Outcome{.bytes = hex("0E 44 81 0F 81"), .consumed = 4}));
  EXPECT_EQ(run(pipeline, text, 3), (Outcome{.status = nlsOutputTruncated}));
  EXPECT_EQ(run(pipeline, utf16(U"\u3042\u3042"), 5),
            (Outcome{.status = nlsOutputTruncated, .bytes = hex("0E 44 81 0F")}));
  EXPECT_EQ(run(pipeline, utf16(U"\u3042\u3042"), 6), (Outcome{.bytes = hex("0E 44 81 44 81 0F")}));
}

TEST(Room, ToUnicodeAtEveryCapacity) {
  for (const CEI cei : multiByteRows()) {
    SCOPED_TRACE(cei);
    StageRoute encode(U_L_UNICODE_CE, cei);
    const Bytes text = run(encode, utf16(alternating(9)), 256).bytes;
    for (const CEI form : unicodeForms) {
      StageRoute route(cei, form);
      const Bytes full = run(route, text, 256).bytes;
      for (size_t capacity = 0; capacity <= full.size() + 8; ++capacity) {
        TranscodeProgress progress{};
        const Outcome outcome = resume(route, text, capacity, progress);
        ASSERT_LE(outcome.bytes.size(), full.size());
        ASSERT_TRUE(std::equal(outcome.bytes.begin(), outcome.bytes.end(), full.begin())) << capacity;
        // The rest, with the state that the record has, is the rest of the text.
        const Outcome rest = resume(route, Span(text).subspan(outcome.consumed), 256, progress);
        ASSERT_EQ(rest.bytes, Bytes(full.begin() + static_cast<std::ptrdiff_t>(outcome.bytes.size()), full.end()));
      }
      for (const size_t capacity : {4u, 5u, 7u}) EXPECT_EQ(drive(route, text, capacity).bytes, full);
    }
  }
}

// Nothing but shifts and designators: a run reads them all and ends.
TEST(Room, EndlessSequences) {
  for (const CEI cei : multiByteRows()) {
    const MultiByteProfile& profile = row(cei).profile;
    if (profile.shiftLength == 0) continue;
    SCOPED_TRACE(cei);
    Bytes shifts;
    Bytes designators;
    for (int i = 0; i < 200; ++i) {
      shifts.insert(shifts.end(), profile.shiftOut, profile.shiftOut + profile.shiftLength);
      shifts.insert(shifts.end(), profile.shiftIn, profile.shiftIn + profile.shiftLength);
      const Bytes designator = hex("1B 24 29 43");
      designators.insert(designators.end(), designator.begin(), designator.end());
    }
    for (const CEI target : {U_L_UNICODE_CE, U_WLATIN1_CE}) {
      StageRoute route(cei, target);
      for (const Bytes& text : {shifts, designators}) {
        TranscodeProgress progress{};
        const Outcome all = resume(route, text, 4096, progress);
        EXPECT_EQ(all.consumed, text.size());
        const Whole whole = drive(route, text, 8);
        EXPECT_TRUE(whole.finished);
        EXPECT_EQ(whole.bytes, all.bytes);
      }
      EXPECT_EQ(run(route, shifts, 0).bytes, Bytes{});
    }
    StageRoute route(cei, U_L_UNICODE_CE);
    TranscodeProgress progress{};
    EXPECT_EQ(resume(route, shifts, 4096, progress), (Outcome{.consumed = static_cast<uint32_t>(shifts.size())}));
  }
}

}  // namespace
}  // namespace transcode_test

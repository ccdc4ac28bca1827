// Routes between single-byte and multi-byte encodings: byte maps, the euro sign, blanks.
#include "modules/qznlsmb/rows.h"
#include "modules/qznlsmb/tables.h"

namespace transcode_test {
namespace {

Outcome through(CEI source, CEI target, std::string_view text, size_t capacity = 32,
                const TranscodeOptions* options = nullptr) {
  return run(Pipeline(source, target), hex(text), capacity, options);
}

Bytes bytesOf(uint16_t code) {
  if (code < 0x100) return {static_cast<uint8_t>(code)};
  return {static_cast<uint8_t>(code >> 8), static_cast<uint8_t>(code)};
}

TEST(ByteRoutes, TheMapGoesByTheRowsBlanksAndSets) {
  const Pipeline loads(U_SHIFTJIS_CE, U_L_UNICODE_CE);
  EXPECT_EQ(StageRoute(U_WLATIN1_CE, U_SHIFTJIS_CE)->source.singleMap, veldnls::asciiPassthrough);
  EXPECT_EQ(StageRoute(U_SHIFTJIS_CE, U_WLATIN1_CE)->source.singleMap, veldnls::asciiPassthrough);
  EXPECT_EQ(StageRoute(97, U_IBM939_CE)->source.singleMap, veldnls::identity);
  EXPECT_EQ(StageRoute(U_IBM939_CE, 97)->source.singleMap, veldnls::identity);
  EXPECT_EQ(StageRoute(97, U_SHIFTJIS_CE)->source.singleMap, veldnls::ebcdicToAscii);
  EXPECT_EQ(StageRoute(U_SHIFTJIS_CE, 97)->source.singleMap, veldnls::asciiToEbcdic);
  EXPECT_EQ(StageRoute(U_WLATIN1_CE, U_IBM939_CE)->source.singleMap, veldnls::asciiToEbcdic);
  EXPECT_EQ(StageRoute(U_IBM939_CE, U_WLATIN1_CE)->source.singleMap, veldnls::ebcdicToAscii);
}

TEST(ByteRoutes, OnlyTheInvariantPartIsKept) {
  EXPECT_EQ(through(U_WLATIN1_CE, U_SHIFTJIS_CE, "41 E9 7F 80"),
            (Outcome{.status = nlsSubstituted, .bytes = hex("41 20 7F 20")}));
  EXPECT_EQ(through(U_SHIFTJIS_CE, U_WLATIN1_CE, "41 B1 82 A0 42"),
            (Outcome{.status = nlsSubstituted, .bytes = hex("41 20 20 42")}));
  EXPECT_EQ(through(97, U_IBM939_CE, "C1 E9 0E 40"), (Outcome{.status = 0, .bytes = hex("C1 E9 0E 40")}));
}

// 20 and 40 are blanks of one kind or the other: they become the target's without being noted.
TEST(ByteRoutes, BlanksArentNoted) {
  EXPECT_EQ(through(U_WLATIN1_CE, U_IBM939_CE, "20 40"), (Outcome{.status = 0, .bytes = hex("40 7C")}));
  EXPECT_EQ(through(97, U_SHIFTJIS_CE, "40 20"), (Outcome{.status = 0, .bytes = hex("20 20")}));
  EXPECT_EQ(through(97, U_SHIFTJIS_CE, "21"), (Outcome{.status = nlsSubstituted, .bytes = hex("20")}));
  TranscodeProgress progress{};
  EXPECT_EQ(resume(Pipeline(97, U_SHIFTJIS_CE), hex("21"), 4, progress),
            (Outcome{.status = nlsSubstituted, .bytes = hex("20"), .consumed = 1, .substituted = true}));
}

TEST(ByteRoutes, EverySinglePairOfEuros) {
  for (const veldnls::EuroByte& one : veldnls::singleByteEuros) {
    for (const veldnls::EuroCode& many : veldnls::multiByteEuros) {
      SCOPED_TRACE(testing::Message() << one.cei << " and " << many.cei);
      const Bytes code = bytesOf(many.code);
      StageRoute to(one.cei, many.cei);
      EXPECT_EQ(run(to, Bytes{one.byte}, 8), (Outcome{.status = 0, .bytes = code}));
      StageRoute from(many.cei, one.cei);
      const Outcome back = run(from, code, 8);
      // A euro sign of one byte goes one way only.
      if (code.size() == 2) {
        EXPECT_EQ(back, (Outcome{.status = 0, .bytes = {one.byte}}));
      } else {
        EXPECT_EQ(back.bytes, Bytes{veldnls::ebcdicToAscii[code[0]]});
      }
    }
  }
}

TEST(ByteRoutes, AEuroNeedsBothTables) {
  // ms-949 has one, but latin5 hasn't; wlatin1 has one, but shift-jis hasn't.
  EXPECT_EQ(through(37, U_MS949_CE, "80"), (Outcome{.status = nlsSubstituted, .bytes = hex("20")}));
  EXPECT_EQ(through(U_WLATIN1_CE, U_SHIFTJIS_CE, "80"), (Outcome{.status = nlsSubstituted, .bytes = hex("20")}));
  EXPECT_EQ(through(U_MS949_CE, 37, "A2 E6"), (Outcome{.status = nlsSubstituted, .bytes = hex("20")}));
}

// In double-byte mode 00 E1 is a character of two bytes, which isn't the euro sign of one.
TEST(ByteRoutes, TwoBytesArentTheOneByteEuro) {
  EXPECT_EQ(through(U_IBM939_CE, U_WLATIN1_CE, "0E 00 E1 0F"), (Outcome{.status = nlsSubstituted, .bytes = hex("20")}));
}

TEST(ByteRoutes, AEuroOfTwoBytesWithRoomForOne) {
  const Pipeline pipeline(U_WLATIN1_CE, U_EUCKR_CE);
  EXPECT_EQ(run(pipeline, hex("41 80 42"), 2), (Outcome{.status = nlsOutputTruncated, .bytes = hex("41")}));
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, hex("41 80 42"), 2, progress),
            (Outcome{.status = nlsOutputTruncated, .bytes = hex("41"), .consumed = 1}));
  EXPECT_EQ(run(pipeline, hex("41 80 42"), 3), (Outcome{.status = nlsOutputTruncated, .bytes = hex("41 A2 E6")}));
}

TEST(ByteRoutes, MissingRoomOutweighsAReplacementOnTheWayTo) {
  EXPECT_EQ(through(U_WLATIN1_CE, U_SHIFTJIS_CE, "E9 41 42", 2),
            (Outcome{.status = nlsOutputTruncated, .bytes = hex("20 41")}));
  EXPECT_EQ(through(U_WLATIN1_CE, U_SHIFTJIS_CE, "E9 41 20 20", 2, &dropBlanks),
            (Outcome{.status = 0, .bytes = hex("20 41")}));
}

TEST(ByteRoutes, AReplacementHidesMissingRoomOnTheWayFrom) {
  TranscodeProgress progress{};
  EXPECT_EQ(resume(Pipeline(U_SHIFTJIS_CE, U_WLATIN1_CE), hex("82 A0 41 42"), 2, progress),
            (Outcome{.status = nlsSubstituted, .bytes = hex("20 41"), .consumed = 3, .substituted = true}));
  EXPECT_EQ(through(U_SHIFTJIS_CE, U_WLATIN1_CE, "41 42 43", 2),
            (Outcome{.status = nlsOutputTruncated, .bytes = hex("41 42")}));
}

struct BlankCase {
  CEI source, target;
  const char* blanks;
  const char* others;
};

// Which byte is a blank of the input goes by the target's blank and by what the map makes of it. From EBCDIC to ASCII
// the map takes 20, too, to a blank, so that 20 is the one.
TEST(ByteRoutes, DroppedBlanks) {
  for (const BlankCase& each : {BlankCase{U_WLATIN1_CE, U_SHIFTJIS_CE, "20 20", "20 40"},
                                {U_SHIFTJIS_CE, U_WLATIN1_CE, "20 20", "20 40"},
                                {97, U_SHIFTJIS_CE, "20 20", "20 40"},
                                {U_IBM939_CE, U_WLATIN1_CE, "20 20", "20 40"},
                                {U_WLATIN1_CE, U_IBM939_CE, "20 20", "20 40"},
                                {97, U_IBM939_CE, "40 40", "40 20"},
                                {U_SHIFTJIS_CE, 97, "20 20", "20 40"}}) {
    SCOPED_TRACE(testing::Message() << each.source << " to " << each.target);
    const Pipeline pipeline(each.source, each.target);
    Bytes text = hex("C1 C2");
    if (row(each.source).padChar == 0x20) text = hex("41 42");
    for (const char* rest : {each.blanks, each.others}) {
      Bytes input = text;
      const Bytes more = hex(rest);
      input.insert(input.end(), more.begin(), more.end());
      const NlsStatus expected = rest == each.blanks ? 0 : NlsStatus{nlsOutputTruncated};
      EXPECT_EQ(run(pipeline, input, 2, &dropBlanks).status, expected) << rest;
      EXPECT_EQ(run(pipeline, input, 2).status, nlsOutputTruncated);
    }
  }
}

TEST(ByteRoutes, InDoubleModeNothingIsDropped) {
  const Pipeline pipeline(U_IBM939_CE, U_WLATIN1_CE);
  TranscodeProgress progress{};
  progress.flags = NLS_PROGRESS_DOUBLE_MODE;
  EXPECT_EQ(resume(pipeline, hex("20 20 20 20"), 0, progress, &dropBlanks), (Outcome{.status = nlsOutputTruncated}));
  EXPECT_EQ(progress.flags, NLS_PROGRESS_DOUBLE_MODE);
  EXPECT_EQ(resume(pipeline, hex("0F 20 20"), 0, progress, &dropBlanks), (Outcome{.status = 0, .consumed = 1}));
  EXPECT_EQ(progress.flags, 0u);
}

// Shifts are stepped over before the room is looked at, so that a text which fits ends well.
TEST(ByteRoutes, ShiftsNeedNoRoom) {
  EXPECT_EQ(through(U_IBM939_CE, U_WLATIN1_CE, "0E 0F 81 0E 0F", 1), (Outcome{.status = 0, .bytes = hex("61")}));
}

TEST(ByteRoutes, IncompleteEnds) {
  EXPECT_EQ(through(U_SHIFTJIS_CE, U_WLATIN1_CE, "41 82"), (Outcome{.status = nlsSubstituted, .bytes = hex("41")}));
  TranscodeProgress progress{};
  const Pipeline pipeline(U_SHIFTJIS_CE, U_WLATIN1_CE);
  EXPECT_EQ(
      resume(pipeline, hex("41 82"), 8, progress),
      (Outcome{.status = nlsIncompleteInput, .bytes = hex("41"), .consumed = 2, .pending = true, .held = hex("82")}));
  EXPECT_EQ(resume(pipeline, hex("A0 42"), 8, progress),
            (Outcome{.status = nlsSubstituted, .bytes = hex("20 42"), .consumed = 2, .substituted = true}));
}

// A four-byte character is two of two bytes here, and a byte of 80 no euro sign.
TEST(ByteRoutes, Gb18030IsReadByLeadBytes) {
  EXPECT_EQ(StageRoute(U_GB18030_CE, U_WLATIN1_CE)->source.scan, veldnls::scanLeadByte);
  EXPECT_EQ(through(U_GB18030_CE, U_WLATIN1_CE, "81 30 81 30"),
            (Outcome{.status = nlsSubstituted, .bytes = hex("20 20")}));
}

TEST(ByteRoutes, RecordsAreOptional) {
  const Pipeline pipeline(U_IBM939_CE, U_WLATIN1_CE);
  uint8_t out[4];
  const Bytes text = hex("81 0E 44 81 0F 82");
  EXPECT_EQ(pipeline->transcodeResumable(pipeline, text.data(), 6, out, 4, nullptr, nullptr, nullptr), nlsSubstituted);
  EXPECT_EQ(Bytes(out, out + 3), hex("61 20 62"));
}

}  // namespace
}  // namespace transcode_test

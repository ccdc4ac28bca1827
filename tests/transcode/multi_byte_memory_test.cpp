// Runs over multi-byte stages when memory fails, and how often the first of two stages runs.
#include "transcode/own_multi_byte_module.h"

namespace transcode_test {

namespace {

TEST_F(MultiByte, StageWithoutMemory) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_EUCJP_CE);
  constexpr NlsModuleStage failing = [](CodePageModule*, PipelineSide*, const void*, uint32_t, void*, uint32_t,
                                        uint32_t*, TranscodeProgress*,
                                        const TranscodeOptions*) { return NlsStatus{nlsNoMemory}; };
  for (PipelineSide* side : {&pipeline->source, &pipeline->target}) {
    TranscodeProgress progress{};
    resume(pipeline, hex("80"), 8, progress);
    const NlsModuleStage working = side->stage;
    side->stage = failing;
    EXPECT_EQ(resume(pipeline, hex("41"), 8, progress),
              (Outcome{.status = nlsNoMemory, .pending = true, .held = hex("80")}));
    EXPECT_EQ(run(pipeline, hex("41"), 8).status, nlsNoMemory);
    side->stage = working;
    EXPECT_EQ(resume(pipeline, hex("41"), 8, progress).bytes, hex("80 41"));
  }
}

int runsOfFirstStage;

constexpr NlsModuleStage countedToUnicode = [](CodePageModule* m, PipelineSide* s, const void* in, uint32_t n,
                                               void* out, uint32_t size, uint32_t* length, TranscodeProgress* own,
                                               const TranscodeOptions* options) {
  ++runsOfFirstStage;
  return toUnicodeStage(m, s, in, n, out, size, length, own, options);
};

constexpr NlsModuleStage failingAtItsSecondRun = [](CodePageModule* m, PipelineSide* s, const void* in, uint32_t n,
                                                    void* out, uint32_t size, uint32_t* length, TranscodeProgress* own,
                                                    const TranscodeOptions* options) {
  const NlsStatus status = countedToUnicode(m, s, in, n, out, size, length, own, options);
  return runsOfFirstStage == 2 ? NlsStatus{nlsNoMemory} : status;
};

// The run that measures the input is made only when the second stage left something.
TEST_F(MultiByte, TheFirstStageRunsOnceWhenAllWasTaken) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_IBM937_CE);
  pipeline->source.stage = countedToUnicode;
  struct Case {
    const char* text;
    size_t room;
    int runs;
  };
  for (const Case& each :
       {Case{"61 80 41", 8, 1}, {"61 80 41", 3, 1}, {"61 80", 8, 1}, {"80", 0, 1}, {"61 80 41", 2, 2}, {"61", 0, 2}}) {
    TranscodeProgress progress{};
    runsOfFirstStage = 0;
    resume(pipeline, hex(each.text), each.room, progress);
    EXPECT_EQ(runsOfFirstStage, each.runs) << each.text << " into " << each.room;
  }
}

// Text was written when the run that measures the input fails: it isn't reported, and the call can be made again.
TEST_F(MultiByte, MeasuringRunWithoutMemory) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_EUCJP_CE);
  TranscodeProgress progress{};
  resume(pipeline, hex("80"), 8, progress);
  const NlsModuleStage working = pipeline->source.stage;
  runsOfFirstStage = 0;
  pipeline->source.stage = failingAtItsSecondRun;
  const uint8_t input[] = {0x41, 0x62};
  uint8_t output[2];
  uint32_t written = 99;
  EXPECT_EQ(pipeline->transcodeResumable(pipeline, input, 2, output, 2, &written, &progress, nullptr), nlsNoMemory);
  EXPECT_EQ(runsOfFirstStage, 2);
  EXPECT_EQ(written, 0u);
  EXPECT_EQ(progress.consumed, 0u);
  EXPECT_EQ(progress.pending, 1);
  EXPECT_EQ(progress.heldCount, 1u);
  EXPECT_EQ(progress.held[0], 0x80);
  pipeline->source.stage = working;
  EXPECT_EQ(resume(pipeline, input, 8, progress), (Outcome{.status = 0, .bytes = hex("80 41 62"), .consumed = 2}));
}

// Without a progress record a text goes through in pieces, and needs no memory; not so when the target has shifts,
// which each piece would close, or when blanks may be dropped, which the last pieces might be.
TEST_F(MultiByte, LongTextsNeedNoMemory) {
  Bytes text;
  for (int i = 0; i < 9000; ++i) {
    const Bytes piece = i % 3 == 0 ? hex("61") : hex("80 41");
    text.insert(text.end(), piece.begin(), piece.end());
  }
  text.push_back(0x81);
  const Bytes whole(text.begin(), text.end() - 1);
  const Pipeline pieces(U_SHIFTJIS_CE, U_EUCJP_CE);
  const Pipeline shifted(U_SHIFTJIS_CE, U_IBM937_CE);
  EXPECT_EQ(run(shifted, text, whole.size()), (Outcome{.status = 0, .bytes = whole}));
  host().memory.allowAllocation = [](uint32_t) -> NlsBool8 { return 0; };
  EXPECT_EQ(run(pieces, text, whole.size()), (Outcome{.status = 0, .bytes = whole}));
  EXPECT_EQ(run(pieces, text, whole.size() - 1),
            (Outcome{.status = nlsOutputTruncated, .bytes = Bytes(whole.begin(), whole.end() - 2)}));
  EXPECT_EQ(run(pieces, text, 0), (Outcome{.status = nlsOutputTruncated}));
  EXPECT_EQ(run(shifted, text, whole.size()).status, nlsNoMemory);
  EXPECT_EQ(run(pieces, text, whole.size(), &dropBlanks).status, nlsNoMemory);
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pieces, text, whole.size(), progress).status, nlsNoMemory);
  host().memory.allowAllocation = nullptr;
}

TEST_F(MultiByte, APieceWithoutMemory) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_EUCJP_CE);
  runsOfFirstStage = 0;
  pipeline->source.stage = failingAtItsSecondRun;
  const Bytes text(3000, 'a');
  Bytes output(3000);
  uint32_t written = 99;
  EXPECT_EQ(pipeline->transcodeResumable(pipeline, text.data(), 3000, output.data(), 3000, &written, nullptr, nullptr),
            nlsNoMemory);
  EXPECT_EQ(runsOfFirstStage, 2);
  EXPECT_EQ(written, 0u);
}

}  // namespace

}  // namespace transcode_test

// Runs over one multi-byte stage and over two: cut characters, short output, substitutions and overlap.
#include <cstring>

#include "transcode/own_multi_byte_module.h"

namespace transcode_test {

namespace {

TEST_F(MultiByte, OneStageHoldsSplitCharacters) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_L_UNICODE_CE);
  TranscodeProgress progress{};
  EXPECT_EQ(
      resume(pipeline, hex("61 80"), 8, progress),
      (Outcome{
          .status = nlsIncompleteInput, .bytes = hex("61 00"), .consumed = 2, .pending = true, .held = hex("80")}));
  EXPECT_EQ(resume(pipeline, hex("41 62"), 1, progress),
            (Outcome{.status = nlsOutputTruncated, .pending = true, .held = hex("80")}));
  EXPECT_EQ(resume(pipeline, hex("41 62"), 8, progress),
            (Outcome{.status = 0, .bytes = hex("41 4E 62 00"), .consumed = 2}));
  EXPECT_EQ(run(pipeline, hex("61 80"), 8).status, nlsSubstituted);
}

TEST_F(MultiByte, TwoStagesHoldSplitCharacters) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_EUCJP_CE);
  TranscodeProgress progress{};
  EXPECT_EQ(
      resume(pipeline, hex("61 80 41 81"), 8, progress),
      (Outcome{
          .status = nlsIncompleteInput, .bytes = hex("61 80 41"), .consumed = 4, .pending = true, .held = hex("81")}));
  EXPECT_EQ(resume(pipeline, hex("42"), 1, progress),
            (Outcome{.status = nlsOutputTruncated, .pending = true, .held = hex("81")}));
  EXPECT_EQ(resume(pipeline, hex("42"), 8, progress), (Outcome{.status = 0, .bytes = hex("81 42"), .consumed = 1}));
  // A lead byte and nothing else.
  EXPECT_EQ(resume(pipeline, hex("81"), 8, progress),
            (Outcome{.status = nlsIncompleteInput, .consumed = 1, .pending = true, .held = hex("81")}));
}

TEST_F(MultiByte, TwoStageCutsGiveTheWhole) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_EUCJP_CE);
  const Bytes text = hex("61 80 41 81 82 62 FF FF 63");
  for (size_t cut = 0; cut <= text.size(); ++cut) {
    const size_t lengths[] = {cut, 0};
    EXPECT_EQ(inPieces(pipeline, text, lengths), (Outcome{.status = 0, .bytes = text, .consumed = 9}));
  }
  EXPECT_EQ(inPieces(pipeline, text, std::vector<size_t>(text.size(), 1)).bytes, text);
}

TEST_F(MultiByte, TwoStageShortOutput) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_EUCJP_CE);
  const Bytes text = hex("61 80 41 62 81 42");
  constexpr uint32_t taken[] = {0, 1, 1, 3, 4, 4};
  for (size_t capacity = 0; capacity < text.size(); ++capacity) {
    TranscodeProgress progress{};
    EXPECT_EQ(resume(pipeline, text, capacity, progress),
              (Outcome{.status = nlsOutputTruncated,
                       .bytes = Bytes(text.begin(), text.begin() + taken[capacity]),
                       .consumed = taken[capacity]}));
    EXPECT_EQ(run(pipeline, text, capacity).status, nlsOutputTruncated);
  }
}

// Gives U+20AC for "x", which no code of the first stage gives and the second one doesn't know.
constexpr NlsModuleStage toUnicodeWithAnEuro = [](CodePageModule* m, PipelineSide* s, const void* in, uint32_t n,
                                                  void* out, uint32_t size, uint32_t* length, TranscodeProgress* own,
                                                  const TranscodeOptions* options) {
  const NlsStatus status = toUnicodeStage(m, s, in, n, out, size, length, own, options);
  auto* units = static_cast<uint8_t*>(out);
  for (uint32_t i = 0; i + 1 < *length; i += 2) {
    if (units[i] == 'x' && units[i + 1] == 0) units[i] = 0xAC, units[i + 1] = 0x20;
  }
  return status;
};

TEST_F(MultiByte, TwoStageSubstitutions) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_EUCJP_CE);
  pipeline->source.stage = toUnicodeWithAnEuro;
  EXPECT_EQ(run(pipeline, hex("78 61"), 8), (Outcome{.status = nlsSubstituted, .bytes = hex("3F 61")}));
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, hex("78 61"), 8, progress),
            (Outcome{.status = nlsSubstituted, .bytes = hex("3F 61"), .consumed = 2, .substituted = true}));
  // Outweighed by an input that ends inside a character.
  const Outcome cut = resume(pipeline, hex("78 61 80"), 8, progress);
  EXPECT_EQ(cut.status, nlsIncompleteInput);
  EXPECT_TRUE(cut.substituted);
  EXPECT_EQ(cut.held, hex("80"));
}

// The stages of the module itself tell a short output.
TEST_F(MultiByte, ASubstitutionOfTheSecondStageOutweighsShortRoom) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_EUCJP_CE);
  pipeline->target.stage = [](CodePageModule* m, PipelineSide* s, const void* in, uint32_t n, void* out, uint32_t size,
                              uint32_t* length, TranscodeProgress* progress, const TranscodeOptions* options) {
    const NlsStatus status = fromUnicodeStage(m, s, in, n, out, size, length, progress, options);
    return status == nlsOutputTruncated ? NlsStatus{nlsSubstituted} : status;
  };
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, hex("61 62 63"), 2, progress),
            (Outcome{.status = nlsSubstituted, .bytes = hex("61 62"), .consumed = 2}));
  EXPECT_EQ(run(pipeline, hex("61 62 63"), 2).status, nlsSubstituted);
}

TEST_F(MultiByte, AnEmptyCallFindsTheHeldBytesIncomplete) {
  for (const CEI target : {U_EUCJP_CE, U_L_UNICODE_CE}) {
    const Pipeline pipeline(U_SHIFTJIS_CE, target);
    TranscodeProgress progress{};
    resume(pipeline, hex("80"), 8, progress);
    EXPECT_EQ(resume(pipeline, {}, 8, progress),
              (Outcome{.status = nlsIncompleteInput, .pending = true, .held = hex("80")}));
  }
}

TEST_F(MultiByte, OverlapGivesTheSameText) {
  const Bytes text = hex("61 80 41 62 81 42 63 82 43 64");
  for (const CEI target : {U_L_UNICODE_CE, U_EUCJP_CE}) {
    const Pipeline pipeline(U_SHIFTJIS_CE, target);
    const Bytes apart = run(pipeline, text, 64).bytes;
    for (int distance = -6; distance <= 6; ++distance) {
      for (const bool withProgress : {false, true}) {
        uint8_t buffer[96] = {};
        std::memcpy(buffer + 16, text.data(), text.size());
        TranscodeProgress progress{};
        uint32_t written = 0;
        uint8_t* out = buffer + 16 + distance;
        EXPECT_EQ(pipeline->transcodeResumable(pipeline, buffer + 16, static_cast<uint32_t>(text.size()), out, 64,
                                               &written, withProgress ? &progress : nullptr, nullptr),
                  0u);
        EXPECT_EQ(Bytes(out, out + written), apart) << distance;
        if (withProgress) {
          EXPECT_EQ(progress.consumed, text.size());
        }
      }
    }
  }
}

// The text between the stages ends with half a pair, which no call to come completes: it counts as taken, and as
// replaced by nothing.
TEST_F(MultiByte, HalfAPairBetweenTheStagesIsTaken) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_EUCJP_CE);
  pipeline->target.stage = [](CodePageModule* m, PipelineSide* s, const void* in, uint32_t n, void* out, uint32_t size,
                              uint32_t* length, TranscodeProgress* progress, const TranscodeOptions* options) {
    fromUnicodeStage(m, s, in, n - 2, out, size, length, progress, options);
    return NlsStatus{nlsIncompleteInput};
  };
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, hex("61 62 63"), 8, progress),
            (Outcome{.status = nlsSubstituted, .bytes = hex("61 62"), .consumed = 3, .substituted = true}));
  EXPECT_EQ(run(pipeline, hex("61 62 63"), 8), (Outcome{.status = nlsSubstituted, .bytes = hex("61 62")}));
}

// A substitution in any piece is the run's, but a short output outweighs it.
TEST_F(MultiByte, SubstitutionsInPieces) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_EUCJP_CE);
  pipeline->source.stage = toUnicodeWithAnEuro;
  Bytes text(5000, 'a');
  text[1500] = 'x';
  Bytes wanted = text;
  wanted[1500] = '?';
  EXPECT_EQ(run(pipeline, text, 5000), (Outcome{.status = nlsSubstituted, .bytes = wanted}));
  wanted.pop_back();
  EXPECT_EQ(run(pipeline, text, 4999), (Outcome{.status = nlsOutputTruncated, .bytes = wanted}));
}

// A stage may report a substitution where its room ended. What was held and wasn't read is held again.
TEST_F(MultiByte, HeldBytesBehindASubstitutionStayHeld) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_L_UNICODE_CE);
  TranscodeProgress progress{};
  progress.pending = 1;
  progress.heldCount = 3;
  std::memcpy(progress.held, "abc", 3);
  pipeline->source.stage = [](CodePageModule*, PipelineSide*, const void*, uint32_t, void*, uint32_t,
                              uint32_t* outputLength, TranscodeProgress* own, const TranscodeOptions*) -> NlsStatus {
    *outputLength = 0;
    own->consumed = 1;
    return nlsSubstituted;
  };
  EXPECT_EQ(resume(pipeline, hex("64"), 2, progress),
            (Outcome{.status = nlsSubstituted, .pending = true, .held = hex("62 63")}));
}

// As behind a trailing shift sequence: all was read, but the text can't end here. Nothing of the call before is left.
TEST_F(MultiByte, AnIncompleteEndMayHoldNothing) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_L_UNICODE_CE);
  TranscodeProgress progress{};
  resume(pipeline, hex("80"), 8, progress);
  pipeline->source.stage = [](CodePageModule*, PipelineSide*, const void*, uint32_t inputLength, void*, uint32_t,
                              uint32_t* outputLength, TranscodeProgress* own, const TranscodeOptions*) -> NlsStatus {
    EXPECT_EQ(inputLength, 3u);
    EXPECT_EQ(own->pending, 0);
    EXPECT_EQ(own->heldCount, 0u);
    *outputLength = 0;
    own->consumed = inputLength;
    return nlsIncompleteInput;
  };
  EXPECT_EQ(resume(pipeline, hex("41 0E"), 8, progress),
            (Outcome{.status = nlsIncompleteInput, .consumed = 2, .pending = true}));
}

}  // namespace

}  // namespace transcode_test

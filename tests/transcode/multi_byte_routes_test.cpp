// Routes through the multi-byte module: which setup each pair calls, and what the stages are given.
#include "transcode/own_multi_byte_module.h"
#include "transcode/pipeline.h"
#include "transcode/routes.h"
#include "transcode/stages.h"

namespace transcode_test {

namespace {

struct RouteRow {
  CEI source, target;
  const char* slot;
};

TEST_F(MultiByte, OneStageRoutes) {
  for (const RouteRow& route : {RouteRow{U_WLATIN1_CE, U_SHIFTJIS_CE, byteToMultibyte},
                                {U_SHIFTJIS_CE, U_WLATIN1_CE, multibyteToByte},
                                {U_L_UNICODE_CE, U_SHIFTJIS_CE, utf16ToMultibyte},
                                {U_B_UNICODE_CE, U_SHIFTJIS_CE, utf16ToMultibyte},
                                {U_SHIFTJIS_CE, U_L_UNICODE_CE, multibyteToUtf16},
                                {U_IBM937_CE, U_B_UNICODE_CE, multibyteToUtf16},
                                {U_L_UCS4_CE, U_IBM937_CE, utf32ToMultibyte},
                                {U_SHIFTJIS_CE, U_B_UCS4_CE, multibyteToUtf32},
                                {U_UTF8_CE, U_SHIFTJIS_CE, utf8ToMultibyte},
                                {U_SHIFTJIS_CE, U_UTF8_CE, multibyteToUtf8},
                                {U_UTFE_CE, U_IBM937_CE, utfeToMultibyte},
                                {U_SHIFTJIS_CE, U_UTFE_CE, multibyteToUtfe}}) {
    setups.clear();
    const Pipeline pipeline(route.source, route.target);
    ASSERT_NE(pipeline, nullptr);
    ASSERT_EQ(setups.size(), 1u);
    EXPECT_EQ(setups[0].slot, route.slot);
    EXPECT_EQ(setups[0].side, &pipeline->source);
    EXPECT_EQ(setups[0].source, route.source);
    EXPECT_EQ(setups[0].target, route.target);
    EXPECT_EQ(pipeline->twoStage, 0);
    EXPECT_EQ(pipeline->transcodeResumable, veldnls::multiByteTranscodeResumable);
    EXPECT_EQ(pipeline->transcode, veldnls::plain<veldnls::multiByteTranscodeResumable>);
    const bool fromMulti = row(route.source).encodingClass >= NLS_CLASS_SHIFTED;
    EXPECT_EQ(pipeline->source.sourceProfile, fromMulti ? &row(route.source).profile : nullptr);
    EXPECT_EQ(pipeline->source.targetProfile, fromMulti ? nullptr : &row(route.target).profile);
    EXPECT_EQ(pipeline->source.swapInput, route.source == U_B_UNICODE_CE ? 1 : 0);
    EXPECT_EQ(pipeline->source.swapOutput, route.target == U_B_UNICODE_CE || route.target == U_B_UCS4_CE ? 1 : 0);
    EXPECT_EQ(pipeline->source.unitSize, row(route.target).unitSize);
  }
}

TEST_F(MultiByte, SingleByteRoutesTakeTheTargetsBlank) {
  EXPECT_EQ(Pipeline(U_WLATIN1_CE, U_IBM937_CE)->source.padChar, 0x40u);
  EXPECT_EQ(Pipeline(U_IBM937_CE, U_WLATIN1_CE)->source.padChar, 0x20u);
}

TEST_F(MultiByte, TwoStageRoute) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_IBM937_CE);
  ASSERT_EQ(setups.size(), 2u);
  EXPECT_EQ(setups[0].slot, multibyteToUtf16);
  EXPECT_EQ(setups[0].side, &pipeline->source);
  EXPECT_EQ(setups[0].source, U_SHIFTJIS_CE);
  EXPECT_EQ(setups[0].target, U_L_UNICODE_CE);
  EXPECT_EQ(setups[1].slot, utf16ToMultibyte);
  EXPECT_EQ(setups[1].side, &pipeline->target);
  EXPECT_EQ(setups[1].source, U_L_UNICODE_CE);
  EXPECT_EQ(setups[1].target, U_IBM937_CE);
  EXPECT_EQ(pipeline->twoStage, 1);
  EXPECT_EQ(pipeline->transcodeResumable, veldnls::twoStageTranscodeResumable);
  EXPECT_EQ(pipeline->transcode, veldnls::twoStageTranscode);

  const EncodingDescriptor& utf16 = row(U_L_UNICODE_CE);
  const EncodingDescriptor& target = row(U_IBM937_CE);
  const PipelineSide& in = pipeline->source;
  EXPECT_EQ(in.cei, U_SHIFTJIS_CE);
  EXPECT_EQ(in.peerCei, U_L_UNICODE_CE);
  EXPECT_EQ(in.padChar, utf16.padChar);
  EXPECT_EQ(in.unitSize, utf16.unitSize);
  EXPECT_EQ(in.sourceProfile, &row(U_SHIFTJIS_CE).profile);
  EXPECT_EQ(in.targetProfile, &utf16.profile);
  const PipelineSide& out = pipeline->target;
  EXPECT_EQ(out.cei, U_L_UNICODE_CE);
  EXPECT_EQ(out.peerCei, U_IBM937_CE);
  EXPECT_EQ(out.padChar, target.padChar);
  EXPECT_EQ(out.unitSize, target.unitSize);
  EXPECT_EQ(out.sourceProfile, &utf16.profile);
  EXPECT_EQ(out.targetProfile, &target.profile);
}

TEST_F(MultiByte, RefusedSetupsRefuseThePipeline) {
  TranscodingPipeline record;
  for (const char* slot : {multibyteToUtf16, utf16ToMultibyte}) {
    refusedSlot = slot;
    EXPECT_EQ(veldnls::initPipeline(nls(), U_SHIFTJIS_CE, U_IBM937_CE, &record, nullptr), nlsModuleUnavailable);
    EXPECT_EQ(record.twoStage, 0);
    EXPECT_EQ(run(&record, hex("81"), 4).bytes, hex("81"));
  }
  refusedSlot = utf8ToMultibyte;
  EXPECT_EQ(veldnls::initPipeline(nls(), U_UTF8_CE, U_SHIFTJIS_CE, &record, nullptr), nlsModuleUnavailable);
  EXPECT_EQ(run(&record, hex("81"), 4).bytes, hex("81"));
}

// Kindred encodings copy in `transcode` and convert in `transcodeResumable`; a setup that fails isn't reported.
TEST_F(MultiByte, PairsWithoutConversion) {
  for (const CEI source : {U_SHIFTJIS_CE, U_MACOS1_CE, U_ASCII_CE, U_ANY_CE}) {
    refusedSlot.clear();
    {
      const Pipeline pipeline(source, U_SHIFTJIS_CE);
      ASSERT_NE(pipeline, nullptr);
      EXPECT_EQ(pipeline->twoStage, 1);
      EXPECT_EQ(pipeline->source.sourceProfile, &row(source).profile);
      EXPECT_EQ(plain(pipeline, hex("41 81"), 8), (Outcome{.status = 0, .bytes = hex("41 81")}));
      TranscodeProgress progress{};
      EXPECT_EQ(
          resume(pipeline, hex("41 81"), 8, progress),
          (Outcome{
              .status = nlsIncompleteInput, .bytes = hex("41"), .consumed = 2, .pending = true, .held = hex("81")}));
    }
    for (const char* slot : {multibyteToUtf16, utf16ToMultibyte}) {
      refusedSlot = slot;
      const Pipeline pipeline(source, U_SHIFTJIS_CE);
      ASSERT_NE(pipeline, nullptr);
      EXPECT_EQ(pipeline->twoStage, 0);
      EXPECT_EQ(run(pipeline, hex("41 81"), 8).bytes, hex("41 81"));
    }
  }
}

TEST_F(MultiByte, StagesGetTheModuleTheSideAndTheOptions) {
  const Pipeline little(U_L_UNICODE_CE, U_SHIFTJIS_CE);
  EXPECT_EQ(run(little, utf16(U"a\u4E41"), 8), (Outcome{.status = 0, .bytes = hex("61 80 41")}));
  EXPECT_EQ(lastCall.module, reinterpret_cast<CodePageModule*>(&module_));
  EXPECT_EQ(lastCall.side, &little->source);
  EXPECT_EQ(lastCall.option, 0u);
  const Pipeline big(U_B_UNICODE_CE, U_SHIFTJIS_CE);
  EXPECT_EQ(run(big, utf16(U"a\u4E41", true), 8, &dropBlanks), (Outcome{.status = 0, .bytes = hex("61 80 41")}));
  EXPECT_EQ(lastCall.option, NLS_SWAPPED_INPUT | NLS_ALLOW_BLANK_TRUNCATION);
  const Pipeline two(U_SHIFTJIS_CE, U_EUCJP_CE);
  TranscodeOptions options = dropBlanks;
  options.words[0] |= NLS_SWAPPED_INPUT;
  EXPECT_EQ(run(two, hex("61"), 8, &options).bytes, hex("61"));
  EXPECT_EQ(lastCall.side, &two->target);
  EXPECT_EQ(lastCall.option, NLS_ALLOW_BLANK_TRUNCATION);
}

// The bit is the run's, not the caller's.
TEST_F(MultiByte, ACallersSwappedInputReachesNoStage) {
  constexpr TranscodeOptions swappedInput{{NLS_SWAPPED_INPUT, 0, 0, 0}};
  const Pipeline pipeline(U_L_UNICODE_CE, U_SHIFTJIS_CE);
  EXPECT_EQ(run(pipeline, utf16(U"a"), 8, &swappedInput).bytes, hex("61"));
  EXPECT_EQ(lastCall.option, 0u);
}

// A text of encoding 204 has the same room on its way as one of the target's encoding.
TEST_F(MultiByte, TextsOfAnyEncodingPassWhole) {
  const Pipeline pipeline(U_ANY_CE, U_SHIFTJIS_CE);
  for (const size_t length : {1u, 2u, 4u, 7u, 1000u, 3000u}) {
    const Bytes text(length, 'a');
    TranscodeProgress progress{};
    EXPECT_EQ(run(pipeline, text, 4000), (Outcome{.status = 0, .bytes = text})) << length;
    EXPECT_EQ(resume(pipeline, text, 4000, progress),
              (Outcome{.status = 0, .bytes = text, .consumed = static_cast<uint32_t>(length)}));
  }
}

TEST_F(MultiByte, EmptyInputOnEveryRoute) {
  for (const auto& [source, target] : {std::pair{U_WLATIN1_CE, U_SHIFTJIS_CE},
                                       {U_SHIFTJIS_CE, U_WLATIN1_CE},
                                       {U_L_UNICODE_CE, U_SHIFTJIS_CE},
                                       {U_SHIFTJIS_CE, U_B_UNICODE_CE},
                                       {U_L_UCS4_CE, U_IBM937_CE},
                                       {U_SHIFTJIS_CE, U_L_UCS4_CE},
                                       {U_UTF8_CE, U_SHIFTJIS_CE},
                                       {U_SHIFTJIS_CE, U_UTF8_CE},
                                       {U_UTFE_CE, U_IBM937_CE},
                                       {U_SHIFTJIS_CE, U_UTFE_CE},
                                       // Two stages; pairs that need no conversion.
                                       {U_SHIFTJIS_CE, U_IBM937_CE},
                                       {U_SHIFTJIS_CE, U_SHIFTJIS_CE},
                                       {U_MACOS1_CE, U_SHIFTJIS_CE},
                                       {U_IBM937_CE, U_IBM937_CE},
                                       {U_ANY_CE, U_IBM937_CE},
                                       {U_SHIFTJIS_CE, U_ANY_CE},
                                       // Copies, checks, swaps and the like.
                                       {U_WLATIN1_CE, U_LATIN1_CE},
                                       {U_ANY_CE, U_WLATIN1_CE},
                                       {U_ANY_CE, U_UTF8_CE},
                                       {U_ANY_CE, U_UTFE_CE},
                                       {U_ANY_CE, U_L_UNICODE_CE},
                                       {U_ANY_CE, U_L_UCS4_CE},
                                       {U_UTF8_CE, U_ANY_CE},
                                       {U_UTF8_CE, U_UTF8_CE},
                                       {U_UTF8_CE, U_UTFE_CE},
                                       {U_L_UNICODE_CE, U_B_UNICODE_CE},
                                       {U_L_UCS4_CE, U_B_UCS4_CE},
                                       {U_UTF8_CE, U_L_UNICODE_CE},
                                       {U_PCOEM850_CE, U_WLATIN1_CE},
                                       {U_WLATIN1_CE, U_UTF8_CE},
                                       {U_UTF8_CE, U_WLATIN1_CE}}) {
    SCOPED_TRACE(testing::Message() << source << " to " << target);
    const Pipeline pipeline(source, target);
    ASSERT_NE(pipeline, nullptr);
    for (const size_t room : {size_t{0}, size_t{9}}) {
      TranscodeProgress progress{};
      EXPECT_EQ(plain(pipeline, {}, room), Outcome{});
      EXPECT_EQ(run(pipeline, {}, room), Outcome{});
      EXPECT_EQ(resume(pipeline, {}, room, progress), Outcome{});
    }
  }
}

TEST_F(MultiByte, ModuleKeepsItsObject) {
  EXPECT_EQ(nls()->multiByteModule->nls, nls());
  const Pipeline pipeline(U_SHIFTJIS_CE, U_EUCJP_CE);
  EXPECT_EQ(nls()->multiByteModule, &module_);
}

}  // namespace

}  // namespace transcode_test

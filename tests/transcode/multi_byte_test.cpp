// Routes through the multi-byte module, with a module of the test's own: which setup each pair calls, and the runs over
// one and two stages.
//
// The test's encoding: bytes below 0x80 are themselves; any other byte leads a two-byte character, U+4E00 plus its low
// seven bits times 256 plus the second byte. From Unicode everything else becomes "?", with a substitution.
#include <cstring>

#include "core/qznlsstub.h"
#include "transcode/harness.h"
#include "transcode/pipeline.h"
#include "transcode/routes.h"
#include "transcode/stages.h"

namespace transcode_test {

namespace {

constexpr uint32_t base = 0x4E00;

// How the last stage was called.
struct Call {
  const CodePageModule* module = nullptr;
  const PipelineSide* side = nullptr;
  uint32_t option = 0;
  int count = 0;
} lastCall;

void note(const CodePageModule* module, const PipelineSide* side, const TranscodeOptions* options) {
  lastCall = {module, side, options != nullptr ? options->words[0] : 0, lastCall.count + 1};
}

NlsStatus finish(uint32_t read, uint32_t written, NlsStatus status, bool substituted, uint32_t* outputLength,
                 TranscodeProgress* progress) {
  if (outputLength != nullptr) *outputLength = written;
  if (progress != nullptr) {
    progress->consumed = read;
    progress->flags &= ~NLS_PROGRESS_SUBSTITUTED;
    if (substituted) progress->flags |= NLS_PROGRESS_SUBSTITUTED;
  }
  return status;
}

// Leaves `consumed` ahead of an incomplete character and holds nothing.
NlsStatus toUnicodeStage(CodePageModule* module, PipelineSide* side, const void* input, uint32_t inputLength,
                         void* output, uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                         const TranscodeOptions* options) {
  note(module, side, options);
  const auto* in = static_cast<const uint8_t*>(input);
  auto* out = static_cast<uint8_t*>(output);
  uint32_t read = 0;
  uint32_t written = 0;
  NlsStatus status = 0;
  while (read < inputLength) {
    const uint32_t length = in[read] < 0x80 ? 1 : 2;
    if (inputLength - read < length) {
      status = progress != nullptr ? nlsIncompleteInput : nlsSubstituted;
      break;
    }
    if (outputSize - written < 2) {
      status = nlsOutputTruncated;
      break;
    }
    const uint32_t unit = length == 1 ? in[read] : base + (in[read] & 0x7Fu) * 256 + in[read + 1];
    out[written] = static_cast<uint8_t>(unit);
    out[written + 1] = static_cast<uint8_t>(unit >> 8);
    read += length;
    written += 2;
  }
  return finish(read, written, status, false, outputLength, progress);
}

NlsStatus fromUnicodeStage(CodePageModule* module, PipelineSide* side, const void* input, uint32_t inputLength,
                           void* output, uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                           const TranscodeOptions* options) {
  note(module, side, options);
  const auto* in = static_cast<const uint8_t*>(input);
  auto* out = static_cast<uint8_t*>(output);
  const int low = options != nullptr && (options->words[0] & NLS_SWAPPED_INPUT) != 0 ? 1 : 0;
  uint32_t read = 0;
  uint32_t written = 0;
  NlsStatus status = 0;
  bool substituted = false;
  while (inputLength - read >= 2) {
    const uint32_t unit = in[read + static_cast<uint32_t>(low)] + in[read + 1 - static_cast<uint32_t>(low)] * 256u;
    const uint32_t code = unit - base;
    const bool known = unit < 0x80 || code < 0x8000;
    const uint32_t length = known && unit >= 0x80 ? 2 : 1;
    if (outputSize - written < length) {
      status = nlsOutputTruncated;
      break;
    }
    if (length == 2) {
      out[written] = static_cast<uint8_t>(0x80 | code >> 8);
      out[written + 1] = static_cast<uint8_t>(code);
    } else {
      out[written] = known ? static_cast<uint8_t>(unit) : '?';
    }
    if (!known) {
      status = nlsSubstituted;
      substituted = true;
    }
    read += 2;
    written += length;
  }
  return finish(read, written, status, substituted, outputLength, progress);
}

// Names of the setup slots that ran, in order, and their arguments.
struct Setup {
  std::string slot;
  const PipelineSide* side;
  CEI source;
  CEI target;
};
std::vector<Setup> setups;
std::string refusedSlot;

template <const char* name, NlsModuleStage stage>
NlsStatus setup(MultiByteModule*, PipelineSide* side, const EncodingDescriptor* source,
                const EncodingDescriptor* target) {
  setups.push_back({name, side, source->cei, target->cei});
  if (refusedSlot == name) return nlsModuleUnavailable;
  side->stage = stage;
  return 0;
}

constexpr char byteToMultibyte[] = "byteToMultibyte";
constexpr char multibyteToByte[] = "multibyteToByte";
constexpr char utf16ToMultibyte[] = "utf16ToMultibyte";
constexpr char multibyteToUtf16[] = "multibyteToUtf16";
constexpr char utf32ToMultibyte[] = "utf32ToMultibyte";
constexpr char multibyteToUtf32[] = "multibyteToUtf32";
constexpr char utf8ToMultibyte[] = "utf8ToMultibyte";
constexpr char multibyteToUtf8[] = "multibyteToUtf8";
constexpr char utfeToMultibyte[] = "utfeToMultibyte";
constexpr char multibyteToUtfe[] = "multibyteToUtfe";

NlsStatus nothingToDestroy(void*) { return 0; }

MultiByteModule makeModule(QZNLS* object) {
  MultiByteModule module{};
  module.destroy = nothingToDestroy;
  module.nls = object;
  module.setupByteToMultibyte = setup<byteToMultibyte, fromUnicodeStage>;
  module.setupMultibyteToByte = setup<multibyteToByte, toUnicodeStage>;
  module.setupUtf16ToMultibyte = setup<utf16ToMultibyte, fromUnicodeStage>;
  module.setupMultibyteToUtf16 = setup<multibyteToUtf16, toUnicodeStage>;
  module.setupUtf32ToMultibyte = setup<utf32ToMultibyte, fromUnicodeStage>;
  module.setupMultibyteToUtf32 = setup<multibyteToUtf32, toUnicodeStage>;
  module.setupUtf8ToMultibyte = setup<utf8ToMultibyte, fromUnicodeStage>;
  module.setupMultibyteToUtf8 = setup<multibyteToUtf8, toUnicodeStage>;
  module.setupUtfeToMultibyte = setup<utfeToMultibyte, fromUnicodeStage>;
  module.setupMultibyteToUtfe = setup<multibyteToUtfe, toUnicodeStage>;
  return module;
}

class MultiByte : public testing::Test {
 protected:
  void SetUp() override {
    module_ = makeModule(nls());
    loaded_ = nls()->multiByteModule;
    nls()->multiByteModule = &module_;
    setups.clear();
    refusedSlot.clear();
    lastCall = {};
  }
  void TearDown() override { nls()->multiByteModule = loaded_; }

  MultiByteModule module_;
  MultiByteModule* loaded_ = nullptr;
};

const EncodingDescriptor* row(CEI cei) {
  const EncodingDescriptor* found = nullptr;
  nls()->getEncodingDescriptor(nls(), cei, &found);
  return found;
}

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
    const bool fromMulti = row(route.source)->encodingClass >= NLS_CLASS_SHIFTED;
    EXPECT_EQ(pipeline->source.sourceProfile, fromMulti ? &row(route.source)->profile : nullptr);
    EXPECT_EQ(pipeline->source.targetProfile, fromMulti ? nullptr : &row(route.target)->profile);
    EXPECT_EQ(pipeline->source.swapInput, route.source == U_B_UNICODE_CE ? 1 : 0);
    EXPECT_EQ(pipeline->source.swapOutput, route.target == U_B_UNICODE_CE || route.target == U_B_UCS4_CE ? 1 : 0);
    EXPECT_EQ(pipeline->source.unitSize, row(route.target)->unitSize);
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

  const EncodingDescriptor* utf16 = row(U_L_UNICODE_CE);
  const EncodingDescriptor* target = row(U_IBM937_CE);
  const PipelineSide& in = pipeline->source;
  EXPECT_EQ(in.cei, U_SHIFTJIS_CE);
  EXPECT_EQ(in.peerCei, U_L_UNICODE_CE);
  EXPECT_EQ(in.padChar, utf16->padChar);
  EXPECT_EQ(in.unitSize, utf16->unitSize);
  EXPECT_EQ(in.sourceProfile, &row(U_SHIFTJIS_CE)->profile);
  EXPECT_EQ(in.targetProfile, &utf16->profile);
  const PipelineSide& out = pipeline->target;
  EXPECT_EQ(out.cei, U_L_UNICODE_CE);
  EXPECT_EQ(out.peerCei, U_IBM937_CE);
  EXPECT_EQ(out.padChar, target->padChar);
  EXPECT_EQ(out.unitSize, target->unitSize);
  EXPECT_EQ(out.sourceProfile, &utf16->profile);
  EXPECT_EQ(out.targetProfile, &target->profile);
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
      EXPECT_EQ(pipeline->source.sourceProfile, &row(source)->profile);
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

TEST_F(MultiByte, TwoStageSubstitutions) {
  // 20AC, which the second stage doesn't know: no two-byte code of the first gives it, so a stage that does is put in.
  const Pipeline pipeline(U_SHIFTJIS_CE, U_EUCJP_CE);
  pipeline->source.stage = [](CodePageModule* m, PipelineSide* s, const void* in, uint32_t n, void* out, uint32_t size,
                              uint32_t* length, TranscodeProgress* progress, const TranscodeOptions* options) {
    const NlsStatus status = toUnicodeStage(m, s, in, n, out, size, length, progress, options);
    auto* units = static_cast<uint8_t*>(out);
    for (uint32_t i = 0; i + 1 < *length; i += 2) {
      if (units[i] == 'x' && units[i + 1] == 0) units[i] = 0xAC, units[i + 1] = 0x20;
    }
    return status;
  };
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

int runsOfFirstStage;

constexpr NlsModuleStage countedToUnicode = [](CodePageModule* m, PipelineSide* s, const void* in, uint32_t n,
                                               void* out, uint32_t size, uint32_t* length, TranscodeProgress* own,
                                               const TranscodeOptions* options) {
  ++runsOfFirstStage;
  return toUnicodeStage(m, s, in, n, out, size, length, own, options);
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
  pipeline->source.stage = [](CodePageModule* m, PipelineSide* s, const void* in, uint32_t n, void* out, uint32_t size,
                              uint32_t* length, TranscodeProgress* own, const TranscodeOptions* options) {
    if (++runsOfFirstStage == 2) return NlsStatus{nlsNoMemory};
    return toUnicodeStage(m, s, in, n, out, size, length, own, options);
  };
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

// A substitution in any piece is the run's, but a short output outweighs it.
TEST_F(MultiByte, SubstitutionsInPieces) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_EUCJP_CE);
  pipeline->source.stage = [](CodePageModule* m, PipelineSide* s, const void* in, uint32_t n, void* out, uint32_t size,
                              uint32_t* length, TranscodeProgress* own, const TranscodeOptions* options) {
    const NlsStatus status = toUnicodeStage(m, s, in, n, out, size, length, own, options);
    auto* units = static_cast<uint8_t*>(out);
    for (uint32_t i = 0; i + 1 < *length; i += 2) {
      if (units[i] == 'x' && units[i + 1] == 0) units[i] = 0xAC, units[i + 1] = 0x20;
    }
    return status;
  };
  Bytes text(5000, 'a');
  text[1500] = 'x';
  Bytes wanted = text;
  wanted[1500] = '?';
  EXPECT_EQ(run(pipeline, text, 5000), (Outcome{.status = nlsSubstituted, .bytes = wanted}));
  wanted.pop_back();
  EXPECT_EQ(run(pipeline, text, 4999), (Outcome{.status = nlsOutputTruncated, .bytes = wanted}));
}

TEST_F(MultiByte, APieceWithoutMemory) {
  const Pipeline pipeline(U_SHIFTJIS_CE, U_EUCJP_CE);
  runsOfFirstStage = 0;
  pipeline->source.stage = [](CodePageModule* m, PipelineSide* s, const void* in, uint32_t n, void* out, uint32_t size,
                              uint32_t* length, TranscodeProgress* own, const TranscodeOptions* options) {
    if (++runsOfFirstStage == 2) return NlsStatus{nlsNoMemory};
    return toUnicodeStage(m, s, in, n, out, size, length, own, options);
  };
  const Bytes text(3000, 'a');
  Bytes output(3000);
  uint32_t written = 99;
  EXPECT_EQ(pipeline->transcodeResumable(pipeline, text.data(), 3000, output.data(), 3000, &written, nullptr, nullptr),
            nlsNoMemory);
  EXPECT_EQ(runsOfFirstStage, 2);
  EXPECT_EQ(written, 0u);
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

TEST_F(MultiByte, ModuleKeepsItsObject) {
  EXPECT_EQ(nls()->multiByteModule->nls, nls());
  const Pipeline pipeline(U_SHIFTJIS_CE, U_EUCJP_CE);
  EXPECT_EQ(nls()->multiByteModule, &module_);
}

}  // namespace

}  // namespace transcode_test

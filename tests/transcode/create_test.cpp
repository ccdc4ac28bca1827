// Creation, refusal and destruction of pipelines, and their routes.
#include <cstring>

#include "core/qznlsstub.h"
#include "reference/reference.h"
#include "support/death.h"
#include "transcode/pipeline.h"

namespace transcode_test {

namespace {

int journalMarker;
void* const journal = &journalMarker;

TEST(Create, FillsTheRecord) {
  const Pipeline pipeline(U_WLATIN1_CE, U_UTF8_CE);
  ASSERT_NE(pipeline, nullptr);
  EXPECT_EQ(std::memcmp(pipeline->magic, "nevo", 4), 0);
  EXPECT_STREQ(pipeline->name, "Transcoding pipeline");
  EXPECT_EQ(pipeline->nls, nls());
  EXPECT_EQ(pipeline->sourceCei, U_WLATIN1_CE);
  EXPECT_EQ(pipeline->targetCei, U_UTF8_CE);
  EXPECT_EQ(pipeline->source.cei, U_WLATIN1_CE);
  EXPECT_EQ(pipeline->source.peerCei, U_UTF8_CE);
  EXPECT_EQ(pipeline->twoStage, 0);
  EXPECT_EQ(pipeline->options.words[0], 0u);
}

TEST(Create, FillsBothSidesFromTheirRows) {
  const Pipeline pipeline(U_UTFE_CE, U_B_UCS4_CE);
  EXPECT_EQ(pipeline->source.padChar, 0x40u);
  EXPECT_EQ(pipeline->target.padChar, 0x20000000u);
  EXPECT_EQ(pipeline->source.unitSize, 4);
  EXPECT_EQ(pipeline->source.encodingClass, NLS_CLASS_UTF8);
  EXPECT_EQ(pipeline->source.swapInput, 0);
  EXPECT_EQ(pipeline->source.swapOutput, 1);
  EXPECT_EQ(pipeline->destroy, nls()->destroyPipeline);
}

TEST(Create, ByteOrderFlags) {
  struct Row {
    CEI source, target;
    int swapInput, swapOutput;
  };
  for (const Row& row : {Row{U_L_UNICODE_CE, U_UTF8_CE, 0, 0}, Row{U_B_UNICODE_CE, U_UTF8_CE, 1, 0},
                         Row{U_L_UNICODE_CE, U_B_UNICODE_CE, 0, 0}, Row{U_B_UNICODE_CE, U_L_UNICODE_CE, 1, 0},
                         Row{U_B_UNICODE_CE, U_B_UCS4_CE, 1, 1}, Row{U_B_UCS4_CE, U_L_UNICODE_CE, 1, 0},
                         Row{U_WLATIN1_CE, U_B_UNICODE_CE, 0, 1}, Row{U_WLATIN1_CE, U_B_UCS4_CE, 0, 1},
                         Row{U_B_UNICODE_CE, U_WLATIN1_CE, 1, 0}, Row{U_B_UNICODE_CE, U_B_UNICODE_CE, 0, 0}}) {
    const Pipeline pipeline(row.source, row.target);
    EXPECT_EQ(pipeline->source.swapInput, row.swapInput) << row.source << " to " << row.target;
    EXPECT_EQ(pipeline->source.swapOutput, row.swapOutput) << row.source << " to " << row.target;
  }
}

TEST(Create, EveryUnicodePairConvertsTheSameText) {
  const std::u32string_view text = U"Aa\u0085\u20AC\uD7FF z";
  for (const TextForm& source : textForms) {
    for (const TextForm& target : textForms) {
      const Pipeline pipeline(source.cei, target.cei);
      const Outcome wanted{.status = 0, .bytes = textIn(target, text)};
      EXPECT_EQ(plain(pipeline, textIn(source, text), 64), wanted) << source.cei << " to " << target.cei;
      EXPECT_EQ(run(pipeline, textIn(source, text), 64), wanted) << source.cei << " to " << target.cei;
    }
  }
}

TEST(Create, SingleByteRoutesInEveryDirection) {
  const Bytes cp1252 = hex("41 80");
  for (const TextForm& form : textForms) {
    const Bytes text = textIn(form, U"A\u20AC");
    EXPECT_EQ(plain(Pipeline(U_WLATIN1_CE, form.cei), cp1252, 64), (Outcome{.status = 0, .bytes = text})) << form.cei;
    EXPECT_EQ(plain(Pipeline(form.cei, U_WLATIN1_CE), text, 64), (Outcome{.status = 0, .bytes = cp1252})) << form.cei;
  }
  EXPECT_EQ(plain(Pipeline(U_WLATIN1_CE, U_EBCDIC1047_CE), hex("41"), 4).bytes, hex("C1"));
}

TEST(Create, CeisOutsideTheTableAreRefused) {
  for (const CEI bad : {-1, 230, 1000, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(nls()->createPipeline(nls(), bad, U_L_UNICODE_CE, nullptr, nullptr), nullptr);
    EXPECT_EQ(nls()->createPipeline(nls(), U_L_UNICODE_CE, bad, nullptr, nullptr), nullptr);
    EXPECT_EQ(nls()->createToUtf16Pipeline(nls(), bad, nullptr, nullptr), nullptr);
    EXPECT_EQ(nls()->createFromUtf16Pipeline(nls(), bad, nullptr, nullptr), nullptr);
  }
}

TEST(Create, JournalTellsOfAnUnknownEncoding) {
  const test::Ending ending = test::runInChild([] { nls()->createPipeline(nls(), 230, 25, nullptr, journal); });
  EXPECT_NE(ending.output.find("qzlStatusToJnl: Unknown Encoding\n"), std::string::npos);
  const test::Ending silent = test::runInChild([] { nls()->createPipeline(nls(), 230, 25, nullptr, nullptr); });
  EXPECT_EQ(silent.output, "");
}

TEST(Create, JournalTellsOfMissingMemory) {
  const test::Ending ending = test::runInChild([] {
    host().memory.allowAllocation = [](uint32_t) -> NlsBool8 { return 0; };
    nls()->createPipeline(nls(), U_UTF8_CE, U_L_UNICODE_CE, nullptr, journal);
  });
  EXPECT_EQ(ending.signal, 0);
  EXPECT_NE(ending.output.find("qzlStatusToJnl: Insufficient Memory\n"), std::string::npos) << ending.output;
}

TEST(Create, UnicodeAliasIsResolved) {
  const Pipeline pipeline(U_UNICODE_CE, U_L_UNICODE_CE);
  ASSERT_NE(pipeline, nullptr);
  EXPECT_EQ(pipeline->sourceCei, U_L_UNICODE_CE);
  EXPECT_EQ(plain(pipeline, hex("41 00 42"), 8), (Outcome{.status = 0, .bytes = hex("41 00 42")}));
  const Pipeline target(U_UTF8_CE, U_UNICODE_CE);
  EXPECT_EQ(target->targetCei, U_L_UNICODE_CE);
}

TEST(Create, AliasesWithoutAHostLanguageEndTheProcess) {
  for (const CEI alias : {0, 5, 16}) {
    const test::Ending ending =
        test::runInChild([alias] { nls()->createPipeline(nls(), alias, U_L_UNICODE_CE, nullptr, nullptr); });
    EXPECT_NE(ending.signal, 0);
    EXPECT_NE(ending.output.find("Assertion failed: "), std::string::npos);
  }
}

CEI sessionAnswer;

// While it lives, the host answers the option of the session's encoding, and `sessionAnswer` is what it says.
class SessionEncoding {
 public:
  SessionEncoding() {
    services_.size = sizeof services_;
    services_.getOption = [](void*, const char16_t*, int32_t, int32_t type, void* buffer, int32_t*) -> NlsStatus {
      if (type != NLS_OPTION_INTEGER) return 1;
      std::memcpy(buffer, &sessionAnswer, sizeof sessionAnswer);
      return 0;
    };
    host().memory.services = &services_;
  }
  ~SessionEncoding() { host().memory.services = nullptr; }
  SessionEncoding(const SessionEncoding&) = delete;
  SessionEncoding& operator=(const SessionEncoding&) = delete;

 private:
  NlsHostServices services_{};
};

TEST(Create, SessionEncodingOutsideTheTableIsRefused) {
  const SessionEncoding session;
  for (const CEI answer : {230, 5000, INT32_MAX}) {
    sessionAnswer = answer;
    for (const auto& [source, target] : {std::pair{0, U_L_UNICODE_CE}, {U_UTF8_CE, 0}, {0, 0}}) {
      TranscodingPipeline record;
      std::memset(static_cast<void*>(&record), 0x5A, sizeof record);
      EXPECT_EQ(veldnls::initPipeline(nls(), source, target, &record, nullptr), nlsUnknownEncoding) << answer;
      EXPECT_EQ(record.magic[0], 0x5A) << "the record is left alone";
      EXPECT_EQ(nls()->createPipeline(nls(), source, target, nullptr, nullptr), nullptr) << answer;
    }
    EXPECT_EQ(nls()->createToUtf16Pipeline(nls(), 0, nullptr, nullptr), nullptr) << answer;
    EXPECT_EQ(nls()->createFromUtf16Pipeline(nls(), 0, nullptr, nullptr), nullptr) << answer;
  }
  const test::Ending ending = test::runInChild([] { nls()->createPipeline(nls(), 0, 25, nullptr, journal); });
  EXPECT_EQ(ending.signal, 0);
  EXPECT_NE(ending.output.find("QzlMessageToJnl: \n"), std::string::npos);
}

TEST(Create, SessionEncodingServesEncodingZero) {
  const SessionEncoding session;
  sessionAnswer = U_PCOEM850_CE;
  const Pipeline source(0, U_L_UNICODE_CE);
  ASSERT_NE(source, nullptr);
  EXPECT_EQ(source->sourceCei, U_PCOEM850_CE);
  const Pipeline target(U_L_UNICODE_CE, 0);
  ASSERT_NE(target, nullptr);
  EXPECT_EQ(target->targetCei, U_PCOEM850_CE);
}

// The session may be told to use the other name of utf-16le. It stays as it is, and its text is copied.
TEST(Create, SessionEncodingUtf16IsTheSameByteOrder) {
  const SessionEncoding session;
  sessionAnswer = U_UNICODE_CE;
  const Bytes text = hex("41 00 42 00 43");
  for (const auto& [source, target] : {std::pair{0, U_L_UNICODE_CE}, {U_L_UNICODE_CE, 0}}) {
    const Pipeline pipeline(source, target);
    ASSERT_NE(pipeline, nullptr);
    EXPECT_EQ(source == 0 ? pipeline->sourceCei : pipeline->targetCei, U_UNICODE_CE);
    EXPECT_EQ(plain(pipeline, text, 8), (Outcome{.status = 0, .bytes = text}));
    EXPECT_EQ(run(pipeline, text, 8), (Outcome{.status = 0, .bytes = text}));
  }
  EXPECT_EQ(plain(Pipeline(0, U_B_UNICODE_CE), hex("41 00"), 8).bytes, hex("00 41"));
  EXPECT_EQ(plain(Pipeline(U_B_UNICODE_CE, 0), hex("41 00"), 8).bytes, hex("00 41"));
}

// An answer below 1 is none: the host's own encoding comes next, and without that encoding 0 keeps its vacant row.
TEST(Create, NegativeSessionEncodingMeansTheHosts) {
  const SessionEncoding session;
  sessionAnswer = -5;
  QZNLS* object = nls();
  const CEI hostCei = object->hostCei;
  const NlsStatus hostStatus = object->hostCeiStatus;
  object->hostCei = U_WLATIN1_CE;
  object->hostCeiStatus = 0;
  for (const CEI answer : {-5, 0, INT32_MIN}) {
    sessionAnswer = answer;
    const Pipeline source(0, U_L_UNICODE_CE);
    ASSERT_NE(source, nullptr);
    EXPECT_EQ(source->sourceCei, U_WLATIN1_CE);
    const Pipeline target(U_UTF8_CE, 0);
    ASSERT_NE(target, nullptr);
    EXPECT_EQ(target->targetCei, U_WLATIN1_CE);
  }
  object->hostCeiStatus = nlsUnknownEncoding;
  EXPECT_EQ(object->createPipeline(object, 0, U_L_UNICODE_CE, nullptr, nullptr), nullptr);
  EXPECT_EQ(object->createPipeline(object, U_UTF8_CE, 0, nullptr, nullptr), nullptr);
  object->hostCei = hostCei;
  object->hostCeiStatus = hostStatus;
}

TEST(Create, ShortFormsOfCreation) {
  TranscodingPipeline* to = nls()->createToUtf16Pipeline(nls(), U_UTF8_CE, &dropBlanks, nullptr);
  ASSERT_NE(to, nullptr);
  EXPECT_EQ(to->targetCei, U_L_UNICODE_CE);
  EXPECT_EQ(to->options.words[0], NLS_ALLOW_BLANK_TRUNCATION);
  EXPECT_EQ(plain(to, hex("41"), 8).bytes, hex("41 00"));
  EXPECT_EQ(nls()->destroyPipeline(to), 0u);
  TranscodingPipeline* from = nls()->createFromUtf16Pipeline(nls(), U_UTF8_CE, nullptr, nullptr);
  ASSERT_NE(from, nullptr);
  EXPECT_EQ(plain(from, hex("41 00"), 8).bytes, hex("41"));
  EXPECT_EQ(from->destroy(from), 0u);
}

TEST(Create, PagesWithoutTablesAreRefused) {
  for (const CEI bare : {77, 94, 107, 170, 171}) {
    EXPECT_EQ(nls()->createPipeline(nls(), bare, U_L_UNICODE_CE, nullptr, nullptr), nullptr) << bare;
    EXPECT_EQ(nls()->createPipeline(nls(), U_L_UNICODE_CE, bare, nullptr, nullptr), nullptr) << bare;
  }
  const test::Ending ending = test::runInChild([] { nls()->createPipeline(nls(), 77, 25, nullptr, journal); });
  EXPECT_NE(ending.output.find("QzlMessageToJnl: \n"), std::string::npos);
}

TEST(Create, SingleByteModuleThatCantBeLoadedIsRefused) {
  QZNLS* object = nls();
  object->singleByteModule->destroy(object->singleByteModule);
  object->singleByteModule = nullptr;
  veldnls::hideExtension(u"qznlssb");
  for (const auto& [source, target] : {std::pair{62, 25}, {62, 97}, {25, 62}, {20, 62}, {27, 62}, {161, 62}}) {
    TranscodingPipeline record;
    EXPECT_EQ(veldnls::initPipeline(object, source, target, &record, nullptr), nlsModuleUnavailable);
    // What is left is a pipeline that copies.
    EXPECT_EQ(plain(&record, hex("41 42 43"), 2), (Outcome{.status = nlsOutputTruncated, .bytes = hex("41 42")}));
    EXPECT_EQ(run(&record, hex("41 42 43"), 3), (Outcome{.status = 0, .bytes = hex("41 42 43")}));
    EXPECT_EQ(object->createPipeline(object, source, target, nullptr, nullptr), nullptr);
  }
  // Routes that need no module don't ask for it.
  TranscodingPipeline* unicode = object->createPipeline(object, 20, 25, nullptr, nullptr);
  EXPECT_NE(unicode, nullptr);
  unicode->destroy(unicode);
  veldnls::hideExtension(nullptr);
  TranscodingPipeline* pipeline = object->createPipeline(object, 62, 25, nullptr, nullptr);
  ASSERT_NE(pipeline, nullptr);
  EXPECT_NE(object->singleByteModule, nullptr);
  pipeline->destroy(pipeline);
}

TEST(Create, MultiByteModuleThatCantBeLoadedIsRefused) {
  MultiByteModule* const loaded = nls()->multiByteModule;
  nls()->multiByteModule = nullptr;
  veldnls::hideExtension(u"qznlsmb");
  for (const CEI multi : {U_SHIFTJIS_CE, U_EUCJP_CE, U_IBM937_CE, U_GB18030_CE}) {
    for (const CEI other : {U_WLATIN1_CE, U_UTF8_CE, U_UTFE_CE, U_L_UNICODE_CE, U_B_UCS4_CE, U_HITQUOKANA_CE, multi}) {
      TranscodingPipeline record;
      EXPECT_EQ(veldnls::initPipeline(nls(), multi, other, &record, nullptr), nlsModuleUnavailable)
          << multi << " to " << other;
      EXPECT_EQ(veldnls::initPipeline(nls(), other, multi, &record, nullptr), nlsModuleUnavailable)
          << other << " to " << multi;
      EXPECT_EQ(nls()->createPipeline(nls(), other, multi, nullptr, nullptr), nullptr);
    }
  }
  EXPECT_EQ(nls()->multiByteModule, nullptr);
  const test::Ending ending = test::runInChild([] { nls()->createPipeline(nls(), 138, 25, nullptr, journal); });
  EXPECT_NE(ending.output.find("QzlMessageToJnl: \n"), std::string::npos);
  veldnls::hideExtension(nullptr);
  nls()->multiByteModule = loaded;
}

TEST(Create, RefusedPipelinesLeaveNoMemoryBehind) {
  const auto place = [] {
    const Pipeline pipeline(U_UTF8_CE, U_L_UNICODE_CE);
    return static_cast<const void*>(pipeline);
  };
  const void* before = place();
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(nls()->createPipeline(nls(), 77, U_L_UNICODE_CE, nullptr, nullptr), nullptr);
  }
  EXPECT_EQ(place(), before);
}

TEST(Destroy, FreesWhatThePipelineOwns) {
  XmPool* pool = nls()->pool;
  const auto overlay = [pool] {
    auto* record = veldnls::nlsPoolNew<CodeOverlay>(pool);
    record->count = 2;
    record->pairs = static_cast<NlsCodePair*>(veldnls::nlsPoolAlloc(pool, 2 * sizeof(NlsCodePair), 0));
    return record;
  };
  // Twice the same: a block that wasn't freed would push the second round's blocks elsewhere.
  const void* places[2][4];
  for (auto& place : places) {
    TranscodingPipeline* pipeline = nls()->createPipeline(nls(), U_UTF8_CE, U_L_UNICODE_CE, nullptr, nullptr);
    auto* map = static_cast<uint8_t*>(veldnls::nlsPoolAlloc(pool, 256, 0));
    pipeline->source.byteMap = map;
    pipeline->source.overlay = overlay();
    pipeline->target.overlay = overlay();
    pipeline->flags = NLS_PIPELINE_OWNS_BYTE_MAP | NLS_PIPELINE_OWNS_SOURCE_OVERLAY | NLS_PIPELINE_OWNS_TARGET_OVERLAY;
    place[0] = pipeline;
    place[1] = map;
    place[2] = pipeline->source.overlay->pairs;
    place[3] = pipeline->target.overlay->pairs;
    EXPECT_EQ(pipeline->destroy(pipeline), 0u);
  }
  for (int i = 0; i < 4; ++i) EXPECT_EQ(places[0][i], places[1][i]) << i;
}

TEST(Destroy, LeavesWhatItDoesntOwn) {
  TranscodingPipeline* pipeline = nls()->createPipeline(nls(), U_UTF8_CE, U_L_UNICODE_CE, nullptr, nullptr);
  uint8_t map[256] = {};
  NlsCodePair pair{1, 2};
  CodeOverlay shared{1, &pair};
  pipeline->source.byteMap = map;
  pipeline->source.overlay = &shared;
  pipeline->target.overlay = &shared;
  EXPECT_EQ(pipeline->destroy(pipeline), 0u);
  // And what isn't there.
  pipeline = nls()->createPipeline(nls(), U_UTF8_CE, U_L_UNICODE_CE, nullptr, nullptr);
  pipeline->flags = NLS_PIPELINE_OWNS_BYTE_MAP | NLS_PIPELINE_OWNS_SOURCE_OVERLAY | NLS_PIPELINE_OWNS_TARGET_OVERLAY;
  EXPECT_EQ(pipeline->destroy(pipeline), 0u);
}

}  // namespace

}  // namespace transcode_test

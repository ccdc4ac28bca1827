// GB18030 through its module, and without it.
#include "core/qznlsstub.h"
#include "modules/qznlsmb/rows.h"
#include "transcode/pipeline.h"

namespace transcode_test {
namespace {

// An object of its own, whose multi-byte module nobody has used.
class Gb18030Pipelines : public testing::Test {
 protected:
  void SetUp() override {
    void* made = nullptr;
    ASSERT_EQ(VELDNLSLIB(5, host().input(), &made), 0u);
    object_ = static_cast<QZNLS*>(made);
  }
  void TearDown() override {
    veldnls::hideExtension(nullptr);
    object_->destroy(object_);
  }

  TranscodingPipeline* make(CEI source, CEI target) {
    return object_->createPipeline(object_, source, target, nullptr, nullptr);
  }

  QZNLS* object_ = nullptr;
};

const Bytes fourBytes = utf16(U"\u0080");
const Bytes euro = utf16(U"\u20AC");

TEST_F(Gb18030Pipelines, ATargetUsesTheModuleThatIsThereWhenItIsMade) {
  TranscodingPipeline* before = make(U_L_UNICODE_CE, U_GB18030_CE);
  TranscodingPipeline* before8 = make(U_UTF8_CE, U_GB18030_CE);
  ASSERT_NE(before, nullptr);
  EXPECT_EQ(object_->multiByteModule->gbModule, nullptr);
  TranscodingPipeline* source = make(U_GB18030_CE, U_L_UNICODE_CE);
  ASSERT_NE(source, nullptr);
  EXPECT_NE(object_->multiByteModule->gbModule, nullptr);
  TranscodingPipeline* after = make(U_L_UNICODE_CE, U_GB18030_CE);
  TranscodingPipeline* after8 = make(U_UTF8_CE, U_GB18030_CE);

  const Bytes character = utf16(U"\u0451\u0452\u00A5");
  EXPECT_EQ(run(after, character, 16), (Outcome{.status = nlsSubstituted, .bytes = hex("A7 D7 20 81 30 84 36")}));
  EXPECT_EQ(run(after8, utf8(U"\u0451\u0452\u00A5"), 16).bytes, hex("A7 D7 20 81 30 84 36"));
  // The earlier ones go on as they began.
  for (TranscodingPipeline* pipeline : {before, before8}) {
    const Bytes text = pipeline == before ? character : utf8(U"\u0451\u0452\u00A5");
    EXPECT_EQ(run(pipeline, text, 16), (Outcome{.status = nlsSubstituted, .bytes = hex("A7 D7 A1 A1 A3 A4")}));
  }
  for (TranscodingPipeline* pipeline : {before, before8, source, after, after8}) pipeline->destroy(pipeline);
}

TEST_F(Gb18030Pipelines, AModuleThatCantBeLoadedRefusesTheSource) {
  veldnls::hideExtension(u"qznlsgb");
  TranscodingPipeline record;
  for (const CEI target : {U_L_UNICODE_CE, U_UTF8_CE, U_UTFE_CE, U_B_UCS4_CE, U_SHIFTJIS_CE}) {
    EXPECT_EQ(veldnls::initPipeline(object_, U_GB18030_CE, target, &record, nullptr), nlsModuleUnavailable) << target;
    EXPECT_EQ(make(U_GB18030_CE, target), nullptr);
  }
  EXPECT_EQ(object_->multiByteModule->gbModule, nullptr);
  // As a target, and towards single bytes, it needs none.
  for (const auto& [source, target] : {std::pair{U_L_UNICODE_CE, U_GB18030_CE}, {U_GB18030_CE, U_WLATIN1_CE}}) {
    TranscodingPipeline* pipeline = make(source, target);
    ASSERT_NE(pipeline, nullptr);
    pipeline->destroy(pipeline);
  }
  // Later it may be there.
  veldnls::hideExtension(nullptr);
  TranscodingPipeline* pipeline = make(U_GB18030_CE, U_L_UNICODE_CE);
  ASSERT_NE(pipeline, nullptr);
  EXPECT_EQ(run(pipeline, hex("81 30 81 30"), 8), (Outcome{.bytes = fourBytes}));
  pipeline->destroy(pipeline);
}

TEST_F(Gb18030Pipelines, ToUnicode) {
  TranscodingPipeline* pipeline = make(U_GB18030_CE, U_L_UNICODE_CE);
  EXPECT_EQ(run(pipeline, hex("81 30 81 30"), 8), (Outcome{.bytes = fourBytes}));
  EXPECT_EQ(run(pipeline, hex("A2 E3"), 8), (Outcome{.bytes = euro}));
  EXPECT_EQ(run(pipeline, hex("80"), 8), (Outcome{.bytes = euro}));
  EXPECT_EQ(run(pipeline, hex("A1 A1"), 8), (Outcome{.bytes = utf16(U"\u3000")}));
  // What has no mapping is a blank, also behind the last code.
  EXPECT_EQ(run(pipeline, hex("84 31 A2 34 61"), 8), (Outcome{.status = nlsSubstituted, .bytes = utf16(U" a")}));
  EXPECT_EQ(run(pipeline, hex("FF FF 61"), 8), (Outcome{.status = nlsSubstituted, .bytes = utf16(U" a")}));
  EXPECT_EQ(run(pipeline, hex("90 30 81 30"), 8), (Outcome{.status = nlsSubstituted, .bytes = utf16(U" ")}));
  // The third and the fourth byte may be anything.
  EXPECT_EQ(run(pipeline, hex("81 30 20 20 61"), 8), (Outcome{.status = nlsSubstituted, .bytes = utf16(U" a")}));
  EXPECT_EQ(run(pipeline, hex("61 81 30 81"), 8), (Outcome{.status = nlsSubstituted, .bytes = utf16(U"a")}));
  TranscodeProgress progress{};
  EXPECT_EQ(resume(pipeline, hex("61 81 30 81"), 8, progress), (Outcome{.status = nlsIncompleteInput,
                                                                        .bytes = utf16(U"a"),
                                                                        .consumed = 4,
                                                                        .pending = true,
                                                                        .held = hex("81 30 81")}));
  EXPECT_EQ(resume(pipeline, hex("30 62"), 8, progress), (Outcome{.bytes = utf16(U"\u0080b"), .consumed = 2}));
  pipeline->destroy(pipeline);
}

TEST_F(Gb18030Pipelines, FromUnicode) {
  TranscodingPipeline* loads = make(U_GB18030_CE, U_L_UNICODE_CE);
  TranscodingPipeline* pipeline = make(U_L_UNICODE_CE, U_GB18030_CE);
  EXPECT_EQ(run(pipeline, fourBytes, 8), (Outcome{.bytes = hex("81 30 81 30")}));
  EXPECT_EQ(run(pipeline, euro, 8), (Outcome{.bytes = hex("A2 E3")}));
  EXPECT_EQ(run(pipeline, utf16(U"\u0452"), 8), (Outcome{.status = nlsSubstituted, .bytes = hex("20")}));
  // Supplementary characters are looked up by their low 16 bits.
  EXPECT_EQ(run(pipeline, utf16(U"\U0001F600"), 8), (Outcome{.status = nlsSubstituted, .bytes = hex("20")}));
  EXPECT_EQ(run(pipeline, utf16(U"\U0001E000"), 8), (Outcome{.bytes = hex("AA A1")}));
  // A code is written whole or not begun.
  for (size_t capacity = 0; capacity < 4; ++capacity) {
    EXPECT_EQ(run(pipeline, fourBytes, capacity), (Outcome{.status = nlsOutputTruncated}));
    EXPECT_EQ(run(pipeline, euro, capacity).bytes.size(), capacity < 2 ? 0u : 2u);
  }
  EXPECT_EQ(run(pipeline, utf16(U"\u0452"), 0), (Outcome{.status = nlsOutputTruncated}));
  pipeline->destroy(pipeline);
  loads->destroy(loads);
}

// Pipelines ask the module's slots for every character, and go by its tables only when the slots are its own.
TEST_F(Gb18030Pipelines, TheModulesSlotsAreAsked) {
  TranscodingPipeline* loads = make(U_GB18030_CE, U_L_UNICODE_CE);
  Gb18030Module& module = *object_->multiByteModule->gbModule;
  module.toUnicode = [](Gb18030Module*, uint32_t code) { return code == 0x8140 ? 0x4E01u : 0x20u; };
  module.fromUnicode = [](Gb18030Module*, uint32_t unit) { return unit == 0x4E02 ? 0x8139u << 16 | 1 : 0x20u; };
  TranscodingPipeline* to = make(U_GB18030_CE, U_L_UNICODE_CE);
  TranscodingPipeline* from = make(U_L_UNICODE_CE, U_GB18030_CE);
  EXPECT_EQ(run(to, hex("61 81 40 81 41"), 16), (Outcome{.status = nlsSubstituted, .bytes = utf16(U"a\u4E01 ")}));
  EXPECT_EQ(run(from, utf16(U"a\u4E02\u4E03"), 16),
            (Outcome{.status = nlsSubstituted, .bytes = hex("61 81 39 00 01 20")}));
  for (TranscodingPipeline* pipeline : {loads, to, from}) pipeline->destroy(pipeline);
}

}  // namespace
}  // namespace transcode_test

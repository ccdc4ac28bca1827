// Every encoding to every other: a pipeline is made or refused, runs on three texts, and gives its memory back.
#include <set>

#include "faults/failing_memory.h"
#include "page_text.h"
#include "reference/checked_route.h"
#include "transcode/harness.h"

namespace pipelines_test {

namespace {

using transcode_test::Bytes;
using transcode_test::encodingText;
using transcode_test::host;
using transcode_test::isCopied;
using transcode_test::isMultiByteClass;
using transcode_test::MultiByteOutcome;
using transcode_test::nls;
using transcode_test::Outcome;
using transcode_test::Pipeline;
using transcode_test::RunState;
using transcode_test::Span;

bool hasPage(CEI cei, bool readable) {
  static const std::vector<test::RowText> pages = test::readRowTexts();
  for (const test::RowText& page : pages) {
    if (page.cei == cei) return page.form != "none" && (readable || page.form != "to");
  }
  return false;
}

// Only a page without a table in the direction that is needed is refused, and only where Unicode is on the way.
bool isRefused(CEI source, CEI target) {
  if (isCopied(source, target)) return false;
  const int sourceClass = encodingText(source).encodingClass;
  const int targetClass = encodingText(target).encodingClass;
  if (isMultiByteClass(sourceClass) || isMultiByteClass(targetClass)) return false;
  // A map of bytes is built for pages that can be written, to pages that can be read.
  if (sourceClass == 0 && targetClass == 0) return !hasPage(source, false) || !hasPage(target, true);
  return (sourceClass == 0 && !hasPage(source, true)) || (targetClass == 0 && !hasPage(target, false));
}

// Characters of several modes in turn, as far as an encoding has them.
constexpr std::u32string_view alternating =
    U"a\u3042b\uFF71\u4E00c \u3000\uAC00\u4E2Dd\u20AC\u0416\n\uE000e\u3042\u3043\u3044";

Bytes mixedText(CEI cei) {
  const auto& row = encodingText(cei);
  const Bytes utf16 = transcode_test::utf16(alternating);
  if (isMultiByteClass(row.encodingClass)) {
    return transcode_test::expectedMultiByte(U_L_UNICODE_CE, cei, utf16, 16 * utf16.size(), {}).outcome.bytes;
  }
  for (const auto& form : transcode_test::textForms) {
    if (form.cei == cei) return transcode_test::textIn(form, alternating);
  }
  return {'a', 'b', 0x80, 0xA4, 0xC3, ' ', '\n', 0xE1, 0xFF};
}

Bytes plainText(CEI cei) {
  for (const auto& form : transcode_test::textForms) {
    if (form.cei == cei) return transcode_test::textIn(form, U"Veld 42");
  }
  if (encodingText(cei).blank() == 0x40) return {0xE5, 0x85, 0x93, 0x84, 0x40, 0xF4, 0xF2};
  return {'V', 'e', 'l', 'd', ' ', '4', '2'};
}

// All bytes, shifts and half characters among them.
Bytes hostileText(CEI cei) {
  Bytes text;
  for (unsigned i = 0; i < 96; ++i) text.push_back(static_cast<uint8_t>(i * 89 + static_cast<unsigned>(cei)));
  constexpr uint8_t sequences[] = {0x0E, 0x0F, 0x0F, 0x0E, 0x0E, 0x1B, 0x24, 0x42, 0x3F, 0x75, 0x0A, 0x28, 0x81};
  text.insert(text.end(), std::begin(sequences), std::end(sequences));
  return text;
}

MultiByteOutcome expected(CEI source, CEI target, Span text, size_t room, const RunState& state) {
  if (!isCopied(source, target) || isMultiByteClass(encodingText(target).encodingClass)) {
    return transcode_test::expectedMultiByte(source, target, text, room, state);
  }
  return {
      {.bytes = Bytes(text.begin(), text.end()), .consumed = static_cast<uint32_t>(state.resumable ? text.size() : 0)}};
}

void checkRuns(TranscodingPipeline* pipeline, Span text, bool hasReference) {
  const CEI source = pipeline->sourceCei;
  const CEI target = pipeline->targetCei;
  const size_t room = 16 * text.size() + 64;
  const Outcome plain = transcode_test::plain(pipeline, text, room);
  const Outcome run = transcode_test::run(pipeline, text, room);
  TranscodeProgress progress{};
  const Outcome resumed = transcode_test::resume(pipeline, text, room, progress);
  const bool doubleMode = (progress.flags & NLS_PROGRESS_DOUBLE_MODE) != 0;
  if (!isCopied(source, target)) {
    ASSERT_EQ(plain, run);
  } else {
    ASSERT_EQ(plain, (Outcome{.bytes = Bytes(text.begin(), text.end())}));
  }
  if (!hasReference) return;
  const RunState resuming{.resumable = true, .gbLoaded = true};
  ASSERT_EQ(run, expected(source, target, text, room, {.gbLoaded = true}).outcome);
  ASSERT_EQ((MultiByteOutcome{resumed, doubleMode}), expected(source, target, text, room, resuming));
}

class AllPairs : public testing::TestWithParam<CEI> {};

TEST_P(AllPairs, AreMadeRunAndEnd) {
  const test::DbcsLanguage language(host(), u"UNKNOWN");
  transcode_test::loadGbModule();
  const CEI given = GetParam();
  const Pipeline warm(U_WLATIN1_CE, U_L_UNICODE_CE);
  for (CEI target = 0; target < NLS_CEI_COUNT; ++target) {
    SCOPED_TRACE(std::to_string(given) + " to " + std::to_string(target));
    const faults_test::Balance before(host().memory.context);
    const uint64_t used = faults_test::usedBytes(nls()->pool);
    {
      const Pipeline pipeline(given, target);
      if (pipeline != nullptr) {
        const CEI source = pipeline->sourceCei;
        ASSERT_FALSE(isRefused(source, pipeline->targetCei));
        const bool hasReference = isMultiByteClass(encodingText(source).encodingClass) ||
                                  isMultiByteClass(encodingText(pipeline->targetCei).encodingClass);
        for (const Bytes& text : {plainText(source), mixedText(source), hostileText(source)}) {
          ASSERT_NO_FATAL_FAILURE(checkRuns(pipeline, text, hasReference)) << test::toHex(text);
        }
      } else {
        ASSERT_TRUE(isRefused(given, target));
      }
    }
    ASSERT_EQ(faults_test::usedBytes(nls()->pool), used);
    ASSERT_EQ(faults_test::Balance(host().memory.context), before);
  }
}

INSTANTIATE_TEST_SUITE_P(Sources, AllPairs, testing::Range(CEI{0}, CEI{NLS_CEI_COUNT}));

}  // namespace

}  // namespace pipelines_test

// The stages among Unicode forms. All have the signature and the contract of NlsUnicodeStage; `pipeline` supplies the
// pool, the default options, `swapOutput` and, in the byte-wise stages, the blanks.
//
// Stages work on little-endian units. A big-endian source comes in through the swapped form of a stage, a big-endian
// target is turned around in place behind the run if `swapOutput` of the source side is set.
#pragma once

#include <type_traits>

#include "transcode/stage_shell.h"
#include "transcode/two_stage.h"
#include "veldnls/cei.h"
#include "veldnls/pipeline.h"

namespace veldnls {

using StageFunction = std::remove_pointer_t<NlsUnicodeStage>;

// Copies bytes without looking at them; held bytes of a progress record are left alone.
StageFunction copyStage;

// Copy whole units. With a progress record a rest that is no whole character is held. The test for a split surrogate
// pair reads the last unit as big-endian in both byte orders, so that it doesn't see a split pair of utf-16le, and may
// hold back a little-endian unit that reads like one. Nothing else is tested. Blanks are little-endian ones.
StageFunction utf16Check;
StageFunction utf32Check;

// To the other byte order. The 16-bit form holds nothing: an odd byte is left unread with nlsOutputTruncated. Blanks
// are those of the source row.
StageFunction utf16Swap;
StageFunction utf32Swap;

extern const StageRow utf8ToUtf16Row;
extern const StageRow utf8ToUtf32Row;
extern const StageRow utfEbcdicToUtf16Row;
extern const StageRow utfEbcdicToUtf32Row;
extern const StageRow utf16ToUtf8Row;
extern const StageRow utf16ToUtfEbcdicRow;
extern const StageRow utf16ToUtf32Row;
extern const StageRow utf32ToUtf8Row;
extern const StageRow utf32ToUtfEbcdicRow;
extern const StageRow utf32ToUtf16Row;

// From UTF-8. Each bad sequence becomes one U+FFFD. To UTF-16: see needsPair for plane 16; a supplementary character
// that finds room for only one unit becomes U+FFFD and ends the run. To UTF-32 values above U+10FFFF pass.
inline constexpr NlsUnicodeStage utf8ToUtf16 = stage<utf8ToUtf16Row>;
inline constexpr NlsUnicodeStage utf8ToUtf32 = stage<utf8ToUtf32Row>;

// From UTF-EBCDIC. Trailing bytes aren't tested, two-byte sequences lose their lead's bits, and a byte that begins no
// sequence becomes U+0000 without a status.
inline constexpr NlsUnicodeStage utfEbcdicToUtf16 = stage<utfEbcdicToUtf16Row>;
inline constexpr NlsUnicodeStage utfEbcdicToUtf32 = stage<utfEbcdicToUtf32Row>;

// From UTF-16. To the eight-bit forms the unit behind a high surrogate is taken for a low one unseen, and is read as
// little-endian in the swapped form too; a lone low surrogate is encoded as it is. To UTF-32 a lone surrogate becomes
// U+FFFD, a high one together with the unit behind it.
inline constexpr NlsUnicodeStage utf16ToUtf8 = stage<utf16ToUtf8Row>;
inline constexpr NlsUnicodeStage utf16ToUtfEbcdic = stage<utf16ToUtfEbcdicRow>;
inline constexpr NlsUnicodeStage utf16ToUtf32 = stage<utf16ToUtf32Row>;

// From UTF-32. To the eight-bit forms only a value with bit 31 set is replaced; others are encoded, above U+10FFFF too.
inline constexpr NlsUnicodeStage utf32ToUtf8 = stage<utf32ToUtf8Row>;
inline constexpr NlsUnicodeStage utf32ToUtfEbcdic = stage<utf32ToUtfEbcdicRow>;
inline constexpr NlsUnicodeStage utf32ToUtf16 = stage<utf32ToUtf16Row>;

// Two stages with UTF-16LE between them. Without a progress record the status is the second stage's: a substitution by
// the first shows in the text only. Half a surrogate pair at the end of the text between them is replaced by nothing.
// That text has the room that `source` needs, whatever the pipeline's source CEI is: the form may stand for an encoding
// that needs no conversion to it.
template <CEI source, NlsUnicodeStage first, NlsUnicodeStage second>
NlsStatus throughUtf16(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                       uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                       const TranscodeOptions* options) {
  return runTwoStages(source, first, second, pipeline, input, inputLength, output, outputSize, outputLength, progress,
                      options);
}
inline constexpr NlsUnicodeStage utf8RoundTrip = throughUtf16<U_UTF8_CE, utf8ToUtf16, utf16ToUtf8>;
inline constexpr NlsUnicodeStage utfEbcdicRoundTrip = throughUtf16<U_UTFE_CE, utfEbcdicToUtf16, utf16ToUtfEbcdic>;
inline constexpr NlsUnicodeStage utfEbcdicToUtf8 = throughUtf16<U_UTFE_CE, utfEbcdicToUtf16, utf16ToUtf8>;
inline constexpr NlsUnicodeStage utf8ToUtfEbcdic = throughUtf16<U_UTF8_CE, utf8ToUtf16, utf16ToUtfEbcdic>;

// The runs of routes through the multi-byte module: the stage of the source side, or those of both sides with UTF-16LE
// between them. The status of a two-stage run is the second stage's. With a progress record a status of the first
// stage, limited to what the second took, outweighs it; but a substitution by the second stands, unless the input ended
// inside a character.
StageFunction multiByteTranscodeResumable;
StageFunction twoStageTranscodeResumable;

// The plain form of the last one. Short texts go by the module's direct run, if it takes them.
std::remove_pointer_t<NlsTranscode> twoStageTranscode;

// The plain form of a stage: its run without progress.
template <NlsUnicodeStage stage>
NlsStatus plain(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                uint32_t outputSize, uint32_t* outputLength, const TranscodeOptions* options) {
  return stage(pipeline, input, inputLength, output, outputSize, outputLength, nullptr, options);
}

// The swapped form of a stage: it reads big-endian units.
template <NlsUnicodeStage stage>
NlsStatus swapped(TranscodingPipeline* pipeline, const void* input, uint32_t inputLength, void* output,
                  uint32_t outputSize, uint32_t* outputLength, TranscodeProgress* progress,
                  const TranscodeOptions* options) {
  TranscodeOptions copy = options != nullptr ? *options : TranscodeOptions{};
  copy.words[0] |= NLS_SWAPPED_INPUT;
  return stage(pipeline, input, inputLength, output, outputSize, outputLength, progress, &copy);
}

// Stores a stage and its plain form as the runs of a pipeline.
template <NlsUnicodeStage stage>
void installRuns(TranscodingPipeline* pipeline) {
  pipeline->transcode = plain<stage>;
  pipeline->transcodeResumable = stage;
}

}  // namespace veldnls

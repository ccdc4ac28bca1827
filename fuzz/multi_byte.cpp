// Multi-byte text from and to anything, against the reference of multi-byte conversion, and in pieces against the
// whole. With VELDNLS_FUZZ_GB18030 one side is always GB18030, with its module or without.
//
// Input: source and target (two bytes each), what to try and on which tier of kernels (one), room (two), count of
// pieces (one), their lengths (one each), then the text.
#include "reference/multi_byte.h"
#include "fuzz/support/area.h"
#include "fuzz/support/object.h"
#include "fuzz/support/shifts.h"
#include "veldnls/cei.h"
#include "veldnls/nls.h"
#include "veldnls/status.h"

namespace fuzz {

namespace {

using transcode_test::EncodingText;
using transcode_test::encodingText;
using transcode_test::isMultiByteClass;
using transcode_test::MultiByteOutcome;
using transcode_test::RunState;

constexpr size_t longestText = 2200;  // beyond what scratch memory on the stack holds
constexpr size_t mostBytes = 9;       // that a byte becomes
constexpr size_t plentyAbove = 64;
constexpr size_t mostPieces = 15;

// Bits of the byte that says what to try.
constexpr unsigned droppingBlanks = 1;
constexpr unsigned inDoubleMode = 2;
constexpr unsigned withoutGbModule = 4;
constexpr unsigned swapped = 8;
constexpr unsigned tierShift = 4;

struct Case {
  CEI source;
  CEI target;
  bool gbLoaded;
  TranscodingPipeline* pipeline;
  Bytes text;

  size_t plenty() const { return mostBytes * text.size() + plentyAbove; }
};

Area& inputArea() {
  static Area area(longestText + 4096);
  return area;
}
Area& outputArea() {
  static Area area(mostBytes * longestText + 8192);
  return area;
}

void unloadMultiByteModule() {
  QZNLS* nls = host().nls;
  if (nls->multiByteModule != nullptr) nls->multiByteModule->destroy(nls->multiByteModule);
  nls->multiByteModule = nullptr;
}

// A call with its buffers at guard pages.
MultiByteOutcome call(const Case& what, Span text, size_t room, TranscodeProgress* progress, bool mayDropBlanks) {
  static const TranscodeOptions dropBlanks{{NLS_ALLOW_BLANK_TRUNCATION, 0, 0, 0}};
  const Room input = inputArea().place(text.size(), At::end);
  std::ranges::copy(text, input.begin());
  const Room output = outputArea().place(room, At::end);
  std::ranges::fill(output, canary);
  std::ranges::fill(Area::beside(output, At::end), canary);
  uint32_t written = 0;
  MultiByteOutcome result;
  auto& outcome = result.outcome;
  outcome.status = what.pipeline->transcodeResumable(what.pipeline, input.data(), static_cast<uint32_t>(input.size()),
                                                     output.data(), static_cast<uint32_t>(room), &written, progress,
                                                     mayDropBlanks ? &dropBlanks : nullptr);
  require(written <= room, "more bytes are reported than there was room for");
  require(isUntouched(output.subspan(written)), "bytes behind those reported");
  require(isUntouched(Area::beside(output, At::end)), "bytes beside the output");
  requireEqual(input, text, "the input stays as it was");
  outcome.bytes.assign(output.begin(), output.begin() + static_cast<std::ptrdiff_t>(written));
  if (progress == nullptr) return result;
  require(progress->consumed <= text.size(), "more is consumed than there was");
  require(progress->heldCount <= sizeof progress->held, "more is held than there is room for");
  outcome.consumed = progress->consumed;
  outcome.substituted = (progress->flags & NLS_PROGRESS_SUBSTITUTED) != 0;
  outcome.pending = progress->pending != 0;
  if (outcome.pending) outcome.held.assign(progress->held, progress->held + progress->heldCount);
  result.doubleMode = (progress->flags & NLS_PROGRESS_DOUBLE_MODE) != 0;
  return result;
}

void requireSame(const MultiByteOutcome& actual, const MultiByteOutcome& wanted) {
  requireEqual(actual.outcome.bytes, wanted.outcome.bytes, "the text of the reference");
  require(actual.outcome.status == wanted.outcome.status, "the status of the reference");
  require(actual.outcome.consumed == wanted.outcome.consumed, "the count of the reference");
  require(actual.outcome.substituted == wanted.outcome.substituted, "the flag of the reference");
  requireEqual(actual.outcome.held, wanted.outcome.held, "the held bytes of the reference");
  require(actual.outcome.pending == wanted.outcome.pending, "pending as in the reference");
  require(actual.doubleMode == wanted.doubleMode, "the shift state of the reference");
}

void checkReference(const Case& what, size_t room, RunState state) {
  state.gbLoaded = what.gbLoaded;
  TranscodeProgress progress{};
  progress.flags = state.doubleMode ? NLS_PROGRESS_DOUBLE_MODE : 0;
  const MultiByteOutcome actual =
      call(what, what.text, room, state.resumable ? &progress : nullptr, state.mayDropBlanks);
  requireSame(actual, transcode_test::expectedMultiByte(what.source, what.target, what.text, room, state));
}

// ---- Pieces ----

struct Fed {
  Bytes bytes = {};
  bool substituted = false;
  Bytes held = {};
  bool doubleMode = false;
  size_t notTaken = 0;
};

// Gives text[at, end) until it is taken or nothing moves. Every call but the last takes, writes, or ends.
size_t feedPiece(const Case& what, size_t at, size_t end, size_t room, TranscodeProgress& progress, Fed& fed) {
  const size_t mostCalls = end - at + sizeof progress.held + 1;
  for (size_t calls = 0;; ++calls) {
    require(calls <= mostCalls, "a caller that goes on comes to an end");
    const bool modeBefore = (progress.flags & NLS_PROGRESS_DOUBLE_MODE) != 0;
    const Span piece = Span(what.text).subspan(at, end - at);
    const MultiByteOutcome result = call(what, piece, room, &progress, false);
    const Bytes& bytes = result.outcome.bytes;
    fed.bytes.insert(fed.bytes.end(), bytes.begin(), bytes.end());
    fed.substituted |= result.outcome.substituted;
    fed.doubleMode = result.doubleMode;
    if (result.outcome.status == nlsIncompleteInput) return at + result.outcome.consumed;
    at += result.outcome.consumed;
    if (at == end || (result.outcome.consumed == 0 && bytes.empty() && modeBefore == result.doubleMode)) return at;
  }
}

Fed feed(const Case& what, const std::vector<size_t>& cuts, size_t room) {
  TranscodeProgress progress{};
  Fed fed;
  size_t at = 0;
  for (const size_t cut : cuts) at = feedPiece(what, at, cut, room, progress, fed);
  at = feedPiece(what, at, what.text.size(), room, progress, fed);
  fed.notTaken = what.text.size() - at;
  if (progress.pending != 0) fed.held.assign(progress.held, progress.held + progress.heldCount);
  joinSeams(fed.bytes, what.target);
  return fed;
}

void checkPieces(const Case& what, const std::vector<size_t>& cuts, size_t room) {
  const bool copies = !transcode_test::needsConversion(what.source, what.target);
  if (copies && !isMultiByteClass(encodingText(what.target).encodingClass)) return;
  const Fed whole = feed(what, {}, what.plenty());
  const size_t longest = std::max<size_t>(6, 2 * encodingText(what.target).shiftLength() + 2);
  const bool mindsSeams = hasShiftsAsCharacters(what.source, what.target, what.text);
  for (const size_t each : {what.plenty(), longest + room % 40}) {
    const Fed pieces = feed(what, cuts, each);
    require(pieces.notTaken == whole.notTaken, "pieces take what the whole takes");
    if (mindsSeams) continue;
    requireEqual(pieces.bytes, whole.bytes, "pieces give the text of the whole");
    require(pieces.substituted == whole.substituted, "pieces give the flag of the whole");
    requireEqual(pieces.held, whole.held, "pieces leave the held bytes of the whole");
    require(pieces.doubleMode == whole.doubleMode, "pieces leave the shift state of the whole");
  }
}

}  // namespace

void check(Input input) {
  CEI source = chooseMultiByte(input);
  CEI target = chooseEncoding(input).cei;
  const unsigned trials = input.byte();
  const size_t someRoom = input.word();
  std::vector<size_t> cuts(input.byte() % (mostPieces + 1));
  size_t at = 0;
  for (size_t& cut : cuts) cut = at += input.byte() % 48;
#ifdef VELDNLS_FUZZ_GB18030
  source = U_GB18030_CE;
#endif
  if ((trials & swapped) != 0) std::swap(source, target);
  const OnTier tier(trials >> tierShift);

  unloadMultiByteModule();
  if ((trials & withoutGbModule) == 0) const Pipeline loading(U_GB18030_CE, U_L_UNICODE_CE);
  const Pipeline pipeline(source, target);
  require(pipeline != nullptr, "multi-byte text goes anywhere");
  const Case what{source, target, source == U_GB18030_CE || (trials & withoutGbModule) == 0, pipeline,
                  input.text(longestText)};
  for (size_t& cut : cuts) cut = std::min(cut, what.text.size());

  const bool reference =
      transcode_test::needsConversion(source, target) || isMultiByteClass(encodingText(target).encodingClass);
  if (reference) {
    const bool dropping = (trials & droppingBlanks) != 0;
    for (const size_t room : {what.plenty(), someRoom % what.plenty()}) {
      checkReference(what, room, {.mayDropBlanks = dropping});
      checkReference(what, room, {.resumable = true, .mayDropBlanks = dropping});
      if ((trials & inDoubleMode) == 0) continue;
      checkReference(what, room, {.resumable = true, .doubleMode = true, .mayDropBlanks = dropping});
    }
  }
  checkPieces(what, cuts, someRoom);
}

}  // namespace fuzz

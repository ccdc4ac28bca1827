// Any text from any encoding to any other, into any room.
//
// Input: source and target (two bytes each), what to try and on which tier of kernels (one), room (two), distance
// (one), then the text.
#include "fuzz/support/area.h"
#include "fuzz/support/object.h"
#include "fuzz/support/shifts.h"
#include "reference/reference.h"
#include "veldnls/cei.h"

namespace fuzz {

namespace {

constexpr size_t longestText = 4200;  // beyond what scratch memory on the stack holds
constexpr size_t mostBytes = 9;       // that a byte becomes
constexpr size_t plentyAbove = 32;
constexpr size_t areaSize = longestText * mostBytes + 4096;
constexpr size_t widestUnit = 4;

enum class Form { transcode, resumable, resumed };
constexpr Form forms[] = {Form::transcode, Form::resumable, Form::resumed};

// Bits of the byte that says what to try.
constexpr uint8_t optionOfPipeline = 1;
constexpr uint8_t optionOfCall = 2;
constexpr uint8_t overlapping = 4;
constexpr uint8_t refusing = 8;
constexpr unsigned tierShift = 4;

struct Case {
  const EncodingDescriptor& source;
  const EncodingDescriptor& target;
  TranscodingPipeline* pipeline;
  const TranscodeOptions* options;
  Bytes text;
};

struct Result {
  NlsStatus status;
  Bytes bytes;
  TranscodeProgress progress;
};

bool operator==(const Result& a, const Result& b) {
  return a.status == b.status && a.bytes == b.bytes && a.progress.flags == b.progress.flags &&
         a.progress.consumed == b.progress.consumed && a.progress.pending == b.progress.pending &&
         a.progress.heldCount == b.progress.heldCount;
}

bool refuse = false;
NlsBool8 allowAllocation(uint32_t) { return refuse ? 0 : 1; }

Result call(const Case& what, Form form, const uint8_t* in, Room out) {
  Result result{};
  uint32_t written = 0;
  const auto length = static_cast<uint32_t>(what.text.size());
  const auto room = static_cast<uint32_t>(out.size());
  TranscodingPipeline* pipeline = what.pipeline;
  result.status = form == Form::transcode
                      ? pipeline->transcode(pipeline, in, length, out.data(), room, &written, what.options)
                      : pipeline->transcodeResumable(pipeline, in, length, out.data(), room, &written,
                                                     form == Form::resumed ? &result.progress : nullptr, what.options);
  require(written <= out.size(), "more bytes are reported than there was room for");
  result.bytes.assign(out.begin(), out.begin() + static_cast<std::ptrdiff_t>(written));
  return result;
}

void checkProgress(const Case& what, Form form, const Result& result) {
  const TranscodeProgress& progress = result.progress;
  const bool known = result.status == 0 || result.status == nlsSubstituted || result.status == nlsOutputTruncated ||
                     (form == Form::resumed && result.status == nlsIncompleteInput) ||
                     (refuse && result.status == nlsNoMemory);
  require(known, "a status that a run doesn't have");
  if (result.status == nlsNoMemory) require(result.bytes.empty(), "without memory nothing is converted");
  require(progress.consumed <= what.text.size(), "more is consumed than there was");
  require(progress.heldCount <= sizeof progress.held, "more is held than there is room for");
  // A text may end with a shift, behind which a character is to come.
  const bool shifts = !shiftOutOf(what.source.cei).empty();
  require(progress.pending == 0 || progress.heldCount != 0 || shifts, "pending bytes are held");
}

// One call with buffers at guard pages. What lies beside the input differs from call to call.
Result callAt(const Case& what, Form form, size_t room, At at) {
  static Area inputArea(areaSize);
  static Area outputArea(areaSize);
  static uint8_t neighbour = 0;
  const Room input = inputArea.place(what.text.size(), at);
  std::ranges::fill(Area::beside(input, at), neighbour += 0x35);
  std::ranges::copy(what.text, input.begin());
  const Room output = outputArea.place(room, at);
  std::ranges::fill(output, canary);
  std::ranges::fill(Area::beside(output, at), canary);

  Result result = call(what, form, input.data(), output);
  require(isUntouched(output.subspan(result.bytes.size())), "bytes behind those reported");
  require(isUntouched(Area::beside(output, at)), "bytes beside the output");
  requireEqual(input, what.text, "the input stays as it was");
  checkProgress(what, form, result);
  return result;
}

// Input and output in one memory, the output `distance` bytes behind the start of the input.
void checkOverlap(const Case& what, Form form, size_t room, int distance) {
  const Result apart = callAt(what, form, room, At::end);
  const auto ahead = static_cast<size_t>(std::abs(distance));
  Bytes memory(what.text.size() + room + 2 * ahead + 1, canary);
  uint8_t* in = memory.data() + ahead;
  std::ranges::copy(what.text, in);
  const Result together = call(what, form, in, Room(in + distance, room));
  requireEqual(together.bytes, apart.bytes, "overlapping buffers give the same text");
  require(together == apart, "overlapping buffers give the same outcome");
}

bool isPrefix(Span bytes, Span whole) {
  return bytes.size() <= whole.size() && std::ranges::equal(bytes, whole.first(bytes.size()));
}

// A pair with room for its first unit only is replaced.
bool endsInReplacedPair(const Case& what, Span bytes, Span whole) {
  if (what.target.encodingClass != NLS_CLASS_UTF16 || bytes.size() < 2 || whole.size() < bytes.size() + 2) return false;
  const size_t at = bytes.size() - 2;
  const auto unit = [&](Span text) {
    const bool big = what.target.cei == U_B_UNICODE_CE;
    return static_cast<unsigned>(text[at + (big ? 0 : 1)] << 8 | text[at + (big ? 1 : 0)]);
  };
  return unit(bytes) == 0xFFFD && isHighSurrogate(unit(whole)) && isPrefix(bytes.first(at), whole);
}

// An end that is no whole unit is left unread by what keeps the form.
bool mayStopShort(const Case& what) {
  const int32_t form = what.source.encodingClass;
  const size_t unit = form == NLS_CLASS_UTF16 ? 2 : 4;
  return form == what.target.encodingClass && (form == NLS_CLASS_UTF16 || form == NLS_CLASS_UTF32) &&
         what.text.size() % unit != 0;
}

void checkRooms(const Case& what, Form form, size_t room) {
  const Result whole = callAt(what, form, mostBytes * what.text.size() + plentyAbove, At::end);
  const bool copies = what.source.cei == U_ANY_CE || what.target.cei == U_ANY_CE;
  require(whole.status != nlsOutputTruncated || mayStopShort(what) || copies, "plenty of room is enough");
  room %= whole.bytes.size() + plentyAbove;
  const Result shorter = callAt(what, form, room, At::end);
  require(callAt(what, form, room, At::start) == shorter, "the outcome depends on what lies beside a buffer");
  const Span beginning = withoutClosing(shorter.bytes, what.target.cei);
  if (!endsInReplacedPair(what, shorter.bytes, whole.bytes) && !isPrefix(shorter.bytes, whole.bytes) &&
      !isPrefix(beginning, whole.bytes) && !hasShiftsAsCharacters(what.source.cei, what.target.cei, what.text)) {
    requireEqual(shorter.bytes, whole.bytes, "less room gives the beginning of the same text");
  }
  if (room >= whole.bytes.size() + widestUnit) require(shorter == whole, "more room than needed changes nothing");
}

const transcode_test::TextForm* formOf(CEI cei) {
  const auto* found =
      std::ranges::find_if(transcode_test::textForms, [=](const auto& form) { return form.cei == cei; });
  return found != std::end(transcode_test::textForms) ? found : nullptr;
}

// Among Unicode forms the outcome is that of the reference.
void checkReference(const Case& what, Form form, size_t room, bool dropping) {
  const auto* source = formOf(what.source.cei);
  const auto* target = formOf(what.target.cei);
  if (source == nullptr || target == nullptr || form == Form::transcode) return;
  const Result result = callAt(what, form, room, At::end);
  const auto wanted = transcode_test::expected(*source, *target, what.text, room, form == Form::resumed, dropping);
  requireEqual(result.bytes, wanted.bytes, "the text of the reference");
  require(result.status == wanted.status, "the status of the reference");
  require(result.progress.consumed == wanted.consumed, "the count of the reference");
  require(((result.progress.flags & NLS_PROGRESS_SUBSTITUTED) != 0) == wanted.substituted, "the flag of the reference");
  require((result.progress.pending != 0) == wanted.pending, "the held bytes of the reference");
}

void checkEstimate(const Case& what) {
  uint32_t size = 0;
  const NlsStatus status = host().nls->estimateOutputLength(
      host().nls, what.source.cei, nullptr, static_cast<uint32_t>(what.text.size()), what.target.cei, &size);
  require(status == 0, "an estimate is given");
}

}  // namespace

void check(Input input) {
  const EncodingDescriptor& source = chooseEncoding(input);
  const EncodingDescriptor& target = chooseEncoding(input);
  const uint8_t trials = input.byte();
  const size_t room = input.word();
  const int distance = static_cast<int8_t>(input.byte());
  const OnTier tier(unsigned{trials} >> tierShift);

  const TranscodeOptions dropBlanks{{NLS_ALLOW_BLANK_TRUNCATION, 0, 0, 0}};
  const Pipeline pipeline(source.cei, target.cei, (trials & optionOfPipeline) != 0 ? &dropBlanks : nullptr);
  if (pipeline == nullptr) return;
  const bool dropping = (trials & (optionOfPipeline | optionOfCall)) != 0;
  const Case what{source, target, pipeline, (trials & optionOfCall) != 0 ? &dropBlanks : nullptr,
                  input.text(longestText)};

  host().memory.allowAllocation = allowAllocation;
  checkEstimate(what);
  for (const Form form : forms) {
    const size_t someRoom = room % (mostBytes * what.text.size() + plentyAbove);
    if ((trials & refusing) != 0) {
      refuse = true;
      callAt(what, form, someRoom, At::start);
      refuse = false;
    }
    if ((trials & overlapping) != 0) checkOverlap(what, form, someRoom, distance);
    checkRooms(what, form, room);
    checkReference(what, form, someRoom, dropping);
  }
}

}  // namespace fuzz

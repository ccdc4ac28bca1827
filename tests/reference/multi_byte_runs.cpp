// Runs over one stage, and over two with UTF-16LE between them.
#include <algorithm>

#include "reference/multi_byte_stages.h"

namespace transcode_test {

namespace {

constexpr TextForm middleForm{U_L_UNICODE_CE, Form::utf16, false};

const TextForm& formOf(CEI cei) {
  return *std::ranges::find_if(textForms, [cei](const TextForm& form) { return form.cei == cei; });
}

bool isMultiByteRow(const EncodingText& row) { return isMultiByteClass(row.encodingClass); }

StageOutcome runStage(const EncodingText& source, const EncodingText& target, Span input, size_t capacity,
                      const RunState& state) {
  if (isMultiByteRow(source)) {
    if (target.encodingClass == 0) return multiByteToByte(source, target, input, capacity, state);
    return multiByteToUnicode(source, formOf(target.cei), input, capacity, state);
  }
  if (source.encodingClass == 0) return byteToMultiByte(source, target, input, capacity, state);
  return unicodeToMultiByte(formOf(source.cei), target, input, capacity, state);
}

// What the record says when the run has ended. The shift state is kept only for rows that have one.
void fillRecord(MultiByteOutcome& result, const EncodingText& source, Span input, const StageOutcome& stage,
                const RunState& state) {
  Outcome& outcome = result.outcome;
  outcome.substituted = stage.substituted;
  outcome.consumed = static_cast<uint32_t>(stage.read);
  result.doubleMode = source.encodingClass == 4 ? stage.doubleMode : state.doubleMode;
  if (outcome.status != nlsIncompleteInput) return;
  outcome.consumed = static_cast<uint32_t>(input.size());
  outcome.pending = true;
  outcome.held.assign(input.begin() + static_cast<std::ptrdiff_t>(stage.read), input.end());
}

MultiByteOutcome oneStage(const EncodingText& source, const EncodingText& target, Span input, size_t capacity,
                          const RunState& state) {
  const StageOutcome stage = runStage(source, target, input, capacity, state);
  MultiByteOutcome result{{.status = stage.status, .bytes = stage.bytes}};
  if (state.resumable) fillRecord(result, source, input, stage, state);
  return result;
}

// The first stage runs once more with the room that the second has used: what it takes then is what the whole has
// taken.
MultiByteOutcome twoStages(const EncodingText& source, const EncodingText& target, Span input, size_t capacity,
                           const RunState& state) {
  RunState ofSecond = state;
  ofSecond.resumable = true;
  const StageOutcome first = multiByteToUnicode(source, middleForm, input, 2 * input.size(), state);
  const StageOutcome second = unicodeToMultiByte(middleForm, target, first.bytes, capacity, ofSecond);
  MultiByteOutcome result{{.status = second.status, .bytes = second.bytes}};
  if (!state.resumable) return result;
  StageOutcome third = multiByteToUnicode(source, middleForm, input, second.read, state);
  if (first.status == nlsIncompleteInput && first.bytes.size() == third.bytes.size()) third.status = nlsIncompleteInput;
  // What was replaced doesn't hide that the room was too small.
  const bool whole = third.read == input.size();
  if (second.status == nlsOutputTruncated && third.status == nlsSubstituted && !whole)
    third.status = nlsOutputTruncated;
  if (second.status != nlsSubstituted || third.status == nlsIncompleteInput) result.outcome.status = third.status;
  third.substituted |= second.substituted;
  fillRecord(result, source, input, third, state);
  return result;
}

}  // namespace

bool isCopied(CEI source, CEI target) { return !needsConversion(source, target); }

MultiByteOutcome expectedMultiByte(CEI sourceCei, CEI targetCei, Span input, size_t capacity, const RunState& state) {
  const EncodingText& source = encodingText(sourceCei);
  const EncodingText& target = encodingText(targetCei);
  const bool through = isMultiByteRow(source) && isMultiByteRow(target);
  if (through || isCopied(sourceCei, targetCei)) return twoStages(source, target, input, capacity, state);
  return oneStage(source, target, input, capacity, state);
}

}  // namespace transcode_test

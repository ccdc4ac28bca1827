// Pairs that keep the form of the text, in either byte order, and pairs that go through UTF-16LE.
#include <algorithm>

#include "reference/reference.h"

namespace transcode_test {

namespace {

constexpr TextForm middleForm{U_L_UNICODE_CE, Form::utf16, false};

void endInside(Outcome& outcome, Span input, size_t at) {
  outcome.status = nlsIncompleteInput;
  outcome.consumed = static_cast<uint32_t>(input.size());
  outcome.pending = true;
  outcome.held.assign(input.begin() + static_cast<std::ptrdiff_t>(at), input.end());
}

// The first runs once more with the room that the second has used: what it takes then is what the whole has taken.
Outcome throughUtf16(const TextForm& source, const TextForm& target, Span input, size_t capacity, bool resumable,
                     bool mayDropBlanks) {
  const Outcome first = expected(source, middleForm, input, 2 * input.size(), resumable, mayDropBlanks);
  Outcome second = expected(middleForm, target, first.bytes, capacity, true, mayDropBlanks);
  // The other half of a pair doesn't come any more.
  if (second.status == nlsIncompleteInput) {
    second.status = nlsSubstituted;
    second.substituted = true;
  }
  Outcome outcome{.status = second.status, .bytes = second.bytes};
  if (!resumable) return outcome;
  const Outcome third = expected(source, middleForm, input, second.consumed, true, mayDropBlanks);
  outcome.substituted = second.substituted || third.substituted;
  const bool inside = first.status == nlsIncompleteInput && first.bytes.size() == third.bytes.size();
  if (inside || third.status == nlsIncompleteInput) {
    endInside(outcome, input, third.pending ? input.size() - third.held.size() : third.consumed);
    return outcome;
  }
  outcome.consumed = third.consumed;
  const bool pairCut = second.status == nlsOutputTruncated && third.status == nlsSubstituted;
  if (pairCut && third.consumed < input.size()) return outcome;
  if (second.status != nlsSubstituted) outcome.status = third.status;
  return outcome;
}

bool allUnitsAre(Span rest, const Bytes& blank) {
  if (rest.size() % blank.size() != 0) return false;
  for (size_t i = 0; i < rest.size(); ++i) {
    if (rest[i] != blank[i % blank.size()]) return false;
  }
  return true;
}

// Whole units pass, turned around or not.
Outcome moved(const TextForm& source, const TextForm& target, Span input, size_t capacity, bool resumable,
              bool mayDropBlanks) {
  const size_t size = source.form == Form::utf16 ? 2 : 4;
  const bool swaps = source.bigEndian != target.bigEndian;
  const bool keepsNothing = swaps && size == 2;  // holds no bytes from call to call
  size_t count = std::min(input.size(), capacity) / size * size;
  Outcome outcome;
  const bool manyLeft = input.size() - count >= (size == 2 ? 4 : size);
  const bool lastIsHigh = size == 2 && !swaps && count != 0 && input[count - 2] >= 0xD8 && input[count - 2] <= 0xDB;
  if (resumable && !manyLeft && lastIsHigh) {
    count -= 2;
    endInside(outcome, input, count);
  } else if (resumable && !manyLeft && !keepsNothing && input.size() % size != 0) {
    endInside(outcome, input, count);
  } else {
    if (resumable) outcome.consumed = static_cast<uint32_t>(count);
    if (count < input.size()) outcome.status = nlsOutputTruncated;
  }
  for (size_t i = 0; i < count; ++i)
    outcome.bytes.push_back(input[swaps ? i / size * size + (size - 1 - i % size) : i]);
  // Swaps know the blank of the source; the others read little-endian units.
  Bytes blank(size, 0);
  blank[swaps && source.bigEndian ? size - 1 : 0] = 0x20;
  if (outcome.status == nlsOutputTruncated && mayDropBlanks && allUnitsAre(input.subspan(count), blank)) {
    outcome.status = 0;
  }
  return outcome;
}

}  // namespace

Outcome expectedIndirect(const TextForm& source, const TextForm& target, Span input, size_t capacity, bool resumable,
                         bool mayDropBlanks) {
  const auto rule = isThroughUtf16(source, target) ? throughUtf16 : moved;
  return rule(source, target, input, capacity, resumable, mayDropBlanks);
}

}  // namespace transcode_test

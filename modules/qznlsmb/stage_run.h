// One run of a stage: how far it got, and how it ends.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/text/blanks.h"
#include "veldnls/pipeline.h"
#include "veldnls/status.h"

namespace veldnls {

struct StageRun {
  StageRun(const void* input, uint32_t inputLength, void* output, uint32_t outputSize)
      : begin(static_cast<const uint8_t*>(input)),
        at(begin),
        end(begin + inputLength),
        outBegin(static_cast<uint8_t*>(output)),
        out(outBegin),
        outEnd(outBegin + outputSize) {}

  const uint8_t* begin;
  const uint8_t* at;
  const uint8_t* end;
  uint8_t* outBegin;
  uint8_t* out;
  uint8_t* outEnd;
  bool substituted = false;
  bool incomplete = false;  // the input ends inside a character

  bool atEnd() const { return at == end; }
  size_t left() const { return static_cast<size_t>(end - at); }
  size_t room() const { return static_cast<size_t>(outEnd - out); }
  uint32_t consumed() const { return static_cast<uint32_t>(at - begin); }
  uint32_t written() const { return static_cast<uint32_t>(out - outBegin); }

  void took(size_t read, size_t written) {
    at += read;
    out += written;
  }

  // Everything was read and nothing noted.
  bool endsWell() const { return atEnd() && !substituted && !incomplete; }

  // The status without a look at what room was there for. Without a progress record there is nowhere to keep an
  // incomplete character, which counts as replaced.
  NlsStatus noted(const TranscodeProgress* progress) const {
    if (incomplete) return progress != nullptr ? nlsIncompleteInput : nlsSubstituted;
    return substituted ? nlsSubstituted : 0;
  }

  // The status of what is left unread for want of room. There must be something.
  NlsStatus statusOfRest(bool dropBlanks, Blank blank) const {
    return veldnls::statusOfRest(dropBlanks, at, left(), blank);
  }

  // Tells the caller; both may be null.
  void report(uint32_t* outputLength, TranscodeProgress* progress) const {
    if (outputLength != nullptr) *outputLength = written();
    if (progress == nullptr) return;
    progress->consumed = consumed();
    progress->flags &= ~NLS_PROGRESS_SUBSTITUTED;
    if (substituted) progress->flags |= NLS_PROGRESS_SUBSTITUTED;
  }
};

// Whether blanks that don't fit may be dropped, by the pipeline's options or the call's, which may be null.
inline bool mayDropBlanks(const PipelineSide& side, const TranscodeOptions* options) {
  return (side.options != nullptr && mayDropBlanks(*side.options, nullptr)) ||
         (options != nullptr && mayDropBlanks(*options, nullptr));
}

}  // namespace veldnls

// One object for all tests of pipelines, runs against guard pages, and what a run left behind.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "support/conversion.h"
#include "support/guard.h"
#include "support/host.h"
#include "veldnls/cei.h"
#include "veldnls/nls.h"
#include "veldnls/status.h"

namespace transcode_test {

using Bytes = std::vector<uint8_t>;
using Span = std::span<const uint8_t>;

// An object that lives as long as the program, with its host records. Tests make no second one: an export's records
// are the library's until the next call of the export.
test::NlsHost& host();
inline QZNLS* nls() { return host().nls; }

// The object's row of an encoding.
const EncodingDescriptor& row(CEI cei);

inline constexpr TranscodeOptions dropBlanks{{NLS_ALLOW_BLANK_TRUNCATION, 0, 0, 0}};

// A pipeline of the shared object. Null if the pair is refused.
struct Pipeline : test::Pipeline {
  Pipeline(CEI source, CEI target, const TranscodeOptions* options = nullptr)
      : test::Pipeline(nls(), source, target, options) {}
};

struct Outcome {
  NlsStatus status = 0;
  Bytes bytes = {};
  // Of the progress record; zero for runs without one.
  uint32_t consumed = 0;
  bool substituted = false;
  bool pending = false;
  Bytes held = {};

  bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* stream);

// Run with input and output ending at guard pages. Fails the test when a byte ahead of the output, or behind what was
// written, changes. `plain` is the `transcode` slot, the others `transcodeResumable`.
Outcome plain(TranscodingPipeline* pipeline, Span input, size_t capacity, const TranscodeOptions* options = nullptr);
Outcome run(TranscodingPipeline* pipeline, Span input, size_t capacity, const TranscodeOptions* options = nullptr);
Outcome resume(TranscodingPipeline* pipeline, Span input, size_t capacity, TranscodeProgress& progress,
               const TranscodeOptions* options = nullptr);

// Feeds `input` in pieces of the given lengths (the last one takes the rest), each with all the room it needs, and
// joins the outputs. The status is that of the last piece with bytes, or nlsSubstituted instead of 0 if any had it.
Outcome inPieces(TranscodingPipeline* pipeline, Span input, std::span<const size_t> lengths);

inline Bytes hex(std::string_view text) { return test::fromHex(text); }

// A text of code points in a form that has no oddities for them.
Bytes utf8(std::u32string_view text);
Bytes utf16(std::u32string_view text, bool bigEndian = false);
Bytes utf32(std::u32string_view text, bool bigEndian = false);

}  // namespace transcode_test

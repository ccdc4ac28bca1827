// A caller that converts a text in pieces, with as much room at a time as it likes.
#pragma once

#include <span>

#include "bounds/routes.h"

namespace cuts_test {

using bounds_test::Bytes;
using bounds_test::Span;

// What a caller has when the whole text was given.
struct Fed {
  Bytes bytes = {};
  bool substituted = false;
  Bytes held = {};      // bytes of an incomplete character, in the record
  size_t notTaken = 0;  // bytes at the end that no call took and none holds
  // Of the last call with input; nlsSubstituted if that is 0 and a call before told of a replacement.
  NlsStatus status = 0;

  bool operator==(const Fed&) const = default;
};

void PrintTo(const Fed& fed, std::ostream* stream);

// Gives the text in pieces of these lengths, the rest last. A piece that wasn't taken whole is given again from where
// the call stopped, together with the next one if nothing of it went through.
Fed feed(TranscodingPipeline* pipeline, Span text, std::span<const size_t> lengths, size_t room,
         TranscodeProgress& progress);

}  // namespace cuts_test

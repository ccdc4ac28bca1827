#include "cuts/feed.h"

#include <gtest/gtest.h>

#include <ostream>

namespace cuts_test {

namespace {

constexpr uint8_t canary = 0xCD;

// Gives text[at, end) until it is taken or nothing moves. Returns how far it got.
size_t feedPiece(TranscodingPipeline* pipeline, Span text, size_t at, size_t end, Span::size_type room,
                 TranscodeProgress& progress, Fed& fed, bool& toldSubstituted) {
  Bytes output(room, canary);
  // Every call takes a byte, or writes a character that was held.
  const size_t mostCalls = end - at + sizeof progress.held + 1;
  for (size_t calls = 1;; ++calls) {
    if (calls > mostCalls) {
      ADD_FAILURE() << "a caller that goes on doesn't come to an end";
      return end;
    }
    const Span piece = text.subspan(at, end - at);
    uint32_t written = 0;
    const NlsStatus status = pipeline->transcodeResumable(pipeline, piece.empty() ? nullptr : piece.data(),
                                                          static_cast<uint32_t>(piece.size()), output.data(),
                                                          static_cast<uint32_t>(room), &written, &progress, nullptr);
    fed.bytes.insert(fed.bytes.end(), output.begin(), output.begin() + static_cast<std::ptrdiff_t>(written));
    const bool substituted = (progress.flags & NLS_PROGRESS_SUBSTITUTED) != 0;
    // Another event behind a replacement takes its place in the status.
    toldSubstituted |= status != 0 && substituted;
    if (!piece.empty()) fed.status = status == 0 && toldSubstituted ? NlsStatus{nlsSubstituted} : status;
    fed.substituted |= substituted;
    // All of the piece is taken or held.
    if (status == nlsIncompleteInput) return end;
    if (progress.consumed > piece.size()) {
      ADD_FAILURE() << "more consumed than there was";
      return end;
    }
    at += progress.consumed;
    if (at == end || (progress.consumed == 0 && written == 0)) return at;
  }
}

}  // namespace

void PrintTo(const Fed& fed, std::ostream* stream) {
  *stream << test::toHex(fed.bytes) << (fed.substituted ? ", substituted" : "") << ", held " << test::toHex(fed.held)
          << ", not taken " << fed.notTaken << ", status " << std::hex << fed.status << std::dec;
}

Fed feed(TranscodingPipeline* pipeline, Span text, std::span<const size_t> lengths, size_t room,
         TranscodeProgress& progress) {
  Fed fed;
  bool toldSubstituted = false;
  size_t at = 0;
  size_t end = 0;
  for (const size_t length : lengths) {
    end += length;
    at = feedPiece(pipeline, text, at, end, room, progress, fed, toldSubstituted);
  }
  if (end < text.size() || lengths.empty()) {
    at = feedPiece(pipeline, text, at, text.size(), room, progress, fed, toldSubstituted);
  }
  fed.notTaken = text.size() - at;
  if (progress.pending != 0) fed.held.assign(progress.held, progress.held + std::min(progress.heldCount, 8u));
  return fed;
}

}  // namespace cuts_test

#include "transcode/harness.h"

#include <algorithm>
#include <cstring>
#include <ostream>

namespace transcode_test {

namespace {

constexpr size_t areaSize = 1 << 16;
constexpr size_t canarySize = 8;
constexpr uint8_t canary = 0xCD;

// The last bytes ahead of a guard page, reused from run to run.
uint8_t* tail(test::GuardedBuffer& area, size_t size) {
  if (size + canarySize > area.size()) throw std::length_error("text too long for the guarded area");
  return area.data() + area.size() - size;
}

using Run = NlsStatus (*)(TranscodingPipeline*, const uint8_t*, uint32_t, uint8_t*, uint32_t, uint32_t*,
                          TranscodeProgress*, const TranscodeOptions*);

Outcome guarded(Run runner, TranscodingPipeline* pipeline, Span input, size_t capacity, TranscodeProgress* progress,
                const TranscodeOptions* options) {
  static test::GuardedBuffer inputArea(areaSize);
  static test::GuardedBuffer outputArea(areaSize);
  uint8_t* in = tail(inputArea, input.size());
  if (!input.empty()) std::memcpy(in, input.data(), input.size());
  uint8_t* out = tail(outputArea, capacity);
  std::memset(out - canarySize, canary, capacity + canarySize);

  Outcome outcome;
  uint32_t written = 0xDEADBEEF;
  outcome.status = runner(pipeline, in, static_cast<uint32_t>(input.size()), out, static_cast<uint32_t>(capacity),
                          &written, progress, options);
  if (written > capacity) {
    ADD_FAILURE() << "output length " << written << " of a capacity of " << capacity;
    return outcome;
  }
  outcome.bytes.assign(out, out + written);
  const auto untouched = [](uint8_t byte) { return byte == canary; };
  EXPECT_TRUE(std::all_of(out - canarySize, out, untouched)) << "bytes ahead of the output";
  EXPECT_TRUE(std::all_of(out + written, out + capacity, untouched)) << "bytes behind what was written";
  EXPECT_TRUE(std::equal(input.begin(), input.end(), in)) << "the input";
  if (progress != nullptr) {
    outcome.consumed = progress->consumed;
    outcome.substituted = (progress->flags & NLS_PROGRESS_SUBSTITUTED) != 0;
    outcome.pending = progress->pending != 0;
    if (outcome.pending) outcome.held.assign(progress->held, progress->held + std::min(progress->heldCount, 8u));
  }
  return outcome;
}

void put(Bytes& bytes, uint32_t value, int size, bool bigEndian) {
  for (int i = 0; i < size; ++i) {
    const int shift = 8 * (bigEndian ? size - 1 - i : i);
    bytes.push_back(static_cast<uint8_t>(value >> shift));
  }
}

}  // namespace

test::NlsHost& host() {
  static test::NlsHost shared(&VELDNLSLIB);
  return shared;
}

const EncodingDescriptor& row(CEI cei) {
  const EncodingDescriptor* found = nullptr;
  EXPECT_EQ(nls()->getEncodingDescriptor(nls(), cei, &found), 0u);
  return *found;
}

void PrintTo(const Outcome& outcome, std::ostream* stream) {
  *stream << std::hex << "status " << outcome.status << std::dec << ", consumed " << outcome.consumed
          << (outcome.substituted ? ", substituted" : "") << (outcome.pending ? ", pending " : "")
          << test::toHex(outcome.held) << ", bytes " << test::toHex(outcome.bytes);
}

Outcome plain(TranscodingPipeline* pipeline, Span input, size_t capacity, const TranscodeOptions* options) {
  return guarded([](auto* p, auto* in, auto n, auto* out, auto size, auto* length, TranscodeProgress*,
                    auto* o) { return p->transcode(p, in, n, out, size, length, o); },
                 pipeline, input, capacity, nullptr, options);
}

Outcome run(TranscodingPipeline* pipeline, Span input, size_t capacity, const TranscodeOptions* options) {
  return guarded([](auto* p, auto* in, auto n, auto* out, auto size, auto* length, TranscodeProgress*,
                    auto* o) { return p->transcodeResumable(p, in, n, out, size, length, nullptr, o); },
                 pipeline, input, capacity, nullptr, options);
}

Outcome resume(TranscodingPipeline* pipeline, Span input, size_t capacity, TranscodeProgress& progress,
               const TranscodeOptions* options) {
  return guarded([](auto* p, auto* in, auto n, auto* out, auto size, auto* length, auto* state,
                    auto* o) { return p->transcodeResumable(p, in, n, out, size, length, state, o); },
                 pipeline, input, capacity, &progress, options);
}

Outcome inPieces(TranscodingPipeline* pipeline, Span input, std::span<const size_t> lengths) {
  TranscodeProgress progress{};
  Outcome whole;
  bool substituted = false;
  for (size_t i = 0; i <= lengths.size(); ++i) {
    const Span piece = i < lengths.size() ? input.first(lengths[i]) : input;
    const Outcome part = resume(pipeline, piece, 4 * piece.size() + 32, progress);
    EXPECT_EQ(part.consumed, piece.size());
    substituted |= part.substituted;
    whole.bytes.insert(whole.bytes.end(), part.bytes.begin(), part.bytes.end());
    if (!piece.empty()) whole.status = part.status;
    whole.pending = part.pending;
    whole.held = part.held;
    whole.consumed += part.consumed;
    input = input.subspan(piece.size());
  }
  whole.substituted = substituted;
  if (substituted && whole.status == 0) whole.status = nlsSubstituted;
  return whole;
}

Bytes utf8(std::u32string_view text) {
  Bytes bytes;
  for (const char32_t c : text) {
    if (c < 0x80) {
      bytes.push_back(static_cast<uint8_t>(c));
    } else if (c < 0x800) {
      bytes.insert(bytes.end(), {static_cast<uint8_t>(0xC0 + c / 64), static_cast<uint8_t>(0x80 + c % 64)});
    } else if (c < 0x10000) {
      bytes.insert(bytes.end(), {static_cast<uint8_t>(0xE0 + c / 4096), static_cast<uint8_t>(0x80 + c / 64 % 64),
                                 static_cast<uint8_t>(0x80 + c % 64)});
    } else {
      bytes.insert(bytes.end(), {static_cast<uint8_t>(0xF0 + c / 262144), static_cast<uint8_t>(0x80 + c / 4096 % 64),
                                 static_cast<uint8_t>(0x80 + c / 64 % 64), static_cast<uint8_t>(0x80 + c % 64)});
    }
  }
  return bytes;
}

Bytes utf16(std::u32string_view text, bool bigEndian) {
  Bytes bytes;
  for (const char32_t c : text) {
    if (c < 0x10000) {
      put(bytes, c, 2, bigEndian);
    } else {
      put(bytes, 0xD7C0 + c / 1024, 2, bigEndian);
      put(bytes, 0xDC00 + c % 1024, 2, bigEndian);
    }
  }
  return bytes;
}

Bytes utf32(std::u32string_view text, bool bigEndian) {
  Bytes bytes;
  for (const char32_t c : text) put(bytes, c, 4, bigEndian);
  return bytes;
}

}  // namespace transcode_test

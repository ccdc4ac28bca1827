#include "chain.h"

#include "failure.h"
#include "names.h"
#include "route.h"
#include "veldnls/status.h"

namespace veld {

namespace {

// No byte of any encoding becomes more than eight: one character of the widest form, with its shifts. Output that is
// always wide enough keeps a block in one call, and never meets the rules of a short output.
constexpr size_t growth = 8;

}  // namespace

Chain::Chain(QZNLS& nls, const std::vector<CEI>& route) {
  size_t input = blockSize;
  for (size_t i = 0; i + 1 < route.size(); ++i) {
    Pipeline pipeline = makePipeline(nls, route[i], route[i + 1]);
    if (pipeline == nullptr) {
      throw Failure("the library has no way from " + displayName(nls, route[i]) + " to " +
                    displayName(nls, route[i + 1]) + "; choose encodings that have code-page tables");
    }
    const size_t room = input * growth;
    hops_.push_back(
        {std::move(pipeline), isMultiByte(nls, route[i]), room, std::make_unique_for_overwrite<uint8_t[]>(room)});
    input = room;
  }
  // What comes in the middle is UTF-16: of the same size for UTF-16, one unit for each byte of a code page.
  if (rowOf(nls, route.front()).encodingClass == NLS_CLASS_SINGLE_BYTE) middleBytesPerSourceByte_ = sizeof(char16_t);
}

ChainStep Chain::runHop(const Hop& hop, Bytes input, TranscodeProgress& progress) {
  ChainStep step;
  size_t size = 0;
  while (step.taken < input.size()) {
    const Bytes rest = input.subspan(step.taken);
    uint32_t written = 0;
    const NlsStatus status = hop.pipeline->transcodeResumable(
        hop.pipeline.get(), rest.data(), static_cast<uint32_t>(rest.size()), hop.output.get() + size,
        static_cast<uint32_t>(hop.room - size), &written, &progress, nullptr);
    if (status == nlsNoMemory) throw Failure(memoryShort);
    size += written;
    if (status == nlsSubstituted || (progress.flags & NLS_PROGRESS_SUBSTITUTED) != 0) step.substituted = true;
    if (status == nlsOutputTruncated) {
      if (progress.consumed == 0) break;  // the odd byte that a swap of units can't take
      step.taken += progress.consumed;
    } else if (status == nlsIncompleteInput && hop.fromMultiByte) {
      step.taken += progress.consumed;  // of a row of shift sequences not all may be held
      break;
    } else {
      step.taken = input.size();
    }
  }
  step.output = {hop.output.get(), size};
  return step;
}

ChainStep Chain::run(Bytes block, ChainState& state) {
  const ChainStep first = runHop(hops_[0], block, state[0]);
  if (hops_.size() == 1) return first;
  ChainStep second = runHop(hops_[1], first.output, state[1]);
  if (second.taken != first.output.size()) throw Failure("the conversion stopped inside a block; report this text");
  second.taken = first.taken;
  second.substituted |= first.substituted;
  return second;
}

size_t Chain::heldBytes(const ChainState& state) const {
  const size_t middle = state[1].pending != 0 ? state[1].heldCount : 0;
  return heldSource(state).size() + middle / middleBytesPerSourceByte_;
}

Bytes heldSource(const ChainState& state) {
  if (state[0].pending == 0) return {};
  return Bytes(state[0].held).first(state[0].heldCount);
}

}  // namespace veld

#include "file_conversion.h"

#include <algorithm>

#include "names.h"

namespace veld {

namespace {

std::vector<CEI> checkedRoute(QZNLS& nls, CEI from, CEI to) {
  requireTables(nls, from, to);
  return planRoute(nls, from, to);
}

// The part of a block that stands ahead of a character.
Bytes aheadOf(Bytes block, const Extent& extent) {
  return block.first(static_cast<size_t>(std::max<int64_t>(extent.start, 0)));
}

// The bytes of a character, the first of which may be held from before the block.
std::vector<uint8_t> bytesOf(const Extent& extent, const ChainState& before, Bytes block) {
  std::vector<uint8_t> bytes;
  if (extent.start < 0) {
    const Bytes held = heldSource(before);
    const Bytes first = held.last(std::min(held.size(), static_cast<size_t>(-extent.start)));
    bytes.assign(first.begin(), first.end());
  }
  const Bytes rest = block.first(static_cast<size_t>(extent.end)).subspan(aheadOf(block, extent).size());
  bytes.insert(bytes.end(), rest.begin(), rest.end());
  return bytes;
}

}  // namespace

Conversion::Conversion(QZNLS& nls, CEI source, CEI target)
    : from(source),
      to(target),
      chain(nls, checkedRoute(nls, source, target)),
      silent(nls, source, target),
      judge(nls, source) {}

FileConversion::FileConversion(QZNLS& nls, Conversion& conversion, Input& input, Output& output, ConvertReport& report,
                               Progress& progress)
    : conversion_(conversion),
      input_(input),
      output_(output),
      report_(report),
      progress_(progress),
      place_(nls, conversion.from),
      seam_(rowOf(nls, conversion.to)) {}

void FileConversion::write(Bytes piece) { written_ += seam_.write(output_, piece); }

// The first character of a block that didn't come over.
std::optional<Extent> FileConversion::findLoss(const ChainState& before, Bytes block, const ChainStep& step) const {
  std::optional<Extent> first = conversion_.silent.first(block, before);
  if (step.substituted) {
    const Extent reported = locateSubstitution(conversion_.chain, before, block);
    if (!first || reported.start < first->start) first = reported;
  }
  return first;
}

void FileConversion::reportLoss(const Extent& extent, const ChainState& before, Bytes block) {
  const Bytes ahead = aheadOf(block, extent);
  ChainState atLoss = before;
  conversion_.chain.run(ahead, atLoss);
  TextPlace place = place_;
  place.advance(ahead);
  Loss loss{.offset = static_cast<uint64_t>(static_cast<int64_t>(input_.offset()) + extent.start),
            .line = place.line(),
            .column = place.column(),
            .bytes = bytesOf(extent, before, block),
            .reason = LossReason::malformed,
            .character = std::nullopt};
  conversion_.judge.judge(loss, (atLoss[0].flags & NLS_PROGRESS_DOUBLE_MODE) != 0);
  report_.addLoss(loss);
}

void FileConversion::reportCut(size_t waiting) {
  const Bytes held = heldSource(state_);
  std::vector<uint8_t> bytes(held.begin(), held.end());
  bytes.insert(bytes.end(), input_.bytes().begin(), input_.bytes().end());
  report_.addLoss({.offset = input_.offset() + input_.bytes().size() - waiting,
                   .line = place_.line(),
                   .column = place_.column(),
                   .bytes = bytes,
                   .reason = LossReason::cut,
                   .character = std::nullopt});
}

// Converts a block, or what stands ahead of its first loss, and tells of that.
ChainStep FileConversion::runBlock(Bytes block, OnLoss onLoss) {
  const ChainState before = state_;
  const ChainStep step = conversion_.chain.run(block, state_);
  const std::optional<Extent> loss = lost_ ? std::nullopt : findLoss(before, block, step);
  if (!loss) return step;
  lost_ = true;
  reportLoss(*loss, before, block);
  state_ = before;  // looking for the place has run the block again
  return conversion_.chain.run(onLoss == OnLoss::fail ? aheadOf(block, *loss) : block, state_);
}

bool FileConversion::run(OnLoss onLoss) {
  const bool stops = onLoss == OnLoss::fail;
  for (bool more = true; more;) {
    more = input_.fill();
    const ChainStep step = runBlock(conversion_.silent.judgeable(input_.bytes()), onLoss);
    write(step.output);
    place_.advance(input_.bytes().first(step.taken));
    progress_.add(step.taken);
    input_.take(step.taken);
    if (lost_ && stops) break;
  }
  const size_t waiting = conversion_.chain.heldBytes(state_) + input_.bytes().size();
  const bool cut = waiting > 0 && !(lost_ && stops);
  if (cut) reportCut(waiting);
  written_ += seam_.finish(output_);
  return !stops || !(lost_ || cut);
}

}  // namespace veld

#include "file_conversion.h"

#include <algorithm>

#include "broken_end.h"
#include "names.h"
#include "veldnls/cei.h"

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

// What a text that begins at a place, counted as the extent is, has of the extent.
Bytes partOf(Bytes text, int64_t place, const Extent& extent) {
  const auto size = static_cast<int64_t>(text.size());
  const int64_t start = std::clamp<int64_t>(extent.start - place, 0, size);
  const int64_t end = std::clamp<int64_t>(extent.end - place, start, size);
  return text.subspan(static_cast<size_t>(start), static_cast<size_t>(end - start));
}

// The bytes of a character, the first of which, or all, may be held from before the block.
std::vector<uint8_t> bytesOf(const Extent& extent, const ChainState& before, Bytes block) {
  const Bytes held = heldSource(before);
  const Bytes first = partOf(held, -static_cast<int64_t>(held.size()), extent);
  const Bytes rest = partOf(block, 0, extent);
  std::vector<uint8_t> bytes(first.begin(), first.end());
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
      form_(nls, conversion.from),
      offset_(input.offset()),
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

void FileConversion::tell(const Loss& loss) {
  lossOffset_ = loss.offset;
  report_.addLoss(loss);
}

void FileConversion::reportLoss(const Extent& extent, const ChainState& before, Bytes block) {
  const Bytes ahead = aheadOf(block, extent);
  ChainState atLoss = before;
  conversion_.chain.run(ahead, atLoss);
  TextPlace place = place_;
  place.advance(Bytes(held_).first(held_.size() - static_cast<size_t>(std::max<int64_t>(-extent.start, 0))));
  place.advance(ahead);
  Loss loss{.offset = static_cast<uint64_t>(static_cast<int64_t>(offset_) + extent.start),
            .line = place.line(),
            .column = place.column(),
            .bytes = bytesOf(extent, before, block),
            .reason = LossReason::malformed,
            .character = std::nullopt};
  conversion_.judge.judge(loss, (atLoss[0].flags & NLS_PROGRESS_DOUBLE_MODE) != 0);
  // The library sees a fault of utf-8 when all bytes are there that the lead byte announces, and goes on behind those
  // that could follow it.
  if (conversion_.from == U_UTF8_CE) {
    loss.bytes.resize(std::min(loss.bytes.size(), form_.lengthAt(loss.bytes, false)));
  }
  tell(loss);
}

// A loss of what the state holds.
void FileConversion::reportAtHeld(Bytes bytes, LossReason reason) {
  tell({.offset = offset_ - held_.size(),
        .line = place_.line(),
        .column = place_.column(),
        .bytes = {bytes.begin(), bytes.end()},
        .reason = reason,
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

// Moves the place up to what is held.
void FileConversion::follow(Bytes taken) {
  offset_ += taken.size();
  const size_t held = conversion_.chain.heldBytes(state_);
  if (held > taken.size()) {
    held_.insert(held_.end(), taken.begin(), taken.end());
    const size_t done = held_.size() - std::min(held, held_.size());
    place_.advance(Bytes(held_).first(done));
    held_.erase(held_.begin(), held_.begin() + static_cast<ptrdiff_t>(done));
    return;
  }
  place_.advance(held_);
  place_.advance(taken.first(taken.size() - held));
  const Bytes last = taken.last(held);
  held_.assign(last.begin(), last.end());
}

// Returns how many bytes of the block are done or held.
size_t FileConversion::convertBlock(Bytes block, OnLoss onLoss) {
  const ChainStep step = runBlock(conversion_.silent.judgeable(block), onLoss);
  write(step.output);
  follow(block.first(step.taken));
  return step.taken;
}

// What is left at the end of the file is malformed, where no character begins so, or cut. Returns false when that stops
// the conversion.
bool FileConversion::convertEnd(OnLoss onLoss) {
  std::vector<uint8_t> rest(input_.bytes().begin(), input_.bytes().end());
  input_.take(rest.size());
  for (;;) {
    std::vector<uint8_t> waiting = held_;
    waiting.insert(waiting.end(), rest.begin(), rest.end());
    if (waiting.empty()) return true;
    place_.endOpen();
    const size_t broken = brokenStart(form_, waiting);
    if (broken == 0) {
      reportAtHeld(waiting, LossReason::cut);
      return onLoss != OnLoss::fail;
    }
    if (!lost_) reportAtHeld(Bytes(waiting).first(broken), LossReason::malformed);
    lost_ = true;
    if (onLoss == OnLoss::fail) return false;
    state_[0].pending = 0;
    state_[0].heldCount = 0;
    write(conversion_.chain.run(brokenSubstitute(form_), state_).output);
    place_.advanceOverFault();
    offset_ = offset_ - held_.size() + broken;
    held_.clear();
    rest.assign(waiting.begin() + static_cast<ptrdiff_t>(broken), waiting.end());
    const size_t taken = convertBlock(rest, onLoss);
    rest.erase(rest.begin(), rest.begin() + static_cast<ptrdiff_t>(taken));
  }
}

bool FileConversion::run(OnLoss onLoss) {
  bool goOn = true;
  for (bool more = true; more && goOn;) {
    more = input_.fill();
    const size_t taken = convertBlock(input_.bytes(), onLoss);
    progress_.add(taken);
    input_.take(taken);
    goOn = !(lost_ && onLoss == OnLoss::fail);
  }
  goOn = goOn && convertEnd(onLoss);
  written_ += seam_.finish(output_);
  read_ = goOn ? input_.offset() : lossOffset_;
  return goOn;
}

}  // namespace veld

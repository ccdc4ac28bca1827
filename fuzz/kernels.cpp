// Every kernel of every vector tier against the scalar one.
//
// Input: slot, tier, place of the input and of the output (one byte each), room (two), then the text.
#include "fuzz/support/area.h"
#include "slots.h"

namespace fuzz {

namespace {

using test::kernels::Slot;
using veldnls::KernelRun;
using veldnls::Kernels;
using veldnls::KernelTier;

constexpr size_t longestText = 1500;
constexpr size_t alignments = 64;

const Kernels& recordOf(KernelTier tier) {
  const test::kernels::ForcedTier forced(tier);
  return veldnls::kernels();
}

struct Case {
  const Slot& slot;
  const uint8_t* in;
  size_t count;  // units
  Room out;
  size_t room;  // units
};

struct Outcome {
  KernelRun run;
  Bytes output;  // the whole room
};

Outcome run(const Case& what, const Kernels& kernels, size_t count) {
  std::ranges::fill(what.out, canary);
  const KernelRun done = what.slot.run(kernels, what.in, count, what.out.data(), what.room);
  require(done.read <= count, "more was read than there was");
  require(done.written * what.slot.outputUnit <= what.out.size(), "more was written than there was room for");
  return {done, Bytes(what.out.begin(), what.out.end())};
}

// A tier may stop earlier than the scalar kernel only for want of room, and then between characters.
void compare(const Case& what, const Kernels& kernels) {
  const Kernels& scalar = recordOf(KernelTier::scalar);
  const Outcome expected = run(what, scalar, what.count);
  const Outcome actual = run(what, kernels, what.count);
  if (what.room >= what.count * what.slot.mostPerItem || !what.slot.mayStopForRoom) {
    require(actual.run.read == expected.run.read, "the tier reads as much");
    require(actual.run.written == expected.run.written, "the tier writes as much");
    requireEqual(actual.output, expected.output, "the tier writes the same");
    return;
  }
  require(actual.run.read <= expected.run.read, "the tier reads no more");
  const size_t size = actual.run.written * what.slot.outputUnit;
  requireEqual(Span(actual.output).first(size), Span(expected.output).first(size), "the tier writes the same");
  require(isUntouched(Span(actual.output).subspan(size)), "bytes behind those reported");
  const Outcome part = run(what, scalar, actual.run.read);
  require(part.run.read == actual.run.read && part.run.written == actual.run.written, "whole characters are read");
}

}  // namespace

void check(Input input) {
  static const std::vector<KernelTier> tiers = test::kernels::vectorTiers();
  static Area inputArea(longestText + 4096);
  static Area outputArea(4 * longestText + 4096);
  if (tiers.empty()) return;

  const auto& slots = test::kernels::slots();
  const Slot& slot = slots[input.byte() % slots.size()];
  const Kernels& kernels = recordOf(tiers[input.byte() % tiers.size()]);
  const size_t inputShift = input.byte() % alignments;
  const size_t outputShift = input.byte() % alignments;
  const size_t someRoom = input.word();
  const Bytes text = input.text(longestText);

  const size_t unit = test::kernels::unitSize(slot.form);
  const size_t count = text.size() / unit;
  const size_t most = count * slot.mostPerItem;
  const size_t room = slot.mayStopForRoom ? someRoom % (most + 2) : most;
  // Shifted, a buffer ends ahead of the guard page, whose place no longer matters then.
  const Room in = inputArea.place(count * unit + inputShift, At::end).first(count * unit);
  const Room out = outputArea.place(room * slot.outputUnit + outputShift, At::end).first(room * slot.outputUnit);
  std::copy_n(text.begin(), in.size(), in.begin());
  compare({slot, in.data(), count, out, room}, kernels);
}

}  // namespace fuzz

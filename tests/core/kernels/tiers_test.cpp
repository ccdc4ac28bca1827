// Each vector tier against the scalar one: every slot, every length, every alignment, against guard pages.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <initializer_list>

#include "slots.h"
#include "support/guard.h"

namespace test::kernels {

namespace {

using veldnls::KernelRun;
using veldnls::Kernels;
using veldnls::KernelTier;

constexpr size_t longest = 200;
constexpr uint8_t untouched = 0xCD;

const Kernels& recordOf(KernelTier tier) {
  const ForcedTier forced(tier);
  return veldnls::kernels();
}

struct Outcome {
  KernelRun run;
  Bytes output;  // `room` units and what the kernel left of them
};

// Runs on the first `count` units at `in`, with the output at `out`, which has `room` units.
Outcome runAt(const Slot& slot, const Kernels& kernels, const uint8_t* in, size_t count, uint8_t* out, size_t room) {
  const size_t size = room * slot.outputUnit;
  std::fill_n(out, size, untouched);
  const KernelRun run = slot.run(kernels, in, count, out, room);
  return {run, Bytes(out, out + size)};
}

class KernelTiers : public testing::TestWithParam<KernelTier> {
 protected:
  // The tier's outcome is the scalar one, or a shorter one where the slot allows that.
  void compare(const Slot& slot, const uint8_t* in, size_t count, uint8_t* out, size_t room, const std::string& what) {
    const Outcome expected = runAt(slot, recordOf(KernelTier::scalar), in, count, out, room);
    const Outcome actual = runAt(slot, recordOf(GetParam()), in, count, out, room);
    const bool ample = room >= count * slot.mostPerItem;
    SCOPED_TRACE(slot.name + ", " + what + ", " + std::to_string(count) + " units, room " + std::to_string(room));
    if (ample || !slot.mayStopForRoom) {
      ASSERT_EQ(actual.run.read, expected.run.read);
      ASSERT_EQ(actual.run.written, expected.run.written);
      ASSERT_EQ(actual.output, expected.output);
      return;
    }
    ASSERT_LE(actual.run.read, expected.run.read);
    ASSERT_LE(actual.run.written, expected.run.written);
    const auto size = static_cast<std::ptrdiff_t>(actual.run.written * slot.outputUnit);
    ASSERT_TRUE(std::equal(actual.output.begin(), actual.output.begin() + size, expected.output.begin()));
    ASSERT_TRUE(
        std::all_of(actual.output.begin() + size, actual.output.end(), [](uint8_t byte) { return byte == untouched; }));
    // What was read is whole characters: the scalar form gives the same for it alone.
    const Outcome part = runAt(slot, recordOf(KernelTier::scalar), in, actual.run.read, out, room);
    ASSERT_EQ(part.run.read, actual.run.read);
    ASSERT_EQ(part.run.written, actual.run.written);
  }
};

TEST_P(KernelTiers, EveryLengthAgainstGuardPages) {
  for (const Slot& slot : slots()) {
    const size_t unit = unitSize(slot.form);
    GuardedBuffer input(longest * unit);
    GuardedBuffer output(std::max<size_t>(1, longest * slot.mostPerItem * slot.outputUnit));
    for (const Text& text : textsIn(slot.form, longest)) {
      for (size_t count = 0; count <= longest; ++count) {
        uint8_t* in = input.data() + input.size() - count * unit;
        std::memcpy(in, text.bytes.data(), count * unit);
        const size_t room = count * slot.mostPerItem;
        uint8_t* out = output.data() + output.size() - room * slot.outputUnit;
        compare(slot, in, count, out, room, text.name);
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST_P(KernelTiers, EveryAlignment) {
  constexpr size_t alignments = 64;
  for (const Slot& slot : slots()) {
    const size_t unit = unitSize(slot.form);
    GuardedBuffer input(longest * unit + alignments, GuardedBuffer::At::start);
    GuardedBuffer output(longest * slot.mostPerItem * slot.outputUnit + alignments, GuardedBuffer::At::start);
    for (const Text& text : textsIn(slot.form, longest)) {
      for (size_t alignment = 0; alignment < alignments; ++alignment) {
        for (const size_t count : {size_t{1}, size_t{16}, size_t{67}, longest}) {
          std::memcpy(input.data() + alignment, text.bytes.data(), count * unit);
          compare(slot, input.data() + alignment, count, output.data() + (alignments - 1 - alignment),
                  count * slot.mostPerItem, text.name);
          if (HasFatalFailure()) return;
        }
      }
    }
  }
}

TEST_P(KernelTiers, EveryRoom) {
  for (const Slot& slot : slots()) {
    if (!slot.mayStopForRoom) continue;
    const size_t unit = unitSize(slot.form);
    GuardedBuffer input(longest * unit);
    GuardedBuffer output(longest * slot.mostPerItem * slot.outputUnit);
    for (const Text& text : textsIn(slot.form, longest)) {
      for (size_t room = 0; room <= longest; ++room) {
        for (const size_t count : {room / slot.mostPerItem, room, longest}) {
          uint8_t* in = input.data() + input.size() - count * unit;
          std::memcpy(in, text.bytes.data(), count * unit);
          uint8_t* out = output.data() + output.size() - room * slot.outputUnit;
          compare(slot, in, count, out, room, text.name);
          if (HasFatalFailure()) return;
        }
      }
    }
  }
}

// The rooms below what a short text needs, which kernels take whole in forms of their own: against a guard page.
TEST_P(KernelTiers, EveryRoomOfShortTexts) {
  constexpr size_t longestShort = 18;
  for (const Slot& slot : slots()) {
    if (!slot.mayStopForRoom) continue;
    const size_t unit = unitSize(slot.form);
    GuardedBuffer input(longestShort * unit);
    GuardedBuffer output(longestShort * slot.mostPerItem * slot.outputUnit);
    for (const Text& text : textsIn(slot.form, longest)) {
      for (size_t count = 1; count <= longestShort; ++count) {
        uint8_t* in = input.data() + input.size() - count * unit;
        std::memcpy(in, text.bytes.data(), count * unit);
        for (size_t room = 0; room < count * slot.mostPerItem; ++room) {
          uint8_t* out = output.data() + output.size() - room * slot.outputUnit;
          compare(slot, in, count, out, room, text.name);
          if (HasFatalFailure()) return;
        }
      }
    }
  }
}

// Exactly the room that the text needs is enough, so that a field's last block doesn't fall back.
TEST_P(KernelTiers, ExactRoomIsEnough) {
  for (const Slot& slot : slots()) {
    if (!slot.mayStopForRoom) continue;
    for (const Text& text : textsIn(slot.form, longest)) {
      Bytes output(longest * slot.mostPerItem * slot.outputUnit);
      const KernelRun whole =
          slot.run(recordOf(KernelTier::scalar), text.bytes.data(), longest, output.data(), longest * slot.mostPerItem);
      const KernelRun exact =
          slot.run(recordOf(GetParam()), text.bytes.data(), whole.read, output.data(), whole.written);
      ASSERT_EQ(exact.read, whole.read) << slot.name << ", " << text.name;
      ASSERT_EQ(exact.written, whole.written) << slot.name << ", " << text.name;
    }
  }
}

// Slots that may work in place, or with the output in front of the input.
TEST_P(KernelTiers, OutputAtOrBeforeInput) {
  for (const Slot& slot : slots()) {
    if (slot.name != "byteMap" && slot.name != "swap16" && slot.name != "swap32") continue;
    const size_t unit = unitSize(slot.form);
    const Bytes text = textsIn(slot.form, longest).back().bytes;
    for (size_t count = 0; count <= longest; ++count) {
      Bytes expected(count * unit);
      slot.run(recordOf(KernelTier::scalar), text.data(), count, expected.data(), count);
      for (const size_t distance : std::initializer_list<size_t>{0, 1, 2, 3, 31, 63, 64, 65, 130}) {
        Bytes buffer(distance + count * unit);
        std::copy_n(text.begin(), count * unit, buffer.begin() + static_cast<std::ptrdiff_t>(distance));
        slot.run(recordOf(GetParam()), buffer.data() + distance, count, buffer.data(), count);
        buffer.resize(count * unit);
        ASSERT_EQ(buffer, expected) << slot.name << ", " << count << " units, distance " << distance;
      }
    }
  }
}

// Places on both sides of the borders between blocks of the vector forms.
std::vector<size_t> placesAroundBorders() {
  std::vector<size_t> places;
  for (const size_t border : {32u, 64u, 128u}) {
    for (size_t place = border - 4; place < border + 2; ++place) places.push_back(place);
  }
  return places;
}

// Every second byte behind every kind of lead, on both sides of the border between two blocks.
TEST_P(KernelTiers, SequencesAcrossWindows) {
  for (const Slot& slot : slots()) {
    if (slot.name != "utf8ToUtf16" && slot.name != "utf8ToUtf32" && slot.name != "utf8Valid") continue;
    Bytes out(longest * std::max<size_t>(1, slot.outputUnit));
    for (const size_t position : placesAroundBorders()) {
      for (const int lead : {0x41, 0x80, 0xC1, 0xC2, 0xE0, 0xE2, 0xED, 0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xFF}) {
        for (int second = 0; second < 256; ++second) {
          for (const int third : {0x80, 0xBF, 0xC0, 0x41}) {
            Bytes text(longest, 0x61);
            text[position] = static_cast<uint8_t>(lead);
            text[position + 1] = static_cast<uint8_t>(second);
            text[position + 2] = static_cast<uint8_t>(third);
            text[position + 3] = 0x9F;
            compare(slot, text.data(), longest, out.data(), longest * slot.mostPerItem,
                    "around " + std::to_string(position));
            if (HasFatalFailure()) return;
          }
        }
      }
    }
  }
}

// The mode behind a piece of shifted text, which decides what the next piece means.
TEST_P(KernelTiers, ModesBehindEveryLength) {
  const Kernels& scalar = recordOf(KernelTier::scalar);
  const Kernels& tier = recordOf(GetParam());
  Bytes out(3 * longest);
  for (const bool before : {false, true}) {
    for (const Text& text : textsIn(Form::shifted, longest)) {
      for (size_t count = 0; count <= longest; ++count) {
        bool expected = before;
        bool actual = before;
        scalar.shiftedToUnits(shiftedSource(), expected, text.bytes.data(), count, out.data(), count);
        tier.shiftedToUnits(shiftedSource(), actual, text.bytes.data(), count, out.data(), count);
        ASSERT_EQ(actual, expected) << text.name << ", " << count << " bytes";
      }
    }
    for (const Text& text : textsIn(Form::utf16Little, longest)) {
      for (size_t count = 0; count <= longest; ++count) {
        bool expected = before;
        bool actual = before;
        scalar.unitsToShifted(shiftedTarget(), expected, text.bytes.data(), count, out.data(), out.size());
        tier.unitsToShifted(shiftedTarget(), actual, text.bytes.data(), count, out.data(), out.size());
        ASSERT_EQ(actual, expected) << text.name << ", " << count << " units";
      }
    }
  }
}

// What stands in front of a shift-out: `place` bytes, to begin in the mode `before`.
struct Lead {
  std::string name;
  bool before;
  Bytes (*bytes)(size_t place);
};

constexpr uint8_t shiftOut = 0x0E;
constexpr uint8_t shiftIn = 0x0F;

Bytes singles(size_t place) { return Bytes(place, 0xC1); }

Bytes doubles(size_t place) { return Bytes(place, 0x40); }

Bytes doublesThenSingles(size_t place) {
  Bytes bytes(place, 0x40);
  if (place == 0) return bytes;
  // An even number of bytes stands ahead of the shift-in.
  const size_t shift = place % 2 == 1 ? place - 1 : place - 2;
  bytes[shift] = shiftIn;
  return bytes;
}

Bytes shortRuns(size_t place) {
  Bytes bytes;
  while (bytes.size() + 4 <= place) bytes.insert(bytes.end(), {shiftOut, 0x40, 0x40, shiftIn});
  bytes.resize(place, 0xC1);
  return bytes;
}

const Lead leadsOfShiftOut[] = {
    {"singles", false, singles},
    {"doubles", true, doubles},
    {"doubles and a shift-in", true, doublesThenSingles},
    {"short runs of doubles", false, shortRuns},
};

// A shift-out is taken only with the character behind it, wherever the text ends. A kernel that takes it for progress
// and gives it back never ends.
TEST_P(KernelTiers, ShiftOutAtEveryPlace) {
  const auto convert = [](KernelTier tier, bool& mode, GuardedBuffer& input, Bytes& left) {
    const size_t count = input.size();
    GuardedBuffer output(2 * count);
    const KernelRun run =
        recordOf(tier).shiftedToUnits(shiftedSource(), mode, input.data(), count, output.data(), count);
    left.assign(output.data(), output.data() + output.size());
    return run;
  };
  for (const Lead& lead : leadsOfShiftOut) {
    for (size_t place = 0; place <= 130; ++place) {
      for (const size_t behind : {0u, 1u, 2u, 3u, 62u, 63u, 64u, 65u}) {
        Bytes text = lead.bytes(place);
        text.push_back(shiftOut);
        text.resize(place + 1 + behind, 0x40);
        GuardedBuffer input(text);
        bool expectedMode = lead.before;
        bool mode = lead.before;
        Bytes expectedOutput;
        Bytes output;
        const KernelRun expected = convert(KernelTier::scalar, expectedMode, input, expectedOutput);
        const KernelRun actual = convert(GetParam(), mode, input, output);
        SCOPED_TRACE(lead.name + ", shift-out at " + std::to_string(place) + ", then " + std::to_string(behind));
        ASSERT_EQ(actual.read, expected.read);
        ASSERT_EQ(actual.written, expected.written);
        ASSERT_EQ(mode, expectedMode);
        ASSERT_EQ(output, expectedOutput);
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Tier, KernelTiers, testing::ValuesIn(vectorTiers()),
                         [](const auto& tier) { return nameOf(tier.param); });
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(KernelTiers);

}  // namespace

}  // namespace test::kernels

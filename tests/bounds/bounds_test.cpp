// Every call of the table with buffers that end, and that begin, at a page that can't be accessed, at every length of
// the input and every room for the output.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <ostream>

#include "bounds/calls.h"
#include "support/guard.h"

namespace bounds_test {

void PrintTo(const CallResult& result, std::ostream* stream) {
  *stream << "status " << std::hex << result.status << std::dec << ", " << result.written << " bytes";
}

void PrintTo(const CallRow& row, std::ostream* stream) { *stream << row.name; }

namespace {

enum class At { end, start };

constexpr uint8_t canary = 0xCD;
// Bytes beside a buffer, on the side where there is no guard page, that are looked at.
constexpr size_t margin = 16;
// With less room than a unit of its output a call may not even look at the input.
constexpr size_t widestUnit = 4;

// Memory between two guard pages, in which buffers of any size lie at one end.
class Area {
 public:
  Room place(size_t size, At at) {
    if (size + margin > bytes_.size()) throw std::length_error("a buffer is longer than the area");
    return at == At::end ? bytes_.bytes().last(size) : bytes_.bytes().first(size);
  }

  // The bytes beside a buffer that was placed.
  static Room beside(Room buffer, At at) {
    return at == At::end ? Room(buffer.data() - margin, margin) : Room(buffer.data() + buffer.size(), margin);
  }

 private:
  test::GuardedBuffer bytes_{1 << 15};
};

bool isUntouched(Span bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](uint8_t byte) { return byte == canary; });
}

struct Outcome {
  CallResult result;
  Bytes bytes;

  bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* stream) {
  bounds_test::PrintTo(outcome.result, stream);
  *stream << ": " << test::toHex(outcome.bytes);
}

// One call. What lies beside the input differs from call to call, so that an answer which depends on it shows.
Outcome callAt(const CallRow& row, Span text, size_t room, At at) {
  static Area inputArea;
  static Area outputArea;
  static uint8_t neighbour = 0;
  const Room input = inputArea.place(text.size(), at);
  std::ranges::fill(Area::beside(input, at), neighbour += 0x35);
  std::ranges::copy(text, input.begin());
  const Room output = outputArea.place(room, at);
  std::ranges::fill(output, canary);
  std::ranges::fill(Area::beside(output, at), canary);

  Outcome outcome{row.call(input, output), {}};
  if (outcome.result.written > room) {
    ADD_FAILURE() << outcome.result.written << " bytes in a room of " << room;
    return outcome;
  }
  outcome.bytes.assign(output.begin(), output.begin() + static_cast<std::ptrdiff_t>(outcome.result.written));
  EXPECT_TRUE(isUntouched(output.subspan(outcome.result.written))) << "bytes behind what was reported";
  EXPECT_TRUE(isUntouched(Area::beside(output, at))) << "bytes outside of the output";
  EXPECT_TRUE(std::ranges::equal(text, input)) << "the input";
  return outcome;
}

bool isPrefix(Span bytes, Span whole) {
  const size_t common = std::min(bytes.size(), whole.size());
  return std::ranges::equal(bytes.first(common), whole.first(common));
}

bool endsInReplacedPair(const CallRow& row, Span bytes, Span whole) {
  if (bytes.size() < 2 || whole.size() < bytes.size() + 2) return false;
  const size_t at = bytes.size() - 2;
  const size_t high = row.bigEndianOutput ? 0 : 1;
  const bool replaced = bytes[at + high] == 0xFF && bytes[at + 1 - high] == 0xFD;
  const bool pair = whole[at + high] >= 0xD8 && whole[at + high] <= 0xDB;
  return replaced && pair && isPrefix(bytes.first(at), whole);
}

// A field without its number, of stars with blanks in front.
bool isStarred(Span bytes) {
  for (size_t i = 0; i + 1 < bytes.size(); i += sizeof(char16_t)) {
    if ((bytes[i] != '*' && bytes[i] != ' ') || bytes[i + 1] != 0) return false;
  }
  return true;
}

// The last units of `whole`, from the end.
bool isReversedTail(Span bytes, Span whole) {
  if (bytes.size() > whole.size()) return false;
  for (size_t i = 0; i < bytes.size(); i += sizeof(char16_t)) {
    const size_t mirrored = whole.size() - sizeof(char16_t) - i;
    if (bytes[i] != whole[mirrored] || bytes[i + 1] != whole[mirrored + 1]) return false;
  }
  return true;
}

bool isShortened(const CallRow& row, const Outcome& outcome, const Outcome& whole) {
  switch (row.shortening) {
    case Shortening::prefix:
      return isPrefix(outcome.bytes, whole.bytes);
    case Shortening::pairBecomesFFFD:
      return isPrefix(outcome.bytes, whole.bytes) || endsInReplacedPair(row, outcome.bytes, whole.bytes);
    case Shortening::closed:
      return isPrefix(outcome.bytes, whole.bytes) ||
             (outcome.bytes.size() >= row.closing &&
              isPrefix(Span(outcome.bytes).first(outcome.bytes.size() - row.closing), whole.bytes));
    case Shortening::stars:
      return outcome == whole || isStarred(outcome.bytes);
    case Shortening::fitted:
      return true;
    default:
      return outcome.bytes.size() == whole.bytes.size() ? outcome.bytes == whole.bytes
                                                        : isReversedTail(outcome.bytes, whole.bytes);
  }
}

// Rooms for an output of `full` bytes: all of them for a short one, else those at the edges.
std::vector<size_t> roomsFor(const CallRow& row, size_t full) {
  constexpr size_t beyond = 8;
  constexpr size_t allUpTo = 512;
  if (row.outputSize.has_value()) return {*row.outputSize};
  std::vector<size_t> rooms;
  for (size_t room = 0; room <= full + beyond; ++room) {
    const auto near = [room](size_t edge) { return room + 2 >= edge && room <= edge + 2; };
    const bool edge = room < beyond || room + beyond >= full || near(256) || near(1024) || near(2048) || near(full / 2);
    if ((edge || full <= allUpTo) && room % row.outputUnit == 0) rooms.push_back(room);
  }
  return rooms;
}

void checkCall(const CallRow& row, Span text) {
  const size_t plenty = row.outputSize.value_or((6 * text.size() + 1024) / row.outputUnit * row.outputUnit);
  const Outcome whole = callAt(row, text, plenty, At::end);
  // A text may fill whatever room it is given; then all is compared with that.
  const size_t full = whole.bytes.size() == plenty && !row.outputSize.has_value() ? plenty / 2 : whole.bytes.size();
  for (const size_t room : roomsFor(row, full)) {
    const Outcome ending = callAt(row, text, room, At::end);
    ASSERT_EQ(callAt(row, text, room, At::start), ending) << "room " << room << ", input " << test::toHex(text);
    ASSERT_TRUE(isShortened(row, ending, whole)) << "room " << room << ", input " << test::toHex(text) << "\nwhole "
                                                 << test::toHex(whole.bytes) << "\nshort " << test::toHex(ending.bytes);
    // A check of UTF-16 may see the end of its room in what it would otherwise hold back.
    if (row.outputSize.has_value() || room >= whole.bytes.size() + widestUnit) {
      ASSERT_EQ(ending, whole) << "room " << room << ", input " << test::toHex(text);
    }
    ASSERT_FALSE(testing::Test::HasFailure()) << "room " << room << ", input " << test::toHex(text);
  }
}

class Bounds : public testing::TestWithParam<CallRow> {
 protected:
  // Checks texts of these lengths, whole and damaged.
  static void check(std::initializer_list<std::pair<size_t, size_t>> ranges, uint32_t seeds) {
    const CallRow& row = GetParam();
    for (const auto& [first, last] : ranges) {
      for (size_t length = first; length <= last; ++length) {
        if (length % row.inputUnit != 0 || row.inputSize.value_or(length) != length) continue;
        for (uint32_t seed = 0; seed < seeds; ++seed) {
          for (const Condition condition : {Condition::whole, Condition::damaged}) {
            ASSERT_NO_FATAL_FAILURE(checkCall(row, makeText(row.input, condition, seed, length)));
          }
        }
      }
    }
  }
};

TEST_P(Bounds, ShortTexts) {
  // Calls of one size have fewer cases, so they see more texts.
  const bool fixed = GetParam().inputSize.has_value() || GetParam().outputSize.has_value();
  check({{0, 67}}, fixed ? 16 : 2);
}

// Around the sizes at which scratch memory leaves the stack.
TEST_P(Bounds, TextsAroundScratchSizes) { check({{255, 257}, {1023, 1025}, {2047, 2049}}, 2); }

INSTANTIATE_TEST_SUITE_P(Calls, Bounds, testing::ValuesIn(callRows()), [](const auto& row) { return row.param.name; });

}  // namespace

}  // namespace bounds_test

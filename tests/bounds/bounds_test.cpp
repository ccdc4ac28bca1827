// Every call of the table with buffers that end, and that begin, at a page that can't be accessed, at every length of
// the input and every room for the output.
#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <ostream>
#include <string>

#include "bounds/calls.h"
#include "bounds/routes.h"
#include "support/conversion.h"
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

// A number with a decimal comma, as its field shows it.
struct Shown {
  long double value = 0;
  long double lastPlace = 0;
};

std::optional<Shown> shownIn(Span bytes) {
  std::string text;
  for (size_t i = 0; i + 1 < bytes.size(); i += sizeof(char16_t)) {
    if (bytes[i + 1] != 0) return std::nullopt;
    const char character = static_cast<char>(bytes[i]);
    if (character != ' ' && character != '.') text += character == ',' ? '.' : character;
  }
  Shown shown;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, shown.value);
  if (error != std::errc() || rest != end) return std::nullopt;
  const size_t mark = std::min(text.find_first_of("eE"), text.size());
  const size_t point = std::min(text.find('.'), mark);
  int exponent = mark < text.size() ? std::atoi(text.c_str() + mark + 1) : 0;
  if (point < mark) exponent -= static_cast<int>(mark - point - 1);
  shown.lastPlace = std::pow(10.0L, static_cast<long double>(exponent));
  return shown;
}

// A number as its room allows, which is off by no more than the places that are shown, or stars.
bool isFitted(const Outcome& outcome, const Outcome& whole) {
  if (outcome == whole) return true;
  const NlsStatus status = outcome.result.status;
  if (status == nlsFieldTooNarrow) return isStarred(outcome.bytes);
  const std::optional<Shown> shown = shownIn(outcome.bytes);
  const std::optional<Shown> wanted = shownIn(whole.bytes);
  if ((status != 0 && status != nlsDigitsLost) || !shown.has_value() || !wanted.has_value()) return false;
  return std::abs(shown->value - wanted->value) <= shown->lastPlace + wanted->lastPlace;
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
      return isFitted(outcome, whole);
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

// User characters are in the texts, where they change what comes out.
TEST(UserTables, AreSeenInShortTexts) {
  for (const Route& route : routes()) {
    if (!route.hasUserTables()) continue;
    TranscodingPipeline* without = Route{route.source, route.target}.pipeline();
    int seen = 0;
    for (uint32_t seed = 0; seed < 60; ++seed) {
      const Bytes text = makeText(route.source.kind, Condition::whole, seed, 40);
      if (test::convertWhole(route.pipeline(), text).bytes != test::convertWhole(without, text).bytes) ++seen;
    }
    EXPECT_GE(seen, 6) << route.name();
  }
}

INSTANTIATE_TEST_SUITE_P(Calls, Bounds, testing::ValuesIn(callRows()), [](const auto& row) { return row.param.name; });

}  // namespace

}  // namespace bounds_test

// Input and output in one memory: at every small distance the run gives what it gives with both apart.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "bounds/routes.h"

namespace cuts_test {

namespace {

using bounds_test::Bytes;
using bounds_test::Condition;
using bounds_test::makeText;
using bounds_test::Route;
using bounds_test::Span;

constexpr int reach = 9;

struct Result {
  NlsStatus status;
  Bytes bytes;
  uint32_t flags;
  uint32_t consumed;
  Bytes held;

  bool operator==(const Result&) const = default;
};

enum class Form { transcode, resumable, resumed, withHeldBytes };
constexpr Form forms[] = {Form::transcode, Form::resumable, Form::resumed, Form::withHeldBytes};

Result runAt(TranscodingPipeline* pipeline, Form form, const uint8_t* in, size_t length, uint8_t* out, size_t room) {
  TranscodeProgress progress{};
  if (form == Form::withHeldBytes) progress = {0, 0, 1, 2, {0xE2, 0x82}};
  const auto inputLength = static_cast<uint32_t>(length);
  const auto size = static_cast<uint32_t>(room);
  uint32_t written = 0;
  NlsStatus status;
  if (form == Form::transcode) {
    status = pipeline->transcode(pipeline, in, inputLength, out, size, &written, nullptr);
  } else {
    status = pipeline->transcodeResumable(pipeline, in, inputLength, out, size, &written,
                                          form == Form::resumable ? nullptr : &progress, nullptr);
  }
  Result result{status, Bytes(out, out + written), progress.flags, progress.consumed, {}};
  if (progress.pending != 0) result.held.assign(progress.held, progress.held + progress.heldCount);
  return result;
}

void checkDistance(TranscodingPipeline* pipeline, Form form, Span text, size_t room, int distance) {
  Bytes apart(text.begin(), text.end());
  Bytes output(room);
  const Result wanted = runAt(pipeline, form, apart.data(), apart.size(), output.data(), room);

  const auto margin = static_cast<size_t>(std::abs(distance)) + reach;
  Bytes memory(text.size() + room + 2 * margin, 0xEE);
  uint8_t* in = memory.data() + margin;
  uint8_t* out = in + distance;
  std::ranges::copy(text, in);
  const Bytes before = memory;
  const Result result = runAt(pipeline, form, in, text.size(), out, room);
  ASSERT_EQ(test::toHex(result.bytes), test::toHex(wanted.bytes));
  ASSERT_EQ(result, wanted) << std::hex << "status " << result.status << " for " << wanted.status;
  const auto start = out - memory.data();
  const auto end = start + static_cast<std::ptrdiff_t>(result.bytes.size());
  ASSERT_TRUE(std::equal(before.begin(), before.begin() + start, memory.begin())) << "bytes ahead of the output";
  ASSERT_TRUE(std::equal(before.begin() + end, before.end(), memory.begin() + end)) << "bytes behind the output";
}

class Overlap : public testing::TestWithParam<Route> {
 protected:
  static void check(Span text, int distance) {
    TranscodingPipeline* pipeline = GetParam().pipeline();
    for (const Form form : forms) {
      for (const size_t room : {size_t{3}, text.size() / 2, text.size(), 6 * text.size() + 8}) {
        ASSERT_NO_FATAL_FAILURE(checkDistance(pipeline, form, text, room, distance))
            << "form " << static_cast<int>(form) << ", room " << room << ", distance " << distance << ", input "
            << test::toHex(text);
      }
    }
  }
};

TEST_P(Overlap, AtEverySmallDistance) {
  for (const size_t length : {1u, 2u, 4u, 5u, 8u, 16u, 33u, 64u, 130u}) {
    for (uint32_t seed = 0; seed < 2; ++seed) {
      for (const Condition condition : {Condition::whole, Condition::damaged}) {
        const Bytes text = makeText(GetParam().source.kind, condition, seed, length);
        for (int distance = -reach; distance <= reach; ++distance) {
          ASSERT_NO_FATAL_FAILURE(check(text, distance));
        }
        ASSERT_NO_FATAL_FAILURE(check(text, static_cast<int>(length) - 1));
        ASSERT_NO_FATAL_FAILURE(check(text, 1 - static_cast<int>(length)));
      }
    }
  }
}

TEST_P(Overlap, OfTextsBeyondTheStack) {
  for (const size_t length : {1023u, 1026u, 2047u, 2052u, 5000u}) {
    const Bytes text = makeText(GetParam().source.kind, Condition::damaged, 1, length);
    for (const int distance : {-64, -3, -1, 0, 1, 2, 5, 64}) {
      ASSERT_NO_FATAL_FAILURE(check(text, distance));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Routes, Overlap, testing::ValuesIn(bounds_test::routes()),
                         [](const auto& route) { return route.param.name(); });

}  // namespace

}  // namespace cuts_test

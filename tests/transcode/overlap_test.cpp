// Input and output in one buffer, at small distances in both directions.
#include <algorithm>
#include <cstring>
#include <string>

#include "reference/reference.h"

namespace transcode_test {

namespace {

constexpr int reach = 9;

// Runs with the output `distance` bytes behind (or ahead of) the input and compares with the run apart.
void checkOverlap(TranscodingPipeline* pipeline, NlsTranscode transcode, Span input, int distance, size_t capacity) {
  const Outcome apart =
      transcode == pipeline->transcode ? plain(pipeline, input, capacity) : run(pipeline, input, capacity);
  Bytes buffer(input.size() + capacity + 4 * reach, 0xEE);
  uint8_t* in = buffer.data() + 2 * reach;
  uint8_t* out = in + distance;
  std::copy(input.begin(), input.end(), in);
  const Bytes before = buffer;
  uint32_t written = 0;
  const NlsStatus status =
      transcode == pipeline->transcode
          ? pipeline->transcode(pipeline, in, static_cast<uint32_t>(input.size()), out, static_cast<uint32_t>(capacity),
                                &written, nullptr)
          : pipeline->transcodeResumable(pipeline, in, static_cast<uint32_t>(input.size()), out,
                                         static_cast<uint32_t>(capacity), &written, nullptr, nullptr);
  ASSERT_EQ(status, apart.status) << "distance " << distance << ", room " << capacity;
  ASSERT_EQ(Bytes(out, out + written), apart.bytes) << "distance " << distance << ", room " << capacity;
  const auto start = out - buffer.data();
  ASSERT_TRUE(std::equal(before.begin(), before.begin() + start, buffer.begin()));
  ASSERT_TRUE(std::equal(before.begin() + start + written, before.end(), buffer.begin() + start + written));
}

TEST(Overlap, EveryPairAtSmallDistances) {
  for (const TextForm& source : textForms) {
    const Bytes text = textIn(source, U"abc\u00E9\u20ACz\U0001F600 xyz");
    for (const TextForm& target : textForms) {
      const Pipeline pipeline(source.cei, target.cei);
      for (int distance = -reach; distance <= reach; ++distance) {
        for (const size_t capacity : {size_t{3}, text.size() / 2, text.size(), 3 * text.size()}) {
          SCOPED_TRACE(std::to_string(source.cei) + " to " + std::to_string(target.cei));
          ASSERT_NO_FATAL_FAILURE(checkOverlap(pipeline, pipeline->transcode, text, distance, capacity));
          ASSERT_NO_FATAL_FAILURE(checkOverlap(pipeline, nullptr, text, distance, capacity));
        }
      }
    }
  }
}

TEST(Overlap, TextsBeyondTheStackBuffer) {
  std::u32string text;
  for (char32_t c = 0x4E00; c < 0x4E00 + 3000; ++c) text.push_back(c);
  const Bytes input = utf8(text);
  for (const CEI target : {U_L_UNICODE_CE, U_B_UNICODE_CE, U_L_UCS4_CE, U_UTF8_CE, U_UTFE_CE}) {
    const Pipeline pipeline(U_UTF8_CE, target);
    for (const int distance : {-3, 0, 3}) {
      ASSERT_NO_FATAL_FAILURE(checkOverlap(pipeline, nullptr, input, distance, 5 * input.size()));
    }
  }
}

TEST(Overlap, HeldBytesAheadOfAnOverlappingInput) {
  const Pipeline pipeline(U_UTF8_CE, U_L_UNICODE_CE);
  TranscodeProgress progress{};
  resume(pipeline, hex("E2 82"), 16, progress);
  uint8_t buffer[32] = {0xAC, 'a', 'b', 'c'};
  uint32_t written = 0;
  EXPECT_EQ(pipeline->transcodeResumable(pipeline, buffer, 4, buffer, 32, &written, &progress, nullptr), 0u);
  EXPECT_EQ(Bytes(buffer, buffer + written), utf16(U"\u20ACabc"));
  EXPECT_EQ(progress.consumed, 4u);
}

// The input is read again behind the output to find how much of it was taken, and what is held.
TEST(Overlap, RunsThroughUtf16WithProgress) {
  for (const auto& [source, target] :
       {std::pair{U_UTF8_CE, U_UTF8_CE}, {U_UTF8_CE, U_UTFE_CE}, {U_UTFE_CE, U_UTF8_CE}, {U_UTFE_CE, U_UTFE_CE}}) {
    const Pipeline pipeline(source, target);
    Bytes input = run(Pipeline(U_L_UNICODE_CE, source), utf16(U"abc\u20ACz\U0001F600xyz\u20AC"), 64).bytes;
    input.pop_back();
    for (const size_t capacity : {size_t{4}, input.size() / 2, 2 * input.size()}) {
      TranscodeProgress wantedProgress{};
      const Outcome wanted = resume(pipeline, input, capacity, wantedProgress);
      for (int distance = -reach; distance <= reach; ++distance) {
        SCOPED_TRACE(testing::Message() << source << " to " << target << ", room " << capacity << ", at " << distance);
        Bytes buffer(input.size() + capacity + 4 * reach);
        uint8_t* in = buffer.data() + 2 * reach;
        uint8_t* out = in + distance;
        std::copy(input.begin(), input.end(), in);
        uint32_t written = 0;
        TranscodeProgress progress{};
        EXPECT_EQ(pipeline->transcodeResumable(pipeline, in, static_cast<uint32_t>(input.size()), out,
                                               static_cast<uint32_t>(capacity), &written, &progress, nullptr),
                  wanted.status);
        EXPECT_EQ(Bytes(out, out + written), wanted.bytes);
        EXPECT_EQ(progress.consumed, wanted.consumed);
        EXPECT_EQ(progress.pending != 0, wanted.pending);
        EXPECT_EQ(Bytes(progress.held, progress.held + progress.heldCount), wanted.held);
      }
    }
  }
}

// The blank rule looks at the input as it was before the copy or swap wrote on it.
TEST(Overlap, BlanksThatTheOutputCovers) {
  const Pipeline swap(U_L_UNICODE_CE, U_B_UNICODE_CE);
  uint8_t buffer[16] = {'a', 0, 'b', 0, ' ', 0, ' ', 0};
  uint32_t written = 0;
  EXPECT_EQ(swap->transcode(swap, buffer, 8, buffer + 2, 4, &written, &dropBlanks), 0u);
  EXPECT_EQ(Bytes(buffer + 2, buffer + 6), utf16(U"ab", true));

  const Pipeline copy(U_L_UNICODE_CE, U_L_UNICODE_CE);
  uint8_t text[16] = {'a', 0, 'b', 0, ' ', 0, ' ', 0};
  EXPECT_EQ(copy->transcode(copy, text, 8, text + 2, 4, &written, &dropBlanks), 0u);
  EXPECT_EQ(Bytes(text + 2, text + 6), utf16(U"ab"));
}

}  // namespace

}  // namespace transcode_test

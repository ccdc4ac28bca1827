// One pipeline of each run function on many threads, with texts that need memory from the shared pool.
#include <barrier>
#include <thread>

#include "modules/qznlssb/route.h"

namespace test {
namespace {

constexpr uint32_t textSize = 5001;
constexpr uint32_t room = 5 * textSize;
constexpr int threadCount = 8;
constexpr int rounds = 20;

struct Result {
  NlsStatus status = 0;
  Bytes output;
  uint32_t consumed = 0;
  uint32_t held = 0;

  bool operator==(const Result&) const = default;
};

// Bytes that mean something in each of the encodings, and now and then nothing.
Bytes someText() {
  Bytes text;
  for (uint32_t i = 0; i < textSize; ++i) text.push_back(static_cast<uint8_t>(i * 7 % (i % 3 == 0 ? 256 : 3)));
  return text;
}

// Converts from the front of `memory` to `distance` bytes behind it.
Result convert(TranscodingPipeline* pipeline, const Bytes& text, Bytes& memory, uint32_t distance) {
  std::copy(text.begin(), text.end(), memory.begin());
  uint8_t* output = memory.data() + distance;
  uint32_t length = 0;
  TranscodeProgress progress{};
  Result result;
  result.status =
      pipeline->transcodeResumable(pipeline, memory.data(), textSize, output, room, &length, &progress, nullptr);
  result.output.assign(output, output + length);
  result.consumed = progress.consumed;
  result.held = progress.pending != 0 ? progress.heldCount : 0;
  return result;
}

using SingleByteThreads = SingleByteTest;

TEST_F(SingleByteThreads, ShareAPipeline) {
  constexpr std::pair<CEI, CEI> pairs[] = {
      {U_PCOEM850_CE, U_WLATIN1_CE},  {U_WHEBREW_CE, U_WLATIN1_CE},   {U_WLATIN1_CE, U_L_UNICODE_CE},
      {U_WLATIN1_CE, U_B_UNICODE_CE}, {U_WLATIN1_CE, U_B_UCS4_CE},    {U_WLATIN1_CE, U_UTFE_CE},
      {U_WLATIN1_CE, U_UTF8_CE},      {U_L_UNICODE_CE, U_WLATIN1_CE}, {U_B_UNICODE_CE, U_WLATIN1_CE},
      {U_L_UCS4_CE, U_WLATIN1_CE},    {U_B_UCS4_CE, U_WLATIN1_CE},    {U_UTF8_CE, U_WLATIN1_CE},
      {U_UTFE_CE, U_WLATIN1_CE},
  };
  const Bytes text = someText();
  for (const auto& [source, target] : pairs) {
    SCOPED_TRACE(testing::Message() << source << " to " << target);
    Route route(nls, source, target);
    ASSERT_EQ(route.setup, 0u);
    Bytes apart(textSize + room);
    const Result wanted = convert(&route.pipeline, text, apart, textSize);
    ASSERT_FALSE(wanted.output.empty());
    std::barrier start(threadCount);
    std::vector<int> wrong(threadCount);
    std::vector<std::thread> threads;
    for (size_t thread = 0; thread < threadCount; ++thread) {
      threads.emplace_back([&, thread] {
        Bytes memory(textSize + room);
        start.arrive_and_wait();
        for (int round = 0; round < rounds; ++round) {
          if (convert(&route.pipeline, text, memory, 1) != wanted) ++wrong[thread];
        }
      });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, std::vector<int>(threadCount));
  }
}

}  // namespace
}  // namespace test

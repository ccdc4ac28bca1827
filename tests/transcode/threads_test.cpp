// One object and its pipelines on many threads.
#include <barrier>
#include <thread>

#include "transcode/harness.h"

namespace transcode_test {

namespace {

constexpr int threadCount = 64;

// All threads at once make the first pipeline that needs the single-byte module: one copy stays.
TEST(Threads, FirstPipelinesAtOnce) {
  QZNLS* object = nls();
  ASSERT_NE(object, nullptr);
  for (int round = 0; round < 4; ++round) {
    object->singleByteModule->destroy(object->singleByteModule);
    object->singleByteModule = nullptr;
    std::barrier start(threadCount);
    std::vector<Bytes> results(threadCount);
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
      threads.emplace_back([&, i] {
        start.arrive_and_wait();
        TranscodingPipeline* pipeline = object->createPipeline(object, U_WLATIN1_CE, U_UTF8_CE, nullptr, nullptr);
        if (pipeline == nullptr) return;
        uint8_t output[8];
        uint32_t written = 0;
        pipeline->transcode(pipeline, "\x80", 1, output, sizeof output, &written, nullptr);
        results[static_cast<size_t>(i)].assign(output, output + written);
        pipeline->destroy(pipeline);
      });
    }
    for (std::thread& thread : threads) thread.join();
    for (const Bytes& result : results) EXPECT_EQ(result, hex("E2 82 AC"));
    EXPECT_NE(object->singleByteModule, nullptr);
  }
}

TEST(Threads, OnePipelineOnManyThreads) {
  const Pipeline shared(U_UTF8_CE, U_B_UNICODE_CE);
  const Pipeline twoStage(U_UTF8_CE, U_UTFE_CE);
  const Bytes input = utf8(U"a\u00E9\u20AC\U0001F600 z");
  const Bytes wide = utf16(U"a\u00E9\u20AC\U0001F600 z", true);
  const Bytes ebcdic = run(twoStage, input, 64).bytes;
  std::barrier start(8);
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&] {
      start.arrive_and_wait();
      for (int round = 0; round < 200; ++round) {
        for (const auto& [pipeline, wanted] : {std::pair<TranscodingPipeline*, const Bytes&>{shared, wide},
                                               std::pair<TranscodingPipeline*, const Bytes&>{twoStage, ebcdic}}) {
          TranscodeProgress progress{};
          Bytes joined;
          for (const uint8_t byte : input) {
            uint8_t output[16];
            uint32_t written = 0;
            pipeline->transcodeResumable(pipeline, &byte, 1, output, sizeof output, &written, &progress, nullptr);
            joined.insert(joined.end(), output, output + written);
          }
          ASSERT_EQ(joined, wanted);
        }
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace

}  // namespace transcode_test

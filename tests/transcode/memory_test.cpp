// Runs and creations that get no memory.
#include <atomic>

#include "transcode/harness.h"

namespace transcode_test {

namespace {

std::atomic<int> allowed;

NlsBool8 countDown(uint32_t) { return allowed.fetch_sub(1) > 0 ? 1 : 0; }

// While it lives, the shared object gets memory `count` times more.
class Budget {
 public:
  explicit Budget(int count) {
    allowed = count;
    host().memory.allowAllocation = countDown;
  }
  ~Budget() { host().memory.allowAllocation = nullptr; }
  Budget(const Budget&) = delete;
  Budget& operator=(const Budget&) = delete;
};

NlsStatus runStatus(TranscodingPipeline* pipeline, const uint8_t* in, uint32_t length, uint8_t* out, uint32_t size,
                    uint32_t* written, TranscodeProgress* progress) {
  return pipeline->transcodeResumable(pipeline, in, length, out, size, written, progress, nullptr);
}

TEST(Memory, CreationWithoutMemory) {
  const Budget none(0);
  EXPECT_EQ(nls()->createPipeline(nls(), U_UTF8_CE, U_L_UNICODE_CE, nullptr, nullptr), nullptr);
}

TEST(Memory, OverlapBeyondTheStackNeedsThePool) {
  const Pipeline pipeline(U_UTF8_CE, U_L_UNICODE_CE);
  Bytes buffer(8192, 'a');
  uint32_t written = 99;
  {
    const Budget none(0);
    EXPECT_EQ(runStatus(pipeline, buffer.data(), 2049, buffer.data(), 8192, &written, nullptr), nlsNoMemory);
    EXPECT_EQ(written, 0u);
    EXPECT_EQ(buffer, Bytes(8192, 'a'));
    EXPECT_EQ(runStatus(pipeline, buffer.data(), 2048, buffer.data(), 8192, &written, nullptr), 0u);
  }
  EXPECT_EQ(written, 4096u);
}

TEST(Memory, HeldBytesSurviveARunWithoutMemory) {
  for (const CEI target : {U_L_UNICODE_CE, U_UTF8_CE}) {
    const Pipeline pipeline(U_UTF8_CE, target);
    TranscodeProgress progress{};
    resume(pipeline, hex("E2 82"), 16, progress);
    Bytes input(4000, 'a');
    input[0] = 0xAC;
    Bytes output(16000);
    uint32_t written = 99;
    {
      const Budget none(0);
      EXPECT_EQ(runStatus(pipeline, input.data(), 4000, output.data(), 16000, &written, &progress), nlsNoMemory);
    }
    EXPECT_EQ(written, 0u);
    EXPECT_EQ(progress.consumed, 0u);
    EXPECT_EQ(progress.pending, 1);
    EXPECT_EQ(progress.heldCount, 2u);
    EXPECT_EQ(runStatus(pipeline, input.data(), 4000, output.data(), 16000, &written, &progress), 0u);
    EXPECT_EQ(progress.consumed, 4000u);
    EXPECT_EQ(written, target == U_UTF8_CE ? 4002u : 8000u);
  }
}

TEST(Memory, IntermediateTextOfTwoStages) {
  const Pipeline pipeline(U_UTF8_CE, U_UTFE_CE);
  const Bytes input(1025, 'a');
  Bytes output(8192);
  uint32_t written = 99;
  {
    const Budget none(0);
    EXPECT_EQ(runStatus(pipeline, input.data(), 1024, output.data(), 8192, &written, nullptr), 0u);
    EXPECT_EQ(runStatus(pipeline, input.data(), 1025, output.data(), 8192, &written, nullptr), nlsNoMemory);
    EXPECT_EQ(written, 0u);
  }
  // With held bytes ahead the private input comes first, then the intermediate text: either may fail.
  for (int count = 0;; ++count) {
    ASSERT_LT(count, 8);
    TranscodeProgress progress{};
    resume(pipeline, hex("C3"), 16, progress);
    Bytes longInput(3000, 'a');
    longInput[0] = 0xA9;
    NlsStatus status = 0;
    {
      const Budget few(count);
      status = runStatus(pipeline, longInput.data(), 3000, output.data(), 8192, &written, &progress);
    }
    if (status == 0) {
      EXPECT_EQ(written, 3001u);
      EXPECT_GT(count, 1);
      break;
    }
    EXPECT_EQ(status, nlsNoMemory);
    EXPECT_EQ(progress.heldCount, 1u);
    EXPECT_EQ(progress.pending, 1);
    EXPECT_EQ(progress.consumed, 0u);
  }
}

TEST(Memory, ChecksAndSwapsOfOverlappingTexts) {
  for (const auto& [source, target] :
       {std::pair{U_L_UNICODE_CE, U_L_UNICODE_CE}, {U_L_UCS4_CE, U_L_UCS4_CE}, {U_L_UCS4_CE, U_B_UCS4_CE}}) {
    const Pipeline pipeline(source, target);
    Bytes buffer(8192, 'a');
    uint32_t written = 99;
    const Budget none(0);
    EXPECT_EQ(runStatus(pipeline, buffer.data(), 4096, buffer.data(), 8192, &written, nullptr), nlsNoMemory);
    EXPECT_EQ(written, 0u);
  }
  // Copies and the 16-bit swap need none.
  Bytes buffer(8192, 'a');
  uint32_t written = 99;
  const Pipeline swap(U_L_UNICODE_CE, U_B_UNICODE_CE);
  const Pipeline copy(U_WLATIN1_CE, U_LATIN1_CE);
  const Budget none(0);
  EXPECT_EQ(runStatus(swap, buffer.data(), 4096, buffer.data() + 1, 8000, &written, nullptr), 0u);
  EXPECT_EQ(runStatus(copy, buffer.data(), 4096, buffer.data() + 1, 8000, &written, nullptr), 0u);
}

TEST(Memory, SumOfHeldAndInputBeyondTheRangeIsRefused) {
  const Pipeline pipeline(U_UTF8_CE, U_L_UNICODE_CE);
  TranscodeProgress progress{};
  resume(pipeline, hex("E2 82"), 16, progress);
  uint8_t output[16];
  uint32_t written = 99;
  // The text isn't read: its length alone is refused.
  EXPECT_EQ(runStatus(pipeline, output, 0xFFFFFFFF, output, 16, &written, &progress), nlsNoMemory);
  EXPECT_EQ(progress.heldCount, 2u);
}

}  // namespace

}  // namespace transcode_test

#include "core/text/run_input.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <optional>

#include "support/guard.h"
#include "support/host.h"
#include "veldnls/status.h"

namespace test {
namespace {

using veldnls::RunText;
using Bytes = std::vector<uint8_t>;

constexpr uint32_t scratchSize = 64;
using RunInput = veldnls::RunInput<scratchSize>;

Bytes bytesOf(const RunText& text) { return {text.bytes, text.bytes + text.length}; }

TranscodeProgress holding(std::string_view hex) {
  TranscodeProgress progress{};
  const Bytes bytes = fromHex(hex);
  progress.pending = 1;
  progress.heldCount = static_cast<uint32_t>(bytes.size());
  std::copy(bytes.begin(), bytes.end(), progress.held);
  return progress;
}

Bytes heldIn(const TranscodeProgress& progress) { return {progress.held, progress.held + progress.heldCount}; }

class RunInputTest : public ::testing::Test {
 protected:
  NlsHost host_{&VELDNLSLIB};
  XmPool* pool_ = host_.nls->pool;

  void refuseMemory() {
    host_.memory.allowAllocation = [](uint32_t) -> NlsBool8 { return 0; };
  }
};

TEST_F(RunInputTest, InputThatStandsApartIsReadInPlace) {
  refuseMemory();
  const Bytes input(4096, 'a');
  uint8_t output[16];
  RunInput run(pool_);
  ASSERT_TRUE(run.open(input.data(), 4096, output, sizeof output, nullptr));
  EXPECT_EQ(run.text().bytes, input.data());
  EXPECT_EQ(run.text().length, 4096u);
  EXPECT_EQ(run.text().prefixed, 0u);
}

TEST_F(RunInputTest, OverlappingInputIsCopied) {
  constexpr uint32_t length = 8;
  Bytes buffer(3 * length);
  for (size_t i = 0; i < buffer.size(); ++i) buffer[i] = static_cast<uint8_t>(i);
  uint8_t* input = buffer.data() + length;
  for (uint32_t place = 0; place <= 2 * length; ++place) {
    RunInput run(pool_);
    ASSERT_TRUE(run.open(input, length, buffer.data() + place, length, nullptr));
    const bool apart = place == 0 || place == 2 * length;
    EXPECT_EQ(run.text().bytes == input, apart) << place;
    EXPECT_EQ(bytesOf(run.text()), Bytes(input, input + length)) << place;
  }
  // A long output that encloses the input, and an empty one within it.
  RunInput enclosed(pool_);
  ASSERT_TRUE(enclosed.open(input, length, buffer.data(), 3 * length, nullptr));
  EXPECT_NE(enclosed.text().bytes, input);
  RunInput within(pool_);
  ASSERT_TRUE(within.open(input, length, input + 1, 0, nullptr));
  EXPECT_EQ(within.text().bytes, input);
}

TEST_F(RunInputTest, HeldBytesGoAheadAndTheRecordStays) {
  GuardedBuffer input(fromHex("03 04 05"));
  const TranscodeProgress progress = holding("01 02");
  const TranscodeProgress before = progress;
  RunInput run(pool_);
  ASSERT_TRUE(run.open(input.data(), 3, nullptr, 0, &progress));
  EXPECT_EQ(bytesOf(run.text()), fromHex("01 02 03 04 05"));
  EXPECT_EQ(run.text().prefixed, 2u);
  EXPECT_EQ(std::memcmp(&progress, &before, sizeof before), 0);
}

TEST_F(RunInputTest, HeldBytesAloneAreAText) {
  const TranscodeProgress progress = holding("E2 82");
  RunInput run(pool_);
  ASSERT_TRUE(run.open(nullptr, 0, nullptr, 0, &progress));
  EXPECT_EQ(bytesOf(run.text()), fromHex("E2 82"));
}

TEST_F(RunInputTest, NothingIsHeldWithoutPending) {
  const uint8_t input[] = {'x'};
  TranscodeProgress progress = holding("01 02");
  progress.pending = 0;
  RunInput run(pool_);
  ASSERT_TRUE(run.open(input, 1, nullptr, 0, &progress));
  EXPECT_EQ(run.text().bytes, input);
  EXPECT_EQ(veldnls::heldBytes(&progress), 0u);
  EXPECT_EQ(veldnls::heldBytes(nullptr), 0u);
}

TEST_F(RunInputTest, AHostileCountIsCutToTheField) {
  const uint8_t input[] = {9};
  for (const uint32_t count : {9u, 1000u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
    TranscodeProgress progress = holding("01 02 03 04 05 06 07 08");
    progress.heldCount = count;
    RunInput run(pool_);
    ASSERT_TRUE(run.open(input, 1, nullptr, 0, &progress));
    EXPECT_EQ(bytesOf(run.text()), fromHex("01 02 03 04 05 06 07 08 09")) << count;
    EXPECT_EQ(run.text().prefixed, 8u);
  }
}

TEST_F(RunInputTest, TheLongestInput) {
  constexpr uint32_t longest = 0xFFFFFFFF;
  GuardedBuffer input(1);
  const uint32_t inUse = host_.memory.context->inUse;
  {
    // Not looked at when it stands apart: the output ends where the input begins.
    RunInput run(pool_);
    ASSERT_TRUE(run.open(input.data(), longest, input.data() - 16, 16, nullptr));
    EXPECT_EQ(run.text().bytes, input.data());
    EXPECT_EQ(run.text().length, longest);
  }
  {
    RunInput run(pool_);
    EXPECT_FALSE(run.open(input.data(), longest, input.data() + 16, 16, nullptr)) << "no memory for a copy";
  }
  TranscodeProgress progress = holding("01");
  {
    RunInput run(pool_);
    EXPECT_FALSE(run.open(input.data(), longest, nullptr, 0, &progress)) << "one byte more than a length can be";
  }
  progress.heldCount = longest;
  {
    RunInput run(pool_);
    EXPECT_FALSE(run.open(input.data(), longest - 7, nullptr, 0, &progress)) << "the sum would come to 0";
  }
  EXPECT_EQ(progress.pending, 1);
  EXPECT_EQ(progress.heldCount, longest);
  EXPECT_EQ(host_.memory.context->inUse, inUse);
}

TEST_F(RunInputTest, CopiesUpToTheScratchSizeNeedNoMemory) {
  Bytes buffer(2 * scratchSize, 'a');
  const TranscodeProgress progress = holding("62 63");
  refuseMemory();
  {
    RunInput run(pool_);
    EXPECT_TRUE(run.open(buffer.data(), scratchSize, buffer.data(), scratchSize, nullptr));
    RunInput longer(pool_);
    EXPECT_FALSE(longer.open(buffer.data(), scratchSize + 1, buffer.data(), scratchSize, nullptr));
    RunInput held(pool_);
    EXPECT_TRUE(held.open(buffer.data(), scratchSize - 2, nullptr, 0, &progress));
    RunInput heldLonger(pool_);
    EXPECT_FALSE(heldLonger.open(buffer.data(), scratchSize - 1, nullptr, 0, &progress));
  }
  host_.memory.allowAllocation = nullptr;
  RunInput run(pool_);
  ASSERT_TRUE(run.open(buffer.data(), scratchSize - 1, nullptr, 0, &progress));
  Bytes wanted = fromHex("62 63");
  wanted.resize(scratchSize + 1, 'a');
  EXPECT_EQ(bytesOf(run.text()), wanted);
}

TEST(Records, AreClearedWhenARunBegins) {
  uint32_t length = 99;
  TranscodeProgress progress = holding("01");
  progress.flags = 0xFFFFFFFF;
  progress.consumed = 99;
  veldnls::beginRun(&length, &progress);
  EXPECT_EQ(length, 0u);
  EXPECT_EQ(progress.flags, ~NLS_PROGRESS_SUBSTITUTED);
  EXPECT_EQ(progress.consumed, 0u);
  EXPECT_EQ(progress.pending, 1);
  EXPECT_EQ(heldIn(progress), fromHex("01"));
  veldnls::beginRun(nullptr, nullptr);
  veldnls::reportLength(&length, 7);
  EXPECT_EQ(length, 7u);
  veldnls::reportLength(nullptr, 7);
}

TEST(Records, RunsThatEndAtOnceKeepWhatIsHeld) {
  struct Case {
    uint32_t input;
    uint32_t output;
    std::optional<NlsStatus> ended;
  };
  for (const Case& each : {Case{0, 0, 0u}, {0, 4, 0u}, {1, 3, nlsOutputTruncated}, {1, 4, std::nullopt}}) {
    uint32_t length = 99;
    TranscodeProgress progress = holding("01");
    progress.flags = 0xFFFFFFFF;
    progress.consumed = 99;
    EXPECT_EQ(veldnls::beginOrEnd(each.input, each.output, 4, &length, &progress), each.ended);
    EXPECT_EQ(length, 0u);
    EXPECT_EQ(progress.flags, ~NLS_PROGRESS_SUBSTITUTED);
    EXPECT_EQ(progress.consumed, 0u);
    EXPECT_EQ(heldIn(progress), fromHex("01"));
  }
}

TEST(Records, TakeHeldOnlyWhatStandsAhead) {
  TranscodeProgress progress = holding("01 02");
  veldnls::takeHeld(progress, {nullptr, 5, 0});
  EXPECT_EQ(progress.pending, 1);
  EXPECT_EQ(progress.heldCount, 2u);
  veldnls::takeHeld(progress, {nullptr, 5, 2});
  EXPECT_EQ(progress.pending, 0);
  EXPECT_EQ(progress.heldCount, 0u);
}

struct Settled {
  const char* held;  // null: nothing is
  uint32_t consumed;
};

// A run of ten bytes, the first three of them held before.
void expectSettled(uint32_t taken, NlsStatus status, Settled wanted) {
  SCOPED_TRACE(testing::Message() << taken << " taken, status " << std::hex << status);
  const Bytes bytes = fromHex("00 01 02 03 04 05 06 07 08 09");
  TranscodeProgress progress = holding("00 01 02");
  progress.consumed = 99;
  veldnls::settle(progress, {bytes.data(), 10, 3}, taken, status);
  EXPECT_EQ(progress.consumed, wanted.consumed);
  EXPECT_EQ(progress.pending, wanted.held != nullptr ? 1 : 0);
  EXPECT_EQ(heldIn(progress), wanted.held != nullptr ? fromHex(wanted.held) : Bytes{});
}

TEST(Settle, WhatWasReadIsConsumed) {
  for (const NlsStatus status : {NlsStatus{0}, NlsStatus{nlsSubstituted}, NlsStatus{nlsOutputTruncated}}) {
    expectSettled(10, status, {nullptr, 7});
    expectSettled(4, status, {nullptr, 1});
    expectSettled(3, status, {nullptr, 0});
  }
}

TEST(Settle, BytesOfTheCallBeforeThatWereNotReadAreHeldAgain) {
  for (const NlsStatus status : {NlsStatus{nlsOutputTruncated}, NlsStatus{nlsNoMemory}}) {
    expectSettled(0, status, {"00 01 02", 0});
    expectSettled(2, status, {"02", 0});
  }
}

TEST(Settle, AnIncompleteEndIsHeldAndCountsAsConsumed) {
  expectSettled(9, nlsIncompleteInput, {"09", 7});
  expectSettled(3, nlsIncompleteInput, {"03 04 05 06 07 08 09", 7});
  expectSettled(2, nlsIncompleteInput, {"02 03 04 05 06 07 08 09", 7});
  expectSettled(10, nlsIncompleteInput, {"00 01 02", 7});  // an inner stage has held them
}

// No character leaves more than the field takes. What it doesn't take is the next call's input.
TEST(Settle, OfALongerEndTheRestStaysUnread) {
  expectSettled(0, nlsIncompleteInput, {"00 01 02 03 04 05 06 07", 5});
  expectSettled(1, nlsIncompleteInput, {"01 02 03 04 05 06 07 08", 6});
}

TEST(Settle, BlanksOfTheCallBeforeAreDropped) {
  for (const NlsStatus status : {NlsStatus{0}, NlsStatus{nlsSubstituted}}) {
    expectSettled(0, status, {nullptr, 0});
    expectSettled(2, status, {nullptr, 0});
  }
}

}  // namespace
}  // namespace test

// The n-th allocation fails, n = 1, 2, ... until the call succeeds; what a failed call leaves behind.
#include <cstring>

#include "core/qznlsstub.h"
#include "modules/qznlssb/qznlssb.h"
#include "modules/qznlssb/route.h"

namespace test {
namespace {

int allowedAllocations = 0;

NlsBool8 allowSome(uint32_t /*size*/) { return allowedAllocations-- > 0; }

class Allocation : public SingleByteTest {
 protected:
  // Calls `body` with 0, 1, 2, ... allocations allowed until it returns true. Returns how many it took.
  template <class Body>
  int untilItSucceeds(Body body) {
    for (int allowed = 0; allowed < 20; ++allowed) {
      allowedAllocations = allowed;
      host.memory.allowAllocation = allowSome;
      const bool done = body();
      host.memory.allowAllocation = nullptr;
      if (done) return allowed;
    }
    return -1;
  }
};

TEST_F(Allocation, Constructor) {
  const uint32_t before = host.memory.context->inUse;
  for (int round = 0; round < 50; ++round) {
    const int needed = untilItSucceeds([] {
      NlsExtension* module = veldnls::createSingleByteModule(nullptr, nullptr);
      if (module == nullptr) return false;
      module->release(module);
      return true;
    });
    EXPECT_GE(needed, 2) << "a pool and a record";
  }
  EXPECT_LE(host.memory.context->inUse, before + 65536);
}

// The only failure of memory that has the status of a pair that can't be served.
TEST_F(Allocation, ByteMap) {
  allowedAllocations = 0;
  host.memory.allowAllocation = allowSome;
  const Route refused(nls, U_PCOEM850_CE, U_WLATIN1_CE);
  host.memory.allowAllocation = nullptr;
  EXPECT_EQ(refused.setup, nlsUnknownEncoding);
  EXPECT_EQ(refused.pipeline.flags, 0u);
  EXPECT_EQ(Route(nls, U_PCOEM850_CE, U_WLATIN1_CE).setup, 0u);
}

struct Case {
  CEI source;
  CEI target;
  uint32_t distance;  // of the output from the input
  bool held;
  int allocations;
};

TEST_F(Allocation, Runs) {
  constexpr uint32_t apart = 65536;
  constexpr Case cases[] = {
      {U_PCOEM850_CE, U_WLATIN1_CE, 1, false, 1},     {U_PCOEM850_CE, U_WLATIN1_CE, apart, false, 0},
      {U_WHEBREW_CE, U_WLATIN1_CE, 1, false, 1},      {U_WLATIN1_CE, U_UTF8_CE, 1, false, 1},
      {U_WLATIN1_CE, U_UTF8_CE, apart, false, 0},     {U_WLATIN1_CE, U_L_UNICODE_CE, apart, false, 0},
      {U_WLATIN1_CE, U_L_UNICODE_CE, 1, false, 1},    {U_WLATIN1_CE, U_B_UCS4_CE, 1, false, 1},
      {U_WLATIN1_CE, U_UTFE_CE, 1, false, 1},         {U_L_UNICODE_CE, U_WLATIN1_CE, apart, false, 0},
      {U_L_UNICODE_CE, U_WLATIN1_CE, 1, false, 1},    {U_L_UNICODE_CE, U_WLATIN1_CE, apart, true, 1},
      {U_B_UNICODE_CE, U_WLATIN1_CE, apart, true, 2}, {U_L_UCS4_CE, U_WLATIN1_CE, apart, false, 1},
      {U_L_UCS4_CE, U_WLATIN1_CE, 1, false, 2},       {U_B_UCS4_CE, U_WLATIN1_CE, apart, false, 2},
      {U_B_UCS4_CE, U_WLATIN1_CE, apart, true, 3},    {U_UTF8_CE, U_WLATIN1_CE, apart, false, 0},
      {U_UTF8_CE, U_WLATIN1_CE, 1, false, 1},         {U_UTF8_CE, U_WLATIN1_CE, apart, true, 1},
      {U_UTFE_CE, U_WLATIN1_CE, apart, true, 2},
  };
  constexpr uint32_t size = 4096;
  for (const Case& each : cases) {
    SCOPED_TRACE(testing::Message() << each.source << " to " << each.target << ", distance " << each.distance
                                    << (each.held ? ", held" : ""));
    Route route(nls, each.source, each.target);
    ASSERT_EQ(route.setup, 0u);
    Bytes memory(apart + 8 * size);
    TranscodeProgress before{};
    before.pending = each.held ? 1 : 0;
    before.heldCount = each.held ? 1 : 0;
    const auto succeed = [&] {
      TranscodeProgress progress = before;
      const NlsStatus status = route.pipeline.transcodeResumable(
          &route.pipeline, memory.data(), size, memory.data() + each.distance, 5 * size, nullptr, &progress, nullptr);
      EXPECT_TRUE(status == 0 || status == nlsIncompleteInput) << status;
      std::memset(memory.data(), 0, memory.size());
    };
    succeed();  // the pool's own growth isn't counted
    const uint32_t inUse = host.memory.context->inUse;
    const int needed = untilItSucceeds([&] {
      std::memset(memory.data(), 0, size);
      TranscodeProgress progress = before;
      progress.flags = 0x41;
      uint32_t length = 0;
      const NlsStatus status = route.pipeline.transcodeResumable(
          &route.pipeline, memory.data(), size, memory.data() + each.distance, 5 * size, &length, &progress, nullptr);
      if (status != nlsNoMemory) return true;
      EXPECT_EQ(length, 0u);
      EXPECT_EQ(progress.consumed, 0u);
      EXPECT_EQ(progress.pending, before.pending);
      EXPECT_EQ(progress.heldCount, before.heldCount);
      EXPECT_EQ(progress.flags, 0x41u);
      return false;
    });
    EXPECT_EQ(needed, each.allocations);
    for (int round = 0; round < 200; ++round) succeed();
    EXPECT_EQ(host.memory.context->inUse, inUse) << "scratch was not given back";
  }
}

struct Limit {
  CEI source;
  CEI target;
  uint32_t distance;  // of the output from the input
  uint32_t size;      // of the longest input that needs this many allocations
  uint32_t unit;
  int allocations;
};

// One unit more than what has room on the stack needs the pool.
TEST_F(Allocation, ScratchEndsAtItsLimit) {
  constexpr uint32_t apart = 32768;
  constexpr Limit limits[] = {
      {U_PCOEM850_CE, U_WLATIN1_CE, 1, 1024, 1, 0},   {U_WHEBREW_CE, U_WLATIN1_CE, 1, 1024, 1, 0},
      {U_WLATIN1_CE, U_UTF8_CE, 1, 2048, 1, 0},       {U_WLATIN1_CE, U_L_UNICODE_CE, 1, 1024, 1, 0},
      {U_WLATIN1_CE, U_B_UCS4_CE, apart, 512, 1, 0},  {U_WLATIN1_CE, U_UTFE_CE, apart, 512, 1, 0},
      {U_L_UNICODE_CE, U_WLATIN1_CE, 1, 2048, 2, 0},  {U_B_UNICODE_CE, U_WLATIN1_CE, apart, 1024, 2, 0},
      {U_B_UNICODE_CE, U_WLATIN1_CE, 1, 2048, 2, 1},  {U_L_UCS4_CE, U_WLATIN1_CE, apart, 1024, 4, 0},
      {U_L_UCS4_CE, U_WLATIN1_CE, 1, 2048, 4, 1},     {U_B_UCS4_CE, U_WLATIN1_CE, apart, 1024, 4, 0},
      {U_B_UCS4_CE, U_WLATIN1_CE, apart, 2048, 4, 1}, {U_UTF8_CE, U_WLATIN1_CE, 1, 2048, 1, 0},
      {U_UTFE_CE, U_WLATIN1_CE, apart, 512, 1, 0},    {U_UTFE_CE, U_WLATIN1_CE, 1, 2048, 1, 1},
  };
  for (const Limit& each : limits) {
    SCOPED_TRACE(testing::Message() << each.source << " to " << each.target << ", distance " << each.distance);
    Route route(nls, each.source, each.target);
    ASSERT_EQ(route.setup, 0u);
    const auto allocationsOf = [&](uint32_t size) {
      Bytes memory(2 * apart);
      const auto succeeds = [&] {
        TranscodeProgress progress{};
        return route.pipeline.transcodeResumable(&route.pipeline, memory.data(), size, memory.data() + each.distance,
                                                 5 * size, nullptr, &progress, nullptr) != nlsNoMemory;
      };
      succeeds();  // the pool's own growth isn't counted
      return untilItSucceeds(succeeds);
    };
    EXPECT_EQ(allocationsOf(each.size), each.allocations);
    // Where input and units pass their limits together both are asked for.
    EXPECT_GT(allocationsOf(each.size + each.unit), each.allocations);
  }
}

// Short texts touch no pool.
TEST_F(Allocation, ShortTextsStandOnTheStack) {
  constexpr CEI pairs[][2] = {{U_PCOEM850_CE, U_WLATIN1_CE},  {U_WLATIN1_CE, U_L_UNICODE_CE},
                              {U_WLATIN1_CE, U_UTF8_CE},      {U_L_UNICODE_CE, U_WLATIN1_CE},
                              {U_B_UNICODE_CE, U_WLATIN1_CE}, {U_B_UCS4_CE, U_WLATIN1_CE},
                              {U_UTF8_CE, U_WLATIN1_CE},      {U_UTFE_CE, U_WLATIN1_CE}};
  for (const auto& [source, target] : pairs) {
    Route route(nls, source, target);
    uint8_t memory[4096] = {};
    TranscodeProgress progress{};
    allowedAllocations = 0;
    host.memory.allowAllocation = allowSome;
    const NlsStatus status =
        route.pipeline.transcodeResumable(&route.pipeline, memory, 512, memory, 2048, nullptr, &progress, nullptr);
    host.memory.allowAllocation = nullptr;
    EXPECT_EQ(status, 0u) << source << " to " << target;
  }
}

}  // namespace
}  // namespace test

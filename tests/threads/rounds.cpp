#include "threads/rounds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <barrier>
#include <functional>
#include <ostream>
#include <random>
#include <thread>

#include "bounds/routes.h"
#include "core/qznlsstub.h"
#include "faults/failing_memory.h"
#include "support/conversion.h"
#include "transcode/built_user_tables.h"

namespace threads_test {

namespace {

using bounds_test::Bytes;
using bounds_test::Condition;
using bounds_test::isMultiByte;
using bounds_test::makeText;
using bounds_test::Route;
using bounds_test::routes;
using transcode_test::nls;

// What validation says of a text.
struct Verdict {
  NlsStatus status = 0;
  int32_t offset = 0;

  bool operator==(const Verdict&) const = default;
};

Verdict verdictOf(const Route& route, const Bytes& text) {
  Verdict verdict;
  verdict.status = nls()->validateEncodedText(nls(), text.data(), static_cast<uint32_t>(text.size()), route.source.cei,
                                              nullptr, &verdict.offset);
  return verdict;
}

// A text on a route, and what a single thread makes of it.
struct Job {
  const Route* route;
  Bytes text;
  Bytes wanted = {};
  NlsStatus status = 0;
  Verdict verdict = {};
};

using Choice = std::function<bool(const Route& route)>;

bool every(const Route&) { return true; }
bool needsSingleByteModule(const Route& route) {
  const PipelineSide& side = route.pipeline()->source;
  return !isMultiByte(route) && (side.toUnicode != nullptr || side.byteMap != nullptr);
}
// A pipeline to GB18030 depends on whether another thread has made one from it already.
bool needsMultiByteModule(const Route& route) {
  const bool converts = nls()->conversionNeeded(nls(), route.source.cei, route.target.cei) != 0;
  return isMultiByte(route) && !route.hasUserTables() && converts && route.target.cei != U_GB18030_CE;
}

bool needsGbModule(const Route& route) { return needsMultiByteModule(route) && route.source.cei == U_GB18030_CE; }

std::vector<Job> makeJobs(std::initializer_list<size_t> lengths, const Choice& isChosen) {
  std::vector<Job> jobs;
  for (const Route& route : routes()) {
    if (!isChosen(route)) continue;
    for (const size_t length : lengths) {
      Job job{&route, makeText(route.source.kind, Condition::damaged, 3, length)};
      test::Converted alone = test::convertWhole(route.pipeline(), job.text);
      job.wanted = std::move(alone.bytes);
      job.status = alone.status;
      job.verdict = verdictOf(route, job.text);
      jobs.push_back(std::move(job));
    }
  }
  return jobs;
}

bool succeeds(TranscodingPipeline* pipeline, const Job& job) {
  if (pipeline == nullptr) return false;
  const test::Converted converted = test::convertWhole(pipeline, job.text);
  return converted.status == job.status && converted.bytes == job.wanted;
}

// Runs `body(index)` on many threads and waits for them.
template <class Body>
void onThreads(int count, Body body) {
  std::vector<std::thread> threads;
  for (int i = 0; i < count; ++i) threads.emplace_back([&body, i] { body(static_cast<size_t>(i)); });
  for (std::thread& thread : threads) thread.join();
}

// What is held of memory: the pools of the context, and the blocks of the object's. Both are the same behind the rounds
// as ahead of them: of the modules that threads load at once all but one are given back. (The memory of a pool isn't:
// it keeps what many runs at a time have needed.)
struct Holding {
  int pools = faults_test::Balance(transcode_test::host().memory.context).pools;
  uint64_t ofObject = faults_test::usedBytes(nls()->pool);

  bool operator==(const Holding&) const = default;
};

void PrintTo(const Holding& holding, std::ostream* stream) {
  *stream << holding.pools << " pools, " << holding.ofObject << " bytes of the object's";
}

// A host that gives way before it gives memory: then other threads begin to load a module while one does.
NlsBool8 allowLater(uint32_t) {
  std::this_thread::yield();
  return 1;
}

using Unload = void (*)() noexcept;

void unloadSingleByteModule() noexcept {
  nls()->singleByteModule->destroy(nls()->singleByteModule);
  nls()->singleByteModule = nullptr;
}

// The GB18030 module goes with it.
void unloadMultiByteModule() noexcept {
  nls()->multiByteModule->destroy(nls()->multiByteModule);
  nls()->multiByteModule = nullptr;
}

void makePipelinesAtOnce(int rounds, const std::vector<Job>& jobs, Unload unload) {
  constexpr int threadCount = 64;
  ASSERT_FALSE(jobs.empty());
  unload();
  const Holding before;
  std::atomic<int> failures = 0;
  transcode_test::host().memory.allowAllocation = allowLater;
  std::barrier start(threadCount);
  std::barrier<Unload> end(threadCount, std::move(unload));
  onThreads(threadCount, [&](size_t index) {
    for (int round = 0; round < rounds; ++round) {
      const Job& job = jobs[(index + static_cast<size_t>(round)) % jobs.size()];
      start.arrive_and_wait();
      TranscodingPipeline* pipeline =
          nls()->createPipeline(nls(), job.route->source.cei, job.route->target.cei, nullptr, nullptr);
      if (!succeeds(pipeline, job)) ++failures;
      if (pipeline != nullptr) pipeline->destroy(pipeline);
      end.arrive_and_wait();
    }
  });
  transcode_test::host().memory.allowAllocation = nullptr;
  EXPECT_EQ(failures, 0);
  EXPECT_EQ(Holding(), before);
}

}  // namespace

void makeFirstPipelinesAtOnce(int rounds) {
  makePipelinesAtOnce(rounds, makeJobs({24}, needsSingleByteModule), unloadSingleByteModule);
}

void makeFirstMultiBytePipelinesAtOnce(int rounds) {
  for (const Choice& isChosen : {Choice(needsMultiByteModule), Choice(needsGbModule)}) {
    makePipelinesAtOnce(rounds, makeJobs({24}, isChosen), unloadMultiByteModule);
    // The routes' own pipelines have seen both modules.
    const transcode_test::Pipeline reloading(U_GB18030_CE, U_L_UNICODE_CE);
  }
}

void makeFirstPipelinesWithUserTablesAtOnce(int rounds) {
  for (const Route& route : routes()) {
    if (!route.hasUserTables()) continue;
    const std::vector<Job> jobs = makeJobs({40, 900}, [&](const Route& other) { return &other == &route; });
    const transcode_test::ListInUse list(route.userTables());
    makePipelinesAtOnce(rounds, jobs, unloadMultiByteModule);
    const transcode_test::Pipeline reloading(U_GB18030_CE, U_L_UNICODE_CE);
  }
}

void hammerSharedPipelines(int rounds) {
  constexpr int threadCount = 16;
  const std::vector<Job> jobs = makeJobs({40, 3000}, every);
  std::vector<TranscodingPipeline*> pipelines;
  for (const Job& job : jobs) pipelines.push_back(job.route->pipeline());
  const Holding before;
  std::atomic<int> failures = 0;
  std::barrier start(threadCount);
  onThreads(threadCount, [&](size_t index) {
    start.arrive_and_wait();
    for (int round = 0; round < rounds; ++round) {
      for (size_t i = 0; i < jobs.size(); ++i) {
        const size_t place = (i + 7 * index) % jobs.size();
        if (!succeeds(pipelines[place], jobs[place])) ++failures;
        if (verdictOf(*jobs[place].route, jobs[place].text) != jobs[place].verdict) ++failures;
      }
    }
  });
  EXPECT_EQ(failures, 0);
  EXPECT_EQ(Holding(), before);
}

void hammerOnePool(int rounds) {
  constexpr int threadCount = 16;
  constexpr size_t blockCount = 32;
  constexpr uint32_t largest = 5000;
  struct Block {
    uint8_t* at = nullptr;
    uint32_t size = 0;
  };
  const Holding before;
  std::atomic<int> failures = 0;
  std::barrier start(threadCount);
  onThreads(threadCount, [&](size_t index) {
    std::mt19937 random(static_cast<uint32_t>(index));
    const auto stamp = static_cast<uint8_t>(index + 1);
    std::vector<Block> blocks(blockCount);
    const auto giveBack = [&](Block& block) {
      const auto foreign = [stamp](uint8_t byte) { return byte != stamp; };
      if (std::any_of(block.at, block.at + block.size, foreign)) ++failures;
      veldnls::nlsPoolFree(nls()->pool, block.at);
      block = {};
    };
    start.arrive_and_wait();
    for (int round = 0; round < rounds; ++round) {
      Block& block = blocks[random() % blockCount];
      if (block.at != nullptr) giveBack(block);
      block.size = static_cast<uint32_t>(random()) % largest + 1;
      block.at = static_cast<uint8_t*>(veldnls::nlsPoolAlloc(nls()->pool, block.size, 0));
      if (block.at == nullptr) {
        ++failures;
        continue;
      }
      std::fill_n(block.at, block.size, stamp);
    }
    for (Block& block : blocks) {
      if (block.at != nullptr) giveBack(block);
    }
  });
  EXPECT_EQ(failures, 0);
  EXPECT_EQ(Holding(), before);
}

}  // namespace threads_test

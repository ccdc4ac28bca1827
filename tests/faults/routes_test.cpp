// Creation and runs of every route with memory that fails at the n-th request.
#include <gtest/gtest.h>

#include <cstring>

#include "bounds/routes.h"
#include "faults/failing_memory.h"
#include "transcode/built_user_tables.h"

namespace faults_test {

namespace {

using bounds_test::Bytes;
using bounds_test::Condition;
using bounds_test::makeText;
using bounds_test::Route;
using bounds_test::Span;
using transcode_test::host;
using transcode_test::nls;

constexpr int mostRequests = 20;

class Faults : public testing::TestWithParam<Route> {};

template <class Module>
void unload(Module*& module) {
  if (module == nullptr) return;
  module->destroy(module);
  module = nullptr;
}

void unloadModules() {
  unload(nls()->singleByteModule);
  unload(nls()->multiByteModule);
}

// The first pipeline, so that its modules are loaded as well.
TEST_P(Faults, Creation) {
  const auto create = [] {
    return nls()->createPipeline(nls(), GetParam().source.cei, GetParam().target.cei, nullptr, nullptr);
  };
  const transcode_test::ListInUse list(GetParam().userTables());
  TranscodingPipeline* warm = create();
  ASSERT_NE(warm, nullptr);
  warm->destroy(warm);
  for (const Failure failure : failures) {
    unloadModules();
    const Balance before(host().memory.context);
    const uint64_t used = usedBytes(nls()->pool);
    TranscodingPipeline* pipeline = nullptr;
    for (int n = 1; pipeline == nullptr; ++n) {
      ASSERT_LT(n, mostRequests);
      bool failed = false;
      {
        const FailingMemory memory(host().memory, failure, n);
        pipeline = create();
        failed = memory.failed();
      }
      // Without memory for user characters a pipeline is made without them.
      if (failed && pipeline != nullptr && GetParam().hasUserTables()) {
        ASSERT_EQ(pipeline->flags, 0u) << n;
        ASSERT_EQ(pipeline->destroy(pipeline), 0u);
        pipeline = nullptr;
      }
      ASSERT_EQ(pipeline == nullptr, failed) << n;
      ASSERT_EQ(usedBytes(nls()->pool) == used, failed) << n;
      unloadModules();
      ASSERT_EQ(Balance(host().memory.context), before) << n;
    }
    EXPECT_EQ(pipeline->destroy(pipeline), 0u);
    EXPECT_EQ(usedBytes(nls()->pool), used);
  }
}

// ---- Runs ----

constexpr size_t textSize = 5000;
constexpr size_t roomSize = 4 * textSize;
constexpr uint32_t unsetLength = 0xDEADBEEF;

struct RunForm {
  const char* name;
  bool progress;
  uint8_t heldCount;
  bool inPlace;
};

constexpr RunForm runForms[] = {
    {"without progress", false, 0, false},      {"with progress", true, 0, false},
    {"with held bytes", true, 2, false},        {"in place, without progress", false, 0, true},
    {"in place, with progress", true, 0, true}, {"in place, with held bytes", true, 2, true},
};

// One run, with the memory it works on: the input, and the output apart from it or in its place.
struct Run {
  Run(const RunForm& form, Span text) : form_(form), memory(textSize + roomSize) {
    progress.pending = form.heldCount != 0 ? 1 : 0;
    progress.heldCount = form.heldCount;
    std::memcpy(progress.held, "\xE2\x82", form.heldCount);
    std::ranges::copy(text, memory.begin());
  }

  void go(TranscodingPipeline* pipeline) {
    uint8_t* output = memory.data() + (form_.inPlace ? 0 : textSize);
    written = unsetLength;
    status = pipeline->transcodeResumable(pipeline, memory.data(), textSize, output, roomSize, &written,
                                          form_.progress ? &progress : nullptr, nullptr);
  }

  bool hasSameOutcome(const Run& other) const {
    return status == other.status && written == other.written && memory == other.memory &&
           std::memcmp(&progress.flags, &other.progress.flags, sizeof progress.flags) == 0 &&
           progress.consumed == other.progress.consumed && progress.pending == other.progress.pending;
  }

  const RunForm& form_;
  Bytes memory;
  TranscodeProgress progress{};
  uint32_t written = unsetLength;
  NlsStatus status = 0;
};

void checkRun(const Route& route, const RunForm& form, Span text, Failure failure) {
  TranscodingPipeline* pipeline = route.pipeline();
  Run wanted(form, text);
  wanted.go(pipeline);
  ASSERT_NE(wanted.status, nlsNoMemory);
  const uint64_t used = usedBytes(nls()->pool);
  const Balance before(host().memory.context);
  for (int n = 1;; ++n) {
    ASSERT_LT(n, mostRequests);
    Run run(form, text);
    const Run untouched(form, text);
    bool failed = false;
    {
      const FailingMemory memory(host().memory, failure, n);
      run.go(pipeline);
      failed = memory.failed();
    }
    ASSERT_EQ(usedBytes(nls()->pool), used) << n;
    ASSERT_EQ(Balance(host().memory.context), before) << n;
    if (!failed) {
      ASSERT_TRUE(run.hasSameOutcome(wanted));
      return;
    }
    ASSERT_EQ(run.status, nlsNoMemory) << n;
    ASSERT_TRUE(run.written == 0 || run.written == unsetLength) << n;
    ASSERT_EQ(run.memory, untouched.memory) << n;
    ASSERT_EQ(run.progress.consumed, 0u) << n;
    ASSERT_EQ(run.progress.pending, untouched.progress.pending) << n;
    ASSERT_EQ(run.progress.heldCount, untouched.progress.heldCount) << n;
    ASSERT_EQ(std::memcmp(run.progress.held, untouched.progress.held, run.progress.heldCount), 0) << n;
    // With the same record the text goes through as if nothing had happened.
    run.go(pipeline);
    ASSERT_TRUE(run.hasSameOutcome(wanted)) << n;
  }
}

TEST_P(Faults, Runs) {
  for (const Condition condition : {Condition::whole, Condition::damaged}) {
    const Bytes text = makeText(GetParam().source.kind, condition, 0, textSize);
    for (const RunForm& form : runForms) {
      for (const Failure failure : failures) {
        ASSERT_NO_FATAL_FAILURE(checkRun(GetParam(), form, text, failure))
            << form.name << (failure == Failure::once ? ", once" : ", from then on");
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Routes, Faults, testing::ValuesIn(bounds_test::routes()),
                         [](const auto& route) { return route.param.name(); });

}  // namespace

}  // namespace faults_test

// The export and `destroy` with memory that fails at the n-th request.
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include "core/qznlsstub.h"
#include "faults/failing_memory.h"
#include "support/death.h"
#include "veldnls/cei.h"

namespace faults_test {

namespace {

// How a child tells what became of its call.
enum Exit { whole = 10, withFallbacks, refused, unbalanced, unusable, wrongStatus };

// A single-byte conversion, which loads its module if construction couldn't.
bool works(QZNLS* nls) {
  TranscodingPipeline* pipeline = nls->createPipeline(nls, U_WLATIN1_CE, U_UTF8_CE, nullptr, nullptr);
  if (pipeline == nullptr) return false;
  char output[4];
  uint32_t written = 0;
  const NlsStatus status = pipeline->transcode(pipeline, "\x80", 1, output, sizeof output, &written, nullptr);
  pipeline->destroy(pipeline);
  return status == 0 && written == 3;
}

int construct(test::HostRecords& records, Failure failure, int n) {
  const Balance before(records.memory.context);
  void* handle = nullptr;
  uint32_t status = 0;
  bool failed = false;
  {
    const FailingMemory memory(records.memory, failure, n);
    status = VELDNLSLIB(5, records.input(), &handle);
    failed = memory.failed();
  }
  if (status != 0) {
    if (status != nlsInitFailed || handle != nullptr) return wrongStatus;
    return Balance(records.memory.context) == before ? refused : unbalanced;
  }
  auto* nls = static_cast<QZNLS*>(handle);
  if (!works(nls)) return unusable;
  nls->destroy(nls);
  if (Balance(records.memory.context) != before) return unbalanced;
  return failed ? withFallbacks : whole;
}

// Requests that loading the locale database makes: what fails there ends the process.
int requestsOfLocaleDatabase(test::HostRecords& records) {
  const FailingMemory memory(records.memory, Failure::once, 0);
  NlsExtension* database = veldnls::nlsLoadExtension(nullptr, u"qznlsldb", 8, nullptr);
  database->destroy(database);
  return memory.requests();
}

TEST(FaultsInConstruction, EveryRequest) {
  test::HostRecords records;
  void* handle = nullptr;
  ASSERT_EQ(VELDNLSLIB(5, records.input(), &handle), 0u);
  auto* first = static_cast<QZNLS*>(handle);
  const int fatalRequests = requestsOfLocaleDatabase(records);
  ASSERT_EQ(first->destroy(first), 0u);
  for (const Failure failure : failures) {
    int fatal = 0;
    int refusals = 0;
    int fallbacks = 0;
    for (int n = 1;; ++n) {
      ASSERT_LT(n, 100);
      const test::Ending ending = test::runInChild([&] { _exit(construct(records, failure, n)); });
      if (ending.signal != 0) {
        EXPECT_EQ(ending.signal, SIGSEGV) << n;
        ++fatal;
        continue;
      }
      if (ending.exitCode == whole) break;
      if (ending.exitCode == refused) {
        EXPECT_TRUE(ending.output.ends_with("NLSASSERT failed: hs/src/hsnlsmain line=103\n")) << ending.output;
        ++refusals;
      } else {
        EXPECT_EQ(ending.exitCode, withFallbacks) << n;
        ++fallbacks;
      }
    }
    EXPECT_EQ(fatal, fatalRequests);
    EXPECT_GT(refusals, 0);
    EXPECT_GT(fallbacks, 0);
  }
}

TEST(FaultsInConstruction, DestroyNeedsNoMemory) {
  test::HostRecords records;
  const Balance before(records.memory.context);
  void* handle = nullptr;
  ASSERT_EQ(VELDNLSLIB(5, records.input(), &handle), 0u);
  auto* nls = static_cast<QZNLS*>(handle);
  // What the caller forgets goes with the object.
  EXPECT_NE(nls->createPipeline(nls, U_PCOEM850_CE, U_WLATIN1_CE, nullptr, nullptr), nullptr);
  const FailingMemory memory(records.memory, Failure::fromThenOn, 1);
  EXPECT_EQ(nls->destroy(nls), 0u);
  EXPECT_EQ(memory.requests(), 0);
  EXPECT_EQ(Balance(records.memory.context), before);
}

}  // namespace

}  // namespace faults_test

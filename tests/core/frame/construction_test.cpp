// Construction of the object: every way that it fails, and what a failed discovery leaves.
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include "core/hsnlsmain/hsnlsmain.h"
#include "core/qznlsstub.h"
#include "support/death.h"
#include "support/host.h"
#include "veldnls/cei.h"

namespace veldnls {
namespace {

using test::Ending;
using test::runInChild;

class Construction : public ::testing::Test {
 protected:
  Construction() { storeHostRecords(records_.vector); }
  ~Construction() override { hideExtension(nullptr); }
  test::HostRecords records_;
  char journal_ = 0;  // any address: journals are told by being non-null
};

TEST_F(Construction, TheHostHandleGoesToTheObjectAndItsExtensions) {
  QZNLS* nls = createNls(&records_, nullptr);
  ASSERT_NE(nls, nullptr);
  EXPECT_EQ(nls->host, &records_);
  EXPECT_EQ(nls->localeDatabase->host, &records_);
  EXPECT_EQ(nls->singleByteModule->host, &records_);
  EXPECT_EQ(nls->destroy(nls), 0u);
}

TEST_F(Construction, WithoutTheLocaleDatabaseTheProcessEnds) {
  hideExtension(u"qznlsldb");
  const Ending ending = runInChild([this] { createNls(nullptr, &journal_); });
  EXPECT_EQ(ending.signal, SIGSEGV);
  EXPECT_TRUE(ending.output.ends_with("VELD- QzlMessageToJnl: \n")) << ending.output;
}

TEST_F(Construction, WithoutAListTheProcessEnds) {
  static NlsHostServices services{};
  services.size = sizeof services;
  for (const char* failing : {"Locale instances", "SM instances", "Pipeline instances"}) {
    static const char* failingName = nullptr;
    failingName = failing;
    services.listCreate = [](void*, const int32_t*, void*, const char* name) -> void* {
      return std::string(name) == failingName ? nullptr : NLS_MARKER_HANDLE;
    };
    records_.memory.services = &services;
    EXPECT_EQ(runInChild([] { createNls(nullptr, nullptr); }).signal, SIGSEGV) << failing;
  }
}

struct ListCall {
  std::string name;
  std::vector<int32_t> params;
};
std::vector<ListCall> listCalls;

TEST_F(Construction, ListsAreAskedForWithTheirParameters) {
  static NlsHostServices services{};
  services.size = sizeof services;
  listCalls.clear();
  services.listCreate = [](void*, const int32_t* params, void*, const char* name) -> void* {
    listCalls.push_back({name, {params, params + 6}});
    return NLS_MARKER_HANDLE;
  };
  records_.memory.services = &services;
  QZNLS* nls = createNls(nullptr, nullptr);
  ASSERT_NE(nls, nullptr);
  nls->destroy(nls);
  ASSERT_EQ(listCalls.size(), 3u);
  EXPECT_EQ(listCalls[0].name, "Locale instances");
  EXPECT_EQ(listCalls[1].name, "SM instances");
  EXPECT_EQ(listCalls[2].name, "Pipeline instances");
  const std::vector<int32_t> shared = {1, 0, 1, 0x20000000, 0, 0};
  const std::vector<int32_t> pipelines = {1, 0, 1, static_cast<int32_t>(0xA0000000), 0, 0};
  EXPECT_EQ(listCalls[0].params, shared);
  EXPECT_EQ(listCalls[1].params, shared);
  EXPECT_EQ(listCalls[2].params, pipelines);
}

// Without the single-byte module the object still comes to be: its pipelines copy, and the encodings fall back.
TEST_F(Construction, WithoutTheSingleByteModuleTheFallbacksHold) {
  hideExtension(u"qznlssb");
  const Ending ending = runInChild([this] {
    QZNLS* nls = createNls(nullptr, &journal_);
    _exit(nls != nullptr && nls->osCei == U_WLATIN1_CE && nls->hostCei == U_WLATIN1_CE &&
                  nls->hostCeiStatus == nlsUnknownEncoding && nls->singleByteModule == nullptr
              ? 5
              : 6);
  });
  EXPECT_EQ(ending.exitCode, 5);
  EXPECT_NE(ending.output.find("VELD- qzlStatusToJnl: Bad OS CEI\n"), std::string::npos) << ending.output;
}

// The n-th request for memory fails, for every n: an object, no object with the failure reported, or the end by a store
// to address 0.
TEST_F(Construction, EveryFailureOfMemoryEndsAsItShould) {
  static int allowed = 0;
  records_.memory.allowAllocation = [](uint32_t) -> NlsBool8 { return allowed-- > 0; };
  bool made = false;
  int refused = 0;
  int fatal = 0;
  for (int n = 0; !made; ++n) {
    ASSERT_LT(n, 50);
    allowed = n;
    XmPool* const pools = records_.memory.context->pools;
    const Ending ending = runInChild([this, pools] {
      QZNLS* nls = createNls(nullptr, &journal_);
      if (nls != nullptr && nls->singleByteModule != nullptr) _exit(2);
      if (nls != nullptr) _exit(3);
      _exit(records_.memory.context->pools == pools ? 4 : 5);
    });
    if (ending.signal != 0) {
      EXPECT_EQ(ending.signal, SIGSEGV) << n;
      ++fatal;
    } else if (ending.exitCode == 4) {
      EXPECT_NE(ending.output.find("qzlStatusToJnl: Insufficient Memory\n"), std::string::npos);
      EXPECT_TRUE(ending.output.ends_with("VELD- QzlMessageToJnl: \n")) << ending.output;
      ++refused;
    } else {
      EXPECT_TRUE(ending.exitCode == 2 || ending.exitCode == 3) << ending.exitCode;
      made = ending.exitCode == 2;
    }
  }
  EXPECT_GT(refused, 0);
  EXPECT_GT(fatal, 0);
}

TEST_F(Construction, TheExportReportsAFailure) {
  records_.memory.allowAllocation = [](uint32_t) -> NlsBool8 { return 0; };
  const Ending ending = runInChild([this] {
    void* handle = nullptr;
    _exit(VELDNLSLIB(5, records_.input(), &handle) == nlsInitFailed && handle == nullptr ? 7 : 8);
  });
  EXPECT_EQ(ending.exitCode, 7);
  EXPECT_TRUE(ending.output.ends_with("VELD- NLSASSERT failed: hs/src/hsnlsmain line=103\n")) << ending.output;
}

// What teardown destroys, in its order, and whether the object told by then that it is shutting down.
struct Teardown {
  const QZNLS* nls;
  std::vector<std::string> order;
  bool announced;
};
Teardown teardown;

NlsStatus recordEnd(void* handle) {
  teardown.order.push_back(static_cast<const NlsHandle*>(handle)->name);
  teardown.announced = teardown.announced && teardown.nls->shuttingDown == 1;
  return 0;
}

// Puts a record that only tells of its end in the place of a module, which ends now.
template <class Module>
void replaceModule(Module*& field, Module& fake, const char* name) {
  if (field != nullptr) field->destroy(field);
  fake.name = name;
  fake.destroy = recordEnd;
  field = &fake;
}

TEST_F(Construction, ReleaseEndsListsThenModulesThenThePool) {
  static std::vector<std::unique_ptr<NlsHandle>> lists;
  static NlsHostServices services{};
  lists.clear();
  services.size = sizeof services;
  services.listCreate = [](void*, const int32_t*, void*, const char* name) -> void* {
    lists.push_back(std::make_unique<NlsHandle>(NlsHandle{{}, name, recordEnd}));
    return lists.back().get();
  };
  records_.memory.services = &services;
  XmPool* const pools = records_.memory.context->pools;
  QZNLS* nls = createNls(nullptr, nullptr);
  ASSERT_NE(nls, nullptr);
  MultiByteModule multiByte{};
  SingleByteModule singleByte{};
  LocaleDatabase database{};
  replaceModule(nls->multiByteModule, multiByte, "multi-byte");
  replaceModule(nls->singleByteModule, singleByte, "single-byte");
  replaceModule(nls->localeDatabase, database, "database");
  EXPECT_EQ(nls->shuttingDown, 0);

  teardown = {nls, {}, true};
  EXPECT_EQ(nls->destroy(nls), 0u);
  const std::vector<std::string> expected = {"SM instances", "Pipeline instances", "Locale instances",
                                             "multi-byte",   "single-byte",        "database"};
  EXPECT_EQ(teardown.order, expected);
  EXPECT_TRUE(teardown.announced);
  EXPECT_EQ(records_.memory.context->pools, pools);
}

TEST_F(Construction, PreBuiltPipelinesOwnNothing) {
  QZNLS* nls = createNls(nullptr, nullptr);
  ASSERT_NE(nls, nullptr);
  for (const TranscodingPipeline& pipeline : nls->prebuiltPipelines) {
    EXPECT_EQ(pipeline.flags, 0u);
    EXPECT_EQ(pipeline.nls, nls);
    EXPECT_EQ(pipeline.options.words[0], 0u);
  }
  nls->destroy(nls);
}

}  // namespace
}  // namespace veldnls

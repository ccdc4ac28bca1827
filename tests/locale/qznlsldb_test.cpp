#include "locale/qznlsldb.h"

#include <gtest/gtest.h>

#include <cstring>

#include "core/qznlsstub.h"
#include "support/host.h"
#include "veldnls/status.h"

namespace {

class LocaleDatabaseTest : public testing::Test {
 protected:
  LocaleDatabaseTest() {
    host.memory.allowAllocation = allow;
    allowed = -1;
    veldnls::storeHostRecords(host.vector);
  }
  static NlsBool8 allow(uint32_t) {
    if (allowed < 0) return 1;
    if (allowed == 0) return 0;
    --allowed;
    return 1;
  }
  int poolCount() const {
    int count = 0;
    for (const XmPool* pool = host.memory.context->pools; pool != nullptr; pool = pool->next) ++count;
    return count;
  }

  inline static int allowed = -1;  // allocations before memory is exhausted; negative: no limit
  test::HostRecords host;
};

TEST_F(LocaleDatabaseTest, FillsItsHeaderAndLeavesDestroyToTheLoader) {
  const int pools = poolCount();
  auto* database = reinterpret_cast<LocaleDatabase*>(veldnls::createLocaleDatabase(&host, nullptr));
  ASSERT_NE(database, nullptr);
  EXPECT_EQ(std::memcmp(database->magic, "nevo", 4), 0);
  EXPECT_EQ(database->name, nullptr);
  EXPECT_EQ(database->destroy, nullptr);
  EXPECT_EQ(database->host, &host);
  EXPECT_NE(database->pool, nullptr);
  int32_t major = 0, minor = 0, patch = 0;
  EXPECT_EQ(database->versionQuery(database, &major, &minor, &patch), 0u);
  EXPECT_EQ(major * 100 + minor * 10 + patch, 311);
  EXPECT_EQ(database->minimumVersionQuery(database, &major, &minor, &patch), 0u);
  EXPECT_EQ(major * 100 + minor * 10 + patch, 300);
  EXPECT_EQ(poolCount(), pools + 1);
  EXPECT_EQ(database->release(database), 0u);
  EXPECT_EQ(poolCount(), pools);
}

TEST_F(LocaleDatabaseTest, LoadedByNameItIsDestroyedThroughItsSlot) {
  const int pools = poolCount();
  NlsExtension* database = veldnls::nlsLoadExtension(nullptr, u"QzNlsLdb", 8, nullptr);
  ASSERT_NE(database, nullptr);
  ASSERT_NE(database->destroy, nullptr);
  EXPECT_EQ(database->destroy(database), 0u);
  EXPECT_EQ(poolCount(), pools);
}

TEST_F(LocaleDatabaseTest, ExhaustedMemoryLeavesNothingBehindAndTellsTheJournal) {
  const int pools = poolCount();
  NlsExtension* database = nullptr;
  int failures = 0;
  for (int n = 0; database == nullptr && n < 20; ++n) {
    allowed = n;
    testing::internal::CaptureStdout();
    database = veldnls::createLocaleDatabase(nullptr, &host);
    const std::string output = testing::internal::GetCapturedStdout();
    allowed = -1;
    if (database != nullptr) break;
    ++failures;
    EXPECT_NE(output.find("qzlStatusToJnl: Insufficient Memory\n"), std::string::npos) << n;
    EXPECT_EQ(poolCount(), pools) << n;
    allowed = n;
    testing::internal::CaptureStdout();
    EXPECT_EQ(veldnls::createLocaleDatabase(nullptr, nullptr), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  }
  EXPECT_GE(failures, 1);
  ASSERT_NE(database, nullptr);
  database->release(database);
  EXPECT_EQ(poolCount(), pools);
}

}  // namespace

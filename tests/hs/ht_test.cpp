// Mutexes, thread identity, thread-local values.
#include <gtest/gtest.h>

#include <cerrno>
#include <thread>

#include "hs/pools_host.h"
#include "veldnls/hostlib/ht.h"

namespace {

TEST(Mutex, IsReentrant) {
  HtMutex mutex;
  ASSERT_EQ(htMutexInit(&mutex, nullptr), 0);
  EXPECT_EQ(htMutexLock(&mutex), 0);
  EXPECT_EQ(htMutexLock(&mutex), 0);
  EXPECT_EQ(htMutexUnlock(&mutex), 0);
  EXPECT_EQ(htMutexUnlock(&mutex), 0);
  EXPECT_EQ(htMutexDestroy(&mutex), 0);
}

TEST(Mutex, RefusesAttributesAndStaysUnset) {
  HtMutex mutex;
  for (uint64_t& word : mutex.opaque) word = 0x5A5A;
  const int attributes = 0;
  EXPECT_EQ(htMutexInit(&mutex, &attributes), -1);
  for (const uint64_t word : mutex.opaque) EXPECT_EQ(word, 0x5A5Au);
}

TEST(Mutex, MisuseGivesTheSystemsNumber) {
  if (test::threadSanitizer) GTEST_SKIP() << "the sanitizer stops at misuse itself";
  HtMutex mutex;
  ASSERT_EQ(htMutexInit(&mutex, nullptr), 0);
  EXPECT_EQ(htMutexUnlock(&mutex), EPERM);
  htMutexLock(&mutex);
  EXPECT_EQ(htMutexDestroy(&mutex), EBUSY);
  htMutexUnlock(&mutex);
  EXPECT_EQ(htMutexDestroy(&mutex), 0);
}

TEST(Mutex, KeepsOtherThreadsOut) {
  HtMutex mutex;
  htMutexInit(&mutex, nullptr);
  int counter = 0;
  const auto count = [&] {
    for (int i = 0; i < 10'000; ++i) {
      htMutexLock(&mutex);
      ++counter;
      htMutexUnlock(&mutex);
    }
  };
  std::thread other(count);
  count();
  other.join();
  EXPECT_EQ(counter, 20'000);
  htMutexDestroy(&mutex);
}

TEST(ThreadSelf, TellsThreadsApart) {
  const HtThreadId self = htThreadSelf();
  EXPECT_NE(self, 0u);
  EXPECT_EQ(htThreadSelf(), self);
  HtThreadId other = 0;
  std::thread([&] { other = htThreadSelf(); }).join();
  EXPECT_NE(other, 0u);
  EXPECT_NE(other, self);
}

TEST(ThreadSelf, ASecondThreadIsNoticed) {
  int32_t single = 1;
  std::thread([&] { single = htSingleThread(); }).join();
  EXPECT_EQ(single, 0);
}

TEST(Tls, EachThreadHasItsValue) {
  uint32_t index = 0;
  ASSERT_EQ(htTlsCreate(&index), 0);
  EXPECT_NE(index, 0u);
  EXPECT_EQ(htTlsGet(index), nullptr);
  int value = 0;
  EXPECT_EQ(htTlsSet(index, &value), 0);
  EXPECT_EQ(htTlsGet(index), &value);
  void* elsewhere = &value;
  std::thread([&] { elsewhere = htTlsGet(index); }).join();
  EXPECT_EQ(elsewhere, nullptr);
  EXPECT_EQ(htTlsSet(index, nullptr), 0);
  EXPECT_EQ(htTlsGet(index), nullptr);
  EXPECT_EQ(htTlsDelete(index), 0);
  EXPECT_EQ(htTlsDelete(index), -1);
  EXPECT_EQ(htTlsSet(index, &value), -1);
}

TEST(Tls, IndexZeroIsNone) {
  int value = 0;
  EXPECT_EQ(htTlsGet(0), nullptr);
  EXPECT_EQ(htTlsSet(0, &value), -1);
  EXPECT_EQ(htTlsDelete(0), -1);
}

TEST(Tls, RunsOut) {
  std::vector<uint32_t> all;
  uint32_t index = 0;
  while (htTlsCreate(&index) == 0) {
    ASSERT_LT(all.size(), 100'000u);
    all.push_back(index);
  }
  EXPECT_GT(all.size(), 100u);
  for (const uint32_t one : all) EXPECT_EQ(htTlsDelete(one), 0);
}

}  // namespace

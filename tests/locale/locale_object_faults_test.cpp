// Locales with memory that fails at the n-th request.
#include <gtest/gtest.h>

#include "faults/failing_memory.h"
#include "locale/locale_object_support.h"

namespace {

using faults_test::Balance;
using faults_test::FailingMemory;
using faults_test::Failure;
using faults_test::failures;
using faults_test::usedBytes;

class LocaleObjectFaults : public testing::Test {
 protected:
  test::NlsHost host{&VELDNLSLIB};
  QZNLS* nls = host.nls;
};

TEST_F(LocaleObjectFaults, Creation) {
  for (const Failure failure : failures) {
    int refused = 0;
    for (int n = 1;; ++n) {
      ASSERT_LT(n, 100);
      const uint64_t used = usedBytes(nls->pool);
      QZLocale* locale = nullptr;
      bool failed = false;
      {
        const FailingMemory memory(host.memory, failure, n);
        locale = nls->createLocale(nls, u"en_US", 5);
        failed = memory.failed();
      }
      if (locale == nullptr) {
        EXPECT_TRUE(failed);
        EXPECT_EQ(usedBytes(nls->pool), used) << n;
        ++refused;
        continue;
      }
      EXPECT_FALSE(failed) << "memory failed and nobody told";
      EXPECT_EQ(locale->destroy(locale), 0u);
      EXPECT_EQ(usedBytes(nls->pool), used);
      break;
    }
    EXPECT_GE(refused, 2) << "the object and its record";
  }
}

TEST_F(LocaleObjectFaults, RefusedNamesGiveEverythingBack) {
  const uint64_t used = usedBytes(nls->pool);
  EXPECT_EQ(nls->createLocale(nls, u"xx_XX", 5), nullptr);
  EXPECT_EQ(nls->createDefaultLocale(nls), nullptr);
  EXPECT_EQ(usedBytes(nls->pool), used);
}

TEST_F(LocaleObjectFaults, DestroyNeedsNoMemory) {
  const uint64_t used = usedBytes(nls->pool);
  QZLocale* locale = nls->createLocale(nls, u"en_US", 5);
  const FailingMemory memory(host.memory, Failure::fromThenOn, 1);
  EXPECT_EQ(locale->destroy(locale), 0u);
  EXPECT_EQ(memory.requests(), 0);
  EXPECT_EQ(usedBytes(nls->pool), used);
}

TEST_F(LocaleObjectFaults, ALanguageThatCannotBeTranscodedStays) {
  const test::LocaleHandle locale = test::makeLocale(nls, "de_DE");
  // The module of single-byte encodings is there; the pipeline isn't.
  char16_t letters[2] = {u'?', u'!'};
  int32_t length = -77;
  const FailingMemory memory(host.memory, Failure::fromThenOn, 1);
  EXPECT_EQ(locale->getLanguage(locale.get(), letters, &length), 0u);
  EXPECT_TRUE(memory.failed());
  EXPECT_EQ(letters[0], u'?');
  EXPECT_EQ(letters[1], u'!');
  EXPECT_EQ(length, 2);
}

TEST_F(LocaleObjectFaults, WorkRecord) {
  const test::LocaleHandle locale = test::makeLocale(nls, "de_DE");
  int32_t size = -77;
  {
    const FailingMemory memory(host.memory, Failure::once, 1);
    EXPECT_EQ(nls->allocateLocaleWorkRecord(locale.get(), &size), nullptr);
    EXPECT_TRUE(memory.failed());
  }
  EXPECT_EQ(size, -77);
  const uint64_t used = usedBytes(nls->pool);
  void* block = nls->allocateLocaleWorkRecord(locale.get(), &size);
  ASSERT_NE(block, nullptr);
  EXPECT_GE(usedBytes(nls->pool), used + 272);
  EXPECT_EQ(nls->freeLocaleWorkRecord(nls, block), 0u);
  EXPECT_EQ(usedBytes(nls->pool), used);
}

TEST_F(LocaleObjectFaults, FormattersAndParsersTakeNone) {
  const test::LocaleHandle handle = test::makeLocale(nls, "hu_HU");
  QZLocale* l = handle.get();
  const FailingMemory memory(host.memory, Failure::fromThenOn, 1);
  char16_t out[400];
  int32_t length = 0, consumed = 0;
  uint32_t month, day, year;
  double value;
  EXPECT_EQ(l->formatDate(l, 2, 3, 2011, 2, out, 400, &length), 0u);
  EXPECT_EQ(l->parseDate(l, out, length, 2, &month, &day, &year, &consumed), 0u);
  EXPECT_EQ(l->formatTime(l, 46800, 0, out, 400, &length), 0u);
  EXPECT_EQ(l->parseTime(l, out, length, 0, &value, &consumed), 0u);
  EXPECT_EQ(l->formatDateTime(l, 46800, 0, out, 400, &length), 0u);
  EXPECT_EQ(l->parseDateTime(l, out, length, 0, &value, &consumed), 0u);
  EXPECT_EQ(l->formatDouble(l, 1e300, 0, 40, FMT_FIXED | FMT_GROUP, out, 400, &length), 0u);
  EXPECT_EQ(l->formatDouble(l, 1e200, 0, 40, FMT_FIXED | FMT_GROUP, out, 400, &length), 0u);
  EXPECT_EQ(l->parseDouble(l, out, length, &value, &consumed), 0u);
  EXPECT_EQ(value, 1e200);
  EXPECT_EQ(memory.requests(), 0);
}

}  // namespace

// The services that the program lends to the library, alone and through the library.
#include "host_services.h"

#include <gtest/gtest.h>

#include <cstring>
#include <thread>

#include "module.h"
#include "veldnls/status.h"

namespace {

const NlsHostServices& services() { return veld::hostServices(); }

void destroy(void* handle) { static_cast<NlsHandle*>(handle)->destroy(handle); }

TEST(HostServices, HandlesBeginWithAHeader) {
  const int32_t params[6] = {};
  for (void* handle : {services().lockCreate(nullptr, params, nullptr, "a lock"),
                       services().listCreate(nullptr, params, nullptr, "a list")}) {
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(std::memcmp(static_cast<NlsHandle*>(handle)->magic, "nevo", 4), 0);
    destroy(handle);
  }
}

TEST(HostServices, AWriterKeepsOthersOut) {
  void* lock = services().lockCreate(nullptr, nullptr, nullptr, "a lock");
  ASSERT_EQ(services().lockAcquire(lock, 1, 1), 0u);
  std::thread([lock] {
    EXPECT_NE(services().lockAcquire(lock, 1, 0), 0u);
    EXPECT_NE(services().lockAcquire(lock, 0, 0), 0u);
  }).join();
  EXPECT_EQ(services().lockRelease(lock), 0u);
  std::thread([lock] {
    EXPECT_EQ(services().lockAcquire(lock, 1, 0), 0u);
    EXPECT_EQ(services().lockRelease(lock), 0u);
  }).join();
  destroy(lock);
}

TEST(HostServices, ReadersShareALock) {
  void* lock = services().lockCreate(nullptr, nullptr, nullptr, "a lock");
  ASSERT_EQ(services().lockAcquire(lock, 0, 1), 0u);
  std::thread([lock] {
    EXPECT_EQ(services().lockAcquire(lock, 0, 0), 0u);
    EXPECT_EQ(services().lockRelease(lock), 0u);
    EXPECT_NE(services().lockAcquire(lock, 1, 0), 0u);
  }).join();
  EXPECT_EQ(services().lockRelease(lock), 0u);
  destroy(lock);
}

TEST(HostServices, AWaitingWriterGetsTheLock) {
  void* lock = services().lockCreate(nullptr, nullptr, nullptr, "a lock");
  ASSERT_EQ(services().lockAcquire(lock, 1, 1), 0u);
  NlsStatus result = 1;
  std::thread writer([&] {
    result = services().lockAcquire(lock, 1, 1);
    services().lockRelease(lock);
  });
  EXPECT_EQ(services().lockRelease(lock), 0u);
  writer.join();
  EXPECT_EQ(result, 0u);
  destroy(lock);
}

TEST(HostServices, ListsFindByKey) {
  void* list = services().listCreate(nullptr, nullptr, nullptr, "a list");
  EXPECT_EQ(services().treeSetOption(list, 1, 1), 0u);
  int first = 1;
  int second = 2;
  const char key[] = "k\0ey";
  EXPECT_EQ(services().treeSearch(list, nullptr, nullptr, key, 4), nullptr);
  EXPECT_EQ(services().treeInsert(list, nullptr, nullptr, &first, 0, key, 4, 0), 0u);
  EXPECT_EQ(services().treeInsert(list, nullptr, nullptr, &second, 0, key, 1, 0), 0u);
  EXPECT_EQ(services().treeSearch(list, nullptr, nullptr, key, 4), &first);
  EXPECT_EQ(services().treeSearch(list, nullptr, nullptr, key, 1), &second);
  EXPECT_NE(services().treeInsert(list, nullptr, nullptr, &second, 0, key, 4, 0), 0u);
  EXPECT_EQ(services().treeSearch(list, nullptr, nullptr, key, 4), &first);
  destroy(list);
}

TEST(HostServices, UnknownOptionsHaveNoValue) {
  int32_t value = 7;
  int32_t size = sizeof value;
  EXPECT_NE(services().getOption(nullptr, u"QZNLS.OTHER", 11, NLS_OPTION_INTEGER, &value, &size), 0u);
  EXPECT_EQ(value, 7);
}

TEST(HostServices, OptionsDontPassTheirBuffer) {
  veld::setSessionLanguage(u"JAPANESE");
  char16_t text[4] = {};
  int32_t size = sizeof text;
  EXPECT_EQ(services().getOption(nullptr, u"QZNLS.DBCSLANG", 14, NLS_OPTION_TEXT, text, &size), nlsOutputTruncated);
  EXPECT_EQ(text[0], u'\0');
  veld::setSessionLanguage(u"");
}

TEST(HostServices, TheLibraryReadsTheSessionOptions) {
  const veld::Library library(std::string(VELDNLS_BINARY_DIR) + "/veldnls.so");
  QZNLS& nls = library.nls();
  EXPECT_EQ(nls.resolveDbcsEncoding(&nls, 0, 0), 0);
  veld::setSessionEncoding(60);
  EXPECT_EQ(nls.resolveDbcsEncoding(&nls, 0, 0), 60);
  CEI base = 0;
  EXPECT_EQ(nls.getBaseEncoding(&nls, 0, &base), 0u);
  EXPECT_EQ(base, 60);
  EXPECT_TRUE(nls.sharesInvariantCharacters(&nls, 0, 62));

  veld::setSessionLanguage(u"japanese");
  EXPECT_EQ(nls.resolveDbcsEncoding(&nls, 0, 10), 134);
  veld::setSessionLanguage(u"TAIWANESE");
  EXPECT_EQ(nls.resolveDbcsEncoding(&nls, 0, 10), 119);
  veld::setSessionLanguage(u"");
  EXPECT_EQ(nls.resolveDbcsEncoding(&nls, 0, 10), 0);
}

}  // namespace

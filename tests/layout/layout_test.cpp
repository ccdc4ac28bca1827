// The public headers and the layout of their records, from C++; and that no slot of a live object is empty.
#define STATIC_CHECK(condition, text) static_assert(condition, text)
#define IS_TYPE(type, field, expected) std::is_same_v<decltype(type::field), expected>
#include <type_traits>

#include "layout.h"

#include <gtest/gtest.h>

#include <cstring>

#include "support/host.h"

namespace {

// Words of the object from the first slot to the last that hold a null pointer, as offsets.
std::vector<size_t> emptyWords(const QZNLS& nls, size_t first, size_t last) {
  std::vector<size_t> empty;
  for (size_t offset = first; offset <= last; offset += sizeof(void*)) {
    void* word = nullptr;
    std::memcpy(&word, reinterpret_cast<const char*>(&nls) + offset, sizeof word);
    if (word == nullptr) empty.push_back(offset);
  }
  return empty;
}

TEST(Layout, NoSlotOfALiveObjectIsEmpty) {
  test::NlsHost host(&VELDNLSLIB);
  ASSERT_NE(host.nls, nullptr);
  const std::vector<size_t> none;
  EXPECT_EQ(emptyWords(*host.nls, offsetof(QZNLS, estimateOutputLength), offsetof(QZNLS, findLocaleEntry)), none);
  EXPECT_EQ(emptyWords(*host.nls, offsetof(QZNLS, createCollator), offsetof(QZNLS, freeUserCharacterTables)), none);
  EXPECT_EQ(emptyWords(*host.nls, offsetof(QZNLS, makeKeyHeader), offsetof(QZNLS, localeDatabase)), none);
}

TEST(Layout, HeaderOfTheObject) {
  test::NlsHost host(&VELDNLSLIB);
  ASSERT_NE(host.nls, nullptr);
  EXPECT_EQ(std::memcmp(host.nls->magic, "nevo", 4), 0);
  EXPECT_EQ(host.nls->name, nullptr);
  EXPECT_EQ(host.nls->host, nullptr);
  EXPECT_NE(host.nls->destroy, nullptr);
  EXPECT_NE(host.nls->release, nullptr);
}

}  // namespace

// What the records of all modules have in front.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <initializer_list>

#include "veldnls/types.h"

namespace test {

// Of a module's record as its constructor leaves it: made for `host`, and of this version.
template <class Module>
void expectModuleHeader(Module& module, const void* host) {
  EXPECT_EQ(std::memcmp(module.magic, "nevo", 4), 0);
  EXPECT_EQ(module.name, nullptr);
  EXPECT_EQ(module.host, host);
  EXPECT_NE(module.pool, nullptr);
  int32_t version[3] = {};
  EXPECT_EQ(module.versionQuery(&module, &version[0], &version[1], &version[2]), 0u);
  EXPECT_TRUE(std::ranges::equal(version, std::initializer_list<int32_t>{3, 1, 1}));
  EXPECT_EQ(module.minimumVersionQuery(&module, &version[0], &version[1], &version[2]), 0u);
  EXPECT_TRUE(std::ranges::equal(version, std::initializer_list<int32_t>{3, 0, 0}));
}

}  // namespace test

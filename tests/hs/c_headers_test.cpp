#include <gtest/gtest.h>

extern "C" int cHostWorks(void);

namespace {

TEST(CHeaders, AHostInCWorks) { EXPECT_EQ(cHostWorks(), 1); }

}  // namespace

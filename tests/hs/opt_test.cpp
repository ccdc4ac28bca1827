// The option hook.
#include <gtest/gtest.h>

#include <string>

#include "support/host.h"
#include "veldnls/hostlib/opt.h"

namespace {

int32_t table(const char* name, int32_t* value) {
  if (std::string(name) == "SET") {
    *value = 17;
    return 0;
  }
  *value = 99;
  return 1;
}

TEST(Option, HasAValueOrNone) {
  test::HostRecords host;
  int32_t value = 5;
  EXPECT_EQ(optReadInteger(&host.vector, "SET", &value), -1);
  host.memory.readOption = table;
  EXPECT_EQ(optReadInteger(&host.vector, "UNSET", &value), -1);
  EXPECT_EQ(value, 5);
  EXPECT_EQ(optReadInteger(&host.vector, "SET", &value), 0);
  EXPECT_EQ(value, 17);
}

TEST(Option, WithoutRecordsThereIsNone) {
  VeldInputVector empty{};
  int32_t value = 5;
  EXPECT_EQ(optReadInteger(nullptr, "SET", &value), -1);
  EXPECT_EQ(optReadInteger(&empty, "SET", &value), -1);
  EXPECT_EQ(value, 5);
}

}  // namespace

// Puts a test program into the locale and the time zone of its environment, where CTest names both together with what
// proves that they hold.
#include <gtest/gtest.h>
#include <langinfo.h>

#include <clocale>
#include <cstdlib>
#include <ctime>
#include <string>

namespace {

class ProcessLocale : public testing::Environment {
 public:
  void SetUp() override {
    const char* point = std::getenv("VELDNLS_DECIMAL_POINT");
    if (point == nullptr) return;
    const char* taken = std::setlocale(LC_ALL, "");
    ASSERT_NE(taken, nullptr) << "there is no locale " << std::getenv("LC_ALL");
    ASSERT_STREQ(taken, std::getenv("LC_ALL"));
    ASSERT_STREQ(std::localeconv()->decimal_point, point);
    ASSERT_STRNE(nl_langinfo(DAY_1), "Sunday");
    constexpr std::time_t inJuly = 1784000000;
    std::tm local{};
    ASSERT_NE(localtime_r(&inJuly, &local), nullptr);
    ASSERT_EQ(std::to_string(local.tm_gmtoff), std::getenv("VELDNLS_SECONDS_EAST")) << std::getenv("TZ");
  }
};

[[maybe_unused]] const testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(new ProcessLocale());  // GoogleTest's to delete

}  // namespace

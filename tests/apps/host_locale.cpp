// Where CTest runs a program in another locale, veld takes it for that of its host.
#include <gtest/gtest.h>

#include <cstdlib>

#include "apps/program.h"

namespace test {
namespace {

class HostLocale : public testing::Environment {
 public:
  void SetUp() override {
    if (!inProcessLocale()) return;
    const std::string name = std::getenv("LC_ALL");
    const std::string told = runVeld({.arguments = {"info"}}).output;
    ASSERT_TRUE(contains(told, name.substr(0, name.find('.')) + " (status 0x00000000, found)")) << told;
  }
};

[[maybe_unused]] const testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(new HostLocale());  // GoogleTest's to delete

}  // namespace
}  // namespace test

// Statuses by name, against the header that defines them.
#include <gtest/gtest.h>

#include <fstream>
#include <regex>

#include "status_names.h"

namespace test {
namespace {

TEST(VeldStatusNames, EveryStatusOfTheHeaderHasItsName) {
  std::ifstream header(std::string(VELDNLS_SOURCE_DIR) + "/include/veldnls/status.h");
  const std::regex definition(R"(#define (\w+) UINT32_C\((0x[0-9A-F]{8})\))");
  std::string line;
  size_t count = 0;
  while (std::getline(header, line)) {
    std::smatch match;
    if (!std::regex_match(line, match, definition)) continue;
    ++count;
    const auto status = static_cast<NlsStatus>(std::stoul(match[2], nullptr, 16));
    EXPECT_EQ(veld::statusName(status), match[1]);
    EXPECT_EQ(veld::statusText(status), std::string(match[1]) + " (" + std::string(match[2]) + ")");
  }
  EXPECT_GT(count, 50u);
}

TEST(VeldStatusNames, OtherNumbersStandForThemselves) {
  EXPECT_EQ(veld::statusName(0), "");
  EXPECT_EQ(veld::statusText(0x803FE8FF), "0x803FE8FF");
}

}  // namespace
}  // namespace test

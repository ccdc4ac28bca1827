#include "exceptions.h"

#include <gtest/gtest.h>

namespace test {

Exceptions::Exceptions(const std::string& path) {
  for (Fields line : readTsv(path)) {
    EXPECT_GE(line.size(), 2u) << path;
    line.pop_back();
    EXPECT_TRUE(used_.emplace(line, false).second) << path << ": a line stands twice: " << line.front();
  }
}

bool Exceptions::allow(const Fields& fields) {
  const auto found = used_.find(fields);
  if (found == used_.end()) return false;
  found->second = true;
  return true;
}

std::vector<std::string> Exceptions::unused() const {
  std::vector<std::string> lines;
  for (const auto& [fields, used] : used_) {
    if (used) continue;
    std::string line;
    for (const std::string& field : fields) line += field + " ";
    lines.push_back(line);
  }
  return lines;
}

}  // namespace test

#include "differential/differences.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace differential_test {

namespace {

std::string hexText(uint32_t number) {
  char text[9];
  std::snprintf(text, sizeof text, "%02X", number);
  return text;
}

}  // namespace

void Differences::add(uint32_t first, uint32_t last, const std::string& ours, const std::string& theirs,
                      const std::string& kind) {
  if (open_ && kind != kind_) close();
  if (!open_) {
    open_ = true;
    first_ = first;
    ours_ = ours;
    theirs_ = theirs;
    kind_ = kind;
  }
  last_ = last;
}

void Differences::close() {
  if (!open_) return;
  open_ = false;
  test::Fields fields = subject_;
  fields.insert(fields.end(), {hexText(first_), hexText(last_), ours_, theirs_});
  std::string line;
  for (const std::string& field : fields) line += field + "\t";
  EXPECT_TRUE(listed_.allow(fields)) << "unlisted: " << line;
}

std::string listPath(const std::string& name) { return VELDNLS_SOURCE_DIR "/tests/differential/" + name; }

}  // namespace differential_test

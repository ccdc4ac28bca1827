// veld convert on a pipe of 4 GiB: it streams, so its memory doesn't grow with the text.
#include <gtest/gtest.h>
#include <unistd.h>

#include "apps/program.h"

namespace test {
namespace {

constexpr uint64_t streamBytes = uint64_t{4} << 30;
constexpr long mostKilobytes = 64 * 1024;

void writeStream(int file, std::string_view pattern, uint64_t count) {
  const std::string piece = times(1024 * 1024 / pattern.size() + 1, pattern);
  while (count > 0) {
    const ssize_t written = write(file, piece.data(), std::min<uint64_t>(piece.size(), count));
    if (written <= 0) return;
    count -= static_cast<uint64_t>(written);
  }
}

TEST(VeldStream, FourGibibytesFitInAFewMebibytes) {
  const Outcome outcome =
      runVeld({.arguments = {"convert", "-f", "wlatin1", "-t", "utf-8"},
               .writer = [](int file) { writeStream(file, bytes("61 62 63 80 E9 20 0A"), streamBytes); },
               .outputFile = "/dev/null"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
  EXPECT_EQ(outcome.errors, "");
  EXPECT_LT(outcome.peakKilobytes, mostKilobytes);
  RecordProperty("peakKilobytes", static_cast<int>(outcome.peakKilobytes));
}

// Every route keeps its memory: a shorter stream through each kind shows a leak of a block's size.
TEST(VeldStream, EveryKindOfRouteKeepsItsMemory) {
  constexpr uint64_t shorter = uint64_t{96} << 20;
  const std::pair<const char*, const char*> pairs[] = {
      {"utf-8", "utf-16le"},   {"utf-16le", "utf-8"},          {"utf-16be", "utf-8"},   {"utf-8", "utf-8"},
      {"wlatin1", "utf-32be"}, {"ebcdic1047", "open_ed-1047"}, {"utf-8", "wlatin1"},    {"utf-16le", "wlatin1"},
      {"wlatin1", "pcoem850"}, {"utf-8", "shift-jis"},         {"shift-jis", "euc-jp"}, {"ibm-939", "utf-8"},
      {"utf-8", "iso2022jp"},  {"wlatin1", "gb18030"}};
  for (const auto& [from, to] : pairs) {
    SCOPED_TRACE(std::string(from) + " to " + to);
    const Outcome outcome = runVeld({.arguments = {"convert", "-f", from, "-t", to},
                                     .writer = [](int file) { writeStream(file, "abcdefghij klmn\n", shorter); },
                                     .outputFile = "/dev/null"});
    EXPECT_GE(outcome.exitCode, 0);
    EXPECT_LT(outcome.exitCode, 2) << outcome.errors;
    EXPECT_LT(outcome.peakKilobytes, mostKilobytes);
  }
}

// The library's offsets are of 32 bits; those of the program aren't.
TEST(VeldStream, OffsetsBeyondTwoGibibytesAreTold) {
  constexpr uint64_t ahead = (uint64_t{5} << 29) + 16;
  const Outcome outcome = runVeld({.arguments = {"validate", "-f", "utf-8"}, .writer = [](int file) {
                                     writeStream(file, "abcdefghij klmn\n", ahead);
                                     writeStream(file, bytes("C3 28"), 2);
                                   }});
  EXPECT_EQ(outcome.exitCode, 1) << outcome.errors;
  EXPECT_EQ(outcome.output, "standard input: offset " + std::to_string(ahead) + ", line " +
                                std::to_string(ahead / 16 + 1) + ", column 1: malformed in utf-8 at C3 28\n");
  EXPECT_LT(outcome.peakKilobytes, mostKilobytes);
}

}  // namespace
}  // namespace test

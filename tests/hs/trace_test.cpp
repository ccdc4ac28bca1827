// Trace lines, and the end that a dump is to catch.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cctype>
#include <csignal>
#include <string>

#include "hs/pools_host.h"
#include "support/death.h"
#include "veldnls/hostlib/hs.h"

namespace {

// The child's process number is its own.
std::string traced(const VeldInputVector* host) {
  return test::runInChild([host] { hsTrace(host, "%s=%d\n", "answer", 42); }).output;
}

// The parts of "<stamp>(<process>) <program>- <message>".
struct Line {
  std::string stamp;
  std::string process;
  std::string rest;
};

Line split(const std::string& text) {
  const size_t open = text.find('(');
  const size_t close = text.find(") ", open);
  if (open == std::string::npos || close == std::string::npos) return {};
  return {text.substr(0, open), text.substr(open + 1, close - open - 1), text.substr(close + 2)};
}

TEST(Trace, LineHasStampProcessAndProgram) {
  test::HostRecords host;
  const Line line = split(traced(&host.vector));
  // Date and time of the C locale: 12/31/99 23:59:59:
  std::string shape = line.stamp;
  for (char& c : shape) c = std::isdigit(static_cast<unsigned char>(c)) != 0 ? '9' : c;
  EXPECT_EQ(shape, "99/99/99 99:99:99:");
  EXPECT_EQ(line.rest, "VELD- answer=42\n");
}

TEST(Trace, ProcessIsTheCallers) {
  const test::Ending ending = test::runInChild([] { hsTrace(nullptr, "%d\n", static_cast<int>(getpid())); });
  const Line line = split(ending.output);
  EXPECT_NE(line.process, "");
  EXPECT_EQ(line.rest, "VELD- " + line.process + "\n");
}

TEST(Trace, IsFlushed) {
  const test::Ending ending = test::runInChild([] {
    hsTrace(nullptr, "out\n");
    _exit(3);
  });
  EXPECT_EQ(ending.exitCode, 3);
  EXPECT_NE(ending.output.find("VELD- out\n"), std::string::npos);
}

TEST(Trace, WorksWithoutRecords) {
  VeldInputVector empty{};
  EXPECT_NE(traced(nullptr).find(") VELD- answer=42\n"), std::string::npos);
  EXPECT_NE(traced(&empty).find(") VELD- answer=42\n"), std::string::npos);
}

TEST(Trace, ProgramNameIsTheHosts) {
  test::HostRecords host;
  hsSetProgramName(&host.vector, "server one");
  EXPECT_NE(traced(&host.vector).find(") server one- answer=42\n"), std::string::npos);
  hsSetProgramName(&host.vector, "");
  EXPECT_NE(traced(&host.vector).find(") VELD- answer=42\n"), std::string::npos);
  hsSetProgramName(&host.vector, "x");
  hsSetProgramName(&host.vector, nullptr);
  EXPECT_NE(traced(&host.vector).find(") VELD- answer=42\n"), std::string::npos);
}

TEST(Trace, ProgramNameKeeps64Characters) {
  test::HostRecords host;
  hsSetProgramName(&host.vector, (std::string(64, 'a') + "b").c_str());
  EXPECT_NE(traced(&host.vector).find(") " + std::string(64, 'a') + "- answer=42\n"), std::string::npos);
  // A host may write the field itself, and need not end it.
  for (char& c : host.files.programName) c = 'c';
  EXPECT_NE(traced(&host.vector).find(") " + std::string(64, 'c') + "- answer=42\n"), std::string::npos);
}

TEST(Trace, ProgramNameMayStandInTheRecord) {
  test::HostRecords host;
  hsSetProgramName(&host.vector, "the server");
  hsSetProgramName(&host.vector, host.files.programName);
  EXPECT_STREQ(host.files.programName, "the server");
  hsSetProgramName(&host.vector, host.files.programName + 4);
  EXPECT_TRUE(test::allBytes(host.files.programName + 6, sizeof host.files.programName - 6, 0));
  EXPECT_STREQ(host.files.programName, "server");
}

TEST(Trace, ProgramNameNeedsAFileRecord) {
  VeldInputVector empty{};
  hsSetProgramName(nullptr, "server");
  hsSetProgramName(&empty, "server");
  EXPECT_NE(traced(&empty).find(") VELD- answer=42\n"), std::string::npos);
}

TEST(Crash, StoresAtTheAddress) {
  for (const auto address : {uintptr_t{0}, uintptr_t{1}}) {
    const test::Ending ending = test::runInChild([address] { hsCrash(address); });
    EXPECT_EQ(ending.signal, SIGSEGV);
  }
}

}  // namespace

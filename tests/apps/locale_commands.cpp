#include "apps/locale_commands.h"

#include <gtest/gtest.h>

#include <sstream>

namespace test {

namespace {

Outcome run(const char* command, const std::string& locale, const std::string& kind, const Words& texts,
            const Words& more, const std::string& lines) {
  Words arguments{command, "-l", locale, kind};
  arguments.insert(arguments.end(), more.begin(), more.end());
  if (!texts.empty()) arguments.emplace_back("--");
  arguments.insert(arguments.end(), texts.begin(), texts.end());
  return runVeld({.arguments = std::move(arguments), .input = lines});
}

}  // namespace

Outcome formatIn(const std::string& locale, const std::string& kind, const Words& values, Words more) {
  return run("format", locale, kind, values, more, "");
}

Outcome parseIn(const std::string& locale, const std::string& kind, const Words& texts, Words more) {
  return run("parse", locale, kind, texts, more, "");
}

Outcome formatLines(const std::string& locale, const std::string& kind, const std::string& lines, Words more) {
  return run("format", locale, kind, {}, more, lines);
}

Outcome parseLines(const std::string& locale, const std::string& kind, const std::string& lines, Words more) {
  return run("parse", locale, kind, {}, more, lines);
}

std::string refusedFormat(const std::string& command, const std::string& kind, const std::string& format) {
  const Outcome outcome = runVeld({.arguments = {command, "-l", "en_US", kind, "--format", format, "--", "0"}});
  EXPECT_EQ(outcome.exitCode, 2) << format;
  EXPECT_EQ(outcome.output, "");
  return outcome.errors;
}

void expectWrongUsage(const std::string& command, const std::vector<Words>& calls) {
  for (const Words& words : calls) {
    Words arguments{command};
    arguments.insert(arguments.end(), words.begin(), words.end());
    const Outcome outcome = runVeld({.arguments = arguments});
    EXPECT_EQ(outcome.exitCode, 2) << (words.empty() ? "nothing" : words.back());
    EXPECT_EQ(outcome.output, "");
    EXPECT_NE(outcome.errors, "");
  }
}

std::vector<std::string> localeNames() {
  std::istringstream table(runVeld({.arguments = {"locales"}}).output);
  std::string line;
  std::getline(table, line);
  std::vector<std::string> names;
  while (std::getline(table, line)) {
    std::istringstream words(line);
    std::string id;
    std::string name;
    words >> id >> name;
    names.push_back(name);
  }
  return names;
}

}  // namespace test

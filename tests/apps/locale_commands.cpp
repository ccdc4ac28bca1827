#include "apps/locale_commands.h"

#include <sstream>

namespace test {

namespace {

Outcome run(const char* command, const std::string& locale, const std::string& kind,
            const std::vector<std::string>& texts, const std::vector<std::string>& more, const std::string& lines) {
  std::vector<std::string> arguments{command, "-l", locale, kind};
  arguments.insert(arguments.end(), more.begin(), more.end());
  if (!texts.empty()) arguments.emplace_back("--");
  arguments.insert(arguments.end(), texts.begin(), texts.end());
  return runVeld({.arguments = std::move(arguments), .input = lines});
}

}  // namespace

Outcome formatIn(const std::string& locale, const std::string& kind, const std::vector<std::string>& values,
                 std::vector<std::string> more) {
  return run("format", locale, kind, values, more, "");
}

Outcome parseIn(const std::string& locale, const std::string& kind, const std::vector<std::string>& texts,
                std::vector<std::string> more) {
  return run("parse", locale, kind, texts, more, "");
}

Outcome formatLines(const std::string& locale, const std::string& kind, const std::string& lines,
                    std::vector<std::string> more) {
  return run("format", locale, kind, {}, more, lines);
}

Outcome parseLines(const std::string& locale, const std::string& kind, const std::string& lines,
                   std::vector<std::string> more) {
  return run("parse", locale, kind, {}, more, lines);
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

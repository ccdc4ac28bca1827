// The commands of veld for locales, as tests call them.
#pragma once

#include <string>
#include <vector>

#include "apps/program.h"

namespace test {

using Words = std::vector<std::string>;

// "veld COMMAND -l LOCALE KIND MORE...", with the texts behind "--", or as lines of standard input.
Outcome formatIn(const std::string& locale, const std::string& kind, const Words& values, Words more = {});
Outcome parseIn(const std::string& locale, const std::string& kind, const Words& texts, Words more = {});
Outcome formatLines(const std::string& locale, const std::string& kind, const std::string& lines, Words more = {});
Outcome parseLines(const std::string& locale, const std::string& kind, const std::string& lines, Words more = {});

// What is told of a format that "veld COMMAND" can't use for values of a kind.
std::string refusedFormat(const std::string& command, const std::string& kind, const std::string& format);

// Each call of the command, with these words behind it, exits with 2 and says why.
void expectWrongUsage(const std::string& command, const std::vector<Words>& calls);

// The names in the table of locales.
std::vector<std::string> localeNames();

}  // namespace test

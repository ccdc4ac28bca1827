// The commands of veld for locales, as tests call them.
#pragma once

#include <string>
#include <vector>

#include "apps/program.h"

namespace test {

// "veld COMMAND -l LOCALE KIND MORE...", with the texts behind "--", or as lines of standard input.
Outcome formatIn(const std::string& locale, const std::string& kind, const std::vector<std::string>& values,
                 std::vector<std::string> more = {});
Outcome parseIn(const std::string& locale, const std::string& kind, const std::vector<std::string>& texts,
                std::vector<std::string> more = {});
Outcome formatLines(const std::string& locale, const std::string& kind, const std::string& lines,
                    std::vector<std::string> more = {});
Outcome parseLines(const std::string& locale, const std::string& kind, const std::string& lines,
                   std::vector<std::string> more = {});

// The names in the table of locales.
std::vector<std::string> localeNames();

}  // namespace test

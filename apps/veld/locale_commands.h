// The commands locales, format and parse on the command line.
#pragma once

#include <CLI/CLI.hpp>
#include <vector>

#include "value_commands.h"

namespace veld {

class LocaleCommands {
 public:
  void addTo(CLI::App& app);

  // Runs the one of them that the command line has. `result` is its exit status; false where it has none of them.
  // Throws Failure.
  bool run(QZNLS& nls, int& result) const;

 private:
  // An option that only some kinds of value take.
  struct Limited {
    const CLI::Option* option;
    std::vector<Kind> kinds;
  };

  void addLocales(CLI::App& app);
  void addFormat(CLI::App& app);
  void addParse(CLI::App& app);
  void addFlags(CLI::App& command);
  void limit(const CLI::Option* option, std::vector<Kind> kinds);
  void checkLimits(Kind kind) const;

  CLI::App* locales_ = nullptr;
  CLI::App* format_ = nullptr;
  CLI::App* parse_ = nullptr;
  std::optional<std::string> name_;
  bool json_ = false;
  FormatArguments formatArguments_;
  ParseArguments parseArguments_;
  std::vector<Limited> limits_;
};

}  // namespace veld

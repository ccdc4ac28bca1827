#include <gnu/libc-version.h>
#include <unicode/uversion.h>

#include <CLI/CLI.hpp>
#include <exception>
#include <fstream>
#include <iostream>

#include "bench/groups.h"

namespace {

#if defined(__clang__)
constexpr const char* compiler = "clang++ " __clang_version__;
#else
constexpr const char* compiler = "g++ " __VERSION__;
#endif

nlohmann::ordered_json context(const bench::Settings& settings) {
  return {{"compiler", compiler},
          {"icu", U_ICU_VERSION},
          {"glibc", gnu_get_libc_version()},
          {"samples", settings.samples},
          {"sampleSeconds", settings.sampleSeconds}};
}

void run(const std::string& modulePath, const std::string& textFolder, const bench::Settings& settings,
         std::ostream& out) {
  bench::Runner runner(settings);
  bench::Library library(modulePath);
  bench::runConversions(runner, library, textFolder);
  bench::runValidation(runner, library, textFolder);
  bench::runDamage(runner, library, textFolder);
  bench::runDoubling(runner, library, textFolder);
  bench::runNames(runner, library);
  bench::runNumbers(runner, library);
  bench::runPools(runner, library);
  bench::runConstruction(runner, library);
  out << nlohmann::ordered_json{{"context", context(settings)}, {"groups", runner.results()}}.dump() << '\n';
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Times veldnls beside ICU, iconv and the C and C++ libraries, and writes every sample as JSON.");
  bench::Settings settings;
  std::string modulePath = BENCH_MODULE;
  std::string textFolder = BENCH_TEXTS;
  std::string outPath;
  app.add_option("--out", outPath, "file for the samples")->required();
  app.add_option("--module", modulePath, "the module to time")->capture_default_str();
  app.add_option("--texts", textFolder, "folder of the texts")->capture_default_str();
  app.add_option("--samples", settings.samples, "samples of each candidate")->capture_default_str();
  app.add_option("--sample-seconds", settings.sampleSeconds, "length of a sample")->capture_default_str();
  app.add_option("--filter", settings.filter, "regular expression, searched in \"kind/op/text/form\"");
  CLI11_PARSE(app, argc, argv);
  try {
    std::ofstream out(outPath);
    if (!out) throw std::runtime_error("can't write " + outPath);
    run(modulePath, textFolder, settings, out);
  } catch (const std::exception& failure) {
    std::cerr << "veldnls_bench: " << failure.what() << '\n';
    return 1;
  }
  return 0;
}

#include <benchmark/benchmark.h>
#include <unicode/ucnv.h>

#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/groups.h"

namespace bench {

namespace {

struct Name {
  std::u16string wide;
  std::string narrow;
};

bool libraryKnows(QZNLS& nls, const std::u16string& name) {
  CEI cei = 0;
  return nls.lookupEncoding(&nls, name.data(), static_cast<int32_t>(name.size()), NLS_LOOKUP_ANY, &cei) == 0;
}

uint16_t icuAliases(const std::string& name) {
  UErrorCode error = U_ZERO_ERROR;
  const uint16_t count = ucnv_countAliases(name.c_str(), &error);
  return U_SUCCESS(error) ? count : uint16_t{0};
}

// The names of the encoding table that both sides know.
std::vector<Name> sharedNames(QZNLS& nls) {
  std::set<std::u16string> candidates;
  for (CEI cei = 1; cei < NLS_CEI_COUNT; ++cei) {
    const EncodingDescriptor* row = nullptr;
    if (nls.getEncodingDescriptor(&nls, cei, &row) != 0) throw std::runtime_error("a row is missing");
    for (const char16_t* text : {row->name, row->ianaName, row->javaName, row->preferredName}) candidates.insert(text);
  }
  std::vector<Name> names;
  for (const std::u16string& wide : candidates) {
    std::string narrow;
    for (const char16_t unit : wide) narrow.push_back(static_cast<char>(unit));
    if (libraryKnows(nls, wide) && icuAliases(narrow) > 0) names.push_back({wide, narrow});
  }
  return names;
}

}  // namespace

void runNames(Runner& runner, const Library& library) {
  const Subject subject{"names", "name look-up", "names", "all names in turn"};
  if (!runner.wants(subject)) return;
  QZNLS& nls = library.nls();
  const std::vector<Name> names = sharedNames(nls);
  Group group{subject, 0, names.size(), {}};
  group.candidates.push_back({"veldnls", [&] {
                                for (const Name& name : names) {
                                  benchmark::DoNotOptimize(libraryKnows(nls, name.wide));
                                }
                              }});
  group.candidates.push_back({"ICU ucnv_countAliases", [&] {
                                for (const Name& name : names) benchmark::DoNotOptimize(icuAliases(name.narrow));
                              }});
  runner.run(group);
}

}  // namespace bench

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "core/environment.h"
#include "core/session.h"

namespace veldnls {

namespace {

// A codeset in normal form: lower case, without "-" and "_".
struct CodesetRow {
  std::string_view name;
  int32_t codePage;  // a number that lookupEncoding knows by any-name
};

constexpr CodesetRow codesets[] = {
#include "locales/codesets.inc"
};

constexpr int32_t fallbackCodePage = 1252;
// No encoding has this number for a name.
constexpr int32_t unknownCodePage = 0;

// Compares a codeset as it stands in the environment with a normal form, without making a copy.
bool isCodeset(std::string_view text, std::string_view normal) {
  size_t matched = 0;
  for (const char c : text) {
    if (c == '-' || c == '_') continue;
    const char lower = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    if (matched == normal.size() || normal[matched] != lower) return false;
    ++matched;
  }
  return matched == normal.size();
}

}  // namespace

std::string_view environmentLocale(const char* category) {
  for (const char* name : {"LC_ALL", category, "LANG"}) {
    const char* value = std::getenv(name);
    if (value == nullptr || *value == '\0') continue;
    const std::string_view text(value);
    return text.substr(0, text.find('@'));
  }
  return {};
}

int32_t environmentCodePage() {
  const std::string_view locale = environmentLocale("LC_CTYPE");
  const size_t dot = locale.find('.');
  if (dot == std::string_view::npos) return fallbackCodePage;
  const std::string_view codeset = locale.substr(dot + 1);
  if (codeset.empty()) return fallbackCodePage;
  const auto* found = std::find_if(std::begin(codesets), std::end(codesets),
                                   [=](const CodesetRow& row) { return isCodeset(codeset, row.name); });
  return found != std::end(codesets) ? found->codePage : unknownCodePage;
}

}  // namespace veldnls

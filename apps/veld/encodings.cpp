#include "encodings.h"

#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>

#include "failure.h"
#include "names.h"
#include "text.h"

namespace veld {

namespace {

using Json = nlohmann::ordered_json;

constexpr int characterDigits = 2;

std::string classText(int32_t encodingClass) {
  switch (encodingClass) {
    case NLS_CLASS_SINGLE_BYTE:
      return "single byte";
    case NLS_CLASS_UTF8:
      return "utf-8 family";
    case NLS_CLASS_UTF16:
      return "utf-16";
    case NLS_CLASS_UTF32:
      return "utf-32";
    case NLS_CLASS_SHIFTED:
      return "multi-byte, shifted";
    case NLS_CLASS_MULTI_BYTE:
      return "multi-byte";
    default:
      throw Failure("class " + std::to_string(encodingClass) + " isn't known; is this the module of this version?");
  }
}

Json describe(QZNLS& nls, CEI cei) {
  const EncodingDescriptor& row = rowOf(nls, cei);
  return {{"cei", cei},
          {"name", displayName(nls, cei)},
          {"class", classText(row.encodingClass)},
          {"base", displayName(nls, row.baseCei)},
          {"pad", hexNumber(row.padChar, characterDigits)},
          {"substitution", hexNumber(row.substitution, characterDigits)},
          {"description", toUtf8(nls, {row.description, static_cast<size_t>(row.descriptionLength)})},
          {"names", knownNames(nls, row)}};
}

void printRow(const Json& row) {
  for (const auto& [key, value] : row.items()) {
    if (key == "names") continue;
    std::cout << std::left << std::setw(14) << key << (value.is_string() ? value.get<std::string>() : value.dump())
              << '\n';
  }
  std::string heading = "names";
  for (const auto& name : row.at("names")) {
    std::cout << std::left << std::setw(14) << heading << name.get<std::string>() << '\n';
    heading.clear();
  }
}

void printLine(const std::string& cei, const std::string& name, const std::string& encodingClass,
               const std::string& base, const std::string& pad, const std::string& substitution,
               const std::string& description) {
  std::cout << std::right << std::setw(3) << cei << "  " << std::left << std::setw(14) << name << std::setw(21)
            << encodingClass << std::setw(14) << base << std::setw(12) << pad << std::setw(14) << substitution
            << description << '\n';
}

void printTable(QZNLS& nls) {
  printLine("CEI", "name", "class", "base", "pad", "substitution", "description");
  for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) {
    const Json row = describe(nls, cei);
    printLine(std::to_string(cei), row["name"], row["class"], row["base"], row["pad"], row["substitution"],
              row["description"]);
  }
}

void printJson(const Json& value) { std::cout << value.dump(2) << '\n'; }

}  // namespace

void printEncodings(QZNLS& nls, const std::string& name, Format format) {
  if (!name.empty()) {
    const Json row = describe(nls, findEncoding(nls, name));
    format == Format::json ? printJson(row) : printRow(row);
  } else if (format == Format::json) {
    Json rows = Json::array();
    for (CEI cei = 0; cei < NLS_CEI_COUNT; ++cei) rows.push_back(describe(nls, cei));
    printJson(rows);
  } else {
    printTable(nls);
  }
}

}  // namespace veld

#include "locales.h"

#include <algorithm>
#include <iomanip>
#include <iostream>

#include "failure.h"
#include "json_report.h"
#include "locale_examples.h"
#include "locale_sections.h"
#include "names.h"
#include "status_names.h"
#include "text.h"
#include "veldnls/cei.h"

namespace veld {

namespace {

constexpr int lcidDigits = 4;

// The Unicode forms, and what stands for any encoding, serve every locale: they tell nothing in a table.
bool servesAll(CEI cei) {
  constexpr CEI general[] = {U_UTF8_CE, U_B_UNICODE_CE, U_L_UNICODE_CE, U_B_UCS4_CE, U_L_UCS4_CE, U_ANY_CE};
  return std::find(std::begin(general), std::end(general), cei) != std::end(general);
}

Json encodingNames(QZNLS& nls, const int32_t* list, int32_t count) {
  Json names = Json::array();
  for (int32_t i = 0; i < count; ++i) names.push_back(displayName(nls, list[i]));
  return names;
}

std::string languageTag(Locale& locale) {
  std::string tag;
  const LocaleNameRow& row = locale.row();
  for (int32_t i = 0; i < row.posixNameLength; ++i) {
    const auto letter = static_cast<char>(row.posixName[i]);
    tag += letter == '_' ? '-' : letter;
  }
  return tag;
}

const LocaleEncodings& encodingsOf(QZNLS& nls, int32_t localeId) {
  const LocaleEncodings* row = nullptr;
  const NlsStatus status = nls.getLocaleEncodings(localeId, &row);
  if (status != 0) throw Failure("locale " + std::to_string(localeId) + " has no encodings: " + statusText(status));
  return *row;
}

// What a line of the table tells.
Json summary(QZNLS& nls, Locale& locale) {
  const LocaleRecord& record = locale.record();
  const LocaleNameRow& row = locale.row();
  const LocaleEncodings& encodings = encodingsOf(nls, row.localeId);
  char16_t language[2] = {};
  locale.slots()->getLanguage(locale.slots(), language, nullptr);
  return {{"id", row.localeId},
          {"name", toUtf8(nls, {row.posixName, static_cast<size_t>(row.posixNameLength)})},
          {"tag", languageTag(locale)},
          {"languageCode", toUtf8(nls, {language, 2})},
          {"windows", hexNumber(row.windowsLcid, lcidDigits)},
          {"language", toUtf8(nls, viewOf(record.identity.languageName))},
          {"country", toUtf8(nls, viewOf(record.identity.countryName))},
          {"longName", toUtf8(nls, {row.longName, static_cast<size_t>(row.longNameLength)})},
          {"currency", toUtf8(nls, viewOf(record.currency.currencyCode))},
          {"symbol", toUtf8(nls, viewOf(record.currency.currencySymbol))},
          {"encodings", encodingNames(nls, encodings.primary, encodings.primaryCount)},
          {"secondaryEncodings", encodingNames(nls, encodings.secondary, encodings.secondaryCount)}};
}

std::string ownEncodings(QZNLS& nls, const Locale& locale) {
  const LocaleEncodings& row = encodingsOf(nls, locale.row().localeId);
  std::string text;
  const auto add = [&](const std::string& word) { text += (text.empty() ? "" : " ") + word; };
  for (int32_t i = 0; i < row.primaryCount; ++i) {
    if (!servesAll(row.primary[i])) add(displayName(nls, row.primary[i]));
  }
  if (row.secondaryCount > 0) add("partly:");
  for (int32_t i = 0; i < row.secondaryCount; ++i) add(displayName(nls, row.secondary[i]));
  return text;
}

void printLine(const std::string& id, const std::string& name, const std::string& tag, const std::string& windows,
               const std::string& currency, const std::string& language, const std::string& country,
               const std::string& encodings) {
  std::cout << std::right << std::setw(3) << id << "  " << std::left << std::setw(7) << name << std::setw(7) << tag
            << std::setw(8) << windows << std::setw(10) << currency << std::setw(18) << language << std::setw(20)
            << country << encodings << '\n';
}

void printTable(QZNLS& nls) {
  printLine("id", "name", "tag", "Windows", "currency", "language", "country", "encodings beside Unicode");
  for (int32_t id = 0; id < NLS_LOCALE_COUNT; ++id) {
    Locale locale(nls, "QUOID:" + std::to_string(id));
    const Json row = summary(nls, locale);
    printLine(std::to_string(id), row["name"], row["tag"], row["windows"], row["currency"], row["language"],
              row["country"], ownEncodings(nls, locale));
  }
}

std::string plainText(const Json& value) {
  if (!value.is_array()) return value.is_string() ? value.get<std::string>() : value.dump();
  std::string text;
  for (const Json& part : value) text += (text.empty() ? "" : " | ") + part.get<std::string>();
  return text;
}

void printFields(const Json& object, int width) {
  for (const auto& [key, value] : object.items()) {
    std::cout << "  " << std::left << std::setw(width) << key << plainText(value) << '\n';
  }
}

void printExamples(const Json& examples) {
  std::cout << "examples\n";
  for (const Json& example : examples) {
    const std::string form = example.contains("form") ? example["form"].get<std::string>() : "";
    std::cout << "  " << std::left << std::setw(10) << example["kind"].get<std::string>() << std::setw(8) << form
              << std::setw(21) << example["value"].get<std::string>() << example["text"].get<std::string>() << '\n';
  }
}

void printLocale(const Json& row, const Json& sections, const Json& examples) {
  constexpr int narrow = 20;
  constexpr int wide = 30;
  printFields(row, narrow);
  for (const auto& [section, fields] : sections.items()) {
    std::cout << section << '\n';
    if (fields.is_object()) {
      printFields(fields, wide);
      continue;
    }
    for (size_t i = 0; i < fields.size(); ++i) {
      std::cout << "  " << std::left << std::setw(5) << i << fields[i].get<std::string>() << '\n';
    }
  }
  printExamples(examples);
}

void printOne(QZNLS& nls, const std::string& name, Format format) {
  Locale locale(nls, name);
  Json row = summary(nls, locale);
  const Json sections = localeSections(nls, locale);
  const Json examples = localeExamples(nls, row["name"]);
  if (format == Format::text) return printLocale(row, sections, examples);
  row["sections"] = sections;
  row["examples"] = examples;
  std::cout << row.dump(2) << '\n';
}

}  // namespace

void printLocales(QZNLS& nls, const std::optional<std::string>& name, Format format) {
  if (name) return printOne(nls, *name, format);
  if (format == Format::text) return printTable(nls);
  Json rows = Json::array();
  for (int32_t id = 0; id < NLS_LOCALE_COUNT; ++id) {
    Locale locale(nls, "QUOID:" + std::to_string(id));
    rows.push_back(summary(nls, locale));
  }
  std::cout << rows.dump(2) << '\n';
}

}  // namespace veld

#include "locale_handle.h"

#include <algorithm>
#include <iostream>
#include <tuple>
#include <vector>

#include "failure.h"
#include "nearest.h"
#include "status_names.h"
#include "text.h"
#include "veldnls/status.h"

namespace veld {

namespace {

// "<U5E74>": the characters in front of the digits, the digits, and one behind them.
constexpr size_t escapeDigits = 2;
constexpr size_t escapeEnd = 6;

std::string posixName(QZNLS& nls, const LocaleNameRow& row) {
  return toUtf8(nls, {row.posixName, static_cast<size_t>(row.posixNameLength)});
}

std::string longName(QZNLS& nls, const LocaleNameRow& row) {
  return toUtf8(nls, {row.longName, static_cast<size_t>(row.longNameLength)});
}

std::string nearestLocales(QZNLS& nls, const std::string& name) {
  const std::string wanted = lowerAscii(name);
  std::vector<std::tuple<size_t, std::string>> candidates;
  for (int32_t id = 0; id < NLS_LOCALE_COUNT; ++id) {
    const LocaleNameRow& row = localeRow(nls, id);
    for (const std::string& known : {posixName(nls, row), longName(nls, row)}) {
      candidates.emplace_back(editDistance(wanted, lowerAscii(known)), known);
    }
  }
  std::sort(candidates.begin(), candidates.end());
  std::vector<std::string> names;
  for (size_t i = 0; i < suggestions; ++i) names.push_back(std::get<1>(candidates[i]));
  return listed(names);
}

// Whether a name tells more than a language: a country, or in a number of Windows what stands above the language.
bool tellsCountry(const std::string& name) {
  constexpr uint32_t greatestLanguage = 0x3FF;
  if (name.find_first_of("_-") != std::string::npos) return true;
  const size_t colon = name.find(':');
  if (colon == std::string::npos) return false;
  uint32_t number = 0;
  for (const char c : name.substr(colon + 1)) {
    if (c == ' ') continue;
    if (c < '0' || c > '9') break;
    number = number * 10 + static_cast<uint32_t>(c - '0');
  }
  return number > greatestLanguage;
}

bool isEscape(std::string_view text) {
  return text.size() > escapeEnd && text[0] == '<' && (text[1] == 'U' || text[1] == 'u') && text[escapeEnd] == '>';
}

}  // namespace

const LocaleNameRow& localeRow(QZNLS& nls, int32_t localeId) {
  const std::u16string name = toUtf16(nls, "QUOID:" + std::to_string(localeId));
  const LocaleNameRow* row = nullptr;
  const NlsStatus status =
      nls.findLocaleEntry(&nls, name.data(), static_cast<int32_t>(name.size()), NLS_LOCALE_STRICT, &row);
  if (status != 0) throw Failure("the library has no locale " + std::to_string(localeId) + ": " + statusText(status));
  return *row;
}

const LocaleNameRow& findLocale(QZNLS& nls, const std::string& name) {
  const std::u16string units = toUtf16(nls, name);
  const LocaleNameRow* row = nullptr;
  const NlsStatus status =
      nls.findLocaleEntry(&nls, units.data(), static_cast<int32_t>(units.size()), NLS_LOCALE_WIDE, &row);
  if (status == nlsLocaleApproximated && tellsCountry(name)) {
    std::cerr << "veld: no locale is called \"" << onOneLine(name) << "\"; the one of its language stands in, "
              << posixName(nls, localeRow(nls, row->localeId)) << '\n';
  }
  // The row of a language may have a retired name, which makes no locale.
  if (status == 0 || status == nlsLocaleApproximated) return localeRow(nls, row->localeId);
  if (status == nlsLocaleLanguageOnly) {
    throw Failure("no locale has the language of \"" + name + "\": " + statusText(status) +
                  "; \"veld locales\" lists all");
  }
  throw Failure("unknown locale \"" + name + "\": " + statusText(status) + "; the nearest known names are " +
                nearestLocales(nls, name) + " (\"veld locales\" lists all)");
}

std::string hostLocale(QZNLS& nls) {
  char16_t name[localeNameRoom];
  int32_t length = 0;
  nls.getHostLocaleName(&nls, name, &length);
  return toUtf8(nls, {name, static_cast<size_t>(length)});
}

Locale::Locale(QZNLS& nls, const std::string& name)
    : row_(findLocale(nls, name)), locale_(nls.createLocale(&nls, row_.posixName, row_.posixNameLength)) {
  if (locale_ == nullptr) throw Failure("the library can't make a locale; close other programs and try again");
  record_ = std::make_unique<LocaleRecord>(*locale_->record);
  view_ = *locale_;
  view_.record = record_.get();
}

std::u16string Locale::item(size_t index) const {
  const LocaleItem& item = record_->items[index];
  const std::string_view text(item.text, item.length);
  std::u16string units;
  for (size_t i = 0; i < text.size(); ++i) {
    if (isEscape(text.substr(i))) {
      const std::string digits(text.substr(i + escapeDigits, escapeEnd - escapeDigits));
      units += static_cast<char16_t>(std::stoul(digits, nullptr, 16));
      i += escapeEnd;
    } else {
      units += static_cast<char16_t>(static_cast<unsigned char>(text[i]));
    }
  }
  return units;
}

bool setFormat(NlsText60& field, std::u16string_view format) {
  if (format.size() > std::size(field.text)) return false;
  std::copy(format.begin(), format.end(), field.text);
  field.count = static_cast<int32_t>(format.size());
  return true;
}

}  // namespace veld

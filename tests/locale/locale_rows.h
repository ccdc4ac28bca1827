// The data rows of the locales as the text of data/locale/ gives them, read and put together apart from the generator.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace test {

struct LocaleRow {
  std::string name;  // "en_US"
  // Fields of the record by name, those of lists as "dayNames.0"; patterns with the row's own signs.
  std::map<std::string, std::u16string> fields;
  std::map<int, std::u16string> items;  // without escapes; empty ones too
};

// The rows of all 132 names.
const std::vector<LocaleRow>& localeRows();
const LocaleRow& localeRow(const std::string& name);

// A text of the tables as UTF-16, with its escapes resolved.
std::u16string unescaped(const std::string& text);
// A text as an item holds it.
std::string itemText(const std::u16string& text);

}  // namespace test

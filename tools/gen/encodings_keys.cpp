// The keys of the name index: the column texts of the table in upper case, less those left out, plus keys of their own.
// Nothing is settled by order: a text of two rows needs a line that names its answer.
#include <set>

#include "encodings_model.h"

namespace gen {

namespace {

constexpr size_t keyCount = 1729;
constexpr size_t extraCount = 425;
constexpr size_t sharedCount = 137;
constexpr size_t groupKeyCount = 8;
constexpr size_t leftOutCount = 57;
constexpr size_t longestKey = 40;
constexpr int firstGroupValue = rowCount + 1;

struct Key {
  Place place;
  int value;
};

using KeyList = std::map<std::string, Key>;
using TextRows = std::map<std::string, std::set<int>>;

TextRows columnTexts(const Encodings& model) {
  TextRows texts;
  for (size_t cei = 0; cei < model.rows.size(); ++cei) {
    for (size_t i = 0; i < columnCount; ++i) {
      const std::string& text = model.rows[cei].texts[i];
      if (!text.empty() && text != "    ") texts[upperCase(text)].insert(static_cast<int>(cei));
    }
  }
  return texts;
}

KeyList readKeys(const std::string& path, int minimum, int maximum, size_t expected) {
  KeyList keys;
  for (const Line& line : readLines(path)) {
    requireFields(line, 2);
    const std::string& key = line.field(1);
    requirePlainText(line.place, key);
    require(upperCase(key) == key, line.place, "keys are upper case: \"" + key + "\"");
    const auto value = static_cast<int>(parseDecimal(line, line.field(0), minimum, maximum));
    require(value != utf16Cei, line.place, "no key answers 19, the alias of UTF-16LE");
    require(keys.emplace(key, Key{line.place, value}).second, line.place, "\"" + key + "\" stands twice; remove one");
  }
  requireCount(path, keys.size(), expected, "keys");
  return keys;
}

std::set<std::string> readLeftOut(const std::string& path, const TextRows& texts) {
  std::set<std::string> leftOut;
  for (const Line& line : readLines(path)) {
    requireFields(line, 1);
    const std::string& text = line.field(0);
    require(texts.contains(text), line.place, "\"" + text + "\" is no column text; remove the line");
    require(leftOut.insert(text).second, line.place, "\"" + text + "\" stands twice; remove one");
  }
  requireCount(path, leftOut.size(), leftOutCount, "texts");
  return leftOut;
}

void checkLists(const KeyList& extra, const KeyList& shared, const KeyList& groups, const TextRows& texts,
                const std::set<std::string>& leftOut) {
  for (const auto& [key, entry] : shared) {
    const auto text = texts.find(key);
    require(text != texts.end() && text->second.size() > 1, entry.place,
            "\"" + key + "\" does not stand in two rows; remove the line");
    require(text->second.contains(entry.value), entry.place, "the answer is none of the rows with this text");
    require(!leftOut.contains(key), entry.place, "\"" + key + "\" is left out of the index; remove one of the lines");
  }
  for (const KeyList* list : {&extra, &groups}) {
    for (const auto& [key, entry] : *list) {
      const auto text = texts.find(key);
      // Row 19 is an alias, so that its texts may lead elsewhere.
      require(text == texts.end() || (list == &extra && text->second == std::set<int>{utf16Cei}), entry.place,
              "\"" + key + "\" is a column text; remove the line");
    }
  }
  for (const auto& [key, entry] : groups) {
    require(!extra.contains(key), entry.place, "\"" + key + "\" is a key in keys-extra.tsv; remove one of the lines");
  }
}

}  // namespace

void loadKeys(Encodings& model) {
  const TextRows texts = columnTexts(model);
  const KeyList extra = readKeys(model.folder + "keys-extra.tsv", 1, rowCount - 1, extraCount);
  const KeyList shared = readKeys(model.folder + "keys-shared.tsv", 1, rowCount - 1, sharedCount);
  const KeyList groups =
      readKeys(model.folder + "keys-groups.tsv", firstGroupValue, firstGroupValue + groupKeyCount - 1, groupKeyCount);
  const std::set<std::string> leftOut = readLeftOut(model.folder + "keys-left-out.txt", texts);
  checkLists(extra, shared, groups, texts, leftOut);

  for (const auto& [text, ceis] : texts) {
    if (leftOut.contains(text) || extra.contains(text)) continue;
    const int first = *ceis.begin();
    const auto answer = shared.find(text);
    require(ceis.size() == 1 || answer != shared.end(), model.rows[static_cast<size_t>(*ceis.rbegin())].place,
            "\"" + text + "\" stands in row " + std::to_string(first) +
                " too; change one, or name the answer in keys-shared.tsv");
    model.keys[text] = answer != shared.end() ? answer->second.value : first;
  }
  for (const KeyList* list : {&extra, &groups}) {
    for (const auto& [key, entry] : *list) model.keys[key] = entry.value;
  }
  for (const auto& [key, value] : model.keys) {
    require(key.size() <= longestKey, {model.folder + "rows.tsv", 0},
            "the key \"" + key + "\" is longer than " + std::to_string(longestKey) + " units");
    require(value != utf16Cei, model.rows[utf16Cei].place,
            "\"" + key + "\" would answer 19; name its answer in keys-extra.tsv or leave it out");
  }
  requireCount(model.folder + "rows.tsv", model.keys.size(), keyCount, "keys");
}

}  // namespace gen

#include "value_report.h"

#include <algorithm>
#include <iostream>
#include <span>
#include <string_view>

#include "display_width.h"
#include "failure.h"
#include "lines.h"
#include "status_names.h"
#include "text.h"

namespace veld {

namespace {

// Of a long text, so many characters show, and so many of them in front of the mark at most.
constexpr size_t shownCharacters = 120;
constexpr size_t shownInFront = 80;

// A surrogate pair is one character.
std::vector<std::u16string> charactersOf(std::u16string_view text) {
  std::vector<std::u16string> characters;
  for (size_t i = 0; i < text.size(); ++i) {
    const bool isPair = (text[i] & 0xFC00) == 0xD800 && i + 1 < text.size() && (text[i + 1] & 0xFC00) == 0xDC00;
    characters.emplace_back(text.substr(i, isPair ? 2 : 1));
    if (isPair) ++i;
  }
  return characters;
}

size_t characterAt(std::u16string_view text, size_t place) { return charactersOf(text.substr(0, place)).size(); }

// Where a character behind others shows, in columns from 0. One that shows on the character in front has that one's
// last column.
size_t columnBehind(std::span<const std::u16string> others, std::u16string_view character) {
  size_t column = 0;
  for (const std::u16string& other : others) column += displayWidth(other);
  return column != 0 && displayWidth(character) == 0 ? column - 1 : column;
}

// The text, and a mark under one of its characters, or behind them. Controls show as U+FFFD.
void printMarked(QZNLS& nls, std::u16string_view text, std::optional<size_t> place) {
  std::vector<std::u16string> characters = charactersOf(text);
  for (std::u16string& character : characters) {
    if (isControl(character[0])) character = u"\uFFFD";
  }
  const size_t mark = place ? characterAt(text, *place) : 0;
  const size_t first = mark > shownInFront ? mark - shownInFront : 0;
  const size_t end = std::min(characters.size(), first + shownCharacters);
  std::u16string shown;
  for (size_t i = first; i < end; ++i) shown += characters[i];
  std::cerr << "  " << toUtf8(nls, shown) << '\n';
  if (!place) return;
  const std::span<const std::u16string> inFront = std::span(characters).subspan(first, mark - first);
  const std::u16string_view marked = mark < characters.size() ? characters[mark] : std::u16string_view(u"^");
  std::cerr << "  " << std::string(columnBehind(inFront, marked), ' ') << "^\n";
}

std::string front(const Text& text) {
  return text.line == 0 ? "veld: " : "veld: line " + std::to_string(text.line) + ": ";
}

}  // namespace

void forEachText(QZNLS& nls, const std::vector<std::string>& texts, const std::function<void(const Text& text)>& take) {
  for (const std::string& text : texts) take({toUtf16(nls, text)});
  if (!texts.empty()) return;
  uint64_t line = 0;
  forEachInputLine([&](const std::string& text) { take({toUtf16(nls, text), ++line}); });
}

void ValueReport::add(const Text& text, const Outcome& outcome) {
  if (outcome.fault) result_ = exitLoss;
  format_ == ReportFormat::json ? addObject(text, outcome) : addSentences(text, outcome);
  requireStandardOutput();
}

void ValueReport::addSentences(const Text& text, const Outcome& outcome) {
  if (outcome.result) std::cout << toUtf8(nls_, *outcome.result) << '\n';
  if (!outcome.warning.empty()) {
    std::cerr << front(text) << outcome.warning << '\n';
    printMarked(nls_, text.units, {});
  }
  if (!outcome.fault) return;
  std::cout.flush();
  const Fault& fault = *outcome.fault;
  std::cerr << front(text);
  if (fault.status != 0) std::cerr << statusText(fault.status) << ": ";
  if (fault.place) std::cerr << "character " << characterAt(text.units, *fault.place) + 1 << ": ";
  std::cerr << onOneLine(fault.reason) << '\n';
  printMarked(nls_, text.units, fault.place);
}

void ValueReport::addObject(const Text& text, const Outcome& outcome) {
  Json object{{"text", toUtf8(nls_, text.units)}};
  if (outcome.result) object["result"] = toUtf8(nls_, *outcome.result);
  if (outcome.count) object["count"] = *outcome.count;
  if (!outcome.warning.empty()) object["warning"] = outcome.warning;
  if (outcome.fault) {
    const Fault& fault = *outcome.fault;
    if (fault.status != 0) {
      object["status"] = statusNumber(fault.status);
      object["name"] = statusName(fault.status);
    }
    if (fault.place) object["character"] = characterAt(text.units, *fault.place) + 1;
    object["reason"] = fault.reason;
  }
  std::cout << toLine(object);
}

}  // namespace veld

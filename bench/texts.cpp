#include "bench/texts.h"

#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <stdexcept>
#include <unordered_map>
#include <vector>

namespace bench {

namespace {

constexpr Form formRows[] = {
    {"looped", Order::inOrder, 65536, 1},    {"random", Order::randomWords, 65536, 24},
    {"field-16", Order::fields, 16, 1024},   {"field-64", Order::fields, 64, 1024},
    {"field-256", Order::fields, 256, 1024},
};

// A word longer than this is a run of text without blanks, as in Japanese and Thai, and is cut.
constexpr size_t longestWord = 12;
constexpr size_t shortestCut = 2;
constexpr size_t longestCut = 6;
constexpr uint64_t seed = 20240229;

// The texts are known to be well-formed.
std::u32string decodeUtf8(const std::string& bytes) {
  std::u32string text;
  for (size_t i = 0; i < bytes.size();) {
    const auto lead = static_cast<uint8_t>(bytes[i++]);
    const int trails = lead < 0xC0 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
    auto value = static_cast<char32_t>(trails == 0 ? lead : lead & (0x3F >> trails));
    for (int trail = 0; trail < trails; ++trail) value = value << 6 | (static_cast<uint8_t>(bytes[i++]) & 0x3F);
    text.push_back(value == U'\n' ? U' ' : value);
  }
  return text;
}

std::u32string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("can't read " + path);
  return decodeUtf8({std::istreambuf_iterator<char>(file), {}});
}

// Words with the blank behind them. std::mt19937_64 gives the same numbers everywhere; distributions don't.
std::vector<std::u32string> wordsOf(const std::u32string& text) {
  std::mt19937_64 random(seed);
  std::vector<std::u32string> words;
  for (size_t start = 0; start < text.size();) {
    size_t end = text.find(U' ', start);
    end = end == std::u32string::npos ? text.size() : end + 1;
    while (end - start > longestWord) {
      const size_t cut = shortestCut + random() % (longestCut - shortestCut + 1);
      words.push_back(text.substr(start, cut));
      start += cut;
    }
    words.push_back(text.substr(start, end - start));
    start = end;
  }
  return words;
}

std::function<char32_t()> around(const std::u32string& text) {
  return [&text, next = size_t{0}]() mutable { return text[next++ % text.size()]; };
}

std::function<char32_t()> randomWords(const std::u32string& text) {
  const auto words = std::make_shared<const std::vector<std::u32string>>(wordsOf(text));
  return [words, random = std::mt19937_64(seed), word = std::u32string(), next = size_t{0}]() mutable {
    if (next == word.size()) {
      word = (*words)[random() % words->size()];
      next = 0;
    }
    return word[next++];
  };
}

std::u32string filtered(const std::u32string& text, const std::function<bool(char32_t)>& keep) {
  std::unordered_map<char32_t, bool> known;
  std::u32string kept;
  for (const char32_t character : text) {
    const auto [entry, isNew] = known.try_emplace(character, false);
    if (isNew) entry->second = keep(character);
    if (entry->second) kept.push_back(character);
  }
  return kept;
}

}  // namespace

Text readText(const std::string& folder, const std::string& name) {
  return {name, readFile(folder + "/" + name + ".txt"), readFile(folder + "/fields-" + name + ".txt")};
}

Text restricted(const Text& text, const std::function<bool(char32_t)>& keep) {
  Text kept{text.name, filtered(text.prose, keep), filtered(text.fields, keep)};
  const auto tooLittle = [](const std::u32string& part, const std::u32string& whole) {
    return part.size() * 5 <= whole.size() * 4;
  };
  if (tooLittle(kept.prose, text.prose) || tooLittle(kept.fields, text.fields)) {
    throw std::runtime_error("too little of the text " + text.name + " remains");
  }
  return kept;
}

std::span<const Form> forms() { return formRows; }

std::function<char32_t()> characters(const Text& text, Order order) {
  switch (order) {
    case Order::inOrder:
      return around(text.prose);
    case Order::randomWords:
      return randomWords(text.prose);
    case Order::fields:
      return around(text.fields);
  }
  throw std::runtime_error("unknown order");
}

}  // namespace bench

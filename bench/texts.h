// The texts, and the three forms in which a text is timed.
#pragma once

#include <functional>
#include <span>
#include <string>

namespace bench {

// A language's running text and its short column values, as characters.
struct Text {
  std::string name;
  std::u32string prose;
  std::u32string fields;
};

// Reads <folder>/<name>.txt and <folder>/fields-<name>.txt, which are UTF-8. Line ends become blanks.
Text readText(const std::string& folder, const std::string& name);

// The text without the characters for which `keep` is false. Throws when that is a fifth of it or more: then encoding
// and text don't fit each other.
Text restricted(const Text& text, const std::function<bool(char32_t)>& keep);

enum class Order { inOrder, randomWords, fields };

// How a text is cut into pieces, in bytes of the encoding it is converted from.
struct Form {
  const char* name;
  Order order;
  size_t pieceBytes;
  size_t pieceCount;
};

// One piece again and again; words in random order, 1.5 MB of them; short fields.
std::span<const Form> forms();

// An endless supply of the text's characters in the order of a form, the same at every call.
std::function<char32_t()> characters(const Text& text, Order order);

}  // namespace bench

#include <stdexcept>

#include "bench/groups.h"
#include "bench/material.h"

namespace bench {

namespace {

struct Row {
  const char* from;
  const char* to;  // nullptr: validation
  const char* text;
};

constexpr Row rows[] = {
    {"utf-8", "utf-16le", "de"}, {"utf-16le", "utf-8", "ja"},  {"wlatin1", "utf-8", "de"},
    {"utf-8", "wlatin1", "de"},  {"shift-jis", "utf-8", "ja"}, {"utf-8", "shift-jis", "ja"},
    {"ibm-939", "euc-jp", "ja"}, {"utf-8", nullptr, "ja"},     {"shift-jis", nullptr, "ja"},
};

constexpr size_t once = 65536;
// Long enough not to be learned by heart.
constexpr size_t totalBytes = 24 * once;

bool isUnicode(Shape shape) { return shape == Shape::utf8 || shape == Shape::utf16; }

Pieces piecesOf(Material& material, const Row& row, size_t bytes) {
  Text text = material.read(row.text);
  for (const char* name : {row.from, row.to}) {
    if (name != nullptr && !isUnicode(encoding(name).shape)) text = material.restrictedTo(encoding(name), text);
  }
  return material.cut(text, encoding(row.from), {"", Order::randomWords, bytes, totalBytes / bytes});
}

}  // namespace

void runDoubling(Runner& runner, const Library& library, const std::string& textFolder) {
  Material material(library, textFolder);
  std::vector<uint8_t> room(roomBytes);
  for (const Row& row : rows) {
    const std::string work = row.to == nullptr ? "validate" : std::string("to ") + row.to;
    const Subject subject{"doubling", std::string(row.from) + " " + work, row.text, "128 KB against 64 KB twice"};
    if (!runner.wants(subject)) continue;
    const Converter converter = row.to == nullptr ? library.validator(encoding(row.from))
                                                  : library.converter(encoding(row.from), encoding(row.to));
    const Pieces twice = piecesOf(material, row, 2 * once);
    const Pieces single = piecesOf(material, row, once);
    for (const Pieces* pieces : {&twice, &single}) {
      pieces->forEach([&](Bytes piece) {
        if (converter.convert(piece, room) == 0) throw std::runtime_error(subject.op + ": a piece is refused");
      });
    }
    runner.run({subject,
                twice.totalBytes(),
                twice.count(),
                {{"veldnls", [&] { converter.convertAll(twice, room); }},
                 {"veldnls, in halves", [&] { converter.convertAll(single, room); }}}});
  }
}

}  // namespace bench

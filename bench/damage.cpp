#include <algorithm>
#include <array>
#include <random>
#include <stdexcept>

#include "bench/groups.h"
#include "bench/material.h"
#include "bench/peers.h"

namespace bench {

namespace {

// `fault` takes the place of as many bytes of the text; no text in the encoding has it there.
struct Row {
  const char* from;
  const char* to;
  const char* text;
  std::vector<uint8_t> fault;
};

const std::vector<uint8_t> noLead{0xFF};
const std::vector<uint8_t> halfPair{0x00, 0xD8};

const Row rows[] = {
    {"utf-8", "utf-16le", "en", noLead},     {"utf-8", "utf-16le", "de", noLead},
    {"utf-8", "utf-16le", "ja", noLead},     {"utf-8", "utf-32le", "de", noLead},
    {"utf-16le", "utf-8", "de", halfPair},   {"utf-16le", "utf-8", "ja", halfPair},
    {"shift-jis", "utf-16le", "ja", noLead}, {"euc-jp", "utf-8", "ja", noLead},
};

struct Damage {
  const char* form;
  size_t bytesPerFault;  // 0: none
};

constexpr Damage damages[] = {
    {"no fault", 0}, {"a fault in 4096 bytes", 4096}, {"a fault in 256 bytes", 256}, {"a fault in 32 bytes", 32}};

// A fault at a random place of each stretch, between units where these have two bytes.
std::vector<uint8_t> damaged(Bytes piece, const Row& row, size_t bytesPerFault, std::mt19937_64& random) {
  std::vector<uint8_t> bytes(piece.begin(), piece.end());
  if (bytesPerFault == 0) return bytes;
  for (size_t start = 0; start + bytesPerFault <= bytes.size(); start += bytesPerFault) {
    const size_t unit = row.fault.size();
    const size_t place = start + random() % (bytesPerFault / unit) * unit;
    std::copy(row.fault.begin(), row.fault.end(), bytes.begin() + static_cast<std::ptrdiff_t>(place));
  }
  return bytes;
}

bool takesAll(const Converter& converter, const Pieces& pieces, Room room) {
  bool taken = true;
  pieces.forEach([&](Bytes piece) { taken = taken && converter.convert(piece, room) != 0; });
  return taken;
}

}  // namespace

void runDamage(Runner& runner, const Library& library, const std::string& textFolder) {
  constexpr Form form{"random", Order::randomWords, 65536, 24};
  Material material(library, textFolder);
  std::vector<uint8_t> room(roomBytes);
  for (const Row& row : rows) {
    for (const Damage& damage : damages) {
      const Subject subject{"damage", std::string(row.from) + " to " + row.to, row.text, damage.form};
      if (!runner.wants(subject)) continue;
      const Encoding& from = encoding(row.from);
      const Encoding& to = encoding(row.to);
      const Text text = material.read(row.text);
      const Pieces sound = material.cut(hasKnownSizes(from) ? text : material.restrictedTo(from, text), from, form);
      Pieces pieces;
      std::mt19937_64 random;
      sound.forEach([&](Bytes piece) { pieces.add(damaged(piece, row, damage.bytesPerFault, random)); });
      // Peers that end at the first fault have no part in this: iconv, and ICU's calls without a converter.
      std::vector<Converter> all{library.substitutingConverter(from, to)};
      if (!takesAll(all.front(), pieces, room)) throw std::runtime_error(subject.op + ": the library refuses a piece");
      for (const Converter& peer : icuConverters(from, to)) {
        if (takesAll(peer, pieces, room)) all.push_back(peer);
      }
      Group group{subject, pieces.totalBytes(), pieces.count(), {}};
      for (const Converter& converter : all) {
        group.candidates.push_back({converter.name, [&] { converter.convertAll(pieces, room); }});
      }
      runner.run(group);
    }
  }
}

}  // namespace bench

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <vector>

#include "bench/groups.h"
#include "bench/peers.h"
#include "bench/texts.h"

namespace bench {

namespace {

struct PageRow {
  const char* page;
  std::vector<const char*> texts;
};

// One page of every script and family, with a text of its own; English besides, where most of a text is ASCII in use.
const std::vector<PageRow> pageRows = {
    {"wlatin1", {"de", "en"}},    {"latin2", {"pl"}},    {"pcoem850", {"fr"}}, {"wcyrillic", {"ru", "en"}},
    {"wgreek", {"el"}},           {"whebrew", {"he"}},   {"warabic", {"ar"}},  {"thai", {"th"}},
    {"ebcdic1047", {"de", "en"}}, {"ebcdic037", {"fr"}}, {"aroman", {"fr"}},
};
constexpr std::array pagePartners{"utf-16le", "utf-16be", "utf-8"};

struct PairRow {
  const char* from;
  const char* to;
  const char* text;
};

constexpr PairRow bytePairs[] = {
    {"wlatin1", "pcoem850", "de"},   {"wlatin1", "ebcdic1047", "de"},   {"ebcdic1047", "wlatin1", "de"},
    {"pcoem850", "ebcdic037", "fr"}, {"ebcdic037", "ebcdic1047", "en"}, {"aroman", "wlatin1", "fr"},
    {"latin2", "wlatin2", "pl"},     {"wcyrillic", "cyrillic", "ru"},   {"wgreek", "greek", "el"},
    {"whebrew", "hebrew", "he"},     {"warabic", "arabic", "ar"},       {"thai", "pcoem874", "th"},
};

constexpr std::array unicodeTexts{"en", "de", "ru", "ja", "vi", "emoji"};
constexpr std::array utfEbcdicTexts{"en", "de", "ja"};
constexpr std::array utfEbcdicPartners{"utf-8", "utf-16le", "utf-32le"};

// Room for any piece in any encoding: 64 KB of single bytes become 256 KB of UTF-32.
constexpr size_t roomBytes = 4 * 65536 + 64;

class Conversions {
 public:
  Conversions(Runner& runner, const Library& library, const std::string& textFolder)
      : runner_(runner), library_(library), textFolder_(textFolder), room_(roomBytes) {}

  void pages() {
    for (const PageRow& row : pageRows) {
      const Encoding& page = encoding(row.page);
      for (const char* name : row.texts) {
        const Text text = restrictedTo(page, read(name));
        for (const char* partner : pagePartners) {
          time("page", page, encoding(partner), text);
          time("page", encoding(partner), page, text);
        }
      }
    }
  }

  void unicode() {
    for (const char* name : unicodeTexts) {
      const Text text = read(name);
      for (const Encoding& from : unicodeForms()) {
        for (const Encoding& to : unicodeForms()) {
          if (&from != &to && pairsComeOver(from, to, text)) time("unicode", from, to, text);
        }
      }
    }
  }

  void bytes() {
    for (const PairRow& row : bytePairs) {
      const Encoding& from = encoding(row.from);
      const Encoding& to = encoding(row.to);
      time("bytes", from, to, restrictedTo(to, restrictedTo(from, read(row.text))));
    }
  }

  void utfEbcdic() {
    const Encoding& utfEbcdic = encoding("utf-e");
    for (const char* name : utfEbcdicTexts) {
      const Text text = read(name);
      for (const char* partner : utfEbcdicPartners) {
        time("utf-e", encoding(partner), utfEbcdic, text);
        time("utf-e", utfEbcdic, encoding(partner), text);
      }
    }
  }

 private:
  Text read(const char* name) const { return readText(textFolder_, name); }

  // The library first.
  std::vector<Converter> converters(const Encoding& from, const Encoding& to) const {
    std::vector<Converter> all{library_.converter(from, to)};
    for (Converter& peer : icuConverters(from, to)) all.push_back(std::move(peer));
    for (Converter& peer : iconvConverters(from, to)) all.push_back(std::move(peer));
    return all;
  }

  // The text without what the page lacks, or what library and peers don't map alike, there and back.
  Text restrictedTo(const Encoding& page, const Text& text) {
    const Encoding& wide = encoding("utf-32le");
    const std::vector<Converter> there = converters(wide, page);
    const std::vector<Converter> back = converters(page, wide);
    return restricted(text, [&](char32_t character) {
      const std::u32string source(1, character);
      std::array<uint8_t, sizeof(char32_t)> byte{};
      std::u32string result(1, 0);
      const Room resultRoom(reinterpret_cast<uint8_t*>(result.data()), sizeof(char32_t));
      for (size_t i = 0; i < there.size(); ++i) {
        std::array<uint8_t, sizeof(char32_t)> own{};
        if (there[i].convert(asBytes(source), own) != 1) return false;
        if (i == 0) byte = own;
        if (own[0] != byte[0]) return false;
        if (back[i].convert(Bytes(own).first(1), resultRoom) != sizeof(char32_t) || result != source) return false;
      }
      return true;
    });
  }

  // From utf-16be, the library reads the second unit of a surrogate pair in the other byte order.
  static bool pairsComeOver(const Encoding& from, const Encoding& to, const Text& text) {
    if (std::string(from.name) != "utf-16be" || to.shape == Shape::utf16) return true;
    return std::none_of(text.prose.begin(), text.prose.end(), [](char32_t character) { return character > 0xFFFF; });
  }

  void time(const char* kind, const Encoding& from, const Encoding& to, const Text& text) {
    for (const Form& form : forms()) {
      const Subject subject{kind, std::string(from.name) + " to " + to.name, text.name, form.name};
      if (runner_.wants(subject)) timeForm(subject, from, to, text, form);
    }
  }

  void timeForm(const Subject& subject, const Encoding& from, const Encoding& to, const Text& text, const Form& form) {
    const Pieces pieces = cut(text, from, form);
    std::vector<Converter> all = converters(from, to);
    compare(subject, all, pieces);
    if (subject.kind == "bytes") all.push_back(copyOfBytes());
    Group group{subject, pieces.totalBytes(), pieces.count(), {}};
    for (const Converter& converter : all) {
      group.candidates.push_back({converter.name, [&] { converter.convertAll(pieces, room_); }});
    }
    runner_.run(group);
  }

  Pieces cut(const Text& text, const Encoding& from, const Form& form) {
    const Converter encode = library_.converter(encoding("utf-32le"), from);
    const bool isWide = std::string(from.name) == "utf-32le";
    const auto next = characters(text, form.order);
    Pieces pieces;
    for (size_t i = 0; i < form.pieceCount; ++i) {
      const std::u32string piece = takeCharacters(next, from, form.pieceBytes);
      pieces.add(isWide ? asBytes(piece) : Bytes(room_).first(encode.convert(asBytes(piece), room_)));
    }
    return pieces;
  }

  void compare(const Subject& subject, const std::vector<Converter>& all, const Pieces& pieces) {
    std::vector<uint8_t> expected(roomBytes);
    pieces.forEach([&](Bytes piece) {
      const size_t length = all.front().convert(piece, expected);
      if (length == 0) throw std::runtime_error(subject.op + ", " + subject.text + ": the library refuses a piece");
      for (const Converter& peer : all) {
        if (peer.convert(piece, room_) == length && std::equal(room_.data(), room_.data() + length, expected.data())) {
          continue;
        }
        throw std::runtime_error(subject.op + ", " + subject.text + ": " + peer.name + " differs from the library");
      }
    });
  }

  static Converter copyOfBytes() {
    return makeConverter("memcpy", [](Bytes input, Room output) {
      std::memcpy(output.data(), input.data(), input.size());
      benchmark::ClobberMemory();
      return input.size();
    });
  }

  Runner& runner_;
  const Library& library_;
  std::string textFolder_;
  std::vector<uint8_t> room_;
};

}  // namespace

void runConversions(Runner& runner, const Library& library, const std::string& textFolder) {
  Conversions conversions(runner, library, textFolder);
  conversions.pages();
  conversions.unicode();
  conversions.bytes();
  conversions.utfEbcdic();
}

}  // namespace bench

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <span>
#include <stdexcept>
#include <vector>

#include "bench/groups.h"
#include "bench/material.h"

namespace bench {

namespace {

struct Row {
  const char* encoding;
  std::vector<const char*> texts;
};

// One page of every script and family, with a text of its own; English besides, where most of a text is ASCII in use.
const Row pageRows[] = {
    {"wlatin1", {"de", "en"}},    {"latin2", {"pl"}},    {"pcoem850", {"fr"}}, {"wcyrillic", {"ru", "en"}},
    {"wgreek", {"el"}},           {"whebrew", {"he"}},   {"warabic", {"ar"}},  {"thai", {"th"}},
    {"ebcdic1047", {"de", "en"}}, {"ebcdic037", {"fr"}}, {"aroman", {"fr"}},
};
constexpr std::array pagePartners{"utf-16le", "utf-16be", "utf-8"};

const Row multiRows[] = {
    {"shift-jis", {"ja", "en"}},   {"euc-jp", {"ja", "en"}},    {"euc-kr", {"ko", "en"}},
    {"ms-936", {"zh-hans", "en"}}, {"big5", {"zh-hant", "en"}}, {"gb18030", {"zh-hans", "en"}},
    {"ibm-939", {"ja", "en"}},
};
constexpr std::array multiPartners{"utf-16le", "utf-8"};

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

constexpr PairRow multiPairs[] = {
    {"shift-jis", "euc-jp", "ja"},    {"euc-jp", "shift-jis", "ja"},    {"ibm-939", "shift-jis", "ja"},
    {"shift-jis", "ibm-939", "ja"},   {"ibm-930", "euc-jp", "ja"},      {"ms-936", "gb18030", "zh-hans"},
    {"gb18030", "ms-936", "zh-hans"}, {"big5", "ms-936", "zh-hant"},    {"euc-kr", "ibm-933", "ko"},
    {"ibm-933", "euc-kr", "ko"},      {"ibm-935", "ms-936", "zh-hans"}, {"ibm-937", "big5", "zh-hant"},
};

constexpr std::array unicodeTexts{"en", "de", "ru", "ja", "vi", "emoji"};
constexpr std::array utfEbcdicTexts{"en", "de", "ja"};
constexpr std::array utfEbcdicPartners{"utf-8", "utf-16le", "utf-32le"};

struct Route {
  const Encoding* from;
  const Encoding* to;
};

std::string nameOf(const Route& route) { return std::string(route.from->name) + " to " + route.to->name; }

class Conversions {
 public:
  Conversions(Runner& runner, const Library& library, const std::string& textFolder)
      : runner_(runner), library_(library), material_(library, textFolder), room_(roomBytes) {}

  // Both ways between the encoding of each row and each partner.
  void withUnicode(const char* kind, std::span<const Row> rows, std::span<const char* const> partners) {
    for (const Row& row : rows) {
      const Encoding& own = encoding(row.encoding);
      const std::vector<Route> routes = bothWays(own, partners);
      for (const char* name : row.texts) {
        time(kind, routes, name, [&] { return material_.restrictedTo(own, material_.read(name)); });
      }
    }
  }

  void pairs(const char* kind, std::span<const PairRow> rows) {
    for (const PairRow& row : rows) {
      const Encoding& from = encoding(row.from);
      const Encoding& to = encoding(row.to);
      time(kind, {{&from, &to}}, row.text,
           [&] { return material_.restrictedTo(to, material_.restrictedTo(from, material_.read(row.text))); });
    }
  }

  void unicode() {
    for (const char* name : unicodeTexts) {
      const Text text = material_.read(name);
      std::vector<Route> routes;
      for (const Encoding& from : unicodeForms()) {
        for (const Encoding& to : unicodeForms()) {
          if (&from != &to && pairsComeOver(from, to, text)) routes.push_back({&from, &to});
        }
      }
      time("unicode", routes, name, [&] { return text; });
    }
  }

  void utfEbcdic() {
    const std::vector<Route> routes = bothWays(encoding("utf-e"), utfEbcdicPartners);
    for (const char* name : utfEbcdicTexts) {
      time("utf-e", routes, name, [&] { return material_.read(name); });
    }
  }

 private:
  static std::vector<Route> bothWays(const Encoding& own, std::span<const char* const> partners) {
    std::vector<Route> routes;
    for (const char* name : partners) {
      routes.push_back({&own, &encoding(name)});
      routes.push_back({&encoding(name), &own});
    }
    return routes;
  }

  // From utf-16be, the library reads the second unit of a surrogate pair in the other byte order.
  static bool pairsComeOver(const Encoding& from, const Encoding& to, const Text& text) {
    if (std::string(from.name) != "utf-16be" || to.shape == Shape::utf16) return true;
    return std::none_of(text.prose.begin(), text.prose.end(), [](char32_t character) { return character > 0xFFFF; });
  }

  // The text is asked for only when one of the routes is wanted in a form.
  void time(const char* kind, const std::vector<Route>& routes, const char* textName,
            const std::function<Text()>& makeText) {
    Text text;
    for (const Route& route : routes) {
      for (const Form& form : forms()) {
        const Subject subject{kind, nameOf(route), textName, form.name};
        if (!runner_.wants(subject)) continue;
        if (text.prose.empty()) text = makeText();
        timeForm(subject, route, text, form);
      }
    }
  }

  void timeForm(const Subject& subject, const Route& route, const Text& text, const Form& form) {
    const Pieces pieces = material_.cut(text, *route.from, form);
    std::vector<Converter> all = allConverters(library_, *route.from, *route.to);
    compare(subject, all, pieces);
    if (subject.kind == "bytes") all.push_back(copyOfBytes());
    Group group{subject, pieces.totalBytes(), pieces.count(), {}};
    for (const Converter& converter : all) {
      group.candidates.push_back({converter.name, [&] { converter.convertAll(pieces, room_); }});
    }
    runner_.run(group);
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
  Material material_;
  std::vector<uint8_t> room_;
};

}  // namespace

void runConversions(Runner& runner, const Library& library, const std::string& textFolder) {
  Conversions conversions(runner, library, textFolder);
  conversions.withUnicode("page", pageRows, pagePartners);
  conversions.unicode();
  conversions.pairs("bytes", bytePairs);
  conversions.withUnicode("multi", multiRows, multiPartners);
  conversions.pairs("multi-multi", multiPairs);
  conversions.utfEbcdic();
}

}  // namespace bench

#include "pages_facts.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace gen::pages {

namespace {

constexpr size_t rowCount = 149;
constexpr size_t toTableCount = 142;
constexpr size_t fromTableCount = 141;
constexpr std::array<size_t, 7> vacantCeis = {0, 77, 94, 107, 170, 171, 204};
constexpr size_t decodeOnlyCei = 74;  // aeasteuro

// Rows that share the page of another one, apart from the open forms.
struct Sharing {
  size_t cei;
  std::string_view page;
  Form form;
};
constexpr Sharing sharedPages[] = {{29, "wlatin1", Form::plain},
                                   {115, "wlatin1", Form::plain},
                                   {116, "wlatin2", Form::plain},
                                   {203, "ebcdic1047", Form::open}};

constexpr uint16_t firstSurrogate = 0xD800;
constexpr uint16_t firstPrivate = 0xE000;
constexpr uint16_t lastPrivate = 0xF8FF;
constexpr uint16_t firstUsablePrivate = 0xF850;

constexpr size_t asciiCount = 0x80;
constexpr uint8_t asciiSub = 0x1A;
constexpr uint8_t asciiDel = 0x7F;
constexpr size_t asciiPageDefined = 0xA0;  // us-ascii defines the C1 controls too

constexpr std::string_view openPrefix = "open_ed-";
constexpr std::string_view ownOpenPage = "open_ed-1149";

// Pages in which SUB and DEL have exchanged their places.
bool exchangesSubAndDel(std::string_view page) {
  return page == "pcoem437" || page == "msdos720" || page == "pciscii806" || page == "pc1098";
}

struct Mapping {
  uint8_t byte;
  uint16_t unit;
};

void requireTo(const Page& page, const Mapping& mapping) {
  require(
      page.to[mapping.byte] == mapping.unit, page.place,
      "byte " + hex(mapping.byte, 2) + " must be " + hex(mapping.unit, 4) + ", not " + hex(page.to[mapping.byte], 4));
}

void requireFrom(const Page& page, const Mapping& mapping) {
  const auto found = page.from.find(mapping.unit);
  require(found != page.from.end() && found->second == mapping.byte, page.place,
          "unit " + hex(mapping.unit, 4) + " must go to byte " + hex(mapping.byte, 2));
}

void requireBoth(const Page& page, const Mapping& mapping) {
  requireTo(page, mapping);
  requireFrom(page, mapping);
}

void checkUnits(const Page& page) {
  requireBoth(page, {0, 0});
  for (size_t byte = 1; byte < byteCount; ++byte) {
    const uint16_t unit = page.to[byte];
    require(unit != 0, page.place, "byte " + hex(byte, 2) + " is U+0000, which byte 0 alone may be");
    require(unit < firstSurrogate || unit > lastPrivate || unit >= firstUsablePrivate, page.place,
            "byte " + hex(byte, 2) + " is a surrogate or a private character below " + hex(firstUsablePrivate, 4));
    require(unit < firstPrivate || unit > lastPrivate || page.from.contains(unit), page.place,
            "private character " + hex(unit, 4) + " goes out to no byte");
  }
  require(!page.from.contains(undefinedUnit), page.place, "U+FFFD goes to a byte, which it may not");
}

void checkAscii(const Page& page) {
  for (size_t i = 0; i < asciiCount; ++i) {
    uint16_t unit = static_cast<uint16_t>(i);
    if (exchangesSubAndDel(page.name)) unit = i == asciiSub ? asciiDel : i == asciiDel ? asciiSub : unit;
    requireBoth(page, {static_cast<uint8_t>(i), unit});
  }
}

// Letters and digits: the first byte of each run, and its characters.
constexpr struct {
  uint8_t byte;
  std::string_view characters;
} ebcdicRuns[] = {{0x81, "abcdefghi"}, {0x91, "jklmnopqr"}, {0xA2, "stuvwxyz"},  {0xC1, "ABCDEFGHI"},
                  {0xD1, "JKLMNOPQR"}, {0xE2, "STUVWXYZ"},  {0xF0, "0123456789"}};

void checkEbcdic(const Page& page, Form form) {
  constexpr Mapping blank{0x40, 0x0020};
  constexpr Mapping substitution{0x3F, 0x001A};
  requireBoth(page, blank);
  requireBoth(page, substitution);
  for (const auto& run : ebcdicRuns) {
    for (size_t i = 0; i < run.characters.size(); ++i) {
      requireBoth(page, {static_cast<uint8_t>(run.byte + i), static_cast<uint16_t>(run.characters[i])});
    }
  }
  if (page.name == ownOpenPage) return;
  const bool open = form == Form::open;
  requireBoth(page, {0x15, open ? uint16_t{0x000A} : uint16_t{0x0085}});
  requireBoth(page, {0x25, open ? uint16_t{0x0085} : uint16_t{0x000A}});
}

void checkOpenName(const Row& row) {
  std::string name = row.name;
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  if (!name.starts_with(openPrefix)) return;
  const bool own = name == ownOpenPage;
  const std::string page = own ? name : "ebcdic" + name.substr(openPrefix.size());
  require(row.page == page && row.form == (own ? Form::plain : Form::open), row.place,
          "this row must use page " + page + (own ? " in its plain form" : " in its open form"));
}

// Bytes and units that map one way only stand in these pages, in these numbers.
void checkDirections(const Page& page) {
  struct OneWay {
    std::string_view page;
    size_t decodeOnly;
    size_t encodeOnly;
  };
  constexpr OneWay oneWays[] = {{"aarabic", 26, 0}, {"ebcdic838", 5, 0}, {"wvietnamese", 0, 2}, {ownOpenPage, 1, 1}};
  const auto* const known =
      std::find_if(std::begin(oneWays), std::end(oneWays), [&](const OneWay& o) { return o.page == page.name; });
  const bool listed = known != std::end(oneWays);
  require(page.decodeOnly.size() == (listed ? known->decodeOnly : 0), page.place,
          std::to_string(page.decodeOnly.size()) + " bytes are marked \"to\"; correct the marks or the figure");
  require(page.encodeOnly.size() == (listed ? known->encodeOnly : 0), page.place,
          std::to_string(page.encodeOnly.size()) + " lines are marked \"from\"; correct the marks or the figure");
}

void checkAsciiPage(const Page& page) {
  for (size_t byte = 0; byte < byteCount; ++byte) {
    requireTo(page,
              {static_cast<uint8_t>(byte), byte < asciiPageDefined ? static_cast<uint16_t>(byte) : undefinedUnit});
  }
}

}  // namespace

void checkRow(const Row& row, const Page& page) {
  checkUnits(page);
  checkDirections(page);
  checkOpenName(row);
  if (row.ebcdic) {
    checkEbcdic(page, row.form);
  } else {
    checkAscii(page);
  }
  const auto undefined = static_cast<size_t>(std::count(page.to.begin(), page.to.end(), undefinedUnit));
  require(undefined == row.undefined, row.place,
          std::to_string(undefined) + " bytes of the page are undefined, not " + std::to_string(row.undefined));
  const size_t pages = page.highBytes().size();
  require(!row.hasFrom() || pages == row.pages, row.place,
          "the from-table has " + std::to_string(pages) + " pages, not " + std::to_string(row.pages));
}

void checkNamedPages(Folder& folder) {
  const Place here{"tools/gen/pages_facts.cpp", 0};
  checkAsciiPage(folder.page(here, "us-ascii"));

  const Page& western = folder.page(here, "wlatin1");
  requireBoth(western, {0x80, 0x20AC});
  constexpr uint8_t withoutMeaning[] = {0x81, 0x8D, 0x8F, 0x90, 0x9D};
  for (const uint8_t byte : withoutMeaning) requireTo(western, {byte, undefinedUnit});

  const Page& vietnamese = folder.page(here, "wvietnamese");
  requireFrom(vietnamese, {0xCC, 0x0340});
  requireFrom(vietnamese, {0xEC, 0x0341});

  const Page& thai = folder.page(here, "ebcdic838");
  constexpr Mapping toneMarks[] = {{0xED, 0x0E48}, {0xEE, 0x0E49}, {0xEF, 0x0E4A}};
  for (const Mapping& mark : toneMarks) requireBoth(thai, mark);

  const Page& open1149 = folder.page(here, std::string(ownOpenPage));
  requireTo(open1149, {0x15, 0x0085});
  requireTo(open1149, {0x25, 0x0085});
  requireFrom(open1149, {0x15, 0x000A});
  requireFrom(open1149, {0x25, 0x0085});
}

void checkRows(const std::vector<Row>& rows, const Place& file) {
  const auto count = [&](auto&& holds) { return static_cast<size_t>(std::count_if(rows.begin(), rows.end(), holds)); };
  require(rows.size() == rowCount, file, "there must be " + std::to_string(rowCount) + " rows");
  require(count([](const Row& row) { return row.hasTo(); }) == toTableCount, file,
          "there must be " + std::to_string(toTableCount) + " to-tables");
  require(count([](const Row& row) { return row.hasFrom(); }) == fromTableCount, file,
          "there must be " + std::to_string(fromTableCount) + " from-tables");
  for (const Row& row : rows) {
    const bool vacant = std::find(vacantCeis.begin(), vacantCeis.end(), row.cei) != vacantCeis.end();
    require(vacant == !row.hasTo(), row.place, vacant ? "this CEI has no tables" : "this CEI has a to-table");
    require((row.cei == decodeOnlyCei) == (row.form == Form::decodeOnly), row.place,
            "aeasteuro, and it alone, has a to-table without a from-table");
    for (const Sharing& sharing : sharedPages) {
      require(row.cei != sharing.cei || (row.page == sharing.page && row.form == sharing.form), row.place,
              "this row must share page " + std::string(sharing.page));
    }
  }
}

}  // namespace gen::pages

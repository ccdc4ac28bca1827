#include "bounds/routes.h"

#include <algorithm>
#include <map>
#include <memory>
#include <ostream>
#include <span>
#include <stdexcept>
#include <tuple>

#include "reference/encoding_text.h"
#include "transcode/built_user_tables.h"

namespace bounds_test {

namespace {

using transcode_test::Codes;
using transcode_test::ListInUse;
using transcode_test::Pipeline;
using transcode_test::UserList;

constexpr Encoding unicodeForms[] = {
    {"utf8", U_UTF8_CE, TextKind::utf8},
    {"utfe", U_UTFE_CE, TextKind::utfEbcdic},
    {"utf16le", U_L_UNICODE_CE, TextKind::utf16le},
    {"utf16be", U_B_UNICODE_CE, TextKind::utf16be},
    {"utf32le", U_L_UCS4_CE, TextKind::utf32le},
    {"utf32be", U_B_UCS4_CE, TextKind::utf32be},
};

constexpr Encoding page(const char* name, CEI cei) { return {name, cei, TextKind::bytes}; }

constexpr Encoding wlatin1 = page("wlatin1", U_WLATIN1_CE);
constexpr Encoding ebcdic1047 = page("ebcdic1047", U_EBCDIC1047_CE);
constexpr Encoding pcoem850 = page("pcoem850", U_PCOEM850_CE);

// Multi-byte encodings of every structure. Those that are targets only have no text of their own.
constexpr Encoding shiftJis{"shiftJis", U_SHIFTJIS_CE, TextKind::shiftJis};
constexpr Encoding eucJp{"eucJp", U_EUCJP_CE, TextKind::eucJp};
constexpr Encoding gb18030{"gb18030", U_GB18030_CE, TextKind::gb18030};
constexpr Encoding ibm939{"ibm939", U_IBM939_CE, TextKind::ibm939};
constexpr Encoding hitachiJp{"hitachiJp", U_HITACHIJP_CE, TextKind::hitachiJp};
constexpr Encoding iso2022jp{"iso2022jp", U_ISO2022JP_CE, TextKind::iso2022jp};
constexpr Encoding iso2022kr{"iso2022kr", U_ISO2022KR_CE, TextKind::iso2022kr};
constexpr Encoding ms950{"ms950", U_MS950_CE, TextKind::ms950};
constexpr Encoding ms936 = page("ms936", U_MS936_CE);
constexpr Encoding jis7 = page("jis7", U_JIS7_CE);
constexpr Encoding necJp = page("necJp", U_NECJP_CE);
constexpr Encoding pcjis = page("pcjis", U_PCJIS_CE);

// ---- User characters, with codes that the texts have ----

Codes codesFrom(std::initializer_list<std::pair<uint16_t, uint16_t>> ranges) {
  Codes codes;
  for (const auto& [first, count] : ranges) {
    for (uint16_t i = 0; i < count; ++i) codes.push_back(static_cast<uint16_t>(first + i));
  }
  return codes;
}

// Private-use characters stand in between.
const UserCharacterTable* betweenEncodings() {
  const Codes own = codesFrom({{0xFA40, 63}, {0xFAA1, 94}});
  const Codes other = codesFrom({{0x6941, 157}});
  static UserList list;
  static UserCharacterTable* const head =
      list.add({{ms950.cei, own}, {ibm939.cei, other}}).add({{ibm939.cei, other}, {ms950.cei, own}}).head();
  return head;
}

// Kana and codes of users, and characters of Unicode that are Greek ones, punctuation and signs otherwise.
const UserCharacterTable* withUnicode() {
  const Codes codes = codesFrom({{0x829F, 80}, {0x8340, 63}, {0x8380, 23}, {0xF040, 63}, {0xF080, 125}, {0xF140, 14}});
  const Codes units = codesFrom({{0x0391, 112}, {0x2010, 256}});
  static UserList list;
  static UserCharacterTable* const head = list.add({{shiftJis.cei, codes}, {U_L_UNICODE_CE, units}})
                                              .add({{U_L_UNICODE_CE, units}, {shiftJis.cei, codes}})
                                              .head();
  return head;
}

void addWithUserTables(std::vector<Route>& all) {
  const auto& [utf8, utfe, utf16le, utf16be, utf32le, utf32be] = unicodeForms;
  all.push_back({ms950, ibm939, betweenEncodings});
  all.push_back({utf16le, shiftJis, withUnicode});
  all.push_back({shiftJis, utf8, withUnicode});
}

void addMultiByte(std::vector<Route>& all) {
  const auto& [utf8, utfe, utf16le, utf16be, utf32le, utf32be] = unicodeForms;
  const Route to[] = {{shiftJis, utf16le},  {shiftJis, utfe},  {eucJp, utf16be},
                      {gb18030, utf8},      {ibm939, utf16le}, {ibm939, utf8},
                      {hitachiJp, utf32be}, {iso2022jp, utf8}, {iso2022kr, utf16le}};
  const Route from[] = {{utf8, shiftJis},     {utf16be, eucJp},     {utf32le, gb18030}, {utfe, ibm939},
                        {utf16le, hitachiJp}, {utf16le, iso2022jp}, {utf8, iso2022kr},  {utf16le, jis7},
                        {utf32be, necJp},     {utf8, pcjis}};
  const Route bytes[] = {
      {wlatin1, ms936}, {wlatin1, ibm939}, {shiftJis, wlatin1}, {hitachiJp, ebcdic1047}, {iso2022kr, wlatin1}};
  const Route through[] = {{shiftJis, ibm939}, {ibm939, iso2022jp},  {hitachiJp, shiftJis},
                           {iso2022jp, necJp}, {iso2022kr, gb18030}, {gb18030, jis7}};
  // Pairs that need no conversion; the resumable run checks.
  const Route unconverted[] = {
      {shiftJis, page("ms932", U_MS932_CE)}, {ibm939, ibm939}, {page("usAscii", U_ASCII_CE), ms936}};
  for (const std::span<const Route> routes :
       {std::span<const Route>(to), std::span<const Route>(from), std::span<const Route>(bytes),
        std::span<const Route>(through), std::span<const Route>(unconverted)}) {
    all.insert(all.end(), routes.begin(), routes.end());
  }
}

std::vector<Route> makeRoutes() {
  std::vector<Route> all;
  for (const Encoding& source : unicodeForms) {
    for (const Encoding& target : unicodeForms) all.push_back({source, target});
  }
  for (const Encoding& single : {wlatin1, ebcdic1047}) {
    for (const Encoding& form : unicodeForms) {
      all.push_back({single, form});
      all.push_back({form, single});
    }
  }
  all.push_back({pcoem850, wlatin1});
  all.push_back({ebcdic1047, pcoem850});
  // Sources with direction marks.
  all.push_back({page("whebrew", U_WHEBREW_CE), page("ebcdic424", U_EBCDIC424_CE)});
  all.push_back({page("warabic", U_WARABIC_CE), wlatin1});
  // Pairs that need no conversion; to UTF-8 the resumable run checks.
  all.push_back({wlatin1, page("latin1", U_LATIN1_CE)});
  all.push_back({page("usAscii", U_ASCII_CE), unicodeForms[0]});
  all.push_back({page("any", U_ANY_CE), unicodeForms[2]});
  all.push_back({page("any", U_ANY_CE), unicodeForms[4]});
  addMultiByte(all);
  addWithUserTables(all);
  return all;
}

}  // namespace

const UserCharacterTable* noUserTables() { return nullptr; }

std::string Route::name() const {
  return std::string(source.name) + "_to_" + target.name + (hasUserTables() ? "_withUserTables" : "");
}

TranscodingPipeline* Route::pipeline() const {
  transcode_test::host();  // ahead of its pipelines, so that it outlives them
  static std::map<std::tuple<CEI, CEI, UserTables>, std::unique_ptr<Pipeline>> made;
  std::unique_ptr<Pipeline>& pipeline = made[{source.cei, target.cei, userTables}];
  if (pipeline == nullptr) {
    const ListInUse list(userTables());
    pipeline = std::make_unique<Pipeline>(source.cei, target.cei);
    if (hasUserTables() && (*pipeline)->flags == 0) throw std::logic_error(name() + " has no user characters");
  }
  return *pipeline;
}

const std::vector<Route>& routes() {
  static const std::vector<Route> all = makeRoutes();
  return all;
}

void PrintTo(const Route& route, std::ostream* stream) { *stream << route.name(); }

bool isUnicode(const Encoding& encoding) {
  return std::ranges::any_of(unicodeForms, [&](const Encoding& form) { return form.cei == encoding.cei; });
}

bool isMultiByte(const Encoding& encoding) {
  return transcode_test::isMultiByteClass(transcode_test::encodingText(encoding.cei).encodingClass);
}

bool isMultiByte(const Route& route) { return isMultiByte(route.source) || isMultiByte(route.target); }

Bytes shiftInOf(const Encoding& encoding) {
  return isMultiByte(encoding) ? transcode_test::encodingText(encoding.cei).shiftIn : Bytes();
}

bool isUtf16(const Encoding& encoding) {
  return encoding.kind == TextKind::utf16le || encoding.kind == TextKind::utf16be;
}

}  // namespace bounds_test

#include "bounds/routes.h"

#include <map>
#include <memory>
#include <ostream>

namespace bounds_test {

namespace {

using transcode_test::Pipeline;

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
  return all;
}

}  // namespace

std::string Route::name() const { return std::string(source.name) + "_to_" + target.name; }

TranscodingPipeline* Route::pipeline() const {
  transcode_test::host();  // ahead of its pipelines, so that it outlives them
  static std::map<std::pair<CEI, CEI>, std::unique_ptr<Pipeline>> made;
  std::unique_ptr<Pipeline>& pipeline = made[{source.cei, target.cei}];
  if (pipeline == nullptr) pipeline = std::make_unique<Pipeline>(source.cei, target.cei);
  return *pipeline;
}

const std::vector<Route>& routes() {
  static const std::vector<Route> all = makeRoutes();
  return all;
}

void PrintTo(const Route& route, std::ostream* stream) { *stream << route.name(); }

bool isUnicode(const Encoding& encoding) { return encoding.kind != TextKind::bytes; }

bool isUtf16(const Encoding& encoding) {
  return encoding.kind == TextKind::utf16le || encoding.kind == TextKind::utf16be;
}

}  // namespace bounds_test

// A counted text on its way through a parser.
#pragma once

#include "locale/numbers/decimal_text.h"

namespace veldnls {

inline bool isBlankOrTab(char16_t unit) { return unit == u' ' || unit == u'\t'; }

struct TextReader {
  const char16_t* at;
  const char16_t* end;

  bool ended() const { return at == end; }
  bool is(char16_t unit) const { return at != end && *at == unit; }
  bool isDigit() const { return at != end && isDigitUnit(*at); }
  void skipBlanks() {
    while (is(u' ')) ++at;
  }
  void skipBlanksAndTabs() {
    while (at != end && isBlankOrTab(*at)) ++at;
  }
};

}  // namespace veldnls

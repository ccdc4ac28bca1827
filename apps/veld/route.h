// The way that a text takes from one encoding to another.
#pragma once

#include <vector>

#include "veldnls/nls.h"

namespace veld {

// The encoding that encoding 0 and the double-byte types stand for in this session; others stand for themselves.
// Without a session encoding 0 is the host's. Throws Failure for a type that has no meaning without a language, where
// the library would take the host's encoding too.
CEI resolveEncoding(QZNLS& nls, CEI cei);

// True for the encodings that are treated as equal to a whole family: their text is taken as it is.
bool isWildCard(CEI cei);

// The encodings through which text passes, ends included: two, or three where the direct pipeline would lose or
// withhold what the way through UTF-16 brings over.
//   utf-16be to others    the direct stages read the second unit of a surrogate pair in the wrong byte order
//   plain and open EBCDIC the direct pipeline copies, though the pages differ in the places of U+000A and U+0085
//   to utf-16le as is     the direct check takes units such as U+00D8 at a block's end for half a character
// Both arguments are resolved.
std::vector<CEI> planRoute(QZNLS& nls, CEI from, CEI to);

}  // namespace veld

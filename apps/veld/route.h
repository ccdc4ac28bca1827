// The way that a text takes from one encoding to another.
#pragma once

#include <string>
#include <vector>

#include "veldnls/nls.h"

namespace veld {

// The encoding that encoding 0 and the double-byte types stand for in this session; others stand for themselves.
// Without a session encoding 0 is the host's. Throws Failure for a type that has no meaning without a language, where
// the library would take the host's encoding too.
CEI resolveEncoding(QZNLS& nls, CEI cei);

// True for the encodings that are treated as equal to a whole family: their text is taken as it is.
bool isWildCard(CEI cei);

// True where a wild card takes the text as it is.
bool passesAsItIs(QZNLS& nls, CEI from, CEI to);

bool isMultiByte(QZNLS& nls, CEI cei);

// Throws Failure, with a sentence on what is missing, unless text can pass from one encoding to the other.
void requireTables(QZNLS& nls, CEI from, CEI to);

// What to know ahead of a conversion that the library's tables restrict; empty if there is nothing.
std::vector<std::string> warningsFor(QZNLS& nls, CEI from, CEI to);

// The encodings through which text passes, ends included: two, or three where the direct pipeline would lose or
// withhold what the way through UTF-16 brings over.
//   single to multi-byte  the direct pipeline keeps the invariant characters and the euro, and so it does back
//   utf-16be to others    the direct stages read the second unit of a surrogate pair in the wrong byte order
//   plain and open EBCDIC the direct pipeline copies, though the pages differ in the places of U+000A and U+0085
//   aeasteuro to pages    the direct pipeline needs a table to write the source with, which it hasn't
//   to utf-16le as is     the direct check takes units such as U+00D8 at a block's end for half a character
// A wild card as source stands at both ends, since the pipeline of the pair may read the text as one of the target.
// Both arguments are resolved.
std::vector<CEI> planRoute(QZNLS& nls, CEI from, CEI to);

}  // namespace veld

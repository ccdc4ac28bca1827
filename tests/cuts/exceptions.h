// Where a text in pieces doesn't come out as the whole, and why. Everything else must.
#pragma once

#include "bounds/routes.h"

namespace cuts_test {

enum class Way { cuts, littleRoom };

struct Exception {
  const char* reason;
  Way way;
  bool (*concerns)(const bounds_test::Route& route, bounds_test::Span text);
};

// The exception for a text on a route, or null.
const Exception* exceptionFor(Way way, const bounds_test::Route& route, bounds_test::Span text);

// The reasons that no text has needed so far.
std::vector<std::string> unusedExceptions();

}  // namespace cuts_test

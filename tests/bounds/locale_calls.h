// The slots of locales as rows of the table of calls.
#pragma once

#include "bounds/calls.h"

namespace bounds_test {

void addLocaleCalls(std::vector<CallRow>& rows);

}  // namespace bounds_test

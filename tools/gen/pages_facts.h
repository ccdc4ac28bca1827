// What is known about the single-byte tables. Each check stops the build with a sentence.
#pragma once

#include <vector>

#include "pages_row.h"

namespace gen::pages {

// What holds for the page of any row: units, directions, family, and the two figures of the row.
void checkRow(const Row& row, const Page& page);

// What holds for single pages.
void checkNamedPages(Folder& folder);

// What holds for the rows together: how many, which are vacant, which share a page.
void checkRows(const std::vector<Row>& rows, const Place& file);

}  // namespace gen::pages

// The groups, each folder of work in a unit of its name. The first candidate of a group is always the library.
#pragma once

#include <string>

#include "bench/library.h"
#include "bench/runner.h"

namespace bench {

// All conversions: between pages and Unicode forms, among those, from page to page, the same two with multi-byte
// encodings, and with utf-e. Ahead of timing, every candidate's output is compared with the library's; throws if one
// differs.
void runConversions(Runner& runner, const Library& library, const std::string& textFolder);

// The test whether encoded text is well-formed.
void runValidation(Runner& runner, const Library& library, const std::string& textFolder);

// Text with faults at random places, which library and ICU replace, each in its own way: outputs aren't compared.
void runDamage(Runner& runner, const Library& library, const std::string& textFolder);

// The library on long texts beside itself on twice as many of half the length.
void runDoubling(Runner& runner, const Library& library, const std::string& textFolder);

// Finding an encoding by its name.
void runNames(Runner& runner, const Library& library);

// Formatting and parsing numbers. Ahead of timing, every text and value is compared with the peer's; throws if one
// differs.
void runNumbers(Runner& runner, const Library& library);

// Taking and giving back blocks of a memory pool, with few and with many live ones.
void runPools(Runner& runner, const Library& library);

// Making and ending the library's object.
void runConstruction(Runner& runner, Library& library);

}  // namespace bench

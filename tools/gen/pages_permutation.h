// The byte permutation of UTF-EBCDIC.
#pragma once

#include <string>

namespace gen::pages {

// Reads data/utf_ebcdic under `data`, checks it, and writes pages/i8_to_ebcdic.inc and pages/ebcdic_to_i8.inc under
// `out`: the initialisers of two tables of 256 bytes.
void makePermutation(const std::string& data, const std::string& out);

}  // namespace gen::pages

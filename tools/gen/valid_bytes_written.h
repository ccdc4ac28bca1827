// Bytes that conversion writes for characters of one byte in host encodings with shifts. Some of them have no meaning
// in the single-byte half of the code page, which is another page than the one that conversion goes by.
#pragma once

#include <cstddef>
#include <map>
#include <string>

#include "sets_singles.h"

namespace gen {

using BytesOfRow = std::array<bool, sets::byteCount>;

// By CEI, the bytes of the row's single-byte set and the codes of one byte of its double-byte set, for the rows of
// `data`/encodings/rows.tsv with shifts and the invariant characters of EBCDIC.
std::map<size_t, BytesOfRow> readWrittenBytes(const std::string& data);

}  // namespace gen

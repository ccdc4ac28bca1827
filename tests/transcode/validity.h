// When a text is well-formed, once more: short, slow, with nothing shared with the library but the encoding table.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <span>

#include "veldnls/encoding.h"

namespace transcode_test {

// The bytes that stand for themselves in a row: those with a meaning in its page, or those of its named set and what
// conversion to a host row with shifts writes, from the text under data/. Nothing for a row without a map.
std::optional<std::set<int>> definedBytes(CEI cei);

constexpr int64_t wellFormed = -1;

// The offset of the first fault in a text of an encoding that can be validated, or wellFormed.
int64_t firstFault(const EncodingDescriptor& row, std::span<const uint8_t> text);

}  // namespace transcode_test

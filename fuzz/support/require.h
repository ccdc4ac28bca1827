// How a target says that a property doesn't hold.
#pragma once

#include <cstdint>
#include <span>

namespace fuzz {

// Ends the process with a line that names what was broken, so that the fuzzer keeps the input.
void require(bool holds, const char* what);

// The same with two byte strings, which are shown.
void requireEqual(std::span<const uint8_t> actual, std::span<const uint8_t> expected, const char* what);

}  // namespace fuzz

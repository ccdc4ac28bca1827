// Arrays of numbers as text of a generated file.
#pragma once

#include <functional>
#include <string>

#include "sets_index.h"
#include "text.h"

namespace gen::sets {

void writeArray(Output& output, const std::string& type, const std::string& name, size_t count,
                const std::function<std::string(size_t)>& element);

template <class Numbers>
void writeNumbers(Output& output, const std::string& type, const std::string& name, const Numbers& numbers) {
  writeArray(output, type, name, numbers.size(), [&](size_t i) { return std::to_string(numbers[i]); });
}

// Arrays rows_... and units_... of this name.
void writeRows(Output& output, const std::string& name, const Rows& rows);

// Arrays blocks_... and groups_...
void writeRanks(Output& output, const std::string& name, const Ranks& ranks);

// A code as the two bytes lie in memory, the first at the lower address.
uint16_t inMemory(uint16_t code);

// The tables of one double-byte set: pairs to_... and from_..., their look-ups, and values_... in the order of units.
// Returns the bytes of the look-ups; fails when one takes more room than its pairs.
size_t writeTable(Output& output, const Table& table);

// The look-ups of a set without mappings, under the name "none".
void writeNoTable(Output& output);

}  // namespace gen::sets

// Reads the text files of data/ and of tests, for comparison with what is built of them: nothing here is shared with
// the table generators.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace test {

// The fields of a line, split at tabs. Empty fields count, at the end of a line too.
using Fields = std::vector<std::string>;

// The lines of a file, by its path under data/ or as an absolute path. Empty lines and those that begin with "#" are
// left out. Throws when the file can't be read, so that nothing is compared with no lines.
std::vector<Fields> readTsv(const std::string& path);

// The same lines by the names of their fields, which the first line gives behind "# ". Throws when a line has another
// number of fields.
std::vector<std::map<std::string, std::string>> readNamedTsv(const std::string& path);

// Decimal numbers separated by blanks.
std::vector<int> numbers(const std::string& text);

}  // namespace test

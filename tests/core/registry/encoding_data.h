// The facts of data/encodings as these tests read them, apart from the table generator.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "support/tsv.h"

namespace test {

struct EncodingFacts {
  // By column name, as written.
  std::vector<std::map<std::string, std::string>> rows;
  // Fields of the line of profiles.tsv, by CEI; aliases have none.
  std::map<int, Fields> profiles;
  // The keys of the name index, in upper case, with their values.
  std::map<std::string, int> keys;

  const std::string& text(int cei, const std::string& column) const { return rows.at(size_t(cei)).at(column); }
  int number(int cei, const std::string& column) const;
};

const EncodingFacts& encodingFacts();

std::string upperAscii(std::string text);

// The text columns and their kinds of lookupEncoding; 5 is a kind without a look-up.
const std::vector<std::pair<std::string, int>>& nameColumns();

}  // namespace test

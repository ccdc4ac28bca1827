// The lower case of texts, by the pairs that the library folds with.
#include "locale_data.h"

namespace gen {

LowerCase::LowerCase(const std::string& data) {
  for (const Line& line : readLines(data + "/unicode/case_pairs.tsv")) {
    requireFields(line, 3);
    if (line.field(1) == "<") continue;  // a pair to upper case only
    lower_[static_cast<char16_t>(parseHex(line, line.field(0), 0xFFFF))] =
        static_cast<char16_t>(parseHex(line, line.field(2), 0xFFFF));
  }
}

Text LowerCase::operator()(Text text) const {
  for (char16_t& unit : text) {
    const auto pair = lower_.find(unit);
    if (pair != lower_.end()) unit = pair->second;
  }
  return text;
}

}  // namespace gen

// What is known about the tables of the multi-byte encodings. Each check stops the build with a sentence.
#pragma once

#include <string>
#include <vector>

#include "sets_singles.h"
#include "sets_table.h"

namespace gen::sets {

// A line of data/encodings/profiles.tsv, as far as the sets go.
struct Profile {
  struct Range {
    uint32_t low;
    uint32_t high;
  };
  Place place;
  std::vector<size_t> ceis;
  bool shifted;
  size_t doubleByteSet;
  std::vector<Range> lead;
  std::vector<Range> trail;
};
std::vector<Profile> readProfiles(const std::string& path);

// Which sets there are, which are empty, which share a table, and their sizes.
void checkSets(const Place& file, const std::vector<Set>& sets, Tables& tables);

// What holds for any table: units, codes that are written and can't be read, the ideographic space.
void checkTable(const Table& table);

// Every code of a set lies within the ranges of the rows that use it.
void checkRanges(const Profile& profile, const std::vector<Set>& sets, Tables& tables);

// The pages, and that they write what they read.
void checkSingles(const Place& file, const std::vector<Single>& singles);

// Each half-width character has the codes of one full-width character, and the bytes of its own.
void checkKatakana(const Place& file, const std::vector<Single>& singles, const std::vector<Set>& sets, Tables& tables);

// Names and classes are those of `rows`, the lines of data/encodings/rows.tsv; a code is the one to which the
// encoding's set takes the euro sign.
void checkEuroBytes(const Place& file, const std::vector<Euro>& euros, const std::vector<Line>& rows);
void checkEuroCodes(const Place& file, const std::vector<Euro>& euros, const std::vector<Line>& rows,
                    const std::vector<Profile>& profiles, const std::vector<Set>& sets, Tables& tables);

}  // namespace gen::sets

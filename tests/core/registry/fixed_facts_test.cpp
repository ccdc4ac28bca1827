// Facts that no rule can tell: a change of one that keeps to every other rule stops the table generator all the same.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/generator.h"

namespace {

struct Edit {
  const char* file;
  const char* from;
  const char* to;
};

struct Slip {
  std::vector<Edit> edits;  // the fact is in the file of the last one
  std::string what;
  std::string selection = "cat";  // the command that selects the facts among the file's lines
};

constexpr char rows[] = "rows.tsv";

Slip columnSlip(const Edit& edit) {
  return {{edit}, "class, flags, padChar, substitution and name of all rows", "cut -f 1-5,8"};
}

Slip rowSlip(const Edit& edit) {
  return {{edit}, "the rows that are fixed in full", "grep -P '^(0|19|20|25|27|28|62|110|129|136|161|203|204|205)\\t'"};
}

const Slip slips[] = {
    columnSlip({rows, "\tlatin9\tEuropean", "\tlatin99\tEuropean"}),
    columnSlip({rows, "\n114\t0\t0x1\t0x20\t0x1A", "\n114\t0\t0x8\t0x40\t0x3F"}),
    {{{rows, "\t61\t0\tx-MacUkraine", "\t60\t0\tx-MacUkraine"}}, "the bases of all rows", "cut -f 1,16"},
    rowSlip({rows, "\tWestern (OpenEdition)\tU_OPEN_ED1047_CE", "\tWestern (OpenEd)\tU_OPEN_ED1047_CE"}),
    rowSlip({rows, "\tSimplified Chinese (GB18030)", "\tChinese (GB18030)"}),
    {{{"length-exceptions.tsv", "52\tcodePage\t3", "52\tcodePage\t4"}}, "the lengths"},
    {{{"profiles.tsv", "206\t1\t1\t4", "206\t1\t1\t2"}}, "the profiles"},
    {{{"profiles.tsv", "129\t1\t1\t2\t0E\t0F", "129\t1\t1\t2\t0F\t0E"}}, "the profiles"},
    // Row 18 is the alias that is like row 158.
    {{{rows, "\n158\t4\t0x1\t0x20\t0x1A\t4", "\n158\t4\t0x1\t0x20\t0x1A\t6"},
      {rows, "\n18\t4\t0x1\t0x20\t0x1A\t4", "\n18\t4\t0x1\t0x20\t0x1A\t6"},
      {"narrow-rows.tsv", "158\t4", "158\t6"}},
     "the sizes"},
    {{{"dbcs-types.tsv", "168\t169\t172", "168\t172\t169"}}, "the types"},
    {{{"dbcs-languages.tsv", "KANJI", "KANJIS"}}, "the languages"},
    {{{"families.tsv", "119 159\t4\t10", "119 159\t4\t9"}}, "the families"},
    {{{"ebcdic-groups.tsv", "\n211\t17", "\n211\t16"}}, "the groups"},
    {{{"mib-enums.tsv", "\n17\t136", "\n17\t138"}}, "the pairs"},
    {{{"lookup-literals.tsv", "1\tUCS4\t27", "1\tUCS4\t26"}}, "the literal keys"},
    {{{"keys-extra.tsv", "2\tFACOM\n3\tHITAC", "3\tFACOM\n2\tHITAC"}}, "the keys"},
    {{{"keys-shared.tsv", "25\t1200\n", "24\t1200\n"}}, "the keys"},
    {{{"keys-groups.tsv", "231\tSYSTEM\n232\tEBCDIC", "232\tSYSTEM\n231\tEBCDIC"}}, "the keys"},
    {{{"keys-left-out.txt", "65001\n", "10017\n"}}, "the texts"},
};

// What `cksum` prints first.
std::string checksumInAShell(const std::string& file, const std::string& selection) {
  const std::string command = "grep -v '^#' '" + file + "' | " + selection + " | cksum";
  const std::string output = test::runProgram({"/bin/sh", "-c", command}).output;
  return output.substr(0, output.find(' '));
}

class FixedFacts : public testing::TestWithParam<Slip> {};

TEST_P(FixedFacts, AChangeIsSeenAndItsChecksumTold) {
  const Slip& slip = GetParam();
  const test::GeneratorCopy generator(GEN_ENCODINGS, "encodings", {"veldnls", "encodings"});
  const std::string file = generator.data(slip.edits.back().file);
  const std::string before = checksumInAShell(file, slip.selection);
  for (const Edit& edit : slip.edits) generator.replace(edit.file, edit.from, edit.to);
  const std::string after = checksumInAShell(file, slip.selection);
  const test::Ending ending = generator.run();
  EXPECT_EQ(ending.exitCode, 1);
  EXPECT_TRUE(ending.errors.starts_with(file + ": " + slip.what + " are fixed and have changed: checksum " + after +
                                        ", not " + before + "; undo the change, or, when it corrects a fact"))
      << ending.errors;
}

INSTANTIATE_TEST_SUITE_P(All, FixedFacts, testing::ValuesIn(slips));

}  // namespace

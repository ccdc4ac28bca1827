// The generator on copies of the data: what it refuses, and with which sentence.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/generator.h"

namespace {

class UnicodeGenerator : public testing::Test {
 protected:
  void edit(const std::string& name, const std::string& from, const std::string& to) const {
    generator_.replace(name, from, to);
  }

  void expectRefusal(const std::string& message) const { generator_.expectStop({message}); }

  test::GeneratorCopy generator_{GENERATOR, "unicode", {"unicode"}, test::GeneratorCopy::Writes::fileByFile};
};

constexpr char records[] = "character_records.tsv";
constexpr char pairs[] = "case_pairs.tsv";
constexpr char ranges[] = "class_ranges.tsv";

TEST_F(UnicodeGenerator, TheSameDataGivesTheSameBytes) {
  generator_.expectSameBytesTwice(
      {"unicode/character_records.inc", "unicode/case_tables.inc", "unicode/class_tables.inc"});
}

TEST_F(UnicodeGenerator, NamesTheMissingFile) {
  std::filesystem::remove(generator_.data(ranges));
  expectRefusal(ranges);
}

TEST_F(UnicodeGenerator, RefusesAMissingRecord) {
  edit(records, "\n0041\tLu\tL\t0\t-\t0061\t-\t-", "");
  expectRefusal("has 17699 records; it must have 17700");
}

TEST_F(UnicodeGenerator, RefusesAnotherLastRecord) {
  edit(records, "E0100..E01EF\t", "E00FF..E01EE\t");
  expectRefusal("the last record must be 0xE01EF");
}

TEST_F(UnicodeGenerator, RefusesAGapInTheFirstRun) {
  edit(records, "\n0041\tLu\tL\t0\t-\t0061\t-\t-", "");
  edit(records, "\nE0100..", "\nE00FF..");
  expectRefusal("the first 880 records run from U+0000 on without a gap");
}

TEST_F(UnicodeGenerator, RefusesAnotherCountAboveTheUnits) {
  edit(records, "\nE0001\tCf\tBN\t0\t-\t-\t-\t-", "");
  edit(records, "\n037A\t", "\n0379\tLo\tL\t0\t-\t-\t-\t-\n037A\t");
  expectRefusal("has 4297 records above U+FFFF; it must have 4298");
}

TEST_F(UnicodeGenerator, RefusesAnotherCountOfRuns) {
  edit(records, "\nE0001\t", "\nE001F\t");
  expectRefusal("has 425 runs of records; it must have 426");
}

TEST_F(UnicodeGenerator, RefusesCodesOutOfOrder) {
  edit(records, "\n0041\t", "\n0040\t");
  expectRefusal("codes must rise");
}

TEST_F(UnicodeGenerator, RefusesAnUnknownCategory) {
  edit(records, "\tLu\t", "\tLx\t");
  expectRefusal("unknown name: Lx");
}

TEST_F(UnicodeGenerator, RefusesAnUnknownBidirectionalClass) {
  edit(records, "\tNSM\t", "\tNSN\t");
  expectRefusal("unknown name: NSN");
}

TEST_F(UnicodeGenerator, RefusesAMappingOfARange) {
  edit(records, "0000..0008\tCc\tBN\t0\t-", "0000..0008\tCc\tBN\t0\t0041");
  expectRefusal("a range can't have a mapping");
}

TEST_F(UnicodeGenerator, RefusesAFallingRange) {
  edit(records, "0000..0008", "0008..0000");
  expectRefusal("a range must rise");
}

TEST_F(UnicodeGenerator, RefusesAMissingField) {
  edit(records, "0000..0008\tCc", "0000..0008");
  expectRefusal(":2: has 7 fields; it must have 8");
}

TEST_F(UnicodeGenerator, RefusesAMissingPair) {
  edit(pairs, "\n0041\t<>\t0061", "");
  expectRefusal("has 705 mappings to lower; it must have 706");
}

TEST_F(UnicodeGenerator, RefusesAPairThatLostADirection) {
  edit(pairs, "0041\t<>\t0061", "0041\t>\t0061");
  expectRefusal("has 670 mappings to upper; it must have 671");
}

TEST_F(UnicodeGenerator, RefusesAnUnknownDirection) {
  edit(pairs, "0041\t<>\t0061", "0041\t=\t0061");
  expectRefusal("the direction must be");
}

TEST_F(UnicodeGenerator, RefusesASecondMapping) {
  edit(pairs, "0042\t<>\t0062", "0041\t<>\t0062");
  expectRefusal("a second mapping of 0x0041");
}

TEST_F(UnicodeGenerator, RefusesALetterPairedWithItself) {
  edit(pairs, "0041\t<>\t0061", "0041\t<>\t0041");
  expectRefusal("not a pair of two letters");
}

TEST_F(UnicodeGenerator, RefusesAnotherCountOfExceptions) {
  edit(pairs, "\n0041\t<>\t0061", "\n0041\t<>\t0271");
  expectRefusal("has 20 mappings to lower over a distance above 127; it must have 19");
}

TEST_F(UnicodeGenerator, RefusesAnotherCountOfBlocks) {
  edit(pairs, "\n0041\t<>\t0061", "\nD041\t<>\tD061");
  expectRefusal("has 20 blocks with cased letters; it must have 19");
}

TEST_F(UnicodeGenerator, RefusesAPairAboveTheUnits) {
  edit(pairs, "0041\t<>\t0061", "10400\t<>\t10428");
  expectRefusal("number above 0xFFFF");
}

TEST_F(UnicodeGenerator, RefusesAMissingClassRow) {
  edit(ranges, "space\t0085\n", "");
  expectRefusal("has 9 rows of class space; it must have 10");
}

TEST_F(UnicodeGenerator, RefusesAnUnknownClass) {
  edit(ranges, "space\t0085", "spaces\t0085");
  expectRefusal("unknown class: spaces");
}

TEST_F(UnicodeGenerator, RefusesRowsOutOfOrder) {
  edit(ranges, "space\t0085", "space\t0020");
  expectRefusal("the ranges of a class must rise");
}

}  // namespace

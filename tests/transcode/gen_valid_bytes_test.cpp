// The generator of the maps of valid bytes stops at each kind of breach, with the file, the line and the cure.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/generator.h"

namespace {

class GenValidBytes : public testing::Test {
 protected:
  void breach(const std::string& name, const std::string& from, const std::string& to, const std::string& sentence,
              const std::string& at = "") const {
    generator_.expectBreach(name, from, to, sentence, at);
  }

  test::GeneratorCopy generator_{GEN_VALID_BYTES, "validation", {"valid_bytes"}};
};

TEST_F(GenValidBytes, TheTextAsItStandsGivesTheSameBytesTwice) {
  generator_.expectSameBytesTwice({"valid_bytes/maps.inc", "valid_bytes/by_cei.inc"});
}

TEST_F(GenValidBytes, MissingFile) {
  std::filesystem::remove(generator_.data("sets.tsv"));
  generator_.expectStopAt("sets.tsv", "can't be opened");
}

TEST_F(GenValidBytes, ByteGoneFromASet) {
  breach("sets.tsv", "00-40 42-69", "00-40 43-69", "the set has 227 bytes, not 228");
}

TEST_F(GenValidBytes, ByteInTwoRanges) { breach("sets.tsv", "00-40 42-69", "00-42 42-69", "stands in two ranges"); }

TEST_F(GenValidBytes, RangeThatRunsBackward) { breach("sets.tsv", "42-69", "69-42", "runs backward"); }

TEST_F(GenValidBytes, RangeOfThreeBytes) { breach("sets.tsv", "42-69", "42-50-69", "a range is a byte, or two"); }

TEST_F(GenValidBytes, NoByte) { breach("sets.tsv", "42-69", "42-6G", "not a hexadecimal number"); }

TEST_F(GenValidBytes, SetNamedTwice) { breach("sets.tsv", "ibm-836\t", "ibm-833\t", "stands here twice"); }

TEST_F(GenValidBytes, SetThatNoRowUses) {
  generator_.append("sets.tsv", "ibm-1\t1\t00\n");
  generator_.expectStopAt("sets.tsv", "no row uses the set ibm-1");
}

TEST_F(GenValidBytes, UnknownSet) { breach("rows.tsv", "jis-7\tascii", "jis-7\tasci", "there is no set asci"); }

TEST_F(GenValidBytes, WrongName) {
  breach("rows.tsv", "138\tshift-jis", "138\tshift-jos", "encoding 138 is named shift-jis, not shift-jos");
}

TEST_F(GenValidBytes, RowsOutOfOrder) {
  breach("rows.tsv", "205\tgb18030\tascii\n206\tibm-939e\tibm-1027\n", "206\tibm-939e\tibm-1027\n205\tgb18030\tascii\n",
         "CEIs must rise");
}

TEST_F(GenValidBytes, RowGone) {
  breach("rows.tsv", "205\tgb18030\tascii\n", "", "encoding 205 needs a set here or a line in without.tsv");
}

TEST_F(GenValidBytes, RowInBothFiles) {
  breach("without.tsv", "115\tquolatin1\n", "115\tquolatin1\n117\tibm-937\n", "the row has a set in rows.tsv");
}

TEST_F(GenValidBytes, RowOfAUnicodeForm) {
  breach("without.tsv", "162\tucsu", "161\tutf-e\n162\tucsu", "rows of a Unicode form need no line here");
}

TEST_F(GenValidBytes, RowWithShiftsWithoutAMap) {
  generator_.replace("rows.tsv", "117\tibm-937\tibm-28709\n", "");
  breach("without.tsv", "115\tquolatin1\n", "115\tquolatin1\n117\tibm-937\n", "rows with shifts are read by their map");
}

TEST_F(GenValidBytes, RowsWithoutAMapAreCounted) {
  breach("without.tsv", "31\tlatin3\n", "", "has 44 rows; it must have 45");
}

// A row that may be validated again takes the place of one that may not: the rows without a page show it.
TEST_F(GenValidBytes, RowWithoutAPage) {
  breach("without.tsv", "77\t-\n", "78\tebcdic037\n", "encoding 77 has no page", "rows.tsv");
}

TEST_F(GenValidBytes, MapsAreCounted) {
  generator_.replace("without.tsv", "115\tquolatin1\n", "");
  generator_.replace("without.tsv", "31\tlatin3\n", "30\tlatin2\n31\tlatin3\n");
  generator_.expectStop({"valid_bytes/maps.inc: has 78 pages and sets; it must have 79"});
}

TEST_F(GenValidBytes, ContentsAreCounted) {
  generator_.replace("without.tsv", "31\tlatin3\n", "30\tlatin2\n");
  generator_.expectStop({"valid_bytes/maps.inc: has 37 maps of different content; it must have 36"});
}

}  // namespace

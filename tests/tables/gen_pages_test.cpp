// A breach in the text stops the generator with a sentence that names file and cure.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/generator.h"

namespace {

class GenPages : public testing::Test {
 protected:
  void edit(const std::string& file, const std::string& old, const std::string& with) const {
    generator_.replace(file, old, with);
  }

  void expectStop(const std::string& sentence) const { generator_.expectStop({sentence}); }

  test::GeneratorCopy generator_{VELDNLS_GEN_PAGES, "", {"pages"}, test::GeneratorCopy::Writes::fileByFile};
};

constexpr char rowsFile[] = "modules/qznlssb/rows.tsv";

TEST_F(GenPages, TakesTheTextAsItStandsAndWritesTheSameBytesTwice) {
  generator_.expectSameBytesTwice({"pages/tables.inc", "pages/from_by_cei.inc"});
}

TEST_F(GenPages, StopsAtAMissingRow) {
  edit(rowsFile, "30\tlatin2\tlatin2\tplain\tascii\t0\t3\n", "");
  expectStop("there must be 149 rows");
}

TEST_F(GenPages, StopsAtTablesForAVacantRow) {
  edit(rowsFile, "77\t-\t-\tnone\t-\t-\t-\n", "77\t-\tlatin2\tplain\tascii\t0\t3\n");
  edit(rowsFile, "33\tcyrillic\tcyrillic\tplain\tascii\t0\t3\n", "33\tcyrillic\t-\tnone\t-\t-\t-\n");
  expectStop("this CEI has a to-table");
}

TEST_F(GenPages, StopsAtAWrongFigure) {
  edit(rowsFile, "32\tlatin4\tlatin4\tplain\tascii\t0\t3\n", "32\tlatin4\tlatin4\tplain\tascii\t0\t4\n");
  expectStop("the from-table has 3 pages, not 4");
}

TEST_F(GenPages, StopsAtAWrongCountOfUndefinedBytes) {
  edit("modules/qznlssb/pages/latin3.tsv", "A1\t0126", "A1\t-");
  expectStop("8 bytes of the page are undefined, not 7");
}

TEST_F(GenPages, StopsAtARowWithoutAPage) {
  std::filesystem::remove(generator_.data("modules/qznlssb/pages/latin6.tsv"));
  expectStop("there is no page latin6");
}

TEST_F(GenPages, StopsAtAPageThatNoRowUses) {
  generator_.write("modules/qznlssb/pages/stray.tsv", "00\t0000\n");
  expectStop("no row uses this page");
}

TEST_F(GenPages, StopsAtARingOfBases) {
  edit("modules/qznlssb/pages/us-ascii.tsv", "00\t0000", "base\tlatin2\n00\t0000");
  expectStop("break the ring");
}

TEST_F(GenPages, StopsAtTwoBytesOfOneUnit) {
  edit("modules/qznlssb/pages/latin2.tsv", "A1\t0104", "A1\t0041");
  expectStop("shares its unit with another; mark one of them \"to\"");
}

TEST_F(GenPages, StopsAtAByteInTwoLines) {
  edit("modules/qznlssb/pages/latin2.tsv", "A1\t0104", "A1\t0104\nA1\t0104");
  expectStop("a second line for this byte");
}

TEST_F(GenPages, StopsAtAnUnknownDirection) {
  edit("modules/qznlssb/pages/latin2.tsv", "A1\t0104", "A1\t0104\tboth");
  expectStop("the direction is");
}

TEST_F(GenPages, StopsAtAMovedAsciiCharacter) {
  edit("modules/qznlssb/pages/latin2.tsv", "base\tus-ascii\n", "base\tus-ascii\n7E\t203E\n");
  expectStop("byte 0x7E must be 0x007E, not 0x203E");
}

TEST_F(GenPages, StopsAtAMovedEbcdicLineEnd) {
  edit("modules/qznlssb/pages/ebcdic424.tsv", "25\t000A", "25\t0085");
  edit("modules/qznlssb/pages/ebcdic424.tsv", "15\t0085", "15\t000A");
  expectStop("byte 0x15 must be 0x0085, not 0x000A");
}

TEST_F(GenPages, StopsAtAPrivateCharacterOutsideItsRange) {
  edit("modules/qznlssb/pages/aroman.tsv", "F0\tF8FF", "F0\tE01E");
  expectStop("a private character below 0xF850");
}

TEST_F(GenPages, StopsWhenTheExtraEncodingsAreLost) {
  edit("modules/qznlssb/pages/wvietnamese.tsv", "EC\t0341\tfrom\n", "");
  expectStop("1 lines are marked \"from\"");
}

TEST_F(GenPages, StopsWhenToneMarksEncodeToTheirTwins) {
  edit("modules/qznlssb/pages/ebcdic838.tsv", "51\t0E48\tto", "51\t0E48");
  edit("modules/qznlssb/pages/ebcdic838.tsv", "ED\t0E48", "ED\t0E48\tto");
  expectStop("unit 0x0E48 must go to byte 0xED");
}

TEST_F(GenPages, StopsAtAPlainOpenRow) {
  edit(rowsFile, "182\topen_ed-500\tebcdic500\topen", "182\topen_ed-500\tebcdic500\tplain");
  expectStop("this row must use page ebcdic500 in its open form");
}

TEST_F(GenPages, StopsWhenSharedTablesPart) {
  edit(rowsFile, "29\tlatin1\twlatin1\tplain\tascii\t5\t5", "29\tlatin1\tlatin9\tplain\tascii\t0\t3");
  expectStop("this row must share page wlatin1");
}

TEST_F(GenPages, StopsAtABrokenPermutation) {
  edit("utf_ebcdic/permutation.tsv", "41\tC1", "41\tC2");
  expectStop("a permutation has it once");
}

TEST_F(GenPages, StopsAtAnIncompletePermutation) {
  edit("utf_ebcdic/permutation.tsv", "FF\t", "# FF\t");
  expectStop("a permutation of bytes has 256 lines");
}

}  // namespace

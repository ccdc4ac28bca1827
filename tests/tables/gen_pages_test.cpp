// A breach in the text stops the generator with a sentence that names file and cure.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "page_text.h"
#include "support/death.h"

namespace {

namespace fs = std::filesystem;

class GenPages : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::path(testing::TempDir()) / ("gen_pages_" + std::to_string(getpid()));
    fs::remove_all(folder_);
    fs::create_directories(folder_ / "out" / "pages");
    fs::create_directories(folder_ / "data" / "modules");
    fs::copy(test::pageDataPath(""), folder_ / "data" / "modules" / "qznlssb", fs::copy_options::recursive);
    fs::copy(VELDNLS_SOURCE_DIR "/data/utf_ebcdic", folder_ / "data" / "utf_ebcdic");
  }
  void TearDown() override { fs::remove_all(folder_); }

  // Replaces a text that stands once in a data file.
  void edit(const std::string& file, const std::string& old, const std::string& with) const {
    const fs::path path = folder_ / "data" / file;
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    std::string content = text.str();
    const size_t at = content.find(old);
    ASSERT_NE(at, std::string::npos) << file << ": " << old;
    content.replace(at, old.size(), with);
    std::ofstream(path) << content;
  }

  test::Ending run() const {
    const std::string data = folder_ / "data";
    const std::string out = folder_ / "out";
    return test::runInChild([&] {
      execl(VELDNLS_GEN_PAGES, VELDNLS_GEN_PAGES, "--data", data.c_str(), "--out", out.c_str(), nullptr);
      std::_Exit(127);
    });
  }

  void expectStop(const std::string& sentence) const {
    const test::Ending ending = run();
    EXPECT_EQ(ending.exitCode, 1);
    EXPECT_NE(ending.errors.find(sentence), std::string::npos) << ending.errors;
  }

  fs::path folder_;
};

constexpr char rowsFile[] = "modules/qznlssb/rows.tsv";

TEST_F(GenPages, TakesTheTextAsItStandsAndWritesTheSameBytesTwice) {
  EXPECT_EQ(run().exitCode, 0);
  const auto content = [&](const std::string& file) {
    std::ostringstream text;
    text << std::ifstream(folder_ / "out" / "pages" / file).rdbuf();
    return text.str();
  };
  const std::string tables = content("tables.inc");
  const std::string byCei = content("from_by_cei.inc");
  EXPECT_FALSE(tables.empty());
  EXPECT_EQ(run().exitCode, 0);
  EXPECT_EQ(content("tables.inc"), tables);
  EXPECT_EQ(content("from_by_cei.inc"), byCei);
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
  fs::remove(folder_ / "data/modules/qznlssb/pages/latin6.tsv");
  expectStop("there is no page latin6");
}

TEST_F(GenPages, StopsAtAPageThatNoRowUses) {
  std::ofstream(folder_ / "data/modules/qznlssb/pages/stray.tsv") << "00\t0000\n";
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

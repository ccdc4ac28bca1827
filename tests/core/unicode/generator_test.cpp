// The generator on copies of the data: what it refuses, and with which sentence.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "support/death.h"

namespace fs = std::filesystem;

namespace {

std::string readFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class UnicodeGenerator : public testing::Test {
 protected:
  UnicodeGenerator() {
    fs::create_directories(data() / "unicode");
    for (const auto& entry : fs::directory_iterator(VELDNLS_SOURCE_DIR "/data/unicode")) {
      fs::copy_file(entry.path(), data() / "unicode" / entry.path().filename());
    }
  }
  ~UnicodeGenerator() override { fs::remove_all(folder_); }

  fs::path data() const { return folder_ / "data"; }

  test::Ending generate(const std::string& outputFolder = "out") const {
    const fs::path out = folder_ / outputFolder;
    fs::create_directories(out / "unicode");
    return test::runInChild([&] {
      execl(GENERATOR, GENERATOR, "--data", data().c_str(), "--out", out.c_str(), static_cast<char*>(nullptr));
    });
  }

  std::string output(const std::string& outputFolder, const std::string& name) const {
    return readFile(folder_ / outputFolder / "unicode" / name);
  }

  // Replaces the first occurrence of a text in a copied data file.
  void edit(const std::string& name, const std::string& from, const std::string& to) const {
    std::string text = readFile(data() / "unicode" / name);
    const size_t at = text.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    text.replace(at, from.size(), to);
    std::ofstream(data() / "unicode" / name, std::ios::binary) << text;
  }

  void expectRefusal(const std::string& message) const {
    const test::Ending ending = generate();
    EXPECT_EQ(ending.exitCode, 1);
    EXPECT_NE(ending.errors.find(message), std::string::npos) << ending.errors;
  }

 private:
  fs::path folder_ = fs::temp_directory_path() / ("veldnls_unicode_" + std::to_string(getpid()));
};

constexpr char records[] = "character_records.tsv";
constexpr char pairs[] = "case_pairs.tsv";
constexpr char ranges[] = "class_ranges.tsv";

TEST_F(UnicodeGenerator, TheSameDataGivesTheSameBytes) {
  EXPECT_EQ(generate("first").exitCode, 0);
  EXPECT_EQ(generate("second").exitCode, 0);
  for (const char* name : {"character_records.inc", "case_tables.inc", "class_tables.inc"}) {
    EXPECT_FALSE(output("first", name).empty()) << name;
    EXPECT_EQ(output("first", name), output("second", name)) << name;
  }
}

TEST_F(UnicodeGenerator, NamesTheMissingFile) {
  fs::remove(data() / "unicode" / ranges);
  expectRefusal(ranges);
}

TEST_F(UnicodeGenerator, RefusesAMissingRecord) {
  edit(records, "\n0041\tLu\tL\t0\t-\t0061\t-\t-", "");
  expectRefusal("records: 17699, not 17700");
}

TEST_F(UnicodeGenerator, RefusesAnotherLastRecord) {
  edit(records, "E0100..E01EF\t", "E00FF..E01EE\t");
  expectRefusal("the last record must be 0xE01EF");
}

TEST_F(UnicodeGenerator, RefusesAGapInTheFirstRun) {
  edit(records, "\n0041\tLu\tL\t0\t-\t0061\t-\t-", "");
  edit(records, "\nE0100..", "\nE00FF..");
  expectRefusal("last record of the run from U+0000: 884, not 879");
}

TEST_F(UnicodeGenerator, RefusesAnotherCountAboveTheUnits) {
  edit(records, "\nE0001\tCf\tBN\t0\t-\t-\t-\t-", "");
  edit(records, "\n037A\t", "\n0379\tLo\tL\t0\t-\t-\t-\t-\n037A\t");
  expectRefusal("records above U+FFFF: 4297, not 4298");
}

TEST_F(UnicodeGenerator, RefusesAnotherCountOfRuns) {
  edit(records, "\nE0001\t", "\nE001F\t");
  expectRefusal("runs of records: 425, not 426");
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
  expectRefusal(":2: expected 8 fields");
}

TEST_F(UnicodeGenerator, RefusesAMissingPair) {
  edit(pairs, "\n0041\t<>\t0061", "");
  expectRefusal("mappings to lower: 705, not 706");
}

TEST_F(UnicodeGenerator, RefusesAPairThatLostADirection) {
  edit(pairs, "0041\t<>\t0061", "0041\t>\t0061");
  expectRefusal("mappings to upper: 670, not 671");
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
  expectRefusal("over a distance above 127: 20, not 19");
}

TEST_F(UnicodeGenerator, RefusesAnotherCountOfBlocks) {
  edit(pairs, "\n0041\t<>\t0061", "\nD041\t<>\tD061");
  expectRefusal("blocks with cased letters: 20, not 19");
}

TEST_F(UnicodeGenerator, RefusesAPairAboveTheUnits) {
  edit(pairs, "0041\t<>\t0061", "10400\t<>\t10428");
  expectRefusal("number above 0xFFFF");
}

TEST_F(UnicodeGenerator, RefusesAMissingClassRow) {
  edit(ranges, "space\t0085\n", "");
  expectRefusal("rows of class space: 9, not 10");
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

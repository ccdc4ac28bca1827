// A breach in the text of the multi-byte tables stops the generator with a sentence that names file, line and cure.
#include <gtest/gtest.h>

#include <string>

#include "support/generator.h"

namespace {

constexpr char mb[] = "modules/qznlsmb/";
constexpr char gb[] = "modules/qznlsgb/gb18030.tsv";

class GenSets : public testing::Test {
 protected:
  // Replaces the first line that begins with a text, as far as the text goes; it isn't the file's first.
  void edit(const std::string& name, const std::string& old, const std::string& with) const {
    generator_.replace(name, "\n" + old, "\n" + with);
  }

  void breach(const std::string& name, const std::string& old, const std::string& with, const std::string& sentence,
              const std::string& at = "") const {
    generator_.expectBreach(name, "\n" + old, "\n" + with, sentence, at);
  }

  void breachOfSets(const std::string& name, const std::string& old, const std::string& with,
                    const std::string& sentence, const std::string& at = "") const {
    breach(mb + name, old, with, sentence, at.empty() ? "" : mb + at);
  }

  test::GeneratorCopy generator_{GEN_SETS, "", {"sets"}};
};

TEST_F(GenSets, TheTextAsItStandsGivesTheSameBytesTwice) {
  generator_.expectSameBytesTwice({"sets/tables.inc", "sets/to_sets.inc", "sets/from_sets.inc", "sets/singles.inc",
                                   "sets/identity.inc", "sets/ascii_passthrough.inc", "sets/ascii_to_ebcdic.inc",
                                   "sets/ebcdic_to_ascii.inc", "sets/euro_bytes.inc", "sets/euro_codes.inc",
                                   "sets/gb18030.inc", "sets/gb18030_from.inc", "sets/gb18030_to.inc"});
}

// Sets.

TEST_F(GenSets, SetOutOfOrder) {
  breachOfSets("sets.tsv", "3\tshift-jis", "4\tshift-jis", "expected set 3", "sets.tsv:5");
}

TEST_F(GenSets, SetGone) { breachOfSets("sets.tsv", "20\t", "#20\t", "has 20 sets; it must have 21"); }

TEST_F(GenSets, FieldLost) {
  breachOfSets("sets.tsv", "0\t-\t0\t0\t0\t0", "0\t-\t0\t0\t0", "has 5 fields; it must have 6");
}

TEST_F(GenSets, EmptySetWithATable) {
  breachOfSets("sets.tsv", "10\t-\t0\t0", "10\tibm-949\t2557\t2557", "this set is empty", "sets.tsv:12");
}

TEST_F(GenSets, SetWithoutItsTable) { breachOfSets("sets.tsv", "6\tibm-949", "6\t-", "this set has a table"); }

TEST_F(GenSets, SharedTablesPart) {
  breachOfSets("sets.tsv", "20\teuc-tw\t5863\t5863\t5863\t5865", "20\teuc-jp\t7955\t7961\t7955\t7960",
               "this set shares the table of set 18");
}

TEST_F(GenSets, ToSize) {
  breachOfSets("sets.tsv", "1\tibm-939\t11635", "1\tibm-939\t11636",
               "table ibm-939 has 11635 mappings to Unicode, not 11636", "sets.tsv:3");
}

TEST_F(GenSets, FromSize) {
  breachOfSets("sets.tsv", "1\tibm-939\t11635\t11681", "1\tibm-939\t11635\t11682", "11681 mappings from Unicode");
}

TEST_F(GenSets, KnownSizeNotReached) {
  breachOfSets("sets.tsv", "6\tibm-949\t2557\t2557\t2557", "6\tibm-949\t2557\t2557\t2558",
               "the known size of mappings to Unicode is 2558; the table must have it");
}

TEST_F(GenSets, KnownSizeReachedAgainstTheList) {
  breachOfSets("sets.tsv", "19\thp15-tw\t12358\t12358\t13191", "19\thp15-tw\t12358\t12358\t12358",
               "take the set off the list");
}

TEST_F(GenSets, NoSuchTable) {
  breachOfSets("sets.tsv", "6\tibm-949", "6\tibm-950a", "there is no table ibm-950a; add sets/ibm-950a.tsv");
}

TEST_F(GenSets, TableThatNoSetUses) {
  generator_.write(std::string(mb) + "sets/stray.tsv", "8140\t4E00\n");
  generator_.expectStopAt(std::string(mb) + "sets/stray.tsv", "no set uses this table");
}

// Tables.

TEST_F(GenSets, MappingLost) {
  breachOfSets("sets/ibm-949.tsv", "8641\tAC01\n", "", "table ibm-949 has 2556 mappings to Unicode", "sets.tsv:8");
}

TEST_F(GenSets, LinesOutOfOrder) {
  breachOfSets("sets/ibm-949.tsv", "8640\tAC00\n8641\tAC01\n", "8641\tAC01\n8640\tAC00\n",
               "lines ascend by code and unit", "sets/ibm-949.tsv:3");
}

TEST_F(GenSets, LineTwice) {
  breachOfSets("sets/ibm-949.tsv", "8640\tAC00\n", "8640\tAC00\n8640\tAC00\n", "lines ascend", "sets/ibm-949.tsv:3");
}

TEST_F(GenSets, CodeWithTwoUnits) {
  breachOfSets("sets/ibm-949.tsv", "8641\tAC01\n", "8641\tABCD\n8641\tAC01\n",
               "a second line for code 0x8641, which line 3 maps", "sets/ibm-949.tsv:4");
}

TEST_F(GenSets, UnitWithTwoCodes) {
  breachOfSets("sets/ibm-949.tsv", "8641\tAC01\n", "8641\tAC00\n", "a second line for unit 0xAC00, which line 2 maps",
               "sets/ibm-949.tsv:3");
}

TEST_F(GenSets, UnknownMark) {
  breachOfSets("sets/ibm-949.tsv", "8641\tAC01", "8641\tAC01\tboth", "the mark is \"to\", \"from\" or nothing",
               "sets/ibm-949.tsv:3");
}

TEST_F(GenSets, SingleByteToUnicode) {
  breachOfSets("sets/ibm-939.tsv", "00E1\t20AC\tfrom", "00E1\t20AC", "a single byte is a result only",
               "sets/ibm-939.tsv:2");
}

TEST_F(GenSets, Surrogate) {
  breachOfSets("sets/ibm-949.tsv", "8641\tAC01", "8641\tD801", "surrogates have no code", "sets/ibm-949.tsv:3");
}

TEST_F(GenSets, CodeWrittenAndNotRead) {
  edit(std::string(mb) + "sets.tsv", "1\tibm-939\t11635", "1\tibm-939\t11634");
  breachOfSets("sets/ibm-939.tsv", "4141\t03B1", "4141\t03B1\tfrom",
               "1 codes are written and have no unit, as that of this line; there must be 0");
}

TEST_F(GenSets, IdeographicSpaceInASetThatLeavesItOut) {
  edit(std::string(mb) + "sets.tsv", "16\tibm-950\t13456\t13458\t13431", "16\tibm-950\t13457\t13458\t13431");
  breachOfSets("sets/ibm-950.tsv", "8141\t", "8140\t3000\tto\n8141\t", "no code may be U+3000");
}

TEST_F(GenSets, IdeographicSpaceLost) {
  edit(std::string(mb) + "sets.tsv", "1\tibm-939\t11635\t11681", "1\tibm-939\t11634\t11680");
  breachOfSets("sets/ibm-939.tsv", "4040\t3000\n", "", "a code must be U+3000");
}

TEST_F(GenSets, LeadByteOutsideOfARow) {
  breachOfSets("sets/shift-jis.tsv", "8141\t3001\n", "7F41\t3001\n", "the first byte is no lead byte of row 135",
               "sets/shift-jis.tsv:70");
}

TEST_F(GenSets, TrailByteOutsideOfARow) {
  breachOfSets("sets/ibm-949.tsv", "8640\tAC00", "863F\tAC00", "the second byte is no trail byte of row 142",
               "sets/ibm-949.tsv:2");
}

// Variants.

TEST_F(GenSets, BaseThatIsItsOwnBase) {
  breachOfSets("sets/jis-x-0208.tsv", "base\teuc-jp", "base\tjis-x-0208", "break the ring", "sets/jis-x-0208.tsv:2");
}

TEST_F(GenSets, DroppedRange) {
  breachOfSets("sets/jis-x-0208.tsv", "drop\t8EA1-8EDF", "drop\t8EA1-8EA0", "a range doesn't end ahead of its start",
               "sets/jis-x-0208.tsv:3");
}

TEST_F(GenSets, MaskedCodesThatMeet) {
  breachOfSets("sets/jis-x-0208.tsv", "base\teuc-jp\t7F7F", "base\teuc-jp\t0F7F", "a second line for code",
               "sets/euc-jp.tsv");
}

// Single bytes.

TEST_F(GenSets, NoSuchPage) {
  breachOfSets("singles.tsv", "5\tibm-290", "5\tibm-291", "there is no page ibm-291; add singles/ibm-291.tsv",
               "singles.tsv:7");
}

TEST_F(GenSets, PageThatNoSetUses) {
  generator_.write(std::string(mb) + "singles/stray.tsv", "40\t0020\n");
  generator_.expectStopAt(std::string(mb) + "singles/stray.tsv", "no set uses this page");
}

TEST_F(GenSets, PageThatIsItsOwnBase) {
  breachOfSets("singles/host-1027.tsv", "base\thost", "base\thost-1027", "break the ring");
}

TEST_F(GenSets, BaseBehindBytes) {
  breachOfSets("singles/host-1027.tsv", "base\thost\nB0\t005E", "B0\t005E\nbase\thost",
               "the base stands ahead of all bytes", "singles/host-1027.tsv:3");
}

TEST_F(GenSets, HostPageInItsPlainForm) {
  breachOfSets("singles/host.tsv", "page\tebcdic1047\topen", "page\tebcdic1047\tplain", "write \"open\"");
}

TEST_F(GenSets, ByteTwice) {
  breachOfSets("singles/ibm-290.tsv", "41\t", "40\t", "a second line for this byte", "singles/ibm-290.tsv:36");
}

TEST_F(GenSets, BlanksOfTheKatakanaPage) {
  breachOfSets("singles/ibm-290.tsv", "E0\t", "#E0\t", "62 bytes are U+0020; there must be 61", "singles.tsv:7");
}

TEST_F(GenSets, UnitsThatDontComeBack) {
  breachOfSets("singles/ibm-1027.tsv", "81\t", "#81\t", "1 units don't come back; there must be 0", "singles.tsv:6");
}

TEST_F(GenSets, HostPageOfOtherLetters) {
  breachOfSets("singles.tsv", "6\thost\thost", "6\tibm-1027\thost-1027", "sets 2 and 6 are one", "singles.tsv:8");
}

// Katakana.

TEST_F(GenSets, KatakanaGone) {
  breachOfSets("katakana.tsv", "FF9F\t", "#FF9F\t", "has 62 characters; it must have 63");
}

TEST_F(GenSets, KatakanaOutOfOrder) {
  breachOfSets("katakana.tsv", "FF62\t", "FF63\t", "the characters ascend without gaps", "katakana.tsv:3");
}

TEST_F(GenSets, KatakanaOfTwoCharacters) {
  breachOfSets("katakana.tsv", "FF62\t2156\t4342", "FF62\t2156\t4343",
               "the two-byte codes for 0xFF62 are of different characters");
}

TEST_F(GenSets, KatakanaWithoutACode) {
  breachOfSets("katakana.tsv", "FF62\t2156", "FF62\t7E7E", "code 0x7E7E has no unit in set 4");
}

TEST_F(GenSets, KatakanaOfAnotherByte) {
  breachOfSets("katakana.tsv", "FF62\t2156\t4342\t43", "FF62\t2156\t4342\t44",
               "byte 0x44 of single-byte set 4 must be 0xFF62");
}

TEST_F(GenSets, NoSuchColumn) {
  breachOfSets("singles.tsv", "6\thost\thost\tblank", "6\thost\thost\tblanks", "there is no column blanks of katakana");
}

// Euro signs.

TEST_F(GenSets, EuroCodeThatItsSetDoesntWrite) {
  breachOfSets("euro_codes.tsv", "125\teuc-cn\tA2E3", "125\teuc-cn\tA2E4", "takes the euro sign to another code",
               "euro_codes.tsv:5");
}

TEST_F(GenSets, EuroOfAnotherName) {
  breachOfSets("euro_bytes.tsv", "33\tcyrillic", "33\twcyrillic", "row 33 has the name cyrillic", "euro_bytes.tsv:12");
}

TEST_F(GenSets, EuroOfTheOtherKind) {
  breachOfSets("euro_bytes.tsv", "33\tcyrillic", "125\teuc-cn", "this encoding is no single-byte one");
}

TEST_F(GenSets, EuroTwice) {
  breachOfSets("euro_bytes.tsv", "60\twlatin2", "62\twlatin1", "line 2 has this CEI", "euro_bytes.tsv:3");
}

TEST_F(GenSets, EuroGone) {
  breachOfSets("euro_codes.tsv", "130\tibm-930\tE1\n", "", "has 14 encodings; it must have 15");
}

// GB18030.

TEST_F(GenSets, RowGone) { breach(gb, "8140\t4E02\n", "", "has 30860 rows; it must have 30861"); }

TEST_F(GenSets, RowsOutOfOrder) {
  breach(gb, "8140\t4E02\n8141\t4E04\n", "8141\t4E04\n8140\t4E02\n", "lines ascend by code", std::string(gb) + ":131");
}

TEST_F(GenSets, UnitWithTwoCodesOfGb18030) {
  breach(gb, "8141\t4E04\n", "8141\t4E02\n", "a second code for this unit", std::string(gb) + ":131");
}

TEST_F(GenSets, CodeThatIsNone) {
  breach(gb, "8140\t4E02\n", "8040\t4E02\n", "no code of one byte below 80", std::string(gb) + ":130");
}

TEST_F(GenSets, FourByteCodeThatIsNone) {
  breach(gb, "81308130\t0080\n", "81308030\t0080\n", "of four from 81308130 on");
}

TEST_F(GenSets, SingleByteOfAnotherNumber) { breach(gb, "5C\t005C", "5C\t00A5", "stands for its own number"); }

TEST_F(GenSets, LaterFormOfGb18030) { breach(gb, "A8BC\tE7C7", "A8BC\t1E3F", "unit 0xE7C7 must have the code 0xA8BC"); }

}  // namespace
